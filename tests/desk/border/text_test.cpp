// Stories through the border: reading, editing, styles, columns, the overset question, anchored objects.
#include <gmock/gmock.h>

#include "host_fixture.h"

namespace desk {
namespace {

class BorderText : public testing::HostFixture {
  public:
    void apply(Uid storyUid, int32_t position, int32_t length, Uid styleUid,
               AttributeStrand strand = AttributeStrand::Character, bool override = true) {
        InterfacePtr<ITextModel>(ref(storyUid))->ApplyStyle(position, length, UID(styleUid), strand, true, override);
    }
};

TEST_F(BorderText, ModelReadsAndEditsTheStory) {
    const Uid uid = story(u"Hello");
    InterfacePtr<ITextModel> model(ref(uid));
    EXPECT_EQ(model->TotalLength(), 6);
    EXPECT_EQ(model->GetPrimaryStoryThreadSpan(), 6);
    model->Insert(5, WideString(" world"));
    model->Delete(0, 1);
    EXPECT_EQ(textOf(uid), u"ello world\r");
    const TextChunk chunk = model->GetChunk(5);
    EXPECT_EQ(std::u16string(chunk.text, static_cast<size_t>(chunk.length)), u"world\r");
    EXPECT_EQ(model->GetChunk(11).length, 0);
    EXPECT_EQ(model->GetChunk(-1).length, 0);
    EXPECT_TRUE(document.modified);
}

TEST_F(BorderText, IteratorReadsCodePoints) {
    const Uid uid = story(u"a\U0001F600b");
    InterfacePtr<ITextModel> model(ref(uid));
    TextIterator place(model.get(), 0);
    EXPECT_EQ(*place, U'a');
    ++place;
    EXPECT_EQ(*place, 0x1F600u);
    ++place;
    EXPECT_EQ(place.Position(), 3);
    EXPECT_EQ(*place, U'b');
    place += 2;
    EXPECT_EQ(*place, 0u);
    EXPECT_EQ(*TextIterator(model.get(), 2), 0xDE00u);
    EXPECT_EQ(*TextIterator(nullptr, 0), 0u);
}

TEST_F(BorderText, StyleGoesOnTheRangeAndNotBehindIt) {
    const Uid uid = story(u"abcdef"), strong = style(StyleKind::Character, "Strong");
    apply(uid, 2, 2, strong);
    EXPECT_EQ(characterStyleAt(uid, 1), "[No character style]");
    EXPECT_EQ(characterStyleAt(uid, 2), "Strong");
    EXPECT_EQ(characterStyleAt(uid, 3), "Strong");
    EXPECT_EQ(characterStyleAt(uid, 4), "[No character style]");
}

TEST_F(BorderText, StyleOfLengthZeroHoldsForTheNextInsertion) {
    const Uid uid = story(u"abcd"), strong = style(StyleKind::Character, "Strong");
    apply(uid, 0, 5, strong);
    apply(uid, 2, 0, document.styleNamed(StyleKind::Character, "[No character style]")->uid);
    InterfacePtr<ITextModel>(ref(uid))->Insert(2, WideString("X"));
    EXPECT_EQ(characterStyleAt(uid, 1), "Strong");
    EXPECT_EQ(characterStyleAt(uid, 2), "[No character style]");
    EXPECT_EQ(characterStyleAt(uid, 3), "Strong");
}

TEST_F(BorderText, StyleKeepsOverridesThatItDoesntDefineItself) {
    const Uid uid = story(u"abcd");
    Style& base = document.addStyle(StyleKind::Character, "Base", "CharacterStyle/Base");
    base.text.fillColor = "Color/Red";
    Style& strong = document.addStyle(StyleKind::Character, "Strong", "CharacterStyle/Strong");
    strong.basedOn = base.self;
    strong.text.fontStyle = "Bold";
    document.stylesChanged();
    CharacterFormat local;
    local.overrides.fontStyle = "Italic";
    local.overrides.fillColor = "Color/Blue";
    local.overrides.pointSize = 20;
    document.story(uid)->setCharacterFormat(1, 2, document.characterFormatId(local));
    apply(uid, 0, 4, strong.uid);
    const auto formatAt = [&](int32_t at) {
        return document.characterFormat(document.story(uid)->content().characterFormatAt(at));
    };
    EXPECT_EQ(formatAt(0).overrides, TextAttributes());
    EXPECT_EQ(formatAt(1).style, strong.uid);
    EXPECT_EQ(formatAt(1).overrides.pointSize, 20);
    EXPECT_FALSE(formatAt(1).overrides.fontStyle);
    EXPECT_FALSE(formatAt(1).overrides.fillColor);
}

TEST_F(BorderText, StyleThatDropsNothingKeepsAllOverrides) {
    const Uid uid = story(u"abcd");
    Style& strong = document.addStyle(StyleKind::Character, "Strong", "CharacterStyle/Strong");
    strong.text.fontStyle = "Bold";
    CharacterFormat local;
    local.overrides.fontStyle = "Italic";
    document.story(uid)->setCharacterFormat(0, 4, document.characterFormatId(local));
    apply(uid, 0, 2, strong.uid, AttributeStrand::Character, false);
    apply(uid, 2, 2, strong.uid, AttributeStrand::Character, true);
    const StoryContent& content = document.story(uid)->content();
    EXPECT_EQ(document.characterFormat(content.characterFormatAt(0)).overrides.fontStyle, "Italic");
    EXPECT_FALSE(document.characterFormat(content.characterFormatAt(2)).overrides.fontStyle);
}

TEST_F(BorderText, ChangedStyleIsTakenAsItIsNow) {
    const Uid uid = story(u"abcd");
    Style& strong = document.addStyle(StyleKind::Character, "Strong", "CharacterStyle/Strong");
    CharacterFormat local;
    local.overrides.fontStyle = "Italic";
    document.story(uid)->setCharacterFormat(0, 4, document.characterFormatId(local));
    apply(uid, 0, 2, strong.uid);
    strong.text.fontStyle = "Bold";
    document.stylesChanged();
    apply(uid, 2, 2, strong.uid);
    const StoryContent& content = document.story(uid)->content();
    EXPECT_EQ(document.characterFormat(content.characterFormatAt(0)).overrides.fontStyle, "Italic");
    EXPECT_FALSE(document.characterFormat(content.characterFormatAt(2)).overrides.fontStyle);
}

TEST_F(BorderText, ParagraphStyleGoesOnEveryParagraphOfTheRange) {
    const Uid uid = story(u"one\rtwo\rthree"), body = style(StyleKind::Paragraph, "Body");
    apply(uid, 2, 3, body, AttributeStrand::Paragraph);
    const StoryContent& content = document.story(uid)->content();
    EXPECT_EQ(document.paragraphFormat(content.paragraphFormatAt(0)).style, body);
    EXPECT_EQ(document.paragraphFormat(content.paragraphFormatAt(4)).style, body);
    EXPECT_EQ(document.paragraphFormat(content.paragraphFormatAt(8)).style, 0u);
}

TEST_F(BorderText, StyleOfAnotherKindOrNoneIsPassedOver) {
    const Uid uid = story(u"abcd"), body = style(StyleKind::Paragraph, "Body");
    const uint64_t before = document.story(uid)->revision();
    apply(uid, 0, 2, body);
    apply(uid, 0, 2, 0);
    apply(uid, 0, 2, 4711);
    EXPECT_EQ(document.story(uid)->revision(), before);
}

TEST_F(BorderText, StyleOutsideTheTextStaysInside) {
    const Uid uid = story(u"abcd"), strong = style(StyleKind::Character, "Strong");
    apply(uid, -3, 4, strong);
    apply(uid, 4, 400, strong);
    apply(uid, 90, 3, strong);
    EXPECT_EQ(characterStyleAt(uid, 0), "Strong");
    EXPECT_EQ(characterStyleAt(uid, 1), "[No character style]");
    EXPECT_EQ(characterStyleAt(uid, 4), "Strong");
}

TEST_F(BorderText, FrameListNamesTheColumnsOfTheThread) {
    const Uid first = textFrame(story(u"text"), 3);
    const Uid second = textFrame(storyOf(first));
    thread(first, second);
    layout.shown[first] = {0, 3};
    layout.shown[second] = {3, 2};
    InterfacePtr<ITextModel> model(ref(storyOf(first)));
    InterfacePtr<ITextFrameList> frames(Adopt::Reference, model->QueryFrameList());
    ASSERT_EQ(frames->GetFrameCount(), 4);
    const UID last = frames->GetNthFrameUID(3);
    EXPECT_EQ(document.frameOfTextColumn(last.Get()), second);
    EXPECT_EQ(document.frameOfTextColumn(frames->GetNthFrameUID(2).Get()), first);
    EXPECT_NE(frames->GetNthFrameUID(0), frames->GetNthFrameUID(2));
    EXPECT_EQ(frames->GetNthFrameUID(4), kInvalidUID);
    EXPECT_EQ(frames->GetNthFrameUID(-1), kInvalidUID);
    EXPECT_EQ(frames->GetFrameIndexContaining(2), 0);
    EXPECT_EQ(frames->GetFrameIndexContaining(4), 3);
    EXPECT_EQ(frames->GetFrameIndexContaining(5), -1);
}

TEST_F(BorderText, MultiColumnFrameTellsWhatItShows) {
    const Uid frame = textFrame(u"text");
    layout.shown[frame] = {1, 3};
    InterfacePtr<IFrameData> data(ref(frame));
    InterfacePtr<IMultiColumnTextFrame> multi(database, data->GetTextContentUID());
    EXPECT_EQ(multi->TextStart(), 1);
    EXPECT_EQ(multi->TextSpan(), 3);
    EXPECT_EQ(multi->GetTextModelUID(), UID(storyOf(frame)));
    EXPECT_EQ(multi->GetColumnCount(), 1);
}

TEST_F(BorderText, ColumnCountMayComeFromTheObjectStyle) {
    const Uid frame = textFrame(u"text");
    Style& box = document.addStyle(StyleKind::Object, "box", "ObjectStyle/box");
    box.frame.columnCount = 4;
    document.item(frame)->objectStyle = box.self;
    InterfacePtr<IMultiColumnTextFrame> multi(ref(document.multiColumnFrame(frame)));
    EXPECT_EQ(multi->GetColumnCount(), 4);
    document.item(frame)->frameOptions.columnCount = 0;
    EXPECT_EQ(multi->GetColumnCount(), 1);
}

TEST_F(BorderText, OversetIsTheLayoutsAnswer) {
    const Uid frame = textFrame(u"text");
    InterfacePtr<ITextModel> model(ref(storyOf(frame)));
    InterfacePtr<ITextFrameList> frames(Adopt::Reference, model->QueryFrameList());
    InterfacePtr<IFrameListComposer> composer(frames.get());
    ASSERT_TRUE(composer);
    EXPECT_EQ(composer->RecomposeThruLastFrame(), kSuccess);
    EXPECT_EQ(layout.asked[storyOf(frame)], 1);
    Utils<ITextUtils> text;
    EXPECT_FALSE(text->IsOverset(frames.get()));
    layout.overset.insert(storyOf(frame));
    EXPECT_TRUE(text->IsOverset(frames.get()));
    EXPECT_FALSE(text->IsOverset(nullptr));
}

TEST_F(BorderText, AnchoredObjectsStandBetweenStoryAndItem) {
    const Uid uid = story(u"abcd");
    InterfacePtr<ITextModel> model(ref(uid));
    EXPECT_FALSE(InterfacePtr<IOwnedItemStrand>(model.get()));
    const Uid second = anchorIn(uid, 3), first = anchorIn(uid, 1);
    InterfacePtr<IOwnedItemStrand> strand(model.get());
    ASSERT_TRUE(strand);
    K2Vector<OwnedItemRecord> found;
    strand->CollectOwnedItems(0, model->TotalLength() - 1, found);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].position, 1);
    EXPECT_EQ(found[1].position, 4);
    EXPECT_TRUE(InterfacePtr<IAnchoredObject>(database, found[0].item));
    InterfacePtr<IHierarchy> anchor(database, found[0].item);
    EXPECT_EQ(anchor->GetChildUID(0), UID(first));
    EXPECT_EQ(anchor->GetChildUID(1), kInvalidUID);
    InterfacePtr<IHierarchy> item(ref(second));
    EXPECT_EQ(item->GetParentUID(), found[1].item);
    found.clear();
    strand->CollectOwnedItems(2, 3, found);
    EXPECT_TRUE(found.empty());
}

}  // namespace
}  // namespace desk
