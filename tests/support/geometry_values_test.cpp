#include "support/geometry_values.h"

#include "support/printing.h"
#include "support/rectangles_host.h"

namespace vornaset {
namespace {

TEST(GeometryValues, GiveBackWhatTheyWereMadeOf) {
    EXPECT_EQ(pointWithValue(valueWithPoint(Point{1.5, -2})), (Point{1.5, -2}));
    EXPECT_EQ(pointWithValue(valueWithPoint(3, 4)), (Point{3, 4}));
    EXPECT_EQ(rangeWithValue(valueWithRange(Range{5, 7})), (Range{5, 7}));
    EXPECT_EQ(pointWithValue(valueWithRange(Range{5, 7})), Point{});
    EXPECT_EQ(rangeWithValue(Value()), Range{});
    EXPECT_EQ(valueWithPoint(1.5, 2).description(), String("{1.5, 2}"));
    EXPECT_EQ(valueWithRange(Range{5, 7}).description(), String("{5, 7}"));
}

TEST(NsRect, IsTheSameRectangle) {
    EXPECT_EQ(nsRect(Rect{1, 2, 3, 4}), (Rect{1, 2, 3, 4}));
}

TEST(StringWithRect, HasFourDecimals) {
    EXPECT_EQ(stringWithRect(Rect{1, -2.5, 0.00004, 1234.56789}), String("[1.0000 -2.5000 0.0000 1234.5679]"));
}

TEST(StringWithFormatOfARect, HasTheFourNumbersAsArguments) {
    EXPECT_EQ(stringWithFormat("%.1f|%.1f|%.1f|%.1f", Rect{1, 2, 3, 4}), String("1.0|2.0|3.0|4.0"));
    EXPECT_EQ(stringWithFormat("%4$g %1$g", Rect{1, 2, 3, 4}), String("4 1"));
}

TEST(NsRectWithPMRect, NarrowsEachNumberToSinglePrecisionInPointsToo) {
    const Rect rectangle = nsRectWithPMRect(PMRect(0.1, 0.2, 10.3, 20.7), 0);
    EXPECT_EQ(rectangle.x, static_cast<double>(0.1f));
    EXPECT_EQ(rectangle.y, static_cast<double>(0.2f));
    EXPECT_EQ(rectangle.width, static_cast<double>(static_cast<float>(10.3 - 0.1)));
    EXPECT_EQ(rectangle.height, static_cast<double>(static_cast<float>(20.7 - 0.2)));
}

TEST(NsRectWithPMRect, GivesMillimetresWithOneDecimalForExactlyOne) {
    const PMRect page(72, -36, 72 + 595.2756, -36 + 841.8898);
    EXPECT_EQ(nsRectWithPMRect(page, 1), (Rect{25.4, -12.7, 210, 297}));
    EXPECT_EQ(nsRectWithPMRect(PMRect(1, 1, 2, 2), 1), (Rect{0.4, 0.4, 0.4, 0.4}));
    EXPECT_EQ(nsRectWithPMRect(PMRect(72, 72, 144, 144), 2), (Rect{72, 72, 72, 72}));
}

TEST(PmRectWithNSRect, SetsLeftAndTopAndThenTheSize) {
    EXPECT_EQ(pmRectWithNSRect(Rect{1, 2, 3, 4}, 0), PMRect(1, 2, 4, 6));
    const PMRect inPoints = pmRectWithNSRect(Rect{25.4, 0, 12.7, 254}, 1);
    EXPECT_DOUBLE_EQ(inPoints.left, 72);
    EXPECT_DOUBLE_EQ(inPoints.right, 108);
    EXPECT_DOUBLE_EQ(inPoints.bottom, 720);
    EXPECT_EQ(pmRectWithNSRect(Rect{1, 2, 3, 4}, 2), PMRect(1, 2, 4, 6));
}

TEST(PmRectWithValue, NullStandsForTheEmptyRectangle) {
    EXPECT_EQ(pmRectWithValue(Value(), 1), PMRect());
    EXPECT_EQ(pmRectWithValue("text", 0), PMRect());
    EXPECT_EQ(pmRectWithValue(valueWithRect(Rect{1, 2, 3, 4}), 0), PMRect(1, 2, 4, 6));
}

TEST(ValueWithPMRect, HoldsTheLibrarysForm) {
    EXPECT_EQ(rectWithValue(valueWithPMRect(PMRect(1, 2, 4, 6), 0)), (Rect{1, 2, 3, 4}));
    EXPECT_EQ(rectWithValue(valueWithPMRect(PMRect(72, 0, 144, 72), 1)), (Rect{25.4, 0, 25.4, 25.4}));
}

TEST(StringWithPMRect, PrintsWholeNumbersWithWidthAndHeight) {
    EXPECT_EQ(stringWithPMRect(PMRect(10.4, 20.6, 110.4, 50.6)), String("[10 21 100 30]"));
}

}  // namespace
}  // namespace vornaset
