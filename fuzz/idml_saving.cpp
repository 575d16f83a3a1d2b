// Saving changed documents: the bytes choose a package and edits of its labels, texts, formats, items, spreads and
// layers. Whatever they are, the saved package opens as the document that was saved, and what no edit was about keeps
// its bytes. Only what the format can't tell may be refused, with an InputError.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "desk/idml/reader.h"
#include "desk/idml/values.h"
#include "desk/idml/writer.h"
#include "saved_package.h"

namespace {

using desk::Document;
using desk::ItemKind;
using desk::PageItem;
using desk::Uid;

void require(bool holds) {
    if (!holds) __builtin_trap();
}

/// Takes choices off the front of the input; zeros when it has run out.
class Choices {
  public:
    Choices(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool isEmpty() const { return rest_.empty(); }
    uint8_t byte() {
        const uint8_t value = rest_.empty() ? 0 : static_cast<uint8_t>(rest_.front());
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return value;
    }
    size_t below(size_t limit) { return limit == 0 ? 0 : (byte() | static_cast<size_t>(byte()) << 8) % limit; }
    double number() { return static_cast<int8_t>(byte()) * 1.37; }
    template <class T>
    const T& oneOf(const std::vector<T>& all) {
        return all[below(all.size())];
    }
    std::string_view bytes(size_t count) {
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(taken.size());
        return taken;
    }

  private:
    std::string_view rest_;
};

// --- What a document is, as a text
// ------------------------------------------------------------------------------------

std::string told(const desk::Labels& labels) {
    const std::map<std::string, std::string> sorted(labels.pairs().begin(), labels.pairs().end());
    std::string text = "{";
    for (const auto& [key, value] : sorted) text.append(key).append("=").append(value).append(";");
    return text + "}";
}

/// Objects that a package has or gets: made stories that nothing shows are left out.
class Telling {
  public:
    explicit Telling(const Document& document) : document_(document) {
        for (Uid uid : document.stories)
            if (!document.story(uid)->self.empty() || !document.framesOfStory(uid).empty()) stories_.push_back(uid);
    }

    const std::vector<Uid>& stories() const { return stories_; }

    std::string item(Uid uid) const {
        const PageItem& item = *document_.item(uid);
        const bool holdsText = item.kind == ItemKind::TextFrame && item.story != 0;
        // A shape that shows no story any more is a shape like others.
        const bool isShape = item.kind == ItemKind::TextFrame || item.kind == ItemKind::Rectangle ||
                             item.kind == ItemKind::Oval || item.kind == ItemKind::Polygon;
        std::string text = holdsText ? "text frame" : isShape ? "shape" : std::to_string(static_cast<int>(item.kind));
        text += " " + item.name + told(item.labels) + desk::matrixText(item.transform);
        for (const desk::Contour& contour : item.path)
            for (const desk::PathPoint& point : contour.points) text += " " + desk::pointText(point.anchor);
        text += item.visible ? "" : " hidden";
        if (item.attributes.nonprinting) text += *item.attributes.nonprinting ? " nonprinting" : " printing";
        text += item.attributes.fillColor.value_or("");
        if (item.previousFrame != 0) text += " continues";
        if (item.nextFrame != 0) text += " is continued";
        if (holdsText) {
            const auto found = std::find(stories_.begin(), stories_.end(), item.story);
            text += " story " + std::to_string(found - stories_.begin());
            const std::vector<Uid>& frames = document_.framesOfStory(item.story);
            text += " frame " + std::to_string(std::find(frames.begin(), frames.end(), uid) - frames.begin());
        }
        text += "(";
        for (Uid child : item.children) text += this->item(child);
        return text + ")\n";
    }

    std::string spread(Uid uid) const {
        const desk::Spread& spread = *document_.spread(uid);
        std::string text = desk::matrixText(spread.transform);
        for (Uid page : spread.pages) {
            const desk::Rect rect = document_.page(page)->rectInSpread();
            text +=
                " page " + desk::pointText({rect.left, rect.top}) + " " + desk::pointText({rect.right, rect.bottom});
        }
        for (Uid layer : spread.layers) {
            text += "\nlayer\n";
            for (Uid held : document_.spreadLayer(layer)->items) text += item(held);
        }
        return text;
    }

