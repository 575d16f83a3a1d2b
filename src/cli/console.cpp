#include "cli/console.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/interruption.h"

namespace cli {
namespace {

constexpr std::uint64_t shownWarnings = 10;

bool isTerminal() {
    const char* kind = std::getenv("TERM");
    return ::isatty(STDERR_FILENO) == 1 && !(kind && std::strcmp(kind, "dumb") == 0);
}

std::string counted(std::uint64_t count, const char* singular) {
    return std::to_string(count) + " " + singular + (count == 1 ? "" : "s");
}

std::string replacementText(const companion::RunResult& result) {
    std::string text;
    for (auto& [asked, used] : result.replacedFonts) {
        if (!text.empty()) text += ", ";
        text.append(asked).append(" by ").append(used);
    }
    return text;
}

/// A file's name may hold line ends and worse, which must not break a line or reach the terminal.
std::string onOneLine(const std::string& text) {
    std::string line;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code >= 0x20 && code != 0x7F) {
            line += character;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", code);
            line += character == '\n' ? "\\n" : escape;
        }
    }
    return line;
}

}  // namespace

Console::Console(Verbosity verbosity) : isQuiet_(verbosity == Verbosity::Quiet), showsBar_(!isQuiet_ && isTerminal()) {}

bool Console::goesOn(std::uint64_t pagesDone, std::uint64_t pagesTotal) {
    pagesDone_ = pagesDone;
    pagesTotal_ = pagesTotal;
    if (showsBar_) drawBar();
    return !isToStop();
}

bool Console::isToStop() const {
    return notedSignal() != 0;
}

void Console::warn(const std::string& clause) {
    if (isQuiet_ || ++warnings_ > shownWarnings) return;
    clearBar();
    std::fprintf(stderr, "vornaset: warning: %s.\n", onOneLine(clause).c_str());
}

void Console::writingBegins() {
    noteSignalsOnly();
}

void Console::runEnded() {
    clearBar();
    if (!isQuiet_ && warnings_ > shownWarnings)
        std::fprintf(stderr,
                     "vornaset: warning: %llu more warnings; the report of a merge (--report) holds them all.\n",
                     static_cast<unsigned long long>(warnings_ - shownWarnings));
}

void Console::summary(const companion::RunResult& result, const std::string& output, bool hasRecords) const {
    if (isQuiet_) return;
    double seconds = std::chrono::duration<double>(Clock::now() - begun_).count();
    char time[32];
    std::snprintf(time, sizeof time, "%.2f seconds", seconds);
    std::string line = output + ": ";
    if (hasRecords) line += counted(result.records, "record") + ", ";
    line += counted(result.pages, "page") + ", " + time + ", " + counted(result.problems.size(), "problem");
    if (!result.problems.empty()) {
        const companion::ProblemPage& first = result.problems.front();
        line += " (first: " + first.kind + ", page " + std::to_string(first.page) + ", record " +
                std::to_string(first.record);
        if (!first.column.empty()) line += ", column \"" + first.column + "\", \"" + first.file + "\"";
        if (!first.reason.empty()) line += ": " + first.reason;
        line += ")";
    }
    if (!result.replacedFonts.empty()) line += "; fonts replaced: " + replacementText(result);
    if (!result.missingCharacters.empty()) line += "; no font has " + result.missingCharacters;
    print(onOneLine(line) + "\n");
}

void Console::drawBar() {
    Clock::time_point now = Clock::now();
    if (now - lastDrawn_ < std::chrono::milliseconds(100)) return;
    lastDrawn_ = now;
    constexpr int width = 40;
    int done = static_cast<int>(pagesDone_ * width / pagesTotal_);
    int percent = static_cast<int>(pagesDone_ * 100 / pagesTotal_);
    std::string bar(static_cast<std::size_t>(done), '=');
    bar.resize(width, ' ');
    std::fprintf(stderr, "\r[%s] %3d %% %llu of %llu pages", bar.c_str(), percent,
                 static_cast<unsigned long long>(pagesDone_), static_cast<unsigned long long>(pagesTotal_));
    std::fflush(stderr);
    isBarDrawn_ = true;
}

void Console::clearBar() {
    if (!isBarDrawn_) return;
    std::fputs("\r\033[K", stderr);
    isBarDrawn_ = false;
}

void printError(const std::string& sentence) {
    std::fprintf(stderr, "vornaset: %s\n", onOneLine(sentence).c_str());
}

bool print(const std::string& text) {
    bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    return std::fflush(stdout) == 0 && isWritten;
}

}  // namespace cli
