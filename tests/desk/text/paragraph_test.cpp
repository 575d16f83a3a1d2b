// Setting of single paragraphs: alignment, justification, indents, spaces, breaks inside words.
#include "text_testing.h"

namespace desk::testing {
namespace {

const std::u16string kLorem =
    u"Lorem ipsum dolor sit amet, consectetur adipiscing elit, sed do eiusmod tempor incididunt ut labore et dolore "
    u"magna "
    u"aliqua, quis nostrud exercitation ullamco laboris nisi ut aliquip ex ea commodo consequat.";

TextAttributes with(Justification justification) {
    TextAttributes a;
    a.justification = justification;
    return a;
}

std::vector<SeenLine> set(TextDocument& d, const std::u16string& text, const TextAttributes& a, double width = 160) {
    Story& story = d.story(text, a);
    d.frame(story, {0, 0, width, 700});
    return linesOf(d.compose(story));
}

TEST(Paragraph, LeftAlignedLinesStartAtTheLeftAndFitTheMeasure) {
    TextDocument d;
    const auto lines = set(d, kLorem, {});
    ASSERT_GT(lines.size(), 4u);
    for (const SeenLine& line : lines) {
        EXPECT_DOUBLE_EQ(line.x, 0);
        EXPECT_LE(line.right, 160.001);
    }
}

TEST(Paragraph, EveryCharacterOfTheTextIsShownOnce) {
    TextDocument d;
    std::u16string all;
    for (const SeenLine& line : set(d, kLorem, {})) all += line.text;
    EXPECT_EQ(all, kLorem);
}

TEST(Paragraph, ALineIsFullExactlyAtItsMeasure) {
    const std::u16string text = u"Donaudampfschifffahrt ahoi ";
    const double whole = widthOf(u"Donaudampfschifffahrt ahoi");
    for (const Justification justification : {Justification::Left, Justification::Right, Justification::Center,
                                              Justification::LeftJustified, Justification::FullyJustified}) {
        TextAttributes a = with(justification);
        a.hyphenation = true;
        a.minimumWordSpacing = 100;
        TextDocument wide, narrow;
        EXPECT_EQ(set(wide, text, a, whole + 0.01).size(), 1u) << static_cast<int>(justification);
        EXPECT_GT(set(narrow, text, a, whole - 0.01).size(), 1u) << static_cast<int>(justification);
    }
}

TEST(Paragraph, TheLastLineIndentTakesRoomOfAnOnlyLineToo) {
    TextAttributes a;
    a.lastLineIndent = 20;
    TextDocument wide, narrow;
    EXPECT_EQ(set(wide, u"one two", a, widthOf(u"one two") + 20.01).size(), 1u);
    EXPECT_EQ(set(narrow, u"one two", a, widthOf(u"one two") + 19.9).size(), 2u);
}

TEST(Paragraph, LineRangesCoverTheParagraphWithoutGaps) {
    TextDocument d;
    int32_t next = 0;
    for (const SeenLine& line : set(d, kLorem, {})) {
        EXPECT_EQ(line.line->textStart, next);
        next += line.line->textLength;
    }
    EXPECT_EQ(next, static_cast<int32_t>(kLorem.size()));
}

TEST(Paragraph, RightAlignedLinesEndAtTheRightWithoutTheirSpaces) {
    TextDocument d;
    for (const SeenLine& line : set(d, kLorem, with(Justification::Right))) EXPECT_NEAR(line.right, 160, 1e-3);
}

TEST(Paragraph, CenteredLinesHaveEqualRoomOnBothSides) {
    TextDocument d;
    for (const SeenLine& line : set(d, kLorem, with(Justification::Center)))
        EXPECT_NEAR(line.x, 160 - line.right, 1e-3);
}

TEST(Paragraph, TrailingSpacesNeverPushAWordToTheNextLine) {
    TextDocument d;
    const double width = widthOf(u"one two") + 0.1;
    const auto lines = set(d, u"one two      three", {}, width);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].text, u"one two      ");
    EXPECT_DOUBLE_EQ(lines[1].x, 0);
}

