// Tests, names and the user's places.

#include "support/paths.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdlib>

#include "support/log.h"
#include "support/platform_path.h"

namespace vornaset {

namespace {

std::u16string_view withoutTrailingSlashes(std::u16string_view path) {
    while (path.size() > 1 && path.ends_with(u'/')) path.remove_suffix(1);
    return path;
}

std::u16string_view lastComponent(std::u16string_view path) {
    path = withoutTrailingSlashes(path);
    return path == u"/" ? path : path.substr(path.rfind(u'/') + 1);
}

bool equalButForCase(std::u16string_view first, std::u16string_view second) {
    UErrorCode status = U_ZERO_ERROR;
    return u_strCaseCompare(first.data(), static_cast<int32_t>(first.size()), second.data(),
                            static_cast<int32_t>(second.size()), U_FOLD_CASE_DEFAULT, &status) == 0 &&
           U_SUCCESS(status);
}

/// The name's length without its extension. A point at the beginning begins no extension.
size_t lengthWithoutExtension(std::u16string_view name) {
    const size_t point = name.rfind(u'.');
    return point == std::u16string_view::npos || point == 0 ? name.size() : point;
}

std::u16string withoutExtension(std::u16string_view path) {
    path = withoutTrailingSlashes(path);
    const std::u16string_view name = lastComponent(path);
    path.remove_suffix(name.size() - lengthWithoutExtension(name));
    return std::u16string(path);
}

String withExtension(std::u16string path, const String& extension) {
    if (!extension.isNull()) path.append(u".").append(extension.view());
    return path;
}

String inFolder(const String& folder, const String& name, const String& extension) {
    return stringByAppendingPathComponents(folder, name, extension);
}

String& chosenTemporaryFolder() {
    static String folder;
    return folder;
}

}  // namespace

bool pathExists(const String& path) {
    std::error_code error;
    return std::filesystem::exists(platformPath(path), error);
}

bool pathIsFile(const String& path) {
    return pathExists(path);
}

bool pathIsFolder(const String& path) {
    std::error_code error;
    return std::filesystem::is_directory(platformPath(path), error);
}

bool pathEndsWith(const String& path, const String& extension) {
    if (path.isNull() || extension.isNull()) return false;
    const std::u16string_view name = lastComponent(path.view());
    return equalButForCase(name.substr(name.rfind(u'.') + 1), extension.view());
}

bool pathEndsWith(const String& path, const Array& extensions) {
    for (const Value& extension : extensions) {
        if (pathEndsWith(path, extension.string())) return true;
    }
    return false;
}

String stringByAppendingPathComponents(const String& base, const String& name, const String& extension) {
    if (name.isEmpty()) return base;
    std::u16string path(withoutTrailingSlashes(base.view()));
    std::u16string_view component = withoutTrailingSlashes(name.view());
    if (!path.empty()) {
        component.remove_prefix(std::min(component.find_first_not_of(u'/'), component.size()));
        if (!path.ends_with(u'/') && !component.empty()) path += u'/';
    }
    path += component;
    return withExtension(std::move(path), extension);
}

String stringByAppendingPathComponents(const String& base, const Array& names) {
    String path = base;
    for (const Value& name : names) path = stringByAppendingPathComponents(path, name.string(), nullptr);
    return path;
}

String stringByReplacingPathExtension(const String& path, const String& extension) {
    return path.isNull() ? String() : withExtension(withoutExtension(path.view()), extension);
}

String lastPathComponent(const String& path, uint8_t withExtension) {
    if (path.isNull()) return {};
    const std::u16string_view name = lastComponent(path.view());
    return name.substr(0, withExtension == 0 ? lengthWithoutExtension(name) : name.size());
}

String getDocumentsPath(const String& name, const String& extension) {
    return inFolder(documentsFolder(), name, extension);
}

String temporaryPath(const String& name, const String& extension) {
    if (!chosenTemporaryFolder().isNull()) return inFolder(chosenTemporaryFolder(), name, extension);
    const char* folder = std::getenv("TMPDIR");
    const bool declared = folder != nullptr && *folder == '/';
    const String place = String::fromDamagedUTF8(declared ? folder : "/tmp");
    return inFolder(withoutTrailingSlashes(place.view()), name, extension);
}

void setTemporaryFolder(const String& folder) {
    chosenTemporaryFolder() = folder;
}

}  // namespace vornaset
