#include "widgets/views.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSlider>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeView>

#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

TEST(Views, EachKindIsToldByTheFirstTestThatFits) {
    EXPECT_EQ(kindOf(QLabel()), ViewKind::textField);
    EXPECT_EQ(kindOf(QLineEdit()), ViewKind::textField);
    EXPECT_EQ(kindOf(QComboBox()), ViewKind::popUp);
    EXPECT_EQ(kindOf(QPushButton()), ViewKind::button);
    EXPECT_EQ(kindOf(QCheckBox()), ViewKind::button);
    EXPECT_EQ(kindOf(QRadioButton()), ViewKind::button);
    EXPECT_EQ(kindOf(QToolButton()), ViewKind::button);
    EXPECT_EQ(kindOf(QTabWidget()), ViewKind::tabView);
    EXPECT_EQ(kindOf(QTableView()), ViewKind::tableView);
    EXPECT_EQ(kindOf(QTreeView()), ViewKind::tableView);
    EXPECT_EQ(kindOf(QGroupBox()), ViewKind::box);
    EXPECT_EQ(kindOf(QScrollArea()), ViewKind::scrollView);
    EXPECT_EQ(kindOf(QTextEdit()), ViewKind::textView);
    EXPECT_EQ(kindOf(QPlainTextEdit()), ViewKind::textView);
    EXPECT_EQ(kindOf(QWidget()), ViewKind::other);
    EXPECT_EQ(kindOf(QSlider()), ViewKind::other);
}

TEST(Views, ControlsAreWhatTheUserOperatesAndLabels) {
    EXPECT_TRUE(isControl(QLabel()));
    EXPECT_TRUE(isControl(QLineEdit()));
    EXPECT_TRUE(isControl(QComboBox()));
    EXPECT_TRUE(isControl(QPushButton()));
    EXPECT_TRUE(isControl(QTableView()));
    EXPECT_TRUE(isControl(QListView()));
    EXPECT_TRUE(isControl(QSlider()));
    EXPECT_TRUE(isControl(QSpinBox()));
    EXPECT_FALSE(isControl(QScrollBar()));
    EXPECT_FALSE(isControl(QProgressBar()));
    EXPECT_FALSE(isControl(QTextEdit()));
    EXPECT_FALSE(isControl(QTabWidget()));
    EXPECT_FALSE(isControl(QGroupBox()));
    EXPECT_FALSE(isControl(QWidget()));
}

TEST(Views, SubviewsStandInTheirOrderWithoutWindows) {
    QWidget view;
    const QLabel first(&view);
    const QDialog window(&view);
    const QMenu menu(&view);
    const QLabel second(&view);
    EXPECT_EQ(subviewsOf(&view), (std::vector<QWidget*>{const_cast<QLabel*>(&first), const_cast<QLabel*>(&second)}));
    EXPECT_TRUE(subviewsOf(nullptr).empty());
}

TEST(Views, ATabViewHasItsPagesAndAControlNoParts) {
    QTabWidget tabs;
    auto* one = new QWidget;
    auto* two = new QWidget;
    tabs.addTab(two, "b");
    tabs.insertTab(0, one, "a");
    EXPECT_EQ(subviewsOf(&tabs), (std::vector<QWidget*>{one, two}));
    QComboBox box;
    box.setEditable(true);
    const QSpinBox number;
    EXPECT_TRUE(subviewsOf(&box).empty());
    EXPECT_TRUE(subviewsOf(&number).empty());
}

TEST(Views, ATagIsFoundOnTheNearestView) {
    QWidget view;
    auto* group = new QWidget(&view);
    auto* deep = new QLabel(group);
    auto* near = new QLabel(&view);
    deep->setProperty("tag", 5);
    near->setProperty("tag", 5);
    EXPECT_EQ(viewWithTag(&view, 5), near);
    delete near;
    EXPECT_EQ(viewWithTag(&view, 5), deep);
    view.setProperty("tag", 5);
    EXPECT_EQ(viewWithTag(&view, 5), &view);
    EXPECT_EQ(viewWithTag(&view, 6), nullptr);
    EXPECT_EQ(viewWithTag(nullptr, 5), nullptr);
}

TEST(Views, AControlWithoutATagHasZeroAndAViewMinusOne) {
    QWidget view;
    auto* label = new QLabel(&view);
    EXPECT_EQ(tagOf(view), -1);
    EXPECT_EQ(tagOf(*label), 0);
    EXPECT_EQ(viewWithTag(&view, 0), label);
}

