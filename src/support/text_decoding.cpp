#include "support/text_decoding.h"

#include <string>
#include <string_view>

#include "support/charset.h"

namespace vornaset {

namespace {

// Ä Ö Ü ä ö ü ß
constexpr std::string_view kGermanLettersMacRoman = "\x80\x85\x86\x8A\x9A\x9F\xA7";
constexpr std::string_view kGermanLettersWindows1252 = "\xC4\xD6\xDC\xE4\xF6\xFC\xDF";

}  // namespace

uint64_t stringEncodingWithData(const Data& data) {
    for (const char byte : data.view()) {
        if (kGermanLettersMacRoman.find(byte) != std::string_view::npos) return kMacRomanEncoding;
        if (kGermanLettersWindows1252.find(byte) != std::string_view::npos) return kWindows1252Encoding;
    }
    return kMacRomanEncoding;
}

String stringWithData(const Data& data) {
    if (data.isNull()) return u"";
    const String text = String::fromUTF8(data.view());
    return text.isNull() ? stringWithBytes(data.bytes(), data.length(), stringEncodingWithData(data)) : text;
}

Data dataWithString(const String& text) {
    return text.isNull() ? Data() : Data(text.utf8());
}

String stringWithBytes(const void* bytes, size_t length, uint64_t encoding) {
    const std::string_view view(length == 0 ? "" : static_cast<const char*>(bytes), length);
    switch (encoding) {
        case kUTF8Encoding:
            return String::fromUTF8(view);
        case kMacRomanEncoding:
            return decodedText(view, "macintosh");
        case kWindows1252Encoding:
            return decodedText(view, "windows-1252");
        default:
            return {};
    }
}

String stringWithCString(const char* utf8) {
    return String(utf8);
}

}  // namespace vornaset
