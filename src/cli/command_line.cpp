#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <sstream>

#include "cli/authoring_command_line.h"
#include "cli/data_arguments.h"
#include "cli/exit_status.h"
#include "cli/pdf_command_line.h"
#include "cli/preview_command_line.h"
#include "cli/version.h"

namespace cli {
namespace {

constexpr std::size_t descriptionColumn = 30;

const char* const programHelp =
    "Vornaset makes one print-ready PDF out of a page-layout template (IDML) and a table of rows (CSV): each record "
    "gets "
    "its own page or pages, or its own place on a page.";

const char* const mergeHelp =
    "The text <<Name>> in the template shows the column Name; a column \"#Name\" holds the name of the character style "
    "for "
    "it. The first record of the data file is the column names. A page set is one pass over the template's pages; "
    "frames "
    "numbered 1, 2, ... show the records of a page set. A numbered empty frame with a column shows the picture whose "
    "path "
    "stands in the cell (JPEG, PNG, TIFF, PDF, SVG, EPS), or, where no such file is, the EAN-13 barcode of the cell's "
    "digits. A folder \"Document fonts\" beside the template is used by "
    "itself. "
    "The PDF appears under its name only when it is whole; until then the old file stays.\n\n";

const char* const mergeExamples =
    "Examples:\n"
    "  vornaset merge letter.idml people.csv -o letters.pdf\n"
    "  vornaset merge labels.idml people.csv -o labels.pdf --start 101 --count 48 --report labels.json --strict\n"
    "  vornaset merge letter.idml old.txt -o letters.pdf --delimiter tab --encoding windows-1252\n\n";

const char* const rulesHelp =
    "A rules file is a JSON array of rules; where no column has a rule's name, the placeholder shows the value of the "
    "column "
    "\"contentOf\", translated:\n"
    "  [{\"name\": \"Salutation\", \"contentOf\": \"Sex\", \"replacements\": {\"m\": \"Mr\", \"f\": \"Mrs\"}}]\n\n";

/// Breaks lines that a terminal would break in the middle of a word. What stands beside an option's name goes on below
/// its own first word.
std::string wrapped(const std::string& help) {
    constexpr std::size_t width = 100;
    std::string text;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        bool isBesideName = line.starts_with("  ") && line.size() > descriptionColumn &&
                            line.compare(descriptionColumn - 2, 2, "  ") == 0;
        std::string indent(isBesideName ? descriptionColumn : 0, ' ');
        while (line.size() > width) {
            std::size_t blank = line.rfind(' ', width);
            if (blank == line.npos || blank <= indent.size()) break;
            text.append(line, 0, blank).append("\n");
            line.replace(0, blank + 1, indent);
        }
        text += line + "\n";
    }
    return text;
}

class Parser {
  public:
    Parser() : program_(programHelp, "vornaset") {
        program_.require_subcommand(1);
        program_.set_help_flag("-h,--help", "Print this help and end");
        program_.set_version_flag("--version", std::string("vornaset ") + programVersion, "Print the version and end");
        program_.footer(std::string("Say \"vornaset COMMAND --help\" for the options of a command.\n\n") +
                        exitStatusHelp);
        program_.get_formatter()->column_width(descriptionColumn);
        declareMerge();
        declareExport();
        declareCheck();
        declareInfo();
        preview_.declare(program_);
        authoring_.declare(program_);
        pdf_.declare(program_);
    }

    Command parse(int argumentCount, const char* const* arguments) {
        try {
            program_.parse(argumentCount, arguments);
        } catch (const CLI::CallForHelp&) {
            return AnswerCommand{helpText()};
        } catch (const CLI::CallForVersion& version) {
            return AnswerCommand{std::string(version.what()) + "\n"};
        } catch (const CLI::ParseError& error) {
            throw UsageError(sentenceOf(error, argumentCount > 1 ? arguments[1] : ""));
        }
        if (merge_->parsed()) return mergeCommand();
        if (export_->parsed()) return ExportCommand{openTemplate_, outputPath_, verbosity()};
        if (check_->parsed()) return CheckCommand{openTemplate_, dataPath_, data_.read(), rulesPath_, strictness()};
        if (preview_.parsed()) return preview_.read();
        if (authoring_.parsed()) return authoring_.read();
        if (pdf_.parsed()) return pdf_.read();
        return InfoCommand{openTemplate_};
    }

