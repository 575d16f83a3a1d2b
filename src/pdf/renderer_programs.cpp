#include "pdf/renderer_programs.h"

#include <dlfcn.h>

#include <filesystem>
#include <optional>

#include "support/exception.h"
#include "support/processes.h"

namespace vornaset {

namespace {

namespace fs = std::filesystem;

/// The folder of the library that this code stands in, and the one above it, as in a build folder's tests.
std::vector<fs::path> ownFolders() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&absolutePath), &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code failure;
    const fs::path module = fs::canonical(info.dli_fname, failure);
    if (failure) return {};
    return {module.parent_path(), module.parent_path().parent_path()};
}

/// Null when no such file stands beside the library.
std::optional<std::string> ownProgram(const std::string& name) {
    for (const fs::path& folder : ownFolders()) {
        std::error_code failure;
        if (fs::is_regular_file(folder / name, failure)) return (folder / name).string();
    }
    return std::nullopt;
}

}  // namespace

std::string absolutePath(const String& path) {
    std::error_code failure;
    const fs::path absolute = fs::absolute(path.utf8(), failure);
    return failure ? "/" + path.utf8() : absolute.string();
}

std::string outputOfProgram(const std::string& name, const std::vector<std::string>& arguments) {
    // The limits are set by programs that every Debian machine has; a kill after the limit can't be slept through.
    std::vector<Value> words{String("timeout"), String("--signal=KILL"), String("60")};
    if (const auto own = ownProgram(name)) {
        words.emplace_back(String(own->c_str()));
    } else {
        for (const char* word : {"prlimit", "--as=4294967296", name.c_str()}) words.emplace_back(String(word));
    }
    for (const std::string& argument : arguments) words.emplace_back(String(argument.c_str()));
    try {
        return std::string(dataWithShellScript(u"/usr/bin/env", Array::make(std::move(words))).view());
    } catch (const Exception&) {  // a page that can't be drawn is an empty bitmap, whatever the reason
        return {};
    }
}

}  // namespace vornaset
