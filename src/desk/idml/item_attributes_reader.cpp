#include "desk/idml/item_attributes_reader.h"

#include <algorithm>

#include "desk/idml/limits.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

void swatch(const XmlElement& element, std::string_view name, std::optional<std::string>& field) {
    std::string storage;
    const std::string* value = scalar(element, name, storage);
    if (value && !value->empty() && *value != "n") field = *value;
}

void text(const XmlElement& element, std::string_view name, std::optional<std::string>& field) {
    if (const std::string* value = element.attribute(name)) field = *value;
}

void number(const XmlElement& element, std::string_view name, std::optional<double>& field) {
    if (const auto value = attributeAs(element, name, toNumber)) field = *value;
}

void notNegative(const XmlElement& element, std::string_view name, std::optional<double>& field) {
    if (const auto value = attributeAs(element, name, toNumber)) field = std::max(0.0, *value);
}

void boolean(const XmlElement& element, std::string_view name, std::optional<bool>& field) {
    if (const auto value = attributeAs(element, name, toBoolean)) field = *value;
}

/// The place of the attribute's word in the list.
void oneOf(const XmlElement& element, std::string_view name, std::initializer_list<std::string_view> words,
           std::optional<int>& field) {
    const auto found = std::find(words.begin(), words.end(), attributeText(element, name));
    if (found != words.end()) field = static_cast<int>(found - words.begin());
}

void readStroke(const XmlElement& element, ItemAttributes& attributes) {
    notNegative(element, "StrokeWeight", attributes.strokeWeight);
    text(element, "StrokeType", attributes.strokeType);
    oneOf(element, "StrokeAlignment", {"CenterAlignment", "InsideAlignment", "OutsideAlignment"},
          attributes.strokeAlignment);
    oneOf(element, "EndCap", {"ButtEndCap", "RoundEndCap", "ProjectingEndCap"}, attributes.endCap);
    oneOf(element, "EndJoin", {"MiterEndJoin", "RoundEndJoin", "BevelEndJoin"}, attributes.endJoin);
    number(element, "MiterLimit", attributes.miterLimit);
    if (attributes.miterLimit) attributes.miterLimit = std::max(1.0, *attributes.miterLimit);
    text(element, "LeftLineEnd", attributes.leftLineEnd);
    text(element, "RightLineEnd", attributes.rightLineEnd);
    const auto dashes = attributeAs(element, "StrokeDashAndGap", toNumbers);
    if (dashes && !dashes->empty() && std::all_of(dashes->begin(), dashes->end(), [](double d) { return d >= 0; }))
        attributes.dashes = *dashes;
}

/// Older versions have one option for all four corners; a corner's own wins.
void readCorners(const XmlElement& element, ItemAttributes& attributes) {
    constexpr std::string_view corners[] = {"TopLeft", "TopRight", "BottomLeft", "BottomRight"};
    for (size_t i = 0; i < 4; ++i) {
        const std::string corner(corners[i]);
        text(element, "CornerOption", attributes.cornerOption[i]);
        text(element, corner + "CornerOption", attributes.cornerOption[i]);
        notNegative(element, "CornerRadius", attributes.cornerRadius[i]);
        notNegative(element, corner + "CornerRadius", attributes.cornerRadius[i]);
    }
}

void readGradient(const XmlElement& element, ItemAttributes& attributes) {
    number(element, "GradientFillAngle", attributes.gradientAngle);
    // A length of 0 or -1 says that length and start aren't set.
    const auto length = attributeAs(element, "GradientFillLength", toNumber);
    if (!length || *length <= 0) return;
    attributes.gradientLength = *length;
    if (const auto start = attributeAs(element, "GradientFillStart", toPoint)) attributes.gradientStart = *start;
}

void readTransparency(const XmlElement& element, ItemAttributes& attributes) {
    const XmlElement* setting = element.child("TransparencySetting");
    const XmlElement* blending = setting ? setting->child("BlendingSetting") : nullptr;
    if (!blending) return;
    number(*blending, "Opacity", attributes.opacity);
    if (attributes.opacity) attributes.opacity = std::clamp(*attributes.opacity, 0.0, 100.0);
    text(*blending, "BlendMode", attributes.blendMode);
}