TEST(Paragraph, JustifiedLinesReachBothEndsButTheLast) {
    TextDocument d;
    const auto lines = set(d, kLorem, with(Justification::LeftJustified));
    for (size_t i = 0; i + 1 < lines.size(); ++i) {
        EXPECT_NEAR(lines[i].x, 0, 1e-3);
        EXPECT_NEAR(lines[i].right, 160, 1e-2);
    }
    EXPECT_LT(lines.back().right, 159);
}

TEST(Paragraph, LastLineOfJustifiedTextFollowsItsKind) {
    TextDocument d;
    const auto right = set(d, kLorem, with(Justification::RightJustified)).back();
    EXPECT_NEAR(right.right, 160, 1e-2);
    EXPECT_GT(right.x, 1);
    const auto center = set(d, kLorem, with(Justification::CenterJustified)).back();
    EXPECT_NEAR(center.x, 160 - center.right, 1e-2);
    const auto full = set(d, kLorem, with(Justification::FullyJustified)).back();
    EXPECT_NEAR(full.x, 0, 1e-3);
    EXPECT_NEAR(full.right, 160, 1e-2);
}

TEST(Paragraph, LineBeforeAForcedBreakIsJustified) {
    TextDocument d;
    const auto lines = set(d, u"one two three\u2028four five", with(Justification::LeftJustified));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_NEAR(lines[0].right, 160, 1e-2);
    EXPECT_LT(lines[1].right, 100);
}

TEST(Paragraph, ForcedBreakAtTheEndLeavesAnEmptyLine) {
    TextDocument d;
    const auto lines = set(d, u"one\u2028", {});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].text, u"");
    EXPECT_NEAR(lines[1].baseline - lines[0].baseline, 12, 1e-6);
}

TEST(Paragraph, WordSpacesStayWithinTheirLimitsWhereLinesAllow) {
    TextDocument d;
    TextAttributes a = with(Justification::LeftJustified);
    a.minimumWordSpacing = 80;
    a.desiredWordSpacing = 100;
    a.maximumWordSpacing = 160;
    const double space = widthOf(u" ");
    int inside = 0, all = 0;
    const auto lines = set(d, kLorem, a, 400);
    for (size_t i = 0; i + 1 < lines.size(); ++i) {
        const double actual = space + lines[i].line->runs.front().wordSpacing;
        EXPECT_GE(actual, space * 0.8 - 1e-6);
        inside += actual <= space * 1.6 + 1e-6;
        ++all;
    }
    EXPECT_EQ(inside, all);
}

TEST(Paragraph, DesiredWordSpacingHoldsInRaggedTextToo) {
    TextDocument d;
    TextAttributes a;
    a.desiredWordSpacing = 150;
    a.maximumWordSpacing = 150;
    const auto line = set(d, u"one two", a).front();
    EXPECT_NEAR(line.right, widthOf(u"one") + widthOf(u" ") * 1.5 + widthOf(u"two"), 1e-3);
}

TEST(Paragraph, LetterSpacingTakesItsShareOfTheSlack) {
    TextDocument d;
    TextAttributes a = with(Justification::LeftJustified);
    a.maximumLetterSpacing = 20;
    const auto lines = set(d, kLorem, a);
    bool any = false;
    for (size_t i = 0; i + 1 < lines.size(); ++i) {
        any = any || lines[i].line->runs.front().letterSpacing > 0.01;
        EXPECT_NEAR(lines[i].right, 160, 0.8);  // the last letter's space stands beyond
    }
    EXPECT_TRUE(any);
}

