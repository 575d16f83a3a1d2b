#include "support/values_plain.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>

namespace vornaset {

namespace {

/// Shortest digits in scientific form, laid out as %g would lay them out with so many significant digits.
template <class T>
std::string shortestText(T value, int significant) {
    char scientific[64];
    const auto [end, error] =
        std::to_chars(scientific, scientific + sizeof scientific, value, std::chars_format::scientific);
    std::string_view text(scientific, static_cast<size_t>(end - scientific));
    std::string result;
    if (text.starts_with('-')) {
        result = "-";
        text.remove_prefix(1);
    }
    const size_t mark = text.find('e');
    int exponent = 0;
    const char* exponentStart = text.data() + mark + (text[mark + 1] == '+' ? 2 : 1);
    std::from_chars(exponentStart, text.data() + text.size(), exponent);
    if (exponent < -4 || exponent >= significant) return result.append(text);

    std::string digits(1, text[0]);
    if (mark > 2) digits.append(text.substr(2, mark - 2));
    if (exponent < 0) return result + "0." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
    const auto whole = static_cast<size_t>(exponent) + 1;
    if (digits.size() <= whole) return result + digits + std::string(whole - digits.size(), '0');
    return result + digits.substr(0, whole) + "." + digits.substr(whole);
}

}  // namespace

int64_t Number::integerValue() const noexcept {
    if (!isFloatingPoint()) return integer_;
    if (std::isnan(real_)) return 0;
    if (real_ >= 0x1p63) return INT64_MAX;
    if (real_ < -0x1p63) return INT64_MIN;
    return static_cast<int64_t>(real_);
}

String Number::text() const {
    if (!isFloatingPoint()) return String::fromUTF8(std::to_string(integer_));
    if (std::isnan(real_)) return "nan";
    if (std::isinf(real_)) return real_ < 0 ? "-inf" : "inf";
    if (kind_ == Kind::single) return String::fromUTF8(shortestText(static_cast<float>(real_), 9));
    return String::fromUTF8(shortestText(real_, 17));
}

bool Number::operator==(const Number& other) const noexcept {
    if (!isFloatingPoint() && !other.isFloatingPoint()) return integer_ == other.integer_;
    if (isFloatingPoint() && other.isFloatingPoint()) return real_ == other.real_;
    const double real = isFloatingPoint() ? real_ : other.real_;
    const int64_t integer = isFloatingPoint() ? other.integer_ : integer_;
    return std::trunc(real) == real && real >= -0x1p63 && real < 0x1p63 && static_cast<int64_t>(real) == integer;
}

size_t Number::hash() const noexcept {
    const bool fractional = isFloatingPoint() && std::trunc(real_) != real_;
    return fractional ? std::hash<double>()(real_) : std::hash<int64_t>()(integerValue());
}

String Date::description() const {
    if (!(std::abs(seconds) < 1e12)) return "(date out of range)";
    const auto whole = static_cast<time_t>(std::floor(seconds));
    tm parts{};
    gmtime_r(&whole, &parts);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d +0000", parts.tm_year + 1900, parts.tm_mon + 1,
                  parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
    return text;
}

}  // namespace vornaset
