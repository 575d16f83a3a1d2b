#include "desk/desk.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "host/api/host.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

const std::string letterPath = std::string(VORNASET_SAMPLES_DIR) + "/letter.idml";

/// A folder of its own for each test, gone behind it.
class InAFolder : public ::testing::Test {
  protected:
    InAFolder() {
        const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
        folder = fs::temp_directory_path() /
                 ("desk_test_" + std::to_string(::getpid()) + "_" + test->test_suite_name() + "_" + test->name());
        fs::create_directories(folder);
    }
    ~InAFolder() override {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    std::string output() const { return (folder / "out.pdf").string(); }
    size_t filesInFolder() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    fs::path folder;
};

/// What the listener below heard, and where it fails.
struct Heard {
    std::vector<std::pair<int32_t, int32_t>> events;  ///< message code and page
    int32_t failAtPage = -1;
};
Heard heard;

class Listener : public CPMUnknown<IPDFExportSetupProvider> {
  public:
    explicit Listener(IPMUnknown* owner) : owner_(owner) {}
    IPMUnknown* QueryInterface(PMIID interfaceId) override { return owner_->QueryInterface(interfaceId); }
    void AddRef() override { owner_->AddRef(); }
    void Release() override { owner_->Release(); }
    int32_t PDFProcessEvent(_t_PDFExportEvent* event, int32_t pageNum) override {
        heard.events.emplace_back(event->messageCode, pageNum);
        if (event->messageCode == 1 && pageNum == heard.failAtPage) throw std::runtime_error("the rows ran out");
        return 1;
    }

  private:
    IPMUnknown* owner_;
};

class Exporting : public InAFolder {
  protected:
    Exporting() {
        heard = Heard();
        opened = desk.open(letterPath);
    }
    void listen() {
        InterfacePtr<IObjectModel> objects(GetExecutionContextSession());
        ASSERT_TRUE(objects);
        objects->RegisterImplementation(
            9, kMyPDFExportProviderImpl, [](IPMUnknown* boss) -> IPMUnknown* { return new Listener(boss); },
            [](IPMUnknown* object) { delete static_cast<Listener*>(object); }, [] { return sizeof(Listener); }, 0, 0,
            0);
    }
    ExportRequest request(uint64_t pageSets) const {
        ExportRequest made;
        made.outputPath = output();
        made.pageSets = pageSets;
        return made;
    }

