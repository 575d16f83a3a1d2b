#include "support/pasteboard.h"

#include <sys/wait.h>
#include <unistd.h>

#include "other_process.h"
#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

constexpr const char* kName = "com.kelmoriandev.vornaset";

/// Runs the steps in a process of its own and gives its status: 0 when all expectations of the steps hold.
template <class Steps>
int statusOfOtherProcess(Steps steps) {
    const pid_t child = fork();
    if (child == 0) {
        int status = 99;
        try {
            status = steps() ? 0 : 1;
        } catch (...) {
        }
        _exit(status);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
}

size_t countOfFiles(const std::string& folder) {
    size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    return files;
}

/// Would never end if somebody read it whole.
class EndlessRows : public ArraySource {
  public:
    size_t count() const override { return size_t{1} << 60; }
    Value objectAt(size_t index) const override { return static_cast<int64_t>(index); }
};

class PrivatePasteboard : public testing::Test {
  protected:
    void SetUp() override { Pasteboard::setPrivateSpace(); }
    void TearDown() override { Pasteboard::setPrivateSpace(); }
};

class SharedPasteboard : public PrivatePasteboard {
  protected:
    void SetUp() override { Pasteboard::setSpace(folder_.path()); }
    ScratchFolder folder_;
};

TEST_F(PrivatePasteboard, HandsOverTheObjectItself) {
    const Dictionary job = Dictionary::makeMutable({{"rows", Array::view(std::make_shared<EndlessRows>())}});
    EXPECT_TRUE(Pasteboard::withName(kName).setPropertyList(job, "Vornaset"));
    const Value taken = Pasteboard::withName(kName).propertyListForType("Vornaset");
    EXPECT_TRUE(taken.isSameObject(job));
    EXPECT_TRUE(taken.dictionary().valueForKey("rows").array().isView());
}

TEST_F(PrivatePasteboard, KeepsOneValueForEachTypeOfEachName) {
    Pasteboard board = Pasteboard::withName(kName);
    EXPECT_TRUE(board.types().empty());
    EXPECT_TRUE(board.stringForType("overset").isNull());
    board.setString("3", "overset");
    board.setString("4", "missingImg");
    board.setString("5", "overset");
    EXPECT_EQ(board.stringForType("overset"), String("5"));
    EXPECT_EQ(board.types(), (std::vector<String>{"overset", "missingImg"}));
    EXPECT_TRUE(Pasteboard::withName("another").stringForType("overset").isNull());
    board.clear();
    EXPECT_TRUE(board.stringForType("overset").isNull());
    EXPECT_TRUE(board.types().empty());
}

TEST_F(PrivatePasteboard, StringForTypeGivesTextsAlone) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setPropertyList(Dictionary::make(), "Vornaset");
    EXPECT_TRUE(board.stringForType("Vornaset").isNull());
    EXPECT_TRUE(board.stringForType(nullptr).isNull());
}

TEST_F(PrivatePasteboard, RefusesNullAndChangesNothing) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setString("3", "overset");
    EXPECT_FALSE(board.setPropertyList(nullptr, "overset"));
    EXPECT_FALSE(board.setString(nullptr, "overset"));
    EXPECT_FALSE(board.setString("x", nullptr));
    EXPECT_EQ(board.stringForType("overset"), String("3"));
    EXPECT_THROW(Pasteboard::withName(nullptr), InvalidArgumentException);
}

TEST_F(PrivatePasteboard, ANewSpaceKnowsNothingOfTheOldOne) {
    const Pasteboard before = Pasteboard::withName(kName);
    Pasteboard(before).setString("3", "overset");
    Pasteboard::setPrivateSpace();
    EXPECT_TRUE(Pasteboard::withName(kName).stringForType("overset").isNull());
    EXPECT_EQ(before.stringForType("overset"), String("3"));
}

TEST_F(PrivatePasteboard, AnotherProcessSeesNothingAndChangesNothing) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setString("mine", "overset");
    EXPECT_EQ(statusOfOtherProcess([] {
                  Pasteboard::withName(kName).clear();
                  return Pasteboard::withName(kName).setString("theirs", "overset");
              }),
              0);
    EXPECT_EQ(board.stringForType("overset"), String("mine"));
}

TEST_F(SharedPasteboard, HandsOverTheObjectItselfInItsOwnProcess) {
    const Dictionary job = Dictionary::makeMutable({{"rows", Array::makeMutable({1})}});
    EXPECT_TRUE(Pasteboard::withName(kName).setPropertyList(job, "Vornaset"));
    EXPECT_TRUE(Pasteboard::withName(kName).propertyListForType("Vornaset").isSameObject(job));
}

