#include "companion/output_places.h"

#include <filesystem>

#include "companion/error.h"

namespace companion {

namespace fs = std::filesystem;

bool isSamePlace(const std::string& one, const std::string& other) {
    if (one.empty() || other.empty()) return false;
    std::error_code failure;
    if (fs::equivalent(one, other, failure)) return true;
    // What isn't there yet has a name only.
    const fs::path oneName = fs::weakly_canonical(fs::absolute(one, failure), failure);
    if (failure) return one == other;
    const fs::path otherName = fs::weakly_canonical(fs::absolute(other, failure), failure);
    return failure ? one == other : oneName == otherName;
}

void refuseOverwriting(const std::string& output, const std::string& input, const char* what) {
    std::error_code ignored;
    if (fs::exists(input, ignored) && isSamePlace(output, input))
        throw Error("the output \"" + output + "\" is " + what + " itself; choose another name.");
}

void refuseOverwritingInputs(const MergeOptions& options, const std::string& output) {
    refuseOverwriting(output, options.openTemplate.path, "the template");
    refuseOverwriting(output, options.dataPath, "the data file");
    refuseOverwriting(output, options.rulesPath, "the rules file");
    refuseOverwriting(output, options.barcodeTool, "the barcode program");
}

}  // namespace companion
