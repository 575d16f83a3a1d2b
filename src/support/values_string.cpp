#include "support/values_string.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

#include "support/exception.h"
#include "support/unicode.h"

namespace vornaset {

namespace {

[[noreturn]] void throwRange(size_t from, size_t count, size_t length) {
    throw RangeException("range of " + std::to_string(count) + " from " + std::to_string(from) +
                         " beyond the end of a text of " + std::to_string(length));
}

[[noreturn]] void throwIndex(size_t index, size_t length) {
    throw RangeException("position " + std::to_string(index) + " beyond the end of a text of " +
                         std::to_string(length));
}

void checkRange(size_t from, size_t count, size_t length) {
    if (from > length || count > length - from) throwRange(from, count, length);
}

bool isAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<uint8_t>(byte) < 0x80; });
}

bool isSpace(char16_t unit) {
    return unit == ' ' || (unit >= 9 && unit <= 13) || unit == 0x85 || unit == 0xA0 || unit == 0x2028 ||
           unit == 0x2029 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x202F || unit == 0x3000;
}

std::u16string_view withoutLeadingSpace(std::u16string_view text) {
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    return text;
}

/// The ASCII that a number can be written with, from the start of a text. Longer than any number needs to be for its
/// value to be settled but for zeros, which nobody writes by the hundred.
struct NumberBytes {
    char bytes[400];
    size_t length = 0;
};

NumberBytes leadingNumber(std::u16string_view text) {
    NumberBytes number;
    text = withoutLeadingSpace(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return number;
    }
    for (const char16_t unit : text) {
        const bool fits =
            (unit >= '0' && unit <= '9') || unit == '.' || unit == '-' || unit == '+' || unit == 'e' || unit == 'E';
        if (!fits || number.length == sizeof number.bytes) break;
        number.bytes[number.length++] = static_cast<char>(unit);
    }
    return number;
}

template <class T>
T floatingPointValue(std::u16string_view text) noexcept {
    const NumberBytes number = leadingNumber(text);
    T value = 0;
    const auto [end, error] = std::from_chars(number.bytes, number.bytes + number.length, value);
    if (error == std::errc::invalid_argument) return 0;
    if (error == std::errc::result_out_of_range) {
        const std::string_view read(number.bytes, static_cast<size_t>(end - number.bytes));
        const size_t exponent = read.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos ? exponent + 1 < read.size() && read[exponent + 1] == '-'
                                                             : read.find_first_of("123456789.") == read.find('.');
        const T magnitude = tiny ? T(0) : std::numeric_limits<T>::infinity();
        return read.starts_with('-') ? -magnitude : magnitude;
    }
    return value;
}

}  // namespace

Ref<const StringBody> StringBody::makeUninitialised(size_t length, char16_t** units) {
    void* memory = ::operator new(sizeof(StringBody) + length * sizeof(char16_t));
    auto* body = new (memory) StringBody(length);
    *units = reinterpret_cast<char16_t*>(body + 1);
    return Ref<const StringBody>::adopt(body);
}

Ref<const StringBody> StringBody::make(std::u16string_view units) {
    char16_t* target = nullptr;
    Ref<const StringBody> body = makeUninitialised(units.size(), &target);
    if (!units.empty()) std::memcpy(target, units.data(), units.size() * sizeof(char16_t));
    return body;
}

void StringBody::destroy(const StringBody* body) noexcept {
    body->~StringBody();
    ::operator delete(const_cast<StringBody*>(body));
}

size_t StringBody::hash() const noexcept {
    size_t known = hash_.load(std::memory_order_relaxed);
    if (known == 0) {
        known = String::hashOf({units(), length_});
        hash_.store(known, std::memory_order_relaxed);
    }
    return known;
}

String String::make(std::u16string_view units) {
    static const String empty{StringBody::make({})};
    return units.empty() ? empty : String(StringBody::make(units));
}

String::String(const char* utf8) {
    if (utf8 != nullptr) *this = fromUTF8(utf8);
}

String::String(const char16_t* units) {
    if (units != nullptr) *this = make(units);
}

String::String(std::u16string_view units) {
    *this = make(units);
}

String String::fromUTF8(std::string_view bytes) {
    if (bytes.empty()) return make({});
    if (isAscii(bytes)) {
        char16_t* units = nullptr;
        Ref<const StringBody> body = StringBody::makeUninitialised(bytes.size(), &units);
        std::copy(bytes.begin(), bytes.end(), units);
        return String(std::move(body));
    }
    std::u16string units;
    return appendUTF16(units, bytes, DamagedText::refuse) ? make(units) : String();
}

