#include "support/xml_tree.h"

#include "support/unicode.h"

namespace vornaset {

namespace {

/// The next node of the subtree in document order, or null.
xmlNode* nextInSubtree(xmlNode* node, const xmlNode* top) {
    if (node->type == XML_ELEMENT_NODE && node->children != nullptr) return node->children;
    while (node != top && node->next == nullptr) node = node->parent;
    return node == top ? nullptr : node->next;
}

bool isXmlPrefix(const xmlNs* space) {
    return space != nullptr && space->prefix != nullptr && xmlStrEqual(space->prefix, BAD_CAST "xml") != 0;
}

/// The prefix "xml" needs no declaration: the library keeps it in the document, which the subtree has left.
void adoptXmlPrefix(xmlDoc* document, xmlNode* top) {
    for (xmlNode* node = top; node != nullptr; node = nextInSubtree(node, top)) {
        if (node->type != XML_ELEMENT_NODE) continue;
        if (isXmlPrefix(node->ns)) node->ns = xmlSearchNs(document, node, BAD_CAST "xml");
        for (xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next) {
            if (isXmlPrefix(attribute->ns)) attribute->ns = xmlSearchNs(document, node, BAD_CAST "xml");
        }
    }
}

}  // namespace

XmlTree::~XmlTree() {
    for (xmlNode* node : removed_) xmlFreeNode(node);
    xmlFreeDoc(document_);
}

void XmlTree::remove(xmlNode* node) {
    xmlUnlinkNode(node);
    if (node->type == XML_ELEMENT_NODE || handsOutLeaves_) {
        removed_.push_back(node);
    } else {
        xmlFreeNode(node);
    }
}

void XmlTree::moveInto(const std::shared_ptr<XmlTree>& owner, xmlNode* root) {
    owner->handsOutLeaves_ = owner->handsOutLeaves_ || handsOutLeaves_;
    owner_ = owner;
    adoptXmlPrefix(owner->document_, root);
}

XmlNode XmlAccess::handle(const std::shared_ptr<XmlTree>& tree, void* node) {
    if (node == nullptr) return {};
    if (static_cast<xmlNode*>(node)->type != XML_ELEMENT_NODE) currentTree(tree)->handOutLeaves();
    return {tree, node};
}

Element makeElement(const String& name) {
    xmlDoc* document = xmlNewDoc(BAD_CAST "1.0");
    auto tree = std::make_shared<XmlTree>(document);
    xmlNode* root = xmlNewDocNode(document, nullptr, xmlBytes(name.utf8()), nullptr);
    xmlDocSetRootElement(document, root);
    return XmlAccess::element(tree, root);
}

std::shared_ptr<XmlTree> currentTree(std::shared_ptr<XmlTree> tree) {
    while (tree->owner() != nullptr) tree = tree->owner();
    return tree;
}

String stringOfXml(const xmlChar* text) {
    return text == nullptr ? String() : String::fromDamagedUTF8(reinterpret_cast<const char*>(text));
}

std::string xmlTextBytes(const String& text) {
    return String(withoutForbiddenXmlCharacters(text.view())).utf8();
}

bool isXmlName(const String& name) {
    return !name.isEmpty() && name.find(u'\0') == String::npos && xmlValidateName(xmlBytes(name.utf8()), 0) == 0;
}

std::string qualifiedName(const xmlNode* node) {
    std::string name = reinterpret_cast<const char*>(node->name);
    if (node->ns != nullptr && node->ns->prefix != nullptr) {
        name.insert(0, std::string(reinterpret_cast<const char*>(node->ns->prefix)) + ":");
    }
    return name;
}

}  // namespace vornaset
