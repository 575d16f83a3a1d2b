#include "placeholders/substitution.h"

#include <gmock/gmock.h>

#include "host/api/host.h"
#include "plugin_fixture.h"
#include "recorded_story.h"

using namespace vornaset;

namespace {

Dictionary rule(const char* name, const char* contentOf, Dictionary replacements) {
    return Dictionary::make({{"name", name}, {"contentOf", contentOf}, {"replacementsDict", replacements}});
}

class SubstitutionTest : public PluginTest {
  protected:
    void SetUp() override { gRules = Dictionary(); }
    void TearDown() override {
        gRules = Dictionary();
        PluginTest::TearDown();
    }

    /// The text that a template becomes with one row.
    std::u16string filled(const std::u16string& text, const Value& row, uint8_t rmvEmptyLines = 1) {
        frame = textFrame(text);
        result = processTextModel(storyRef(frame), Array::make({row}), 0, rmvEmptyLines);
        return textIn(frame);
    }
    std::u16string filled(const std::u16string& text, uint8_t rmvEmptyLines = 1) {
        return filled(text, miller, rmvEmptyLines);
    }

    const Dictionary miller = Dictionary::make({{"Name", "Miller"}});
    Uid frame = 0;
    uint8_t result = 7;
};

// --- The table of line clean-up

TEST_F(SubstitutionTest, SpaceOfAnEmptyFieldGoesWithIt) {
    EXPECT_EQ(filled(u"Dear <<Title >><<Name>>"), u"Dear Miller");
}

TEST_F(SubstitutionTest, ValueGetsTheSpaceOfItsKey) {
    EXPECT_EQ(filled(u"Dear <<Name >>and"), u"Dear Miller and");
}

TEST_F(SubstitutionTest, PunctuationClosesUpOverAnEmptyField) {
    EXPECT_EQ(filled(u"<<Name>> <<City>><<,>>"), u"Miller,");
}

TEST_F(SubstitutionTest, LineOfAnEmptyFieldAndPunctuationGoesWhole) {
    EXPECT_EQ(filled(u"x\r<<Title>><<,>>\ry"), u"x\ry");
    EXPECT_EQ(filled(u"<<Title>><<,>>\ry"), u"y");
}

TEST_F(SubstitutionTest, KeptEmptyLineGetsItsPunctuation) {
    EXPECT_EQ(filled(u"x\r<<Title>><<,>>\ry", 0), u"x\r,\ry");
}

TEST_F(SubstitutionTest, LineOfASpaceIsNotEmpty) {
    EXPECT_EQ(filled(u"x\r<<Title>> <<City>>\ry"), u"x\r \ry");
}

TEST_F(SubstitutionTest, SpaceBeforePunctuationGoesAwayFromTheStorysStart) {
    EXPECT_EQ(filled(u"x\r<<Title>> <<City>><<,>>\ry"), u"x\r,\ry");
}

TEST_F(SubstitutionTest, SpaceBeforePunctuationStaysAtTheStorysStart) {
    EXPECT_EQ(filled(u"<<Title>> <<City>><<,>>\ry"), u" ,\ry");
}

TEST_F(SubstitutionTest, SpacesAtTheStorysStartGoUpToPositionZeroExclusive) {
    EXPECT_EQ(filled(u"<<Title>>   <<City>><<,>>\ry"), u" ,\ry");
}

TEST_F(SubstitutionTest, EmptyFirstLineAndTrailingReturnsGo) {
    EXPECT_EQ(filled(u"<<Title>>\r<<Name>>\r\r"), u"Miller");
    EXPECT_EQ(textOf(storyOf(frame)), u"Miller\r");
}

// --- Lines

TEST_F(SubstitutionTest, EmptyLinesOfTheTemplateStay) {
    EXPECT_EQ(filled(u"a\r\r<<Name>>\r\rb"), u"a\r\rMiller\r\rb");
}

TEST_F(SubstitutionTest, EmptyLinesStayWhenTheyAreToBeKept) {
    EXPECT_EQ(filled(u"a\r<<Title>>\rb", 0), u"a\r\rb");
    EXPECT_EQ(filled(u"a\r<<Title>>\rb", 2), u"a\r\rb");
}

TEST_F(SubstitutionTest, TrailingReturnsGoEvenWhenEmptyLinesAreKept) {
    EXPECT_EQ(filled(u"<<Name>>\r<<Title>>\r\r", 0), u"Miller");
    EXPECT_EQ(filled(u"no placeholder\r\r\r", 0), u"no placeholder");
}

TEST_F(SubstitutionTest, EmptyLastLineGoesAlthoughItsReturnIsTheTerminalOne) {
    EXPECT_EQ(filled(u"a\r<<Title>>"), u"a");
    EXPECT_EQ(filled(u"a\r<<Title>>\r<<City>>"), u"a");
}

TEST_F(SubstitutionTest, StoryThatComesOutEmptyKeepsItsTerminalReturn) {
    filled(u"<<Title>>\r<<City>>");
    EXPECT_EQ(textOf(storyOf(frame)), u"\r");
}

TEST_F(SubstitutionTest, PunctuationOfTheLastLineStandsBeforeTheTerminalReturn) {
    EXPECT_EQ(filled(u"x <<City>> <<.>>"), u"x.");
}

TEST_F(SubstitutionTest, OnlySpacesGoBeforePunctuation) {
    EXPECT_EQ(filled(u"<<Name>>\t <<City>><<,>>"), u"Miller\t,");
    EXPECT_EQ(filled(u"<<Name>>\u00A0<<,>>"), u"Miller\u00A0,");
}

TEST_F(SubstitutionTest, SeveralPlaceholdersOfSeveralLinesAllTurn) {
    const Dictionary row = Dictionary::make({{"a", "1"}, {"bb", "two"}, {"c", ""}, {"d", "\u00E4\U0001F600"}});
    EXPECT_EQ(filled(u"<<a>><<bb>>-<<a>>\r<<c>>\r<<d>> <<bb>>!", row), u"1two-1\r\u00E4\U0001F600 two!");
}

// --- Values

TEST_F(SubstitutionTest, NumberStandsAsItsText) {
    EXPECT_EQ(filled(u"No. <<Name>>", Dictionary::make({{"Name", 42}})), u"No. 42");
    EXPECT_EQ(filled(u"<<Name>>", Dictionary::make({{"Name", 0.1f}})), u"0.1");
}

TEST_F(SubstitutionTest, OtherKindsOfValuesVanish) {
    EXPECT_EQ(filled(u"a<<Name>>b", Dictionary::make({{"Name", Array::make({"x"})}})), u"ab");
}

TEST_F(SubstitutionTest, UnknownKeyVanishes) {
    EXPECT_EQ(filled(u"a<<Unknown>>b"), u"ab");
}

TEST_F(SubstitutionTest, EmptyKeyVanishes) {
    EXPECT_EQ(filled(u"a<<>>b"), u"ab");
}

TEST_F(SubstitutionTest, KeyOfASpaceVanishes) {
    EXPECT_EQ(filled(u"a<< >>b<<Name>>", Dictionary::make({{"Name", "x"}, {"", "never"}})), u"anever bx");
    EXPECT_EQ(filled(u"a<< >>b<<Name>>"), u"abMiller");
}

TEST_F(SubstitutionTest, RowThatIsNoDictionaryMakesAllPlaceholdersVanish) {
    setupRules(Array::make({rule("Rule", "Name", Dictionary::make({{"m", "Mr"}}))}));
    EXPECT_EQ(filled(u"a<<Name>>b<<Rule>>c", String("no dictionary")), u"abc");
}

TEST_F(SubstitutionTest, ValueIsInsertedAsItStandsAndNotScannedAgain) {
    EXPECT_EQ(filled(u"<<Name>>!", Dictionary::make({{"Name", "<<City>>\rtwo"}, {"City", "Bern"}})), u"<<City>>\rtwo!");
}

TEST_F(SubstitutionTest, ValueOfAReturnAloneIsNoEmptyLine) {
    EXPECT_EQ(filled(u"a\r<<Name>>\rb", Dictionary::make({{"Name", "\r"}})), u"a\r\r\rb");
}

TEST_F(SubstitutionTest, KeyEndingInHashAndSpaceKeepsItsHash) {
    EXPECT_EQ(filled(u"<<Name# >>x", Dictionary::make({{"Name", "no"}, {"Name#", "yes"}})), u"yes x");
}

// --- Trailing punctuation

TEST_F(SubstitutionTest, OneLetterColumnIsAValueAndNoPunctuation) {
    EXPECT_EQ(filled(u"a <<X>>", Dictionary::make({{"X", "value"}})), u"a value");
    EXPECT_EQ(filled(u"a <<X>>b", Dictionary::make({{"X", ""}})), u"a b");
}

TEST_F(SubstitutionTest, OneLetterWithoutAColumnGoesToTheLinesEnd) {
    EXPECT_EQ(filled(u"x <<a>>yz "), u"x yza");
}

TEST_F(SubstitutionTest, OneLetterThatIsNotTheLastPlaceholderVanishes) {
    EXPECT_EQ(filled(u"<<,>> <<Name>>"), u" Miller");
}

TEST_F(SubstitutionTest, RuleOfOneLetterFillsAndPunctuatesToo) {
    setupRules(Array::make({rule("a", "Name", Dictionary::make({{"Miller", "M."}}))}));
    EXPECT_EQ(filled(u"x <<a>>"), u"x M.a");
}

TEST_F(SubstitutionTest, PunctuationAsksTheLastRowThatTheScanReached) {
    const Array rows = Array::make({Dictionary::make({{"Name", "A"}}), Dictionary::make({{"Name", "B"}, {",", "x"}})});
    frame = textFrame(u"<<Name>><<,>>\r<<Name#>>\r<<Name>>");
    processTextModel(storyRef(frame), rows, 0, 1);
    // Row 0, from which the first line takes its values, has no column ","; the last row reached has one.
    EXPECT_EQ(textIn(frame), u"A\rA\rB");
}

TEST_F(SubstitutionTest, PunctuationOfALineDoesNotReachTheNext) {
    EXPECT_EQ(filled(u"<<Name>>\r<<Name>><<,>>\r<<Name>>"), u"Miller\rMiller,\rMiller");
}

// --- Rows

TEST_F(SubstitutionTest, HashWalksThroughTheRows) {
    const Array rows = Array::make(
        {Dictionary::make({{"Name", "A"}}), Dictionary::make({{"Name", "B"}}), Dictionary::make({{"Name", "C"}})});
    frame = textFrame(u"<<Name#>>\r<<Name>> <<Name#>>\r<<Name>>");
    EXPECT_EQ(processTextModel(storyRef(frame), rows, 0, 1), 1);
    EXPECT_EQ(textIn(frame), u"A\rB B\rC");
}

TEST_F(SubstitutionTest, RowPastTheEndLeavesTheStoryUntouched) {
    const Array rows = Array::make({miller});
    for (const int64_t row : {int64_t{1}, int64_t{-1}, INT64_MAX}) {
        frame = textFrame(u"Dear <<Name>>,\r\r");
        RecordedStory story(storyRef(frame));
        EXPECT_EQ(processTextModel(&story, rows, row, 1), 1);
        EXPECT_TRUE(story.calls.empty());
        EXPECT_EQ(textIn(frame), u"Dear <<Name>>,\r\r");
    }
    EXPECT_EQ(processTextModel(storyRef(frame), Array(), 0, 1), 1);
    EXPECT_EQ(textIn(frame), u"Dear <<Name>>,\r\r");
}

TEST_F(SubstitutionTest, TooFewRowsFailBeforeAnythingIsEdited) {
    frame = textFrame(u"<<Name>>\r<<Name#>>\r<<Name>>");
    EXPECT_THROW(processTextModel(storyRef(frame), Array::make({miller}), 0, 1), RangeException);
    EXPECT_EQ(textIn(frame), u"<<Name>>\r<<Name#>>\r<<Name>>");
    EXPECT_EQ(border.outstandingReferences(), 0);
}

// --- Results

TEST_F(SubstitutionTest, ResultTellsWhetherTheTextFits) {
    layout.roomForText = 6;
    filled(u"<<Name>>");
    EXPECT_EQ(result, 1);
    filled(u"x<<Name>>");
    EXPECT_EQ(result, 0);
}

TEST_F(SubstitutionTest, StoryReferenceAndTextModelGiveTheSame) {
    frame = textFrame(u"Dear <<Name>>");
    InterfacePtr<ITextModel> story(storyRef(frame));
    EXPECT_EQ(balanced([&] { return processTextModel(story.get(), Array::make({miller}), 0, 1); }), 1);
    EXPECT_EQ(textIn(frame), u"Dear Miller");
}

TEST_F(SubstitutionTest, ObjectWithoutATextCountsAsOverset) {
    EXPECT_EQ(processTextModel(UIDRef(), Array::make({miller}), 0, 1), 0);
}

// --- Styles

TEST_F(SubstitutionTest, ValueTakesTheRowsStyleAndTheTextBehindItDoesNot) {
    style(desk::StyleKind::Character, "Bold");
    const Dictionary row = Dictionary::make({{"Name", "Miller"}, {"#Name", "Bold"}});
    EXPECT_EQ(filled(u"Dear <<Name>>, hello", row), u"Dear Miller, hello");
    const Uid story = storyOf(frame);
    EXPECT_EQ(characterStyleAt(story, 4), "[No character style]");
    EXPECT_EQ(characterStyleAt(story, 5), "Bold");
    EXPECT_EQ(characterStyleAt(story, 10), "Bold");
    EXPECT_EQ(characterStyleAt(story, 11), "[No character style]");
}

TEST_F(SubstitutionTest, SpaceOfAKeyTakesTheValuesStyleToo) {
    style(desk::StyleKind::Character, "Bold");
    EXPECT_EQ(filled(u"<<Name >>x", Dictionary::make({{"Name", "AB"}, {"#Name", "Bold"}})), u"AB x");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 2), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 3), "[No character style]");
}

