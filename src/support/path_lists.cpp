// What is in a folder.

#include <algorithm>
#include <vector>

#include "support/locale_text.h"
#include "support/paths.h"
#include "support/platform_path.h"

namespace vornaset {

namespace {

namespace fs = std::filesystem;

enum class Depth { direct, whole };
enum class Hidden { keep, leaveOut };

/// Appends what is in the folder, a folder before its contents. `hidden` is about this folder's own entries.
void appendEntries(std::vector<fs::path>& entries, const fs::path& folder, Depth depth, Hidden hidden) {
    std::vector<fs::path> found;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const bool isHidden = entry->path().filename().native().starts_with('.');
        if (!(isHidden && hidden == Hidden::leaveOut)) found.push_back(entry->path());
    }
    std::sort(found.begin(), found.end());
    for (fs::path& path : found) {
        const bool enters = depth == Depth::whole && fs::is_directory(fs::symlink_status(path, error));
        entries.push_back(path);
        if (enters) appendEntries(entries, path, depth, Hidden::keep);
    }
}

/// Empty for what is no folder. The depth is bounded by the length that the platform allows a path.
std::vector<fs::path> entriesOf(const String& path, Depth depth, Hidden hidden) {
    std::vector<fs::path> entries;
    appendEntries(entries, platformPathOfItem(path), depth, hidden);
    return entries;
}

template <class Filter>
Array sortedTexts(const std::vector<fs::path>& entries, Filter filter) {
    Array texts = Array::makeMutable();
    for (const fs::path& entry : entries) {
        std::error_code error;
        const String text = textOfPath(entry);
        if (!text.isNull() && filter(fs::status(entry, error))) texts.add(text);
    }
    return sortedByStandardCompare(texts);
}

uint8_t walk(const std::vector<fs::path>& entries, PathCallback callback, void* context) {
    for (const fs::path& entry : entries) {
        const String text = textOfPath(entry);
        if (!text.isNull() && callback(text, context) == 0) return 0;
    }
    return 1;
}

}  // namespace

Array foldersAtPath(const String& path) {
    return sortedTexts(entriesOf(path, Depth::direct, Hidden::keep),
                       [](const fs::file_status& status) { return fs::is_directory(status); });
}

Array folderNamesAtPath(const String& path) {
    Array names = Array::makeMutable();
    for (const Value& folder : foldersAtPath(path)) names.add(lastPathComponent(folder.string(), 1));
    return names;
}

Array filesAtPath(const String& path, uint8_t deep) {
    return sortedTexts(entriesOf(path, deep == 1 ? Depth::whole : Depth::direct, Hidden::leaveOut),
                       [](const fs::file_status& status) { return fs::exists(status); });
}

uint8_t EnumFolder(const String& path, PathCallback callback, void* context) {
    return walk(entriesOf(path, Depth::whole, Hidden::leaveOut), callback, context);
}

uint8_t EnumFolderFlat(const String& path, PathCallback callback, void* context) {
    return walk(entriesOf(path, Depth::direct, Hidden::leaveOut), callback, context);
}

}  // namespace vornaset
