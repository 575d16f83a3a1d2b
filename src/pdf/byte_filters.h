#pragma once
// The filters of ISO 32000-1, 7.4, apart from Deflate and the pictures' own: each undoes one encoding. Data that end
// early, or break the rules, give what stood before. Safe on several threads.

#include <cstdint>
#include <string_view>

#include "pdf/inflate.h"

namespace vornaset {

/// 7.4.2: pairs of hexadecimal digits up to ">"; white space between. An odd last digit is followed by a 0.
UndoneBytes undoASCIIHex(std::string_view data, size_t limit);

/// 7.4.3: groups of five characters up to "~>", "z" for four zeros; a "<~" in front is passed over.
UndoneBytes undoASCII85(std::string_view data, size_t limit);

/// 7.4.5: a length byte, then literal bytes or one byte to repeat; 128 ends the data.
UndoneBytes undoRunLength(std::string_view data, size_t limit);

/// When codes of an LZW encoder grow: one code before the table asks for it (the default), or when it does.
enum class LZWChange : uint8_t { early, late };

/// 7.4.4: codes of 9 to 12 bits, the highest bit first; 256 clears the table, 257 ends the data.
UndoneBytes undoLZW(std::string_view data, LZWChange change, size_t limit);

}  // namespace vornaset
