#include "support/bundle.h"

#include "support/message_fixture.h"
#include "support/printing.h"

namespace vornaset {
namespace {

class Bundles : public MessageFixture {};

TEST_F(Bundles, AreFoundByIdentifierInTheFirstFolderThatHasThem) {
    std::filesystem::create_directories(scratch_.path() + "/first/only.first");
    std::filesystem::create_directories(scratch_.path() + "/first/both");
    std::filesystem::create_directories(scratch_.path() + "/second/both");
    std::filesystem::create_directories(scratch_.path() + "/second/only.second");
    const String first = String::fromUTF8(scratch_.path() + "/first");
    const String second = String::fromUTF8(scratch_.path() + "/second");
    EXPECT_TRUE(setBundleFolders({first, second}).empty());
    EXPECT_EQ(Bundle::withIdentifier("both").path(), first + "/both");
    EXPECT_EQ(Bundle::withIdentifier("only.second").path(), second + "/only.second");
    EXPECT_EQ(Bundle::withIdentifier("only.second").identifier(), String("only.second"));
    EXPECT_EQ(setBundleFolders({second}).size(), 2u);
    EXPECT_EQ(Bundle::withIdentifier("both").path(), second + "/both");
    EXPECT_TRUE(Bundle::withIdentifier("only.first").isNull());
}

TEST_F(Bundles, AreNotFoundByAnythingButAName) {
    std::filesystem::create_directories(scratch_.path() + "/folders/a/b");
    setBundleFolders({String::fromUTF8(scratch_.path() + "/folders")});
    EXPECT_TRUE(Bundle::withIdentifier("a"));
    for (const char* identifier : {"", ".", "..", "a/b", "missing"}) {
        EXPECT_TRUE(Bundle::withIdentifier(identifier).isNull()) << identifier;
    }
    EXPECT_TRUE(Bundle::withIdentifier(nullptr).isNull());
}

TEST_F(Bundles, TheShippedOneStandsBesideTheRunningCode) {
    const Bundle shipped = Bundle::withIdentifier(kBundleIdentifier);
    ASSERT_TRUE(shipped);
    EXPECT_EQ(shipped.path(), String(VORNASET_BUILD_DIR "/resources/com.kelmoriandev.vornaset"));
    for (const auto& entry :
         std::filesystem::directory_iterator(VORNASET_SOURCE_DIR "/resources/" + std::string(kBundleIdentifier))) {
        const std::string copy = shipped.path().utf8() + "/" + entry.path().filename().string();
        EXPECT_EQ(contentOf(copy), contentOf(entry.path().string())) << copy;
    }
}

TEST_F(Bundles, AFileOrAMissingFolderIsNoBundle) {
    writeFile(scratch_.path() + "/file", "x");
    EXPECT_TRUE(Bundle::withPath(String::fromUTF8(scratch_.path() + "/file")).isNull());
    EXPECT_TRUE(Bundle::withPath(String::fromUTF8(scratch_.path() + "/missing")).isNull());
    EXPECT_TRUE(Bundle::withPath("").isNull());
    EXPECT_TRUE(Bundle::withPath(nullptr).isNull());
    EXPECT_EQ(Bundle::withPath(String::fromUTF8(scratch_.path() + "//")).path(), String::fromUTF8(scratch_.path()));
    EXPECT_EQ(Bundle::withPath("/").path(), String("/"));
}

TEST_F(Bundles, ResourcesAreFoundByNameAndType) {
    addResource("note.txt", "caf\xC3\xA9");
    addResource("bare", "x");
    EXPECT_EQ(pathForResource("note", "txt"), gBundle.path() + "/note.txt");
    EXPECT_EQ(pathForResource(String("note"), String("txt")), gBundle.path() + "/note.txt");
    EXPECT_EQ(pathForResource("bare", nullptr), gBundle.path() + "/bare");
    EXPECT_EQ(pathForResource("bare", ""), gBundle.path() + "/bare");
    EXPECT_EQ(pathForResource("note.txt", ""), gBundle.path() + "/note.txt");
    EXPECT_TRUE(pathForResource("note", "xml").isNull());
    EXPECT_TRUE(pathForResource("note", "").isNull());
    EXPECT_TRUE(pathForResource(nullptr, "txt").isNull());
    EXPECT_TRUE(pathForResource("", "txt").isNull());
    EXPECT_EQ(stringWithResource("note", "txt"), String(u"caf\u00E9"));
    EXPECT_EQ(dataWithResource("note", "txt"), Data(std::string("caf\xC3\xA9")));
}

TEST_F(Bundles, WhatIsNotThereIsNull) {
    EXPECT_TRUE(pathForResource("note", "txt").isNull());
    EXPECT_TRUE(stringWithResource("note", "txt").isNull());
    EXPECT_TRUE(dataWithResource("note", "txt").isNull());
    addResource("empty.txt", "");
    EXPECT_TRUE(stringWithResource("note", "txt").isNull());
    EXPECT_TRUE(dataWithResource("note", "txt").isNull());
    EXPECT_EQ(stringWithResource("empty", "txt"), String(u""));
    EXPECT_FALSE(dataWithResource("empty", "txt").isNull());
}

TEST_F(Bundles, AFolderIsNoResource) {
    addResource("note.txt", "x");
    std::filesystem::create_directories(gBundle.path().utf8() + "/folder.txt");
    EXPECT_TRUE(pathForResource("folder", "txt").isNull());
}

TEST_F(Bundles, BytesThatAreNoUTF8HaveNoText) {
    addResource("latin.txt", "caf\xE9");
    EXPECT_TRUE(stringWithResource("latin", "txt").isNull());
    EXPECT_EQ(dataWithResource("latin", "txt").length(), 4u);
}

TEST_F(Bundles, SetupBundleSetsItOnce) {
    std::filesystem::create_directories(scratch_.path() + "/one");
    std::filesystem::create_directories(scratch_.path() + "/two");
    setBundleFolders({String::fromUTF8(scratch_.path())});
    setupBundle(nullptr);
    EXPECT_TRUE(gBundle.isNull());
    setupBundle("missing");
    EXPECT_TRUE(gBundle.isNull());
    setupBundle("one");
    EXPECT_EQ(gBundle.identifier(), String("one"));
    setupBundle("two");
    EXPECT_EQ(gBundle.identifier(), String("one"));
    EXPECT_EQ(presenter_->prepared, 0);
}

TEST_F(Bundles, SetupCocoaReadiesTheWindowSystemToo) {
    std::filesystem::create_directories(scratch_.path() + "/one");
    std::filesystem::create_directories(scratch_.path() + "/two");
    setBundleFolders({String::fromUTF8(scratch_.path())});
    setupCocoa(String("one"));
    EXPECT_EQ(gBundle.identifier(), String("one"));
    setupCocoa(String());
    EXPECT_EQ(gBundle.identifier(), String("one"));
    EXPECT_EQ(presenter_->prepared, 2);
}

TEST_F(Bundles, SetupCocoaWithABundleReplacesTheOneInForce) {
    std::filesystem::create_directories(scratch_.path() + "/one");
    std::filesystem::create_directories(scratch_.path() + "/two");
    setBundleFolders({String::fromUTF8(scratch_.path())});
    setupCocoa(Bundle::withIdentifier("one"));
    setupCocoa(Bundle::withIdentifier("two"));
    EXPECT_EQ(gBundle.identifier(), String("two"));
    setupCocoa(Bundle());
    EXPECT_EQ(gBundle.identifier(), String("two"));
    EXPECT_EQ(presenter_->prepared, 3);
}

}  // namespace
}  // namespace vornaset
