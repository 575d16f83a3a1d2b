#include "support/charset.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <memory>
#include <string>

namespace vornaset {

namespace {

using namespace std::string_view_literals;

/// The code page leaves these without a character; the converter would let them through as control characters.
constexpr std::string_view kUndefinedWindows1252 = "\x81\x8D\x8F\x90\x9D";

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

}  // namespace

String decodedText(std::string_view bytes, const char* charset) {
    if (charset == nullptr || *charset == '\0') return {};
    if (charset == "UTF-8"sv) return String::fromUTF8(bytes);
    if (charset == "windows-1252"sv && bytes.find_first_of(kUndefinedWindows1252) != std::string_view::npos) return {};
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, ConverterCloser> converter(ucnv_open(charset, &status));
    if (U_FAILURE(status)) return {};
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    const char* source = bytes.data();
    const char* const sourceEnd = source + bytes.size();
    std::u16string units(bytes.size() + 1, u'\0');
    size_t length = 0;
    for (;;) {
        char16_t* target = units.data() + length;
        status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &target, units.data() + units.size(), &source, sourceEnd, nullptr, true,
                       &status);
        length = static_cast<size_t>(target - units.data());
        if (status != U_BUFFER_OVERFLOW_ERROR) break;
        units.resize(units.size() * 2);
    }
    if (U_FAILURE(status)) return {};
    units.resize(length);
    return String(units);
}

ByteOrderMark byteOrderMark(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF"sv)) return {"UTF-8", 3};
    if (bytes.starts_with("\xFF\xFE\0\0"sv)) return {"UTF-32LE", 4};
    if (bytes.starts_with("\0\0\xFE\xFF"sv)) return {"UTF-32BE", 4};
    if (bytes.starts_with("\xFF\xFE"sv)) return {"UTF-16LE", 2};
    if (bytes.starts_with("\xFE\xFF"sv)) return {"UTF-16BE", 2};
    return {};
}

}  // namespace vornaset
