#include "desk/idml/package_changes.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "desk/idml/item_writer.h"
#include "desk/idml/label_writer.h"
#include "desk/idml/page_items.h"
#include "desk/idml/story_writer.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

constexpr const char* mapMember = "designmap.xml";

/// The largest number of ids of the form "u" and hexadecimal digits that stand in a text. Ids with more digits than any
/// program gives are passed over.
void raiseToIds(std::string_view text, uint64_t& highest) {
    constexpr std::string_view name = "Self";
    constexpr size_t mostDigits = 15;
    const auto behindBlanks = [&](size_t at) { return std::min(text.find_first_not_of(" \t\r\n", at), text.size()); };
    for (size_t at = text.find(name); at != std::string_view::npos; at = text.find(name, at)) {
        at = behindBlanks(at + name.size());
        if (at == text.size() || text[at] != '=') continue;
        at = behindBlanks(at + 1);
        const std::string_view value = text.substr(at, mostDigits + 3);
        if (!value.starts_with("\"u") && !value.starts_with("'u")) continue;
        uint64_t number = 0;
        const auto end = std::from_chars(value.data() + 2, value.data() + value.size(), number, 16).ptr;
        if (end != value.data() + mostDigits + 3) highest = std::max(highest, number);
    }
}

std::string hexadecimal(uint64_t number) {
    char buffer[20];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number, 16).ptr;
    return std::string(buffer, end);
}

/// The rest of a list keeps its spelling; references are separated by blanks.
std::string withReference(const std::string& list, const std::string& id) {
    return list.empty() || list == "n" ? id : list + " " + id;
}

std::string withoutReference(const std::string& list, const std::string& id) {
    std::string rest;
    for (const std::string& reference : toReferences(list))
        if (reference != id) rest += (rest.empty() ? "" : " ") + reference;
    return rest;
}

bool contains(const std::vector<Uid>& uids, Uid uid) {
    return std::find(uids.begin(), uids.end(), uid) != uids.end();
}

}  // namespace

PackageChanges::PackageChanges(const Document& before, const Document& now, Package& package)
    : before_(before), now_(now), package_(package) {}

PackageChanges::~PackageChanges() = default;

void PackageChanges::find() {
    openParts();
    giveIds();
    for (Uid uid : itemsIn(before_)) wasThere_.insert(uid);
    for (Uid uid : itemsIn(now_)) isThere_.insert(uid);
    changeItems();
    changeOrder();
    changeStories();
    changeSpreads();
    changeMap();
    for (const auto& part : parts_)
        if (part->editor->isTouched() && !removed_.contains(part->member))
            changed_[part->member] = part->editor->result();
}

// --- Parts ---------------------------------------------------------------------------------------------------------

PackageChanges::Part& PackageChanges::openPart(const std::string& member) {
    auto part = std::make_unique<Part>();
    part->member = member;
    part->source = std::make_unique<XmlSource>(package_.read(member), package_.name(), member);
    part->editor = std::make_unique<PartEditor>(*part->source);
    return *parts_.emplace_back(std::move(part));
}

void PackageChanges::index(Part& part, const SourceElement& element) {
    const bool isStory = element.name == "Story", isSpread = element.name == "Spread" || element.name == "MasterSpread";
    if (isStory || isSpread || isPageItem(element.name)) {
        auto& places = isStory ? stories_ : isSpread ? spreads_ : items_;
        places.try_emplace(part.source->attributeText(element, "Self"), Place{&part, &element});
    }
    element.eachChild([&](const SourceElement& child) { index(part, child); });
}

void PackageChanges::openParts() {
    if (package_.isSnippet()) {
        map_ = &openPart(std::string(Package::snippetMember));
        index(*map_, map_->source->root());
        return;
    }
    map_ = &openPart(mapMember);
    std::vector<std::string> members[3];
    map_->source->root().eachChild([&](const SourceElement& child) {
        const std::string member = map_->source->attributeText(child, "src");
        if (member.empty()) return;
        partLines_.emplace(member, &child);
        if (child.name == "idPkg:Spread") members[0].push_back(member);
        if (child.name == "idPkg:MasterSpread") members[1].push_back(member);
        if (child.name == "idPkg:Story") members[2].push_back(member);
    });
    for (const auto& kind : members) {
        for (const std::string& member : kind) {
            if (package_.read(member).empty()) continue;  // as some tools leave them behind
            Part& part = openPart(member);
            index(part, part.source->root());
        }
    }
}

