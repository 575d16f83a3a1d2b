#pragma once
// From bytes to text: UTF-8 first, then one of two single-byte encodings, told apart by the seven German letters.

#include <cstddef>
#include <cstdint>

#include "support/values.h"

namespace vornaset {

/// The platform's numbers for encodings, as the operations below give and take them.
inline constexpr uint64_t kUTF8Encoding = 4;
inline constexpr uint64_t kWindows1252Encoding = 12;
inline constexpr uint64_t kMacRomanEncoding = 30;

/// 30 or 12: what the first byte that is one of Ä Ö Ü ä ö ü ß in either encoding says, Mac OS Roman asked first; 30
/// when there is none. UTF-8 is not among the results: callers try it before they ask.
uint64_t stringEncodingWithData(const Data& data);

/// UTF-8 if the bytes are that, else the encoding that stringEncodingWithData names. The empty string for null data.
/// Null only when no encoding decodes the bytes (Windows 1252 leaves five bytes undefined).
String stringWithData(const Data& data);
/// UTF-8 bytes; a lone surrogate becomes U+FFFD. Null for null.
Data dataWithString(const String& text);
/// Null when the bytes don't decode or the encoding is none of the three.
String stringWithBytes(const void* bytes, size_t length, uint64_t encoding);
/// From NUL-terminated UTF-8. Null for a null pointer and for bytes that are no UTF-8.
String stringWithCString(const char* utf8);

}  // namespace vornaset
