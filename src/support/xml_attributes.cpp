#include "support/xml_attributes.h"

#include "support/xpath.h"

namespace vornaset {

String stringForAttribute(const Element& element, const String& name, const String& defaultText) {
    const String value = element.attribute(name);
    return value.isNull() ? defaultText : value;
}

int64_t integerForAttribute(const Element& element, const String& name, int64_t defaultNumber) {
    return stringForAttribute(element, name, stringWithInteger(defaultNumber)).integerValue();
}

float floatForAttribute(const Element& element, const String& name, float defaultNumber) {
    return stringForAttribute(element, name, Number(defaultNumber).text()).floatValue();
}

void setNodeAttribute(const Element& element, const String& name, const String& text) {
    Element(element).setAttribute(name, text);
}

void setNodeAttribute(const Element& element, const String& xPath, const String& name, const String& text) {
    setNodeAttribute(Element::with(nodeForXPath(element, xPath)), name, text);
}

void addNodeAttributes(const Element& element, const Dictionary& attributes) {
    for (size_t index = 0; index < attributes.count(); ++index) {
        setNodeAttribute(element, attributes.keyAt(index), attributes.valueAt(index).description());
    }
}

}  // namespace vornaset
