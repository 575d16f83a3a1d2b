#pragma once
// What is found in a document: sets of objects, and lists that don't keep them.

#include <memory>
#include <unordered_set>
#include <vector>

#include "pdf/object_collections.h"

namespace vornaset {

/// Distinct objects in the order in which they came. Two equal objects are two.
class ObjectSet {
  public:
    /// A null object is nothing.
    void add(const Handle<MyPDFObj>& object) {
        if (object && known_.insert(object.get()).second) members_.push_back(object);
    }
    bool contains(const Handle<MyPDFObj>& object) const { return known_.contains(object.get()); }
    size_t count() const noexcept { return members_.size(); }
    const std::vector<Handle<MyPDFObj>>& members() const noexcept { return members_; }

  private:
    std::unordered_set<const MyPDFObj*> known_;
    std::vector<Handle<MyPDFObj>> members_;
};

/// A list that doesn't keep what it lists: an object that has gone is null there. Copying the handle shares the list.
class WeakObjectList {
  public:
    WeakObjectList() noexcept = default;  ///< null
    static WeakObjectList make() {
        WeakObjectList list;
        list.entries_ = std::make_shared<std::vector<WeakHandle<MyPDFObj>>>();
        return list;
    }
    bool isNull() const noexcept { return entries_ == nullptr; }
    explicit operator bool() const noexcept { return entries_ != nullptr; }
    size_t count() const noexcept { return entries_ ? entries_->size() : 0; }
    /// Throws RangeException for a place outside; null for a null list.
    Handle<MyPDFObj> objectAt(size_t index) const {
        if (!entries_) return nullptr;
        if (index >= entries_->size()) raiseBeyondEnd(index, entries_->size());
        return (*entries_)[index].lock();
    }
    void add(const Handle<MyPDFObj>& object) {
        if (entries_) entries_->emplace_back(object);
    }

  private:
    std::shared_ptr<std::vector<WeakHandle<MyPDFObj>>> entries_;
};

}  // namespace vornaset
