#pragma once
// Objects and references. Every object is a bundle of interfaces; a query for one returns a reference that the caller
// owns and gives back, or null when the object has no such interface.

#include <utility>

#include "host/api/identifiers.h"

class IPMUnknown {
  public:
    /// An interface of the same object with a reference for the caller; null when the object doesn't have it.
    virtual IPMUnknown* QueryInterface(PMIID interfaceId) = 0;
    virtual void AddRef() = 0;
    virtual void Release() = 0;

  protected:
    virtual ~IPMUnknown() = default;
};

/// Where a persistent object lives.
class IPMPersist : public IPMUnknown {
  public:
    static constexpr PMIID kDefaultIID = IID_IPMPERSIST;
    virtual IDataBase* GetDataBase() = 0;
    virtual UID GetUID() = 0;
    virtual ClassID GetClassID() = 0;
};

/// What a plug-in's own implementation derives from: an interface T with nothing added.
template <class T>
class CPMUnknown : public T {};

enum class Adopt { Reference };

/// The only way in which plug-in code holds a queried interface: one reference, given back at the end of the scope.
/// T names its interface in T::kDefaultIID.
template <class T>
class InterfacePtr {
  public:
    InterfacePtr() = default;

    /// Queries the interface of an object; null for a null object.
    explicit InterfacePtr(IPMUnknown* object, PMIID interfaceId = T::kDefaultIID) {
        if (object) interface_ = static_cast<T*>(object->QueryInterface(interfaceId));
    }

    /// Instantiates an object of a database under the interface; null for a null database.
    InterfacePtr(IDataBase* database, UID uid, PMIID interfaceId = T::kDefaultIID);
    explicit InterfacePtr(const UIDRef& object, PMIID interfaceId = T::kDefaultIID)
        : InterfacePtr(object.GetDataBase(), object.GetUID(), interfaceId) {}

    /// Takes over a reference that the caller owns.
    InterfacePtr(Adopt, T* reference) : interface_(reference) {}

    InterfacePtr(const InterfacePtr&) = delete;
    InterfacePtr& operator=(const InterfacePtr&) = delete;
    InterfacePtr(InterfacePtr&& other) noexcept : interface_(std::exchange(other.interface_, nullptr)) {}
    InterfacePtr& operator=(InterfacePtr&& other) noexcept {
        if (this != &other) {
            reset();
            interface_ = std::exchange(other.interface_, nullptr);
        }
        return *this;
    }
    ~InterfacePtr() { reset(); }

    void reset() {
        if (interface_) std::exchange(interface_, nullptr)->Release();
    }
    T* get() const { return interface_; }
    T* operator->() const { return interface_; }
    T& operator*() const { return *interface_; }
    explicit operator bool() const { return interface_ != nullptr; }

  private:
    T* interface_ = nullptr;
};
