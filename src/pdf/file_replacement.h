#pragma once
// Putting bytes under a name in one step.

#include <string_view>

#include "support/values.h"

namespace vornaset {

/// Writes the bytes beside the path and renames: nothing stands under the name but the whole file. False when that
/// fails; then nothing new is left behind.
bool replaceFile(const String& path, std::string_view bytes);

}  // namespace vornaset
