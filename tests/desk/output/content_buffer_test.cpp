#include "desk/output/content_buffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace desk {
namespace {

std::string numberOf(double value) {
    return std::string(ContentBuffer().number(value).view());
}
std::string factorOf(double value) {
    return std::string(ContentBuffer().factor(value).view());
}

TEST(ContentBuffer, WritesNumbersWithThreeDecimalsAtMostAndNoZerosAtTheirEnd) {
    EXPECT_EQ(numberOf(0), "0");
    EXPECT_EQ(numberOf(-0.0), "0");
    EXPECT_EQ(numberOf(12), "12");
    EXPECT_EQ(numberOf(-13.2), "-13.2");
    EXPECT_EQ(numberOf(0.5), ".5");
    EXPECT_EQ(numberOf(-0.05), "-.05");
    EXPECT_EQ(numberOf(595.2755906), "595.276");
    EXPECT_EQ(numberOf(0.0004), "0");
    EXPECT_EQ(numberOf(-0.0004), "0");
    EXPECT_EQ(numberOf(99.9996), "100");
    EXPECT_EQ(factorOf(0.70710678), ".707107");
    EXPECT_EQ(factorOf(-1), "-1");
    EXPECT_EQ(factorOf(-0.0000001), "0");
}

TEST(ContentBuffer, GivesAPlainNumberForWhatIsNone) {
    EXPECT_EQ(numberOf(std::numeric_limits<double>::quiet_NaN()), "0");
    EXPECT_EQ(numberOf(std::numeric_limits<double>::infinity()), "1000000000000");
    EXPECT_EQ(numberOf(-std::numeric_limits<double>::infinity()), "-1000000000000");
    EXPECT_EQ(factorOf(std::numeric_limits<double>::quiet_NaN()), "0");
}

TEST(ContentBuffer, NumbersReadBackWithinHalfAThousandth) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> wide(-20000, 20000), narrow(-2, 2);
    for (int i = 0; i < 20000; ++i) {
        const double value = i % 2 ? wide(random) : narrow(random);
        EXPECT_NEAR(std::stod(numberOf(value)), value, 0.000501) << value;
        EXPECT_NEAR(std::stod(factorOf(value)), value, 0.000000501) << value;
    }
}

TEST(ContentBuffer, EscapesWhatWouldEndAStringOrAName) {
    EXPECT_EQ(ContentBuffer().literal("a(b)\\c\r\n").view(), "(a\\(b\\)\\\\c\\r\n)");
    EXPECT_EQ(ContentBuffer().name("HOUSE 286 C/#").view(), "/HOUSE#20286#20C#2F#23");
    EXPECT_EQ(ContentBuffer().name("Gr\xC3\xBCn").view(), "/Gr#C3#BCn");
    EXPECT_EQ(ContentBuffer().hexadecimal(std::string("\x00\xFF\x1a", 3)).view(), "00FF1A");
}

TEST(ContentBuffer, KeepsItsBytesWhileItGrows) {
    ContentBuffer buffer;
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        buffer.integer(i).append(' ');
        expected += std::to_string(i) + " ";
    }
    EXPECT_EQ(buffer.view(), expected);
    ContentBuffer copy = buffer;
    buffer.clear();
    EXPECT_TRUE(buffer.empty());
    EXPECT_EQ(copy.view(), expected);
}

}  // namespace
}  // namespace desk
