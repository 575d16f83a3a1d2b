#include "support/text_decoding.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <string>
#include <string_view>

namespace vornaset {

namespace {

// Ä Ö Ü ä ö ü ß
constexpr std::string_view kGermanLettersMacRoman = "\x80\x85\x86\x8A\x9A\x9F\xA7";
constexpr std::string_view kGermanLettersWindows1252 = "\xC4\xD6\xDC\xE4\xF6\xFC\xDF";
/// The code page leaves these without a character; the converter would let them through as control characters.
constexpr std::string_view kUndefinedWindows1252 = "\x81\x8D\x8F\x90\x9D";

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

/// One unit for each byte, or null when a byte has no character.
String decodeSingleByte(std::string_view bytes, const char* encodingName) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, ConverterCloser> converter(ucnv_open(encodingName, &status));
    if (U_FAILURE(status)) return {};
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    std::u16string units(bytes.size(), u'\0');
    char16_t* target = units.data();
    const char* source = bytes.data();
    ucnv_toUnicode(converter.get(), &target, units.data() + units.size(), &source, bytes.data() + bytes.size(), nullptr,
                   true, &status);
    if (U_FAILURE(status)) return {};
    units.resize(static_cast<size_t>(target - units.data()));
    return String(units);
}

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
            return decodeSingleByte(view, "macintosh");
        case kWindows1252Encoding:
            if (view.find_first_of(kUndefinedWindows1252) != std::string_view::npos) return {};
            return decodeSingleByte(view, "windows-1252");
        default:
            return {};
    }
}

String stringWithCString(const char* utf8) {
    return String(utf8);
}

}  // namespace vornaset
