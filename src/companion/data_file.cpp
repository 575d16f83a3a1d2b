#include "companion/data_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "companion/error.h"

namespace companion {
namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }

  private:
    int number_;
};

Descriptor openToRead(const std::string& path, const std::string& what) {
    int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (number >= 0) return Descriptor(number);
    if (errno == ENOENT) throw Error(what + " \"" + path + "\" doesn't exist; check its name and folder.");
    if (errno == EACCES) throw Error(what + " \"" + path + "\" may not be read by you; change its permissions.");
    throw Error(what + " \"" + path + "\" can't be opened: " + std::strerror(errno) + ".");
}

std::string inMegabytes(std::uint64_t bytes) {
    return std::to_string(bytes / 1'000'000) + " MB";
}

}  // namespace

ByteBuffer readWholeFile(const std::string& path, const std::string& what, std::uint64_t byteLimit) {
    Descriptor file = openToRead(path, what);
    struct stat status {};
    auto unreadable = [&] { return Error(what + " \"" + path + "\" can't be read: " + std::strerror(errno) + "."); };
    if (::fstat(file.number(), &status) != 0) throw unreadable();
    if (S_ISDIR(status.st_mode)) throw Error(what + " \"" + path + "\" is a folder; name a file in it.");

    // A pipe tells no size: begin small and double. One byte more than a known size lets the last read see the end.
    std::uint64_t room = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) + 1 : 1 << 16;
    auto tooLong = [&] {
        return Error(what + " \"" + path + "\" has more than " + inMegabytes(byteLimit) +
                     ", the most that is accepted; split it.");
    };
    if (room > byteLimit + 1 && S_ISREG(status.st_mode)) throw tooLong();
    ByteBuffer bytes(room);
    std::size_t filled = 0;
    for (;;) {
        if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
        ssize_t got =
            ::read(file.number(), bytes.data() + filled, std::min<std::size_t>(bytes.size() - filled, 1 << 30));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw unreadable();
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
        if (filled > byteLimit) throw tooLong();
    }
    if (filled == 0) throw Error(what + " \"" + path + "\" is empty.");
    bytes.resize(filled);
    return bytes;
}

}  // namespace companion
