#include "support/clipboard.h"

#include "support/alert.h"
#include "support/printing.h"

namespace vornaset {
namespace {

class CountingPresenter : public AlertPresenter {
  public:
    void beep() override { ++beeps; }
    AlertAnswer run(const Alert&) override { return AlertAnswer::defaultButton; }
    int beeps = 0;
};

class Clipboards : public testing::Test {
  protected:
    void SetUp() override {
        Pasteboard::setPrivateSpace();
        before_ = setAlertPresenter(presenter_);
    }
    void TearDown() override {
        setAlertPresenter(before_);
        setGeneralPasteboard(nullptr);
        Pasteboard::setPrivateSpace();
    }
    std::shared_ptr<CountingPresenter> presenter_ = std::make_shared<CountingPresenter>();
    std::shared_ptr<AlertPresenter> before_;
};

TEST_F(Clipboards, AFormattedTextReplacesWhatWasThere) {
    Pasteboard::withName(kGeneralPasteboard).setString("old", "other type");
    copyToPasteboard("%@ is %d", "x", 7);
    EXPECT_EQ(stringFromPasteboard("default"), "x is 7");
    EXPECT_EQ(Pasteboard::withName(kGeneralPasteboard).types(), std::vector<String>{kStringType});
    copyToPasteboard(String("%@"), String(u"100 %"));
    EXPECT_EQ(stringFromPasteboard(nullptr), "100 %");
    EXPECT_EQ(presenter_->beeps, 0);
}

TEST_F(Clipboards, AnEmptyFormatBeepsAndChangesNothing) {
    copyToPasteboard("before");
    copyToPasteboard("");
    copyToPasteboard(String());
    EXPECT_EQ(presenter_->beeps, 2);
    EXPECT_EQ(stringFromPasteboard("default"), "before");
}

TEST_F(Clipboards, WithoutAStringTheDefaultComesBack) {
    EXPECT_EQ(stringFromPasteboard("default"), "default");
    EXPECT_TRUE(stringFromPasteboard(nullptr).isNull());
    Pasteboard::withName(kGeneralPasteboard).setString("x", "picture");
    EXPECT_EQ(stringFromPasteboard("default"), "default");
    copyToPasteboard("%@", "");
    EXPECT_EQ(stringFromPasteboard("default"), "");
}

TEST_F(Clipboards, TheFirstFileNameIsThePath) {
    Pasteboard board = Pasteboard::withName("drag");
    EXPECT_TRUE(pathFromPasteboard(board).isNull());
    board.setPropertyList(Array::make({"/a", "/b"}), "NSFilenamesPboardType");
    EXPECT_EQ(pathFromPasteboard(board), "/a");
    board.setPropertyList(Array::make(), "NSFilenamesPboardType");
    EXPECT_TRUE(pathFromPasteboard(board).isNull());
    board.setPropertyList("/a", "NSFilenamesPboardType");
    EXPECT_TRUE(pathFromPasteboard(board).isNull());
}

TEST_F(Clipboards, DumpingDoesNothing) {
    Pasteboard board = Pasteboard::withName("drag");
    board.setString("x", "t");
    dumpPasteboard(board);
    EXPECT_EQ(board.stringForType("t"), "x");
}

TEST_F(Clipboards, AProgramInstallsItsOwn) {
    class Own : public Clipboard {
      public:
        String string() const override { return text; }
        void setString(const String& newText) override { text = newText; }
        String text;
    };
    const auto own = std::make_shared<Own>();
    setGeneralPasteboard(own);
    copyToPasteboard("x");
    EXPECT_EQ(own->text, "x");
    EXPECT_TRUE(Pasteboard::withName(kGeneralPasteboard).types().empty());
    EXPECT_EQ(setGeneralPasteboard(nullptr), own);
    EXPECT_EQ(stringFromPasteboard("default"), "default");
}

}  // namespace
}  // namespace vornaset
