#include "widgets/progress_panel.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

class ProgressPanels : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        useShippedBundle();
        setupStrings(kGerman);
    }
    static Array items(int count) {
        Array numbers = Array::makeMutable();
        for (int number = 1; number <= count; ++number) numbers.add(number);
        return numbers;
    }
};

TEST_F(ProgressPanels, APanelHasLocalisedTexts) {
    const auto progress = ProgressPanel::make();
    ASSERT_NE(progress, nullptr);
    EXPECT_EQ(progress->window()->windowTitle(), "Fortschritt");
    EXPECT_EQ(progress->window()->findChild<QAbstractButton*>("stop")->text(), "Abbrechen");
    progress->textField()->setText("Seite 12 & 13");
    EXPECT_EQ(progress->window()->findChild<QLabel*>("message")->text(), "Seite 12 & 13");
}

struct Seen {
    ProgressPanel* progress = nullptr;
    int calls = 0;
    int stopAt = -1;
    std::vector<std::string> bars;
    bool wasVisible = true;
};

uint8_t note(const Value& item, ModalPanel*, TextField* field, void* context) {
    auto& seen = *static_cast<Seen*>(context);
    ++seen.calls;
    field->setText(stringWithFormat("Seite %@ von 3", item));
    auto* bar = seen.progress->window()->findChild<QProgressBar*>();
    seen.bars.push_back(bar->text().toStdString());
    seen.wasVisible = seen.wasVisible && seen.progress->window()->isVisible();
    if (seen.calls == 2) keepScreenshot(*seen.progress->window(), "progress");
    return seen.calls == seen.stopAt ? 0 : 1;
}

TEST_F(ProgressPanels, ThreeItemsMoveTheBarThreeTimes) {
    const auto progress = ProgressPanel::make();
    ASSERT_NE(progress, nullptr);
    Seen seen{.progress = progress.get(), .bars = {}};
    runProgressWithArray(items(3), note, progress->panel(), progress->textField(), progress->indicator(), &seen);
    EXPECT_EQ(seen.calls, 3);
    EXPECT_EQ(seen.bars, (std::vector<std::string>{"50%", "100%", "100%"}));
    EXPECT_EQ(progress->indicator()->value(), 3);
    EXPECT_TRUE(seen.wasVisible);
    EXPECT_FALSE(progress->window()->isVisible());
}

TEST_F(ProgressPanels, AZeroOnTheSecondItemHidesTheThird) {
    const auto progress = ProgressPanel::make();
    ASSERT_NE(progress, nullptr);
    Seen seen{.progress = progress.get(), .stopAt = 2, .bars = {}};
    runProgressWithArray(items(3), note, progress->panel(), progress->textField(), progress->indicator(), &seen);
    EXPECT_EQ(seen.calls, 2);
    EXPECT_FALSE(progress->window()->isVisible());
}

uint8_t count(const Value&, ModalPanel*, TextField*, void* context) {
    ++*static_cast<int*>(context);
    return 1;
}

TEST_F(ProgressPanels, AnEmptyArrayCallsNothing) {
    int calls = 0;
    EXPECT_TRUE(runProgressWithArray(Array::make(), count, &calls));
    EXPECT_EQ(calls, 0);
}

TEST_F(ProgressPanels, TheButtonStopsTheRun) {
    int calls = 0;
    const ModalAnswer stopping([](QWidget& window) { press(window, "stop"); });
    EXPECT_TRUE(runProgressWithArray(items(100000), count, &calls));
    EXPECT_LT(calls, 100000);
    const int before = calls;
    QTest::qWait(20);
    EXPECT_EQ(calls, before);
}

TEST_F(ProgressPanels, EscapeStopsTheRun) {
    int calls = 0;
    const ModalAnswer escaping([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
    EXPECT_TRUE(runProgressWithArray(items(100000), count, &calls));
    EXPECT_LT(calls, 100000);
}

struct PaintedItems : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints;
        return false;
    }
    int paints = 0;
};

TEST_F(ProgressPanels, ReturnDoesNotStopTheRun) {
    int calls = 0;
    const ModalAnswer typing([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Return); });
    EXPECT_TRUE(runProgressWithArray(items(50), count, &calls));
    EXPECT_EQ(calls, 50);
}

TEST_F(ProgressPanels, ThePanelIsDrawnBetweenTheItems) {
    const auto progress = ProgressPanel::make();
    ASSERT_NE(progress, nullptr);
    PaintedItems painted;
    progress->window()->findChild<QProgressBar*>()->installEventFilter(&painted);
    int calls = 0;
    const ProgressCallback slow = [](const Value&, ModalPanel*, TextField*, void* context) -> uint8_t {
        ++*static_cast<int*>(context);
        QTest::qSleep(5);
        return 1;
    };
    runProgressWithArray(items(40), slow, progress->panel(), progress->textField(), progress->indicator(), &calls);
    EXPECT_EQ(calls, 40);
    EXPECT_GE(painted.paints, 3);
}

TEST_F(ProgressPanels, AnAlertWithinACallbackHoldsTheRun) {
    setAlertPresenter(nullptr);
    int calls = 0;
    const ProgressCallback nesting = [](const Value&, ModalPanel*, TextField*, void* context) -> uint8_t {
        auto& number = *static_cast<int*>(context);
        const int before = ++number;
        QTest::qWait(30);
        EXPECT_EQ(number, before);
        return 1;
    };
    EXPECT_TRUE(runProgressWithArray(items(2), nesting, &calls));
    EXPECT_EQ(calls, 2);
}

TEST_F(ProgressPanels, WithoutItsNibThereIsAMessageAndNoRun) {
    gBundle = nullptr;
    int calls = 0;
    EXPECT_FALSE(runProgressWithArray(items(3), count, &calls));
    EXPECT_EQ(calls, 0);
    ASSERT_EQ(presenter_->alerts.size(), 1u);
    EXPECT_EQ(presenter_->alerts[0].message, String("Error loading nib: ProgressPanel"));
}

}  // namespace
}  // namespace vornaset
