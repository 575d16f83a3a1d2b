#include "support/run_loop.h"

#include <poll.h>
#include <sys/socket.h>

#include <chrono>
#include <cmath>
#include <thread>
#include <vector>

#include "other_process.h"
#include "support/file_handle.h"
#include "support/measuring.h"
#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class Counter {
  public:
    void count(const TimerRef& timer) {
        last = timer.get();
        ++fired;
    }
    void stopAtThree(const TimerRef& timer) {
        if (++fired == 3) stopTimer(timer);
    }
    void raise(const TimerRef&) {
        ++fired;
        throw 7;
    }
    int fired = 0;
    const Timer* last = nullptr;
};

TEST(Timers, FireAgainAndAgainUntilTheyAreStopped) {
    const auto counter = std::make_shared<Counter>();
    TimerRef timer = setupTimer(counter, 0.01, &Counter::count);
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return counter->fired >= 3; }, 5));
    EXPECT_EQ(counter->last, timer.get());
    timer = stopTimer(timer);
    EXPECT_EQ(timer, nullptr);
    const int fired = counter->fired;
    RunLoop::current().runFor(0.05);
    EXPECT_EQ(counter->fired, fired);
}

TEST(Timers, StoppingAlwaysGivesNull) {
    const TimerRef timer = startTimer(1, [](const TimerRef&) {});
    EXPECT_EQ(stopTimer(timer), nullptr);
    EXPECT_EQ(stopTimer(timer), nullptr);
    EXPECT_EQ(stopTimer(nullptr), nullptr);
}

TEST(Timers, TheLoopOwnsATimerAndTheTimerItsTarget) {
    auto counter = std::make_shared<Counter>();
    const std::weak_ptr<Counter> watched = counter;
    std::weak_ptr<Timer> timer = setupTimer(counter, 0.001, &Counter::count);
    counter = nullptr;
    ASSERT_FALSE(timer.expired());
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return watched.lock()->fired >= 2; }, 5));
    stopTimer(timer.lock());
    EXPECT_TRUE(timer.expired());
    EXPECT_TRUE(watched.expired());
}

TEST(Timers, MayStopThemselves) {
    const auto counter = std::make_shared<Counter>();
    setupTimer(counter, 0.001, &Counter::stopAtThree);
    RunLoop::current().runFor(0.05);
    EXPECT_EQ(counter->fired, 3);
    EXPECT_EQ(counter.use_count(), 1);
}

TEST(Timers, ALateLoopFiresOnceAndKeepsTheBeat) {
    const auto counter = std::make_shared<Counter>();
    const auto start = std::chrono::steady_clock::now();
    const TimerRef timer = setupTimer(counter, 0.1, &Counter::count);
    std::this_thread::sleep_for(std::chrono::milliseconds(350));
    RunLoop::current().runUntil([&] { return counter->fired >= 1; }, 5);
    RunLoop::current().runUntil([&] { return counter->fired >= 2; }, 5);
    EXPECT_GE(secondsSince(start), 0.399);
    stopTimer(timer);
}

TEST(Timers, OneThatRaisesGoesOn) {
    const auto counter = std::make_shared<Counter>();
    const TimerRef timer = setupTimer(counter, 0.001, &Counter::raise);
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return counter->fired >= 3; }, 5));
    stopTimer(timer);
}

TEST(Timers, MayTurnTheLoopThemselves) {
    int outer = 0;
    const auto inner = std::make_shared<Counter>();
    const TimerRef often = setupTimer(inner, 0.001, &Counter::count);
    const TimerRef timer = startTimer(0.005, [&](const TimerRef&) {
        const int before = inner->fired;
        if (RunLoop::current().runUntil([&] { return inner->fired > before + 2; }, 5)) ++outer;
    });
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return outer >= 2; }, 10));
    stopTimer(timer);
    stopTimer(often);
}

TEST(Timers, WithoutATargetOrATimeAreNone) {
    EXPECT_EQ(setupTimer(std::shared_ptr<Counter>(), 1, &Counter::count), nullptr);
    EXPECT_THROW(startTimer(NAN, [](const TimerRef&) {}), InvalidArgumentException);
    EXPECT_THROW(startTimer(INFINITY, [](const TimerRef&) {}), InvalidArgumentException);
    EXPECT_THROW(startTimer(1, nullptr), InvalidArgumentException);
    const TimerRef far = startTimer(1e300, [](const TimerRef&) {});
    EXPECT_FALSE(RunLoop::current().turn(0));
    stopTimer(far);
}

