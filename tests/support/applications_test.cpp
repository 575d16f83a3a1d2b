#include "support/applications.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "environment_variable.h"
#include "support/alert.h"
#include "support/atomic_file.h"
#include "support/clipboard.h"
#include "support/desktop_applications.h"
#include "support/log.h"
#include "support/paths.h"
#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

/// A desktop of the test's own: its applications are scripts that write down how they were called.
class Applications : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* folder : {"bin", "data/applications", "data/mime", "config", "system/applications", "calls"}) {
            std::filesystem::create_directories(place(folder));
        }
        writeFile(place("data/mime/globs2"),
                  "# comment\n50:text/plain:*.txt\n50:image/png:*.png\n50:text/csv:*.csv\n40:text/other:*.CSV\n"
                  "50:application/x-idml:*.idml\n");
        writeFile(place("data/mime/subclasses"), "application/x-idml application/zip\n");
        Pasteboard::setPrivateSpace();
        before_ = setAlertPresenter(presenter_);
    }
    void TearDown() override {
        setAlertPresenter(before_);
        Pasteboard::setPrivateSpace();
    }

    std::string place(const std::string& name) const { return folder_.path() + "/" + name; }
    String at(const std::string& name) const { return String::fromUTF8(place(name)); }

    /// A program that writes its name and arguments to calls/NAME and ends with this status.
    void program(const std::string& name, int status = 0) const {
        const std::string call = place("calls/" + name);
        writeFile(place("bin/" + name),
                  "#!/bin/sh\n{ printf '%s' '" + name + "'; for a; do printf '[%s]' \"$a\"; done; } > '" + call +
                      ".new'\n/bin/mv '" + call + ".new' '" + call + "'\nexit " + std::to_string(status) + "\n");
        chmod(place("bin/" + name).c_str(), 0755);
    }
    /// A program and the desktop entry for it.
    void application(const std::string& identifier, const std::string& name, const std::string& types,
                     const std::string& exec = "", const std::string& more = "",
                     const std::string& data = "data") const {
        program(name);
        writeFile(place(data + "/applications/" + identifier + ".desktop"),
                  "[Desktop Entry]\nType=Application\nName=Shown " + name +
                      "\nExec=" + (exec.empty() ? name + " %f" : exec) + "\nMimeType=" + types + ";\n" + more);
    }
    /// How a program was called, once it was; empty when it isn't for a while.
    std::string callOf(const std::string& name, int milliseconds = 5000) const {
        for (int waited = 0; waited < milliseconds; waited += 5) {
            if (std::filesystem::exists(place("calls/" + name))) {
                std::string call = contentOf(place("calls/" + name));
                std::filesystem::remove(place("calls/" + name));
                return call;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return {};
    }
    bool wasNotCalled(const std::string& name) const { return callOf(name, 50).empty(); }

    class Presenter : public AlertPresenter {
      public:
        void beep() override { ++beeps; }
        void activateApplication(const String& identifier) override { activated.push_back(identifier); }
        AlertAnswer run(const Alert&) override { return AlertAnswer::defaultButton; }
        int beeps = 0;
        std::vector<String> activated;
    };

    ScratchFolder folder_;
    EnvironmentVariable home_{"HOME", place("home").c_str()};
    EnvironmentVariable dataHome_{"XDG_DATA_HOME", place("data").c_str()};
    EnvironmentVariable dataFolders_{"XDG_DATA_DIRS", place("system").c_str()};
    EnvironmentVariable configurationHome_{"XDG_CONFIG_HOME", place("config").c_str()};
    EnvironmentVariable configurationFolders_{"XDG_CONFIG_DIRS", place("config2").c_str()};
    EnvironmentVariable desktop_{"XDG_CURRENT_DESKTOP", nullptr};
    EnvironmentVariable path_{"PATH", place("bin").c_str()};
    std::shared_ptr<Presenter> presenter_ = std::make_shared<Presenter>();
    std::shared_ptr<AlertPresenter> before_;
};

TEST_F(Applications, AnExtensionNamesTheFileOfItsApplication) {
    application("org.test.Viewer", "viewer", "image/png");
    EXPECT_EQ(appNameForFileExtension("png", "txt", "TextEdit"), "org.test.Viewer.desktop");
    EXPECT_EQ(appNameForFileExtension("PNG", nullptr, nullptr), "org.test.Viewer.desktop");
}

TEST_F(Applications, AnUnknownExtensionFallsBackTwice) {
    EXPECT_EQ(appNameForFileExtension("xyz", "txt", "TextEdit"), "TextEdit");
    application("org.test.Editor", "editor", "text/plain");
    EXPECT_EQ(appNameForFileExtension("xyz", "txt", "TextEdit"), "org.test.Editor.desktop");
    EXPECT_EQ(appNameForFileExtension("", "txt", "TextEdit"), "org.test.Editor.desktop");
    EXPECT_EQ(appNameForFileExtension(nullptr, "xyz", "TextEdit"), "TextEdit");
    EXPECT_TRUE(appNameForFileExtension("xyz", nullptr, nullptr).isNull());
}

TEST_F(Applications, AKindOfTextOpensLikeAText) {
    application("org.test.Editor", "editor", "text/plain");
    application("org.test.Archiver", "archiver", "application/zip");
    EXPECT_EQ(appNameForFileExtension("csv", nullptr, "none"), "org.test.Editor.desktop");
    EXPECT_EQ(appNameForFileExtension("idml", nullptr, "none"), "org.test.Archiver.desktop");
}

TEST_F(Applications, TheUsersChoiceComesFirst) {
    application("a", "one", "image/png");
    application("b", "two", "image/png");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, nullptr), "a.desktop");
    writeFile(place("config/mimeapps.list"), "[Removed Associations]\nimage/png=a.desktop;\n");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, nullptr), "b.desktop");
    writeFile(place("config/mimeapps.list"), "[Default Applications]\nimage/png=missing.desktop;b.desktop;a.desktop\n");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, nullptr), "b.desktop");
    writeFile(place("config/mimeapps.list"), "[Added Associations]\nimage/png=b.desktop\n");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, nullptr), "b.desktop");
    const EnvironmentVariable desktop("XDG_CURRENT_DESKTOP", "Other:Test");
    writeFile(place("config/test-mimeapps.list"), "[Default Applications]\nimage/png=a.desktop\n");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, nullptr), "a.desktop");
}

