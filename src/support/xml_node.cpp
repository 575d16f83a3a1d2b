#include "support/xml_node.h"

#include <libxml/xmlsave.h>

#include "support/xml_tree.h"

namespace vornaset {

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

bool isText(const xmlNode* node) {
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

const xmlNode* firstChild(const xmlNode* node) {
    const bool hasChildren = node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_NODE;
    return hasChildren ? node->children : nullptr;
}

std::string treeBytes(xmlNode* node, int options) {
    xmlBuffer* buffer = xmlBufferCreate();
    xmlSaveCtxt* output = xmlSaveToBuffer(buffer, "UTF-8", options | XML_SAVE_NO_DECL | XML_SAVE_AS_XML);
    xmlSaveTree(output, node);
    xmlSaveClose(output);
    std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer)),
                     static_cast<size_t>(xmlBufferLength(buffer)));
    xmlBufferFree(buffer);
    return text;
}

}  // namespace

XmlKind XmlNode::kind() const noexcept {
    if (node_ == nullptr) return XmlKind::none;
    switch (static_cast<const xmlNode*>(node_)->type) {
        case XML_DOCUMENT_NODE:
            return XmlKind::document;
        case XML_ELEMENT_NODE:
            return XmlKind::element;
        case XML_ATTRIBUTE_NODE:
            return XmlKind::attribute;
        case XML_PI_NODE:
            return XmlKind::processingInstruction;
        case XML_COMMENT_NODE:
            return XmlKind::comment;
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
            return XmlKind::text;
        default:
            return XmlKind::none;
    }
}

bool XmlNode::isCData() const noexcept {
    return node_ != nullptr && static_cast<const xmlNode*>(node_)->type == XML_CDATA_SECTION_NODE;
}

String XmlNode::name() const {
    if (node_ == nullptr) return {};
    const xmlNode* node = XmlAccess::node(*this);
    if (node->type == XML_PI_NODE) return stringOfXml(node->name);
    const bool named = node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE;
    return named ? String::fromDamagedUTF8(qualifiedName(node)) : String();
}

String XmlNode::stringValue() const {
    if (node_ == nullptr) return {};
    const xmlNode* node = XmlAccess::node(*this);
    if (isText(node)) return node->content == nullptr ? String(u"") : stringOfXml(node->content);
    const std::unique_ptr<xmlChar, void (*)(void*)> content(xmlNodeGetContent(node), [](void* text) { xmlFree(text); });
    return content ? stringOfXml(content.get()) : String(u"");
}

size_t XmlNode::childCount() const noexcept {
    size_t count = 0;
    if (node_ == nullptr) return count;
    for (const xmlNode* child = firstChild(XmlAccess::node(*this)); child != nullptr; child = child->next) ++count;
    return count;
}

std::vector<XmlNode> XmlNode::children() const {
    std::vector<XmlNode> nodes;
    if (node_ == nullptr) return nodes;
    for (const xmlNode* child = firstChild(XmlAccess::node(*this)); child != nullptr; child = child->next) {
        nodes.push_back(XmlAccess::handle(tree_, const_cast<xmlNode*>(child)));
    }
    return nodes;
}

XmlNode XmlNode::parent() const {
    return node_ == nullptr ? XmlNode() : XmlAccess::handle(tree_, XmlAccess::node(*this)->parent);
}

std::string XmlNode::serialised(Layout layout) const {
    const int options = layout == Layout::pretty ? XML_SAVE_FORMAT : XML_SAVE_NO_EMPTY;
    xmlNode* node = XmlAccess::node(*this);
    if (node->type == XML_ATTRIBUTE_NODE) return treeBytes(node, options).substr(1);
    if (node->type != XML_DOCUMENT_NODE) return treeBytes(node, options);
    const bool declared = reinterpret_cast<const xmlDoc*>(node)->standalone != kNoXmlDeclaration;
    std::string text = declared ? kDeclaration : "";
    for (xmlNode* child = node->children; child != nullptr; child = child->next) {
        text += treeBytes(child, options);
        if (child->next != nullptr) text += '\n';
    }
    return text;
}

String XmlNode::xmlText() const {
    return node_ == nullptr ? String() : String::fromDamagedUTF8(serialised(Layout::asItIs));
}

String xmlString(const XmlNode& node) {
    return node.isNull() ? String() : String::fromDamagedUTF8(node.serialised(XmlNode::Layout::pretty));
}

}  // namespace vornaset
