#include "widgets/window_system.h"

#include <QtCore/QEventLoop>
#include <QtCore/QLibraryInfo>
#include <QtCore/QProcess>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>

#include "support/clipboard.h"
#include "support/run_loop.h"
#include "support/timed_work.h"
#include "widgets/alert_window.h"
#include "widgets/file_panels.h"
#include "widgets/user_clipboard.h"
#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

TEST(WindowSystems, TheAlertsAndTheClipboardAreThoseOfTheUser) {
    EXPECT_TRUE(WindowSystem::isThere());
    EXPECT_NE(dynamic_cast<WindowPresenter*>(&alertPresenter()), nullptr);
    EXPECT_NE(dynamic_cast<UserClipboard*>(&generalPasteboard()), nullptr);
}

TEST(WindowSystems, ASecondOneUsesTheApplicationAndPutsBackWhatWasInForce) {
    AlertPresenter* const before = &alertPresenter();
    {
        int count = 0;
        const WindowSystem second(count, nullptr);
        EXPECT_NE(&alertPresenter(), before);
    }
    EXPECT_EQ(&alertPresenter(), before);
    EXPECT_NE(qobject_cast<QApplication*>(QCoreApplication::instance()), nullptr);
}

/// What the tests' own program prints when it is started like this.
std::string printedBy(const char* argument, const char* platform) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) environment.remove(name);
    if (platform != nullptr) environment.insert("QT_QPA_PLATFORM", platform);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QCoreApplication::applicationFilePath(), {argument});
    EXPECT_TRUE(program.waitForFinished(60000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    return program.readAllStandardOutput().toStdString();
}

TEST(WindowSystems, WithoutADisplayTheSetUpIsRefusedWithTheReason) {
    EXPECT_EQ(printedBy("--without-windows", nullptr),
              "not there\nVornaset: no windows can be opened: neither DISPLAY nor WAYLAND_DISPLAY nor QT_QPA_PLATFORM "
              "names a window system\n");
    EXPECT_EQ(printedBy("--without-windows", "offscreen"), "there\nset up\n");
}

TEST(WindowSystems, AnApplicationWithoutWindowsCannotGetThemLater) {
    EXPECT_EQ(printedBy("--plain-application", "offscreen"),
              "there\nVornaset: no windows can be opened: the process has set itself up without a window system\n");
}

class WindowSystemsOfALanguage : public WindowTest {
  protected:
    static QString fileLabel() { return QCoreApplication::translate("QFileDialog", "File &name:"); }
};

TEST_F(WindowSystemsOfALanguage, FilePanelsSpeakTheUsersLanguage) {
    if (!std::filesystem::exists(
            QLibraryInfo::path(QLibraryInfo::TranslationsPath).append("/qtbase_de.qm").toStdString())) {
        GTEST_SKIP() << "the window system's translations aren't installed";
    }
    const QString before = fileLabel();
    setEnvironment("LANG", "de_DE.UTF-8");
    {
        int count = 0;
        const WindowSystem german(count, nullptr);
        EXPECT_EQ(fileLabel(), "Datei&name:");
        SavePanel panel;
        panel.setDirectory(QString::fromStdString(scratch_.path()));
        panel.show();
        keepScreenshot(panel, "save-panel-german");
    }
    EXPECT_EQ(fileLabel(), before);
}

TEST(WindowSystems, TimersOfTheLibraryFireInTheEventLoop) {
    QEventLoop loop;
    runTimerProc([](void* context) { static_cast<QEventLoop*>(context)->exit(7); }, 0.01, &loop);
    QTimer::singleShot(10000, &loop, [&] { loop.exit(1); });
    EXPECT_EQ(loop.exec(), 7);
}

TEST(WindowSystems, ARepeatingTimerGoesOnDuringTheLoopThatItStarted) {
    struct {
        int fired = 0;
        int firedInside = 0;
    } counts;
    QEventLoop outer;
    const TimerRef timer = startTimer(0.002, [&](const TimerRef&) {
        if (++counts.fired != 1) return;
        QEventLoop inner;
        QTimer::singleShot(100, &inner, &QEventLoop::quit);
        inner.exec();
        counts.firedInside = counts.fired;
        outer.quit();
    });
    outer.exec();
    stopTimer(timer);
    EXPECT_GT(counts.firedInside, 2);
}

class UserClipboardTest : public testing::Test {
  protected:
    ~UserClipboardTest() override { QGuiApplication::clipboard()->clear(); }
};

TEST_F(UserClipboardTest, TextGoesToTheUsersClipboardAndBack) {
    copyToPasteboard(String(u"%@ \u00FC\U0001F4C4"), String("Gr\xC3\xBC\xC3\x9F"
                                                            "e"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf16(u"Gr\u00FC\u00DFe \u00FC\U0001F4C4"));
    QGuiApplication::clipboard()->setText("other");
    EXPECT_EQ(stringFromPasteboard("default"), String("other"));
}

TEST_F(UserClipboardTest, WithoutATextThereIsTheDefault) {
    QGuiApplication::clipboard()->clear();
    EXPECT_EQ(stringFromPasteboard("default"), String("default"));
    QGuiApplication::clipboard()->setPixmap(QPixmap(3, 3));
    EXPECT_EQ(stringFromPasteboard("default"), String("default"));
}

TEST_F(UserClipboardTest, ANullTextLeavesNothing) {
    generalPasteboard().setString("old");
    generalPasteboard().setString(nullptr);
    EXPECT_TRUE(generalPasteboard().string().isNull());
}

}  // namespace
}  // namespace vornaset
