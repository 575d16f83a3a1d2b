#include "merge/merge_job.h"

#include <gmock/gmock.h>

#include "merge_fixture.h"
#include "support/exception.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

RowArithmetic arithmetic(int32_t startNr, int32_t offset, int32_t pageCnt) {
    return RowArithmetic(Dictionary::make({{"startNr", startNr}, {"offset", offset}, {"pageCnt", pageCnt}}));
}

// --- Row arithmetic

TEST(RowArithmeticTest, PageNumberIsTheRowInTheSimplestJob) {
    const RowArithmetic simple{Dictionary::make()};
    for (int32_t page : {0, 1, 7, 99999}) EXPECT_EQ(simple.rowOf(page, 1), page);
}

TEST(RowArithmeticTest, WorkedExampleOfTwoPagesAndTwoFrames) {
    const RowArithmetic example = arithmetic(5, 2, 2);
    EXPECT_EQ(example.rowOf(4, 2), 9);
    EXPECT_EQ(example.rowOf(5, 2), 9);
    EXPECT_EQ(example.rowOf(0, 1), 4);
}

TEST(RowArithmeticTest, FourUpTemplateMovesFourRowsOn) {
    const RowArithmetic fourUp = arithmetic(1, 4, 1);
    EXPECT_EQ(fourUp.rowOf(0, 1), 0);
    EXPECT_EQ(fourUp.rowOf(0, 4), 3);
    EXPECT_EQ(fourUp.rowOf(1, 1), 4);
    EXPECT_EQ(fourUp.rowOf(1, 4), 7);
}

TEST(RowArithmeticTest, RowShowsAgainWhereTheOffsetIsSmallerThanTheFrames) {
    const RowArithmetic overlapping = arithmetic(1, 1, 1);
    EXPECT_EQ(overlapping.rowOf(4, 2), overlapping.rowOf(5, 1));
}

TEST(RowArithmeticTest, NumbersMayBeDecimalText) {
    const RowArithmetic text(Dictionary::make({{"startNr", "5"}, {"offset", "2"}, {"pageCnt", "2"}}));
    EXPECT_EQ(text.rowOf(4, 2), 9);
}

TEST(RowArithmeticTest, StartOfZeroGivesARowBeforeTheFirst) {
    EXPECT_EQ(arithmetic(0, 1, 1).rowOf(0, 1), -1);
}

TEST(RowArithmeticTest, ArithmeticWrapsInThirtyTwoBits) {
    EXPECT_EQ(arithmetic(INT32_MAX, 1, 1).rowOf(0, 3), INT32_MIN);
    EXPECT_EQ(arithmetic(1, INT32_MAX, 1).rowOf(2, 1), -2);
    EXPECT_EQ(arithmetic(1, 1, -1).rowOf(INT32_MIN, 1), INT32_MIN);
}

TEST(RowArithmeticTest, DivisionTruncates) {
    EXPECT_EQ(arithmetic(1, 1, 2).rowOf(-3, 1), -1);
}

TEST(RowArithmeticTest, PageCountOfZeroIsAFailure) {
    EXPECT_THROW(arithmetic(1, 1, 0).rowOf(0, 1), Exception);
}

// --- Feedback

class FeedbackTest : public MergeTest {
  protected:
    static void report(ProblemKind kind, int32_t pageNum) {
        MergePlace place;
        place.pageNum = pageNum;
        reportProblem(kind, place);
    }
};

TEST_F(FeedbackTest, PageIsToldFromOneUnderItsKind) {
    report(ProblemKind::Overset, 0);
    EXPECT_EQ(feedback(), "overset=1");
}

TEST_F(FeedbackTest, FirstPageOfAKindStands) {
    report(ProblemKind::Overset, 2);
    report(ProblemKind::Overset, 5);
    EXPECT_EQ(feedback(), "overset=3");
}

TEST_F(FeedbackTest, OtherKindWipesTheEarlierOneWhichMayThenReportAgain) {
    report(ProblemKind::Overset, 0);
    report(ProblemKind::MissingImage, 1);
    EXPECT_EQ(feedback(), "missingImg=2");
    report(ProblemKind::MissingImage, 4);
    EXPECT_EQ(feedback(), "missingImg=2");
    report(ProblemKind::Overset, 2);
    EXPECT_EQ(feedback(), "overset=3");
}

TEST_F(FeedbackTest, ReportWipesForeignTypesToo) {
    pasteboard().setString("x", "something");
    report(ProblemKind::Overset, 0);
    EXPECT_EQ(feedback(), "overset=1");
}

TEST_F(FeedbackTest, ObserverHearsEveryReport) {
    report(ProblemKind::Overset, 2);
    report(ProblemKind::Overset, 5);
    report(ProblemKind::MissingImage, 5);
    ASSERT_EQ(problems.size(), 3u);
    EXPECT_EQ(problems[1].second.pageNum, 5);
    EXPECT_EQ(problems[2].first, ProblemKind::MissingImage);
    EXPECT_STREQ(nameOf(ProblemKind::Overset), "overset");
    EXPECT_STREQ(nameOf(ProblemKind::MissingImage), "missingImg");
}

