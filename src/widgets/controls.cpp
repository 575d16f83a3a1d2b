#include "widgets/controls.h"

#include <QtCore/QVariant>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTabWidget>
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <string>

#include "widgets/qt_text.h"
#include "widgets/views.h"

namespace vornaset {

namespace {

constexpr int kBarSteps = 1000;

int64_t stateOf(const QAbstractButton& button) {
    const auto* box = qobject_cast<const QCheckBox*>(&button);
    if (box != nullptr && box->checkState() == Qt::PartiallyChecked) return -1;
    return button.isChecked() ? 1 : 0;
}

}  // namespace

String WidgetTextField::text() const {
    if (const auto* label = qobject_cast<const QLabel*>(field_.data())) {
        return label->buddy() != nullptr ? titleWithQt(label->text()) : textWithQt(label->text());
    }
    const auto* line = qobject_cast<const QLineEdit*>(field_.data());
    return line != nullptr ? textWithQt(line->text()) : String(u"");
}

void WidgetTextField::setText(const String& text) {
    if (auto* label = qobject_cast<QLabel*>(field_.data())) {
        // A label would take a text such as "<b>" for markup, and with a buddy an "&" for a key.
        if (label->textFormat() == Qt::AutoText) label->setTextFormat(Qt::PlainText);
        label->setText(label->buddy() != nullptr ? qtTitle(text) : qtText(text));
    } else if (auto* line = qobject_cast<QLineEdit*>(field_.data())) {
        line->setText(qtText(text));
    }
}

int64_t WidgetPopUpButton::itemCount() const {
    return box_ ? box_->count() : 0;
}

String WidgetPopUpButton::titleAt(int64_t index) const {
    if (index < 0 || index >= itemCount()) return u"";
    return textWithQt(box_->itemText(static_cast<int>(index)));
}

int64_t WidgetPopUpButton::tagAt(int64_t index) const {
    if (index < 0 || index >= itemCount()) return 0;
    return box_->itemData(static_cast<int>(index), kItemTagRole).toLongLong();
}

int64_t WidgetPopUpButton::selectedIndex() const {
    return box_ ? box_->currentIndex() : -1;
}

void WidgetPopUpButton::selectItem(int64_t index) {
    if (index >= 0 && index < itemCount()) box_->setCurrentIndex(static_cast<int>(index));
}

void WidgetPopUpButton::removeAllItems() {
    if (box_) box_->clear();
}

void WidgetPopUpButton::addItem(const String& title) {
    if (box_) box_->addItem(qtText(title));
}

void WidgetProgressIndicator::setMinimum(double minimum) {
    minimum_ = minimum;
    value_ = minimum;
    draw();
}

void WidgetProgressIndicator::setMaximum(double maximum) {
    maximum_ = maximum;
    draw();
}

void WidgetProgressIndicator::incrementBy(double step) {
    value_ += step;
    draw();
}

/// In steps of a range of the bar's own: the bar knows whole numbers alone, and takes equal ends for "busy".
void WidgetProgressIndicator::draw() {
    if (!bar_) return;
    const double length = maximum_ - minimum_;
    const double done = value_ - minimum_;
    const double part = length > 0 ? std::clamp(done / length, 0.0, 1.0) : (done > 0 ? 1.0 : 0.0);
    bar_->setRange(0, kBarSteps);
    bar_->setValue(static_cast<int>(std::lround(part * kBarSteps)));
}

char* getControlText(QWidget* view, int32_t tag, char* buffer) {
    QWidget* control = viewWithTag(view, tag);
    if (control == nullptr || buffer == nullptr) return nullptr;
    String text;
    if (kindOf(*control) == ViewKind::textField) {
        text = WidgetTextField(control).text();
    } else if (kindOf(*control) == ViewKind::popUp) {
        const WidgetPopUpButton popUp(qobject_cast<QComboBox*>(control));
        if (popUp.selectedIndex() >= 0) text = popUp.titleAt(popUp.selectedIndex());
    }
    if (text.isNull()) return nullptr;
    const std::string utf8 = text.utf8();
    std::memcpy(buffer, utf8.c_str(), std::strlen(utf8.c_str()) + 1);
    return buffer;
}

void setControlText(QWidget* view, int32_t tag, const char* utf8) {
    QWidget* control = viewWithTag(view, tag);
    if (control == nullptr) return;
    const String text(utf8);
    if (kindOf(*control) == ViewKind::textField) {
        if (!text.isNull()) WidgetTextField(control).setText(text);
    } else if (kindOf(*control) == ViewKind::popUp) {
        WidgetPopUpButton popUp(qobject_cast<QComboBox*>(control));
        popUp.selectItem(std::max<int64_t>(popUp.indexOfTitle(text), 0));
    }
}

int64_t getControlValue(QWidget* view, int64_t tag) {
    QWidget* control = viewWithTag(view, tag);
    if (control == nullptr) return -1;
    switch (kindOf(*control)) {
        case ViewKind::popUp: {
            const WidgetPopUpButton popUp(qobject_cast<QComboBox*>(control));
            return popUp.tagAt(popUp.selectedIndex());
        }
        case ViewKind::button:
            return stateOf(*qobject_cast<QAbstractButton*>(control));
        case ViewKind::tabView: {
            const QWidget* page = qobject_cast<QTabWidget*>(control)->currentWidget();
            return page != nullptr ? identifierOf(*page).integerValue() : 0;
        }
        case ViewKind::textField:
            return WidgetTextField(control).text().integerValue();
        default:
            return -1;
    }
}

}  // namespace vornaset
