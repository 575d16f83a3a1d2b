#pragma once
// The lists and maps of the object model: shared by reference, null answers zero and absent, and edits of null do
// nothing.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "pdf/pdf_obj.h"

namespace vornaset {

/// Throw RangeException, InvalidArgumentException.
[[noreturn]] void raiseBeyondEnd(size_t index, size_t count);
[[noreturn]] void raiseAbsentEntry();

/// An ordered list of objects. This is a handle: copying it shares the list, and a constant one still edits it. Indices
/// count from 0.
template <class T>
class ObjectList {
  public:
    ObjectList() noexcept = default;  ///< null
    ObjectList(std::nullptr_t) noexcept {}
    static ObjectList make() { return ObjectList(std::make_shared<std::vector<Handle<T>>>()); }
    /// Throws InvalidArgumentException for a null entry.
    static ObjectList make(std::vector<Handle<T>> entries) {
        for (const Handle<T>& entry : entries) {
            if (!entry) raiseAbsentEntry();
        }
        return ObjectList(std::make_shared<std::vector<Handle<T>>>(std::move(entries)));
    }

    bool isNull() const noexcept { return entries_ == nullptr; }
    explicit operator bool() const noexcept { return entries_ != nullptr; }
    size_t count() const noexcept { return entries_ ? entries_->size() : 0; }
    bool isEmpty() const noexcept { return count() == 0; }

    /// Throws RangeException for a place outside; null for a null list.
    Handle<T> objectAt(size_t index) const {
        if (!entries_) return nullptr;
        checkBelow(index, count());
        return (*entries_)[index];
    }
    Handle<T> operator[](size_t index) const { return objectAt(index); }
    /// Null for an empty list.
    Handle<T> first() const { return isEmpty() ? nullptr : entries_->front(); }
    Handle<T> last() const { return isEmpty() ? nullptr : entries_->back(); }

    /// These throw InvalidArgumentException for a null object and RangeException for a place outside.
    void add(Handle<T> object) const {
        if (!entries_) return;
        if (!object) raiseAbsentEntry();
        entries_->push_back(std::move(object));
    }
    /// index <= count().
    void insert(size_t index, Handle<T> object) const {
        if (!entries_) return;
        if (!object) raiseAbsentEntry();
        if (index > count()) raiseBeyondEnd(index, count());
        entries_->insert(entries_->begin() + static_cast<ptrdiff_t>(index), std::move(object));
    }
    void replace(size_t index, Handle<T> object) const {
        if (!entries_) return;
        if (!object) raiseAbsentEntry();
        checkBelow(index, count());
        (*entries_)[index] = std::move(object);
    }
    /// Throws RangeException when the range leaves the list.
    void removeRange(size_t from, size_t number) const {
        if (!entries_) return;
        if (from > count() || number > count() - from) raiseBeyondEnd(from + number, count());
        const auto start = entries_->begin() + static_cast<ptrdiff_t>(from);
        entries_->erase(start, start + static_cast<ptrdiff_t>(number));
    }
    void removeLast() const {
        if (!isEmpty()) entries_->pop_back();
    }
    void removeAll() const {
        if (entries_) entries_->clear();
    }
    void reserve(size_t number) const {
        if (entries_) entries_->reserve(number);
    }

    /// For range loops; the list must not be edited meanwhile.
    const Handle<T>* begin() const noexcept { return entries_ ? entries_->data() : nullptr; }
    const Handle<T>* end() const noexcept { return entries_ ? entries_->data() + entries_->size() : nullptr; }

    bool isSameObject(const ObjectList& other) const noexcept { return entries_ == other.entries_; }
    /// How many handles share this list.
    long useCount() const noexcept { return entries_.use_count(); }

  private:
    explicit ObjectList(std::shared_ptr<std::vector<Handle<T>>> entries) noexcept : entries_(std::move(entries)) {}
    static void checkBelow(size_t index, size_t count) {
        if (index >= count) raiseBeyondEnd(index, count);
    }

    std::shared_ptr<std::vector<Handle<T>>> entries_;
};

/// Objects by text keys, in the order of their first insertion. A handle like ObjectList.
class ObjectMap {
  public:
    ObjectMap() noexcept = default;  ///< null
    ObjectMap(std::nullptr_t) noexcept {}
    static ObjectMap make() { return ObjectMap(std::make_shared<Body>()); }

    bool isNull() const noexcept { return body_ == nullptr; }
    explicit operator bool() const noexcept { return body_ != nullptr; }
    size_t count() const noexcept { return body_ ? body_->values.size() : 0; }

    /// Null when the key isn't there.
    Handle<MyPDFObj> objectForKey(const String& key) const;
    /// A key that is there keeps its place. A null object removes the key. Throws InvalidArgumentException for a null
    /// key.
    void setObject(Handle<MyPDFObj> object, const String& key) const;
    void removeAll() const;

    /// Throw RangeException for a place outside; null for a null map.
    String keyAt(size_t index) const;
    Handle<MyPDFObj> objectAt(size_t index) const;
    /// Without a check and without a handle: index < count().
    const String& keyRefAt(size_t index) const noexcept { return body_->keys.keyAt(index); }
    MyPDFObj& objectRefAt(size_t index) const noexcept { return *body_->values[index].get(); }

    /// "{\n    key = label;\n}", an object being told by its label.
    String description() const;

    bool isSameObject(const ObjectMap& other) const noexcept { return body_ == other.body_; }
    /// How many handles share this map.
    long useCount() const noexcept { return body_.use_count(); }

  private:
    struct Body {
        KeyTable keys;
        std::vector<Handle<MyPDFObj>> values;
    };
    explicit ObjectMap(std::shared_ptr<Body> body) noexcept : body_(std::move(body)) {}

    std::shared_ptr<Body> body_;
};

}  // namespace vornaset
