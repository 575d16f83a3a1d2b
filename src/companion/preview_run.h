#pragma once

#include <cstdint>
#include <string>

#include "companion/run.h"

namespace companion {

struct PreviewOptions {
    MergeOptions merge;        ///< output, report and range are left alone
    std::uint64_t record = 1;  ///< from 1
    std::uint64_t page = 0;    ///< of the record's page set, from 1; 0 for the first that has a frame of the record
    int pixelsPerInch = 150;
    std::string imagePath;  ///< PNG
};

/// Draws the page on which a merge of all records shows this one, with the other records of that page. Gives a line
/// that tells what was written. Throws Error, also when the machine has no program that draws PDF pages; Stopped
/// when the watcher wants an end.
std::string runPreview(const PreviewOptions& options, RunWatcher& watcher);

}  // namespace companion
