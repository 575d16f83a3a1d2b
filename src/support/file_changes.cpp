// Creating, copying, moving and deleting.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "support/log.h"
#include "support/paths.h"
#include "support/platform_path.h"
#include "support/strings.h"

namespace vornaset {

namespace {

namespace fs = std::filesystem;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// What the target's file system can't keep is left behind.
void copyExtendedAttributes(const fs::path& source, const fs::path& target) {
    const ssize_t length = listxattr(source.c_str(), nullptr, 0);
    if (length <= 0) return;
    std::string names(static_cast<size_t>(length), 0);
    if (listxattr(source.c_str(), names.data(), names.size()) != length) return;
    for (const char* name = names.c_str(); name < names.c_str() + length; name += std::string_view(name).size() + 1) {
        const ssize_t size = getxattr(source.c_str(), name, nullptr, 0);
        if (size < 0) continue;
        std::vector<char> value(static_cast<size_t>(size) + 1);
        const ssize_t got = getxattr(source.c_str(), name, value.data(), static_cast<size_t>(size));
        if (got >= 0) setxattr(target.c_str(), name, value.data(), static_cast<size_t>(got), 0);
    }
}

/// To the nanosecond, which the file library's clock would keep too, but not from one file system to the next.
std::error_code copyDates(const fs::path& source, const fs::path& target) {
    struct stat status {};
    if (stat(source.c_str(), &status) != 0) return lastError();
    const timespec times[2] = {status.st_atim, status.st_mtim};
    return utimensat(AT_FDCWD, target.c_str(), times, 0) != 0 ? lastError() : std::error_code();
}

std::error_code copyInto(const fs::path& source, const fs::path& target);

std::error_code copyFolder(const fs::path& source, const fs::path& target) {
    std::error_code error;
    fs::create_directory(target, error);
    fs::directory_iterator entry(source, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (const auto failure = copyInto(entry->path(), target / entry->path().filename())) return failure;
    }
    if (error) return error;
    fs::permissions(target, fs::status(source, error).permissions(), error);
    return error;
}

std::error_code copyInto(const fs::path& source, const fs::path& target) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(source, error);
    if (fs::is_symlink(status)) {
        fs::copy_symlink(source, target, error);
        return error;
    }
    if (fs::is_directory(status)) {
        error = copyFolder(source, target);
    } else if (fs::is_regular_file(status)) {
        fs::copy_file(source, target, fs::copy_options::none, error);
    } else {
        error =
            std::make_error_code(fs::exists(status) ? std::errc::not_supported : std::errc::no_such_file_or_directory);
    }
    if (error) return error;
    copyExtendedAttributes(source, target);
    return copyDates(source, target);
}

bool liesIn(const fs::path& place, const fs::path& folder) {
    std::error_code error;
    const fs::path inner = fs::weakly_canonical(place, error);
    const fs::path outer = fs::weakly_canonical(folder, error);
    return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

/// Never over something that is there.
std::error_code copyItem(const fs::path& source, const fs::path& target) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(target, error))) return std::make_error_code(std::errc::file_exists);
    if (fs::is_directory(fs::symlink_status(source, error)) && liesIn(target, source)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    const std::error_code failure = copyInto(source, target);
    if (failure) fs::remove_all(target, error);
    return failure;
}

std::error_code moveItem(const fs::path& source, const fs::path& target) {
    if (std::rename(source.c_str(), target.c_str()) == 0) return {};
    if (errno != EXDEV) return lastError();
    std::error_code error = copyItem(source, target);
    if (!error) fs::remove_all(source, error);
    return error;
}

/// A missing item is no error.
std::error_code removeWhole(const String& path) {
    std::error_code error;
    fs::remove_all(platformPathOfItem(path), error);
    return error;
}

/// The same entry of the same folder, however it is spelled.
bool isSamePlace(const String& first, const String& second) {
    if (stringsAreEqual(first, second)) return true;
    const fs::path firstPlace = platformPathOfItem(first).lexically_normal();
    const fs::path secondPlace = platformPathOfItem(second).lexically_normal();
    if (firstPlace.filename() != secondPlace.filename()) return false;
    std::error_code error;
    return fs::equivalent(fs::absolute(firstPlace, error).parent_path(), fs::absolute(secondPlace, error).parent_path(),
                          error);
}

String sameNameIn(const String& folder, const String& path) {
    return stringByAppendingPathComponents(folder, lastPathComponent(path, 1), nullptr);
}

}  // namespace

bool createDir(const String& path) {
    if (pathExists(path)) return true;
    std::error_code error;
    fs::create_directories(platformPathOfItem(path), error);
    logError(Error(error));
    return !error;
}

String createDir(const String& parent, const String& name) {
    String path = stringByAppendingPathComponents(parent, name, nullptr);
    createDir(path);
    return path;
}

void createDirectories(const String& path) {
    createDir(path);
}

bool removeItem(const String& path) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(platformPathOfItem(path), error))) return false;
    return !removeWhole(path);
}

bool removeFile(const String& path) {
    const std::error_code error = removeWhole(path);
    logError(Error(error), path);
    return !error;
}

String removeItemAtPath(const String& path) {
    const Error error(removeWhole(path));
    logError(error);
    return error.localizedDescription();
}

bool copyFile(const String& src, const String& dst) {
    const String target = pathIsFolder(dst) ? sameNameIn(dst, src) : dst;
    const auto sourceDate = modDateForPath(src);
    if (sourceDate && sourceDate == modDateForPath(target)) return false;
    removeFile(target);
    const Error error(copyItem(platformPathOfItem(src), platformPathOfItem(target)));
    if (!error.isNull()) MyLog("\t\t#### %@", error.localizedDescription());
    return error.isNull();
}

void copyItemToPath(const String& src, const String& dst) {
    removeWhole(dst);
    logError(Error(copyItem(platformPathOfItem(src), platformPathOfItem(dst))));
}

String copyFileObject(const String& src, const String& folder) {
    createDir(folder);
    String target = sameNameIn(folder, src);
    copyItemToPath(src, target);
    return target;
}

namespace {

bool moved(const String& src, const String& dst) {
    if (isSamePlace(src, dst)) return false;
    removeWhole(dst);
    const Error error(moveItem(platformPathOfItem(src), platformPathOfItem(dst)));
    logError(error);
    return error.isNull();
}

}  // namespace

void moveItemToPath(const String& src, const String& dst) {
    moved(src, dst);
}

String moveFileObject(const String& src, const String& folder) {
    const String target = sameNameIn(folder, src);
    if (isSamePlace(src, target)) return {};
    createDir(folder);
    return moved(src, target) ? target : String();
}

}  // namespace vornaset
