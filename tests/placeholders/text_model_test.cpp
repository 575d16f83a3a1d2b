#include "placeholders/text_model.h"

#include <gmock/gmock.h>

#include "host/api/host.h"
#include "plugin_fixture.h"
#include "recorded_story.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class TextModelTest : public PluginTest {
  protected:
    std::string styled(const char* strand, desk::StyleKind kind, const char* name, const char* range) {
        return std::string(strand) + " style " + std::to_string(document.styleNamed(kind, name)->uid) + " at " + range;
    }
    std::string characterStyled(const char* name, const char* range) {
        return styled("character", desk::StyleKind::Character, name, range);
    }
    static constexpr const char* none = "[No character style]";
};

// --- Construction

TEST_F(TextModelTest, MirrorStartsAsTheWholeTextWithItsTerminalReturn) {
    const Uid frame = textFrame(u"Dear <<Name>>,");
    MyTextModel text(storyRef(frame));
    EXPECT_EQ(text.mirror().string(), u"Dear <<Name>>,\r");
    EXPECT_EQ(text.length(), 14);
    EXPECT_EQ(text.rmvEmptyLines(), 1);
    EXPECT_EQ(text.lineLen(), 0);
    EXPECT_EQ(text.row(), 0);
    EXPECT_TRUE(text.rowDict().isNull());
    EXPECT_TRUE(text.rows().isNull());
}

TEST_F(TextModelTest, HoldsOneReferenceForItsLifeAndGivesItBack) {
    const Uid frame = textFrame(u"a");
    const int64_t before = border.outstandingReferences();
    {
        MyTextModel text(storyRef(frame));
        EXPECT_EQ(border.outstandingReferences(), before + 1);
    }
    EXPECT_EQ(border.outstandingReferences(), before);
}

TEST_F(TextModelTest, SettingUpAgainGivesTheFirstStoryBack) {
    InterfacePtr<ITextModel> first(storyRef(textFrame(u"first")));
    InterfacePtr<ITextModel> second(storyRef(textFrame(u"second")));
    const int64_t before = border.outstandingReferences();
    MyTextModel text(first.get());
    text.setRmvEmptyLines(0);
    text.setup(second.get());
    EXPECT_EQ(text.mirror().string(), u"second\r");
    EXPECT_EQ(text.rmvEmptyLines(), 1);
    EXPECT_EQ(border.outstandingReferences(), before + 1);
    text.init();
    EXPECT_TRUE(text.mirror().isNull());
    EXPECT_EQ(border.outstandingReferences(), before);
}

TEST_F(TextModelTest, ObjectWithoutATextModelGivesAModelOnNothing) {
    const UIDRef notAStory = ref(pictureFrame());
    for (const UIDRef& story : {notAStory, UIDRef()}) {
        MyTextModel text(story);
        EXPECT_EQ(text.model(), nullptr);
        EXPECT_TRUE(text.mirror().isNull());
        EXPECT_TRUE(text.string().isNull());
    }
}

TEST_F(TextModelTest, WithoutAModelEveryOperationDoesNothing) {
    MyTextModel text(static_cast<ITextModel*>(nullptr));
    EXPECT_EQ(text.length(), 0);
    EXPECT_EQ(text.charAt(0), 0);
    EXPECT_EQ(text.lastChar(), 0);
    EXPECT_TRUE(text.isOverset());
    EXPECT_EQ(text.insertTextAt(3, u"abc", nullptr, 0), 3);
    text.deleteTextAt(0, 2);
    text.applyCharStyle("x", -1, 1);
    text.applyParaStyle("x", -1, 1);
    EXPECT_EQ(text.paraStyle("x"), kInvalidUID);
    text.addCR();
    text.deleteLastChar();
    text.clear();
    EXPECT_TRUE(text.lines().empty());
    EXPECT_TRUE(text.substringWithRange(0, 1).isNull());
}

// --- Reading

TEST_F(TextModelTest, StringIsReadFromTheHostAndNotFromTheMirror) {
    const Uid frame = textFrame(u"abc");
    MyTextModel text(storyRef(frame));
    text.model()->Insert(3, WideString(u"d"));
    EXPECT_EQ(text.string(), u"abcd\r");
    EXPECT_EQ(text.mirror().string(), u"abc\r");
}

TEST_F(TextModelTest, StringIsPutTogetherFromChunks) {
    RecordedStory story(storyRef(textFrame(u"Dear Miller")));
    story.longestChunk = 3;
    MyTextModel text(&story);
    EXPECT_EQ(text.string(), u"Dear Miller\r");
    EXPECT_EQ(text.mirror().string(), u"Dear Miller\r");
}

