#include "merge/page_fill.h"

#include <gmock/gmock.h>

#include "merge/image_slots.h"
#include "merge_fixture.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class PageFillTest : public MergeTest {
  protected:
    Dictionary begin(const Array& data) {
        Dictionary job = jobOf(data);
        setupFrameProcessing(documentRef(), job);
        return job;
    }
    void fill(const Dictionary& job, int32_t pageNum) {
        balanced([&] { processFrames(database, job, pageNum); });
    }
};

// --- Setup

TEST_F(PageFillTest, NumberedEmptyPictureFramesAreTheImageSlots) {
    const Uid slot = imageSlot(1);
    const Uid filled = imageSlot(1);
    graphicIn(filled);
    pictureFrame();
    imageSlot(0);
    imageSlot(-1);
    numberedFrame(u"text", 1);
    const Uid anchored = anchorIn(storyOf(textFrame(u"a")), 0);
    setFrameNumberForFrame(ref(anchored), 1);
    const Uid second = imageSlot(2);
    EXPECT_THAT(uidsUnder(begin(rows(1)), "links"), ElementsAre(second, slot));
}

TEST_F(PageFillTest, SlotWithoutAColumnNameIsListedToo) {
    const Uid slot = imageSlot(1);
    EXPECT_EQ(colNameForFrame(ref(slot)), u"");
    EXPECT_THAT(uidsUnder(begin(rows(1)), "links"), ElementsAre(slot));
}

// --- Filling

TEST_F(PageFillTest, EachFrameShowsItsRow) {
    const Uid first = numberedFrame(u"Dear <<Name>>,", 1);
    const Uid second = numberedFrame(u"and <<Name>>.", 2);
    const Uid untouched = textFrame(u"<<Name>>");
    Dictionary job = begin(rows(4));
    job.setValue("offset", 2);
    fill(job, 0);
    EXPECT_EQ(textIn(first), u"Dear r0,");
    EXPECT_EQ(textIn(second), u"and r1.");
    fill(job, 1);
    EXPECT_EQ(textIn(first), u"Dear r2,");
    EXPECT_EQ(textIn(second), u"and r3.");
    EXPECT_EQ(textIn(untouched), u"<<Name>>");
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(PageFillTest, FramesPastTheLastRowKeepTheirPlaceholders) {
    const Uid first = numberedFrame(u"<<Name>>", 1);
    const Uid second = numberedFrame(u"<<Name>>", 2);
    const Uid third = numberedFrame(u"<<Name>>", 3);
    Dictionary job = begin(rows(7));
    job.setValue("offset", 3);
    fill(job, 2);
    EXPECT_EQ(textIn(first), u"r6");
    EXPECT_EQ(textIn(second), u"<<Name>>");
    EXPECT_EQ(textIn(third), u"<<Name>>");
}

TEST_F(PageFillTest, RowBeforeTheFirstCountsAsPastTheEnd) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(2));
    job.setValue("startNr", 0);
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"<<Name>>");
    fill(job, 1);
    EXPECT_EQ(textIn(frame), u"r0");
}

TEST_F(PageFillTest, StartNumberMovesTheFirstRow) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(5));
    job.setValue("startNr", "3");
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"r2");
}

TEST_F(PageFillTest, JobWithoutRowsLeavesTheStoriesAsRestored) {
    const Uid frame = numberedFrame(u"Dear <<Name>>\r\r", 1);
    for (const Value& wrong : {Value(), Value(u"no rows"), Value(Array::make({Dictionary::make({{"Name", "x"}})}))}) {
        Dictionary job = Dictionary::makeMutable();
        if (!wrong.isNull()) job.setValue("rows", wrong);
        setupFrameProcessing(documentRef(), job);
        fill(job, 0);
        EXPECT_EQ(textIn(frame), u"Dear <<Name>>\r\r");
    }
}

