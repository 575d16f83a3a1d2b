// POSIX processes: the platform library's own process class wants an event loop to hear of output and of the child's
// end, and the plug-in is loaded by programs that have none.

#include "support/processes.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>

#include "support/file_handle.h"
#include "support/raise_exception.h"

namespace vornaset {

namespace {

struct Pipe {
    FileHandle reading;
    FileHandle writing;
};

Pipe makePipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) raiseException("no pipe: %s", std::strerror(errno));
    return {FileHandle(ends[0]), FileHandle(ends[1])};
}

std::string programText(const String& text, const char* what) {
    if (text.isNull()) throw InvalidArgumentException(std::string(what) + " is no text");
    std::string result = text.utf8();
    if (result.find('\0') != std::string::npos) throw InvalidArgumentException(std::string(what) + " holds U+0000");
    return result;
}

/// Whether a child is one of the caller's group and reads its input, or stands alone so that it can be killed with all
/// that it has started.
enum class Standing { withCaller, alone };

/// The child starts with no signal blocked, and with SIGPIPE as programs expect it.
class SpawnSettings {
  public:
    SpawnSettings(int output, int error, Standing standing) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, error, STDERR_FILENO);
        posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        if (standing == Standing::alone) {
            posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
            posix_spawnattr_setpgroup(&attributes_, 0);
            flags = static_cast<short>(flags | POSIX_SPAWN_SETPGROUP);
        }
        posix_spawnattr_setflags(&attributes_, flags);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }
    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

pid_t start(const String& launchPath, const Array& arguments, int output, int error, Standing standing) {
    std::vector<std::string> words{programText(launchPath, "the launch path")};
    for (size_t index = 0; index < arguments.count(); ++index) {
        const std::string what = "argument " + std::to_string(index + 1) + " for " + words.front();
        words.push_back(programText(arguments[index].string(), what.c_str()));
    }
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const SpawnSettings settings(output, error, standing);
    pid_t child = 0;
    const int failure =
        posix_spawn(&child, words.front().c_str(), settings.actions(), settings.attributes(), pointers.data(), environ);
    if (failure != 0) raiseException("the program %@ can't be started: %s", launchPath, std::strerror(failure));
    return child;
}

enum class PipeState { open, ended };

/// Takes what is there now. `kept` is where it goes; null drops it.
PipeState takeFrom(const FileHandle& pipe, std::string* kept) {
    char block[65536];
    const ssize_t count = read(pipe.number(), block, sizeof block);
    if (count < 0) return errno == EINTR || errno == EAGAIN ? PipeState::open : PipeState::ended;
    if (kept != nullptr) kept->append(block, static_cast<size_t>(count));
    return count == 0 ? PipeState::ended : PipeState::open;
}

/// Ends when the child has closed both pipes, or has ended and its output pipe with it: whoever inherited the error
/// pipe alone isn't waited for. An empty `mayGoOn` lets it take its time; else the child's group is killed when it says
/// no.
std::string outputUntilEnd(pid_t child, FileHandle output, FileHandle error, const ProgramWatch& mayGoOn) {
    constexpr int forever = -1, tenthOfSecond = 100;
    std::string kept;
    FileHandle ending(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
    // Without process descriptors (before Linux 5.3) the child counts as running until both pipes have closed.
    const bool seesTheEnd = ending.isOpen();
    while (output.isOpen() || (error.isOpen() && (ending.isOpen() || !seesTheEnd))) {
        pollfd waits[3] = {{output.number(), POLLIN, 0}, {error.number(), POLLIN, 0}, {ending.number(), POLLIN, 0}};
        if (poll(waits, 3, mayGoOn ? tenthOfSecond : forever) < 0 && errno != EINTR) break;
        if (mayGoOn && !mayGoOn(kept.size())) {
            kill(-child, SIGKILL);
            break;
        }
        if (waits[0].revents != 0 && takeFrom(output, &kept) == PipeState::ended) output.close();
        if (waits[1].revents != 0 && takeFrom(error, nullptr) == PipeState::ended) error.close();
        if (waits[2].revents != 0) ending.close();
    }
    return kept;
}

/// Who ignores the end of its children, or waits for all of them elsewhere, has taken this one already: no failure.
void waitForEnd(pid_t child) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

class ShellScriptRegistry {
  public:
    static ShellScriptRegistry& shared() {
        static ShellScriptRegistry registry;
        return registry;
    }

    void set(const String& path, ShellScriptFunction function) {
        const std::lock_guard lock(mutex_);
        if (function) {
            functions_[path] = std::make_shared<const ShellScriptFunction>(std::move(function));
        } else {
            functions_.erase(path);
        }
    }

    /// Shared, so that a function may be replaced while it runs.
    std::shared_ptr<const ShellScriptFunction> find(const String& path) {
        const std::lock_guard lock(mutex_);
        const auto found = functions_.find(path);
        return found == functions_.end() ? nullptr : found->second;
    }

  private:
    std::mutex mutex_;
    std::map<String, std::shared_ptr<const ShellScriptFunction>> functions_;
};

}  // namespace

