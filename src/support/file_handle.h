#pragma once
// An open file of the platform that closes itself.

#include <unistd.h>

#include <utility>

namespace vornaset {

/// Owns a file descriptor. Moves, and doesn't copy.
class FileHandle {
  public:
    FileHandle() = default;
    /// A negative number is no file.
    explicit FileHandle(int number) noexcept : number_(number) {}
    FileHandle(FileHandle&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        if (this != &other) {
            close();
            number_ = std::exchange(other.number_, -1);
        }
        return *this;
    }
    ~FileHandle() { close(); }

    bool isOpen() const noexcept { return number_ >= 0; }
    int number() const noexcept { return number_; }
    void close() noexcept {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

  private:
    int number_ = -1;
};

}  // namespace vornaset
