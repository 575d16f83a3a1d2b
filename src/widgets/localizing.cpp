#include "widgets/localizing.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QStringList>
#include <QtGui/QAction>
#include <QtGui/QTextDocument>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTextEdit>

#include "support/messages.h"
#include "widgets/controls.h"
#include "widgets/qt_text.h"
#include "widgets/views.h"

namespace vornaset {

namespace {

/// A title that has no entry isn't set again, so that a key that it marks by "&" stays.
template <class Set>
void localizeTitle(const QString& title, Set set) {
    const String key = titleWithQt(title);
    const String text = localizeString(key);
    if (text != key) set(qtTitle(text));
}

/// A label that shows a picture has an empty text, and setting that would take the picture away.
void localizeTextField(QWidget& view) {
    WidgetTextField field(&view);
    const String key = field.text();
    const String text = localizeString(key);
    if (text != key) field.setText(text);
}

void localizeItems(QComboBox& box) {
    for (int index = 0; index < box.count(); ++index) {
        const String key = textWithQt(box.itemText(index));
        const String text = localizeString(key);
        if (text != key) box.setItemText(index, qtText(text));
    }
}

void localizeTabs(QTabWidget& tabs) {
    for (int index = 0; index < tabs.count(); ++index) {
        localizeTitle(tabs.tabText(index), [&](const QString& text) { tabs.setTabText(index, text); });
        localizeView(tabs.widget(index));
    }
}

void localizeColumns(QWidget& table) {
    auto& items = static_cast<QAbstractItemView&>(table);
    QAbstractItemModel* model = items.model();
    if (model == nullptr) return;
    const QStringList identifiers = table.property("columnIdentifiers").toStringList();
    for (int column = 0; column < model->columnCount(); ++column) {
        const String header = textWithQt(model->headerData(column, Qt::Horizontal).toString());
        if (header.isEmpty()) continue;
        String text = localizeString(header);
        if (text == header && !identifiers.value(column).isEmpty())
            text = localizeString(textWithQt(identifiers[column]));
        if (text != header) model->setHeaderData(column, Qt::Horizontal, qtText(text));
    }
}

/// The margins of the scrolling part are its class's own affair, which this name opens.
struct Margins : QAbstractScrollArea {
    static void set(QAbstractScrollArea& area, int sides, int ends) {
        using Setter = void (QAbstractScrollArea::*)(const QMargins&);
        const Setter setter = &Margins::setViewportMargins;
        (area.*setter)(QMargins(sides, ends, sides, ends));
    }
};

/// The document's own margin is the same on all four sides, so it goes, and the inset lies around the document.
void insetText(QWidget& view) {
    QTextDocument* document = nullptr;
    if (auto* text = qobject_cast<QTextEdit*>(&view)) document = text->document();
    if (auto* text = qobject_cast<QPlainTextEdit*>(&view)) document = text->document();
    if (document == nullptr) return;
    document->setDocumentMargin(0);
    Margins::set(static_cast<QAbstractScrollArea&>(view), 0, 2);
}

void localizeSubview(QWidget& view) {
    switch (kindOf(view)) {
        case ViewKind::textField:
            localizeTextField(view);
            return;
        case ViewKind::popUp: {
            auto& box = static_cast<QComboBox&>(view);
            localizeItems(box);
            localizeItems(box);
            return;
        }
        case ViewKind::button: {
            auto& button = static_cast<QAbstractButton&>(view);
            localizeTitle(button.text(), [&](const QString& text) { button.setText(text); });
            return;
        }
        case ViewKind::tabView:
            localizeTabs(static_cast<QTabWidget&>(view));
            return;
        case ViewKind::tableView:
            localizeColumns(view);
            return;
        case ViewKind::box: {
            auto& box = static_cast<QGroupBox&>(view);
            localizeTitle(box.title(), [&](const QString& text) { box.setTitle(text); });
            localizeView(&view);
            return;
        }
        case ViewKind::scrollView:
            localizeView(static_cast<QScrollArea&>(view).viewport());
            return;
        case ViewKind::textView:
            insetText(view);
            return;
        case ViewKind::other:
            localizeView(&view);
            return;
    }
}

void localizeActions(const QWidget& menu) {
    for (QAction* item : menu.actions()) localizeMenuItem(item);
}

}  // namespace

void localizeMenu(QMenu* menu) {
    if (menu != nullptr) localizeActions(*menu);
}

void localizeMenu(QMenuBar* menuBar) {
    if (menuBar != nullptr) localizeActions(*menuBar);
}

void localizeMenuItem(QAction* item) {
    if (item == nullptr) return;
    localizeTitle(item->text(), [&](const QString& text) { item->setText(text); });
    localizeMenu(item->menu<QMenu*>());
}

void localizeView(QWidget* view) {
    for (QWidget* subview : subviewsOf(view)) localizeSubview(*subview);
}

void localizeWindow(QWidget* window) {
    if (window == nullptr) return;
    try {
        const String key = textWithQt(window->windowTitle());
        const String text = localizeString(key);
        if (text != key) window->setWindowTitle(qtText(text));
        localizeView(window);
    } catch (const std::exception& failure) {
        msgBox(failure);
    }
}

void localizeMainMenu() {
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<const QMainWindow*>(window) == nullptr) continue;
        localizeMenu(window->findChild<QMenuBar*>(QString(), Qt::FindDirectChildrenOnly));
    }
}

}  // namespace vornaset