TEST_F(SharedPasteboard, AnotherProcessReadsAPropertyListWithMutableContainers) {
    const Dictionary job = Dictionary::make({{"rows", Array::make({Dictionary::make({{"Name", u"M\u00FCller"}})})}});
    Pasteboard::withName(kName).setPropertyList(job, "Vornaset");
    EXPECT_EQ(statusOfOtherProcess([&] {
                  Pasteboard::setSpace(folder_.path());
                  const Value read = Pasteboard::withName(kName).propertyListForType("Vornaset");
                  return read == Value(job) && !read.isSameObject(job) && read.dictionary().isMutable() &&
                         read.dictionary().valueForKey("rows").array().isMutable();
              }),
              0);
}

TEST_F(SharedPasteboard, WhatAnotherProcessWroteReplacesTheOwnObject) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setString("1", "overset");
    EXPECT_EQ(statusOfOtherProcess([&] {
                  Pasteboard::setSpace(folder_.path());
                  return Pasteboard::withName(kName).setString("2", "overset");
              }),
              0);
    EXPECT_EQ(board.stringForType("overset"), String("2"));
    const Value first = board.propertyListForType("overset");
    EXPECT_TRUE(board.propertyListForType("overset").isSameObject(first));
}

TEST_F(SharedPasteboard, WhatAnotherProcessClearedIsGone) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setString("1", "overset");
    board.setPropertyList(Dictionary::make(), "Vornaset");
    EXPECT_EQ(board.types(), (std::vector<String>{"Vornaset", "overset"}));
    EXPECT_EQ(statusOfOtherProcess([&] {
                  Pasteboard::setSpace(folder_.path());
                  Pasteboard::withName(kName).clear();
                  return true;
              }),
              0);
    EXPECT_TRUE(board.propertyListForType("Vornaset").isNull());
    EXPECT_TRUE(board.types().empty());
}

TEST_F(SharedPasteboard, ClearingOnePasteboardLeavesTheOthers) {
    Pasteboard::withName("one").setString("1", "t");
    Pasteboard::withName("two").setString("2", "t");
    Pasteboard::withName("one").clear();
    EXPECT_TRUE(Pasteboard::withName("one").stringForType("t").isNull());
    EXPECT_EQ(Pasteboard::withName("two").stringForType("t"), String("2"));
}

TEST_F(SharedPasteboard, NoNameLeavesTheFolder) {
    for (const char* name : {"../outside", "/absolute", "..", ".", "", "a/b", "\xC3\xA4 %41"}) {
        Pasteboard board = Pasteboard::withName(name);
        EXPECT_TRUE(board.setString("x", name)) << name;
        EXPECT_EQ(board.stringForType(name), String("x"));
        EXPECT_EQ(board.types(), std::vector<String>{name});
    }
    size_t boards = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
        boards += entry.is_directory() ? 1 : 0;
    EXPECT_EQ(boards, 7u);
}

TEST_F(SharedPasteboard, WhatNoPropertyListCanHoldIsRefused) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setString("old", "t");
    EXPECT_FALSE(board.setPropertyList(Array::make({Value::nothing()}), "t"));
    EXPECT_EQ(board.stringForType("t"), String("old"));
}

TEST_F(SharedPasteboard, ADamagedFileReadsAsNothing) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setString("1", "t");
    writeFile(folder_.path() + "/" + kName + "/t.plist", "<plist version=\"1.0\"><string>half");
    EXPECT_TRUE(board.propertyListForType("t").isNull());
    EXPECT_TRUE(board.setString("2", "t"));
    EXPECT_EQ(board.stringForType("t"), String("2"));
}

TEST_F(SharedPasteboard, LeavesNoHalfFilesBehind) {
    Pasteboard board = Pasteboard::withName(kName);
    for (int round = 0; round < 5; ++round) board.setString(Number(round).text(), "t");
    size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(files, 1u);
}

TEST_F(SharedPasteboard, AReaderSeesWholeValuesWhileAnotherProcessWrites) {
    const auto valueOfRound = [](int round) {
        return Value(Array::make({round, String(std::u16string(20000, u'x')), round}));
    };
    Pasteboard::withName(kName).setPropertyList(valueOfRound(0), "t");
    const pid_t writer = fork();
    if (writer == 0) {
        Pasteboard::setSpace(folder_.path());
        for (int round = 1; round <= 200; ++round)
            Pasteboard::withName(kName).setPropertyList(valueOfRound(round), "t");
        _exit(0);
    }
    int last = 0;
    for (int status = 0; waitpid(writer, &status, WNOHANG) == 0;) {
        const Array read = Pasteboard::withName(kName).propertyListForType("t").array();
        ASSERT_EQ(read.count(), 3u);
        ASSERT_EQ(read[0], read[2]);
        ASSERT_GE(read[0].number().intValue(), last);
        last = read[0].number().intValue();
    }
    EXPECT_EQ(Pasteboard::withName(kName).propertyListForType("t").array()[0].number(), Number(200));
}

