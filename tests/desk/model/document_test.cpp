#include "desk/model/document.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

struct OnePage {
    Document document;
    Spread* spread = nullptr;
    Page* page = nullptr;
    Layer* layer = nullptr;

    OnePage() {
        layer = &document.addLayer("Layer 1");
        spread = &document.addSpread(false);
        page = &document.addPage(*spread);
    }

    PageItem& textFrame(Uid story) {
        PageItem& frame = document.addItem(ItemKind::TextFrame);
        frame.story = story;
        document.placeOnSpread(frame, *spread, *layer);
        document.threadsChanged();
        return frame;
    }

    void thread(PageItem& from, PageItem& to) {
        from.nextFrame = to.uid;
        to.previousFrame = from.uid;
        document.threadsChanged();
    }
};

TEST(Labels, KeepTheirOrderAndTheLastValue) {
    Labels labels;
    labels.set("b", "1");
    labels.set("a", "2");
    labels.set("b", "3");
    EXPECT_EQ(labels.get("b"), "3");
    EXPECT_EQ(labels.get("c"), "");
    ASSERT_EQ(labels.pairs().size(), 2u);
    EXPECT_EQ(labels.pairs()[0].first, "b");
    labels.set("b", "");
    EXPECT_EQ(labels.pairs().size(), 1u);
}

TEST(Document, EveryLayerStandsOnEverySpread) {
    Document document;
    document.addLayer("below");
    Spread& first = document.addSpread(false);
    const Layer& above = document.addLayer("above");
    Spread& master = document.addSpread(true);
    ASSERT_EQ(first.layers.size(), 2u);
    ASSERT_EQ(master.layers.size(), 2u);
    EXPECT_EQ(document.spreadLayer(first.layers[1])->layer, above.uid);
    EXPECT_EQ(document.spreadLayer(master.layers[1])->spread, master.uid);
    EXPECT_EQ(document.spreads, std::vector<Uid>{first.uid});
    EXPECT_EQ(document.masterSpreads, std::vector<Uid>{master.uid});
}

TEST(Document, UidsNameObjectsOfTheirKindOnly) {
    OnePage one;
    EXPECT_EQ(one.document.kindOf(one.document.rootUid()), Document::Kind::Root);
    EXPECT_EQ(one.document.kindOf(one.document.workspaceUid()), Document::Kind::Workspace);
    EXPECT_EQ(one.document.kindOf(one.page->uid), Document::Kind::Page);
    EXPECT_EQ(one.document.kindOf(0), Document::Kind::None);
    EXPECT_EQ(one.document.kindOf(99999), Document::Kind::None);
    EXPECT_EQ(one.document.story(one.page->uid), nullptr);
    EXPECT_EQ(one.document.page(one.page->uid), one.page);
}

TEST(Document, ItemsInAGroupStandOnTheGroupsSpreadAndLayer) {
    OnePage one;
    PageItem& group = one.document.addItem(ItemKind::Group);
    PageItem& inner = one.document.addItem(ItemKind::Group);
    PageItem& leaf = one.document.addItem(ItemKind::Oval);
    one.document.placeInside(leaf, inner);
    one.document.placeInside(inner, group);
    one.document.placeOnSpread(group, *one.spread, *one.layer);
    EXPECT_EQ(leaf.spread, one.spread->uid);
    EXPECT_EQ(leaf.layer, one.layer->uid);
    EXPECT_EQ(leaf.parent, inner.uid);
}

TEST(Document, RemovedItemTakesWhatItHolds) {
    OnePage one;
    PageItem& group = one.document.addItem(ItemKind::Group, "u1");
    PageItem& leaf = one.document.addItem(ItemKind::Oval, "u2");
    one.document.placeInside(leaf, group);
    one.document.placeOnSpread(group, *one.spread, *one.layer);
    const Uid groupUid = group.uid, leafUid = leaf.uid;
    one.document.removeItem(groupUid);
    EXPECT_EQ(one.document.kindOf(groupUid), Document::Kind::None);
    EXPECT_EQ(one.document.item(leafUid), nullptr);
    EXPECT_EQ(one.document.itemWithSelf("u2"), nullptr);
    EXPECT_TRUE(one.document.spreadLayer(one.spread->layers[0])->items.empty());
}

TEST(Document, RemovedNamesakeLeavesTheItemThatItsIdMeans) {
    Document document;
    const Uid first = document.addItem(ItemKind::Oval, "u1").uid, second = document.addItem(ItemKind::Oval, "u1").uid;
    document.removeItem(second);
    ASSERT_NE(document.itemWithSelf("u1"), nullptr);
    EXPECT_EQ(document.itemWithSelf("u1")->uid, first);
    document.removeItem(first);
    EXPECT_EQ(document.itemWithSelf("u1"), nullptr);
}

