// Documents saved, opened and made through the desk, by its own callers and by plug-ins.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "desk/desk.h"
#include "host/api/host.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

const std::string letterPath = std::string(VORNASET_SAMPLES_DIR) + "/letter.idml";

class Saving : public ::testing::Test {
  protected:
    Saving() {
        folder = fs::temp_directory_path() / ("desk_saving_" + std::to_string(::getpid()));
        fs::create_directories(folder);
    }
    ~Saving() override {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    std::string file(const char* name) const { return (folder / name).string(); }

    fs::path folder;
    Desk desk;
};

TEST_F(Saving, ASavedTemplateOpensWithItsChange) {
    const auto open = desk.open(letterPath);
    open->document().labels.set("mine", "1");
    open->save(file("out.idml"));
    EXPECT_EQ(open->document().path, letterPath) << "the template stays the one that was opened";
    EXPECT_EQ(desk.open(file("out.idml"))->document().labels.get("mine"), "1");
    EXPECT_THROW(open->save((folder / "none" / "out.idml").string()), InputError);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(Saving, ARelativePathStaysGoodWhenTheWorkingFolderChanges) {
    const fs::path former = fs::current_path();
    fs::current_path(fs::path(letterPath).parent_path());
    const auto open = desk.open("letter.idml");
    fs::current_path(former);
    EXPECT_EQ(open->document().path, fs::weakly_canonical(letterPath).string());
}

TEST_F(Saving, APlugInMakesChangesSavesAndClosesADocument) {
    UIDRef made;
    ASSERT_EQ(Utils<IDocumentUtils>()->CreateDocument(made, nullptr, 0, 0), kSuccess);
    InterfacePtr<IPageList> pages(made);
    EXPECT_EQ(pages->GetPageCount(), 1);
    pages.reset();
    InterfacePtr<ITagStore>(made)->SetTag("mine", PMString("1"));
    InterfacePtr<IDocumentFileHandler> handler(Adopt::Reference, Utils<IDocumentUtils>()->QueryFileHandler(made));
    EXPECT_FALSE(handler->CanSave(made)) << "it has no file yet";
    ASSERT_TRUE(handler->CanSaveAs(made));
    handler->SaveAs(made, IDFile(file("new.idml")), 2, 0, 0);
    EXPECT_EQ(ErrorUtils::PMGetGlobalErrorCode(), kSuccess);
    EXPECT_EQ(made.GetDataBase()->GetSaveFile().GetPath(), file("new.idml"));
    handler->Close(made, 0, 0, 1);
    EXPECT_FALSE(DBUtils::IsValidDataBase(made.GetDataBase()));
    handler.reset();
    EXPECT_EQ(desk.open(file("new.idml"))->document().labels.get("mine"), "1");
    EXPECT_EQ(desk.outstandingReferences(), 0);
}

TEST_F(Saving, APlugInOpensAFileOnceAndABrokenOneNever) {
    UIDRef first, second;
    EXPECT_EQ(Utils<IDocumentUtils>()->OpenDocument(first, IDFile(letterPath), 0, 0, 0, 0, 1), kSuccess);
    EXPECT_EQ(Utils<IDocumentUtils>()->OpenDocument(second, IDFile(letterPath), 0, 0, 0, 0, 1), kSuccess);
    EXPECT_EQ(first, second);
    EXPECT_EQ(Utils<IDocumentUtils>()->OpenDocument(second, IDFile(file("none.idml")), 0, 0, 0, 0, 1), kFailure);
    EXPECT_EQ(first, second);
}

TEST_F(Saving, ATemplateThatAPlugInClosedExportsNoMore) {
    const auto open = desk.open(letterPath);
    const UIDRef document(open->dataBase(), UID(open->document().rootUid()));
    Utils<IDocumentUtils>()->CloseDocument(document, 0);
    EXPECT_EQ(open->dataBase(), nullptr);
    ExportRequest request;
    request.outputPath = file("out.pdf");
    EXPECT_THROW(open->exportPdf(request), InputError);
}

}  // namespace
}  // namespace desk
