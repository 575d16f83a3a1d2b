#pragma once
// Starting programs that live on without us.

#include <string>
#include <string_view>
#include <vector>

namespace vornaset {

/// What is to be started.
struct Launch {
    std::vector<std::string> words;  ///< the program, then its arguments; a name without "/" is looked up in PATH
    std::string folder;              ///< its working folder; empty: ours
    std::string applicationFile;     ///< the desktop entry it comes from; empty: none. It finds this in its environment
};

/// Starts a program as nobody's child: it hears nothing of our end, leaves no zombie, and its standard files lead
/// nowhere. False when it can't be started.
bool launch(const Launch& launch);
/// The same, and waits for its end for so many milliseconds: false, too, when it has ended with a status that isn't 0.
bool launchAndWait(const Launch& launch, int milliseconds);

/// The path of an executable file: the name itself when it has a "/", else the first in PATH; empty when there is none.
std::string programPath(const std::string& name);

/// What stands for a document in a command line.
struct Document {
    std::string path;  ///< empty for one that is no file of this machine
    std::string url;   ///< empty: no document
};

/// The words of a desktop entry's "Exec" line (freedesktop.org, Desktop Entry 1.5, clause 7): quotes and field codes
/// resolved. A document for which the line has no field code comes last. Empty for a line with an open quote.
std::vector<std::string> wordsOfExecLine(std::string_view line, const Document& document,
                                         const std::string& applicationName, const std::string& applicationFile);

}  // namespace vornaset
