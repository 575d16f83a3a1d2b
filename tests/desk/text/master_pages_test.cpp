#include <gtest/gtest.h>

#include "desk/text/text_testing.h"

namespace desk::testing {
namespace {

/// A folio on a master spread and two document pages.
class MasterPages : public ::testing::Test {
  protected:
    MasterPages() {
        second = texts.addPage("ii").uid;
        first = texts.document.pages().front();
        Spread& master = texts.document.addSpread(true);
        Page& side = texts.document.addPage(master);
        side.bounds = {0, 0, 600, 800};
        side.name = "A";
        story = &texts.story(std::u16string(u"Page ") + marker::pageNumber);
        frame = &texts.frame(*story, {0, 0, 200, 100});
        Spread& documentSpread = *texts.document.spread(frame->spread);
        for (const Uid layer : documentSpread.layers) std::erase(texts.document.spreadLayer(layer)->items, frame->uid);
        texts.document.placeOnSpread(*frame, master, texts.document.layers.front());
    }

    std::u16string shownOn(Uid page) { return linesOf(*texts.composer().frameLayout(frame->uid, page)).front().text; }

    TextDocument texts;
    Uid first = 0, second = 0;
    Story* story = nullptr;
    PageItem* frame = nullptr;
};

TEST_F(MasterPages, FrameShowsTheNumberOfThePageThatAsks) {
    EXPECT_EQ(shownOn(first), u"Page 1");
    EXPECT_EQ(shownOn(second), u"Page ii");
    EXPECT_EQ(shownOn(first), u"Page 1");
    EXPECT_EQ(shownOn(0), u"Page A");
}

TEST_F(MasterPages, FrameIsTheSameObjectWheneverTheSamePageAsks) {
    const auto layout = texts.composer().frameLayout(frame->uid, second);
    shownOn(first);
    EXPECT_EQ(texts.composer().frameLayout(frame->uid, second), layout);
}

TEST_F(MasterPages, TextWithoutNumbersIsSharedByAllPages) {
    TextDocument::fill(*story, u"Letterhead", texts.paragraph());
    EXPECT_EQ(texts.composer().frameLayout(frame->uid, first), texts.composer().frameLayout(frame->uid, second));
}

TEST_F(MasterPages, SectionMarkerIsThatOfThePage) {
    texts.document.page(second)->sectionMarker = "Chapter Two";
    TextDocument::fill(*story, std::u16string(u"In ") + marker::sectionMarker, texts.paragraph());
    EXPECT_EQ(shownOn(first), u"In ");
    EXPECT_EQ(shownOn(second), u"In Chapter Two");
}

}  // namespace
}  // namespace desk::testing
