#include <cmath>
#include <unordered_set>

#include "support/printing.h"
#include "support/unicode.h"

namespace vornaset {
namespace {

TEST(String, NullDiffersFromEmpty) {
    EXPECT_TRUE(String().isNull());
    EXPECT_TRUE(String(nullptr).isNull());
    EXPECT_FALSE(String("").isNull());
    EXPECT_FALSE(String(u"").isNull());
    EXPECT_TRUE(String("").isEmpty());
    EXPECT_FALSE(String() == String(""));
    EXPECT_TRUE(String() == String());
    EXPECT_TRUE(String(static_cast<const char*>(nullptr)).isNull());
    EXPECT_TRUE(String(static_cast<const char16_t*>(nullptr)).isNull());
}

TEST(String, NullAnswersNothingToEverything) {
    const String null;
    EXPECT_EQ(null.length(), 0u);
    EXPECT_EQ(null.charAt(3), 0);
    EXPECT_TRUE(null.substring(5).isNull());
    EXPECT_TRUE(null.substring(5, 2).isNull());
    EXPECT_EQ(null.find("a"), String::npos);
    EXPECT_EQ(null.utf8(), "");
    EXPECT_EQ(null.exactUTF8(), std::nullopt);
    EXPECT_EQ(null.integerValue(), 0);
    EXPECT_EQ(null + "a", String("a"));
    EXPECT_FALSE((null + null).isNull());
}

TEST(String, CountsUTF16Units) {
    const String text("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(text.length(), 5u);
    EXPECT_EQ(text.charAt(1), u'\xE4');
    EXPECT_EQ(text.charAt(2), u'\x20AC');
    EXPECT_EQ(text.charAt(3), 0xD83D);
    EXPECT_EQ(text.utf8(), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(text, String(u"a\u00E4\u20AC\U0001F600"));
}

TEST(String, KeepsAZeroUnit) {
    const String text = String::fromUTF8(std::string_view("a\0b", 3));
    EXPECT_EQ(text.length(), 3u);
    EXPECT_EQ(text.utf8(), std::string("a\0b", 3));
}

TEST(String, RefusesWhatIsNoUTF8) {
    for (const char* bytes : {"\xE4", "a\x80", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8",
                              "\xE2\x82", "\xFF", "\xC3(", "\xF0\x9F\x98"}) {
        EXPECT_TRUE(String::fromUTF8(bytes).isNull()) << bytes;
        EXPECT_TRUE(String(bytes).isNull()) << bytes;
    }
}

TEST(String, ReplacesDamagedUTF8WhenAsked) {
    EXPECT_EQ(String::fromDamagedUTF8("a\xE4z"), String(u"a\uFFFDz"));
    EXPECT_EQ(String::fromDamagedUTF8("\xE2\x82z"), String(u"\uFFFDz"));
    EXPECT_EQ(String::fromDamagedUTF8("\xED\xA0\x80"), String(u"\uFFFD\uFFFD\uFFFD"));
    EXPECT_EQ(String::fromDamagedUTF8("\xF0\x9F\x98"), String(u"\uFFFD"));
}

TEST(String, ALoneSurrogateHasNoUTF8Form) {
    const String text(std::u16string{u'a', 0xD800, u'b'});
    EXPECT_EQ(text.exactUTF8(), std::nullopt);
    EXPECT_EQ(text.utf8(),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(String(std::u16string{0xDC00}).exactUTF8(), std::nullopt);
    EXPECT_EQ(String("ok").exactUTF8(), "ok");
}

TEST(String, EveryCharacterSurvivesTheWayThroughUTF8) {
    for (char32_t character = 1; character < 0x110000; character += character < 0x3000 ? 1 : 61) {
        if (character >= 0xD800 && character < 0xE000) continue;
        std::u16string units;
        if (character < 0x10000) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xD7C0 + (character >> 10));
            units += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        }
        ASSERT_EQ(String::fromUTF8(String(units).utf8()), String(units)) << static_cast<uint32_t>(character);
    }
}

TEST(String, CopiesShareTheirText) {
    const String text("shared");
    const String copy = text;
    EXPECT_TRUE(copy.isSameObject(text));
    EXPECT_EQ(copy.view().data(), text.view().data());
    EXPECT_FALSE(String("shared").isSameObject(text));
    EXPECT_TRUE(text.substring(0).isSameObject(text));
    EXPECT_EQ(sizeof(String), sizeof(void*));
}

TEST(String, RangesOutsideRaise) {
    const String text("abc");
    EXPECT_RAISES(text.charAt(3), RangeException, "position 3 beyond the end of a text of 3");
    EXPECT_RAISES(text.substring(2, 2), RangeException, "range of 2 from 2 beyond the end of a text of 3");
    EXPECT_RAISES(text.substring(4), RangeException, "range of 0 from 4 beyond the end of a text of 3");
    EXPECT_THROW(text.substring(1, static_cast<size_t>(-1)), RangeException);
    EXPECT_EQ(text.substring(3), String(""));
    EXPECT_EQ(text.substring(1, 1), String("b"));
}

TEST(String, FindsTheFirstOccurrence) {
    const String text("abcabc");
    EXPECT_EQ(text.find("bc"), 1u);
    EXPECT_EQ(text.find("bc", 2), 4u);
    EXPECT_EQ(text.find("x"), String::npos);
    EXPECT_EQ(text.find(""), String::npos);
    EXPECT_EQ(text.find(u'c'), 2u);
}

TEST(String, EqualTextsHaveEqualHashes) {
    EXPECT_EQ(String("Name").hash(), String(u"Name").hash());
    EXPECT_EQ(String("Name").hash(), String::hashOf(u"Name"));
    std::unordered_set<size_t> hashes;
    for (int number = 0; number < 10000; ++number) hashes.insert(Number(number).text().hash());
    EXPECT_EQ(hashes.size(), 10000u);
    EXPECT_NE(String(u"a").hash(), String(std::u16string(u"a\0", 2)).hash());
}

TEST(String, ReadsTheIntegerThatItBeginsWith) {
    EXPECT_EQ(String("42").integerValue(), 42);
    EXPECT_EQ(String(" \t-7 apples").integerValue(), -7);
    EXPECT_EQ(String("+5").integerValue(), 5);
    EXPECT_EQ(String("apples").integerValue(), 0);
    EXPECT_EQ(String("").integerValue(), 0);
    EXPECT_EQ(String("-").integerValue(), 0);
    EXPECT_EQ(String("3.9").integerValue(), 3);
    EXPECT_EQ(String("9223372036854775807").integerValue(), INT64_MAX);
    EXPECT_EQ(String("-9223372036854775808").integerValue(), INT64_MIN);
    EXPECT_EQ(String("99999999999999999999").integerValue(), INT64_MAX);
    EXPECT_EQ(String("-99999999999999999999").integerValue(), INT64_MIN);
    EXPECT_EQ(String("4000000000").intValue(), INT32_MAX);
    EXPECT_EQ(String("-4000000000").intValue(), INT32_MIN);
}

TEST(String, ReadsTheRealThatItBeginsWith) {
    EXPECT_EQ(String("1.5").doubleValue(), 1.5);
    EXPECT_EQ(String(" -1.5e2x").doubleValue(), -150);
    EXPECT_EQ(String("+2").doubleValue(), 2);
    EXPECT_EQ(String("+-2").doubleValue(), 0);
    EXPECT_EQ(String("x").doubleValue(), 0);
    EXPECT_EQ(String(".5").doubleValue(), 0.5);
    EXPECT_EQ(String("1e999").doubleValue(), HUGE_VAL);
    EXPECT_EQ(String("-1e999").doubleValue(), -HUGE_VAL);
    EXPECT_EQ(String("1e-999").doubleValue(), 0);
    EXPECT_EQ(String("0.1").floatValue(), 0.1f);
    EXPECT_EQ(String("nan").doubleValue(), 0);
}

TEST(MutableString, IsSharedByItsHandles) {
    MutableString text{String("abc")};
    MutableString other = text;
    other.append(u"d");
    EXPECT_EQ(text.string(), String("abcd"));
    EXPECT_TRUE(text.isSameObject(other));
    const String copy = text.string();
    text.insert(0, u">");
    text.erase(1, 2);
    text.replace(1, 1, u"CC");
    EXPECT_EQ(text.string(), String(">CCd"));
    EXPECT_EQ(copy, String("abcd"));
    text.append(u'!');
    EXPECT_EQ(text.charAt(4), u'!');
    EXPECT_EQ(text.substring(1, 2), String("CC"));
    text.setString(u"new");
    EXPECT_EQ(other.view(), u"new");
}

TEST(MutableString, EditsOutsideRaiseAndChangeNothing) {
    MutableString text{String("abc")};
    EXPECT_THROW(text.insert(4, u"x"), RangeException);
    EXPECT_THROW(text.erase(2, 2), RangeException);
    EXPECT_THROW(text.replace(4, 0, u""), RangeException);
    EXPECT_THROW(text.charAt(3), RangeException);
    EXPECT_THROW(text.substring(1, 3), RangeException);
    EXPECT_EQ(text.string(), String("abc"));
    text.insert(3, u"x");
    EXPECT_EQ(text.string(), String("abcx"));
}

TEST(MutableString, NullTakesNoEdits) {
    MutableString text;
    text.insert(7, u"x");
    text.erase(1, 1);
    text.append(u"x");
    EXPECT_TRUE(text.isNull());
    EXPECT_TRUE(text.string().isNull());
    EXPECT_TRUE(MutableString(String()).isNull());
    EXPECT_FALSE(MutableString::makeEmpty().isNull());
}

TEST(Unicode, XmlTextLosesForbiddenCharactersAlone) {
    EXPECT_EQ(withoutForbiddenXmlCharacters(u"a\x01\tb\n\r\U0001F600"), u"a\uFFFD\tb\n\r\U0001F600");
    EXPECT_EQ(withoutForbiddenXmlCharacters(std::u16string{0xD800, u'a', 0xFFFE}), u"\uFFFDa\uFFFD");
}

}  // namespace
}  // namespace vornaset
