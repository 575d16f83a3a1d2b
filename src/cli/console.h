#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "cli/command_line.h"
#include "companion/run.h"

namespace cli {

/// Tells a person how a run goes: a progress bar where standard error is a terminal, warnings on standard error, the
/// summary on standard output. Quiet prints none of it.
class Console : public companion::RunWatcher {
  public:
    explicit Console(Verbosity verbosity);

    bool goesOn(std::uint64_t pagesDone, std::uint64_t pagesTotal) override;
    bool isToStop() const override;
    void warn(const std::string& clause) override;
    void writingBegins() override;

    /// Behind the last warning: how many weren't shown. Takes the bar away.
    void runEnded();
    /// The one line at the end: records, pages, seconds, problems, replaced fonts.
    void summary(const companion::RunResult& result, const std::string& output, bool hasRecords) const;

    std::uint64_t pagesDone() const { return pagesDone_; }
    std::uint64_t pagesTotal() const { return pagesTotal_; }

  private:
    using Clock = std::chrono::steady_clock;
    void drawBar();
    void clearBar();

    bool isQuiet_;
    bool showsBar_;
    bool isBarDrawn_ = false;
    Clock::time_point begun_ = Clock::now();
    Clock::time_point lastDrawn_{};
    std::uint64_t pagesDone_ = 0;
    std::uint64_t pagesTotal_ = 0;
    std::uint64_t warnings_ = 0;
};

/// "vornaset: " and the sentence on standard error.
void printError(const std::string& sentence);

/// Text to standard output. False when it can't be written.
bool print(const std::string& text);

}  // namespace cli
