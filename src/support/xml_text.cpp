#include "support/xml_text.h"

#include <string>

#include "support/limits.h"
#include "support/log.h"
#include "support/messages.h"
#include "support/xml_document.h"
#include "support/xml_tree.h"

namespace vornaset {

MutableString gXMLIndent;
String gXMLElementName;

namespace {

void appendNode(std::u16string& result, const XmlNode& node) {
    const std::vector<XmlNode> children = node.children();
    const String indent = gXMLIndent.string();
    if (children.size() == 1 && children.front().kind() == XmlKind::text) {
        result += stringWithFormat("%@<%@>%@</%@>\n", indent, node.name(), node.stringValue(), node.name()).view();
        return;
    }
    if (gXMLIndent.length() >= kDeepestXmlOutput) {
        raiseException("An XML tree of more than %zu levels can't be written", kDeepestXmlOutput);
    }
    result += stringWithFormat("%@<%@>\n", indent, node.name()).view();
    gXMLIndent.append(u'\t');
    for (const XmlNode& child : children) appendNode(result, child);
    gXMLIndent.erase(gXMLIndent.length() - 1, 1);
    result += stringWithFormat("%@</%@>\n", indent, node.name()).view();
}

}  // namespace

String xmlStringForNode(const XmlNode& node) {
    if (gXMLIndent.isNull()) gXMLIndent = MutableString::makeEmpty();
    std::u16string result;
    appendNode(result, node);
    return String(result);
}

String xmlString2(const Element& element) {
    const String header = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
    gXMLIndent = MutableString::makeEmpty();
    try {
        return header + xmlStringForNode(element);
    } catch (const std::exception& failure) {
        msgBox(failure);
        return header;
    }
}

String xmlStringWithDict(const Dictionary& dictionary) {
    Element root = Element::make("d");
    for (size_t index = 0; index < dictionary.count(); ++index) {
        Element child = makeElement(dictionary.keyAt(index));
        child.setStringValue(dictionary.valueAt(index).description());
        root.addChild(child);
    }
    return XmlDocument::make(root).xmlText();
}

Dictionary dictWithXMLString(const String& text) {
    Dictionary dictionary = Dictionary::makeMutable();
    if (text.isNull()) return dictionary;
    for (const Element& child : xmlDocWithString(text, 0).rootElement().childElements()) {
        dictionary.setValue(child.name(), child.stringValue());
    }
    return dictionary;
}

void EnumXMLNodes(const XmlNode& node, XmlNodeCallback callback, void* context) {
    // A list of what is still to be visited, the next one last: a tree that was built may be deeper than the stack.
    std::vector<XmlNode> waiting = {node};
    while (!waiting.empty()) {
        const XmlNode next = waiting.back();
        waiting.pop_back();
        if (next.kind() == XmlKind::element) {
            gXMLElementName = next.name();
            const std::vector<XmlNode> children = next.children();
            waiting.insert(waiting.end(), children.rbegin(), children.rend());
        } else if (next.kind() == XmlKind::text) {
            callback(next, context);
        }
    }
}

}  // namespace vornaset
