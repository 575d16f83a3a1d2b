#pragma once

#include <string>

#include "companion/run.h"

namespace companion {

/// Whether two paths lead to the same file, or would when it is written; symbolic links and other spellings of a folder
/// are seen through. False when one of them is empty.
bool isSamePlace(const std::string& one, const std::string& other);

/// Throws Error when the output is this input; `what` names the input: "the template". An empty path is no file.
void refuseOverwriting(const std::string& output, const std::string& input, const char* what);

/// Throws Error when the output is one of the files that the merge reads, pictures aside.
void refuseOverwritingInputs(const MergeOptions& options, const std::string& output);

}  // namespace companion
