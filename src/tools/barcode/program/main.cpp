#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "tools/barcode/barcode.h"

namespace {

constexpr int exitDrawn = 0;
constexpr int exitRefused = 1;
constexpr int exitWrongUsage = 2;

int print(const std::string& bytes) {
    const bool isWhole = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
    if (isWhole && std::fflush(stdout) == 0) return exitDrawn;
    std::fputs("vornaset-barcode: standard output can't be written.\n", stderr);
    return exitRefused;
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.size() == 1 && arguments.front() == "--help") return print(barcode::helpText());
    if (arguments.empty()) {
        std::fputs(barcode::helpText().c_str(), stderr);
        return exitWrongUsage;
    }
    const barcode::Outcome outcome = barcode::answer(arguments);
    if (outcome.status == barcode::Status::Drawn) return print(outcome.description);
    std::fprintf(stderr, "vornaset-barcode: %s\n", outcome.problem.c_str());
    return outcome.status == barcode::Status::Refused ? exitRefused : exitWrongUsage;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        return run(std::vector<std::string>(arguments + (argumentCount > 0 ? 1 : 0), arguments + argumentCount));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vornaset-barcode: %s.\n", error.what());
        return exitRefused;
    }
}
