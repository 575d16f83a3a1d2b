#pragma once

#include <CLI/App.hpp>
#include <memory>

#include "cli/command_line.h"

namespace cli {

/// `vornaset pdf` and its operations: what can be typed, and what was.
class PdfArguments {
  public:
    PdfArguments();
    ~PdfArguments();

    /// Puts "pdf" with its operations among the program's commands.
    void declare(CLI::App& program);
    /// The command "pdf", or the operation of it that was asked for.
    const CLI::App& commandInUse() const;
    bool parsed() const;
    /// Throws UsageError.
    PdfCommand read() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace cli