TEST_F(SharedPasteboard, AWriterThatIsKilledLeavesWholeValuesAlone) {
    const auto valueOfRound = [](int64_t round) {
        return Value(Array::make({round, String(std::u16string(200000, u'x')), round}));
    };
    Pasteboard::withName(kName).setPropertyList(valueOfRound(0), "t");
    for (int crash = 0; crash < 10; ++crash) {
        OtherProcess writer([&] {
            Pasteboard::setSpace(folder_.path());
            for (int64_t round = 1;; ++round) Pasteboard::withName(kName).setPropertyList(valueOfRound(round), "t");
            return true;
        });
        usleep(20000 + crash * 1500);
        writer.kill();
        const Array read = Pasteboard::withName(kName).propertyListForType("t").array();
        ASSERT_EQ(read.count(), 3u);
        EXPECT_EQ(read[0], read[2]);
    }
    Pasteboard::withName(kName).setString("after", "t");
    Pasteboard::setSpace(folder_.path());  // as the next program would begin
    EXPECT_EQ(Pasteboard::withName(kName).stringForType("t"), String("after"));
    EXPECT_EQ(countOfFiles(folder_.path()), 1u);
}

TEST_F(SharedPasteboard, AReaderThatIsKilledChangesNothing) {
    Pasteboard board = Pasteboard::withName(kName);
    board.setPropertyList(Array::make({"kept"}), "t");
    OtherProcess reader([&] {
        Pasteboard::setSpace(folder_.path());
        while (Pasteboard::withName(kName).propertyListForType("t").array().count() < 2) {
        }
        return true;
    });
    usleep(20000);
    reader.kill();
    EXPECT_EQ(board.propertyListForType("t"), Value(Array::make({"kept"})));
    EXPECT_TRUE(board.setString("next", "t"));
    EXPECT_EQ(board.stringForType("t"), String("next"));
}

TEST_F(SharedPasteboard, WhatADeadProcessLeftUnfinishedIsTakenAwayAndWhatALivingOneWritesIsNot) {
    pid_t dead = 0;
    {
        OtherProcess process([] { return true; });
        dead = process.pid();
    }
    const std::string board = folder_.path() + "/" + kName;
    std::filesystem::create_directory(board);
    writeFile(board + "/." + std::to_string(dead) + ".new", "half");
    writeFile(board + "/." + std::to_string(getpid()) + ".new", "half");
    writeFile(board + "/.other.new", "not ours");
    Pasteboard::setSpace(folder_.path());
    EXPECT_FALSE(std::filesystem::exists(board + "/." + std::to_string(dead) + ".new"));
    EXPECT_EQ(countOfFiles(folder_.path()), 2u);
    EXPECT_TRUE(Pasteboard::withName(kName).types().empty());
}

TEST_F(SharedPasteboard, ManyQuickWritingsOfOthersAreNeverTakenForTheOwn) {
    Pasteboard board = Pasteboard::withName(kName);
    for (int round = 0; round < 20; ++round) {
        board.setString("mine", "t");
        EXPECT_EQ(statusOfOtherProcess([&] {
                      Pasteboard::setSpace(folder_.path());
                      return Pasteboard::withName(kName).setString("none", "t") &&
                             Pasteboard::withName(kName).setString("hers", "t");
                  }),
                  0);
        ASSERT_EQ(board.stringForType("t"), String("hers"));
    }
}

TEST_F(SharedPasteboard, TwoSpacesNeverMeet) {
    ScratchFolder other;
    Pasteboard::withName(kName).setString("mine", "Vornaset");
    EXPECT_EQ(statusOfOtherProcess([&] {
                  Pasteboard::setSpace(other.path());
                  const bool saw = !Pasteboard::withName(kName).stringForType("Vornaset").isNull();
                  Pasteboard::withName(kName).clear();
                  return !saw;
              }),
              0);
    EXPECT_EQ(Pasteboard::withName(kName).stringForType("Vornaset"), String("mine"));
}

TEST(PasteboardSpace, AFolderThatCanNotBeMadeRaises) {
    ScratchFolder folder;
    writeFile(folder.path() + "/file", "x");
    EXPECT_THROW(Pasteboard::setSpace(folder.path() + "/file"), Exception);
    EXPECT_THROW(Pasteboard::setSpace(folder.path() + "/file/below"), Exception);
    Pasteboard::setSpace(folder.path() + "/new/folder");
    EXPECT_TRUE(Pasteboard::withName(kName).setString("x", "t"));
    Pasteboard::setPrivateSpace();
}

}  // namespace
}  // namespace vornaset
