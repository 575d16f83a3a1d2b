#include "widgets/views.h"

#include <QtCore/QVariant>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QTreeView>
#include <deque>

#include "widgets/qt_text.h"

namespace vornaset {

namespace {

template <class... Kinds>
bool isAny(const QWidget& view) {
    return (... || (qobject_cast<const Kinds*>(&view) != nullptr));
}

}  // namespace

ViewKind kindOf(const QWidget& view) {
    if (isAny<QLabel, QLineEdit>(view)) return ViewKind::textField;
    if (isAny<QComboBox>(view)) return ViewKind::popUp;
    if (isAny<QAbstractButton>(view)) return ViewKind::button;
    if (isAny<QTabWidget>(view)) return ViewKind::tabView;
    if (isAny<QTableView, QTreeView>(view)) return ViewKind::tableView;
    if (isAny<QGroupBox>(view)) return ViewKind::box;
    if (isAny<QScrollArea>(view)) return ViewKind::scrollView;
    if (isAny<QTextEdit, QPlainTextEdit>(view)) return ViewKind::textView;
    return ViewKind::other;
}

bool isControl(const QWidget& view) {
    if (isAny<QScrollBar, QHeaderView>(view)) return false;
    return isAny<QLabel, QLineEdit, QComboBox, QAbstractButton, QAbstractItemView, QAbstractSlider, QAbstractSpinBox>(
        view);
}

std::vector<QWidget*> subviewsOf(const QWidget* view) {
    std::vector<QWidget*> subviews;
    if (view == nullptr) return subviews;
    if (const auto* tabs = qobject_cast<const QTabWidget*>(view)) {
        for (int index = 0; index < tabs->count(); ++index) subviews.push_back(tabs->widget(index));
    } else if (const auto* scrolling = qobject_cast<const QAbstractScrollArea*>(view)) {
        subviews.push_back(scrolling->viewport());
    } else if (!isAny<QComboBox, QAbstractSpinBox, QLineEdit, QTabBar>(*view)) {
        for (QObject* child : view->children()) {
            auto* subview = qobject_cast<QWidget*>(child);
            if (subview != nullptr && !subview->isWindow()) subviews.push_back(subview);
        }
    }
    return subviews;
}

int64_t tagOf(const QWidget& view) {
    const QVariant tag = view.property("tag");
    if (tag.isValid()) return tag.toLongLong();
    return isControl(view) ? 0 : -1;
}

String identifierOf(const QWidget& view) {
    const QVariant identifier = view.property("identifier");
    return textWithQt(identifier.isValid() ? identifier.toString() : view.objectName());
}

QWidget* viewWithTag(QWidget* view, int64_t tag) {
    if (view == nullptr) return nullptr;
    for (std::deque<QWidget*> level{view}; !level.empty(); level.pop_front()) {
        if (tagOf(*level.front()) == tag) return level.front();
        for (QWidget* subview : subviewsOf(level.front())) level.push_back(subview);
    }
    return nullptr;
}

QWidget* viewWithIdentifier(const QWidget* view, const String& identifier) {
    if (identifier.isEmpty()) return nullptr;
    for (QWidget* subview : subviewsOf(view)) {
        if (identifierOf(*subview) == identifier) return subview;
        if (QWidget* found = viewWithIdentifier(subview, identifier)) return found;
    }
    return nullptr;
}

void EnumControls(const QWidget* view, ControlCallback callback, void* context) {
    if (callback == nullptr) return;
    for (QWidget* subview : subviewsOf(view)) {
        if (!isControl(*subview)) {
            EnumControls(subview, callback, context);
        } else if (callback(subview, context) == 0) {
            return;
        }
    }
}

}  // namespace vornaset
