#include "host/doc_files.h"

#include <gmock/gmock.h>

#include <fstream>
#include "captured_log.h"

#include "host/my_doc.h"
#include "host_fixture.h"
#include "lone_object.h"
#include "recorded_host.h"

using namespace vornaset;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

class DocFilesTest : public recorded::With<desk::testing::HostFixture> {
  protected:
    void SetUp() override {
        With::SetUp();
        std::string pattern = (fs::temp_directory_path() / "doc-files-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        target = String((folder / "b.idml").c_str());
        std::ofstream(folder / "b.idml") << "old";
    }
    void TearDown() override {
        fs::remove_all(folder);
        With::TearDown();
    }
    bool oldFileIsThere() const { return fs::exists(folder / "b.idml"); }
    IDocument* front() const { return frontDoc(); }

    fs::path folder;
    String target;
};

// --- Finding

TEST_F(DocFilesTest, DocumentIsFoundByItsExactPath) {
    document.path = "/jobs/a.idml";
    EXPECT_EQ(docForPath(u"/jobs/a.idml"), front());
    EXPECT_EQ(docRefForPath(u"/jobs/a.idml"), documentRef());
    EXPECT_EQ(docIsOpen(u"/jobs/a.idml"), 1);
    EXPECT_EQ(docForPath(u"/jobs/A.idml"), nullptr);
    EXPECT_EQ(docRefForPath(u"/jobs/A.idml"), UIDRef());
    EXPECT_EQ(docIsOpen(u"/jobs/A.idml"), 0);
    EXPECT_EQ(getNumberOfDocs(), 1);
}

TEST_F(DocFilesTest, NullPathFindsADocumentWithoutOne) {
    document.path.clear();
    EXPECT_EQ(docForPath(nullptr), front());
    document.path = "/jobs/a.idml";
    EXPECT_EQ(docForPath(nullptr), nullptr);
}

TEST_F(DocFilesTest, HandleTellsPathAndName) {
    document.path = "/jobs/b.idml";
    const MyDoc handle(front());
    EXPECT_EQ(handle.getPath(0), u"/jobs/b.idml");
    EXPECT_EQ(handle.getPath(1), u"/jobs");
    EXPECT_EQ(handle.getName(0), u"b");
    EXPECT_EQ(handle.getName(1), u"b.idml");
    EXPECT_TRUE(MyDoc().getPath(0).isNull());
    EXPECT_TRUE(MyDoc().getPath(1).isNull());
}

// --- Opening

TEST_F(DocFilesTest, OpeningByTheCommandPassesZeros) {
    host->openedDocument = document.rootUid();
    EXPECT_EQ(openDoc1(target), documentRef());
    EXPECT_THAT(host->calls, ElementsAre("make open", "open (0 0 0 0)"));
    EXPECT_THAT(host->files, ElementsAre(target.utf8()));
    host->openedDocument = 0;
    EXPECT_EQ(openDoc1(target), UIDRef());
}

TEST_F(DocFilesTest, OpeningByTheServicePassesTheOptionSixthAndOneSeventh) {
    host->openedDocument = document.rootUid();
    EXPECT_EQ(openDoc2(target, 4), documentRef());
    EXPECT_THAT(host->calls, ElementsAre("documents: open 0 0 0 4 1"));
    host->openedDocument = 0;
    EXPECT_EQ(openDoc2(target, 4), UIDRef());
}

TEST_F(DocFilesTest, OpeningOnAHandlePassesOnesAndTakesTheFrontDocument) {
    host->openedDocument = document.rootUid();
    MyDoc handle;
    EXPECT_EQ(handle.open(target), 0);
    EXPECT_THAT(host->calls, ElementsAre("make open", "open (0 0 1 1)"));
    EXPECT_EQ(handle.document(), front());
    EXPECT_EQ(handle.database(), database);
    EXPECT_EQ(handle.path(), target);
}

TEST_F(DocFilesTest, OpeningThatGivesAnotherDocumentThanTheFrontOneCarriesOnWithTheFrontOne) {
    host->openedDocument = pictureFrame();
    MyDoc handle;
    EXPECT_EQ(handle.open(target), 0);
    EXPECT_EQ(handle.document(), front());
}

TEST_F(DocFilesTest, OpeningIsLoggedAndSoIsAnotherFrontDocument) {
    host->openedDocument = pictureFrame();
    CapturedLog log;
    MyDoc handle;
    handle.open(u"/jobs/a.idml");
    host->missingCommands = {kOpenDocumentCmdBoss};
    handle.open(u"/jobs/b.idml");
    EXPECT_EQ(log.texts(), "MyDoc::open: /jobs/a.idml\n####\tMyDoc::open: docRef != docRef2\n");
}

TEST_F(DocFilesTest, FailedOpeningLeavesTheHandleAsItWas) {
    MyDoc handle;
    EXPECT_EQ(handle.open(target), 5);
    host->missingCommandData = {IID_IOPENFILECMDDATA};
    EXPECT_EQ(handle.open(target), -1);
    host->missingCommands = {kOpenDocumentCmdBoss};
    EXPECT_EQ(handle.open(target), -1);
    EXPECT_EQ(handle.document(), nullptr);
    EXPECT_TRUE(handle.path().isNull());
    EXPECT_EQ(MyDoc::docWithPath(target, 0), nullptr);
}

TEST_F(DocFilesTest, ResultOfOpeningIsReadInSixteenBits) {
    host->openedDocument = document.rootUid();
    host->commandResult = 0x10000;
    MyDoc handle;
    EXPECT_EQ(handle.open(target), 0);
    EXPECT_EQ(handle.document(), front());
    const auto made = MyDoc::docWithPath(target, 77);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->path(), target);
}

