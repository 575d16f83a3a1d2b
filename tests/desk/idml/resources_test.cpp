#include "desk/idml/resources.h"

#include <gtest/gtest.h>

#include "desk/idml/test_package.h"

namespace desk {
namespace {

std::unique_ptr<Document> withGraphic(const std::string& graphic) {
    TestPackage package;
    package.graphic = graphic;
    return package.read();
}

std::unique_ptr<Document> withStyles(const std::string& styles) {
    TestPackage package;
    package.styles = styles;
    return package.read();
}

TEST(Graphic, ColoursKeepTheirSpace) {
    const auto document = withGraphic(
        "<Color Self=\"Color/Blue\" Model=\"Process\" Space=\"CMYK\" ColorValue=\"95 65 15 10\" Name=\"Blue\"/>"
        "<Color Self=\"Color/Red\" Model=\"Process\" Space=\"RGB\" ColorValue=\"255 0 20\" Name=\"Red\"/>"
        "<Color Self=\"Color/u1\" Model=\"Process\" Space=\"LAB\" ColorValue=\"50 -20 127\" Name=\"$ID/\"/>"
        "<Color Self=\"Color/Green\" Model=\"Process\" Space=\"HSB\" ColorValue=\"120 100 100\" Name=\"Green\"/>");
    EXPECT_EQ(document->swatch("Color/Blue")->value, (ColorValue{ColorSpace::CMYK, {95, 65, 15, 10}}));
    EXPECT_EQ(document->swatch("Color/Red")->value, (ColorValue{ColorSpace::RGB, {255, 0, 20, 0}}));
    EXPECT_EQ(document->swatch("Color/u1")->value, (ColorValue{ColorSpace::LAB, {50, -20, 127, 0}}));
    EXPECT_EQ(document->swatch("Color/Green")->value, (ColorValue{ColorSpace::RGB, {0, 255, 0, 0}}));
}

TEST(Graphic, ASpotColourHasItsNameAndAPrintableAlternate) {
    const auto document = withGraphic(
        "<Color Self=\"Color/Gold\" Model=\"Spot\" Space=\"CMYK\" ColorValue=\"0 30 90 10\" AlternateSpace=\"LAB\" "
        "AlternateColorValue=\"70 5 60\" Name=\"Gold Ink\"/>"
        "<Color Self=\"Color/Silver\" Model=\"Spot\" Space=\"LAB\" ColorValue=\"70 0 0\" AlternateSpace=\"CMYK\" "
        "AlternateColorValue=\"0 0 0 40\" Name=\"Silver Ink\"/>");
    EXPECT_EQ(document->swatch("Color/Gold")->kind, SwatchKind::Spot);
    EXPECT_EQ(document->swatch("Color/Gold")->name, "Gold Ink");
    EXPECT_EQ(document->swatch("Color/Gold")->value, (ColorValue{ColorSpace::CMYK, {0, 30, 90, 10}}));
    EXPECT_EQ(document->swatch("Color/Silver")->value, (ColorValue{ColorSpace::CMYK, {0, 0, 0, 40}}));
}

TEST(Graphic, TheStandardSwatchesAreAlwaysThere) {
    const auto document = withGraphic(
        "<Color Self=\"Color/Paper\" Model=\"Process\" Space=\"CMYK\" ColorValue=\"1 2 3 4\" Name=\"Paper\"/>");
    EXPECT_EQ(document->swatch("Swatch/None")->kind, SwatchKind::None);
    EXPECT_EQ(document->swatch("Color/Black")->value, (ColorValue{ColorSpace::CMYK, {0, 0, 0, 100}}));
    EXPECT_EQ(document->swatch("Color/Registration")->kind, SwatchKind::Registration);
    EXPECT_EQ(document->swatch("Color/Paper")->value, (ColorValue{ColorSpace::CMYK, {1, 2, 3, 4}}));
}

TEST(Graphic, TintsNameTheirColour) {
    const auto document = withGraphic("<Tint Self=\"Tint/Light\" BaseColor=\"Color/Black\" TintValue=\"20\"/>");
    EXPECT_EQ(document->swatch("Tint/Light")->kind, SwatchKind::Tint);
    EXPECT_EQ(document->swatch("Tint/Light")->baseColor, "Color/Black");
    EXPECT_EQ(document->swatch("Tint/Light")->tint, 20);
}

TEST(Graphic, TintsInACircleBecomeTintsOfBlack) {
    const auto document = withGraphic(
        "<Tint Self=\"Tint/a\" BaseColor=\"Tint/b\" TintValue=\"20\"/><Tint Self=\"Tint/b\" BaseColor=\"Tint/a\" "
        "TintValue=\"20\"/>"
        "<Tint Self=\"Tint/c\" BaseColor=\"Color/Lost\"/>");
    for (const char* self : {"Tint/a", "Tint/c"}) {
        const Swatch* base = document->swatch(self);
        for (int i = 0; i < 3 && base->kind == SwatchKind::Tint; ++i) base = document->swatch(base->baseColor);
        EXPECT_EQ(base->self, "Color/Black");
    }
    EXPECT_TRUE(hasNote(*document, "has no colour under it"));
}

TEST(Graphic, GradientsHaveStops) {
    const auto document = withGraphic(
        "<Gradient Self=\"Gradient/u1\" Type=\"Radial\"><GradientStop StopColor=\"Color/Paper\" Location=\"0\"/>"
        "<GradientStop StopColor=\"Color/Black\" Location=\"100\" Midpoint=\"30\"/><GradientStop "
        "StopColor=\"Gradient/u1\" Location=\"50\"/></Gradient>");
    const Swatch* gradient = document->swatch("Gradient/u1");
    EXPECT_TRUE(gradient->radial);
    ASSERT_EQ(gradient->stops.size(), 2u);
    EXPECT_EQ(gradient->stops[1].color, "Color/Black");
    EXPECT_EQ(gradient->stops[1].location, 100);
    EXPECT_EQ(gradient->stops[1].midpoint, 30);
}

TEST(Graphic, DashedStylesHaveTheirDashes) {
    const auto document = withGraphic(
        "<DashedStrokeStyle Self=\"DashedStrokeStyle/d\" DashArray=\"6 3\"/>"
        "<DashedStrokeStyle Self=\"DashedStrokeStyle/bad\" DashArray=\"-1 3\"/>"
        "<DashedStrokeStyle Self=\"DashedStrokeStyle/none\" DashArray=\"0 0\"/>");
    EXPECT_EQ(document->strokeStyles.at("DashedStrokeStyle/d"), (std::vector<double>{6, 3}));
    EXPECT_EQ(document->strokeStyles.count("DashedStrokeStyle/bad"), 0u);
    EXPECT_EQ(document->strokeStyles.count("DashedStrokeStyle/none"), 0u);
}

TEST(Graphic, AColourThatCannotBeReadIsBlackAndTold) {
    const auto document = withGraphic(
        "<Color Self=\"Color/x\" Model=\"Process\" Space=\"CMYK\" ColorValue=\"1 2 3\"/><MixedInk "
        "Self=\"MixedInk/m\"/>");
    EXPECT_EQ(document->swatch("Color/x")->value, (ColorValue{ColorSpace::CMYK, {0, 0, 0, 100}}));
    EXPECT_EQ(document->swatch("MixedInk/m")->value, (ColorValue{ColorSpace::CMYK, {0, 0, 0, 100}}));
    EXPECT_TRUE(hasNote(*document, "\"Color/x\" can't be read"));
    EXPECT_TRUE(hasNote(*document, "mixed ink"));
}

TEST(Preferences, GiveBleedTextAndGrid) {
    TestPackage package;
    package.preferences =
        "<DocumentPreference PageWidth=\"300\" PageHeight=\"400\" FacingPages=\"true\" DocumentBleedTopOffset=\"1\" "
        "DocumentBleedBottomOffset=\"2\" DocumentBleedInsideOrLeftOffset=\"3\" "
        "DocumentBleedOutsideOrRightOffset=\"4\"/>"
        "<TextPreference SuperscriptSize=\"60\" SuperscriptPosition=\"30\" SubscriptSize=\"61\" "
        "SubscriptPosition=\"31\" SmallCap=\"75\" UseParagraphLeading=\"true\"/>"
        "<GridPreference BaselineStart=\"10\" BaselineDivision=\"14\" "
        "BaselineGridRelativeOption=\"TopOfMarginOfBaselineGridRelativeOption\"/>";
    const Preferences preferences = package.read()->preferences;
    EXPECT_EQ(preferences.pageWidth, 300);
    EXPECT_EQ(preferences.pageHeight, 400);
    EXPECT_TRUE(preferences.facingPages);
    EXPECT_EQ(preferences.bleedTop, 1);
    EXPECT_EQ(preferences.bleedBottom, 2);
    EXPECT_EQ(preferences.bleedInside, 3);
    EXPECT_EQ(preferences.bleedOutside, 4);
    EXPECT_EQ(preferences.superscriptSize, 60);
    EXPECT_EQ(preferences.superscriptPosition, 30);
    EXPECT_EQ(preferences.subscriptSize, 61);
    EXPECT_EQ(preferences.subscriptPosition, 31);
    EXPECT_EQ(preferences.smallCapSize, 75);
    EXPECT_TRUE(preferences.useParagraphLeading);
    EXPECT_EQ(preferences.baselineGridStart, 10);
    EXPECT_EQ(preferences.baselineGridDivision, 14);
    EXPECT_TRUE(preferences.baselineGridFromMargin);
}

TEST(Preferences, KeepDefaultsForWhatIsAbsentOrUseless) {
    TestPackage package;
    package.preferences =
        "<DocumentPreference PageWidth=\"0\" PageHeight=\"x\"/><GridPreference BaselineDivision=\"0\"/>";
    const Preferences preferences = package.read()->preferences;
    EXPECT_EQ(preferences.pageWidth, 612);
    EXPECT_EQ(preferences.pageHeight, 792);
    EXPECT_EQ(preferences.superscriptSize, 58.3);
    EXPECT_EQ(preferences.baselineGridDivision, 12);
}

TEST(Fonts, NameFamilyStyleAndPostScriptName) {
    TestPackage package;
    package.fonts =
        "<FontFamily Self=\"di0\" Name=\"$ID/Open Sans\"><Font Self=\"di0f\" FontFamily=\"$ID/Open Sans\" "
        "FontStyleName=\"Light\" "
        "PostScriptName=\"OpenSans-Light\"/></FontFamily>";
    package.styles +=
        "<ParagraphStyle Self=\"ParagraphStyle/a\" Name=\"a\"><Properties><AppliedFont "
        "type=\"object\">di0</AppliedFont></Properties></ParagraphStyle>"
        "<ParagraphStyle Self=\"ParagraphStyle/b\" Name=\"b\"><Properties><AppliedFont "
        "type=\"string\">$ID/Arial</AppliedFont></Properties></ParagraphStyle>";
    const auto document = package.read();
    ASSERT_EQ(document->fonts.size(), 1u);
    EXPECT_EQ(document->fonts[0].family, "Open Sans");
    EXPECT_EQ(document->fonts[0].style, "Light");
    EXPECT_EQ(document->fonts[0].postScriptName, "OpenSans-Light");
    EXPECT_EQ(document->styleNamed(StyleKind::Paragraph, "a")->text.fontFamily, "Open Sans");
    EXPECT_EQ(document->styleNamed(StyleKind::Paragraph, "b")->text.fontFamily, "Arial");
}

TEST(Styles, AreNamedAsAPersonReadsThem) {
    const auto document = withStyles(
        "<RootCharacterStyleGroup><CharacterStyle Self=\"CharacterStyle/$ID/[No character style]\" Name=\"$ID/[No "
        "character style]\"/>"
        "<CharacterStyleGroup Self=\"CharacterStyleGroup/Web\" Name=\"Web\"><CharacterStyle "
        "Self=\"CharacterStyle/Web%3aLink\" Name=\"Web:Link\"/>"
        "</CharacterStyleGroup></RootCharacterStyleGroup><RootParagraphStyleGroup>"
        "<ParagraphStyle Self=\"ParagraphStyle/$ID/NormalParagraphStyle\" "
        "Name=\"$ID/NormalParagraphStyle\"/></RootParagraphStyleGroup>");
    EXPECT_NE(document->styleNamed(StyleKind::Character, "[No character style]"), nullptr);
    EXPECT_EQ(document->styleNamed(StyleKind::Character, "Web:Link")->self, "CharacterStyle/Web%3aLink");
    EXPECT_NE(document->styleNamed(StyleKind::Paragraph, "[Basic Paragraph]"), nullptr);
    EXPECT_EQ(document->styleNamed(StyleKind::Paragraph, "Web:Link"), nullptr);
}

TEST(Styles, AreBasedOnOthersInBothSpellings) {
    const auto document = withStyles(
        "<RootParagraphStyleGroup><ParagraphStyle Self=\"ParagraphStyle/c\" Name=\"c\"><Properties><BasedOn "
        "type=\"string\">b</BasedOn></Properties></ParagraphStyle>"
        "<ParagraphStyle Self=\"ParagraphStyle/b\" Name=\"b\"><Properties><BasedOn "
        "type=\"object\">ParagraphStyle/a</BasedOn></Properties></ParagraphStyle>"
        "<ParagraphStyle Self=\"ParagraphStyle/a\" Name=\"a\" PointSize=\"33\"><Properties><BasedOn "
        "type=\"string\">$ID/[No paragraph style]</BasedOn></Properties></ParagraphStyle>"
        "</RootParagraphStyleGroup>");
    EXPECT_EQ(document->styleNamed(StyleKind::Paragraph, "c")->basedOn, "ParagraphStyle/b");
    EXPECT_EQ(document->styleNamed(StyleKind::Paragraph, "b")->basedOn, "ParagraphStyle/a");
    EXPECT_EQ(document->styleNamed(StyleKind::Paragraph, "a")->basedOn, "ParagraphStyle/$ID/[No paragraph style]");
}

TEST(Styles, AParentThatDoesNotExistIsTold) {
    const auto document = withStyles(
        "<ParagraphStyle Self=\"ParagraphStyle/a\" Name=\"a\"><Properties><BasedOn "
        "type=\"string\">lost</BasedOn></Properties></ParagraphStyle>");
    EXPECT_EQ(document->styleNamed(StyleKind::Paragraph, "a")->basedOn, "");
    EXPECT_TRUE(hasNote(*document, "based on \"lost\", which doesn't exist"));
}

TEST(Styles, TheEndOfTheChainGivesTheDefaults) {
    TestPackage package;
    package.styles +=
        "<ParagraphStyle Self=\"ParagraphStyle/$ID/[No paragraph style]\" Name=\"$ID/[No paragraph style]\" "
        "PointSize=\"17\">"
        "<Properties><AppliedFont type=\"string\">Liberation Serif</AppliedFont></Properties></ParagraphStyle>";
    const auto document = package.read();
    const ResolvedAttributes& resolved = document->resolved(0, 0);
    EXPECT_EQ(resolved.pointSize, 17);
    EXPECT_EQ(resolved.fontFamily, "Liberation Serif");
}

TEST(Styles, ParagraphAttributesAreRead) {
    const auto document = withStyles(
        "<ParagraphStyle Self=\"ParagraphStyle/a\" Name=\"a\" Justification=\"LeftJustified\" "
        "SingleWordJustification=\"LeftAlign\" LeftIndent=\"1\" RightIndent=\"2\" "
        "FirstLineIndent=\"-3\" LastLineIndent=\"4\" SpaceBefore=\"5\" SpaceAfter=\"6\" AutoLeading=\"130\" "
        "Composer=\"HL Single\" DesiredWordSpacing=\"101\" "
        "MinimumWordSpacing=\"81\" MaximumWordSpacing=\"134\" Hyphenation=\"false\" HyphenateWordsLongerThan=\"7\" "
        "HyphenateAfterFirst=\"3\" HyphenateBeforeLast=\"4\" "
        "HyphenateLadderLimit=\"2\" HyphenationZone=\"20\" KeepWithNext=\"2\" KeepLinesTogether=\"true\" "
        "StartParagraph=\"NextPage\" RuleAbove=\"true\" "
        "RuleAboveLineWeight=\"2\" RuleAboveWidth=\"TextWidth\" GridAlignment=\"AlignBaseline\" "
        "ParagraphDirection=\"RightToLeftDirection\" "
        "BulletsAndNumberingListType=\"BulletList\" BulletsTextAfter=\"^m^t\"><Properties><RuleAboveColor "
        "type=\"object\">Color/Cyan</RuleAboveColor>"
        "<BulletChar BulletCharacterType=\"UnicodeOnly\" "
        "BulletCharacterValue=\"128512\"/></Properties></ParagraphStyle>");
    const TextAttributes& text = document->styleNamed(StyleKind::Paragraph, "a")->text;
    EXPECT_EQ(text.justification, Justification::LeftJustified);
    EXPECT_EQ(text.singleWordJustification, Justification::Left);
    EXPECT_EQ(text.leftIndent, 1);
    EXPECT_EQ(text.rightIndent, 2);
    EXPECT_EQ(text.firstLineIndent, -3);
    EXPECT_EQ(text.lastLineIndent, 4);
    EXPECT_EQ(text.spaceBefore, 5);
    EXPECT_EQ(text.spaceAfter, 6);
    EXPECT_EQ(text.autoLeading, 130);
    EXPECT_EQ(text.singleLineComposer, true);
    EXPECT_EQ(text.desiredWordSpacing, 101);
    EXPECT_EQ(text.minimumWordSpacing, 81);
    EXPECT_EQ(text.maximumWordSpacing, 134);
    EXPECT_EQ(text.hyphenation, false);
    EXPECT_EQ(text.hyphenateWordsLongerThan, 7);
    EXPECT_EQ(text.hyphenateAfterFirst, 3);
    EXPECT_EQ(text.hyphenateBeforeLast, 4);
    EXPECT_EQ(text.hyphenateLadderLimit, 2);
    EXPECT_EQ(text.hyphenationZone, 20);
    EXPECT_EQ(text.keepWithNext, 2);
    EXPECT_EQ(text.keepLinesTogether, true);
    EXPECT_EQ(text.startParagraph, ParagraphBreak::NextPage);
    EXPECT_EQ(text.ruleAbove, true);
    EXPECT_EQ(text.ruleAboveWeight, 2);
    EXPECT_EQ(text.ruleAboveTextWidth, true);
    EXPECT_EQ(text.ruleAboveColor, "Color/Cyan");
    EXPECT_EQ(text.alignToBaselineGrid, true);
    EXPECT_EQ(text.rightToLeft, true);
    EXPECT_EQ(text.listType, ListType::Bullet);
    EXPECT_EQ(text.bulletTextAfter, u"\u2003\t");
    EXPECT_EQ(text.bulletCharacter, u"\U0001F600");
    EXPECT_EQ(text.pointSize, std::nullopt);
}

TEST(Styles, CharacterAttributesAreRead) {
    const auto document = withStyles(
        "<CharacterStyle Self=\"CharacterStyle/a\" Name=\"a\" FontStyle=\"Bold Italic\" PointSize=\"8.5\" "
        "KerningMethod=\"$ID/Optical\" KerningValue=\"1e+11\" Tracking=\"-20\" "
        "HorizontalScale=\"0\" VerticalScale=\"90\" BaselineShift=\"2\" Skew=\"10\" Capitalization=\"SmallCaps\" "
        "Position=\"Superscript\" Underline=\"true\" UnderlineOffset=\"1.5\" "
        "StrikeThru=\"true\" Ligatures=\"false\" NoBreak=\"true\" FillColor=\"Color/Cyan\" FillTint=\"50\" "
        "StrokeColor=\"n\" AppliedLanguage=\"Language/$ID/German%3a 2006 Reform\" "
        "OTFFigureStyle=\"TabularLining\" OTFStylisticSets=\"6\" ParagraphBreakType=\"NextColumn\" "
        "Justification=\"CenterAlign\"><Properties><Leading type=\"enumeration\">Auto</Leading>"
        "<UnderlineColor type=\"object\">Color/Black</UnderlineColor></Properties></CharacterStyle>");
    const TextAttributes& text = document->styleNamed(StyleKind::Character, "a")->text;
    EXPECT_EQ(text.fontStyle, "Bold Italic");
    EXPECT_EQ(text.pointSize, 8.5);
    EXPECT_EQ(text.kerningMethod, KerningMethod::Optical);
    EXPECT_EQ(text.kerningValue, std::nullopt);
    EXPECT_EQ(text.tracking, -20);
    EXPECT_EQ(text.horizontalScale, 1);
    EXPECT_EQ(text.verticalScale, 90);
    EXPECT_EQ(text.baselineShift, 2);
    EXPECT_EQ(text.skew, 10);
    EXPECT_EQ(text.capitalization, Capitalization::SmallCaps);
    EXPECT_EQ(text.position, CharacterPosition::Superscript);
    EXPECT_EQ(text.underline, true);
    EXPECT_EQ(text.underlineOffset, 1.5);
    EXPECT_EQ(text.underlineColor, "Color/Black");
    EXPECT_EQ(text.strikeThrough, true);
    EXPECT_EQ(text.ligatures, false);
    EXPECT_EQ(text.noBreak, true);
    EXPECT_EQ(text.fillColor, "Color/Cyan");
    EXPECT_EQ(text.fillTint, 50);
    EXPECT_EQ(text.strokeColor, std::nullopt);
    EXPECT_EQ(text.language, "$ID/German: 2006 Reform");
    EXPECT_EQ(text.figureStyle, FigureStyle::TabularLining);
    EXPECT_EQ(text.stylisticSets, 6);
    EXPECT_EQ(text.paragraphBreak, ParagraphBreak::NextColumn);
    EXPECT_EQ(text.leading, Leading{});
    EXPECT_EQ(text.justification, std::nullopt);
}

TEST(Styles, ACategoryOfAnObjectStyleThatIsOffGivesNothing) {
    const std::string attributes =
        "FillColor=\"Color/Cyan\" StrokeColor=\"Color/Black\" StrokeWeight=\"3\" EndCap=\"RoundEndCap\"";
    const std::string content =
        "<TextFramePreference TextColumnCount=\"2\" FirstBaselineOffset=\"CapHeight\"/><TextWrapPreference "
        "TextWrapMode=\"BoundingBoxTextWrap\"/>";
    const auto document = withStyles("<ObjectStyle Self=\"ObjectStyle/on\" Name=\"on\" " + attributes + ">" + content +
                                     "</ObjectStyle><ObjectStyle Self=\"ObjectStyle/off\" Name=\"off\" " + attributes +
                                     " EnableFill=\"false\" EnableStroke=\"false\" "
                                     "EnableStrokeAndCornerOptions=\"false\" EnableTextFrameGeneralOptions=\"false\" "
                                     "EnableTextFrameBaselineOptions=\"false\" EnableTextWrapAndOthers=\"false\">" +
                                     content + "</ObjectStyle>");
    const Style& on = *document->styleNamed(StyleKind::Object, "on");
    EXPECT_EQ(on.item.fillColor, "Color/Cyan");
    EXPECT_EQ(on.item.strokeWeight, 3);
    EXPECT_EQ(on.item.endCap, 1);
    EXPECT_EQ(on.frame.columnCount, 2);
    EXPECT_EQ(on.frame.firstBaseline, FirstBaseline::CapHeight);
    ASSERT_TRUE(on.wrap);
    EXPECT_EQ(on.wrap->mode, TextWrapMode::BoundingBox);
    const Style& off = *document->styleNamed(StyleKind::Object, "off");
    EXPECT_EQ(off.item.fillColor, std::nullopt);
    EXPECT_EQ(off.item.strokeColor, std::nullopt);
    EXPECT_EQ(off.item.strokeWeight, std::nullopt);
    EXPECT_EQ(off.item.endCap, std::nullopt);
    EXPECT_EQ(off.frame.columnCount, std::nullopt);
    EXPECT_EQ(off.frame.firstBaseline, std::nullopt);
    EXPECT_FALSE(off.wrap);
}

}  // namespace
}  // namespace desk
