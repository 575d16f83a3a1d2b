#include "desk/fonts/font_names.h"

#include <gtest/gtest.h>

namespace {

using namespace desk;

TEST(FontNames, CompareWithoutCaseBlanksAndHyphens) {
    EXPECT_EQ(nameKey("Liberation Serif"), nameKey("liberation-SERIF"));
    EXPECT_EQ(nameKey("$ID/Times New Roman"), nameKey("TimesNewRoman"));
    EXPECT_EQ(nameKey("\u00C9cole"), nameKey("\u00E9cole"));
    EXPECT_NE(nameKey("Arial"), nameKey("Arial Narrow"));
}

struct StyleCase {
    const char* name;
    StyleTraits traits;
};

TEST(StyleNames, MeanWeightWidthAndSlant) {
    const StyleCase cases[] = {
        {"", {400, 100, false, ""}},
        {"Regular", {400, 100, false, ""}},
        {"Roman", {400, 100, false, ""}},
        {"Book", {400, 100, false, ""}},
        {"Plain", {400, 100, false, ""}},
        {"Italic", {400, 100, true, ""}},
        {"Oblique", {400, 100, true, ""}},
        {"Bold Italic", {700, 100, true, ""}},
        {"BoldItalic", {700, 100, true, ""}},
        {"Bold Oblique", {700, 100, true, ""}},
        {"BoldIt", {400, 100, false, "boldit"}},
        {"Bold It", {700, 100, true, ""}},
        {"Extra Light", {200, 100, false, ""}},
        {"ExtraLight", {200, 100, false, ""}},
        {"Demi Bold", {600, 100, false, ""}},
        {"Demi Italic", {600, 100, true, ""}},
        {"Semibold Condensed Italic", {600, 75, true, ""}},
        {"Black", {900, 100, false, ""}},
        {"45 Light", {300, 100, false, ""}},
        {"46 Light Italic", {300, 100, true, ""}},
        {"55 Roman", {400, 100, false, ""}},
        {"65", {500, 100, false, ""}},
        {"77 Bold Condensed", {700, 75, false, ""}},
        {"Caption", {400, 100, false, "caption"}},
        {"Bold Caption", {700, 100, false, "caption"}},
    };
    for (const StyleCase& one : cases) {
        const StyleTraits traits = parseStyle(one.name);
        EXPECT_EQ(traits.weight, one.traits.weight) << one.name;
        EXPECT_EQ(traits.width, one.traits.width) << one.name;
        EXPECT_EQ(traits.italic, one.traits.italic) << one.name;
        EXPECT_EQ(traits.rest, one.traits.rest) << one.name;
    }
}

TEST(StyleNames, SlantOutweighsWidthAndWidthWeight) {
    const StyleTraits wanted = parseStyle("Bold Italic");
    EXPECT_EQ(styleDistance(wanted, parseStyle("BoldOblique")), 0);
    EXPECT_LT(styleDistance(wanted, parseStyle("Light Italic")),
              styleDistance(wanted, parseStyle("Bold Condensed Italic")));
    EXPECT_LT(styleDistance(wanted, parseStyle("Condensed Italic")), styleDistance(wanted, parseStyle("Bold")));
}

TEST(FamilyNames, TellTheirClass) {
    EXPECT_EQ(guessClass("Minion Pro"), FontClass::Serif);
    EXPECT_EQ(guessClass("PT Serif"), FontClass::Serif);
    EXPECT_EQ(guessClass("Noto Sans Mono"), FontClass::Monospaced);
    EXPECT_EQ(guessClass("Courier New"), FontClass::Monospaced);
    EXPECT_EQ(guessClass("Gill Sans"), FontClass::Sans);
    EXPECT_EQ(guessClass("Century Gothic"), FontClass::Sans);
    EXPECT_EQ(guessClass("Unheard Of"), FontClass::Sans);
}

TEST(FamilyNames, HaveStandInsWhateverTheirMakersLetters) {
    EXPECT_EQ(standInFamilies("ArialMT")[0], "Liberation Sans");
    EXPECT_EQ(standInFamilies("Helvetica Neue LT Std")[0], "Liberation Sans");
    EXPECT_EQ(standInFamilies("Times New Roman")[0], "Liberation Serif");
    EXPECT_EQ(standInFamilies("Courier")[0], "Liberation Mono");
    EXPECT_EQ(standInFamilies("Palatino LT Std")[0], "P052");
    EXPECT_EQ(standInFamilies("ITC Bookman Std")[0], "URW Bookman");
    EXPECT_EQ(standInFamilies("Minion Pro")[0], "Liberation Serif");
    EXPECT_EQ(standInFamilies("Gill Sans MT")[0], "Gillius ADF");
    EXPECT_EQ(standInFamilies("Unheard Of")[0], "Liberation Sans");
}

}  // namespace
