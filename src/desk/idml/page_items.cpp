#include "desk/idml/page_items.h"

#include <algorithm>
#include <optional>

#include "desk/idml/item_attributes_reader.h"
#include "desk/idml/limits.h"
#include "desk/idml/placed_graphics.h"
#include "desk/idml/resources.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

std::optional<ItemKind> kindOf(std::string_view element) {
    static const std::unordered_map<std::string_view, ItemKind> kinds = {{"Rectangle", ItemKind::Rectangle},
                                                                         {"Oval", ItemKind::Oval},
                                                                         {"Polygon", ItemKind::Polygon},
                                                                         {"GraphicLine", ItemKind::GraphicLine},
                                                                         {"TextFrame", ItemKind::TextFrame},
                                                                         {"Group", ItemKind::Group},
                                                                         {"Image", ItemKind::Graphic},
                                                                         {"PDF", ItemKind::Graphic},
                                                                         {"EPS", ItemKind::Graphic},
                                                                         {"WMF", ItemKind::Graphic},
                                                                         {"PICT", ItemKind::Graphic},
                                                                         {"SVG", ItemKind::Graphic},
                                                                         {"ImportedPage", ItemKind::Graphic},
                                                                         {"EPSText", ItemKind::Unknown},
                                                                         {"Button", ItemKind::Unknown},
                                                                         {"MultiStateObject", ItemKind::Unknown},
                                                                         {"CheckBox", ItemKind::Unknown},
                                                                         {"ComboBox", ItemKind::Unknown},
                                                                         {"ListBox", ItemKind::Unknown},
                                                                         {"RadioButton", ItemKind::Unknown},
                                                                         {"SignatureField", ItemKind::Unknown},
                                                                         {"TextBox", ItemKind::Unknown},
                                                                         {"Movie", ItemKind::Unknown},
                                                                         {"Sound", ItemKind::Unknown},
                                                                         {"HtmlItem", ItemKind::Unknown}};
    const auto found = kinds.find(element);
    return found == kinds.end() ? std::nullopt : std::optional(found->second);
}

Contour readContour(const XmlElement& geometry) {
    Contour contour;
    contour.open = attributeAs(geometry, "PathOpen", toBoolean).value_or(false);
    const XmlElement* points = geometry.child("PathPointArray");
    if (!points) return contour;
    points->eachChild([&](const XmlElement& point) {
        const auto anchor = attributeAs(point, "Anchor", toPoint);
        if (point.name != "PathPointType" || !anchor) return;
        contour.points.push_back({*anchor, attributeAs(point, "LeftDirection", toPoint).value_or(*anchor),
                                  attributeAs(point, "RightDirection", toPoint).value_or(*anchor)});
    });
    return contour;
}

Path readPath(const Reading& reading, const XmlElement& element) {
    Path path;
    const XmlElement* properties = element.child("Properties");
    const XmlElement* geometry = properties ? properties->child("PathGeometry") : nullptr;
    if (!geometry) return path;
    size_t points = 0;
    geometry->eachChild([&](const XmlElement& child) {
        if (child.name != "GeometryPathType") return;
        Contour contour = readContour(child);
        points += contour.points.size();
        if (points > limits::pathPoints)
            throw reading.failure(element.line, "the path has too many points; simplify it.");
        if (!contour.points.empty()) path.push_back(std::move(contour));
    });
    return path;
}

/// The wrap of the nearest style of the chain that has one, under the item's own.
TextWrap readWrap(const Document& document, const XmlElement& element, const PageItem& item) {
    TextWrap wrap;
    for (const Style* style = document.styleWithSelf(item.objectStyle); style; style = document.parentOf(*style)) {
        if (!style->wrap) continue;
        wrap = *style->wrap;
        break;
    }
    readTextWrap(element, wrap);
    return wrap;
}

void rememberThread(Reading& reading, const XmlElement& element, const PageItem& item) {
    FrameLinks links;
    links.frame = item.uid;
    links.story = toReference(attributeText(element, "ParentStory"));
    links.previous = toReference(attributeText(element, "PreviousTextFrame"));
    links.next = toReference(attributeText(element, "NextTextFrame"));
    links.member = reading.member;
    links.line = element.line;
    reading.frames.push_back(std::move(links));
}

bool hasEffect(const XmlElement& setting) {
    bool found = false;
    setting.eachChild([&](const XmlElement& effect) {
        const std::string& mode = attributeText(effect, "Mode");
        found = found || attributeText(effect, "Applied") == "true" || (!mode.empty() && mode != "None");
    });
    return found;
}

void noteWhatIsMissing(Reading& reading, const XmlElement& element, const PageItem& item) {
    if (item.kind == ItemKind::Unknown)
        reading.note("items of the kind " + std::string(element.name) + " aren't drawn");
    element.eachChild([&](const XmlElement& child) {
        if (child.name == "TextPath") reading.note("text on the path of " + quoted(item.self) + " isn't set");
        if (child.name.ends_with("TransparencySetting") && hasEffect(child))
            reading.note("shadows, glows and other effects aren't drawn");
        if (child.name == "ParagraphStyleRange")
            reading.note("text that stands directly in the frame " + quoted(item.self) + " isn't read");
    });
}

ItemKind kindOf(const XmlElement& element) {
    const ItemKind kind = *kindOf(element.name);
    // Any shape may hold text.
    const bool isShape = kind == ItemKind::Rectangle || kind == ItemKind::Oval || kind == ItemKind::Polygon;
    const bool holdsText = isShape && !toReference(attributeText(element, "ParentStory")).empty();
    return holdsText ? ItemKind::TextFrame : kind;
}

void readContent(Reading& reading, const XmlElement& element, PageItem& item) {
    element.eachChild([&](const XmlElement& child) {
        if (!isPageItem(child.name)) return;
        PageItem& inner = readPageItem(reading, child);
        inner.parent = item.uid;
        item.children.push_back(inner.uid);
    });
}

}  // namespace

bool isPageItem(std::string_view element) {
    return kindOf(element).has_value();
}

PageItem& readPageItem(Reading& reading, const XmlElement& element) {
    if (++reading.itemCount > limits::items)
        throw reading.failure(element.line, "the document has too many page items; split it.");
    const std::string& self = attributeText(element, "Self");
    if (!self.empty() && reading.document.itemWithSelf(self))
        reading.note("several items have the id " + quoted(self) + "; references to it mean the first");
    PageItem& item = reading.document.addItem(kindOf(element), self);
    item.name = withoutKeyMark(attributeText(element, "Name"));
    item.transform = attributeAs(element, "ItemTransform", toMatrix).value_or(Matrix{});
    item.path = readPath(reading, element);
    item.visible = attributeAs(element, "Visible", toBoolean).value_or(true);
    item.attributes = readItemAttributes(element);
    const std::string* style = element.attribute("AppliedObjectStyle");
    item.objectStyle = styleId(reading, StyleKind::Object, style ? *style : "$ID/[None]");
    item.frameOptions = readTextFrameOptions(element);
    item.fitting = readFrameFitting(element);
    item.contentType = readContentType(element);
    item.wrap = readWrap(reading.document, element, item);
    readLabels(element, item.labels);
    if (item.kind == ItemKind::Graphic) readPlacedGraphic(reading, element, item);
    if (item.kind == ItemKind::TextFrame) rememberThread(reading, element, item);
    if (item.kind != ItemKind::Unknown && item.kind != ItemKind::Graphic) readContent(reading, element, item);
    noteWhatIsMissing(reading, element, item);
    return item;
}

}  // namespace desk
