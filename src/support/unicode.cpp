#include "support/unicode.h"

#include <cstdint>

namespace vornaset {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool isHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool isLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

/// The shape of a sequence by its first byte: how long it is and in which range its second byte lies, which rules out
/// overlong forms, surrogates and numbers beyond U+10FFFF.
struct Sequence {
    size_t length = 0;  ///< 0: no sequence begins with this byte
    uint8_t secondLow = 0x80;
    uint8_t secondHigh = 0xBF;
};

Sequence sequenceOf(uint8_t lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return {2, 0x80, 0xBF};
    if (lead == 0xE0) return {3, 0xA0, 0xBF};
    if (lead == 0xED) return {3, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF) return {3, 0x80, 0xBF};
    if (lead == 0xF0) return {4, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3) return {4, 0x80, 0xBF};
    if (lead == 0xF4) return {4, 0x80, 0x8F};
    return {};
}

/// The bytes at `at` that belong together, and their character when the sequence is whole.
struct Decoded {
    size_t length;
    std::optional<char32_t> character;
};

Decoded decodeAt(std::string_view bytes, size_t at) {
    const auto byteAt = [&](size_t index) { return static_cast<uint8_t>(bytes[index]); };
    const Sequence sequence = sequenceOf(byteAt(at));
    if (sequence.length == 0) return {1, std::nullopt};
    char32_t character = byteAt(at) & (0xFF >> (sequence.length + 1));
    for (size_t taken = 1; taken < sequence.length; ++taken) {
        if (at + taken >= bytes.size()) return {taken, std::nullopt};
        const uint8_t next = byteAt(at + taken);
        const uint8_t low = taken == 1 ? sequence.secondLow : 0x80;
        const uint8_t high = taken == 1 ? sequence.secondHigh : 0xBF;
        if (next < low || next > high) return {taken, std::nullopt};
        character = (character << 6) | (next & 0x3F);
    }
    return {sequence.length, character};
}

void appendCharacter(std::u16string& result, char32_t character) {
    if (character < 0x10000) {
        result += static_cast<char16_t>(character);
    } else {
        result += static_cast<char16_t>(0xD7C0 + (character >> 10));
        result += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    }
}

void appendCharacter(std::string& result, char32_t character) {
    if (character < 0x80) {
        result += static_cast<char>(character);
    } else if (character < 0x800) {
        result += static_cast<char>(0xC0 | (character >> 6));
        result += static_cast<char>(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        result += static_cast<char>(0xE0 | (character >> 12));
        result += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        result += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        result += static_cast<char>(0xF0 | (character >> 18));
        result += static_cast<char>(0x80 | ((character >> 12) & 0x3F));
        result += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        result += static_cast<char>(0x80 | (character & 0x3F));
    }
}

}  // namespace

bool appendUTF16(std::u16string& result, std::string_view bytes, DamagedText damaged) {
    result.reserve(result.size() + bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const auto byte = static_cast<uint8_t>(bytes[at]);
        if (byte < 0x80) {
            result += static_cast<char16_t>(byte);
            ++at;
            continue;
        }
        const Decoded decoded = decodeAt(bytes, at);
        if (!decoded.character && damaged == DamagedText::refuse) return false;
        appendCharacter(result, decoded.character.value_or(kReplacement));
        at += decoded.length;
    }
    return true;
}

bool appendUTF8(std::string& result, std::u16string_view units, DamagedText damaged) {
    result.reserve(result.size() + units.size());
    for (size_t at = 0; at < units.size(); ++at) {
        const char16_t unit = units[at];
        if (isHighSurrogate(unit) && at + 1 < units.size() && isLowSurrogate(units[at + 1])) {
            appendCharacter(result, 0x10000 + ((unit - 0xD800u) << 10) + (units[at + 1] - 0xDC00u));
            ++at;
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            if (damaged == DamagedText::refuse) return false;
            appendCharacter(result, char32_t{kReplacement});
        } else {
            appendCharacter(result, char32_t{unit});
        }
    }
    return true;
}

std::u16string withoutForbiddenXmlCharacters(std::u16string_view units) {
    std::u16string result(units);
    for (size_t at = 0; at < result.size(); ++at) {
        const char16_t unit = result[at];
        if (isHighSurrogate(unit) && at + 1 < result.size() && isLowSurrogate(result[at + 1])) {
            ++at;
            continue;
        }
        const bool control = unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r';
        if (control || isHighSurrogate(unit) || isLowSurrogate(unit) || unit >= 0xFFFE) result[at] = kReplacement;
    }
    return result;
}

}  // namespace vornaset
