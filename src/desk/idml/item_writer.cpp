#include "desk/idml/item_writer.h"

#include "desk/idml/label_writer.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

using Texts = std::vector<std::pair<std::string, std::string>>;

void add(Texts& texts, const char* name, const std::optional<std::string>& value) {
    if (value) texts.emplace_back(name, *value);
}
void add(Texts& texts, const char* name, const std::optional<double>& value) {
    if (value) texts.emplace_back(name, numberText(*value));
}
void add(Texts& texts, const char* name, const std::optional<bool>& value) {
    if (value) texts.emplace_back(name, *value ? "true" : "false");
}
void add(Texts& texts, const char* name, const std::optional<int>& value, std::initializer_list<const char*> words) {
    if (value && *value >= 0 && static_cast<size_t>(*value) < words.size())
        texts.emplace_back(name, *(words.begin() + *value));
}

const char* elementName(const PageItem& item) {
    switch (item.kind) {
        case ItemKind::Oval:
            return "Oval";
        case ItemKind::Polygon:
            return "Polygon";
        case ItemKind::GraphicLine:
            return "GraphicLine";
        case ItemKind::TextFrame:
            return "TextFrame";
        case ItemKind::Group:
            return "Group";
        case ItemKind::Graphic:
            return item.graphic && !item.graphic->kind.empty() ? item.graphic->kind.c_str() : "Image";
        case ItemKind::Rectangle:
        case ItemKind::Unknown:
            break;
    }
    return "Rectangle";
}

std::string tagAttributes(const Texts& texts) {
    std::string written;
    for (const auto& [name, value] : texts) written += " " + name + "=\"" + escapedAttribute(value) + "\"";
    return written;
}

/// A file's path as a link names it: percent codes for what a URI can't hold.
std::string fileUri(const std::string& path) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    constexpr char digits[] = "0123456789ABCDEF";
    std::string uri = "file:";
    for (char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (plain.find(c) != std::string_view::npos)
            uri += c;
        else
            uri.append({'%', digits[byte >> 4], digits[byte & 15]});
    }
    return uri;
}

std::string linkXml(const PageItem& item, const std::string& id) {
    const PlacedGraphic& graphic = *item.graphic;
    const std::string uri = graphic.uri.empty() && !graphic.path.empty() ? fileUri(graphic.path) : graphic.uri;
    if (uri.empty()) return {};
    const std::string page =
        graphic.kind == "PDF" ? "<PDFAttribute PageNumber=\"" + std::to_string(graphic.pageNumber) + "\"/>" : "";
    return page + "<Link Self=\"" + id + "link\" LinkResourceURI=\"" + escapedAttribute(uri) + "\"/>";
}

std::string boundsXml(const Rect& bounds) {
    return "<GraphicBounds Left=\"" + numberText(bounds.left) + "\" Top=\"" + numberText(bounds.top) + "\" Right=\"" +
           numberText(bounds.right) + "\" Bottom=\"" + numberText(bounds.bottom) + "\"/>";
}

}  // namespace

Texts itemAttributeTexts(const Document& document, const PageItem& item, const IdOf& idOf) {
    Texts texts;
    const ItemAttributes& look = item.attributes;
    if (const Layer* layer = document.layer(item.layer)) add(texts, "ItemLayer", std::optional(layer->self));
    texts.emplace_back("ItemTransform", matrixText(item.transform));
    if (!item.visible) texts.emplace_back("Visible", "false");
    if (!item.name.empty()) texts.emplace_back("Name", item.name);
    if (!item.objectStyle.empty()) texts.emplace_back("AppliedObjectStyle", item.objectStyle);
    add(texts, "FillColor", look.fillColor);
    add(texts, "FillTint", look.fillTint);
    add(texts, "StrokeColor", look.strokeColor);
    add(texts, "StrokeTint", look.strokeTint);
    add(texts, "StrokeWeight", look.strokeWeight);
    add(texts, "StrokeType", look.strokeType);
    add(texts, "StrokeAlignment", look.strokeAlignment, {"CenterAlignment", "InsideAlignment", "OutsideAlignment"});
    add(texts, "OverprintFill", look.overprintFill);
    add(texts, "OverprintStroke", look.overprintStroke);
    add(texts, "Nonprinting", look.nonprinting);
    if (item.kind != ItemKind::TextFrame) return texts;
    const auto reference = [&](Uid uid) {
        const std::string id = uid ? idOf(uid) : std::string();
        return id.empty() ? std::string("n") : id;
    };
    texts.emplace_back("ParentStory", reference(item.story));
    texts.emplace_back("PreviousTextFrame", reference(item.previousFrame));
    texts.emplace_back("NextTextFrame", reference(item.nextFrame));
    return texts;
}

