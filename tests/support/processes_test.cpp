#include "support/processes.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <set>
#include <thread>

#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

constexpr const char* kShell = "/bin/sh";

std::string shellOutput(const char* script) {
    const Data data = dataWithShellScript(kShell, Array::make({"-c", script}));
    EXPECT_FALSE(data.isNull());
    return std::string(data.view());
}

/// Children of ours that have ended and nobody has waited for.
bool hasZombies() {
    siginfo_t found{};
    return waitid(P_ALL, 0, &found, WEXITED | WNOHANG | WNOWAIT) == 0 && found.si_pid != 0;
}

TEST(ShellScript, GivesWhatTheProgramWroteToStandardOutput) {
    EXPECT_EQ(shellOutput("printf 'a\\000b'"), std::string("a\0b", 3));
    EXPECT_EQ(shellOutput(":"), "");
}

TEST(ShellScript, PassesArgumentsAsTheyAre) {
    const Data data = dataWithShellScript(
        kShell, Array::make({"-c", "for a; do printf '[%s]' \"$a\"; done", "sh", "", " x y ", "$HOME", "\xC3\xA4\"'"}));
    EXPECT_EQ(data.view(), "[][ x y ][$HOME][\xC3\xA4\"']");
}

TEST(ShellScript, NullArgumentsMeanNone) {
    EXPECT_EQ(dataWithShellScript("/bin/pwd", nullptr), dataWithShellScript("/bin/pwd", Array::make()));
}

TEST(ShellScript, DropsStandardErrorAndDoesNotLookAtTheExitStatus) {
    EXPECT_EQ(shellOutput("echo out; echo error >&2; exit 3"), "out\n");
    EXPECT_EQ(shellOutput("echo out; kill -9 $$"), "out\n");
}

TEST(ShellScript, AChildThatPrintsMoreThanAPipeHoldsEnds) {
    EXPECT_EQ(shellOutput("head -c 5000000 /dev/zero").size(), 5000000u);
    EXPECT_EQ(shellOutput("head -c 5000000 /dev/zero >&2; echo done"), "done\n");
    EXPECT_EQ(shellOutput("head -c 300000 /dev/zero >&2 & head -c 300000 /dev/zero; wait").size(), 300000u);
}

Data watchedOutput(const char* script, const ProgramWatch& mayGoOn) {
    return dataWithShellScript(kShell, Array::make({"-c", script}), mayGoOn);
}

TEST(ShellScript, AWatchedProgramMayEndByItselfAndReadsNothing) {
    EXPECT_EQ(watchedOutput("cat; echo done", [](size_t) { return true; }).view(), "done\n");
}

TEST(ShellScript, AWatchedProgramIsKilledWithAllThatItStarted) {
    const Data data = watchedOutput("sleep 1000 & echo $!; wait", [](size_t bytes) { return bytes == 0; });
    const int child = std::stoi(std::string(data.view()));
    bool isGone = false;  // the kill is on its way when the call returns
    for (int tries = 0; tries < 1000 && !isGone; ++tries) {
        isGone = kill(child, 0) != 0 ||
                 shellOutput(("grep State /proc/" + std::to_string(child) + "/status").c_str()).find('Z') !=
                     std::string::npos;
        if (!isGone) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(isGone);
    EXPECT_FALSE(hasZombies());
}

TEST(ShellScript, WhatAWatcherThrowsComesThroughWhenTheProgramIsDead) {
    EXPECT_THROW(watchedOutput("sleep 1000", [](size_t) -> bool { throw std::runtime_error("enough"); }),
                 std::runtime_error);
    EXPECT_FALSE(hasZombies());
}

TEST(ShellScript, AChildThatClosesItsOutputFirstIsStillWaitedFor) {
    ScratchFolder folder;
    const std::string file = folder.path() + "/late";
    shellOutput(("exec >&-; head -c 300000 /dev/zero >&2; sleep 0.1; echo x > " + file).c_str());
    EXPECT_EQ(contentOf(file), "x\n");
}

TEST(ShellScript, WhoInheritedTheErrorPipeAloneIsNotWaitedFor) {
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(shellOutput("sleep 5 >/dev/null & echo out"), "out\n");
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4));
}

TEST(ShellScript, LeavesNoZombies) {
    for (int round = 0; round < 20; ++round) shellOutput("echo x");
    EXPECT_THROW(dataWithShellScript("/no/such/program", Array::make()), Exception);
    EXPECT_FALSE(hasZombies());
}

TEST(ShellScript, LeavesNoOpenFiles) {
    const auto openFiles = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator());
    };
    shellOutput("echo x");
    const auto before = openFiles();
    shellOutput("echo x");
    EXPECT_THROW(dataWithShellScript("/no/such/program", Array::make()), Exception);
    EXPECT_EQ(openFiles(), before);
}

TEST(ShellScript, AProgramThatCanNotBeStartedRaisesWithItsPath) {
    ScratchFolder folder;
    const std::string plain = folder.path() + "/plain";
    writeFile(plain, "no program");
    EXPECT_RAISES(dataWithShellScript("/no/such/program", Array::make()), Exception,
                  "the program /no/such/program can't be started: No such file or directory");
    EXPECT_RAISES(dataWithShellScript(plain.c_str(), Array::make()), Exception,
                  "the program " + plain + " can't be started: Permission denied");
    chmod(plain.c_str(), 0700);
    EXPECT_RAISES(dataWithShellScript(plain.c_str(), Array::make()), Exception,
                  "the program " + plain + " can't be started: Exec format error");
    EXPECT_RAISES(dataWithShellScript(folder.path().c_str(), Array::make()), Exception,
                  "the program " + folder.path() + " can't be started: Permission denied");
    EXPECT_THROW(dataWithShellScript("", Array::make()), Exception);
}