    std::string story(Uid uid) const {
        const desk::StoryContent& content = document_.story(uid)->content();
        std::string text, format;
        for (int32_t at = 0; at < content.length(); ++at) {
            const char16_t unit = content.text[static_cast<size_t>(at)];
            if (unit == 0xFEFF) continue;
            std::string now = formatAt(content, at);
            if (now != format) text += "[" + now + "]";
            format = std::move(now);
            text += std::to_string(unit == u'\n' ? 0x2028 : unit) + " ";
        }
        for (const desk::OwnedItem& owned : content.ownedItems) text += item(owned.item);
        return text;
    }

    std::string layers() const {
        std::string text;
        for (const desk::Layer& layer : document_.layers)
            text += layer.name + (layer.visible ? " visible" : "") + (layer.printable ? " printable" : "") +
                    (layer.locked ? " locked;" : ";");
        return text;
    }

    std::string all() const {
        std::string text = told(document_.labels) + layers();
        for (Uid uid : document_.spreads) text += spread(uid);
        for (Uid uid : document_.masterSpreads) text += spread(uid);
        for (Uid uid : stories_) text += "story " + story(uid);
        return text;
    }

  private:
    std::string formatAt(const desk::StoryContent& content, int32_t at) const {
        const desk::CharacterFormat& character = document_.characterFormat(content.characterFormatAt(at));
        const desk::ParagraphFormat& paragraph = document_.paragraphFormat(content.paragraphFormatAt(at));
        const desk::Style *above = document_.style(paragraph.style), *own = document_.style(character.style);
        return (above ? above->self : "") + "," + (own ? own->self : "") + "," +
               desk::numberText(character.overrides.pointSize.value_or(-1)) + "," +
               desk::numberText(paragraph.overrides.spaceAfter.value_or(-1));
    }

    const Document& document_;
    std::vector<Uid> stories_;
};

// --- Edits
// ------------------------------------------------------------------------------------------------------------

class Edits {
  public:
    Edits(Document& document, Choices& choices) : document_(document), choices_(choices) {}

    /// An edit was made that the format may be unable to tell.
    bool mayBeRefused() const { return mayBeRefused_; }

    void one() {
        switch (choices_.byte() % 16) {
            case 0:
                return document_.labels.set(text(), text());
            case 1:
            case 2:
                if (PageItem* item = anyItem()) item->labels.set(text(), text());
                return;
            case 3:
            case 4:
            case 5:
                return insert();
            case 6:
            case 7:
                return erase();
            case 8:
                return format();
            case 9:
                return makeShape();
            case 10:
                return makeTextFrame();
            case 11:
                if (PageItem* item = anyItem()) document_.removeItem(item->uid);
                return;
            case 12:
                return change();
            case 13:
                return move();
            case 14:
                return changeSpreads();
            default:
                return changeLayer();
        }
    }

  private:
    std::string text() {
        static const std::vector<std::string> usual = {
            "Vornaset", "Label",     "twice", "<\"&'>", "]]>", "a\tb\n", "\xC3\xA9\xF0\x9F\x98\x80",
            "",         "<<Name >>", "]]",    "x\r\n"};
        if (choices_.byte() % 4 != 3) return choices_.oneOf(usual);
        mayBeRefused_ = true;  // controls and parts of characters may be among them
        return std::string(choices_.bytes(choices_.byte() % 16));
    }

    std::vector<Uid> allItems() const {
        std::vector<Uid> all;
        for (const std::vector<Uid>* spreads : {&document_.spreads, &document_.masterSpreads})
            for (Uid spread : *spreads)
                for (Uid layer : document_.spread(spread)->layers)
                    for (Uid item : document_.spreadLayer(layer)->items) add(item, all);
        return all;
    }
    void add(Uid uid, std::vector<Uid>& all) const {
        all.push_back(uid);
        for (Uid child : document_.item(uid)->children) add(child, all);
    }
    PageItem* anyItem() {
        const std::vector<Uid> all = allItems();
        return all.empty() ? nullptr : document_.item(choices_.oneOf(all));
    }
    desk::Story* anyStory() {
        return document_.stories.empty() ? nullptr : document_.story(choices_.oneOf(document_.stories));
    }
    desk::Spread& anySpread() { return *document_.spread(choices_.oneOf(document_.spreads)); }
    desk::Layer& anyLayer() { return document_.layers[choices_.below(document_.layers.size())]; }

    /// A position in front of a whole character.
    int32_t placeIn(const desk::StoryContent& content) {
        auto at = static_cast<int32_t>(choices_.below(content.text.size()));
        if ((content.text[static_cast<size_t>(at)] & 0xFC00) == 0xDC00) --at;
        return std::max(at, 0);
    }

