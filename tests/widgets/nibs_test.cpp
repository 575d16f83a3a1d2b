#include "widgets/nibs.h"

#include <QtCore/QPointer>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include "widgets/file_panels.h"
#include "widgets/views.h"
#include "widgets/window_fixture.h"

namespace vornaset {
namespace {

const std::string kNib = R"(<ui version="4.0"><class>Options</class><widget class="QWidget" name="Options">
  <layout class="QVBoxLayout">
   <item><widget class="QCheckBox" name="links"><property name="text"><string>links</string></property>
     <property name="tag" stdset="0"><number>12</number></property></widget></item>
   <item><widget class="QComboBox" name="styles"><item><property name="text"><string>style</string></property></item>
     </widget></item>
  </layout></widget></ui>)";

class KeepingOwner : public NibOwner {
  public:
    void takeTopLevelObject(const std::shared_ptr<QWidget>& object) override { taken.push_back(object); }
    std::vector<std::shared_ptr<QWidget>> taken;
};

class LookingOwner : public NibOwner {
  public:
    void takeTopLevelObject(const std::shared_ptr<QWidget>& object) override { seen = object.get(); }
    QPointer<QWidget> seen;
};

class Nibs : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        addResource("Options.ui", kNib);
        gStrings = Dictionary::make({{"links",
                                      "Verkn\xC3\xBCpfungen pr\xC3\xBC"
                                      "fen"},
                                     {"style", "Stil"},
                                     {"options", "Optionen"}});
    }
    void TearDown() override {
        releaseNibObjects();
        WindowTest::TearDown();
    }
    void expectMessageFor(const char* name) {
        ASSERT_EQ(presenter_->alerts.size(), 1u);
        EXPECT_EQ(presenter_->alerts[0].message, String("Error loading nib: ") + String(name));
    }
};

TEST_F(Nibs, TheOwnerGetsTheObjectWithItsKeys) {
    KeepingOwner owner;
    EXPECT_TRUE(loadNib("Options", &owner));
    ASSERT_EQ(owner.taken.size(), 1u);
    EXPECT_EQ(owner.taken[0]->findChild<QAbstractButton*>("links")->text(), "links");
    EXPECT_NE(viewWithTag(owner.taken[0].get(), 12), nullptr);
}

TEST_F(Nibs, TheLibraryHoldsTheObjectBeyondTheCall) {
    LookingOwner owner;
    EXPECT_TRUE(loadNib(gBundle, "Options", &owner));
    ASSERT_FALSE(owner.seen.isNull());
    releaseNibObjects();
    EXPECT_TRUE(owner.seen.isNull());
}

TEST_F(Nibs, TheSecondFormLeavesTheObjectToItsOwner) {
    LookingOwner looking;
    EXPECT_TRUE(loadNib2(gBundle, "Options", &looking));
    EXPECT_TRUE(looking.seen.isNull());
    KeepingOwner keeping;
    EXPECT_TRUE(loadNib2(gBundle, "Options", &keeping));
    const QPointer<QWidget> watched(keeping.taken.at(0).get());
    EXPECT_FALSE(watched.isNull());
    keeping.taken.clear();
    EXPECT_TRUE(watched.isNull());
}

TEST_F(Nibs, AnObjectThatWasPutIntoAWidgetGoesWithEitherAndOnce) {
    KeepingOwner owner;
    ASSERT_TRUE(loadNib("Options", &owner));
    auto window = std::make_unique<QWidget>();
    owner.taken.at(0)->setParent(window.get());
    window.reset();
    owner.taken.clear();
    releaseNibObjects();
}

TEST_F(Nibs, AMissingNibIsToldAndGivesFalse) {
    KeepingOwner owner;
    EXPECT_FALSE(loadNib(gBundle, "Missing", &owner));
    expectMessageFor("Missing");
    presenter_->alerts.clear();
    EXPECT_FALSE(loadNib2(gBundle, "Missing", &owner));
    expectMessageFor("Missing");
    EXPECT_TRUE(owner.taken.empty());
}

TEST_F(Nibs, WithoutABundleEveryNibIsMissing) {
    gBundle = nullptr;
    EXPECT_FALSE(loadNib("Options", nullptr));
    expectMessageFor("Options");
}

TEST_F(Nibs, ANibNeedsNoOwner) {
    EXPECT_TRUE(loadNib("Options", nullptr));
    EXPECT_TRUE(loadNib2(gBundle, "Options", nullptr));
    EXPECT_TRUE(presenter_->alerts.empty());
}

TEST_F(Nibs, AFileThatIsNoNibGivesNoObjectAndNoFailure) {
    for (const char* content : {"", "no XML", "<ui version=\"4.0\"></ui>", "<ui version=\"4.0\"><widget"}) {
        addResource("Broken.ui", content);
        KeepingOwner owner;
        EXPECT_TRUE(loadNib("Broken", &owner)) << content;
        EXPECT_TRUE(owner.taken.empty()) << content;
        EXPECT_EQ(viewWithNibName("Broken", gBundle), nullptr) << content;
    }
    EXPECT_TRUE(presenter_->alerts.empty());
}

