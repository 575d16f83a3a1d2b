#pragma once
// Panels in which the user chooses a file, with room for a view of ours.

#include <QtCore/QPointer>
#include <QtWidgets/QFileDialog>
#include <cstdint>
#include <memory>

#include "support/values.h"

class QToolButton;

namespace vornaset {

enum class Disclosure : uint8_t { hidden, shown };

/// What open and save panels share. The panel is drawn by the window system's own library, not by the desktop, whose
/// panels have no place for a foreign view.
class FilePanel : public QFileDialog {
  public:
    /// The view stands under the list of files and belongs to the panel from here; the former one goes. Null: none.
    virtual void setAccessoryView(std::unique_ptr<QWidget> view);
    QWidget* accessoryView() const { return accessory_; }

  protected:
    explicit FilePanel(AcceptMode mode);
    /// A new line across the whole panel.
    void addLine(QWidget& widget);

  private:
    QPointer<QWidget> accessory_;
};

/// Chooses a file that is there. The accessory view can be folded away, and is, until it is disclosed.
class OpenPanel : public FilePanel {
  public:
    OpenPanel();
    void setAccessoryView(std::unique_ptr<QWidget> view) override;
    void setAccessoryViewDisclosed(Disclosure disclosure);
    bool isAccessoryViewDisclosed() const;

  private:
    QToolButton* options_;  ///< the panel owns it
};

/// Chooses the place for a file. The accessory view is always shown.
class SavePanel : public FilePanel {
  public:
    SavePanel();
};

/// Makes the view of the nib in gBundle, localises it, sets it as the panel's accessory view, and gives it. In the open
/// panel it is shown disclosed. When the nib can't be found a message box says so, the panel is left without an
/// accessory view and the result is null. Null for a null panel.
QWidget* setAccessoryView(OpenPanel* panel, const String& nibName);
QWidget* setAccessoryView(SavePanel* panel, const String& nibName);

}  // namespace vornaset
