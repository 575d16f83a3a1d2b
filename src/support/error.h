#pragma once
// What a file system or a parser says when it fails.

#include <system_error>

#include "support/values.h"

namespace vornaset {

/// An error with a number and a description for a person, or no error.
class Error {
  public:
    Error() = default;  ///< no error
    Error(std::nullptr_t) {}
    /// A null description makes no error.
    Error(int32_t code, String description) : code_(code), description_(std::move(description)) {}
    /// No error for a code of 0.
    Error(const std::error_code& code);

    bool isNull() const { return description_.isNull(); }
    int32_t code() const { return code_; }
    const String& localizedDescription() const { return description_; }

  private:
    int32_t code_ = 0;
    String description_;
};

}  // namespace vornaset
