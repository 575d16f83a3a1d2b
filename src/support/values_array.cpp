#include <limits>

#include "support/exception.h"
#include "support/values_collections.h"

namespace vornaset {

ArraySource::~ArraySource() = default;

/// Either entries, or a source that stands for them until the first edit.
class ArrayBody {
  public:
    ArrayBody(std::vector<Value> values, Mutability changes) : entries(std::move(values)), mutability(changes) {}
    ArrayBody(std::shared_ptr<const ArraySource> origin, Mutability changes)
        : source(std::move(origin)), mutability(changes) {}

    size_t count() const { return source ? source->count() : entries.size(); }

    std::vector<Value> entries;
    std::shared_ptr<const ArraySource> source;
    Mutability mutability;
};

namespace {

void checkIndex(size_t index, size_t count) {
    if (index >= count) {
        throw RangeException("index " + std::to_string(index) + " beyond the end of an array of " +
                             std::to_string(count));
    }
}

void checkPresent(const Value& value) {
    if (value.isNull()) throw InvalidArgumentException("a null value can't be added to an array");
}

std::shared_ptr<ArrayBody> makeBody(std::vector<Value> entries, Mutability mutability) {
    for (const Value& entry : entries) checkPresent(entry);
    return std::make_shared<ArrayBody>(std::move(entries), mutability);
}

}  // namespace

Array Array::make() {
    return Array(makeBody({}, Mutability::fixed));
}
Array Array::make(std::vector<Value> entries) {
    return Array(makeBody(std::move(entries), Mutability::fixed));
}
Array Array::make(std::initializer_list<Value> entries) {
    return make(std::vector<Value>(entries));
}
Array Array::makeMutable() {
    return Array(makeBody({}, Mutability::changeable));
}
Array Array::makeMutable(std::vector<Value> entries) {
    return Array(makeBody(std::move(entries), Mutability::changeable));
}
Array Array::makeMutable(std::initializer_list<Value> entries) {
    return makeMutable(std::vector<Value>(entries));
}

Array Array::view(std::shared_ptr<const ArraySource> source, Mutability mutability) {
    if (!source) throw InvalidArgumentException("a view needs a source");
    return Array(std::make_shared<ArrayBody>(std::move(source), mutability));
}

bool Array::isMutable() const noexcept {
    return body_ && body_->mutability == Mutability::changeable;
}
bool Array::isView() const noexcept {
    return body_ && body_->source;
}
size_t Array::count() const {
    return body_ ? body_->count() : 0;
}

Value Array::objectAt(size_t index) const {
    if (!body_) return {};
    checkIndex(index, body_->count());
    return body_->source ? body_->source->objectAt(index) : body_->entries[index];
}

std::vector<Value>* Array::entriesForEdit(const char* operation) {
    if (!body_) return nullptr;
    if (body_->mutability != Mutability::changeable) {
        throw UnrecognizedOperation(std::string(operation) + " of an immutable array");
    }
    if (body_->source) {
        std::vector<Value> entries;
        const size_t count = body_->source->count();
        entries.reserve(count);
        for (size_t index = 0; index < count; ++index) entries.push_back(body_->source->objectAt(index));
        body_->entries = std::move(entries);
        body_->source = nullptr;
    }
    return &body_->entries;
}

void Array::add(Value value) {
    if (auto* entries = entriesForEdit("add")) {
        checkPresent(value);
        entries->push_back(std::move(value));
    }
}

void Array::insert(size_t index, Value value) {
    if (auto* entries = entriesForEdit("insert")) {
        checkPresent(value);
        if (index != entries->size()) checkIndex(index, entries->size());
        entries->insert(entries->begin() + static_cast<std::ptrdiff_t>(index), std::move(value));
    }
}

void Array::replace(size_t index, Value value) {
    if (auto* entries = entriesForEdit("replace")) {
        checkPresent(value);
        checkIndex(index, entries->size());
        (*entries)[index] = std::move(value);
    }
}

void Array::exchange(size_t first, size_t second) {
    if (auto* entries = entriesForEdit("exchange")) {
        checkIndex(first, entries->size());
        checkIndex(second, entries->size());
        std::swap((*entries)[first], (*entries)[second]);
    }
}

void Array::removeAt(size_t index) {
    if (auto* entries = entriesForEdit("removeAt")) {
        checkIndex(index, entries->size());
        entries->erase(entries->begin() + static_cast<std::ptrdiff_t>(index));
    }
}

void Array::removeAll() {
    if (auto* entries = entriesForEdit("removeAll")) entries->clear();
}

Array Array::mutableCopy() const {
    if (!body_) return {};
    std::vector<Value> entries;
    entries.reserve(count());
    for (const Value& entry : *this) entries.push_back(entry);
    return makeMutable(std::move(entries));
}

bool Array::operator==(const Array& other) const {
    if (body_ == other.body_) return true;
    if (!body_ || !other.body_ || count() != other.count()) return false;
    for (size_t index = 0; index < count(); ++index) {
        if (!(objectAt(index) == other.objectAt(index))) return false;
    }
    return true;
}

}  // namespace vornaset
