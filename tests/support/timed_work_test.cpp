#include "support/timed_work.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/printing.h"
#include "support/run_loop.h"

namespace vornaset {
namespace {

/// Turns the run loop, as a real panel does, until it is aborted, and notes what happens to it.
class TurningPanel : public ModalPanel {
  public:
    int64_t runModal() override {
        steps.emplace_back("run");
        isOver_ = false;
        EXPECT_TRUE(RunLoop::current().runUntil([this] { return isOver_; }, 10));
        return kModalRunAborted;
    }
    void abortModal() override {
        steps.emplace_back("abort");
        isOver_ = true;
    }
    void orderOut() override { steps.emplace_back("out"); }

    std::vector<std::string> steps;

  private:
    bool isOver_ = false;
};

class NotedBar : public ProgressIndicator {
  public:
    void setMinimum(double minimum) override { steps.push_back({'<', minimum}); }
    void setMaximum(double maximum) override { steps.push_back({'>', maximum}); }
    void incrementBy(double step) override { steps.push_back({'+', step}); }

    std::vector<std::pair<char, double>> steps;
};

class KeptText : public TextField {
  public:
    String text() const override { return kept; }
    void setText(const String& text) override { kept = text; }

    String kept;
};

/// Open, since callbacks get it as their context.
class Progress : public testing::Test {
  public:
    void run(const Array& items, ProgressCallback callback) {
        runProgressWithArray(items, callback, &panel_, &field_, &bar_, this);
    }