TEST(Views, AnIdentifierIsFoundDepthFirst) {
    QWidget view;
    auto* group = new QWidget(&view);
    auto* deep = new QLabel(group);
    auto* next = new QLabel(&view);
    deep->setObjectName("name");
    next->setObjectName("name");
    EXPECT_EQ(viewWithIdentifier(&view, "name"), deep);
    group->setProperty("identifier", "name");
    EXPECT_EQ(viewWithIdentifier(&view, "name"), group);
}

TEST(Views, TheViewItselfIsNotTestedForAnIdentifier) {
    QWidget view;
    view.setObjectName("name");
    EXPECT_EQ(viewWithIdentifier(&view, "name"), nullptr);
    const QLabel unnamed(&view);
    EXPECT_EQ(viewWithIdentifier(&view, ""), nullptr);
    EXPECT_EQ(viewWithIdentifier(&view, nullptr), nullptr);
    EXPECT_EQ(viewWithIdentifier(nullptr, "name"), nullptr);
}

TEST(Views, APageThatIsNotSeenIsFoundToo) {
    QTabWidget tabs;
    tabs.addTab(new QWidget, "a");
    auto* page = new QWidget;
    auto* label = new QLabel(page);
    label->setProperty("tag", 9);
    tabs.addTab(page, "b");
    EXPECT_EQ(viewWithTag(&tabs, 9), label);
}

TEST(Views, WhatScrollsIsWalked) {
    QScrollArea scrolling;
    auto* content = new QWidget;
    auto* label = new QLabel(content);
    label->setObjectName("name");
    scrolling.setWidget(content);
    EXPECT_EQ(viewWithIdentifier(&scrolling, "name"), label);
}

struct Walk {
    std::vector<std::string> seen;
    std::string stopAt;

    static uint8_t note(QWidget* control, void* context) {
        auto& walk = *static_cast<Walk*>(context);
        walk.seen.push_back(control->objectName().toStdString());
        return walk.seen.back() != walk.stopAt ? 1 : 0;
    }
};

QWidget* named(QWidget* view, const char* name) {
    view->setObjectName(name);
    return view;
}

/// a, group (b, c), d
void fillForWalk(QWidget& view) {
    named(new QPushButton(&view), "a");
    QWidget* group = named(new QGroupBox(&view), "group");
    named(new QLineEdit(group), "b");
    named(new QCheckBox(group), "c");
    QWidget* box = named(new QComboBox(&view), "d");
    static_cast<QComboBox*>(box)->setEditable(true);
}

TEST(ControlWalk, ReachesEachControlAndNoPartOfOne) {
    QWidget view;
    fillForWalk(view);
    Walk walk;
    EnumControls(&view, Walk::note, &walk);
    EXPECT_EQ(walk.seen, (std::vector<std::string>{"a", "b", "c", "d"}));
}

TEST(ControlWalk, AZeroEndsItsOwnLevelAlone) {
    QWidget view;
    fillForWalk(view);
    Walk walk{.seen = {}, .stopAt = "b"};
    EnumControls(&view, Walk::note, &walk);
    EXPECT_EQ(walk.seen, (std::vector<std::string>{"a", "b", "d"}));
    walk = {.seen = {}, .stopAt = "a"};
    EnumControls(&view, Walk::note, &walk);
    EXPECT_EQ(walk.seen, std::vector<std::string>{"a"});
}

TEST(ControlWalk, SeesNoPartsOfATabViewOrOfWhatScrolls) {
    QTabWidget tabs;
    auto* page = new QScrollArea;
    page->setWidget(named(new QLabel, "label"));
    tabs.addTab(page, "a");
    Walk walk;
    QWidget view;
    tabs.setParent(&view);
    EnumControls(&view, Walk::note, &walk);
    EXPECT_EQ(walk.seen, std::vector<std::string>{"label"});
    tabs.setParent(nullptr);
}

TEST(ControlWalk, NullsAreNoFailure) {
    Walk walk;
    EnumControls(nullptr, Walk::note, &walk);
    EXPECT_TRUE(walk.seen.empty());
    QWidget view;
    fillForWalk(view);
    EnumControls(&view, nullptr, nullptr);
}

}  // namespace
}  // namespace vornaset