TEST_F(Applications, OneThatCanNotStartIsNone) {
    application("hidden", "one", "image/png", "", "Hidden=true\n");
    application("untried", "two", "image/png", "", "TryExec=missing-program\n");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, "none"), "none");
    application("system", "three", "image/png", "", "", "system");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, "none"), "system.desktop");
    writeFile(place("data/applications/system.desktop"), "[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(appNameForFileExtension("png", nullptr, "none"), "none");
}

TEST_F(Applications, ADocumentOpensInItsApplication) {
    application("org.test.Viewer", "viewer", "image/png", "viewer --new \"a b\" %u");
    writeFile(place("a picture.png"), "x");
    EXPECT_TRUE(openDocWithApp(at("a picture.png"), nullptr, 1));
    EXPECT_EQ(callOf("viewer"), "viewer[--new][a b][file://" + place("a%20picture.png") + "]");
    openDocWithPath(at("a picture.png"));
    EXPECT_NE(callOf("viewer"), "");
}

TEST_F(Applications, ADocumentWithAnUnknownExtensionOpensInTheTextEditor) {
    writeFile(place("file.xyz"), "x");
    program("TextEdit");
    EXPECT_TRUE(openDocWithApp(at("file.xyz"), nullptr, 0));
    EXPECT_EQ(callOf("TextEdit"), "TextEdit[" + place("file.xyz") + "]");
    application("org.test.Editor", "editor", "text/plain");
    EXPECT_TRUE(openDocWithApp(at("file.xyz"), nullptr, 0));
    EXPECT_EQ(callOf("editor"), "editor[" + place("file.xyz") + "]");
}

TEST_F(Applications, WithoutAnyApplicationTheDesktopsOpenerIsAsked) {
    writeFile(place("file.xyz"), "x");
    EXPECT_FALSE(openDocWithApp(at("file.xyz"), nullptr, 1));
    program("xdg-open");
    EXPECT_TRUE(openDocWithApp(at("file.xyz"), nullptr, 1));
    EXPECT_EQ(callOf("xdg-open"), "xdg-open[" + place("file.xyz") + "]");
    program("xdg-open", 3);
    EXPECT_FALSE(openDocWithApp(at("file.xyz"), nullptr, 1));
}

