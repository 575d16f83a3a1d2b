#include <algorithm>

#include "support/exception.h"
#include "support/values_collections.h"

namespace vornaset {

namespace {

/// Deeper containers print as "...", so that one which holds itself has a description too.
constexpr size_t kDescriptionDepth = 32;

class NothingObject : public Object {
  public:
    String description() const override { return "<null>"; }
};

bool isPlainWord(std::u16string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char16_t unit) {
        return (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') ||
               unit == '_' || unit == '.' || unit == '/';
    });
}

std::u16string quoted(std::u16string_view text) {
    if (isPlainWord(text)) return std::u16string(text);
    std::u16string result = u"\"";
    for (const char16_t unit : text) {
        if (unit == '"' || unit == '\\') result += u'\\';
        if (unit == '\n') {
            result += u"\\n";
        } else {
            result += unit;
        }
    }
    return result + u"\"";
}

std::u16string hexText(std::string_view bytes) {
    static constexpr char16_t kDigits[] = u"0123456789abcdef";
    std::u16string result = u"<";
    for (const char byte : bytes) {
        result += kDigits[static_cast<uint8_t>(byte) >> 4];
        result += kDigits[static_cast<uint8_t>(byte) & 15];
    }
    return result + u">";
}

void describe(std::u16string& result, const Value& value, size_t depth);

void describeArray(std::u16string& result, const Array& array, size_t depth) {
    result += u"(\n";
    for (size_t index = 0; index < array.count(); ++index) {
        result.append((depth + 1) * 4, u' ');
        describe(result, array.objectAt(index), depth + 1);
        result += index + 1 < array.count() ? u",\n" : u"\n";
    }
    result.append(depth * 4, u' ');
    result += u")";
}

void describeDictionary(std::u16string& result, const Dictionary& dictionary, size_t depth) {
    result += u"{\n";
    for (size_t index = 0; index < dictionary.count(); ++index) {
        result.append((depth + 1) * 4, u' ');
        result += quoted(dictionary.keyAt(index).view());
        result += u" = ";
        describe(result, dictionary.valueAt(index), depth + 1);
        result += u";\n";
    }
    result.append(depth * 4, u' ');
    result += u"}";
}

/// Inside a container a text that isn't one word stands in quotation marks.
void describe(std::u16string& result, const Value& value, size_t depth) {
    if ((value.isArray() || value.isDictionary()) && depth >= kDescriptionDepth) {
        result += u"...";
    } else if (value.isArray()) {
        describeArray(result, value.array(), depth);
    } else if (value.isDictionary()) {
        describeDictionary(result, value.dictionary(), depth);
    } else if (value.isString() || value.isDate()) {
        const String text = value.description();
        result += depth == 0 ? std::u16string(text.view()) : quoted(text.view());
    } else {
        result += value.description().view();
    }
}

template <class T, class Held>
const T& heldOrNull(const Held& held) {
    static const T absent{};
    const T* found = std::get_if<T>(&held);
    return found != nullptr ? *found : absent;
}

Array answersOfEntries(const Array& array, const String& key) {
    Array answers = Array::makeMutable();
    for (const Value& entry : array) answers.add(entry.valueForKey(key));
    return answers;
}

}  // namespace

Object::~Object() = default;

String Object::description() const {
    return "<object>";
}

Value Object::valueForKey(const String& key) const {
    throw UnrecognizedOperation("the object " + description().utf8() + " has no key \"" + key.utf8() + "\"");
}

// Out of line: asking the argument and moving it are two steps in this order, which a delegating call doesn't promise.
Value::Value(String text) {
    if (!text.isNull()) held_ = std::move(text);
}

Value::Value(Data data) {
    if (!data.isNull()) held_ = std::move(data);
}

Value::Value(Array array) {
    if (!array.isNull()) held_ = std::move(array);
}

Value::Value(Dictionary dictionary) {
    if (!dictionary.isNull()) held_ = std::move(dictionary);
}

Value::Value(std::shared_ptr<Object> object) {
    if (object) held_ = std::move(object);
}

// In one place, since each is a table of eight kinds, which costs more inlined at every use than a call does.
Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

const Value& Value::nothing() {
    static const Value shared{std::make_shared<NothingObject>()};
    return shared;
}

const String& Value::string() const noexcept {
    return heldOrNull<String>(held_);
}
Number Value::number() const noexcept {
    return heldOrNull<Number>(held_);
}
const Data& Value::data() const noexcept {
    return heldOrNull<Data>(held_);
}
Date Value::date() const noexcept {
    return heldOrNull<Date>(held_);
}
const Array& Value::array() const noexcept {
    return heldOrNull<Array>(held_);
}
const Dictionary& Value::dictionary() const noexcept {
    return heldOrNull<Dictionary>(held_);
}
const std::shared_ptr<Object>& Value::object() const noexcept {
    return heldOrNull<std::shared_ptr<Object>>(held_);
}

std::optional<int64_t> Value::integerReading() const noexcept {
    if (isString()) return string().integerValue();
    if (isNumber()) return number().integerValue();
    return std::nullopt;
}

std::optional<int32_t> Value::intReading() const noexcept {
    if (isString()) return string().intValue();
    if (isNumber()) return number().intValue();
    return std::nullopt;
}

Value Value::valueForKey(const String& key) const {
    if (isNull()) return {};
    if (isDictionary()) return dictionary().valueForKey(key);
    if (isArray()) return answersOfEntries(array(), key);
    if (isObject()) return object()->valueForKey(key);
    throw UnrecognizedOperation("the value " + description().utf8() + " has no key \"" + key.utf8() + "\"");
}

String Value::description() const {
    if (isNull()) return "(null)";
    if (isString()) return string();
    if (isNumber()) return number().text();
    if (isData()) return hexText(data().view());
    if (isDate()) return date().description();
    if (isObject()) return object()->description();
    std::u16string result;
    describe(result, *this, 0);
    return result;
}

bool Value::operator==(const Value& other) const {
    return held_ == other.held_;
}

bool Value::isSameObject(const Value& other) const noexcept {
    if (held_.index() != other.held_.index()) return false;
    if (isString()) return string().isSameObject(other.string());
    if (isData()) return data().isSameObject(other.data());
    if (isArray()) return array().isSameObject(other.array());
    if (isDictionary()) return dictionary().isSameObject(other.dictionary());
    return held_ == other.held_;
}

}  // namespace vornaset
