#include "host/api/strings.h"

#include <cstdint>

namespace {

constexpr char16_t replacement = u'\uFFFD';

void appendCodePoint(std::u16string& text, uint32_t codePoint) {
    if (codePoint < 0x10000) {
        text += static_cast<char16_t>(codePoint);
    } else {
        text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

/// What a first byte of UTF-8 announces: how many bytes follow, and the range that the next one must lie in (the
/// Unicode Standard, table 3-7: it shuts out overlong forms, surrogates and what lies above U+10FFFF).
struct Sequence {
    int following = -1;
    uint32_t bits = 0;
    uint8_t low = 0x80;
    uint8_t high = 0xBF;
};

Sequence sequenceOf(uint8_t first) {
    if (first < 0x80) return {0, first, 0, 0};
    if (first >= 0xC2 && first <= 0xDF) return {1, first & 0x1Fu, 0x80, 0xBF};
    if (first >= 0xE0 && first <= 0xEF)
        return {2, first & 0x0Fu, static_cast<uint8_t>(first == 0xE0 ? 0xA0 : 0x80),
                static_cast<uint8_t>(first == 0xED ? 0x9F : 0xBF)};
    if (first >= 0xF0 && first <= 0xF4)
        return {3, first & 0x07u, static_cast<uint8_t>(first == 0xF0 ? 0x90 : 0x80),
                static_cast<uint8_t>(first == 0xF4 ? 0x8F : 0xBF)};
    return {};
}

/// What isn't UTF-8 becomes U+FFFD, one for each longest piece that could have begun a character.
std::u16string fromUtf8(const char* utf8) {
    std::u16string text;
    if (!utf8) return text;
    // Names, keys and paths are ASCII, nearly always and from the start.
    size_t plain = 0;
    while (static_cast<signed char>(utf8[plain]) > 0) ++plain;
    text.assign(utf8, utf8 + plain);
    const uint8_t* byte = reinterpret_cast<const uint8_t*>(utf8 + plain);
    while (*byte != 0) {
        Sequence sequence = sequenceOf(*byte++);
        bool whole = sequence.following >= 0;
        for (int i = 0; whole && i < sequence.following; ++i) {
            if (*byte < sequence.low || *byte > sequence.high) {
                whole = false;
            } else {
                sequence.bits = sequence.bits << 6 | (*byte++ & 0x3Fu);
                sequence.low = 0x80;
                sequence.high = 0xBF;
            }
        }
        appendCodePoint(text, whole ? sequence.bits : replacement);
    }
    return text;
}

}  // namespace

WideString::WideString(const char* utf8) : text_(fromUtf8(utf8)) {}

PMString::PMString(const char* utf8, int32_t) : text_(fromUtf8(utf8)) {}