TEST(Paragraph, GlyphScalingWidensGlyphsInLooseLines) {
    TextDocument d;
    TextAttributes a = with(Justification::LeftJustified);
    a.maximumGlyphScaling = 105;
    a.minimumGlyphScaling = 95;
    bool any = false;
    for (const SeenLine& line : set(d, kLorem, a)) any = any || line.line->runs.front().horizontalScale != 1;
    EXPECT_TRUE(any);
}

TEST(Paragraph, SingleWordOnAJustifiedLineFollowsItsOwnRule) {
    TextDocument d;
    TextAttributes a = with(Justification::LeftJustified);
    const std::u16string text = u"Extraordinarily\u2028big";
    const SeenLine full = set(d, text, a)[0];
    EXPECT_NEAR(full.right - full.line->runs.front().letterSpacing, 160, 0.05);
    a.singleWordJustification = Justification::Left;
    EXPECT_NEAR(set(d, text, a)[0].right, widthOf(u"Extraordinarily"), 1e-3);
    a.singleWordJustification = Justification::Right;
    EXPECT_NEAR(set(d, text, a)[0].right, 160, 1e-3);
    EXPECT_GT(set(d, text, a)[0].x, 50);
}

TEST(Paragraph, FlushSpaceTakesTheSlackOfAFullyJustifiedLastLine) {
    TextDocument d;
    const auto line = set(d, u"the end\u2001x", with(Justification::FullyJustified)).front();
    EXPECT_NEAR(line.right, 160, 1e-2);
    EXPECT_NEAR(line.line->runs.front().glyphs[3].advance, widthOf(u" "), 1e-3);
}

TEST(Paragraph, IndentsMoveTheLines) {
    TextDocument d;
    TextAttributes a;
    a.leftIndent = 20;
    a.rightIndent = 10;
    a.firstLineIndent = -8;
    const auto lines = set(d, kLorem, a);
    EXPECT_DOUBLE_EQ(lines[0].x, 12);
    EXPECT_DOUBLE_EQ(lines[0].measure, 138);
    for (size_t i = 1; i < lines.size(); ++i) {
        EXPECT_DOUBLE_EQ(lines[i].x, 20);
        EXPECT_LE(lines[i].right, 150.001);
    }
}

TEST(Paragraph, LastLineIndentKeepsTheLastLineOffTheRight) {
    TextDocument d;
    TextAttributes a = with(Justification::FullyJustified);
    a.lastLineIndent = 40;
    EXPECT_NEAR(set(d, kLorem, a).back().right, 120, 1e-2);
}

TEST(Paragraph, NoBreakSpaceStretchesButEndsNoLine) {
    TextDocument d;
    const double width = widthOf(u"10 km") + widthOf(u"x") + 1;
    const auto texts = set(d, u"xx 10\u00a0km", {}, width);
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[1].text, u"10\u00a0km");
}

TEST(Paragraph, ZeroWidthSpaceAllowsABreak) {
    TextDocument d;
    const auto lines = set(d, u"abcdefgh\u200bijklmnop", {}, widthOf(u"abcdefgh") + 5);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].text, u"ijklmnop");
}

TEST(Paragraph, SoftHyphenShowsAHyphenOnlyWhereTheLineEnds) {
    TextDocument d;
    const std::u16string text = u"ocean\u00adliner";
    const auto whole = set(d, text, {});
    ASSERT_EQ(whole.size(), 1u);
    EXPECT_EQ(whole[0].text, u"oceanliner");
    const auto divided = set(d, text, {}, widthOf(u"ocean-") + 1);
    ASSERT_EQ(divided.size(), 2u);
    EXPECT_EQ(divided[0].text, u"ocean-");
    EXPECT_EQ(divided[1].text, u"liner");
}

TEST(Paragraph, LineEndsBehindAHyphenInTheText) {
    TextDocument d;
    const auto lines = set(d, u"Hamburg-Altona", {}, widthOf(u"Hamburg-") + 1);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].text, u"Hamburg-");
}

