// What comes out equal is the same object, and what is remembered never differs from what is composed anew.
#include <random>

#include "text_testing.h"

namespace desk::testing {
namespace {

TEST(Caching, ComposingAgainGivesTheSameObjects) {
    TextDocument d;
    Story& story = d.story(u"one\rtwo");
    PageItem& frame = d.frame(story, {0, 0, 100, 100});
    const auto first = d.composer().frameLayout(frame.uid);
    EXPECT_EQ(d.composer().frameLayout(frame.uid), first);
}

TEST(Caching, EqualTextInANewContentGivesTheSameFrame) {
    TextDocument d;
    Story& story = d.story(u"one\rtwo");
    PageItem& frame = d.frame(story, {0, 0, 100, 100});
    const auto first = d.composer().frameLayout(frame.uid);
    const uint64_t revision = story.revision();
    TextDocument::fill(story, u"one\rtwo", d.paragraph());
    ASSERT_NE(story.revision(), revision);
    EXPECT_EQ(d.composer().frameLayout(frame.uid), first);
}

TEST(Caching, UnchangedParagraphsOfAChangedStoryAreTheSame) {
    TextDocument d;
    Story& story = d.story(u"one\rtwo\rthree");
    PageItem& frame = d.frame(story, {0, 0, 100, 100});
    const auto first = d.composer().frameLayout(frame.uid);
    story.insert(5, u"wenty-t");
    const auto second = d.composer().frameLayout(frame.uid);
    ASSERT_NE(first, second);
    EXPECT_NE(first->serial, second->serial);
    EXPECT_EQ(first->paragraphs[0].paragraph, second->paragraphs[0].paragraph);
    EXPECT_NE(first->paragraphs[1].paragraph, second->paragraphs[1].paragraph);
    EXPECT_EQ(first->paragraphs[2].paragraph, second->paragraphs[2].paragraph);
}

TEST(Caching, EqualParagraphsOfTwoStoriesAreOne) {
    TextDocument d;
    Story& one = d.story(u"same");
    Story& two = d.story(u"same");
    PageItem& first = d.frame(one, {0, 0, 100, 100});
    PageItem& second = d.frame(two, {0, 200, 100, 300});
    EXPECT_EQ(d.composer().frameLayout(first.uid)->paragraphs[0].paragraph,
              d.composer().frameLayout(second.uid)->paragraphs[0].paragraph);
}

TEST(Caching, OtherFormatOrMeasureIsAnotherParagraph) {
    TextDocument d;
    TextAttributes bold;
    bold.fontStyle = "Bold";
    Story& one = d.story(u"same");
    Story& two = d.story(u"same", bold);
    Story& three = d.story(u"same");
    const auto a = d.composer().frameLayout(d.frame(one, {0, 0, 100, 100}).uid)->paragraphs[0].paragraph;
    const auto b = d.composer().frameLayout(d.frame(two, {0, 0, 100, 100}).uid)->paragraphs[0].paragraph;
    const auto c = d.composer().frameLayout(d.frame(three, {0, 0, 101, 100}).uid)->paragraphs[0].paragraph;
    EXPECT_NE(a, b);
    EXPECT_NE(a, c);
}

TEST(Caching, ForgettingMakesNewParagraphsAfterAStyleChanged) {
    TextDocument d;
    Style& style = d.document.addStyle(StyleKind::Paragraph, "Body", "ParagraphStyle/Body");
    style.text = TextDocument::usual();
    Story& story = d.story(u"x");
    story.setParagraphFormat(0, 1, d.document.paragraphFormatId({style.uid, {}}));
    d.frame(story, {0, 0, 100, 100});
    const double before = linesOf(d.compose(story))[0].right;
    style.text.pointSize = 20;
    d.document.stylesChanged();
    d.composer().forget();
    EXPECT_NEAR(linesOf(d.compose(story))[0].right, 2 * before, 1e-3);
}

TEST(Caching, ResizedFrameIsComposedAnewByItsRevision) {
    TextDocument d;
    Story& story = d.story(u"one two three");
    PageItem& frame = d.frame(story, {0, 0, 300, 100});
    ASSERT_EQ(textsOf(d.compose(story)).size(), 1u);
    frame.path = rectanglePath({0, 0, 20, 100});
    ++frame.revision;
    EXPECT_GT(textsOf(d.compose(story)).size(), 2u);
}

TEST(Caching, MemoryOfParagraphsIsBounded) {
    TextDocument d;
    Composer small(d.document, fonts(), {"/usr/share/hyphen", 8, 4});
    Story& story = d.story(u"start");
    PageItem& frame = d.frame(story, {0, 0, 100, 100});
    const auto first = small.frameLayout(frame.uid)->paragraphs[0].paragraph;
    for (int i = 0; i < 40; ++i) {
        TextDocument::fill(story,
                           u"word" + std::u16string(1, static_cast<char16_t>(u'a' + i % 26)) + u"x" +
                               std::u16string(static_cast<size_t>(i), u'y'),
                           d.paragraph());
        small.compose(story.uid);
    }
    TextDocument::fill(story, u"start", d.paragraph());
    const auto again = small.frameLayout(frame.uid)->paragraphs[0].paragraph;
    EXPECT_NE(again, first);
    EXPECT_EQ(again->text, first->text);
}

bool sameGlyphs(const LayoutLine& a, const LayoutLine& b) {
    if (a.textStart != b.textStart || a.textLength != b.textLength || a.runs.size() != b.runs.size()) return false;
    for (size_t r = 0; r < a.runs.size(); ++r) {
        const GlyphRun& x = a.runs[r];
        const GlyphRun& y = b.runs[r];
        if (x.face != y.face || x.size != y.size || x.x != y.x || x.glyphs.size() != y.glyphs.size()) return false;
        for (size_t g = 0; g < x.glyphs.size(); ++g)
            if (x.glyphs[g].glyph != y.glyphs[g].glyph || x.glyphs[g].advance != y.glyphs[g].advance ||
                x.glyphs[g].textStart != y.glyphs[g].textStart)
                return false;
    }
    return true;
}

TEST(Caching, WhatIsRememberedEqualsWhatIsComposedAnewAfterAnyEdits) {
    TextDocument d;
    TextAttributes a;
    a.hyphenation = true;
    a.justification = Justification::LeftJustified;
    Story& story =
        d.story(u"The quick brown fox jumps over the lazy dog while international organisations deliberate.", a);
    d.frame(story, {0, 0, 120, 60});
    d.frame(story, {200, 0, 290, 300});
    TextAttributes bold;
    bold.fontStyle = "Bold";
    const CharacterFormatId boldFormat = d.character(bold);
    const std::vector<std::u16string> inserts = {u" hyphenation",     u"\r", u" fi", u"\u00ad",        u" \u2028",
                                                 u" very long words", u"-",  u"\t",  u" \u05d0\u05d1", u"\u00a0"};
    Composer remembering(d.document, fonts(), {"/usr/share/hyphen", 64, 8});
    std::mt19937 random(99);
    for (int round = 0; round < 250; ++round) {
        const int32_t length = story.content().length();
        const int32_t at = static_cast<int32_t>(random() % static_cast<unsigned>(length));
        switch (random() % 4) {
            case 0:
                story.erase(at, static_cast<int32_t>(random() % 12));
                break;
            case 1:
                story.setCharacterFormat(at, static_cast<int32_t>(random() % 9), random() % 2 ? boldFormat : 0);
                break;
            default:
                story.insert(at, inserts[random() % inserts.size()]);
                break;
        }
        const StoryLayout& kept = remembering.compose(story.uid);
        Composer fresh(d.document, fonts());
        const StoryLayout& anew = fresh.compose(story.uid);
        ASSERT_EQ(kept.overset, anew.overset) << round;
        ASSERT_EQ(kept.composedLength, anew.composedLength) << round;
        const auto left = linesOf(kept), right = linesOf(anew);
        ASSERT_EQ(left.size(), right.size()) << round;
        for (size_t i = 0; i < left.size(); ++i) {
            ASSERT_EQ(left[i].text, right[i].text) << round;
            ASSERT_EQ(left[i].baseline, right[i].baseline) << round;
            ASSERT_TRUE(sameGlyphs(*left[i].line, *right[i].line)) << round << " line " << i;
        }
    }
}

TEST(Caching, TextOfAThreadIsShownWithoutGapsAfterAnyEdits) {
    TextDocument d;
    Story& story =
        d.story(u"Start of a text that goes through three frames of different widths and never loses a letter");
    d.frame(story, {0, 0, 90, 40});
    d.frame(story, {200, 0, 320, 30});
    d.frame(story, {400, 0, 460, 500});
    std::mt19937 random(4);
    for (int round = 0; round < 200; ++round) {
        const int32_t length = story.content().length();
        const int32_t at = static_cast<int32_t>(random() % static_cast<unsigned>(length));
        if (random() % 3 == 0)
            story.erase(at, static_cast<int32_t>(random() % 20));
        else
            story.insert(at, random() % 4 == 0 ? u"\r" : u" inserted words");
        const StoryLayout& layout = d.compose(story);
        int32_t next = 0;
        for (const auto& frame : layout.frames) {
            EXPECT_EQ(frame->textStart, next) << round;
            next = frame->textStart + frame->textLength;
        }
        EXPECT_EQ(next, layout.composedLength);
        EXPECT_EQ(layout.overset, layout.composedLength < story.content().length());
    }
}

}  // namespace
}  // namespace desk::testing
