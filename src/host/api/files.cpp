// File locations of the border: between paths and URLs of local files (RFC 8089).

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "host/api/strings.h"

namespace {

/// -1 for what is no hexadecimal digit.
int hexValue(char16_t digit) {
    if (digit >= u'0' && digit <= u'9') return digit - u'0';
    if (digit >= u'a' && digit <= u'f') return digit - u'a' + 10;
    if (digit >= u'A' && digit <= u'F') return digit - u'A' + 10;
    return -1;
}

/// A code point from UTF-16; a lone surrogate becomes U+FFFD.
uint32_t takeCodePoint(std::u16string_view& text) {
    const char16_t first = text.front();
    text.remove_prefix(1);
    if (first < 0xD800 || first > 0xDFFF) return first;
    if (first > 0xDBFF || text.empty() || text.front() < 0xDC00 || text.front() > 0xDFFF) return 0xFFFD;
    const char16_t second = text.front();
    text.remove_prefix(1);
    return 0x10000 + ((uint32_t{first} - 0xD800) << 10) + (uint32_t{second} - 0xDC00);
}

void appendUtf8(std::string& bytes, uint32_t codePoint) {
    const auto tail = [&](int shift) { bytes += static_cast<char>(0x80 | (codePoint >> shift & 0x3F)); };
    if (codePoint < 0x80) {
        bytes += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        bytes += static_cast<char>(0xC0 | codePoint >> 6);
        tail(0);
    } else if (codePoint < 0x10000) {
        bytes += static_cast<char>(0xE0 | codePoint >> 12);
        tail(6);
        tail(0);
    } else {
        bytes += static_cast<char>(0xF0 | codePoint >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

/// Nothing for a damaged percent code and for a zero byte, which no path can hold.
std::optional<std::string> decoded(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const auto isPlain = [](char16_t unit) { return unit < 0x80 && unit != u'%' && unit != 0; };
        const auto stop = std::find_if_not(text.begin(), text.end(), isPlain);
        bytes.append(text.begin(), stop);
        text.remove_prefix(static_cast<size_t>(stop - text.begin()));
        if (text.empty()) break;
        if (text.front() != u'%') {
            const uint32_t codePoint = takeCodePoint(text);
            if (codePoint == 0) return std::nullopt;
            appendUtf8(bytes, codePoint);
            continue;
        }
        if (text.size() < 3 || hexValue(text[1]) < 0 || hexValue(text[2]) < 0) return std::nullopt;
        const int value = hexValue(text[1]) * 16 + hexValue(text[2]);
        if (value == 0) return std::nullopt;
        bytes += static_cast<char>(value);
        text.remove_prefix(3);
    }
    return bytes;
}

}  // namespace

namespace FileUtils {

bool FileURLToSysFile(const WideString& url, IDFile* file) {
    static constexpr std::array<std::u16string_view, 2> beginnings{u"file:///", u"file://localhost/"};
    for (const std::u16string_view beginning : beginnings) {
        if (!url.View().starts_with(beginning)) continue;
        const std::optional<std::string> path = decoded(url.View().substr(beginning.size() - 1));
        if (path && file) *file = IDFile(*path);
        return path.has_value();
    }
    return false;
}

PMString IDFileToPMString(const IDFile& file) {
    return PMString(file.GetPath().c_str());
}

}  // namespace FileUtils