TEST(Paragraph, NonBreakingHyphenKeepsTogether) {
    TextDocument d;
    const auto lines = set(d, u"a Hamburg\u2011Altona", {}, widthOf(u"Hamburg\u2011Altona") + 2);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].text, u"Hamburg\u2011Altona");
}

TEST(Paragraph, WordWiderThanTheMeasureIsDividedBetweenLetters) {
    TextDocument d;
    const auto lines = set(d, u"Donaudampfschifffahrt", {}, 40);
    ASSERT_GT(lines.size(), 2u);
    std::u16string all;
    for (const SeenLine& line : lines) {
        EXPECT_LE(line.right, 40.001);
        all += line.text;
    }
    EXPECT_EQ(all, u"Donaudampfschifffahrt");
}

TEST(Paragraph, AStretchWithoutSpacesMayBeLongerThanAnyWord) {
    std::u16string text;
    for (int i = 0; i < 70; ++i) text += std::u16string(999, u'x') + u'-';
    TextDocument d;
    Story& story = d.story(text);
    d.frame(story, {0, 0, 3000, 4000});
    EXPECT_FALSE(d.compose(story).overset);
    std::u16string all;
    for (const SeenLine& line : linesOf(d.compose(story))) {
        EXPECT_LE(line.right, 3000.001);
        all += line.text;
    }
    EXPECT_EQ(all == text, true) << "nothing is lost or shown twice";
}

TEST(Paragraph, AStretchWithoutSpacesEndsItsLinesWhereItMay) {
    std::u16string text;
    for (int i = 0; i < 100; ++i) text += i % 2 ? u"abcd-" : u"efghi-";
    TextDocument d;
    const auto lines = set(d, text, {}, 120);
    ASSERT_GT(lines.size(), 10u);
    for (const SeenLine& line : lines) EXPECT_EQ(line.text.back(), u'-');
}

TEST(Paragraph, NoBreakKeepsWordsOnOneLine) {
    TextDocument d;
    Story& story = d.story(u"aaa bbb ccc ddd");
    TextAttributes keep;
    keep.noBreak = true;
    story.setCharacterFormat(4, 7, d.character(keep));
    d.frame(story, {0, 0, widthOf(u"aaa bbb cc"), 700});
    EXPECT_EQ(textsOf(d.compose(story)), (std::vector<std::u16string>{u"aaa", u"bbb ccc", u"ddd"}));
}

TEST(Paragraph, SpaceBeforeAClosingMarkEndsNoLine) {
    TextDocument d;
    const auto lines = set(d, u"vraiment tard !", {}, widthOf(u"vraiment tard") + 0.5);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].text, u"tard !");
}

TEST(Paragraph, SingleLineComposerFillsLineByLine) {
    TextDocument d;
    TextAttributes a;
    a.singleLineComposer = true;
    const auto lines = set(d, kLorem, a);
    for (size_t i = 0; i + 1 < lines.size(); ++i) {
        const std::u16string next = lines[i + 1].text.substr(0, lines[i + 1].text.find(u' '));
        EXPECT_GT(lines[i].right + widthOf(u" ") + widthOf(next), 160) << i;
    }
}

TEST(Paragraph, EmptyParagraphTakesAFullLine) {
    TextDocument d;
    const auto lines = set(d, u"a\r\rb", {});
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_NEAR(lines[2].baseline - lines[0].baseline, 24, 1e-6);
}

TEST(Paragraph, SpacesAtTheStartStandForThemselves) {
    TextDocument d;
    const auto line = set(d, u"   x", {}).front();
    EXPECT_NEAR(line.right, 3 * widthOf(u" ") + widthOf(u"x"), 1e-3);
}

