#include "desk/model/document.h"

#include <algorithm>

namespace desk {
namespace {

void removeUid(std::vector<Uid>& uids, Uid uid) {
    std::erase(uids, uid);
}

}  // namespace

const std::string& Labels::get(const std::string& key) const {
    static const std::string none;
    const auto found = std::find_if(pairs_.begin(), pairs_.end(), [&](const auto& pair) { return pair.first == key; });
    return found == pairs_.end() ? none : found->second;
}

void Labels::set(const std::string& key, const std::string& value) {
    const auto found = std::find_if(pairs_.begin(), pairs_.end(), [&](const auto& pair) { return pair.first == key; });
    if (value.empty()) {
        if (found != pairs_.end()) pairs_.erase(found);
    } else if (found != pairs_.end()) {
        found->second = value;
    } else {
        pairs_.emplace_back(key, value);
    }
}

Document::Document() {
    entries_.resize(3);  // 0 names nothing
    entries_[rootUid()].kind = Kind::Root;
    entries_[workspaceUid()].kind = Kind::Workspace;
    characterFormatId({});
    paragraphFormatId({});
    addStyle(StyleKind::Paragraph, "[No paragraph style]", "ParagraphStyle/$ID/[No paragraph style]");
    addStyle(StyleKind::Character, "[No character style]", "CharacterStyle/$ID/[No character style]");
}

Uid Document::newUid(Kind kind, void* object) {
    Entry entry;
    entry.kind = kind;
    entry.object = object;
    entries_.push_back(entry);
    return static_cast<Uid>(entries_.size() - 1);
}

void* Document::objectOf(Uid uid, Kind kind) const {
    return uid < entries_.size() && entries_[uid].kind == kind ? entries_[uid].object : nullptr;
}

Document::Kind Document::kindOf(Uid uid) const {
    return uid < entries_.size() ? entries_[uid].kind : Kind::None;
}

Story& Document::addStory() {
    Story* story = nullptr;
    if (freeStories_.empty()) {
        story = &storyStore_.emplace_back();
    } else {
        story = freeStories_.back();
        freeStories_.pop_back();
    }
    story->uid = newUid(Kind::Story, story);
    stories.push_back(story->uid);
    return *story;
}

PageItem& Document::addItem(ItemKind kind, const std::string& self) {
    PageItem* item = nullptr;
    if (freeItems_.empty()) {
        item = &itemStore_.emplace_back();
    } else {
        item = freeItems_.back();
        freeItems_.pop_back();
    }
    item->uid = newUid(Kind::Item, item);
    item->kind = kind;
    item->self = self;
    if (!self.empty()) itemsBySelf_.emplace(self, item->uid);
    if (kind == ItemKind::TextFrame) threadsChanged();
    return *item;
}

SpreadLayer& Document::addSpreadLayer(Spread& spread, Uid layer) {
    SpreadLayer& spreadLayer = spreadLayerStore_.emplace_back();
    spreadLayer.uid = newUid(Kind::SpreadLayer, &spreadLayer);
    spreadLayer.layer = layer;
    spreadLayer.spread = spread.uid;
    spread.layers.push_back(spreadLayer.uid);
    return spreadLayer;
}

Spread& Document::addSpread(bool master) {
    Spread& spread = spreadStore_.emplace_back();
    spread.uid = newUid(Kind::Spread, &spread);
    spread.isMaster = master;
    (master ? masterSpreads : spreads).push_back(spread.uid);
    for (const Layer& layer : layers) addSpreadLayer(spread, layer.uid);
    return spread;
}

Page& Document::addPage(Spread& spread) {
    Page& page = pageStore_.emplace_back();
    page.uid = newUid(Kind::Page, &page);
    page.spread = spread.uid;
    page.bounds = {0, 0, preferences.pageWidth, preferences.pageHeight};
    spread.pages.push_back(page.uid);
    return page;
}

Layer& Document::addLayer(const std::string& layerName) {
    Layer& layer = layers.emplace_back();
    layer.uid = newUid(Kind::Layer, &layer);
    layer.name = layerName;
    for (Spread& spread : spreadStore_)
        if (spread.uid != 0) addSpreadLayer(spread, layer.uid);
    return layer;
}

void Document::placeOnSpread(PageItem& item, Spread& spread, const Layer& layer) {
    for (Uid uid : spread.layers) {
        SpreadLayer* spreadLayer = this->spreadLayer(uid);
        if (!spreadLayer || spreadLayer->layer != layer.uid) continue;
        takeFromContainer(item);
        spreadLayer->items.push_back(item.uid);
        item.parent = uid;
        standUnder(item, spread.uid, layer.uid);
        return;
    }
}

void Document::placeInside(PageItem& item, PageItem& container) {
    takeFromContainer(item);
    container.children.push_back(item.uid);
    item.parent = container.uid;
    standUnder(item, container.spread, container.layer);
}

void Document::standUnder(PageItem& item, Uid spread, Uid layer) {
    std::vector<PageItem*> waiting{&item};
    while (!waiting.empty()) {
        PageItem* next = waiting.back();
        waiting.pop_back();
        next->spread = spread;
        next->layer = layer;
        for (Uid child : next->children)
            if (PageItem* found = this->item(child)) waiting.push_back(found);
    }
}

Story* Document::story(Uid uid) {
    return static_cast<Story*>(objectOf(uid, Kind::Story));
}
const Story* Document::story(Uid uid) const {
    return static_cast<const Story*>(objectOf(uid, Kind::Story));
}
PageItem* Document::item(Uid uid) {
    return static_cast<PageItem*>(objectOf(uid, Kind::Item));
}
const PageItem* Document::item(Uid uid) const {
    return static_cast<const PageItem*>(objectOf(uid, Kind::Item));
}
Spread* Document::spread(Uid uid) {
    return static_cast<Spread*>(objectOf(uid, Kind::Spread));
}
const Spread* Document::spread(Uid uid) const {
    return static_cast<const Spread*>(objectOf(uid, Kind::Spread));
}
Page* Document::page(Uid uid) {
    return static_cast<Page*>(objectOf(uid, Kind::Page));
}
const Page* Document::page(Uid uid) const {
    return static_cast<const Page*>(objectOf(uid, Kind::Page));
}
Layer* Document::layer(Uid uid) {
    return static_cast<Layer*>(objectOf(uid, Kind::Layer));
}
const Layer* Document::layer(Uid uid) const {
    return static_cast<const Layer*>(objectOf(uid, Kind::Layer));
}
Style* Document::style(Uid uid) {
    return static_cast<Style*>(objectOf(uid, Kind::Style));
}
const Style* Document::style(Uid uid) const {
    return static_cast<const Style*>(objectOf(uid, Kind::Style));
}
SpreadLayer* Document::spreadLayer(Uid uid) {
    return static_cast<SpreadLayer*>(objectOf(uid, Kind::SpreadLayer));
}
const SpreadLayer* Document::spreadLayer(Uid uid) const {
    return static_cast<const SpreadLayer*>(objectOf(uid, Kind::SpreadLayer));
}

PageItem* Document::itemWithSelf(const std::string& self) {
    const auto found = itemsBySelf_.find(self);
    return found == itemsBySelf_.end() ? nullptr : item(found->second);
}

const Swatch* Document::swatch(const std::string& self) const {
    const auto found = swatches.find(self);
    return found == swatches.end() ? nullptr : &found->second;
}

std::vector<Uid> Document::pages() const {
    std::vector<Uid> all;
    for (Uid uid : spreads)
        if (const Spread* found = spread(uid)) all.insert(all.end(), found->pages.begin(), found->pages.end());
    return all;
}

void Document::takeFromContainer(const PageItem& item) {
    if (SpreadLayer* onSpread = spreadLayer(item.parent)) {
        removeUid(onSpread->items, item.uid);
        return;
    }
    if (PageItem* container = this->item(item.parent)) {
        removeUid(container->children, item.uid);
        return;
    }
    if (item.spread != 0) return;
    // A copied story shares the items of its source, so that several may hold this one.
    for (Uid uid : stories) {
        Story* holder = story(uid);
        for (const OwnedItem& owned : holder->content().ownedItems) {
            if (owned.item != item.uid) continue;
            holder->erase(owned.position, 1);
            break;
        }
    }
}

void Document::removeItem(Uid uid) {
    PageItem* removed = item(uid);
    if (!removed) return;
    takeFromContainer(*removed);
    std::vector<PageItem*> waiting{removed};
    while (!waiting.empty()) {
        PageItem* next = waiting.back();
        waiting.pop_back();
        for (Uid child : next->children)
            if (PageItem* found = item(child)) waiting.push_back(found);
        if (next->kind == ItemKind::TextFrame) unlinkFrame(*next);
        removeBeside(next->uid);
        // Of several items with the same id another one may be the one that is named.
        const auto named = itemsBySelf_.find(next->self);
        if (named != itemsBySelf_.end() && named->second == next->uid) itemsBySelf_.erase(named);
        entries_[next->uid] = Entry{};
        *next = PageItem{};
        freeItems_.push_back(next);
    }
    modified = true;
}

bool Document::removeSpread(Uid uid) {
    Spread* removed = std::find(spreads.begin(), spreads.end(), uid) != spreads.end() ? spread(uid) : nullptr;
    if (!removed) return false;
    for (Uid layer : removed->layers) {
        const std::vector<Uid> items = spreadLayer(layer)->items;
        for (Uid item : items) removeItem(item);
        entries_[layer] = Entry{};
    }
    for (Uid page : removed->pages) entries_[page] = Entry{};
    entries_[uid] = Entry{};
    removeUid(spreads, uid);
    // Its place in the store stays empty: nothing names it any more, but new layers visit every spread of the store.
    *removed = Spread{};
    modified = true;
    return true;
}

void Document::removeStory(Uid uid) {
    Story* removed = story(uid);
    if (!removed) return;
    const std::vector<OwnedItem> owned = removed->content().ownedItems;
    removed->setContent(nullptr);
    for (const OwnedItem& ownedItem : owned)
        if (storyHolding(ownedItem.item) == 0) removeItem(ownedItem.item);
    for (PageItem& frame : itemStore_)
        if (frame.story == uid) frame.story = 0;
    removeUid(stories, uid);
    entries_[uid] = Entry{};
    *removed = Story{};
    freeStories_.push_back(removed);
    threadsChanged();
    modified = true;
}

}  // namespace desk
