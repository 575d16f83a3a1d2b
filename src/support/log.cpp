#include "support/log.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>

#include "support/locale_text.h"
#include "support/paths.h"
#include "support/text_decoding.h"
#include "support/units.h"

namespace vornaset {

uint8_t gLogging = 0;
uint8_t gConsole = 0;

namespace {

constexpr const char* kProduct = "Vornaset";
constexpr const char* kVersion = "7.20";
constexpr const char* kHost = "CC 2020";
constexpr const char* kSeparator = "-------------------------------------------------------------------------\n";

String gLogPath;

SystemLogSink& systemLogSink() {
    static SystemLogSink sink;
    return sink;
}

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != 0) return home;
    const passwd* user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

/// The value of XDG_DOCUMENTS_DIR in the user's list of folders (xdg-user-dirs), or empty.
std::string declaredDocumentsFolder(const std::string& home) {
    const char* configuration = std::getenv("XDG_CONFIG_HOME");
    const std::string folder = configuration != nullptr && *configuration != 0 ? configuration : home + "/.config";
    std::ifstream file(folder + "/user-dirs.dirs");
    constexpr std::string_view kKey = "XDG_DOCUMENTS_DIR=\"";
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with(kKey)) continue;
        std::string value = line.substr(kKey.size());
        value.resize(std::min(value.find('"'), value.size()));
        if (value.starts_with("$HOME/")) value = home + value.substr(5);
        if (value.starts_with("/")) return value;
    }
    return {};
}

/// 24-hour local time with milliseconds.
String timeText() {
    const auto now = std::chrono::system_clock::now();
    const time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    tm parts{};
    localtime_r(&seconds, &parts);
    return stringWithFormat("%02d:%02d:%02d.%03d", parts.tm_hour, parts.tm_min, parts.tm_sec,
                            static_cast<int>(milliseconds));
}

/// Today's date and time, both in the short style of the user's locale.
String dateAndTimeText() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return shortDateAndTime(Date{std::chrono::duration<double>(now).count()});
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

std::string logFilePath() {
    return gLogPath.utf8();
}

/// Replaces the file by its last bytes in one step.
void keepTail(const std::string& path, size_t size) {
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    const std::string temporary = path + ".new";
    const int target = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (target < 0) return;
    const bool whole =
        writeAll(target, std::string_view(content).substr(content.size() - std::min(size, content.size())));
    close(target);
    if (!whole || std::rename(temporary.c_str(), path.c_str()) != 0) unlink(temporary.c_str());
}

}  // namespace

void setupLog(uint8_t mode, int64_t maxSize, const String& folder) {
    gLogging = 1;
    gConsole = 0;
    gLogPath = documentsFolder(folder) + "/" + kProduct + ".txt";
    if (mode == 1) {
        removeFile(gLogPath);
    } else {
        clearLog(maxSize);
    }
    const int file = open(logFilePath().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (file >= 0) close(file);
    if (mode == 0) writeLog(kSeparator);
    const String host = stringWithFormat(", %s", kHost);
    writeLog(stringWithFormat("%@: %@ %s%@\n", dateAndTimeText(), kProduct, kVersion, host));
}

void setLogging(uint8_t enabled, uint8_t console) {
    gLogging = enabled;
    gConsole = console;
}

uint8_t setConsole(uint8_t console) {
    return std::exchange(gConsole, console);
}

String getLogPath() {
    return gLogPath;
}

void writeLog(const String& text) {
    if (gLogging != 1) return;
    const std::string bytes = text.exactUTF8().value_or("(null)");
    if (gConsole == 1) {
        std::fputs(bytes.c_str(), stdout);
        std::fflush(stdout);
    }
    if (gLogPath.isNull()) return;
    const int file = open(logFilePath().c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file < 0) return;
    writeAll(file, bytes);
    fsync(file);
    close(file);
}

void clearLog(int64_t maxSize) {
    if (gLogPath.isNull()) return;
    if (maxSize == 0) {
        removeFile(gLogPath);
        return;
    }
    struct stat status {};
    if (stat(logFilePath().c_str(), &status) != 0 || status.st_size <= maxSize) return;
    keepTail(logFilePath(), maxSize < 0 ? 0 : static_cast<size_t>(maxSize));
}

String documentsFolder(const String& subfolder) {
    const std::string home = homeFolder();
    const std::string declared = declaredDocumentsFolder(home);
    String folder = String::fromDamagedUTF8(declared.empty() ? home + "/Documents" : declared);
    if (subfolder.isNull()) return folder;
    folder = folder + "/" + subfolder;
    createDir(folder);
    return folder;
}

void MyLog2(const String& format, std::span<const FormatArgument> arguments) {
    writeLog(stringWithFormat("%@: %@::%@\n", timeText(), kProduct, formatText(format, arguments)));
}

void logError(int32_t error) {
    if (error != 0) MyLog("err: %d", error);
}

void logError(const Error& error) {
    logError(error, nullptr);
}

void logError(const Error& error, const String& label) {
    if (error.isNull()) return;
    if (label.isNull()) {
        MyLog("%@", error.localizedDescription());
    } else {
        MyLog("%@: %@", label, error.localizedDescription());
    }
}

void logRect(const Rect& rectangle, uint8_t toMM) {
    if (gLogging != 1) return;
    const auto shown = [toMM](double points) { return toMM == 1 ? points * 25.4 / 72 : points; };
    MyLog("%.1f %.1f %.1f %.1f", shown(rectangle.x), shown(rectangle.y), shown(rectangle.width),
          shown(rectangle.height));
}

void logRects(const Array& rectangles, uint8_t toMM) {
    if (gLogging != 1) return;
    for (const Value& rectangle : rectangles) logRect(rectWithValue(rectangle), toMM);
}

void logRange(const Range& range) {
    MyLog("[%zd %zd]", range.location, range.length);
}

void logData(const Data& data) {
    if (gLogging == 1) MyLog("%@", stringWithData(data));
}

void log(const Value& object) {
    MyLog("%@", object);
}
void log2(const Value& object) {
    MyLog("\n%@", object);
}
void log(const MyPoint& point) {
    systemLog("\t%@", stringWithPoint(point));
}
void logArc() {
    systemLog("ARC: NO");
}

SystemLogSink setSystemLogSink(SystemLogSink sink) {
    return std::exchange(systemLogSink(), std::move(sink));
}

/// Without a daemon the library's syslog tries to connect anew for each line, at twenty times the cost of the line.
bool systemLogIsHeard() {
    if (systemLogSink()) return true;
    static bool heard = false;
    static time_t lookedUp = -1;
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    if (now.tv_sec != lookedUp) {
        lookedUp = now.tv_sec;
        heard = access("/dev/log", F_OK) == 0;
    }
    return heard;
}

void writeSystemLog(std::string_view line) {
    if (systemLogSink()) {
        systemLogSink()(line);
        return;
    }
    static const bool opened = [] {
        openlog(kProduct, LOG_PID, LOG_USER);
        return true;
    }();
    if (opened && systemLogIsHeard()) syslog(LOG_INFO, "%.*s", static_cast<int>(line.size()), line.data());
}

}  // namespace vornaset
