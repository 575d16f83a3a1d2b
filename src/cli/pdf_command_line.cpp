#include "cli/pdf_command_line.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <optional>
#include <vector>

#include "cli/exit_status.h"

namespace cli {

using companion::PdfOperation;

namespace {

constexpr double pointsPerMillimetre = 72 / 25.4;
constexpr double pointsPerInch = 72;
constexpr double mostPoints = 14400;  // ISO 32000-1 Annex C: the longest side of a page
constexpr double mostFactor = 1000;

std::optional<double> decimalNumber(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
    return number;
}

double lengthInPoints(const char* name, const std::string& text) {
    std::string_view digits = text;
    double unit = 1;
    for (const auto& [suffix, points] :
         {std::pair<std::string_view, double>{"mm", pointsPerMillimetre}, {"in", pointsPerInch}, {"pt", 1}}) {
        if (!digits.ends_with(suffix)) continue;
        digits.remove_suffix(suffix.size());
        unit = points;
        break;
    }
    const std::optional<double> number = decimalNumber(digits);
    if (!number || *number * unit <= 0 || *number * unit > mostPoints)
        throw UsageError(std::string(name) +
                         " needs a length above 0 and up to 14400 points, like 595.276, 210mm or 8.5in, "
                         "not \"" +
                         text + "\".");
    return *number * unit;
}

double scaleFactor(const std::string& text) {
    const std::optional<double> number = decimalNumber(text);
    if (!number || *number <= 0 || *number > mostFactor)
        throw UsageError("FACTOR needs a number above 0 and up to 1000, like 0.5, not \"" + text + "\".");
    return *number;
}

std::uint64_t pageNumber(const std::string& text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0)
        throw UsageError("PAGE needs a whole number from 1, not \"" + text + "\".");
    return number;
}

enum class Output { Pdf, Jpeg, Text };

struct OperationEntry {
    PdfOperation operation;
    const char* name;
    const char* description;
    const char* example;
    Output output = Output::Pdf;
};

const OperationEntry operations[] = {
    {PdfOperation::Rewrite, "rewrite", "Read a file and write it anew: what no page needs is left out.",
     "vornaset pdf rewrite in.pdf -o out.pdf"},
    {PdfOperation::Underlay, "underlay",
     "Lay the pages of BACK behind the pages of FRONT, beginning again when BACK has fewer.",
     "vornaset pdf underlay letterhead.pdf letters.pdf -o printed.pdf"},
    {PdfOperation::Backgrounds, "backgrounds",
     "Lay the first page of each BACK behind the page of IN at the same place: one BACK for each page, in order.",
     "vornaset pdf backgrounds letter.pdf first.pdf next.pdf next.pdf -o printed.pdf"},
    {PdfOperation::Append, "append", "Join the pages of several files.",
     "vornaset pdf append a.pdf b.pdf c.pdf -o all.pdf"},
    {PdfOperation::CropToTrim, "crop-to-trim", "Cut each page to its trim box: bleed and marks go out of sight.",
     "vornaset pdf crop-to-trim cards.pdf -o screen.pdf"},
    {PdfOperation::Scale, "scale", "Scale the pages and their boxes by a factor.",
     "vornaset pdf scale a4.pdf 0.7071 -o a5.pdf"},
    {PdfOperation::Fit, "fit",
     "Scale each page so that its trim box is WIDTH by HEIGHT; the two directions are scaled apart.",
     "vornaset pdf fit in.pdf 210mm 297mm -o a4.pdf"},
    {PdfOperation::DeleteLast, "delete-last", "Leave out the last page.", "vornaset pdf delete-last in.pdf -o out.pdf"},
    {PdfOperation::Reverse, "reverse", "Put the pages in reverse order.", "vornaset pdf reverse in.pdf -o out.pdf"},
    {PdfOperation::Inks, "inks",
     "Tell which of the inks C, M, Y and K each page uses, however faintly. The pages are drawn to find out.",
     "vornaset pdf inks in.pdf", Output::Text},
    {PdfOperation::Boxes, "boxes", "Tell the boxes of each page, left, bottom, right and top in millimetres.",
     "vornaset pdf boxes in.pdf", Output::Text},
    {PdfOperation::Jpeg, "jpeg", "Draw a page as a JPEG picture, one pixel a point.",
     "vornaset pdf jpeg in.pdf 1 -o page.jpg", Output::Jpeg},
};

}  // namespace

struct PdfArguments::State {
    CLI::App* pdf = nullptr;
    std::vector<std::pair<const OperationEntry*, CLI::App*>> commands;
    std::string input;                ///< where there is one
    std::vector<std::string> inputs;  ///< where there are more
    std::string first, second;        ///< numbers behind the input, as typed
    std::string output;
    bool isQuiet = false;

