#pragma once
// The standard fonts of PDF, which a file may name without carrying them, and the encodings that it may name. ISO
// 32000-1, 9.6.2.2 and annex D.

#include <array>
#include <string>
#include <string_view>

namespace desk {

using CodeTable = std::array<char16_t, 256>;  ///< Unicode of each code, 0 for none

/// The standard name of a text font ("Courier-Bold"), from it or from one of the names that mean the same
/// ("CourierNew,Bold"). Empty for other fonts, Symbol and ZapfDingbats among them: their characters are their own.
std::string_view standardTextFont(std::string_view baseFont);

/// StandardEncoding, WinAnsiEncoding or MacRomanEncoding by name; StandardEncoding for any other name.
const CodeTable& encodingNamed(std::string_view name);

/// Of the names that standard fonts use and of "uniXXXX"; 0 for others.
char16_t characterNamed(std::string_view glyphName);

}  // namespace desk
