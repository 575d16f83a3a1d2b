#include "cli/preview_command_line.h"

#include <CLI/CLI.hpp>

#include "cli/exit_status.h"

namespace cli {

void PreviewArguments::declare(CLI::App& program) {
    command_ = program.add_subcommand("preview", "Draw the page on which a merge shows one record.");
    CLI::App& command = *command_;
    command.set_help_flag("-h,--help", "Print this help and end");
    command.footer(
        std::string("The page is drawn with all records that stand on it. pdftoppm or mutool draws it.\n\nExample:\n  "
                    "vornaset preview cards.idml people.csv --record 17 -o card.png\n\n") +
        exitStatusHelp);
    command.add_option("TEMPLATE", merge_.openTemplate.path, "The template, an IDML file")->required()->type_name("");
    command.add_option("DATA", merge_.dataPath, "The data file, CSV")->required()->type_name("");
    command.add_option("--record", record_, "The record, from 1. Example: --record 17")->required()->type_name("N");
    command.add_option("-o,--output", imagePath_, "The PNG file to write. Example: -o page.png")
        ->required()
        ->type_name("OUT.png");
    command
        .add_option("--page", page_,
                    "Page of the record's page set, from 1. Default: the first with a frame of the record. "
                    "Example: --page 2")
        ->type_name("P");
    command
        .add_option("--resolution", resolution_, "Pixels per inch, 10 to 1200. Default: 150. Example: --resolution 300")
        ->type_name("PPI");
    command
        .add_option(
            "--fonts", merge_.openTemplate.fontFolder,
            "A folder with more fonts, used before those of the machine. Default: none. Example: --fonts ~/fonts")
        ->type_name("DIR");
    data_.declare(command);
    command
        .add_option("--rules", merge_.rulesPath,
                    "A file of rules that translate values. Default: none. Example: --rules rules.json")
        ->type_name("FILE.json");
    command
        .add_option("--offset", offset_,
                    "Records from one page set to the next. Default: the largest frame number of the template. "
                    "Example: --offset 24")
        ->type_name("N");
    command
        .add_option("--images", merge_.imagesFolder,
                    "The folder where relative paths of pictures begin. Default: the data file's folder. "
                    "Example: --images ../photos")
        ->type_name("DIR");
    command
        .add_option(
            "--barcode", merge_.barcodeTool,
            "A program that draws barcodes, as for \"merge\". Default: the shipped one. Example: --barcode ./ean")
        ->type_name("TOOL");
    command.add_flag("--quiet", isQuiet_, "Print nothing but errors");
}

bool PreviewArguments::parsed() const {
    return command_ && command_->parsed();
}

PreviewCommand PreviewArguments::read() const {
    constexpr std::uint64_t least = 10, most = 1200;
    PreviewCommand command;
    command.options.merge = merge_;
    command.options.merge.data = data_.read();
    if (!offset_.empty()) command.options.merge.range.offset = wholeNumber("--offset", offset_);
    command.options.record = wholeNumber("--record", record_);
    if (!page_.empty()) command.options.page = wholeNumber("--page", page_);
    if (!resolution_.empty()) {
        const std::uint64_t resolution = wholeNumber("--resolution", resolution_);
        if (resolution < least || resolution > most)
            throw UsageError("--resolution needs 10 to 1200 pixels per inch, not " + resolution_ + ".");
        command.options.pixelsPerInch = static_cast<int>(resolution);
    }
    command.options.imagePath = imagePath_;
    command.verbosity = isQuiet_ ? Verbosity::Quiet : Verbosity::Normal;
    return command;
}

}  // namespace cli