TEST(Paragraph, IndentToHereMovesTheFollowingLines) {
    TextDocument d;
    const std::u16string text = u"Note: " + std::u16string(1, marker::indentToHere) + kLorem;
    const auto lines = set(d, text, {});
    const double indent = widthOf(u"Note:") + widthOf(u" ");
    ASSERT_GT(lines.size(), 3u);
    EXPECT_DOUBLE_EQ(lines[0].x, 0);
    for (size_t i = 1; i < lines.size(); ++i) EXPECT_NEAR(lines[i].x, indent, 1e-3);
}

TEST(Paragraph, MissingSpacesOfAFaceGetTheirUsualWidths) {
    TextDocument d;
    const auto widthBetween = [&](char16_t space) {
        const auto line = set(d, u"x" + std::u16string(1, space) + u"x", {}).front();
        return line.right - 2 * widthOf(u"x");
    };
    EXPECT_NEAR(widthBetween(0x2003), 10, 0.05);
    EXPECT_NEAR(widthBetween(0x2002), 5, 0.05);
    EXPECT_NEAR(widthBetween(0x2004), 10.0 / 3, 0.05);
    EXPECT_GT(widthBetween(0x2009), 0.5);
    EXPECT_LT(widthBetween(0x2009), 2.5);
}

TEST(Paragraph, AlignmentToTheSpineFollowsThePagesSide) {
    TextDocument d;
    d.document.preferences.facingPages = true;
    d.addPage("2");
    d.document.spread(d.document.spreads.front())->bindingLocation = 1;
    Story& left = d.story(u"a", with(Justification::ToBindingSide));
    d.frame(left, {0, 0, 160, 100});
    EXPECT_NEAR(linesOf(d.compose(left))[0].right, 160, 1e-3);
    Story& right = d.story(u"a", with(Justification::ToBindingSide));
    d.frame(right, {700, 0, 860, 100});
    EXPECT_NEAR(linesOf(d.compose(right))[0].x, 700, 1e-3);
    Story& away = d.story(u"a", with(Justification::AwayFromBindingSide));
    d.frame(away, {700, 0, 860, 100});
    EXPECT_NEAR(linesOf(d.compose(away))[0].right, 860, 1e-3);
}

TEST(Paragraph, RightToLeftTextStandsInVisualOrder) {
    TextDocument d;
    TextAttributes a;
    a.fontFamily = "DejaVu Sans";
    const auto line = set(d, u"abc \u05d0\u05d1\u05d2 def", a).front();
    EXPECT_EQ(line.text, u"abc \u05d2\u05d1\u05d0 def");
}

TEST(Paragraph, RightToLeftParagraphPutsLaterWordsLeft) {
    TextDocument d;
    TextAttributes a;
    a.fontFamily = "DejaVu Sans";
    a.rightToLeft = true;
    const auto line = set(d, u"\u05d0\u05d0 \u05d1\u05d1", a).front();
    EXPECT_EQ(line.text, u"\u05d1\u05d1 \u05d0\u05d0");
}

TEST(Paragraph, CharactersThatAFaceLacksComeFromAnother) {
    TextDocument d;
    const auto line = set(d, u"a\u2603b", {}).front();  // a snowman, in DejaVu Sans
    ASSERT_EQ(line.line->runs.size(), 3u);
    EXPECT_NE(line.line->runs[1].face, line.line->runs[0].face);
    EXPECT_NE(line.line->runs[1].glyphs[0].glyph, 0u);
    EXPECT_TRUE(d.composer().missingCharacters().empty());
}

TEST(Paragraph, CharacterThatNoFontHasIsShownAndToldOnce) {
    TextDocument d;
    const char32_t unassigned = 0x0378;
    const auto line = set(d, u"a\u0378b\u0378", {}).front();
    EXPECT_EQ(d.composer().missingCharacters(), std::u32string(1, unassigned));
    size_t shown = 0;
    for (const GlyphRun& run : line.line->runs)
        for (const PlacedGlyph& glyph : run.glyphs) shown += glyph.glyph == 0;
    EXPECT_EQ(shown, 2u);
}

}  // namespace
}  // namespace desk::testing