/// Insets come as a list in the order top, left, bottom, right, or as one number for all sides.
void readInsets(const XmlElement& preference, TextFrameOptions& options) {
    const XmlElement* properties = preference.child("Properties");
    const XmlElement* spacing = properties ? properties->child("InsetSpacing") : nullptr;
    if (!spacing) return;
    std::vector<std::optional<double>> sides;
    spacing->eachChild([&](const XmlElement& item) { sides.push_back(toNumber(item.text())); });
    if (sides.empty()) {
        const auto all = toNumber(spacing->text());
        if (!all) return;
        sides.assign(4, all);
    }
    sides.resize(4);
    std::optional<double>* fields[] = {&options.insetTop, &options.insetLeft, &options.insetBottom,
                                       &options.insetRight};
    for (size_t i = 0; i < 4; ++i)
        if (sides[i]) *fields[i] = *sides[i];
}

}  // namespace

ItemAttributes readItemAttributes(const XmlElement& element) {
    ItemAttributes attributes;
    swatch(element, "FillColor", attributes.fillColor);
    swatch(element, "StrokeColor", attributes.strokeColor);
    swatch(element, "GapColor", attributes.gapColor);
    number(element, "FillTint", attributes.fillTint);
    number(element, "StrokeTint", attributes.strokeTint);
    number(element, "GapTint", attributes.gapTint);
    boolean(element, "OverprintFill", attributes.overprintFill);
    boolean(element, "OverprintStroke", attributes.overprintStroke);
    boolean(element, "Nonprinting", attributes.nonprinting);
    readStroke(element, attributes);
    readCorners(element, attributes);
    readGradient(element, attributes);
    readTransparency(element, attributes);
    return attributes;
}

TextFrameOptions readTextFrameOptions(const XmlElement& element) {
    TextFrameOptions options;
    const XmlElement* preference = element.child("TextFramePreference");
    if (!preference) return options;
    if (const auto columns = attributeAs(*preference, "TextColumnCount", toInteger))
        options.columnCount = std::clamp(*columns, 1, limits::textColumns);
    notNegative(*preference, "TextColumnGutter", options.columnGutter);
    readInsets(*preference, options);
    std::optional<int> word;
    oneOf(*preference, "FirstBaselineOffset",
          {"AscentOffset", "CapHeight", "LeadingOffset", "EmboxHeight", "XHeight", "FixedHeight"}, word);
    if (word) options.firstBaseline = static_cast<FirstBaseline>(*word);
    number(*preference, "MinimumFirstBaselineOffset", options.minimumFirstBaseline);
    word.reset();
    oneOf(*preference, "VerticalJustification", {"TopAlign", "CenterAlign", "BottomAlign", "JustifyAlign"}, word);
    if (word) options.verticalJustification = static_cast<VerticalJustification>(*word);
    number(*preference, "VerticalThreshold", options.verticalThreshold);
    boolean(*preference, "IgnoreWrap", options.ignoreWrap);
    text(*preference, "AutoSizingType", options.autoSizing);
    return options;
}

bool readTextWrap(const XmlElement& element, TextWrap& wrap) {
    const XmlElement* preference = element.child("TextWrapPreference");
    if (!preference) return false;
    std::optional<int> mode;
    oneOf(*preference, "TextWrapMode",
          {"None", "BoundingBoxTextWrap", "Contour", "JumpObjectTextWrap", "NextColumnTextWrap"}, mode);
    if (mode) wrap.mode = static_cast<TextWrapMode>(*mode);
    const XmlElement* properties = preference->child("Properties");
    const XmlElement* offset = properties ? properties->child("TextWrapOffset") : nullptr;
    if (!offset) return true;
    const auto side = [&](std::string_view name, double& field) {
        if (const auto value = attributeAs(*offset, name, toNumber)) field = *value;
    };
    side("Top", wrap.top);
    side("Left", wrap.left);
    side("Bottom", wrap.bottom);
    side("Right", wrap.right);
    return true;
}

void readLabels(const XmlElement& element, Labels& labels) {
    element.eachChild([&](const XmlElement& properties) {
        if (properties.name != "Properties") return;
        properties.eachChild([&](const XmlElement& label) {
            if (label.name != "Label") return;
            label.eachChild([&](const XmlElement& pair) {
                const std::string* key = pair.attribute("Key");
                const bool hasRoom = labels.pairs().size() < limits::labels;
                if (pair.name == "KeyValuePair" && key && hasRoom) labels.set(*key, attributeText(pair, "Value"));
            });
        });
    });
}

}  // namespace desk
