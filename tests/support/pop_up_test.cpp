#include "support/pop_up.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/printing.h"
#include "support/scratch_folder.h"

namespace vornaset {
namespace {

/// Items in memory. As real ones do, it selects the first item by itself alone when it is told to.
class ListedPopUp : public PopUpButton {
  public:
    int64_t itemCount() const override { return static_cast<int64_t>(titles.size()); }
    String titleAt(int64_t index) const override { return titles.at(static_cast<size_t>(index)); }
    int64_t tagAt(int64_t index) const override { return tags.at(static_cast<size_t>(index)); }
    int64_t selectedIndex() const override { return selected; }
    void selectItem(int64_t index) override {
        if (index >= 0 && index < itemCount()) selected = index;
    }
    void removeAllItems() override {
        titles.clear();
        tags.clear();
        selected = -1;
    }
    void addItem(const String& title) override {
        titles.push_back(title);
        tags.push_back(0);
    }

    std::vector<String> titles;
    std::vector<int64_t> tags;
    int64_t selected = -1;
};

using Titles = std::vector<String>;

TEST(PopUp, APathShowsItsDeepestFolderFirst) {
    ListedPopUp popUp;
    popUp.addItem("old");
    setupPopupWithPath(&popUp, "/Users/anna/Jobs");
    EXPECT_EQ(popUp.titles, (Titles{"Jobs", "anna", "Users"}));
    EXPECT_EQ(popUp.selected, 0);
}

TEST(PopUp, ATrailingSlashGivesAnEmptyFirstItem) {
    ListedPopUp popUp;
    setupPopupWithPath(&popUp, "/Users/anna/");
    EXPECT_EQ(popUp.titles, (Titles{"", "anna", "Users"}));
}

TEST(PopUp, ThePieceBeforeTheFirstSlashNeverShows) {
    ListedPopUp popUp;
    setupPopupWithPath(&popUp, "hidden/shown");
    EXPECT_EQ(popUp.titles, Titles{"shown"});
    setupPopupWithPath(&popUp, "hidden");
    EXPECT_TRUE(popUp.titles.empty());
    EXPECT_EQ(popUp.selected, -1);
}

TEST(PopUp, APathWithoutPiecesLeavesNoItem) {
    ListedPopUp popUp;
    for (const String& path : {String(), String("")}) {
        popUp.addItem("old");
        setupPopupWithPath(&popUp, path);
        EXPECT_TRUE(popUp.titles.empty());
    }
}

TEST(PopUp, FoldersOfTheSameNameAllShow) {
    ListedPopUp popUp;
    setupPopupWithPath(&popUp, "/a/b/a");
    EXPECT_EQ(popUp.titles, (Titles{"a", "b", "a"}));
    EXPECT_EQ(pathWithPopup(&popUp), String("/a/b/a"));
}

TEST(PopUp, ThePathOfTheFirstItemIsThePathItWasFilledWith) {
    ListedPopUp popUp;
    for (const char* path : {"/Users/anna/Jobs", "/x", "/Volumes/Daten 2/\xC3\xBC"}) {
        setupPopupWithPath(&popUp, path);
        EXPECT_EQ(pathWithPopup(&popUp), String(path));
    }
}

TEST(PopUp, ThePathOfALaterItemIsThatOfAFolderFurtherUp) {
    ListedPopUp popUp;
    setupPopupWithPath(&popUp, "/Users/anna/Jobs");
    popUp.selectItem(1);
    EXPECT_EQ(pathWithPopup(&popUp), String("/Users/anna"));
}

TEST(PopUp, WithoutASelectedItemThePathIsEmpty) {
    ListedPopUp popUp;
    EXPECT_EQ(pathWithPopup(&popUp), String(""));
    popUp.addItem("a");
    EXPECT_EQ(pathWithPopup(&popUp), String(""));
    popUp.selected = 1;
    EXPECT_EQ(pathWithPopup(&popUp), String(""));
}

TEST(PopUp, APathFromAnIndexTakesTheItemsBehindItToo) {
    ListedPopUp popUp;
    setupPopupWithPath(&popUp, "/Users/anna/Jobs");
    EXPECT_EQ(pathFromPopup(&popUp, 0), String("/Users/anna/Jobs"));
    EXPECT_EQ(pathFromPopup(&popUp, 2), String("/Users"));
    popUp.selectItem(1);
    EXPECT_EQ(pathFromPopup(&popUp, -1), String("/Users/anna"));
}

TEST(PopUp, APathFromAnIndexPassesOverTaggedAndEmptyItems) {
    ListedPopUp popUp;
    setupPopupWithPath(&popUp, "/Users/anna/Jobs/");
    popUp.tags[2] = 7;
    EXPECT_EQ(pathFromPopup(&popUp, 0), String("/Users/Jobs"));
}

TEST(PopUp, APathFromAnIndexBeyondTheItemsIsTheRoot) {
    ListedPopUp popUp;
    EXPECT_EQ(pathFromPopup(&popUp, 0), String("/"));
    EXPECT_EQ(pathFromPopup(&popUp, -1), String("/"));
    setupPopupWithPath(&popUp, "/Users/anna");
    EXPECT_EQ(pathFromPopup(&popUp, 2), String("/"));
    EXPECT_EQ(pathFromPopup(&popUp, 200), String("/"));
    EXPECT_EQ(pathFromPopup(&popUp, -2), String("/"));
}

class PopUpOfAFolder : public testing::Test {
  protected:
    PopUpOfAFolder() {
        for (const char* name :
             {"page 10.xml", "page 9.xml", "Page 1.XML", "notes.txt", "plain", ".xml", ".hidden.xml"}) {
            writeFile(folder_.path() + "/" + name, "");
        }
        std::filesystem::create_directory(folder_.path() + "/folder.xml");
    }
    String folder() const { return String::fromUTF8(folder_.path()); }

