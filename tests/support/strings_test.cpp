#include "support/strings.h"

#include "support/attributed_string.h"
#include "support/printing.h"

namespace vornaset {
namespace {

TEST(StringsAreEqual, TellsNullFromEmpty) {
    EXPECT_TRUE(stringsAreEqual(String(), String()));
    EXPECT_FALSE(stringsAreEqual(String(), String("")));
    EXPECT_FALSE(stringsAreEqual(String("a"), String()));
    EXPECT_TRUE(stringsAreEqual(String("a"), String("a")));
    EXPECT_FALSE(stringsAreEqual(String("a"), String("A")));
}

TEST(StringsAreEqual, LooksThroughAnArray) {
    EXPECT_TRUE(stringsAreEqual(String("b"), Array::make({"a", "b"})));
    EXPECT_FALSE(stringsAreEqual(String("1"), Array::make({1})));
    EXPECT_FALSE(stringsAreEqual(String("b"), Array::make()));
    EXPECT_FALSE(stringsAreEqual(String(), Array::make({"a"})));
}

TEST(StringStartsWith, AnEmptyPrefixHasNoOccurrence) {
    EXPECT_TRUE(stringStartsWith("abc", String("ab")));
    EXPECT_FALSE(stringStartsWith("abc", String("bc")));
    EXPECT_FALSE(stringStartsWith("a", String("ab")));
    EXPECT_FALSE(stringStartsWith("abc", String("")));
    EXPECT_FALSE(stringStartsWith("", String("")));
    EXPECT_FALSE(stringStartsWith(String(), String("a")));
    EXPECT_FALSE(stringStartsWith("a", String()));
    EXPECT_TRUE(stringStartsWith("abc", Array::make({"x", "a"})));
    EXPECT_FALSE(stringStartsWith("abc", Array::make()));
}

TEST(StringEndsWith, AnEmptySuffixFits) {
    EXPECT_TRUE(stringEndsWith("abc", String("bc")));
    EXPECT_FALSE(stringEndsWith("abc", String("ab")));
    EXPECT_FALSE(stringEndsWith("c", String("bc")));
    EXPECT_TRUE(stringEndsWith("abc", String("")));
    EXPECT_TRUE(stringEndsWith("", String("")));
    EXPECT_FALSE(stringEndsWith(String(), String("")));
    EXPECT_FALSE(stringEndsWith("a", String()));
}

TEST(StringEndsWith, GivesTheSuffixThatFits) {
    const Array suffixes = Array::make({"x", "bc", "c"});
    EXPECT_TRUE(stringEndsWith("abc", suffixes).isSameObject(suffixes[1].string()));
    EXPECT_TRUE(stringEndsWith("abd", suffixes).isNull());
    EXPECT_TRUE(stringEndsWith("abd", Array()).isNull());
}

TEST(StringContainsString, ObeysItsOptions) {
    EXPECT_TRUE(stringContainsString("abc", "bc", kExactSearch));
    EXPECT_FALSE(stringContainsString("abc", "BC", kExactSearch));
    EXPECT_TRUE(stringContainsString("abc", "BC", kCaseInsensitiveSearch));
    EXPECT_TRUE(stringContainsString(u"STRASSE \u00C4", u"\u00E4", kCaseInsensitiveSearch));
    EXPECT_FALSE(stringContainsString("abc", "", kExactSearch));
    EXPECT_FALSE(stringContainsString(nullptr, "a", kExactSearch));
    EXPECT_FALSE(stringContainsString("a", nullptr, kExactSearch));
    EXPECT_TRUE(stringContainsStrings("abc", Array::make({"x", "c"}), kExactSearch));
    EXPECT_FALSE(stringContainsStrings(nullptr, Array::make({"x", "c"}), kExactSearch));
}

TEST(StringContainsString, CanLookAtOneEndAlone) {
    EXPECT_TRUE(stringContainsString("abcab", "ab", kAnchoredSearch));
    EXPECT_FALSE(stringContainsString("cab", "ab", kAnchoredSearch));
    EXPECT_TRUE(stringContainsString("cab", "ab", kAnchoredSearch | kBackwardsSearch));
    EXPECT_FALSE(stringContainsString("abc", "AB", kAnchoredSearch | kBackwardsSearch | kCaseInsensitiveSearch));
    EXPECT_TRUE(stringContainsString("xabc", "ab", kBackwardsSearch));
    EXPECT_TRUE(stringContainsString("abc", "bc", 2));
}

TEST(StringContainsString, CanOverlookDiacritics) {
    EXPECT_TRUE(stringContainsString(u"caf\u00E9s", "cafe", kDiacriticInsensitiveSearch));
    EXPECT_FALSE(stringContainsString(u"CAF\u00C9S", "cafe", kDiacriticInsensitiveSearch));
    EXPECT_TRUE(
        stringContainsString(u"CAF\u00C9S", u"caf\u00EA", kDiacriticInsensitiveSearch | kCaseInsensitiveSearch));
    EXPECT_FALSE(stringContainsString("cafe", u"\u0301", kDiacriticInsensitiveSearch));
}

TEST(Characters, AreZeroWhereNoneStands) {
    EXPECT_EQ(firstCharacter(""), 0);
    EXPECT_EQ(firstCharacter(nullptr), 0);
    EXPECT_EQ(firstCharacter("ab"), 'a');
    EXPECT_EQ(secondCharacter("a"), 0);
    EXPECT_EQ(secondCharacter("ab"), 'b');
    EXPECT_EQ(lastCharacter("ab"), 'b');
    EXPECT_EQ(lastCharacter(""), 0);
}

TEST(FirstAndLastObject, AreNullForNoEntries) {
    EXPECT_TRUE(lastObject(Array::make()).isNull());
    EXPECT_TRUE(firstObject(Array::make()).isNull());
    EXPECT_TRUE(firstObject(Array()).isNull());
    EXPECT_EQ(firstObject(Array::make({1, 2})).number(), Number(1));
    EXPECT_EQ(lastObject(Array::make({1, 2})).number(), Number(2));
}

TEST(ExchangeEntries, SwapsPairs) {
    const Array letters = Array::makeMutable({"a", "b", "c", "d"});
    exchangeEntries(letters, 0, 2, 2);
    EXPECT_EQ(letters, Array::make({"c", "d", "a", "b"}));
    exchangeEntries(letters, 0, 2, 0);
    exchangeEntries(letters, 0, 2, -1);
    EXPECT_EQ(letters, Array::make({"c", "d", "a", "b"}));
    EXPECT_THROW(exchangeEntries(letters, 0, 4, 1), RangeException);
    EXPECT_THROW(exchangeEntries(letters, -1, 0, 1), RangeException);
}

TEST(IndexArrays, HoldEachIndexAscending) {
    EXPECT_EQ(arrayWithIndexRange(Range{3, 4}), Array::make({3, 4, 5, 6}));
    EXPECT_EQ(arrayWithIndexRange(Range{3, 0}), Array::make());
    IndexSet set = indexSetWithIndex(9);
    EXPECT_EQ(set.count(), 1);
    set.add(Range{2, 2});
    EXPECT_EQ(arrayWithIndexSet(set), Array::make({2, 3, 9}));
    EXPECT_TRUE(arrayWithIndexSet(IndexSet()).isEmpty());
}

TEST(ArrayWithDuplicates, HasEachOnce) {
    EXPECT_EQ(arrayWithDuplicates(Array::make({"a", "b", "a", "a"})), Array::make({"a"}));
    EXPECT_EQ(arrayWithDuplicates(Array::make({"a", "b", "b", "a"})), Array::make({"b", "a"}));
    EXPECT_EQ(arrayWithDuplicates(Array::make({1, "1", 1.0, Data("1")})), Array::make({1}));
    EXPECT_EQ(arrayWithDuplicates(Array::make({Array::make({1}), Array::make({2}), Array::make({1})})),
              Array::make({Array::make({1})}));
    EXPECT_TRUE(arrayWithDuplicates(Array::make({"a", "b"})).isEmpty());
    EXPECT_FALSE(arrayWithDuplicates(nullptr).isNull());
}

TEST(GetBCD, GivesTheNibbleAsACharacter) {
    EXPECT_EQ(getBCD(0x1234, 0), '4');
    EXPECT_EQ(getBCD(0x1234, 3), '1');
    EXPECT_EQ(getBCD(0x1234, 4), '0');
    EXPECT_EQ(getBCD(0xF, 0), 0x3F);
    EXPECT_EQ(getBCD(0xA0000000, 7), ':');
}

TEST(GetBCD, TheShiftCountsModulo32) {
    EXPECT_EQ(getBCD(0x1234, 8), '4');
    EXPECT_EQ(getBCD(0x1234, 11), '1');
    EXPECT_EQ(getBCD(0x12345678, -1), '1');
}

TEST(IsAttributedString, KnowsItsClass) {
    EXPECT_TRUE(isAttributedString(std::make_shared<AttributedString>()));
    EXPECT_FALSE(isAttributedString("text"));
    EXPECT_FALSE(isAttributedString(Value::nothing()));
    EXPECT_FALSE(isAttributedString(Value()));
    EXPECT_FALSE(isString(std::make_shared<AttributedString>("text")));
}

TEST(StringWithFormat, TakesAListOfArguments) {
    const std::array<FormatArgument, 2> arguments{FormatArgument("a"), FormatArgument(5)};
    EXPECT_EQ(stringWithFormat("%@-%d", std::span<const FormatArgument>(arguments)), String("a-5"));
    EXPECT_EQ(stringWithFormat("%@-%d", "a", 5), String("a-5"));
}

TEST(NumbersAndValues, HaveTheirPlainForms) {
    EXPECT_EQ(stringWithInteger(-5), String("-5"));
    EXPECT_EQ(numberWithInteger(7).number(), Number(7));
    EXPECT_EQ(stringWithFloat(2.5), String("2.5"));
    EXPECT_TRUE(isEven(0));
    EXPECT_TRUE(isEven(-2));
    EXPECT_FALSE(isEven(-3));
    EXPECT_TRUE(isNumber(1));
    EXPECT_FALSE(isNumber("1"));
    EXPECT_FALSE(isNumber(Value()));
    EXPECT_TRUE(isString("1"));
    EXPECT_FALSE(isString(Value()));
    EXPECT_EQ(floatWithDecimalComma("1,25"), 1.25);
}

}  // namespace
}  // namespace vornaset
