#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "cli/command_line.h"

namespace cli {

/// The commands that change a template: what can be typed, and what was.
class AuthoringArguments {
  public:
    void declare(CLI::App& program);
    bool parsed() const;
    const CLI::App& commandInUse() const;
    /// Throws UsageError.
    AuthoringCommand read() const;

  private:
    CLI::App& declareCommand(CLI::App& program, const char* name, const char* description, const std::string& footer);
    void declareOutput(CLI::App& command);

    CLI::App *number_ = nullptr, *placeholder_ = nullptr, *omr_ = nullptr, *strip_ = nullptr;
    companion::TemplateOptions openTemplate_;
    std::vector<std::string> assignments_;
    std::string place_, key_, outputPath_;
    bool withSpace_ = false;
};

}  // namespace cli
