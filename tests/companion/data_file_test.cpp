#include "companion/data_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "companion/csv_reader.h"
#include "companion/error.h"

namespace companion {
namespace {

namespace fs = std::filesystem;

class DataFile : public testing::Test {
  protected:
    DataFile() {
        std::string pattern = fs::temp_directory_path() / "vornaset-data-XXXXXX";
        folder_ = ::mkdtemp(pattern.data());
    }
    ~DataFile() override { fs::remove_all(folder_); }

    std::string write(const std::string& name, const std::string& bytes) {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
        return folder_ / name;
    }
    static std::string sentence(const std::string& path, std::uint64_t limit = 1'000'000) {
        try {
            readWholeFile(path, "the data file", limit);
        } catch (const Error& error) {
            return error.what();
        }
        return "";
    }

    fs::path folder_;
};

TEST_F(DataFile, GivesAllBytes) {
    std::string bytes;
    for (int i = 0; i < 200'000; ++i) bytes += static_cast<char>(i * 7);
    EXPECT_EQ(readWholeFile(write("a.csv", bytes), "the data file", 1'000'000).view(), bytes);
}

TEST_F(DataFile, ReadsAPipeToItsEnd) {
    std::string pipe = folder_ / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string bytes(300'000, 'x');
    std::thread writer([&] { std::ofstream(pipe) << bytes; });
    EXPECT_EQ(readWholeFile(pipe, "the data file", 1'000'000).view(), bytes);
    writer.join();
}

TEST_F(DataFile, FailuresAreOneSentenceThatSaysWhatToDo) {
    std::string missing = folder_ / "missing.csv";
    EXPECT_EQ(sentence(missing), "the data file \"" + missing + "\" doesn't exist; check its name and folder.");
    EXPECT_EQ(sentence(folder_), "the data file \"" + folder_.string() + "\" is a folder; name a file in it.");
    std::string empty = write("empty.csv", "");
    EXPECT_EQ(sentence(empty), "the data file \"" + empty + "\" is empty.");
    std::string through = write("file", "x") + "/below.csv";
    EXPECT_EQ(sentence(through), "the data file \"" + through + "\" can't be opened: Not a directory.");
}

TEST_F(DataFile, MoreThanTheLimitIsRefused) {
    std::string exact = write("exact.csv", std::string(1'000'000, 'x'));
    EXPECT_EQ(sentence(exact), "");
    std::string more = write("more.csv", std::string(1'000'001, 'x'));
    EXPECT_EQ(sentence(more),
              "the data file \"" + more + "\" has more than 1 MB, the most that is accepted; split it.");
    EXPECT_NE(sentence("/dev/zero").find("has more than 1 MB"), std::string::npos) << "an endless device ends too";
}

TEST_F(DataFile, BinaryFilesGiveOneSentence) {
    struct {
        const char* name;
        std::string bytes;
        const char* part;
    } files[] = {{"picture.png", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16), "isn't text"},
                 {"sheet.xlsx", "PK\x03\x04rest", "is a ZIP package"},
                 {"old.xls", "\xD0\xCF\x11\xE0rest", "is an old spreadsheet"},
                 {"print.pdf", "%PDF-1.4\n", "is a PDF file"},
                 {"packed.gz", std::string("\x1F\x8B\x08\0", 4), "is a compressed file"}};
    for (auto& [name, bytes, part] : files) {
        std::string path = write(name, bytes);
        try {
            readDataFile(path);
            ADD_FAILURE() << name;
        } catch (const Error& error) {
            EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
            EXPECT_NE(std::string(error.what()).find(path), std::string::npos) << error.what();
        }
    }
}

TEST_F(DataFile, TheSampleIsReadWithoutWarning) {
    DataTable table = readDataFile(VORNASET_SAMPLES_DIR "/people_100.csv");
    EXPECT_EQ(table.rowCount(), 100u);
    EXPECT_EQ(table.columns().size(), 14u);
    EXPECT_EQ(table.cell(0, 3), "Müller");
    EXPECT_EQ(table.cell(0, 10), "3.832,33");
    EXPECT_EQ(table.cell(2, 4), "");
    EXPECT_EQ(table.warnings().count, 0u);
}

}  // namespace
}  // namespace companion
