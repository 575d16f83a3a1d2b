#pragma once
// Writing a file in one step.

#include "support/error.h"
#include "support/values.h"

namespace vornaset {

/// Puts a file with these bytes in the place of what stands at the path; a reader sees the old one or the new one,
/// whole. The file keeps the permissions of the one that it replaces. On an error nothing has changed.
Error writeFileAtomically(const Data& data, const String& path);

}  // namespace vornaset
