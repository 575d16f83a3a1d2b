#include "merge/story_staging.h"

#include <gmock/gmock.h>

#include "merge_fixture.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class StoryStagingTest : public MergeTest {
  protected:
    /// Stages every story of the document.
    Dictionary staged() {
        Dictionary job = Dictionary::makeMutable();
        balanced([&] { EXPECT_EQ(EnumStories(documentRef(), stageStory, &job), 1); });
        return job;
    }
};

TEST_F(StoryStagingTest, NumberedStoryGetsAShadowThatNoFrameShows) {
    const Uid frame = numberedFrame(u"Dear <<Name>>", 1);
    textFrame(u"static");
    const Dictionary job = staged();
    EXPECT_THAT(uidsUnder(job, "srcStory"), ElementsAre(storyOf(frame)));
    const std::vector<Uid> shadows = uidsUnder(job, "dstStory");
    ASSERT_EQ(shadows.size(), 1u);
    EXPECT_EQ(document.stories.size(), 3u);
    EXPECT_EQ(textOf(shadows[0]), u"Dear <<Name>>\r");
    EXPECT_THAT(document.framesOfStory(shadows[0]), IsEmpty());
    EXPECT_THAT(document.framesOfStory(storyOf(frame)), ElementsAre(frame));
}

TEST_F(StoryStagingTest, DocumentWithoutNumberedStoriesStagesNothing) {
    textFrame(u"static");
    story(u"frameless");
    numberedFrame(u"zero", 0);
    numberedFrame(u"negative", -1);
    const Dictionary job = staged();
    EXPECT_EQ(job.count(), 0u);
    restoreStories(database, job);
    EXPECT_EQ(document.stories.size(), 4u);
}

TEST_F(StoryStagingTest, FirstFrameOfAThreadDecides) {
    const Uid first = numberedFrame(u"a", 2);
    const Uid second = textFrame(0);
    thread(first, second);
    const Uid unnumbered = textFrame(u"b");
    const Uid numbered = textFrame(0);
    thread(unnumbered, numbered);
    setFrameNumberForFrame(ref(numbered), 3);
    EXPECT_THAT(uidsUnder(staged(), "srcStory"), ElementsAre(storyOf(first)));
}

TEST_F(StoryStagingTest, ShadowsAreNotStagedAgain) {
    numberedFrame(u"a", 1);
    Dictionary job = staged();
    const Uid shadow = uidsUnder(job, "dstStory").front();
    InterfacePtr<ITextModel> model(ref(shadow));
    EXPECT_EQ(stageStory(model.get(), &job), 1);
    EXPECT_EQ(uidsUnder(job, "srcStory").size(), 1u);
}

TEST_F(StoryStagingTest, EachRunMakesFurtherShadows) {
    numberedFrame(u"a", 1);
    staged();
    staged();
    EXPECT_EQ(document.stories.size(), 3u);
}

TEST_F(StoryStagingTest, RestoringGivesTextAndFormattingBack) {
    const Uid bold = style(desk::StyleKind::Character, "Bold");
    const Uid frame = numberedFrame(u"Dear <<Name>>", 1);
    {
        InterfacePtr<ITextModel> model(storyRef(frame));
        model->ApplyStyle(5, 8, UID(bold), AttributeStrand::Character, true, true);
    }
    const Dictionary job = staged();
    const desk::StoryContent before = document.story(storyOf(frame))->content();
    {
        InterfacePtr<ITextModel> model(storyRef(frame));
        model->Delete(0, 8);
        model->Insert(0, WideString(u"changed"));
    }
    balanced([&] { restoreStories(database, job); });
    EXPECT_EQ(document.story(storyOf(frame))->content(), before);
    EXPECT_THAT(document.framesOfStory(storyOf(frame)), ElementsAre(frame));
    EXPECT_EQ(characterStyleAt(storyOf(frame), 5), "Bold");
}

TEST_F(StoryStagingTest, RestoringTwiceGivesTheSame) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    const Dictionary job = staged();
    restoreStories(database, job);
    restoreStories(database, job);
    EXPECT_EQ(textIn(frame), u"<<Name>>");
}

TEST_F(StoryStagingTest, NewStoryIsEmptyAndInTheSameDatabase) {
    const UIDRef made = balanced([&] { return createStory(ref(pictureFrame())); });
    EXPECT_EQ(made.GetDataBase(), database);
    ASSERT_NE(document.story(made.GetUID().Get()), nullptr);
    EXPECT_EQ(textOf(made.GetUID().Get()), u"\r");
    EXPECT_EQ(createStory(UIDRef()), UIDRef());
}

TEST_F(StoryStagingTest, CopyThatTheHostCannotMakeChangesNothing) {
    const Uid frame = textFrame(u"a");
    balanced([&] {
        copyStory(UIDRef(), storyRef(frame));
        copyStory(storyRef(frame), ref(9999));
        copyStory(ref(9999), storyRef(frame));
    });
    InstallHost(nullptr);
    copyStory(storyRef(frame), storyRef(frame));
    EXPECT_EQ(createStory(storyRef(frame)).GetUID(), kInvalidUID);
    InstallHost(&border);
    EXPECT_EQ(textIn(frame), u"a");
}

TEST_F(StoryStagingTest, DeletedStoryIsGone) {
    const Uid made = story(u"a");
    balanced([&] {
        deleteStory(ref(made));
        deleteStory(ref(9999));
    });
    EXPECT_EQ(document.story(made), nullptr);
    InstallHost(nullptr);
    deleteStory(ref(made));
    InstallHost(&border);
}

}  // namespace
