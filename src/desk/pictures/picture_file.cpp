#include "desk/pictures/picture_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "desk/pictures/limits.h"

namespace desk {
namespace {

/// The file system's clock ticks once in four to ten milliseconds: two changes inside a tick bear the same time.
constexpr int64_t clockTick = 20'000'000;

class OpenFile {
  public:
    explicit OpenFile(const std::string& path)
        // Not blocking, so that a pipe without a writer doesn't hold the run up.
        : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    ~OpenFile() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

[[noreturn]] void refuse(int error) {
    if (error == ENOENT || error == ENOTDIR) throw PictureError("doesn't exist. Correct the path");
    throw PictureError(std::string("can't be read: ") + std::strerror(error) + ". Correct the path or its permissions");
}

void checkPath(const std::string& path) {
    if (path.empty()) throw PictureError("has no path. Give one");
    if (path.find('\0') != std::string::npos) throw PictureError("has a NUL in its path. Correct the path");
}

FileStamp checkedStamp(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) throw PictureError("is a folder. Give the path of a picture");
    if (!S_ISREG(status.st_mode)) throw PictureError("isn't an ordinary file. Give the path of a picture");
    if (status.st_size == 0) throw PictureError("is empty. Save it again");
    if (static_cast<uint64_t>(status.st_size) > limits::pictureBytes)
        throw PictureError("is too large (" + std::to_string(status.st_size >> 20) + " MB). Make it smaller");
    return {static_cast<uint64_t>(status.st_dev), static_cast<uint64_t>(status.st_ino),
            static_cast<uint64_t>(status.st_size), status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
}

}  // namespace

FileStamp stampOf(const std::string& path) {
    checkPath(path);
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) refuse(errno);
    return checkedStamp(status);
}

ReadFile readWholeFile(const std::string& path) {
    checkPath(path);
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    const OpenFile file(path);
    if (file.descriptor() < 0) refuse(errno);
    struct stat status {};
    if (::fstat(file.descriptor(), &status) != 0) refuse(errno);
    ReadFile read;
    read.stamp = checkedStamp(status);
    const int64_t age = (now.tv_sec - read.stamp.seconds) * 1'000'000'000 + now.tv_nsec - read.stamp.nanoseconds;
    read.stampIsFirm = now.tv_sec - read.stamp.seconds > 1 || age > clockTick;
    read.bytes.resize(static_cast<size_t>(read.stamp.size));
    size_t filled = 0;
    while (filled < read.bytes.size()) {
        const ssize_t got = ::read(file.descriptor(), read.bytes.data() + filled, read.bytes.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) refuse(errno);
        if (got == 0) throw PictureError("became shorter while it was read. Try again");
        filled += static_cast<size_t>(got);
    }
    return read;
}

}  // namespace desk
