#include "companion/run_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "companion/error.h"
#include "support/paths.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

constexpr const char* namePrefix = "vornaset-run-";

int openFolder(const fs::path& folder) {
    return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// True when the descriptor's folder is the one that has this name now, and ours.
bool isStillThere(int descriptor, const fs::path& folder) {
    struct stat opened {
    }, named{};
    return ::fstat(descriptor, &opened) == 0 && ::lstat(folder.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
           opened.st_dev == named.st_dev && opened.st_uid == ::geteuid();
}

/// A run holds a lock on its folder. Where there is none, the run is over and couldn't clear up.
void removeLeftFolders(const fs::path& base) {
    std::error_code problem;
    for (fs::directory_iterator entry(base, fs::directory_options::skip_permission_denied, problem), end;
         !problem && entry != end; entry.increment(problem)) {
        if (!entry->path().filename().string().starts_with(namePrefix)) continue;
        const int descriptor = openFolder(entry->path());
        if (descriptor < 0) continue;
        std::error_code ignored;
        const bool isLeft = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && isStillThere(descriptor, entry->path());
        if (isLeft) fs::remove_all(entry->path(), ignored);
        ::close(descriptor);
    }
}

/// Nanoseconds; -2 when the folder can't be looked at.
std::int64_t lastChange(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return -2;
    return static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
}

/// Some file systems take long to make a file where others were removed shortly before, as a merge of barcodes does.
std::string baseFolder() {
    constexpr const char* inMemory = "/dev/shm";
    const char* chosen = std::getenv("TMPDIR");
    std::error_code ignored;
    const bool isChosen = chosen && *chosen;
    if (!isChosen && fs::is_directory(inMemory, ignored) && ::access(inMemory, W_OK | X_OK) == 0) return inMemory;
    return vornaset::temporaryPath(nullptr, nullptr).utf8();
}

}  // namespace

RunFolder::RunFolder() {
    const std::string base = baseFolder();
    removeLeftFolders(base);
    // Another run may take a new folder for a left one before it is locked; then there is simply a next try.
    for (int tries = 0; tries < 10 && descriptor_ < 0; ++tries) {
        std::string pattern = base + "/" + namePrefix + "XXXXXX";
        if (!::mkdtemp(pattern.data()))
            throw Error("no temporary folder can be made in \"" + base + "\" (" + std::strerror(errno) +
                        "); make room there or set TMPDIR to another folder.");
        const int descriptor = openFolder(pattern);
        if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && isStillThere(descriptor, pattern)) {
            descriptor_ = descriptor;
            path_ = pattern;
        } else if (descriptor >= 0) {
            ::close(descriptor);
        }
    }
    if (descriptor_ < 0)
        throw Error("no temporary folder can be kept in \"" + base + "\"; set TMPDIR to another folder.");
    vornaset::setTemporaryFolder(vornaset::String::fromDamagedUTF8(path_));
    // Programs that the run starts put their files there too, and may be killed before they take them away.
    if (const char* former = std::getenv("TMPDIR")) formerTmpdir_ = former;
    ::setenv("TMPDIR", path_.c_str(), 1);
}

RunFolder::~RunFolder() {
    if (formerTmpdir_)
        ::setenv("TMPDIR", formerTmpdir_->c_str(), 1);
    else
        ::unsetenv("TMPDIR");
    vornaset::setTemporaryFolder(nullptr);
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    ::close(descriptor_);
}

void RunFolder::clear() {
    if (lastChange(descriptor_) == changed_) return;
    std::error_code problem;
    for (fs::directory_iterator entry(path_, problem), end; !problem && entry != end; entry.increment(problem)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored)) fs::remove(entry->path(), ignored);
    }
    // Dates have the width of a clock's tick: a file that comes within it goes with the next change or at the end.
    changed_ = lastChange(descriptor_);
}

// A folder that may be passed through and not be listed is a working folder like others.
WorkingFolder::WorkingFolder(const std::string& path) : former_(::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {
    if (::chdir(path.c_str()) == 0) return;
    const int reason = errno;
    if (former_ >= 0) ::close(former_);
    throw Error("the folder of the pictures, \"" + path + "\", can't be entered (" + std::strerror(reason) +
                "); name the right one with --images.");
}

WorkingFolder::~WorkingFolder() {
    if (former_ < 0) return;
    if (::fchdir(former_) != 0) {
        // The former folder is gone; nothing of this run uses relative paths any more.
    }
    ::close(former_);
}

}  // namespace companion
