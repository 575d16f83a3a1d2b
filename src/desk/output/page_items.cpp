#include "desk/output/page_items.h"

#include <algorithm>

namespace desk {
namespace {

/// Masters based on masters: more than this is a circle.
constexpr size_t deepestMaster = 32;

const Spread* masterNamed(const Document& document, const std::string& self) {
    if (self.empty() || self == "n") return nullptr;
    for (Uid uid : document.masterSpreads) {
        const Spread* spread = document.spread(uid);
        if (spread && spread->self == self) return spread;
    }
    return nullptr;
}

double middle(const Page& page) {
    const Rect rect = page.rectInSpread();
    return (rect.left + rect.right) / 2;
}

size_t indexInSpread(const Document& document, const Page& page) {
    const Spread* spread = document.spread(page.spread);
    if (!spread) return 0;
    const auto place = std::find(spread->pages.begin(), spread->pages.end(), page.uid);
    return place == spread->pages.end() ? 0 : static_cast<size_t>(place - spread->pages.begin());
}

/// The page of the master on the same side; the only one of a master of one page; else by number.
const Page* masterPageFor(const Document& document, const Page& page, const Spread& master) {
    if (master.pages.empty()) return nullptr;
    if (master.pages.size() > 1 && document.preferences.facingPages) {
        const bool right = middle(page) >= 0;
        for (Uid uid : master.pages) {
            const Page* candidate = document.page(uid);
            if (candidate && (middle(*candidate) >= 0) == right) return candidate;
        }
    }
    const size_t index = std::min(indexInSpread(document, page), master.pages.size() - 1);
    return document.page(master.pages[index]);
}

struct Source {
    const Spread* spread = nullptr;
    Matrix toSpread;
    bool master = false;
};

/// The spreads that paint on the page, from the bottom.
std::vector<Source> sourcesOf(const Document& document, const Page& page) {
    const Spread* own = document.spread(page.spread);
    std::vector<Source> sources;
    if (!own) return sources;
    sources.push_back({own, Matrix{}, false});
    if (!own->showMasterItems) return sources;
    std::vector<const Spread*> seen;
    const Rect target = page.rectInSpread();
    Matrix moved = page.masterTransform;
    const Page* below = &page;
    std::string next = page.appliedMaster;
    while (seen.size() < deepestMaster) {
        const Spread* master = masterNamed(document, next);
        if (!master || std::find(seen.begin(), seen.end(), master) != seen.end()) break;
        const Page* masterPage = masterPageFor(document, *below, *master);
        if (!masterPage) break;
        const Rect origin = masterPage->rectInSpread();
        const Matrix toSpread = Matrix::translation(target.left - origin.left, target.top - origin.top)
                                    .after(Matrix::translation(moved.e, moved.f));
        sources.insert(sources.begin(), {master, toSpread, true});
        seen.push_back(master);
        below = masterPage;
        moved = Matrix::translation(moved.e + masterPage->masterTransform.e, moved.f + masterPage->masterTransform.f);
        next = masterPage->appliedMaster.empty() || masterPage->appliedMaster == "n" ? master->basedOn
                                                                                     : masterPage->appliedMaster;
    }
    return sources;
}

bool isOverridden(const Page& page, const PageItem& item) {
    return !item.self.empty() && std::find(page.overriddenMasterItems.begin(), page.overriddenMasterItems.end(),
                                           item.self) != page.overriddenMasterItems.end();
}

}  // namespace

PageBoxes boxesOf(const Document& document, const Page& page) {
    const Preferences& preferences = document.preferences;
    PageBoxes boxes;
    boxes.trim = page.rectInSpread();
    const bool leftHand = preferences.facingPages && middle(page) < 0;
    const double left = leftHand ? preferences.bleedOutside : preferences.bleedInside;
    const double right = leftHand ? preferences.bleedInside : preferences.bleedOutside;
    boxes.bleed = {boxes.trim.left - std::max(left, 0.0), boxes.trim.top - std::max(preferences.bleedTop, 0.0),
                   boxes.trim.right + std::max(right, 0.0), boxes.trim.bottom + std::max(preferences.bleedBottom, 0.0)};
    return boxes;
}

void collectItems(const Document& document, const Page& page, std::vector<ShownItem>& shown) {
    shown.clear();
    const std::vector<Source> sources = sourcesOf(document, page);
    for (const Layer& layer : document.layers) {
        if (!layer.visible || !layer.printable) continue;
        for (const Source& source : sources) {
            for (Uid uid : source.spread->layers) {
                const SpreadLayer* spreadLayer = document.spreadLayer(uid);
                if (!spreadLayer || spreadLayer->layer != layer.uid) continue;
                for (Uid item : spreadLayer->items) {
                    const PageItem* found = document.item(item);
                    if (!found || (source.master && isOverridden(page, *found))) continue;
                    shown.push_back({item, source.toSpread});
                }
            }
        }
    }
}

}  // namespace desk
