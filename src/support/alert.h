#pragma once
// How an alert reaches a person. Who starts the library decides: a program with windows installs a presenter that shows
// real dialogs, a program without keeps the one on standard error. Everything else asks runAlertPanel (messages.h) and
// sees no difference. Not for several threads.

#include <cstdint>
#include <memory>

#include "support/values.h"

namespace vornaset {

/// What an alert shows. Texts are shown as they stand: no percent sign in them means anything.
struct Alert {
    String message;          ///< the headline; null shows none
    String informative;      ///< the smaller text under it; never null, may be empty
    String defaultButton;    ///< null: the presenter's own title for "understood"
    String alternateButton;  ///< null: there is no such button
    String otherButton;      ///< null: there is no such button
    String windowTitle;
    Data icon;  ///< the bytes of a PNG; null: no icon
};

/// Which button ended an alert; the numbers are what message boxes give as the raw result.
enum class AlertAnswer : int64_t { defaultButton = 1, alternateButton = 0, otherButton = -1 };

/// One way to speak to the user.
class AlertPresenter {
  public:
    virtual ~AlertPresenter();

    /// Readies the window system, if this presenter has one. May be called often.
    virtual void prepare() {}
    /// Brings the running program of that identifier to the front, when there is one. Whether there is one is the
    /// presenter's to find out; the first of several is meant.
    virtual void activateApplication(const String& identifier);
    /// The system's beep, or nothing where there is none.
    virtual void beep() = 0;
    /// Shows the alert and returns when it was answered. An alert that is closed without a button counts as answered by
    /// the button that changes least: the other one, else the alternate, else the default.
    virtual AlertAnswer run(const Alert& alert) = 0;
};

/// The presenter in force; never null.
AlertPresenter& alertPresenter();
/// Puts a presenter in force and returns the former one. Null brings back the one on standard error: it prints the
/// texts, and for a question the answer that it takes, which is the default button; its beep is heard on a terminal
/// alone.
std::shared_ptr<AlertPresenter> setAlertPresenter(std::shared_ptr<AlertPresenter> presenter);

}  // namespace vornaset