TEST_F(DocFilesTest, FrontDocumentIsMadeOnlyWhenNoneIsOpenAndOneIsAskedFor) {
    EXPECT_EQ(MyDoc::frontDoc(1)->document(), front());
    border.close(document);
    EXPECT_EQ(MyDoc::frontDoc(0), nullptr);
    EXPECT_EQ(MyDoc::frontDoc(2), nullptr);
    EXPECT_THAT(host->calls, IsEmpty());
    EXPECT_EQ(MyDoc::frontDoc(1), nullptr) << "the host couldn't make one";
    EXPECT_THAT(host->calls, ElementsAre("new document without a file 0 0"));
}

TEST_F(DocFilesTest, NewDocumentGetsAWindow) {
    border.close(document);
    host->createdDocument = document.rootUid();
    EXPECT_EQ(MyDoc::frontDoc(1), nullptr) << "there is still no front document";
    EXPECT_EQ(host->calls.back(), "open window " + std::to_string(document.rootUid()));
}

TEST_F(DocFilesTest, WindowOpensAndComesToTheFront) {
    EXPECT_EQ(openWindowForDoc(documentRef()), 0);
    EXPECT_EQ(makeDocActive(front()), 1);
    EXPECT_EQ(makeDocActive(database), 1);
    EXPECT_EQ(makeDocActive(documentRef()), 1);
    EXPECT_EQ(makeDocActive(static_cast<IDocument*>(nullptr)), 0);
    EXPECT_EQ(makeDocActive(UIDRef()), 0);
    host->hasWindows = false;
    EXPECT_EQ(makeDocActive(front()), 0);
    EXPECT_THAT(host->calls, ElementsAre("make open window", "open window " + std::to_string(document.rootUid()),
                                         "window to the front", "window to the front", "window to the front"));
}

// --- Saving

TEST_F(DocFilesTest, SavingAsksFirstAndGivesTheGlobalErrorInAnyCase) {
    host->globalError = 0x10009;
    EXPECT_EQ(saveDoc(documentRef()), 9);
    EXPECT_EQ(saveDoc(front()), 9);
    EXPECT_EQ(MyDoc(front()).save(), 9);
    EXPECT_THAT(host->takeCalls(), ElementsAre("save  2 0 0", "save  2 0 0", "save  2 0 0"));
    host->fileHandler.agrees = false;
    EXPECT_EQ(saveDoc(documentRef()), 9);
    EXPECT_EQ(saveDocAs(documentRef(), target), 9);
    EXPECT_EQ(saveCopyAs(documentRef(), target), 9);
    EXPECT_THAT(host->calls, IsEmpty());
    EXPECT_TRUE(oldFileIsThere());
}

TEST_F(DocFilesTest, SavingUnderANameLeavesTheOldFileToTheHost) {
    EXPECT_EQ(saveDocAs(documentRef(), target), 0);
    EXPECT_EQ(saveDocAs(front(), target), 0);
    EXPECT_EQ(MyDoc(front()).saveAs(target), 0);
    const std::string call = "save as b.idml 2 0 0 (over the old file)";
    EXPECT_THAT(host->calls, ElementsAre(call, call, call));
}

TEST_F(DocFilesTest, SavingACopyRemovesTheOldFileOnceTheHostAgrees) {
    EXPECT_EQ(saveCopyAs(front(), target), 0);
    EXPECT_THAT(host->calls, ElementsAre("save a copy b.idml 2 0 0"));
}

