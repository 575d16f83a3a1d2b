// Text as it comes out: places, fonts, what is copied.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <sstream>

#include "desk/output/output_testing.h"

namespace desk {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace desk::testing;

size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

const FontFace& serif() {
    return fonts().face("Liberation Serif", "Regular");
}

/// A character and its place, points from the left top corner of the page.
struct PlacedCharacter {
    std::string text;
    double x = 0, y = 0;
};

/// What mupdf finds on a page.
std::vector<PlacedCharacter> charactersOf(const std::string& pdf, int page) {
    const std::string xml =
        run("mutool draw -q -F stext -o - '" + pdf + "' " + std::to_string(page) + " 2>/dev/null").output;
    std::vector<PlacedCharacter> found;
    const std::regex character("<char quad=\"[^\"]*\" x=\"([^\"]*)\" y=\"([^\"]*)\"[^>]* c=\"([^\"]*)\"");
    for (std::sregex_iterator it(xml.begin(), xml.end(), character), end; it != end; ++it)
        found.push_back({(*it)[3], std::stod((*it)[1]), std::stod((*it)[2])});
    return found;
}

class Text : public ::testing::Test {
  protected:
    void show(std::shared_ptr<FrameLayout> layout, const Rect& frame = {10, 10, 190, 90}) {
        item = &test.addTextFrame(frame, std::move(layout));
    }
    const std::string& write(std::vector<Uid> pages = {}, PdfOptions options = {}) {
        path = test.write(folder / "text.pdf", std::move(pages), options);
        EXPECT_EQ(complaintsOfReaders(path), "");
        return path;
    }
    std::string content() { return pageContent(path, 1); }

