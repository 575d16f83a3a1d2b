#pragma once
// A host for tests: one document built in memory, open behind an installed border. Fails the test when a call leaves a
// reference behind, keeps one, or breaks another rule of the border.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "desk/border/border.h"
#include "desk/model/document.h"
#include "host/api/host.h"

namespace desk::testing {

/// Composition as a test wants it.
class ToldTextLayout final : public TextLayoutService {
  public:
    std::set<Uid> overset;           ///< stories that don't fit
    int32_t roomForText = -1;        ///< if 0 or more: longer stories (without the terminal return) don't fit
    std::map<Uid, TextRange> shown;  ///< by frame
    std::map<Uid, int> asked;        ///< how often each story was asked for
    const Document* document = nullptr;

    bool isOverset(Uid story) override {
        ++asked[story];
        if (overset.contains(story)) return true;
        const Story* found = document ? document->story(story) : nullptr;
        return roomForText >= 0 && found && found->content().length() - 1 > roomForText;
    }
    TextRange textOfFrame(Uid frame) override {
        const auto found = shown.find(frame);
        return found == shown.end() ? TextRange() : found->second;
    }
};

class HostFixture : public ::testing::Test {
  public:
    HostFixture() {
        layout.document = &document;
        layer = &document.addLayer("Layer 1");
        spread = &document.addSpread(false);
        page = &document.addPage(*spread);
        database = border.open(document, layout);
        previousHost_ = InstallHost(&border);
    }
    ~HostFixture() override { InstallHost(previousHost_); }

    void TearDown() override {
        EXPECT_EQ(border.outstandingReferences(), expectedReferences) << "references were left behind or kept";
        for (const std::string& misuse : border.misuses()) ADD_FAILURE() << misuse;
    }

    /// Calls, and fails the test when references are out that were not before, or the other way round.
    template <class Call>
    decltype(auto) balanced(Call call) {
        struct Check {
            desk::Border& border;
            int64_t before;
            ~Check() {
                EXPECT_EQ(border.outstandingReferences(), before) << "the call changed the references that are out";
            }
        } check{border, border.outstandingReferences()};
        return call();
    }

    // Building. Each helper gives the Uid.
    Uid story(const std::u16string& text) {
        Story& made = document.addStory();
        made.insert(0, text);
        return made.uid;
    }
    Uid item(ItemKind kind, Uid onSpread = 0) {
        PageItem& made = document.addItem(kind);
        made.path = rectanglePath({0, 0, 72, 36});
        document.placeOnSpread(made, onSpread ? *document.spread(onSpread) : *spread, *layer);
        return made.uid;
    }
    Uid pictureFrame() { return item(ItemKind::Rectangle); }
    Uid textFrame(Uid storyUid, int columns = 1) {
        const Uid frame = item(ItemKind::TextFrame);
        document.item(frame)->story = storyUid;
        if (columns != 1) document.item(frame)->frameOptions.columnCount = columns;
        document.threadsChanged();
        return frame;
    }
    /// A text frame with a story of its own.
    Uid textFrame(const std::u16string& text) { return textFrame(story(text)); }
    void thread(Uid from, Uid to) {
        document.item(from)->nextFrame = to;
        document.item(to)->previousFrame = from;
        document.item(to)->story = document.item(from)->story;
        document.threadsChanged();
    }
    Uid graphicIn(Uid frame) {
        PageItem& made = document.addItem(ItemKind::Graphic);
        made.path = rectanglePath({0, 0, 10, 10});
        document.placeInside(made, *document.item(frame));
        return made.uid;
    }
    Uid groupOf(const std::vector<Uid>& members) {
        const Uid group = item(ItemKind::Group);
        document.item(group)->path.clear();
        for (Uid member : members) document.placeInside(*document.item(member), *document.item(group));
        return group;
    }
    /// A frame that stands in a story's text at a position.
    Uid anchorIn(Uid storyUid, int32_t position, ItemKind kind = ItemKind::Rectangle) {
        PageItem& made = document.addItem(kind);
        Story& holder = *document.story(storyUid);
        holder.insert(position, u"\uFFFC");
        auto content = std::make_shared<StoryContent>(holder.content());
        content->ownedItems.push_back({position, made.uid});
        std::sort(content->ownedItems.begin(), content->ownedItems.end(),
                  [](const OwnedItem& a, const OwnedItem& b) { return a.position < b.position; });
        holder.setContent(content);
        return made.uid;
    }
    Uid style(StyleKind kind, const std::string& name) {
        return document.addStyle(kind, name, (kind == StyleKind::Character ? "CharacterStyle/" : "Style/") + name).uid;
    }
    Page& addPage() { return document.addPage(document.addSpread(false)); }

    // Looking.
    Uid storyOf(Uid frame) const { return document.item(frame)->story; }
    std::u16string textOf(Uid storyUid) const { return document.story(storyUid)->content().text; }
    std::string characterStyleAt(Uid storyUid, int32_t position) const {
        const StoryContent& content = document.story(storyUid)->content();
        const Style* found = document.style(document.characterFormat(content.characterFormatAt(position)).style);
        return found ? found->name : "[No character style]";
    }
    UIDRef ref(Uid uid) const { return UIDRef(database, UID(uid)); }
    UIDRef documentRef() const { return ref(document.rootUid()); }

    Document document;
    ToldTextLayout layout;
    Border border;
    Layer* layer = nullptr;
    Spread* spread = nullptr;
    Page* page = nullptr;
    IDataBase* database = nullptr;
    int64_t expectedReferences = 0;  ///< at the end of the test

  private:
    IHost* previousHost_ = nullptr;
};

}  // namespace desk::testing
