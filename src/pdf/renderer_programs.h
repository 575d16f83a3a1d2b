#pragma once
// Programs that the toolkit starts, with limits: foreign files meet them and not us.

#include <string>
#include <vector>

#include "support/values.h"

namespace vornaset {

/// What the program prints on standard output, all of it; empty when it can't be started or is killed at a limit: one
/// minute, and for a foreign program 4 GiB of address space. One of our own limits its memory itself; it is looked for
/// beside this library, any other on the search path.
std::string outputOfProgram(const std::string& name, const std::vector<std::string>& arguments);

/// The path from the root, so that no program takes it for an option.
std::string absolutePath(const String& path);

}  // namespace vornaset