// --- Ids -----------------------------------------------------------------------------------------------------------

std::string PackageChanges::idOf(Uid uid) const {
    if (const auto made = newIds_.find(uid); made != newIds_.end()) return made->second;
    if (const PageItem* item = before_.item(uid)) return item->self;
    if (const Story* story = before_.story(uid)) return story->self;
    if (const Spread* spread = before_.spread(uid)) return spread->self;
    if (const Page* page = before_.page(uid)) return page->self;
    return {};
}

/// Everything that was made since gets an id that nothing in the package has.
void PackageChanges::giveIds() {
    uint64_t highest = 0;
    for (const std::string& member : package_.members())
        if (package_.isSnippet() || member.ends_with(".xml")) raiseToIds(package_.read(member), highest);
    const auto give = [&](Uid uid) {
        if (before_.kindOf(uid) == Document::Kind::None) newIds_.emplace(uid, "u" + hexadecimal(++highest));
    };
    for (Uid spread : now_.spreads) {
        give(spread);
        for (Uid page : now_.spread(spread)->pages) give(page);
    }
    for (Uid item : itemsIn(now_)) give(item);
    for (Uid story : now_.stories)
        if (!now_.framesOfStory(story).empty()) give(story);
}

// --- Items ---------------------------------------------------------------------------------------------------------

void PackageChanges::addItem(const Document& document, Uid uid, std::vector<Uid>& items) const {
    const PageItem* item = document.item(uid);
    if (!item) return;
    items.push_back(uid);
    for (Uid child : item->children) addItem(document, child, items);
}

/// Every item that a spread or a story holds, at whatever depth.
std::vector<Uid> PackageChanges::itemsIn(const Document& document) const {
    std::vector<Uid> items;
    for (const std::vector<Uid>* spreads : {&document.spreads, &document.masterSpreads})
        for (Uid spread : *spreads)
            for (Uid layer : document.spread(spread)->layers)
                for (Uid item : document.spreadLayer(layer)->items) addItem(document, item, items);
    for (Uid story : document.stories) {
        // A story that nothing shows and that no package has may share the items of the one it was copied from.
        if (before_.kindOf(story) == Document::Kind::None && document.framesOfStory(story).empty()) continue;
        for (const OwnedItem& owned : document.story(story)->content().ownedItems) addItem(document, owned.item, items);
    }
    return items;
}

PackageChanges::Place PackageChanges::placeOfItem(const PageItem& item) const {
    const auto found = items_.find(item.self);
    if (found == items_.end() || item.self.empty())
        throw InputError(
            package_.name() + ": the item \"" + item.self +
            "\" can't be found in its part, so that its change can't be saved; export the document again.");
    return found->second;
}

void PackageChanges::changeItems() {
    for (Uid uid : wasThere_) {
        const PageItem& was = *before_.item(uid);
        if (isThere_.contains(uid)) {
            const PageItem& is = *now_.item(uid);
            if (is.self != was.self || before_.kindOf(uid) != now_.kindOf(uid))
                throw InputError(package_.name() + ": the document no longer fits its package; open it again.");
            changeItem(was, is);
        } else if (was.parent != 0 && (isThere_.contains(was.parent) || before_.spreadLayer(was.parent))) {
            const Place place = placeOfItem(was);
            place.part->editor->remove(*place.element);
        }
    }
}

