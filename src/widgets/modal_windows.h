#pragma once
// Windows that run modally: the user answers them before anything else goes on. Meanwhile events and the library's run
// loop are served (see window_system.h).

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>
#include <cstdint>

#include "support/controls.h"
#include "support/geometry_values.h"

namespace vornaset {

/// Runs the window modally and gives the result: what a dialog was finished with (1 accepted, 0 rejected or closed by
/// the user), what endModalRun was given, or kModalRunAborted for a window that was closed, hidden or deleted without
/// either. A null window logs "####\trunModalForWindow: NULL" and gives kModalRunAborted. The window is closed then.
int64_t runModalForWindow(QWidget* window);
/// Ends the modal run of this window with a result; nothing when it has none. The run returns when those that were
/// begun during it have.
void endModalRun(QWidget* window, int64_t result);
/// True while the window runs modally.
bool isRunningModally(const QWidget* window);

/// False for the point 0, 0. Otherwise true when the point lies in the part of any screen that windows may use. In the
/// screen's coordinates: pixels independent of the device, y downwards.
bool ptIsVisible(const Point& point);

/// A window as a panel for code without windows. Doesn't own it; a window that has gone, and null, is aborted at once.
class WindowPanel : public ModalPanel {
  public:
    explicit WindowPanel(QWidget* window) : window_(window) {}
    int64_t runModal() override;
    void abortModal() override;
    void orderOut() override;
    QWidget* window() const { return window_; }

  private:
    QPointer<QWidget> window_;
};

}  // namespace vornaset
