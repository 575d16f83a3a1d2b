#include <gmock/gmock.h>

#include "placeholders/text_model.h"
#include "plugin_fixture.h"

using namespace vornaset;

namespace {

class ScanningTest : public PluginTest {
  protected:
    /// Scans a text with as many rows as are asked for; the rows are {Nr: "0"}, {Nr: "1"}, ...
    std::vector<PlaceHolderLine> scan(const std::u16string& text, int rowCount = 1) {
        scanned.emplace(storyRef(textFrame(text)));
        std::vector<Value> rows;
        for (int row = 0; row < rowCount; ++row) rows.emplace_back(Dictionary::make({{u"Nr", Number(row).text()}}));
        scanned->setRows(Array::make(rows));
        scanned->setRow(0);
        return scanned->lines();
    }
    static std::string rowOf(const VornasetPlaceHolder& placeHolder) {
        return placeHolder.mapping().dictionary().valueForKey("Nr").string().utf8();
    }
    std::string keyOf(const VornasetPlaceHolder& placeHolder) const {
        return placeHolder.key(scanned->mirror()).utf8();
    }
    void TearDown() override {
        scanned.reset();
        PluginTest::TearDown();
    }

    std::optional<MyTextModel> scanned;
};

TEST_F(ScanningTest, PlaceholderIsFoundWithItsPositionsInTheStory) {
    const auto lines = scan(u"123456789\rDear <<Name>>,");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].pos, 10);
    EXPECT_EQ(lines[0].len, 15u);
    ASSERT_EQ(lines[0].phs.size(), 1u);
    EXPECT_EQ(lines[0].phs[0].pos1(), 15);
    EXPECT_EQ(lines[0].phs[0].pos2(), 21);
    EXPECT_EQ(keyOf(lines[0].phs[0]), "Name");
}

TEST_F(ScanningTest, PlaceholdersOfALineStandInTextOrderWithStoryPositions) {
    const auto lines = scan(u"x\r<<a>> and <<bc>>\ry");
    ASSERT_EQ(lines.size(), 1u);
    ASSERT_EQ(lines[0].phs.size(), 2u);
    EXPECT_EQ(lines[0].phs[0].pos1(), 2);
    EXPECT_EQ(lines[0].phs[0].pos2(), 5);
    EXPECT_EQ(lines[0].phs[1].pos1(), 12);
    EXPECT_EQ(lines[0].phs[1].pos2(), 16);
}

TEST_F(ScanningTest, HashMovesTheNextPlaceholderToTheNextRowAcrossLines) {
    const auto lines = scan(u"<<a#>> <<b>>\r<<c>>", 2);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(rowOf(lines[0].phs[0]), "0");
    EXPECT_EQ(rowOf(lines[0].phs[1]), "1");
    EXPECT_EQ(rowOf(lines[1].phs[0]), "1");
    EXPECT_EQ(scanned->row(), 1);
    EXPECT_EQ(scanned->rowDict().dictionary().valueForKey("Nr").string(), u"1");
}

TEST_F(ScanningTest, LoneHashNeedsANextRowAllTheSame) {
    EXPECT_THROW(scan(u"<<a#>>", 1), RangeException);
    EXPECT_EQ(scan(u"<<a#>>", 2).size(), 1u);
    EXPECT_EQ(scanned->row(), 1);
}

TEST_F(ScanningTest, HashBehindTheLastRowEndsInARangeFailure) {
    EXPECT_THROW(scan(u"<<a#>>\r<<b#>>\r<<c#>>", 3), RangeException);
}

TEST_F(ScanningTest, HashBeforeASpaceMovesNothing) {
    const auto lines = scan(u"<<a# >> <<b>>", 1);
    EXPECT_EQ(rowOf(lines[0].phs[1]), "0");
    EXPECT_EQ(scanned->row(), 0);
}

TEST_F(ScanningTest, KeyOfAHashAloneMovesToTheNextRow) {
    const auto lines = scan(u"<<#>><<a>>", 2);
    EXPECT_EQ(rowOf(lines[0].phs[1]), "1");
}

TEST_F(ScanningTest, UnclosedPlaceholderMakesNoLine) {
    EXPECT_TRUE(scan(u"<<a\r").empty());
}

TEST_F(ScanningTest, UnclosedPlaceholderEndsTheLinesScan) {
    const auto lines = scan(u"<<a>> <<b");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].phs.size(), 1u);
}