void PackageChanges::changeItem(const PageItem& was, const PageItem& is) {
    const IdOf ids = [this](Uid uid) { return idOf(uid); };
    auto texts = itemAttributeTexts(now_, is, ids);
    auto former = itemAttributeTexts(before_, was, ids);
    // Inside a group or a frame the layer is that of the item around, whatever the tag says.
    const auto isLayer = [](const auto& text) { return text.first == "ItemLayer"; };
    const bool isInside = is.parent != 0 && !now_.spreadLayer(is.parent);
    if (isInside) std::erase_if(texts, isLayer);
    if (isInside || (was.parent != 0 && !before_.spreadLayer(was.parent))) std::erase_if(former, isLayer);
    const bool pathChanged = is.kind != ItemKind::Graphic && is.path != was.path;
    if (texts == former && !pathChanged && is.labels.pairs() == was.labels.pairs()) return;
    const Place place = placeOfItem(was);
    PartEditor& part = *place.part->editor;
    for (const auto& text : texts)
        if (std::find(former.begin(), former.end(), text) == former.end())
            part.setAttribute(*place.element, text.first, text.second);
    for (const auto& [name, value] : former) {
        const auto stays = [&, sought = name](const auto& text) { return text.first == sought; };
        if (std::none_of(texts.begin(), texts.end(), stays)) part.removeAttribute(*place.element, name);
    }
    const SourceElement* properties = place.element->child("Properties");
    if (pathChanged && !properties)  // and so no labels either
        return part.addFirst(*place.element, "<Properties>" + pathXml(is.path) + labelXml(is.labels) + "</Properties>");
    writeLabels(part, *place.element, was.labels, is.labels);
    if (!pathChanged) return;
    if (const SourceElement* geometry = properties->child("PathGeometry")) {
        part.insert(geometry->begin, pathXml(is.path));
        part.remove(geometry->begin, geometry->end);
    } else {
        part.addFirst(*properties, pathXml(is.path));
    }
}

/// The element of an item as it is to be written: an old one with its changes, or a new one with all that it holds.
std::string PackageChanges::itemXml(Uid uid) const {
    const PageItem& item = *now_.item(uid);
    if (wasThere_.contains(uid)) {
        const Place place = placeOfItem(*before_.item(uid));
        return place.part->editor->result(*place.element);
    }
    std::string content;
    for (Uid child : item.children) content += itemXml(child);
    return newItemXml(
        now_, item, [this](Uid named) { return idOf(named); }, content);
}

/// Puts what is new or was moved at its place among the items of a container. The others must stand in their old order.
void PackageChanges::fillContainer(const std::vector<Uid>& was, const std::vector<Uid>& is, const Place& place) {
    const auto isOld = [&](Uid uid) { return contains(was, uid) && !moved_.contains(uid); };
    const SourceElement* behind = nullptr;
    for (size_t i = 0; i < is.size(); ++i) {
        if (isOld(is[i])) {
            behind = placeOfItem(*before_.item(is[i])).element;
            continue;
        }
        const std::string xml = itemXml(is[i]);
        const auto next = std::find_if(is.begin() + static_cast<ptrdiff_t>(i), is.end(), isOld);
        if (behind)
            place.part->editor->insert(behind->end, xml);
        else if (next != is.end())
            place.part->editor->insert(placeOfItem(*before_.item(*next)).element->begin, xml);
        else
            place.part->editor->addLast(*place.element, xml);
    }
}

void PackageChanges::changeOrder() {
    // Containers that were there: spread layers, then items, the deepest first, so that what is moved takes its own new
    // content along and leaves behind what was moved out of it.
    struct Container {
        const std::vector<Uid>*was, *is;
        Place place;
        int depth = 0;  ///< as the document is now
    };
    const auto depthOf = [&](const PageItem& item) {
        int depth = 1;
        for (const PageItem* around = now_.item(item.parent); around; around = now_.item(around->parent)) ++depth;
        return depth;
    };
    std::vector<Container> containers;
    for (const std::vector<Uid>* spreads : {&before_.spreads, &before_.masterSpreads}) {
        for (Uid uid : *spreads) {
            const Spread* spread = now_.spread(uid);
            if (!spread) continue;
            for (Uid layer : spread->layers) {
                static const std::vector<Uid> none;
                const SpreadLayer* was = before_.spreadLayer(layer);
                containers.push_back(
                    {was ? &was->items : &none, &now_.spreadLayer(layer)->items, spreads_[before_.spread(uid)->self]});
            }
        }
    }
    const std::vector<Uid> items = itemsIn(before_);
    for (Uid uid : items)
        if (isThere_.contains(uid) && before_.item(uid)->children != now_.item(uid)->children)
            containers.push_back({&before_.item(uid)->children, &now_.item(uid)->children,
                                  placeOfItem(*before_.item(uid)), depthOf(*now_.item(uid))});
    std::stable_sort(containers.begin(), containers.end(),
                     [](const Container& a, const Container& b) { return a.depth > b.depth; });
    for (Uid uid : wasThere_)
        if (isThere_.contains(uid) && before_.item(uid)->parent != now_.item(uid)->parent) moved_.insert(uid);
    for (const Container& container : containers) {
        ptrdiff_t last = -1;
        for (Uid uid : *container.is) {
            if (!wasThere_.contains(uid)) continue;
            const auto found = std::find(container.was->begin(), container.was->end(), uid);
            const ptrdiff_t at = found - container.was->begin();
            if (found != container.was->end() && at > last)
                last = at;
            else
                moved_.insert(uid);
        }
    }
    for (Uid uid : moved_) {
        const Place place = placeOfItem(*before_.item(uid));
        if (before_.item(uid)->parent != 0) place.part->editor->remove(*place.element);
    }
    for (const Container& container : containers) {
        if (*container.was == *container.is) continue;
        if (!container.place.element)
            throw InputError(package_.name() + ": a spread can't be found in its part; export the document again.");
        fillContainer(*container.was, *container.is, container.place);
    }
}

