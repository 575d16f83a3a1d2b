#include "support/log.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "host/api/types.h"
#include "support/log_host.h"
#include "support/paths.h"
#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

const std::string kHyphens(73, '-');

/// The text behind the time and the product when the line begins as an entry does; else the line, marked.
std::string entryText(const std::string& line) {
    constexpr std::string_view kShape = "00:00:00.000: Vornaset::";
    if (line.size() < kShape.size()) return "no entry: " + line;
    for (size_t at = 0; at < kShape.size(); ++at) {
        const bool fits = kShape[at] == '0' ? line[at] >= '0' && line[at] <= '9' : line[at] == kShape[at];
        if (!fits) return "no entry: " + line;
    }
    return line.substr(kShape.size());
}

/// An object that notes when somebody asks for its description.
class Watched : public Object {
  public:
    String description() const override {
        ++asked;
        return "watched";
    }
    mutable int asked = 0;
};

/// A home of the test's own, so that the user's log stays alone.
class Log : public testing::Test {
  protected:
    void SetUp() override {
        remember("HOME");
        remember("XDG_CONFIG_HOME");
        setenv("HOME", home_.path().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
        std::filesystem::create_directories(home_.path() + "/Documents");
    }
    void TearDown() override {
        setLogging(0, 0);
        for (const auto& [name, value] : before_) {
            if (value) {
                setenv(name.c_str(), value->c_str(), 1);
            } else {
                unsetenv(name.c_str());
            }
        }
    }

    std::string path() const { return home_.path() + "/Documents/Vornaset.txt"; }
    std::string content() const { return contentOf(path()); }
    /// The log's last line behind "Vornaset::", when the line has the form of an entry.
    std::string lastEntry() const {
        const std::string text = content();
        const size_t start = text.rfind('\n', text.size() - 2) + 1;
        return entryText(text.substr(start, text.size() - 1 - start));
    }
    size_t lineCount() const {
        const std::string text = content();
        return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
    }

    ScratchFolder home_;

  private:
    void remember(const char* name) {
        const char* value = std::getenv(name);
        before_.emplace_back(name, value != nullptr ? std::optional<std::string>(value) : std::nullopt);
    }
    std::vector<std::pair<std::string, std::optional<std::string>>> before_;
};

/// One line: date and time in whatever form the locale has, the product, the version, the host.
bool isHeader(const std::string& text) {
    const size_t product = text.find(": Vornaset 7.20, CC 2020\n");
    const std::string dateAndTime = text.substr(0, product);
    return product != std::string::npos && text.find('\n') == text.size() - 1 &&
           std::count_if(dateAndTime.begin(), dateAndTime.end(),
                         [](char byte) { return byte >= '0' && byte <= '9'; }) >= 5;
}

TEST_F(Log, WhileOffFormatsNothingAndLeavesTheFileAlone) {
    setupLog(1, 0, nullptr);
    const std::string before = content();
    setLogging(0, 1);
    const auto watched = std::make_shared<Watched>();
    testing::internal::CaptureStdout();
    MyLog("%@", Value(watched));
    MyLog(String("%@"), Value(watched));
    MyLog1("%@", Value(watched));
    dprintf("%@", Value(watched));
    log(Value(watched));
    log2(Value(watched));
    writeLog("x");
    logError(5);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(watched->asked, 0);
    EXPECT_EQ(content(), before);
    setLogging(2, 0);
    MyLog("%@", Value(watched));
    EXPECT_EQ(content(), before);
    setLogging(1, 0);
    MyLog("%@", Value(watched));
    EXPECT_EQ(watched->asked, 1);
    EXPECT_EQ(lastEntry(), "watched");
}

TEST_F(Log, ModeOneBeginsANewFileWithTheHeaderAlone) {
    writeFile(path(), std::string(5000, 'x'));
    setupLog(1, 100000, nullptr);
    EXPECT_TRUE(isHeader(content())) << content();
    EXPECT_EQ(getLogPath().utf8(), path());
    EXPECT_EQ(gLogging, 1);
    EXPECT_EQ(gConsole, 0);
}

TEST_F(Log, ModeZeroWithoutSizeDeletesThenWritesSeparatorAndHeader) {
    writeFile(path(), "old\n");
    setupLog(0, 0, nullptr);
    const std::string text = content();
    ASSERT_TRUE(text.starts_with(kHyphens + "\n")) << text;
    EXPECT_TRUE(isHeader(text.substr(74))) << text;
}

TEST_F(Log, ModeZeroKeepsTheOldLog) {
    writeFile(path(), "old\n");
    setupLog(0, 100, nullptr);
    EXPECT_TRUE(content().starts_with("old\n" + kHyphens + "\n"));
}

TEST_F(Log, AnyOtherModeKeepsTheOldEndAndAddsTheHeaderAlone) {
    const std::string old = std::string(50, 'a') + std::string(100, 'b');
    writeFile(path(), old);
    setupLog(2, 100, nullptr);
    const std::string text = content();
    EXPECT_EQ(text.substr(0, 100), std::string(100, 'b'));
    EXPECT_TRUE(isHeader(text.substr(100))) << text;
    EXPECT_FALSE(std::filesystem::exists(path() + ".new"));
}

TEST_F(Log, LiesInASubfolderWhenOneIsNamed) {
    setupLog(1, 0, "sub/folder");
    EXPECT_TRUE(isHeader(contentOf(home_.path() + "/Documents/sub/folder/Vornaset.txt")));
    EXPECT_EQ(documentsFolder("other").utf8(), home_.path() + "/Documents/other");
    EXPECT_TRUE(std::filesystem::is_directory(home_.path() + "/Documents/other"));
    EXPECT_EQ(documentsFolder().utf8(), home_.path() + "/Documents");
}

TEST_F(Log, TheUsersOwnDocumentsFolderIsHonoured) {
    std::filesystem::create_directories(home_.path() + "/.config");
    writeFile(home_.path() + "/.config/user-dirs.dirs",
              "# folders\nXDG_MUSIC_DIR=\"$HOME/Music\"\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    EXPECT_EQ(documentsFolder().utf8(), home_.path() + "/Dokumente");
    writeFile(home_.path() + "/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"/elsewhere\"\n");
    EXPECT_EQ(documentsFolder().utf8(), "/elsewhere");
    writeFile(home_.path() + "/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"relative");
    EXPECT_EQ(documentsFolder().utf8(), home_.path() + "/Documents");
}

TEST_F(Log, AFolderThatCanNotBeMadeLosesTheLog) {
    writeFile(home_.path() + "/Documents/file", "x");
    EXPECT_NO_THROW(setupLog(0, 10, "file/below"));
    MyLog("lost");
    EXPECT_FALSE(std::filesystem::exists(home_.path() + "/Documents/file/below"));
}

TEST_F(Log, ClearLogCutsToTheLastBytes) {
    setupLog(1, 0, nullptr);
    writeFile(path(), "0123456789");
    clearLog(10);
    EXPECT_EQ(content(), "0123456789");
    clearLog(4);
    EXPECT_EQ(content(), "6789");
    writeFile(path(), "ab\xC3\xA4");
    clearLog(1);
    EXPECT_EQ(content(), "\xA4");
    clearLog(0);
    EXPECT_FALSE(std::filesystem::exists(path()));
    clearLog(5);
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(Log, WriteLogAppendsTheTextAsItIs) {
    setupLog(1, 0, nullptr);
    const std::string before = content();
    writeLog(u"\u00E4 100%@");
    EXPECT_EQ(content(), before + "\xC3\xA4 100%@");
    writeLog(nullptr);
    EXPECT_EQ(content(), before + "\xC3\xA4 100%@(null)");
    writeLog(String(std::u16string{0xD800}));
    EXPECT_EQ(content(), before + "\xC3\xA4 100%@(null)(null)");
}

TEST_F(Log, ADiskThatIsFullLosesTheLine) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this machine has no device that is always full";
    setupLog(1, 0, nullptr);
    std::filesystem::remove(path());
    std::filesystem::create_symlink("/dev/full", path());
    MyLog("lost");
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
}

TEST_F(Log, AFileThatHasGoneIsNotMadeAgain) {
    setupLog(1, 0, nullptr);
    std::filesystem::remove(path());
    MyLog("lost");
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(Log, AnEntryHasTimeProductAndText) {
    setupLog(1, 0, nullptr);
    MyLog("%@ is %d%%", "half", 50);
    EXPECT_EQ(lastEntry(), "half is 50%");
    MyLog(String(u"f\u00FCr %s"), "x");
    EXPECT_EQ(lastEntry(), "f\xC3\xBCr x");
    dprintf("%.1f", 2.25);
    EXPECT_EQ(lastEntry(), "2.2");
    MyLog("no arguments");
    EXPECT_EQ(lastEntry(), "no arguments");
    MyLogD("nothing %d", 1);
    EXPECT_EQ(lastEntry(), "no arguments");
    MyLog(static_cast<const char*>(nullptr));
    MyLog(String());
    MyLog1(nullptr);
    EXPECT_EQ(lastEntry(), "no arguments");
}

TEST_F(Log, MyLog1PrintsThisOneLine) {
    setupLog(1, 0, nullptr);
    testing::internal::CaptureStdout();
    MyLog("file alone");
    MyLog1("both %d", 1);
    MyLog("file again");
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(entryText(printed), "both 1\n");
    EXPECT_EQ(gConsole, 0);
    setConsole(1);
    testing::internal::CaptureStdout();
    MyLog1("x");
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(gConsole, 1);
}

TEST_F(Log, TurnedOnWithoutAPathItGoesToStandardOutputAlone) {
    // The path is kept for the life of the process, so this needs a process that never set the log up.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto run = [this] {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        setLogging(1, 1);
        MyLog("heard");
        setLogging(1, 0);
        MyLog("not there");
        clearLog(0);
        const bool isAlone = getLogPath().isNull() && !std::filesystem::exists(path());
        std::filesystem::remove_all(home_.path());
        std::_Exit(isAlone ? 0 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "Vornaset::heard\n$");
}

TEST_F(Log, SetConsoleReturnsTheFormerValue) {
    setLogging(0, 1);
    EXPECT_EQ(setConsole(0), 1);
    EXPECT_EQ(setConsole(7), 0);
    EXPECT_EQ(setConsole(0), 7);
}

TEST_F(Log, ErrorsOfNumberZeroAreNone) {
    setupLog(1, 0, nullptr);
    const size_t lines = lineCount();
    logError(0);
    logError(Error());
    logError(nullptr, "label");
    EXPECT_EQ(lineCount(), lines);
    logError(-43);
    EXPECT_EQ(lastEntry(), "err: -43");
    logError(Error(2, "no such file"));
    EXPECT_EQ(lastEntry(), "no such file");
    logError(Error(2, "no such file"), "open");
    EXPECT_EQ(lastEntry(), "open: no such file");
    logError(Error(2, "100%d"), nullptr);
    EXPECT_EQ(lastEntry(), "100%d");
    EXPECT_EQ(lineCount(), lines + 4);
}

TEST_F(Log, RectanglesAreConvertedToMillimetresWhenAsked) {
    setupLog(1, 0, nullptr);
    logRect(Rect{0, 36, 72, 144}, 1);
    EXPECT_EQ(lastEntry(), "0.0 12.7 25.4 50.8");
    logRect(Rect{0, 36, 72, 144}, 0);
    EXPECT_EQ(lastEntry(), "0.0 36.0 72.0 144.0");
    logRect(Rect{0, 36, 72, 144}, 2);
    EXPECT_EQ(lastEntry(), "0.0 36.0 72.0 144.0");
    const size_t lines = lineCount();
    logRects(Array::make({valueWithRect({1, 2, 3, 4}), "no rectangle"}), 0);
    EXPECT_EQ(lineCount(), lines + 2);
    EXPECT_EQ(lastEntry(), "0.0 0.0 0.0 0.0");
    EXPECT_NE(content().find("1.0 2.0 3.0 4.0"), std::string::npos);
}

TEST_F(Log, HostTypesHaveTheirLines) {
    setupLog(1, 0, nullptr);
    logRect(PMRect(10, 20, 40, 60), "box");
    EXPECT_EQ(lastEntry(), "box: 10.0 20.0 30.0 40.0");
    log(UID(77), "uid");
    EXPECT_EQ(lastEntry(), "uid: 77");
    logComponent(URI("file", "/a/b.csv"), 0);
    EXPECT_EQ(lastEntry(), "0: file");
    logComponent(URI("file", "/a/b.csv"), 2);
    EXPECT_EQ(lastEntry(), "2: /a/b.csv");
    logComponent(URI("file", "/a/b.csv"), 99);
    EXPECT_EQ(lastEntry(), "99: ");
}

TEST_F(Log, RangesDataAndObjectsHaveTheirLines) {
    setupLog(1, 0, nullptr);
    logRange({3, -4});
    EXPECT_EQ(lastEntry(), "[3 -4]");
    logData(
        Data("\xE4"
             "B"));
    EXPECT_EQ(lastEntry(),
              "\xC3\xA4"
              "B");
    log(Value(5));
    EXPECT_EQ(lastEntry(), "5");
    log("100%@");
    EXPECT_EQ(lastEntry(), "100%@");
    log2("x");
    const std::string text = content();
    EXPECT_EQ(entryText(text.substr(text.rfind('\n', text.size() - 4) + 1)), "\nx\n");
}

TEST(SystemLog, GoesToTheSinkWhateverTheGateSays) {
    std::vector<std::string> lines;
    const SystemLogSink before = setSystemLogSink([&](std::string_view line) { lines.emplace_back(line); });
    setLogging(0, 0);
    systemLog("pdfEvent: db=%lx, msg=%d, pageNum=%d", static_cast<const void*>(nullptr), 4, 12);
    logArc();
    log(MyPoint{1.5F, -2.25F});
    setSystemLogSink(before);
    EXPECT_EQ(lines,
              (std::vector<std::string>{"pdfEvent: db=0, msg=4, pageNum=12", "ARC: NO", "\t1.500000 -2.250000"}));
}

TEST(SystemLog, PrintsNothingOnTheScreen) {
    const SystemLogSink before = setSystemLogSink(nullptr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    systemLog("support test %d", 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    setSystemLogSink(before);
}

TEST_F(Log, FileOperationsReportToTheLog) {
    setupLog(1, 0, nullptr);
    const size_t lines = lineCount();
    EXPECT_TRUE(createDir(String::fromUTF8(home_.path() + "/a/b")));
    EXPECT_TRUE(createDir(String::fromUTF8(home_.path() + "/a/b")));
    EXPECT_TRUE(removeFile(String::fromUTF8(home_.path() + "/missing")));
    EXPECT_EQ(lineCount(), lines);
    EXPECT_FALSE(createDir(String::fromUTF8(path() + "/below")));
    EXPECT_EQ(lineCount(), lines + 1);
    const std::string tooLong = home_.path() + "/" + std::string(300, 'a');
    EXPECT_FALSE(removeFile(String::fromUTF8(tooLong)));
    EXPECT_TRUE(lastEntry().starts_with(tooLong + ": ")) << lastEntry();
    EXPECT_TRUE(removeFile(String::fromUTF8(home_.path() + "/a/b")));
    EXPECT_FALSE(std::filesystem::exists(home_.path() + "/a/b"));
}

TEST(Geometry, RectanglesTravelAsValues) {
    EXPECT_EQ(rectWithValue(valueWithRect({1, 2, 3, 4})), (Rect{1, 2, 3, 4}));
    EXPECT_EQ(rectWithValue(Value(5)), Rect{});
    EXPECT_EQ(rectWithValue(Value()), Rect{});
    EXPECT_EQ(stringWithFormat("%.0f %.0f %.0f %.1f", Rect{1, 2, 3, 4}), String("1 2 3 4.0"));
}

}  // namespace
}  // namespace vornaset
