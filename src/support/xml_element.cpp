#include "support/xml_element.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>

#include <climits>

#include "support/strings.h"
#include "support/unicode.h"

namespace vornaset {

/// Owns a document and what was taken out of it while handles on it may live. A tree whose root was added to another
/// tree is empty and keeps that other one alive for its old handles.
class XmlTree {
  public:
    explicit XmlTree(xmlDoc* document) : document_(document) {}
    XmlTree(const XmlTree&) = delete;
    XmlTree& operator=(const XmlTree&) = delete;
    ~XmlTree() {
        for (xmlNode* node : removed_) xmlFreeNode(node);
        xmlFreeDoc(document_);
    }

    xmlNode* root() const { return xmlDocGetRootElement(document_); }
    void keepRemoved(xmlNode* node) { removed_.push_back(node); }
    void moveInto(std::shared_ptr<XmlTree> owner) { owner_ = std::move(owner); }
    const std::shared_ptr<XmlTree>& owner() const { return owner_; }

  private:
    xmlDoc* document_;
    std::vector<xmlNode*> removed_;
    std::shared_ptr<XmlTree> owner_;  ///< where the nodes have gone
};

namespace {

const xmlChar* bytesOf(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

xmlNode* nodeOf(void* node) {
    return static_cast<xmlNode*>(node);
}

String stringOf(const xmlChar* text) {
    return text == nullptr ? String() : String::fromDamagedUTF8(reinterpret_cast<const char*>(text));
}

/// UTF-8 that an XML text can hold.
std::string xmlBytes(const String& text) {
    return String(withoutForbiddenXmlCharacters(text.view())).utf8();
}

bool isXmlName(const String& name) {
    return !name.isEmpty() && name.find(u'\0') == String::npos && xmlValidateName(bytesOf(name.utf8()), 0) == 0;
}

std::string qualifiedName(const xmlNode* node) {
    std::string name = reinterpret_cast<const char*>(node->name);
    if (node->ns != nullptr && node->ns->prefix != nullptr) {
        name.insert(0, std::string(reinterpret_cast<const char*>(node->ns->prefix)) + ":");
    }
    return name;
}

std::shared_ptr<XmlTree> currentTree(std::shared_ptr<XmlTree> tree) {
    while (tree->owner() != nullptr) tree = tree->owner();
    return tree;
}

/// A document type declaration can define entities, which expand without bound or name files: it ends the reading.
void refuseDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    *static_cast<bool*>(parser->_private) = true;
    xmlStopParser(parser);
}

/// White space between elements is layout; in an element without child elements it is text.
void removeLayoutSpace(xmlNode* element) {
    if (xmlChildElementCount(element) == 0) return;
    for (xmlNode* child = element->children; child != nullptr;) {
        xmlNode* next = child->next;
        if (child->type == XML_ELEMENT_NODE) {
            removeLayoutSpace(child);
        } else if (xmlIsBlankNode(child) != 0) {
            xmlUnlinkNode(child);
            xmlFreeNode(child);
        }
        child = next;
    }
}

struct ParserCloser {
    void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};

/// Null for anything but one well-formed document without a document type. The parser's own limits stay on: 256 levels,
/// ten million bytes in one text.
xmlDoc* parseDocument(const std::string& bytes) {
    if (bytes.size() > INT_MAX) return nullptr;
    const std::unique_ptr<xmlParserCtxt, ParserCloser> parser(xmlNewParserCtxt());
    if (!parser) return nullptr;
    bool hasDocumentType = false;
    parser->_private = &hasDocumentType;
    parser->sax->internalSubset = refuseDocumentType;
    xmlDoc* document = xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, "UTF-8",
                                         XML_PARSE_NONET | XML_PARSE_NODICT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    if (document != nullptr && (hasDocumentType || xmlDocGetRootElement(document) == nullptr)) {
        xmlFreeDoc(document);
        return nullptr;
    }
    return document;
}

}  // namespace

Element Element::make(const String& name) {
    if (!isXmlName(name)) return {};
    xmlDoc* document = xmlNewDoc(BAD_CAST "1.0");
    auto tree = std::make_shared<XmlTree>(document);
    xmlNode* root = xmlNewDocNode(document, nullptr, bytesOf(name.utf8()), nullptr);
    xmlDocSetRootElement(document, root);
    return {std::move(tree), root};
}

Element Element::withXMLString(const String& text) {
    xmlDoc* document = text.isNull() ? nullptr : parseDocument(text.utf8());
    if (document == nullptr) return {};
    auto tree = std::make_shared<XmlTree>(document);
    xmlNode* root = tree->root();
    removeLayoutSpace(root);
    return {std::move(tree), root};
}

String Element::name() const {
    return node_ == nullptr ? String() : String::fromDamagedUTF8(qualifiedName(nodeOf(node_)));
}

String Element::stringValue() const {
    if (node_ == nullptr) return {};
    const std::unique_ptr<xmlChar, void (*)(void*)> content(xmlNodeGetContent(nodeOf(node_)),
                                                            [](void* text) { xmlFree(text); });
    return content ? stringOf(content.get()) : String(u"");
}

void Element::setStringValue(const String& text) {
    if (node_ == nullptr) return;
    xmlNode* node = nodeOf(node_);
    const std::shared_ptr<XmlTree> tree = currentTree(tree_);
    while (xmlNode* child = node->children) {
        xmlUnlinkNode(child);
        if (child->type == XML_ELEMENT_NODE) {
            tree->keepRemoved(child);
        } else {
            xmlFreeNode(child);
        }
    }
    if (!text.isEmpty()) xmlAddChild(node, xmlNewDocText(node->doc, bytesOf(xmlBytes(text))));
}

size_t Element::childCount() const {
    size_t count = 0;
    if (node_ == nullptr) return count;
    for (const xmlNode* child = nodeOf(node_)->children; child != nullptr; child = child->next) ++count;
    return count;
}

std::vector<Element> Element::childElements() const {
    std::vector<Element> elements;
    if (node_ == nullptr) return elements;
    for (xmlNode* child = xmlFirstElementChild(nodeOf(node_)); child != nullptr; child = xmlNextElementSibling(child)) {
        elements.push_back(Element(tree_, child));
    }
    return elements;
}

Element Element::childNamed(const String& name) const {
    if (node_ == nullptr || name.isNull()) return {};
    const std::string wanted = name.utf8();
    for (xmlNode* child = xmlFirstElementChild(nodeOf(node_)); child != nullptr; child = xmlNextElementSibling(child)) {
        if (qualifiedName(child) == wanted) return {tree_, child};
    }
    return {};
}

void Element::addChild(const Element& child) {
    if (node_ == nullptr) return;
    if (child.isNull()) throw InvalidArgumentException("a null element can't be added");
    xmlNode* added = nodeOf(child.node_);
    if (added->parent == nullptr || added->parent->type != XML_DOCUMENT_NODE || added->doc == nodeOf(node_)->doc) {
        throw InvalidArgumentException("the element \"" + qualifiedName(added) +
                                       "\" has a parent or is one of this one");
    }
    xmlUnlinkNode(added);
    xmlSetTreeDoc(added, nodeOf(node_)->doc);
    xmlAddChild(nodeOf(node_), added);
    currentTree(child.tree_)->moveInto(currentTree(tree_));
}

String Element::attribute(const String& name) const {
    if (node_ == nullptr || name.isNull()) return {};
    const std::unique_ptr<xmlChar, void (*)(void*)> value(xmlGetProp(nodeOf(node_), bytesOf(name.utf8())),
                                                          [](void* text) { xmlFree(text); });
    return stringOf(value.get());
}

void Element::setAttribute(const String& name, const String& text) {
    if (node_ == nullptr || text.isNull() || !isXmlName(name)) return;
    xmlSetProp(nodeOf(node_), bytesOf(name.utf8()), bytesOf(xmlBytes(text)));
}

std::string Element::serialised(int options) const {
    xmlBuffer* buffer = xmlBufferCreate();
    xmlSaveCtxt* output = xmlSaveToBuffer(buffer, "UTF-8", options | XML_SAVE_NO_DECL | XML_SAVE_AS_XML);
    xmlSaveTree(output, nodeOf(node_));
    xmlSaveClose(output);
    std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer)),
                     static_cast<size_t>(xmlBufferLength(buffer)));
    xmlBufferFree(buffer);
    return text;
}

String Element::xmlText() const {
    return node_ == nullptr ? String() : String::fromDamagedUTF8(serialised(XML_SAVE_NO_EMPTY));
}

String xmlString(const Element& element) {
    return element.isNull() ? String() : String::fromDamagedUTF8(element.serialised(XML_SAVE_FORMAT));
}

Element nodeWithXMLString(const String& text, const String& fallback) {
    const Element element = Element::withXMLString(text.isNull() ? fallback : text);
    return element.isNull() ? Element::withXMLString(fallback) : element;
}

Element nodeWithName(const String& name, const String& text) {
    Element element = Element::make(name);
    if (!text.isNull()) element.setStringValue(text);
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
