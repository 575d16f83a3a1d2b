#pragma once
// From bytes to a tree. For the xml_* units alone.

#include <cstdint>
#include <memory>
#include <string>

#include "support/error.h"
#include "support/values.h"

namespace vornaset {

class XmlTree;

struct XmlReading {
    std::shared_ptr<XmlTree> tree;  ///< null when the text doesn't parse
    Error error;                    ///< why: "line 3, column 7: what"; no error otherwise
};

/// Reads UTF-8, whatever encoding a declaration in it names. Options: see xml_document.h.
XmlReading readXml(std::string utf8, uint64_t options);

/// Reads bytes in the encoding of their byte-order mark or their declaration, else as UTF-8.
XmlReading readXmlBytes(const Data& bytes, uint64_t options);

}  // namespace vornaset
