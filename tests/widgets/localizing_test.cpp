#include "widgets/localizing.h"

#include <QtGui/QAction>
#include <QtGui/QStandardItemModel>
#include <QtGui/QTextDocument>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QTreeWidget>
#include <stdexcept>

#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

class Localizing : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        gStrings = Dictionary::make({{"name", "Name des Feldes"},
                                     {"save", "Sichern & Ende"},
                                     {"first", "second"},
                                     {"second", "third"},
                                     {"third", "fourth"},
                                     {"colName", "Spalte"},
                                     {"text", "Absatz"}});
    }
    QWidget view_;
};

TEST_F(Localizing, ATextFieldsTextIsReplacedAndItsPunctuationKept) {
    const QLabel label("name:", &view_);
    const QLineEdit line("name", &view_);
    const QLabel unknown("Unknown?", &view_);
    localizeView(&view_);
    EXPECT_EQ(label.text(), "Name des Feldes:");
    EXPECT_EQ(line.text(), "Name des Feldes");
    EXPECT_EQ(unknown.text(), "Unknown?");
}

TEST_F(Localizing, APictureStaysInItsLabel) {
    QLabel label(&view_);
    label.setPixmap(QPixmap(4, 4));
    localizeView(&view_);
    EXPECT_EQ(label.pixmap().size(), QSize(4, 4));
}

