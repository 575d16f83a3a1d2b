#pragma once
// Format strings with %@ and printf's conversions. Arguments are boxed with their types: none is read that isn't there.

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "support/values.h"

namespace vornaset {

/// One argument of a format, with its type.
class FormatArgument {
  public:
    struct Integer {
        uint64_t bits;  ///< sign-extended for signed types
        uint8_t size;   ///< bytes of the argument's own type
        bool isSigned;
    };

    template <std::integral T>
    FormatArgument(T value)
        : held_(Integer{static_cast<uint64_t>(static_cast<int64_t>(value)), sizeof(T), std::is_signed_v<T>}) {
        if constexpr (!std::is_signed_v<T>) std::get<Integer>(held_).bits = static_cast<uint64_t>(value);
    }
    template <class T>
    requires std::is_enum_v<T> FormatArgument(T value)
        : FormatArgument(static_cast<std::underlying_type_t<T>>(value)) {}
    FormatArgument(float value) : held_(Number(value)) {}
    FormatArgument(double value) : held_(Number(value)) {}
    FormatArgument(Number value) : held_(value) {}
    /// UTF-8; damaged sequences print as U+FFFD, a null pointer as "(null)".
    FormatArgument(const char* utf8);
    FormatArgument(const char16_t* units) : held_(Value(String(units))) {}
    FormatArgument(std::nullptr_t) : held_(Value()) {}
    FormatArgument(const std::string& utf8) : held_(Value(String::fromDamagedUTF8(utf8))) {}
    FormatArgument(std::string_view utf8) : held_(Value(String::fromDamagedUTF8(utf8))) {}
    FormatArgument(const String& text) : held_(Value(text)) {}
    FormatArgument(const MutableString& text) : held_(Value(text.string())) {}
    FormatArgument(const Value& value) : held_(value) {}
    FormatArgument(const Data& value) : held_(Value(value)) {}
    FormatArgument(const Date& value) : held_(Value(value)) {}
    FormatArgument(const Array& value) : held_(Value(value)) {}
    FormatArgument(const Dictionary& value) : held_(Value(value)) {}
    /// An address, for %p and %lx.
    FormatArgument(const void* address) : FormatArgument(reinterpret_cast<uintptr_t>(address)) {}

    const Integer* integer() const noexcept { return std::get_if<Integer>(&held_); }
    const Number* number() const noexcept { return std::get_if<Number>(&held_); }
    const Value* value() const noexcept { return std::get_if<Value>(&held_); }

  private:
    std::variant<Integer, Number, Value> held_;
};

/// The text of a format: conversions @ d i u x X o c C s S f F e E g G a A p and %%, with flags, width, precision (also
/// by "*"), length letters, and positions ("%2$@"). The argument's own type decides what prints: a text under %d prints
/// as the text, a number under %s as its digits. A missing argument prints "(null)", a spare one isn't looked at, and a
/// percent sign that starts no conversion prints as it stands. No locale. Null for a null format.
String formatText(const String& format, std::span<const FormatArgument> arguments);

template <class... Arguments>
String stringWithFormat(const String& format, const Arguments&... arguments) {
    if constexpr (sizeof...(Arguments) == 0) {
        return formatText(format, {});
    } else {
        const std::array<FormatArgument, sizeof...(Arguments)> boxed{FormatArgument(arguments)...};
        return formatText(format, boxed);
    }
}

}  // namespace vornaset