    void insert() {
        desk::Story* story = anyStory();
        if (!story) return;
        const int32_t at = placeIn(story->content());
        story->insert(at, desk::toUtf16(text()));
    }
    void erase() {
        desk::Story* story = anyStory();
        if (!story) return;
        const int32_t from = placeIn(story->content());
        const int32_t to = placeIn(story->content());
        if (to > from) story->erase(from, to - from);
    }
    void format() {
        desk::Story* story = anyStory();
        if (!story) return;
        mayBeRefused_ = true;  // a link's text takes one format
        const int32_t from = placeIn(story->content());
        const auto length = static_cast<int32_t>(choices_.byte() % 8);
        if (choices_.byte() % 2 == 0) {
            desk::CharacterFormat wanted = document_.characterFormat(story->content().characterFormatAt(from));
            const desk::Style* strong = document_.styleNamed(desk::StyleKind::Character, "Strong");
            if (choices_.byte() % 2 == 0 && strong) wanted.style = strong->uid;
            wanted.overrides.pointSize = 1 + choices_.byte() % 3;
            story->setCharacterFormat(from, length, document_.characterFormatId(wanted));
        } else {
            desk::ParagraphFormat wanted = document_.paragraphFormat(story->content().paragraphFormatAt(from));
            wanted.overrides.spaceAfter = choices_.byte() % 3;
            story->setParagraphFormat(from, length, document_.paragraphFormatId(wanted));
        }
    }

    void makeShape() {
        constexpr ItemKind kinds[] = {ItemKind::Rectangle, ItemKind::Oval, ItemKind::Group};
        PageItem& made = document_.addItem(kinds[choices_.byte() % 3]);
        if (made.kind != ItemKind::Group) made.path = desk::rectanglePath({0, 0, choices_.number(), 5});
        made.labels.set("Vornaset", text());
        document_.placeOnSpread(made, anySpread(), anyLayer());
    }
    void makeTextFrame() {
        desk::Story& story = document_.addStory();
        story.insert(0, desk::toUtf16(text()));
        PageItem& made = document_.addItem(ItemKind::TextFrame);
        made.path = desk::rectanglePath({0, 0, 10, 10});
        made.story = story.uid;
        document_.placeOnSpread(made, anySpread(), anyLayer());
        document_.threadsChanged();
    }
    void change() {
        PageItem* item = anyItem();
        if (!item) return;
        switch (choices_.byte() % 5) {
            case 0:
                item->transform = desk::Matrix::translation(choices_.number(), choices_.number());
                return;
            case 1:
                item->attributes.nonprinting = choices_.byte() % 2 == 0;
                return;
            case 2:
                item->visible = !item->visible;
                return;
            case 3:
                if (item->kind != ItemKind::Graphic && item->kind != ItemKind::Group)
                    item->path = desk::rectanglePath({0, 0, choices_.number(), 7});
                return;
            default:
                item->attributes.fillColor = "Color/" + std::to_string(choices_.byte() % 3);
        }
    }

    bool holds(Uid container, Uid sought) const {
        std::vector<Uid> inside;
        add(container, inside);
        return std::find(inside.begin(), inside.end(), sought) != inside.end();
    }
    void move() {
        PageItem* item = anyItem();
        PageItem* into = anyItem();
        if (!item || item->kind == ItemKind::Graphic) return;
        if (into && into->kind == ItemKind::Group && !holds(item->uid, into->uid))
            document_.placeInside(*item, *into);
        else
            document_.placeOnSpread(*item, anySpread(), anyLayer());
    }

    void changeSpreads() {
        if (choices_.byte() % 2 == 0 && document_.spreads.size() > 1) {
            document_.removeSpread(choices_.oneOf(document_.spreads));
        } else if (choices_.byte() % 2 == 0 && !document_.stories.empty()) {
            document_.removeStory(choices_.oneOf(document_.stories));
        } else {
            desk::Spread& spread = document_.addSpread(false);
            desk::Page& page = document_.addPage(spread);
            page.bounds = {0, 0, 30, 20};
            page.transform = desk::Matrix::translation(choices_.number(), 0);
            page.name = "9";
        }
    }
    void changeLayer() {
        desk::Layer& layer = anyLayer();
        if (choices_.byte() % 2 == 0)
            layer.visible = !layer.visible;
        else
            layer.locked = !layer.locked;
    }

