#include <cmath>
#include <cstring>
#include <limits>

#include "support/printing.h"

namespace vornaset {
namespace {

TEST(Number, PrintsTheShortestDigitsOfItsPrecision) {
    const std::pair<Number, const char*> table[] = {
        {42, "42"},
        {-7, "-7"},
        {INT64_MIN, "-9223372036854775808"},
        {INT64_MAX, "9223372036854775807"},
        {0.1f, "0.1"},
        {0.1, "0.1"},
        {static_cast<double>(0.1f), "0.10000000149011612"},
        {0.1 + 0.2, "0.30000000000000004"},
        {2.0, "2"},
        {-2.5, "-2.5"},
        {100000.0, "100000"},
        {123456.75, "123456.75"},
        {1e16, "10000000000000000"},
        {1e17, "1e+17"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {1.5e300, "1.5e+300"},
        {16777216.0f, "16777216"},
        {1e9f, "1e+09"},
        {1.0f / 3, "0.33333334"},
        {0.0, "0"},
        {true, "1"},
        {false, "0"},
        {HUGE_VAL, "inf"},
        {-HUGE_VAL, "-inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
        {UINT64_MAX, "1.8446744073709552e+19"},
    };
    for (const auto& [number, text] : table) EXPECT_EQ(number.text(), String(text));
}

TEST(Number, ItsTextReadsBackAsTheSameNumber) {
    uint64_t state = 1;
    for (int round = 0; round < 20000; ++round) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        double real;
        std::memcpy(&real, &state, sizeof real);
        if (!std::isfinite(real)) continue;
        ASSERT_EQ(Number(real).text().doubleValue(), real);
        const auto single = static_cast<float>(static_cast<int64_t>(state)) / 1000003.0f;
        ASSERT_EQ(Number(single).text().floatValue(), single);
    }
}

TEST(Number, RemembersItsKind) {
    EXPECT_EQ(Number(1).kind(), Number::Kind::integer);
    EXPECT_EQ(Number(1.0f).kind(), Number::Kind::single);
    EXPECT_EQ(Number(1.0).kind(), Number::Kind::real);
    EXPECT_EQ(Number(true).kind(), Number::Kind::boolean);
    EXPECT_EQ(Number(UINT64_MAX).kind(), Number::Kind::real);
    EXPECT_EQ(Number(size_t{5}).integerValue(), 5);
}

TEST(Number, ItsIntegerReadingIsCutToTheRange) {
    EXPECT_EQ(Number(2.9).integerValue(), 2);
    EXPECT_EQ(Number(-2.9).integerValue(), -2);
    EXPECT_EQ(Number(1e300).integerValue(), INT64_MAX);
    EXPECT_EQ(Number(-1e300).integerValue(), INT64_MIN);
    EXPECT_EQ(Number(std::numeric_limits<double>::quiet_NaN()).integerValue(), 0);
    EXPECT_EQ(Number(int64_t{1} << 32 | 5).intValue(), 5);
    EXPECT_EQ(Number(-1).intValue(), -1);
}

TEST(Number, ComparesByValueWhateverTheKind) {
    EXPECT_EQ(Number(2), Number(2.0));
    EXPECT_EQ(Number(2.0f), Number(2));
    EXPECT_FALSE(Number(2) == Number(2.5));
    EXPECT_FALSE(Number(INT64_MAX) == Number(0x1p63));
    EXPECT_EQ(Number(2).hash(), Number(2.0).hash());
    EXPECT_FALSE(Number(0.1f) == Number(0.1));
}

TEST(Data, NullDiffersFromEmpty) {
    EXPECT_TRUE(Data().isNull());
    EXPECT_FALSE(Data("").isNull());
    EXPECT_FALSE(Data() == Data(""));
    EXPECT_EQ(Data::withBytes("ab", 2), Data("ab"));
    EXPECT_FALSE(Data::withBytes(nullptr, 0).isNull());
    EXPECT_EQ(Data("ab").bytes()[1], 'b');
}

TEST(Date, SaysItselfInUTC) {
    EXPECT_EQ(Date{0}.description(), String("1970-01-01 00:00:00 +0000"));
    EXPECT_EQ(Date{1714564800.75}.description(), String("2024-05-01 12:00:00 +0000"));
    EXPECT_EQ(Date{-1}.description(), String("1969-12-31 23:59:59 +0000"));
    EXPECT_EQ(Date{1e300}.description(), String("(date out of range)"));
}

}  // namespace
}  // namespace vornaset
