#pragma once
// Number, Data and Date.

#include <compare>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/values_string.h"

namespace vornaset {

/// A number that remembers what it was made of.
class Number {
  public:
    enum class Kind : uint8_t { boolean, integer, single, real };

    constexpr Number() noexcept = default;  ///< the integer 0
    constexpr Number(bool value) noexcept : kind_(Kind::boolean), integer_(value ? 1 : 0) {}
    /// Unsigned values beyond the signed range become doubles.
    template <std::integral T>
    requires(!std::same_as<T, bool>) constexpr Number(T value) noexcept {
        if (std::unsigned_integral<T> && static_cast<uint64_t>(value) > static_cast<uint64_t>(INT64_MAX)) {
            kind_ = Kind::real;
            real_ = static_cast<double>(value);
        } else {
            integer_ = static_cast<int64_t>(value);
        }
    }
    constexpr Number(float value) noexcept : kind_(Kind::single), real_(value) {}
    constexpr Number(double value) noexcept : kind_(Kind::real), real_(value) {}

    Kind kind() const noexcept { return kind_; }
    bool isFloatingPoint() const noexcept { return kind_ == Kind::single || kind_ == Kind::real; }

    /// Towards zero; cut to the range; 0 for what is no number.
    int64_t integerValue() const noexcept;
    /// The low 32 bits of the integer reading.
    int32_t intValue() const noexcept { return static_cast<int32_t>(static_cast<uint32_t>(integerValue())); }
    double doubleValue() const noexcept { return isFloatingPoint() ? real_ : static_cast<double>(integer_); }
    float floatValue() const noexcept { return static_cast<float>(doubleValue()); }
    bool booleanValue() const noexcept { return isFloatingPoint() ? real_ != 0 : integer_ != 0; }

    /// The shortest digits that read back as the same number of its precision: 42, 0.1 for a single and for a double
    /// 0.1, 2 for 2.0. An exponent appears below 0.0001 and from 1e17 (a single: from 1e9). "1" and "0" for booleans;
    /// "inf", "-inf", "nan".
    String text() const;

    /// By value, whatever the kinds.
    bool operator==(const Number& other) const noexcept;
    size_t hash() const noexcept;

  private:
    Kind kind_ = Kind::integer;
    union {
        int64_t integer_ = 0;
        double real_;
    };
};

/// A shared, immutable run of bytes. Null differs from empty.
class Data {
  public:
    Data() noexcept = default;  ///< null
    Data(std::nullptr_t) noexcept {}
    explicit Data(std::string bytes) : bytes_(std::make_shared<const std::string>(std::move(bytes))) {}
    static Data withBytes(const void* bytes, size_t count) {
        return Data(count == 0 ? std::string() : std::string(static_cast<const char*>(bytes), count));
    }

    bool isNull() const noexcept { return bytes_ == nullptr; }
    size_t length() const noexcept { return bytes_ ? bytes_->size() : 0; }
    /// Good as long as a handle on these bytes lives.
    std::string_view view() const noexcept { return bytes_ ? std::string_view(*bytes_) : std::string_view(); }
    const uint8_t* bytes() const noexcept { return reinterpret_cast<const uint8_t*>(view().data()); }

    bool operator==(const Data& other) const noexcept { return isNull() == other.isNull() && view() == other.view(); }
    bool isSameObject(const Data& other) const noexcept { return bytes_ == other.bytes_; }

  private:
    std::shared_ptr<const std::string> bytes_;
};

/// A moment: seconds since the start of 1970, UTC.
struct Date {
    double seconds = 0;
    /// "2024-05-01 12:00:00 +0000"
    String description() const;
    auto operator<=>(const Date&) const = default;
};

}  // namespace vornaset