    /// Null before one was asked for.
    const std::pair<const OperationEntry*, CLI::App*>* chosen() const {
        for (const auto& command : commands)
            if (command.second->parsed()) return &command;
        return nullptr;
    }

    void declareInputs(const OperationEntry& entry, CLI::App& command) {
        const auto add = [&](const char* name, const char* description) {
            return command.add_option(name, inputs, description)->required()->type_name("");
        };
        switch (entry.operation) {
            case PdfOperation::Underlay:
                add("BACK FRONT", "What lies behind, then what lies in front")->expected(2);
                break;
            case PdfOperation::Backgrounds:
                add("IN BACK", "The file, then a background for each of its pages")->expected(2, maximumInputs);
                break;
            case PdfOperation::Append:
                add("IN", "The files, in order")->expected(1, maximumInputs);
                break;
            default:
                command.add_option("IN", input, "The PDF file")->required()->type_name("");
                break;
        }
        const auto addNumber = [&](const char* name, std::string& typed, const char* description) {
            command.add_option(name, typed, description)->required()->type_name("");
        };
        if (entry.operation == PdfOperation::Scale) addNumber("FACTOR", first, "1 leaves the size, 0.5 halves it");
        if (entry.operation == PdfOperation::Jpeg) addNumber("PAGE", first, "The page, from 1");
        if (entry.operation == PdfOperation::Fit) {
            addNumber("WIDTH", first, "In points, or with mm, in or pt behind the number");
            addNumber("HEIGHT", second, "Likewise");
        }
    }

    void declareOutput(const OperationEntry& entry, CLI::App& command) {
        switch (entry.output) {
            case Output::Pdf:
                command.add_option("-o,--output", output, "The PDF to write; it may be an input")
                    ->required()
                    ->type_name("OUT.pdf");
                break;
            case Output::Jpeg:
                command.add_option("-o,--output", output, "The picture to write")->required()->type_name("OUT.jpg");
                break;
            case Output::Text:
                command.add_option("-o,--output", output, "The text to write. Default: standard output")
                    ->type_name("OUT.txt");
                break;
        }
        command.add_flag("--quiet", isQuiet, "Print nothing but errors and what was asked for");
    }

    static constexpr int maximumInputs = 1 << 20;
};

PdfArguments::PdfArguments() : state_(std::make_unique<State>()) {}
PdfArguments::~PdfArguments() = default;

void PdfArguments::declare(CLI::App& program) {
    state_->pdf = program.add_subcommand("pdf", "Work on PDF files: lay pages under pages, join, scale, look at inks.");
    state_->pdf->set_help_flag("-h,--help", "Print this help and end");
    state_->pdf->require_subcommand(1);
    state_->pdf->footer(
        "Say \"vornaset pdf OPERATION --help\" for its options. Tags for reading aloud (the structure tree), "
        "signatures and encryption don't survive a rewrite; coordinates keep three digits.\n\n" +
        std::string(exitStatusHelp));
    for (const OperationEntry& entry : operations) {
        CLI::App& command = *state_->pdf->add_subcommand(entry.name, entry.description);
        command.set_help_flag("-h,--help", "Print this help and end");
        command.footer(std::string("Example:\n  ") + entry.example + "\n\n" + exitStatusHelp);
        state_->declareInputs(entry, command);
        state_->declareOutput(entry, command);
        state_->commands.emplace_back(&entry, &command);
    }
}

bool PdfArguments::parsed() const {
    return state_->pdf->parsed();
}

const CLI::App& PdfArguments::commandInUse() const {
    const auto* chosen = state_->chosen();
    return chosen ? *chosen->second : *state_->pdf;
}

PdfCommand PdfArguments::read() const {
    PdfCommand command;
    command.options.operation = state_->chosen()->first->operation;
    command.options.inputs = state_->inputs.empty() ? std::vector{state_->input} : state_->inputs;
    command.options.outputPath = state_->output;
    command.verbosity = state_->isQuiet ? Verbosity::Quiet : Verbosity::Normal;
    switch (command.options.operation) {
        case PdfOperation::Scale:
            command.options.factor = scaleFactor(state_->first);
            break;
        case PdfOperation::Jpeg:
            command.options.page = pageNumber(state_->first);
            break;
        case PdfOperation::Fit:
            command.options.width = lengthInPoints("WIDTH", state_->first);
            command.options.height = lengthInPoints("HEIGHT", state_->second);
            break;
        default:
            break;
    }
    return command;
}

}  // namespace cli
