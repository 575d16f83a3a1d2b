#pragma once
// A document that starts empty.

#include <string>

namespace desk {

/// The package of a document of one empty page of the format's default size, with one layer, one master page and the
/// styles that every document has.
std::string newDocumentPackage();

}  // namespace desk