// --- Stories -------------------------------------------------------------------------------------------------------

void PackageChanges::changeStories() {
    const auto xmlOf = [this](Uid item) { return itemXml(item); };
    for (Uid uid : now_.stories) {
        const Story& story = *now_.story(uid);
        const Story* was = before_.story(uid);
        if (!was && !now_.framesOfStory(uid).empty()) addStory(story);
        if (!was || was->content() == story.content()) continue;
        const auto place = stories_.find(was->self);
        if (place == stories_.end())
            throw InputError(package_.name() + ": the story \"" + was->self +
                             "\" can't be found in its part; export the document again.");
        writeStory(*place->second.part->editor, *place->second.element, now_, was->content(), story.content(), xmlOf);
    }
}

void PackageChanges::addStory(const Story& story) {
    const std::string id = idOf(story.uid);
    const std::string element = "<Story Self=\"" + id + "\" TrackChanges=\"false\" StoryTitle=\"$ID/\"></Story>";
    const std::string version = map_->source->attributeText(map_->source->root(), "DOMVersion");
    const std::string packaging = map_->source->attributeText(map_->source->root(), "xmlns:idPkg");
    const bool isSnippet = package_.isSnippet();
    const XmlSource empty(isSnippet ? element
                                    : "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                                      "<idPkg:Story xmlns:idPkg=\"" +
                                          escapedAttribute(packaging) + "\" DOMVersion=\"" + version + "\">" + element +
                                          "</idPkg:Story>",
                          package_.name(), id);
    PartEditor editor(empty);
    const SourceElement* target = isSnippet ? &empty.root() : empty.root().child("Story");
    if (target == nullptr) throw std::logic_error("a new story's part holds no story");
    writeStory(editor, *target, now_, StoryContent(), story.content(), [this](Uid item) { return itemXml(item); });
    if (isSnippet) {
        map_->editor->addLast(map_->source->root(), editor.result());
        return;
    }
    const std::string member = "Stories/Story_" + id + ".xml";
    changed_[member] = editor.result();
    map_->editor->addLast(map_->source->root(), "<idPkg:Story src=\"" + member + "\"/>");
}

// --- Spreads and the map -------------------------------------------------------------------------------------------

void PackageChanges::removePart(const Place& place) {
    const auto line = partLines_.find(place.part->member);
    if (package_.isSnippet()) {
        map_->editor->remove(*place.element);
    } else if (line != partLines_.end()) {
        map_->editor->remove(*line->second);
        removed_.insert(line->first);
    }
}

void PackageChanges::changeSpreads() {
    for (Uid uid : before_.spreads) {
        if (contains(now_.spreads, uid)) continue;
        const auto place = spreads_.find(before_.spread(uid)->self);
        if (place != spreads_.end()) removePart(place->second);
    }
    for (Uid uid : now_.spreads)
        if (!contains(before_.spreads, uid)) addSpread(*now_.spread(uid));
    if (now_.spreads != before_.spreads) changeSections();
}

