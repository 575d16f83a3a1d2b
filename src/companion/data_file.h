#pragma once

#include <cstdint>
#include <string>

#include "companion/byte_buffer.h"

namespace companion {

/// The whole of a file or pipe. Throws Error with one sentence when it doesn't exist, is a folder, can't be opened or
/// read, is empty, or has more bytes than the limit. `what` names its role in that sentence: "the data file".
ByteBuffer readWholeFile(const std::string& path, const std::string& what, std::uint64_t byteLimit);

}  // namespace companion
