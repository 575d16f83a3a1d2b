#pragma once
// Alerts as real dialogs.

#include <QtWidgets/QDialog>
#include <cstdint>

#include "support/alert.h"

namespace vornaset {

/// Icon, headline, smaller text, and the alert's buttons in the order default, alternate, other. All texts are shown as
/// they stand and can be selected; texts higher than half the screen scroll. Return presses the default button; Escape
/// and closing press the button that changes least (see AlertPresenter::run).
class AlertWindow : public QDialog {
  public:
    AlertWindow(const Alert& alert, QWidget* parent);

    /// What the dialog was answered with; before that, what closing it would answer.
    AlertAnswer answer() const { return answer_; }

  private:
    QWidget* makeTexts(const Alert& alert);
    QWidget* makeButtons(const Alert& alert);

    AlertAnswer answer_;
};

/// Shows alerts in windows; needs a WindowSystem (window_system.h), without which `run` throws.
class WindowPresenter : public AlertPresenter {
  public:
    /// Nothing to ready: the window system stands before this can be made use of.
    void prepare() override {}
    /// Brings the windows of this very program to the front when the identifier is its own: the file name of its
    /// desktop entry, or "com.kelmoriandev.indesign.Vornaset". The window systems here let no program bring up
    /// another's.
    void activateApplication(const String& identifier) override;
    void beep() override;
    /// In front of the active window, if there is one.
    AlertAnswer run(const Alert& alert) override;
};

}  // namespace vornaset
