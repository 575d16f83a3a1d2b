#include "cli/data_arguments.h"

#include <CLI/CLI.hpp>
#include <charconv>

#include "cli/command_line.h"
#include "companion/delimiter.h"

namespace cli {

std::uint64_t wholeNumber(const std::string& option, const std::string& text) {
    std::uint64_t number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0)
        throw UsageError(option + " needs a whole number from 1, not \"" + text + "\".");
    return number;
}

void DataArguments::declare(CLI::App& command) {
    command
        .add_option("--delimiter", delimiter_,
                    "What parts the cells: comma, semicolon, tab, pipe, or the character itself. Default: found by "
                    "itself among comma, semicolon and tab. Example: --delimiter semicolon")
        ->type_name("C");
    command
        .add_option("--encoding", encoding_,
                    "Encoding of the data file: utf-8, utf-16, utf-16le, utf-16be, windows-1252, macroman. Default: "
                    "found by itself. Example: --encoding macroman")
        ->type_name("NAME");
}

companion::DataOptions DataArguments::read() const {
    companion::DataOptions options;
    if (!delimiter_.empty()) {
        options.delimiter = companion::delimiterNamed(delimiter_);
        if (!options.delimiter)
            throw UsageError(
                "--delimiter needs comma, semicolon, tab, pipe or one character that is no letter, digit "
                "or quote, not \"" +
                delimiter_ + "\".");
    }
    if (!encoding_.empty() && encoding_ != "auto") {
        options.encoding = companion::encodingNamed(encoding_);
        if (!options.encoding)
            throw UsageError("--encoding doesn't know \"" + encoding_ +
                             "\"; say utf-8, utf-16, utf-16le, utf-16be, windows-1252 or macroman.");
    }
    return options;
}

}  // namespace cli
