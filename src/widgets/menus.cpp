#include "widgets/menus.h"

#include <QtGui/QFontDatabase>
#include <utility>

#include "support/string_tables.h"
#include "widgets/qt_text.h"

namespace vornaset {

MenuItem::MenuItem(const String& title, Action action, Value representedObject)
    : QAction(qtTitle(title)), representedObject_(std::move(representedObject)) {
    if (action) connect(this, &QAction::triggered, this, [this, action = std::move(action)] { action(*this); });
}

String MenuItem::title() const {
    return titleWithQt(text());
}

MenuDelegate::~MenuDelegate() = default;

std::unique_ptr<QMenu> menuWithTitle(const String& title) {
    return std::make_unique<QMenu>(qtTitle(title));
}

std::unique_ptr<QMenu> menuWithDelegate(const std::shared_ptr<MenuDelegate>& delegate, const String& title,
                                        double fontSize) {
    std::unique_ptr<QMenu> menu = menuWithTitle(title);
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (fontSize > 0) font.setPointSizeF(fontSize);
    menu->setFont(font);
    QObject::connect(menu.get(), &QMenu::aboutToShow, menu.get(),
                     [weak = std::weak_ptr<MenuDelegate>(delegate), opening = menu.get()] {
                         if (const std::shared_ptr<MenuDelegate> known = weak.lock()) known->menuNeedsUpdate(*opening);
                     });
    return menu;
}

std::unique_ptr<MenuItem> menuItemWithTitle(const String& title, MenuItem::Action action,
                                            const Value& representedObject) {
    return std::make_unique<MenuItem>(localizeString(title), std::move(action), representedObject);
}

MenuItem* addMenuItem(QMenu* menu, const String& title, MenuItem::Action action, const Value& representedObject) {
    if (menu == nullptr) return nullptr;
    MenuItem* item = menuItemWithTitle(title, std::move(action), representedObject).release();
    item->setParent(menu);
    menu->addAction(item);
    return item;
}

MenuItem* addMenuItem(QMenu* menu, const String& title, int64_t tag) {
    MenuItem* item = addMenuItem(menu, title, MenuItem::Action(), nullptr);
    if (item != nullptr) item->setTag(tag);
    return item;
}

}  // namespace vornaset
