#pragma once
// Steps in a process of their own.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace vornaset {

/// A child process that runs the steps. It is killed, as by a crash, when nobody has waited for it.
class OtherProcess {
  public:
    /// The steps give whether all went as they expect.
    template <class Steps>
    explicit OtherProcess(Steps steps) : pid_(fork()) {
        if (pid_ != 0) return;
        int status = 99;
        try {
            status = steps() ? 0 : 1;
        } catch (...) {
        }
        _exit(status);
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;
    ~OtherProcess() { kill(); }

    /// 0 when the steps went well, 1 when not, 99 for an exception, 100 and the signal's number for a death.
    int wait() {
        int status = 0;
        while (pid_ > 0 && waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
        pid_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
    }
    void kill() {
        if (pid_ > 0) ::kill(pid_, SIGKILL);
        if (pid_ > 0) wait();
    }
    pid_t pid() const { return pid_; }

  private:
    pid_t pid_;
};

}  // namespace vornaset
