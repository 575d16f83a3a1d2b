#include "support/paths.h"

#include "environment_variable.h"
#include "support/log.h"
#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

class Paths : public testing::Test {
  protected:
    String at(const std::string& name) const { return String::fromUTF8(folder_.path() + "/" + name); }
    ScratchFolder folder_;
};

TEST_F(Paths, AnythingThatStandsThereIsAFile) {
    writeFile(at("file").utf8(), "x");
    EXPECT_TRUE(pathExists(at("file")));
    EXPECT_TRUE(pathIsFile(at("file")));
    EXPECT_TRUE(pathIsFile(folder_.path().c_str()));
    EXPECT_TRUE(pathExists(folder_.path().c_str()));
    EXPECT_FALSE(pathExists(at("missing")));
    EXPECT_FALSE(pathIsFile(at("missing")));
}

TEST_F(Paths, OnlyAFolderIsAFolder) {
    writeFile(at("file").utf8(), "x");
    EXPECT_TRUE(pathIsFolder(folder_.path().c_str()));
    EXPECT_FALSE(pathIsFolder(at("file")));
    EXPECT_FALSE(pathIsFolder(u""));
    EXPECT_FALSE(pathIsFolder(nullptr));
    EXPECT_FALSE(pathIsFolder(at("missing")));
}

TEST_F(Paths, ALinkIsWhatItPointsAt) {
    std::filesystem::create_directory_symlink(folder_.path(), at("link").utf8());
    std::filesystem::create_symlink("nowhere", at("broken").utf8());
    EXPECT_TRUE(pathIsFolder(at("link")));
    EXPECT_FALSE(pathExists(at("broken")));
}

TEST_F(Paths, APathWithAZeroInItNamesNothing) {
    const std::u16string cut = folder_.path().empty() ? u"" : std::u16string(at("file").view()) + u'\0' + u"x";
    writeFile(at("file").utf8(), "x");
    EXPECT_FALSE(pathExists(cut));
    EXPECT_TRUE(removeFile(cut));
    EXPECT_TRUE(pathExists(at("file")));
}

TEST(PathNames, AnExtensionIsComparedWithoutCase) {
    EXPECT_TRUE(pathEndsWith("/a/picture.JPG", "jpg"));
    EXPECT_TRUE(pathEndsWith("/a/picture.jpg", "JPG"));
    EXPECT_TRUE(pathEndsWith("/a/picture.tar.gz", "gz"));
    EXPECT_FALSE(pathEndsWith("/a/picture.tar.gz", "tar.gz"));
    EXPECT_FALSE(pathEndsWith("/a/picture.jpg", "jp"));
    EXPECT_FALSE(pathEndsWith("/a/picture.jpg", "xjpg"));
    EXPECT_TRUE(pathEndsWith(u"/a/x.\u00C4\u00D6", u"\u00E4\u00F6"));
    EXPECT_TRUE(pathEndsWith("/a.txt/b.jpg/", "jpg"));
}

TEST(PathNames, ANameWithoutAPointIsComparedWhole) {
    EXPECT_TRUE(pathEndsWith("/a/README", "readme"));
    EXPECT_FALSE(pathEndsWith("/a/README", "me"));
    EXPECT_FALSE(pathEndsWith("/a.jpg/README", "jpg"));
    EXPECT_TRUE(pathEndsWith("/a/.profile", "profile"));
    EXPECT_TRUE(pathEndsWith("/a/name.", ""));
    EXPECT_FALSE(pathEndsWith("/a/name", ""));
    EXPECT_FALSE(pathEndsWith(nullptr, "x"));
    EXPECT_FALSE(pathEndsWith("x", String()));
}

TEST(PathNames, AnyExtensionOfAnArrayWillDo) {
    EXPECT_TRUE(pathEndsWith("/a/b.TIF", Array::make({"jpg", "tif"})));
    EXPECT_FALSE(pathEndsWith("/a/b.png", Array::make({"jpg", "tif"})));
    EXPECT_FALSE(pathEndsWith("/a/b.png", Array::make()));
    EXPECT_FALSE(pathEndsWith("/a/b.png", Array()));
}

TEST(PathNames, ComponentsAreAppendedWithOneSlashBetween) {
    EXPECT_EQ(stringByAppendingPathComponents("/a", "b", nullptr), "/a/b");
    EXPECT_EQ(stringByAppendingPathComponents("/a/", "b", "txt"), "/a/b.txt");
    EXPECT_EQ(stringByAppendingPathComponents("/", "b", nullptr), "/b");
    EXPECT_EQ(stringByAppendingPathComponents("", "b", nullptr), "b");
    EXPECT_EQ(stringByAppendingPathComponents(nullptr, "b", nullptr), "b");
    EXPECT_EQ(stringByAppendingPathComponents("/a", "/b/c/", nullptr), "/a/b/c");
    EXPECT_EQ(stringByAppendingPathComponents("/a", "", "txt"), "/a");
    EXPECT_EQ(stringByAppendingPathComponents("/a", nullptr, "txt"), "/a");
    EXPECT_EQ(stringByAppendingPathComponents("/a", "b.c", "txt"), "/a/b.c.txt");
    EXPECT_EQ(stringByAppendingPathComponents("/a", "b", ""), "/a/b.");
}

