#include "desk/pictures/pdf_text.h"

#include <charconv>
#include <cmath>

namespace desk {

void appendNumber(std::string& out, double value) {
    constexpr double largest = 1e12;
    if (!(std::abs(value) <= largest)) value = 0;
    char text[40];
    char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 4).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    const std::string_view digits(text, static_cast<size_t>(end - text));
    out += digits == "-0" ? std::string_view("0") : digits;
}

std::string referenceTo(uint32_t number) {
    return std::to_string(number) + " 0 R";
}

std::string boundingBoxEntry(const Rect& box) {
    std::string entry = "/BBox[";
    for (const double side : {box.left, box.top, box.right, box.bottom}) {
        if (entry.back() != '[') entry += ' ';
        appendNumber(entry, side);
    }
    return entry + "]";
}

void appendName(std::string& out, std::string_view name) {
    constexpr char digits[] = "0123456789ABCDEF";
    constexpr std::string_view special = "()<>[]{}/%#";
    out += '/';
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 32 && byte < 127 && special.find(c) == std::string_view::npos) {
            out += c;
        } else {
            out += '#';
            out += digits[byte >> 4];
            out += digits[byte & 15];
        }
    }
}

}  // namespace desk