TEST(Document, UidOfARemovedItemIsNotGivenAgain) {
    OnePage one;
    const Uid removed = one.document.addItem(ItemKind::Rectangle).uid;
    one.document.removeItem(removed);
    PageItem& next = one.document.addItem(ItemKind::Rectangle);
    EXPECT_NE(next.uid, removed);
    EXPECT_EQ(one.document.item(removed), nullptr);
    EXPECT_TRUE(next.labels.pairs().empty());
}

TEST(Document, RemovedOwnedItemTakesItsCharacter) {
    Document document;
    Story& story = document.addStory();
    PageItem& item = document.addItem(ItemKind::Rectangle);
    auto content = std::make_shared<StoryContent>();
    content->text = u"ab\uFFFCcd\r";
    content->ownedItems = {{2, item.uid}};
    story.setContent(content);
    document.removeItem(item.uid);
    EXPECT_EQ(story.content().text, u"abcd\r");
    EXPECT_TRUE(story.content().ownedItems.empty());
}

TEST(Document, RemovedCopyOfAStoryLeavesTheItemsThatItShares) {
    Document document;
    Story& story = document.addStory();
    PageItem& item = document.addItem(ItemKind::Rectangle);
    const Uid uid = item.uid;
    auto content = std::make_shared<StoryContent>();
    content->text = u"\uFFFC\r";
    content->ownedItems = {{0, uid}};
    story.setContent(content);
    Story& copy = document.addStory();
    copy.setContent(story.sharedContent());
    const Uid anchored = document.anchoredObject(uid);
    EXPECT_EQ(document.itemOfAnchoredObject(anchored), uid);
    document.removeStory(copy.uid);
    EXPECT_NE(document.item(uid), nullptr);
    document.removeStory(story.uid);
    EXPECT_EQ(document.item(uid), nullptr);
    EXPECT_EQ(document.itemOfAnchoredObject(anchored), 0u);
}

TEST(Document, ItemHeldByTwoStoriesGoesFromBoth) {
    Document document;
    PageItem& item = document.addItem(ItemKind::Rectangle);
    auto content = std::make_shared<StoryContent>();
    content->text = u"a\uFFFC\r";
    content->ownedItems = {{1, item.uid}};
    Story& first = document.addStory();
    first.setContent(content);
    Story& second = document.addStory();
    second.setContent(content);
    document.removeItem(item.uid);
    EXPECT_EQ(first.content().text, u"a\r");
    EXPECT_EQ(second.content().text, u"a\r");
}

TEST(Document, RemovedStoryLeavesItsFramesEmpty) {
    OnePage one;
    Story& story = one.document.addStory();
    const Uid uid = story.uid;
    PageItem& frame = one.textFrame(uid);
    EXPECT_EQ(one.document.framesOfStory(uid).size(), 1u);
    one.document.removeStory(uid);
    EXPECT_EQ(frame.story, 0u);
    EXPECT_EQ(one.document.story(uid), nullptr);
    EXPECT_TRUE(one.document.stories.empty());
    EXPECT_TRUE(one.document.framesOfStory(uid).empty());
}

TEST(Threads, RunFromTheFirstFrameToTheLast) {
    OnePage one;
    const Uid story = one.document.addStory().uid;
    PageItem& third = one.textFrame(story);
    PageItem& first = one.textFrame(story);
    PageItem& second = one.textFrame(story);
    one.thread(first, second);
    one.thread(second, third);
    EXPECT_EQ(one.document.framesOfStory(story), (std::vector<Uid>{first.uid, second.uid, third.uid}));
}

TEST(Threads, CircleEndsBeforeItsRepetition) {
    OnePage one;
    const Uid story = one.document.addStory().uid;
    PageItem& first = one.textFrame(story);
    PageItem& second = one.textFrame(story);
    one.thread(first, second);
    one.thread(second, first);
    EXPECT_EQ(one.document.framesOfStory(story), (std::vector<Uid>{first.uid, second.uid}));
}

TEST(Threads, LongThreadIsWalkedOnceBothWays) {
    // Comparing each frame with all before it would take longer than a test may.
    constexpr size_t many = 100'000;
    Document document;
    const Uid story = document.addStory().uid;
    Uid following = 0;
    for (size_t frame = 0; frame < many; ++frame) {
        PageItem& made = document.addItem(ItemKind::TextFrame);
        made.story = story;
        made.nextFrame = following;
        if (following != 0) document.item(following)->previousFrame = made.uid;
        following = made.uid;
    }
    for (int time = 0; time < 8; ++time) {
        document.threadsChanged();
        ASSERT_EQ(document.framesOfStory(story).size(), many);
        EXPECT_EQ(document.framesOfStory(story).front(), following);
    }
}

