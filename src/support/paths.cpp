#include "support/paths.h"

#include <filesystem>

#include "support/log.h"

namespace vornaset {

namespace {

std::filesystem::path platformPath(const String& path) {
    return std::filesystem::path(path.utf8());
}

}  // namespace

bool createDir(const String& path) {
    std::error_code error;
    const std::filesystem::path place = platformPath(path);
    if (std::filesystem::exists(place, error)) return true;
    std::filesystem::create_directories(place, error);
    logError(Error(error));
    return !error;
}

bool removeFile(const String& path) {
    std::error_code error;
    std::filesystem::remove(platformPath(path), error);
    logError(Error(error), path);
    return !error;
}

}  // namespace vornaset
