#include "pdf/page_count.h"

#include <sys/stat.h>

#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>

#include "pdf/reader.h"

namespace vornaset {

namespace {

/// Tells one state of a file from every other, once it is firm.
using FileState = std::tuple<dev_t, ino_t, off_t, int64_t, int64_t>;

int64_t nanoseconds(const timespec& time) {
    return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileState stateOf(const struct stat& file) {
    return {file.st_dev, file.st_ino, file.st_size, nanoseconds(file.st_mtim), nanoseconds(file.st_ctim)};
}

/// False when the file changed so shortly before a moment that a further change might bear the same times.
bool isFirm(const struct stat& file, const timespec& moment) {
    constexpr int64_t longestTick = 20'000'000;  // file systems take their times from a clock of 4 to 10 ms
    return nanoseconds(moment) - nanoseconds(file.st_ctim) > longestTick;
}

int64_t counted(const String& path) {
    const std::unique_ptr<ReaderDocument> document = ReaderDocument::open(path);
    return document ? document->numberOfPages() : 0;
}

}  // namespace

int64_t pageCountOfPDFFile(const String& path) {
    constexpr size_t mostRemembered = 1024;
    static std::mutex guard;
    static std::map<FileState, int64_t> remembered;

    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    struct stat file {};
    if (path.isNull() || ::stat(path.utf8().c_str(), &file) != 0 || !S_ISREG(file.st_mode)) return 0;
    const FileState state = stateOf(file);
    const std::lock_guard lock(guard);
    if (const auto known = remembered.find(state); known != remembered.end()) return known->second;
    int64_t count = 0;
    try {
        count = counted(path);
    } catch (const std::exception&) {  // a tree beyond the reader's limits is one that can't be read
        count = 0;
    }
    if (!isFirm(file, now)) return count;
    if (remembered.size() >= mostRemembered) remembered.clear();
    remembered.emplace(state, count);
    return count;
}

}  // namespace vornaset
