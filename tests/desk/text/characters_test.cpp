// Attributes of characters: size, position, capitals, tracking, features, lines along the text.
#include "text_testing.h"

namespace desk::testing {
namespace {

SeenLine one(TextDocument& d, const std::u16string& text, const TextAttributes& a) {
    Story& story = d.story(text, a);
    d.frame(story, {0, 0, 500, 100});
    return linesOf(d.compose(story)).at(0);
}

TEST(Characters, AllCapitalsChangeTheShownText) {
    TextDocument d;
    TextAttributes a;
    a.capitalization = Capitalization::AllCaps;
    EXPECT_EQ(one(d, u"Grüße", a).text, u"GRÜSSE");
}

TEST(Characters, LineRangesCountTheStorysTextNotTheShown) {
    TextDocument d;
    TextAttributes a;
    a.capitalization = Capitalization::AllCaps;
    Story& story = d.story(u"Straße\u2028Straße", a);
    d.frame(story, {0, 0, 500, 100});
    const auto lines = linesOf(d.compose(story));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].line->textLength, 7);
    EXPECT_EQ(lines[1].line->textStart, 7);
    EXPECT_EQ(lines[1].line->textLength, 6);
}

TEST(Characters, SmallCapitalsAreCapitalsAtTheDocumentsSize) {
    TextDocument d;
    d.document.preferences.smallCapSize = 70;
    TextAttributes a;
    a.capitalization = Capitalization::SmallCaps;
    const SeenLine line = one(d, u"Ab", a);
    EXPECT_EQ(line.text, u"AB");
    ASSERT_EQ(line.line->runs.size(), 2u);
    EXPECT_DOUBLE_EQ(line.line->runs[0].size, 10);
    EXPECT_DOUBLE_EQ(line.line->runs[1].size, 7);
}

TEST(Characters, SuperscriptIsSmallerAndRaisedByTheDocumentsShares) {
    TextDocument d;
    TextAttributes a;
    a.pointSize = 12;
    a.position = CharacterPosition::Superscript;
    const GlyphRun& run = one(d, u"2", a).line->runs.at(0);
    EXPECT_NEAR(run.size, 6.996, 1e-9);
    EXPECT_NEAR(run.rise, 3.996, 1e-9);
}

TEST(Characters, SubscriptIsLowered) {
    TextDocument d;
    TextAttributes a;
    a.position = CharacterPosition::Subscript;
    EXPECT_NEAR(one(d, u"2", a).line->runs.at(0).rise, -3.33, 1e-9);
}

TEST(Characters, BaselineShiftRaisesWithoutChangingTheLine) {
    TextDocument d;
    TextAttributes a;
    a.baselineShift = 4;
    const SeenLine line = one(d, u"x", a);
    EXPECT_DOUBLE_EQ(line.line->runs.at(0).rise, 4);
    EXPECT_NEAR(line.line->leading, 12, 1e-9);
}

TEST(Characters, TrackingComesBehindEveryCharacter) {
    TextDocument d;
    TextAttributes a;
    a.tracking = 100;
    const SeenLine line = one(d, u"abc d", a);
    EXPECT_NEAR(line.right, widthOf(u"abc") + widthOf(u" ") + widthOf(u"d") + 5 * 1.0, 1e-3);
    EXPECT_NEAR(line.line->runs[0].letterSpacing, 1, 1e-9);
}

TEST(Characters, KerningMarkedAsUnsetIsNoKerning) {
    TextDocument d;
    TextAttributes a;
    a.kerningValue = 1e11;
    EXPECT_NEAR(one(d, u"ab", a).right, widthOf(u"ab"), 1e-3);
}

TEST(Characters, HorizontalScaleWidensAndVerticalScaleDoesNot) {
    TextDocument d;
    TextAttributes a;
    a.horizontalScale = 150;
    a.verticalScale = 80;
    const SeenLine line = one(d, u"abc", a);
    EXPECT_NEAR(line.right, 1.5 * widthOf(u"abc"), 1e-3);
    EXPECT_DOUBLE_EQ(line.line->runs[0].horizontalScale, 1.5);
    EXPECT_DOUBLE_EQ(line.line->runs[0].verticalScale, 0.8);
}

