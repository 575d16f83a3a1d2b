#include "support/escaped_text.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "support/text_decoding.h"

namespace vornaset {

namespace {

constexpr char kUpperDigits[] = "0123456789ABCDEF";

bool isAsciiLetterOrDigit(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

char byteOfPair(char high, char low) {
    const auto highCode = static_cast<uint8_t>(high);
    const auto lowCode = static_cast<uint8_t>(low);
    const unsigned highPart = (highCode >= 58 ? highCode + 9u : highCode) << 4;
    const unsigned lowPart = lowCode < 58 ? lowCode - 48u : lowCode - 55u;
    return static_cast<char>(static_cast<uint8_t>(highPart + lowPart));
}

void appendEscape(std::string& text, char byte) {
    text += '%';
    text += kUpperDigits[static_cast<uint8_t>(byte) >> 4];
    text += kUpperDigits[static_cast<uint8_t>(byte) & 15];
}

std::string decoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '%' && text.size() - at > 2) {
            result += byteOfPair(text[at + 1], text[at + 2]);
            at += 2;
        } else {
            result += text[at];
        }
    }
    return result;
}

bool mayStandInAQuery(char byte) {
    return isAsciiLetterOrDigit(byte) || (byte != '\0' && std::strchr("-._~!$&'()*+,;=:@/?", byte) != nullptr);
}

/// Whether escaped text is a URL or a relative reference (RFC 3986, clause 4.1): what stands before the first ":" must
/// be a scheme unless a "/" or a "?" comes first.
bool isUrlReference(std::string_view text) {
    const size_t end = text.find_first_of(":/?");
    if (end == std::string_view::npos || text[end] != ':') return !text.empty();
    const std::string_view scheme = text.substr(0, end);
    if (scheme.empty() || !isAsciiLetterOrDigit(scheme[0]) || (scheme[0] >= '0' && scheme[0] <= '9')) return false;
    for (const char byte : scheme) {
        if (!isAsciiLetterOrDigit(byte) && byte != '+' && byte != '-' && byte != '.') return false;
    }
    return true;
}

}  // namespace

void hex2bin(const char* text, char* target, size_t count) {
    for (size_t pair = 0; pair < count; ++pair) target[pair] = byteOfPair(text[2 * pair], text[2 * pair + 1]);
}

String hex2bin(const Data& data) {
    const std::string_view text = data.view();
    const String characters = String::fromUTF8(text);
    std::string bytes(characters.length() / 2, '\0');
    hex2bin(text.data(), bytes.data(), bytes.size());
    return String::fromUTF8(bytes);
}

void encodeURL(const char* text, char* target) {
    for (; *text != '\0'; ++text) {
        if (isAsciiLetterOrDigit(*text) || *text == '-' || *text == '.' || *text == '_') {
            *target++ = *text;
        } else {
            *target++ = '%';
            *target++ = kUpperDigits[static_cast<uint8_t>(*text) >> 4];
            *target++ = kUpperDigits[static_cast<uint8_t>(*text) & 15];
        }
    }
}

void decodeURL(const char* text, char* target) {
    const std::string bytes = decoded(text);
    std::copy(bytes.begin(), bytes.end(), target);  // no zero behind them: the caller gave room for the bytes alone
}

void decodeURL(char* text) {
    if (std::strchr(text, '%') == nullptr) return;
    const std::string bytes = decoded(text);
    std::memcpy(text, bytes.c_str(), bytes.size() + 1);
}

String stringByAddingPercentEscapes(const String& text) {
    const std::optional<std::string> bytes = text.exactUTF8();
    if (!bytes) return {};
    std::string escaped;
    for (const char byte : *bytes) {
        if (mayStandInAQuery(byte)) {
            escaped += byte;
        } else {
            appendEscape(escaped, byte);
        }
    }
    return String::fromUTF8(escaped);
}

std::shared_ptr<Url> urlWithString(const String& text) {
    const String escaped = stringByAddingPercentEscapes(text);
    return !escaped.isNull() && isUrlReference(escaped.utf8()) ? std::make_shared<Url>(escaped) : nullptr;
}

}  // namespace vornaset