TEST_F(Localizing, ATranslationIsNoMarkup) {
    gStrings = Dictionary::make({{"name", "<b>Name</b>"}});
    const QLabel label("name", &view_);
    localizeView(&view_);
    EXPECT_EQ(label.text(), "<b>Name</b>");
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST_F(Localizing, ItemsOfAPopUpGoThroughTheTableTwice) {
    QComboBox box(&view_);
    box.addItems({"first", "name", "unknown"});
    box.setCurrentIndex(1);
    localizeView(&view_);
    EXPECT_EQ(box.itemText(0), "third");
    EXPECT_EQ(box.itemText(1), "Name des Feldes");
    EXPECT_EQ(box.itemText(2), "unknown");
    EXPECT_EQ(box.currentIndex(), 1);
}

TEST_F(Localizing, APopUpThatIsEditedIsAPopUpAndNoTextField) {
    QComboBox box(&view_);
    box.setEditable(true);
    box.addItem("other");
    box.lineEdit()->setText("name");
    localizeView(&view_);
    EXPECT_EQ(box.lineEdit()->text(), "name");
}

TEST_F(Localizing, ButtonsGoThroughTheTableOnce) {
    const QPushButton push("first", &view_);
    const QCheckBox check("name", &view_);
    localizeView(&view_);
    EXPECT_EQ(push.text(), "second");
    EXPECT_EQ(check.text(), "Name des Feldes");
}

TEST_F(Localizing, AnAmpersandOfATranslationIsShownAndAMarkedKeyIsFound) {
    const QPushButton push("&save", &view_);
    const QPushButton unknown("&Unknown", &view_);
    localizeView(&view_);
    EXPECT_EQ(push.text(), "Sichern && Ende");
    EXPECT_EQ(unknown.text(), "&Unknown");
}

TEST_F(Localizing, ATabViewsLabelsAndPagesAreReplaced) {
    QTabWidget tabs(&view_);
    auto* seen = new QWidget;
    auto* hidden = new QWidget;
    auto* label = new QLabel("name", hidden);
    tabs.addTab(seen, "first");
    tabs.addTab(hidden, "text");
    localizeView(&view_);
    EXPECT_EQ(tabs.tabText(0), "second");
    EXPECT_EQ(tabs.tabText(1), "Absatz");
    EXPECT_EQ(label->text(), "Name des Feldes");
}

TEST_F(Localizing, AColumnTakesItsHeadersTextElseItsIdentifiers) {
    QTableView table(&view_);
    QStandardItemModel model(1, 5);
    model.setHorizontalHeaderLabels({"name", "Column", "Other", "", "Fifth"});
    model.setItem(0, 0, new QStandardItem("name"));
    table.setModel(&model);
    table.setProperty("columnIdentifiers", QStringList{"first", "colName", "unknown", "colName"});
    localizeView(&view_);
    const auto header = [&](int column) { return model.headerData(column, Qt::Horizontal).toString(); };
    EXPECT_EQ(header(0), "Name des Feldes");
    EXPECT_EQ(header(1), "Spalte");
    EXPECT_EQ(header(2), "unknown");
    EXPECT_EQ(header(3), "");
    EXPECT_EQ(header(4), "Fifth");
    EXPECT_EQ(model.item(0, 0)->text(), "name");
}

TEST_F(Localizing, ATreeHasColumnsTooAndATableWithoutAModelNone) {
    QTreeWidget tree(&view_);
    tree.setHeaderLabels({"text"});
    const QTableView empty(&view_);
    localizeView(&view_);
    EXPECT_EQ(tree.headerItem()->text(0), "Absatz");
}

TEST_F(Localizing, ABoxesTitleAndContentAreReplaced) {
    QGroupBox box("text", &view_);
    const QLabel label("name", &box);
    localizeView(&view_);
    EXPECT_EQ(box.title(), "Absatz");
    EXPECT_EQ(label.text(), "Name des Feldes");
}

TEST_F(Localizing, WhatScrollsIsReplaced) {
    QScrollArea scrolling(&view_);
    auto* content = new QWidget;
    auto* label = new QLabel("name", content);
    scrolling.setWidget(content);
    localizeView(&view_);
    EXPECT_EQ(label->text(), "Name des Feldes");
}

TEST_F(Localizing, ALabelThatScrollsByItselfIsReplaced) {
    QScrollArea scrolling(&view_);
    auto* label = new QLabel("name");
    scrolling.setWidget(label);
    localizeView(&view_);
    EXPECT_EQ(label->text(), "Name des Feldes");
}

/// The space between a text view's frame and its text.
template <class TextView>
void expectInset(TextView& text) {
    const QRect frame = text.contentsRect();
    const QRect part = text.viewport()->geometry();
    EXPECT_EQ(part.left(), frame.left());
    EXPECT_EQ(part.right(), frame.right());
    EXPECT_EQ(part.top(), frame.top() + 2);
    EXPECT_EQ(part.bottom(), frame.bottom() - 2);
    EXPECT_EQ(text.document()->documentMargin(), 0);
    EXPECT_EQ(text.toPlainText(), "name");
}

TEST_F(Localizing, ATextViewKeepsItsTextAndGetsItsInset) {
    QTextEdit rich(&view_);
    QPlainTextEdit plain(&view_);
    rich.setPlainText("name");
    plain.setPlainText("name");
    const QLabel inside("name", rich.viewport());
    for (QAbstractScrollArea* text : std::initializer_list<QAbstractScrollArea*>{&rich, &plain}) {
        text->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        text->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        text->resize(100, 100);
    }
    localizeView(&view_);
    view_.show();
    expectInset(rich);
    expectInset(plain);
    EXPECT_EQ(inside.text(), "name");
}

TEST_F(Localizing, OtherViewsArePassedThroughAndNumbersLeftAlone) {
    gStrings = Dictionary::make({{"5", "five"}, {"name", "Name"}});
    QWidget inner(&view_);
    const QLabel label("name", &inner);
    QSpinBox number(&view_);
    number.setValue(5);
    localizeView(&view_);
    EXPECT_EQ(label.text(), "Name");
    EXPECT_EQ(number.text(), "5");
}

TEST_F(Localizing, TheViewItselfIsNotReplaced) {
    QGroupBox box("text");
    localizeView(&box);
    EXPECT_EQ(box.title(), "text");
    localizeView(nullptr);
}

TEST_F(Localizing, AWindowsTitleAndContentAreReplaced) {
    view_.setWindowTitle("save\xE2\x80\xA6");
    const QLabel label("name", &view_);
    localizeWindow(&view_);
    EXPECT_EQ(view_.windowTitle(), QString::fromUtf16(u"Sichern & Ende\u2026"));
    EXPECT_EQ(label.text(), "Name des Feldes");
    localizeWindow(nullptr);
}

class ThrowingModel : public QStandardItemModel {
  public:
    ThrowingModel() : QStandardItemModel(0, 1) { setHorizontalHeaderLabels({"name"}); }
    bool setHeaderData(int, Qt::Orientation, const QVariant&, int) override { throw std::runtime_error("disk full"); }
};

TEST_F(Localizing, AFailureInAWindowIsShownAndGoesNoFurther) {
    const QLabel before("name", &view_);
    QTableView table(&view_);
    ThrowingModel model;
    table.setModel(&model);
    const QLabel behind("name", &view_);
    localizeWindow(&view_);
    ASSERT_EQ(presenter_->alerts.size(), 1u);
    EXPECT_EQ(presenter_->alerts[0].message, String("disk full"));
    EXPECT_EQ(before.text(), "Name des Feldes");
    EXPECT_EQ(behind.text(), "name");
    EXPECT_THROW(localizeView(&view_), std::runtime_error);
}

TEST_F(Localizing, AMenusItemsAndSubmenusAreReplacedOnce) {
    QMenu menu;
    const QAction* item = menu.addAction("first");
    menu.addSeparator();
    QMenu* sub = menu.addMenu("first");
    const QAction* deep = sub->addAction("name\xE2\x80\xA6");
    localizeMenu(&menu);
    EXPECT_EQ(item->text(), "second");
    EXPECT_EQ(sub->title(), "second");
    EXPECT_EQ(deep->text(), QString::fromUtf16(u"Name des Feldes\u2026"));
    localizeMenu(static_cast<QMenu*>(nullptr));
    localizeMenuItem(nullptr);
}

TEST_F(Localizing, TheMainMenuIsThatOfTheMainWindows) {
    QMainWindow window;
    const QMainWindow bare;
    QMenu* menu = window.menuBar()->addMenu("first");
    const QAction* item = menu->addAction("name");
    localizeMainMenu();
    EXPECT_EQ(menu->title(), "second");
    EXPECT_EQ(item->text(), "Name des Feldes");
    EXPECT_EQ(bare.findChild<QMenuBar*>(), nullptr);
}

TEST_F(Localizing, WithoutATableKeysStay) {
    gStrings = nullptr;
    const QLabel label("name:", &view_);
    localizeView(&view_);
    EXPECT_EQ(label.text(), "name:");
}

}  // namespace
}  // namespace vornaset