void PackageChanges::addSpread(const Spread& spread) {
    std::string content;
    for (Uid layer : spread.layers)
        for (Uid item : now_.spreadLayer(layer)->items) content += itemXml(item);
    const std::string xml = newSpreadXml(
        now_, spread, [this](Uid uid) { return idOf(uid); }, content);
    if (package_.isSnippet()) return map_->editor->addLast(map_->source->root(), xml);
    const XmlSource& map = *map_->source;
    const std::string member = "Spreads/Spread_" + idOf(spread.uid) + ".xml";
    changed_[member] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<idPkg:Spread xmlns:idPkg=\"" +
                       escapedAttribute(map.attributeText(map.root(), "xmlns:idPkg")) + "\" DOMVersion=\"" +
                       map.attributeText(map.root(), "DOMVersion") + "\">" + xml + "</idPkg:Spread>";
    // Spreads are read in the order of their lines. New ones stand behind all others.
    const SourceElement* last = nullptr;
    map.root().eachChild([&](const SourceElement& child) {
        if (child.name == "idPkg:Spread") last = &child;
    });
    map_->editor->insert(last->end, "<idPkg:Spread src=\"" + member + "\"/>");
}

/// A section keeps the pages that are left of it, the last one takes the new ones. A section without a page goes.
void PackageChanges::changeSections() {
    const XmlSource& map = *map_->source;
    std::vector<const SourceElement*> sections;
    map.root().eachChild([&](const SourceElement& child) {
        if (child.name == "Section" && child.attribute("PageStart")) sections.push_back(&child);
    });
    if (sections.empty()) return;
    const std::vector<Uid> was = before_.pages(), is = now_.pages();
    std::unordered_map<std::string, size_t> sectionOfPage;
    for (size_t i = 0; i < sections.size(); ++i) sectionOfPage[map.attributeText(*sections[i], "PageStart")] = i;
    std::vector<std::vector<Uid>> pages(sections.size());
    size_t section = 0;
    for (Uid page : was) {
        if (const auto start = sectionOfPage.find(before_.page(page)->self); start != sectionOfPage.end())
            section = start->second;
        if (contains(is, page)) pages[section].push_back(page);
    }
    for (Uid page : is)
        if (!contains(was, page)) pages[section].push_back(page);
    for (size_t i = 0; i < sections.size(); ++i) {
        if (pages[i].empty()) {
            map_->editor->remove(*sections[i]);
            continue;
        }
        const std::string start = idOf(pages[i].front());
        if (map.attributeText(*sections[i], "PageStart") != start)
            map_->editor->setAttribute(*sections[i], "PageStart", start);
        const std::string length = std::to_string(pages[i].size());
        if (sections[i]->attribute("Length") && map.attributeText(*sections[i], "Length") != length)
            map_->editor->setAttribute(*sections[i], "Length", length);
    }
}

void PackageChanges::changeMap() {
    const XmlSource& map = *map_->source;
    const SourceElement& root = map.root();
    writeLabels(*map_->editor, root, before_.labels, now_.labels);
    std::string list = map.attributeText(root, "StoryList");
    const std::string former = list;
    for (Uid uid : before_.stories) {
        if (contains(now_.stories, uid)) continue;
        const std::string& self = before_.story(uid)->self;
        list = withoutReference(list, self);
        const auto place = stories_.find(self);
        if (place != stories_.end()) removePart(place->second);
    }
    for (Uid uid : now_.stories)
        if (!before_.story(uid) && !idOf(uid).empty()) list = withReference(list, idOf(uid));
    if (list != former && root.attribute("StoryList")) map_->editor->setAttribute(root, "StoryList", list);
    for (const Layer& layer : now_.layers) {
        const Layer* was = before_.layer(layer.uid);
        root.eachChild([&](const SourceElement& child) {
            if (!was || child.name != "Layer" || map.attributeText(child, "Self") != was->self) return;
            const auto flag = [&](const char* name, bool before, bool now) {
                if (before != now) map_->editor->setAttribute(child, name, now ? "true" : "false");
            };
            flag("Visible", was->visible, layer.visible);
            flag("Printable", was->printable, layer.printable);
            flag("Locked", was->locked, layer.locked);
            if (was->name != layer.name) map_->editor->setAttribute(child, "Name", layer.name);
        });
    }
}

}  // namespace desk
