#pragma once
// What the process needs of the machine.

#include <string>

namespace vornaset {

/// The resident size of the process in mebibytes; 0 when the system doesn't tell.
float getUsedMemory();
/// The same from a file in the form of /proc/self/statm.
float usedMemory(const std::string& statusPath);

}  // namespace vornaset
