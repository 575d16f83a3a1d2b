// The loop over the image slots: which file is placed where, and what comes of failures.

#include <gmock/gmock.h>

#include "image_slots_fixture.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

// --- Which frames are slots

TEST_F(ImageSlotsTest, CollectingAddsSlotsToTheListAndGoesOnBehindEveryFrame) {
    const Uid found = imageSlot(2), without = imageSlot(0), text = numberedFrame(u"text", 1), filled = imageSlot(1);
    graphicIn(filled);
    Array known = Array::makeMutable();
    known.add(Number(4711));
    Dictionary job = Dictionary::makeMutable({{"links", known}});
    for (const Uid uid : {found, without, text, filled}) {
        UIDRef frame = ref(uid);
        EXPECT_EQ(collectImageSlot(frame, &job), 1);
        EXPECT_EQ(frame, ref(uid));
    }
    UIDRef none;
    EXPECT_EQ(collectImageSlot(none, &job), 1);
    EXPECT_THAT(uidsUnder(job, "links"), ElementsAre(4711, found));
}

// --- The loop over the slots

TEST_F(ImageSlotsTest, FileIsPlacedInTheFrameAndFittedWhateverTheBarcodeProgram) {
    const std::string photo = file("photo.jpg");
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({photo}));
    useTool(job);
    fill(job);
    ASSERT_EQ(placed(frame), photo);
    const std::string item = std::to_string(document.item(frame)->children.front());
    EXPECT_THAT(host->calls,
                ElementsAre("make import", "import (file 0 0 0 0 0)",
                            "put " + item + " into " + std::to_string(frame) + " -1", "fit content to frame " + item));
    EXPECT_THAT(toolCalls, IsEmpty());
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(feedback(), "");
}

TEST_F(ImageSlotsTest, FirstSlotWhoseRowIsPastTheEndEndsTheLoop) {
    const std::string photo = file("photo.jpg");
    // Walked from the top of the stacking order down, so the slots stand in "links" in the reverse order of making.
    const Uid third = slot(6);
    const Uid second = slot(8);
    const Uid first = slot(7);
    const Dictionary job = jobWith(pictures({photo, photo, photo, photo, photo, photo}));
    ASSERT_THAT(uidsUnder(job, "links"), ElementsAre(first, second, third));
    fill(job);
    EXPECT_EQ(placed(first), "");
    EXPECT_EQ(placed(second), "");
    EXPECT_EQ(placed(third), "") << "row 5 exists, but the loop has ended";
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(ImageSlotsTest, SlotsBeforeTheEndAreFilled) {
    const std::string photo = file("photo.jpg");
    const Uid second = slot(2);
    const Uid first = slot(1);
    fill(jobWith(pictures({photo})));
    EXPECT_EQ(placed(first), photo);
    EXPECT_EQ(placed(second), "");
}

TEST_F(ImageSlotsTest, LoopGoesOnBehindAMissingFileAndOneThatCannotBeImported) {
    const std::string photo = file("photo.jpg"), broken = file("broken.jpg");
    host->unimportable = {broken};
    const Uid third = slot(3);
    slot(2);
    slot(1);
    fill(jobWith(pictures({path("missing.jpg"), broken, photo})));
    EXPECT_EQ(placed(third), photo);
    EXPECT_THAT(kinds(), ElementsAre("missingImg", "importFailed"));
}

TEST_F(ImageSlotsTest, FailureThatEndsTheEventLeavesTheSlotsBeforeItFilledAndThoseBehindItEmpty) {
    const std::string photo = file("photo.jpg");
    const Uid third = slot(1), second = slot(1, "Elsewhere"), first = slot(1);
    const Dictionary job = jobWith(pictures({photo, photo}));
    useTool(job);
    EXPECT_THROW(fill(job), InvalidArgumentException);
    EXPECT_EQ(placed(first), photo);
    EXPECT_EQ(placed(second), "");
    EXPECT_EQ(placed(third), "");
    setColNameForFrame(ref(second), "Picture");
    fill(job, 1);
    for (const Uid frame : {first, second, third}) EXPECT_EQ(document.item(frame)->children.size(), 1u);
}

TEST_F(ImageSlotsTest, NumberAndColumnAreReadAtEachFill) {
    const std::string first = file("first.jpg"), second = file("second.jpg");
    const Uid frame = slot(1);
    Array rows = Array::makeMutable();
    for (const std::string& cell : {first, second}) {
        rows.add(Dictionary::make({{"Picture", u"nowhere"}, {"Photo", String(cell.c_str())}}));
    }
    const Dictionary job = jobWith(rows);
    setColNameForFrame(ref(frame), "Photo");
    fill(job);
    EXPECT_EQ(placed(frame), first);
    setFrameNumberForFrame(ref(frame), 2);
    fill(job);
    EXPECT_EQ(placed(frame), second);
}

TEST_F(ImageSlotsTest, NegativeRowEndsTheLoop) {
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({file("photo.jpg")}));
    setIntegerForKey(job, "startNr", 0);
    fill(job);
    EXPECT_EQ(placed(frame), "");
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(ImageSlotsTest, JobWithoutRowsLeavesSlotsEmpty) {
    const Uid frame = slot(1);
    Dictionary job = Dictionary::makeMutable();
    setIntegerForKey(job, "pageCnt", 1);
    runSetupPasses(documentRef(), job);
    fill(job);
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "");
}

