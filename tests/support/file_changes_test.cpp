#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <fstream>

#include "environment_variable.h"
#include "support/log.h"
#include "support/paths.h"
#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

class FileChanges : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directory(log_.path() + "/Documents");
        setupLog(1, 0, nullptr);
        logged_ = contentOf(getLogPath().utf8()).size();
    }
    void TearDown() override { setLogging(0, 0); }
    String at(const std::string& name) const { return String::fromUTF8(folder_.path() + "/" + name); }
    void write(const std::string& name, const std::string& content = "x") const {
        std::filesystem::create_directories(std::filesystem::path(at(name).utf8()).parent_path());
        writeFile(at(name).utf8(), content);
    }
    std::string read(const std::string& name) const { return contentOf(at(name).utf8()); }
    void setDate(const std::string& name, time_t seconds) const {
        const timespec times[2] = {{seconds, 5}, {seconds, 123456789}};
        ASSERT_EQ(utimensat(AT_FDCWD, at(name).utf8().c_str(), times, 0), 0);
    }
    /// What the log got since it was asked last, behind the time and the product's name.
    std::string logged() {
        const std::string all = contentOf(getLogPath().utf8());
        std::string entries;
        for (size_t at = logged_; at < all.size();) {
            const size_t end = std::min(all.find('\n', at), all.size());
            const std::string line = all.substr(at, end - at);
            entries += line.substr(std::min(line.find("::") + 2, line.size())) + "\n";
            at = end + 1;
        }
        logged_ = all.size();
        return entries;
    }
    String tooLong() const { return at(std::string(300, 'x')); }

    ScratchFolder folder_;
    ScratchFolder log_;
    EnvironmentVariable home_{"HOME", log_.path().c_str()};
    EnvironmentVariable configuration_{"XDG_CONFIG_HOME", nullptr};
    size_t logged_ = 0;
};

TEST_F(FileChanges, AFolderIsMadeWithItsParents) {
    EXPECT_TRUE(createDir(at("a/b/c")));
    EXPECT_TRUE(pathIsFolder(at("a/b/c")));
    EXPECT_TRUE(createDir(at("slash/")));
    EXPECT_TRUE(pathIsFolder(at("slash")));
    createDirectories(at("d/e"));
    EXPECT_TRUE(pathIsFolder(at("d/e")));
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, AnItemInTheWayOfANewFolderMeansSuccess) {
    write("file");
    EXPECT_TRUE(createDir(at("file")));
    EXPECT_FALSE(pathIsFolder(at("file")));
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, AFolderThatCanNotBeMadeIsLoggedWithoutALabel) {
    write("file");
    EXPECT_FALSE(createDir(at("file/below")));
    EXPECT_EQ(logged(), "Not a directory\n");
    createDirectories(tooLong());
    EXPECT_EQ(logged(), "File name too long\n");
    EXPECT_FALSE(createDir(u""));
    EXPECT_NE(logged(), "");
}

TEST_F(FileChanges, AFolderInAParentGivesThePath) {
    EXPECT_EQ(createDir(at("p"), "q"), at("p/q"));
    EXPECT_TRUE(pathIsFolder(at("p/q")));
    EXPECT_EQ(createDir(at("r"), ""), at("r"));
    EXPECT_TRUE(pathIsFolder(at("r")));
    write("file");
    EXPECT_EQ(createDir(at("file"), "below"), at("file/below"));
}

TEST_F(FileChanges, RemovingTellsWhetherItWorkedEachInItsOwnWay) {
    write("1");
    write("2");
    write("3");
    EXPECT_TRUE(removeItem(at("1")));
    EXPECT_TRUE(removeFile(at("2")));
    EXPECT_TRUE(removeItemAtPath(at("3")).isNull());
    EXPECT_EQ(foldersAtPath(at("")), Array::make());
    EXPECT_EQ(filesAtPath(at(""), 0), Array::make());
}

TEST_F(FileChanges, AMissingItemIsAFailureForRemoveItemAlone) {
    EXPECT_FALSE(removeItem(at("missing")));
    EXPECT_TRUE(removeFile(at("missing")));
    EXPECT_TRUE(removeItemAtPath(at("missing")).isNull());
    EXPECT_TRUE(removeFile(nullptr));
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, AFailingRemovalIsLoggedEachInItsOwnWay) {
    EXPECT_FALSE(removeItem(tooLong()));
    EXPECT_EQ(logged(), "");
    EXPECT_FALSE(removeFile(tooLong()));
    EXPECT_EQ(logged(), tooLong().utf8() + ": File name too long\n");
    EXPECT_EQ(removeItemAtPath(tooLong()), "File name too long");
    EXPECT_EQ(logged(), "File name too long\n");
}

