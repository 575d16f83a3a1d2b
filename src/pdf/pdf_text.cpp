#include "pdf/pdf_text.h"

#include <array>
#include <charconv>
#include <optional>

#include "support/text_decoding.h"

namespace vornaset {

namespace {

/// The code units of the upper half of Mac OS Roman, in order.
std::array<char16_t, 128> makeMacRomanUpperHalf() {
    std::array<char16_t, 128> units{};
    for (size_t index = 0; index < units.size(); ++index) {
        const auto byte = static_cast<unsigned char>(0x80 + index);
        const String text = stringWithBytes(&byte, 1, kMacRomanEncoding);
        units[index] = text.length() == 1 ? text.charAt(0) : u'\0';
    }
    return units;
}

std::optional<std::string> macRoman(std::u16string_view units) {
    static const std::array<char16_t, 128> upperHalf = makeMacRomanUpperHalf();
    std::string bytes;
    bytes.reserve(units.size());
    for (const char16_t unit : units) {
        if (unit < 0x80) {
            bytes += static_cast<char>(unit);
            continue;
        }
        size_t place = 0;
        while (place < upperHalf.size() && upperHalf[place] != unit) ++place;
        if (place == upperHalf.size()) return std::nullopt;
        bytes += static_cast<char>(0x80 + place);
    }
    return bytes;
}

}  // namespace

String stringWithUTF16BigEndian(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto high = static_cast<unsigned char>(bytes[at]);
        const auto low = static_cast<unsigned char>(bytes[at + 1]);
        units += static_cast<char16_t>(high << 8 | low);
    }
    return String(units);
}

void appendMacRoman(std::string& buffer, const String& text) {
    std::u16string_view units = text.view();
    units = units.substr(0, units.find(u'\0'));
    const size_t start = buffer.size();
    for (const char16_t unit : units) {
        if (unit >= 0x80) {
            buffer.resize(start);
            buffer += macRoman(units).value_or(String(units).utf8());
            return;
        }
        buffer += static_cast<char>(unit);
    }
}

void appendInteger(std::string& buffer, int64_t number) {
    char digits[24];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
    buffer.append(digits, end);
}

void appendSixDigits(std::string& buffer, double number) {
    char digits[352];  // DBL_MAX has 309 digits before the point
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, 6);
    buffer.append(digits, end);
}

}  // namespace vornaset