  private:
    void declareTemplate(CLI::App& command) {
        command.add_option("TEMPLATE", openTemplate_.path, "The template, an IDML file")->required()->type_name("");
        command
            .add_option("--fonts", openTemplate_.fontFolder,
                        "A folder with more fonts, used before those of the machine. Default: none. "
                        "Example: --fonts ~/fonts")
            ->type_name("DIR");
    }

    void declareData(CLI::App& command) {
        command.add_option("DATA", dataPath_, "The data file, CSV")->required()->type_name("");
        data_.declare(command);
        command
            .add_option("--rules", rulesPath_,
                        "A file of rules that translate values (see below). Default: none. Example: --rules rules.json")
            ->type_name("FILE.json");
    }

    void declareOutput(CLI::App& command, const char* example) {
        command.add_option("-o,--output", outputPath_, std::string("The PDF to write. Example: ") + example)
            ->required()
            ->type_name("OUT.pdf");
        command.add_flag("--quiet", isQuiet_, "Print nothing but errors: no progress bar, no warnings, no summary");
    }

    void declareStrict(CLI::App& command, const char* what) { command.add_flag("--strict", isStrict_, what); }

    CLI::App& declareCommand(const char* name, const char* description, const std::string& footer) {
        CLI::App& command = *program_.add_subcommand(name, description);
        command.set_help_flag("-h,--help", "Print this help and end");
        command.footer(footer);
        return command;
    }

    void declareMerge() {
        merge_ = &declareCommand("merge", "Merge a template with the records of a data file into one PDF.",
                                 std::string(mergeHelp) + mergeExamples + rulesHelp + exitStatusHelp);
        declareTemplate(*merge_);
        declareData(*merge_);
        declareOutput(*merge_, "-o letters.pdf");
        merge_->add_option("--start", start_, "First record, from 1. Default: 1. Example: --start 101")->type_name("N");
        merge_
            ->add_option("--count", count_,
                         "That many records and no more. Default: all that follow. Example: --count 50")
            ->type_name("N");
        merge_
            ->add_option("--offset", offset_,
                         "Records from one page set to the next. Default: the largest frame number of the template, at "
                         "least 1. Example: --offset 24")
            ->type_name("N");
        merge_
            ->add_option("--images", imagesFolder_,
                         "The folder where relative paths of pictures begin. Default: the data file's folder. "
                         "Example: --images ../photos")
            ->type_name("DIR");
        merge_
            ->add_option(
                "--barcode", barcodeTool_,
                "A program that draws barcodes: it gets -e ean13 -b CODE -D and prints a PDF page description. "
                "Default: the shipped one, inside this process. Example: --barcode ./ean")
            ->type_name("TOOL");
        merge_->add_flag("--keep-empty-lines", keepsEmptyLines_,
                         "Keep lines whose placeholders are all empty. Default: they go");
        merge_
            ->add_option(
                "--report", reportPath_,
                "Write a JSON file with the counts and every problem page (kind, page and record from 1, frame, "
                "story, for a picture column and file). Default: none. Example: --report letters.json")
            ->type_name("FILE.json");
        declareStrict(*merge_,
                      "Exit status 3 when there are problems: text that doesn't fit, pictures that are missing");
    }

    void declareExport() {
        export_ =
            &declareCommand("export", "Export a template as it stands, placeholders and all, into one PDF.",
                            std::string("Example:\n  vornaset export letter.idml -o plain.pdf\n\n") + exitStatusHelp);
        declareTemplate(*export_);
        declareOutput(*export_, "-o plain.pdf");
    }

    void declareCheck() {
        check_ = &declareCommand(
            "check",
            "Tell how template and data fit together: placeholders that no column or rule answers, columns that "
            "nothing uses, "
            "fonts that the machine lacks, character styles that the data name and the template lacks.",
            std::string("Example:\n  vornaset check letter.idml people.csv\n\n") + rulesHelp + exitStatusHelp);
        declareTemplate(*check_);
        declareData(*check_);
        declareStrict(*check_, "Exit status 3 when anything is found but columns that nothing uses");
    }

