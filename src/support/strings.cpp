#include "support/strings.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <functional>
#include <unordered_map>

#include "support/attributed_string.h"

namespace vornaset {

namespace {

/// Without the marks that stand on letters: taken apart, the marks dropped.
icu::UnicodeString withoutDiacritics(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* decomposer = icu::Normalizer2::getNFDInstance(status);
    if (U_FAILURE(status)) return text;
    const icu::UnicodeString apart = decomposer->normalize(text, status);
    icu::UnicodeString bare;
    for (int32_t at = 0; at < apart.length(); at = apart.moveIndex32(at, 1)) {
        const UChar32 character = apart.char32At(at);
        if (u_charType(character) != U_NON_SPACING_MARK) bare.append(character);
    }
    return U_SUCCESS(status) ? bare : text;
}

/// What two texts have in common when they differ in nothing that the options ask to see.
std::u16string comparable(const String& text, uint64_t options) {
    icu::UnicodeString units(text.view().data(), static_cast<int32_t>(text.length()));
    if ((options & kDiacriticInsensitiveSearch) != 0) units = withoutDiacritics(units);
    if ((options & kCaseInsensitiveSearch) != 0) units.foldCase();
    return std::u16string(units.getBuffer(), static_cast<size_t>(units.length()));
}

bool occurs(std::u16string_view text, std::u16string_view part, uint64_t options) {
    if (part.empty()) return false;
    if ((options & kAnchoredSearch) == 0) return text.find(part) != std::u16string_view::npos;
    return (options & kBackwardsSearch) != 0 ? text.ends_with(part) : text.starts_with(part);
}

/// Equal for equal values, which is all that a table needs; containers share one.
struct ValueHash {
    size_t operator()(const Value& value) const {
        if (value.isString()) return value.string().hash();
        if (value.isNumber()) return value.number().hash();
        if (value.isData()) return std::hash<std::string_view>()(value.data().view());
        return 0;
    }
};

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
    if ((options & (kCaseInsensitiveSearch | kDiacriticInsensitiveSearch)) == 0) {
        return occurs(text.view(), part.view(), options);
    }
    return occurs(comparable(text, options), comparable(part, options), options);
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

Array arrayWithIndexRange(const Range& range) {
    return arrayWithIndexSet(IndexSet(range));
}
Array arrayWithIndexSet(const IndexSet& indices) {
    std::vector<Value> numbers;
    for (const Range& range : indices.ranges()) {
        for (int64_t offset = 0; offset < range.length; ++offset) numbers.emplace_back(range.location + offset);
    }
    return Array::makeMutable(std::move(numbers));
}
IndexSet indexSetWithIndex(int64_t index) {
    return IndexSet(Range{index, 1});
}

Array arrayWithDuplicates(const Array& array) {
    Array duplicates = Array::makeMutable();
    std::unordered_map<Value, size_t, ValueHash> counts;
    for (const Value& entry : array) {
        if (++counts[entry] == 2) duplicates.add(entry);
    }
    return duplicates;
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
bool isAttributedString(const Value& value) {
    return dynamic_cast<const AttributedString*>(value.object().get()) != nullptr;
}

char getBCD(uint32_t value, int position) {
    const unsigned shift = (static_cast<unsigned>(position) * 4) % 32;
    return static_cast<char>(((value >> shift) & 0x0F) | 0x30);
}

String stringWithFormat(const String& format, std::span<const FormatArgument> arguments) {
    return formatText(format, arguments);
}

double floatWithDecimalComma(const String& text) {
    std::u16string units(text.view());
    std::replace(units.begin(), units.end(), u',', u'.');
    return String(units).floatValue();
}

}  // namespace vornaset
