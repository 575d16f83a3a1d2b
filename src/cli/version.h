#pragma once

namespace cli {

/// The same as the project's version in CMakeLists.txt; a test compares them.
inline constexpr const char* programVersion = "0.1.0";

}  // namespace cli