    Desk desk;
    std::unique_ptr<Template> opened;
};

using Events = std::vector<std::pair<int32_t, int32_t>>;

TEST_F(Exporting, TellsStartEveryPageAndEnd) {
    listen();
    EXPECT_EQ(opened->exportPdf(request(3)), ExportOutcome::Finished);
    EXPECT_EQ(heard.events, (Events{{0, 0}, {1, 0}, {1, 1}, {1, 2}, {4, 3}}));
    EXPECT_TRUE(fs::exists(output()));
    EXPECT_EQ(desk.outstandingReferences(), 0);
}

TEST_F(Exporting, GoesOnWithoutAnyPlugIn) {
    EXPECT_EQ(opened->exportPdf(request(1)), ExportOutcome::Finished);
    EXPECT_TRUE(fs::exists(output()));
}

TEST_F(Exporting, TellsWhatItDrewPlainerThanTheTemplateAsks) {
    EXPECT_EQ(opened->exportPdf(request(1)), ExportOutcome::Finished);
    EXPECT_TRUE(opened->simplifications().empty());
    PageItem* item = nullptr;
    for (const FrameInfo& frame : opened->frames())
        if (frame.kind != ItemKind::TextFrame) item = opened->document().item(frame.uid);
    ASSERT_NE(item, nullptr) << "the letter has a drawn logo";
    item->attributes.strokeWeight = 1;
    item->attributes.strokeColor = "Color/Black";
    item->attributes.strokeType = "StrokeStyle/$ID/Wavy";
    EXPECT_EQ(opened->exportPdf(request(2)), ExportOutcome::Finished);
    EXPECT_EQ(opened->simplifications(),
              std::vector<std::string>{"the stroke style \"Wavy\" is drawn as a solid line"});
}

TEST_F(Exporting, AFailingPlugInEndsItWithItsOwnSentenceAndWithoutAFile) {
    listen();
    heard.failAtPage = 1;
    try {
        opened->exportPdf(request(3));
        FAIL() << "the failure didn't come out";
    } catch (const PlugInFailure& failure) {
        EXPECT_STREQ(failure.what(), "the rows ran out");
        EXPECT_EQ(failure.pageIndex, 1);
    }
    EXPECT_EQ(filesInFolder(), 0u);
}

TEST_F(Exporting, APlugInHearsTheEndAfterAFailure) {
    listen();
    heard.failAtPage = 0;
    EXPECT_THROW(opened->exportPdf(request(2)), PlugInFailure);
    EXPECT_EQ(heard.events, (Events{{0, 0}, {1, 0}, {4, 0}}));
    EXPECT_EQ(desk.outstandingReferences(), 0);
}

TEST_F(Exporting, ReportsProgressAfterEveryPage) {
    std::vector<std::pair<uint64_t, uint64_t>> told;
    ExportRequest asked = request(2);
    asked.progress = [&](const ExportProgress& progress) {
        told.emplace_back(progress.pagesDone, progress.pagesTotal);
        return ExportAnswer::GoOn;
    };
    opened->exportPdf(asked);
    EXPECT_EQ(told, (std::vector<std::pair<uint64_t, uint64_t>>{{1, 2}, {2, 2}}));
}

TEST_F(Exporting, StopsWhenAskedAndLeavesTheOldFile) {
    listen();
    std::ofstream(output()) << "old";
    ExportRequest asked = request(5);
    asked.progress = [](const ExportProgress& progress) {
        return progress.pagesDone == 2 ? ExportAnswer::Stop : ExportAnswer::GoOn;
    };
    EXPECT_EQ(opened->exportPdf(asked), ExportOutcome::Stopped);
    EXPECT_EQ(heard.events.back().first, 4);
    EXPECT_EQ(filesInFolder(), 1u);
    EXPECT_EQ(fs::file_size(output()), 3u);
}

TEST_F(Exporting, RefusesMorePagesThanTheBorderCanCount) {
    EXPECT_THROW(opened->exportPdf(request(1ull << 31)), InputError);
    EXPECT_THROW(opened->exportPdf(request(~0ull)), InputError);
    EXPECT_EQ(filesInFolder(), 0u);
}

TEST_F(Exporting, TheLastTemplateOpenedIsTheFrontDocumentUntilItCloses) {
    Utils<ILayoutUtils> layout;
    ASSERT_TRUE(layout);
    EXPECT_EQ(GetDataBase(layout->GetFrontDocument()), opened->dataBase());
    {
        const std::unique_ptr<Template> second = desk.open(letterPath);
        EXPECT_EQ(GetDataBase(layout->GetFrontDocument()), second->dataBase());
    }
    EXPECT_EQ(GetDataBase(layout->GetFrontDocument()), opened->dataBase());
    IDataBase* const closed = opened->dataBase();
    opened.reset();
    EXPECT_EQ(layout->GetFrontDocument(), nullptr);
    EXPECT_FALSE(DBUtils::IsValidDataBase(closed));
}

using PlugIns = InAFolder;

TEST_F(PlugIns, AModuleThatIsNotThereIsRefusedWithItsPath) {
    Desk desk;
    try {
        desk.loadPlugIn((folder / "nothing.so").string());
        FAIL() << "it was taken";
    } catch (const InputError& error) {
        EXPECT_NE(std::string(error.what()).find("nothing.so"), std::string::npos);
    }
}

TEST_F(PlugIns, AModuleWithoutAPlugInIsRefused) {
    Desk desk;
    EXPECT_THROW(desk.loadPlugIn(std::string(VORNASET_BUILD_DIR) + "/libdesk.so"), InputError);
}

TEST_F(PlugIns, TheModuleOfTheMergeLoadsAndLoadingItAgainIsNothing) {
    Desk desk;
    const std::string module = std::string(VORNASET_BUILD_DIR) + "/libvornaset.so";
    desk.loadPlugIn(module);
    desk.loadPlugIn(module);
    EXPECT_EQ(desk.outstandingReferences(), 0);
    ExportRequest request;
    request.outputPath = output();
    EXPECT_EQ(desk.open(letterPath)->exportPdf(request), ExportOutcome::Finished);
    EXPECT_EQ(desk.outstandingReferences(), 0);
}

TEST(Templates, FramesComeByPageWithTheirPlacesOnIt) {
    Desk desk;
    const std::vector<FrameInfo> frames = desk.open(letterPath)->frames();
    ASSERT_EQ(frames.size(), 12u);
    EXPECT_EQ(frames[0].self, "u101");
    EXPECT_EQ(frames[0].page, 1);
    EXPECT_EQ(frames[0].kind, ItemKind::Oval);
    EXPECT_NEAR(frames[0].bounds.left, 398.85, 0.01);
    EXPECT_NEAR(frames[0].bounds.top, 36.02, 0.01);
    EXPECT_EQ(frames[8].self, "u10b");
    EXPECT_NE(frames[8].story, 0u);
}

TEST(Templates, AFamilyThatTheMachineLacksIsToldWithWhatStandsIn) {
    Desk desk;
    const std::unique_ptr<Template> opened = desk.open(letterPath);
    EXPECT_TRUE(opened->missingFonts().empty());
    Document& document = opened->document();
    for (const Uid uid : document.stories) {
        CharacterFormat format;
        format.overrides.fontFamily = "No Such Family";
        Story& story = *document.story(uid);
        story.setCharacterFormat(0, story.content().length(), document.characterFormatId(format));
    }
    const std::vector<MissingFont> missing = opened->missingFonts();
    ASSERT_FALSE(missing.empty());
    EXPECT_EQ(missing[0].family, "No Such Family");
    EXPECT_FALSE(missing[0].usedFamily.empty());
}

TEST(Templates, AStoryTooLongForItsFramesIsOverset) {
    Desk desk;
    const std::unique_ptr<Template> opened = desk.open(letterPath);
    const Uid uid = opened->document().stories.front();
    EXPECT_FALSE(opened->isOverset(uid));
    opened->document().story(uid)->insert(0, u"one\rtwo\rthree\rfour\rfive\r");
    EXPECT_TRUE(opened->isOverset(uid));
}

}  // namespace
}  // namespace desk
