#include "companion/workplace.h"

#include <dlfcn.h>

#include <filesystem>

#include "host/plug_in_object.h"

namespace companion {
namespace {

/// The file of the module that this process is already linked with, so that desk and companion see one instance of it.
std::string modulePath() {
    Dl_info found{};
    if (::dladdr(reinterpret_cast<const void*>(&GetPlugIn), &found) == 0 || !found.dli_fname)
        throw Error("the merge module isn't where it was loaded from; install the program anew.");
    return std::filesystem::absolute(found.dli_fname).string();
}

}  // namespace

Workplace::Workplace(const TemplateOptions& options) {
    desk_.loadPlugIn(modulePath());
    if (!options.fontFolder.empty()) desk_.addFontFolder(std::filesystem::absolute(options.fontFolder));
    open_ = desk_.open(options.path);
    facts_ = factsOf(*open_, options.path);
}

}  // namespace companion
