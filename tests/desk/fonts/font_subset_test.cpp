#include "desk/fonts/font_subset.h"

#include <ft2build.h>
#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include FT_OUTLINE_H

#include "desk/fonts/font_samples.h"

namespace {

using namespace desk;

/// A subset opened again by a rasteriser, which knows nothing of how it was made.
class Reopened {
  public:
    explicit Reopened(const std::vector<uint8_t>& bytes) {
        FT_Init_FreeType(&library_);
        failed_ = FT_New_Memory_Face(library_, bytes.data(), static_cast<FT_Long>(bytes.size()), 0, &face_) != 0;
    }
    ~Reopened() {
        if (!failed_) FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }
    bool failed() const { return failed_; }
    long glyphCount() const { return face_->num_glyphs; }
    double advance(uint32_t glyph) const {
        if (FT_Load_Glyph(face_, glyph, FT_LOAD_NO_SCALE) != 0) return -1;
        return 1000.0 * face_->glyph->metrics.horiAdvance / face_->units_per_EM;
    }
    int points(uint32_t glyph) const {
        if (FT_Load_Glyph(face_, glyph, FT_LOAD_NO_SCALE) != 0) return -1;
        return face_->glyph->outline.n_points;
    }
    std::set<std::string> tables() const {
        std::set<std::string> names;
        FT_ULong count = 0, tag = 0, length = 0;
        FT_Sfnt_Table_Info(face_, 0, nullptr, &count);
        for (FT_UInt i = 0; i < count; ++i) {
            FT_Sfnt_Table_Info(face_, i, &tag, &length);
            std::string name;
            for (int shift = 24; shift >= 0; shift -= 8) name += static_cast<char>(tag >> shift & 0xFF);
            names.insert(name);
        }
        return names;
    }

