#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace companion {

/// Where in a data file something is. A number of 0 means that this part of the place isn't known or has no meaning.
struct DataPlace {
    std::size_t record = 0;  ///< from 1, without the line of column names: the number that --start counts with
    std::size_t line = 0;    ///< from 1, in the file as an editor shows it
    std::size_t column = 0;  ///< from 1
};

/// A run that can't go on because of what it was given: a file, an option, a template. what() is one whole sentence
/// that says what, where and what to do. The text is UTF-8.
class Error : public std::runtime_error {
  public:
    explicit Error(const std::string& sentence) : std::runtime_error(sentence) {}
    Error(const std::string& sentence, DataPlace place) : std::runtime_error(sentence), place_(place) {}

    /// All 0 for an error that has no place in a data file.
    const DataPlace& place() const { return place_; }

  private:
    DataPlace place_;
};

/// A run that ended because its watcher wanted it to. No file was written.
class Stopped : public Error {
  public:
    Stopped() : Error("stopped; no file was written.") {}
};

}  // namespace companion
