#pragma once
// Real controls behind the interfaces of support/controls.h, and controls found by their tag in a view. An adapter
// doesn't own its widget; when the widget has gone, or was null, it answers as one without text and items.

#include <QtCore/QPointer>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QWidget>
#include <cstdint>

#include "support/controls.h"

namespace vornaset {

/// On a label or a line that is edited; any other widget has no text and takes none.
class WidgetTextField : public TextField {
  public:
    explicit WidgetTextField(QWidget* field) : field_(field) {}
    String text() const override;
    void setText(const String& text) override;

  private:
    QPointer<QWidget> field_;
};

/// The role of a combo box's items under which their tags stand, as numbers.
inline constexpr int kItemTagRole = Qt::UserRole;

/// On a combo box.
class WidgetPopUpButton : public PopUpButton {
  public:
    explicit WidgetPopUpButton(QComboBox* box) : box_(box) {}
    int64_t itemCount() const override;
    String titleAt(int64_t index) const override;
    int64_t tagAt(int64_t index) const override;
    int64_t selectedIndex() const override;
    void selectItem(int64_t index) override;
    void removeAllItems() override;
    void addItem(const String& title) override;

  private:
    QPointer<QComboBox> box_;
};

/// On a progress bar. A bar of a single item, whose minimum is its maximum, is full once it was incremented.
class WidgetProgressIndicator : public ProgressIndicator {
  public:
    explicit WidgetProgressIndicator(QProgressBar* bar) : bar_(bar) {}
    void setMinimum(double minimum) override;
    void setMaximum(double maximum) override;
    void incrementBy(double step) override;

    double value() const { return value_; }

  private:
    void draw();

    QPointer<QProgressBar> bar_;
    double minimum_ = 0;
    double maximum_ = 100;
    double value_ = 0;
};

/// Writes the text of a text field, or the title of a pop-up's selected item, into the buffer: UTF-8 with a zero behind
/// it, and with no check of its length. Gives the buffer if it was written. Null, and a buffer left alone, for any
/// other kind, a tag that nothing has, and a null buffer.
char* getControlText(QWidget* view, int32_t tag, char* buffer);
/// A text field takes the text; a pop-up selects the item of that title, or the first if there is none. Null leaves a
/// text field alone and selects the first item.
void setControlText(QWidget* view, int32_t tag, const char* utf8);
/// A pop-up: the tag of its selected item, 0 when none is selected. A button: its state (0 off, 1 on, -1 for the third
/// state of a check box). A tab view: the integer reading of the selected page's identifier (see identifierOf). A text
/// field: the integer reading of its text. Anything else, and a tag that nothing has: -1.
int64_t getControlValue(QWidget* view, int64_t tag);

}  // namespace vornaset
