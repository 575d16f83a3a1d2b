#include "support/wide_text.h"

#include <algorithm>

namespace vornaset {

size_t wstrlen(const uint16_t* text) noexcept {
    size_t length = 0;
    if (text == nullptr) return length;
    while (text[length] != 0) ++length;
    return length;
}

size_t wstrcpy(uint16_t* target, const uint16_t* source) noexcept {
    const size_t length = wstrlen(source);
    if (source != nullptr) std::copy_n(source, length + 1, target);
    return length;
}

}  // namespace vornaset