TEST_F(Applications, AFolderOpensInTheFileBrowser) {
    application("org.test.Files", "files", "inode/directory");
    openDocWithPath(at("data"));
    EXPECT_EQ(callOf("files"), "files[" + place("data") + "]");
}

TEST_F(Applications, OneIsFoundByEveryNameItHas) {
    application("org.test.Editor", "editor", "text/plain");
    writeFile(place("file.txt"), "x");
    for (const char* name : {"org.test.Editor.desktop", "org.test.Editor", "Editor", "editor", "shown EDITOR"}) {
        EXPECT_TRUE(openDocWithApp(at("file.txt"), name, 1)) << name;
        EXPECT_EQ(callOf("editor"), "editor[" + place("file.txt") + "]") << name;
    }
    for (const char* name : {"BBEdit", "TextEdit"}) {
        EXPECT_TRUE(openDocWithApp(at("file.txt"), name, 1)) << name;
        EXPECT_NE(callOf("editor"), "") << name;
    }
    for (const char* name : {"none", "", "../x", "/bin/sh"})
        EXPECT_FALSE(openDocWithApp(at("file.txt"), name, 1)) << name;
}

TEST_F(Applications, AMissingDocumentDoesNotOpen) {
    application("org.test.Editor", "editor", "text/plain");
    EXPECT_FALSE(openDocWithApp(at("missing.txt"), nullptr, 1));
    EXPECT_FALSE(openDocWithApp(nullptr, nullptr, 1));
    openDocWithPath(at("missing.txt"));
    EXPECT_TRUE(wasNotCalled("editor"));
}

TEST_F(Applications, AnEntryInASubfolderIsFoundByItsIdentifier) {
    std::filesystem::create_directories(place("data/applications/suite"));
    application("suite/writer", "writer", "text/plain");
    EXPECT_EQ(appPathForBundleID("suite-writer"), at("data/applications/suite/writer.desktop"));
    EXPECT_EQ(appNameForFileExtension("txt", nullptr, nullptr), "writer.desktop");
}

TEST_F(Applications, AUrlOpensInTheApplicationForItsScheme) {
    application("org.test.Browser", "browser", "x-scheme-handler/https", "browser %U");
    EXPECT_TRUE(openURL("HTTPS://example.org/a?b=%20c"));
    EXPECT_EQ(callOf("browser"), "browser[HTTPS://example.org/a?b=%20c]");
    EXPECT_FALSE(openURL("mailto:a@example.org"));
    program("xdg-open");
    EXPECT_TRUE(openURL("mailto:a@example.org"));
    EXPECT_EQ(callOf("xdg-open"), "xdg-open[mailto:a@example.org]");
    for (const char* text : {"", "no url", ":x", "1a:x", "--help"}) EXPECT_FALSE(openURL(text)) << text;
    EXPECT_FALSE(openURL(nullptr));
    EXPECT_TRUE(wasNotCalled("xdg-open"));
}

TEST_F(Applications, AUrlOfAFileOpensTheDocument) {
    application("org.test.Editor", "editor", "text/plain");
    writeFile(place("a b.txt"), "x");
    EXPECT_TRUE(openURL(String::fromUTF8("file://" + place("a%20b.txt"))));
    EXPECT_EQ(callOf("editor"), "editor[" + place("a b.txt") + "]");
    EXPECT_FALSE(openURL(String::fromUTF8("file://" + place("missing.txt"))));
}

TEST_F(Applications, AnItemIsSelectedOverTheMessageBus) {
    program("gdbus");
    writeFile(place("it's.txt"), "x");
    selectDoc(at("it's.txt"));
    EXPECT_EQ(
        callOf("gdbus"),
        "gdbus[call][--session][--dest][org.freedesktop.FileManager1][--object-path][/org/freedesktop/FileManager1]"
        "[--method][org.freedesktop.FileManager1.ShowItems][['file://" +
            place("it%27s.txt") + "']][]");
}

