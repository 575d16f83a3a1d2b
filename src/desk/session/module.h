#pragma once
// A plug-in module in this process.

#include <cstdint>
#include <string>

namespace desk {

/// Loads a module and lets its plug-in register with the host behind the border. The module stays loaded until the
/// process ends: objects of its classes may live as long. Throws InputError when the file can't be loaded or offers no
/// plug-in.
void loadModule(const std::string& path, uint32_t plugInId);

}  // namespace desk
