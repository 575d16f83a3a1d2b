#include "support/launching.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "support/file_handle.h"

namespace vornaset {

namespace {

constexpr std::string_view kFileVariable = "GIO_LAUNCHED_DESKTOP_FILE=";
constexpr std::string_view kProcessVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID=";
constexpr size_t kMostDigits = 20;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// All that the new program needs, made before the process is split: behind a split of a process with threads nothing
/// may be allocated.
struct Start {
    explicit Start(const Launch& launch)
        : program(programPath(launch.words.front())), folder(launch.folder), words(launch.words) {
        for (char** entry = environ; *entry != nullptr; ++entry) {
            const std::string_view variable = *entry;
            if (!variable.starts_with(kFileVariable) && !variable.starts_with(kProcessVariable))
                environment.emplace_back(variable);
        }
        if (!launch.applicationFile.empty()) {
            environment.push_back(std::string(kFileVariable) + launch.applicationFile);
            environment.push_back(std::string(kProcessVariable) + std::string(kMostDigits, 0));
            digits = environment.back().data() + kProcessVariable.size();
        }
        arguments = pointersTo(words);
        variables = pointersTo(environment);
    }

    std::string program;
    std::string folder;
    std::vector<std::string> words;
    std::vector<std::string> environment;
    std::vector<char*> arguments;
    std::vector<char*> variables;
    char* digits = nullptr;  ///< where the new process writes its own number
};

// From here to startDetached: steps of the new processes, which may call nothing but the system itself.

void writeDigits(char* place, pid_t number) {
    std::array<char, kMostDigits> reversed{};
    size_t count = 0;
    for (pid_t rest = number; rest > 0; rest /= 10) reversed[count++] = static_cast<char>('0' + rest % 10);
    while (count > 0) *place++ = reversed[--count];
}

[[noreturn]] void becomeProgram(const Start& start, int failurePipe) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    signal(SIGCHLD, SIG_DFL);
    const int nowhere = open("/dev/null", O_RDWR);
    for (int file = 0; nowhere >= 0 && file <= 2; ++file) dup2(nowhere, file);
    if (nowhere > 2) close(nowhere);
    if (start.digits != nullptr) writeDigits(start.digits, getpid());
    if (start.folder.empty() || chdir(start.folder.c_str()) == 0) {
        execve(start.program.c_str(), start.arguments.data(), start.variables.data());
    }
    const char failed = 'x';
    [[maybe_unused]] const ssize_t ignored = write(failurePipe, &failed, 1);
    _exit(127);
}

/// 0 when the program still runs after that time or has ended well.
int statusAfter(pid_t program, int milliseconds) {
    constexpr int kStep = 5;
    int status = 0;
    for (int waited = 0; waited < milliseconds; waited += kStep) {
        const pid_t ended = waitpid(program, &status, WNOHANG);
        if (ended == program) return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
        if (ended < 0) return 1;
        const timespec step{0, kStep * 1000000L};
        nanosleep(&step, nullptr);
    }
    return 0;
}

[[noreturn]] void standBetween(const Start& start, int failurePipe, int milliseconds) {
    setsid();
    signal(SIGCHLD, SIG_DFL);
    const pid_t program = fork();
    if (program == 0) becomeProgram(start, failurePipe);
    _exit(program < 0 ? 1 : statusAfter(program, milliseconds));
}

bool startDetached(const Launch& launch, int milliseconds) {
    if (launch.words.empty()) return false;
    const Start start(launch);
    int ends[2];
    if (start.program.empty() || pipe2(ends, O_CLOEXEC) != 0) return false;
    FileHandle failure(ends[0]);
    FileHandle failurePipe(ends[1]);
    const pid_t between = fork();
    if (between == 0) standBetween(start, failurePipe.number(), milliseconds);
    if (between < 0) return false;
    failurePipe.close();
    // The pipe closes when the program has begun or couldn't, and the process between has ended.
    char failed = 0;
    ssize_t count = 0;
    while ((count = read(failure.number(), &failed, 1)) < 0 && errno == EINTR) {
    }
    int status = 0;
    pid_t ended = 0;
    while ((ended = waitpid(between, &status, 0)) < 0 && errno == EINTR) {
    }
    // Who ignores the end of children gets no status.
    const bool endedWell = ended < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return count == 0 && endedWell;
}

bool isProgram(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

/// A word of a command line: its text and whether a part of it was quoted, where no field code counts.
struct Word {
    std::string text;
    bool wasQuoted = false;
};

/// Nothing for an open quote.
std::optional<std::vector<Word>> splitLine(std::string_view line) {
    std::vector<Word> words;
    bool inWord = false;
    bool inQuotes = false;
    for (size_t at = 0; at < line.size(); ++at) {
        const char character = line[at];
        if (!inQuotes && (character == ' ' || character == '\t')) {
            inWord = false;
            continue;
        }
        if (!inWord) words.emplace_back();
        inWord = true;
        if (character == '"') {
            inQuotes = !inQuotes;
            words.back().wasQuoted = true;
        } else if (inQuotes && character == '\\' && at + 1 < line.size() &&
                   std::string_view("\"`$\\").find(line[at + 1]) != std::string_view::npos) {
            words.back().text += line[++at];
        } else {
            words.back().text += character;
        }
    }
    return inQuotes ? std::nullopt : std::optional(words);
}

}  // namespace

std::string programPath(const std::string& name) {
    if (name.find('/') != std::string::npos) return isProgram(name) ? name : std::string();
    const char* variable = std::getenv("PATH");
    std::string_view folders = variable == nullptr ? "/usr/local/bin:/usr/bin:/bin" : variable;
    while (!name.empty() && !folders.empty()) {
        const size_t end = std::min(folders.find(':'), folders.size());
        const std::string path = std::string(folders.substr(0, end)) + "/" + name;
        if (path.front() == '/' && isProgram(path)) return path;
        folders.remove_prefix(std::min(end + 1, folders.size()));
    }
    return {};
}

bool launch(const Launch& what) {
    return startDetached(what, 0);
}

bool launchAndWait(const Launch& what, int milliseconds) {
    return startDetached(what, milliseconds);
}

std::vector<std::string> wordsOfExecLine(std::string_view line, const Document& document,
                                         const std::string& applicationName, const std::string& applicationFile) {
    const auto words = splitLine(line);
    if (!words || words->empty()) return {};
    const bool hasDocument = !document.url.empty();
    const std::string& file = document.path.empty() ? document.url : document.path;
    std::vector<std::string> result;
    bool isPlaced = !hasDocument;
    for (const Word& word : *words) {
        if (word.text == "%i" && !word.wasQuoted) continue;
        std::string text;
        bool hasField = false;
        for (size_t at = 0; at < word.text.size(); ++at) {
            if (word.text[at] != '%' || word.wasQuoted || at + 1 == word.text.size()) {
                text += word.text[at];
                continue;
            }
            const char code = word.text[++at];
            const bool isFile = code == 'f' || code == 'F';
            const bool isURL = code == 'u' || code == 'U';
            hasField = hasField || isFile || isURL;
            if (isFile) text += file;
            if (isURL) text += document.url;
            if (code == 'c') text += applicationName;
            if (code == 'k') text += applicationFile;
            if (code == '%') text += '%';
        }
        isPlaced = isPlaced || hasField;
        // A field without a document, and the codes that nobody uses any more, leave no empty word.
        if (!text.empty() || word.text.empty()) result.push_back(text);
    }
    if (!isPlaced) result.push_back(file);
    return result;
}

}  // namespace vornaset
