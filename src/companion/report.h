#pragma once

#include <string>

#include "companion/run.h"

namespace companion {

/// The report of a run as JSON text with a line end behind it. Members: "template", "data", "output", "records",
/// "pages", "pageSets", "problems" (each "kind", "page", "record", "frame", "story", of pictures also "column" and
/// "file"), "warnings", "missingFonts" (each "asked", "used"), "missingCharacters". The same run gives the same text:
/// there is no clock in it. A name that isn't UTF-8 is shown with U+FFFD.
std::string reportText(const MergeOptions& options, const RunResult& result);

}  // namespace companion