TEST_F(Applications, WithoutAFileBrowserThatSelectsItsFolderOpens) {
    program("gdbus", 1);
    program("dbus-send", 1);
    application("org.test.Files", "files", "inode/directory");
    writeFile(place("file.txt"), "x");
    selectDoc(at("file.txt"));
    EXPECT_NE(callOf("gdbus"), "");
    EXPECT_NE(callOf("dbus-send"), "");
    EXPECT_EQ(callOf("files"), "files[" + folder_.path() + "]");
    selectDoc(at("missing.txt"));
    EXPECT_TRUE(wasNotCalled("gdbus"));
    EXPECT_EQ(callOf("files"), "files[" + folder_.path() + "]");
    selectDoc(nullptr);
}

TEST_F(Applications, ABundleIdentifierNamesTheRunningApplicationElseTheInstalledOne) {
    EXPECT_TRUE(appPathForBundleID("org.test.Runner").isNull());
    EXPECT_TRUE(appPathForBundleID(nullptr).isNull());
    application("org.test.Runner", "runner", "text/plain", "/bin/sleep 20", "", "system");
    EXPECT_EQ(appPathForBundleID("org.test.Runner"), at("system/applications/org.test.Runner.desktop"));
    writeFile(place("file.txt"), "x");
    application("org.test.Runner", "runner", "text/plain",
                "/bin/sh -c \"echo \\$\\$ > " + place("pid") + "; exec /bin/sleep 20\"", "", "system");
    ASSERT_TRUE(openDocWithApp(at("file.txt"), "org.test.Runner", 1));
    // Another entry of the same identifier hides the one that runs; the running one is told first.
    application("org.test.Runner", "runner", "text/plain");
    String found;
    for (int round = 0; round < 400 && found != at("system/applications/org.test.Runner.desktop"); ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        found = appPathForBundleID("org.test.Runner");
    }
    EXPECT_EQ(found, at("system/applications/org.test.Runner.desktop"));
    const int runner = std::atoi(contentOf(place("pid")).c_str());
    ASSERT_GT(runner, 1);
    kill(runner, SIGKILL);
    for (int round = 0; round < 400 && found != at("data/applications/org.test.Runner.desktop"); ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        found = appPathForBundleID("org.test.Runner");
    }
    EXPECT_EQ(found, at("data/applications/org.test.Runner.desktop"));
}

TEST_F(Applications, ComingToTheFrontIsThePresentersBusiness) {
    setFrontProcess("org.test.Editor");
    setFrontProcess(nullptr);
    EXPECT_EQ(presenter_->activated, (std::vector<String>{"org.test.Editor", "com.kelmoriandev.indesign.Vornaset"}));
}

TEST_F(Applications, TheEditorsToolShowsTheFormattedTextOfThePasteboard) {
    program("BBEditWithClipboard");
    openWithBBEdit("100 %% sure");
    EXPECT_EQ(callOf("BBEditWithClipboard"), "BBEditWithClipboard");
    EXPECT_EQ(stringFromPasteboard(nullptr), "100 % sure");
    openWithBBEdit(Data(std::string("M\xFCller")));
    EXPECT_EQ(callOf("BBEditWithClipboard"), "BBEditWithClipboard");
    EXPECT_EQ(stringFromPasteboard(nullptr), u"M\u00FCller");
    EXPECT_EQ(presenter_->beeps, 0);
}

TEST_F(Applications, AnEmptyTextBeepsAndTheToolIsLaunchedAllTheSame) {
    program("BBEditWithClipboard");
    copyToPasteboard("before");
    openWithBBEdit(String(u""));
    EXPECT_EQ(callOf("BBEditWithClipboard"), "BBEditWithClipboard");
    openWithBBEdit(Data());
    EXPECT_EQ(callOf("BBEditWithClipboard"), "BBEditWithClipboard");
    EXPECT_EQ(presenter_->beeps, 2);
    EXPECT_EQ(stringFromPasteboard(nullptr), "before");
}

TEST_F(Applications, ATextForTheEditorIsWrittenToItsPath) {
    program("BBEdit");
    openWithBBEdit(u"M\u00FCller %d", at("note.txt"));
    EXPECT_EQ(callOf("BBEdit"), "BBEdit[" + place("note.txt") + "]");
    EXPECT_EQ(contentOf(place("note.txt")), "M\xC3\xBCller %d");
    openWithBBEdit("x", at("missing/note.txt"));
    EXPECT_TRUE(wasNotCalled("BBEdit"));
}