TEST_F(TextModelTest, StringOfAStoryWithoutLengthIsEmptyAndNotNull) {
    RecordedStory story(storyRef(textFrame(u"abc")));
    story.totalLength = 0;
    MyTextModel text(&story);
    EXPECT_FALSE(text.string().isNull());
    EXPECT_EQ(text.string().length(), 0u);
    EXPECT_EQ(text.lastChar(), 0);
}

TEST_F(TextModelTest, StoryOfItsTerminalReturnAloneHasNoLastCharacterToDelete) {
    RecordedStory story(storyRef(textFrame(u"")));
    MyTextModel text(&story);
    EXPECT_EQ(text.string(), u"\r");
    EXPECT_EQ(text.length(), 0);
    EXPECT_EQ(text.lastChar(), 0);
    text.deleteLastChar();
    EXPECT_THAT(story.calls, IsEmpty());
    EXPECT_EQ(text.mirror().string(), u"\r");
}

TEST_F(TextModelTest, SubstringComesFromTheMirrorAndItsRangeIsChecked) {
    MyTextModel text(storyRef(textFrame(u"Dear Miller")));
    EXPECT_EQ(text.substringWithRange(5, 6), u"Miller");
    EXPECT_EQ(text.substringWithRange(12, 0), u"");
    EXPECT_THROW(text.substringWithRange(5, 8), RangeException);
    EXPECT_THROW(text.substringWithRange(-1, 2), RangeException);
    EXPECT_THROW(text.substringWithRange(0, -1), RangeException);
    EXPECT_THROW(text.substringWithRange(INT64_MAX, INT64_MAX), RangeException);
}

TEST_F(TextModelTest, CharacterBeyondTheBasicPlaneGivesItsHighSurrogate) {
    MyTextModel text(storyRef(textFrame(u"a\U0001F600b")));
    EXPECT_EQ(text.charAt(0), u'a');
    EXPECT_EQ(text.charAt(1), 0xD83D);
    EXPECT_EQ(text.charAt(3), u'b');
    EXPECT_EQ(text.charAt(4), u'\r');
    EXPECT_EQ(text.lastChar(), u'b');
}

TEST_F(TextModelTest, OversetQuestionGoesToTheHostAfterComposing) {
    const Uid frame = textFrame(u"abc");
    MyTextModel text(storyRef(frame));
    EXPECT_FALSE(text.isOverset());
    EXPECT_EQ(layout.asked[storyOf(frame)], 2);  // once to compose, once for the answer
    layout.overset.insert(storyOf(frame));
    EXPECT_TRUE(text.isOverset());
}

TEST_F(TextModelTest, StoryWithoutAFrameListCountsAsOverset) {
    RecordedStory story(storyRef(textFrame(u"abc")));
    story.hasFrameList = false;
    EXPECT_TRUE(MyTextModel(&story).isOverset());
}

/// A frame list that has no composer.
class BareFrameList : public ITextFrameList {
  public:
    virtual ~BareFrameList() = default;
    IPMUnknown* QueryInterface(PMIID) override { return nullptr; }
    void AddRef() override {}
    void Release() override {}
    int32_t GetFrameCount() override { return 0; }
    UID GetNthFrameUID(int32_t) override { return kInvalidUID; }
    int32_t GetFrameIndexContaining(int32_t) override { return -1; }
};

TEST_F(TextModelTest, FrameListWithoutAComposerCountsAsOverset) {
    struct Story : RecordedStory {
        using RecordedStory::RecordedStory;
        ITextFrameList* QueryFrameList() override { return &frames; }
        BareFrameList frames;
    } story(storyRef(textFrame(u"abc")));
    EXPECT_TRUE(MyTextModel(&story).isOverset());
}

// --- Row state

TEST_F(TextModelTest, RowStateFollowsSetAndOffset) {
    MyTextModel text(storyRef(textFrame(u"a")));
    const Dictionary first = Dictionary::make({{u"Name", u"A"}});
    const Dictionary second = Dictionary::make({{u"Name", u"B"}});
    text.setRows(Array::make({first, second}));
    text.setRow(1);
    EXPECT_EQ(text.row(), 1);
    EXPECT_TRUE(text.rowDict().dictionary().isSameObject(second));
    text.offsetRow(-1);
    EXPECT_EQ(text.row(), 0);
    EXPECT_TRUE(text.rowDict().dictionary().isSameObject(first));
}

TEST_F(TextModelTest, RowOutsideTheRowsEndsInARangeFailure) {
    MyTextModel text(storyRef(textFrame(u"a")));
    text.setRows(Array::make({Dictionary::make()}));
    EXPECT_THROW(text.setRow(1), RangeException);
    EXPECT_EQ(text.row(), 1);
    EXPECT_THROW(text.setRow(-1), RangeException);
    text.setRow(0);
    EXPECT_THROW(text.offsetRow(1), RangeException);
}

