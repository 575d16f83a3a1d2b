#include "support/csv_lines.h"

#include "support/printing.h"

namespace vornaset {
namespace {

TEST(StringsWithCSVLine, IsNullForNoLine) {
    EXPECT_TRUE(stringsWithCSVLine(nullptr).isNull());
    EXPECT_TRUE(stringsWithCSVLine("").isNull());
}

TEST(StringsWithCSVLine, ASingleBlankIsOneEmptyField) {
    EXPECT_EQ(stringsWithCSVLine(" "), Array::make({""}));
}

TEST(StringsWithCSVLine, EveryCommaSplitsAndEmptyFieldsStay) {
    EXPECT_EQ(stringsWithCSVLine(","), Array::make({"", ""}));
    EXPECT_EQ(stringsWithCSVLine(",a,,b,"), Array::make({"", "a", "", "b", ""}));
    EXPECT_EQ(stringsWithCSVLine("one"), Array::make({"one"}));
}

TEST(StringsWithCSVLine, FieldsAreTrimmedOfWhiteSpaceAndLineBreaks) {
    EXPECT_EQ(stringsWithCSVLine(" a b ,\tc\r\n"), Array::make({"a b", "c"}));
}

TEST(StringsWithCSVLine, QuotationMarksAreOrdinaryCharacters) {
    EXPECT_EQ(stringsWithCSVLine("\"a,b\",c"), Array::make({"\"a", "b\"", "c"}));
    EXPECT_EQ(stringsWithCSVLine("\"a\"\"b\""), Array::make({"\"a\"\"b\""}));
    EXPECT_EQ(stringsWithCSVLine("a;b\tc"), Array::make({"a;b\tc"}));
}

TEST(CsvStringWithLines, JoinsEntriesByTabsAndLinesByLineFeeds) {
    EXPECT_EQ(csvStringWithLines(Array::make({Array::make({"a", "b"}), Array::make({"c"})})), String("a\tb\nc"));
    EXPECT_EQ(csvStringWithLines(Array::make({Array::make({1, 2.5}), Array::make()})), String("1\t2.5\n"));
    EXPECT_EQ(csvStringWithLines(Array::make({Array::make({"a\tb", "\"c\"\n"})})), String("a\tb\t\"c\"\n"));
}

TEST(CsvStringWithLines, IsEmptyForNoLines) {
    EXPECT_EQ(csvStringWithLines(Array::make()), String(""));
    EXPECT_EQ(csvStringWithLines(nullptr), String(""));
}

TEST(CsvStringWithLines, OneElementThatIsNoArrayEmptiesTheWhole) {
    EXPECT_EQ(csvStringWithLines(Array::make({Array::make({"a"}), "b"})), String(""));
    EXPECT_EQ(csvStringWithLines(Array::make({"b", Array::make({"a"})})), String(""));
}

TEST(CsvLines, ReaderAndWriterAreNoInverses) {
    const Array fields = Array::make({"a", "b"});
    EXPECT_EQ(stringsWithCSVLine(csvStringWithLines(Array::make({fields}))), Array::make({"a\tb"}));
}

}  // namespace
}  // namespace vornaset
