#pragma once
// Between the library's texts and the platform's paths.

#include <filesystem>
#include <string>

#include "support/values.h"

namespace vornaset {

/// Empty, which names nothing, for null and for a text with U+0000, which the platform would cut there.
inline std::filesystem::path platformPath(const String& path) {
    if (path.find(u'\0') != String::npos) return {};
    return std::filesystem::path(path.utf8());
}

/// The same without slashes at its end, which the platform would take for a wish to follow a link.
inline std::filesystem::path platformPathOfItem(const String& path) {
    std::string place = platformPath(path).native();
    while (place.size() > 1 && place.ends_with('/')) place.pop_back();
    return place;
}

/// Null for a path that is no UTF-8.
inline String textOfPath(const std::filesystem::path& path) {
    return String::fromUTF8(path.native());
}

}  // namespace vornaset