    ScratchFolder folder;
    TestDocument test;
    PageItem* item = nullptr;
    std::string path;
};

TEST_F(Text, IsShownByItsAsciiCodesAndFound) {
    show(layoutOf({paragraphOf(serif(), 12, {{u"Dear Ms Miller,"}, {u"welcome."}})}, {10, 30}, 14));
    write({test.page->uid});
    EXPECT_EQ(content(), "BT\n10 70 Td\n0 0 0 1 k\n/F1 12 Tf\n (Dear Ms Miller,)Tj\n14 TL\nT*\n (welcome.)Tj\nET\n");
    EXPECT_EQ(textOf(path).substr(0, 26), "Dear Ms Miller,\nwelcome.\n\f") << textOf(path);
    const std::string list = run("pdffonts '" + path + "'").output;
    EXPECT_TRUE(std::regex_search(list, std::regex("[A-Z]{6}\\+LiberationSerif +CID TrueType +Custom +yes yes yes")))
        << list;
}

TEST_F(Text, EveryGlyphStandsWhereTheLayoutPutsIt) {
    // Kerning, tracking and justification of random sizes, so that rounding has every chance to add up.
    auto paragraph = paragraphOf(serif(), 7.37, {{u"The quick brown fox jumps over the lazy dog, twice."}});
    GlyphRun& glyphs = paragraph->lines[0].runs[0];
    for (size_t i = 0; i < glyphs.glyphs.size(); ++i)
        glyphs.glyphs[i].advance += static_cast<float>(((i * 7919) % 13) / 100.0 - 0.06);
    show(layoutOf({paragraph}, {10, 30}, 14));
    const std::vector<PlacedCharacter> found = charactersOf(write(), 1);
    ASSERT_GE(found.size(), glyphs.glyphs.size());
    double x = 10;
    for (size_t i = 0; i < glyphs.glyphs.size(); ++i) {
        EXPECT_NEAR(found[i].x, x, 0.025) << i;  // mupdf rounds widths to whole thousandths of the em
        EXPECT_NEAR(found[i].y, 30, 0.01);
        x += glyphs.glyphs[i].advance;
    }
}

TEST_F(Text, WordSpacingIsOneOperandAndEveryReaderAppliesIt) {
    auto paragraph = paragraphOf(serif(), 12, {{u"a b c d e f", 7.25}});
    show(layoutOf({paragraph}, {10, 30}, 14));
    write();
    EXPECT_THAT(content(), HasSubstr("7.25 Tw\n/F1 12 Tf\n (a b c d e f)Tj\n0 Tw\n"));
    double width = 0;
    for (const PlacedGlyph& glyph : paragraph->lines[0].runs[0].glyphs) width += glyph.advance;
    const double last = 10 + width - serif().glyphAdvance(serif().glyphForCharacter('f')) * 12 / 1000;
    const std::vector<PlacedCharacter> mupdf = charactersOf(path, 1);
    EXPECT_NEAR(mupdf[10].x, last, 0.02);
    const std::string poppler = run("pdftotext -bbox '" + path + "' -").output;
    EXPECT_THAT(poppler, HasSubstr("xMin=\"" + std::to_string(last).substr(0, 6)));
    const std::string ghostscript =
        run("gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=txtwrite -dTextFormat=0 -o - '" + path + "'").output;
    const size_t at = ghostscript.find("c=\"f\"");
    ASSERT_NE(at, std::string::npos) << ghostscript;
    const size_t box = ghostscript.rfind("bbox=\"", at);
    EXPECT_NEAR(std::stod(ghostscript.substr(box + 6)), last, 1.01) << ghostscript.substr(box, 60);
}

TEST_F(Text, TrackingIsOneOperand) {
    auto paragraph = paragraphOf(serif(), 10, {{u"abc def"}});
    for (PlacedGlyph& glyph : paragraph->lines[0].runs[0].glyphs) glyph.advance += 1.5f;
    paragraph->lines[0].runs[0].letterSpacing = 1.5;
    show(layoutOf({paragraph}, {10, 30}, 14));
    write();
    EXPECT_THAT(content(), HasSubstr("1.5 Tc\n/F1 10 Tf\n (abc def)Tj\n0 Tc\n"));
}

TEST_F(Text, ScalingWidensGlyphsAndSpacing) {
    auto paragraph = paragraphOf(serif(), 10, {{u"ab cd", 0}});
    GlyphRun& glyphs = paragraph->lines[0].runs[0];
    glyphs.horizontalScale = 0.8;
    glyphs.verticalScale = 1.25;
    glyphs.wordSpacing = 3;
    for (PlacedGlyph& glyph : glyphs.glyphs) {
        glyph.advance = static_cast<float>(serif().glyphAdvance(glyph.glyph) * 10 / 1000 * 0.8);
        if (paragraph->text[glyph.textStart] == u' ') glyph.advance += 3;
    }
    show(layoutOf({paragraph}, {10, 30}, 14));
    write();
    EXPECT_THAT(content(), HasSubstr("64 Tz\n4.688 Tw\n/F1 12.5 Tf\n (ab cd)Tj\n0 Tw\n100 Tz\n"));
    const std::vector<PlacedCharacter> found = charactersOf(path, 1);
    EXPECT_NEAR(
        found[4].x,
        10 + glyphs.glyphs[0].advance + glyphs.glyphs[1].advance + glyphs.glyphs[2].advance + glyphs.glyphs[3].advance,
        0.02);
}

TEST_F(Text, RaisedGlyphsAndMarksStandAboveTheBaseline) {
    auto paragraph = paragraphOf(serif(), 10, {{u"x2y"}});
    LayoutLine& line = paragraph->lines[0];
    GlyphRun raised = line.runs[0], rest = line.runs[0];
    line.runs[0].glyphs.resize(1);
    raised.glyphs = {raised.glyphs[1]};
    raised.size = 5.83;
    raised.glyphs[0].advance *= 0.583f;
    raised.rise = 3.33;
    raised.x = line.runs[0].glyphs[0].advance;
    rest.glyphs = {rest.glyphs[2]};
    rest.glyphs[0].yOffset = 2;
    rest.x = raised.x + raised.glyphs[0].advance;
    line.runs.push_back(raised);
    line.runs.push_back(rest);
    show(layoutOf({paragraph}, {10, 50}, 14));
    const std::vector<PlacedCharacter> found = charactersOf(write(), 1);
    ASSERT_GE(found.size(), 3u);
    EXPECT_NEAR(found[0].y, 50, 0.01);
    EXPECT_NEAR(found[1].y, 46.67, 0.01);
    EXPECT_NEAR(found[2].y, 48, 0.01);
    EXPECT_NEAR(found[2].x, 10 + rest.x, 0.02);
    EXPECT_THAT(content(), HasSubstr("0 Ts\nET"));
}

TEST_F(Text, RunsWithAGapGoOnAfterIt) {
    auto paragraph = paragraphOf(serif(), 10, {{u"ab"}});
    LayoutLine& line = paragraph->lines[0];
    GlyphRun second = line.runs[0];
    second.x = 100;  // a tab
    line.runs.push_back(second);
    show(layoutOf({paragraph}, {10, 50}, 14));
    const std::vector<PlacedCharacter> found = charactersOf(write(), 1);
    std::vector<double> places;
    for (const PlacedCharacter& character : found)
        if (character.text == "a") places.push_back(character.x);
    ASSERT_EQ(places.size(), 2u);
    EXPECT_NEAR(places[1], 110, 0.01);
    EXPECT_EQ(count(content(), "Tf"), 1u);
    EXPECT_EQ(count(content(), "T*") + count(content(), "Td"), 1u);
}

TEST_F(Text, LeansWhereItIsSkewed) {
    auto paragraph = paragraphOf(serif(), 10, {{u"ab"}, {u"cd"}});
    paragraph->lines[0].runs[0].skew = 20;
    show(layoutOf({paragraph}, {10, 50}, 14));
    const std::vector<PlacedCharacter> found = charactersOf(write({test.page->uid, test.page->uid}), 1);
    EXPECT_THAT(content(), HasSubstr("1 0 .36397 1 10 50 Tm"));
    ASSERT_GE(found.size(), 4u);
    EXPECT_NEAR(found[2].x, 10, 0.01);
    EXPECT_NEAR(found[2].y, 64, 0.01);
}

TEST_F(Text, TurnsWithItsFrame) {
    show(layoutOf({paragraphOf(serif(), 10, {{u"up"}})}, {0, 0}, 14), {0, -10, 50, 10});
    item->transform = Matrix::translation(-100, -50).after(Matrix{0, -1, 1, 0, 100, 80});  // reads upwards
    const std::vector<PlacedCharacter> found = charactersOf(write(), 1);
    ASSERT_GE(found.size(), 2u);
    EXPECT_NEAR(found[0].x, 100, 0.01);
    EXPECT_NEAR(found[0].y, 80, 0.01);
    EXPECT_NEAR(found[1].x, 100, 0.01);
    EXPECT_NEAR(found[1].y, 75, 0.02);
    EXPECT_EQ(content().substr(0, 22), "q\n0 1 -1 0 100 20 cm\nB");
}

TEST_F(Text, ParagraphsWithoutGlyphsLeaveTheOthersInPlace) {
    auto empty = std::make_shared<LayoutParagraph>();
    empty->serial = 5;
    empty->lines.resize(1);
    show(layoutOf({empty, paragraphOf(serif(), 10, {{u"a"}}), empty, paragraphOf(serif(), 10, {{u""}, {u"b"}})},
                  {10, 20}, 10));
    const std::vector<PlacedCharacter> found = charactersOf(write(), 1);
    ASSERT_GE(found.size(), 2u);
    EXPECT_NEAR(found[0].y, 30, 0.01);
    EXPECT_NEAR(found[1].y, 60, 0.01);
    test.texts.layouts[item->uid] = layoutOf({empty}, {10, 20}, 10);
    write();
    EXPECT_EQ(content(), "");
}

TEST_F(Text, StringsKeepBytesThatStringsEscape) {
    const std::u16string text = u"(a) \\b\\ (c";
    show(layoutOf({paragraphOf(serif(), 10, {{text}})}, {10, 20}, 10));
    EXPECT_EQ(textOf(write()).substr(0, text.size()), "(a) \\b\\ (c");
}

TEST_F(Text, MoreGlyphsThanCodesTakeAFurtherFont) {
    std::vector<LineOfText> lines;
    std::u16string all;
    std::vector<std::shared_ptr<LayoutParagraph>> paragraphs;
    for (char16_t c = 0x21; all.size() < 700 && c < 0x530; ++c)
        if (c != 0xAD && c != 0xA0 && !(c > 0x2B0 && c < 0x374) && !(c > 0x482 && c < 0x48A) &&
            serif().glyphForCharacter(c) != 0)
            all += c;
    ASSERT_GT(all.size(), 450u);
    for (size_t at = 0; at < all.size(); at += 60) lines.push_back({all.substr(at, 60)});
    show(layoutOf({paragraphOf(serif(), 4, lines)}, {10, 15}, 6));
    write();
    const std::string objects = decoded(path);
    EXPECT_EQ(count(objects, "/Subtype /Type0"), 2u);
    EXPECT_EQ(count(objects, "/Subtype /CIDFontType2"), 2u);
    // Every code, also those that strings escape, brings its own glyph and its own text. Sigma at the end of a word and
    // the like are the reader's business: compare the characters of each line without looking at order or spaces.
    std::string copied = run("mutool draw -q -F txt -o - '" + path + "' 2>/dev/null").output;
    std::u16string decodedText;
    for (size_t at = 0; at < copied.size();) {
        const unsigned char lead = static_cast<unsigned char>(copied[at]);
        const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t point = more ? lead & (0x3F >> more) : lead;
        for (int i = 1; i <= more; ++i) point = point << 6 | (static_cast<unsigned char>(copied[at + i]) & 0x3F);
        at += 1 + more;
        if (point > 0x20) decodedText += static_cast<char16_t>(point);
    }
    std::sort(decodedText.begin(), decodedText.end());
    EXPECT_EQ(decodedText, all);
}

TEST_F(Text, FurtherFontsStandWhereTheirGlyphsStand) {
    std::u16string all;
    for (char16_t c = 0x21; all.size() < 300; ++c)
        if (c != 0xAD && serif().glyphForCharacter(c) != 0) all += c;
    auto first = paragraphOf(serif(), 2, {{all}});
    auto mixed = paragraphOf(serif(), 10, {{u"A" + all.substr(290, 1) + u"B" + all.substr(291, 1) + u"C"}});
    show(layoutOf({first, mixed}, {10, 15}, 20));
    const std::vector<PlacedCharacter> found = charactersOf(write(), 1);
    double x = 10;
    const auto& glyphs = mixed->lines[0].runs[0].glyphs;
    size_t at = 0;
    while (at < found.size() && std::abs(found[at].y - 35) > 0.1) ++at;
    ASSERT_LE(at + glyphs.size(), found.size());
    for (size_t i = 0; i < glyphs.size(); ++i) {
        EXPECT_NEAR(found[at + i].x, x, 0.02) << i;
        x += glyphs[i].advance;
    }
}

TEST_F(Text, HyphensCopyAsHyphensAndSpacesAsSpaces) {
    const uint32_t hyphen = serif().glyphForCharacter('-');
    auto paragraph = paragraphOf(serif(), 10, {{u"soft\u00AD"}, {u"made-"}, {u"no\u00A0break"}, {u"tab\tstop"}});
    paragraph->lines[0].runs[0].glyphs.back().glyph = hyphen;
    paragraph->lines[0].runs[0].glyphs.back().advance = 3.33f;
    // A hyphen that hyphenation made stands for no text.
    paragraph->lines[1].runs[0].glyphs.back().textLength = 0;
    for (PlacedGlyph& glyph : paragraph->lines[3].runs[0].glyphs)
        if (paragraph->text[glyph.textStart] == u'\t') glyph.glyph = serif().glyphForCharacter(' ');
    show(layoutOf({paragraph}, {10, 20}, 15));
    const std::string objects = decoded(write());
    EXPECT_THAT(objects, Not(HasSubstr("<00AD>")));
    EXPECT_THAT(objects, HasSubstr("<2D> <002D>"));
    EXPECT_THAT(objects, Not(HasSubstr("<00A0>")));
    const std::string copied = run("mutool draw -q -F txt -o - '" + path + "' 2>/dev/null").output;
    EXPECT_THAT(copied, HasSubstr("soft-\n"));
    EXPECT_THAT(copied, HasSubstr("made-\n"));
    EXPECT_THAT(copied, HasSubstr("no break\n"));
    EXPECT_THAT(copied, HasSubstr("tab stop\n"));
    EXPECT_EQ(count(content(), "-)"), 2u) << "both hyphens are one code";
}

TEST_F(Text, LigaturesCopyAsTheirCharactersAndMarksAsNothing) {
    auto paragraph = paragraphOf(serif(), 10, {{u"fix"}});
    GlyphRun& glyphs = paragraph->lines[0].runs[0];
    glyphs.glyphs[0].glyph = serif().glyphForCharacter(0xFB01);
    glyphs.glyphs[0].textLength = 2;
    glyphs.glyphs.erase(glyphs.glyphs.begin() + 1);
    PlacedGlyph mark = glyphs.glyphs.back();
    mark.glyph =
        serif().glyphForCharacter(0x0301) ? serif().glyphForCharacter(0x0301) : serif().glyphForCharacter(0xB4);
    mark.textStart = 3;
    mark.textLength = 0;
    glyphs.glyphs.push_back(mark);
    show(layoutOf({paragraph}, {10, 20}, 15));
    const std::string objects = decoded(write());
    EXPECT_THAT(objects, HasSubstr("<00660069>"));
    EXPECT_EQ(textOf(path).substr(0, 3), "fix");
}

TEST_F(Text, OneGlyphForTwoCharactersCopiesAsEither) {
    // A font may show two characters with one glyph.
    auto paragraph = paragraphOf(serif(), 10, {{u"AB"}});
    paragraph->text[1] = u'\u0391';  // Alpha
    paragraph->lines[0].runs[0].glyphs[1].glyph = paragraph->lines[0].runs[0].glyphs[0].glyph;
    show(layoutOf({paragraph}, {10, 20}, 15));
    EXPECT_EQ(textOf(write()).substr(0, 3), "A\u0391");
}

TEST_F(Text, ColoursStrokesAndOverprintFollowTheRuns) {
    auto paragraph = paragraphOf(serif(), 40, {{u"HHHH"}});
    LayoutLine& line = paragraph->lines[0];
    GlyphRun all = line.runs[0];
    line.runs.clear();
    const TextPaint paints[] = {{"Color/Red", -1, "Swatch/None", -1, 0, false},
                                {"Color/Red", 50, "Color/Blue", -1, 3, true},
                                {"Swatch/None", -1, "Color/Blue", -1, 1, false},
                                {"Swatch/None", -1, "Swatch/None", -1, 1, false}};
    for (size_t i = 0; i < 4; ++i) {
        GlyphRun& added = line.runs.emplace_back(all);
        added.glyphs = {all.glyphs[i]};
        added.x = static_cast<double>(i) * all.glyphs[0].advance;
        added.paint = std::make_shared<TextPaint>(paints[i]);
    }
    show(layoutOf({paragraph}, {10, 60}, 15));
    write();
    const std::string text = content();
    EXPECT_THAT(
        text,
        HasSubstr(
            "1 0 0 rg\n/F1 40 Tf\n (H)Tj\n2 Tr\n1 .5 .5 rg\n0 0 1 RG\n3 w\n/G1 gs\n (H)Tj\n1 Tr\n1 w\n/G2 gs\n (H)Tj\n"
            "3 Tr\n (H)Tj\n0 Tr\n"));
    const RenderedPage picture(path, 1);
    EXPECT_TRUE(picture.at(15, 45).isLike({255, 0, 0}, 40));
}

TEST_F(Text, GradientsPaintTextOverItsFrame) {
    Swatch& gradient = test.addColour("Gradient/Fade", ColorSpace::RGB, {});
    gradient.kind = SwatchKind::Gradient;
    gradient.stops = {{"Color/Red", 0, 50}, {"Color/Blue", 100, 50}};
    auto paragraph = paragraphOf(serif(), 60, {{u"HHHH"}});
    auto paint = std::make_shared<TextPaint>();
    paint->fillColor = "Gradient/Fade";
    paint->strokeColor = "Swatch/None";
    paragraph->lines[0].runs[0].paint = paint;
    show(layoutOf({paragraph}, {10, 60}, 15));
    const RenderedPage picture(write({test.page->uid, test.page->uid, test.page->uid}), 1);
    EXPECT_GT(picture.at(17, 40).red, 200);
    EXPECT_GT(picture.at(178, 40).blue, 200);
}

TEST_F(Text, RulesLieUnderTheTextWhenBelowTheBaselineElseOver) {
    auto paragraph = paragraphOf(serif(), 40, {{u"HHHH"}});
    paragraph->lines[0].rules = {
        {0, 100, 5, 4, "Color/Red", -1}, {0, 100, -12, 4, "Color/Blue", -1}, {0, 100, 3, 0, "Color/Red", -1}};
    show(layoutOf({paragraph}, {10, 60}, 15));
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(50, 65), (Pixel{255, 0, 0}));
    EXPECT_EQ(picture.at(15, 48), (Pixel{0, 0, 255})) << "strikes through the stem";
    const std::string text = content();
    EXPECT_LT(text.find("1 0 0 rg"), text.find("BT"));
    EXPECT_GT(text.find("0 0 1 rg"), text.find("ET"));
    EXPECT_EQ(count(text, " re\n"), 2u);
}

