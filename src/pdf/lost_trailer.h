#pragma once

#include <string>
#include <string_view>

namespace vornaset {

/// A trailer that names the file's last catalog, for a file that was cut off and has lost its own: what to put behind
/// the file's bytes. Empty when there is no object that says /Type /Catalog.
std::string trailerForLost(std::string_view file);

}  // namespace vornaset