TEST_F(FileChanges, AFolderIsRemovedWithAllThatIsInItAndALinkAlone) {
    write("f/a/b");
    write("kept/file");
    std::filesystem::create_directory_symlink(at("kept").utf8(), at("f/link").utf8());
    EXPECT_TRUE(removeFile(at("f/link/")));
    EXPECT_FALSE(pathExists(at("f/link")));
    std::filesystem::create_directory_symlink(at("kept").utf8(), at("f/link").utf8());
    EXPECT_TRUE(removeFile(at("f")));
    EXPECT_FALSE(pathExists(at("f")));
    EXPECT_TRUE(pathExists(at("kept/file")));
}

TEST_F(FileChanges, CopyFileCopiesOnlyWhatHasChanged) {
    write("a", "new");
    write("b", "old");
    setDate("a", 1000000);
    setDate("b", 1000000);
    EXPECT_FALSE(copyFile(at("a"), at("b")));
    EXPECT_EQ(read("b"), "old");
    setDate("b", 1000001);
    EXPECT_TRUE(copyFile(at("a"), at("b")));
    EXPECT_EQ(read("b"), "new");
    EXPECT_FALSE(copyFile(at("a"), at("b")));
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, CopyFileIntoAFolderTakesTheSameName) {
    write("a.txt", "new");
    createDir(at("folder"));
    EXPECT_TRUE(copyFile(at("a.txt"), at("folder")));
    EXPECT_EQ(read("folder/a.txt"), "new");
    EXPECT_FALSE(copyFile(at("a.txt"), at("folder")));
    EXPECT_FALSE(copyFile(at("a.txt"), folder_.path().c_str()));
    EXPECT_EQ(read("a.txt"), "new");
}

TEST_F(FileChanges, CopyFileWithoutASourceLogsInItsOwnForm) {
    EXPECT_FALSE(copyFile(at("missing"), at("target")));
    EXPECT_EQ(logged(), "\t\t#### No such file or directory\n");
    write("target");
    EXPECT_FALSE(copyFile(at("missing"), at("target")));
    EXPECT_FALSE(pathExists(at("target")));
}