    Document& document_;
    Choices& choices_;
    bool mayBeRefused_ = false;
};

// --- What must hold
// ---------------------------------------------------------------------------------------------------

std::map<std::string, std::string> membersOf(const std::string& bytes) {
    const auto package = desk::Package::fromBytes(bytes, "saved.idml");
    std::map<std::string, std::string> members;
    for (const std::string& name : package->members()) members[name] = package->read(name);
    return members;
}

/// What is told of the objects that stand in a member of their own, by the member's name.
std::map<std::string, std::string> toldByMember(const Document& document) {
    const Telling telling(document);
    std::map<std::string, std::string> parts;
    for (Uid uid : document.spreads) {
        const std::string& self = document.spread(uid)->self;
        if (!self.empty()) parts["Spreads/Spread_" + self + ".xml"] = telling.spread(uid);
    }
    for (Uid uid : document.masterSpreads)
        parts["MasterSpreads/" + document.spread(uid)->self + ".xml"] = telling.spread(uid);
    for (Uid uid : document.stories) {
        const std::string& self = document.story(uid)->self;
        if (!self.empty()) parts["Stories/Story_" + self + ".xml"] = telling.story(uid);
    }
    return parts;
}

void addIds(const Document& document, Uid uid, std::set<std::string>& ids) {
    ids.insert(document.item(uid)->self);
    for (Uid child : document.item(uid)->children) addIds(document, child, ids);
}

/// Of the items that stand on spreads and in texts.
std::set<std::string> idsOfItems(const Document& document) {
    std::set<std::string> ids;
    for (const std::vector<Uid>* spreads : {&document.spreads, &document.masterSpreads})
        for (Uid spread : *spreads)
            for (Uid layer : document.spread(spread)->layers)
                for (Uid item : document.spreadLayer(layer)->items) addIds(document, item, ids);
    for (Uid story : document.stories)
        for (const desk::OwnedItem& owned : document.story(story)->content().ownedItems)
            addIds(document, owned.item, ids);
    return ids;
}

/// Parts that stay keep what isn't understood; parts that nothing changed keep every byte.
void requireForeignBytes(const Document& before, const Document& now, const std::string& former,
                         const std::string& saved) {
    auto was = membersOf(former), is = membersOf(saved);
    auto toldBefore = toldByMember(before), toldNow = toldByMember(now);
    for (const auto& [name, bytes] : was) {
        const bool isObject = name.starts_with("Spreads/") || name.starts_with("Stories/");
        if (isObject && !toldNow.contains(name)) continue;
        require(is.contains(name));
        if (bytes.find("<?keep") != std::string::npos)
            require(is[name].find(saved_package::foreign) != std::string::npos);
        const bool mayChange = name == "designmap.xml" || name == desk::Package::snippetMember;
        if (!mayChange && toldBefore[name] == toldNow[name]) require(is[name] == bytes);
    }
    std::string all;
    for (const auto& [name, bytes] : is) all += bytes;
    const std::set<std::string> idsBefore = idsOfItems(before), idsNow = idsOfItems(now);
    for (const char* self : {"ux1", "ux2", "ux3", "ug1", "ur1", "ur2", "ur9", "uo2"}) {
        const std::string mark = "Mystery=\"" + std::string(self) + "\"";
        if (idsBefore.contains(self) && idsNow.contains(self)) require(all.find(mark) != std::string::npos);
    }
}

/// Edits, saves and opens again; the new package takes the old one's place. False when there is nothing more to do.
bool runGeneration(std::string& package, Choices& choices) {
    const auto before = desk::readDocument(package, "fuzz.idml");
    const auto document = desk::readDocument(package, "fuzz.idml");
    require(desk::packageOf(*document) == package);
    Edits edits(*document, choices);
    for (size_t count = choices.byte() % 8; count > 0; --count) edits.one();
    std::string saved;
    try {
        saved = desk::packageOf(*document);
    } catch (const desk::InputError& refusal) {
        require(edits.mayBeRefused() && *refusal.what() != 0);
        return false;
    }
    require(desk::packageOf(*document) == saved);
    require(Telling(*desk::readDocument(saved, "fuzz.idml")).all() == Telling(*document).all());
    requireForeignBytes(*before, *document, package, saved);
    package = std::move(saved);
    return !choices.isEmpty();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr int generations = 4;
    Choices choices(data, size);
    std::string package = choices.byte() % 4 == 3 ? saved_package::snippet() : desk::zipOf(saved_package::package());
    for (int generation = 0; generation < generations && runGeneration(package, choices); ++generation) {
    }
    return 0;
}
