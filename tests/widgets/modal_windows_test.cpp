#include "widgets/modal_windows.h"

#include <QtGui/QScreen>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>

#include "support/logged.h"
#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

TEST(ModalWindows, ADialogGivesWhatItWasFinishedWith) {
    for (const int result : {1, 0, 42, -7}) {
        QDialog dialog;
        const ModalAnswer finishing([&](QWidget& window) {
            EXPECT_EQ(&window, &dialog);
            EXPECT_TRUE(isRunningModally(&dialog));
            dialog.done(result);
        });
        EXPECT_EQ(runModalForWindow(&dialog), result);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_FALSE(isRunningModally(&dialog));
    }
}

TEST(ModalWindows, ADialogThatTheUserClosesIsRejected) {
    QDialog dialog;
    const ModalAnswer escaping([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
    EXPECT_EQ(runModalForWindow(&dialog), 0);
    const ModalAnswer closing([](QWidget& window) { window.close(); });
    EXPECT_EQ(runModalForWindow(&dialog), 0);
}

TEST(ModalWindows, AWindowIsEndedWithAResultAndClosedThen) {
    QWidget window;
    QPushButton button("ok", &window);
    QObject::connect(&button, &QPushButton::clicked, [&] {
        endModalRun(&button, 5);
        endModalRun(&window, 6);
    });
    const ModalAnswer pressing([&](QWidget&) { QTest::mouseClick(&button, Qt::LeftButton); });
    EXPECT_EQ(runModalForWindow(&window), 5);
    EXPECT_FALSE(window.isVisible());
}

TEST(ModalWindows, AWindowThatIsClosedOrDeletedWasAborted) {
    QWidget window;
    const ModalAnswer closing([](QWidget& shown) { shown.close(); });
    EXPECT_EQ(runModalForWindow(&window), kModalRunAborted);
    auto* mortal = new QWidget;
    const ModalAnswer deleting([](QWidget& shown) { delete &shown; });
    EXPECT_EQ(runModalForWindow(mortal), -1001);
}

TEST(ModalWindows, AWindowThatIsSeenAlreadyRunsModallyAndIsItselfAgainThen) {
    QWidget window;
    window.show();
    const ModalAnswer ending([&](QWidget& shown) { endModalRun(&shown, 3); });
    EXPECT_EQ(runModalForWindow(&window), 3);
    EXPECT_EQ(window.windowModality(), Qt::NonModal);
}

TEST(ModalWindows, ARunWithinARunEndsFirst) {
    QDialog outer;
    QDialog inner;
    int64_t innerResult = 0;
    const ModalAnswer nesting([&](QWidget&) {
        {
            const ModalAnswer ending([&](QWidget& shown) {
                EXPECT_EQ(&shown, &inner);
                endModalRun(&outer, 8);
                inner.done(9);
            });
            innerResult = runModalForWindow(&inner);
        }
    });
    EXPECT_EQ(runModalForWindow(&outer), 8);
    EXPECT_EQ(innerResult, 9);
}

TEST(ModalWindows, EndingWhatDoesNotRunDoesNothing) {
    QWidget window;
    endModalRun(&window, 1);
    endModalRun(nullptr, 1);
    EXPECT_FALSE(isRunningModally(&window));
    EXPECT_FALSE(isRunningModally(nullptr));
}

TEST(ModalWindows, APanelIsAbortedAndGoesOut) {
    QWidget window;
    WindowPanel panel(&window);
    const ModalAnswer aborting([&](QWidget&) { panel.abortModal(); });
    EXPECT_EQ(panel.runModal(), kModalRunAborted);
    EXPECT_TRUE(window.isVisible());
    panel.orderOut();
    EXPECT_FALSE(window.isVisible());
    WindowPanel none(nullptr);
    EXPECT_EQ(none.runModal(), kModalRunAborted);
    none.abortModal();
    none.orderOut();
}

class LoggedModalWindows : public LoggedTest {};

TEST_F(LoggedModalWindows, ANullWindowIsLoggedAndAborted) {
    EXPECT_EQ(runModalForWindow(nullptr), -1001);
    EXPECT_EQ(entries(), std::vector<std::string>{"####\trunModalForWindow: NULL"});
}

TEST(VisiblePoints, TheOriginIsNeverVisible) {
    ASSERT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(0, 0));
    EXPECT_FALSE(ptIsVisible({0, 0}));
    EXPECT_FALSE(ptIsVisible({0, -0.0}));
}

TEST(VisiblePoints, APointIsVisibleInTheFrameOfAnyScreen) {
    const QRect frame = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(ptIsVisible({0, 1}));
    EXPECT_TRUE(ptIsVisible({frame.width() - 0.5, frame.height() - 0.5}));
    EXPECT_FALSE(ptIsVisible({static_cast<double>(frame.width()), 10}));
    EXPECT_FALSE(ptIsVisible({10, static_cast<double>(frame.height())}));
    EXPECT_FALSE(ptIsVisible({-1, 10}));
    EXPECT_FALSE(ptIsVisible({1e9, 1e9}));
}

}  // namespace
}  // namespace vornaset