TEST_F(FileChanges, ACopyKeepsDateAndPermissions) {
    write("a", "#!/bin/sh\n");
    chmod(at("a").utf8().c_str(), 0751);
    setDate("a", 1000000);
    copyItemToPath(at("a"), at("b"));
    struct stat status {};
    ASSERT_EQ(stat(at("b").utf8().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0751u);
    EXPECT_EQ(status.st_mtim.tv_sec, 1000000);
    EXPECT_EQ(status.st_mtim.tv_nsec, 123456789);
}

TEST_F(FileChanges, ACopyReplacesWhatIsThereFoldersIncluded) {
    write("source/a/b", "1");
    std::filesystem::create_symlink("b", at("source/a/link").utf8());
    write("target/old");
    setDate("source/a", 1000000);
    copyItemToPath(at("source"), at("target"));
    EXPECT_EQ(read("target/a/b"), "1");
    EXPECT_EQ(std::filesystem::read_symlink(at("target/a/link").utf8()), "b");
    EXPECT_FALSE(pathExists(at("target/old")));
    EXPECT_EQ(modDateForPath(at("target/a")), modDateForPath(at("source/a")));
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, ACopyOntoItselfRemovesTheFileFirst) {
    write("a");
    copyItemToPath(at("a"), at("a"));
    EXPECT_FALSE(pathExists(at("a")));
    EXPECT_EQ(logged(), "No such file or directory\n");
}

TEST_F(FileChanges, AFolderIsNotCopiedIntoItself) {
    write("f/a");
    copyItemToPath(at("f"), at("f/g/h"));
    EXPECT_EQ(logged(), "Invalid argument\n");
    EXPECT_EQ(filesAtPath(at("f"), 1).count(), 1u);
}

TEST_F(FileChanges, ACopyThatFailsHalfWayIsTakenAway) {
    write("f/a");
    ASSERT_EQ(mkfifo(at("f/pipe").utf8().c_str(), 0600), 0);
    copyItemToPath(at("f"), at("g"));
    EXPECT_NE(logged(), "");
    EXPECT_FALSE(pathExists(at("g")));
    EXPECT_TRUE(pathExists(at("f/a")));
}

TEST_F(FileChanges, CopyFileObjectMakesTheFolderAndGivesTheNewPath) {
    write("a", "1");
    EXPECT_EQ(copyFileObject(at("a"), at("x/y")), at("x/y/a"));
    EXPECT_EQ(read("x/y/a"), "1");
    write("a", "2");
    EXPECT_EQ(copyFileObject(at("a"), at("x/y/")), at("x/y/a"));
    EXPECT_EQ(read("x/y/a"), "2");
    EXPECT_EQ(copyFileObject(at("missing"), at("x")), at("x/missing"));
    EXPECT_EQ(logged(), "No such file or directory\n");
}

TEST_F(FileChanges, AMoveToTheSamePlaceLeavesTheFile) {
    write("a", "1");
    moveItemToPath(at("a"), at("a"));
    moveItemToPath(at("a"), at("./a"));
    moveItemToPath(at("a"), at("a/"));
    EXPECT_EQ(read("a"), "1");
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, AMoveReplacesWhatIsThere) {
    write("a", "1");
    write("b/old");
    moveItemToPath(at("a"), at("b"));
    EXPECT_EQ(read("b"), "1");
    EXPECT_FALSE(pathExists(at("a")));
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, AMoveWithoutASourceRemovesTheTargetAndLogs) {
    write("b");
    moveItemToPath(at("missing"), at("b"));
    EXPECT_FALSE(pathExists(at("b")));
    EXPECT_EQ(logged(), "No such file or directory\n");
}

TEST_F(FileChanges, AMoveCrossesFileSystems) {
    std::error_code error;
    std::string pattern = "/dev/shm/support-test-XXXXXX";
    struct stat here {};
    struct stat there {};
    if (mkdtemp(pattern.data()) == nullptr) GTEST_SKIP() << "no second file system to move to";
    stat(folder_.path().c_str(), &here);
    stat(pattern.c_str(), &there);
    const bool differ = here.st_dev != there.st_dev;
    write("f/a", "1");
    setDate("f/a", 1000000);
    const auto date = modDateForPath(at("f/a"));
    moveItemToPath(at("f"), String::fromUTF8(pattern + "/f"));
    EXPECT_EQ(contentOf(pattern + "/f/a"), "1");
    EXPECT_EQ(modDateForPath(String::fromUTF8(pattern + "/f/a")), date);
    EXPECT_FALSE(pathExists(at("f")));
    std::filesystem::remove_all(pattern, error);
    if (!differ) GTEST_SKIP() << "no second file system to move to";
}

TEST_F(FileChanges, MoveFileObjectGivesTheNewPathOrNullWhenNothingMoved) {
    write("a", "1");
    EXPECT_TRUE(moveFileObject(at("a"), folder_.path().c_str()).isNull());
    EXPECT_EQ(read("a"), "1");
    EXPECT_EQ(moveFileObject(at("a"), at("x/y")), at("x/y/a"));
    EXPECT_EQ(read("x/y/a"), "1");
    EXPECT_FALSE(pathExists(at("a")));
    EXPECT_TRUE(moveFileObject(at("missing"), at("x")).isNull());
    EXPECT_EQ(logged(), "No such file or directory\n");
}

TEST_F(FileChanges, AttributesOfAMissingItemAreZeroOrNull) {
    EXPECT_EQ(fileSizeForPath(at("missing")), 0);
    EXPECT_FALSE(modDateForPath(at("missing")).has_value());
    EXPECT_EQ(modDateSecondsForPath(at("missing")), 0);
    EXPECT_TRUE(dateStringForPath(at("missing")).isNull());
    EXPECT_EQ(fileHFSType(at("missing")), 0u);
    EXPECT_EQ(labelColorForPath(at("missing")), 0u);
    setLabelColorForPath(at("missing"), 3);
    EXPECT_EQ(fileSizeForPath(nullptr), 0);
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, SizeAndDateOfAFile) {
    write("a", std::string(12345, 'x'));
    setDate("a", 1714564800);
    EXPECT_EQ(fileSizeForPath(at("a")), 12345);
    EXPECT_DOUBLE_EQ(modDateSecondsForPath(at("a")), 1714564800.123456789);
    EXPECT_EQ(modDateForPath(at("a"))->seconds, modDateSecondsForPath(at("a")));
    EXPECT_EQ(dateStringForPath(at("a")), "2024-05-01 12:00:00 +0000");
    setDate("a", -86400);
    EXPECT_LT(modDateSecondsForPath(at("a")), 0);
}

TEST_F(FileChanges, ASizeBeyondFourGigabytesIsWhole) {
    write("sparse");
    std::error_code error;
    std::filesystem::resize_file(at("sparse").utf8(), 5000000000, error);
    if (error) GTEST_SKIP() << "no sparse files here";
    EXPECT_EQ(fileSizeForPath(at("sparse")), 5000000000);
}

TEST_F(FileChanges, AnEmptyOrMissingFileIsBusy) {
    write("empty", "");
    write("full", "x");
    EXPECT_TRUE(fileIsBusy(at("empty")));
    EXPECT_TRUE(fileIsBusy(at("missing")));
    EXPECT_TRUE(fileIsBusy(nullptr));
    EXPECT_FALSE(fileIsBusy(at("full")));
}

TEST(BusyFiles, AreEmptyOrWereMadeBefore1970) {
    EXPECT_TRUE(isBusy(1, Date{-0.5}));
    EXPECT_TRUE(isBusy(0, Date{1e9}));
    EXPECT_TRUE(isBusy(0, std::nullopt));
    EXPECT_FALSE(isBusy(1, Date{0}));
    EXPECT_FALSE(isBusy(1, std::nullopt));
}

TEST_F(FileChanges, LabelsAreKeptAndTravelWithCopies) {
    write("a");
    if (setxattr(at("a").utf8().c_str(), "user.test", "x", 1, 0) != 0) GTEST_SKIP() << "no extended attributes here";
    EXPECT_EQ(labelColorForPath(at("a")), 0u);
    setLabelColorForPath(at("a"), 6);
    EXPECT_EQ(labelColorForPath(at("a")), 6u);
    copyItemToPath(at("a"), at("b"));
    EXPECT_EQ(labelColorForPath(at("b")), 6u);
    setLabelColorForPath(at("a"), 0);
    setLabelColorForPath(at("a"), 0);
    EXPECT_EQ(labelColorForPath(at("a")), 0u);
    setLabelColorForPath(at("a"), 0xFFFFFFFF);
    EXPECT_EQ(labelColorForPath(at("a")), 0xFFFFFFFFu);
    EXPECT_EQ(logged(), "");
}

TEST_F(FileChanges, ALabelThatCanNotBeSetIsLogged) {
    setLabelColorForPath("/proc/version", 3);
    EXPECT_NE(logged(), "");
    EXPECT_EQ(labelColorForPath("/proc/version"), 0u);
}

TEST_F(FileChanges, TheTypeComesFromTheFinderInformation) {
    write("a");
    const std::string information = "TEXTttxt" + std::string(24, '\0');
    if (setxattr(at("a").utf8().c_str(), "user.com.apple.FinderInfo", information.data(), information.size(), 0) != 0) {
        GTEST_SKIP() << "no extended attributes here";
    }
    EXPECT_EQ(stringWithOSType(fileHFSType(at("a"))), "TEXT");
    write("b");
    EXPECT_EQ(fileHFSType(at("b")), 0u);
}

TEST(TypeCodes, AreFourBytesOfMacRoman) {
    EXPECT_EQ(stringWithOSType(0x54455854), "TEXT");
    EXPECT_EQ(OSTypeWithString("TEXT"), 0x54455854u);
    EXPECT_EQ(stringWithOSType(0x80204120), u"\u00C4 A ");
    EXPECT_EQ(OSTypeWithString(u"\u00C4 A "), 0x80204120u);
    for (uint32_t code : {0u, 0x01020304u, 0xFFFEFDFCu, 0x8081A0CAu}) {
        EXPECT_EQ(OSTypeWithString(stringWithOSType(code)), code);
    }
}

TEST(TypeCodes, ATextThatIsNoCodeGivesZero) {
    EXPECT_EQ(OSTypeWithString("TEX"), 0u);
    EXPECT_EQ(OSTypeWithString("TEXTS"), 0u);
    EXPECT_EQ(OSTypeWithString(u"TE\u4E2DT"), 0u);
    EXPECT_EQ(OSTypeWithString(u""), 0u);
    EXPECT_EQ(OSTypeWithString(nullptr), 0u);
}

TEST(TypeCodes, APascalStringBeginsWithItsLength) {
    const uint8_t bytes[] = {3, 'a', 0x8A, 'c', 'd'};
    EXPECT_EQ(stringWithPascalString(bytes), u"a\u00E4c");
    const uint8_t empty[] = {0, 'x'};
    EXPECT_EQ(stringWithPascalString(empty), "");
    EXPECT_TRUE(stringWithPascalString(nullptr).isNull());
}

}  // namespace
}  // namespace vornaset
