#pragma once
// The barcode tool as a library: the same five arguments give the same bytes as the program, without a process.

#include <span>
#include <string>
#include <string_view>

namespace barcode {

enum class Status {
    Drawn,      ///< there is a page description
    Refused,    ///< no symbol can be made of this code
    WrongUsage  ///< the arguments aren't those that the tool takes
};

struct Outcome {
    Status status = Status::Drawn;
    std::string description;  ///< bytes for standard output; empty unless drawn
    std::string problem;      ///< one sentence for standard error, without a line end; empty when drawn
};

/// What the tool answers to its arguments "-e", KIND, "-b", CODE, "-D", the options in any order. Safe on several
/// threads at once. Throws nothing but std::bad_alloc.
Outcome answer(std::span<const std::string> arguments);

/// The same for a kind's name and a code. Codes for bars are ASCII, others UTF-8.
Outcome draw(std::string_view kind, std::string_view code);

/// What `--help` prints.
std::string helpText();

}  // namespace barcode
