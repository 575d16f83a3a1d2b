#pragma once
// Programs that turn one kind of file into another. Inner header of this folder.

#include <string>
#include <string_view>
#include <vector>

namespace desk {

/// Runs a program with the input as its standard input (a file that it may also seek in, named inputName) and gives
/// what it printed. Its standard error is thrown away. Time, memory and output are limited (limits.h). Throws
/// PictureError when the program isn't installed (`package` says what to install), fails or prints nothing.
std::string convert(const std::vector<std::string>& commandLine, std::string_view input, const char* package);

/// A path under which the program finds its input.
inline constexpr const char* inputName = "/dev/fd/0";

}  // namespace desk
