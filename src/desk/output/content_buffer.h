#pragma once
// Bytes of page contents and dictionaries, appended fast and without a locale.

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace desk {

/// A growing run of bytes that writes numbers as PDF wants them: no exponent, no trailing zeros, "." as the point.
class ContentBuffer {
  public:
    ContentBuffer() = default;
    ContentBuffer(ContentBuffer&& other) noexcept { swap(other); }
    ContentBuffer& operator=(ContentBuffer&& other) noexcept {
        swap(other);
        return *this;
    }
    ContentBuffer(const ContentBuffer& other) { append(other.view()); }
    ContentBuffer& operator=(const ContentBuffer& other) {
        if (this == &other) return *this;
        clear();
        return append(other.view());
    }

    std::string_view view() const { return {bytes_.get(), size_}; }
    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    /// Keeps the memory.
    void clear() { size_ = 0; }
    void truncate(size_t size) { size_ = size; }
    char& at(size_t index) { return bytes_[index]; }

    /// At least `count` writable bytes at the end; advance() takes in those that were written.
    char* room(size_t count) {
        if (size_ + count > capacity_) grow(count);
        return bytes_.get() + size_;
    }
    void advance(char* end) { size_ = static_cast<size_t>(end - bytes_.get()); }

    ContentBuffer& append(std::string_view text) {
        if (text.empty()) return *this;
        std::memcpy(room(text.size()), text.data(), text.size());
        size_ += text.size();
        return *this;
    }
    ContentBuffer& append(char c) {
        *room(1) = c;
        ++size_;
        return *this;
    }
    ContentBuffer& integer(int64_t value) {
        advance(writeInteger(room(24), value));
        return *this;
    }
    /// A number given in thousandths.
    ContentBuffer& thousandths(int64_t value) {
        advance(writeThousandths(room(28), value));
        return *this;
    }
    /// At most three decimals.
    ContentBuffer& number(double value) { return thousandths(toThousandths(value)); }
    /// At most six decimals, for the linear part of matrices.
    ContentBuffer& factor(double value);
    /// A literal string with its parentheses; special bytes are escaped.
    ContentBuffer& literal(std::string_view bytes);
    /// A name with its slash; bytes outside the regular characters become #xx.
    ContentBuffer& name(std::string_view text);
    /// Two upper-case hexadecimal digits a byte.
    ContentBuffer& hexadecimal(std::string_view bytes);

    /// Rounded to the nearest; what isn't a number or too large to mean a place gives 0 or the limit.
    static int64_t toThousandths(double value) {
        constexpr double limit = 1e12;
        if (!(value > -limit)) return value <= -limit ? -static_cast<int64_t>(limit) * 1000 : 0;
        if (value > limit) return static_cast<int64_t>(limit) * 1000;
        return static_cast<int64_t>(value * 1000 + (value < 0 ? -0.5 : 0.5));
    }
    /// These write at `out` and give the end; no terminating zero. Room for 24 and 28 bytes is enough.
    static char* writeInteger(char* out, int64_t value);
    static char* writeThousandths(char* out, int64_t value);

  private:
    void grow(size_t count);
    void swap(ContentBuffer& other) noexcept {
        bytes_.swap(other.bytes_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    std::unique_ptr<char[]> bytes_;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

}  // namespace desk