TEST_F(ImageSlotsTest, SlotWithoutAColumnStaysEmptyAndStopsNothing) {
    const std::string photo = file("photo.jpg");
    const Uid behind = slot(1);
    const Uid without = imageSlot(9);
    fill(jobWith(pictures({photo})));
    EXPECT_EQ(placed(without), "");
    EXPECT_EQ(placed(behind), photo);
}

TEST_F(ImageSlotsTest, NextFillTakesTheOldPictureOutFirst) {
    const std::string first = file("first.jpg"), second = file("second.jpg");
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({first, second}));
    fill(job, 0);
    fill(job, 1);
    EXPECT_EQ(placed(frame), second);
    EXPECT_EQ(document.item(frame)->children.size(), 1u);
}

TEST_F(ImageSlotsTest, SlotThatGetsNoNewPictureStaysEmpty) {
    const std::string photo = file("photo.jpg");
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({photo, path("missing.jpg")}));
    fill(job, 0);
    fill(job, 1);
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "missingImg=2");
}

TEST_F(ImageSlotsTest, RowFollowsPageSetStartAndOffset) {
    std::vector<std::string> cells;
    for (int row = 0; row < 10; ++row) cells.push_back(file("p" + std::to_string(row) + ".jpg"));
    const Uid frame = slot(2);
    const Dictionary job = jobWith(pictures(cells));
    setIntegerForKey(job, "startNr", 5);
    setIntegerForKey(job, "offset", 2);
    setIntegerForKey(job, "pageCnt", 2);
    fill(job, 4);
    EXPECT_EQ(placed(frame), cells[9]);
}

// --- Cells

TEST_F(ImageSlotsTest, PathInColonFormIsTakenToItsPosixPathFirst) {
    fs::create_directory(folder / "Images");
    const std::string picture = file("Images/a.tif");
    setVolumes({{u"Macintosh HD", String(folder.c_str())}});
    const Uid frame = slot(1);
    fill(jobWith(pictures({"Macintosh HD:Images:a.tif"})));
    EXPECT_EQ(placed(frame), picture);
}

TEST_F(ImageSlotsTest, MissingFileWithoutABarcodeProgramIsReported) {
    const Uid frame = slot(1);
    fill(jobWith(pictures({"4006381333931"})));
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "missingImg=1");
    ASSERT_THAT(kinds(), ElementsAre("missingImg"));
    const MergePlace& place = problems[0].second;
    EXPECT_EQ(place.row, 0);
    EXPECT_EQ(place.frame, ref(frame));
    EXPECT_EQ(place.column, u"Picture");
    EXPECT_EQ(place.path, u"4006381333931");
}

TEST_F(ImageSlotsTest, EmptyCellWithoutABarcodeProgramIsReported) {
    slot(1);
    fill(jobWith(pictures({""})));
    EXPECT_EQ(feedback(), "missingImg=1");
}

TEST_F(ImageSlotsTest, RowWithoutTheColumnAndWithoutABarcodeProgramIsReported) {
    slot(1, "Elsewhere");
    fill(jobWith(pictures({file("photo.jpg")})));
    EXPECT_EQ(feedback(), "missingImg=1");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_TRUE(problems[0].second.path.isNull());
}

TEST_F(ImageSlotsTest, RowWithoutTheColumnEndsTheEventWhereThereIsABarcodeProgram) {
    slot(1, "Elsewhere");
    const Dictionary job = jobWith(pictures({file("photo.jpg")}));
    useTool(job);
    try {
        fill(job);
        FAIL() << "nothing was thrown";
    } catch (const InvalidArgumentException& failure) {
        EXPECT_THAT(failure.reason(), HasSubstr("row 1, column \"Elsewhere\""));
    }
    EXPECT_THAT(toolCalls, IsEmpty());
}

TEST_F(ImageSlotsTest, CellThatIsNoTextEndsTheEvent) {
    slot(1);
    Array rows = Array::makeMutable();
    rows.add(Dictionary::make({{"Picture", Number(int64_t{4006381333931})}}));
    const Dictionary job = jobWith(rows);
    try {
        fill(job);
        FAIL() << "nothing was thrown";
    } catch (const UnrecognizedOperation& failure) {
        EXPECT_THAT(failure.reason(), HasSubstr("row 1, column \"Picture\""));
    }
}

TEST_F(ImageSlotsTest, FolderCountsAsThereAndItsImportFails) {
    const Uid frame = slot(1);
    fill(jobWith(pictures({folder.string()})));
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "");
    ASSERT_THAT(kinds(), ElementsAre("importFailed"));
    EXPECT_EQ(problems[0].second.path, String(folder.c_str()));
    EXPECT_EQ(problems[0].second.column, u"Picture");
    EXPECT_EQ(problems[0].second.frame, ref(frame));
}

TEST_F(ImageSlotsTest, FileThatCannotBeImportedLeavesTheSlotEmptyAndTellsTheObserverAlone) {
    const std::string broken = file("broken.jpg");
    host->unimportable = {broken};
    const Uid frame = slot(1);
    fill(jobWith(pictures({broken})));
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "");
    EXPECT_THAT(kinds(), ElementsAre("importFailed"));
}

TEST_F(ImageSlotsTest, MissingPictureAfterAnOversetStoryLeavesMissingImageAlone) {
    const Uid text = numberedFrame(u"long", 1);
    slot(1);
    layout.overset.insert(storyOf(text));
    fill(jobWith(pictures({"nothing"})));
    EXPECT_EQ(feedback(), "missingImg=1");
    EXPECT_THAT(kinds(), ElementsAre("overset", "missingImg"));
}

}  // namespace
