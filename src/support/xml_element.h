#pragma once
// An XML element with its children: how records and settings are kept as small trees. A key is the name of a child
// element, and its value that child's string value; of several children of that name the first is meant. Getters take a
// default and never fail; setters create what is missing and write numbers as text.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/values.h"
#include "support/xml_node.h"

namespace vornaset {

/// A handle on one element. Edits of a null element do nothing.
class Element : public XmlNode {
  public:
    Element() noexcept = default;  ///< null
    Element(std::nullptr_t) noexcept {}

    /// An element without children. Null when the name is no XML name.
    static Element make(const String& name);
    /// The root element of an XML text. White space between elements is dropped. Null for text that doesn't parse, that
    /// has a document type declaration, or that nests deeper than 256 elements. Nothing outside the text is read.
    static Element withXMLString(const String& text);
    /// The node if it is an element, else null.
    static Element with(const XmlNode& node);

    /// Replaces all children by the text; null leaves no child. Characters that XML doesn't have become U+FFFD.
    void setStringValue(const String& text);

    std::vector<Element> childElements() const;
    /// The first child element of that name, or null.
    Element childNamed(const String& name) const;
    /// Appends an element that has no parent yet; this tree owns it from here. Throws InvalidArgumentException for a
    /// null element, for one that has a parent, and for the element itself.
    void addChild(const Element& child);
    /// Appends a CDATA section. A "]]>" in the text is divided between two sections when it is written.
    void addCData(const String& text);

    /// The value of the attribute of that name, prefix included. Null when there is none.
    String attribute(const String& name) const;
    /// In the order in which they stand.
    std::vector<XmlNode> attributes() const;
    /// Sets or replaces. Nothing for a null name or text and for a name that is no XML name.
    void setAttribute(const String& name, const String& text);

  private:
    friend struct XmlAccess;
    Element(std::shared_ptr<XmlTree> tree, void* node) noexcept : XmlNode(std::move(tree), node) {}
};

/// An element parsed from the text, or, when the text is null or doesn't parse, from the fallback. Null if all fails;
/// nothing is logged.
Element nodeWithXMLString(const String& text, const String& fallback = nullptr);
/// A new element with the text and the attributes, when they aren't null.
Element nodeWithName(const String& name, const String& text = nullptr, const Dictionary& attributes = nullptr);
/// A new element named "story", whatever `name` says, with one CDATA section that holds the text, and the attributes.
Element nodeWithCDATA(const String& name, const String& text, const Dictionary& attributes);
/// A new element with the text as the last child of the parent. Null for a null name or parent.
Element addStringNode(const Element& parent, const String& name, const String& text);
Element addNode(const Element& parent, const String& name);
Element addIntegerNode(const Element& parent, const String& name, int64_t number);
/// The first child element of that name, or null.
Element xmlElementForName(const Element& element, const String& name);

/// The child's string value, or the default when there is no child.
String stringForKey(const Element& element, const String& key, const String& defaultText = nullptr);
/// The child's string value read as an integer (0 for a text that is none), or the default when there is no child.
int64_t integerForKey(const Element& element, const String& key, int64_t defaultNumber);
int32_t intForKey(const Element& element, const String& key, int32_t defaultNumber);
/// The same after replacing every "," by ".", read in single precision and widened.
double floatForKey(const Element& element, const String& key, double defaultNumber);

/// Sets the string value of the first child of that name, or adds a child.
void setStringForKey(const Element& element, const String& key, const String& text);
void setIntegerForKey(const Element& element, const String& key, int64_t number);
/// The first child of that name; if there is none, a new empty child.
Element nodeForKey(const Element& element, const String& key);

}  // namespace vornaset
