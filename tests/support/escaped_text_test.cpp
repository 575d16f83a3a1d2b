#include "support/escaped_text.h"

#include <cstring>

#include "support/printing.h"

namespace vornaset {
namespace {

using namespace std::string_literals;

uint8_t byteOf(const char* pair) {
    char byte = 0;
    hex2bin(pair, &byte, 1);
    return static_cast<uint8_t>(byte);
}

std::string encoded(const std::string& text) {
    std::string target(text.size() * 3 + 1, '\0');
    encodeURL(text.c_str(), target.data());
    return target.c_str();
}

std::string decodedCopy(const std::string& text) {
    std::string target(text.size() + 1, '\0');
    decodeURL(text.c_str(), target.data());
    return target.c_str();
}

std::string decodedInPlace(const std::string& text) {
    std::string copy = text;
    decodeURL(copy.data());
    return copy.c_str();
}

constexpr std::string (*kDecoders[])(const std::string&) = {decodedCopy, decodedInPlace};

TEST(Hex2bin, UpperCaseDigitsGiveTheirPlainValue) {
    for (unsigned value = 0; value < 256; ++value) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02X", value);
        EXPECT_EQ(byteOf(pair), value) << pair;
    }
}

TEST(Hex2bin, ALowerCaseLetterInTheLowPositionGivesAByte32TooHigh) {
    EXPECT_EQ(byteOf("4F"), 0x4F);
    EXPECT_EQ(byteOf("4f"), 0x6F);
    EXPECT_EQ(byteOf("2f"), 0x4F);
    EXPECT_EQ(byteOf("f0"), 0xF0);
    EXPECT_EQ(byteOf("ff"), 0x1F);
}

TEST(Hex2bin, NoCharacterIsTestedToBeADigit) {
    EXPECT_EQ(byteOf("  "), static_cast<uint8_t>((0x20 << 4) + (0x20 - 48)));
    EXPECT_EQ(byteOf("zz"), static_cast<uint8_t>((('z' + 9) << 4) + ('z' - 55)));
    EXPECT_EQ(byteOf(":9"), static_cast<uint8_t>(((58 + 9) << 4) + 9));
    EXPECT_EQ(byteOf("\xE4\xE4"), static_cast<uint8_t>(((0xE4 + 9) << 4) + (0xE4 - 55)));
}

TEST(Hex2bin, ACountOfZeroDoesNothing) {
    char target = 'x';
    hex2bin("4F", &target, 0);
    hex2bin(nullptr, nullptr, 0);
    EXPECT_EQ(target, 'x');
}

TEST(Hex2bin, DecodesTheTextOfData) {
    EXPECT_EQ(hex2bin(Data("48692")), String("Hi"));
    EXPECT_EQ(hex2bin(Data("C3A4")), String(u"\u00E4"));
    EXPECT_EQ(hex2bin(Data("4")), String(""));
    EXPECT_EQ(hex2bin(Data("")), String(""));
    EXPECT_EQ(hex2bin(Data()), String(""));
    EXPECT_EQ(hex2bin(Data("\xE4")), String(""));
    EXPECT_TRUE(hex2bin(Data("E4")).isNull());
    EXPECT_EQ(hex2bin(Data("4100")), String(u"A\0"s));
}

TEST(EncodeURL, EscapesInUpperCaseHexadecimal) {
    EXPECT_EQ(encoded(" "), "%20");
    EXPECT_EQ(encoded("\xFC"), "%FC");
    EXPECT_EQ(encoded("~"), "%7E");
    EXPECT_EQ(encoded("a/b?c=d&e+f%"), "a%2Fb%3Fc%3Dd%26e%2Bf%25");
}

TEST(EncodeURL, KeepsLettersDigitsAndThreeMarks) {
    const std::string kept = "ABCXYZabcxyz0123456789-._";
    EXPECT_EQ(encoded(kept), kept);
    size_t plain = 0;
    for (int value = 1; value < 256; ++value) plain += encoded(std::string(1, static_cast<char>(value))).size() == 1;
    EXPECT_EQ(plain, 26u + 26u + 10u + 3u);
}

TEST(EncodeURL, WritesNoTerminatorAndNothingForNoText) {
    char target[4] = {'x', 'x', 'x', 'x'};
    encodeURL("", target);
    EXPECT_EQ(target[0], 'x');
    encodeURL("ab", target);
    EXPECT_EQ(std::string(target, 4), "abxx");
}

TEST(DecodeURL, DecodesEachEscapeByTheFormula) {
    for (const auto decode : kDecoders) {
        EXPECT_EQ(decode("a%20b%C3%A4"), "a b\xC3\xA4");
        EXPECT_EQ(decode("1+2%2B3"), "1+2+3");
        EXPECT_EQ(decode("%2f"), "\x4F");
        EXPECT_EQ(decode("%252F"), "%2F");
        EXPECT_EQ(decode("plain"), "plain");
        EXPECT_EQ(decode(""), "");
    }
}

TEST(DecodeURL, APercentSignWithTooLittleBehindItStaysAsItStands) {
    for (const auto decode : kDecoders) {
        EXPECT_EQ(decode("100%"), "100%");
        EXPECT_EQ(decode("100%4"), "100%4");
        EXPECT_EQ(decode("%41%"), "A%");
    }
}

TEST(DecodeURL, TheCopyHasNoTerminator) {
    char target[4] = {'x', 'x', 'x', 'x'};
    decodeURL("%41b", target);
    EXPECT_EQ(std::string(target, 4), "Abxx");
}

TEST(DecodeURL, InPlaceATextWithoutPercentSignIsNotTouched) {
    // Read-only memory: a write would end the test.
    decodeURL(const_cast<char*>("plain+text"));
    SUCCEED();
}

TEST(DecodeURL, UndoesEncodeURLForEveryByte) {
    for (int value = 1; value < 256; ++value) {
        const std::string text(1, static_cast<char>(value));
        EXPECT_EQ(decodedCopy(encoded(text)), text);
    }
}

TEST(AddingPercentEscapes, LeavesWhatAQueryMayHold) {
    EXPECT_EQ(stringByAddingPercentEscapes("http://a.b/c?d=e&f=(g)*!$',;@~_-."),
              String("http://a.b/c?d=e&f=(g)*!$',;@~_-."));
    EXPECT_EQ(stringByAddingPercentEscapes("a b%\"<>#[]{}|\\^`"),
              String("a%20b%25%22%3C%3E%23%5B%5D%7B%7D%7C%5C%5E%60"));
    EXPECT_EQ(stringByAddingPercentEscapes(u"\u00E4\u20AC"), String("%C3%A4%E2%82%AC"));
    EXPECT_EQ(stringByAddingPercentEscapes(u"\0"s), String("%00"));
    EXPECT_EQ(stringByAddingPercentEscapes(""), String(""));
    EXPECT_TRUE(stringByAddingPercentEscapes(nullptr).isNull());
    EXPECT_TRUE(stringByAddingPercentEscapes(String(std::u16string{0xD800})).isNull());
}

TEST(UrlWithString, IsTheURLOfTheEscapedText) {
    const std::shared_ptr<Url> url = urlWithString("file:///Users/a b.pdf");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->absoluteString(), String("file:///Users/a%20b.pdf"));
    EXPECT_EQ(Value(url).description(), url->absoluteString());
    EXPECT_TRUE(urlWithString("relative/path?a:b"));
    EXPECT_TRUE(urlWithString("mailto:a@b"));
}

TEST(UrlWithString, IsNullForWhatIsNoURL) {
    EXPECT_FALSE(urlWithString(nullptr));
    EXPECT_FALSE(urlWithString(""));
    EXPECT_FALSE(urlWithString(":a"));
    EXPECT_FALSE(urlWithString("1a:b"));
    EXPECT_FALSE(urlWithString("a b:c"));
}

}  // namespace
}  // namespace vornaset
