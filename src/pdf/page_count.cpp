#include "pdf/page_count.h"

#include <sys/stat.h>

#include <map>
#include <memory>
#include <mutex>
#include <tuple>

#include "pdf/reader.h"

namespace vornaset {

namespace {

/// Tells one state of a file from every other.
using FileState = std::tuple<dev_t, ino_t, off_t, int64_t, int64_t>;

FileState stateOf(const struct stat& file) {
    return {file.st_dev, file.st_ino, file.st_size, int64_t{file.st_mtim.tv_sec} * 1'000'000'000 + file.st_mtim.tv_nsec,
            int64_t{file.st_ctim.tv_sec} * 1'000'000'000 + file.st_ctim.tv_nsec};
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
    if (remembered.size() >= mostRemembered) remembered.clear();
    remembered.emplace(state, count);
    return count;
}

}  // namespace vornaset