    ScratchFolder folder_;
    ListedPopUp popUp_;
};

TEST_F(PopUpOfAFolder, TakesTheEntriesOfExactlyThatExtension) {
    setupPopupWithDirectory(&popUp_, folder(), "xml", 1);
    EXPECT_EQ(popUp_.titles, (Titles{".hidden", "folder", "page 9", "page 10"}));
    EXPECT_EQ(popUp_.selected, 0);
    setupPopupWithDirectory(&popUp_, folder(), "XML", 1);
    EXPECT_EQ(popUp_.titles, Titles{"Page 1"});
}

TEST_F(PopUpOfAFolder, AnEmptyExtensionMeansNamesWithoutOneAndANullOneNone) {
    setupPopupWithDirectory(&popUp_, folder(), "", 1);
    EXPECT_EQ(popUp_.titles, (Titles{".xml", "plain"}));
    setupPopupWithDirectory(&popUp_, folder(), nullptr, 1);
    EXPECT_TRUE(popUp_.titles.empty());
}

TEST_F(PopUpOfAFolder, ClearsForExactlyOne) {
    for (const uint8_t keep : {0, 2}) {
        popUp_.removeAllItems();
        popUp_.addItem("none");
        setupPopupWithDirectory(&popUp_, folder(), "txt", keep);
        EXPECT_EQ(popUp_.titles, (Titles{"none", "notes"}));
        EXPECT_EQ(popUp_.selected, 0);
    }
    setupPopupWithDirectory(&popUp_, folder(), "txt", 1);
    EXPECT_EQ(popUp_.titles, Titles{"notes"});
}

TEST_F(PopUpOfAFolder, AFolderThatIsNotThereHasNoEntries) {
    popUp_.addItem("old");
    for (const String& missing : {folder() + u"/missing", String(), String(std::u16string_view(u"\0", 1))}) {
        setupPopupWithDirectory(&popUp_, missing, "xml", 0);
        EXPECT_EQ(popUp_.titles, Titles{"old"});
        EXPECT_EQ(popUp_.selected, 0);
    }
}

TEST(PopUp, TitlesReplaceTheItemsAndTheWantedOneIsSelected) {
    ListedPopUp popUp;
    popUp.addItem("old");
    setupPopupWithArray(&popUp, Array::make({"a", "b", "c"}), "b");
    EXPECT_EQ(popUp.titles, (Titles{"a", "b", "c"}));
    EXPECT_EQ(popUp.selected, 1);
}

TEST(PopUp, NoTitlesLeaveNoItem) {
    ListedPopUp popUp;
    for (const Array& none : {Array(), Array::make()}) {
        popUp.addItem("old");
        setupPopupWithArray(&popUp, none, "old");
        EXPECT_TRUE(popUp.titles.empty());
        EXPECT_EQ(popUp.selected, -1);
    }
}

TEST(PopUp, AnUnknownOrNullTitleSelectsTheFirstItem) {
    ListedPopUp popUp;
    setupPopupWithArray(&popUp, Array::make({"a", "b", "b"}), nullptr);
    EXPECT_EQ(popUp.selected, 0);
    selectPopup(&popUp, "b");
    EXPECT_EQ(popUp.selected, 1);
    selectPopup(&popUp, "B");
    EXPECT_EQ(popUp.selected, 0);
    popUp.selectItem(2);
    selectPopup(&popUp, nullptr);
    EXPECT_EQ(popUp.selected, 0);
}

TEST(PopUp, SelectingAmongNoItemsDoesNothing) {
    ListedPopUp popUp;
    selectPopup(&popUp, "a");
    selectPopup(&popUp, nullptr);
    EXPECT_EQ(popUp.selected, -1);
}

TEST(PopUp, ANullPopUpHasNoItemsAndTakesNone) {
    setupPopupWithPath(nullptr, "/a");
    setupPopupWithDirectory(nullptr, "/", "xml", 1);
    setupPopupWithArray(nullptr, Array::make({"a"}), "a");
    selectPopup(nullptr, "a");
    EXPECT_EQ(pathWithPopup(nullptr), String(""));
    EXPECT_EQ(pathFromPopup(nullptr, 0), String("/"));
}

}  // namespace
}  // namespace vornaset
