#include "support/locale_text.h"

#include <chrono>
#include <ctime>

#include "support/printing.h"

namespace vornaset {
namespace {

constexpr double kFirstOfMarch2024 = 1709251200;  // 00:00 GMT

Array sorted(std::initializer_list<Value> texts, const String& locale = nullptr) {
    return sortedByStandardCompare(Array::make(texts), locale);
}

TEST(LocalizedStandardCompare, ReadsDigitsAsNumbers) {
    EXPECT_EQ(localizedStandardCompare("page 9", "page 10"), -1);
    EXPECT_EQ(localizedStandardCompare("page 10", "page 9"), 1);
    EXPECT_EQ(localizedStandardCompare("7", "007"), 0);
    EXPECT_EQ(sorted({"a100", "a20", "a3"}), Array::make({"a3", "a20", "a100"}));
}

TEST(LocalizedStandardCompare, IgnoresCaseAndSeesAccents) {
    EXPECT_EQ(localizedStandardCompare("PHOTO.jpg", "photo.JPG"), 0);
    EXPECT_EQ(localizedStandardCompare("e", u"\u00E9"), -1);
    EXPECT_EQ(localizedStandardCompare(u"e\u0301", u"\u00E9"), 0);
    EXPECT_EQ(localizedStandardCompare("a", "B"), -1);
}

TEST(LocalizedStandardCompare, ANullTextStandsFirst) {
    EXPECT_EQ(localizedStandardCompare(nullptr, ""), -1);
    EXPECT_EQ(localizedStandardCompare("", nullptr), 1);
    EXPECT_EQ(localizedStandardCompare(nullptr, nullptr), 0);
}

TEST(LocalizedStandardCompare, OrdersNamesInGermanFrenchAndEnglish) {
    const Array expected = Array::make({u"Apfel", u"\u00C4pfel 2", u"\u00C4pfel 10", "Zebra"});
    for (const char* locale : {"de_DE", "fr_FR", "en_US"}) {
        EXPECT_EQ(sorted({"Zebra", u"\u00C4pfel 10", "Apfel", u"\u00C4pfel 2"}, locale), expected) << locale;
    }
    EXPECT_EQ(sorted({u"cot\u00E9", "cote", u"c\u00F4t\u00E9", u"c\u00F4te"}, "fr_FR"),
              Array::make({"cote", u"cot\u00E9", u"c\u00F4te", u"c\u00F4t\u00E9"}));
}

TEST(LocalizedStandardCompare, AnotherLanguageHasItsOwnOrder) {
    EXPECT_EQ(localizedStandardCompare(u"\u00E4", "z", "sv_SE"), 1);
    EXPECT_EQ(localizedStandardCompare(u"\u00E4", "z", "de_DE"), -1);
    EXPECT_EQ(localizedStandardCompare(u"\u00E4", "z"), -1);
    EXPECT_EQ(localizedStandardCompare("a", "b", "no such locale"), -1);
}

TEST(SortedByStandardCompare, WhatComparesEqualStandsInOneOrder) {
    EXPECT_EQ(sorted({"b", "B", "a"}), sorted({"B", "a", "b"}));
    EXPECT_EQ(sorted({"b", "B", "a"}), Array::make({"a", "B", "b"}));
    EXPECT_EQ(sorted({"b", 1, "a"}), Array::make({"a", "b"}));
    EXPECT_FALSE(sortedByStandardCompare(nullptr).isNull());
}

TEST(CanonicallyComposed, JoinsLetterAndAccent) {
    EXPECT_EQ(canonicallyComposed(u"u\u0308ber"), String(u"\u00FCber"));
    EXPECT_EQ(canonicallyComposed(u"e\u0301te\u0301"), String(u"\u00E9t\u00E9"));
    EXPECT_EQ(canonicallyComposed(u"\u212B"), String(u"\u00C5"));
    EXPECT_EQ(canonicallyComposed(u"\u1112\u1161\u11AB"), String(u"\uD55C"));
}

TEST(CanonicallyComposed, GivesTheSameObjectForComposedText) {
    for (const String& text : {String("plain"), String(u"\u00FC\u20AC"), String(u"")}) {
        EXPECT_TRUE(canonicallyComposed(text).isSameObject(text));
    }
    EXPECT_TRUE(canonicallyComposed(nullptr).isNull());
    const String lone(std::u16string{u'a', 0xD800, u'b'});
    EXPECT_EQ(canonicallyComposed(lone), lone);
}

TEST(ShortDateAndTime, HasTheFormOfTheLanguage) {
    const Date date{kFirstOfMarch2024 + 14 * 3600 + 5 * 60};
    EXPECT_EQ(shortDateAndTime(date, "de_DE", "GMT"), String("01.03.24, 14:05"));
    EXPECT_EQ(shortDateAndTime(date, "fr_FR", "GMT"), String("01/03/2024 14:05"));
    EXPECT_EQ(shortDateAndTime(date, "en_GB", "GMT"), String("01/03/2024, 14:05"));
    EXPECT_EQ(shortDateAndTime(date, "en_US", "GMT"), String(u"3/1/24, 2:05\u202FPM"));
    EXPECT_EQ(shortDateAndTime(date, "de_DE", "Europe/Berlin"), String("01.03.24, 15:05"));
}

TEST(MonthName, IsTheStandAloneNameOfTheLanguage) {
    const Date march{kFirstOfMarch2024};
    EXPECT_EQ(monthName("de_DE", march), String(u"M\u00E4rz"));
    EXPECT_EQ(monthName("fr_FR", march), String("mars"));
    EXPECT_EQ(monthName("en", march), String("March"));
    // Languages with cases use another form beside a day.
    EXPECT_EQ(monthName("pl_PL", march), String("marzec"));
    EXPECT_EQ(monthName("th_TH", march), String(u"\u0E21\u0E35\u0E19\u0E32\u0E04\u0E21"));
}

TEST(MonthName, TurnsAtMidnightOfGMT) {
    EXPECT_EQ(monthName("en", Date{kFirstOfMarch2024 - 1}), String("February"));
    EXPECT_EQ(monthName("en", Date{kFirstOfMarch2024}), String("March"));
    EXPECT_EQ(monthName("en", Date{-1}), String("December"));
}

TEST(MonthName, IsTheCurrentMonth) {
    const double before = static_cast<double>(std::time(nullptr));
    const String name = monthName("en");
    const double after = static_cast<double>(std::time(nullptr));
    EXPECT_TRUE(name == monthName("en", Date{before}) || name == monthName("en", Date{after})) << name.utf8();
}

}  // namespace
}  // namespace vornaset
