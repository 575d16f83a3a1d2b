#pragma once
// The controls of a window, as far as code fills and reads them that knows no window system. A program with windows
// puts real ones behind these (see widgets/controls.h); a null pointer stands for a control that isn't there. All
// belong to the thread of the window system.

#include <cstdint>

#include "support/values.h"

namespace vornaset {

/// A line of text, whether the user may edit it or not.
class TextField {
  public:
    virtual ~TextField();
    virtual String text() const = 0;
    /// Shown as it stands; null counts as empty.
    virtual void setText(const String& text) = 0;
};

/// A button that opens a list of items, of which one is selected. Items count from 0; titles may occur twice.
class PopUpButton {
  public:
    virtual ~PopUpButton();
    virtual int64_t itemCount() const = 0;
    /// These two give the empty text and 0 for an index that no item has. An item's tag is 0 until somebody sets it.
    virtual String titleAt(int64_t index) const = 0;
    virtual int64_t tagAt(int64_t index) const = 0;
    /// -1 when no item is selected.
    virtual int64_t selectedIndex() const = 0;
    /// Nothing for an index that no item has.
    virtual void selectItem(int64_t index) = 0;
    virtual void removeAllItems() = 0;
    /// The new last item. Null counts as empty.
    virtual void addItem(const String& title) = 0;

    /// The first item of that title; -1 when there is none and for null.
    int64_t indexOfTitle(const String& title) const;
};

/// A bar that fills from a minimum to a maximum. What lies beyond them is drawn as empty and as full.
class ProgressIndicator {
  public:
    virtual ~ProgressIndicator();
    virtual void setMinimum(double minimum) = 0;
    virtual void setMaximum(double maximum) = 0;
    virtual void incrementBy(double step) = 0;
};

/// The result of a modal run that was aborted.
inline constexpr int64_t kModalRunAborted = -1001;

/// A window that keeps the user from all others while it runs.
class ModalPanel {
  public:
    virtual ~ModalPanel();
    /// Shows the panel and returns when it was ended or aborted. Meanwhile the calling thread's run loop (run_loop.h)
    /// is served. Gives what the panel was ended with, or kModalRunAborted.
    virtual int64_t runModal() = 0;
    /// Ends the modal run; nothing when there is none.
    virtual void abortModal() = 0;
    /// Takes the panel from the screen.
    virtual void orderOut() = 0;
};

}  // namespace vornaset
