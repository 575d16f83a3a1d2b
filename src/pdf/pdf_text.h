#pragma once
// Text as a PDF file's bytes, and back.

#include <string>
#include <string_view>

#include "support/values.h"

namespace vornaset {

/// UTF-16 big-endian, the mark included. A last odd byte is left out.
String stringWithUTF16BigEndian(std::string_view bytes);
/// The text in Mac OS Roman, up to a zero; a text that has no such form in UTF-8.
void appendMacRoman(std::string& buffer, const String& text);
/// Decimal digits, without a locale.
void appendInteger(std::string& buffer, int64_t number);
/// As "%f" prints without a locale: six digits behind the point.
void appendSixDigits(std::string& buffer, double number);

}  // namespace vornaset
