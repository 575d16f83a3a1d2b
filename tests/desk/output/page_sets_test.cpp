// What page sets share, and that sharing changes nothing that is seen.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "desk/output/output_testing.h"

namespace desk {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace desk::testing;

constexpr Pixel red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255};

size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

const FontFace& serif() {
    return fonts().face("Liberation Serif", "Regular");
}

/// A shape whose content is long enough to be worth a form.
void addBackground(TestDocument& test) {
    for (int i = 0; i < 8; ++i) {
        const double left = 2 + i * 24;
        PageItem& item = test.addRectangle({left, 5, left + 20, 30}, i % 2 ? "Color/Red" : "Color/Green");
        item.attributes.strokeColor = "Color/Blue";
        item.attributes.strokeWeight = 0.75;
    }
}

class PageSets : public ::testing::Test {
  protected:
    /// Writes `sets` pages; `change` is called before each with its number from 0.
    template <class Change>
    const std::string& write(int sets, Change change, PdfOptions options = {}, const char* name = "sets.pdf") {
        path = folder / name;
        DocumentWriter writer(test.document, test.texts, path, std::move(options));
        for (int set = 0; set < sets; ++set) {
            change(set);
            writer.writePage(test.page->uid);
        }
        writer.finish();
        return path;
    }
    const std::string& write(int sets) {
        return write(sets, [](int) {});
    }
    void expectNoComplaints() { EXPECT_EQ(complaintsOfReaders(path), ""); }
    size_t forms() { return count(decoded(path), "/Subtype /Form"); }

    ScratchFolder folder;
    TestDocument test;
    std::string path;
};

TEST_F(PageSets, OneSetMakesNoForm) {
    addBackground(test);
    write(1);
    EXPECT_EQ(forms(), 0u);
    EXPECT_THAT(pageContent(path, 1), Not(HasSubstr("Do")));
}

TEST_F(PageSets, WhatStaysIsWrittenOnceFromTheSecondSetOn) {
    addBackground(test);
    PageItem& changing = test.addRectangle({10, 50, 30, 70}, "Color/Red");
    write(5, [&](int set) {
        changing.path = rectanglePath({10.0 + set * 10, 50, 30.0 + set * 10, 70});
        ++changing.revision;
    });
    expectNoComplaints();
    EXPECT_EQ(forms(), 1u);
    EXPECT_THAT(pageContent(path, 1), Not(HasSubstr("Do")));
    EXPECT_EQ(pageContent(path, 3), "/X1 Do\n1 0 0 rg\n30 30 20 20 re\nf\n");
    const RenderedPage picture(path, 5);
    EXPECT_EQ(picture.at(10, 20), green);
    EXPECT_EQ(picture.at(30, 20), red);
    EXPECT_EQ(picture.at(55, 60), red);
    EXPECT_EQ(picture.at(15, 60), (Pixel{255, 255, 255}));
}

TEST_F(PageSets, AChangeInTheMiddleKeepsThePaintingOrder) {
    addBackground(test);
    PageItem& changing = test.addRectangle({0, 0, 100, 50}, "Color/Red");
    addBackground(test);
    write(4, [&](int set) {
        changing.attributes.fillColor = set % 2 ? "Color/Blue" : "Color/Red";
        ++changing.revision;
    });
    expectNoComplaints();
    EXPECT_EQ(forms(), 2u);
    EXPECT_THAT(pageContent(path, 4), ::testing::MatchesRegex("/X1 Do\n0 0 1 rg\n[^\n]*\nf\n/X2 Do\n"));
    const RenderedPage picture(path, 4);
    EXPECT_EQ(picture.at(10, 40), blue);
    EXPECT_EQ(picture.at(10, 20), green) << "the second background lies over it";
}

TEST_F(PageSets, ShortContentIsRepeatedInsteadOfAForm) {
    test.addRectangle({0, 0, 10, 10}, "Color/Red");
    write(4);
    EXPECT_EQ(forms(), 0u);
    EXPECT_EQ(pageContent(path, 4), "1 0 0 rg\n0 90 10 10 re\nf\n");
}

TEST_F(PageSets, WhatChangesNowAndThenLeavesFewForms) {
    addBackground(test);
    PageItem& city = test.addRectangle({0, 40, 90, 90}, "Color/Red");
    for (int i = 0; i < 10; ++i) city.path.push_back(rectanglePath({i * 10.0, 40, i * 10.0 + 5, 90})[0]);
    write(512, [&](int set) {
        if (set % 4 != 0) return;
        city.path[0].points[0].anchor.x = set * 0.1;
        ++city.revision;
    });
    EXPECT_EQ(run("qpdf --check '" + path + "'").status, 0);
    EXPECT_LE(forms(), 12u);
}

