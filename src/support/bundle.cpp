#include "support/bundle.h"

#include <dlfcn.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

namespace vornaset {

Bundle gBundle;

namespace {

namespace fs = std::filesystem;

std::vector<String>& foldersAskedFirst() {
    static std::vector<String> folders;
    return folders;
}

fs::path platformPath(const String& path) {
    return fs::path(path.utf8());
}

String textOfPath(const fs::path& path) {
    return String::fromDamagedUTF8(path.string());
}

/// Where installed resources stand, as seen from the file of a library or a program.
void appendFoldersAround(const fs::path& file, std::vector<fs::path>& folders) {
    if (file.empty()) return;
    const fs::path home = file.parent_path();
    folders.push_back(home / "resources");
    folders.push_back(home.parent_path() / "resources");
    folders.push_back(home.parent_path() / "share" / "vornaset" / "resources");
}

/// The file that holds this very function: the plug-in's library, or a program that has it built in.
fs::path ownFile() {
    Dl_info found{};
    if (dladdr(reinterpret_cast<const void*>(&setBundleFolders), &found) == 0 || found.dli_fname == nullptr) return {};
    std::error_code ignored;
    return fs::canonical(found.dli_fname, ignored);
}

std::vector<fs::path> bundleFolders() {
    std::vector<fs::path> folders;
    for (const String& folder : foldersAskedFirst()) folders.push_back(platformPath(folder));
    appendFoldersAround(ownFile(), folders);
    std::error_code ignored;
    appendFoldersAround(fs::read_symlink("/proc/self/exe", ignored), folders);
    return folders;
}

std::optional<std::string> contentOfFile(const String& path) {
    if (path.isNull()) return std::nullopt;
    std::ifstream file(platformPath(path), std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

Bundle Bundle::withIdentifier(const String& identifier) {
    if (identifier.isEmpty() || identifier.find(u'/') != String::npos) return {};
    if (identifier == String(".") || identifier == String("..")) return {};
    for (const fs::path& folder : bundleFolders()) {
        if (const Bundle bundle = withPath(textOfPath(folder / platformPath(identifier)))) return bundle;
    }
    return {};
}

Bundle Bundle::withPath(const String& path) {
    std::error_code ignored;
    if (path.isEmpty() || !fs::is_directory(platformPath(path), ignored)) return {};
    const size_t end = path.view().find_last_not_of(u'/');
    return end == String::npos ? Bundle(path) : Bundle(path.substring(0, end + 1));
}

String Bundle::identifier() const {
    return isNull() ? String() : textOfPath(platformPath(path_).filename());
}

String Bundle::pathForResource(const String& name, const String& type) const {
    if (isNull() || name.isEmpty()) return {};
    String path = path_ + "/" + name;
    if (!type.isEmpty()) path = path + "." + type;
    std::error_code ignored;
    return fs::is_regular_file(platformPath(path), ignored) ? path : String();
}

std::vector<String> setBundleFolders(std::vector<String> folders) {
    return std::exchange(foldersAskedFirst(), std::move(folders));
}

String pathForResource(const String& name, const String& type) {
    return gBundle.pathForResource(name, type);
}

String pathForResource(const char* name, const char* type) {
    return pathForResource(String(name), String(type));
}

String stringWithResource(const String& name, const String& type) {
    const std::optional<std::string> content = contentOfFile(pathForResource(name, type));
    return content ? String::fromUTF8(*content) : String();
}

Data dataWithResource(const String& name, const String& type) {
    std::optional<std::string> content = contentOfFile(pathForResource(name, type));
    return content ? Data(std::move(*content)) : Data();
}

}  // namespace vornaset
