#pragma once
// The nullable shared handle under the values: one pointer, counted in the object itself.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace vornaset {

/// Counts the handles on an object. The count may change on several threads at once; what the object holds may not,
/// unless its own kind says so.
class Counted {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    void retain() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
    /// True when the last handle has gone and the object must be destroyed by the caller.
    bool release() const noexcept { return count_.fetch_sub(1, std::memory_order_acq_rel) == 1; }

  private:
    mutable std::atomic<uint32_t> count_{1};
};

/// A shared handle on a T derived from Counted, or null. T::destroy(const T*) ends the object. A new object comes with
/// one count, which `adopt` takes over.
template <class T>
class Ref {
  public:
    constexpr Ref() noexcept = default;
    constexpr Ref(std::nullptr_t) noexcept {}
    static Ref adopt(T* object) noexcept {
        Ref ref;
        ref.object_ = object;
        return ref;
    }
    Ref(const Ref& other) noexcept : object_(other.object_) {
        if (object_ != nullptr) object_->retain();
    }
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() {
        if (object_ != nullptr && object_->release()) T::destroy(object_);
    }

    T* get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// The same object, not an equal one.
    bool operator==(const Ref& other) const noexcept { return object_ == other.object_; }

  private:
    T* object_ = nullptr;
};

}  // namespace vornaset
