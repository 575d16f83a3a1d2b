#include "support/text_trimming.h"

#include "support/printing.h"

namespace vornaset {
namespace {

TEST(TrimmingWhitespace, CutsBothEndsAlone) {
    EXPECT_EQ(stringByTrimmingWhitespace(" \t\r\n a b \v\f"), String("a b"));
    EXPECT_EQ(stringByTrimmingWhitespace(u"\u00A0\u2003\u2028a\u2029\u3000\u0085\u1680\u202F\u205F"), String("a"));
    EXPECT_EQ(stringByTrimmingWhitespace(" \n "), String(""));
    EXPECT_EQ(stringByTrimmingWhitespace(""), String(""));
    EXPECT_EQ(stringByTrimmingWhitespace(u"\u200Ba\uFEFF"), String(u"\u200Ba\uFEFF"));
    EXPECT_TRUE(stringByTrimmingWhitespace(nullptr).isNull());
    const String clean = "a b";
    EXPECT_TRUE(stringByTrimmingWhitespace(clean).isSameObject(clean));
}

TEST(RemovingLineBreaks, RemovesEveryReturnAndLineFeed) {
    EXPECT_EQ(stringByRemovingLineBreaks("\ra\r\nb\n\nc "), String("abc "));
    EXPECT_EQ(stringByRemovingLineBreaks(u"a\u2028b\vc"), String(u"a\u2028b\vc"));
    EXPECT_EQ(stringByRemovingLineBreaks("\r\n"), String(""));
    EXPECT_TRUE(stringByRemovingLineBreaks(nullptr).isNull());
    const String clean = "a b";
    EXPECT_TRUE(stringByRemovingLineBreaks(clean).isSameObject(clean));
}

TEST(TrimmingTrailingZeros, CutsZerosAndThePointBehindWhichNothingIsLeft) {
    EXPECT_EQ(stringByTrimmingTrailingZeros("1.500"), String("1.5"));
    EXPECT_EQ(stringByTrimmingTrailingZeros("2.000"), String("2"));
    EXPECT_EQ(stringByTrimmingTrailingZeros("0.000"), String("0"));
    EXPECT_EQ(stringByTrimmingTrailingZeros("-1.25"), String("-1.25"));
    EXPECT_EQ(stringByTrimmingTrailingZeros("100."), String("100"));
    EXPECT_EQ(stringByTrimmingTrailingZeros(".0"), String(""));
    EXPECT_EQ(stringByTrimmingTrailingZeros("1.0.0"), String("1.0"));
}

TEST(TrimmingTrailingZeros, LeavesATextWithoutAPointAlone) {
    const String ten = "10";
    EXPECT_TRUE(stringByTrimmingTrailingZeros(ten).isSameObject(ten));
    EXPECT_EQ(stringByTrimmingTrailingZeros(""), String(""));
    EXPECT_TRUE(stringByTrimmingTrailingZeros(nullptr).isNull());
}

TEST(TrimmingTrailingZeros, TakesTextsOfAnyLength) {
    const std::string digits(500, '7');
    EXPECT_EQ(stringByTrimmingTrailingZeros(String::fromUTF8(digits + "." + digits + std::string(100, '0'))),
              String::fromUTF8(digits + "." + digits));
}

}  // namespace
}  // namespace vornaset