TEST_F(Text, InlineItemsStandOnTheBaseline) {
    auto paragraph = paragraphOf(serif(), 10, {{u"a"}});
    PageItem& inlineItem = test.document.addItem(ItemKind::Rectangle);
    inlineItem.path = rectanglePath({100, 100, 120, 130});
    inlineItem.transform = Matrix::translation(55, 77);  // means nothing inside a line
    inlineItem.attributes.fillColor = "Color/Red";
    inlineItem.attributes.strokeColor = "Swatch/None";
    paragraph->lines[0].inlineItems = {{inlineItem.uid, 30}};
    show(layoutOf({paragraph}, {10, 60}, 15));
    StoryContent story;
    story.text = u"\uFFFC\r";
    story.ownedItems = {{0, inlineItem.uid}};
    test.document.story(item->story)->setContent(std::make_shared<StoryContent>(story));
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(41, 31), (Pixel{255, 0, 0}));
    EXPECT_EQ(picture.at(59, 59), (Pixel{255, 0, 0}));
    EXPECT_EQ(picture.at(61, 59), (Pixel{255, 255, 255}));
    EXPECT_EQ(picture.at(50, 62), (Pixel{255, 255, 255}));
}

TEST_F(Text, LayoutsThatContradictThemselvesDoNoHarm) {
    auto paragraph = paragraphOf(serif(), 10, {{u"abc"}});
    paragraph->lines[0].runs.reserve(10);
    GlyphRun& glyphs = paragraph->lines[0].runs[0];
    glyphs.glyphs[0].textStart = 100;
    glyphs.glyphs[1].textLength = 4000000000u;
    GlyphRun odd = glyphs;
    odd.size = std::nan("");
    paragraph->lines[0].runs.push_back(odd);
    odd.size = -3;
    paragraph->lines[0].runs.push_back(odd);
    odd.size = 10;
    odd.face = nullptr;
    paragraph->lines[0].runs.push_back(odd);
    odd = glyphs;
    odd.horizontalScale = 0;
    paragraph->lines[0].runs.push_back(odd);
    odd = glyphs;
    odd.glyphs[0].advance = std::nanf("");
    odd.paint = nullptr;
    paragraph->lines[0].runs.push_back(odd);
    auto layout = layoutOf({paragraph}, {10, 60}, 15);
    PlacedParagraph beyond = layout->paragraphs[0];
    beyond.lineCount = 5;
    layout->paragraphs.push_back(beyond);
    layout->paragraphs.push_back({});
    show(layout);
    EXPECT_THAT(decoded(write()), Not(HasSubstr("nan")));
}

