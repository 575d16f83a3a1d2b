#pragma once
// The panel that shows how far a run has come.

#include <QtWidgets/QDialog>
#include <memory>

#include "support/timed_work.h"
#include "widgets/controls.h"
#include "widgets/modal_windows.h"

namespace vornaset {

/// A window with a line of text, a bar and a button that aborts, from the nib "ProgressPanel" of gBundle, localised.
/// Its parts are what runProgressWithArray asks for.
class ProgressPanel {
  public:
    /// Null, and a message box, when the nib isn't there.
    static std::unique_ptr<ProgressPanel> make();

    ModalPanel* panel() { return &panel_; }
    TextField* textField() { return &textField_; }
    WidgetProgressIndicator* indicator() { return &indicator_; }
    QWidget* window() const { return window_.get(); }

  private:
    explicit ProgressPanel(std::unique_ptr<QWidget> window);

    std::unique_ptr<QWidget> window_;
    WindowPanel panel_;
    WidgetTextField textField_;
    WidgetProgressIndicator indicator_;
};

/// The same run with a panel of its own, which the user can abort. False when the panel can't be made; then nothing
/// ran.
bool runProgressWithArray(const Array& items, ProgressCallback callback, void* context);

}  // namespace vornaset
