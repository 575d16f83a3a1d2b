#include "widgets/controls.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>
#include <array>

#include "support/pop_up.h"
#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

constexpr int kLine = 1;
constexpr int kLabel = 2;
constexpr int kPopUp = 3;
constexpr int kCheckBox = 4;
constexpr int kTabs = 5;
constexpr int kSlider = 6;
constexpr int kNobody = 99;

class Controls : public testing::Test {
  protected:
    Controls() {
        add(line_, kLine);
        add(label_, kLabel);
        add(box_, kPopUp);
        add(check_, kCheckBox);
        add(tabs_, kTabs);
        add(slider_, kSlider);
        box_->addItem("red", 10);
        box_->addItem("green", 20);
        box_->addItem("blue");
    }
    void add(QWidget* control, int tag) {
        control->setParent(&view_);
        control->setProperty("tag", tag);
    }
    /// What was written; "untouched" when nothing was.
    std::string text(int32_t tag) {
        std::array<char, 64> buffer{"untouched"};
        const char* result = getControlText(&view_, tag, buffer.data());
        EXPECT_TRUE(result == nullptr || result == buffer.data());
        EXPECT_TRUE(result != nullptr || buffer.data() == std::string("untouched"));
        return buffer.data();
    }

    QWidget view_;
    QLineEdit* line_ = new QLineEdit;
    QLabel* label_ = new QLabel;
    QComboBox* box_ = new QComboBox;
    QCheckBox* check_ = new QCheckBox;
    QTabWidget* tabs_ = new QTabWidget;
    QSlider* slider_ = new QSlider;
};

TEST_F(Controls, ATextFieldsTextIsWrittenAsUTF8) {
    line_->setText(QString::fromUtf16(u"Gr\u00FC\u00DFe"));
    EXPECT_EQ(text(kLine),
              "Gr\xC3\xBC\xC3\x9F"
              "e");
    label_->setText("Name");
    EXPECT_EQ(text(kLabel), "Name");
    line_->clear();
    EXPECT_EQ(text(kLine), "");
}

TEST_F(Controls, APopUpsTextIsTheTitleOfItsSelectedItem) {
    box_->setCurrentIndex(1);
    EXPECT_EQ(text(kPopUp), "green");
    box_->setCurrentIndex(-1);
    EXPECT_EQ(text(kPopUp), "untouched");
}

TEST_F(Controls, OtherKindsLeaveTheBufferAlone) {
    check_->setText("title");
    for (const int tag : {kCheckBox, kTabs, kSlider, kNobody}) EXPECT_EQ(text(tag), "untouched");
    std::array<char, 8> buffer{};
    EXPECT_EQ(getControlText(nullptr, kLine, buffer.data()), nullptr);
    EXPECT_EQ(getControlText(&view_, kLine, nullptr), nullptr);
}

TEST_F(Controls, ATextFieldTakesTheText) {
    setControlText(&view_, kLine,
                   "Gr\xC3\xBC\xC3\x9F"
                   "e");
    EXPECT_EQ(line_->text(), QString::fromUtf16(u"Gr\u00FC\u00DFe"));
    setControlText(&view_, kLine, nullptr);
    EXPECT_EQ(line_->text(), QString::fromUtf16(u"Gr\u00FC\u00DFe"));
    setControlText(&view_, kLabel, "<b>1 & 2</b>");
    EXPECT_EQ(text(kLabel), "<b>1 & 2</b>");
    EXPECT_EQ(label_->textFormat(), Qt::PlainText);
}

TEST_F(Controls, ALabelOfAFieldShowsAnAmpersandAsItStands) {
    label_->setBuddy(line_);
    setControlText(&view_, kLabel, "Q & A");
    EXPECT_EQ(label_->text(), "Q && A");
    EXPECT_EQ(text(kLabel), "Q & A");
}

TEST_F(Controls, APopUpSelectsTheItemOfThatTitleElseTheFirst) {
    setControlText(&view_, kPopUp, "blue");
    EXPECT_EQ(box_->currentIndex(), 2);
    setControlText(&view_, kPopUp, "violet");
    EXPECT_EQ(box_->currentIndex(), 0);
    box_->setCurrentIndex(1);
    setControlText(&view_, kPopUp, nullptr);
    EXPECT_EQ(box_->currentIndex(), 0);
    box_->clear();
    setControlText(&view_, kPopUp, "blue");
    EXPECT_EQ(box_->currentIndex(), -1);
}

TEST_F(Controls, SettingTheTextOfOtherKindsDoesNothing) {
    check_->setText("title");
    setControlText(&view_, kCheckBox, "other");
    EXPECT_EQ(check_->text(), "title");
    setControlText(&view_, kNobody, "x");
    setControlText(nullptr, kLine, "x");
    EXPECT_EQ(line_->text(), "");
}

TEST_F(Controls, APopUpsValueIsTheTagOfItsSelectedItem) {
    box_->setCurrentIndex(1);
    EXPECT_EQ(getControlValue(&view_, kPopUp), 20);
    box_->setCurrentIndex(2);
    EXPECT_EQ(getControlValue(&view_, kPopUp), 0);
    box_->setCurrentIndex(-1);
    EXPECT_EQ(getControlValue(&view_, kPopUp), 0);
}

