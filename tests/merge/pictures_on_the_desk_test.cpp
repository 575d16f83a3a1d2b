// Filling image slots on the desk itself: real pictures, real PDF pages, real barcodes.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "merge/image_slots.h"
#include "merge/page_fill.h"
#include "merge_fixture.h"
#include "pdf/pdf_doc.h"
#include "support/dictionary_access.h"
#include "support/paths.h"
#include "support/processes.h"

using namespace vornaset;
using ::testing::ElementsAre;
namespace fs = std::filesystem;

namespace {

class PicturesOnTheDesk : public MergeTest {
  protected:
    void SetUp() override {
        MergeTest::SetUp();
        std::string pattern = (fs::temp_directory_path() / "desk-pictures-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        setTemporaryFolder(String(folder.c_str()));
        slot = imageSlot(1);
        setColNameForFrame(ref(slot), "Picture");
    }
    void TearDown() override {
        setTemporaryFolder(nullptr);
        fs::remove_all(folder);
        MergeTest::TearDown();
    }
    Dictionary jobWith(const std::vector<std::string>& cells) {
        Array made = Array::makeMutable();
        for (const std::string& cell : cells) made.add(Dictionary::make({{"Picture", String(cell.c_str())}}));
        Dictionary job = jobOf(made);
        setIntegerForKey(job, "pageCnt", 1);
        runSetupPasses(documentRef(), job);
        return job;
    }
    std::string pdf(const std::string& name, int pages) const {
        const Handle<MyPDFDoc> made = MyPDFDoc::pdfDoc();
        for (int count = 0; count < pages; ++count) made->addPageWithRect({0, 0, 100.0 + count, 50});
        made->writeToFile(String((folder / name).c_str()));
        return (folder / name).string();
    }
    static std::string photo(const char* name) { return std::string(VORNASET_SAMPLES_DIR) + "/photos/" + name; }
    const desk::PageItem* placed() const {
        const auto& children = document.item(slot)->children;
        return children.size() == 1 ? document.item(children.front()) : nullptr;
    }
    void expectToFillTheFrame() {
        ASSERT_TRUE(placed());
        ASSERT_TRUE(placed()->graphic);
        const desk::Rect box = placed()->transform.boundsOf(placed()->graphic->bounds);
        const desk::Rect frame = desk::boundsOf(document.item(slot)->path);
        EXPECT_NEAR(box.left, frame.left, 1e-6);
        EXPECT_NEAR(box.top, frame.top, 1e-6);
        EXPECT_NEAR(box.right, frame.right, 1e-6);
        EXPECT_NEAR(box.bottom, frame.bottom, 1e-6);
    }

    fs::path folder;
    Uid slot = 0;
};

TEST_F(PicturesOnTheDesk, PhotoFillsItsFrame) {
    processFrames(database, jobWith({photo("01.jpg")}), 0);
    expectToFillTheFrame();
    EXPECT_EQ(placed()->graphic->path, photo("01.jpg"));
    EXPECT_EQ(feedback(), "");
}

TEST_F(PicturesOnTheDesk, NextRecordsPhotoTakesThePlaceOfTheLast) {
    const Dictionary job = jobWith({photo("01.jpg"), photo("02.jpg")});
    processFrames(database, job, 0);
    processFrames(database, job, 1);
    ASSERT_TRUE(placed());
    EXPECT_EQ(placed()->graphic->path, photo("02.jpg"));
    EXPECT_TRUE(problems.empty());
}

TEST_F(PicturesOnTheDesk, EachRowTakesItsOwnPageOfAPdf) {
    const std::string brochure = pdf("brochure.pdf", 5);
    const Dictionary job = jobWith(std::vector<std::string>(8, brochure));
    processFrames(database, job, 2);
    ASSERT_TRUE(placed());
    EXPECT_EQ(placed()->graphic->pageNumber, 3);
    EXPECT_NEAR(placed()->graphic->bounds.width(), 102, 1e-6);
    expectToFillTheFrame();
}

TEST_F(PicturesOnTheDesk, PageThatThePdfDoesNotHaveLeavesTheSlotEmptyAndTellsTheObserver) {
    const std::string brochure = pdf("brochure.pdf", 5);
    const Dictionary job = jobWith(std::vector<std::string>(8, brochure));
    processFrames(database, job, 7);
    EXPECT_FALSE(placed());
    EXPECT_EQ(feedback(), "");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].first, ProblemKind::ImportFailed);
    EXPECT_EQ(problems[0].second.row, 7);
}

TEST_F(PicturesOnTheDesk, PdfOfOnePageIsPlacedInEveryRowWhateverThePageSetting) {
    const std::string brochure = pdf("brochure.pdf", 5), single = pdf("single.pdf", 1);
    const Dictionary job = jobWith({photo("01.jpg"), brochure, single});
    processFrames(database, job, 1);
    processFrames(database, job, 2);
    ASSERT_TRUE(placed());
    EXPECT_EQ(placed()->graphic->path, single);
}

TEST_F(PicturesOnTheDesk, FilesThatAreNoPicturesAreTold) {
    std::ofstream(folder / "empty.jpg");
    std::ofstream(folder / "text.png") << "no picture";
    const Dictionary job =
        jobWith({(folder / "empty.jpg").string(), (folder / "text.png").string(), folder.string(), photo("01.jpg")});
    for (int32_t row = 0; row < 3; ++row) {
        processFrames(database, job, row);
        EXPECT_FALSE(placed()) << row;
    }
    EXPECT_EQ(problems.size(), 3u);
    EXPECT_EQ(feedback(), "");
    processFrames(database, job, 3);
    EXPECT_TRUE(placed());
}

TEST_F(PicturesOnTheDesk, BarcodePageIsPlacedInTheSizeOfItsFrame) {
    const String tool(u"/nowhere/barcode-tool");
    registerShellScript(tool, [](const Array&) { return Data(std::string("0 0 10 10 re f")); });
    const Dictionary job = jobWith({"4006381333931", "4006381333932"});
    setStringForKey(job, "barcode", tool);
    processFrames(database, job, 0);
    processFrames(database, job, 1);
    registerShellScript(tool, nullptr);
    ASSERT_TRUE(placed());
    EXPECT_EQ(placed()->graphic->path, (folder / "4006381333932.pdf").string());
    EXPECT_NEAR(placed()->graphic->bounds.width(), 72, 1e-6);
    expectToFillTheFrame();
    EXPECT_TRUE(problems.empty());
}

}  // namespace
