#include "host/my_frame.h"

#include <gmock/gmock.h>

#include "host/stories.h"
#include "host/styles.h"
#include "host_fixture.h"

using namespace vornaset;
using desk::ItemKind;
using desk::Uid;
using ::testing::ElementsAre;

namespace {

class MyFrameTest : public desk::testing::HostFixture {
  protected:
    static std::vector<Uid> uidsOf(const UIDList& list) {
        std::vector<Uid> uids;
        for (int32_t index = 0; index < list.Length(); ++index) uids.push_back(list[index].Get());
        return uids;
    }
    Uid threadedPair(const std::u16string& text) {
        const Uid first = textFrame(text);
        thread(first, textFrame(0));
        return first;
    }
};

// --- The handle

TEST_F(MyFrameTest, HandleStandsWhereAReferenceIsAskedFor) {
    const Uid text = textFrame(u"a");
    const MyFrame frame(ref(text));
    EXPECT_EQ(isTextFrame(frame), 1);
    EXPECT_EQ(frame.GetDataBase(), database);
    EXPECT_EQ(frame.GetUID(), UID(text));
    EXPECT_EQ(MyFrame(database, UID(text)), frame);
}

TEST_F(MyFrameTest, HandleOnAListTakesTheEntryOrIsEmpty) {
    UIDList list(database);
    EXPECT_EQ(MyFrame(list, 0), MyFrame());
    list.Append(UID(5));
    list.Append(UID(7));
    EXPECT_EQ(MyFrame(list, 1).GetUID(), UID(7));
    EXPECT_EQ(MyFrame(list, 2), MyFrame());
}

TEST_F(MyFrameTest, HandleOnAnObjectTakesItsPlace) {
    const Uid uid = pictureFrame();
    InterfacePtr<IHierarchy> object(ref(uid));
    EXPECT_EQ(balanced([&] { return MyFrame(object.get()); }), MyFrame(ref(uid)));
    EXPECT_EQ(MyFrame(static_cast<IPMUnknown*>(nullptr)), MyFrame());
}

// --- Kinds

TEST_F(MyFrameTest, ServiceTellsTheKinds) {
    const Uid text = textFrame(u"a");
    const Uid empty = pictureFrame();
    const Uid filled = pictureFrame();
    const Uid picture = graphicIn(filled);
    const Uid group = groupOf({pictureFrame()});
    const Uid anchored = anchorIn(storyOf(text), 0);
    balanced([&] {
        EXPECT_EQ(isTextFrame(ref(text)), 1);
        EXPECT_EQ(isTextFrame(ref(empty)), 0);
        EXPECT_EQ(vornaset::isGraphicFrame(ref(empty)), 1);
        EXPECT_EQ(vornaset::isGraphicFrame(ref(text)), 0);
        EXPECT_EQ(isGraphic(ref(picture)), 1);
        EXPECT_EQ(isGraphic(ref(filled)), 0);
        EXPECT_EQ(isGroupFrame(ref(group)), 1);
        EXPECT_EQ(isGroupFrame(ref(text)), 0);
        EXPECT_EQ(isInlineFrame(ref(anchored)), 1);
        EXPECT_EQ(isInlineFrame(ref(empty)), 0);
        EXPECT_EQ(isTextFrame(UIDRef()), 0);
    });
}

TEST_F(MyFrameTest, MembersReadTheFramesOwnData) {
    const Uid empty = pictureFrame();
    const Uid filled = pictureFrame();
    const Uid picture = graphicIn(filled);
    const Uid group = groupOf({pictureFrame()});
    balanced([&] {
        EXPECT_EQ(MyFrame(ref(filled)).isGraphicFrame(), 1);
        EXPECT_EQ(MyFrame(ref(empty)).isGraphicFrame(), 0);  // the service says 1 here
        EXPECT_EQ(MyFrame(ref(picture)).isGraphicFrame(), 0);
        EXPECT_EQ(MyFrame(ref(textFrame(u"a"))).isTextFrame(), 1);
        EXPECT_EQ(MyFrame(ref(textFrame(u"a"))).isGraphicFrame(), 0);
        EXPECT_EQ(MyFrame(ref(group)).isTextFrame(), 0);
        EXPECT_EQ(MyFrame(ref(group)).isGroup(), 1);
        EXPECT_EQ(MyFrame().isTextFrame(), 0);
        EXPECT_EQ(MyFrame().isGraphicFrame(), 0);
        EXPECT_EQ(MyFrame().isGroup(), 0);
    });
}

TEST_F(MyFrameTest, WithoutAHostEveryKindIsNo) {
    InstallHost(nullptr);
    EXPECT_EQ(isTextFrame(ref(1)), 0);
    EXPECT_EQ(isGroupFrame(ref(1)), 0);
    EXPECT_EQ(vornaset::isGraphicFrame(ref(1)), 0);
    EXPECT_EQ(isGraphic(ref(1)), 0);
    EXPECT_EQ(isInlineFrame(ref(1)), 0);
    InstallHost(&border);
}

TEST_F(MyFrameTest, ValidityComparesWithTheNullReferenceAlone) {
    EXPECT_EQ(isValidFrame(UIDRef::gNull), 0);
    EXPECT_EQ(isValidFrame(UIDRef(database, kInvalidUID)), 1);
    EXPECT_EQ(isValidFrame(UIDRef(nullptr, UID(3))), 1);
    EXPECT_EQ(isValidFrame(ref(9999)), 1);
}

// --- Family

TEST_F(MyFrameTest, ParentsAndChildrenAreFound) {
    const Uid frame = pictureFrame();
    const Uid lower = graphicIn(frame);
    const Uid upper = graphicIn(frame);
    balanced([&] {
        EXPECT_EQ(getChildRef(ref(frame)), ref(lower));
        EXPECT_EQ(getParentRef(ref(upper)), ref(frame));
        EXPECT_EQ(MyFrame(ref(upper)).getParent(), UID(frame));
        EXPECT_EQ(MyFrame(ref(frame)).getChild(), MyFrame(ref(lower)));
        EXPECT_THAT(uidsOf(MyFrame(ref(frame)).children()), ElementsAre(lower, upper));
        EXPECT_EQ(MyFrame(ref(frame)).children().GetDataBase(), database);
    });
}

TEST_F(MyFrameTest, MissingFamilyIsEmpty) {
    const Uid empty = pictureFrame();
    const UIDRef story = ref(storyOf(textFrame(u"a")));
    for (const UIDRef& object : {UIDRef(), ref(9999), story, ref(empty)}) EXPECT_EQ(getChildRef(object), UIDRef());
    for (const UIDRef& object : {UIDRef(), ref(9999), story}) EXPECT_EQ(getParentRef(object), UIDRef());
    EXPECT_TRUE(MyFrame().children().IsEmpty());
    EXPECT_TRUE(MyFrame(story).children().IsEmpty());
    EXPECT_EQ(MyFrame().getParent(), kInvalidUID);
    EXPECT_EQ(isValidFrame(getChildRef(UIDRef())), 0);
}

// --- Deleting

TEST_F(MyFrameTest, ListOfFramesIsDeletedAtOnce) {
    const Uid first = pictureFrame();
    const Uid second = pictureFrame();
    const Uid third = pictureFrame();
    UIDList list(ref(first));
    list.Append(UID(third));
    EXPECT_EQ(balanced([&] { return deleteFrames(list); }), kSuccess);
    EXPECT_EQ(document.item(first), nullptr);
    EXPECT_NE(document.item(second), nullptr);
    EXPECT_EQ(document.item(third), nullptr);
}

TEST_F(MyFrameTest, FrameIsDeletedWithWhatItHolds) {
    const Uid frame = pictureFrame();
    const Uid picture = graphicIn(frame);
    EXPECT_EQ(deleteFrame(ref(frame)), kSuccess);
    EXPECT_EQ(document.item(frame), nullptr);
    EXPECT_EQ(document.item(picture), nullptr);
}

TEST_F(MyFrameTest, DeletingTellsTheHostsResult) {
    EXPECT_EQ(deleteFrames(UIDList(database)), kSuccess);
    EXPECT_NE(deleteFrame(ref(9999)), kSuccess);
    InstallHost(nullptr);
    EXPECT_EQ(deleteFrame(ref(9999)), kSuccess);
    InstallHost(&border);
}

// --- Stories

TEST_F(MyFrameTest, FrameTellsItsStoryAndTheTextThatItShows) {
    const Uid frame = textFrame(u"some text");
    layout.shown[frame] = {3, 4};
    int32_t start = -7, end = -7;
    balanced([&] {
        EXPECT_EQ(storyForFrame(ref(frame)), ref(storyOf(frame)));
        EXPECT_EQ(storyForFrame(ref(frame), start, end), ref(storyOf(frame)));
        EXPECT_EQ(MyFrame(ref(frame)).storyRef(), ref(storyOf(frame)));
    });
    EXPECT_EQ(start, 3);
    EXPECT_EQ(end, 7);
}

TEST_F(MyFrameTest, ObjectWithoutAStoryGivesTheNullReference) {
    int32_t start = -7, end = -8;
    for (const UIDRef& object : {UIDRef(), ref(9999), ref(groupOf({pictureFrame()})), documentRef()}) {
        EXPECT_EQ(storyForFrame(object), UIDRef::gNull);
        EXPECT_EQ(storyForFrame(object, start, end), UIDRef::gNull);
    }
    EXPECT_EQ(start, -7);
    EXPECT_EQ(end, -8);
}

TEST_F(MyFrameTest, FramesOfAStoryStandInThreadOrder) {
    const Uid first = textFrame(u"a");
    const Uid second = textFrame(0);
    const Uid third = textFrame(0);
    thread(first, second);
    thread(second, third);
    const UIDRef story = ref(storyOf(first));
    balanced([&] {
        EXPECT_THAT(uidsOf(frameListForStory(story)), ElementsAre(first, second, third));
        EXPECT_EQ(firstFrameForStory(story), ref(first));
        EXPECT_EQ(lastFrameForStory(story), ref(third));
    });
}

TEST_F(MyFrameTest, FrameWithSeveralColumnsCountsOnce) {
    const Uid frame = textFrame(story(u"a"), 3);
    EXPECT_THAT(uidsOf(frameListForStory(ref(storyOf(frame)))), ElementsAre(frame));
    EXPECT_EQ(lastFrameForStory(ref(storyOf(frame))), ref(frame));
}

TEST_F(MyFrameTest, StoryWithoutFramesHasNone) {
    const UIDRef frameless = ref(story(u"a"));
    for (const UIDRef& object : {frameless, UIDRef(), ref(9999)}) {
        EXPECT_TRUE(frameListForStory(object).IsEmpty());
        EXPECT_EQ(firstFrameForStory(object), UIDRef::gNull);
        EXPECT_EQ(lastFrameForStory(object), UIDRef::gNull);
    }
    EXPECT_EQ(frameListForStory(frameless).GetDataBase(), database);
}

TEST_F(MyFrameTest, FrameOfATextIndexIsFound) {
    const Uid first = textFrame(u"0123456789");
    const Uid second = textFrame(0);
    thread(first, second);
    layout.shown[first] = {0, 4};
    layout.shown[second] = {4, 7};
    InterfacePtr<ITextModel> model(ref(storyOf(first)));
    balanced([&] {
        EXPECT_EQ(frameForTextModel(model.get(), 3), ref(first));
        EXPECT_EQ(frameForTextModel(model.get(), 4), ref(second));
    });
    EXPECT_EQ(frameForTextModel(nullptr, 0), UIDRef());
}

// --- Styles

TEST_F(MyFrameTest, StylesAreFoundByNameInTheTableOfTheirKind) {
    const Uid body = style(desk::StyleKind::Paragraph, "Body");
    const Uid bold = style(desk::StyleKind::Character, "Bold");
    balanced([&] {
        EXPECT_EQ(getParaStyle(database, "Body"), UID(body));
        EXPECT_EQ(getCharStyle(database, "Bold"), UID(bold));
        EXPECT_EQ(getCharStyle(database, "Body"), kInvalidUID);
        EXPECT_EQ(getTableStyle(database, "Body"), kInvalidUID);
        EXPECT_EQ(getCellStyle(database, "Body"), kInvalidUID);
        EXPECT_EQ(getStyle(database, IID_ICHARACTERSTYLENAMETABLE, "Bold"), UID(bold));
        EXPECT_EQ(getCharStyle(nullptr, "Bold"), kInvalidUID);
        EXPECT_EQ(getCharStyle(database, nullptr), kInvalidUID);
    });
}

}  // namespace
