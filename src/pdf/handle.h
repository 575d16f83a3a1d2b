#pragma once
// The one nullable handle of the PDF toolkit. An absent object answers every operation with absent, zero or false and
// takes every setting without effect, so nobody asks for null before a call: Handle's arrow leads to a stand-in.

#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "support/ref.h"

namespace vornaset {

/// Counts the handles on an object. T::destroy(const T*) ends an object whose last handle has gone.
class Shared {
  public:
    Shared() = default;
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    void retain() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
    /// True when the last handle has gone.
    bool release() const noexcept { return count_.fetch_sub(1, std::memory_order_acq_rel) == 1; }
    /// How many handles there are.
    uint32_t useCount() const noexcept { return count_.load(std::memory_order_relaxed); }

  private:
    mutable std::atomic<uint32_t> count_{1};
};

/// The stand-in for an absent object of class T: answers absent, zero or false, and forgets what it is given. One for
/// each class, never counted, never destroyed by a handle.
template <class T>
T& absentObject();

/// A shared handle on an object of the toolkit, or null. A handle on a class converts to one on its base.
template <class T>
class Handle {
  public:
    constexpr Handle() noexcept = default;
    constexpr Handle(std::nullptr_t) noexcept {}
    /// Takes over the one count that a new object comes with.
    static Handle adopt(T* object) noexcept {
        Handle handle;
        handle.object_ = object;
        return handle;
    }
    /// One handle more. Null for null and for a stand-in.
    static Handle share(T* object) noexcept {
        if (object == nullptr || object->isAbsent()) return nullptr;
        object->retain();
        return adopt(object);
    }
    Handle(const Handle& other) noexcept : object_(other.object_) {
        if (object_ != nullptr) object_->retain();
    }
    Handle(Handle&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U>
    requires(!std::same_as<U, T> && std::derived_from<U, T>) Handle(const Handle<U>& other)
    noexcept : object_(other.get()) {
        if (object_ != nullptr) object_->retain();
    }
    template <class U>
    requires(!std::same_as<U, T> && std::derived_from<U, T>) Handle(Handle<U>&& other)
    noexcept : object_(other.detach()) {}
    Handle& operator=(Handle other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Handle() {
        if (object_ != nullptr && object_->release()) T::destroy(object_);
    }

    /// Null for a null handle.
    T* get() const noexcept { return object_; }
    /// The object, or the stand-in for an absent one.
    T* operator->() const noexcept { return object_ != nullptr ? object_ : &absentObject<T>(); }
    T& operator*() const noexcept { return *operator->(); }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// The same object, not an equal one.
    bool operator==(const Handle& other) const noexcept { return object_ == other.object_; }
    bool operator==(std::nullptr_t) const noexcept { return object_ == nullptr; }

    /// Gives the count away with the pointer; the handle is null from here on.
    T* detach() noexcept { return std::exchange(object_, nullptr); }

  private:
    T* object_ = nullptr;
};

/// What weak handles on one object share. The object clears it when it goes. For one thread.
struct WeakAnchor : public Counted {
    explicit WeakAnchor(void* target) : object(target) {}
    static void destroy(const WeakAnchor* anchor) noexcept { delete anchor; }
    void* object;
};

/// Knows an object without keeping it: null once the object has gone. T is the class that the handle was made for.
template <class T>
class WeakHandle {
  public:
    WeakHandle() noexcept = default;
    WeakHandle(const Handle<T>& handle) {
        if (handle) anchor_ = handle->weakAnchor();
    }
    Handle<T> lock() const noexcept { return Handle<T>::share(get()); }
    /// The object without a handle on it, or null.
    T* get() const noexcept {
        return anchor_ && anchor_->object != nullptr ? static_cast<T*>(static_cast<RootOf<T>*>(anchor_->object))
                                                     : nullptr;
    }

  private:
    template <class U>
    using RootOf = typename U::Root;

    Ref<WeakAnchor> anchor_;
};

}  // namespace vornaset
