#include "desk/idml/values.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

TEST(Values, NumbersAreFiniteAndSane) {
    EXPECT_EQ(toNumber("-12.5"), -12.5);
    EXPECT_EQ(toNumber(" 1.5e2 "), 150);
    EXPECT_EQ(toNumber("+3"), 3);
    for (const char* text : {"", "n", "nan", "inf", "-inf", "1e400", "1e+11", "12pt", "0x10", "1,5", "--1"})
        EXPECT_EQ(toNumber(text), std::nullopt) << text;
}

TEST(Values, MatricesNeedSixNumbers) {
    EXPECT_EQ(toMatrix("0 1 -1 0 10 20"), (Matrix{0, 1, -1, 0, 10, 20}));
    EXPECT_EQ(toMatrix("1 0 0 1 0"), std::nullopt);
    EXPECT_EQ(toMatrix("1 0 0 1 0 x"), std::nullopt);
    EXPECT_EQ(toMatrix("1 0 0 1 0 nan"), std::nullopt);
}

TEST(Values, ABlankInsideAReferenceIsEscaped) {
    EXPECT_EQ(toReferences("Condition/Breaking%20News Condition/Web"),
              (std::vector<std::string>{"Condition/Breaking News", "Condition/Web"}));
    EXPECT_TRUE(toReferences("n").empty());
    EXPECT_TRUE(toReferences("  ").empty());
}

TEST(Values, NIsNoReference) {
    EXPECT_EQ(toReference("n"), "");
    EXPECT_EQ(toReference("u12"), "u12");
}

TEST(Values, TextBecomesUtf16) {
    EXPECT_EQ(toUtf16("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(toUtf16("a\xFF\xC3"), u"a\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("\xC0\xAF"), u"\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("\xED\xA0\x80").front(), u'\uFFFD');
    EXPECT_EQ(toUtf16("\xF4\x90\x80\x80").front(), u'\uFFFD');
}

TEST(Values, BuiltInNamesLoseTheirMark) {
    EXPECT_EQ(withoutKeyMark("$ID/[None]"), "[None]");
    EXPECT_EQ(withoutKeyMark("$ID/"), "");
    EXPECT_EQ(withoutKeyMark("Body"), "Body");
}

}  // namespace
}  // namespace desk
