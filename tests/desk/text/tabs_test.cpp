#include "text_testing.h"

namespace desk::testing {
namespace {

TabStop stop(double position, TabAlignment alignment = TabAlignment::Left, std::u16string leader = {}) {
    TabStop result;
    result.position = position;
    result.alignment = alignment;
    result.leader = std::move(leader);
    return result;
}

/// The x of the first and behind the last glyph of each run.
std::vector<std::pair<double, double>> runsOf(TextDocument& d, const std::u16string& text, const TextAttributes& a,
                                              double width = 400) {
    Story& story = d.story(text, a);
    d.frame(story, {0, 0, width, 300});
    std::vector<std::pair<double, double>> result;
    for (const SeenLine& line : linesOf(d.compose(story)))
        for (const GlyphRun& run : line.line->runs) {
            double x = line.line->x + run.x;
            const double start = x;
            for (const PlacedGlyph& glyph : run.glyphs) x += glyph.advance;
            result.emplace_back(start, x);
        }
    return result;
}

TEST(Tabs, WithoutStopsTextGoesOnAtTheNext36Points) {
    TextDocument d;
    const auto runs = runsOf(d, u"a\tb\t\tc", {});
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_NEAR(runs[1].first, 36, 1e-6);
    EXPECT_NEAR(runs[2].first, 108, 1e-6);
}

TEST(Tabs, StopsAlignWhatFollows) {
    TextDocument d;
    TextAttributes a;
    a.tabStops = std::vector<TabStop>{stop(50), stop(150, TabAlignment::Right), stop(250, TabAlignment::Center)};
    const auto runs = runsOf(d, u"a\tbb\tcc\tdd", a);
    ASSERT_EQ(runs.size(), 4u);
    EXPECT_NEAR(runs[1].first, 50, 1e-3);
    EXPECT_NEAR(runs[2].second, 150, 1e-3);
    EXPECT_NEAR((runs[3].first + runs[3].second) / 2, 250, 1e-3);
}

TEST(Tabs, CharacterStopAlignsTheCharacter) {
    TextDocument d;
    TextAttributes a;
    TabStop decimal = stop(100, TabAlignment::Character);
    decimal.alignmentCharacter = u",";
    a.tabStops = std::vector<TabStop>{decimal};
    EXPECT_NEAR(runsOf(d, u"\t12,345", a).at(0).first, 100 - widthOf(u"12"), 1e-2);
    EXPECT_NEAR(runsOf(d, u"\t777", a).at(0).second, 100, 1e-2);
}

TEST(Tabs, StopsOutOfOrderAreTakenByPosition) {
    TextDocument d;
    TextAttributes a;
    a.tabStops = std::vector<TabStop>{stop(200), stop(80)};
    EXPECT_NEAR(runsOf(d, u"\tx", a).at(0).first, 80, 1e-3);
}

TEST(Tabs, BehindTheLastStopTheUsualOnesGoOn) {
    TextDocument d;
    TextAttributes a;
    a.tabStops = std::vector<TabStop>{stop(50)};
    EXPECT_NEAR(runsOf(d, u"\t\tx", a).at(0).first, 72, 1e-3);
}

TEST(Tabs, RightAlignedTextThatDoesNotFitPushesOn) {
    TextDocument d;
    TextAttributes a;
    a.tabStops = std::vector<TabStop>{stop(60, TabAlignment::Right)};
    const auto runs = runsOf(d, u"long text\tmore text", a);
    EXPECT_NEAR(runs[1].first, runs[0].second, 1e-3);
}

TEST(Tabs, LeadersFillTheTabFromTheRight) {
    TextDocument d;
    TextAttributes a;
    a.tabStops = std::vector<TabStop>{stop(200, TabAlignment::Right, u".")};
    const auto runs = runsOf(d, u"a\t7", a);
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_NEAR(runs[1].second, runs[2].first, 1e-2);
    EXPECT_GE(runs[1].first, runs[0].second - 1e-6);
    EXPECT_LT(runs[1].first - runs[0].second, widthOf(u".") + 1e-6);
}

TEST(Tabs, ALeaderFillsASheetAndNotMore) {
    TextDocument d;
    TextAttributes a;
    a.tabStops = std::vector<TabStop>{stop(3e6, TabAlignment::Left, u".")};
    Story& story = d.story(u"\t", a);
    d.frame(story, {0, 0, 400, 300});
    size_t glyphs = 0;
    for (const SeenLine& line : linesOf(d.compose(story)))
        for (const GlyphRun& run : line.line->runs) glyphs += run.glyphs.size();
    EXPECT_GT(glyphs, 10'000u);
    EXPECT_LE(glyphs, 20'000u);
}

TEST(Tabs, LeadersOfLinesBelowStandAlike) {
    TextDocument d;
    TextAttributes a;
    a.tabStops = std::vector<TabStop>{stop(200, TabAlignment::Left, u".")};
    const auto runs = runsOf(d, u"a\tx\rlonger\tx", a);
    ASSERT_EQ(runs.size(), 6u);
    EXPECT_NEAR(std::fmod(runs[4].first - runs[1].first, widthOf(u".")), 0, 1e-2);
}

TEST(Tabs, RightIndentTabPutsTheRestAtTheRight) {
    TextDocument d;
    TextAttributes a;
    a.rightIndent = 30;
    const auto runs = runsOf(d, u"left" + std::u16string(1, marker::rightIndentTab) + u"right", a);
    EXPECT_NEAR(runs[1].second, 370, 1e-2);
}

TEST(Tabs, TextBehindATabThatDoesNotFitGoesToTheNextLine) {
    TextDocument d;
    const auto runs = runsOf(d, u"aaaa\tbbbb", {}, 45);
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_NEAR(runs[1].first, 0, 1e-6);
}

TEST(Tabs, JustificationStretchesOnlyBehindTheLastTab) {
    TextDocument d;
    TextAttributes a;
    a.justification = Justification::FullyJustified;
    const auto runs = runsOf(d, u"a b\tc d", a);
    EXPECT_NEAR(runs[0].second, widthOf(u"a") + widthOf(u" ") + widthOf(u"b"), 1e-3);
    EXPECT_NEAR(runs[1].second, 400, 1e-2);
}

TEST(Tabs, ParagraphOfTabsBreaksLikeAnyOther) {
    TextDocument d;
    Story& story = d.story(u"one\ttwo three four five six seven eight nine ten eleven twelve");
    d.frame(story, {0, 0, 100, 300});
    for (const SeenLine& line : linesOf(d.compose(story))) EXPECT_LE(line.right, 100.001);
}

}  // namespace
}  // namespace desk::testing
