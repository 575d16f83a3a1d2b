#pragma once
// One pass over a window that replaces each visible text, which is a key, by the string table's text: see
// localizeString in support/string_tables.h. A text without an entry stays as it is, a key that marks a character by
// "&" included. Null objects are passed over.

#include "support/string_tables.h"

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace vornaset {

/// localizeMenuItem for each item by index.
void localizeMenu(QMenu* menu);
void localizeMenu(QMenuBar* menuBar);
/// The item's title, and if it has a submenu, localizeMenu of that. A submenu's own title is that of its item.
void localizeMenuItem(QAction* item);
/// For each direct subview by its kind (see ViewKind, whose order is that of the tests):
/// text field: its text. Pop-up: its items, twice, so that a translation that is itself a key is translated once more.
/// Button: its title. Tab view: each tab's label and localizeView of the page. Table: each column's header text; when
/// the table has no entry for it, the text of the column's identifier. Box: its title and localizeView of it. Scroll
/// view: localizeView of the part that scrolls. Text view: no text; its inset becomes 0 points at the sides and 2 at
/// top and bottom. Anything else: localizeView of it. The identifiers of columns are the entries of the table's dynamic
/// property "columnIdentifiers", a list of texts; a column without one keeps its header text, and so does one whose
/// header text is empty.
void localizeView(QWidget* view);
/// The title, then localizeView. What is thrown on the way is caught and shown by msgBox.
void localizeWindow(QWidget* window);
/// The application's main menu: the menu bars of its main windows.
void localizeMainMenu();

}  // namespace vornaset
