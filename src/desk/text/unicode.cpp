#include "desk/text/unicode.h"

#include <unicode/ubidi.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/uscript.h>
#include <unicode/ustring.h>

#include <cstring>
#include <limits>

namespace desk::unicode {
namespace {

int lineBreakClass(char32_t c) {
    return u_getIntPropertyValue(static_cast<UChar32>(c), UCHAR_LINE_BREAK);
}

using CaseMapping = int32_t (*)(UChar*, int32_t, const UChar*, int32_t, const char*, UErrorCode*);

std::u16string mapCase(std::u16string_view text, const std::string& language, CaseMapping mapping) {
    std::u16string result(text.size() + 16, u'\0');
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = mapping(result.data(), static_cast<int32_t>(result.size()), text.data(),
                                       static_cast<int32_t>(text.size()), language.c_str(), &status);
        const bool tooSmall = status == U_BUFFER_OVERFLOW_ERROR;
        if (!tooSmall && U_FAILURE(status)) return std::u16string(text);
        result.resize(static_cast<size_t>(length));
        if (!tooSmall) return result;
    }
}

}  // namespace

CodePoint codePointAt(std::u16string_view text, size_t position) {
    const char16_t first = text[position];
    if (first < 0xD800 || first > 0xDFFF) return {first, 1};
    if (first <= 0xDBFF && position + 1 < text.size()) {
        const char16_t second = text[position + 1];
        if (second >= 0xDC00 && second <= 0xDFFF)
            return {char32_t(0x10000 + ((first - 0xD800u) << 10) + (second - 0xDC00u)), 2};
    }
    return {0xFFFD, 1};
}

void append(std::u16string& text, char32_t codePoint) {
    if (codePoint < 0x10000) {
        text += static_cast<char16_t>(codePoint);
    } else {
        text += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

bool isLetter(char32_t c) {
    return u_isalpha(static_cast<UChar32>(c));
}
bool isMark(char32_t c) {
    return U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_M_MASK;
}
bool isUpperCase(char32_t c) {
    return u_isupper(static_cast<UChar32>(c));
}
bool isLowerCase(char32_t c) {
    return u_islower(static_cast<UChar32>(c));
}
bool isDefaultIgnorable(char32_t c) {
    return u_hasBinaryProperty(static_cast<UChar32>(c), UCHAR_DEFAULT_IGNORABLE_CODE_POINT);
}

bool turnsRightToLeft(char32_t c) {
    switch (u_charDirection(static_cast<UChar32>(c))) {
        case U_RIGHT_TO_LEFT:
        case U_RIGHT_TO_LEFT_ARABIC:
        case U_ARABIC_NUMBER:
        case U_RIGHT_TO_LEFT_EMBEDDING:
        case U_RIGHT_TO_LEFT_OVERRIDE:
        case U_RIGHT_TO_LEFT_ISOLATE:
            return true;
        default:
            return false;
    }
}

uint32_t scriptTag(char32_t c) {
    UErrorCode status = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(static_cast<UChar32>(c), &status);
    if (U_FAILURE(status) || script <= USCRIPT_INHERITED || script == USCRIPT_UNKNOWN) return 0;
    const char* name = uscript_getShortName(script);
    if (!name || std::strlen(name) != 4) return 0;
    const auto byte = [&](int index) { return uint32_t{static_cast<unsigned char>(name[index])}; };
    return byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3);
}

bool breaksAtSpaceBetween(char32_t before, char32_t after) {
    switch (lineBreakClass(after)) {
        case U_LB_CLOSE_PUNCTUATION:
        case U_LB_CLOSE_PARENTHESIS:
        case U_LB_EXCLAMATION:
        case U_LB_INFIX_NUMERIC:
        case U_LB_BREAK_SYMBOLS:
        case U_LB_WORD_JOINER:
        case U_LB_ZWSPACE:
            return false;
        default:
            break;
    }
    const int last = lineBreakClass(before), next = lineBreakClass(after);
    if (last == U_LB_OPEN_PUNCTUATION) return false;
    if (last == U_LB_QUOTATION && next == U_LB_OPEN_PUNCTUATION) return false;
    const bool closes = last == U_LB_CLOSE_PUNCTUATION || last == U_LB_CLOSE_PARENTHESIS;
    if (closes && (next == U_LB_NONSTARTER || next == U_LB_CONDITIONAL_JAPANESE_STARTER)) return false;
    return !(last == U_LB_BREAK_BOTH && next == U_LB_BREAK_BOTH);
}

std::u16string upperCase(std::u16string_view text, const std::string& language) {
    return mapCase(text, language, u_strToUpper);
}
std::u16string lowerCase(std::u16string_view text, const std::string& language) {
    return mapCase(text, language, u_strToLower);
}

bool bidiLevels(std::u16string_view paragraph, bool rightToLeft, std::vector<uint8_t>& levels) {
    levels.assign(paragraph.size(), rightToLeft ? 1 : 0);
    if (paragraph.empty()) return rightToLeft;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBiDi, decltype(&ubidi_close)> bidi(
        ubidi_openSized(static_cast<int32_t>(paragraph.size()), 0, &status), ubidi_close);
    if (U_FAILURE(status)) return rightToLeft;
    ubidi_setPara(bidi.get(), paragraph.data(), static_cast<int32_t>(paragraph.size()), rightToLeft ? 1 : 0, nullptr,
                  &status);
    const UBiDiLevel* found = U_SUCCESS(status) ? ubidi_getLevels(bidi.get(), &status) : nullptr;
    if (U_FAILURE(status) || !found) return rightToLeft;
    bool any = false;
    for (size_t i = 0; i < paragraph.size(); ++i) {
        levels[i] = found[i];
        any = any || found[i] != 0;
    }
    return any;
}

struct LineBreaks::Iterator {
    UBreakIterator* iterator = nullptr;
    ~Iterator() {
        if (iterator) ubrk_close(iterator);
    }
};

LineBreaks::LineBreaks() = default;
LineBreaks::~LineBreaks() = default;

void LineBreaks::find(std::u16string_view text, const std::string& language, std::vector<uint32_t>& positions) {
    positions.clear();
    if (text.empty()) return;
    std::unique_ptr<Iterator>& known = iterators_[language];
    UErrorCode status = U_ZERO_ERROR;
    if (!known) {
        known = std::make_unique<Iterator>();
        known->iterator = ubrk_open(UBRK_LINE, language.c_str(), nullptr, 0, &status);
        if (U_FAILURE(status)) known->iterator = nullptr;
    }
    if (!known->iterator) return;
    status = U_ZERO_ERROR;
    ubrk_setText(known->iterator, text.data(), static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status)) return;
    for (int32_t at = ubrk_next(known->iterator); at != UBRK_DONE; at = ubrk_next(known->iterator))
        if (at > 0 && at < static_cast<int32_t>(text.size())) positions.push_back(static_cast<uint32_t>(at));
}

