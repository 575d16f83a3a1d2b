#include "companion/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "companion/error.h"

namespace companion {

WholeFile::WholeFile(const std::string& what, const std::string& path) : what_(what), path_(path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) fail("is a folder; name a file", 0);
    temporaryPath_ = path + ".XXXXXX";
    descriptor_ = ::mkostemp(temporaryPath_.data(), O_CLOEXEC);
    if (descriptor_ < 0) {
        temporaryPath_.clear();
        fail("can't be written", errno);
    }
    // mkostemp makes files that only the owner reads; this is an ordinary file.
    mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(descriptor_, 0666 & ~mask);
}

WholeFile::~WholeFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporaryPath_.empty()) ::unlink(temporaryPath_.c_str());
}

void WholeFile::finish(std::string_view bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        ssize_t written = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail("can't be written", errno);
        done += static_cast<std::size_t>(written);
    }
    if (::fsync(descriptor_) != 0) fail("can't be written", errno);
    int closed = ::close(descriptor_);
    descriptor_ = -1;
    if (closed != 0) fail("can't be written", errno);
    if (::rename(temporaryPath_.c_str(), path_.c_str()) != 0) fail("can't be written", errno);
    temporaryPath_.clear();
}

void WholeFile::fail(const std::string& why, int reason) {
    throw Error(what_ + " \"" + path_ + "\" " + why + (reason ? std::string(": ") + std::strerror(reason) : "") + ".");
}

}  // namespace companion