std::string pathXml(const Path& path) {
    std::string xml = "<PathGeometry>";
    for (const Contour& contour : path) {
        xml += std::string("<GeometryPathType PathOpen=\"") + (contour.open ? "true" : "false") + "\"><PathPointArray>";
        for (const PathPoint& point : contour.points)
            xml += "<PathPointType Anchor=\"" + pointText(point.anchor) + "\" LeftDirection=\"" +
                   pointText(point.incoming) + "\" RightDirection=\"" + pointText(point.outgoing) + "\"/>";
        xml += "</PathPointArray></GeometryPathType>";
    }
    return xml + "</PathGeometry>";
}

std::string newItemXml(const Document& document, const PageItem& item, const IdOf& idOf, const std::string& content) {
    const std::string id = idOf(item.uid);
    const std::string name = elementName(item);
    Texts texts = itemAttributeTexts(document, item, idOf);
    const bool isGraphic = item.kind == ItemKind::Graphic && item.graphic;
    if (isGraphic) std::erase_if(texts, [](const auto& text) { return text.first == "ItemLayer"; });
    if (item.kind == ItemKind::Rectangle || item.kind == ItemKind::Oval || item.kind == ItemKind::Polygon)
        texts.emplace_back("ContentType", item.contentType == ContentType::Graphic ? "GraphicType" : "Unassigned");
    std::string properties = isGraphic ? boundsXml(item.graphic->bounds) : std::string();
    if (!isGraphic && !item.path.empty()) properties += pathXml(item.path);
    properties += labelXml(item.labels);
    std::string xml = "<" + name + " Self=\"" + id + "\"" + tagAttributes(texts) + ">";
    if (!properties.empty()) xml += "<Properties>" + properties + "</Properties>";
    if (isGraphic) xml += linkXml(item, id);
    return xml + content + "</" + name + ">";
}

std::string newSpreadXml(const Document& document, const Spread& spread, const IdOf& idOf, const std::string& content) {
    std::string xml = "<Spread Self=\"" + idOf(spread.uid) + "\" PageCount=\"" + std::to_string(spread.pages.size()) +
                      "\" BindingLocation=\"" + std::to_string(spread.bindingLocation) + "\" ShowMasterItems=\"" +
                      (spread.showMasterItems ? "true" : "false") + "\" ItemTransform=\"" +
                      matrixText(spread.transform) + "\">";
    for (Uid uid : spread.pages) {
        const Page& page = *document.page(uid);
        const Rect& b = page.bounds;
        xml += "<Page Self=\"" + idOf(uid) + "\" Name=\"" + escapedAttribute(page.name) + "\" AppliedMaster=\"" +
               escapedAttribute(page.appliedMaster.empty() ? "n" : page.appliedMaster) + "\" GeometricBounds=\"" +
               numberText(b.top) + " " + numberText(b.left) + " " + numberText(b.bottom) + " " + numberText(b.right) +
               "\" ItemTransform=\"" + matrixText(page.transform) + "\" MasterPageTransform=\"" +
               matrixText(page.masterTransform) + "\" OverrideList=\"\"><MarginPreference Top=\"" +
               numberText(page.margins.top) + "\" Bottom=\"" + numberText(page.margins.bottom) + "\" Left=\"" +
               numberText(page.margins.left) + "\" Right=\"" + numberText(page.margins.right) + "\"/></Page>";
    }
    return xml + content + "</Spread>";
}

}  // namespace desk
