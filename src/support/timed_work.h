#pragma once
// Work that the run loop does while the user's windows stay alive. One thread: the work runs on the thread that asked
// for it, between two turns of its run loop.

#include <cstdint>

#include "support/controls.h"

namespace vornaset {

using TimerProc = void (*)(void* context);
/// Calls proc(context) once, `delay` seconds from now (at once for less than nothing), on the calling thread's run
/// loop. A null procedure is called by nobody. Nothing for a delay that isn't finite.
void runTimerProc(TimerProc proc, double delay, void* context);

/// Gets the item and what runProgressWithArray was given; 0 stops the run.
using ProgressCallback = uint8_t (*)(const Value& item, ModalPanel* panel, TextField* textField, void* context);
/// Calls back for each item while the panel runs modally. Each thousandth of a second the bar, which goes from 0 to the
/// count of the items minus one, is incremented by 1 and one item is handled, so that the panel is drawn and answers in
/// between; the turn behind the last item ends the run. The count is that at the start. A turn that comes while a
/// callback is still at work, because it runs windows of its own, is passed over. Returns when the modal run is over,
/// whoever ended it; the panel is off the screen then. What the callback throws ends the run and is thrown on. A null
/// panel: nothing runs. A null text field and a null indicator are no failure; a null array is empty.
void runProgressWithArray(const Array& items, ProgressCallback callback, ModalPanel* panel, TextField* textField,
                          ProgressIndicator* indicator, void* context);

}  // namespace vornaset
