#pragma once
// UTF-8 to UTF-16 and back, without tables and without locale.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vornaset {

enum class DamagedText { refuse, replace };

/// Appends the UTF-16 of UTF-8 bytes. Damaged sequences (RFC 3629) end it with false or become one U+FFFD each, the
/// longest possible beginning of a sequence counting as one (Unicode 15, table 3-8).
bool appendUTF16(std::u16string& result, std::string_view bytes, DamagedText damaged);

/// Appends the UTF-8 of UTF-16 units. Lone surrogates end it with false or become U+FFFD.
bool appendUTF8(std::string& result, std::u16string_view units, DamagedText damaged);

/// Replaces by U+FFFD what an XML 1.0 text can't hold (clause 2.2): control characters but tab, line feed and carriage
/// return, lone surrogates, U+FFFE and U+FFFF.
std::u16string withoutForbiddenXmlCharacters(std::u16string_view units);

}  // namespace vornaset
