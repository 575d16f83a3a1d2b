#include "companion/whole_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "companion/error.h"
#include "companion/output_places.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

class WholeFiles : public testing::Test {
  protected:
    WholeFiles() {
        std::string pattern = (fs::temp_directory_path() / "whole-file-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
        folder_ = pattern;
    }
    ~WholeFiles() override { fs::remove_all(folder_); }

    std::string path(const char* name) const { return (folder_ / name).string(); }
    void write(const char* name, const char* text) const { std::ofstream(folder_ / name) << text; }
    std::string text(const char* name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(folder_ / name).rdbuf();
        return bytes.str();
    }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }
    static std::string refusal(const std::string& path) {
        try {
            WholeFile("the report", path);
        } catch (const Error& error) {
            return error.what();
        }
        return "accepted";
    }
    /// The number of a process that has ended.
    static pid_t endedProcess() {
        const pid_t child = ::fork();
        if (child == 0) ::_exit(0);
        ::waitpid(child, nullptr, 0);
        return child;
    }

    fs::path folder_;
};

TEST_F(WholeFiles, AppearWhenTheyAreWhole) {
    write("r.json", "old");
    {
        WholeFile file("the report", path("r.json"));
        EXPECT_EQ(text("r.json"), "old");
        EXPECT_EQ(fileCount(), 2u) << "the temporary file stands beside it from the start";
        file.finish("new");
    }
    EXPECT_EQ(text("r.json"), "new");
    { const WholeFile unfinished("the report", path("r.json")); }
    EXPECT_EQ(text("r.json"), "new");
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(WholeFiles, FollowALinkToTheFileThatItNames) {
    write("real.json", "old");
    fs::create_symlink("real.json", folder_ / "link.json");
    WholeFile("the report", path("link.json")).finish("new");
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.json"));
    EXPECT_EQ(text("real.json"), "new");
}

TEST_F(WholeFiles, NeverTakeThePlaceOfADeviceAPipeOrAFolder) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(refusal(path("pipe")),
              "the report \"" + path("pipe") + "\" isn't an ordinary file; choose another name.");
    fs::create_symlink("/dev/null", folder_ / "null");
    EXPECT_EQ(refusal(path("null")),
              "the report \"" + path("null") + "\" isn't an ordinary file; choose another name.");
    EXPECT_EQ(refusal(path("")), "the report \"" + path("") + "\" is a folder; name a file in it.");
    EXPECT_EQ(refusal(path("none/r.json")), "the report \"" + path("none/r.json") +
                                                "\" can't be written: there is no folder \"" + path("none") +
                                                "\"; make it or choose another one.");
    EXPECT_EQ(refusal(""), "the report has no name; give it a file name.");
}

TEST_F(WholeFiles, TakeAwayWhatAKilledProcessLeftAndNothingElse) {
    const std::string ended = std::to_string(endedProcess());
    write((".r.json." + ended + ".part").c_str(), "left");
    write((".r.json." + ended + "-2.part").c_str(), "left");
    const std::string ours = ".r.json." + std::to_string(::getppid()) + ".part";
    write(ours.c_str(), "a running process's");
    write((".other.json." + ended + ".part").c_str(), "another output's");
    write(".r.json.part", "no process's");
    WholeFile("the report", path("r.json")).finish("new");
    EXPECT_FALSE(fs::exists(folder_ / (".r.json." + ended + ".part")));
    EXPECT_FALSE(fs::exists(folder_ / (".r.json." + ended + "-2.part")));
    EXPECT_EQ(fileCount(), 4u);
}

TEST_F(WholeFiles, MayHaveTheLongestNameThatThereIs) {
    const std::string name(255, 'n');
    WholeFile("the report", path(name.c_str())).finish("new");
    EXPECT_EQ(text(name.c_str()), "new");
}

TEST_F(WholeFiles, AreTheSamePlaceUnderOtherSpellings) {
    EXPECT_TRUE(isSamePlace(path("out.pdf"), path("./out.pdf"))) << "though nothing stands there yet";
    EXPECT_TRUE(isSamePlace(path("none/../out.pdf"), path("out.pdf")));
    EXPECT_FALSE(isSamePlace(path("out.pdf"), path("out.json")));
    EXPECT_FALSE(isSamePlace("", ""));
    write("a", "");
    fs::create_symlink("a", folder_ / "b");
    fs::create_hard_link(folder_ / "a", folder_ / "c");
    EXPECT_TRUE(isSamePlace(path("a"), path("b")));
    EXPECT_TRUE(isSamePlace(path("b"), path("c")));
}

}  // namespace
}  // namespace companion
