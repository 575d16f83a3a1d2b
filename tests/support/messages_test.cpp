#include "support/messages.h"

#include <stdexcept>

#include "support/message_fixture.h"
#include "support/printing.h"

namespace vornaset {
namespace {

class Messages : public MessageFixture {
  protected:
    const Alert& last() const { return presenter_->alerts.at(presenter_->alerts.size() - 1); }
    size_t shown() const { return presenter_->alerts.size(); }
};

TEST_F(Messages, AStringIsTheFormatAndACStringIsAKey) {
    gStrings = Dictionary::make({{"key %d", "%d Seiten"}});
    msgBox("key %d", 5);
    EXPECT_EQ(last().message, String("5 Seiten"));
    msgBox(String("key %d"), 5);
    EXPECT_EQ(last().message, String("key 5"));
    msgBox("other %@", "x");
    EXPECT_EQ(last().message, String("other x"));
    EXPECT_EQ(shown(), 3u);
}

TEST_F(Messages, AMessageHasThePlatformsButtonAlone) {
    msgBox("text");
    EXPECT_TRUE(last().defaultButton.isNull());
    EXPECT_TRUE(last().alternateButton.isNull());
    EXPECT_TRUE(last().otherButton.isNull());
    EXPECT_EQ(last().windowTitle, String("Vornaset"));
}

TEST_F(Messages, ANullFormatShowsNothingAndLeavesTheSecondText) {
    setMsg2(String("second"));
    msgBox(String());
    msgBox(static_cast<const char*>(nullptr));
    msgBox(nullptr);
    msgBoxWithError(nullptr);
    EXPECT_EQ(shown(), 0u);
    EXPECT_EQ(gMsg2, String("second"));
}

TEST_F(Messages, TheSecondTextIsUsedOnce) {
    setMsg2(String("100% literal %@"));
    msgBox("first");
    EXPECT_EQ(last().informative, String("100% literal %@"));
    EXPECT_TRUE(presenter_->secondTextDuringRun.isNull());
    EXPECT_TRUE(gMsg2.isNull());
    msgBox("second");
    EXPECT_FALSE(last().informative.isNull());
    EXPECT_TRUE(last().informative.isEmpty());
}

TEST_F(Messages, ASecondTextFromAKeyIsFormatted) {
    gStrings = Dictionary::make({{"detail", "Datei %@"}});
    setMsg2("detail", "a.csv");
    EXPECT_EQ(gMsg2, String("Datei a.csv"));
    setMsg2("unknown %d", 4);
    EXPECT_EQ(gMsg2, String("unknown 4"));
    setMsg2(String("detail"));
    EXPECT_EQ(gMsg2, String("detail"));
    setMsg2(nullptr);
    EXPECT_TRUE(gMsg2.isNull());
    setMsg2(String("x"));
    setMsg2(String());
    EXPECT_TRUE(gMsg2.isNull());
}

TEST_F(Messages, AnExceptionShowsItsReason) {
    msgBox(exceptionWithReason("it broke"));
    EXPECT_EQ(last().message, String("it broke"));
    msgBox(std::runtime_error("foreign"));
    EXPECT_EQ(last().message, String("foreign"));
    msgBoxWithError(Error(2, "no such file"));
    EXPECT_EQ(last().message, String("no such file"));
}

TEST_F(Messages, APercentSignInAnExceptionIsReadAsAConversion) {
    msgBox(exceptionWithReason("50%% of %@ at 7%"));
    EXPECT_EQ(last().message, String("50% of (null) at 7%"));
    msgBoxWithError(Error(2, "%d files"));
    EXPECT_EQ(last().message, String("(null) files"));
}

TEST_F(Messages, YesAndNoGiveWhetherItWasYes) {
    presenter_->answers = {AlertAnswer::defaultButton, AlertAnswer::alternateButton, AlertAnswer::otherButton};
    EXPECT_TRUE(msgBoxYesNo("really %d", 1));
    EXPECT_EQ(last().message, String("really 1"));
    EXPECT_EQ(last().defaultButton, String("yes"));
    EXPECT_EQ(last().alternateButton, String("no"));
    EXPECT_TRUE(last().otherButton.isNull());
    EXPECT_FALSE(msgBoxYesNo("really"));
    EXPECT_FALSE(msgBoxYesNo("really"));
}

TEST_F(Messages, AReadyQuestionIsTakenLiterally) {
    gStrings = Dictionary::make({{"100%d", "translated"}});
    EXPECT_TRUE(msgBoxYesNo(String("100%d")));
    EXPECT_EQ(last().message, String("100%d"));
}

TEST_F(Messages, OkAndCancelGiveWhetherItWasOk) {
    presenter_->answers = {AlertAnswer::defaultButton, AlertAnswer::alternateButton};
    EXPECT_TRUE(msgBoxOkCancel("go"));
    EXPECT_EQ(last().defaultButton, String("ok"));
    EXPECT_EQ(last().alternateButton, String("cancel"));
    EXPECT_TRUE(last().otherButton.isNull());
    EXPECT_FALSE(msgBoxOkCancel("go"));
}

TEST_F(Messages, ThreeButtonsGiveTheRawResult) {
    presenter_->answers = {AlertAnswer::defaultButton, AlertAnswer::alternateButton, AlertAnswer::otherButton};
    EXPECT_EQ(msgBoxYesNoCancel("save"), 1);
    EXPECT_EQ(msgBoxYesNoCancel("save"), 0);
    EXPECT_EQ(msgBoxYesNoCancel("save"), -1);
    EXPECT_EQ(last().defaultButton, String("yes"));
    EXPECT_EQ(last().alternateButton, String("no"));
    EXPECT_EQ(last().otherButton, String("cancel"));
}

TEST_F(Messages, IgnoreStandsBeforeNo) {
    presenter_->answers = {AlertAnswer::alternateButton, AlertAnswer::otherButton};
    EXPECT_EQ(msgBoxYesNoIgnore("fix"), 0);
    EXPECT_EQ(msgBoxYesNoIgnore("fix"), -1);
    EXPECT_EQ(last().defaultButton, String("yes"));
    EXPECT_EQ(last().alternateButton, String("ignore"));
    EXPECT_EQ(last().otherButton, String("no"));
}

TEST_F(Messages, ButtonsGoThroughTheTable) {
    gStrings = Dictionary::make({{"yes", "Ja"}, {"no", "Nein"}, {"cancel", "Abbrechen"}, {"save", "Sichern?"}});
    msgBoxYesNoCancel("save");
    EXPECT_EQ(last().message, String("Sichern?"));
    EXPECT_EQ(last().defaultButton, String("Ja"));
    EXPECT_EQ(last().alternateButton, String("Nein"));
    EXPECT_EQ(last().otherButton, String("Abbrechen"));
    msgBoxYesNoIgnore("save");
    EXPECT_EQ(last().alternateButton, String("ignore"));
}

TEST_F(Messages, EveryBoxShowsTheSecondText) {
    const auto expectSecondText = [this](auto ask) {
        setMsg2(String("second"));
        ask();
        EXPECT_EQ(last().informative, String("second"));
        EXPECT_TRUE(gMsg2.isNull());
    };
    expectSecondText([] { msgBox("x"); });
    expectSecondText([] { msgBox(String("x")); });
    expectSecondText([] { msgBox(exceptionWithReason("x")); });
    expectSecondText([] { msgBoxWithError(Error(1, "x")); });
    expectSecondText([] { msgBoxYesNo("x"); });
    expectSecondText([] { msgBoxYesNo(String("x")); });
    expectSecondText([] { msgBoxOkCancel("x"); });
    expectSecondText([] { msgBoxYesNoCancel("x"); });
    expectSecondText([] { msgBoxYesNoIgnore("x"); });
}

TEST_F(Messages, SilenceAnswersWithTheDefaultButtonAndKeepsTheSecondText) {
    EXPECT_EQ(setSilent(1), 0);
    setMsg2(String("kept"));
    EXPECT_EQ(msgBoxYesNoCancel("x"), 1);
    EXPECT_EQ(msgBoxYesNoIgnore("x"), 1);
    EXPECT_TRUE(msgBoxYesNo("x"));
    EXPECT_TRUE(msgBoxOkCancel("x"));
    EXPECT_EQ(runAlertPanel("x", nullptr, nullptr, nullptr, nullptr), 1);
    msgBox("x");
    EXPECT_TRUE(presenter_->steps.empty());
    EXPECT_EQ(setSilent(2), 1);
    msgBox("y");
    EXPECT_EQ(last().informative, String("kept"));
    EXPECT_EQ(setSilent(0), 2);
}

TEST_F(Messages, AnAlertActivatesBeepsAndRunsInThisOrder) {
    msgBox("x");
    EXPECT_EQ(presenter_->steps,
              (std::vector<std::string>{"activate com.kelmoriandev.indesign.Vornaset", "beep", "run"}));
}

TEST_F(Messages, TheIconIsTheBundlesOwn) {
    msgBox("x");
    EXPECT_TRUE(last().icon.isNull());
    addResource("Keld.png", "bytes of a picture");
    msgBox("x");
    EXPECT_EQ(last().icon, Data(std::string("bytes of a picture")));
}

TEST_F(Messages, AnAlertPanelTakesNullForEverything) {
    EXPECT_EQ(runAlertPanel(nullptr, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_TRUE(last().message.isNull());
    EXPECT_FALSE(last().informative.isNull());
    EXPECT_TRUE(msgBoxYesNo(static_cast<const char*>(nullptr)));
    EXPECT_TRUE(last().message.isNull());
    EXPECT_TRUE(msgBoxYesNo(String()));
}

TEST_F(Messages, WithoutWindowsTheTextGoesToStandardError) {
    setAlertPresenter(nullptr);
    setMsg2(String("detail 100%"));
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    msgBox("headline");
    EXPECT_EQ(msgBoxYesNoCancel("save %@", "a.idml"), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Vornaset: headline\ndetail 100%\nVornaset: save a.idml\n[yes]\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    alertPresenter().prepare();
    alertPresenter().activateApplication("x");
}

TEST_F(Messages, APresenterIsPutBackByWhoTookItsPlace) {
    const auto other = std::make_shared<NotingPresenter>();
    EXPECT_EQ(setAlertPresenter(other), presenter_);
    msgBox("x");
    EXPECT_EQ(other->alerts.size(), 1u);
    EXPECT_EQ(shown(), 0u);
    EXPECT_EQ(setAlertPresenter(presenter_), other);
}

}  // namespace
}  // namespace vornaset
