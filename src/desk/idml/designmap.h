#pragma once
// The document element: what stands on it itself, and the list of parts.

#include <string>
#include <vector>

#include "desk/idml/reading.h"

namespace desk {

/// Names of the members, each list in its order.
struct PartList {
    std::vector<std::string> graphic, fonts, styles, preferences, masterSpreads, spreads, stories;
};

/// Reads version, labels, layers, conditions and sections. Throws InputError for a version that can't be read and for a
/// root that isn't a document.
void readDocumentElement(Reading& reading, const XmlElement& root);

/// The parts that the document names.
PartList listParts(const XmlElement& root);

}  // namespace desk
