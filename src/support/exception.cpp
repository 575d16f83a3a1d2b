#include "support/exception.h"

namespace vornaset {

Exception::Exception(std::string name, std::string reason)
    : name_(std::move(name)), reason_(std::move(reason)), what_(name_ + ": " + reason_) {}
Exception::~Exception() = default;

RangeException::RangeException(std::string reason) : Exception("RangeException", std::move(reason)) {}
RangeException::~RangeException() = default;

InvalidArgumentException::InvalidArgumentException(std::string reason)
    : Exception("InvalidArgumentException", std::move(reason)) {}
InvalidArgumentException::~InvalidArgumentException() = default;

UnrecognizedOperation::UnrecognizedOperation(std::string reason)
    : Exception("UnrecognizedOperation", std::move(reason)) {}
UnrecognizedOperation::~UnrecognizedOperation() = default;

Exception exceptionWithReason(std::string reason) {
    return Exception("Vornaset", std::move(reason));
}

}  // namespace vornaset
