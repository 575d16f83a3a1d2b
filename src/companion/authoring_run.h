#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "companion/run.h"

namespace companion {

/// A frame and what it is to be.
struct FrameAssignment {
    std::string frame;        ///< id, or the name that a person gave it
    std::int64_t number = 0;  ///< 0 makes it static
    bool hasColumn = false;
    std::string column;  ///< that feeds an image frame; empty takes the column away
};

struct PlaceholderPlace {
    std::string story;           ///< id
    std::uint64_t position = 0;  ///< UTF-16 units from 0
    std::string key;
    bool withSpace = false;  ///< a space behind a value that isn't empty
};

// Each opens the template, changes it and writes the result as IDML; the file appears whole or not at all, and all that
// this system doesn't understand stays as it was. The output may be the template itself. Each gives a sentence that
// tells what was done. Throws Error.

std::string runNumber(const TemplateOptions& options, const std::vector<FrameAssignment>& assignments,
                      const std::string& outputPath);
std::string runPlaceholder(const TemplateOptions& options, const PlaceholderPlace& place,
                           const std::string& outputPath);
std::string runOmr(const TemplateOptions& options, const std::string& outputPath);
std::string runStripStatic(const TemplateOptions& options, const std::string& outputPath);

}  // namespace companion