TEST(Threads, FrameThatPointsAtItselfStandsOnce) {
    OnePage one;
    const Uid story = one.document.addStory().uid;
    PageItem& frame = one.textFrame(story);
    one.thread(frame, frame);
    EXPECT_EQ(one.document.framesOfStory(story), std::vector<Uid>{frame.uid});
}

TEST(Threads, RemovedFrameLeavesAWholeThread) {
    OnePage one;
    const Uid story = one.document.addStory().uid;
    PageItem& first = one.textFrame(story);
    PageItem& second = one.textFrame(story);
    PageItem& third = one.textFrame(story);
    one.thread(first, second);
    one.thread(second, third);
    one.document.removeItem(second.uid);
    EXPECT_EQ(one.document.framesOfStory(story), (std::vector<Uid>{first.uid, third.uid}));
}

TEST(Threads, ColumnsKeepTheirUidsAndKnowTheirFrame) {
    OnePage one;
    PageItem& frame = one.textFrame(one.document.addStory().uid);
    const Uid multi = one.document.multiColumnFrame(frame.uid);
    const Uid second = one.document.textColumn(frame.uid, 1);
    EXPECT_EQ(one.document.multiColumnFrame(frame.uid), multi);
    EXPECT_EQ(one.document.textColumn(frame.uid, 1), second);
    EXPECT_EQ(one.document.frameOfMultiColumn(multi), frame.uid);
    EXPECT_EQ(one.document.frameOfTextColumn(second), frame.uid);
    EXPECT_EQ(one.document.frameOfTextColumn(multi), 0u);
    EXPECT_EQ(one.document.multiColumnFrame(one.page->uid), 0u);
    one.document.removeItem(frame.uid);
    EXPECT_EQ(one.document.kindOf(multi), Document::Kind::None);
    EXPECT_EQ(one.document.frameOfTextColumn(second), 0u);
}

TEST(Cascade, GoesFromParagraphChainToCharacterOverrides) {
    Document document;
    Style& base = document.addStyle(StyleKind::Paragraph, "Base", "ParagraphStyle/Base");
    base.text.pointSize = 10;
    base.text.tracking = 5;
    base.text.fontFamily = "Serif";
    Style& body = document.addStyle(StyleKind::Paragraph, "Body", "ParagraphStyle/Body");
    body.basedOn = "ParagraphStyle/Base";
    body.text.pointSize = 11;
    Style& strong = document.addStyle(StyleKind::Character, "Strong", "CharacterStyle/Strong");
    strong.text.fontStyle = "Bold";
    ParagraphFormat paragraph{body.uid, {}};
    paragraph.overrides.spaceAfter = 3;
    CharacterFormat character{strong.uid, {}};
    character.overrides.tracking = 20;
    const ResolvedAttributes& resolved =
        document.resolved(document.paragraphFormatId(paragraph), document.characterFormatId(character));
    EXPECT_EQ(resolved.fontFamily, "Serif");
    EXPECT_EQ(resolved.pointSize, 11);
    EXPECT_EQ(resolved.fontStyle, "Bold");
    EXPECT_EQ(resolved.tracking, 20);
    EXPECT_EQ(resolved.spaceAfter, 3);
}

TEST(Cascade, RootStyleLiesUnderEveryChain) {
    Document document;
    document.addStyle(StyleKind::Paragraph, "[No paragraph style]", "ParagraphStyle/x").text.pointSize = 9;
    const Style& body = document.addStyle(StyleKind::Paragraph, "Body", "ParagraphStyle/Body");
    EXPECT_EQ(document.resolved(0, 0).pointSize, 9);
    EXPECT_EQ(document.resolved(document.paragraphFormatId({body.uid, {}}), 0).pointSize, 9);
    EXPECT_EQ(document.styleWithSelf("ParagraphStyle/x"),
              document.styleNamed(StyleKind::Paragraph, "[No paragraph style]"));
}

TEST(Cascade, CircleOfParentsEnds) {
    Document document;
    Style& a = document.addStyle(StyleKind::Paragraph, "a", "ParagraphStyle/a");
    Style& b = document.addStyle(StyleKind::Paragraph, "b", "ParagraphStyle/b");
    a.basedOn = b.self;
    b.basedOn = a.self;
    a.text.pointSize = 7;
    b.text.pointSize = 8;
    EXPECT_EQ(document.resolved(document.paragraphFormatId({a.uid, {}}), 0).pointSize, 7);
    EXPECT_EQ(document.resolved(document.paragraphFormatId({b.uid, {}}), 0).pointSize, 8);
}

