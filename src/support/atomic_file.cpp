#include "support/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "support/file_handle.h"
#include "support/platform_path.h"

namespace vornaset {

namespace {

Error lastError() {
    return std::error_code(errno, std::generic_category());
}

bool writeWhole(const FileHandle& file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file.number(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

mode_t permissionsFor(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) return status.st_mode & 0777;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

Error writeFileAtomically(const Data& data, const String& path) {
    const std::string place = platformPathOfItem(path).native();
    std::string temporary = place + ".XXXXXX";
    if (place.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    const FileHandle file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isOpen()) return lastError();
    if (writeWhole(file, data.view()) && fchmod(file.number(), permissionsFor(place)) == 0 &&
        std::rename(temporary.c_str(), place.c_str()) == 0) {
        return {};
    }
    const Error error = lastError();
    unlink(temporary.c_str());
    return error;
}

}  // namespace vornaset
