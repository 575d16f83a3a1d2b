#include <malloc.h>

#include <csignal>
#include <exception>
#include <string>

#include "cli/command_line.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/interruption.h"
#include "cli/standard_streams.h"
#include "companion/error.h"

namespace cli {
namespace {

int printOrFail(const std::string& text) {
    if (print(text)) return exitDone;
    printError("standard output can't be written.");
    return exitFailed;
}

int stopped(const Console& console) {
    printError("stopped after " + std::to_string(console.pagesDone()) + " of " + std::to_string(console.pagesTotal()) +
               " pages; no file was written.");
    return exitSignalBase + (notedSignal() ? notedSignal() : SIGINT);
}

int execute(const AnswerCommand& command) {
    return printOrFail(command.text);
}

int execute(const MergeCommand& command) {
    Console console(command.verbosity);
    companion::RunResult result = companion::runMerge(command.options, console);
    console.runEnded();
    if (result.outcome == companion::RunOutcome::Stopped) return stopped(console);
    console.summary(result, command.options.outputPath, true);
    return command.strictness == Strictness::Strict && !result.problems.empty() ? exitProblems : exitDone;
}

int execute(const ExportCommand& command) {
    Console console(command.verbosity);
    companion::RunResult result = companion::runExport(command.openTemplate, command.outputPath, console);
    console.runEnded();
    if (result.outcome == companion::RunOutcome::Stopped) return stopped(console);
    console.summary(result, command.outputPath, false);
    return exitDone;
}

int execute(const CheckCommand& command) {
    companion::CheckResult result =
        companion::runCheck(command.openTemplate, command.dataPath, command.data, command.rulesPath);
    std::string text;
    for (const std::string& warning : result.warnings) text += warning + "\n";
    int status = printOrFail(text + result.text);
    return status == exitDone && command.strictness == Strictness::Strict && !result.isGood ? exitProblems : status;
}

int execute(const InfoCommand& command) {
    return printOrFail(companion::runInfo(command.openTemplate));
}

int execute(const PreviewCommand& command) {
    Console console(command.verbosity);
    const std::string done = companion::runPreview(command.options, console);
    console.runEnded();
    return command.verbosity == Verbosity::Quiet ? exitDone : printOrFail(done);
}

int execute(const AuthoringCommand& command) {
    switch (command.kind) {
        case AuthoringCommand::Kind::Number:
            return printOrFail(companion::runNumber(command.openTemplate, command.assignments, command.outputPath));
        case AuthoringCommand::Kind::Placeholder:
            return printOrFail(
                companion::runPlaceholder(command.openTemplate, command.placeholder, command.outputPath));
        case AuthoringCommand::Kind::Omr:
            return printOrFail(companion::runOmr(command.openTemplate, command.outputPath));
        case AuthoringCommand::Kind::StripStatic:
            break;
    }
    return printOrFail(companion::runStripStatic(command.openTemplate, command.outputPath));
}

/// A document is read, decoded, compressed and written in turn, and each leaves memory behind that the next can't use
/// in pieces: let it go back to the system, and keep one heap for all threads.
void keepMemoryLow() {
    constexpr int bytes = 64 * 1024;
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_MMAP_THRESHOLD, bytes);
    mallopt(M_TRIM_THRESHOLD, bytes);
}

int execute(const PdfCommand& command) {
    keepMemoryLow();
    Console console(command.verbosity);
    companion::PdfResult result = companion::runPdf(command.options, console);
    console.runEnded();
    if (result.outcome == companion::RunOutcome::Stopped) return stopped(console);
    if (!result.text.empty()) return printOrFail(result.text);
    if (command.verbosity == Verbosity::Normal)
        return printOrFail(command.options.outputPath + ": " + std::to_string(result.pages) +
                           (result.pages == 1 ? " page\n" : " pages\n"));
    return exitDone;
}

int run(int argumentCount, const char* const* arguments) {
    try {
        holdStandardStreams();
        watchSignals();
        Command command = parseCommandLine(argumentCount, arguments);
        return std::visit([](const auto& chosen) { return execute(chosen); }, command);
    } catch (const UsageError& error) {
        printError(error.what());
        return exitWrongUsage;
    } catch (const companion::Stopped& error) {
        printError(error.what());
        return exitSignalBase + (notedSignal() ? notedSignal() : SIGINT);
    } catch (const std::exception& error) {
        printError(error.what());
        return exitFailed;
    }
}

}  // namespace
}  // namespace cli

int main(int argumentCount, char** arguments) {
    return cli::run(argumentCount, arguments);
}
