#include "desk/idml/values.h"

#include <charconv>
#include <cmath>

#include "desk/idml/limits.h"

namespace desk {
namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

template <class Function>
void eachWord(std::string_view text, Function function) {
    for (size_t at = text.find_first_not_of(blanks); at != std::string_view::npos;) {
        const size_t end = std::min(text.find_first_of(blanks, at), text.size());
        function(text.substr(at, end - at));
        at = text.find_first_not_of(blanks, end);
    }
}

/// Decodes one character and moves past it; U+FFFD and one byte further for what is malformed.
char32_t nextCharacter(std::string_view utf8, size_t& at) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(utf8[i]); };
    const unsigned char lead = byte(at++);
    if (lead < 0x80) return lead;
    const int following = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
    if (following == 0 || lead >= 0xF5 || utf8.size() - at < static_cast<size_t>(following)) return 0xFFFD;
    char32_t c = lead & (0x3F >> following);
    for (int i = 0; i < following; ++i) {
        const unsigned char next = byte(at + static_cast<size_t>(i));
        if ((next & 0xC0) != 0x80) return 0xFFFD;
        c = c << 6 | (next & 0x3F);
    }
    constexpr char32_t least[] = {0, 0x80, 0x800, 0x10000};
    if (c < least[following] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return 0xFFFD;
    at += static_cast<size_t>(following);
    return c;
}

}  // namespace

std::optional<double> toNumber(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return {};
    if (std::abs(value) > limits::number) return {};
    return value;
}

std::optional<int> toInteger(std::string_view text) {
    const auto number = toNumber(text);
    return number ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

std::optional<bool> toBoolean(std::string_view text) {
    text = trimmed(text);
    if (text == "true") return true;
    if (text == "false") return false;
    return {};
}

std::optional<std::vector<double>> toNumbers(std::string_view text) {
    std::vector<double> numbers;
    bool good = true;
    eachWord(text, [&](std::string_view word) {
        const auto number = toNumber(word);
        good = good && number;
        if (number) numbers.push_back(*number);
    });
    return good ? std::optional(std::move(numbers)) : std::nullopt;
}

std::optional<Point> toPoint(std::string_view text) {
    const auto numbers = toNumbers(text);
    if (!numbers || numbers->size() != 2) return {};
    return Point{(*numbers)[0], (*numbers)[1]};
}

std::optional<Matrix> toMatrix(std::string_view text) {
    const auto numbers = toNumbers(text);
    if (!numbers || numbers->size() != 6) return {};
    const std::vector<double>& n = *numbers;
    return Matrix{n[0], n[1], n[2], n[3], n[4], n[5]};
}

std::vector<std::string> toReferences(std::string_view text) {
    std::vector<std::string> references;
    eachWord(text, [&](std::string_view word) {
        std::string reference(word);
        for (size_t at = reference.find("%20"); at != std::string::npos; at = reference.find("%20", at + 1))
            reference.replace(at, 3, 1, ' ');
        if (reference != "n") references.push_back(std::move(reference));
    });
    return references;
}

std::string toReference(std::string_view text) {
    return text == "n" ? std::string() : std::string(text);
}

std::string withoutKeyMark(std::string_view text) {
    if (text.starts_with("$ID/")) text.remove_prefix(4);
    return std::string(text);
}

std::u16string toUtf16(std::string_view utf8) {
    std::u16string result;
    result.reserve(utf8.size());
    for (size_t at = 0; at < utf8.size();) {
        const char32_t c = nextCharacter(utf8, at);
        if (c >= 0x10000) {
            result += static_cast<char16_t>(0xD7C0 + (c >> 10));
            result += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        } else {
            result += static_cast<char16_t>(c);
        }
    }
    return result;
}

std::string toUtf8(std::u16string_view text) {
    std::string result;
    const auto append = [&](uint32_t byte) { result += static_cast<char>(byte); };
    for (size_t i = 0; i < text.size(); ++i) {
        uint32_t code = text[i];
        if (code >= 0xD800 && code < 0xE000) {
            const bool paired = code < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
            code = paired ? 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u) : 0xFFFD;
        }
        if (code < 0x80) {
            append(code);
            continue;
        }
        const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        constexpr uint32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
        append(leads[following] | code >> (6 * following));
        for (int shift = 6 * (following - 1); shift >= 0; shift -= 6) append(0x80 | (code >> shift & 0x3F));
    }
    return result;
}

std::string numberText(double value) {
    char buffer[512];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    const std::string text(buffer, error == std::errc() ? end : buffer);
    return text == "-0" ? "0" : text;
}

std::string pointText(Point point) {
    return numberText(point.x) + " " + numberText(point.y);
}

std::string matrixText(const Matrix& matrix) {
    std::string text;
    for (double value : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f})
        text += (text.empty() ? "" : " ") + numberText(value);
    return text;
}

const std::string& attributeText(const XmlElement& element, std::string_view name) {
    static const std::string none;
    const std::string* value = element.attribute(name);
    return value ? *value : none;
}

const std::string* scalar(const XmlElement& element, std::string_view name, std::string& storage) {
    if (const std::string* value = element.attribute(name)) return value;
    const XmlElement* properties = element.child("Properties");
    const XmlElement* property = properties ? properties->child(name) : nullptr;
    if (!property) return nullptr;
    storage = property->text();
    return &storage;
}

}  // namespace desk
