#pragma once
// The general pasteboard: what the user copies and pastes, and the small operations on it.

#include <memory>

#include "support/format.h"
#include "support/pasteboard.h"
#include "support/values.h"

namespace vornaset {

/// One way to the general pasteboard. A program with a window system installs the user's own.
class Clipboard {
  public:
    virtual ~Clipboard();
    /// The plain text that is there; null when there is none.
    virtual String string() const = 0;
    /// Clears the pasteboard and puts the text there, as plain text.
    virtual void setString(const String& text) = 0;
};

/// The type of plain text on a pasteboard.
inline constexpr const char* kStringType = "public.utf8-plain-text";
/// The type of a list of files: an array of paths.
inline constexpr const char* kFileNamesType = "NSFilenamesPboardType";
/// The name under which the general pasteboard stands where there is no window system.
inline constexpr const char* kGeneralPasteboard = "general";

/// The clipboard in force. Until one is installed it is the pasteboard of the name "general" in the space in force: the
/// process's own, or, in a shared space, that of all programs which share it.
Clipboard& generalPasteboard();
/// Gives the former one; null brings back the one without a window system. Not for several threads.
std::shared_ptr<Clipboard> setGeneralPasteboard(std::shared_ptr<Clipboard> clipboard);

/// Sounds the system's beep; see AlertPresenter::beep.
void beep();

/// Puts a text that is ready on the general pasteboard, in the place of all that was there.
void setPasteboardText(const String& text);
/// The formatted text, likewise. An empty or null format beeps and changes nothing.
template <class... Arguments>
void copyToPasteboard(const String& format, const Arguments&... arguments) {
    if (format.isEmpty()) {
        beep();
    } else {
        setPasteboardText(stringWithFormat(format, arguments...));
    }
}
/// The text on the general pasteboard, or the default.
String stringFromPasteboard(const String& defaultText);
/// The first of the file names on this pasteboard; null when there is none.
String pathFromPasteboard(const Pasteboard& pasteboard);
/// Nothing.
void dumpPasteboard(const Pasteboard& pasteboard);

}  // namespace vornaset
