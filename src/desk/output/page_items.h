#pragma once
// Which items a page shows, and where the page lies.

#include <vector>

#include "desk/model/document.h"

namespace desk {

/// Boxes of a page in the coordinates of its spread.
struct PageBoxes {
    Rect trim;   ///< the page
    Rect bleed;  ///< with what reaches beyond it; the media box as well
    bool operator==(const PageBoxes&) const = default;
};

/// Inside and outside bleed lie left or right by the side on which the page stands in its spread.
PageBoxes boxesOf(const Document& document, const Page& page);

/// A top-level item and the map from its parent's coordinates to those of the page's spread.
struct ShownItem {
    Uid item = 0;
    Matrix toSpread;
    bool operator==(const ShownItem&) const = default;
};

/// The items in painting order: for each visible, printed layer from the bottom those of the master pages (the base of
/// a master under the master), then the spread's own. Master items that the page overrides are left out. `shown` is
/// replaced.
void collectItems(const Document& document, const Page& page, std::vector<ShownItem>& shown);

}  // namespace desk
