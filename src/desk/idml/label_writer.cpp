#include "desk/idml/label_writer.h"

namespace desk {
namespace {

std::string pairXml(const std::string& key, const std::string& value) {
    return "<KeyValuePair Key=\"" + escapedAttribute(key) + "\" Value=\"" + escapedAttribute(value) + "\"/>";
}

/// Every pair of every Label of the object, in order.
template <class Function>
void eachPair(const SourceElement& object, Function function) {
    object.eachChild([&](const SourceElement& properties) {
        if (properties.name != "Properties") return;
        properties.eachChild([&](const SourceElement& label) {
            if (label.name != "Label") return;
            label.eachChild([&](const SourceElement& pair) {
                if (pair.name == "KeyValuePair") function(pair);
            });
        });
    });
}

void addPair(PartEditor& part, const SourceElement& object, const std::string& xml) {
    const SourceElement* properties = object.child("Properties");
    const SourceElement* label = properties ? properties->child("Label") : nullptr;
    if (label)
        part.addLast(*label, xml);
    else if (properties)
        part.addLast(*properties, "<Label>" + xml + "</Label>");
    else
        part.addFirst(object, "<Properties><Label>" + xml + "</Label></Properties>");
}

void removePair(PartEditor& part, const SourceElement& object, const std::string& key) {
    eachPair(object, [&](const SourceElement& pair) {
        if (part.source().attributeText(pair, "Key") == key) part.remove(pair);
    });
}

/// A key that stands twice reads as the last, so that one is changed.
bool changePair(PartEditor& part, const SourceElement& object, const std::string& key, const std::string& value) {
    const SourceElement* last = nullptr;
    eachPair(object, [&](const SourceElement& pair) {
        if (part.source().attributeText(pair, "Key") == key) last = &pair;
    });
    if (last) part.setAttribute(*last, "Value", value);
    return last != nullptr;
}

}  // namespace

void writeLabels(PartEditor& part, const SourceElement& object, const Labels& before, const Labels& now) {
    for (const auto& [key, value] : before.pairs())
        if (now.get(key).empty()) removePair(part, object, key);
    std::string added;
    for (const auto& [key, value] : now.pairs()) {
        if (before.get(key) == value) continue;
        if (!changePair(part, object, key, value)) added += pairXml(key, value);
    }
    if (!added.empty()) addPair(part, object, added);
}

std::string labelXml(const Labels& labels) {
    if (labels.pairs().empty()) return {};
    std::string pairs;
    for (const auto& [key, value] : labels.pairs()) pairs += pairXml(key, value);
    return "<Label>" + pairs + "</Label>";
}

}  // namespace desk
