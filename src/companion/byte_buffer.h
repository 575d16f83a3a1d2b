#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string_view>
#include <utility>

namespace companion {

/// A growable run of bytes that is never filled before it is used and that grows without a second copy where the system
/// can move pages. Behind the last byte there is always one more byte, which is 0 after terminate().
class ByteBuffer {
  public:
    ByteBuffer() = default;
    explicit ByteBuffer(std::size_t size) { resize(size); }
    ~ByteBuffer() { std::free(bytes_); }
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;
    ByteBuffer(ByteBuffer&& other) noexcept
        : bytes_(std::exchange(other.bytes_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    ByteBuffer& operator=(ByteBuffer&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        std::swap(size_, other.size_);
        return *this;
    }

    /// Keeps the bytes that both sizes have; new bytes are undefined. Throws std::bad_alloc and is unchanged then.
    void resize(std::size_t size) {
        void* moved = std::realloc(bytes_, size + 1);
        if (!moved) throw std::bad_alloc();
        bytes_ = static_cast<char*>(moved);
        size_ = size;
    }

    /// Puts the 0 behind the last byte.
    void terminate() {
        if (!bytes_) resize(0);
        bytes_[size_] = 0;
    }

    char* data() { return bytes_; }
    const char* data() const { return bytes_; }
    std::size_t size() const { return size_; }
    std::string_view view() const { return {bytes_ ? bytes_ : "", size_}; }

  private:
    char* bytes_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace companion
