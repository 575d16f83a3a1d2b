#include "companion/barcode_source.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "companion/error.h"
#include "support/exception.h"
#include "support/processes.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

constexpr auto nobodyStops = [] { return false; };

class BarcodePrograms : public testing::Test {
  protected:
    BarcodePrograms() {
        std::string pattern = (fs::temp_directory_path() / "barcode-source-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
        folder_ = pattern;
    }
    ~BarcodePrograms() override { fs::remove_all(folder_); }

    std::string program(const std::string& text) const {
        const fs::path path = folder_ / "tool";
        std::ofstream(path) << text;
        ::chmod(path.c_str(), 0755);
        return path.string();
    }
    static vornaset::Data draw(const BarcodeSource& source, const char* code) {
        return vornaset::dataWithShellScript(vornaset::String::fromDamagedUTF8(source.name()),
                                             vornaset::Array::make({"-e", "ean13", "-b", code, "-D"}));
    }

    /// A letter as the kernel tells it; empty when there is no such process.
    static std::string stateOf(pid_t process) {
        std::ifstream status("/proc/" + std::to_string(process) + "/stat");
        std::string number, name, state;
        status >> number >> name >> state;
        return state;
    }

    fs::path folder_;
};

TEST_F(BarcodePrograms, GiveWhatTheyPrintAndReadNoInput) {
    const BarcodeSource source(program("#!/bin/sh\ncat\necho \"$4\"\n"), nobodyStops);
    EXPECT_EQ(draw(source, "4006381333931").view(), "4006381333931\n");
    EXPECT_EQ(source.failure(), "");
}

TEST_F(BarcodePrograms, ThatPrintNothingGiveNoBarcode) {
    const BarcodeSource source(program("#!/bin/sh\nexit 3\n"), nobodyStops);
    EXPECT_EQ(draw(source, "4006381333931").length(), 0u);
    EXPECT_EQ(source.whyNone("4006381333931"),
              "there is no such file, and no barcode: the barcode program printed nothing.");
    EXPECT_EQ(source.failure(), "");
}

TEST_F(BarcodePrograms, ThatPrintAWholeFileEndTheRun) {
    const std::string tool = program("#!/bin/sh\necho %PDF-1.4\n");
    const BarcodeSource source(tool, nobodyStops);
    EXPECT_THROW(draw(source, "4006381333931"), vornaset::Exception);
    EXPECT_EQ(source.failure(), "the barcode program \"" + tool +
                                    "\" printed a whole PDF file instead of a page's content for the code "
                                    "\"4006381333931\"; try it by hand: " +
                                    tool + " -e ean13 -b 4006381333931 -D.");
}

TEST_F(BarcodePrograms, ThatCannotBeStartedEndTheRun) {
    const std::string tool = program("#!/no/such/shell\n");
    const BarcodeSource source(tool, nobodyStops);
    EXPECT_THROW(draw(source, "4006381333931"), vornaset::Exception);
    EXPECT_EQ(source.failure(),
              "the barcode program \"" + tool + "\" can't be started; is it a program for this machine?");
}

TEST_F(BarcodePrograms, ThatDoNotEndAreKilledWithAllThatTheyStarted) {
    const std::string tool = program("#!/bin/sh\nsleep 1000 & echo $! > \"$0.child\"\nwait\n");
    const BarcodeSource source(tool, nobodyStops, {std::chrono::milliseconds(1000), 1000});
    EXPECT_THROW(draw(source, "4006381333931"), vornaset::Exception);
    EXPECT_EQ(source.failure(), "the barcode program \"" + tool +
                                    "\" didn't end within 1 seconds for the code \"4006381333931\"; try it by hand: " +
                                    tool + " -e ean13 -b 4006381333931 -D.");
    pid_t child = 0;
    std::ifstream(tool + ".child") >> child;
    ASSERT_GT(child, 0);
    std::string state = "?";  // the kill is on its way
    for (int tries = 0; tries < 1000 && !state.empty() && state != "Z"; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        state = stateOf(child);
    }
    EXPECT_TRUE(state.empty() || state == "Z") << "the program's own child is " << state;
}

TEST_F(BarcodePrograms, ThatPrintWithoutEndAreKilled) {
    const std::string tool = program("#!/bin/sh\nexec yes\n");
    const BarcodeSource source(tool, nobodyStops, {std::chrono::hours(1), 2'000'000});
    EXPECT_THROW(draw(source, "4006381333931"), vornaset::Exception);
    EXPECT_NE(source.failure().find("printed more than 2 MB for the code \"4006381333931\""), std::string::npos)
        << source.failure();
}

TEST_F(BarcodePrograms, AreKilledWhenTheRunIsToStop) {
    const BarcodeSource source(program("#!/bin/sh\nexec sleep 1000\n"), [] { return true; },
                               {std::chrono::hours(1), 1000});
    EXPECT_EQ(draw(source, "4006381333931").length(), 0u);
    EXPECT_EQ(source.failure(), "") << "nothing is wrong with the program";
}

TEST_F(BarcodePrograms, TheShippedOneTellsWhyItRefusesACode) {
    const BarcodeSource source("", nobodyStops);
    EXPECT_EQ(draw(source, "4006381333930").length(), 0u);
    EXPECT_EQ(source.whyNone("4006381333930"),
              "there is no such file, and no barcode: the check digit of the EAN-13 code \"4006381333930\" must be 1, "
              "not 0.");
    EXPECT_EQ(source.whyNone("photos/1.jpg"), "there is no such file.") << "a cell that nobody asked a barcode for";
    EXPECT_GT(draw(source, "4006381333931").length(), 0u);
    EXPECT_EQ(source.whyNone("4006381333931").find("the barcode can't be written into the temporary folder;"), 0u)
        << "there is a symbol, so only the disk is left";
}

}  // namespace
}  // namespace companion
