#pragma once
// How the library raises a failure of its own.

#include "support/exception.h"
#include "support/format.h"

namespace vornaset {

/// Throws an exception named "Vornaset" whose reason is the formatted text. Percent signs in the arguments are safe.
template <class... Arguments>
[[noreturn]] void raiseException(const String& format, const Arguments&... arguments) {
    throw exceptionWithReason(stringWithFormat(format, arguments...).utf8());
}

}  // namespace vornaset
