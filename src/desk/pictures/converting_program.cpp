#include "desk/pictures/converting_program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include "desk/pictures/conversion_watch.h"
#include "desk/pictures/limits.h"
#include "desk/pictures/picture_file.h"

extern char** environ;

namespace desk {
namespace {

thread_local const std::function<bool()>* watcher = nullptr;  ///< null for none

bool isWatched() {
    return watcher && *watcher;
}

void goOnUnlessToStop() {
    if (isWatched() && (*watcher)()) throw ConversionStopped();
}

class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    int get() const { return number_; }
    void close() {
        if (number_ >= 0) ::close(number_);
        number_ = -1;
    }

  private:
    int number_;
};

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// The input as a file without a name.
Descriptor fileOf(std::string_view input) {
    Descriptor file(::memfd_create("picture", MFD_CLOEXEC));
    if (file.get() < 0) fail("memfd_create");
    while (!input.empty()) {
        const ssize_t written = ::write(file.get(), input.data(), input.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) fail("write");
        input.remove_prefix(static_cast<size_t>(written));
    }
    if (::lseek(file.get(), 0, SEEK_SET) != 0) fail("lseek");
    return file;
}

struct Pipe {
    Descriptor reading, writing;
};

Pipe makePipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) fail("pipe2");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// A started program; ends with the object at the latest, and with it what it has started when it is watched.
class Child {
  public:
    Child(const std::vector<std::string>& commandLine, int input, int output, const char* package, AnswerOn answerOn) {
        const bool onOutput = answerOn == AnswerOn::StandardOutput;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output, onOutput ? STDOUT_FILENO : STDERR_FILENO);
        posix_spawn_file_actions_addopen(&actions, onOutput ? STDERR_FILENO : STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        // The program's own signals: what this process blocks or ignores is none of its business.
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &all);
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        if (hasOwnGroup_) flags = static_cast<short>(flags | POSIX_SPAWN_SETPGROUP);
        posix_spawnattr_setpgroup(&attributes, 0);
        posix_spawnattr_setflags(&attributes, flags);
        std::vector<char*> words;
        words.reserve(commandLine.size() + 1);
        for (const std::string& word : commandLine) words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        const int error = ::posix_spawnp(&process_, words[0], &actions, &attributes, words.data(), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0)
            throw PictureError("needs the program " + commandLine.front() + ", which can't be started. Install " +
                               package);
        limit(RLIMIT_AS, limits::conversionMemory);
        limit(RLIMIT_CPU, limits::conversionSeconds);
        limit(RLIMIT_CORE, 0);
    }
    ~Child() {
        if (process_ > 0) {
            ::kill(hasOwnGroup_ ? -process_ : process_, SIGKILL);
            waitForEnd();
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// True for a program that ended by itself with status 0.
    bool waitForEnd() {
        int status = -1;
        while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
        }
        process_ = -1;
        return status == 0;
    }

  private:
    void limit(__rlimit_resource resource, uint64_t value) const {
        const rlimit wanted{value, value};
        ::prlimit(process_, resource, &wanted, nullptr);
    }

    const bool hasOwnGroup_ = isWatched();
    pid_t process_ = -1;
};

std::string readAll(int descriptor) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(limits::conversionSeconds);
    std::string output;
    char room[1u << 16];
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd wanted{descriptor, POLLIN, 0};
        if (left.count() <= 0) throw PictureError("takes too long to convert. Simplify it");
        goOnUnlessToStop();
        constexpr std::chrono::milliseconds tenthOfSecond(100);
        const int ready =
            ::poll(&wanted, 1, static_cast<int>((isWatched() ? std::min(left, tenthOfSecond) : left).count()));
        if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
        if (ready < 0) fail("poll");
        const ssize_t got = ::read(descriptor, room, sizeof room);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return output;
        output.append(room, static_cast<size_t>(got));
        if (output.size() > limits::convertedBytes) throw PictureError("becomes too large when converted. Simplify it");
    }
}

}  // namespace

ConversionWatch::ConversionWatch(std::function<bool()> isToStop)
    : isToStop_(std::move(isToStop)), former_(std::exchange(watcher, &isToStop_)) {}

ConversionWatch::~ConversionWatch() {
    watcher = former_;
}

std::string convert(const std::vector<std::string>& commandLine, std::string_view input, const char* package,
                    AnswerOn answerOn) {
    goOnUnlessToStop();
    const Descriptor file = fileOf(input);
    Pipe pipe = makePipe();
    Child child(commandLine, file.get(), pipe.writing.get(), package, answerOn);
    pipe.writing.close();
    std::string output = readAll(pipe.reading.get());
    const bool succeeded = child.waitForEnd();
    if (!succeeded || output.empty())
        throw PictureError("can't be converted: it is damaged, or too large. Save it again");
    return output;
}

}  // namespace desk
