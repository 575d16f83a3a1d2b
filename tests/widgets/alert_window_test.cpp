#include "widgets/alert_window.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <thread>

#include "widgets/qt_text.h"
#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

class AlertWindows : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        setAlertPresenter(windows_);
    }

    static QString textOf(QWidget& window, const char* name) {
        const auto* label = window.findChild<QLabel*>(name);
        return label != nullptr ? label->text() : QString();
    }
    static QString titleOf(QWidget& window, const char* name) {
        const auto* button = window.findChild<QAbstractButton*>(name);
        return button != nullptr ? button->text() : QString();
    }

    std::shared_ptr<WindowPresenter> windows_ = std::make_shared<WindowPresenter>();
};

TEST_F(AlertWindows, ThreeButtonsGiveTheirThreeAnswers) {
    const std::pair<const char*, int64_t> answers[] = {{"default", 1}, {"alternate", 0}, {"other", -1}};
    for (const auto& [button, answer] : answers) {
        const ModalAnswer pressing([name = button](QWidget& window) { press(window, name); });
        EXPECT_EQ(msgBoxYesNoCancel("Replace?"), answer);
    }
}

TEST_F(AlertWindows, IgnoreStandsInTheMiddle) {
    gStrings = Dictionary::make({{"yes", "Yes"}, {"no", "No"}, {"ignore", "Ignore"}});
    const ModalAnswer pressing([](QWidget& window) {
        EXPECT_EQ(titleOf(window, "default"), "Yes");
        EXPECT_EQ(titleOf(window, "alternate"), "Ignore");
        EXPECT_EQ(titleOf(window, "other"), "No");
        const auto left = [&](const char* name) { return window.findChild<QAbstractButton*>(name)->x(); };
        EXPECT_LT(left("default"), left("alternate"));
        EXPECT_LT(left("alternate"), left("other"));
        press(window, "alternate");
    });
    EXPECT_EQ(msgBoxYesNoIgnore("Go on?"), 0);
}

TEST_F(AlertWindows, AQuestionShowsItsTextsButtonsAndIcon) {
    useShippedBundle();
    setupStrings(kGerman);
    setMsg2(String(u"Auf Seite 12 fehlt das Bild \u201EFoto 7 & 8.tif\u201C. Der Rahmen bliebe leer."));
    const ModalAnswer pressing([](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), "Vornaset");
        EXPECT_EQ(textOf(window, "message"), QString::fromUtf16(u"Ein Bild fehlt. Trotzdem weiter?"));
        EXPECT_TRUE(textOf(window, "informative").contains("7 & 8.tif"));
        EXPECT_EQ(titleOf(window, "default"), "Ja");
        EXPECT_EQ(titleOf(window, "alternate"), "Nein");
        EXPECT_EQ(titleOf(window, "other"), "Abbrechen");
        const auto* icon = window.findChild<QLabel*>("icon");
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(icon->pixmap().width(), icon->pixmap().height());
        keepScreenshot(window, "alert-question");
        press(window, "other");
    });
    EXPECT_EQ(msgBoxYesNoCancel("Ein Bild fehlt. Trotzdem weiter?"), -1);
}

TEST_F(AlertWindows, AMessageHasTheOneButtonOfTheTable) {
    gStrings = Dictionary::make({{"ok", "Verstanden"}});
    const ModalAnswer pressing([](QWidget& window) {
        EXPECT_EQ(titleOf(window, "default"), "Verstanden");
        EXPECT_EQ(window.findChild<QAbstractButton*>("alternate"), nullptr);
        EXPECT_EQ(window.findChild<QAbstractButton*>("other"), nullptr);
        EXPECT_EQ(window.findChild<QLabel*>("informative"), nullptr);
        EXPECT_EQ(window.findChild<QLabel*>("icon"), nullptr);
        EXPECT_LT(window.height(), 120) << "a single line needs no more";
        keepScreenshot(window, "alert-message");
        press(window, "default");
    });
    msgBox("Das Dokument wurde gesichert.");
}

TEST_F(AlertWindows, WithoutATableTheButtonSaysOK) {
    const ModalAnswer pressing([](QWidget& window) {
        EXPECT_EQ(titleOf(window, "default"), "OK");
        press(window, "default");
    });
    msgBox("text");
}

