#include "desk/fonts/font_face.h"

#include <gtest/gtest.h>

#include "desk/fonts/font_samples.h"

namespace {

using namespace desk;
using samples::feature;
using samples::shape;
using samples::width;

const FontFace& serif() {
    return samples::machine().face("Liberation Serif", "Regular");
}

// The expected figures were read from the files' tables with another program.
TEST(FontFace, TellsTheTablesMetricsInThousandthsOfAnEm) {
    const FontFace& face = serif();
    ASSERT_EQ(face.family(), "Liberation Serif");
    EXPECT_EQ(face.style(), "Regular");
    EXPECT_EQ(face.postScriptName(), "LiberationSerif");
    EXPECT_EQ(face.outlineFormat(), OutlineFormat::TrueType);
    EXPECT_NEAR(face.ascent(), 693.359, 0.001);
    EXPECT_NEAR(face.descent(), -215.820, 0.001);
    EXPECT_NEAR(face.capHeight(), 654.785, 0.001);
    EXPECT_NEAR(face.xHeight(), 458.984, 0.001);
    EXPECT_NEAR(face.underlinePosition(), -60.059, 0.001);
    EXPECT_NEAR(face.underlineThickness(), 48.828, 0.001);
    EXPECT_NEAR(face.boundingBox(0), -176.758, 0.001);
    EXPECT_NEAR(face.boundingBox(1), -303.223, 0.001);
    EXPECT_NEAR(face.boundingBox(2), 1006.836, 0.001);
    EXPECT_NEAR(face.boundingBox(3), 981.445, 0.001);
    EXPECT_EQ(face.italicAngle(), 0);
    EXPECT_EQ(face.weight(), 400);
    EXPECT_TRUE(face.isSerif());
    EXPECT_FALSE(face.isFixedPitch());
    EXPECT_TRUE(face.embeddingAllowed());
    EXPECT_EQ(face.glyphForCharacter('A'), 36u);
    EXPECT_NEAR(face.glyphAdvance(36), 722.168, 0.001);
    EXPECT_NEAR(face.glyphAdvance(face.glyphForCharacter('g')), 500.0, 0.001);
}

TEST(FontFace, TellsSlantWeightPitchAndClass) {
    FontLibrary& fonts = samples::machine();
    EXPECT_NEAR(fonts.face("Liberation Serif", "Italic").italicAngle(), -16.333, 0.001);
    EXPECT_EQ(fonts.face("Liberation Mono", "Bold").weight(), 700);
    EXPECT_TRUE(fonts.face("Liberation Mono", "Bold").isFixedPitch());
    EXPECT_FALSE(fonts.face("Liberation Sans", "Regular").isSerif());
    EXPECT_GT(fonts.face("Liberation Sans", "Bold").stemV(), fonts.face("Liberation Sans", "Regular").stemV());
}

TEST(FontFace, OpensCffOutlinesToo) {
    const FontFace& face = samples::machine().face("C059", "Roman");
    ASSERT_EQ(face.postScriptName(), "C059-Roman");
    EXPECT_EQ(face.outlineFormat(), OutlineFormat::CFF);
    EXPECT_NEAR(face.ascent(), 737, 0.001);
    EXPECT_NEAR(face.capHeight(), 722, 0.001);
    EXPECT_NEAR(face.glyphAdvance(face.glyphForCharacter('A')), 722, 0.001);
}

TEST(FontFace, TakesTheTypographicAscentAndNotTheOneForScreens) {
    SKIP_WITHOUT_SHARED_FONTS();
    FontLibrary fonts(MachineFonts::Ignore);
    fonts.addFolder(samples::sharedFontFolder());
    EXPECT_NEAR(fonts.face("Open Sans", "Light").ascent(), 765.137, 0.001);
    EXPECT_NEAR(fonts.face("Open Sans", "Light").descent(), -240.234, 0.001);
    EXPECT_NEAR(fonts.face("Montserrat", "Black").ascent(), 968, 0.001);
    EXPECT_EQ(fonts.face("Montserrat", "Black").weight(), 900);
}

TEST(FontFace, AbsentCharactersAndGlyphsAreZero) {
    EXPECT_EQ(serif().glyphForCharacter(0x4E2D), 0u);
    EXPECT_EQ(serif().glyphForCharacter(0x10FFFF), 0u);
    EXPECT_EQ(serif().glyphForCharacter(0xFFFFFFFF), 0u);
    EXPECT_EQ(serif().glyphAdvance(0xFFFF), 0);
    EXPECT_EQ(serif().boundingBox(4), 0);
}

TEST(Shaping, KernsAPairUnlessKerningIsOff) {
    const double nominal =
        serif().glyphAdvance(serif().glyphForCharacter('A')) + serif().glyphAdvance(serif().glyphForCharacter('V'));
    const auto kerned = shape(serif(), u"AV"), plain = shape(serif(), u"AV", {feature("kern", 0)});
    ASSERT_EQ(kerned.size(), 2u);
    EXPECT_NEAR(width(plain), nominal, 0.01);
    EXPECT_NEAR(width(kerned), nominal - 128.9, 0.1);
    EXPECT_EQ(kerned[0].cluster, 0u);
    EXPECT_EQ(kerned[1].cluster, 1u);
}

TEST(Shaping, MakesOneGlyphOfALigatureUnlessLigaturesAreOff) {
    const FontFace& face = samples::machine().face("C059", "Roman");
    const auto joined = shape(face, u"fin"), apart = shape(face, u"fin", {feature("liga", 0)});
    ASSERT_EQ(joined.size(), 2u);
    EXPECT_EQ(joined[0].glyph, face.glyphForCharacter(0xFB01));
    EXPECT_EQ(joined[0].cluster, 0u);
    EXPECT_EQ(joined[1].cluster, 2u);
    EXPECT_EQ(apart.size(), 3u);
}

TEST(Shaping, CountsClustersInUtf16Units) {
    const FontFace& face = samples::machine().face("DejaVu Sans", "Book");
    // A mathematical capital A (a surrogate pair), then e with a dot below (no such single character is asked for),
    // then x.
    const auto glyphs = shape(face,
                              u"\U0001D49C"
                              u"e\u0323\u0302x");
    ASSERT_GE(glyphs.size(), 3u);
    EXPECT_EQ(glyphs.front().cluster, 0u);
    EXPECT_EQ(glyphs.back().cluster, 5u);
    for (size_t i = 1; i + 1 < glyphs.size(); ++i) EXPECT_EQ(glyphs[i].cluster, 2u) << i;
}

TEST(Shaping, GivesRightToLeftTextInVisualOrder) {
    const FontFace& face = samples::machine().face("DejaVu Sans", "Book");
    ASSERT_NE(face.glyphForCharacter(0x5D0), 0u);
    ShapingRequest request;
    request.text = u"\u05D0\u05D1\u05D2";
    request.rightToLeft = true;
    std::vector<ShapedGlyph> glyphs;
    face.shape(request, glyphs);
    ASSERT_EQ(glyphs.size(), 3u);
    EXPECT_EQ(glyphs[0].cluster, 2u);
    EXPECT_EQ(glyphs[0].glyph, face.glyphForCharacter(0x5D2));
    EXPECT_EQ(glyphs[2].cluster, 0u);
    EXPECT_EQ(glyphs[2].glyph, face.glyphForCharacter(0x5D0));
}

TEST(Shaping, JoinsArabicAcrossTheContext) {
    const FontFace& face = samples::machine().face("DejaVu Sans", "Book");
    ShapingRequest request;
    request.text = u"\u0628";
    request.rightToLeft = true;
    std::vector<ShapedGlyph> alone, inside;
    face.shape(request, alone);
    request.before = u"\u0628";
    request.after = u"\u0628";
    face.shape(request, inside);
    ASSERT_EQ(alone.size(), 1u);
    ASSERT_EQ(inside.size(), 1u);
    EXPECT_NE(alone[0].glyph, inside[0].glyph);
    EXPECT_EQ(inside[0].cluster, 0u);
}

TEST(Shaping, TakesScriptAndLanguageAsTold) {
    ShapingRequest request;
    request.text = u"\u0431";  // Serbian has a form of its own
    request.script = uint32_t{'C'} << 24 | 'y' << 16 | 'r' << 8 | 'l';
    std::vector<ShapedGlyph> plain, serbian, serbianAsLatin;
    serif().shape(request, plain);
    request.language = "sr";
    serif().shape(request, serbian);
    request.script = uint32_t{'L'} << 24 | 'a' << 16 | 't' << 8 | 'n';
    serif().shape(request, serbianAsLatin);
    ASSERT_EQ(plain.size(), 1u);
    ASSERT_EQ(serbian.size(), 1u);
    ASSERT_EQ(serbianAsLatin.size(), 1u);
    EXPECT_EQ(plain[0].glyph, serif().glyphForCharacter(0x431));
    EXPECT_NE(serbian[0].glyph, plain[0].glyph);
    EXPECT_EQ(serbianAsLatin[0].glyph, plain[0].glyph);
}

TEST(Shaping, AMissingCharacterIsGlyphZeroAndEmptyTextNothing) {
    const auto glyphs = shape(serif(),
                              u"a\u4E2D"
                              u"b");
    ASSERT_EQ(glyphs.size(), 3u);
    EXPECT_EQ(glyphs[1].glyph, 0u);
    EXPECT_EQ(glyphs[1].cluster, 1u);
    EXPECT_TRUE(shape(serif(), u"").empty());
}

TEST(Shaping, HalfASurrogatePairIsShapedAsSomethingMissing) {
    const std::u16string broken = {u'a', char16_t(0xD835), u'b'};
    const auto glyphs = shape(serif(), broken);
    ASSERT_EQ(glyphs.size(), 3u);
    EXPECT_EQ(glyphs[2].cluster, 2u);
}

TEST(Shaping, RefusesARunWithoutBounds) {
    const std::u16string text((size_t{1} << 20) + 1, u'a');
    EXPECT_THROW(shape(serif(), text), std::length_error);
}

TEST(Shaping, GivesTheSameEachTime) {
    const auto first = shape(serif(), u"Waffle AVAILABLE");
    shape(samples::machine().face("DejaVu Sans", "Bold"), u"something else");
    const auto second = shape(serif(), u"Waffle AVAILABLE");
    ASSERT_EQ(first.size(), second.size());
    for (size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i].glyph, second[i].glyph);
        EXPECT_EQ(first[i].advance, second[i].advance);
    }
}

}  // namespace
