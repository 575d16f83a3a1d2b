#include "companion/run_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "companion/barcode_source.h"
#include "companion/error.h"
#include "support/paths.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

class InATemporaryFolder : public ::testing::Test {
  protected:
    InATemporaryFolder() {
        const char* set = std::getenv("TMPDIR");
        former = set ? set : "";
        base = fs::temp_directory_path() / ("run_folder_" + std::to_string(::getpid()));
        fs::create_directories(base);
        ::setenv("TMPDIR", base.c_str(), 1);
    }
    ~InATemporaryFolder() override {
        former.empty() ? ::unsetenv("TMPDIR") : ::setenv("TMPDIR", former.c_str(), 1);
        std::error_code ignored;
        fs::remove_all(base, ignored);
    }
    std::string former;
    fs::path base;
};

using RunFolders = InATemporaryFolder;

TEST_F(RunFolders, ProgramsThatTheRunStartsPutTheirFilesThereToo) {
    {
        const RunFolder folder;
        EXPECT_EQ(std::getenv("TMPDIR"), folder.path());
        std::ofstream(fs::path(std::getenv("TMPDIR")) / "left_by_a_killed_program") << "x";
    }
    EXPECT_EQ(std::getenv("TMPDIR"), base.string());
    EXPECT_TRUE(fs::is_empty(base));
}

TEST_F(RunFolders, TheRunSeesItsFolderAsTheTemporaryOneAndLeavesNothing) {
    {
        RunFolder folder;
        EXPECT_EQ(vornaset::temporaryPath(nullptr, nullptr).utf8(), folder.path());
        std::ofstream(folder.path() + "/x.pdf") << "x";
        folder.clear();
        EXPECT_TRUE(fs::is_empty(folder.path()));
        std::ofstream(folder.path() + "/y.pdf") << "y";
    }
    EXPECT_TRUE(fs::is_empty(base));
    EXPECT_EQ(vornaset::temporaryPath(nullptr, nullptr).utf8(), base.string());
}

TEST_F(RunFolders, ALiveRunKeepsItsFolderAndADeadOnesGoes) {
    fs::create_directories(base / "vornaset-run-dead00");
    std::ofstream(base / "vornaset-run-dead00" / "x.pdf") << "x";
    std::ofstream(base / "vornaset-run-file") << "x";
    RunFolder first;
    EXPECT_FALSE(fs::exists(base / "vornaset-run-dead00"));
    EXPECT_TRUE(fs::exists(base / "vornaset-run-file")) << "a file is none of ours";
    RunFolder second;
    EXPECT_TRUE(fs::exists(first.path()));
    EXPECT_NE(first.path(), second.path());
}

TEST_F(RunFolders, AFolderThatCannotBeMadeIsToldInASentence) {
    ::setenv("TMPDIR", (base / "none").c_str(), 1);
    EXPECT_THROW(RunFolder(), Error);
}

TEST_F(RunFolders, TheWorkingFolderComesBack) {
    const fs::path here = fs::current_path();
    {
        WorkingFolder there(base);
        EXPECT_EQ(fs::current_path(), fs::canonical(base));
    }
    EXPECT_EQ(fs::current_path(), here);
    EXPECT_THROW(WorkingFolder((base / "none").string()), Error);
}

/// Without the rights of root, which no folder keeps out.
class AsAnybody {
  public:
    AsAnybody() {
        if (former_ == 0) static_cast<void>(::seteuid(nobody));
    }
    ~AsAnybody() {
        if (former_ == 0) static_cast<void>(::seteuid(former_));
    }

  private:
    static constexpr uid_t nobody = 65534;
    const uid_t former_ = ::geteuid();
};

TEST_F(RunFolders, AWorkingFolderThatCannotBeListedComesBackToo) {
    const fs::path here = fs::current_path(), closed = base / "closed", pictures = base / "pictures";
    fs::create_directory(closed);
    fs::create_directory(pictures);
    fs::permissions(closed, fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec);
    bool isReached = false;
    fs::path back;
    fs::current_path(closed);
    {
        const AsAnybody anybody;
        isReached = ::faccessat(AT_FDCWD, pictures.c_str(), X_OK, AT_EACCESS) == 0;
        if (isReached) {
            { const WorkingFolder there(pictures); }
            back = fs::current_path();
        }
    }
    fs::current_path(here);
    if (!isReached) GTEST_SKIP() << "the temporary folder is closed to others";
    EXPECT_EQ(back, fs::canonical(closed));
}

TEST(BarcodeCodes, OnlyFileNamesAreDrawn) {
    EXPECT_TRUE(isFileName("4006381333931"));
    EXPECT_TRUE(isFileName("."));
    for (const std::string& bad : {std::string(), std::string(".."), std::string("a/b"), std::string("../x"),
                                   std::string("a\0b", 3), std::string(252, '1')})
        EXPECT_FALSE(isFileName(bad)) << bad;
}

}  // namespace
}  // namespace companion
