#pragma once
// Attributes of XML elements: getters take a default and never fail, numbers are written as text.

#include <concepts>
#include <cstdint>

#include "support/strings.h"
#include "support/xml_element.h"

namespace vornaset {

/// The attribute's value, or the default.
String stringForAttribute(const Element& element, const String& name, const String& defaultText = nullptr);
/// The value read as an integer (0 for a text that is none), or the default.
int64_t integerForAttribute(const Element& element, const String& name, int64_t defaultNumber);
/// The value read as a single-precision number, or the default, which passes through its text. A decimal comma ends the
/// number.
float floatForAttribute(const Element& element, const String& name, float defaultNumber);

/// Sets or replaces an attribute. Nothing for a null element, name or text and for a name that is no XML name.
void setNodeAttribute(const Element& element, const String& name, const String& text);
template <std::integral T>
void setNodeAttribute(const Element& element, const String& name, T number) {
    setNodeAttribute(element, name, stringWithInteger(static_cast<int64_t>(number)));
}
template <std::floating_point T>
void setNodeAttribute(const Element& element, const String& name, T number) {
    setNodeAttribute(element, name, stringWithFloat(static_cast<double>(number)));
}

/// The same on the first element that the XPath finds; without a match nothing happens. A search that fails is logged.
void setNodeAttribute(const Element& element, const String& xPath, const String& name, const String& text);
template <std::integral T>
void setNodeAttribute(const Element& element, const String& xPath, const String& name, T number) {
    setNodeAttribute(element, xPath, name, stringWithInteger(static_cast<int64_t>(number)));
}
template <std::floating_point T>
void setNodeAttribute(const Element& element, const String& xPath, const String& name, T number) {
    setNodeAttribute(element, xPath, name, stringWithFloat(static_cast<double>(number)));
}

/// setNodeAttribute for every entry; a value that is no text stands as its description. Null adds nothing.
void addNodeAttributes(const Element& element, const Dictionary& attributes);

}  // namespace vornaset