TEST_F(ScanningTest, ClosingMarkBeforeTheOpeningOneMakesNoLine) {
    EXPECT_TRUE(scan(u">> <<").empty());
}

TEST_F(ScanningTest, ClosingMarkIsSoughtBehindTheOpeningOne) {
    EXPECT_TRUE(scan(u"<<>").empty());
    const auto lines = scan(u"<<>>");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(keyOf(lines[0].phs[0]), "");
}

TEST_F(ScanningTest, PlaceholderAcrossAReturnIsTwoFragments) {
    EXPECT_TRUE(scan(u"<<a\rb>>").empty());
}

TEST_F(ScanningTest, PlaceholderAcrossAForcedLineBreakIsOne) {
    const auto lines = scan(u"<<a\u2028b>>");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(keyOf(lines[0].phs[0]), "a\u2028b");
}

TEST_F(ScanningTest, ScanDoesNotNest) {
    const auto lines = scan(u"<<a<<b>> c>>");
    ASSERT_EQ(lines[0].phs.size(), 1u);
    EXPECT_EQ(keyOf(lines[0].phs[0]), "a<<b");
}

TEST_F(ScanningTest, ThirdClosingAngleStaysInTheText) {
    const auto lines = scan(u"<<a>>> <<b>>");
    ASSERT_EQ(lines[0].phs.size(), 2u);
    EXPECT_EQ(keyOf(lines[0].phs[0]), "a");
    EXPECT_EQ(keyOf(lines[0].phs[1]), "b");
}

TEST_F(ScanningTest, StoryWithoutPlaceholdersGivesNoLine) {
    EXPECT_TRUE(scan(u"").empty());
    EXPECT_TRUE(scan(u"Dear Sir,\r\rYours").empty());
}

TEST_F(ScanningTest, LinesWithoutPlaceholdersAreNotListed) {
    const auto lines = scan(u"\r<<a>>\r\r<<b>>\r");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].pos, 1);
    EXPECT_EQ(lines[1].pos, 8);
}

TEST_F(ScanningTest, LineTextIsScannedWithItsPlaceInTheStoryAndTheSpareArgumentHasNoEffect) {
    scan(u"");
    const auto found = scanned->placeHoldersForLine(u"a <<b>>", 100, 7);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].pos1(), 102);
    EXPECT_EQ(found[0].pos2(), 105);
    EXPECT_TRUE(scanned->placeHoldersForLine(u"plain", 100, 0).empty());
}

TEST(PlaceHolderTest, DescriptionTellsPositionsAndRow) {
    VornasetPlaceHolder placeHolder = VornasetPlaceHolder::placeHolderWithPos(3, 7);
    placeHolder.setMapping(String("row"));
    EXPECT_EQ(placeHolder.description(), u"pos1: 3, pos2: 7, mapping: row");
    placeHolder.setPos1(4);
    placeHolder.setPos2(9);
    EXPECT_EQ(placeHolder.pos1(), 4);
    EXPECT_EQ(placeHolder.pos2(), 9);
}

/// The rule told once more, slowly: pieces between carriage returns, marks in alternation.
std::vector<std::pair<int, int>> slowly(const std::u16string& text) {
    std::vector<std::pair<int, int>> found;
    size_t start = 0;
    for (size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] != u'\r') continue;
        int opening = -1;
        for (size_t k = start; k + 1 < i; ++k) {
            const bool opens = text[k] == u'<' && text[k + 1] == u'<';
            const bool closes = text[k] == u'>' && text[k + 1] == u'>';
            if (opening < 0 && opens) {
                opening = static_cast<int>(k++);
            } else if (opening >= 0 && closes) {
                found.emplace_back(opening, static_cast<int>(k++));
                opening = -1;
            }
        }
        start = i + 1;
    }
    return found;
}

TEST_F(ScanningTest, RandomTextsScanAsTheSlowRuleSays) {
    uint32_t state = 7;
    const auto next = [&](uint32_t bound) { return (state = state * 1664525u + 1013904223u) / 65536u % bound; };
    for (int round = 0; round < 400; ++round) {
        std::u16string text;
        for (uint32_t i = 0, length = next(40); i < length; ++i) text += u"<<>>a\r"[next(6)];
        std::vector<std::pair<int, int>> found;
        for (const PlaceHolderLine& line : scan(text))
            for (const VornasetPlaceHolder& one : line.phs) found.emplace_back(one.pos1(), one.pos2());
        scanned.reset();
        EXPECT_EQ(found, slowly(text + u"\r")) << String(text).utf8();
    }
}

}  // namespace
