#include "support/timed_work.h"

#include <cmath>
#include <exception>

#include "support/run_loop.h"

namespace vornaset {

namespace {

constexpr double kProgressInterval = 0.001;

/// What a run knows of itself from one turn to the next.
struct ProgressRun {
    Array items;
    ProgressCallback callback;
    ModalPanel* panel;
    TextField* textField;
    ProgressIndicator* indicator;
    void* context;
    size_t count;
    size_t index = 0;
    bool isAtWork = false;
    std::exception_ptr failure;
};

/// False when the run has to end.
bool handleNextItem(ProgressRun& run) {
    const size_t index = run.index++;
    if (index >= run.count) return false;
    if (run.indicator != nullptr) run.indicator->incrementBy(1.0);
    const Value item = run.items.objectAt(index);
    return run.callback != nullptr && run.callback(item, run.panel, run.textField, run.context) != 0;
}

void runProgressTick(ProgressRun& run) {
    if (run.isAtWork) return;
    run.isAtWork = true;
    bool goesOn = false;
    try {
        goesOn = handleNextItem(run);
    } catch (...) {
        run.failure = std::current_exception();
    }
    run.isAtWork = false;
    if (!goesOn) run.panel->abortModal();
}

/// The timer holds on to the run's state, which lies on the stack of the caller: it must not outlive it.
class RunningTimer {
  public:
    explicit RunningTimer(ProgressRun& run)
        : timer_(startTimer(kProgressInterval, [&run](const TimerRef&) { runProgressTick(run); })) {}
    RunningTimer(const RunningTimer&) = delete;
    RunningTimer& operator=(const RunningTimer&) = delete;
    ~RunningTimer() { stopTimer(timer_); }

  private:
    TimerRef timer_;
};

}  // namespace

void runTimerProc(TimerProc proc, double delay, void* context) {
    if (!std::isfinite(delay)) return;
    startTimer(delay, [proc, context](const TimerRef& timer) {
        stopTimer(timer);  // before the procedure, which may turn the loop for longer than the delay
        if (proc != nullptr) proc(context);
    });
}

void runProgressWithArray(const Array& items, ProgressCallback callback, ModalPanel* panel, TextField* textField,
                          ProgressIndicator* indicator, void* context) {
    if (panel == nullptr) return;
    ProgressRun run{.items = items,
                    .callback = callback,
                    .panel = panel,
                    .textField = textField,
                    .indicator = indicator,
                    .context = context,
                    .count = items.count(),
                    .failure = nullptr};
    if (indicator != nullptr) {
        indicator->setMinimum(0.0);
        indicator->setMaximum(static_cast<double>(run.count) - 1.0);
    }
    {
        const RunningTimer timer(run);
        panel->runModal();
        panel->orderOut();
    }
    if (run.failure) std::rethrow_exception(run.failure);
}

}  // namespace vornaset
