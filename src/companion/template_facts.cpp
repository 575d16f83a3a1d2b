#include "companion/template_facts.h"

#include <algorithm>

#include "desk/desk.h"
#include "records/merge_records.h"

namespace companion {
namespace {

const char* kindText(desk::ItemKind kind) {
    switch (kind) {
        case desk::ItemKind::Rectangle:
            return "rectangle";
        case desk::ItemKind::Oval:
            return "oval";
        case desk::ItemKind::Polygon:
            return "polygon";
        case desk::ItemKind::GraphicLine:
            return "line";
        case desk::ItemKind::TextFrame:
            return "text frame";
        case desk::ItemKind::Group:
            return "group";
        case desk::ItemKind::Graphic:
            return "graphic";
        case desk::ItemKind::Unknown:
            break;
    }
    return "item";
}

/// An object that was made in memory has no id in a package.
std::string nameOf(const std::string& self, desk::Uid uid) {
    return self.empty() ? "#" + std::to_string(uid) : self;
}

class Inquiry {
  public:
    Inquiry(desk::Template& open, const std::string& path) : open_(open), document_(open.document()) {
        facts_.path = path;
    }

    TemplateFacts run() {
        askPages();
        askFrames();
        askStories();
        askNames();
        for (const desk::MissingFont& font : open_.missingFonts())
            facts_.replacedFonts.push_back({joined(font.family, font.style), joined(font.usedFamily, font.usedStyle)});
        return std::move(facts_);
    }

  private:
    static std::string joined(const std::string& family, const std::string& style) {
        return style.empty() ? family : family + " " + style;
    }

    void askPages() {
        for (desk::Uid uid : document_.pages()) {
            const desk::Page* page = document_.page(uid);
            desk::Rect bounds = page->rectInSpread();
            facts_.pages.push_back({page->name, bounds.width(), bounds.height()});
        }
    }

    void addFrame(const desk::PageItem& item, int page, const desk::Rect& bounds) {
        FrameFacts frame;
        UIDRef reference(open_.dataBase(), UID(item.uid));
        frame.uid = item.uid;
        frame.name = nameOf(item.self, item.uid);
        frame.givenName = item.name;
        frame.kind = kindText(item.kind);
        frame.page = page;
        frame.left = bounds.left;
        frame.top = bounds.top;
        frame.width = bounds.width();
        frame.height = bounds.height();
        frame.number = vornaset::frameNumberForFrame(reference);
        frame.column = vornaset::colNameForFrame(reference).utf8();
        if (const desk::Story* story = document_.story(item.story)) frame.story = nameOf(story->self, story->uid);
        facts_.frames.push_back(std::move(frame));
    }

    void askFrames() {
        for (const desk::FrameInfo& info : open_.frames())
            if (const desk::PageItem* item = document_.item(info.uid)) addFrame(*item, info.page, info.bounds);
        // Frames that stand in the text of other frames: on the page of the first frame of that text.
        for (desk::Uid uid : document_.stories)
            for (const desk::OwnedItem& owned : document_.story(uid)->content().ownedItems)
                if (!facts_.frame(owned.item))
                    if (const desk::PageItem* item = document_.item(owned.item))
                        addFrame(*item, pageOfStory(uid), desk::boundsOf(item->path));
    }

    int pageOfStory(desk::Uid story) const {
        const std::vector<desk::Uid>& frames = document_.framesOfStory(story);
        const FrameFacts* first = frames.empty() ? nullptr : facts_.frame(frames.front());
        return first ? first->page : 0;
    }

    void askStories() {
        for (desk::Uid uid : document_.stories) {
            const desk::Story* story = document_.story(uid);
            StoryFacts told;
            told.uid = uid;
            told.name = nameOf(story->self, uid);
            const std::vector<desk::Uid>& frames = document_.framesOfStory(uid);
            if (!frames.empty()) {
                told.firstFrame = frames.front();
                if (const FrameFacts* first = facts_.frame(told.firstFrame)) told.number = first->number;
            }
            const std::u16string& text = story->content().text;
            told.characters = text.size() - 1;
            told.placeholders = findPlaceholders(text);
            facts_.stories.push_back(std::move(told));
        }
    }

    void askNames() {
        for (const desk::Style& style : document_.styles()) {
            if (style.kind == desk::StyleKind::Paragraph) facts_.paragraphStyles.push_back(style.name);
            if (style.kind == desk::StyleKind::Character) facts_.characterStyles.push_back(style.name);
            if (style.kind == desk::StyleKind::Object) facts_.objectStyles.push_back(style.name);
        }
        for (const desk::NamedFont& font : document_.fonts) facts_.fonts.push_back(joined(font.family, font.style));
        for (const desk::ReadingNote& note : document_.notes) facts_.notes.push_back(note.where + ": " + note.what);
    }

    desk::Template& open_;
    const desk::Document& document_;
    TemplateFacts facts_;
};

template <class Facts>
const Facts* withUid(const std::vector<Facts>& all, std::uint32_t uid) {
    auto found = std::find_if(all.begin(), all.end(), [&](const Facts& one) { return one.uid == uid; });
    return found == all.end() ? nullptr : &*found;
}

}  // namespace

std::uint64_t StoryFacts::recordsShown() const {
    std::uint64_t records = 1;
    for (std::size_t index = 0; index + 1 < placeholders.size(); ++index)
        if (placeholders[index].advancesRow) ++records;
    return records;
}

std::uint64_t StoryFacts::lastPlace() const {
    return number < 1 ? 0 : static_cast<std::uint64_t>(number) - 1 + recordsShown();
}

const FrameFacts* TemplateFacts::frame(std::uint32_t uid) const {
    return withUid(frames, uid);
}

const StoryFacts* TemplateFacts::story(std::uint32_t uid) const {
    return withUid(stories, uid);
}

std::vector<std::int64_t> TemplateFacts::frameNumbers() const {
    std::vector<std::int64_t> numbers;
    for (const FrameFacts& one : frames) numbers.push_back(one.number);
    return numbers;
}

TemplateFacts factsOf(desk::Template& openTemplate, const std::string& path) {
    return Inquiry(openTemplate, path).run();
}

}  // namespace companion