// --- Inserting

TEST_F(TextModelTest, InsertingNothingWithAStyleChangesNothing) {
    style(desk::StyleKind::Character, "Bold");
    RecordedStory story(storyRef(textFrame(u"Dear ")));
    MyTextModel text(&story);
    EXPECT_EQ(text.insertTextAt(5, u"", "Bold", 0), 5);
    EXPECT_EQ(text.insertTextAt(5, nullptr, "Bold", 0), 5);
    EXPECT_THAT(story.calls, IsEmpty());
    EXPECT_EQ(text.lineLen(), 0);
}

TEST_F(TextModelTest, InsertingWithAStyleStylesTheInsertAndResetsBehindIt) {
    style(desk::StyleKind::Character, "Bold");
    const Uid frame = textFrame(u"Dear Sir");
    RecordedStory story(storyRef(frame));
    MyTextModel text(&story);
    EXPECT_EQ(text.insertTextAt(5, u"Old", "Bold", 0), 8);
    EXPECT_THAT(story.calls, ElementsAre("insert 5 Old", characterStyled("Bold", "5+3"), characterStyled(none, "8+0")));
    EXPECT_EQ(text.lineLen(), 3);
    EXPECT_EQ(text.mirror().string(), u"Dear OldSir\r");
    EXPECT_EQ(textIn(frame), u"Dear OldSir");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 5), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 7), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 8), none);
}

TEST_F(TextModelTest, TextInsertedBehindAStyledInsertTakesNoStyleFromIt) {
    style(desk::StyleKind::Character, "Bold");
    const Uid frame = textFrame(u"");
    MyTextModel text(storyRef(frame));
    const int32_t end = text.insertTextAt(0, u"bold", "Bold", 0);
    text.insertTextAt(end, u"plain", nullptr, 0);
    EXPECT_EQ(textIn(frame), u"boldplain");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 3), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 4), none);
}

TEST_F(TextModelTest, InsertingWithoutAStyleStillResetsBehindTheInsert) {
    RecordedStory story(storyRef(textFrame(u"ab")));
    MyTextModel text(&story);
    EXPECT_EQ(text.insertTextAt(1, u"xyz", nullptr, 0), 4);
    EXPECT_THAT(story.calls, ElementsAre("insert 1 xyz", characterStyled(none, "4+0")));
}

TEST_F(TextModelTest, InsertingWithAnUnknownStyleInsertsUnstyledAndResets) {
    const Uid frame = textFrame(u"ab");
    RecordedStory story(storyRef(frame));
    MyTextModel text(&story);
    EXPECT_EQ(text.insertTextAt(1, u"xyz", "Nowhere", 0), 4);
    EXPECT_THAT(story.calls, ElementsAre("insert 1 xyz", characterStyled(none, "4+0")));
    EXPECT_EQ(textIn(frame), u"axyzb");
}

TEST_F(TextModelTest, InsertingOutsideTheTextEndsInARangeFailureBeforeTheHostIsAsked) {
    RecordedStory story(storyRef(textFrame(u"ab")));
    MyTextModel text(&story);
    EXPECT_THROW(text.insertTextAt(-1, u"x", nullptr, 0), RangeException);
    EXPECT_THROW(text.insertTextAt(4, u"x", nullptr, 0), RangeException);
    EXPECT_THAT(story.calls, IsEmpty());
}

TEST_F(TextModelTest, AddedReturnStandsBeforeTheTerminalOne) {
    const Uid frame = textFrame(u"ab");
    MyTextModel text(storyRef(frame));
    text.addCR();
    EXPECT_EQ(text.string(), u"ab\r\r");
    EXPECT_EQ(text.mirror().string(), u"ab\r\r");
}

// --- Deleting

TEST_F(TextModelTest, DeletingCutsBothViewsAndTheLineLength) {
    const Uid frame = textFrame(u"Dear Miller");
    RecordedStory story(storyRef(frame));
    MyTextModel text(&story);
    text.setLineLen(12);
    text.deleteTextAt(4, 3);
    EXPECT_THAT(story.calls, ElementsAre("delete 4+3"));
    EXPECT_EQ(textIn(frame), u"Dearller");
    EXPECT_EQ(text.mirror().string(), u"Dearller\r");
    EXPECT_EQ(text.lineLen(), 9);
}

