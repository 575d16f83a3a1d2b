#include "desk/text/unicode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace desk::unicode {
namespace {

/// Where words are cut at spaces, the question over the spaces must agree with the whole algorithm.
TEST(Unicode, BreakAtASpaceAgreesWithTheWholeAlgorithm) {
    const std::u16string sample =
        u"aZ9.,;:!?-–—()[]{}«»„“”‚’'\"/%€$§&@*+=…·•\u00a0\u2007\u3001\u3002あァ漢\u0e01\u05d0\u0628\u2014\u2060";
    LineBreaks breaks;
    std::vector<uint32_t> positions;
    int asked = 0;
    for (const char16_t before : sample) {
        for (const char16_t after : sample) {
            const std::u16string text = u"x" + std::u16string(1, before) + u"  " + std::u16string(1, after) + u"x";
            breaks.find(text, "en", positions);
            const bool whole = std::find(positions.begin(), positions.end(), 4u) != positions.end();
            EXPECT_EQ(breaksAtSpaceBetween(before, after), whole)
                << std::hex << static_cast<int>(before) << " " << static_cast<int>(after);
            ++asked;
        }
    }
    EXPECT_GT(asked, 2500);
}

TEST(Unicode, LevelsFollowTheDirectionOfTheLetters) {
    std::vector<uint8_t> levels;
    EXPECT_FALSE(bidiLevels(u"abc 123", false, levels));
    EXPECT_TRUE(bidiLevels(u"ab \u05d0\u05d1", false, levels));
    EXPECT_EQ(levels, (std::vector<uint8_t>{0, 0, 0, 1, 1}));
    EXPECT_TRUE(bidiLevels(u"ab", true, levels));
    EXPECT_EQ(levels, (std::vector<uint8_t>{2, 2}));
}

TEST(Unicode, CaseMappingFollowsTheLanguage) {
    EXPECT_EQ(upperCase(u"straße", "de"), u"STRASSE");
    EXPECT_EQ(upperCase(u"i", "tr"), u"\u0130");
    EXPECT_EQ(lowerCase(u"ÄÖ", ""), u"äö");
}

TEST(Unicode, LoneSurrogateIsOneReplacementCharacter) {
    const std::u16string text{u'a', char16_t(0xD800), u'b', char16_t(0xD83D), char16_t(0xDE00)};
    EXPECT_EQ(codePointAt(text, 1).value, char32_t(0xFFFD));
    EXPECT_EQ(codePointAt(text, 1).units, 1u);
    EXPECT_EQ(codePointAt(text, 3).value, char32_t(0x1F600));
    EXPECT_EQ(codePointAt(text, 3).units, 2u);
}

TEST(Unicode, EncoderRefusesWhatItsSetLacks) {
    const auto latin = Encoder::make("ISO8859-1");
    ASSERT_TRUE(latin);
    std::string bytes;
    EXPECT_TRUE(latin->encode(u"ä", bytes));
    EXPECT_EQ(bytes, "\xe4");
    EXPECT_FALSE(latin->encode(u"\u0416", bytes));
    EXPECT_EQ(Encoder::make("no such set"), nullptr);
}

}  // namespace
}  // namespace desk::unicode