String String::fromDamagedUTF8(std::string_view bytes) {
    std::u16string units;
    appendUTF16(units, bytes, DamagedText::replace);
    return make(units);
}

char16_t String::charAt(size_t index) const {
    if (isNull()) return 0;
    if (index >= length()) throwIndex(index, length());
    return view()[index];
}

String String::substring(size_t from) const {
    if (isNull()) return {};
    checkRange(from, 0, length());
    return substring(from, length() - from);
}

String String::substring(size_t from, size_t count) const {
    if (isNull()) return {};
    checkRange(from, count, length());
    return count == length() ? *this : make(view().substr(from, count));
}

size_t String::find(const String& text, size_t from) const noexcept {
    return text.isEmpty() ? npos : view().find(text.view(), from);
}

std::string String::utf8() const {
    std::string result;
    appendUTF8(result, view(), DamagedText::replace);
    return result;
}

std::optional<std::string> String::exactUTF8() const {
    std::string result;
    if (isNull() || !appendUTF8(result, view(), DamagedText::refuse)) return std::nullopt;
    return result;
}

int64_t String::integerValue() const noexcept {
    std::u16string_view text = withoutLeadingSpace(view());
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    const uint64_t limit = static_cast<uint64_t>(INT64_MAX) + (negative ? 1 : 0);
    uint64_t magnitude = 0;
    for (const char16_t unit : text) {
        if (unit < '0' || unit > '9') break;
        const uint64_t digit = unit - u'0';
        if (magnitude > (limit - digit) / 10) {
            magnitude = limit;
            break;
        }
        magnitude = magnitude * 10 + digit;
    }
    return static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
}

int32_t String::intValue() const noexcept {
    return static_cast<int32_t>(std::clamp<int64_t>(integerValue(), INT32_MIN, INT32_MAX));
}

double String::doubleValue() const noexcept {
    return floatingPointValue<double>(view());
}
float String::floatValue() const noexcept {
    return floatingPointValue<float>(view());
}

bool String::operator<(const String& other) const noexcept {
    if (isNull() || other.isNull()) return isNull() && !other.isNull();
    return view() < other.view();
}

String String::operator+(const String& tail) const {
    if (tail.isEmpty()) return isNull() ? make({}) : *this;
    if (isEmpty()) return tail;
    char16_t* units = nullptr;
    Ref<const StringBody> body = StringBody::makeUninitialised(length() + tail.length(), &units);
    std::memcpy(units, view().data(), length() * sizeof(char16_t));
    std::memcpy(units + length(), tail.view().data(), tail.length() * sizeof(char16_t));
    return String(std::move(body));
}

size_t String::hash() const noexcept {
    return body_ ? body_->hash() : 0;
}

/// Four units at a time through a multiply and a shift: keys are short, and their differences stand anywhere.
size_t String::hashOf(std::u16string_view units) noexcept {
    constexpr uint64_t kFactor = 0x9E3779B97F4A7C15;
    uint64_t hash = units.size() * kFactor + 1;
    size_t at = 0;
    for (; at < units.size(); at += 4) {
        uint64_t chunk = 0;
        std::memcpy(&chunk, units.data() + at, std::min<size_t>(4, units.size() - at) * sizeof(char16_t));
        hash = (hash ^ chunk) * kFactor;
        hash ^= hash >> 32;
    }
    return hash == 0 ? 1 : hash;
}

MutableString::MutableString(const String& text) {
    if (!text.isNull()) text_ = std::make_shared<std::u16string>(text.view());
}

char16_t MutableString::charAt(size_t index) const {
    if (!text_) return 0;
    if (index >= text_->size()) throwIndex(index, text_->size());
    return (*text_)[index];
}

String MutableString::substring(size_t from, size_t count) const {
    if (!text_) return {};
    checkRange(from, count, text_->size());
    return String(view().substr(from, count));
}

void MutableString::insert(size_t at, std::u16string_view text) {
    if (!text_) return;
    checkRange(at, 0, text_->size());
    text_->insert(at, text);
}

void MutableString::erase(size_t from, size_t count) {
    if (!text_) return;
    checkRange(from, count, text_->size());
    text_->erase(from, count);
}

void MutableString::replace(size_t from, size_t count, std::u16string_view text) {
    if (!text_) return;
    checkRange(from, count, text_->size());
    text_->replace(from, count, text);
}

void MutableString::append(std::u16string_view text) {
    if (text_) text_->append(text);
}

void MutableString::append(char16_t unit) {
    if (text_) text_->push_back(unit);
}

void MutableString::setString(std::u16string_view text) {
    if (text_) text_->assign(text);
}

}  // namespace vornaset
