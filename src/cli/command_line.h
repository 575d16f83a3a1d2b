#pragma once

#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "companion/authoring_run.h"
#include "companion/pdf_run.h"
#include "companion/preview_run.h"
#include "companion/run.h"

namespace cli {

enum class Verbosity { Normal, Quiet };
enum class Strictness { Normal, Strict };

struct MergeCommand {
    companion::MergeOptions options;
    Strictness strictness = Strictness::Normal;
    Verbosity verbosity = Verbosity::Normal;
};

struct ExportCommand {
    companion::TemplateOptions openTemplate;
    std::string outputPath;
    Verbosity verbosity = Verbosity::Normal;
};

struct CheckCommand {
    companion::TemplateOptions openTemplate;
    std::string dataPath;
    companion::DataOptions data;
    std::string rulesPath;
    Strictness strictness = Strictness::Normal;
};

struct InfoCommand {
    companion::TemplateOptions openTemplate;
};

struct PdfCommand {
    companion::PdfOptions options;
    Verbosity verbosity = Verbosity::Normal;
};

struct PreviewCommand {
    companion::PreviewOptions options;
    Verbosity verbosity = Verbosity::Normal;
};

/// Changes a template and writes it as IDML.
struct AuthoringCommand {
    enum class Kind { Number, Placeholder, Omr, StripStatic } kind = Kind::Number;
    companion::TemplateOptions openTemplate;
    std::vector<companion::FrameAssignment> assignments;  ///< of Number
    companion::PlaceholderPlace placeholder;              ///< of Placeholder
    std::string outputPath;
};

/// Help or the version was asked for: text for standard output.
struct AnswerCommand {
    std::string text;
};

using Command = std::variant<AnswerCommand, MergeCommand, ExportCommand, CheckCommand, InfoCommand, PreviewCommand,
                             AuthoringCommand, PdfCommand>;

/// What was typed makes no sense. what() is one sentence.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Throws UsageError.
Command parseCommandLine(int argumentCount, const char* const* arguments);

}  // namespace cli