TEST(Cascade, ChangedStyleIsSeenAfterwards) {
    Document document;
    Style& body = document.addStyle(StyleKind::Paragraph, "Body", "ParagraphStyle/Body");
    const ParagraphFormatId format = document.paragraphFormatId({body.uid, {}});
    EXPECT_EQ(document.resolved(format, 0).pointSize, 12);
    body.text.pointSize = 30;
    document.stylesChanged();
    EXPECT_EQ(document.resolved(format, 0).pointSize, 30);
}

TEST(Cascade, ParentOfAnotherKindCountsAsNone) {
    Document document;
    document.addStyle(StyleKind::Character, "c", "x/c").text.pointSize = 50;
    Style& body = document.addStyle(StyleKind::Paragraph, "p", "x/p");
    body.basedOn = "x/c";
    EXPECT_EQ(document.parentOf(body), nullptr);
    EXPECT_EQ(document.resolved(document.paragraphFormatId({body.uid, {}}), 0).pointSize, 12);
}

TEST(Formats, EqualOnesShareAnIdAndReferencesStay) {
    Document document;
    CharacterFormat format;
    format.overrides.pointSize = 5;
    const CharacterFormatId id = document.characterFormatId(format);
    const CharacterFormat& reference = document.characterFormat(id);
    for (int i = 0; i < 500; ++i) {
        CharacterFormat other;
        other.overrides.pointSize = 100 + i;
        document.characterFormatId(other);
    }
    EXPECT_EQ(document.characterFormatId(format), id);
    EXPECT_EQ(&document.characterFormat(id), &reference);
    EXPECT_EQ(document.characterFormatId({}), 0u);
}

TEST(Formats, RootStyleCountsAsNoStyle) {
    Document document;
    const Uid none = document.styleNamed(StyleKind::Character, "[No character style]")->uid;
    EXPECT_EQ(document.characterFormatId({none, {}}), 0u);
}

TEST(Objects, LookGoesFromObjectStyleToTheItemsOwn) {
    Document document;
    Style& base = document.addStyle(StyleKind::Object, "base", "ObjectStyle/base");
    base.item.strokeWeight = 2;
    base.item.fillColor = "Color/Red";
    base.frame.columnCount = 2;
    Style& style = document.addStyle(StyleKind::Object, "box", "ObjectStyle/box");
    style.basedOn = base.self;
    style.item.cornerRadius[2] = 4;
    PageItem& item = document.addItem(ItemKind::Rectangle);
    item.objectStyle = style.self;
    item.attributes.fillColor = "Color/Blue";
    item.frameOptions.insetTop = 1;
    const ItemAttributes look = document.itemAttributes(item);
    EXPECT_EQ(look.strokeWeight, 2);
    EXPECT_EQ(look.fillColor, "Color/Blue");
    EXPECT_EQ(look.cornerRadius[2], 4);
    EXPECT_EQ(document.frameOptions(item).columnCount, 2);
    EXPECT_EQ(document.frameOptions(item).insetTop, 1);
}

TEST(Pages, ItemBelongsToThePageOfItsMiddleElseTheNearest) {
    OnePage one;
    one.page->transform = Matrix::translation(-612, 0);
    Page& right = one.document.addPage(*one.spread);
    PageItem& item = one.document.addItem(ItemKind::Rectangle);
    item.path = rectanglePath({0, 0, 10, 10});
    one.document.placeOnSpread(item, *one.spread, *one.layer);
    item.transform = Matrix::translation(100, 100);
    EXPECT_EQ(one.document.pageOfItem(item), right.uid);
    item.transform = Matrix::translation(-300, 100);
    EXPECT_EQ(one.document.pageOfItem(item), one.page->uid);
    item.transform = Matrix::translation(-900, 5000);
    EXPECT_EQ(one.document.pageOfItem(item), one.page->uid);
    PageItem& loose = one.document.addItem(ItemKind::Rectangle);
    EXPECT_EQ(one.document.pageOfItem(loose), 0u);
}

TEST(Pages, NestedTransformsAddUp) {
    OnePage one;
    PageItem& group = one.document.addItem(ItemKind::Group);
    group.transform = {2, 0, 0, 2, 10, 20};
    PageItem& leaf = one.document.addItem(ItemKind::Rectangle);
    leaf.transform = Matrix::translation(3, 4);
    one.document.placeInside(leaf, group);
    EXPECT_EQ(one.document.toSpread(leaf).apply({0, 0}), (Point{16, 28}));
}

}  // namespace
}  // namespace desk