TEST_F(Nibs, ANibsHandleIsNullWhenItIsMissing) {
    EXPECT_FALSE(nibWithName("Options", gBundle).isNull());
    EXPECT_TRUE(nibWithName("Missing", gBundle).isNull());
    EXPECT_TRUE(nibWithName("Options", nullptr).isNull());
    EXPECT_EQ(Nib().instantiate(), nullptr);
    EXPECT_TRUE(presenter_->alerts.empty());
}

TEST_F(Nibs, AViewFromANibIsLocalised) {
    const std::unique_ptr<QWidget> view = viewWithNibName("Options", gBundle);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->findChild<QAbstractButton*>("links")->text(),
              QString::fromUtf16(u"Verkn\u00FCpfungen pr\u00FCfen"));
    EXPECT_EQ(view->findChild<QComboBox*>("styles")->itemText(0), "Stil");
    EXPECT_EQ(viewWithNibName("Missing", gBundle), nullptr);
    expectMessageFor("Missing");
}

TEST_F(Nibs, EveryShippedNibMakesAView) {
    useShippedBundle();
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(gBundle.path().utf8())) {
        if (entry.path().extension() != ".ui") continue;
        EXPECT_NE(viewWithNibName(String::fromUTF8(entry.path().stem().string()), gBundle), nullptr) << entry.path();
        ++count;
    }
    EXPECT_GT(count, 0);
}

TEST_F(Nibs, AnOpenPanelShowsItsAccessoryViewDisclosed) {
    OpenPanel panel;
    panel.setDirectory(QString::fromStdString(scratch_.path()));
    QWidget* view = setAccessoryView(&panel, "Options");
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(panel.accessoryView(), view);
    EXPECT_EQ(view->findChild<QAbstractButton*>("links")->text(),
              QString::fromUtf16(u"Verkn\u00FCpfungen pr\u00FCfen"));
    panel.show();
    EXPECT_TRUE(panel.isAccessoryViewDisclosed());
    EXPECT_TRUE(view->isVisible());
    keepScreenshot(panel, "open-panel");
    press(panel, "disclosure");
    EXPECT_FALSE(panel.isAccessoryViewDisclosed());
    EXPECT_FALSE(view->isVisible());
    press(panel, "disclosure");
    EXPECT_TRUE(view->isVisible());
}

TEST_F(Nibs, ASavePanelAlwaysShowsItsAccessoryView) {
    SavePanel panel;
    panel.setDirectory(QString::fromStdString(scratch_.path()));
    QWidget* view = setAccessoryView(&panel, "Options");
    ASSERT_NE(view, nullptr);
    panel.show();
    EXPECT_TRUE(view->isVisible());
    EXPECT_EQ(panel.findChild<QAbstractButton*>("disclosure"), nullptr);
    keepScreenshot(panel, "save-panel");
}

TEST_F(Nibs, ASecondAccessoryViewTakesThePlaceOfTheFirst) {
    SavePanel panel;
    const QPointer<QWidget> first(setAccessoryView(&panel, "Options"));
    QWidget* second = setAccessoryView(&panel, "Options");
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(panel.accessoryView(), second);
}

TEST_F(Nibs, AMissingAccessoryViewLeavesThePanelWithoutOne) {
    OpenPanel open;
    SavePanel save;
    setAccessoryView(&open, "Options");
    EXPECT_EQ(setAccessoryView(&open, "Missing"), nullptr);
    EXPECT_EQ(open.accessoryView(), nullptr);
    EXPECT_FALSE(open.isAccessoryViewDisclosed());
    expectMessageFor("Missing");
    EXPECT_EQ(setAccessoryView(&save, "Missing"), nullptr);
    EXPECT_EQ(setAccessoryView(static_cast<OpenPanel*>(nullptr), "Options"), nullptr);
    EXPECT_EQ(setAccessoryView(static_cast<SavePanel*>(nullptr), "Options"), nullptr);
}

TEST_F(Nibs, AFileIsChosenInTheOpenPanel) {
    writeFile(scratch_.path() + "/rows.csv", "a,b\n");
    OpenPanel panel;
    panel.setDirectory(QString::fromStdString(scratch_.path()));
    const ModalAnswer choosing([](QWidget& window) {
        auto& dialog = static_cast<QFileDialog&>(window);
        dialog.findChild<QWidget*>("fileNameEdit")->setFocus();
        QTest::keyClicks(dialog.findChild<QWidget*>("fileNameEdit"), "rows.csv");
        QTest::keyClick(dialog.findChild<QWidget*>("fileNameEdit"), Qt::Key_Return);
    });
    EXPECT_EQ(panel.exec(), QDialog::Accepted);
    EXPECT_EQ(panel.selectedFiles(), QStringList{QString::fromStdString(scratch_.path() + "/rows.csv")});
}

}  // namespace
}  // namespace vornaset
