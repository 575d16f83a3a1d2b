#include "desk/fonts/font_library.h"

#include <gtest/gtest.h>

#include <fstream>

#include "desk/fonts/font_samples.h"
#include "desk/model/document.h"

namespace {

using namespace desk;
namespace fs = std::filesystem;

TEST(FontLibrary, FindsAFamilyWithoutCaseAndTellsNothing) {
    FontLibrary fonts;
    EXPECT_EQ(fonts.face("liberation serif", "BOLD ITALIC").postScriptName(), "LiberationSerif-BoldItalic");
    EXPECT_EQ(fonts.face("$ID/Liberation Sans", "Regular").postScriptName(), "LiberationSans");
    EXPECT_TRUE(fonts.hasFamily("LIBERATION SANS"));
    EXPECT_TRUE(fonts.replacements().empty());
}

TEST(FontLibrary, GivesTheSameFaceForTheSameNames) {
    FontLibrary fonts;
    const FontFace& face = fonts.face("Liberation Serif", "Regular");
    EXPECT_EQ(&face, &fonts.face("Liberation Serif", "Roman"));
    EXPECT_NE(face.index(), fonts.face("Liberation Serif", "Italic").index());
}

TEST(FontLibrary, KnowsSynonymsOfStyles) {
    FontLibrary fonts;
    EXPECT_EQ(fonts.face("DejaVu Sans", "Regular").style(), "Book");
    EXPECT_EQ(fonts.face("DejaVu Sans", "Italic").style(), "Oblique");
    EXPECT_EQ(fonts.face("DejaVu Sans", "BoldItalic").style(), "Bold Oblique");
    EXPECT_EQ(fonts.face("Liberation Sans", "Oblique").style(), "Italic");
    EXPECT_EQ(fonts.face("Liberation Sans", "").style(), "Regular");
    EXPECT_EQ(fonts.face("Liberation Sans", "55 Roman").style(), "Regular");
    EXPECT_TRUE(fonts.hasFace("Liberation Sans", "Bold Oblique"));
    EXPECT_TRUE(fonts.replacements().empty());
}

TEST(FontLibrary, AMissingStyleGivesTheFamilysNearestAndIsTold) {
    FontLibrary fonts;
    EXPECT_FALSE(fonts.hasFace("Liberation Serif", "Heavy Italic"));
    EXPECT_EQ(fonts.face("Liberation Serif", "Heavy Italic").style(), "Bold Italic");
    EXPECT_EQ(fonts.face("Liberation Serif", "Light").style(), "Regular");
    const std::vector<FontReplacement> expected = {
        {"Liberation Serif", "Heavy Italic", "Liberation Serif", "Bold Italic"},
        {"Liberation Serif", "Light", "Liberation Serif", "Regular"}};
    EXPECT_EQ(fonts.replacements(), expected);
}

TEST(FontLibrary, AMissingFamilyIsReplacedByItsLikeAndToldOnce) {
    FontLibrary fonts;
    EXPECT_FALSE(fonts.hasFamily("Arial"));
    EXPECT_FALSE(fonts.hasFace("Arial", "Bold"));
    EXPECT_EQ(fonts.face("Arial", "Bold").postScriptName(), "LiberationSans-Bold");
    EXPECT_EQ(fonts.face("Minion Pro", "Regular").postScriptName(), "LiberationSerif");
    fonts.face("Arial", "Bold");
    EXPECT_EQ(fonts.face("Unheard Of Mono", "Italic").postScriptName(), "LiberationMono-Italic");
    const std::vector<FontReplacement> expected = {{"Arial", "Bold", "Liberation Sans", "Bold"},
                                                   {"Minion Pro", "Regular", "Liberation Serif", "Regular"},
                                                   {"Unheard Of Mono", "Italic", "Liberation Mono", "Italic"}};
    EXPECT_EQ(fonts.replacements(), expected);
}

TEST(FontLibrary, FindsAFamilyAndStyleThatAFileDividesElsewhere) {
    SKIP_WITHOUT_SHARED_FONTS();
    FontLibrary fonts(MachineFonts::Ignore);
    fonts.addFolder(samples::sharedFontFolder());
    const std::string black = "Montserrat-Black", light = "OpenSans-Light";
    EXPECT_EQ(fonts.face("Montserrat", "Black").postScriptName(), black);
    EXPECT_EQ(fonts.face("Montserrat Black", "Regular").postScriptName(), black);
    EXPECT_EQ(fonts.face("Montserrat Black", "").postScriptName(), black);
    EXPECT_EQ(fonts.face("Montserrat Black", "Black").postScriptName(), black);
    EXPECT_EQ(fonts.face("Montserrat-Black", "Regular").postScriptName(), black);
    EXPECT_EQ(fonts.face("Open Sans", "Light").postScriptName(), light);
    EXPECT_EQ(fonts.face("Open Sans", "45 Light").postScriptName(), light);
    EXPECT_EQ(fonts.face("Open Sans Light", "Regular").postScriptName(), light);
    EXPECT_TRUE(fonts.replacements().empty());
    // "Regular" is what old programs call the black face of the family "Montserrat Black", not of "Montserrat".
    EXPECT_FALSE(fonts.hasFace("Montserrat", "Regular"));
    EXPECT_EQ(fonts.face("Montserrat", "Regular").postScriptName(), black);
    EXPECT_EQ(fonts.replacements().size(), 1u);
}

TEST(FontLibrary, PrivateFoldersAreSearchedToTheirDepthAndComeFirst) {
    SKIP_WITHOUT_SHARED_FONTS();
    samples::TemporaryFolder folder;
    fs::create_directories(folder.path() + "/a/b");
    fs::copy(samples::sharedFontFolder() + "/Montserrat-Black.ttf", folder.path() + "/a/b/M.TTF");
    std::ofstream(folder.path() + "/a/broken.otf") << "this isn't a font";
    std::ofstream(folder.path() + "/readme.txt") << "nor this";
    FontLibrary fonts;
    const FontFace& before = fonts.face("Montserrat", "Black");
    fonts.addFolder(folder.path());
    EXPECT_TRUE(fonts.hasFace("Montserrat", "Black"));
    EXPECT_EQ(fonts.face("Montserrat", "Black").postScriptName(), "Montserrat-Black");
    EXPECT_FALSE(before.family().empty());
}

uint32_t bigEndian(const std::string& bytes, size_t offset, int size) {
    uint32_t value = 0;
    for (int i = 0; i < size; ++i) value = value << 8 | static_cast<uint8_t>(bytes[offset + static_cast<size_t>(i)]);
    return value;
}

std::string asBytes(uint32_t value, int size = 4) {
    std::string bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

/// The same font as a web font (W3C WOFF 1.0), its tables stored without compression.
std::string asWebFont(const std::string& font) {
    const uint32_t tables = bigEndian(font, 4, 2);
    std::string directory, data;
    for (uint32_t i = 0; i < tables; ++i) {
        const size_t entry = 12 + 16 * size_t{i};
        const uint32_t length = bigEndian(font, entry + 12, 4);
        directory += font.substr(entry, 4) + asBytes(44 + 20 * tables + static_cast<uint32_t>(data.size())) +
                     asBytes(length) + asBytes(length) + font.substr(entry + 4, 4);
        data += font.substr(bigEndian(font, entry + 8, 4), length);
        data.resize((data.size() + 3) / 4 * 4);
    }
    const uint32_t size = 44 + static_cast<uint32_t>(directory.size() + data.size());
    return "wOFF" + font.substr(0, 4) + asBytes(size) + asBytes(tables, 2) + asBytes(0, 2) +
           asBytes(12 + static_cast<uint32_t>(16 * tables + data.size())) + asBytes(0x10000) + std::string(20, '\0') +
           directory + data;
}

TEST(FontLibrary, ReadsWebFonts) {
    SKIP_WITHOUT_SHARED_FONTS();
    std::ifstream file(samples::sharedFontFolder() + "/Montserrat-Black.ttf", std::ios::binary);
    const std::string font{std::istreambuf_iterator<char>(file), {}};
    samples::TemporaryFolder folder;
    std::ofstream(folder.path() + "/black.woff", std::ios::binary) << asWebFont(font);
    FontLibrary fonts(MachineFonts::Ignore), plain(MachineFonts::Ignore);
    fonts.addFolder(folder.path());
    plain.addFolder(samples::sharedFontFolder());
    ASSERT_TRUE(fonts.hasFace("Montserrat", "Black"));
    const FontFace &web = fonts.face("Montserrat", "Black"), &face = plain.face("Montserrat", "Black");
    EXPECT_EQ(web.glyphAdvance(web.glyphForCharacter('W')), face.glyphAdvance(face.glyphForCharacter('W')));
    EXPECT_EQ(samples::width(samples::shape(web, u"AV")), samples::width(samples::shape(face, u"AV")));
    EXPECT_EQ(web.subset({4, 5}).file, face.subset({4, 5}).file);
}

TEST(FontLibrary, AFileThatIsDamagedGivesWayToTheNextBest) {
    SKIP_WITHOUT_SHARED_FONTS();
    samples::TemporaryFolder folder;
    const std::string file = folder.path() + "/light.ttf";
    fs::copy(samples::sharedFontFolder() + "/OpenSans-Light.ttf", file);
    FontLibrary fonts;
    fonts.addFolder(folder.path());
    ASSERT_TRUE(fonts.hasFace("Open Sans", "Light"));
    fs::remove(file);
    // What stands in is what the machine alone would give.
    FontLibrary machine;
    if (machine.hasFamily("Open Sans")) GTEST_SKIP() << "the machine has Open Sans itself";
    const std::string& nextBest = machine.face("Open Sans", "Light").family();
    EXPECT_EQ(fonts.face("Open Sans", "Light").family(), nextBest);
    EXPECT_NE(nextBest, "Open Sans");
    ASSERT_EQ(fonts.replacements().size(), 1u);
    EXPECT_EQ(fonts.replacements()[0].usedFamily, nextBest);
}

TEST(FontLibrary, RefusesAFolderThatIsNotThereByItsName) {
    FontLibrary fonts(MachineFonts::Ignore);
    try {
        fonts.addFolder("/nowhere/at/all");
        FAIL() << "it took the folder";
    } catch (const InputError& error) {
        EXPECT_NE(std::string(error.what()).find("\"/nowhere/at/all\""), std::string::npos) << error.what();
    }
    samples::TemporaryFolder folder;
    std::ofstream(folder.path() + "/file") << "x";
    EXPECT_THROW(fonts.addFolder(folder.path() + "/file"), InputError);
}

TEST(FontLibrary, WithoutAnyFontSaysSo) {
    FontLibrary fonts(MachineFonts::Ignore);
    EXPECT_THROW(fonts.face("Arial", "Regular"), InputError);
    EXPECT_FALSE(fonts.hasFamily("Arial"));
    samples::TemporaryFolder folder;
    fonts.addFolder(folder.path());
    EXPECT_THROW(fonts.face("Arial", "Regular"), InputError);
}

TEST(Fallback, FindsAFaceThatHasTheCharacter) {
    FontLibrary fonts;
    const FontFace& serif = fonts.face("Liberation Serif", "Bold");
    ASSERT_EQ(serif.glyphForCharacter(0x2713), 0u);
    const FontFace* face = fonts.fallback(0x2713, serif);
    ASSERT_NE(face, nullptr);
    EXPECT_NE(face->glyphForCharacter(0x2713), 0u);
    EXPECT_EQ(face, fonts.fallback(0x2713, serif));
    EXPECT_TRUE(fonts.replacements().empty());
}

TEST(Fallback, PrefersTheSameClassWeightAndSlant) {
    FontLibrary fonts;
    const uint32_t armenian = 0x531;  // in DejaVu Sans, Mono and Serif, upright and slanted
    const FontFace* bold = fonts.fallback(armenian, fonts.face("Liberation Serif", "Bold"));
    ASSERT_NE(bold, nullptr);
    EXPECT_TRUE(bold->isSerif());
    EXPECT_EQ(bold->weight(), 700);
    EXPECT_EQ(bold->italicAngle(), 0);
    const FontFace* sans = fonts.fallback(armenian, fonts.face("Liberation Sans", "Italic"));
    ASSERT_NE(sans, nullptr);
    EXPECT_FALSE(sans->isSerif());
    EXPECT_NE(sans->italicAngle(), 0);
    EXPECT_EQ(sans->weight(), 400);
}

TEST(Fallback, IsNullWhenNoFontHasTheCharacter) {
    FontLibrary fonts;
    EXPECT_EQ(fonts.fallback(0x10FFFD, fonts.face("Liberation Serif", "Regular")), nullptr);
}

}  // namespace
