#include "desk/text/hyphenation.h"

#include "desk/text/language.h"
#include "text_testing.h"

namespace desk::testing {
namespace {

std::u16string hyphenated(Hyphenator& hyphenator, const std::u16string& text, const std::string& language) {
    std::vector<HyphenPoint> points;
    hyphenator.find(text, hyphenator.language(language), points);
    std::u16string result = text;
    for (size_t i = points.size(); i-- > 0;) result.insert(points[i].offset, u"-");
    return result;
}

TEST(Hyphenation, FollowsTheDictionaryOfTheLanguage) {
    Hyphenator h("/usr/share/hyphen");
    EXPECT_EQ(hyphenated(h, u"technology", "$ID/English: USA"), u"tech-nol-ogy");
    EXPECT_EQ(hyphenated(h, u"CHECKING", "$ID/English: USA"), u"CHECK-ING");
    EXPECT_EQ(hyphenated(h, u"Bürgermeisterämter", "$ID/German: 2006 Reform"), u"Bür-ger-meis-ter-äm-ter");
    EXPECT_EQ(hyphenated(h, u"imprimerie", "$ID/French"), u"im-pri-me-rie");
}

TEST(Hyphenation, EachWordOfATextHasItsOwnPoints) {
    Hyphenator h("/usr/share/hyphen");
    std::vector<HyphenPoint> points;
    h.find(u"(window-sticker),", h.language("$ID/English: USA"), points);
    ASSERT_FALSE(points.empty());
    EXPECT_EQ(points[0].offset, 4);
    EXPECT_EQ(points[0].lettersBefore, 3);
    EXPECT_EQ(points[0].lettersAfter, 3);
}

TEST(Hyphenation, UnknownLanguageAndMissingFolderHyphenateNothing) {
    Hyphenator h("/usr/share/hyphen"), nowhere("/nowhere");
    EXPECT_EQ(hyphenated(h, u"technology", "$ID/[No Language]"), u"technology");
    EXPECT_EQ(hyphenated(h, u"technology", "$ID/Martian"), u"technology");
    EXPECT_EQ(hyphenated(nowhere, u"technology", "$ID/English: USA"), u"technology");
}

TEST(Hyphenation, CharactersOutsideTheDictionarysSetDoNoHarm) {
    Hyphenator h("/usr/share/hyphen");
    EXPECT_EQ(hyphenated(h, u"Москва", "$ID/German: 2006 Reform"), u"Москва");
}

TEST(Hyphenation, LanguageNamesOfDocumentsAreKnown) {
    EXPECT_EQ(languageNamed("$ID/English: USA").tag, "en-US");
    EXPECT_EQ(languageNamed("Language/$ID/English%3a UK").tag, "en-GB");
    EXPECT_EQ(languageNamed("$ID/German: Swiss 2006 Reform").tag, "de-CH");
    EXPECT_EQ(languageNamed("$ID/de_DE_2006").tag, "de-DE");
    EXPECT_EQ(languageNamed("$ID/Portuguese: Brazilian").tag, "pt-BR");
    EXPECT_EQ(languageNamed("$ID/[No Language]").tag, "");
    EXPECT_EQ(languageNamed("$ID/French").dictionaries.front(), "hyph_fr_FR");
}

/// The narrowest frame that shows the word's first line as `head`; its line texts.
std::vector<std::u16string> divided(const std::u16string& text, const TextAttributes& more,
                                    const std::u16string& head) {
    TextDocument d;
    TextAttributes a;
    a.hyphenation = true;
    a.overlay(more);
    Story& story = d.story(text, a);
    d.frame(story, {0, 0, widthOf(head) + 0.5, 500});
    return textsOf(d.compose(story));
}

using Lines = std::vector<std::u16string>;

TEST(Hyphenation, HyphenStandsAtTheLinesEndAsAHyphenMinus) {
    EXPECT_EQ(divided(u"a technology", {}, u"a technol-"), (Lines{u"a technol-", u"ogy"}));
}

TEST(Hyphenation, LimitsOfTheParagraphHold) {
    TextAttributes a;
    a.hyphenateBeforeLast = 4;
    EXPECT_EQ(divided(u"a technology", a, u"a technol-"), (Lines{u"a tech-", u"nology"}));
    a = {};
    a.hyphenateAfterFirst = 5;
    EXPECT_EQ(divided(u"my technology", a, u"my tech-x"), (Lines{u"my", u"technol-", u"ogy"}));
    a = {};
    a.hyphenateWordsLongerThan = 11;
    EXPECT_EQ(divided(u"a technology", a, u"technology"), (Lines{u"a", u"technology"}));
    a = {};
    a.hyphenateCapitalizedWords = false;
    EXPECT_EQ(divided(u"a Technology b", a, u"Technology"), (Lines{u"a", u"Technology", u"b"}));
    a = {};
    a.hyphenateLastWord = false;
    EXPECT_EQ(divided(u"a technology", a, u"technology"), (Lines{u"a", u"technology"}));
}

TEST(Hyphenation, SwitchedOffDividesNothing) {
    TextAttributes a;
    a.hyphenation = false;
    EXPECT_EQ(divided(u"a technology", a, u"technology"), (Lines{u"a", u"technology"}));
}

TEST(Hyphenation, WordOfTwoStylesIsDividedToo) {
    TextDocument d;
    TextAttributes a;
    a.hyphenation = true;
    Story& story = d.story(u"technology", a);
    TextAttributes color;
    color.fillColor = "Color/Red";
    story.setCharacterFormat(0, 4, d.character(color));
    d.frame(story, {0, 0, widthOf(u"technol-") + 0.5, 500});
    EXPECT_EQ(textsOf(d.compose(story)), (Lines{u"technol-", u"ogy"}));
    PageItem& frame = *d.document.item(d.document.framesOfStory(story.uid)[0]);
    frame.path = rectanglePath({0, 0, widthOf(u"tech-") + 0.5, 500});
    ++frame.revision;
    EXPECT_EQ(textsOf(d.compose(story))[0], u"tech-");
}

TEST(Hyphenation, GlyphsOfAHyphenatedLineFillItToTheMeasure) {
    TextDocument d;
    TextAttributes a;
    a.hyphenation = true;
    a.justification = Justification::LeftJustified;
    a.language = "$ID/German: 2006 Reform";
    Story& story = d.story(
        u"Bürgermeisterämter und Donaudampfschifffahrtsgesellschaften verhandelten wochenlang über die "
        u"Straßenbeleuchtungsverordnung der Nachbargemeinden.",
        a);
    d.frame(story, {0, 0, 110, 500});
    const auto lines = linesOf(d.compose(story));
    bool any = false;
    for (size_t i = 0; i + 1 < lines.size(); ++i) {
        any = any || lines[i].text.back() == u'-';
        const double letters = lines[i].line->runs.back().letterSpacing;
        EXPECT_NEAR(lines[i].right - letters, 110, 0.01) << i;
    }
    EXPECT_TRUE(any);
}

}  // namespace
}  // namespace desk::testing
