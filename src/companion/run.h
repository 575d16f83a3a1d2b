#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/csv_reader.h"
#include "companion/merge_plan.h"

namespace companion {

/// Whoever watches a run: a person at a terminal, a test. Called in the thread of the run.
class RunWatcher {
  public:
    virtual ~RunWatcher() = default;
    /// After every page. False ends the run without a file.
    virtual bool goesOn(std::uint64_t pagesDone, std::uint64_t pagesTotal) = 0;
    /// The same answer the other way round, between two pages: asked while the run waits for another program.
    virtual bool isToStop() const = 0;
    /// Something that the user should know and that doesn't end the run: a clause without full stop.
    virtual void warn(const std::string& clause) = 0;
    /// From here on a file is being written, which an end of the process would leave behind.
    virtual void writingBegins() = 0;
};

enum class EmptyLines { Remove, Keep };

struct TemplateOptions {
    std::string path;
    std::string fontFolder;  ///< more fonts; empty for none
};

struct MergeOptions {
    TemplateOptions openTemplate;
    std::string dataPath;
    DataOptions data;
    std::string rulesPath;  ///< empty for none
    std::string outputPath;
    std::string reportPath;    ///< empty for none
    std::string imagesFolder;  ///< where relative paths of pictures begin; empty for the data file's folder
    std::string barcodeTool;   ///< path of a program; empty for the shipped one, which needs no process
    MergeRange range;
    EmptyLines emptyLines = EmptyLines::Remove;
};

enum class RunOutcome { Finished, Stopped };

/// A page that isn't as it should be.
struct ProblemPage {
    std::string kind;          ///< as on the pasteboard, "overset" or "missingImg", or "importFailed"
    std::uint64_t page = 0;    ///< in the PDF, from 1, where the frame stands
    std::uint64_t record = 0;  ///< in the data, from 1
    std::string frame;         ///< name as `info` gives it
    std::string story;         ///< likewise; empty for an image frame
    std::string column;        ///< that feeds an image frame; empty for text
    std::string file;          ///< of an image frame: what the cell says, or the file that can't be imported
    std::string reason;        ///< why an image frame has no picture, in a sentence or two; may be empty
    bool operator==(const ProblemPage&) const = default;
};

struct RunResult {
    RunOutcome outcome = RunOutcome::Finished;
    std::uint64_t records = 0;
    std::uint64_t pageSets = 0;
    std::uint64_t pages = 0;
    std::vector<ProblemPage> problems;
    std::vector<std::string> warnings;                               ///< all that the watcher was told
    std::vector<std::pair<std::string, std::string>> replacedFonts;  ///< asked for, used
    std::string missingCharacters;                                   ///< that no font of the machine has
};

/// Reads the rows, opens the template, posts the job, exports one page set after the other and reports. The PDF and the
/// report appear under their names only when they are whole. Throws Error: one sentence.
RunResult runMerge(const MergeOptions& options, RunWatcher& watcher);

/// Exports the document as it stands, with no job waiting. Throws Error.
RunResult runExport(const TemplateOptions& options, const std::string& outputPath, RunWatcher& watcher);

/// The findings as text, and whether the print would be right. Throws Error.
struct CheckResult {
    std::string text;
    bool isGood = true;
    std::vector<std::string> warnings;  ///< of the data
};
CheckResult runCheck(const TemplateOptions& options, const std::string& dataPath, const DataOptions& data,
                     const std::string& rulesPath);

/// The template described. Throws Error.
std::string runInfo(const TemplateOptions& options);

}  // namespace companion
