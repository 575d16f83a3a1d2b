#include "tools/barcode/digits.h"

#include <algorithm>

#include "tools/barcode/refusal.h"

namespace barcode {
namespace {

/// Digits with the check digit; 0 for kinds that take any text.
size_t fixedDigits(Kind kind) {
    switch (kind) {
        case Kind::Ean13:
            return 13;
        case Kind::Ean8:
            return 8;
        case Kind::UpcA:
            return 12;
        case Kind::Itf14:
            return 14;
        default:
            return 0;
    }
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

bool hasFixedDigits(Kind kind) {
    return fixedDigits(kind) != 0;
}

char checkDigitOf(std::string_view digits) {
    int sum = 0;
    int weight = 3;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        sum += weight * (*digit - '0');
        weight = 4 - weight;
    }
    return static_cast<char>('0' + (10 - sum % 10) % 10);
}

std::string withCheckDigit(Kind kind, std::string_view code) {
    const std::string title(measuresOf(kind).title);
    const size_t whole = fixedDigits(kind);
    const auto* const stranger = std::find_if_not(code.begin(), code.end(), isDigit);
    if (stranger != code.end())
        throw Refusal(title + " takes digits alone; " + quoted(code) + " has something else at place " +
                      std::to_string(stranger - code.begin() + 1) + ".");
    if (code.size() != whole && code.size() != whole - 1)
        throw Refusal(title + " takes " + std::to_string(whole - 1) + " digits, or " + std::to_string(whole) +
                      " with the check digit; " + quoted(code) + " has " + std::to_string(code.size()) + ".");
    std::string result(code.substr(0, whole - 1));
    result += checkDigitOf(result);
    if (code.size() == whole && code.back() != result.back())
        throw Refusal("the check digit of the " + title + " code " + quoted(code) + " must be " + result.back() +
                      ", not " + code.back() + ".");
    return result;
}

std::string quoted(std::string_view code) {
    constexpr size_t shown = 60;
    size_t length = std::min(code.size(), shown);
    while (length > 0 && length < code.size() && (static_cast<unsigned char>(code[length]) & 0xC0) == 0x80) --length;
    std::string text = "\"";
    for (char c : code.substr(0, length)) text += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '.' : c;
    return text + (length < code.size() ? "...\"" : "\"");
}

}  // namespace barcode
