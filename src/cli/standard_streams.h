#pragma once

namespace cli {

/// Gives standard input, output and error a place each when the program was started without (">&-"). Otherwise the
/// first file that is opened would take their number, and messages would go into it. Such a stream still can't be read
/// or written, so that who asked for output hears of it. To be called before any file is opened.
void holdStandardStreams();

}  // namespace cli