TEST_F(Controls, AButtonsValueIsItsState) {
    EXPECT_EQ(getControlValue(&view_, kCheckBox), 0);
    QTest::mouseClick(check_, Qt::LeftButton, {}, QPoint(4, check_->height() / 2));
    EXPECT_EQ(getControlValue(&view_, kCheckBox), 1);
    check_->setTristate();
    check_->setCheckState(Qt::PartiallyChecked);
    EXPECT_EQ(getControlValue(&view_, kCheckBox), -1);
}

TEST_F(Controls, ATabViewsValueIsTheNumberOfTheSelectedPagesIdentifier) {
    EXPECT_EQ(getControlValue(&view_, kTabs), 0);
    auto* first = new QWidget;
    auto* second = new QWidget;
    first->setProperty("identifier", "3");
    second->setObjectName("17 columns");
    tabs_->addTab(first, "a");
    tabs_->addTab(second, "b");
    EXPECT_EQ(getControlValue(&view_, kTabs), 3);
    tabs_->setCurrentIndex(1);
    EXPECT_EQ(getControlValue(&view_, kTabs), 17);
}

TEST_F(Controls, ATextFieldsValueIsTheNumberThatItBeginsWith) {
    line_->setText(" 42 pt");
    EXPECT_EQ(getControlValue(&view_, kLine), 42);
    line_->setText("none");
    EXPECT_EQ(getControlValue(&view_, kLine), 0);
}

TEST_F(Controls, ATagThatNothingHasAndAnyOtherKindGiveMinusOne) {
    EXPECT_EQ(getControlValue(&view_, kNobody), -1);
    EXPECT_EQ(getControlValue(&view_, kSlider), -1);
    EXPECT_EQ(getControlValue(nullptr, kLine), -1);
}

TEST(PopUpWidget, AnswersForItsComboBox) {
    QComboBox box;
    WidgetPopUpButton popUp(&box);
    setupPopupWithPath(&popUp, "/Users/anna/Jobs & more/");
    EXPECT_EQ(box.count(), 4);
    EXPECT_EQ(box.currentText(), "");
    EXPECT_EQ(box.itemText(1), "Jobs & more");
    box.setItemData(2, 1, kItemTagRole);
    EXPECT_EQ(pathFromPopup(&popUp, 0), String("/Users/Jobs & more"));
    box.setCurrentIndex(1);
    EXPECT_EQ(pathWithPopup(&popUp), String("/Users/anna/Jobs & more"));
    EXPECT_EQ(popUp.titleAt(4), String(""));
    EXPECT_EQ(popUp.titleAt(-1), String(""));
    EXPECT_EQ(popUp.tagAt(4), 0);
    popUp.selectItem(4);
    EXPECT_EQ(box.currentIndex(), 1);
}

TEST(PopUpWidget, OneWhoseComboBoxHasGoneHasNoItems) {
    auto box = std::make_unique<QComboBox>();
    WidgetPopUpButton popUp(box.get());
    popUp.addItem("a");
    box.reset();
    EXPECT_EQ(popUp.itemCount(), 0);
    EXPECT_EQ(popUp.selectedIndex(), -1);
    popUp.addItem("b");
    popUp.removeAllItems();
    popUp.selectItem(0);
    EXPECT_EQ(pathWithPopup(&popUp), String(""));
}

TEST(TextFieldWidget, OneThatHasGoneOrIsOfAnotherKindHasNoText) {
    auto line = std::make_unique<QLineEdit>("text");
    WidgetTextField field(line.get());
    EXPECT_EQ(field.text(), String("text"));
    line.reset();
    EXPECT_EQ(field.text(), String(""));
    field.setText("x");
    QPushButton button("title");
    WidgetTextField none(&button);
    none.setText("x");
    EXPECT_EQ(button.text(), "title");
    EXPECT_EQ(none.text(), String(""));
}

TEST(ProgressWidget, TheBarIsFullAtTheLastItemButOneAndStaysSo) {
    QProgressBar bar;
    WidgetProgressIndicator indicator(&bar);
    indicator.setMinimum(0);
    indicator.setMaximum(2);
    EXPECT_EQ(bar.text(), "0%");
    indicator.incrementBy(1);
    EXPECT_EQ(bar.text(), "50%");
    indicator.incrementBy(1);
    EXPECT_EQ(bar.text(), "100%");
    indicator.incrementBy(1);
    EXPECT_EQ(bar.text(), "100%");
    EXPECT_EQ(indicator.value(), 3);
}

TEST(ProgressWidget, ASingleItemFillsTheBar) {
    QProgressBar bar;
    WidgetProgressIndicator indicator(&bar);
    indicator.setMinimum(0);
    indicator.setMaximum(0);
    EXPECT_EQ(bar.text(), "0%");
    indicator.incrementBy(1);
    EXPECT_EQ(bar.text(), "100%");
}

TEST(ProgressWidget, ABarThatHasGoneIsNoFailure) {
    auto bar = std::make_unique<QProgressBar>();
    WidgetProgressIndicator indicator(bar.get());
    bar.reset();
    indicator.setMinimum(0);
    indicator.setMaximum(-1);
    indicator.incrementBy(1);
}

}  // namespace
}  // namespace vornaset