TEST_F(PageSets, ItemsThatComeAndGoAreSeen) {
    addBackground(test);
    Uid added = 0;
    write(6, [&](int set) {
        if (added) test.document.removeItem(added);
        added = set % 3 == 2 ? 0 : test.addRectangle({20.0 * set, 50, 20.0 * set + 10, 60}, "Color/Red").uid;
    });
    expectNoComplaints();
    EXPECT_EQ(RenderedPage(path, 1).at(5, 55), red);
    EXPECT_EQ(RenderedPage(path, 2).at(25, 55), red);
    EXPECT_EQ(RenderedPage(path, 2).at(5, 55), (Pixel{255, 255, 255}));
    EXPECT_EQ(RenderedPage(path, 3).at(25, 55), (Pixel{255, 255, 255}));
    EXPECT_EQ(RenderedPage(path, 5).at(85, 55), red);
}

TEST_F(PageSets, EachTemplatePageHasItsOwn) {
    addBackground(test);
    desk::Page& second = test.addSpreadWithPage();
    Spread& spread = *test.document.spread(second.spread);
    for (int i = 0; i < 8; ++i) test.addRectangle({i * 20.0, 50, i * 20.0 + 10, 90}, "Color/Blue", &spread);
    path = folder / "two.pdf";
    DocumentWriter writer(test.document, test.texts, path, {});
    for (int set = 0; set < 3; ++set)
        for (Uid page : {test.page->uid, second.uid}) writer.writePage(page);
    EXPECT_EQ(writer.pagesWritten(), 6u);
    writer.finish();
    expectNoComplaints();
    EXPECT_EQ(forms(), 2u);
    EXPECT_EQ(RenderedPage(path, 5).at(10, 20), green);
    EXPECT_EQ(RenderedPage(path, 6).at(5, 60), blue);
    EXPECT_EQ(RenderedPage(path, 6).at(10, 20), (Pixel{255, 255, 255}));
}

TEST_F(PageSets, EachPageHasDictionariesOfItsOwn) {
    addBackground(test);
    write(3);
    const std::string objects = decoded(path);
    EXPECT_EQ(count(objects, "/Type /Page\n"), 3u);
    EXPECT_EQ(count(objects, "/Resources <<"), 4u) << "three pages and a form, none by reference";
    EXPECT_EQ(count(objects, "/XObject <<"), 4u);
}

TEST_F(PageSets, ChangedTextIsWrittenAndUnchangedParagraphsReadTheSame) {
    PageItem& frame = test.addTextFrame({10, 10, 190, 90}, nullptr);
    const auto fixed = paragraphOf(serif(), 8, {{u"This paragraph is the same on every page,"}, {u"word for word."}});
    write(6, [&](int set) {
        const std::u16string name = u"Record number " + std::u16string(1, static_cast<char16_t>(u'A' + set));
        // What stands above grows, so that the fixed paragraph moves.
        std::vector<LineOfText> lines(static_cast<size_t>(set % 3 + 1), LineOfText{name});
        test.texts.layouts[frame.uid] =
            layoutOf({paragraphOf(serif(), 8, lines), fixed, paragraphOf(serif(), 8, {{u"Yours"}})}, {10, 20}, 9.6);
    });
    expectNoComplaints();
    for (int set = 0; set < 6; ++set) {
        const std::string text =
            run("pdftotext -f " + std::to_string(set + 1) + " -l " + std::to_string(set + 1) + " '" + path + "' -")
                .output;
        const std::string name = std::string("Record number ") + static_cast<char>('A' + set);
        EXPECT_EQ(count(text, name), static_cast<size_t>(set % 3 + 1)) << text;
        EXPECT_THAT(text, HasSubstr("This paragraph is the same on every page,\nword for word."));
        const std::string boxes = run("pdftotext -bbox -f " + std::to_string(set + 1) + " -l " +
                                      std::to_string(set + 1) + " '" + path + "' -")
                                      .output;
        // The line above ends at a baseline of 20 and 9.6 for each line.
        const size_t yours = boxes.find(">Yours<");
        ASSERT_NE(yours, std::string::npos);
        const std::string box = boxes.substr(boxes.rfind("<word", yours), 120);
        const double expected = 20 + 9.6 * (set % 3 + 1 + 2);
        const double bottom = std::stod(box.substr(box.find("yMax=\"") + 6));
        EXPECT_NEAR(bottom, expected + 8 * 0.216, 0.3) << box;
    }
}

