// Image slots against a recorded host: which file is placed where, what is asked of the host and in which order, and
// what comes of failures.

#include "merge/image_slots.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>

#include "merge/page_fill.h"
#include "merge_fixture.h"
#include "pdf/pdf_doc.h"
#include "recorded_host.h"
#include "support/dictionary_access.h"
#include "support/paths.h"
#include "support/processes.h"
#include "support/volumes.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

const String kTool(u"/nowhere/barcode-tool");

class ImageSlotsTest : public recorded::With<MergeTest> {
  protected:
    void SetUp() override {
        With::SetUp();
        std::string pattern = (fs::temp_directory_path() / "image-slots-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        fs::create_directory(folder / "tmp");
        setTemporaryFolder(String((folder / "tmp").c_str()));
        registerShellScript(kTool, [this](const Array& arguments) {
            std::string told;
            for (const Value& argument : arguments) told += argument.string().utf8() + "|";
            toolCalls.push_back(told);
            const std::string code = arguments[3].string().utf8();
            const bool isCode = code.size() == 13 && code.find_first_not_of("0123456789") == std::string::npos;
            return isCode ? Data("0 0 10 10 re f % " + code) : Data();
        });
    }
    void TearDown() override {
        registerShellScript(kTool, nullptr);
        setTemporaryFolder(nullptr);
        setVolumes({});
        fs::remove_all(folder);
        With::TearDown();
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string inTemporaryFolder(const std::string& name) const { return (folder / "tmp" / name).string(); }
    std::string file(const std::string& name, const std::string& content = "picture") const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    std::string pdf(const std::string& name, int pages) const {
        const Handle<MyPDFDoc> made = MyPDFDoc::pdfDoc();
        for (int count = 0; count < pages; ++count) made->addPageWithRect({0, 0, 100, 50});
        made->writeToFile(String(path(name).c_str()));
        return path(name);
    }
    /// An empty picture frame with a number and a column.
    Uid slot(int64_t number, const char* column = "Picture") {
        const Uid frame = imageSlot(number);
        setColNameForFrame(ref(frame), column);
        return frame;
    }
    /// Rows {Picture: cell}.
    static Array pictures(const std::vector<std::string>& cells) {
        Array made = Array::makeMutable();
        for (const std::string& cell : cells) made.add(Dictionary::make({{"Picture", String(cell.c_str())}}));
        return made;
    }
    Dictionary jobWith(const Array& rows) {
        Dictionary job = jobOf(rows);
        setIntegerForKey(job, "pageCnt", 1);
        runSetupPasses(documentRef(), job);
        host->calls.clear();
        return job;
    }
    void useTool(const Dictionary& job) { setStringForKey(job, "barcode", kTool); }
    void fill(const Dictionary& job, int32_t pageNum = 0) { processFrames(database, job, pageNum); }
    /// The file placed in a frame; empty for an empty frame.
    std::string placed(Uid frame) const {
        const auto& children = document.item(frame)->children;
        return children.empty() ? std::string() : document.item(children.front())->name;
    }
    std::vector<std::string> kinds() const {
        std::vector<std::string> told;
        for (const auto& [kind, place] : problems) told.emplace_back(nameOf(kind));
        return told;
    }

    fs::path folder;
    std::vector<std::string> toolCalls;
};

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

// --- Barcodes

TEST_F(ImageSlotsTest, CodeBecomesABarcodeFileOfTheFramesSize) {
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({"4006381333931"}));
    useTool(job);
    fill(job);
    EXPECT_THAT(toolCalls, ElementsAre("-e|ean13|-b|4006381333931|-D|"));
    const std::string expected = inTemporaryFolder("4006381333931.pdf");
    EXPECT_EQ(placed(frame), expected);
    const Handle<MyPDFDoc> written = MyPDFDoc::pdfDocWithPath(String(expected.c_str()));
    EXPECT_EQ(written->numberOfPages(), 1);
    EXPECT_EQ(written->pages().first()->mediaBox(), (Rect{0, 0, 72, 36}));
    EXPECT_EQ(feedback(), "");
}

TEST_F(ImageSlotsTest, BarcodeSizeIsThatOfTheFramesPathWhereverItStands) {
    const Uid frame = slot(1);
    document.item(frame)->path = desk::rectanglePath({10, 20, 43.5, 32.25});
    const String made = pdfPathWithEANCode(kTool, u"4006381333931", ref(frame));
    const Rect box = MyPDFDoc::pdfDocWithPath(made)->pages().first()->mediaBox();
    EXPECT_EQ(box, (Rect{0, 0, 33.5, 12.25}));
}

TEST_F(ImageSlotsTest, CodeThatTheProgramRefusesIsReported) {
    slot(1);
    const Dictionary job = jobWith(pictures({"40063813339ab"}));
    useTool(job);
    fill(job);
    EXPECT_EQ(feedback(), "missingImg=1");
    EXPECT_FALSE(fs::exists(inTemporaryFolder("40063813339ab.pdf")));
}

TEST_F(ImageSlotsTest, OldFileOfARefusedCodeIsPlacedAsIfItHadJustBeenMade) {
    const std::string old = file("tmp/refused.pdf");
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({"refused"}));
    useTool(job);
    fill(job);
    EXPECT_EQ(placed(frame), old);
    EXPECT_EQ(feedback(), "");
}