  private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
    bool failed_ = true;
};

std::vector<uint32_t> glyphsOf(const FontFace& face, std::u32string_view text) {
    std::vector<uint32_t> glyphs;
    for (char32_t character : text) glyphs.push_back(face.glyphForCharacter(character));
    return glyphs;
}

class SubsetOf : public testing::TestWithParam<const char*> {};

TEST_P(SubsetOf, HoldsTheAskedGlyphsWithTheirAdvancesAndOutlines) {
    const FontFace& face = samples::machine().face(GetParam(), "Regular");
    const std::vector<uint32_t> glyphs = glyphsOf(face, U"zebra AV");
    const FontSubset subset = face.subset(glyphs);
    EXPECT_EQ(subset.format, face.outlineFormat());
    EXPECT_FALSE(subset.cidKeyed);
    ASSERT_EQ(subset.newGlyphOf.size(), glyphs.size());
    const Reopened font(subset.file);
    ASSERT_FALSE(font.failed());
    EXPECT_EQ(font.glyphCount(), 1 + 8);  // .notdef; "zebra AV" has no letter twice
    for (size_t i = 0; i < glyphs.size(); ++i) {
        EXPECT_LT(subset.newGlyphOf[i], 9u);
        EXPECT_NEAR(font.advance(subset.newGlyphOf[i]), face.glyphAdvance(glyphs[i]), 0.01) << i;
        EXPECT_EQ(font.points(subset.newGlyphOf[i]) > 0, i != 5) << i;  // the space has no outline
    }
    EXPECT_EQ(std::set<uint32_t>(subset.newGlyphOf.begin(), subset.newGlyphOf.end()).size(), 8u);
}

TEST_P(SubsetOf, IsTheSameBytesForTheSameGlyphs) {
    const FontFace& face = samples::machine().face(GetParam(), "Regular");
    const FontSubset first = face.subset(glyphsOf(face, U"Hamburg"));
    FontLibrary other;
    const FontFace& again = other.face(GetParam(), "Regular");
    const FontSubset second = again.subset(glyphsOf(again, U"grubmaH"));
    EXPECT_EQ(first.file, second.file);
    EXPECT_EQ(first.newGlyphOf[0], second.newGlyphOf[6]);
}

TEST_P(SubsetOf, NothingIsAFontWithNotdefAlone) {
    const FontFace& face = samples::machine().face(GetParam(), "Regular");
    const Reopened font(face.subset({}).file);
    ASSERT_FALSE(font.failed());
    EXPECT_EQ(font.glyphCount(), 1);
}

TEST_P(SubsetOf, RefusesAGlyphThatTheFaceLacks) {
    const FontFace& face = samples::machine().face(GetParam(), "Regular");
    try {
        face.subset({1, 60000});
        FAIL() << "it gave a subset";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find(face.postScriptName()), std::string::npos) << error.what();
        EXPECT_NE(std::string(error.what()).find("60000"), std::string::npos) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(TrueTypeAndCff, SubsetOf, testing::Values("Liberation Serif", "C059"),
                         [](const auto& face) { return std::string(face.param) == "C059" ? "Cff" : "TrueType"; });

TEST(Subset, BringsThePartsOfACompositeGlyphAlong) {
    const FontFace& face = samples::machine().face("Liberation Serif", "Regular");
    const FontSubset subset = face.subset(glyphsOf(face, U"\u00C4"));
    const Reopened font(subset.file);
    ASSERT_FALSE(font.failed());
    EXPECT_GE(font.glyphCount(), 4);  // .notdef, A, the dots and the whole
    const FontSubset letter = face.subset(glyphsOf(face, U"A"));
    EXPECT_GT(font.points(subset.newGlyphOf[0]), Reopened(letter.file).points(letter.newGlyphOf[0]));
}

TEST(Subset, BringsNoGlyphAlongThatSubstitutionWouldMake) {
    const FontFace& face = samples::machine().face("C059", "Roman");
    const Reopened font(face.subset(glyphsOf(face, U"fi1/2a")).file);
    ASSERT_FALSE(font.failed());
    EXPECT_EQ(font.glyphCount(), 7);
}

TEST(Subset, KeepsNoTableButOutlinesAndMetrics) {
    const FontFace& face = samples::machine().face("Liberation Serif", "Regular");
    const FontSubset subset = face.subset(glyphsOf(face, U"abc"));
    const Reopened font(subset.file);
    ASSERT_FALSE(font.failed());
    EXPECT_EQ(font.tables(), (std::set<std::string>{"glyf", "loca", "head", "hhea", "hmtx", "maxp"}));
    EXPECT_LT(subset.file.size(), 3000u);
}

/// A CFF table of nothing but its head: header, name, Top DICT (`dict`), strings, global subroutines, then `charset`.
std::vector<uint8_t> headOfCff(const std::vector<uint8_t>& dict, const std::vector<uint8_t>& charset) {
    std::vector<uint8_t> cff = {1, 0, 4, 1};
    const auto append = [&](const std::vector<uint8_t>& bytes) { cff.insert(cff.end(), bytes.begin(), bytes.end()); };
    append({0, 1, 1, 1, 2, 'X'});
    append({0, 1, 1, 1, static_cast<uint8_t>(1 + dict.size())});
    append(dict);
    append({0, 0});
    append({0, 0});
    append(charset);
    return cff;
}

// Registry, ordering and supplement as a CID-keyed font begins (12 30), then the place of the charset (29 .. 15).
std::vector<uint8_t> cidKeyedDict(uint8_t charset) {
    return {139, 139, 139, 12, 30, 30, 0x1A, 0x2F, 12, 8, 29, 0, 0, 0, charset, 15};
}

TEST(CidNumbering, MakesEveryCidItsGlyph) {
    const size_t offset = headOfCff(cidKeyedDict(0), {}).size();
    std::vector<uint8_t> cff = headOfCff(cidKeyedDict(static_cast<uint8_t>(offset)), {0, 0x12, 0x34, 0x43, 0x21, 0xAA});
    EXPECT_TRUE(numberCidsByGlyph(cff, 3));
    const std::vector<uint8_t> charset(cff.begin() + static_cast<std::ptrdiff_t>(offset), cff.end());
    EXPECT_EQ(charset, (std::vector<uint8_t>{1, 0, 1, 1, 0x21, 0xAA}));
}

TEST(CidNumbering, UsesTheFormThatFitsTheNumberOfGlyphs) {
    const size_t offset = headOfCff(cidKeyedDict(0), {}).size();
    const auto renumbered = [&](uint32_t glyphs) {
        std::vector<uint8_t> cff = headOfCff(cidKeyedDict(static_cast<uint8_t>(offset)), std::vector<uint8_t>(8, 9));
        EXPECT_TRUE(numberCidsByGlyph(cff, glyphs));
        return std::vector<uint8_t>(cff.begin() + static_cast<std::ptrdiff_t>(offset), cff.end());
    };
    EXPECT_EQ(renumbered(1), (std::vector<uint8_t>{9, 9, 9, 9, 9, 9, 9, 9}));
    EXPECT_EQ(renumbered(2), (std::vector<uint8_t>{0, 0, 1, 9, 9, 9, 9, 9}));
    EXPECT_EQ(renumbered(257), (std::vector<uint8_t>{1, 0, 1, 255, 9, 9, 9, 9}));
    EXPECT_EQ(renumbered(258), (std::vector<uint8_t>{2, 0, 1, 1, 0, 9, 9, 9}));
}

TEST(CidNumbering, LeavesAFontWithGlyphNamesAlone) {
    std::vector<uint8_t> cff = headOfCff({29, 0, 0, 0, 5, 15}, {0, 7, 7});
    const std::vector<uint8_t> before = cff;
    EXPECT_FALSE(numberCidsByGlyph(cff, 2));
    EXPECT_EQ(cff, before);
}

TEST(CidNumbering, RefusesATableThatEndsTooSoon) {
    const std::vector<uint8_t> whole = headOfCff(cidKeyedDict(200), {});
    for (size_t length = 0; length <= whole.size(); ++length) {
        std::vector<uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_THROW(numberCidsByGlyph(cut, 3), std::runtime_error) << length;
    }
}

}  // namespace
