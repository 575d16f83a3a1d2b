#include "support/xml_element.h"

#include <climits>

#include "support/strings.h"
#include "support/xml_attributes.h"
#include "support/xml_reading.h"
#include "support/xml_tree.h"

namespace vornaset {

Element Element::make(const String& name) {
    return isXmlName(name) ? makeElement(name) : Element();
}

Element Element::withXMLString(const String& text) {
    const XmlReading reading = text.isNull() ? XmlReading{} : readXml(text.utf8(), 0);
    return reading.tree ? Element(reading.tree, xmlDocGetRootElement(reading.tree->document())) : Element();
}

Element Element::with(const XmlNode& node) {
    return node.kind() == XmlKind::element ? XmlAccess::element(XmlAccess::tree(node), XmlAccess::node(node))
                                           : Element();
}

void Element::setStringValue(const String& text) {
    if (isNull()) return;
    xmlNode* node = XmlAccess::node(*this);
    const std::shared_ptr<XmlTree> tree = currentTree(tree_);
    while (xmlNode* child = node->children) tree->remove(child);
    if (!text.isEmpty()) xmlAddChild(node, xmlNewDocText(node->doc, xmlBytes(xmlTextBytes(text))));
}

std::vector<Element> Element::childElements() const {
    std::vector<Element> elements;
    if (isNull()) return elements;
    for (xmlNode* child = xmlFirstElementChild(XmlAccess::node(*this)); child != nullptr;
         child = xmlNextElementSibling(child)) {
        elements.push_back(Element(tree_, child));
    }
    return elements;
}

Element Element::childNamed(const String& name) const {
    if (isNull() || name.isNull()) return {};
    const std::string wanted = name.utf8();
    for (xmlNode* child = xmlFirstElementChild(XmlAccess::node(*this)); child != nullptr;
         child = xmlNextElementSibling(child)) {
        if (qualifiedName(child) == wanted) return {tree_, child};
    }
    return {};
}

void Element::addChild(const Element& child) {
    if (isNull()) return;
    if (child.isNull()) throw InvalidArgumentException("a null element can't be added");
    xmlNode* node = XmlAccess::node(*this);
    xmlNode* added = XmlAccess::node(child);
    if (added->parent == nullptr || added->parent->type != XML_DOCUMENT_NODE || added->doc == node->doc) {
        throw InvalidArgumentException("the element \"" + qualifiedName(added) +
                                       "\" has a parent or is one of this one");
    }
    xmlUnlinkNode(added);
    xmlSetTreeDoc(added, node->doc);
    xmlAddChild(node, added);
    currentTree(XmlAccess::tree(child))->moveInto(currentTree(tree_), added);
}

void Element::addCData(const String& text) {
    if (isNull()) return;
    xmlNode* node = XmlAccess::node(*this);
    const std::string bytes = xmlTextBytes(text);
    if (bytes.size() > INT_MAX) throw InvalidArgumentException("a CDATA section of more than two gigabytes");
    xmlAddChild(node, xmlNewCDataBlock(node->doc, xmlBytes(bytes), static_cast<int>(bytes.size())));
}

std::vector<XmlNode> Element::attributes() const {
    std::vector<XmlNode> nodes;
    if (isNull()) return nodes;
    for (xmlAttr* attribute = XmlAccess::node(*this)->properties; attribute != nullptr; attribute = attribute->next) {
        nodes.push_back(XmlAccess::handle(tree_, attribute));
    }
    return nodes;
}

String Element::attribute(const String& name) const {
    if (isNull() || name.isNull()) return {};
    const std::string wanted = name.utf8();
    for (xmlAttr* attribute = XmlAccess::node(*this)->properties; attribute != nullptr; attribute = attribute->next) {
        if (qualifiedName(reinterpret_cast<const xmlNode*>(attribute)) == wanted) {
            return XmlAccess::handle(tree_, attribute).stringValue();
        }
    }
    return {};
}

void Element::setAttribute(const String& name, const String& text) {
    if (isNull() || text.isNull() || !isXmlName(name)) return;
    xmlSetProp(XmlAccess::node(*this), xmlBytes(name.utf8()), xmlBytes(xmlTextBytes(text)));
}

Element nodeWithXMLString(const String& text, const String& fallback) {
    const Element element = Element::withXMLString(text.isNull() ? fallback : text);
    return element.isNull() ? Element::withXMLString(fallback) : element;
}

Element nodeWithName(const String& name, const String& text, const Dictionary& attributes) {
    Element element = Element::make(name);
    if (!text.isNull()) element.setStringValue(text);
    addNodeAttributes(element, attributes);
    return element;
}

Element nodeWithCDATA(const String&, const String& text, const Dictionary& attributes) {
    Element element = Element::make("story");
    element.addCData(text);
    addNodeAttributes(element, attributes);
    return element;
}

Element addStringNode(const Element& parent, const String& name, const String& text) {
    const Element child = nodeWithName(name, text);
    if (parent.isNull() || child.isNull()) return {};
    Element(parent).addChild(child);
    return child;
}

Element addNode(const Element& parent, const String& name) {
    return addStringNode(parent, name, nullptr);
}

Element addIntegerNode(const Element& parent, const String& name, int64_t number) {
    return addStringNode(parent, name, stringWithInteger(number));
}

Element xmlElementForName(const Element& element, const String& name) {
    return element.childNamed(name);
}

String stringForKey(const Element& element, const String& key, const String& defaultText) {
    const Element child = element.childNamed(key);
    return child.isNull() ? defaultText : child.stringValue();
}

int64_t integerForKey(const Element& element, const String& key, int64_t defaultNumber) {
    const Element child = element.childNamed(key);
    return child.isNull() ? defaultNumber : child.stringValue().integerValue();
}

int32_t intForKey(const Element& element, const String& key, int32_t defaultNumber) {
    const Element child = element.childNamed(key);
    return child.isNull() ? defaultNumber : child.stringValue().intValue();
}

double floatForKey(const Element& element, const String& key, double defaultNumber) {
    const Element child = element.childNamed(key);
    return child.isNull() ? defaultNumber : floatWithDecimalComma(child.stringValue());
}

void setStringForKey(const Element& element, const String& key, const String& text) {
    Element child = element.childNamed(key);
    if (child.isNull()) {
        addStringNode(element, key, text);
    } else {
        child.setStringValue(text);
    }
}

void setIntegerForKey(const Element& element, const String& key, int64_t number) {
    setStringForKey(element, key, stringWithInteger(number));
}

Element nodeForKey(const Element& element, const String& key) {
    const Element child = element.childNamed(key);
    return child.isNull() ? addNode(element, key) : child;
}

}  // namespace vornaset
