#pragma once
// What `vornaset pdf` does: the toolkit's operations on a person's files.

#include <string>
#include <vector>

#include "companion/run.h"

namespace companion {

enum class PdfOperation {
    Rewrite,      ///< one input
    Underlay,     ///< two: what lies behind, what lies in front
    Backgrounds,  ///< the document, then a background for each of its pages
    Append,       ///< any number
    CropToTrim,   ///< one input, here and below
    Scale,
    Fit,
    DeleteLast,
    Reverse,
    Inks,   ///< a text
    Boxes,  ///< a text
    Jpeg,   ///< a picture
};

struct PdfOptions {
    PdfOperation operation = PdfOperation::Rewrite;
    std::vector<std::string> inputs;
    std::string outputPath;  ///< empty for a text that is given back
    double factor = 1;       ///< of Scale
    double width = 0;        ///< of Fit, in points
    double height = 0;
    std::uint64_t page = 1;  ///< of Jpeg, from 1
};

struct PdfResult {
    RunOutcome outcome = RunOutcome::Finished;
    std::uint64_t pages = 0;  ///< of what was written or looked at
    std::string text;         ///< of Inks and Boxes
};

/// Reads, prepares (pdf_preparation.h), works, writes. The output appears under its name only when it is whole, and may
/// be an input. Throws Error: one sentence.
PdfResult runPdf(const PdfOptions& options, RunWatcher& watcher);

}  // namespace companion
