// Real documents: all of them open, with the pages, stories and frames that they have.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>

#include "desk/idml/reader.h"
#include "desk/idml/test_package.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

struct Expected {
    size_t spreads, pages, masters, stories, frames;  ///< frames: on spreads, masters and inside stories
};

size_t frameCount(const Document& document) {
    size_t frames = 0;
    for (Uid uid : document.stories) frames += document.framesOfStory(uid).size();
    return frames;
}

void expectDocument(const Document& document, const Expected& expected) {
    EXPECT_EQ(document.spreads.size(), expected.spreads);
    EXPECT_EQ(document.pages().size(), expected.pages);
    EXPECT_EQ(document.masterSpreads.size(), expected.masters);
    EXPECT_EQ(document.stories.size(), expected.stories);
    EXPECT_EQ(frameCount(document), expected.frames);
}

TEST(Samples, TheTemplatesOfTheProjectOpenWithoutANote) {
    const std::map<std::string, Expected> expected = {
        {"letter.idml", {1, 1, 1, 5, 5}}, {"labels.idml", {1, 1, 1, 24, 24}}, {"cards.idml", {1, 1, 1, 1, 1}}};
    for (const auto& [name, counts] : expected) {
        SCOPED_TRACE(name);
        const auto document = readDocument(std::string(VORNASET_SAMPLES_DIR) + "/" + name);
        expectDocument(*document, counts);
        EXPECT_EQ(document->name, name);
        EXPECT_TRUE(document->notes.empty()) << document->notes.front().what;
    }
}

TEST(Samples, TheLetterHasItsFrameNumbersAndItsText) {
    const auto document = readDocument(std::string(VORNASET_SAMPLES_DIR) + "/letter.idml");
    EXPECT_EQ(document->labels.get("Vornaset"), "<Vornaset><path>people_100.csv</path><mode>0</mode></Vornaset>");
    EXPECT_EQ(document->itemWithSelf("u10b")->labels.get("Vornaset"), "<Vornaset><frameNum>1</frameNum></Vornaset>");
    EXPECT_EQ(document->story(document->stories.at(1))->content().text,
              u"<<company>>\r<<first >><<last>>\r<<street>>\r<<zip >><<city>>\r");
    const Style* strong = document->styleNamed(StyleKind::Character, "Strong");
    ASSERT_NE(strong, nullptr);
    EXPECT_EQ(strong->text.fontStyle, "Bold");
    const Page& page = *document->page(document->pages().at(0));
    EXPECT_NEAR(page.bounds.width(), 595.28, 0.01);
    EXPECT_EQ(document->pageOfItem(*document->itemWithSelf("u10b")), page.uid);
}

TEST(Samples, ForeignDocumentsOpen) {
    const fs::path folder = fs::path(VORNASET_SHARED_DIR) / "samples/idml";
    if (!fs::exists(folder)) GTEST_SKIP() << "the shared folder with foreign documents isn't there";
    const std::map<std::string, Expected> expected = {
        {"textframe.idml", {1, 1, 1, 4, 5}},
        {"shapes.idml", {1, 1, 1, 5, 5}},
        {"4pages.idml", {4, 4, 1, 4, 4}},
        {"sample-with-image.idml", {2, 2, 1, 4, 7}},
        {"text-effects.idml", {1, 1, 1, 13, 11}},
        {"magazineA-bloc-notes.idml", {2, 2, 1, 4, 4}},
        {"4-pages-layers-with-guides.idml", {3, 4, 1, 4, 4}},
        {"03-hyperlink-and-table-content.idml", {2, 2, 1, 11, 11}},
        {"09-footnotes.idml", {1, 1, 1, 1, 1}},
        {"08-conditional-text-and-tracked-changes.idml", {1, 1, 1, 1, 1}},
        {"00-primary-text-frame-with-different-breaking-symbols.idml", {3, 3, 1, 3, 5}},
        {"04-complex-formatting.idml", {1, 1, 1, 6, 6}},
        {"language_chinese.idml", {1, 1, 1, 1, 1}},
        {"newspaper-labels.idml", {1, 2, 3, 13, 14}},
        {"datamerge-poster.idml", {1, 1, 1, 3, 3}},
        {"snippet-image-label.idms", {1, 1, 0, 1, 1}}};
    size_t seen = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() != ".idml" && entry.path().extension() != ".idms") continue;
        const std::string name = entry.path().filename().string();
        SCOPED_TRACE(name);
        ASSERT_TRUE(expected.contains(name));
        expectDocument(*readDocument(entry.path().string()), expected.at(name));
        ++seen;
    }
    EXPECT_EQ(seen, expected.size());
}

TEST(Samples, ASnippetGetsAPageThatCoversItsItems) {
    const auto document = readDocument(
        "<Document DOMVersion=\"20.4\"><Layer Self=\"ub1\" Name=\"L\"/><Spread Self=\"us\"><Group Self=\"g\" "
        "ItemTransform=\"1 0 0 1 10 0\">" +
            TestPackage::textFrame("a", "us1") + "</Group></Spread><Story Self=\"us1\">" + TestPackage::range("One") +
            "</Story></Document>",
        "test.idms");
    ASSERT_EQ(document->pages().size(), 1u);
    const Page& page = *document->page(document->pages()[0]);
    EXPECT_EQ(page.rectInSpread(), (Rect{-90, -50, 110, 50}));
    EXPECT_EQ(page.bounds, (Rect{0, 0, 200, 100}));
    EXPECT_EQ(document->story(document->stories.at(0))->content().text, u"One\r");
}

TEST(Samples, TheDocumentKeepsItsPackage) {
    const auto document = TestPackage().read();
    ASSERT_NE(document->package, nullptr);
    EXPECT_EQ(static_cast<Package*>(document->package.get())->bytes(), TestPackage().bytes());
    EXPECT_EQ(document->name, "test.idml");
    EXPECT_EQ(document->path, "");
    EXPECT_FALSE(document->modified);
}

}  // namespace
}  // namespace desk
