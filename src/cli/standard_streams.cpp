#include "cli/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace cli {

void holdStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) >= 0) continue;
        // The lowest free number is given, and all lower ones are taken by now. Opened for the wrong direction.
        const int opened = ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        if (opened >= 0 && opened != stream) ::close(opened);
    }
}

}  // namespace cli
