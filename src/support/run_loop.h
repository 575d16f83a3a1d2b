#pragma once
// A thread's run loop: timers and open files that somebody watches, served one after the other on the thread that set
// them up. It needs no event loop of another library. A program that has one watches descriptor() there and calls
// turn(0) whenever it is readable. There is one mode, in which all sources are served.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace vornaset {

/// What the loop asks of a watched file.
enum class Wait : uint8_t { forInput, forOutput };

/// Something with a file that the loop watches. The loop keeps it alive while it is watched.
class RunLoopSource {
  public:
    virtual ~RunLoopSource();
    /// The file is ready, or has failed. It may well not block here. May add and remove sources, this one included.
    virtual void serve() = 0;
};

class Timer;
using TimerRef = std::shared_ptr<Timer>;

/// A repeating timer. Made by setupTimer and startTimer, driven by the loop.
class Timer {
  public:
    using Clock = std::chrono::steady_clock;
    using Action = std::function<void(const TimerRef&)>;

    Timer(std::chrono::nanoseconds interval, Action action)
        : action_(std::move(action)), interval_(interval), due_(Clock::now() + interval) {}

    Clock::time_point due() const { return due_; }
    /// To the next multiple of the interval that is still to come.
    void advance(Clock::time_point now) { due_ += ((now - due_) / interval_ + 1) * interval_; }
    /// Empty once the timer is stopped.
    const Action& action() const { return action_; }
    bool isStopped() const { return !action_; }
    void stop() { action_ = nullptr; }

  private:
    Action action_;
    std::chrono::nanoseconds interval_;
    Clock::time_point due_;
};

class RunLoop {
  public:
    /// The calling thread's own. A child process after fork begins with a new one, without sources.
    static RunLoop& current();

    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    ~RunLoop();

    /// Serves one thing that is due, after waiting at most `seconds` for it. False when there was none. Other sources
    /// may call this from serve(): what is being served is theirs to keep quiet. What a source or a timer throws is
    /// logged and goes no further.
    bool turn(double seconds);
    /// Turns until `done` says so, which is asked before each turn; false after `seconds` without that.
    bool runUntil(const std::function<bool()>& done, double seconds);
    /// Turns for that long.
    void runFor(double seconds);

    /// Readable while something is due.
    int descriptor() const noexcept;

    /// Watches a file until remove. A file is watched once at most. Throws Exception when the system can't.
    void add(int file, Wait wait, std::shared_ptr<RunLoopSource> source);
    /// Nothing for a file that isn't watched. Before the file is closed.
    void remove(int file) noexcept;

  private:
    friend TimerRef startTimer(double seconds, Timer::Action fire);
    friend std::nullptr_t stopTimer(const TimerRef& timer);
    class State;

    RunLoop();
    std::unique_ptr<State> state_;
};

/// A timer that calls `fire` every so many seconds (0.0001 at least) on the calling thread's run loop, for the first
/// time after that many seconds. The loop owns it until it is stopped. A loop that comes late fires once and goes on at
/// the next multiple: it makes up for nothing. Throws InvalidArgumentException for a number that isn't finite.
TimerRef startTimer(double seconds, Timer::Action fire);

/// The same for an operation of an object, which the timer keeps alive. Null for a null object.
template <class Target>
TimerRef setupTimer(const std::shared_ptr<Target>& target, double seconds, void (Target::*selector)(const TimerRef&)) {
    if (!target) return nullptr;
    return startTimer(seconds, [target, selector](const TimerRef& timer) { ((*target).*selector)(timer); });
}

/// The timer fires no more and lets go of its target. A null timer, and one that is stopped, are left alone. On the
/// thread that set it up. Always null, so that `timer = stopTimer(timer)` clears the variable.
std::nullptr_t stopTimer(const TimerRef& timer);

/// The system's uptime, without the time it slept, in sixtieths of a second, cut towards zero.
int64_t MyTickCount();
/// The same for that many seconds.
int64_t tickCountOfUptime(double seconds);

}  // namespace vornaset