class FontsThatMayNot : public FontFace {
  public:
    explicit FontsThatMayNot(const FontFace& like) : like_(like) {}
    const std::string& family() const override { return family_; }
    const std::string& style() const override { return like_.style(); }
    const std::string& postScriptName() const override { return like_.postScriptName(); }
    OutlineFormat outlineFormat() const override { return like_.outlineFormat(); }
    double ascent() const override { return like_.ascent(); }
    double descent() const override { return like_.descent(); }
    double capHeight() const override { return like_.capHeight(); }
    double xHeight() const override { return like_.xHeight(); }
    double italicAngle() const override { return like_.italicAngle(); }
    double underlinePosition() const override { return 0; }
    double underlineThickness() const override { return 0; }
    double boundingBox(int side) const override { return like_.boundingBox(side); }
    double stemV() const override { return like_.stemV(); }
    bool isFixedPitch() const override { return false; }
    bool isSerif() const override { return true; }
    int weight() const override { return 400; }
    bool embeddingAllowed() const override { return allowed; }
    double glyphAdvance(uint32_t glyph) const override { return like_.glyphAdvance(glyph); }
    uint32_t glyphForCharacter(uint32_t c) const override { return like_.glyphForCharacter(c); }
    void shape(const ShapingRequest&, std::vector<ShapedGlyph>&) const override {}
    FontSubset subset(const std::vector<uint32_t>&) const override {
        throw std::runtime_error("the glyf table is cut off");
    }
    uint32_t index() const override { return 999; }
    bool allowed = true;