TEST(PathNames, ManyComponentsAreAppendedInOrder) {
    EXPECT_EQ(stringByAppendingPathComponents("/a", Array::make({"b", "", "c"})), "/a/b/c");
    EXPECT_EQ(stringByAppendingPathComponents("/a", Array::make()), "/a");
    EXPECT_EQ(stringByAppendingPathComponents("/a", Array()), "/a");
}

TEST(PathNames, AnExtensionIsReplaced) {
    EXPECT_EQ(stringByReplacingPathExtension("/a/b.idml", "pdf"), "/a/b.pdf");
    EXPECT_EQ(stringByReplacingPathExtension("/a.x/b", "pdf"), "/a.x/b.pdf");
    EXPECT_EQ(stringByReplacingPathExtension("/a/b.tar.gz", "zip"), "/a/b.tar.zip");
    EXPECT_EQ(stringByReplacingPathExtension("/a/.profile", "old"), "/a/.profile.old");
    EXPECT_EQ(stringByReplacingPathExtension("/a/b.c/", "d"), "/a/b.d");
    EXPECT_EQ(stringByReplacingPathExtension("/a/b.c", nullptr), "/a/b");
    EXPECT_TRUE(stringByReplacingPathExtension(nullptr, "x").isNull());
}

TEST(PathNames, TheLastComponentKeepsItsExtensionWhenAskedTo) {
    EXPECT_EQ(lastPathComponent("/a/b.idml", 1), "b.idml");
    EXPECT_EQ(lastPathComponent("/a/b.idml", 2), "b.idml");
    EXPECT_EQ(lastPathComponent("/a/b.idml", 0), "b");
    EXPECT_EQ(lastPathComponent("/a/b.c/", 1), "b.c");
    EXPECT_EQ(lastPathComponent("b", 0), "b");
    EXPECT_EQ(lastPathComponent(".profile", 0), ".profile");
    EXPECT_EQ(lastPathComponent("/", 1), "/");
    EXPECT_EQ(lastPathComponent("", 1), "");
    EXPECT_TRUE(lastPathComponent(nullptr, 1).isNull());
}

TEST_F(Paths, TheDocumentsFolderIsNamedAndNotMade) {
    const EnvironmentVariable home("HOME", at("home").utf8().c_str());
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(getDocumentsPath("", nullptr), at("home/Documents"));
    EXPECT_EQ(getDocumentsPath(nullptr, "txt"), at("home/Documents"));
    EXPECT_EQ(getDocumentsPath("Report", "txt"), at("home/Documents/Report.txt"));
    EXPECT_EQ(getDocumentsPath("Report", nullptr), at("home/Documents/Report"));
    EXPECT_FALSE(pathExists(at("home")));
}

TEST_F(Paths, TheTemporaryFolderIsTheUsersOrTheOneThatWasSet) {
    {
        const EnvironmentVariable temporary("TMPDIR", "/var/tmp/");
        EXPECT_EQ(temporaryPath("", nullptr), "/var/tmp");
        EXPECT_EQ(temporaryPath("page", "pdf"), "/var/tmp/page.pdf");
    }
    for (const char* value : {static_cast<const char*>(nullptr), "", "relative"}) {
        const EnvironmentVariable temporary("TMPDIR", value);
        EXPECT_EQ(temporaryPath("page", nullptr), "/tmp/page");
    }
    setTemporaryFolder("/run/mine");
    EXPECT_EQ(temporaryPath("page", "pdf"), "/run/mine/page.pdf");
    EXPECT_EQ(temporaryPath(nullptr, nullptr), "/run/mine");
    setTemporaryFolder(nullptr);
}

class Listing : public Paths {
  protected:
    void SetUp() override {
        for (const char* name : {"b", "a/deep", ".hidden", "Folder 10", "folder 9"}) {
            std::filesystem::create_directories(at(name).utf8());
        }
        for (const char* name : {"file 10", "File 9", ".secret", "a/.dot", "a/deep/x", ".hidden/y"}) {
            writeFile(at(name).utf8(), "x");
        }
    }
    Array paths(std::initializer_list<const char*> names) const {
        Array result = Array::makeMutable();
        for (const char* name : names) result.add(at(name));
        return result;
    }
    /// What the walk visits, and its result.
    template <class Walk>
    std::vector<std::string> visits(Walk walk, const String& path, uint8_t expected, size_t stopAfter = 1000) {
        struct Visit {
            std::vector<std::string> names;
            size_t stopAfter;
        } visit{{}, stopAfter};
        const PathCallback callback = [](const String& found, void* context) -> uint8_t {
            auto* all = static_cast<Visit*>(context);
            all->names.push_back(found.utf8());
            return all->names.size() < all->stopAfter ? 7 : 0;
        };
        EXPECT_EQ(walk(path, callback, &visit), expected);
        for (std::string& name : visit.names) name.erase(0, folder_.path().size() + 1);
        return visit.names;
    }
};

