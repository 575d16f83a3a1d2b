#include "support/paths_host.h"

#include <filesystem>

#include "support/printing.h"
#include "support/string_tables.h"
#include "support/volumes.h"

namespace vornaset {
namespace {

class HostConversions : public testing::Test {
  protected:
    void SetUp() override {
        before_ = gStrings;
        gStrings = Dictionary::make({{"open", u"\u00D6ffnen"}});
        setVolumes({{"Disk", "/"}});
    }
    void TearDown() override {
        gStrings = before_;
        setVolumes({});
    }
    Dictionary before_;
};

class PersistentObject : public IPMPersist {
  public:
    IPMUnknown* QueryInterface(PMIID interfaceId) override {
        if (interfaceId != IID_IPMPERSIST) return nullptr;
        AddRef();
        return this;
    }
    void AddRef() override { ++references; }
    void Release() override { --references; }
    IDataBase* GetDataBase() override { return nullptr; }
    UID GetUID() override { return UID(42); }
    ClassID GetClassID() override { return {}; }
    int references = 0;
};

TEST_F(HostConversions, TextsFromTheHostAreComposed) {
    PMString text;
    text.SetCFString(u"a\u0308");
    EXPECT_EQ(stringWithPMString(text), u"\u00E4");
    EXPECT_EQ(stringWithPMString(PMString()), u"");
    EXPECT_EQ(stringWithWideString(WideString(std::u16string(u"a\u0308"))), u"\u00E4");
}

TEST_F(HostConversions, ACStringThatIsATableKeyIsTranslated) {
    EXPECT_EQ(pmString("open").View(), u"\u00D6ffnen");
    EXPECT_EQ(pmString("close").View(), u"close");
    EXPECT_EQ(pmStringWithUTF8String("open").View(), u"open");
    EXPECT_EQ(pmString(String("open")).View(), u"open");
    EXPECT_TRUE(pmString(static_cast<const char*>(nullptr)).IsEmpty());
    EXPECT_TRUE(pmStringWithUTF8String(nullptr).IsEmpty());
    EXPECT_TRUE(pmString(String()).IsEmpty());
}

TEST_F(HostConversions, WideTextsTakeTheUnitsAsTheyAre) {
    EXPECT_EQ(wideString(u"a\u0308\U0001F600").View(), u"a\u0308\U0001F600");
    EXPECT_TRUE(wideString(nullptr).IsEmpty());
}

TEST_F(HostConversions, PathsOfHostTexts) {
    EXPECT_EQ(pathWithPMString(PMString("Disk:a:b")), "/a/b");
    EXPECT_EQ(pathWithPMString(PMString("/a:b")), "/a:b");
    EXPECT_TRUE(pathWithPMString(PMString()).isNull());
    EXPECT_EQ(hfsPathWithPMString(PMString("/a/b")), "Disk:a:b");
    PMString hfs;
    hfs.SetCFString(u"Other:a\u0308");
    EXPECT_EQ(hfsPathWithPMString(hfs), u"Other:\u00E4");
    EXPECT_TRUE(hfsPathWithPMString(PMString()).isNull());
}

TEST_F(HostConversions, FilesOfTheHostAndBack) {
    for (const char* path : {"/a b/100%/\xC3\xA4;?#.idml", "/a:b"}) {
        EXPECT_EQ(IDFileWithPath(path).GetPath(), path);
        EXPECT_EQ(pathWithIDFile(IDFileWithPath(path)), path);
        EXPECT_EQ(getSysFile(path), IDFileWithPath(path));
    }
    EXPECT_EQ(IDFileWithPath("x.idml").GetPath(), std::filesystem::current_path().string() + "/x.idml");
    EXPECT_TRUE(IDFileWithPath(u"").IsEmpty());
    EXPECT_TRUE(IDFileWithPath(nullptr).IsEmpty());
    EXPECT_TRUE(IDFileWithPath(std::u16string_view(u"/a\0b", 4)).IsEmpty());
    EXPECT_TRUE(getSysFile(nullptr).IsEmpty());
    EXPECT_TRUE(pathWithIDFile(IDFile()).isNull());
}

TEST_F(HostConversions, NumbersOfObjects) {
    EXPECT_EQ(numberWithUID(UID(4000000000)), Value(4000000000));
    EXPECT_EQ(numberWithUIDRef(UIDRef(nullptr, UID(7))), Value(7));
    EXPECT_EQ(numberWithUIDRef(UIDRef::gNull), Value(0));
    EXPECT_EQ(numberWithObj(nullptr), Value(0));
    PersistentObject object;
    EXPECT_EQ(numberWithObj(&object), Value(42));
    EXPECT_EQ(object.references, 0);
}

}  // namespace
}  // namespace vornaset
