#include "support/exception.h"
#include "support/values_collections.h"

namespace vornaset {

DictionarySource::~DictionarySource() = default;

/// Either keys with their values, or a source that stands for them until the first edit.
class DictionaryBody {
  public:
    explicit DictionaryBody(Mutability changes) : mutability(changes) {}

    size_t count() const { return source ? source->count() : keys.count(); }
    String keyAt(size_t index) const { return source ? source->keyAt(index) : keys.keyAt(index); }
    Value valueAt(size_t index) const { return source ? source->valueAt(index) : values[index]; }

    void set(const String& key, Value value) {
        if (key.isNull()) throw InvalidArgumentException("a null key can't be set in a dictionary");
        if (value.isNull()) {
            throw InvalidArgumentException("a null value can't be set for the key \"" + key.utf8() + "\"");
        }
        const size_t index = keys.indexOf(key);
        if (index != KeyTable::npos) {
            values[index] = std::move(value);
        } else {
            values.push_back(std::move(value));
            keys.append(key);
        }
    }

    /// When the source gives a null the view stays as it was.
    void readWholeSource() {
        DictionaryBody whole(mutability);
        for (size_t index = 0; index < source->count(); ++index)
            whole.set(source->keyAt(index), source->valueAt(index));
        keys = std::move(whole.keys);
        values = std::move(whole.values);
        source = nullptr;
    }

    KeyTable keys;
    std::vector<Value> values;
    std::shared_ptr<const DictionarySource> source;
    Mutability mutability;
};

namespace {

std::shared_ptr<DictionaryBody> makeBody(std::initializer_list<Dictionary::Entry> entries, Mutability mutability) {
    auto body = std::make_shared<DictionaryBody>(mutability);
    for (const auto& [key, value] : entries) body->set(key, value);
    return body;
}

void checkIndex(size_t index, size_t count) {
    if (index >= count) {
        throw RangeException("index " + std::to_string(index) + " beyond the end of a dictionary of " +
                             std::to_string(count));
    }
}

}  // namespace

Dictionary Dictionary::make() {
    return Dictionary(makeBody({}, Mutability::fixed));
}
Dictionary Dictionary::make(std::initializer_list<Entry> entries) {
    return Dictionary(makeBody(entries, Mutability::fixed));
}
Dictionary Dictionary::makeMutable() {
    return Dictionary(makeBody({}, Mutability::changeable));
}
Dictionary Dictionary::makeMutable(std::initializer_list<Entry> entries) {
    return Dictionary(makeBody(entries, Mutability::changeable));
}

Dictionary Dictionary::view(std::shared_ptr<const DictionarySource> source, Mutability mutability) {
    if (!source) throw InvalidArgumentException("a view needs a source");
    auto body = std::make_shared<DictionaryBody>(mutability);
    body->source = std::move(source);
    return Dictionary(std::move(body));
}

bool Dictionary::isMutable() const noexcept {
    return body_ && body_->mutability == Mutability::changeable;
}
bool Dictionary::isView() const noexcept {
    return body_ && body_->source;
}
size_t Dictionary::count() const {
    return body_ ? body_->count() : 0;
}

Value Dictionary::valueForKey(const String& key) const {
    if (!body_ || key.isNull()) return {};
    if (body_->source) return body_->source->find(key);
    const size_t index = body_->keys.indexOf(key);
    return index == KeyTable::npos ? Value() : body_->values[index];
}

bool Dictionary::contains(const String& key) const {
    if (!body_ || key.isNull()) return false;
    return body_->source ? !body_->source->find(key).isNull() : body_->keys.indexOf(key) != KeyTable::npos;
}

String Dictionary::keyAt(size_t index) const {
    if (!body_) return {};
    checkIndex(index, body_->count());
    return body_->keyAt(index);
}

Value Dictionary::valueAt(size_t index) const {
    if (!body_) return {};
    checkIndex(index, body_->count());
    return body_->valueAt(index);
}

Array Dictionary::keys() const {
    if (!body_) return {};
    std::vector<Value> keys;
    keys.reserve(body_->count());
    for (size_t index = 0; index < body_->count(); ++index) keys.emplace_back(body_->keyAt(index));
    return Array::make(std::move(keys));
}

DictionaryBody* Dictionary::bodyForEdit(const char* operation) {
    if (!body_) return nullptr;
    if (body_->mutability != Mutability::changeable) {
        throw UnrecognizedOperation(std::string(operation) + " of an immutable dictionary");
    }
    if (body_->source) body_->readWholeSource();
    return body_.get();
}

void Dictionary::setValue(const String& key, Value value) {
    if (auto* body = bodyForEdit("setValue")) body->set(key, std::move(value));
}

void Dictionary::removeKey(const String& key) {
    auto* body = bodyForEdit("removeKey");
    if (body == nullptr) return;
    const size_t index = body->keys.indexOf(key);
    if (index == KeyTable::npos) return;
    body->keys.removeAt(index);
    body->values.erase(body->values.begin() + static_cast<std::ptrdiff_t>(index));
}

void Dictionary::removeAll() {
    if (auto* body = bodyForEdit("removeAll")) {
        body->keys.removeAll();
        body->values.clear();
    }
}

Dictionary Dictionary::mutableCopy() const {
    if (!body_) return {};
    Dictionary copy = makeMutable();
    for (size_t index = 0; index < body_->count(); ++index) copy.body_->set(body_->keyAt(index), body_->valueAt(index));
    return copy;
}

bool Dictionary::operator==(const Dictionary& other) const {
    if (body_ == other.body_) return true;
    if (!body_ || !other.body_ || count() != other.count()) return false;
    for (size_t index = 0; index < count(); ++index) {
        const Value theirs = other.valueForKey(keyAt(index));
        if (theirs.isNull() || !(valueAt(index) == theirs)) return false;
    }
    return true;
}

}  // namespace vornaset