TEST_F(TextModelTest, DeletingTheTerminalReturnCutsTheMirrorAlone) {
    const Uid frame = textFrame(u"abc");
    RecordedStory story(storyRef(frame));
    MyTextModel text(&story);
    text.setLineLen(4);
    text.deleteTextAt(3, 1);
    EXPECT_THAT(story.calls, IsEmpty());
    EXPECT_EQ(text.mirror().string(), u"abc");
    EXPECT_EQ(text.string(), u"abc\r");
    EXPECT_EQ(text.lineLen(), 4);
}

TEST_F(TextModelTest, RangeThatReachesTheTerminalReturnStaysWholeInTheHost) {
    const Uid frame = textFrame(u"abc");
    MyTextModel text(storyRef(frame));
    text.deleteTextAt(1, 3);
    EXPECT_EQ(text.mirror().string(), u"a");
    EXPECT_EQ(textIn(frame), u"abc");
}

TEST_F(TextModelTest, DeletingNothingDoesNothingAtAll) {
    RecordedStory story(storyRef(textFrame(u"abcdef")));
    MyTextModel text(&story);
    text.deleteTextAt(3, 0);
    text.deleteTextAt(3, -2);
    EXPECT_THAT(story.calls, IsEmpty());
    EXPECT_EQ(text.mirror().string(), u"abcdef\r");
}

TEST_F(TextModelTest, DeletingOutsideTheMirrorEndsInARangeFailure) {
    MyTextModel text(storyRef(textFrame(u"abc")));
    EXPECT_THROW(text.deleteTextAt(3, 2), RangeException);
    EXPECT_THROW(text.deleteTextAt(-1, 1), RangeException);
}

TEST_F(TextModelTest, LastCharacterBeforeTheTerminalReturnIsDeleted) {
    const Uid frame = textFrame(u"abc");
    MyTextModel text(storyRef(frame));
    text.deleteLastChar();
    EXPECT_EQ(textIn(frame), u"ab");
    EXPECT_EQ(text.mirror().string(), u"ab\r");
}

TEST_F(TextModelTest, ClearingEmptiesTheMainTextOfTheHostAlone) {
    const Uid frame = textFrame(u"abcdef");
    RecordedStory story(storyRef(frame));
    MyTextModel text(&story);
    text.setLineLen(7);
    story.mainSpan = 4;
    text.clear();
    EXPECT_THAT(story.calls, ElementsAre("delete 0+3"));
    EXPECT_EQ(textIn(frame), u"def");
    EXPECT_EQ(text.mirror().string(), u"abcdef\r");
    EXPECT_EQ(text.lineLen(), 7);
}

// --- Styles

TEST_F(TextModelTest, CharacterStyleIsAppliedWithBothFlags) {
    style(desk::StyleKind::Character, "Bold");
    RecordedStory story(storyRef(textFrame(u"abcdef")));
    MyTextModel text(&story);
    text.applyCharStyle("Bold", 2, 3);
    text.applyCharStyle("Bold", -1, 0);
    EXPECT_THAT(story.calls, ElementsAre(characterStyled("Bold", "2+3"), characterStyled("Bold", "6+0")));
}

TEST_F(TextModelTest, NullAndUnknownStyleNamesArePassedOver) {
    RecordedStory story(storyRef(textFrame(u"abc")));
    MyTextModel text(&story);
    text.applyCharStyle(nullptr, 0, 1);
    text.applyCharStyle("Nowhere", 0, 1);
    text.applyParaStyle(nullptr, 0, 1);
    text.applyParaStyle("Nowhere", 0, 0);
    EXPECT_THAT(story.calls, IsEmpty());
}

TEST_F(TextModelTest, ParagraphStyleOfNoLengthFirstResetsTheEnd) {
    style(desk::StyleKind::Paragraph, "Body");
    RecordedStory story(storyRef(textFrame(u"abc")));
    MyTextModel text(&story);
    text.applyParaStyle("Body", 1, 2);
    text.applyParaStyle("Body", -1, 0);
    EXPECT_THAT(story.calls, ElementsAre(styled("paragraph", desk::StyleKind::Paragraph, "Body", "1+2"),
                                         characterStyled(none, "3+0"),
                                         styled("paragraph", desk::StyleKind::Paragraph, "Body", "3+0")));
}

TEST_F(TextModelTest, ParagraphStyleIsFoundByNameAmongParagraphStylesAlone) {
    const Uid body = style(desk::StyleKind::Paragraph, "Body");
    style(desk::StyleKind::Character, "Bold");
    MyTextModel text(storyRef(textFrame(u"abc")));
    EXPECT_EQ(text.paraStyle("Body"), UID(body));
    EXPECT_EQ(text.paraStyle("Bold"), kInvalidUID);
    EXPECT_EQ(text.paraStyle(nullptr), kInvalidUID);
}

}  // namespace
