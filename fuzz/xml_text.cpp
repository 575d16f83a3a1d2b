// Whatever the bytes are: they are read as a document or refused with a reason, and what was read can be walked,
// searched and written, and reads back as the same.
//
// The first byte holds the options (1: CDATA sections stay, 2: white space stays, 4: the rest is bytes of a file and
// not UTF-8 text); then an XPath up to the first line feed; the rest is the document.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "support/xml_attributes.h"
#include "support/xml_document.h"
#include "support/xml_text.h"
#include "support/xpath.h"

namespace {

using namespace vornaset;

void require(bool holds) {
    if (!holds) std::abort();
}

uint64_t optionsFrom(uint8_t choice) {
    return ((choice & 1) != 0 ? kPreserveCDataXml : 0) | ((choice & 2) != 0 ? kPreserveWhitespaceXml : 0);
}

uint8_t count(const XmlNode& node, void* context) {
    require(node.kind() == XmlKind::text && node.name().isNull());
    ++*static_cast<size_t*>(context);
    return 0;
}

void search(const Element& root, const String& xPath) {
    for (const XmlNode& found : nodesForXPath(root, xPath)) {
        require(!found.isNull() && !found.stringValue().isNull());
        (void)found.xmlText();
        (void)found.parent().name();
    }
    setNodeAttribute(root, xPath, "found", 1);
}

void writeAndReadBack(const Element& root, uint64_t options) {
    const String text = root.xmlText();
    Error error;
    const XmlDocument again = XmlDocument::withString(text, options, error);
    require(!again.isNull() && error.isNull());
    require(again.rootElement().xmlText() == text);
    (void)xmlString(again);
}

void edit(Element root) {
    setStringForKey(root, "key", "value");
    require(stringForKey(root, "key", nullptr) == String("value"));
    for (Element child : root.childElements()) child.setStringValue(child.stringValue());
    Element holder = Element::make("holder");
    holder.addChild(root);
    require(root.parent().isSameObject(holder));
    (void)holder.xmlText();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint64_t options = optionsFrom(data[0]);
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    const size_t lineEnd = std::min(rest.find('\n'), rest.size());
    const std::string_view document = rest.substr(std::min(lineEnd + 1, rest.size()));
    Error error;
    const XmlDocument read = (data[0] & 4) != 0
                                 ? XmlDocument::withData(Data(std::string(document)), options, error)
                                 : XmlDocument::withString(String::fromDamagedUTF8(document), options, error);
    require(read.isNull() == !error.isNull());
    if (read.isNull()) return 0;
    const Element root = read.rootElement();
    require(!root.isNull());
    writeAndReadBack(root, options);
    size_t texts = 0;
    EnumXMLNodes(root, count, &texts);
    require(!xmlString2(root).isEmpty());
    (void)dictWithXMLString(xmlStringWithDict(dictWithXMLString(root.xmlText())));
    search(root, String::fromDamagedUTF8(rest.substr(0, lineEnd)));
    edit(root);
    return 0;
}