TEST(ShellScript, AskedForNoTextItRaisesAndStartsNothing) {
    EXPECT_RAISES(dataWithShellScript(nullptr, Array::make()), InvalidArgumentException, "the launch path is no text");
    EXPECT_RAISES(dataWithShellScript(kShell, Array::make({"-c", 7})), InvalidArgumentException,
                  "argument 2 for /bin/sh is no text");
    EXPECT_RAISES(dataWithShellScript(kShell, Array::make({u"-c", String(std::u16string_view(u"a\0b", 3))})),
                  InvalidArgumentException, "argument 2 for /bin/sh holds U+0000");
}

TEST(ShellScript, ASearchPathIsNotAsked) {
    EXPECT_THROW(dataWithShellScript("sh", Array::make({"-c", "echo x"})), Exception);
}

TEST(ShellScript, TheChildMayDieOfABrokenPipeEvenIfWeIgnoreIt) {
    const auto before = signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(shellOutput("yes | head -n 1"), "y\n");
    EXPECT_EQ(shellOutput("sh -c 'kill -PIPE $$; echo alive'"), "");
    signal(SIGPIPE, before);
}

TEST(ShellScript, WorksWhereTheEndOfChildrenIsIgnored) {
    const auto before = signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shellOutput("echo x"), "x\n");
    signal(SIGCHLD, before);
}

TEST(ShellScript, SeveralThreadsMayRunPrograms) {
    std::vector<Operation> operations;
    std::atomic<int> right{0};
    for (int index = 0; index < 16; ++index) {
        operations.emplace_back([&right, index] {
            const std::string script = "head -c " + std::to_string(100000 + index) + " /dev/zero";
            if (dataWithShellScript(kShell, Array::make({"-c", script.c_str()})).length() ==
                100000u + static_cast<size_t>(index))
                ++right;
        });
    }
    processOperations(operations);
    EXPECT_EQ(right, 16);
}

TEST(ShellScript, ARegisteredFunctionStandsForTheProgram) {
    registerShellScript("/tools/echo", [](const Array& arguments) {
        std::string bytes;
        for (const Value& argument : arguments) bytes += argument.string().utf8() + ";";
        return Data(bytes);
    });
    EXPECT_EQ(dataWithShellScript("/tools/echo", Array::make({"-e", "ean13", "-b", "4006381333931", "-D"})).view(),
              "-e;ean13;-b;4006381333931;-D;");
    EXPECT_THROW(dataWithShellScript("/tools//echo", Array::make()), Exception);
    registerShellScript("/tools/echo", nullptr);
    EXPECT_THROW(dataWithShellScript("/tools/echo", Array::make()), Exception);
}

TEST(ShellScript, ARegisteredFunctionHidesAProgramUntilItIsTakenBack) {
    registerShellScript("/bin/echo", [](const Array&) { return Data(nullptr); });
    EXPECT_EQ(dataWithShellScript("/bin/echo", Array::make({"x"})), Data(std::string()));
    registerShellScript("/bin/echo", {});
    EXPECT_EQ(dataWithShellScript("/bin/echo", Array::make({"x"})).view(), "x\n");
}

TEST(ShellScript, WhatARegisteredFunctionThrowsReachesTheCaller) {
    registerShellScript("/tools/fails", [](const Array&) -> Data { throw exceptionWithReason("no such kind"); });
    EXPECT_RAISES(dataWithShellScript("/tools/fails", Array::make()), Exception, "no such kind");
    registerShellScript("/tools/fails", nullptr);
    EXPECT_THROW(registerShellScript(nullptr, [](const Array&) { return Data(); }), InvalidArgumentException);
}

TEST(Operations, AllHaveFinishedOnReturn) {
    std::atomic<int> done{0};
    processOperations(std::vector<Operation>(1000, [&] { ++done; }));
    EXPECT_EQ(done, 1000);
    processOperations({});
}

TEST(Operations, RunOnAllCoresAtOnce) {
    const unsigned cores = std::thread::hardware_concurrency();
    if (cores < 2) GTEST_SKIP() << "one core alone";
    // Each waits until all have begun: one after the other they would never end.
    std::atomic<unsigned> begun{0};
    processOperations(std::vector<Operation>(cores, [&] {
        ++begun;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (begun < cores && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    }));
    EXPECT_EQ(begun, cores);
}

TEST(Operations, OneThatThrowsKeepsNoOtherFromRunningAndTheFirstFailureIsThrownOn) {
    std::atomic<int> done{0};
    std::vector<Operation> operations(50, [&] { ++done; });
    operations[40] = [] { throw exceptionWithReason("forty"); };
    operations[7] = [] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        throw exceptionWithReason("seven");
    };
    EXPECT_RAISES(processOperations(operations), Exception, "seven");
    EXPECT_EQ(done, 48);
}

TEST(Operations, MayThemselvesCallTheQueue) {
    std::atomic<int> done{0};
    processOperations(
        std::vector<Operation>(8, [&] { processOperations(std::vector<Operation>(8, [&] { ++done; })); }));
    EXPECT_EQ(done, 64);
}

TEST(Operations, AnEmptyOneIsRefusedBeforeAnyHasRun) {
    int done = 0;
    EXPECT_THROW(processOperations({[&] { ++done; }, Operation()}), InvalidArgumentException);
    EXPECT_EQ(done, 0);
}

}  // namespace
}  // namespace vornaset
