#pragma once
// Value types of the border. Copied by value, compared by value, no ownership.

#include <cstddef>
#include <cstdint>
#include <vector>

class IDataBase;
class IPMUnknown;

/// A number with a kind: identifiers of different kinds don't mix.
template <class Tag>
class IDType {
  public:
    constexpr IDType() = default;
    constexpr explicit IDType(uint32_t value) : value_(value) {}
    constexpr uint32_t Get() const { return value_; }
    constexpr bool operator==(const IDType&) const = default;
    constexpr auto operator<=>(const IDType&) const = default;

  private:
    uint32_t value_ = 0;
};

struct UID_tag;
struct PMIID_tag;
struct ClassID_tag;
struct ServiceID_tag;
struct ActionID_tag;
struct ImplementationID_tag;

using UID = IDType<UID_tag>;  ///< names an object inside one database; 0 means none
using PMIID = IDType<PMIID_tag>;
using ClassID = IDType<ClassID_tag>;
using ServiceID = IDType<ServiceID_tag>;
using ActionID = IDType<ActionID_tag>;
using ImplementationID = IDType<ImplementationID_tag>;

inline constexpr UID kInvalidUID{};

using ErrorCode = int32_t;  ///< 0 is success
inline constexpr ErrorCode kSuccess = 0;
inline constexpr ErrorCode kFailure = 1;

using PMReal = double;

namespace K2 {
using UIFlags = int32_t;  ///< asks the host for more or less user interface
}  // namespace K2

struct PMPoint {
    PMReal x = 0;
    PMReal y = 0;
    bool operator==(const PMPoint&) const = default;
};

/// Left, top, right, bottom in points.
struct PMRect {
    PMReal left = 0;
    PMReal top = 0;
    PMReal right = 0;
    PMReal bottom = 0;

    constexpr PMRect() = default;
    constexpr PMRect(PMReal l, PMReal t, PMReal r, PMReal b) : left(l), top(t), right(r), bottom(b) {}

    PMReal Width() const { return right - left; }
    PMReal Height() const { return bottom - top; }
    /// Keep the left top corner.
    void SetWidth(PMReal width) { right = left + width; }
    void SetHeight(PMReal height) { bottom = top + height; }
    void Union(const PMRect& other) {
        left = left < other.left ? left : other.left;
        top = top < other.top ? top : other.top;
        right = right > other.right ? right : other.right;
        bottom = bottom > other.bottom ? bottom : other.bottom;
    }
    bool operator==(const PMRect&) const = default;
};

/// x' = a*x + c*y + tx, y' = b*x + d*y + ty.
struct PMMatrix {
    PMReal a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    bool operator==(const PMMatrix&) const = default;
};

/// The way in which every persistent object is named: a database and a UID, compared together.
class UIDRef {
  public:
    constexpr UIDRef() = default;
    constexpr UIDRef(IDataBase* database, UID uid) : database_(database), uid_(uid) {}

    constexpr IDataBase* GetDataBase() const { return database_; }
    constexpr UID GetUID() const { return uid_; }
    constexpr bool operator==(const UIDRef&) const = default;

    static const UIDRef gNull;  ///< null database, UID 0

  protected:
    IDataBase* database_ = nullptr;
    UID uid_;
};

extern const UIDRef kInvalidUIDRef;  ///< null database, UID 0

/// An ordered list of UIDs of one database, the target of every command.
class UIDList {
  public:
    UIDList() = default;
    explicit UIDList(IDataBase* database) : database_(database) {}
    UIDList(IDataBase* database, UID uid) : database_(database), uids_{uid} {}
    explicit UIDList(const UIDRef& object) : database_(object.GetDataBase()), uids_{object.GetUID()} {}
    explicit UIDList(IPMUnknown* object);  ///< the object itself; empty for null

    void Append(UID uid) { uids_.push_back(uid); }
    void Append(const UIDList& other) { uids_.insert(uids_.end(), other.uids_.begin(), other.uids_.end()); }
    bool Contains(UID uid) const;

    /// The reference at an index from 0; UIDRef::gNull outside the list.
    UIDRef GetRef(int32_t index) const;
    IDataBase* GetDataBase() const { return database_; }
    int32_t Length() const { return static_cast<int32_t>(uids_.size()); }
    bool IsEmpty() const { return uids_.empty(); }
    /// The UID at an index from 0; 0 outside the list.
    UID operator[](int32_t index) const;

  private:
    IDataBase* database_ = nullptr;
    std::vector<UID> uids_;
};

/// The growable array of the border.
template <class T>
using K2Vector = std::vector<T>;