TEST_F(SubstitutionTest, HashKeyReadsTheSameStyleEntry) {
    style(desk::StyleKind::Character, "Bold");
    const Dictionary row = Dictionary::make({{"Name", "AB"}, {"#Name", "Bold"}});
    frame = textFrame(u"<<Name#>>x");
    processTextModel(storyRef(frame), Array::make({row, row}), 0, 1);
    EXPECT_EQ(textIn(frame), u"ABx");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 1), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 2), "[No character style]");
}

TEST_F(SubstitutionTest, StyleThatTheDocumentLacksLeavesTheValueUnstyled) {
    EXPECT_EQ(filled(u"<<Name>>", Dictionary::make({{"Name", "AB"}, {"#Name", "Nowhere"}})), u"AB");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 0), "[No character style]");
}

TEST_F(SubstitutionTest, ValueTakesTheAttributesOfThePlaceholdersOwnText) {
    const Uid bold = style(desk::StyleKind::Character, "Bold");
    frame = textFrame(u"ab<<Name>>cd");
    InterfacePtr<ITextModel> story(storyRef(frame));
    story->ApplyStyle(2, 8, UID(bold), AttributeStrand::Character, true, true);
    processTextModel(story.get(), Array::make({miller}), 0, 1);
    EXPECT_EQ(textIn(frame), u"abMillercd");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 1), "[No character style]");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 2), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 7), "Bold");
    EXPECT_EQ(characterStyleAt(storyOf(frame), 8), "[No character style]");
}