TEST(Characters, MetricsKerningCanBeSwitchedOff) {
    TextDocument d;
    TextAttributes a;
    const double kerned = one(d, u"AVAV", a).right;
    a.kerningMethod = KerningMethod::None;
    EXPECT_GT(one(d, u"AVAV", a).right, kerned + 0.1);
}

TEST(Characters, LigaturesCanBeSwitchedOff) {
    TextDocument d;
    TextAttributes a;
    a.fontFamily = "DejaVu Sans";
    const size_t with = one(d, u"fi", a).line->runs[0].glyphs.size();
    a.ligatures = false;
    EXPECT_EQ(one(d, u"fi", a).line->runs[0].glyphs.size(), 2u);
    EXPECT_EQ(with, 1u);
}

TEST(Characters, LigatureStandsForAllItsCharacters) {
    TextDocument d;
    TextAttributes a;
    a.fontFamily = "DejaVu Sans";
    const PlacedGlyph& glyph = one(d, u"fi", a).line->runs[0].glyphs[0];
    EXPECT_EQ(glyph.textStart, 0u);
    EXPECT_EQ(glyph.textLength, 2u);
}

TEST(Characters, UnderlineRunsUnderItsWordsOnly) {
    TextDocument d;
    Story& story = d.story(u"aa bb cc");
    TextAttributes underline;
    underline.underline = true;
    underline.underlineWeight = 0.7;
    underline.underlineOffset = 2;
    story.setCharacterFormat(3, 2, d.character(underline));
    d.frame(story, {0, 0, 500, 100});
    const SeenLine line = linesOf(d.compose(story)).at(0);
    ASSERT_EQ(line.line->rules.size(), 1u);
    const TextRule& rule = line.line->rules[0];
    EXPECT_NEAR(rule.x, widthOf(u"aa") + widthOf(u" "), 1e-3);
    EXPECT_NEAR(rule.width, widthOf(u"bb"), 1e-3);
    EXPECT_DOUBLE_EQ(rule.y, 2);
    EXPECT_DOUBLE_EQ(rule.weight, 0.7);
    EXPECT_EQ(rule.color, "Color/Black");
}

TEST(Characters, UnderlineGoesOnUnderSpacesBetweenItsWords) {
    TextDocument d;
    TextAttributes a;
    a.underline = true;
    const SeenLine line = one(d, u"aa bb", a);
    ASSERT_EQ(line.line->rules.size(), 1u);
    EXPECT_NEAR(line.line->rules[0].width, line.right, 1e-3);
}

TEST(Characters, StrikeThroughLiesAboveTheBaselineInItsColour) {
    TextDocument d;
    TextAttributes a;
    a.strikeThrough = true;
    a.strikeThroughColor = "Color/Red";
    a.strikeThroughTint = 40;
    const TextRule rule = one(d, u"x", a).line->rules.at(0);
    EXPECT_LT(rule.y, -1);
    EXPECT_EQ(rule.color, "Color/Red");
    EXPECT_EQ(rule.tint, 40);
}

TEST(Characters, ParagraphRulesStandAboveAndBelow) {
    TextDocument d;
    TextAttributes a;
    a.ruleAbove = true;
    a.ruleAboveWeight = 2;
    a.ruleAboveOffset = 10;
    a.ruleAboveLeftIndent = 5;
    a.ruleBelow = true;
    a.ruleBelowTextWidth = true;
    a.ruleBelowOffset = 3;
    a.leftIndent = 20;
    const SeenLine line = one(d, u"text", a);
    ASSERT_EQ(line.line->rules.size(), 2u);
    EXPECT_DOUBLE_EQ(line.line->rules[0].y, -11);
    EXPECT_DOUBLE_EQ(line.line->x + line.line->rules[0].x, 5);
    EXPECT_DOUBLE_EQ(line.line->rules[0].width, 495);
    EXPECT_DOUBLE_EQ(line.line->rules[1].y, 3.5);
    EXPECT_NEAR(line.line->rules[1].width, widthOf(u"text"), 1e-3);
}

TEST(Characters, HiddenTextTakesNoRoom) {
    TextDocument d;
    Story& story = d.story(u"ab hidden cd");
    TextAttributes hidden;
    hidden.hiddenByCondition = true;
    story.setCharacterFormat(3, 7, d.character(hidden));
    d.frame(story, {0, 0, 500, 100});
    const SeenLine line = linesOf(d.compose(story)).at(0);
    EXPECT_EQ(line.text, u"ab cd");
    EXPECT_EQ(line.line->textLength, 12);
}