TEST_F(Listing, FoldersComeInTheOrderOfTheFileBrowserHiddenOnesIncluded) {
    EXPECT_EQ(foldersAtPath(folder_.path().c_str()), paths({".hidden", "a", "b", "folder 9", "Folder 10"}));
    EXPECT_EQ(folderNamesAtPath((folder_.path() + "/").c_str()),
              Array::make({".hidden", "a", "b", "folder 9", "Folder 10"}));
}

TEST_F(Listing, FilesAreAllEntriesThatAreNotHidden) {
    EXPECT_EQ(filesAtPath(folder_.path().c_str(), 0), paths({"a", "b", "File 9", "file 10", "folder 9", "Folder 10"}));
    EXPECT_EQ(filesAtPath(folder_.path().c_str(), 2).count(), 6u);
}

TEST_F(Listing, ADeepListKeepsADotFileInASubfolder) {
    EXPECT_EQ(filesAtPath(folder_.path().c_str(), 1),
              paths({"a", "a/.dot", "a/deep", "a/deep/x", "b", "File 9", "file 10", "folder 9", "Folder 10"}));
}

TEST_F(Listing, ALinkToNothingIsNoFileAndALinkedFolderIsNotEntered) {
    std::filesystem::create_symlink("nowhere", at("b/broken").utf8());
    std::filesystem::create_directory_symlink("..", at("b/loop").utf8());
    EXPECT_EQ(filesAtPath(at("b"), 1), paths({"b/loop"}));
    EXPECT_EQ(foldersAtPath(at("b")), paths({"b/loop"}));
}

TEST_F(Listing, WhatCanNotBeReadGivesAnEmptyList) {
    for (const String& path : {at("missing"), at("file 10"), String(u""), String()}) {
        EXPECT_EQ(foldersAtPath(path), Array::make());
        EXPECT_EQ(folderNamesAtPath(path), Array::make());
        EXPECT_EQ(filesAtPath(path, 1), Array::make());
    }
}

TEST_F(Listing, ANameThatIsNoUtf8IsLeftOut) {
    writeFile(folder_.path() + "/b/\xFF", "x");
    EXPECT_EQ(filesAtPath(at("b"), 1), Array::make());
    EXPECT_EQ(visits(EnumFolder, at("b"), 1), std::vector<std::string>{});
}

TEST_F(Listing, AWalkVisitsEveryDepthAndADotFileInASubfolder) {
    EXPECT_EQ(visits(EnumFolder, folder_.path().c_str(), 1),
              (std::vector<std::string>{"File 9", "Folder 10", "a", "a/.dot", "a/deep", "a/deep/x", "b", "file 10",
                                        "folder 9"}));
}

TEST_F(Listing, AFlatWalkVisitsTheDirectEntries) {
    EXPECT_EQ(visits(EnumFolderFlat, folder_.path().c_str(), 1),
              (std::vector<std::string>{"File 9", "Folder 10", "a", "b", "file 10", "folder 9"}));
    EXPECT_EQ(visits(EnumFolderFlat, at("a"), 1), std::vector<std::string>{"a/deep"});
}

TEST_F(Listing, AWalkStopsAtZero) {
    EXPECT_EQ(visits(EnumFolder, folder_.path().c_str(), 0, 2).size(), 2u);
    EXPECT_EQ(visits(EnumFolderFlat, folder_.path().c_str(), 0, 1).size(), 1u);
    EXPECT_EQ(visits(EnumFolderFlat, at("a"), 0, 1).size(), 1u);
}

TEST_F(Listing, AWalkOfNothingGivesOneWithoutACall) {
    for (const String& path : {at("b"), at("missing"), at("file 10"), String(u""), String()}) {
        EXPECT_TRUE(visits(EnumFolder, path, 1).empty());
        EXPECT_TRUE(visits(EnumFolderFlat, path, 1).empty());
    }
}

TEST_F(Listing, WhatTheCallbackDoesToTheFolderDoesNotDisturbTheWalk) {
    const PathCallback callback = [](const String& path, void* count) -> uint8_t {
        ++*static_cast<int*>(count);
        removeItem(path);
        return 1;
    };
    int count = 0;
    EXPECT_EQ(EnumFolder(folder_.path().c_str(), callback, &count), 1);
    EXPECT_EQ(count, 9);
}

}  // namespace
}  // namespace vornaset