TEST_F(PageFillTest, RowsThatReadThemselvesOnDemandFillToo) {
    struct Source : ArraySource {
        size_t count() const override { return 100000; }
        Value objectAt(size_t index) const override { return Dictionary::make({{"Name", Number(index)}}); }
    };
    const Uid frame = numberedFrame(u"No. <<Name>>", 1);
    Dictionary job = begin(Array::view(std::make_shared<Source>()));
    fill(job, 99999);
    EXPECT_EQ(textIn(frame), u"No. 99999");
    fill(job, 100000);
    EXPECT_EQ(textIn(frame), u"No. <<Name>>");
}

TEST_F(PageFillTest, EmptyLinesGoOnlyWhenTheJobSaysSo) {
    const Uid frame = numberedFrame(u"a\r<<Title>>\rb", 1);
    Dictionary job = begin(rows(1));
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"a\r\rb");
    job.setValue("rmvEmptyLines", "1");
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"a\rb");
    job.setValue("rmvEmptyLines", 257);
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"a\rb");
    job.setValue("rmvEmptyLines", 2);
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"a\r\rb");
}

TEST_F(PageFillTest, FrameNumberIsReadAtEachFill) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(3));
    setFrameNumberForFrame(ref(frame), 3);
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"r2");
}

TEST_F(PageFillTest, StoryWithoutPlaceholdersIsRestoredAndAskedAllTheSame) {
    const Uid frame = numberedFrame(u"no placeholder", 1);
    Dictionary job = begin(rows(2));
    document.story(storyOf(frame))->insert(0, u"changed: ");
    layout.overset.insert(storyOf(frame));
    fill(job, 0);
    EXPECT_EQ(textIn(frame), u"no placeholder");
    EXPECT_EQ(problems.size(), 1u);
    fill(job, 1);
    EXPECT_EQ(problems.size(), 2u);
}

TEST_F(PageFillTest, FillOfADocumentWithoutNumbersChangesNothing) {
    textFrame(u"<<Name>>");
    pictureFrame();
    Dictionary job = begin(rows(2));
    document.modified = false;
    fill(job, 0);
    EXPECT_FALSE(document.modified);
}

// --- Overset

TEST_F(PageFillTest, OversetStoryIsReportedWithItsPlace) {
    const Uid fits = numberedFrame(u"<<Name>>", 1);
    const Uid bursts = numberedFrame(u"longer: <<Name>>", 2);
    addPage();
    Dictionary job = begin(rows(4));
    job.setValue("offset", 2);
    layout.roomForText = 5;
    fill(job, 2);
    EXPECT_EQ(textIn(fits), u"r2");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].first, ProblemKind::Overset);
    EXPECT_EQ(problems[0].second.pageNum, 2);
    EXPECT_EQ(problems[0].second.row, 3);
    EXPECT_EQ(problems[0].second.frame, ref(bursts));
    EXPECT_EQ(problems[0].second.story, storyRef(bursts));
    EXPECT_EQ(feedback(), "overset=3");
}

TEST_F(PageFillTest, StoryLeftAsRestoredIsAskedToo) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(1));
    layout.overset.insert(storyOf(frame));
    fill(job, 5);
    EXPECT_EQ(textIn(frame), u"<<Name>>");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].second.row, 5);
}

TEST_F(PageFillTest, StoryThatCannotBeAskedCountsAsNotOverset) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(1));
    document.removeStory(storyOf(frame));
    fill(job, 0);
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(PageFillTest, FirstOversetPageStandsAndTheObserverHearsAll) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(9));
    for (int32_t pageNum = 0; pageNum < 7; ++pageNum) {
        layout.overset.clear();
        if (pageNum == 2 || pageNum == 5) layout.overset.insert(storyOf(frame));
        fill(job, pageNum);
    }
    EXPECT_EQ(feedback(), "overset=3");
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems[1].second.pageNum, 5);
}

// --- Rows that run out