    std::vector<String> seen_;
    TurningPanel panel_;
    KeptText field_;
    NotedBar bar_;
};

using Bar = std::vector<std::pair<char, double>>;
using Steps = std::vector<std::string>;

TEST_F(Progress, EachItemIsHandledAndTheBarIncrementedOncePerItem) {
    const ProgressCallback show = [](const Value& item, ModalPanel* panel, TextField* field, void* context) -> uint8_t {
        auto& self = *static_cast<Progress*>(context);
        EXPECT_EQ(panel, &self.panel_);
        field->setText(item.string());
        self.seen_.push_back(item.string());
        return 1;
    };
    run(Array::make({"a", "b", "c"}), show);
    EXPECT_EQ(seen_, (std::vector<String>{"a", "b", "c"}));
    EXPECT_EQ(bar_.steps, (Bar{{'<', 0}, {'>', 2}, {'+', 1}, {'+', 1}, {'+', 1}}));
    EXPECT_EQ(field_.kept, String("c"));
    EXPECT_EQ(panel_.steps, (Steps{"run", "abort", "out"}));
}

TEST_F(Progress, AZeroFromTheCallbackEndsTheRunAtOnce) {
    const ProgressCallback stop = [](const Value& item, ModalPanel*, TextField*, void* context) -> uint8_t {
        auto& seen = static_cast<Progress*>(context)->seen_;
        seen.push_back(item.string());
        return seen.size() < 2 ? 1 : 0;
    };
    run(Array::make({"a", "b", "c"}), stop);
    EXPECT_EQ(seen_, (std::vector<String>{"a", "b"}));
    EXPECT_EQ(bar_.steps.size(), 4u);
    EXPECT_EQ(panel_.steps, (Steps{"run", "abort", "out"}));
}

TEST_F(Progress, AnyOtherByteGoesOn) {
    const ProgressCallback two = [](const Value&, ModalPanel*, TextField*, void* context) -> uint8_t {
        static_cast<Progress*>(context)->seen_.push_back("x");
        return 2;
    };
    run(Array::make({"a", "b"}), two);
    EXPECT_EQ(seen_.size(), 2u);
}

TEST_F(Progress, AnEmptyArrayOpensThePanelAndClosesIt) {
    const ProgressCallback never = [](const Value&, ModalPanel*, TextField*, void*) -> uint8_t {
        ADD_FAILURE() << "called";
        return 1;
    };
    for (const Array& none : {Array::make(), Array()}) {
        panel_.steps.clear();
        bar_.steps.clear();
        run(none, never);
        EXPECT_EQ(panel_.steps, (Steps{"run", "abort", "out"}));
        EXPECT_EQ(bar_.steps, (Bar{{'<', 0}, {'>', -1}}));
    }
}

TEST_F(Progress, ItemsAreHandledOneATurnSoThatOtherTimersFireInBetween) {
    const TimerRef other = startTimer(0.001, [this](const TimerRef&) { seen_.push_back("other"); });
    const ProgressCallback slow = [](const Value& item, ModalPanel*, TextField*, void* context) -> uint8_t {
        static_cast<Progress*>(context)->seen_.push_back(item.string());
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(5);
        while (std::chrono::steady_clock::now() < end) {
        }
        return 1;
    };
    run(Array::make({"a", "b", "c"}), slow);
    stopTimer(other);
    const auto second = std::find(seen_.begin(), seen_.end(), String("b"));
    const auto third = std::find(seen_.begin(), seen_.end(), String("c"));
    EXPECT_NE(std::find(second, third, String("other")), third);
}

TEST_F(Progress, ATurnDuringACallbackIsPassedOver) {
    const ProgressCallback nesting = [](const Value& item, ModalPanel*, TextField*, void* context) -> uint8_t {
        auto& seen = static_cast<Progress*>(context)->seen_;
        seen.push_back(item.string());
        RunLoop::current().runFor(0.02);
        seen.push_back("end");
        return 1;
    };
    run(Array::make({"a", "b"}), nesting);
    EXPECT_EQ(seen_, (std::vector<String>{"a", "end", "b", "end"}));
}

TEST_F(Progress, AFailureOfTheCallbackEndsTheRunAndComesOut) {
    const ProgressCallback failing = [](const Value&, ModalPanel*, TextField*, void* context) -> uint8_t {
        static_cast<Progress*>(context)->seen_.push_back("x");
        throw std::runtime_error("disk full");
    };
    EXPECT_THROW(run(Array::make({"a", "b"}), failing), std::runtime_error);
    EXPECT_EQ(seen_.size(), 1u);
    EXPECT_EQ(panel_.steps, (Steps{"run", "abort", "out"}));
}

TEST_F(Progress, AnArrayThatShrinksMeanwhileEndsTheRun) {
    static Array items;
    items = Array::makeMutable({"a", "b", "c"});
    const ProgressCallback shrinking = [](const Value&, ModalPanel*, TextField*, void*) -> uint8_t {
        items.removeAll();
        return 1;
    };
    EXPECT_THROW(run(items, shrinking), RangeException);
    items = nullptr;
}

TEST_F(Progress, WithoutAPanelNothingRuns) {
    const ProgressCallback never = [](const Value&, ModalPanel*, TextField*, void*) -> uint8_t {
        ADD_FAILURE() << "called";
        return 1;
    };
    runProgressWithArray(Array::make({"a"}), never, nullptr, &field_, &bar_, this);
    RunLoop::current().runFor(0.01);
    EXPECT_TRUE(bar_.steps.empty());
}

TEST_F(Progress, ATextFieldAndABarAreNotNeeded) {
    const ProgressCallback plain = [](const Value&, ModalPanel*, TextField* field, void* context) -> uint8_t {
        EXPECT_EQ(field, nullptr);
        static_cast<Progress*>(context)->seen_.push_back("x");
        return 1;
    };
    runProgressWithArray(Array::make({"a", "b"}), plain, &panel_, nullptr, nullptr, this);
    EXPECT_EQ(seen_.size(), 2u);
}

TEST_F(Progress, TheTimerIsGoneBehindTheRun) {
    const ProgressCallback count = [](const Value&, ModalPanel*, TextField*, void* context) -> uint8_t {
        static_cast<Progress*>(context)->seen_.push_back("x");
        return 0;
    };
    run(Array::make({"a", "b"}), count);
    RunLoop::current().runFor(0.02);
    EXPECT_EQ(seen_.size(), 1u);
}

TEST(TimerProc, RunsOnceBehindItsDelay) {
    int calls = 0;
    const auto start = std::chrono::steady_clock::now();
    runTimerProc([](void* context) { ++*static_cast<int*>(context); }, 0.05, &calls);
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return calls > 0; }, 10));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    RunLoop::current().runFor(0.15);
    EXPECT_EQ(calls, 1);
}

TEST(TimerProc, ADelayBelowNothingMeansAtOnceButNeverBeforeTheReturn) {
    int calls = 0;
    runTimerProc([](void* context) { ++*static_cast<int*>(context); }, -3, &calls);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return calls > 0; }, 10));
}

TEST(TimerProc, ANullProcedureAndADelayThatIsNoNumberDoNothing) {
    int calls = 0;
    runTimerProc(nullptr, 0, &calls);
    runTimerProc([](void* context) { ++*static_cast<int*>(context); }, std::numeric_limits<double>::quiet_NaN(),
                 &calls);
    runTimerProc([](void* context) { ++*static_cast<int*>(context); }, std::numeric_limits<double>::infinity(), &calls);
    RunLoop::current().runFor(0.01);
    EXPECT_EQ(calls, 0);
}

TEST(TimerProc, AProcedureThatTurnsTheLoopIsNotCalledAgain) {
    int calls = 0;
    runTimerProc(
        [](void* context) {
            ++*static_cast<int*>(context);
            RunLoop::current().runFor(0.02);
        },
        0.001, &calls);
    RunLoop::current().runFor(0.05);
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace vornaset
