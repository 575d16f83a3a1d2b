#pragma once

#include <CLI/App.hpp>
#include <string>

#include "cli/command_line.h"
#include "cli/data_arguments.h"

namespace cli {

/// `vornaset preview`: what can be typed, and what was.
class PreviewArguments {
  public:
    void declare(CLI::App& program);
    bool parsed() const;
    const CLI::App& commandInUse() const { return *command_; }
    /// Throws UsageError.
    PreviewCommand read() const;

  private:
    CLI::App* command_ = nullptr;
    DataArguments data_;
    companion::MergeOptions merge_;
    std::string record_, page_, resolution_, offset_, imagePath_;
    bool isQuiet_ = false;
};

}  // namespace cli
