// Styles of all kinds, and what they are based on.
#include <optional>

#include "desk/idml/circle.h"
#include "desk/idml/item_attributes_reader.h"
#include "desk/idml/placed_graphics.h"
#include "desk/idml/resources.h"
#include "desk/idml/text_attributes_reader.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

std::optional<StyleKind> kindOf(std::string_view element) {
    if (element == "ParagraphStyle") return StyleKind::Paragraph;
    if (element == "CharacterStyle") return StyleKind::Character;
    if (element == "ObjectStyle") return StyleKind::Object;
    if (element == "TableStyle") return StyleKind::Table;
    if (element == "CellStyle") return StyleKind::Cell;
    return {};
}

std::string prefixOf(StyleKind kind) {
    constexpr const char* prefixes[] = {"ParagraphStyle/", "CharacterStyle/", "ObjectStyle/", "TableStyle/",
                                        "CellStyle/"};
    return prefixes[static_cast<size_t>(kind)];
}

bool isStyleGroup(std::string_view element) {
    return element.ends_with("StyleGroup") &&
           (element.starts_with("Root") || kindOf(element.substr(0, element.size() - 5)));
}

/// As a person reads it.
std::string readableName(StyleKind kind, const std::string& name) {
    if (kind == StyleKind::Paragraph && name == "$ID/NormalParagraphStyle") return "[Basic Paragraph]";
    return withoutKeyMark(name);
}

/// A category that is switched off gives nothing even where its attributes are written.
bool isOn(const XmlElement& element, std::string_view category) {
    return attributeAs(element, category, toBoolean).value_or(true);
}

void dropFill(ItemAttributes& item) {
    item.fillColor.reset();
    item.fillTint.reset();
    item.overprintFill.reset();
    item.gradientAngle.reset();
    item.gradientLength.reset();
    item.gradientStart.reset();
}

void dropStroke(ItemAttributes& item) {
    item.strokeColor.reset();
    item.strokeTint.reset();
    item.strokeWeight.reset();
    item.strokeType.reset();
    item.gapColor.reset();
    item.gapTint.reset();
    item.overprintStroke.reset();
    item.dashes.reset();
}

void dropStrokeOptions(ItemAttributes& item) {
    item.strokeAlignment.reset();
    item.endCap.reset();
    item.endJoin.reset();
    item.miterLimit.reset();
    item.leftLineEnd.reset();
    item.rightLineEnd.reset();
    for (size_t i = 0; i < 4; ++i) {
        item.cornerOption[i].reset();
        item.cornerRadius[i].reset();
    }
}

void readObjectStyle(const XmlElement& element, Style& style) {
    style.item = readItemAttributes(element);
    if (!isOn(element, "EnableFill")) dropFill(style.item);
    if (!isOn(element, "EnableStroke")) dropStroke(style.item);
    if (!isOn(element, "EnableStrokeAndCornerOptions")) dropStrokeOptions(style.item);
    if (!isOn(element, "EnableTransparency")) {
        style.item.opacity.reset();
        style.item.blendMode.reset();
    }
    const TextFrameOptions all = readTextFrameOptions(element);
    if (isOn(element, "EnableTextFrameGeneralOptions")) style.frame = all;
    const bool baselines = isOn(element, "EnableTextFrameBaselineOptions");
    style.frame.firstBaseline = baselines ? all.firstBaseline : std::nullopt;
    style.frame.minimumFirstBaseline = baselines ? all.minimumFirstBaseline : std::nullopt;
    style.frame.autoSizing = isOn(element, "EnableTextFrameAutoSizingOptions") ? all.autoSizing : std::nullopt;
    if (isOn(element, "EnableFrameFittingOptions")) style.fitting = readFrameFitting(element);
    if (!isOn(element, "EnableTextWrapAndOthers")) {
        style.item.nonprinting.reset();
        return;
    }
    TextWrap wrap;
    if (readTextWrap(element, wrap)) style.wrap = wrap;
}

void noteWhatIsMissing(Reading& reading, const XmlElement& element) {
    const XmlElement* properties = element.child("Properties");
    if (!properties) return;
    for (const char* list : {"AllNestedStyles", "AllLineStyles", "AllGREPStyles"}) {
        const XmlElement* found = properties->child(list);
        if (found && found->child("ListItem"))
            reading.note("the nested styles of the style " + quoted(attributeText(element, "Name")) +
                         " aren't applied");
    }
}

void readStyle(Reading& reading, const XmlElement& element, StyleKind kind) {
    const std::string& name = attributeText(element, "Name");
    const std::string& self = attributeText(element, "Self");
    if (self.empty()) return reading.note("a style without an id is left out");
    Style& style = reading.document.addStyle(kind, readableName(kind, name), self);
    std::string storage;
    if (const std::string* parent = scalar(element, "BasedOn", storage)) style.basedOn = toReference(*parent);
    if (kind == StyleKind::Paragraph) style.text = readTextAttributes(reading, element);
    if (kind == StyleKind::Character) style.text = readCharacterAttributes(reading, element);
    if (kind == StyleKind::Object) readObjectStyle(element, style);
    noteWhatIsMissing(reading, element);
    reading.readStyles.push_back(style.uid);
    reading.styleIds.emplace(prefixOf(kind) + name, self);
    reading.styleIds.emplace(prefixOf(kind) + withoutKeyMark(name), self);
}

}  // namespace

void readStyles(Reading& reading, const XmlElement& around) {
    around.eachChild([&](const XmlElement& child) {
        if (const auto kind = kindOf(child.name))
            readStyle(reading, child, *kind);
        else if (isStyleGroup(child.name))
            readStyles(reading, child);
    });
}

std::string styleId(const Reading& reading, StyleKind kind, const std::string& reference) {
    if (reference.empty() || reference == "n") return {};
    const Style* style = reading.document.styleWithSelf(reference);
    if (style && style->kind == kind) return reference;
    const std::string prefix = prefixOf(kind);
    const std::string bare = reference.starts_with(prefix) ? reference.substr(prefix.size()) : reference;
    for (const std::string& candidate : {prefix + bare, prefix + withoutKeyMark(bare)}) {
        const auto found = reading.styleIds.find(candidate);
        if (found != reading.styleIds.end()) return found->second;
    }
    const Style* named = reading.document.styleNamed(kind, withoutKeyMark(bare));
    return named ? named->self : std::string();
}

Uid styleUid(const Reading& reading, StyleKind kind, const std::string& reference) {
    const Style* style = reading.document.styleWithSelf(styleId(reading, kind, reference));
    return style ? style->uid : 0;
}

void linkStyles(Reading& reading) {
    Document& document = reading.document;
    for (Uid uid : reading.readStyles) {
        Style& style = *document.style(uid);
        if (style.basedOn.empty()) continue;
        const std::string parent = styleId(reading, style.kind, style.basedOn);
        if (parent.empty())
            reading.note("the style " + quoted(style.name) + " is based on " + quoted(style.basedOn) +
                         ", which doesn't exist");
        style.basedOn = parent;
    }
    std::unordered_set<const Style*> good;
    for (Uid uid : reading.readStyles) {
        const auto parentOf = [&](const Style& style) { return document.parentOf(style); };
        const auto circle = circleFrom<Style>(document.style(uid), parentOf, good);
        if (circle.empty()) continue;
        std::vector<std::string> names;
        names.reserve(circle.size());
        for (const Style* style : circle) names.push_back(style->name);
        throw reading.failure("the styles " + quotedList(names) +
                              " are based on each other in a circle; give one of them another parent.");
    }
}

}  // namespace desk