Data dataWithShellScript(const String& launchPath, const Array& arguments) {
    return dataWithShellScript(launchPath, arguments, {});
}

Data dataWithShellScript(const String& launchPath, const Array& arguments, const ProgramWatch& mayGoOn) {
    if (const auto function = ShellScriptRegistry::shared().find(launchPath)) {
        Data data = (*function)(arguments);
        return data.isNull() ? Data(std::string()) : data;
    }
    Pipe output = makePipe();
    Pipe error = makePipe();
    const Standing standing = mayGoOn ? Standing::alone : Standing::withCaller;
    const pid_t child = start(launchPath, arguments, output.writing.number(), error.writing.number(), standing);
    output.writing.close();
    error.writing.close();
    std::string kept;
    try {
        kept = outputUntilEnd(child, std::move(output.reading), std::move(error.reading), mayGoOn);
    } catch (...) {  // no memory for the output: the pipes are closed now, so the child comes to its end
        if (standing == Standing::alone) kill(-child, SIGKILL);
        waitForEnd(child);
        throw;
    }
    waitForEnd(child);
    return Data(std::move(kept));
}

void registerShellScript(const String& path, ShellScriptFunction function) {
    if (path.isNull()) throw InvalidArgumentException("a registered program needs a path");
    ShellScriptRegistry::shared().set(path, std::move(function));
}

namespace {

/// What the threads of one call share.
class OperationQueue {
  public:
    explicit OperationQueue(const std::vector<Operation>& operations)
        : operations_(operations), failures_(operations.size()) {}

    void work() {
        for (size_t index = next_++; index < operations_.size(); index = next_++) {
            try {
                operations_[index]();
            } catch (...) {
                failures_[index] = std::current_exception();
            }
        }
    }

    void throwFirstFailure() const {
        for (const std::exception_ptr& failure : failures_) {
            if (failure) std::rethrow_exception(failure);
        }
    }

  private:
    const std::vector<Operation>& operations_;
    std::vector<std::exception_ptr> failures_;  ///< one place for each operation, so that no two threads meet
    std::atomic<size_t> next_{0};
};

}  // namespace

void processOperations(const std::vector<Operation>& operations) {
    for (const Operation& operation : operations) {
        if (!operation) throw InvalidArgumentException("an operation without work");
    }
    OperationQueue queue(operations);
    static const size_t cores = std::max(1U, std::thread::hardware_concurrency());
    {
        std::vector<std::jthread> threads;
        for (size_t extra = 1; extra < std::min(cores, operations.size()); ++extra) {
            try {
                threads.emplace_back([&queue] { queue.work(); });
            } catch (const std::system_error&) {  // no more threads to be had: those that run do all the work
                break;
            }
        }
        queue.work();
    }
    queue.throwFirstFailure();
}

}  // namespace vornaset
