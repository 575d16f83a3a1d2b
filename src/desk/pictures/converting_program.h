#pragma once
// Programs that turn one kind of file into another. Inner header of this folder.

#include <string>
#include <string_view>
#include <vector>

#include "desk/pictures/picture_file.h"

namespace desk {

/// Who watches (conversion_watch.h) wanted an end. Says nothing about the picture.
class ConversionStopped : public PictureError {
  public:
    ConversionStopped() : PictureError("isn't converted: the run is to end") {}
};

enum class AnswerOn { StandardOutput, StandardError };

/// Runs a program with the input as its standard input (a file that it may also seek in, named inputName) and gives
/// what it printed there where the answer is expected; what it prints elsewhere is thrown away. Time, memory and output
/// are limited (limits.h). Throws PictureError when the program isn't installed (`package` says what to install), fails
/// or prints nothing, and ConversionStopped when the one who watches wants an end.
std::string convert(const std::vector<std::string>& commandLine, std::string_view input, const char* package,
                    AnswerOn answerOn = AnswerOn::StandardOutput);

/// A path under which the program finds its input.
inline constexpr const char* inputName = "/dev/fd/0";

}  // namespace desk