/// Random documents, written with everything remembered and with every page from scratch: the pages look the same.
TEST_F(PageSets, SharingChangesNothingThatIsSeen) {
    std::mt19937 random(11);
    addBackground(test);
    std::vector<PageItem*> boxes;
    for (int i = 0; i < 5; ++i) boxes.push_back(&test.addRectangle({i * 35.0, 40, i * 35.0 + 30, 60}, "Color/Red"));
    PageItem& frame = test.addTextFrame({10, 60, 190, 95}, nullptr);
    addBackground(test);
    std::vector<std::shared_ptr<LayoutParagraph>> paragraphs;
    for (int i = 0; i < 4; ++i)
        paragraphs.push_back(paragraphOf(
            serif(), 7 + i, {{std::u16string(static_cast<size_t>(5 + i), static_cast<char16_t>(u'a' + i)), i * 0.5}}));
    constexpr int sets = 40;
    std::vector<std::string> alone;
    DocumentWriter together(test.document, test.texts, folder / "together.pdf", {});
    for (int set = 0; set < sets; ++set) {
        for (PageItem* box : boxes) {
            if (random() % 4 != 0) continue;
            box->attributes.fillColor = random() % 2 ? "Color/Green" : "Color/Blue";
            box->visible = random() % 5 != 0;
            ++box->revision;
        }
        if (random() % 3 != 0) {
            std::vector<std::shared_ptr<LayoutParagraph>> chosen;
            for (const auto& paragraph : paragraphs)
                if (random() % 2) chosen.push_back(paragraph);
            test.texts.layouts[frame.uid] = layoutOf(chosen, {10, 70}, 8 + static_cast<double>(random() % 3));
        }
        together.writePage(test.page->uid);
        if (set % 8 == 7) {
            alone.push_back(folder / ("alone" + std::to_string(set) + ".pdf"));
            test.write(alone.back());
        }
    }
    together.finish();
    for (size_t i = 0; i < alone.size(); ++i) {
        const RenderedPage expected(alone[i], 1), found(folder / "together.pdf", static_cast<int>(i) * 8 + 8);
        int different = 0;
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 200; ++x) different += !(expected.at(x, y) == found.at(x, y));
        EXPECT_EQ(different, 0) << "set " << i * 8 + 8;
    }
}

TEST_F(PageSets, TheSameInputGivesTheSameBytesInWhateverThread) {
    addBackground(test);
    Swatch& spot = test.addColour("Color/Spot", ColorSpace::CMYK, {0, 100, 0, 0});
    spot.kind = SwatchKind::Spot;
    test.addRectangle({0, 40, 90, 60}, "Color/Spot").attributes.opacity = 40;
    PageItem& frame = test.addTextFrame({10, 60, 190, 95}, nullptr);
    const auto fixed = paragraphOf(serif(), 8, {{u"always"}});
    std::vector<std::shared_ptr<FrameLayout>> layouts;
    for (int i = 0; i < 300; ++i)
        layouts.push_back(layoutOf(
            {paragraphOf(serif(), 8, {{u"page " + std::u16string(1, static_cast<char16_t>(u'!' + i % 90))}}), fixed},
            {10, 70}, 9));
    const auto change = [&](int set) { test.texts.layouts[frame.uid] = layouts[static_cast<size_t>(set)]; };
    PdfOptions inPlace;
    inPlace.inBackground = false;
    const std::string first = readFile(write(300, change, {}, "a.pdf"));
    EXPECT_EQ(complaintsOfReaders(path), "");
    EXPECT_EQ(readFile(write(300, change, {}, "b.pdf")), first);
    EXPECT_EQ(readFile(write(300, change, inPlace, "c.pdf")), first);
}

TEST_F(PageSets, GivenUpInTheMiddleNothingIsLeft) {
    addBackground(test);
    {
        DocumentWriter writer(test.document, test.texts, folder / "up.pdf", {});
        for (int i = 0; i < 500; ++i) writer.writePage(test.page->uid);
    }
    EXPECT_TRUE(folder.names().empty());
}

}  // namespace
}  // namespace desk
