#include "desk/idml/saved_check.h"

#include <algorithm>
#include <map>

namespace desk {
namespace {

class SavedCheck {
  public:
    SavedCheck(const Document& document, const Document& saved, const PackageChanges& changes)
        : document_(document), saved_(saved), changes_(changes) {}

    void run() {
        checkLabels(document_.labels, saved_.labels, "the document's labels");
        checkSpreads(document_.spreads, saved_.spreads);
        checkSpreads(document_.masterSpreads, saved_.masterSpreads);
        checkStories();
    }

  private:
    [[noreturn]] void fail(const std::string& what) const {
        throw InputError(document_.name + ": " + what +
                         " can't be saved as IDML as it stands now; undo that change, or make it in the layout "
                         "application.");
    }

    void checkLabels(const Labels& is, const Labels& got, const std::string& what) const {
        const std::map<std::string, std::string> left(is.pairs().begin(), is.pairs().end());
        const std::map<std::string, std::string> right(got.pairs().begin(), got.pairs().end());
        if (left != right) fail(what);
    }

    void checkSpreads(const std::vector<Uid>& is, const std::vector<Uid>& got) const {
        if (is.size() != got.size()) fail("the number of spreads");
        for (size_t i = 0; i < is.size(); ++i) {
            const Spread &left = *document_.spread(is[i]), &right = *saved_.spread(got[i]);
            const std::string name = "the spread " + changes_.idOf(is[i]);
            if (left.pages.size() != right.pages.size() || left.layers.size() != right.layers.size()) fail(name);
            for (size_t page = 0; page < left.pages.size(); ++page) {
                const Page &was = *document_.page(left.pages[page]), &now = *saved_.page(right.pages[page]);
                if (changes_.idOf(was.uid).empty()) continue;  // laid under a snippet's items by the reader
                if (was.bounds != now.bounds || was.transform != now.transform) fail("a page of " + name);
            }
            for (size_t layer = 0; layer < left.layers.size(); ++layer)
                checkItems(document_.spreadLayer(left.layers[layer])->items,
                           saved_.spreadLayer(right.layers[layer])->items, name);
        }
    }

    void checkItems(const std::vector<Uid>& is, const std::vector<Uid>& got, const std::string& container) const {
        if (is.size() != got.size()) fail("what stands in " + container);
        for (size_t i = 0; i < is.size(); ++i) checkItem(*document_.item(is[i]), *saved_.item(got[i]));
    }

    void checkItem(const PageItem& is, const PageItem& got) const {
        const std::string id = changes_.idOf(is.uid);
        if (got.self != id) fail("the order of the item " + id);
        if (is.transform != got.transform || (is.kind != ItemKind::Graphic && is.path != got.path))
            fail("the place of the item " + id);
        if (is.attributes.nonprinting.value_or(false) != got.attributes.nonprinting.value_or(false) ||
            is.attributes.fillColor != got.attributes.fillColor ||
            is.attributes.strokeColor != got.attributes.strokeColor ||
            is.attributes.strokeWeight != got.attributes.strokeWeight)
            fail("the look of the item " + id);
        checkLabels(is.labels, got.labels, "the labels of the item " + id);
        const auto named = [&](Uid uid, Uid gotUid) {
            const Story* story = saved_.story(gotUid);
            return uid == 0 ? gotUid == 0 : story && story->self == changes_.idOf(uid);
        };
        if (is.kind == ItemKind::TextFrame && !named(is.story, got.story)) fail("the story of the text frame " + id);
        checkItems(is.children, got.children, "the item " + id);
    }

    void checkStories() const {
        std::map<std::string, const Story*> got;
        for (Uid uid : saved_.stories) got.emplace(saved_.story(uid)->self, saved_.story(uid));
        for (Uid uid : document_.stories) {
            const std::string id = changes_.idOf(uid);
            if (id.empty()) continue;  // made in memory, and nothing shows it
            const auto found = got.find(id);
            if (found == got.end() || !same(document_.story(uid)->content(), found->second->content()))
                fail("the text of the story " + id);
        }
    }

    /// Line feeds come back as forced line breaks, which they are in a story; byte order marks don't come back.
    bool same(const StoryContent& is, const StoryContent& got) const {
        int32_t at = 0;
        for (int32_t i = 0; i < is.length(); ++i) {
            char16_t unit = is.text[static_cast<size_t>(i)];
            if (unit == 0xFEFF) continue;
            if (unit == u'\n') unit = u'\u2028';
            if (at >= got.length() || got.text[static_cast<size_t>(at)] != unit) return false;
            if (!sameFormats(is, i, got, at)) return false;
            ++at;
        }
        if (at != got.length() || is.ownedItems.size() != got.ownedItems.size()) return false;
        for (size_t i = 0; i < is.ownedItems.size(); ++i)
            checkItem(*document_.item(is.ownedItems[i].item), *saved_.item(got.ownedItems[i].item));
        return true;
    }

    bool sameFormats(const StoryContent& is, int32_t at, const StoryContent& got, int32_t gotAt) const {
        const std::pair key{is.characterFormatAt(at), got.characterFormatAt(gotAt)};
        const auto [known, isNew] = sameCharacters_.try_emplace(key, true);
        if (isNew) {
            const CharacterFormat &left = document_.characterFormat(key.first),
                                  &right = saved_.characterFormat(key.second);
            known->second =
                selfOf(document_, left.style) == selfOf(saved_, right.style) && left.overrides == right.overrides;
        }
        if (!known->second) return false;
        const std::pair other{is.paragraphFormatAt(at), got.paragraphFormatAt(gotAt)};
        const auto [knownParagraph, isNewParagraph] = sameParagraphs_.try_emplace(other, true);
        if (isNewParagraph) {
            const ParagraphFormat &left = document_.paragraphFormat(other.first),
                                  &right = saved_.paragraphFormat(other.second);
            knownParagraph->second =
                selfOf(document_, left.style) == selfOf(saved_, right.style) && left.overrides == right.overrides;
        }
        return knownParagraph->second;
    }

    static std::string selfOf(const Document& document, Uid style) {
        const Style* found = document.style(style);
        return found ? found->self : std::string();
    }

    const Document &document_, &saved_;
    const PackageChanges& changes_;
    mutable std::map<std::pair<uint32_t, uint32_t>, bool> sameCharacters_, sameParagraphs_;
};

}  // namespace

void checkSaved(const Document& document, const Document& saved, const PackageChanges& changes) {
    SavedCheck(document, saved, changes).run();
}

}  // namespace desk
