#include "desk/idml/designmap.h"

#include <unordered_map>

#include "desk/idml/item_attributes_reader.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

void readVersion(Reading& reading, const XmlElement& root) {
    const std::string& version = attributeText(root, "DOMVersion");
    const auto number = toNumber(version);
    if (!number || *number < 1 || *number > 1000)
        throw reading.failure(
            root.line, "the version " + quoted(version) + " of the format is unknown; export the document again.");
    reading.domVersion = *number;
}

void readLayer(Reading& reading, const XmlElement& element) {
    Layer& layer = reading.document.addLayer(withoutKeyMark(attributeText(element, "Name")));
    layer.self = attributeText(element, "Self");
    layer.visible = attributeAs(element, "Visible", toBoolean).value_or(true);
    layer.printable = attributeAs(element, "Printable", toBoolean).value_or(true);
    layer.locked = attributeAs(element, "Locked", toBoolean).value_or(false);
    reading.layers.emplace(layer.self, layer.uid);
}

void readObject(Reading& reading, const XmlElement& element) {
    if (element.name == "Layer") readLayer(reading, element);
    if (element.name == "Condition")
        reading.conditions[attributeText(element, "Self")] = attributeAs(element, "Visible", toBoolean).value_or(true);
    if (element.name == "Section")
        reading.sections.push_back(
            {attributeText(element, "PageStart"), withoutKeyMark(attributeText(element, "Marker"))});
}

}  // namespace

void readDocumentElement(Reading& reading, const XmlElement& root) {
    if (root.name != "Document")
        throw reading.failure(root.line, "this describes no document; export the document as IDML.");
    readVersion(reading, root);
    readLabels(root, reading.document.labels);
    root.eachChild([&](const XmlElement& child) { readObject(reading, child); });
    if (reading.document.layers.empty()) reading.document.addLayer("Layer 1");
    const auto active = reading.layers.find(attributeText(root, "ActiveLayer"));
    if (active != reading.layers.end()) reading.document.activeLayer = active->second;
}

PartList listParts(const XmlElement& root) {
    PartList parts;
    const std::unordered_map<std::string_view, std::vector<std::string>*> lists = {
        {"idPkg:Graphic", &parts.graphic},
        {"idPkg:Fonts", &parts.fonts},
        {"idPkg:Styles", &parts.styles},
        {"idPkg:Preferences", &parts.preferences},
        {"idPkg:MasterSpread", &parts.masterSpreads},
        {"idPkg:Spread", &parts.spreads},
        {"idPkg:Story", &parts.stories}};
    root.eachChild([&](const XmlElement& child) {
        const auto list = lists.find(child.name);
        const std::string* source = child.attribute("src");
        if (list != lists.end() && source) list->second->push_back(*source);
    });
    return parts;
}

}  // namespace desk
