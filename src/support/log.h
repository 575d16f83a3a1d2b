#pragma once
// The log: one text file in the user's Documents folder, off until somebody turns it on. No failure of the log is
// reported anywhere and nothing here throws. Logging that is off costs one compare: nothing is formatted, no argument
// is looked at. Not for several threads.

#include <cstdint>
#include <functional>
#include <string_view>

#include "support/error.h"
#include "support/format.h"
#include "support/geometry.h"
#include "support/my_geometry.h"
#include "support/values.h"

namespace vornaset {

/// 1 means the log is on. Starts at 0.
extern uint8_t gLogging;
/// 1 means that each line goes to standard output too. Starts at 0.
extern uint8_t gConsole;

/// Turns the log on and fixes its path: "Vornaset.txt" in the Documents folder, or in the folder `folder` under it.
/// Mode 0 keeps the last `maxSize` bytes of the old file and marks the run by a separator and a header; mode 1 begins a
/// new file with the header; any other mode keeps the old file's end and adds the header alone. A `maxSize` of 0
/// deletes.
void setupLog(uint8_t mode, int64_t maxSize, const String& folder);
/// Stores both flags and leaves the file alone.
void setLogging(uint8_t enabled, uint8_t console);
/// Stores gConsole and returns its former value.
uint8_t setConsole(uint8_t console);
/// Null until setupLog has run.
String getLogPath();
/// Appends the UTF-8 of the text as it is, to a file that is there; "(null)" for null and for text without UTF-8 form.
void writeLog(const String& text);
/// Deletes the file for 0, else cuts it to its last `maxSize` bytes when it is longer.
void clearLog(int64_t maxSize);
/// The user's Documents folder, or a folder under it, which is made when it is missing.
String documentsFolder(const String& subfolder = nullptr);

/// One entry: the time, the product's name, the text. No gate.
void MyLog2(const String& format, std::span<const FormatArgument> arguments);

template <class... Arguments>
void MyLog(const String& format, const Arguments&... arguments) {
    if (gLogging != 1 || format.isNull()) return;
    if constexpr (sizeof...(Arguments) == 0) {
        MyLog2(format, {});
    } else {
        const std::array<FormatArgument, sizeof...(Arguments)> boxed{FormatArgument(arguments)...};
        MyLog2(format, boxed);
    }
}
template <class... Arguments>
void MyLog(const char* format, const Arguments&... arguments) {
    if (gLogging != 1 || format == nullptr) return;
    MyLog(String(format), arguments...);
}
/// The same under a second name.
template <class... Arguments>
void dprintf(const char* format, const Arguments&... arguments) {
    MyLog(format, arguments...);
}
/// This one entry also goes to standard output.
template <class... Arguments>
void MyLog1(const char* format, const Arguments&... arguments) {
    if (gLogging != 1 || format == nullptr) return;
    const uint8_t before = setConsole(1);
    MyLog(format, arguments...);
    setConsole(before);
}
/// Does nothing, whatever the state.
template <class... Arguments>
void MyLogD(const char*, const Arguments&...) {}

/// "err: %d"; 0 logs nothing.
void logError(int32_t error);
/// "%@" of the description; no error logs nothing.
void logError(const Error& error);
/// "%@: %@", the label first; without a label the description alone.
void logError(const Error& error, const String& label);
/// "%.1f %.1f %.1f %.1f": x, y, width, height; in millimetres when `toMM` is 1.
void logRect(const Rect& rectangle, uint8_t toMM);
/// One line for each element; four zeros for an element without a rectangle.
void logRects(const Array& rectangles, uint8_t toMM);
/// "[%zd %zd]"
void logRange(const Range& range);
/// The data as text.
void logData(const Data& data);
/// The object's description; log2 begins it on a line of its own.
void log(const Value& object);
void log2(const Value& object);
/// "\t%@" with the point by "%f %f", to the system log.
void log(const MyPoint& point);
/// "ARC: NO" to the system log.
void logArc();

/// Where lines for the system log go. An empty function means the system log itself.
using SystemLogSink = std::function<void(std::string_view line)>;
/// Returns the sink in force before.
SystemLogSink setSystemLogSink(SystemLogSink sink);
/// False when there is no sink and no daemon takes lines, which is looked up once a second at most.
bool systemLogIsHeard();
/// One line, in UTF-8, to the system log, whatever gLogging says; nothing on the screen.
void writeSystemLog(std::string_view line);

/// The formatted line to the system log. Nothing is formatted when nobody hears it.
template <class... Arguments>
void systemLog(const char* format, const Arguments&... arguments) {
    if (systemLogIsHeard()) writeSystemLog(stringWithFormat(format, arguments...).utf8());
}

}  // namespace vornaset