TEST_F(FeedbackTest, SettingAnObserverGivesTheFormerOne) {
    EXPECT_EQ(setMergeObserver(nullptr), this);
    report(ProblemKind::Overset, 2);
    EXPECT_EQ(feedback(), "overset=3");
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(setMergeObserver(this), nullptr);
}

// --- Taking the job

class MergeJobTest : public MergeTest {};

TEST_F(MergeJobTest, JobIsTakenAsItIsAndThePasteboardCleared) {
    const Dictionary job = jobOf(rows(1));
    post(job);
    pasteboard().setString("x", "something");
    EXPECT_EQ(setupFrameProcessing(documentRef()), 1);
    EXPECT_TRUE(gMergeJob.isSameObject(job));
    EXPECT_EQ(feedback(), "");
}

TEST_F(MergeJobTest, PasteboardIsClearedAlsoWithoutAJob) {
    pasteboard().setString("3", "overset");
    EXPECT_EQ(setupFrameProcessing(documentRef()), 0);
    EXPECT_TRUE(gMergeJob.isNull());
    EXPECT_EQ(feedback(), "");
}

TEST_F(MergeJobTest, PropertyListThatIsNoDictionaryIsNoJob) {
    pasteboard().setPropertyList(rows(1), "Vornaset");
    EXPECT_EQ(setupFrameProcessing(documentRef()), 0);
    EXPECT_TRUE(gMergeJob.isNull());
}

TEST_F(MergeJobTest, JobThatCannotBeChangedIsCopied) {
    numberedFrame(u"<<Name>>", 1);
    post(Dictionary::make({{"rows", rows(1)}}));
    EXPECT_EQ(setupFrameProcessing(documentRef()), 1);
    EXPECT_EQ(uidsUnder(gMergeJob, "srcStory").size(), 1u);
}

TEST_F(MergeJobTest, SetupWritesDatabaseAndPageCountAsText) {
    addPage();
    addPage();
    const Dictionary job = jobOf(rows(1));
    balanced([&] { EXPECT_EQ(setupFrameProcessing(documentRef(), job), 1); });
    EXPECT_EQ(job.valueForKey("pageCnt"), Value(u"3"));
    EXPECT_EQ(job.valueForKey("dataBase"), Value(Number(reinterpret_cast<intptr_t>(database)).text()));
}

TEST_F(MergeJobTest, NullJobIsNoRun) {
    EXPECT_EQ(setupFrameProcessing(documentRef(), Dictionary()), 0);
}

TEST_F(MergeJobTest, SetupOfADocumentWithoutNumbersLeavesTheListsAbsent) {
    textFrame(u"<<Name>>");
    pictureFrame();
    const Dictionary job = jobOf(rows(1));
    EXPECT_EQ(setupFrameProcessing(documentRef(), job), 1);
    for (const char* key : {"links", "srcStory", "dstStory"}) EXPECT_FALSE(job.contains(key)) << key;
    EXPECT_EQ(document.stories.size(), 1u);
}

TEST_F(MergeJobTest, CompanionsKeysStayAsTheyAre) {
    numberedFrame(u"<<Name>>", 1);
    const Array data = rows(2);
    const Dictionary job = Dictionary::makeMutable(
        {{"rows", data}, {"startNr", "1"}, {"offset", 1}, {"rmvEmptyLines", 1}, {"barcode", "/tool"}});
    setupFrameProcessing(documentRef(), job);
    EXPECT_TRUE(job.valueForKey("rows").array().isSameObject(data));
    EXPECT_EQ(job.valueForKey("startNr"), Value(u"1"));
    EXPECT_EQ(job.valueForKey("offset"), Value(1));
    EXPECT_EQ(job.valueForKey("barcode"), Value(u"/tool"));
}

// --- The gate

TEST_F(MergeJobTest, GateLetsOnlyTheFirstPageOfASetThrough) {
    addPage();
    addPage();
    const Uid frame = numberedFrame(u"<<Name>>", 1);
    gMergeJob = jobOf(rows(3));
    setupFrameProcessing(documentRef(), gMergeJob);
    std::vector<std::string> shown;
    for (int32_t pageNum = 0; pageNum < 9; ++pageNum) {
        document.modified = false;
        balanced([&] { processFrames(database, pageNum); });
        EXPECT_EQ(document.modified, pageNum % 3 == 0) << pageNum;
        shown.push_back(String(textIn(frame)).utf8());
    }
    EXPECT_THAT(shown, ElementsAre("r0", "r0", "r0", "r1", "r1", "r1", "r2", "r2", "r2"));
}

TEST_F(MergeJobTest, PageWithoutAnOpenRunIsAFailure) {
    try {
        processFrames(database, 0);
        FAIL() << "the page count is 0";
    } catch (const std::exception& failure) {
        EXPECT_NE(std::string(failure.what()).find("page count is 0"), std::string::npos);
    }
}

TEST_F(MergeJobTest, EndLetsTheJobGo) {
    gMergeJob = jobOf(rows(1));
    cleanupFrameProcessing();
    EXPECT_TRUE(gMergeJob.isNull());
}

}  // namespace
