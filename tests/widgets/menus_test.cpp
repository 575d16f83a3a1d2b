#include "widgets/menus.h"

#include <QtGui/QFontDatabase>

#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

class Menus : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        gStrings = Dictionary::make({{"file", "Ablage"}, {"open", "R & D"}});
    }
};

struct Receiver {
    void take(MenuItem& item) { taken.push_back(item.representedObject()); }
    std::vector<Value> taken;
};

TEST_F(Menus, AMenusOwnTitleIsNotLocalised) {
    EXPECT_EQ(menuWithTitle("file")->title(), "file");
    EXPECT_EQ(menuWithTitle(nullptr)->title(), "");
}

TEST_F(Menus, AnItemCallsItsTargetWithTheObject) {
    const auto menu = menuWithTitle("file");
    const auto receiver = std::make_shared<Receiver>();
    MenuItem* item = addMenuItem(menu.get(), "file:", receiver, &Receiver::take, Value("object"));
    EXPECT_EQ(menu->actions(), QList<QAction*>{item});
    EXPECT_EQ(item->title(), String("Ablage:"));
    EXPECT_EQ(item->tag(), 0);
    EXPECT_TRUE(item->shortcut().isEmpty());
    item->trigger();
    EXPECT_EQ(receiver->taken, std::vector<Value>{Value("object")});
}

TEST_F(Menus, AChosenItemOfAnOpenMenuCallsItsTarget) {
    const auto menu = menuWithTitle("file");
    const auto receiver = std::make_shared<Receiver>();
    addMenuItem(menu.get(), "file", 1);
    addMenuItem(menu.get(), "open\xE2\x80\xA6", receiver, &Receiver::take, Value(7));
    menu->popup(QPoint(10, 10));
    keepScreenshot(*menu, "menu");
    QTest::mouseClick(menu.get(), Qt::LeftButton, {}, menu->actionGeometry(menu->actions().at(1)).center());
    EXPECT_EQ(receiver->taken, std::vector<Value>{Value(7)});
    EXPECT_FALSE(menu->isVisible());
}

TEST_F(Menus, AnItemKeepsNoTargetAlive) {
    const auto menu = menuWithTitle("file");
    auto receiver = std::make_shared<Receiver>();
    const std::weak_ptr<Receiver> watched = receiver;
    MenuItem* item = addMenuItem(menu.get(), "file", receiver, &Receiver::take, nullptr);
    receiver.reset();
    EXPECT_TRUE(watched.expired());
    item->trigger();
}

TEST_F(Menus, ANullTargetOrActionDoesNothing) {
    const auto menu = menuWithTitle("file");
    addMenuItem(menu.get(), "file", std::shared_ptr<Receiver>(), &Receiver::take, nullptr)->trigger();
    void (Receiver::*const none)(MenuItem&) = nullptr;
    addMenuItem(menu.get(), "file", std::make_shared<Receiver>(), none, nullptr)->trigger();
    EXPECT_EQ(menu->actions().size(), 2);
}

TEST_F(Menus, AnItemWithATagHasNoAction) {
    const auto menu = menuWithTitle("file");
    MenuItem* item = addMenuItem(menu.get(), "file", int64_t{1} << 40);
    EXPECT_EQ(item->tag(), int64_t{1} << 40);
    EXPECT_EQ(item->title(), String("Ablage"));
    EXPECT_TRUE(item->representedObject().isNull());
    item->trigger();
}

TEST_F(Menus, AnAmpersandOfATitleIsShown) {
    const auto item = menuItemWithTitle("open", MenuItem::Action(), nullptr);
    EXPECT_EQ(item->text(), "R && D");
    EXPECT_EQ(item->title(), String("R & D"));
}

TEST_F(Menus, AnItemByItselfBelongsToNoMenu) {
    const auto receiver = std::make_shared<Receiver>();
    const auto item = menuItemWithTitle("file", receiver, &Receiver::take, Value(3));
    EXPECT_EQ(item->parent(), nullptr);
    EXPECT_EQ(item->title(), String("Ablage"));
    item->trigger();
    EXPECT_EQ(receiver->taken, std::vector<Value>{Value(3)});
}

TEST_F(Menus, ANullMenuTakesNoItem) {
    EXPECT_EQ(addMenuItem(nullptr, "file", 1), nullptr);
    EXPECT_EQ(addMenuItem(nullptr, "file", MenuItem::Action(), nullptr), nullptr);
}

struct Filler : MenuDelegate {
    void menuNeedsUpdate(QMenu& menu) override {
        menu.clear();
        addMenuItem(&menu, "file", ++count);
    }
    int count = 0;
};

TEST_F(Menus, ADelegateFillsTheMenuWhenItOpens) {
    auto filler = std::make_shared<Filler>();
    const auto menu = menuWithDelegate(filler, "title", 9);
    EXPECT_TRUE(menu->isEmpty());
    for (int opened = 1; opened <= 2; ++opened) {
        menu->popup(QPoint(0, 0));
        menu->close();
        ASSERT_EQ(menu->actions().size(), 1);
        EXPECT_EQ(static_cast<MenuItem*>(menu->actions()[0])->tag(), opened);
    }
    filler.reset();
    menu->popup(QPoint(0, 0));
    menu->close();
    EXPECT_EQ(menu->actions().size(), 1);
}

TEST_F(Menus, AMenuWithADelegateHasTheSystemsFontOfItsSize) {
    const QFont system = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    EXPECT_EQ(menuWithDelegate(nullptr, "title", 9.5)->font().pointSizeF(), 9.5);
    EXPECT_EQ(menuWithDelegate(nullptr, "title", 9.5)->font().family(), system.family());
    EXPECT_EQ(menuWithDelegate(nullptr, "title", 0)->font().pointSizeF(), system.pointSizeF());
    EXPECT_EQ(menuWithDelegate(nullptr, "title", 9)->title(), "title");
}

}  // namespace
}  // namespace vornaset