TEST_F(Applications, TheLogOpensInTheTextEditor) {
    application("org.test.Editor", "editor", "text/plain");
    std::filesystem::create_directories(place("home/Documents"));
    setupLog(1, 0, nullptr);
    setLogging(0, 0);
    showLogFile();
    EXPECT_EQ(callOf("editor"), "editor[" + place("home/Documents/Vornaset.txt") + "]");
}

TEST_F(Applications, OneThatIsStartedIsNobodysChild) {
    application("org.test.Editor", "editor", "text/plain");
    writeFile(place("file.txt"), "x");
    for (int round = 0; round < 10; ++round) EXPECT_TRUE(openDocWithApp(at("file.txt"), nullptr, 1));
    EXPECT_NE(callOf("editor"), "");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(Applications, OneWhoseProgramIsMissingDoesNotOpen) {
    application("org.test.Editor", "editor", "text/plain", "missing-program %f");
    writeFile(place("file.txt"), "x");
    EXPECT_FALSE(openDocWithApp(at("file.txt"), "Editor", 1));
    application("org.test.Editor", "editor", "text/plain", "editor %f", "Path=/no/such/folder\n");
    EXPECT_FALSE(openDocWithApp(at("file.txt"), "Editor", 1));
    writeFile(place("bin/editor"), "no program");
    EXPECT_FALSE(openDocWithApp(at("file.txt"), "Editor", 1));
}

TEST(ExecLines, QuotesAndFieldCodesAreResolved) {
    const Document document{"/a b", "file:///a%20b"};
    const auto words = [&](const char* line) { return wordsOfExecLine(line, document, "Name", "/x.desktop"); };
    using Words = std::vector<std::string>;
    EXPECT_EQ(words("p %f"), (Words{"p", "/a b"}));
    EXPECT_EQ(words("p %F x"), (Words{"p", "/a b", "x"}));
    EXPECT_EQ(words("p --open=%u"), (Words{"p", "--open=file:///a%20b"}));
    EXPECT_EQ(words("p"), (Words{"p", "/a b"}));
    EXPECT_EQ(words("p %c %k %% %i %d %m"), (Words{"p", "Name", "/x.desktop", "%", "/a b"}));
    EXPECT_EQ(words("\"p q\"  \"a\\\"b\\$\\\\\" \"\" \"%f\""), (Words{"p q", "a\"b$\\", "", "%f", "/a b"}));
    EXPECT_EQ(words("p \"open"), Words{});
    EXPECT_EQ(words(""), Words{});
    EXPECT_EQ(wordsOfExecLine("p %f %U x", {}, "", ""), (Words{"p", "x"}));
    EXPECT_EQ(wordsOfExecLine("p %f", {"", "https://x"}, "", ""), (Words{"p", "https://x"}));
}

TEST(AtomicFiles, ReplaceWhatIsThereAndKeepItsPermissions) {
    ScratchFolder folder;
    const std::string path = folder.path() + "/file";
    writeFile(path, "old");
    chmod(path.c_str(), 0640);
    EXPECT_TRUE(writeFileAtomically(Data(std::string("new")), String::fromUTF8(path)).isNull());
    EXPECT_EQ(contentOf(path), "new");
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_TRUE(writeFileAtomically(nullptr, String::fromUTF8(path)).isNull());
    EXPECT_EQ(contentOf(path), "");
}

TEST(AtomicFiles, AFailureChangesNothing) {
    ScratchFolder folder;
    std::filesystem::create_directories(folder.path() + "/folder/inner");
    EXPECT_FALSE(writeFileAtomically(nullptr, String::fromUTF8(folder.path() + "/folder")).isNull());
    EXPECT_FALSE(writeFileAtomically(nullptr, String::fromUTF8(folder.path() + "/missing/file")).isNull());
    EXPECT_FALSE(writeFileAtomically(nullptr, u"").isNull());
    EXPECT_FALSE(writeFileAtomically(nullptr, nullptr).isNull());
    EXPECT_EQ(filesAtPath(String::fromUTF8(folder.path()), 1).count(), 2u);
}

}  // namespace
}  // namespace vornaset