  private:
    const FontFace& like_;
    std::string family_ = "Sealed";
};

TEST_F(Text, AFontThatCannotOrMayNotBeEmbeddedIsNamed) {
    FontsThatMayNot face(serif());
    show(layoutOf({paragraphOf(face, 10, {{u"a"}})}, {10, 60}, 15));
    const auto message = [&]() -> std::string {
        try {
            test.write(folder / "sealed.pdf");
        } catch (const InputError& error) {
            return error.what();
        }
        return "written";
    };
    EXPECT_EQ(message(),
              "The font \"Sealed Regular\" can't be embedded: the glyf table is cut off. Use another font in the "
              "document.");
    face.allowed = false;
    EXPECT_EQ(message(),
              "The maker of the font \"Sealed Regular\" forbids embedding it. Use another font in the document.");
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(Text, FontsWithPostScriptOutlinesAreEmbeddedToo) {
    FontLibrary library;
    const std::string more = std::string(VORNASET_SHARED_DIR) + "/samples";
    if (std::filesystem::is_directory(more)) library.addFolder(more);  // else the machine's fonts alone
    int tried = 0;
    for (const char* family :
         {"Minion Pro", "Source Serif Pro", "Source Sans Pro", "C059", "Latin Modern Roman", "STIX"}) {
        if (!library.hasFamily(family)) continue;
        const FontFace& face = library.face(family, "Regular");
        if (face.outlineFormat() != OutlineFormat::CFF) continue;
        ++tried;
        TestDocument other;
        other.addTextFrame({10, 10, 190, 90}, layoutOf({paragraphOf(face, 20, {{u"Hamburg 47"}})}, {10, 60}, 15));
        const std::string pdf = other.write(folder / "cff.pdf");
        EXPECT_EQ(complaintsOfReaders(pdf), "") << family;
        EXPECT_EQ(textOf(pdf).substr(0, 10), "Hamburg 47");
        EXPECT_THAT(run("pdffonts '" + pdf + "'").output, HasSubstr("CID Type 0C"));
        const RenderedPage picture(pdf, 1);
        int dark = 0;
        for (int y = 40; y < 62; ++y)
            for (int x = 10; x < 130; ++x) dark += picture.at(x, y).red < 100;
        EXPECT_GT(dark, 200) << family << " shows its glyphs";
    }
    if (tried == 0) GTEST_SKIP() << "no font with PostScript outlines on this machine";
}

}  // namespace
}  // namespace desk
