#include "desk/idml/spreads.h"

#include <algorithm>
#include <optional>

#include "desk/idml/page_items.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

Rect readMargins(const XmlElement& page) {
    const XmlElement* margins = page.child("MarginPreference");
    if (!margins) return {};
    const auto side = [&](std::string_view name) { return attributeAs(*margins, name, toNumber).value_or(0); };
    return {side("Left"), side("Top"), side("Right"), side("Bottom")};
}

/// Where a page's left top corner stands on the spread when the file doesn't say: the oldest versions leave it to the
/// document's preferences.
Point standardPlace(const Preferences& preferences, const Spread& spread, size_t index, size_t count) {
    const double width = preferences.pageWidth;
    const double left = preferences.facingPages ? (static_cast<double>(index) - spread.bindingLocation) * width
                                                : (static_cast<double>(index) - static_cast<double>(count) / 2) * width;
    return {left, -preferences.pageHeight / 2};
}

/// "top left bottom right".
std::optional<Rect> toBounds(std::string_view text) {
    const auto numbers = toNumbers(text);
    if (!numbers || numbers->size() != 4) return {};
    const std::vector<double>& n = *numbers;
    return Rect{n[1], n[0], n[3], n[2]};
}

void readPage(Reading& reading, const XmlElement& element, Spread& spread, size_t count) {
    const Preferences& preferences = reading.document.preferences;
    const Point place = standardPlace(preferences, spread, spread.pages.size(), count);
    Page& page = reading.document.addPage(spread);
    page.self = attributeText(element, "Self");
    page.name = attributeText(element, "Name");
    page.bounds = attributeAs(element, "GeometricBounds", toBounds)
                      .value_or(Rect{0, 0, preferences.pageWidth, preferences.pageHeight});
    page.transform = attributeAs(element, "ItemTransform", toMatrix)
                         .value_or(Matrix::translation(place.x - page.bounds.left, place.y - page.bounds.top));
    const Rect rect = page.rectInSpread();
    if (!(page.bounds.width() > 0) || !(page.bounds.height() > 0) || !(rect.width() > 0) || !(rect.height() > 0))
        throw reading.failure(element.line,
                              "the page " + quoted(page.name) + " has no size; give it a width and a height.");
    page.appliedMaster = toReference(attributeText(element, "AppliedMaster"));
    page.masterTransform = attributeAs(element, "MasterPageTransform", toMatrix).value_or(Matrix{});
    page.margins = readMargins(element);
    const std::vector<std::string> pairs = toReferences(attributeText(element, "OverrideList"));
    for (size_t i = 0; i < pairs.size(); i += 2) page.overriddenMasterItems.push_back(pairs[i]);
}

const Layer& layerOf(Reading& reading, const XmlElement& element) {
    const auto found = reading.layers.find(attributeText(element, "ItemLayer"));
    if (found != reading.layers.end()) return *reading.document.layer(found->second);
    if (element.attribute("ItemLayer"))
        reading.note("the item " + quoted(attributeText(element, "Self")) + " names a layer that doesn't exist");
    return reading.document.layers.front();
}

}  // namespace

Spread& readSpread(Reading& reading, const XmlElement& element, SpreadRole role) {
    Document& document = reading.document;
    Spread& spread = document.addSpread(role == SpreadRole::Master);
    spread.self = attributeText(element, "Self");
    spread.name = attributeText(element, "Name");
    spread.showMasterItems = attributeAs(element, "ShowMasterItems", toBoolean).value_or(true);
    spread.transform = attributeAs(element, "ItemTransform", toMatrix).value_or(Matrix{});
    spread.bindingLocation = attributeAs(element, "BindingLocation", toInteger).value_or(0);
    size_t pages = 0;
    element.eachChild([&](const XmlElement& child) { pages += child.name == "Page"; });
    element.eachChild([&](const XmlElement& child) {
        if (child.name == "Page")
            readPage(reading, child, spread, pages);
        else if (isPageItem(child.name))
            document.placeOnSpread(readPageItem(reading, child), spread, layerOf(reading, child));
    });
    if (role == SpreadRole::Master)
        for (Uid uid : spread.pages)
            if (spread.basedOn.empty()) spread.basedOn = document.page(uid)->appliedMaster;
    return spread;
}

void coverItemsWithPage(Document& document, Spread& spread) {
    std::optional<Rect> covered;
    for (Uid uid : spread.layers) {
        std::vector<Uid> waiting = document.spreadLayer(uid)->items;
        while (!waiting.empty()) {
            const PageItem& item = *document.item(waiting.back());
            waiting.pop_back();
            // What stands inside a shape is clipped by it; only groups reach as far as their items.
            if (item.kind == ItemKind::Group) waiting.insert(waiting.end(), item.children.begin(), item.children.end());
            if (item.path.empty()) continue;
            const Rect bounds = document.toSpread(item).boundsOf(boundsOf(item.path));
            covered = covered ? covered->unitedWith(bounds) : bounds;
        }
    }
    Page& page = document.addPage(spread);
    page.name = "1";
    if (!covered || !(covered->width() > 0) || !(covered->height() > 0)) return;
    page.bounds = {0, 0, covered->width(), covered->height()};
    page.transform = Matrix::translation(covered->left, covered->top);
}

}  // namespace desk
