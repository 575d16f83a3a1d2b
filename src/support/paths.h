#pragma once
// File operations by path (UTF-8 text of the platform). Failures go to the log.

#include "support/values.h"

namespace vornaset {

/// True when something stands at the path or the folder was made, missing parents included.
bool createDir(const String& path);
/// True when nothing stands at the path any more; a missing item is no failure, a folder that isn't empty is one.
bool removeFile(const String& path);

}  // namespace vornaset
