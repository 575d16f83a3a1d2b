#pragma once
// Bytes in a named character set to text, and the byte-order marks of Unicode's own encodings.

#include <cstddef>
#include <string_view>

#include "support/values.h"

namespace vornaset {

/// The text that the bytes give in a character set under its usual name ("UTF-16LE", "ISO-8859-15", "macintosh"). Null
/// when the name is unknown, when a byte has no character and when the last character isn't whole. A byte-order mark
/// stays.
String decodedText(std::string_view bytes, const char* charset);

struct ByteOrderMark {
    const char* charset = nullptr;  ///< null: there is no mark
    size_t length = 0;              ///< bytes of the mark
};

/// The mark of UTF-8, UTF-16 or UTF-32 at the start of the bytes (Unicode 15, clause 23.8). FF FE 00 00 is UTF-32.
ByteOrderMark byteOrderMark(std::string_view bytes);

}  // namespace vornaset