TEST_F(SubstitutionTest, StyleOfAnEmptyValueHasNoEffect) {
    style(desk::StyleKind::Character, "Bold");
    EXPECT_EQ(filled(u"ab<<Name>>cd", Dictionary::make({{"Name", ""}, {"#Name", "Bold"}})), u"abcd");
    for (int32_t position = 0; position < 4; ++position)
        EXPECT_EQ(characterStyleAt(storyOf(frame), position), "[No character style]");
}

TEST_F(SubstitutionTest, ValueAndStyleOfAKey) {
    MyTextModel text(storyRef(textFrame(u"")));
    const Value row =
        Dictionary::make({{"Name", "Miller"}, {"#Name", "Bold"}, {"Empty", ""}, {"#Empty", "Bold"}, {"#City", ""}});
    String found("untouched");
    EXPECT_EQ(text.stringAndStyleForKey(u"", &found, row), u"");
    EXPECT_EQ(found, u"untouched");
    EXPECT_EQ(text.stringAndStyleForKey("Name", &found, row), u"Miller");
    EXPECT_EQ(found, u"Bold");
    EXPECT_EQ(text.stringAndStyleForKey("City", &found, row), u"");
    EXPECT_TRUE(found.isNull());
    EXPECT_EQ(text.stringAndStyleForKey("Empty ", &found, row), u"");
    EXPECT_EQ(found, u"Bold");
    EXPECT_EQ(text.stringAndStyleForKey("Name ", nullptr, row), u"Miller ");
    EXPECT_EQ(text.stringAndStyleForKey("Name#", nullptr, row), u"Miller");
    EXPECT_TRUE(text.styleForKey("City", row).isNull());
}

