#include "support/format.h"

#include <cmath>
#include <cstdio>

#include "support/printing.h"
#include "support/raise_exception.h"

namespace vornaset {
namespace {

TEST(Format, PrintsObjectsByTheirDescription) {
    EXPECT_EQ(stringWithFormat("%@ and %@", "a", String(u"\u00E4")), String(u"a and \u00E4"));
    EXPECT_EQ(stringWithFormat("%@", Array::make({1})), String("(\n    1\n)"));
    EXPECT_EQ(stringWithFormat("%@ %@ %@", 5, 0.1f, Value(2.5)), String("5 0.1 2.5"));
    EXPECT_EQ(stringWithFormat("%@ %@", String(), Value()), String("(null) (null)"));
    EXPECT_EQ(stringWithFormat("[%4@|%-4@]", "ab", "ab"), String("[  ab|ab  ]"));
}

/// What the C library makes of the same conversion and argument is the standard for printf's conversions.
template <class Argument>
void expectAsInC(const char* format, Argument argument) {
    char expected[1200];
    std::snprintf(expected, sizeof expected, format, argument);
    EXPECT_EQ(stringWithFormat(format, argument), String(expected)) << format;
}

TEST(Format, PrintsNumbersAsTheCLibraryDoes) {
    for (const char* format : {"%d", "%5d", "%-5d|", "%05d", "%+d",  "% d",   "%.3d",   "%i",    "%u",     "%x",
                               "%X", "%#x", "%o",    "%#o",  "%08x", "%+05d", "%-05d|", "%.0d|", "%+.0d|", "%#.0o"}) {
        for (const int number : {0, 1, -1, 42, -12345, INT32_MAX, INT32_MIN}) {
            expectAsInC(format, number);
        }
    }
    for (const char* format : {"%ld", "%lx", "%lu", "%zd", "%lld", "%20ld", "%020lx"}) {
        for (const long number : {0L, -1L, INT64_MAX, INT64_MIN, 0x7fff12345678L}) expectAsInC(format, number);
    }
    for (const char* format : {"%f", "%.1f", "%.0f", "%10.3f|", "%-10.3f|", "%010.3f", "%+.2f", "%e", "%.2E", "%g",
                               "%.3g", "%G", "%.10g", "%F", "%a", "% .1f"}) {
        for (const double number : {0.0, -0.0, 1.0, -1.5, 0.05, 0.25, 123456789.125, 1e100, 1e-7, 2.0 / 3, HUGE_VAL}) {
            expectAsInC(format, number);
        }
    }
    for (const char* format : {"%s", "%10s|", "%-10s|", "%.2s"}) expectAsInC(format, "text");
    expectAsInC("%c", 'x');
    expectAsInC("%3c|", 'x');
}

TEST(Format, PrintsAnAddress) {
    const void* address = reinterpret_cast<const void*>(uintptr_t{0x7f001234});
    EXPECT_EQ(stringWithFormat("%p %lx", address, address), String("0x7f001234 7f001234"));
    EXPECT_EQ(stringWithFormat("pdfEvent: db=%lx, msg=%d, pageNum=%d", address, 1, 17),
              String("pdfEvent: db=7f001234, msg=1, pageNum=17"));
    EXPECT_EQ(stringWithFormat("%lx", static_cast<const void*>(nullptr)), String("0"));
}

TEST(Format, AMissingArgumentIsNotRead) {
    EXPECT_EQ(stringWithFormat("%@ %d %s %f"), String("(null) (null) (null) (null)"));
    EXPECT_EQ(stringWithFormat("%d %d", 1), String("1 (null)"));
    EXPECT_EQ(stringWithFormat("%*d"), String("(null)"));
    EXPECT_EQ(stringWithFormat("%3$@", 1, 2), String("(null)"));
}

TEST(Format, NullAndWideTextsAreArgumentsToo) {
    EXPECT_EQ(stringWithFormat("%@ %s", nullptr, u"\u00E4"), String(u"(null) \u00E4"));
    EXPECT_EQ(stringWithFormat("%@", static_cast<const char16_t*>(nullptr)), String("(null)"));
}

TEST(Format, ASpareArgumentIsLeftAlone) {
    EXPECT_EQ(stringWithFormat("%d", 1, 2, "x"), String("1"));
}

TEST(Format, AnArgumentOfAnotherKindPrintsAsItIs) {
    EXPECT_EQ(stringWithFormat("%d", "text"), String("text"));
    EXPECT_EQ(stringWithFormat("%s", 42), String("42"));
    EXPECT_EQ(stringWithFormat("%d", 2.9), String("2"));
    EXPECT_EQ(stringWithFormat("%f", 2), String("2.000000"));
    EXPECT_EQ(stringWithFormat("%d", Value(7)), String("7"));
    EXPECT_EQ(stringWithFormat("%f", Array::make()), String("(\n)"));
    EXPECT_EQ(stringWithFormat("%d", int64_t{5000000000}), String("5000000000"));
    EXPECT_EQ(stringWithFormat("%s", static_cast<const char*>(nullptr)), String("(null)"));
    EXPECT_EQ(stringWithFormat("%u", UINT64_MAX), String("18446744073709551615"));
    EXPECT_EQ(stringWithFormat("%@", UINT64_MAX), String("18446744073709551615"));
    EXPECT_EQ(stringWithFormat("%x", static_cast<int8_t>(-1)), String("ff"));
}

TEST(Format, AForeignPercentSignPrintsAsItStands) {
    EXPECT_EQ(stringWithFormat("100%"), String("100%"));
    EXPECT_EQ(stringWithFormat("%y %d", 1), String("%y 1"));
    EXPECT_EQ(stringWithFormat("50%% of %d", 2), String("50% of 2"));
    EXPECT_EQ(stringWithFormat("%5"), String("%5"));
    EXPECT_EQ(stringWithFormat("%*y %d", 3), String("%*y 3"));
    EXPECT_EQ(stringWithFormat("%n%@", "a"), String("%na"));
    EXPECT_EQ(stringWithFormat(""), String(""));
    EXPECT_TRUE(stringWithFormat(nullptr).isNull());
}

TEST(Format, PositionsChooseTheArgument) {
    EXPECT_EQ(stringWithFormat("%2$@ %1$@", "a", "b"), String("b a"));
    EXPECT_EQ(stringWithFormat("%1$d %1$d", 4), String("4 4"));
}

TEST(Format, WidthAndPrecisionMayBeArguments) {
    EXPECT_EQ(stringWithFormat("%*d|%-*d|%.*f", 4, 7, 4, 7, 2, 1.5), String("   7|7   |1.50"));
    EXPECT_EQ(stringWithFormat("%*d|", -4, 7), String("7   |"));
}

TEST(Format, AnAbsurdWidthIsCut) {
    EXPECT_EQ(stringWithFormat("%999999999d", 1).length(), 4096u);
    EXPECT_EQ(stringWithFormat("%.999999999f", 1.0).length(), 514u);
    EXPECT_LT(stringWithFormat("%.600f", 1e308).length(), 1000u);
}

TEST(Format, CharactersBeyondTheFirstPlaneArePairs) {
    EXPECT_EQ(stringWithFormat("%C", 0x1F600), String(u"\U0001F600"));
    EXPECT_EQ(stringWithFormat("%C", 0x110000), String(u"\uFFFD"));
}

TEST(Format, DamagedBytesPrintAsReplacement) {
    EXPECT_EQ(stringWithFormat("%s", "a\xE4"), String(u"a\uFFFD"));
}

TEST(RaiseException, CarriesTheFormattedReason) {
    try {
        raiseException("%@ at 100%% of %d", "50% done", 3);
        FAIL();
    } catch (const Exception& failure) {
        EXPECT_EQ(failure.name(), "Vornaset");
        EXPECT_EQ(failure.reason(), "50% done at 100% of 3");
    }
}

}  // namespace
}  // namespace vornaset