    void declareInfo() {
        info_ = &declareCommand(
            "info", "Describe a template: pages, frames with their numbers and columns, stories, styles, fonts.",
            std::string("Example:\n  vornaset info letter.idml\n\n") + exitStatusHelp);
        declareTemplate(*info_);
    }

    Verbosity verbosity() const { return isQuiet_ ? Verbosity::Quiet : Verbosity::Normal; }
    Strictness strictness() const { return isStrict_ ? Strictness::Strict : Strictness::Normal; }

    MergeCommand mergeCommand() const {
        MergeCommand command;
        command.options.openTemplate = openTemplate_;
        command.options.dataPath = dataPath_;
        command.options.data = data_.read();
        command.options.rulesPath = rulesPath_;
        command.options.outputPath = outputPath_;
        command.options.reportPath = reportPath_;
        command.options.imagesFolder = imagesFolder_;
        command.options.barcodeTool = barcodeTool_;
        if (!start_.empty()) command.options.range.start = wholeNumber("--start", start_);
        if (!count_.empty()) command.options.range.count = wholeNumber("--count", count_);
        if (!offset_.empty()) command.options.range.offset = wholeNumber("--offset", offset_);
        command.options.emptyLines = keepsEmptyLines_ ? companion::EmptyLines::Keep : companion::EmptyLines::Remove;
        command.strictness = strictness();
        command.verbosity = verbosity();
        return command;
    }

    const CLI::App& commandInUse() const {
        for (const CLI::App* command : {merge_, export_, check_, info_})
            if (command->parsed()) return *command;
        if (preview_.parsed()) return preview_.commandInUse();
        if (authoring_.parsed()) return authoring_.commandInUse();
        if (pdf_.parsed()) return pdf_.commandInUse();
        return program_;
    }

    std::string helpText() const { return wrapped(program_.help()); }

    /// The library's message as one sentence of ours.
    std::string sentenceOf(const CLI::ParseError& error, const std::string& firstArgument) const {
        const CLI::App& command = commandInUse();
        std::string asking = "vornaset --help";
        if (&command != &program_) {
            const bool isOperation = pdf_.parsed() && command.get_name() != "pdf";
            asking = (isOperation ? "vornaset pdf " : "vornaset ") + command.get_name() + " --help";
        }
        std::string what = error.what();
        if (&command != &program_ && command.get_name() == "pdf" && dynamic_cast<const CLI::RequiredError*>(&error))
            what =
                "say what to do: rewrite, underlay, backgrounds, append, crop-to-trim, scale, fit, delete-last, "
                "reverse, inks, boxes or jpeg";
        if (&command == &program_ && dynamic_cast<const CLI::RequiredError*>(&error))
            what = firstArgument.empty() || firstArgument[0] == '-'
                       ? "say what to do: merge, export, check, info, preview, number, placeholder, omr, strip-static "
                         "or pdf"
                       : "there is no command \"" + firstArgument +
                             "\" but merge, export, check, info, preview, number, placeholder, omr, strip-static and "
                             "pdf";
        while (!what.empty() && (what.back() == '\n' || what.back() == '.' || what.back() == ' ')) what.pop_back();
        if (what.size() > 1 && what[0] >= 'A' && what[0] <= 'Z' && what[1] >= 'a' && what[1] <= 'z')
            what[0] = static_cast<char>(what[0] + 32);
        return what + "; see " + asking + ".";
    }

    CLI::App program_;
    CLI::App *merge_ = nullptr, *export_ = nullptr, *check_ = nullptr, *info_ = nullptr;
    companion::TemplateOptions openTemplate_;
    std::string dataPath_, rulesPath_, outputPath_, reportPath_, imagesFolder_, barcodeTool_;
    DataArguments data_;
    PreviewArguments preview_;
    AuthoringArguments authoring_;
    PdfArguments pdf_;
    std::string start_, count_, offset_;
    bool keepsEmptyLines_ = false, isStrict_ = false, isQuiet_ = false;
};

}  // namespace

Command parseCommandLine(int argumentCount, const char* const* arguments) {
    return Parser().parse(argumentCount, arguments);
}

}  // namespace cli