TEST(Characters, PaintComesFromTheAttributes) {
    TextDocument d;
    TextAttributes a;
    a.fillColor = "Color/Blue";
    a.fillTint = 50;
    const GlyphRun& run = one(d, u"x", a).line->runs.at(0);
    EXPECT_EQ(run.paint->fillColor, "Color/Blue");
    EXPECT_EQ(run.paint->fillTint, 50);
}

TEST(Characters, InlineItemTakesItsWidthAndStandsInTheLine) {
    TextDocument d;
    Story& story = d.story(u"a" + std::u16string(1, marker::inlineObject) + u"b");
    PageItem& item = d.document.addItem(ItemKind::Rectangle);
    item.path = rectanglePath({-10, -5, 10, 5});
    auto content = std::make_shared<StoryContent>(story.content());
    content->ownedItems = {{1, item.uid}};
    story.setContent(content);
    d.frame(story, {0, 0, 500, 100});
    const SeenLine line = linesOf(d.compose(story)).at(0);
    ASSERT_EQ(line.line->inlineItems.size(), 1u);
    EXPECT_EQ(line.line->inlineItems[0].first, item.uid);
    EXPECT_NEAR(line.line->inlineItems[0].second, widthOf(u"a"), 1e-3);
    EXPECT_NEAR(line.right, widthOf(u"a") + 20 + widthOf(u"b"), 1e-3);
}

TEST(Characters, TallInlineItemRaisesAutomaticLeadingOnly) {
    for (const bool automatic : {true, false}) {
        TextDocument d;
        TextAttributes a;
        a.leading = Leading{automatic, 15};
        Story& story = d.story(u"a\r" + std::u16string(1, marker::inlineObject), a);
        PageItem& item = d.document.addItem(ItemKind::Rectangle);
        item.path = rectanglePath({0, 0, 30, 50});
        auto content = std::make_shared<StoryContent>(story.content());
        content->ownedItems = {{2, item.uid}};
        story.setContent(content);
        d.frame(story, {0, 0, 500, 200});
        const auto lines = linesOf(d.compose(story));
        EXPECT_NEAR(lines[1].baseline - lines[0].baseline, automatic ? 60 : 15, 1e-6);
    }
}

TEST(Characters, BulletsStandBeforeTheirParagraphs) {
    TextDocument d;
    TextAttributes a;
    a.listType = ListType::Bullet;
    a.leftIndent = 18;
    a.firstLineIndent = -18;
    Story& story = d.story(u"one\rtwo", a);
    d.frame(story, {0, 0, 500, 100});
    const auto lines = linesOf(d.compose(story));
    EXPECT_EQ(lines[0].text, u"\u2022one");
    const GlyphRun& text = lines[0].line->runs.at(1);
    EXPECT_NEAR(lines[0].line->x + text.x, 18, 1e-3);
}

TEST(Characters, NumbersCountTheListAndStartAgainWhereToldTo) {
    TextDocument d;
    TextAttributes a;
    a.listType = ListType::Numbered;
    Story& story = d.story(u"a\rb\rc\rd", a);
    TextAttributes again = TextDocument::usual();
    again.listType = ListType::Numbered;
    again.numberingContinue = false;
    again.numberingStartAt = 7;
    story.setParagraphFormat(4, 1, d.paragraph(again));
    d.frame(story, {0, 0, 500, 100});
    EXPECT_EQ(textsOf(d.compose(story)), (std::vector<std::u16string>{u"1.a", u"2.b", u"7.c", u"8.d"}));
}

TEST(Characters, NumbersBeginWhereverAListSays) {
    for (const auto& [first, shown] : {std::pair{0, std::vector<std::u16string>{u"0.a", u"1.b", u"2.c"}},
                                       {-1, {u"-1.a", u"0.b", u"1.c"}},
                                       {2147483647, {u"2147483647.a", u"2147483648.b", u"2147483649.c"}}}) {
        TextDocument d;
        TextAttributes a;
        a.listType = ListType::Numbered;
        a.numberingStartAt = first;
        Story& story = d.story(u"a\rb\rc", a);
        d.frame(story, {0, 0, 500, 100});
        EXPECT_EQ(textsOf(d.compose(story)), shown);
    }
}

}  // namespace
}  // namespace desk::testing
