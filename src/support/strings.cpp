#include "support/strings.h"

#include <unicode/unistr.h>

#include <algorithm>

namespace vornaset {

namespace {

/// Simple and full case folding of Unicode, for a search that ignores case.
std::u16string folded(const String& text) {
    icu::UnicodeString units(text.view().data(), static_cast<int32_t>(text.length()));
    units.foldCase();
    return std::u16string(units.getBuffer(), static_cast<size_t>(units.length()));
}

}  // namespace

bool stringsAreEqual(const String& first, const String& second) {
    return first == second;
}

bool stringsAreEqual(const String& text, const Array& texts) {
    for (const Value& entry : texts) {
        if (entry.isString() && stringsAreEqual(text, entry.string())) return true;
    }
    return false;
}

bool stringStartsWith(const String& text, const String& prefix) {
    return !prefix.isEmpty() && text.view().starts_with(prefix.view());
}

bool stringStartsWith(const String& text, const Array& prefixes) {
    for (const Value& prefix : prefixes) {
        if (stringStartsWith(text, prefix.string())) return true;
    }
    return false;
}

bool stringEndsWith(const String& text, const String& suffix) {
    return !text.isNull() && !suffix.isNull() && text.view().ends_with(suffix.view());
}

String stringEndsWith(const String& text, const Array& suffixes) {
    for (const Value& suffix : suffixes) {
        if (stringEndsWith(text, suffix.string())) return suffix.string();
    }
    return {};
}

bool stringContainsString(const String& text, const String& part, uint64_t options) {
    if (text.isNull() || part.isEmpty()) return false;
    if ((options & kCaseInsensitiveSearch) == 0) return text.find(part) != String::npos;
    return folded(text).find(folded(part)) != std::u16string::npos;
}

bool stringContainsStrings(const String& text, const Array& parts, uint64_t options) {
    for (const Value& part : parts) {
        if (stringContainsString(text, part.string(), options)) return true;
    }
    return false;
}

char16_t firstCharacter(const String& text) {
    return text.isEmpty() ? u'\0' : text.view().front();
}
char16_t secondCharacter(const String& text) {
    return text.length() < 2 ? u'\0' : text.view()[1];
}
char16_t lastCharacter(const String& text) {
    return text.isEmpty() ? u'\0' : text.view().back();
}

Value firstObject(const Array& array) {
    return array.isEmpty() ? Value() : array.objectAt(0);
}
Value lastObject(const Array& array) {
    return array.isEmpty() ? Value() : array.objectAt(array.count() - 1);
}

void exchangeEntries(const Array& array, int64_t first, int64_t second, int64_t count) {
    Array entries = array;
    for (int64_t pair = 0; pair < count; ++pair) {
        entries.exchange(static_cast<size_t>(first + pair), static_cast<size_t>(second + pair));
    }
}

String stringWithInteger(int64_t number) {
    return Number(number).text();
}
Value numberWithInteger(int64_t number) {
    return Number(number);
}
String stringWithFloat(double number) {
    return Number(number).text();
}
bool isEven(int64_t number) {
    return (number & 1) == 0;
}
bool isNumber(const Value& value) {
    return value.isNumber();
}
bool isString(const Value& value) {
    return value.isString();
}

double floatWithDecimalComma(const String& text) {
    std::u16string units(text.view());
    std::replace(units.begin(), units.end(), u',', u'.');
    return String(units).floatValue();
}

}  // namespace vornaset
