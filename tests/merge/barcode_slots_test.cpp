// Cells that are codes: barcodes made by a program and placed as files.

#include <gmock/gmock.h>

#include "host/frame_geometry.h"
#include "image_slots_fixture.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

using BarcodeSlotsTest = ImageSlotsTest;

TEST_F(BarcodeSlotsTest, CodeBecomesABarcodeFileOfTheFramesSize) {
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

TEST_F(BarcodeSlotsTest, BarcodeSizeIsThatOfTheFramesPathWhereverItStandsAndWhateverItsStroke) {
    const Uid frame = slot(1);
    document.item(frame)->path = desk::rectanglePath({10, 20, 43.5, 32.25});
    document.item(frame)->attributes.strokeWeight = 4;
    document.item(frame)->attributes.strokeColor = "Color/Black";
    ASSERT_NE(strokeBoundsForFrame(ref(frame), uint8_t{0}), boundsForFrame(ref(frame), uint8_t{0}));
    const String made = pdfPathWithEANCode(tool, u"4006381333931", ref(frame));
    const Rect box = MyPDFDoc::pdfDocWithPath(made)->pages().first()->mediaBox();
    EXPECT_EQ(box, (Rect{0, 0, 33.5, 12.25}));
}

TEST_F(BarcodeSlotsTest, BarcodeSizeIsCutToSinglePrecision) {
    const Uid frame = slot(1);
    document.item(frame)->path = desk::rectanglePath({0, 0, 33.1, 12.7});
    const String made = pdfPathWithEANCode(tool, u"4006381333931", ref(frame));
    const Rect box = MyPDFDoc::pdfDocWithPath(made)->pages().first()->mediaBox();
    // Single precision has nothing between 33.09999847 and 33.10000229, and a file's numbers are cut to three digits.
    EXPECT_EQ(box, (Rect{0, 0, double{33.099F}, double{12.699F}}));
}

TEST_F(BarcodeSlotsTest, CodeOfAColonPathIsThePosixPath) {
    setVolumes({{u"Macintosh HD", String(folder.c_str())}});
    slot(1);
    const Dictionary job = jobWith(pictures({"Macintosh HD:Images:none.tif"}));
    useTool(job);
    fill(job);
    EXPECT_THAT(toolCalls, ElementsAre("-e|ean13|-b|" + path("Images/none.tif") + "|-D|"));
    EXPECT_EQ(feedback(), "missingImg=1");
}

TEST_F(BarcodeSlotsTest, CodeThatTheProgramRefusesIsReported) {
    slot(1);
    const Dictionary job = jobWith(pictures({"40063813339ab"}));
    useTool(job);
    fill(job);
    EXPECT_EQ(feedback(), "missingImg=1");
    EXPECT_FALSE(fs::exists(inTemporaryFolder("40063813339ab.pdf")));
}

TEST_F(BarcodeSlotsTest, OldFileOfARefusedCodeIsPlacedAsIfItHadJustBeenMade) {
    const std::string old = file("tmp/refused.pdf");
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({"refused"}));
    useTool(job);
    fill(job);
    EXPECT_EQ(placed(frame), old);
    EXPECT_EQ(feedback(), "");
}

TEST_F(BarcodeSlotsTest, OldFileOfSeveralPagesGivesTheRowsPage) {
    pdf("tmp/refused.pdf", 3);
    slot(1);
    const Dictionary job = jobWith(pictures({"refused", "refused"}));
    useTool(job);
    fill(job, 1);
    EXPECT_EQ(host->workspace.page, 2);
}

TEST_F(BarcodeSlotsTest, SameCodeOverwritesItsOldFile) {
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

TEST_F(BarcodeSlotsTest, EmptyCellWithABarcodeProgramTriesTheTemporaryFolderAndReportsNothing) {
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({""}));
    useTool(job);
    fill(job);
    EXPECT_THAT(host->files, ElementsAre((folder / "tmp").string()));
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "");
    EXPECT_THAT(kinds(), ElementsAre("importFailed"));
}

TEST_F(BarcodeSlotsTest, FolderInTheWayOfABarcodeStaysWithAllThatIsInIt) {
    registerShellScript(tool, [](const Array&) { return Data(std::string("0 0 1 1 re f")); });
    fs::create_directory(inTemporaryFolder("12.pdf"));
    const std::string kept = file("tmp/kept"), keptDeeper = file("tmp/12.pdf/kept");
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({"", "12"}));
    useTool(job);
    for (const int32_t row : {0, 1}) fill(job, row);
    EXPECT_TRUE(fs::is_regular_file(kept)) << "the path of an empty code is the temporary folder itself";
    EXPECT_TRUE(fs::is_regular_file(keptDeeper));
    EXPECT_EQ(placed(frame), "");
    EXPECT_EQ(feedback(), "");
    EXPECT_THAT(kinds(), ElementsAre("importFailed", "importFailed"));
}

TEST_F(BarcodeSlotsTest, CodeWithASlashOfNoFolderIsReported) {
    registerShellScript(tool, [](const Array&) { return Data(std::string("0 0 1 1 re f")); });
    slot(1);
    const Dictionary job = jobWith(pictures({"40/06"}));
    useTool(job);
    fill(job);
    EXPECT_EQ(feedback(), "missingImg=1");
    EXPECT_THAT(std::vector<fs::path>(fs::directory_iterator(folder / "tmp"), {}), IsEmpty());
}

TEST_F(BarcodeSlotsTest, BarcodeProgramThatCannotBeStartedEndsTheEvent) {
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

TEST_F(BarcodeSlotsTest, ForeignProgramIsStartedWithTheFiveArguments) {
    const std::string program = file("tool.sh",
                                     "#!/bin/sh\nprintf '%s ' \"$#\" \"$@\" > \"$(dirname \"$0\")/asked\"\n"
                                     "echo '0 0 1 1 re f'\n");
    fs::permissions(program, fs::perms::owner_all);
    const Uid frame = slot(1);
    const Dictionary job = jobWith(pictures({"12"}));
    setStringForKey(job, "barcode", String(program.c_str()));
    fill(job);
    std::string asked;
    std::getline(std::ifstream(path("asked")), asked);
    EXPECT_EQ(asked, "5 -e ean13 -b 12 -D ");
    EXPECT_EQ(placed(frame), inTemporaryFolder("12.pdf"));
}

TEST_F(BarcodeSlotsTest, WithoutAProgramTheCodeItselfIsThePath) {
    const Uid frame = slot(1);
    EXPECT_EQ(pdfPathWithEANCode(nullptr, u"4006381333931", ref(frame)), u"4006381333931");
    EXPECT_TRUE(pdfPathWithEANCode(nullptr, nullptr, ref(frame)).isNull());
}

}  // namespace
