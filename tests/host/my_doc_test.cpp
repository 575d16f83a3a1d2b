#include "host/my_doc.h"

#include "host/host_operations.h"
#include "host_fixture.h"

using namespace vornaset;

namespace {

using MyDocTest = desk::testing::HostFixture;

TEST_F(MyDocTest, HandleOnAReferenceTakesDocumentDatabaseAndPath) {
    document.path = "/jobs/letter.idml";
    const MyDoc handle = balanced([&] { return MyDoc(documentRef()); });
    EXPECT_EQ(::GetUIDRef(handle.document()), documentRef());
    EXPECT_EQ(handle.database(), database);
    EXPECT_EQ(handle.path(), u"/jobs/letter.idml");
}

TEST_F(MyDocTest, HandleOnANullReferenceIsEmpty) {
    const MyDoc handle{UIDRef()};
    EXPECT_EQ(handle.document(), nullptr);
    EXPECT_EQ(handle.database(), nullptr);
    EXPECT_TRUE(handle.path().isNull());
}

TEST_F(MyDocTest, HandleOnAnotherObjectHasItsDatabaseAlone) {
    const MyDoc handle(ref(pictureFrame()));
    EXPECT_EQ(handle.document(), nullptr);
    EXPECT_EQ(handle.database(), database);
}

TEST_F(MyDocTest, NullDocumentMeansTheFrontDocument) {
    document.path = "/jobs/letter.idml";
    const MyDoc handle = balanced([] { return MyDoc(static_cast<IDocument*>(nullptr)); });
    EXPECT_EQ(handle.database(), database);
    EXPECT_EQ(::GetUIDRef(handle.document()), documentRef());
    EXPECT_TRUE(handle.path().isNull());
    EXPECT_EQ(MyDoc(frontDoc()).document(), frontDoc());
}

TEST_F(MyDocTest, WithoutAnOpenDocumentAllFieldsStayEmpty) {
    border.close(document);
    const MyDoc handle(static_cast<IDocument*>(nullptr));
    EXPECT_EQ(handle.document(), nullptr);
    EXPECT_EQ(handle.database(), nullptr);
    EXPECT_TRUE(handle.path().isNull());
    EXPECT_EQ(frontDoc(), nullptr);
    EXPECT_EQ(frontDocRef(), UIDRef());
}

TEST_F(MyDocTest, InitialisingEmptiesTheHandle) {
    MyDoc handle(documentRef());
    EXPECT_EQ(handle.init(), 0);
    EXPECT_EQ(handle.document(), nullptr);
    EXPECT_EQ(handle.database(), nullptr);
}

TEST_F(MyDocTest, FrontDocumentIsTheOneInFront) {
    EXPECT_EQ(balanced([] { return frontDocRef(); }), documentRef());
    desk::Document other;
    IDataBase* otherDatabase = border.open(other, layout);
    EXPECT_EQ(frontDocRef().GetDataBase(), otherDatabase);
    border.bringToFront(document);
    EXPECT_EQ(frontDocRef(), documentRef());
    border.close(other);
}

TEST_F(MyDocTest, PathIsThatOfTheFileReadWhenNeverSaved) {
    EXPECT_TRUE(pathForDoc(database).isNull());
    document.path =
        "/jobs/Br\xC3\xBC"
        "cke.idml";
    EXPECT_EQ(pathForDoc(database),
              u"/jobs/Br\u00FC"
              u"cke.idml");
    EXPECT_EQ(pathForDoc(documentRef()), pathForDoc(database));
    EXPECT_EQ(pathForDoc(frontDoc()), pathForDoc(database));
}

/// A database of its own in a host that says yes to it.
class SavedDataBase : public IDataBase, public IHost {
  public:
    virtual ~SavedDataBase() = default;
    IPMUnknown* Instantiate(UID, PMIID) override { return nullptr; }
    UID GetRootUID() override { return UID(1); }
    IDFile GetSaveFile() override { return IDFile("/saved.idml"); }
    IDFile GetReadFile() override { return IDFile("/read.idml"); }
    void SetModified(bool) override {}
    IExecutionContextSession* Session() override { return nullptr; }
    IPMUnknown* QueryUtils(PMIID) override { return nullptr; }
    IPMCommand* CreateCommand(ClassID) override { return nullptr; }
    ErrorCode ProcessCommand(IPMCommand*) override { return kFailure; }
    bool IsValidDataBase(IDataBase* asked) override { return asked == this; }
};

TEST_F(MyDocTest, FileSavedToComesBeforeTheFileRead) {
    SavedDataBase saved;
    InstallHost(&saved);
    EXPECT_EQ(pathForDoc(static_cast<IDataBase*>(&saved)), u"/saved.idml");
    InstallHost(&border);
}

TEST_F(MyDocTest, InvalidDatabaseHasNoPath) {
    EXPECT_TRUE(pathForDoc(static_cast<IDataBase*>(nullptr)).isNull());
    EXPECT_TRUE(pathForDoc(static_cast<IDocument*>(nullptr)).isNull());
    EXPECT_TRUE(pathForDoc(UIDRef()).isNull());
    document.path = "/jobs/letter.idml";
    InstallHost(nullptr);
    EXPECT_TRUE(pathForDoc(database).isNull());
    InstallHost(&border);
}

TEST_F(MyDocTest, TextGoesIntoAndOutOfTheHostUnchanged) {
    const String text(u"Gr\u00FC\u00DFe \U0001F600 \r");
    EXPECT_EQ(stringWithPMString(pmString(text)), text);
    EXPECT_EQ(wideString(text).View(), text.view());
    EXPECT_TRUE(pmString(nullptr).IsEmpty());
    EXPECT_FALSE(stringWithPMString(PMString()).isNull());
}

TEST_F(MyDocTest, CommandThatTheHostDoesNotKnowIsNoFailure) {
    EXPECT_EQ(processOnItems(ClassID(4711), UIDList(documentRef())), kSuccess);
}

}  // namespace
