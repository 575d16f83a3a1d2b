#include "support/units.h"

#include <cmath>
#include <limits>

#include "support/printing.h"

namespace vornaset {
namespace {

constexpr auto kBelow = static_cast<MyUnits>(-3);
constexpr auto kAbove = static_cast<MyUnits>(7);
constexpr MyUnits kAllUnits[] = {kUnitNone,        kUnitPoints, kUnitInches, kUnitMillimeters,
                                 kUnitCentimeters, kUnitPlain,  kUnitPercent};

TEST(Units, HaveTheirNumbers) {
    int64_t number = 0;
    for (const MyUnits unit : kAllUnits) EXPECT_EQ(unit, number++);
}

TEST(Units, ScalesAreSinglePrecision) {
    EXPECT_EQ(scaleForUnit(kUnitInches), 0.013888889F);
    EXPECT_EQ(scaleForUnit(kUnitMillimeters), 0.35277778F);
    EXPECT_EQ(scaleForUnit(kUnitCentimeters), 0.035277776F);
    EXPECT_EQ(scaleForUnit(kUnitPlain), 1.0F);
    EXPECT_EQ(scaleForUnit(kUnitPercent), 100.0F);
}

TEST(Units, WithoutAScaleCountAsOne) {
    for (const MyUnits unit : {kUnitPoints, kUnitNone, kBelow, kAbove}) EXPECT_EQ(scaleForUnit(unit), 1.0F) << unit;
    EXPECT_EQ(scaleForUnit(static_cast<MyUnits>(INT64_MIN)), 1.0F);
    EXPECT_EQ(scaleForUnit(static_cast<MyUnits>(INT64_MAX)), 1.0F);
}

TEST(Units, PointsAreConvertedInPlace) {
    float value = 72.0F;
    ptsToUnit(value, kUnitInches);
    EXPECT_FLOAT_EQ(value, 1.0F);
    float first = 72.0F;
    float second = 36.0F;
    ptsToUnit(first, second, kUnitMillimeters);
    EXPECT_FLOAT_EQ(first, 25.4F);
    EXPECT_FLOAT_EQ(second, 12.7F);
    float third = 1.0F;
    float fourth = 0.0F;
    ptsToUnit(first, second, third, fourth, kUnitPercent);
    EXPECT_FLOAT_EQ(first, 2540.0F);
    EXPECT_FLOAT_EQ(second, 1270.0F);
    EXPECT_FLOAT_EQ(third, 100.0F);
    EXPECT_FLOAT_EQ(fourth, 0.0F);
}

TEST(Units, AreConvertedToPointsInPlace) {
    float value = 10.0F;
    unitToPts(value, kUnitMillimeters);
    EXPECT_NEAR(value, 28.3465F, 0.0001F);
    float first = 1.0F;
    float second = 2.0F;
    unitToPts(first, second, kUnitInches);
    EXPECT_FLOAT_EQ(first, 72.0F);
    EXPECT_FLOAT_EQ(second, 144.0F);
    float third = 2.54F;
    float fourth = -5.08F;
    unitToPts(first, second, third, fourth, kUnitCentimeters);
    EXPECT_FLOAT_EQ(third, 72.0F);
    EXPECT_FLOAT_EQ(fourth, -144.0F);
}

TEST(Units, ConvertThereAndBack) {
    for (const MyUnits unit : kAllUnits) {
        for (const float points : {0.0F, 1.0F, -17.25F, 595.276F, 1e6F}) {
            float value = points;
            ptsToUnit(value, unit);
            unitToPts(value, unit);
            EXPECT_FLOAT_EQ(value, points) << unit;
        }
    }
}

TEST(Units, FixedPointNumbersBecomeUnits) {
    EXPECT_EQ(fixedToUnit(65536, kUnitPoints), 1.0F);
    EXPECT_EQ(fixedToUnit(65536, kUnitNone), 65536.0F);
    EXPECT_EQ(fixedToUnit(65536, kBelow), 65536.0F);
    EXPECT_EQ(fixedToUnit(65536, kAbove), 1.0F);
    EXPECT_EQ(fixedToUnit(-32768, kUnitPlain), -0.5F);
    EXPECT_FLOAT_EQ(fixedToUnit(72 * 65536, kUnitMillimeters), 25.4F);
}

TEST(Units, BecomeFixedPointNumbersCutTowardsZero) {
    EXPECT_EQ(unitToFixed(1.5F, kUnitPoints), 98304);
    EXPECT_EQ(unitToFixed(1.5F, kUnitNone), 1);
    EXPECT_EQ(unitToFixed(-1.5F, kUnitNone), -1);
    EXPECT_EQ(unitToFixed(-1.99F, kBelow), -1);
    EXPECT_EQ(unitToFixed(1.5F, kAbove), 98304);
    EXPECT_EQ(unitToFixed(50.0F, kUnitPercent), 32768);
    EXPECT_EQ(unitToFixed(0.00001F, kUnitPoints), 0);
    EXPECT_EQ(unitToFixed(-0.00001F, kUnitPoints), 0);
}

TEST(Units, BeyondTheFixedPointRangeStopAtItsEnds) {
    EXPECT_EQ(unitToFixed(40000.0F, kUnitPoints), INT32_MAX);
    EXPECT_EQ(unitToFixed(-40000.0F, kUnitPoints), INT32_MIN);
    EXPECT_EQ(unitToFixed(std::numeric_limits<float>::infinity(), kUnitNone), INT32_MAX);
    EXPECT_EQ(unitToFixed(std::nanf(""), kUnitPoints), 0);
    EXPECT_EQ(fixedWithString("99999", kUnitPoints), INT32_MAX);
    EXPECT_EQ(fixedWithString("-99999", kUnitPoints), INT32_MIN);
}

TEST(Units, AFloatPrintsItsShortestDigits) {
    EXPECT_EQ(stringWithFloat(72.0F, kUnitPlain), String("72"));
    EXPECT_EQ(stringWithFloat(0.1F, kUnitPoints), String("0.1"));
    EXPECT_EQ(stringWithFloat(0.5F, kUnitPercent), String("50"));
    EXPECT_EQ(stringWithFloat(10.0F, kUnitMillimeters), String("3.5277777"));
    for (const float value : {1.0F / 3, 123456.7F, 1e-5F, 3e20F}) {
        EXPECT_EQ(stringWithFloat(value, kUnitNone).floatValue(), value);
    }
}

TEST(Units, ZerosAtTheEndAreCut) {
    EXPECT_EQ(stringWithFloatAndDigits(2.5F, 2), String("2.5"));
    EXPECT_EQ(stringWithFloatAndDigits(3.0F, 2), String("3"));
    EXPECT_EQ(stringWithFloatAndDigits(100.0F, 2), String("100"));
    EXPECT_EQ(stringWithFloatAndDigits(0.0F, 2), String("0"));
    EXPECT_EQ(stringWithFloatAndDigits(1.005F, 2), String("1"));
    EXPECT_EQ(stringWithFloatAndDigits(-0.25F, 1), String("-0.2"));
    EXPECT_EQ(stringWithFloatAndDigits(1.0F / 3, 5), String("0.33333"));
}

TEST(Units, WithoutDecimalsZerosOfWholeNumbersAreCutToo) {
    EXPECT_EQ(stringWithFloatAndDigits(100.0F, 0), String("1"));
    EXPECT_EQ(stringWithFloatAndDigits(0.0F, 0), String(u""));
    EXPECT_FALSE(stringWithFloatAndDigits(0.0F, 0).isNull());
    EXPECT_EQ(stringWithFloatAndDigits(205.0F, 0), String("205"));
}

TEST(Units, FixedPointTextCarriesTheSuffixWhenAsked) {
    EXPECT_EQ(stringWithFixed(72 * 65536, kUnitInches, 1), String("1 \""));
    EXPECT_EQ(stringWithFixed(10 * 65536, kUnitPercent, 1), String("1000 %"));
    EXPECT_EQ(stringWithFixed(72 * 65536, kUnitPoints, 1), String("72 pts"));
    EXPECT_EQ(stringWithFixed(72 * 65536, kUnitMillimeters, 1), String("25.4 mm"));
    EXPECT_EQ(stringWithFixed(72 * 65536, kUnitCentimeters, 1), String("2.54 cm"));
    for (const uint8_t without : {0, 2, 255}) {
        EXPECT_EQ(stringWithFixed(72 * 65536, kUnitInches, without), String("1"));
    }
}

TEST(Units, SomeHaveNoSuffix) {
    EXPECT_EQ(stringWithFixed(65536, kUnitPlain, 1), String("1"));
    EXPECT_EQ(stringWithFixed(65536, kUnitNone, 1), String("65536"));
    EXPECT_EQ(stringWithFixed(65536, kBelow, 1), String("65536"));
    EXPECT_EQ(stringWithFixed(65536, kAbove, 1), String("1"));
}

TEST(Units, FixedPointTextIsCopiedToABuffer) {
    char buffer[64];
    EXPECT_EQ(stringWithFixed(72 * 65536, kUnitMillimeters, buffer, 1), buffer);
    EXPECT_STREQ(buffer, "25.4 mm");
    EXPECT_EQ(stringWithFixed(INT32_MIN, kUnitPercent, buffer, 0), buffer);
    EXPECT_STREQ(buffer, "-3276800");
}

TEST(Units, APointPrintsBothNumbers) {
    EXPECT_EQ(stringWithPoint({1.5F, -2.0F}), String("1.500000 -2.000000"));
}

TEST(Units, TypedLengthsAreInPoints) {
    EXPECT_FLOAT_EQ(floatWithString("72", kUnitPoints), 72.0F);
    EXPECT_FLOAT_EQ(floatWithString("1", kUnitInches), 72.0F);
    EXPECT_FLOAT_EQ(floatWithString("50", kUnitPercent), 0.5F);
    EXPECT_FLOAT_EQ(floatWithString(" 3.5 and more", kUnitPoints), 3.5F);
    EXPECT_FLOAT_EQ(floatWithString("12", kAbove), 12.0F);
    EXPECT_FLOAT_EQ(floatWithString("", kUnitPoints), 0.0F);
    EXPECT_FLOAT_EQ(floatWithString(nullptr, kUnitMillimeters), 0.0F);
    EXPECT_FLOAT_EQ(floatWithString("none", kUnitMillimeters), 0.0F);
}

TEST(Units, MillimetresAndPointsAreKnownInTheText) {
    EXPECT_FLOAT_EQ(floatWithString("10,5 mm", kUnitPoints), 10.5F / 0.35277778F);
    EXPECT_FLOAT_EQ(floatWithString("12 pt", kUnitMillimeters), 12.0F);
    EXPECT_FLOAT_EQ(floatWithString("12pts", kUnitMillimeters), 12.0F);
    EXPECT_FLOAT_EQ(floatWithString("10 pt mm", kUnitInches), 10.0F / 0.35277778F);
    EXPECT_FLOAT_EQ(floatWithString("1 MM", kUnitInches), 72.0F);
    EXPECT_FLOAT_EQ(floatWithString("1 PT", kUnitInches), 72.0F);
}

TEST(Units, OtherSuffixesInTheTextAreNotKnown) {
    EXPECT_FLOAT_EQ(floatWithString("2 cm", kUnitMillimeters), 2.0F / 0.35277778F);
    EXPECT_FLOAT_EQ(floatWithString("2 \"", kUnitPoints), 2.0F);
    EXPECT_FLOAT_EQ(floatWithString("2 %", kUnitPoints), 2.0F);
}

TEST(Units, OneSignMakesASumOrADifference) {
    EXPECT_FLOAT_EQ(floatWithString("10+5", kUnitPoints), 15.0F);
    EXPECT_FLOAT_EQ(floatWithString("10-5", kUnitPoints), 5.0F);
    EXPECT_FLOAT_EQ(floatWithString("10,5 + 0,5 mm", kUnitPoints), 11.0F / 0.35277778F);
    EXPECT_FLOAT_EQ(floatWithString("-5", kUnitPoints), -5.0F);
    EXPECT_FLOAT_EQ(floatWithString("+5", kUnitPoints), 5.0F);
    EXPECT_FLOAT_EQ(floatWithString("10+-5", kUnitPoints), 5.0F);
    EXPECT_FLOAT_EQ(floatWithString("10-", kUnitPoints), 10.0F);
}

TEST(Units, MoreSignsLeaveTheLeadingNumber) {
    EXPECT_FLOAT_EQ(floatWithString("1-2-3", kUnitPoints), 1.0F);
    EXPECT_FLOAT_EQ(floatWithString("1-2-3", kUnitInches), 72.0F);
    EXPECT_FLOAT_EQ(floatWithString("1+2+3", kUnitPoints), 1.0F);
    EXPECT_FLOAT_EQ(floatWithString("-5-3", kUnitPoints), -5.0F);
    EXPECT_FLOAT_EQ(floatWithString("1+2+3-1", kUnitPoints), 0.0F) << "one minus sign: 1 less 1";
}

TEST(Units, AnExponentsSignPartsTheTextToo) {
    EXPECT_FLOAT_EQ(floatWithString("1e-3", kUnitPoints), -2.0F);
}

TEST(Units, TypedLengthsBecomeFixedPointNumbers) {
    EXPECT_EQ(fixedWithString("1,5", kUnitPoints), 98304);
    EXPECT_EQ(fixedWithString("-1.5", kUnitPoints), -98304);
    EXPECT_EQ(fixedWithString("1", kUnitNone), 65536);
    EXPECT_EQ(fixedWithString("", kUnitNone), 0);
}

TEST(Units, MillimetresAreRoundedToOneDecimal) {
    EXPECT_EQ(pts2mmRounded(72.0), static_cast<double>(25.4F));
    EXPECT_EQ(pts2mmRounded(0.0), 0.0);
    EXPECT_EQ(pts2mmRounded(-10.0), static_cast<double>(-3.5F));
    EXPECT_EQ(pts2mmRounded(595.276), static_cast<double>(210.0F));
}

TEST(Units, TheLastCharacterIsAUnit) {
    EXPECT_EQ(lastChar("abc"), u'c');
    EXPECT_EQ(lastChar(u""), u'\0');
    EXPECT_EQ(lastChar(nullptr), u'\0');
    EXPECT_EQ(lastChar(u"\U0001F600"), u'\xDE00');
}

}  // namespace
}  // namespace vornaset
