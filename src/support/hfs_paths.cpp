// Between POSIX and HFS spellings, by components.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "support/locale_text.h"
#include "support/paths.h"
#include "support/volumes.h"

namespace vornaset {

namespace {

using Components = std::vector<std::u16string>;

Components componentsOf(std::u16string_view text, char16_t separator) {
    Components components;
    for (size_t at = 0; at <= text.size();) {
        const size_t end = std::min(text.find(separator, at), text.size());
        components.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return components;
}

void goUp(Components& components) {
    if (!components.empty()) components.pop_back();
}

Components componentsOfPosixPath(std::u16string_view path) {
    Components components;
    for (std::u16string& component : componentsOf(path, u'/')) {
        if (component.empty() || component == u".") continue;
        if (component == u"..") {
            goUp(components);
        } else {
            components.push_back(std::move(component));
        }
    }
    return components;
}

/// A name of one spelling in the other: the separators change places.
std::u16string respelled(std::u16string name, char16_t from, char16_t to) {
    std::replace(name.begin(), name.end(), from, to);
    return name;
}

std::optional<Volume> volumeNamed(std::u16string_view name) {
    const String wanted = canonicallyComposed(String(name));
    for (Volume& volume : volumes()) {
        if (canonicallyComposed(volume.name) == wanted) return std::move(volume);
    }
    return std::nullopt;
}

std::u16string posixPath(const Components& components) {
    std::u16string path;
    for (const std::u16string& component : components) path.append(u"/").append(component);
    return path.empty() ? u"/" : path;
}

/// Nothing when the text doesn't begin with the name of a volume.
std::optional<String> posixPathOfHFS(const String& text) {
    const Components parts = componentsOf(text.view(), u':');
    const auto volume = volumeNamed(parts.front());
    if (!volume) return std::nullopt;
    Components below;
    for (size_t index = 1; index < parts.size(); ++index) {
        if (!parts[index].empty()) {
            below.push_back(respelled(parts[index], u'/', u':'));
        } else if (index + 1 < parts.size()) {  // a ":" at the end marks a folder and goes nowhere
            goUp(below);
        }
    }
    Components components = componentsOfPosixPath(volume->mountPoint.view());
    components.insert(components.end(), below.begin(), below.end());
    return String(posixPath(components));
}

struct MountedVolume {
    Volume volume;
    size_t depth;  ///< components of its mount point
};

/// The volume that an item stands on: the one with the longest mount point that the path begins with.
std::optional<MountedVolume> volumeOfItem(const Components& components) {
    std::optional<MountedVolume> found;
    for (Volume& volume : volumes()) {
        const Components point = componentsOfPosixPath(volume.mountPoint.view());
        const bool begins =
            point.size() <= components.size() && std::equal(point.begin(), point.end(), components.begin());
        if (begins && (!found || point.size() > found->depth)) found = MountedVolume{std::move(volume), point.size()};
    }
    return found;
}

String hfsPathOfPosix(const String& path) {
    const Components components = componentsOfPosixPath(path.view());
    const auto mounted = volumeOfItem(components);
    if (!mounted) return path;
    std::u16string result(mounted->volume.name.view());
    if (components.size() == mounted->depth) result += u':';
    for (size_t index = mounted->depth; index < components.size(); ++index) {
        result.append(u":").append(respelled(components[index], u':', u'/'));
    }
    return result;
}

bool beginsWithSlash(const String& text) {
    return text.view().starts_with(u'/');
}

}  // namespace

String pathWithHFS(const String& text) {
    if (text.length() < 2 || text.find(u':') == String::npos || beginsWithSlash(text)) return text;
    return posixPathOfHFS(text).value_or(text);
}

String pathWithString(const String& text) {
    if (text.isEmpty() || beginsWithSlash(text)) return canonicallyComposed(text);
    return canonicallyComposed(posixPathOfHFS(text).value_or(text));
}

String hfsPathWithString(const String& text) {
    return canonicallyComposed(beginsWithSlash(text) ? hfsPathOfPosix(text) : text);
}

}  // namespace vornaset
