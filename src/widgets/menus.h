#pragma once
// Menus and their items. The operations that make items pass the title through localizeString and give no key
// equivalent. An item knows its target weakly: when the target has gone it does nothing.

#include <QtGui/QAction>
#include <QtWidgets/QMenu>
#include <cstdint>
#include <functional>
#include <memory>

#include "support/values.h"

namespace vornaset {

/// An item of a menu, with a tag (0 at the start) and an object that it stands for (null at the start).
class MenuItem : public QAction {
  public:
    using Action = std::function<void(MenuItem& item)>;

    /// An empty action is none.
    MenuItem(const String& title, Action action, Value representedObject);

    String title() const;
    int64_t tag() const { return tag_; }
    void setTag(int64_t tag) { tag_ = tag; }
    const Value& representedObject() const { return representedObject_; }

  private:
    Value representedObject_;
    int64_t tag_ = 0;
};

/// Who fills a menu when it is about to open.
class MenuDelegate {
  public:
    virtual ~MenuDelegate();
    virtual void menuNeedsUpdate(QMenu& menu) = 0;
};

/// A new menu; its title isn't localised.
std::unique_ptr<QMenu> menuWithTitle(const String& title);
/// The same with a delegate, which the menu doesn't keep alive, in the system's font of that size in points; a size of
/// 0 or below means the font's own.
std::unique_ptr<QMenu> menuWithDelegate(const std::shared_ptr<MenuDelegate>& delegate, const String& title,
                                        double fontSize);

/// A new item that belongs to no menu.
std::unique_ptr<MenuItem> menuItemWithTitle(const String& title, MenuItem::Action action,
                                            const Value& representedObject);
/// A new item at the end of the menu, which owns it. Null for a null menu.
MenuItem* addMenuItem(QMenu* menu, const String& title, MenuItem::Action action, const Value& representedObject);
/// The same with no action, with the tag.
MenuItem* addMenuItem(QMenu* menu, const String& title, int64_t tag);

/// What calls an operation of the target, as long as that lives. Empty for a null target or operation.
template <class Target>
MenuItem::Action menuAction(const std::shared_ptr<Target>& target, void (Target::*action)(MenuItem& item)) {
    if (!target || action == nullptr) return {};
    return [target = std::weak_ptr<Target>(target), action](MenuItem& item) {
        if (const std::shared_ptr<Target> receiver = target.lock()) ((*receiver).*action)(item);
    };
}
template <class Target>
std::unique_ptr<MenuItem> menuItemWithTitle(const String& title, const std::shared_ptr<Target>& target,
                                            void (Target::*action)(MenuItem& item), const Value& representedObject) {
    return menuItemWithTitle(title, menuAction(target, action), representedObject);
}
template <class Target>
MenuItem* addMenuItem(QMenu* menu, const String& title, const std::shared_ptr<Target>& target,
                      void (Target::*action)(MenuItem& item), const Value& representedObject) {
    return addMenuItem(menu, title, menuAction(target, action), representedObject);
}

}  // namespace vornaset
