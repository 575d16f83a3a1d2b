// One file into one frame: which page of it, what is asked of the host and in which order.

#include <gmock/gmock.h>

#include "image_slots_fixture.h"

using namespace vornaset;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

using PdfPagesTest = ImageSlotsTest;

// --- Pages of a PDF

TEST_F(PdfPagesTest, RowNTakesPageNPlusOneOfAPdfOfSeveralPages) {
    const std::string brochure = pdf("brochure.pdf", 5);
    slot(1);
    const Dictionary job = jobWith(pictures(std::vector<std::string>(8, brochure)));
    fill(job, 2);
    EXPECT_EQ(host->workspace.page, 3);
    EXPECT_THAT(host->takeCalls(), Contains("page 3"));
    fill(job, 7);
    EXPECT_EQ(host->workspace.page, 8) << "nothing tests whether that page exists";
}

TEST_F(PdfPagesTest, PageCountsFromTheRowsPlaceInAllTheDataAndNotFromTheFirstRecord) {
    const std::string brochure = pdf("brochure.pdf", 5);
    slot(1);
    const Dictionary job = jobWith(pictures(std::vector<std::string>(8, brochure)));
    setIntegerForKey(job, "startNr", 3);
    fill(job, 0);
    EXPECT_EQ(host->workspace.page, 3);
}

TEST_F(PdfPagesTest, PdfOfOnePageIsPlacedAsItIsInEveryRow) {
    const std::string single = pdf("single.pdf", 1);
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({single, single}));
    fill(job, 0);
    fill(job, 1);
    EXPECT_EQ(placed(frame), single);
    EXPECT_THAT(host->calls, Not(Contains(HasSubstr("page "))));
}

TEST_F(PdfPagesTest, PageSettingComesBeforeTheImportAndIsNeverPutBack) {
    const std::string brochure = pdf("brochure.PDF", 2), photo = file("photo.jpg");
    slot(1);
    const Dictionary job = jobWith(pictures({photo, brochure, photo}));
    fill(job, 1);
    ASSERT_GE(host->calls.size(), 2u);
    EXPECT_EQ(host->calls[0], "page 2");
    EXPECT_EQ(host->calls[1], "make import");
    fill(job, 2);
    EXPECT_EQ(host->workspace.page, 2);
}

TEST_F(PdfPagesTest, UnreadablePdfLeavesThePageSettingAlone) {
    slot(1);
    fill(jobWith(pictures({file("broken.pdf", "no PDF at all")})));
    EXPECT_THAT(host->calls, Not(Contains(HasSubstr("page "))));
}

TEST_F(PdfPagesTest, OtherFilesAreNotOpenedForTheirPages) {
    const std::string named = pdf("pages.dat", 3);
    slot(1);
    fill(jobWith(pictures({named})));
    EXPECT_THAT(host->calls, Not(Contains(HasSubstr("page "))));
}

// --- Placing one file

class PlacingTest : public ImageSlotsTest {
  protected:
    void SetUp() override {
        ImageSlotsTest::SetUp();
        frame = pictureFrame();
        reference = ref(frame);
        photo = String(file("photo.jpg").c_str());
    }
    Uid frame = 0;
    UIDRef reference;
    String photo;
};

TEST_F(PlacingTest, SuccessChangesTheReferenceToTheItem) {
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), 0);
    EXPECT_EQ(reference, ref(document.item(frame)->children.front()));
}

TEST_F(PlacingTest, NegativePageIndexLeavesTheSettingAlone) {
    const String brochure(pdf("brochure.pdf", 5).c_str());
    EXPECT_EQ(placeImageInFrame(reference, brochure, -1), 0);
    EXPECT_EQ(host->workspace.page, 1);
}

TEST_F(PlacingTest, PageIndexZeroTakesPageOne) {
    host->workspace.page = 4;
    EXPECT_EQ(placeImageInFrame(reference, String(pdf("brochure.pdf", 5).c_str()), 0), 0);
    EXPECT_EQ(host->workspace.page, 1);
}

TEST_F(PlacingTest, HostWithoutAWorkspacePlacesAllTheSame) {
    host->session.hasWorkspace = false;
    EXPECT_EQ(placeImageInFrame(reference, String(pdf("brochure.pdf", 5).c_str()), 2), 0);
}

TEST_F(PlacingTest, HostWithoutTheImportCommandGivesOne) {
    host->missingCommands = {kImportResourceCmdBoss};
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), 1);
    EXPECT_EQ(reference, ref(frame));
}

TEST_F(PlacingTest, CommandWithoutImportDataGivesOne) {
    host->missingCommandData = {IID_IIMPORTRESOURCECMDDATA};
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), 1);
    EXPECT_EQ(reference, ref(frame));
    EXPECT_THAT(host->calls, ElementsAre("make import"));
}

TEST_F(PlacingTest, HostWithoutTheServiceForURIsOrForContentGivesOne) {
    for (const PMIID service : {IID_IURIUTILS, IID_IFRAMECONTENTUTILS}) {
        host->missingServices = {service};
        EXPECT_EQ(placeImageInFrame(reference, photo, 0), 1);
        EXPECT_EQ(reference, ref(frame));
    }
}

TEST_F(PlacingTest, FailedImportGivesOneWhateverTheHostsCode) {
    host->unimportable = {photo.utf8()};
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), 1);
    EXPECT_EQ(reference, ref(frame));
}

TEST_F(PlacingTest, FailureToPutTheItemIsHandedOnInSixteenBitsWithItsSign) {
    host->putResult = 0x1FFFE;
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), -2);
    EXPECT_EQ(reference, ref(frame));
    host->putResult = 42;
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), 42);
    EXPECT_THAT(host->calls, Not(Contains(HasSubstr("fit"))));
}

TEST_F(PlacingTest, ResultOfTheFitIsNotRead) {
    host->serviceResult = 9;
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), 0);
    EXPECT_NE(reference, ref(frame));
}

}  // namespace