TEST_F(PageFillTest, TooFewRowsTellTheObserverAndLeaveTheFill) {
    const Uid before = numberedFrame(u"<<Name>>", 1);
    const Uid walking = numberedFrame(u"<<Name#>> <<Name#>> <<Name>>", 1);
    const Uid after = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(3));
    fill(job, 0);
    EXPECT_EQ(textIn(walking), u"r0 r1 r2");
    EXPECT_THROW(processFrames(database, job, 1), RangeException);
    EXPECT_EQ(border.outstandingReferences(), 0);
    ASSERT_EQ(rangeFailures.size(), 1u);
    EXPECT_EQ(rangeFailures[0].story, storyRef(walking));
    EXPECT_EQ(rangeFailures[0].frame, ref(walking));
    EXPECT_EQ(rangeFailures[0].row, 1);
    EXPECT_EQ(rangeFailures[0].pageNum, 1);
    EXPECT_FALSE(reason.empty());
    EXPECT_EQ(textIn(before), u"r1");
    EXPECT_EQ(textIn(walking), u"<<Name#>> <<Name#>> <<Name>>");
    EXPECT_EQ(textIn(after), u"<<Name>>");
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(feedback(), "");
}

TEST_F(PageFillTest, TooFewRowsFailWithoutAnObserverToo) {
    numberedFrame(u"<<Name#>>", 1);
    Dictionary job = begin(rows(1));
    setMergeObserver(nullptr);
    EXPECT_THROW(processFrames(database, job, 0), RangeException);
    setMergeObserver(this);
}

// --- Image slots

TEST_F(PageFillTest, PicturesOfTheLastFillGoBeforeTheNext) {
    const Uid slot = imageSlot(1);
    const Uid empty = imageSlot(1);
    Dictionary job = begin(rows(2));
    const Uid lower = graphicIn(slot);
    const Uid upper = graphicIn(slot);
    fill(job, 0);
    EXPECT_EQ(document.item(lower), nullptr);
    EXPECT_NE(document.item(upper), nullptr);  // the first child alone is the last fill's
    EXPECT_NE(document.item(slot), nullptr);
    EXPECT_NE(document.item(empty), nullptr);
    fill(job, 1);
    EXPECT_EQ(document.item(upper), nullptr);
    EXPECT_TRUE(isEmptyPictureFrame(ref(slot)));
}

TEST_F(PageFillTest, SlotThatIsGoneIsPassedOver) {
    const Uid slot = imageSlot(1);
    Dictionary job = begin(rows(1));
    document.removeItem(slot);
    fill(job, 0);
}

TEST_F(PageFillTest, PicturesComeAfterAllTexts) {
    const Uid text = numberedFrame(u"<<Name>>", 1);
    const Uid slot = imageSlot(1);
    setColNameForFrame(ref(slot), "Name");
    layout.overset.insert(storyOf(text));
    Dictionary job = begin(rows(1));
    fill(job, 0);
    EXPECT_EQ(textIn(text), u"r0");
    EXPECT_EQ(feedback(), "missingImg=1");
}

// --- The database of the run

TEST_F(PageFillTest, NullDatabaseMeansThatOfTheOpenRun) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(1));
    gMergeJob = job;
    balanced([&] { processFrames(nullptr, job, 0); });
    EXPECT_EQ(textIn(frame), u"r0");
}

TEST_F(PageFillTest, NullDatabaseWithoutAnOpenRunFillsNothing) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    Dictionary job = begin(rows(1));
    balanced([&] { processFrames(nullptr, job, 0); });
    EXPECT_EQ(textIn(frame), u"<<Name>>");
    gMergeJob = Dictionary::makeMutable({{"dataBase", "4711"}});
    balanced([&] { processFrames(nullptr, job, 0); });
    EXPECT_EQ(textIn(frame), u"<<Name>>");
}

// --- Tidying

TEST_F(PageFillTest, FullTidyingDeletesTheTemplateStoriesAndKeepsTheShadows) {
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    const Uid staticStory = storyOf(textFrame(u"static"));
    const Uid slot = imageSlot(1);
    const Uid source = storyOf(frame);
    Dictionary job = begin(rows(1));
    const Uid shadow = uidsUnder(job, "dstStory").front();
    fill(job, 0);
    const Uid picture = graphicIn(slot);
    balanced([&] { cleanupFrameProcessing(database, job); });
    EXPECT_EQ(document.story(source), nullptr);
    EXPECT_NE(document.story(shadow), nullptr);
    EXPECT_NE(document.story(staticStory), nullptr);
    EXPECT_EQ(document.item(picture), nullptr);
    EXPECT_NE(document.item(slot), nullptr);
}

}  // namespace