TEST_F(DocFilesTest, HandleRemovesTheOldFileEvenWhenTheCopyIsRefused) {
    host->fileHandler.agrees = false;
    EXPECT_EQ(MyDoc(front()).saveACopy(target), 0);
    EXPECT_THAT(host->calls, IsEmpty());
    EXPECT_FALSE(oldFileIsThere());
}

TEST_F(DocFilesTest, WithoutAFileHandlerNothingIsDone) {
    host->hasFileHandler = false;
    EXPECT_EQ(saveDoc(documentRef()), -1);
    EXPECT_EQ(saveDocAs(documentRef(), target), -1);
    EXPECT_EQ(saveCopyAs(documentRef(), target), -1);
    EXPECT_EQ(MyDoc(front()).saveACopy(target), -1);
    closeDoc(documentRef());
    EXPECT_TRUE(oldFileIsThere());
    host->missingServices = {IID_IDOCUMENTUTILS};
    EXPECT_EQ(saveDoc(documentRef()), -1);
}

// --- Closing and redrawing

TEST_F(DocFilesTest, ClosingPassesZeroZeroOne) {
    closeDoc(documentRef());
    closeDoc(front());
    MyDoc(front()).close();
    MyDoc().close();
    EXPECT_THAT(host->calls, ElementsAre("close  0 0 1", "close  0 0 1", "close  0 0 1"));
}

TEST_F(DocFilesTest, ClosingByTheServiceRemovesTheFileOnlyForAFlagOfOne) {
    document.path = target.utf8();
    const std::string call = "documents: close " + std::to_string(document.rootUid()) + " 0";
    closeDoc2(documentRef(), 0);
    closeDoc2(documentRef(), 2);
    closeDoc2(front());
    EXPECT_TRUE(oldFileIsThere());
    closeDoc2(documentRef(), 1);
    EXPECT_FALSE(oldFileIsThere());
    EXPECT_THAT(host->calls, ElementsAre(call, call, call, call));
}

struct Windows : recorded::Object<IPresentationList> {
    using Object::Object;
    void CloseAll() override { calls->push_back("close all windows"); }
    std::vector<std::string>* calls = nullptr;
};

TEST_F(DocFilesTest, WindowsOfADocumentAreClosedAllAtOnceAndBeforeItself) {
    recorded::LoneObject<Windows> shown;
    shown.object.calls = &host->calls;
    closeDocWindows(UIDRef(&shown, UID(1)));
    EXPECT_THAT(host->takeCalls(), ElementsAre("close all windows"));
    closeDoc2(UIDRef(&shown, UID(1)), 0);
    EXPECT_THAT(host->takeCalls(), ElementsAre("close all windows", "documents: close 1 0"));
    closeDocWindows(documentRef());
    closeDocWindows(UIDRef());
    EXPECT_THAT(host->calls, IsEmpty());
    EXPECT_EQ(shown.references, 0);
}

TEST_F(DocFilesTest, ClosingAllGoesThroughEveryOpenDocument) {
    closeDocs();
    EXPECT_THAT(host->calls, ElementsAre("documents: close " + std::to_string(document.rootUid()) + " 0"));
}

TEST_F(DocFilesTest, ClosingByPathRemovesTheFileAlsoWhenNoDocumentHasItOpen) {
    closeDocIfOpen(target, 0);
    EXPECT_TRUE(oldFileIsThere());
    closeDocIfOpen(target, 1);
    EXPECT_FALSE(oldFileIsThere());
    EXPECT_THAT(host->calls, IsEmpty());
    document.path = target.utf8();
    closeDocIfOpen(target, 0);
    EXPECT_EQ(host->calls.size(), 1u);
}

TEST_F(DocFilesTest, RedrawingAMissingDocumentRedrawsTheFrontOne) {
    redrawDoc(static_cast<IDocument*>(nullptr));
    redrawDoc(front());
    redrawDoc(database);
    redrawDoc(UIDRef());
    redrawDocs();
    MyDoc().redraw();
    const std::string call = "redraw " + std::to_string(document.rootUid());
    EXPECT_THAT(host->takeCalls(), ElementsAre(call, call, call, call, call, call));
    border.close(document);
    redrawDoc(static_cast<IDocument*>(nullptr));
    EXPECT_THAT(host->calls, IsEmpty());
}

TEST_F(DocFilesTest, ModifiedFlagIsSetOnAnOpenDocumentAlone) {
    const MyDoc handle(documentRef());
    document.modified = false;
    handle.setModified(1);
    EXPECT_TRUE(document.modified);
    handle.setModified(0);
    EXPECT_FALSE(document.modified);
    border.close(document);
    handle.setModified(1);
    EXPECT_FALSE(document.modified);
}

}  // namespace