TEST_F(ImageSlotsTest, SameCodeOverwritesItsOldFile) {
    const std::string old = file("tmp/4006381333931.pdf", "old bytes");
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({"4006381333931"}));
    useTool(job);
    fill(job);
    EXPECT_EQ(placed(frame), old);
    std::ifstream written(old, std::ios::binary);
    std::string head(5, ' ');
    written.read(head.data(), 5);
    EXPECT_EQ(head, "%PDF-");
}

TEST_F(ImageSlotsTest, EmptyCellWithABarcodeProgramTriesTheTemporaryFolderAndReportsNothing) {
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({""}));
    useTool(job);
    fill(job);
    EXPECT_THAT(host->files, ElementsAre((folder / "tmp").string()));
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "");
    EXPECT_THAT(kinds(), ElementsAre("importFailed"));
}

TEST_F(ImageSlotsTest, CodeWithASlashOfNoFolderIsReported) {
    registerShellScript(kTool, [](const Array&) { return Data(std::string("0 0 1 1 re f")); });
    slot(1);
    const Dictionary job = jobWith(pictures({"40/06"}));
    useTool(job);
    fill(job);
    EXPECT_EQ(feedback(), "missingImg=1");
    EXPECT_THAT(std::vector<fs::path>(fs::directory_iterator(folder / "tmp"), {}), IsEmpty());
}

TEST_F(ImageSlotsTest, BarcodeProgramThatCannotBeStartedEndsTheEvent) {
    slot(1);
    const Dictionary job = jobWith(pictures({"4006381333931"}));
    setStringForKey(job, "barcode", String(path("no-such-program").c_str()));
    try {
        fill(job);
        FAIL() << "nothing was thrown";
    } catch (const Exception& failure) {
        EXPECT_THAT(failure.reason(), HasSubstr("no-such-program"));
    }
}

TEST_F(ImageSlotsTest, ForeignProgramIsStartedWithTheFiveArguments) {
    const std::string tool = file("tool.sh",
                                  "#!/bin/sh\nprintf '%s ' \"$#\" \"$@\" > \"$(dirname \"$0\")/asked\"\n"
                                  "echo '0 0 1 1 re f'\n");
    fs::permissions(tool, fs::perms::owner_all);
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({"12"}));
    setStringForKey(job, "barcode", String(tool.c_str()));
    fill(job);
    std::string asked;
    std::getline(std::ifstream(path("asked")), asked);
    EXPECT_EQ(asked, "5 -e ean13 -b 12 -D ");
    EXPECT_EQ(placed(frame), inTemporaryFolder("12.pdf"));
}

TEST_F(ImageSlotsTest, WithoutAProgramTheCodeItselfIsThePath) {
    const Uid frame = slot(1);
    EXPECT_EQ(pdfPathWithEANCode(nullptr, u"4006381333931", ref(frame)), u"4006381333931");
    EXPECT_TRUE(pdfPathWithEANCode(nullptr, nullptr, ref(frame)).isNull());
}

// --- Pages of a PDF

TEST_F(ImageSlotsTest, RowNTakesPageNPlusOneOfAPdfOfSeveralPages) {
    const std::string brochure = pdf("brochure.pdf", 5);
    slot(1);
    const Dictionary job = jobWith(pictures(std::vector<std::string>(8, brochure)));
    fill(job, 2);
    EXPECT_EQ(host->workspace.page, 3);
    EXPECT_THAT(host->takeCalls(), ::testing::Contains("page 3"));
    fill(job, 7);
    EXPECT_EQ(host->workspace.page, 8) << "nothing tests whether that page exists";
}

TEST_F(ImageSlotsTest, PageCountsFromTheRowsPlaceInAllTheDataAndNotFromTheFirstRecord) {
    const std::string brochure = pdf("brochure.pdf", 5);
    slot(1);
    const Dictionary job = jobWith(pictures(std::vector<std::string>(8, brochure)));
    setIntegerForKey(job, "startNr", 3);
    fill(job, 0);
    EXPECT_EQ(host->workspace.page, 3);
}

TEST_F(ImageSlotsTest, PdfOfOnePageIsPlacedAsItIsInEveryRow) {
    const std::string single = pdf("single.pdf", 1);
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({single, single}));
    fill(job, 0);
    fill(job, 1);
    EXPECT_EQ(placed(frame), single);
    EXPECT_THAT(host->calls, ::testing::Not(::testing::Contains(HasSubstr("page "))));
}

TEST_F(ImageSlotsTest, PageSettingComesBeforeTheImportAndIsNeverPutBack) {
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

TEST_F(ImageSlotsTest, UnreadablePdfLeavesThePageSettingAlone) {
    slot(1);
    fill(jobWith(pictures({file("broken.pdf", "no PDF at all")})));
    EXPECT_THAT(host->calls, ::testing::Not(::testing::Contains(HasSubstr("page "))));
}

TEST_F(ImageSlotsTest, OtherFilesAreNotOpenedForTheirPages) {
    const std::string named = pdf("pages.dat", 3);
    slot(1);
    fill(jobWith(pictures({named})));
    EXPECT_THAT(host->calls, ::testing::Not(::testing::Contains(HasSubstr("page "))));
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
    EXPECT_THAT(host->calls, ::testing::Not(::testing::Contains(HasSubstr("fit"))));
}

TEST_F(PlacingTest, ResultOfTheFitIsNotRead) {
    host->serviceResult = 9;
    EXPECT_EQ(placeImageInFrame(reference, photo, 0), 0);
    EXPECT_NE(reference, ref(frame));
}

}  // namespace
