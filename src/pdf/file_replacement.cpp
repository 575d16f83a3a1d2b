#include "pdf/file_replacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <string>

#include "support/file_handle.h"

namespace vornaset {

namespace {

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

}  // namespace

bool replaceFile(const String& path, std::string_view bytes) {
    static std::atomic<unsigned> serial{0};
    const std::string target = path.utf8();
    if (target.empty() || target.find('\0') != std::string::npos) return false;
    const std::string folder = target.substr(0, target.rfind('/') + 1);
    // The name doesn't grow with the target's, which may be as long as the file system allows.
    const std::string beside =
        folder + ".vornaset-" + std::to_string(::getpid()) + "-" + std::to_string(serial.fetch_add(1)) + ".part";
    FileHandle file(::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.isOpen()) return false;
    const bool isWhole = writeAll(file.number(), bytes);
    file.close();
    if (isWhole && std::rename(beside.c_str(), target.c_str()) == 0) return true;
    ::unlink(beside.c_str());
    return false;
}

}  // namespace vornaset
