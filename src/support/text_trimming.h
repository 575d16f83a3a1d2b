#pragma once
// Cutting what isn't wanted from a text. What needs no cutting comes back as the same object, null included.

#include "support/values.h"

namespace vornaset {

/// White space in the widest sense: tab, the line breaks U+000A to U+000D, U+0085, U+2028 and U+2029, and every space
/// of Unicode (category Zs), the no-break ones too.
bool isWhitespaceOrLineBreak(char16_t unit) noexcept;

/// Without white space and line breaks at both ends.
String stringByTrimmingWhitespace(const String& text);
/// Without any carriage return and line feed.
String stringByRemovingLineBreaks(const String& text);
/// For texts of numbers: behind a point, the zeros at the end go, and then the point itself if it stands at the end. A
/// text without a point is left alone.
String stringByTrimmingTrailingZeros(const String& text);

}  // namespace vornaset