bool decode(std::string_view bytes, const std::string& characterSet, std::u16string& text) {
    text.clear();
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(characterSet.c_str(), &status),
                                                                       ucnv_close);
    if (U_FAILURE(status)) return false;
    if (bytes.size() >= std::numeric_limits<int32_t>::max()) return false;
    text.resize(bytes.size() + 1);
    for (;;) {
        status = U_ZERO_ERROR;
        const int32_t length = ucnv_toUChars(converter.get(), text.data(), static_cast<int32_t>(text.size()),
                                             bytes.data(), static_cast<int32_t>(bytes.size()), &status);
        const bool tooSmall = status == U_BUFFER_OVERFLOW_ERROR;
        text.resize(tooSmall || U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
        if (!tooSmall) return U_SUCCESS(status);
    }
}

std::unique_ptr<Encoder> Encoder::make(const std::string& characterSet) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(characterSet.c_str(), &status);
    if (U_FAILURE(status)) return nullptr;
    ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    std::unique_ptr<Encoder> encoder(new Encoder);
    encoder->converter_ = converter;
    return encoder;
}

Encoder::~Encoder() {
    if (converter_) ucnv_close(static_cast<UConverter*>(converter_));
}

bool Encoder::encode(std::u16string_view text, std::string& bytes) {
    bytes.resize(text.size() * 4 + 8);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = static_cast<UConverter*>(converter_);
    ucnv_resetFromUnicode(converter);
    const int32_t length = ucnv_fromUChars(converter, bytes.data(), static_cast<int32_t>(bytes.size()), text.data(),
                                           static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status)) return false;
    bytes.resize(static_cast<size_t>(length));
    return true;
}

}  // namespace desk::unicode