// --- Rules

TEST_F(SubstitutionTest, RuleTranslatesTheColumnThatFeedsIt) {
    setupRules(Array::make({rule("Salutation", "Sex", Dictionary::make({{"m", "Mr"}, {"f", "Mrs"}}))}));
    EXPECT_EQ(filled(u"<<Salutation >>X", Dictionary::make({{"Sex", "m"}})), u"Mr X");
    EXPECT_EQ(filled(u"<<Salutation >>X", Dictionary::make({{"Sex", "f"}})), u"Mrs X");
    EXPECT_EQ(filled(u"<<Salutation >>X", Dictionary::make({{"Sex", "x"}})), u"x X");
    EXPECT_EQ(filled(u"<<Salutation >>X", Dictionary::make({{"Name", "y"}})), u"X");
}

TEST_F(SubstitutionTest, ColumnBeatsTheRuleOfItsNameEvenWhenEmpty) {
    setupRules(Array::make({rule("Name", "Sex", Dictionary::make({{"m", "Mr"}}))}));
    EXPECT_EQ(filled(u"a<<Name>>b", Dictionary::make({{"Name", ""}, {"Sex", "m"}})), u"ab");
}

TEST_F(SubstitutionTest, RuleWithoutAReplacementTableGivesTheSource) {
    setupRules(
        Array::make({Dictionary::make({{"name", "R"}, {"contentOf", "Name"}, {"replacementsDict", "no table"}})}));
    EXPECT_EQ(filled(u"a <<R>>b"), u"a MillerbR");
}

