#include "desk/border/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace desk {

std::string utf8Of(std::u16string_view text) {
    const size_t plain = static_cast<size_t>(
        std::find_if(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x80; }) - text.begin());
    std::string result(plain, '\0');
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(plain), result.begin(),
                   [](char16_t unit) { return static_cast<char>(unit); });
    for (size_t i = plain; i < text.size(); ++i) {
        uint32_t code = text[i];
        if (code >= 0xD800 && code < 0xE000) {
            const bool paired = code < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
            code = paired ? 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u) : 0xFFFD;
        }
        const auto append = [&](uint32_t byte) { result += static_cast<char>(byte); };
        if (code < 0x80) {
            append(code);
        } else if (code < 0x800) {
            append(0xC0 | code >> 6);
            append(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            append(0xE0 | code >> 12);
            append(0x80 | (code >> 6 & 0x3F));
            append(0x80 | (code & 0x3F));
        } else {
            append(0xF0 | code >> 18);
            append(0x80 | (code >> 12 & 0x3F));
            append(0x80 | (code >> 6 & 0x3F));
            append(0x80 | (code & 0x3F));
        }
    }
    return result;
}

}  // namespace desk