TEST(Timers, AnIntervalOfNothingFiresOftenAndStarvesNoFile) {
    int sockets[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, sockets), 0);
    const FileHandle ours(sockets[0]);
    const FileHandle theirs(sockets[1]);
    struct Reader : RunLoopSource {
        explicit Reader(int number) : file(number) {}
        void serve() override {
            char byte = 0;
            got += read(file, &byte, 1) == 1 ? 1 : 0;
        }
        int file;
        int got = 0;
    };
    const auto reader = std::make_shared<Reader>(ours.number());
    RunLoop::current().add(ours.number(), Wait::forInput, reader);
    int fired = 0;
    const TimerRef timer = startTimer(-1, [&](const TimerRef&) {
        ++fired;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));  // due again at once
    });
    ASSERT_EQ(write(theirs.number(), "ab", 2), 2);
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return reader->got == 2 && fired > 5; }, 5));
    stopTimer(timer);
    RunLoop::current().remove(ours.number());
    EXPECT_EQ(reader.use_count(), 1);
}

TEST(RunLoops, WaitNoLongerThanTheyAreTold) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(RunLoop::current().turn(0.05));
    EXPECT_GE(secondsSince(start), 0.05);
    EXPECT_FALSE(RunLoop::current().runUntil([] { return false; }, 0));
    EXPECT_TRUE(RunLoop::current().runUntil([] { return true; }, 0));
    EXPECT_FALSE(RunLoop::current().turn(-1));
    EXPECT_LT(secondsSince(start), 3);
}

TEST(RunLoops, AreOneDescriptorForALoopAroundThem) {
    const auto isReadable = [](int milliseconds) {
        pollfd waits{RunLoop::current().descriptor(), POLLIN, 0};
        return poll(&waits, 1, milliseconds) == 1;
    };
    EXPECT_FALSE(isReadable(0));
    const auto counter = std::make_shared<Counter>();
    const TimerRef timer = setupTimer(counter, 0.02, &Counter::count);
    EXPECT_TRUE(isReadable(5000));
    EXPECT_TRUE(RunLoop::current().turn(0));
    EXPECT_EQ(counter->fired, 1);
    EXPECT_TRUE(isReadable(5000));
    stopTimer(timer);
    EXPECT_FALSE(isReadable(50));
}

TEST(RunLoops, EachThreadHasItsOwn) {
    const RunLoop* mine = &RunLoop::current();
    EXPECT_EQ(mine, &RunLoop::current());
    const RunLoop* theirs = nullptr;
    std::thread([&] { theirs = &RunLoop::current(); }).join();
    EXPECT_NE(mine, theirs);
}

TEST(RunLoops, AChildProcessBeginsWithoutItsParentsSources) {
    const auto counter = std::make_shared<Counter>();
    const TimerRef timer = setupTimer(counter, 0.01, &Counter::count);
    OtherProcess child([&] {
        const int before = counter->fired;
        RunLoop::current().runFor(0.05);
        return counter->fired == before;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return counter->fired >= 2; }, 5));
    stopTimer(timer);
}

TEST(TickCount, CountsSixtiethsOfASecondCutTowardsZero) {
    EXPECT_EQ(tickCountOfUptime(1.5), 90);
    EXPECT_EQ(tickCountOfUptime(0), 0);
    EXPECT_EQ(tickCountOfUptime(0.0166), 0);
    EXPECT_EQ(tickCountOfUptime(1.999), 119);
    EXPECT_EQ(tickCountOfUptime(1e9), 60000000000);
}

TEST(TickCount, GoesWithTheUptime) {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    const int64_t before = MyTickCount();
    EXPECT_GE(before, time.tv_sec * 60);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const int64_t after = MyTickCount();
    EXPECT_GE(after - before, 2);
    EXPECT_LT(after - before, 600);
}

TEST(UsedMemory, IsTheResidentSizeInMebibytes) {
    const float before = getUsedMemory();
    EXPECT_GT(before, 1);
    std::vector<char> block(64 << 20, 'x');
    EXPECT_NEAR(getUsedMemory() - before, 64, 8);
    EXPECT_EQ(block.back(), 'x');
}

TEST(UsedMemory, IsReadFromTheSecondNumber) {
    ScratchFolder folder;
    writeFile(folder.path() + "/statm", "100000 512 1 1 1 1 1\n");
    EXPECT_EQ(usedMemory(folder.path() + "/statm"),
              static_cast<float>(512.0 * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576));
    writeFile(folder.path() + "/short", "100000");
    EXPECT_EQ(usedMemory(folder.path() + "/short"), 0);
    EXPECT_EQ(usedMemory(folder.path() + "/missing"), 0);
}

}  // namespace
}  // namespace vornaset