TEST_F(SubstitutionTest, RuleFedByANumberLooksUpItsText) {
    setupRules(Array::make({rule("Size", "Nr", Dictionary::make({{"1", "one"}}))}));
    EXPECT_EQ(filled(u"<<Size>>!", Dictionary::make({{"Nr", 1}})), u"one!");
}

TEST_F(SubstitutionTest, RulesAreReplacedAltogether) {
    setupRules(Array::make({rule("Old", "Name", Dictionary::make())}));
    setupRules(Array::make({rule("New", "Name", Dictionary::make())}));
    EXPECT_EQ(filled(u"<<Old>>/<<New>>"), u"/Miller");
    setupRules(Array::make());
    EXPECT_EQ(filled(u"<<Old>>/<<New>>"), u"/");
    EXPECT_FALSE(gRules.isNull());
}

TEST_F(SubstitutionTest, LaterRuleOfANameWins) {
    setupRules(Array::make({rule("R", "Name", Dictionary::make({{"Miller", "1"}})),
                            rule("R", "Name", Dictionary::make({{"Miller", "2"}}))}));
    EXPECT_EQ(filled(u"x<<R>>y"), u"x2yR");
}

TEST_F(SubstitutionTest, RulesThatCannotAnswerAreRefused) {
    EXPECT_THROW(setupRules(Array::make({Dictionary::make({{"name", "R"}, {"contentOf", "x"}})})),
                 InvalidArgumentException);
    EXPECT_THROW(setupRules(Array::make({Dictionary::make({{"name", "R"}, {"replacementsDict", "x"}})})),
                 InvalidArgumentException);
    EXPECT_THROW(setupRules(Array::make({Dictionary::make({{"contentOf", "x"}, {"replacementsDict", "x"}})})),
                 InvalidArgumentException);
    EXPECT_THROW(setupRules(Array::make({String("no rule")})), UnrecognizedOperation);
}

TEST_F(SubstitutionTest, WithoutRulesEveryUnknownKeyIsEmpty) {
    MyTextModel text(storyRef(textFrame(u"")));
    EXPECT_FALSE(text.stringForMapping("Unknown", Value(miller)).isNull());
    EXPECT_EQ(text.stringForMapping("Unknown", Value(miller)), u"");
}

// --- The order of edits

TEST_F(SubstitutionTest, ValueStandsBeforeItsPlaceholderGoes) {
    RecordedStory story(storyRef(textFrame(u"ab<<Name>>")));
    processTextModel(&story, Array::make({miller}), 0, 1);
    const std::string none =
        std::to_string(document.styleNamed(desk::StyleKind::Character, "[No character style]")->uid);
    EXPECT_THAT(story.calls, ::testing::ElementsAre("insert 8 Miller", "character style " + none + " at 14+0",
                                                    "delete 14+2", "delete 2+6"));
}

TEST_F(SubstitutionTest, SpacesAreWalkedBackwardsFromAPosition) {
    frame = textFrame(u"   a  b");
    MyTextModel text(storyRef(frame));
    text.rmvSpacesBackwards(0);
    text.rmvSpacesBackwards(-3);
    text.rmvSpacesBackwards(6);
    EXPECT_EQ(textIn(frame), u"   a  b");
    text.rmvSpacesBackwards(5);
    EXPECT_EQ(textIn(frame), u"   ab");
    text.rmvSpacesBackwards(2);
    EXPECT_EQ(textIn(frame), u" ab");
    EXPECT_EQ(text.mirror().string(), u" ab\r");
}

TEST_F(SubstitutionTest, LineWithoutAPlaceholderHasNoLastOne) {
    MyTextModel text(storyRef(textFrame(u"a")));
    EXPECT_THROW(text.doLastPlaceHolder({}, -1), RangeException);
}

}  // namespace
