#pragma once
// Links of packages and the files that they mean on this machine.

#include <string>

namespace desk {

/// The path that a link names: "file:/Users/a%20b.jpg" is "/Users/a b.jpg". Empty for a link to something else.
std::string pathOfLink(const std::string& uri);

/// The link that names an absolute path.
std::string linkOfPath(const std::string& path);

/// The file that a link means: the path itself; else its last parts joined to the document's folder, to a folder
/// "Links" in it, and to the folders above. Empty when none of them is there.
std::string fileOfLink(const std::string& uri, const std::string& documentPath);

}  // namespace desk
