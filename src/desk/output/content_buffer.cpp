#include "desk/output/content_buffer.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

constexpr char hexDigits[] = "0123456789ABCDEF";

bool isRegularInName(unsigned char c) {
    return c > 32 && c < 127 && std::string_view("()<>[]{}/%#").find(static_cast<char>(c)) == std::string_view::npos;
}

/// Digits of a fraction after the point, without the zeros at its end.
char* writeFraction(char* out, uint64_t fraction, uint64_t unit) {
    if (fraction == 0) return out;
    *out++ = '.';
    while (fraction != 0) {
        unit /= 10;
        *out++ = static_cast<char>('0' + fraction / unit);
        fraction %= unit;
    }
    return out;
}

}  // namespace

void ContentBuffer::grow(size_t count) {
    const size_t wanted = std::max({size_ + count, capacity_ * 2, size_t{256}});
    std::unique_ptr<char[]> larger(new char[wanted]);
    if (size_ != 0) std::memcpy(larger.get(), bytes_.get(), size_);
    bytes_ = std::move(larger);
    capacity_ = wanted;
}

char* ContentBuffer::writeInteger(char* out, int64_t value) {
    uint64_t rest = static_cast<uint64_t>(value);
    if (value < 0) {
        *out++ = '-';
        rest = 0 - rest;
    }
    char digits[20];
    char* first = digits + sizeof digits;
    do {
        *--first = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    const size_t length = static_cast<size_t>(digits + sizeof digits - first);
    std::memcpy(out, first, length);
    return out + length;
}

char* ContentBuffer::writeThousandths(char* out, int64_t value) {
    uint64_t rest = static_cast<uint64_t>(value);
    if (value < 0) {
        *out++ = '-';
        rest = 0 - rest;
    }
    const uint64_t whole = rest / 1000;
    const uint64_t fraction = rest % 1000;
    if (whole != 0 || fraction == 0) out = writeInteger(out, static_cast<int64_t>(whole));
    return writeFraction(out, fraction, 1000);
}

ContentBuffer& ContentBuffer::factor(double value) {
    constexpr double million = 1e6;
    if (!(std::abs(value) < 1e9)) return number(value);
    const bool negative = value < 0;
    const uint64_t rounded = static_cast<uint64_t>(std::llround(std::abs(value) * million));
    char* out = room(32);
    if (negative && rounded != 0) *out++ = '-';
    const uint64_t whole = rounded / 1000000;
    const uint64_t fraction = rounded % 1000000;
    if (whole != 0 || fraction == 0) out = writeInteger(out, static_cast<int64_t>(whole));
    advance(writeFraction(out, fraction, 1000000));
    return *this;
}

ContentBuffer& ContentBuffer::literal(std::string_view bytes) {
    append('(');
    for (char c : bytes) {
        if (c == '(' || c == ')' || c == '\\') append('\\');
        if (c == '\r') {
            append("\\r");
        } else {
            append(c);
        }
    }
    return append(')');
}

ContentBuffer& ContentBuffer::name(std::string_view text) {
    append('/');
    for (char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (byte == 0) continue;  // no name may hold it
        if (isRegularInName(byte)) {
            append(c);
        } else {
            append('#').append(hexDigits[byte >> 4]).append(hexDigits[byte & 15]);
        }
    }
    return *this;
}

ContentBuffer& ContentBuffer::hexadecimal(std::string_view bytes) {
    for (char c : bytes) {
        const unsigned char byte = static_cast<unsigned char>(c);
        append(hexDigits[byte >> 4]).append(hexDigits[byte & 15]);
    }
    return *this;
}

}  // namespace desk
