#include "tools/barcode/barcode.h"

#include <optional>

#include "tools/barcode/digits.h"
#include "tools/barcode/drawing.h"
#include "tools/barcode/refusal.h"

namespace barcode {
namespace {

Outcome wrongUsage(std::string problem) {
    return {Status::WrongUsage, {}, std::move(problem)};
}

std::string kindNames() {
    std::string names;
    for (const Measures& measures : allKinds()) {
        if (!names.empty()) names += ", ";
        names += measures.name;
    }
    return names;
}

}  // namespace

Outcome draw(std::string_view kind, std::string_view code) {
    const Measures* measures = measuresNamed(kind);
    if (measures == nullptr)
        return wrongUsage("there is no kind " + quoted(kind) + "; the kinds are " + kindNames() + ".");
    try {
        return {Status::Drawn, pageDescription(measures->kind, encode(measures->kind, code)), {}};
    } catch (const Refusal& refusal) {
        return {Status::Refused, {}, refusal.what()};
    }
}

Outcome answer(std::span<const std::string> arguments) {
    std::optional<std::string_view> kind;
    std::optional<std::string_view> code;
    bool asksForDescription = false;
    for (size_t at = 0; at < arguments.size(); ++at) {
        const std::string& option = arguments[at];
        if (option == "-D") {
            asksForDescription = true;
            continue;
        }
        if (option != "-e" && option != "-b")
            return wrongUsage("there is no option " + quoted(option) + "; see --help.");
        if (at + 1 == arguments.size()) return wrongUsage("a value is missing behind " + option + "; see --help.");
        auto& value = option == "-e" ? kind : code;
        if (value) return wrongUsage(option + " stands twice; give it once.");
        value = arguments[++at];
    }
    if (!kind) return wrongUsage("the kind is missing; give it with -e.");
    if (!code) return wrongUsage("the code is missing; give it with -b.");
    if (!asksForDescription) return wrongUsage("-D is missing: a page description is all that can be printed.");
    return draw(*kind, *code);
}

std::string helpText() {
    return "usage: vornaset-barcode -e KIND -b CODE -D\n"
           "\n"
           "Prints the content of a PDF page that paints a barcode: bars as vectors, from the left\n"
           "bottom corner, at natural size, text in the font resource Courier.\n"
           "\n"
           "  -e KIND   " +
           kindNames() +
           "\n"
           "  -b CODE   what the symbol holds. A check digit is added when it is missing. GS1-128 takes\n"
           "            its application identifiers in parentheses: (01)09501101530003(17)251231\n"
           "  -D        print the page description\n"
           "\n"
           "exit status: 0 printed, 1 no symbol can be made of the code, 2 wrong arguments\n";
}

}  // namespace barcode
