#include "desk/output/output_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>

#include "desk/model/document.h"

namespace desk {
namespace {

constexpr size_t bufferSize = 1u << 18;
/// Room in a file name (255 bytes) for the dot, the process id and the suffix.
constexpr size_t longestNamePart = 200;
constexpr std::string_view suffix = ".part";

std::string inQuotes(const std::string& path) {
    return "\"" + path + "\"";
}

std::string folderOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

/// ".letters.pdf." for an output named letters.pdf.
std::string temporaryPrefix(const std::string& path) {
    return "." + nameOf(path).substr(0, longestNamePart) + ".";
}

std::string withLinksFollowed(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error) || error) return path;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
    return error ? path : resolved.string();
}

void checkPlace(const std::string& path, const std::string& shown) {
    if (path.empty()) throw InputError("The output has no name. Give it a file name.");
    struct stat there {};
    const bool exists = stat(path.c_str(), &there) == 0;
    if (path.back() == '/' || (exists && S_ISDIR(there.st_mode)))
        throw InputError("The output " + inQuotes(shown) + " is a folder. Name a file in it.");
    if (exists && !S_ISREG(there.st_mode))
        throw InputError("The output " + inQuotes(shown) + " is not an ordinary file. Choose another file name.");
    if (exists && access(path.c_str(), W_OK) != 0)
        throw InputError("The output " + inQuotes(shown) +
                         " is write-protected. Choose another file name or allow writing.");
    const std::string folder = folderOf(path);
    struct stat place {};
    if (stat(folder.c_str(), &place) != 0 || !S_ISDIR(place.st_mode))
        throw InputError("The folder " + inQuotes(folder) + " of the output " + inQuotes(shown) +
                         " does not exist. Make it or choose another folder.");
}

/// Removes what runs to the same output left when they were killed: the process of the name is gone.
void removeStale(const std::string& path) {
    const std::string prefix = temporaryPrefix(path);
    std::error_code error;
    std::filesystem::directory_iterator entries(folderOf(path), error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        const std::string name = entries->path().filename().string();
        if (!name.starts_with(prefix) || !name.ends_with(suffix)) continue;
        const char* digits = name.data() + prefix.size();
        long process = 0;
        const auto parsed = std::from_chars(digits, name.data() + name.size(), process);
        if (parsed.ec != std::errc() || process <= 0 || (*parsed.ptr != '.' && *parsed.ptr != '-')) continue;
        if (kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH) unlink(entries->path().c_str());
    }
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : shownPath_(path), path_(withLinksFollowed(path)) {
    buffer_.reserve(bufferSize);
    checkPlace(path_, shownPath_);
    removeStale(path_);
    const std::string folder = folderOf(path_);
    const std::string stem = (folder == "/" ? "" : folder) + "/" + temporaryPrefix(path_) + std::to_string(getpid());
    constexpr int attempts = 1000;  // exports of one process to one name at the same time
    for (int attempt = 1; attempt <= attempts && descriptor_ < 0; ++attempt) {
        temporaryPath_ = stem + (attempt == 1 ? "" : "-" + std::to_string(attempt)) + std::string(suffix);
        descriptor_ = open(temporaryPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor_ < 0 && errno != EEXIST) break;
    }
    if (descriptor_ < 0) {
        const int error = errno;
        temporaryPath_.clear();
        throw InputError("The folder " + inQuotes(folder) + " of the output " + inQuotes(shownPath_) +
                         " can't be written: " + std::strerror(error) + ". Choose another folder or allow writing.");
    }
}

OutputFile::~OutputFile() {
    remove();
}

void OutputFile::remove() noexcept {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
    if (!temporaryPath_.empty()) unlink(temporaryPath_.c_str());
    temporaryPath_.clear();
}

void OutputFile::fail(int error) const {
    std::string reason = std::strerror(error);
    std::string advice = "Choose another place for it.";
    if (error == ENOSPC || error == EDQUOT) {
        reason = "the disk is full";
        advice = "Free some space or choose another disk.";
    } else if (error == EFBIG) {
        reason = "it grows beyond the size that a file may have here";
        advice = "Raise the limit or export fewer records at a time.";
    }
    throw InputError("The output " + inQuotes(shownPath_) + " can't be written: " + reason + ". " + advice);
}

void OutputFile::write(const char* bytes, size_t count) {
    position_ += count;
    if (buffer_.size() + count > bufferSize) flush();
    if (count < bufferSize) {
        buffer_.insert(buffer_.end(), bytes, bytes + count);
        return;
    }
    writeThrough(bytes, count);
}

void OutputFile::flush() {
    writeThrough(buffer_.data(), buffer_.size());
    buffer_.clear();
}

void OutputFile::writeThrough(const char* bytes, size_t count) {
    while (count > 0) {
        const ssize_t written = ::write(descriptor_, bytes, count);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail(errno);
        bytes += written;
        count -= static_cast<size_t>(written);
    }
}

void OutputFile::commit() {
    flush();
    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (close(descriptor) != 0 && errno != EINTR) fail(errno);
    if (rename(temporaryPath_.c_str(), path_.c_str()) != 0) fail(errno);
    temporaryPath_.clear();
}

}  // namespace desk
