#include "support/xml_document.h"

#include "support/bundle.h"
#include "support/log.h"
#include "support/text_files.h"
#include "support/xml_reading.h"
#include "support/xml_tree.h"

namespace vornaset {

XmlDocument XmlDocument::make(const Element& root) {
    if (root.isNull()) return {};
    const xmlNode* node = XmlAccess::node(root);
    if (node->parent == nullptr || node->parent->type != XML_DOCUMENT_NODE) {
        throw InvalidArgumentException("the element \"" + qualifiedName(node) + "\" has a parent");
    }
    return {XmlAccess::tree(root), node->doc};
}

XmlDocument XmlDocument::withString(const String& text, uint64_t options, Error& error) {
    const XmlReading reading = readXml(text.utf8(), options);
    if (!reading.error.isNull()) error = reading.error;
    return reading.tree ? XmlDocument(reading.tree, reading.tree->document()) : XmlDocument();
}

XmlDocument XmlDocument::withData(const Data& data, uint64_t options, Error& error) {
    const XmlReading reading = readXmlBytes(data, options);
    if (!reading.error.isNull()) error = reading.error;
    return reading.tree ? XmlDocument(reading.tree, reading.tree->document()) : XmlDocument();
}

Element XmlDocument::rootElement() const {
    xmlNode* root = isNull() ? nullptr : xmlDocGetRootElement(static_cast<xmlDoc*>(node_));
    return root == nullptr ? Element() : XmlAccess::element(tree_, root);
}

XmlDocument xmlDocWithString(const String& text, uint64_t options) {
    Error error;
    const XmlDocument document = XmlDocument::withString(text, options, error);
    logError(error);
    return document;
}

XmlDocument xmlDocWithPath(const String& path, uint64_t options) {
    const Data data = dataWithFile(path);
    if (data.isNull()) {
        logError(Error(1, stringWithFormat("%@: the file can't be read", path)));
        return {};
    }
    Error error;
    const XmlDocument document = XmlDocument::withData(data, options, error);
    if (!error.isNull()) {
        logError(Error(error.code(), stringWithFormat("%@: %@", path, error.localizedDescription())));
    }
    return document;
}

XmlDocument xmlDocWithResource(const String& name, const String& type, uint64_t options) {
    return xmlDocWithPath(pathForResource(name, type), options);
}

}  // namespace vornaset
