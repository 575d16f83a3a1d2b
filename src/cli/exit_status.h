#pragma once

namespace cli {

/// What the program ends with. An end by a signal is 128 and the signal's number, as shells count.
enum ExitStatus : int {
    exitDone = 0,
    exitFailed = 1,  ///< bad input, or a run that failed
    exitWrongUsage = 2,
    exitProblems = 3,  ///< --strict, and there are problems
    exitSignalBase = 128,
};

inline constexpr const char* exitStatusHelp =
    "Exit status:\n"
    "  0    done\n"
    "  1    bad input, or the run failed; there is no new output file unless the sentence says so\n"
    "  2    wrong usage\n"
    "  3    --strict, and there are problems; the output file is there\n"
    "  130  stopped by Ctrl-C (143: by a request to end, 129: the terminal is gone); there is no new output file\n";

}  // namespace cli
