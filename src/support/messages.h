#pragma once
// Message boxes: the one way in which the library speaks to the user. A text passed as a C string is a key: it goes
// through the string table, and what is found is the format. A text passed as a String is the format itself. Each box
// shows gMsg2 as its second text. Who shows it: see alert.h. Not for several threads.

#include <cstdint>
#include <exception>

#include "support/error.h"
#include "support/format.h"
#include "support/raise_exception.h"
#include "support/string_tables.h"
#include "support/values.h"

namespace vornaset {

/// The second text of the next alert that is really shown, which clears it. Null: none.
extern String gMsg2;
/// 1 means that no alert is shown. Starts at 0.
extern uint8_t gSilent;

/// Stores gSilent and returns its former value.
uint8_t setSilent(uint8_t flag);

/// Stores gMsg2 as it stands.
void setMsg2(const String& text);
/// Stores what the key's format gives; null for a null key.
template <class... Arguments>
void setMsg2(const char* key, const Arguments&... arguments) {
    setMsg2(key == nullptr ? String() : stringWithFormat(stringForKey(key), arguments...));
}

/// Shows an alert with up to three buttons and gives 1 for the default button, 0 for the alternate, -1 for the other.
/// A null text shows nothing in its place, a null button isn't there (the default: the presenter's own title). The
/// informative text is taken literally. While gSilent is 1: gives 1, and neither shows nor sounds nor clears anything.
int64_t runAlertPanel(const String& message, const String& informative, const String& defaultButton,
                      const String& alternateButton, const String& otherButton);

/// What the boxes below show: the text that is ready, and their buttons.
void showMessage(const String& text);
bool askYesNo(const String& text);
bool askOkCancel(const String& text);
int64_t askYesNoCancel(const String& text);
int64_t askYesNoIgnore(const String& text);

/// One button. A null format shows nothing and leaves gMsg2 alone.
template <class... Arguments>
void msgBox(const String& format, const Arguments&... arguments) {
    if (!format.isNull()) showMessage(stringWithFormat(format, arguments...));
}
template <class... Arguments>
void msgBox(const char* key, const Arguments&... arguments) {
    if (key != nullptr) msgBox(stringForKey(key), arguments...);
}
/// The exception's reason as the format, without arguments: a percent sign in it is read as a conversion.
void msgBox(const std::exception& exception);
/// Likewise with the error's description. No error shows nothing.
void msgBoxWithError(const Error& error);

/// "yes" and "no"; true for "yes". The text is ready: no percent sign in it means anything.
bool msgBoxYesNo(const String& text);
/// The same from a key. A null key asks without a text, here and below.
template <class... Arguments>
bool msgBoxYesNo(const char* key, const Arguments&... arguments) {
    return askYesNo(stringWithFormat(stringForKey(key), arguments...));
}
/// "ok" and "cancel"; true for "ok".
template <class... Arguments>
bool msgBoxOkCancel(const char* key, const Arguments&... arguments) {
    return askOkCancel(stringWithFormat(stringForKey(key), arguments...));
}
/// "yes", "no", "cancel"; 1, 0, -1.
template <class... Arguments>
int64_t msgBoxYesNoCancel(const char* key, const Arguments&... arguments) {
    return askYesNoCancel(stringWithFormat(stringForKey(key), arguments...));
}
/// "yes", "ignore", "no"; 1, 0, -1. The order isn't that of msgBoxYesNoCancel.
template <class... Arguments>
int64_t msgBoxYesNoIgnore(const char* key, const Arguments&... arguments) {
    return askYesNoIgnore(stringWithFormat(stringForKey(key), arguments...));
}

}  // namespace vornaset
