#include "support/text_trimming.h"

#include <string>

namespace vornaset {

bool isWhitespaceOrLineBreak(char16_t unit) noexcept {
    if (unit <= 0x20) return unit == 0x20 || (unit >= 0x09 && unit <= 0x0D);
    if (unit < 0x1680) return unit == 0x85 || unit == 0xA0;
    return unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F ||
           unit == 0x205F || unit == 0x3000;
}

String stringByTrimmingWhitespace(const String& text) {
    const std::u16string_view units = text.view();
    size_t first = 0;
    size_t end = units.size();
    while (first < end && isWhitespaceOrLineBreak(units[first])) ++first;
    while (end > first && isWhitespaceOrLineBreak(units[end - 1])) --end;
    return text.substring(first, end - first);
}

String stringByRemovingLineBreaks(const String& text) {
    std::u16string units(text.view());
    if (std::erase_if(units, [](char16_t unit) { return unit == '\r' || unit == '\n'; }) == 0) return text;
    return String(units);
}

String stringByTrimmingTrailingZeros(const String& text) {
    if (text.find(u'.') == String::npos) return text;
    std::u16string_view units = text.view();
    while (units.ends_with(u'0')) units.remove_suffix(1);
    if (units.ends_with(u'.')) units.remove_suffix(1);
    return String(units);
}

}  // namespace vornaset
