#pragma once

#include <CLI/App.hpp>
#include <cstdint>
#include <string>

#include "companion/csv_reader.h"

namespace cli {

/// What was typed for the options of a data file.
class DataArguments {
  public:
    void declare(CLI::App& command);
    /// Throws UsageError.
    companion::DataOptions read() const;

  private:
    std::string delimiter_, encoding_;
};

/// Throws UsageError for anything but a whole number from 1.
std::uint64_t wholeNumber(const std::string& option, const std::string& text);

}  // namespace cli
