#include "companion/whole_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "companion/error.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view suffix = ".part";

/// The file that a link leads to, whether or not it is there.
std::string withLinksFollowed(const std::string& path) {
    std::error_code failure;
    if (!fs::is_symlink(path, failure)) return path;
    const fs::path resolved = fs::weakly_canonical(path, failure);
    return failure ? path : resolved.string();
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// ".report.json." for a file named report.json, short enough for a process's number and the suffix behind it.
std::string temporaryPrefix(const std::string& path) {
    constexpr std::size_t longest = 200;
    const std::size_t slash = path.rfind('/');
    return "." + path.substr(slash == path.npos ? 0 : slash + 1).substr(0, longest) + ".";
}

/// The process whose number stands in a temporary file's name; 0 for a name of another form.
pid_t processNamedIn(std::string_view name, std::string_view prefix) {
    const bool isLong = name.size() > prefix.size() + suffix.size();
    if (!isLong || !name.starts_with(prefix) || !name.ends_with(suffix)) return 0;
    const std::string_view middle = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
    pid_t process = 0;
    const auto [stop, error] = std::from_chars(middle.data(), middle.data() + middle.size(), process);
    const bool isWhole = stop == middle.data() + middle.size() || *stop == '-';
    return error == std::errc() && isWhole && process > 0 ? process : 0;
}

}  // namespace

WholeFile::WholeFile(const std::string& what, const std::string& path)
    : what_(what), shownPath_(path), path_(withLinksFollowed(path)) {
    checkPlace();
    removeLeftFiles();
    makeTemporaryFile();
}

WholeFile::~WholeFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporaryPath_.empty()) ::unlink(temporaryPath_.c_str());
}

void WholeFile::checkPlace() const {
    if (path_.empty()) throw Error(what_ + " has no name; give it a file name.");
    struct stat status {};
    const bool exists = ::stat(path_.c_str(), &status) == 0;
    if (path_.back() == '/' || (exists && S_ISDIR(status.st_mode))) refuse("is a folder; name a file in it");
    if (exists && !S_ISREG(status.st_mode)) refuse("isn't an ordinary file; choose another name");
    if (exists && ::access(path_.c_str(), W_OK) != 0)
        refuse("is write-protected; choose another name or allow writing");
    if (::stat(folderOf(path_).c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        refuse("can't be written: there is no folder \"" + folderOf(path_) + "\"; make it or choose another one");
}

void WholeFile::removeLeftFiles() const {
    const std::string prefix = temporaryPrefix(path_);
    std::error_code problem;
    for (fs::directory_iterator entry(folderOf(path_), problem), end; !problem && entry != end;
         entry.increment(problem)) {
        const pid_t process = processNamedIn(entry->path().filename().string(), prefix);
        if (process > 0 && ::kill(process, 0) != 0 && errno == ESRCH) ::unlink(entry->path().c_str());
    }
}

void WholeFile::makeTemporaryFile() {
    const std::string stem = folderOf(path_) + "/" + temporaryPrefix(path_) + std::to_string(::getpid());
    constexpr int attempts = 1000;  // files of one process and one name at the same time
    for (int attempt = 1; attempt <= attempts && descriptor_ < 0; ++attempt) {
        temporaryPath_ = stem;
        if (attempt > 1) temporaryPath_ += "-" + std::to_string(attempt);
        temporaryPath_ += suffix;
        descriptor_ = ::open(temporaryPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor_ < 0 && errno != EEXIST) break;
    }
    if (descriptor_ >= 0) return;
    const int reason = errno;
    temporaryPath_.clear();
    fail(reason);
}

void WholeFile::finish(std::string_view bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t written = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail(errno);
        done += static_cast<std::size_t>(written);
    }
    if (::fsync(descriptor_) != 0) fail(errno);
    const int closed = ::close(descriptor_);
    descriptor_ = -1;
    if (closed != 0) fail(errno);
    if (::rename(temporaryPath_.c_str(), path_.c_str()) != 0) fail(errno);
    temporaryPath_.clear();
}

void WholeFile::fail(int reason) const {
    const bool isFull = reason == ENOSPC || reason == EDQUOT;
    refuse(std::string("can't be written: ") + (isFull ? "the disk is full" : std::strerror(reason)) +
           (isFull ? "; free some space or choose another disk" : "; choose another place for it"));
}

void WholeFile::refuse(const std::string& why) const {
    throw Error(what_ + " \"" + shownPath_ + "\" " + why + ".");
}

}  // namespace companion
