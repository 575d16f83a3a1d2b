#pragma once
// The window system of a program, from its start to its end.

#include <memory>

namespace vornaset {

/// While it lives, alerts are real dialogs (alert_window.h), the general pasteboard is the user's clipboard
/// (user_clipboard.h), and the run loop of the thread that made it (support/run_loop.h) is served by the window
/// system's event loops, modal ones included: timers and message ports go on. What was in force before comes back
/// behind it. A program makes one, in `main`, before any widget, and keeps it until the last widget has gone.
class WindowSystem {
  public:
    /// True when the environment names a window system (DISPLAY, WAYLAND_DISPLAY, or QT_QPA_PLATFORM for another kind),
    /// or one has been set up already. One that is named and doesn't answer ends the process at the constructor.
    static bool isThere();

    /// The arguments of `main`, from which those of the window system's library are taken; they must stay as long. A
    /// QApplication that somebody made before is used and left. Throws Exception when there is no window system, and
    /// when the process has an application object without windows.
    WindowSystem(int& argumentCount, char** arguments);
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;
    ~WindowSystem();

  private:
    class State;
    std::unique_ptr<State> state_;
};

}  // namespace vornaset