TEST_F(AlertWindows, MarkupAndAmpersandsAreShownAsTheyStand) {
    setMsg2(String("<i>100 %d</i> & more"));
    const ModalAnswer pressing([](QWidget& window) {
        EXPECT_EQ(textOf(window, "message"), "<b>Bold</b> & bolder");
        EXPECT_EQ(textOf(window, "informative"), "<i>100 %d</i> & more");
        for (const char* name : {"message", "informative"}) {
            EXPECT_EQ(window.findChild<QLabel*>(name)->textFormat(), Qt::PlainText);
        }
        EXPECT_EQ(titleWithQt(titleOf(window, "default")), String("Save & Close"));
        keepScreenshot(window, "alert-markup");
        press(window, "default");
    });
    EXPECT_EQ(runAlertPanel("<b>Bold</b> & bolder", gMsg2, "Save & Close", nullptr, nullptr), 1);
}

TEST_F(AlertWindows, EscapePressesTheButtonThatChangesLeast) {
    const std::tuple<const char*, const char*, int64_t> cases[] = {
        {"no", "cancel", -1}, {"no", nullptr, 0}, {nullptr, nullptr, 1}};
    for (const auto& [alternate, other, answer] : cases) {
        const ModalAnswer escape([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
        EXPECT_EQ(runAlertPanel("text", nullptr, "yes", alternate, other), answer);
    }
}

TEST_F(AlertWindows, ClosingCountsAsEscape) {
    const ModalAnswer closing([](QWidget& window) { window.close(); });
    EXPECT_EQ(msgBoxYesNoCancel("text"), -1);
}

TEST_F(AlertWindows, ReturnPressesTheDefaultButton) {
    const ModalAnswer typing([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Return); });
    EXPECT_TRUE(msgBoxYesNo("text"));
}

TEST_F(AlertWindows, ALongTextScrollsInsteadOfLeavingTheScreen) {
    String longText = u"";
    for (int line = 0; line < 400; ++line) longText = longText + String(u"A line of the report.\n");
    setMsg2(longText);
    const ModalAnswer pressing([](QWidget& window) {
        EXPECT_LT(window.height(), window.screen()->availableGeometry().height());
        EXPECT_GT(window.findChild<QScrollArea*>()->verticalScrollBar()->maximum(), 0);
        keepScreenshot(window, "alert-long");
        press(window, "default");
    });
    msgBox("400 problems");
}

TEST_F(AlertWindows, ABrokenIconIsNoFailure) {
    addResource("Keld.png", "no picture");
    const ModalAnswer pressing([](QWidget& window) {
        EXPECT_EQ(window.findChild<QLabel*>("icon"), nullptr);
        press(window, "default");
    });
    msgBox("text");
}

TEST_F(AlertWindows, AnAlertDuringAnAlertIsAnsweredFirst) {
    const ModalAnswer outer([](QWidget& window) {
        {
            const ModalAnswer inner([&](QWidget& second) {
                EXPECT_NE(&second, &window);
                press(second, "alternate");
            });
            EXPECT_FALSE(msgBoxYesNo("inner"));
        }
        press(window, "default");
    });
    EXPECT_TRUE(msgBoxYesNo("outer"));
}

TEST_F(AlertWindows, AnAlertOnAnotherThreadIsRefused) {
    bool isRefused = false;
    std::thread([&] {
        try {
            windows_->run({.message = "text",
                           .informative = "",
                           .defaultButton = nullptr,
                           .alternateButton = nullptr,
                           .otherButton = nullptr,
                           .windowTitle = "",
                           .icon = nullptr});
        } catch (const Exception&) {
            isRefused = true;
        }
    }).join();
    EXPECT_TRUE(isRefused);
}

TEST_F(AlertWindows, TheProgramsOwnWindowsComeToTheFront) {
    QWidget first;
    QWidget second;
    first.show();
    second.show();
    second.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&second));
    windows_->activateApplication("org.example.Other");
    QTest::qWait(20);
    EXPECT_TRUE(second.isActiveWindow());
    second.hide();
    windows_->activateApplication("com.kelmoriandev.indesign.Vornaset");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&first));
}

}  // namespace
}  // namespace vornaset
