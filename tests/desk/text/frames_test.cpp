// Filling of frames: columns, insets, first baselines, leading, overset, threads, breaks, keeping together.
#include "desk/text/text_columns.h"
#include "text_testing.h"

namespace desk::testing {
namespace {

const std::u16string kLong =
    u"Lorem ipsum dolor sit amet, consectetur adipiscing elit, sed do eiusmod tempor incididunt ut labore et dolore "
    u"magna "
    u"aliqua, quis nostrud exercitation ullamco laboris nisi ut aliquip ex ea commodo consequat. Duis aute irure dolor "
    u"in "
    u"reprehenderit in voluptate velit esse cillum dolore eu fugiat nulla pariatur.";

double ascent(double size = 10) {
    return fonts().face("Liberation Sans", "Regular").ascent() * size / 1000;
}

std::vector<double> baselinesOf(const StoryLayout& layout) {
    std::vector<double> result;
    for (const SeenLine& line : linesOf(layout)) result.push_back(line.baseline);
    return result;
}

std::u16string lines(int count) {
    std::u16string text;
    for (int i = 0; i < count; ++i) text += (i ? u"\r" : u"") + std::u16string(1, static_cast<char16_t>(u'a' + i));
    return text;
}

TEST(Frames, FirstBaselineLiesAnAscentBelowTheTop) {
    TextDocument d;
    Story& story = d.story(u"a\rb");
    d.frame(story, {50, 100, 250, 200});
    const auto found = baselinesOf(d.compose(story));
    EXPECT_NEAR(found[0], 100 + ascent(), 1e-6);
    EXPECT_NEAR(found[1] - found[0], 12, 1e-6);
}

TEST(Frames, FirstBaselineFollowsTheFramesRule) {
    const FontFace& face = fonts().face("Liberation Sans", "Regular");
    const std::vector<std::pair<FirstBaseline, double>> rules = {{FirstBaseline::AscentOffset, face.ascent() / 100},
                                                                 {FirstBaseline::CapHeight, face.capHeight() / 100},
                                                                 {FirstBaseline::XHeight, face.xHeight() / 100},
                                                                 {FirstBaseline::LeadingOffset, 12},
                                                                 {FirstBaseline::EmboxHeight, 10},
                                                                 {FirstBaseline::FixedHeight, 3}};
    for (const auto& [rule, offset] : rules) {
        TextDocument d;
        Story& story = d.story(u"a");
        PageItem& frame = d.frame(story, {0, 0, 200, 100});
        frame.frameOptions.firstBaseline = rule;
        frame.frameOptions.minimumFirstBaseline = 3;
        EXPECT_NEAR(baselinesOf(d.compose(story))[0], offset, 1e-6) << static_cast<int>(rule);
    }
}

TEST(Frames, MinimumFirstBaselineHolds) {
    TextDocument d;
    Story& story = d.story(u"a");
    d.frame(story, {0, 0, 200, 100}).frameOptions.minimumFirstBaseline = 33;
    EXPECT_NEAR(baselinesOf(d.compose(story))[0], 33, 1e-6);
}

TEST(Frames, LeadingOfTheFirstLineDoesNotMoveIt) {
    TextDocument d;
    TextAttributes a;
    a.leading = Leading{false, 30};
    Story& story = d.story(u"a\rb", a);
    d.frame(story, {0, 0, 200, 100});
    const auto found = baselinesOf(d.compose(story));
    EXPECT_NEAR(found[0], ascent(), 1e-6);
    EXPECT_NEAR(found[1] - found[0], 30, 1e-6);
}

TEST(Frames, LineTakesTheLargestLeadingInIt) {
    TextDocument d;
    Story& story = d.story(u"aaa\rbbb\rccc");
    TextAttributes big;
    big.pointSize = 20;
    story.setCharacterFormat(5, 1, d.character(big));
    d.frame(story, {0, 0, 200, 100});
    const auto found = baselinesOf(d.compose(story));
    EXPECT_NEAR(found[1] - found[0], 24, 1e-6);
    EXPECT_NEAR(found[2] - found[1], 12, 1e-6);
}

TEST(Frames, ParagraphLeadingRulesAllLinesWhenPreferred) {
    TextDocument d;
    d.document.preferences.useParagraphLeading = true;
    Story& story = d.story(u"aaa\u2028bbb\u2028ccc");
    TextAttributes big;
    big.pointSize = 20;
    story.setCharacterFormat(5, 1, d.character(big));
    d.frame(story, {0, 0, 200, 100});
    const auto found = baselinesOf(d.compose(story));
    EXPECT_NEAR(found[1] - found[0], 24, 1e-6);
    EXPECT_NEAR(found[2] - found[1], 24, 1e-6);
}

TEST(Frames, SuperscriptDoesNotChangeTheLeading) {
    TextDocument d;
    Story& story = d.story(u"a\rb2\rc");
    TextAttributes raised;
    raised.position = CharacterPosition::Superscript;
    story.setCharacterFormat(3, 1, d.character(raised));
    d.frame(story, {0, 0, 200, 100});
    const auto found = baselinesOf(d.compose(story));
    EXPECT_NEAR(found[1] - found[0], 12, 1e-6);
    EXPECT_NEAR(found[2] - found[1], 12, 1e-6);
}

TEST(Frames, InsetsAndHalfTheStrokeNarrowTheText) {
    TextDocument d;
    Story& story = d.story(kLong);
    PageItem& frame = d.frame(story, {0, 0, 200, 400});
    frame.frameOptions.insetTop = 7;
    frame.frameOptions.insetLeft = 5;
    frame.frameOptions.insetRight = 3;
    frame.attributes.strokeWeight = 4;
    const auto found = linesOf(d.compose(story));
    EXPECT_NEAR(found[0].x, 7, 1e-6);
    EXPECT_NEAR(found[0].measure, 200 - 8 - 4, 1e-6);
    EXPECT_NEAR(found[0].baseline, 9 + ascent(), 1e-6);
}

TEST(Frames, InsideStrokeNarrowsFullyAndOutsideStrokeNotAtAll) {
    for (const auto& [alignment, measure] : {std::pair{1, 192.0}, std::pair{2, 200.0}}) {
        TextDocument d;
        Story& story = d.story(u"a");
        PageItem& frame = d.frame(story, {0, 0, 200, 400});
        frame.attributes.strokeWeight = 4;
        frame.attributes.strokeAlignment = alignment;
        EXPECT_NEAR(linesOf(d.compose(story))[0].measure, measure, 1e-6);
    }
}

TEST(Frames, SpaceBetweenParagraphsAddsUpButNotAtTheTop) {
    TextDocument d;
    TextAttributes a;
    a.spaceBefore = 5;
    a.spaceAfter = 7;
    Story& story = d.story(u"a\rb", a);
    d.frame(story, {0, 0, 200, 100});
    const auto found = baselinesOf(d.compose(story));
    EXPECT_NEAR(found[0], ascent(), 1e-6);
    EXPECT_NEAR(found[1] - found[0], 24, 1e-6);
}

TEST(Frames, LineFitsDownToItsBaseline) {
    TextDocument d;
    Story& story = d.story(u"a\rb");
    PageItem& frame = d.frame(story, {0, 0, 200, ascent() + 12});
    EXPECT_FALSE(d.compose(story).overset);
    frame.path = rectanglePath({0, 0, 200, ascent() + 11.99});
    ++frame.revision;
    const StoryLayout& layout = d.compose(story);
    EXPECT_TRUE(layout.overset);
    EXPECT_EQ(layout.composedLength, 2);
    EXPECT_EQ(layout.frames[0]->textLength, 2);
}

TEST(Frames, StoryWithoutFramesIsOversetUnlessEmpty) {
    TextDocument d;
    Story& story = d.story(u"a");
    EXPECT_TRUE(d.compose(story).overset);
    EXPECT_TRUE(d.compose(story).frames.empty());
    Story& empty = d.story(u"");
    EXPECT_FALSE(d.compose(empty).overset);
}

TEST(Frames, EmptyStoryIsNeverOverset) {
    TextDocument d;
    Story& story = d.story(u"");
    d.frame(story, {0, 0, 10, 1});
    EXPECT_FALSE(d.compose(story).overset);
}

TEST(Frames, FrameNarrowerThanALetterIsOverset) {
    TextDocument d;
    Story& story = d.story(u"mm");
    d.frame(story, {0, 0, 3, 100});
    const StoryLayout& layout = d.compose(story);
    EXPECT_TRUE(layout.overset);
    EXPECT_EQ(layout.composedLength, 0);
}

TEST(Frames, ColumnsDivideTheWidthAndFillInOrder) {
    TextDocument d;
    Story& story = d.story(lines(7));
    PageItem& frame = d.frame(story, {0, 0, 320, ascent() + 24});
    frame.frameOptions.columnCount = 3;
    frame.frameOptions.columnGutter = 10;
    const auto found = linesOf(d.compose(story));
    ASSERT_EQ(found.size(), 7u);
    EXPECT_NEAR(found[0].measure, 100, 1e-6);
    EXPECT_NEAR(found[3].x, 110, 1e-6);
    EXPECT_NEAR(found[6].x, 220, 1e-6);
    EXPECT_NEAR(found[3].baseline, found[0].baseline, 1e-6);
}

TEST(Frames, ThreadGoesOnInTheNextFrame) {
    TextDocument d;
    Story& story = d.story(lines(3));
    d.frame(story, {0, 0, 100, ascent() + 12});
    d.frame(story, {200, 50, 300, 100});
    const StoryLayout& layout = d.compose(story);
    ASSERT_EQ(layout.frames.size(), 2u);
    EXPECT_EQ(layout.frames[0]->textStart, 0);
    EXPECT_EQ(layout.frames[0]->textLength, 4);
    EXPECT_EQ(layout.frames[1]->textStart, 4);
    EXPECT_EQ(layout.frames[1]->textLength, 2);
    EXPECT_NEAR(linesOf(*layout.frames[1])[0].baseline, 50 + ascent(), 1e-6);
    EXPECT_FALSE(layout.overset);
}

TEST(Frames, EmptyFrameOfAThreadHasALayoutWithoutText) {
    TextDocument d;
    Story& story = d.story(u"a");
    d.frame(story, {0, 0, 100, 50});
    PageItem& second = d.frame(story, {0, 60, 100, 90});
    const auto layout = d.composer().frameLayout(second.uid);
    ASSERT_TRUE(layout);
    EXPECT_TRUE(layout->paragraphs.empty());
    EXPECT_EQ(layout->textStart, 2);
    EXPECT_EQ(layout->textLength, 0);
}

TEST(Frames, ParagraphThatCrossesIntoAnotherMeasureIsBrokenForBoth) {
    TextDocument d;
    Story& story = d.story(kLong);
    d.frame(story, {0, 0, 150, ascent() + 36});
    d.frame(story, {200, 0, 320, 600});
    const StoryLayout& layout = d.compose(story);
    const auto first = linesOf(*layout.frames[0]), second = linesOf(*layout.frames[1]);
    ASSERT_EQ(first.size(), 4u);
    ASSERT_GT(second.size(), 3u);
    std::u16string all;
    for (const SeenLine& line : first) {
        EXPECT_NEAR(line.measure, 150, 1e-6);
        EXPECT_LE(line.right, 150.001);
        all += line.text;
    }
    for (const SeenLine& line : second) {
        EXPECT_NEAR(line.measure, 120, 1e-6);
        EXPECT_LE(line.right, 320.001);
        all += line.text;
    }
    EXPECT_EQ(all, kLong);
    EXPECT_EQ(layout.frames[0]->paragraphs[0].paragraph, layout.frames[1]->paragraphs[0].paragraph);
}

TEST(Frames, VerticalJustificationMovesTheBlock) {
    const double height = 100, last = ascent() + 24;
    const std::vector<std::pair<VerticalJustification, std::vector<double>>> expected = {
        {VerticalJustification::Top, {ascent(), ascent() + 12, last}},
        {VerticalJustification::Center,
         {ascent() + (height - last) / 2, ascent() + 12 + (height - last) / 2, last + (height - last) / 2}},
        {VerticalJustification::Bottom, {height - 24, height - 12, height}},
        {VerticalJustification::Justify, {ascent(), (ascent() + height) / 2, height}}};
    for (const auto& [kind, baselines] : expected) {
        TextDocument d;
        Story& story = d.story(lines(3));
        d.frame(story, {0, 0, 100, height}).frameOptions.verticalJustification = kind;
        const auto found = baselinesOf(d.compose(story));
        for (size_t i = 0; i < 3; ++i) EXPECT_NEAR(found[i], baselines[i], 1e-6) << static_cast<int>(kind) << " " << i;
    }
}

TEST(Frames, JustifiedFrameGivesParagraphsTheirShareFirst) {
    TextDocument d;
    Story& story = d.story(u"a\u2028b\rc");
    PageItem& frame = d.frame(story, {0, 0, 100, ascent() + 24 + 10});
    frame.frameOptions.verticalJustification = VerticalJustification::Justify;
    frame.frameOptions.verticalThreshold = 20;
    const auto found = baselinesOf(d.compose(story));
    EXPECT_NEAR(found[1] - found[0], 12, 1e-6);
    EXPECT_NEAR(found[2] - found[1], 22, 1e-6);
}

TEST(Frames, BreakCharactersSendTheTextOn) {
    TextDocument d;
    d.addPage("2");
    Story& story = d.story(u"a\rb\rc\rd");
    PageItem& first = d.frame(story, {0, 0, 210, 100});
    first.frameOptions.columnCount = 2;
    d.frame(story, {300, 0, 400, 100});
    d.frame(story, {700, 0, 800, 100});  // on the second page
    const auto breakWith = [&](int32_t position, ParagraphBreak kind) {
        TextAttributes a;
        a.paragraphBreak = kind;
        story.setCharacterFormat(position, 1, d.character(a));
    };
    breakWith(1, ParagraphBreak::NextColumn);
    breakWith(3, ParagraphBreak::NextFrame);
    breakWith(5, ParagraphBreak::NextPage);
    const auto found = linesOf(d.compose(story));
    ASSERT_EQ(found.size(), 4u);
    EXPECT_NEAR(found[1].x, 111, 1e-6);
    EXPECT_NEAR(found[2].x, 300, 1e-6);
    EXPECT_NEAR(found[3].x, 700, 1e-6);
}

TEST(Frames, BreakToAFrameThatIsNotThereOversets) {
    TextDocument d;
    Story& story = d.story(u"a\rb");
    TextAttributes a;
    a.paragraphBreak = ParagraphBreak::NextFrame;
    story.setCharacterFormat(1, 1, d.character(a));
    d.frame(story, {0, 0, 100, 100});
    const StoryLayout& layout = d.compose(story);
    EXPECT_TRUE(layout.overset);
    EXPECT_EQ(layout.composedLength, 2);
}

TEST(Frames, ParagraphStartsWhereItsStyleWants) {
    TextDocument d;
    d.addPage("2");
    d.addPage("3");
    Story& story = d.story(u"a\rb");
    TextAttributes a = TextDocument::usual();
    a.startParagraph = ParagraphBreak::NextOddPage;
    story.setParagraphFormat(2, 1, d.paragraph(a));
    for (int page = 0; page < 3; ++page) d.frame(story, {page * 620.0, 0, page * 620.0 + 100, 100});
    const auto found = linesOf(d.compose(story));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_NEAR(found[1].x, 1240, 1e-6);
}

TEST(Frames, LinesKeptTogetherLeaveNoWidowAndNoOrphan) {
    for (const int room : {1, 2, 3, 4}) {
        TextDocument d;
        TextAttributes a;
        a.keepLinesTogether = true;
        Story& story = d.story(u"x\ra\u2028b\u2028c\u2028d", a);
        d.frame(story, {0, 0, 100, ascent() + 12.0 * room});  // the first paragraph and `room` lines
        d.frame(story, {200, 0, 300, 300});
        const size_t here = linesOf(*d.compose(story).frames[0]).size() - 1;
        EXPECT_EQ(here, room == 1 ? 0u : room == 4 ? 4u : 2u) << room;
    }
}

TEST(Frames, ParagraphKeptWholeMovesOnAsAWhole) {
    TextDocument d;
    TextAttributes a;
    a.keepAllLinesTogether = true;
    Story& story = d.story(u"x\ra\u2028b\u2028c", a);
    d.frame(story, {0, 0, 100, ascent() + 24});
    d.frame(story, {200, 0, 300, 300});
    EXPECT_EQ(linesOf(*d.compose(story).frames[0]).size(), 1u);
    EXPECT_EQ(linesOf(*d.compose(story).frames[1]).size(), 3u);
}

TEST(Frames, ParagraphTooLongForAnyColumnIsDividedInSpiteOfKeeping) {
    TextDocument d;
    TextAttributes a;
    a.keepAllLinesTogether = true;
    Story& story = d.story(u"a\u2028b\u2028c\u2028d", a);
    d.frame(story, {0, 0, 100, ascent() + 12});
    d.frame(story, {200, 0, 300, ascent() + 12});
    EXPECT_FALSE(d.compose(story).overset);
}

TEST(Frames, HeadingGoesOnWithTheParagraphThatFollowsIt) {
    TextDocument d;
    Story& story = d.story(u"x\rHead\rbody");
    TextAttributes heading = TextDocument::usual();
    heading.keepWithNext = 1;
    story.setParagraphFormat(2, 1, d.paragraph(heading));
    d.frame(story, {0, 0, 100, ascent() + 12});
    d.frame(story, {200, 0, 300, 300});
    const StoryLayout& layout = d.compose(story);
    EXPECT_EQ(linesOf(*layout.frames[0]).size(), 1u);
    EXPECT_EQ(linesOf(*layout.frames[1])[0].text, u"Head");
}

TEST(Frames, TextAvoidsABoxThatItWrapsAround) {
    TextDocument d;
    Story& story = d.story(kLong);
    d.frame(story, {0, 0, 200, 400});
    PageItem& box = d.box({0, 20, 80, 60});
    box.wrap = {TextWrapMode::BoundingBox, 2, 2, 2, 6};
    bool beside = false;
    for (const SeenLine& line : linesOf(d.compose(story))) {
        const bool overlaps = line.baseline - ascent() < 62 && line.baseline > 18;
        if (overlaps)
            EXPECT_GE(line.x, 86 - 1e-6);
        else
            EXPECT_NEAR(line.x, 0, 1e-6);
        beside = beside || overlaps;
        EXPECT_LE(line.right, 200.001);
    }
    EXPECT_TRUE(beside);
}

TEST(Frames, JumpedObjectLeavesNoTextBesideIt) {
    TextDocument d;
    Story& story = d.story(kLong);
    d.frame(story, {0, 0, 200, 400});
    d.box({0, 20, 80, 60}).wrap.mode = TextWrapMode::JumpObject;
    for (const SeenLine& line : linesOf(d.compose(story))) {
        EXPECT_FALSE(line.baseline - ascent() < 60 - 1e-6 && line.baseline > 20 + 1e-6) << line.baseline;
        EXPECT_NEAR(line.x, 0, 1e-6);
    }
}

TEST(Frames, FrameThatIgnoresWrapIsNotDisturbed) {
    TextDocument d;
    Story& story = d.story(kLong);
    d.frame(story, {0, 0, 200, 400}).frameOptions.ignoreWrap = true;
    d.box({0, 20, 80, 60}).wrap.mode = TextWrapMode::BoundingBox;
    for (const SeenLine& line : linesOf(d.compose(story))) EXPECT_NEAR(line.x, 0, 1e-6);
}

TEST(Frames, TextStaysInsideAShape) {
    TextDocument d;
    Story& story = d.story(kLong);
    PageItem& frame = d.frame(story, {0, 0, 200, 400});
    const auto corner = [](double x, double y) { return PathPoint{{x, y}, {x, y}, {x, y}}; };
    frame.path = {Contour{{corner(100, 0), corner(0, 400), corner(200, 400)}, false}};  // a triangle, narrow on top
    const auto found = linesOf(d.compose(story));
    ASSERT_GT(found.size(), 3u);
    for (const SeenLine& line : found) {
        const double half = (line.baseline - ascent()) / 4;
        EXPECT_GE(line.x, 100 - half - 0.1);
        EXPECT_LE(line.right, 100 + half + 0.1);
    }
    EXPECT_LT(found.front().measure, found.back().measure);
}

TEST(Frames, AShapeOfAnyHeightIsSearchedInAFewSteps) {
    TextColumn column;
    column.area = {0, 0, 100, 1e8};
    column.contours = {{{0, 0}, {5, 0}, {5, 1e8}, {0, 1e8}}};
    const SpanAnswer answer = spanIn(column, 10, 20);
    EXPECT_FALSE(answer.hasRoom);
    EXPECT_GE(answer.tryAgainAt, 1e8 / 100'000);
    column.area.bottom = 800;
    EXPECT_EQ(spanIn(column, 10, 20).tryAgainAt, 11);
}

TEST(Frames, BaselinesStandOnTheDocumentsGrid) {
    TextDocument d;
    d.document.preferences.baselineGridStart = 5;
    d.document.preferences.baselineGridDivision = 14;
    TextAttributes a;
    a.alignToBaselineGrid = true;
    Story& story = d.story(u"a\rb\rc", a);
    d.frame(story, {0, 0, 100, 200});
    for (const double baseline : baselinesOf(d.compose(story)))
        EXPECT_NEAR(std::fmod(baseline - 5, 14), 0, 1e-6) << baseline;
}

TEST(Frames, PageNumbersAreThoseOfTheFramesPage) {
    TextDocument d;
    d.addPage("ii");
    const std::u16string text = u"page " + std::u16string(1, marker::pageNumber);
    Story& one = d.story(text);
    d.frame(one, {0, 0, 100, 50});
    Story& two = d.story(text);
    d.frame(two, {700, 0, 800, 50});
    EXPECT_EQ(textsOf(d.compose(one))[0], u"page 1");
    EXPECT_EQ(textsOf(d.compose(two))[0], u"page ii");
}

TEST(Frames, ContinuationNamesThePagesOfTheNeighbours) {
    TextDocument d;
    d.addPage("2");
    const std::u16string text =
        u"to " + std::u16string(1, marker::nextPageNumber) + u"\rfrom " + std::u16string(1, marker::previousPageNumber);
    Story& story = d.story(text);
    d.frame(story, {0, 0, 100, ascent() + 1});
    d.frame(story, {700, 0, 800, 50});
    EXPECT_EQ(textsOf(d.compose(story)), (std::vector<std::u16string>{u"to 2", u"from 1"}));
}

}  // namespace
}  // namespace desk::testing
