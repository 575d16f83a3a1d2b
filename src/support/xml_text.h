#pragma once
// XML as text by the library's own rules, and a walk over the texts of a tree.

#include <cstdint>

#include "support/xml_element.h"

namespace vornaset {

/// The current indentation of xmlString2, made afresh at each call.
extern MutableString gXMLIndent;
/// The name of the element that EnumXMLNodes last entered. Nothing here reads it.
extern String gXMLElementName;

/// The line "<?xml version="1.0" encoding="utf-8"?>" and the tree, one element a line and one tab a level. It is for
/// plain trees: attributes aren't written, texts stand raw, with nothing escaped and no mark of a CDATA section, an
/// element without children takes two lines, and a text beside elements is lost, "(null)" standing for its name. A tree
/// of more levels than are written (limits.h) is shown as a failure by msgBox and gives the first line alone.
String xmlString2(const Element& element);

/// One line "%@<%@>%@</%@>\n" for a node with one text child and no other, else the lines "%@<%@>\n" and "%@</%@>\n"
/// around the text of the children, which stand one tab further in.
String xmlStringForNode(const XmlNode& node);

/// A dictionary as small XML: a root element "d", for each key, in the dictionary's order, a child of that name with
/// the value's text, and no added white space. Keys stand as they are: one that is no XML name makes a text that
/// dictWithXMLString doesn't read.
String xmlStringWithDict(const Dictionary& dictionary);
/// Back: an entry for each child element of the root, of several with one name the last. Empty for a null text and for
/// one that doesn't parse, which is logged. Never null.
Dictionary dictWithXMLString(const String& text);

/// Gets a text node and the context. What it returns has no effect.
using XmlNodeCallback = uint8_t (*)(const XmlNode& node, void* context);
/// Calls back for each text of the tree in document order; it can't be stopped. Anything but elements and texts is
/// passed over.
void EnumXMLNodes(const XmlNode& node, XmlNodeCallback callback, void* context);

}  // namespace vornaset
