// On epoll, so that the loop is one descriptor for whoever embeds it. The platform library's own loops need its
// application object and would serve a whole program's events while one caller waits for one answer.

#include "support/run_loop.h"

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstring>
#include <ctime>
#include <map>
#include <vector>

#include "support/file_handle.h"
#include "support/log.h"
#include "support/raise_exception.h"

namespace vornaset {

namespace {

using Clock = Timer::Clock;
constexpr double kShortestInterval = 0.0001;
/// Longer waits are cut to this, about three years, so that no conversion runs over.
constexpr double kLongestWait = 1e8;

std::chrono::nanoseconds nanoseconds(double seconds) {
    return std::chrono::nanoseconds(std::llround(std::clamp(seconds, 0.0, kLongestWait) * 1e9));
}

template <class Step>
void guarded(Step step) {
    try {
        step();
    } catch (const std::exception& failure) {
        MyLog("%@", failure.what());
    } catch (...) {
        MyLog("a failure without a name");
    }
}

}  // namespace

RunLoopSource::~RunLoopSource() = default;

class RunLoop::State {
  public:
    State()
        : owner_(getpid()),
          ready_(epoll_create1(EPOLL_CLOEXEC)),
          alarm_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
        if (!ready_.isOpen() || !alarm_.isOpen()) raiseException("no run loop: %s", std::strerror(errno));
        watch(alarm_.number(), Wait::forInput);
    }

    bool belongsHere() const { return owner_ == getpid(); }
    int descriptor() const { return ready_.number(); }

    void add(int file, Wait wait, std::shared_ptr<RunLoopSource> source) {
        watch(file, wait);
        sources_[file] = std::move(source);
    }

    void remove(int file) noexcept {
        if (sources_.erase(file) != 0) epoll_ctl(ready_.number(), EPOLL_CTL_DEL, file, nullptr);
    }

    void add(const TimerRef& timer) {
        timers_.push_back(timer);
        setAlarm();
    }

    void remove(const TimerRef& timer) {
        timer->stop();
        std::erase(timers_, timer);
        setAlarm();
    }

    /// One event at a time: what one source does can't make the next event stale. Timers and files take turns, so that
    /// none starves the other.
    bool turn(double seconds) {
        const Clock::time_point end = Clock::now() + nanoseconds(seconds);
        while (true) {
            const bool timerIsDue = hasDueTimer();
            if (timerIsDue && !timerWasLast_) {
                timerWasLast_ = true;
                fireDueTimer();
                return true;
            }
            timerWasLast_ = false;
            const int file = readyFile(timerIsDue ? Clock::now() : end);
            if (file >= 0 && serve(file)) return true;
            if (file < 0 && !hasDueTimer() && Clock::now() >= end) return false;
        }
    }

  private:
    void watch(int file, Wait wait) {
        epoll_event event{};
        event.events = wait == Wait::forInput ? EPOLLIN : EPOLLOUT;
        event.data.fd = file;
        if (epoll_ctl(ready_.number(), EPOLL_CTL_ADD, file, &event) != 0) {
            raiseException("a file can't be watched: %s", std::strerror(errno));
        }
    }

    bool serve(int file) {
        const auto found = sources_.find(file);
        if (found == sources_.end()) return false;  // the alarm: its timer is found by its time
        const std::shared_ptr<RunLoopSource> source = found->second;
        guarded([&] { source->serve(); });
        return true;
    }

    std::vector<TimerRef>::const_iterator earliest() const {
        return std::min_element(timers_.begin(), timers_.end(),
                                [](const TimerRef& a, const TimerRef& b) { return a->due() < b->due(); });
    }

    bool hasDueTimer() const {
        const auto next = earliest();
        return next != timers_.end() && (*next)->due() <= Clock::now();
    }

    /// The alarm is set before the timer fires: what it fires may turn the loop.
    void fireDueTimer() {
        const TimerRef timer = *earliest();
        timer->advance(Clock::now());
        setAlarm();
        const auto fire = timer->action();  // a timer that stops itself must not pull the function from under itself
        if (fire) guarded([&] { fire(timer); });
    }

    /// -1 when none is ready by then, or somebody interrupted the wait.
    int readyFile(Clock::time_point end) const {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        epoll_event event{};
        const int wait = static_cast<int>(std::clamp<int64_t>(left, 0, 1 << 30));
        return epoll_wait(ready_.number(), &event, 1, wait) == 1 ? event.data.fd : -1;
    }

    /// The alarm stays readable until a later time is set, so that an embedding loop sees that a timer is due.
    void setAlarm() {
        const auto next = earliest();
        itimerspec time{};
        if (next != timers_.end()) {
            const auto due = std::max<int64_t>(1, std::chrono::nanoseconds((*next)->due().time_since_epoch()).count());
            time.it_value = {due / 1000000000, due % 1000000000};
        }
        timerfd_settime(alarm_.number(), TFD_TIMER_ABSTIME, &time, nullptr);
    }

    pid_t owner_;
    FileHandle ready_;
    FileHandle alarm_;
    std::map<int, std::shared_ptr<RunLoopSource>> sources_;
    std::vector<TimerRef> timers_;
    bool timerWasLast_ = false;
};

RunLoop::RunLoop() : state_(std::make_unique<State>()) {}
RunLoop::~RunLoop() = default;

RunLoop& RunLoop::current() {
    static thread_local std::unique_ptr<RunLoop> loop;
    // What the parent watches is shared with the kernel's own list: the child leaves it alone and closes its copies.
    if (!loop || !loop->state_->belongsHere()) loop.reset(new RunLoop);
    return *loop;
}

bool RunLoop::turn(double seconds) {
    return state_->turn(seconds);
}

bool RunLoop::runUntil(const std::function<bool()>& done, double seconds) {
    const Clock::time_point end = Clock::now() + nanoseconds(seconds);
    while (!done()) {
        const double left = std::chrono::duration<double>(end - Clock::now()).count();
        if (left <= 0) return false;
        turn(left);
    }
    return true;
}

void RunLoop::runFor(double seconds) {
    runUntil([] { return false; }, seconds);
}

int RunLoop::descriptor() const noexcept {
    return state_->descriptor();
}

void RunLoop::add(int file, Wait wait, std::shared_ptr<RunLoopSource> source) {
    state_->add(file, wait, std::move(source));
}

void RunLoop::remove(int file) noexcept {
    state_->remove(file);
}

TimerRef startTimer(double seconds, Timer::Action fire) {
    if (!std::isfinite(seconds)) throw InvalidArgumentException("a timer's interval isn't finite");
    if (!fire) throw InvalidArgumentException("a timer without anything to do");
    auto timer = std::make_shared<Timer>(nanoseconds(std::max(seconds, kShortestInterval)), std::move(fire));
    RunLoop::current().state_->add(timer);
    return timer;
}

std::nullptr_t stopTimer(const TimerRef& timer) {
    if (timer && !timer->isStopped()) RunLoop::current().state_->remove(timer);
    return nullptr;
}

int64_t tickCountOfUptime(double seconds) {
    return static_cast<int64_t>(seconds * 60.0);
}

int64_t MyTickCount() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return tickCountOfUptime(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9);
}

}  // namespace vornaset
