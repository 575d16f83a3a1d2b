#pragma once

#include <string>

#include "companion/run.h"

namespace companion {

/// The report of a run as JSON text with a line end behind it. Members: "template", "data", "output", "records",
/// "pages", "pageSets", "problems" (each "kind", "page", "record", "frame", "story"), "warnings", "missingFonts" (each
/// "asked", "used"), "missingCharacters". The same run gives the same text: there is no clock in it. A name that isn't
/// UTF-8 is shown with U+FFFD.
std::string reportText(const MergeOptions& options, const RunResult& result);

/// A small file that appears under its name when it is whole. The temporary file beside it is made at once, so that a
/// folder that can't be written is told before the work and not after it.
class ReportFile {
  public:
    /// Throws Error.
    explicit ReportFile(const std::string& path);
    /// Without finish(): takes the temporary file away.
    ~ReportFile();
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;

    /// Writes the text, waits for the disk and puts the file under its name. Throws Error.
    void finish(const std::string& text);

  private:
    [[noreturn]] void fail(const std::string& what, int reason);

    std::string path_;
    std::string temporaryPath_;
    int descriptor_ = -1;
};

}  // namespace companion
