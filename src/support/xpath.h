#pragma once
// Searching a tree by XPath 1.0, relative to a node. Prefixes mean what they mean at that node. A search that fails, by
// an expression that is none, that gives no nodes or that takes too long, is logged and finds nothing.

#include <vector>

#include "support/values.h"
#include "support/xml_element.h"

namespace vornaset {

/// The matching nodes in document order.
std::vector<XmlNode> nodesForXPath(const XmlNode& node, const String& xPath);
/// The first match, or null.
XmlNode nodeForXPath(const XmlNode& node, const String& xPath);
/// The first match's string value, or null.
String stringForXPath(const Element& element, const String& xPath);
/// The string value of each match. Never null.
Array stringsForXPath(const XmlNode& node, const String& xPath);
/// The name of each node, an empty text for a node without name. Never null.
Array namesForNodes(const std::vector<XmlNode>& nodes);

}  // namespace vornaset
