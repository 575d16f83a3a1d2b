#pragma once
// The one family of failures that crosses a folder's border. Who doesn't know the plug-in catches std::exception.

#include <exception>
#include <string>

namespace vornaset {

/// A failure with a name, which says its kind, and a reason, one sentence for a person. Both are UTF-8.
class __attribute__((visibility("default"))) Exception : public std::exception {
  public:
    Exception(std::string name, std::string reason);
    ~Exception() override;

    const std::string& name() const noexcept { return name_; }
    const std::string& reason() const noexcept { return reason_; }
    /// "name: reason".
    const char* what() const noexcept override { return what_.c_str(); }

  private:
    std::string name_;
    std::string reason_;
    std::string what_;
};

/// A position or a range lies outside the thing that was asked. Named "RangeException".
class __attribute__((visibility("default"))) RangeException : public Exception {
  public:
    explicit RangeException(std::string reason);
    ~RangeException() override;
};

/// An absent value stands where none may be. Named "InvalidArgumentException".
class __attribute__((visibility("default"))) InvalidArgumentException : public Exception {
  public:
    explicit InvalidArgumentException(std::string reason);
    ~InvalidArgumentException() override;
};

/// The object's kind doesn't have the operation or the key that was asked for. Named "UnrecognizedOperation".
class __attribute__((visibility("default"))) UnrecognizedOperation : public Exception {
  public:
    explicit UnrecognizedOperation(std::string reason);
    ~UnrecognizedOperation() override;
};

/// An exception named "Vornaset" with this reason (UTF-8). It is returned, not thrown.
Exception exceptionWithReason(std::string reason);

}  // namespace vornaset
