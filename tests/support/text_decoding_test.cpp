#include "support/text_decoding.h"

#include "support/printing.h"

namespace vornaset {
namespace {

TEST(StringEncodingWithData, TheFirstGermanLetterDecides) {
    EXPECT_EQ(stringEncodingWithData(Data("\x41\x8A\xE4")), 30u);
    EXPECT_EQ(stringEncodingWithData(Data("\x41\xE4\x8A")), 12u);
}

TEST(StringEncodingWithData, KnowsAllSevenLettersInBoth) {
    for (const char byte : std::string("\x80\x85\x86\x8A\x9A\x9F\xA7")) {
        EXPECT_EQ(stringEncodingWithData(Data(std::string(1, byte) + "\xE4")), 30u);
    }
    for (const char byte : std::string("\xC4\xD6\xDC\xE4\xF6\xFC\xDF")) {
        EXPECT_EQ(stringEncodingWithData(Data(std::string(1, byte) + "\x8A")), 12u);
    }
}

TEST(StringEncodingWithData, PlainTextAndNoTextCountAsMacRoman) {
    EXPECT_EQ(stringEncodingWithData(Data("plain")), 30u);
    EXPECT_EQ(stringEncodingWithData(Data("")), 30u);
    EXPECT_EQ(stringEncodingWithData(Data()), 30u);
}

TEST(StringEncodingWithData, OtherHighBytesArePassedOver) {
    EXPECT_EQ(stringEncodingWithData(Data("\xE9\xE4")), 12u);
    EXPECT_EQ(stringEncodingWithData(Data("\xE9")), 30u);
}

TEST(StringWithData, TriesUTF8First) {
    EXPECT_EQ(stringWithData(Data("\xC3\xA4"
                                  "B")),
              String(u"\u00E4B"));
    EXPECT_EQ(stringWithData(Data("\xE4"
                                  "B")),
              String(u"\u00E4B"));
    EXPECT_EQ(stringWithData(Data("\x8A"
                                  "B")),
              String(u"\u00E4B"));
}

TEST(StringWithData, NullGivesTheEmptyString) {
    EXPECT_FALSE(stringWithData(Data()).isNull());
    EXPECT_EQ(stringWithData(Data()), String(""));
    EXPECT_EQ(stringWithData(Data("")), String(""));
}

TEST(StringWithData, IsNullWhenNoEncodingDecodes) {
    EXPECT_TRUE(stringWithData(Data("\xE4\x81")).isNull());
}

TEST(StringWithBytes, DecodesTheThreeEncodings) {
    EXPECT_EQ(stringWithBytes("\xC3\xA4", 2, 4), String(u"\u00E4"));
    EXPECT_TRUE(stringWithBytes("\xE4", 1, 4).isNull());
    EXPECT_EQ(stringWithBytes("\x80\x93\xE4", 3, 12), String(u"\u20AC\u201C\u00E4"));
    EXPECT_EQ(stringWithBytes("\x8A\xDB\xD2\xF0", 4, 30), String(u"\u00E4\u20AC\u201C\uF8FF"));
    EXPECT_TRUE(stringWithBytes("a", 1, 99).isNull());
    EXPECT_EQ(stringWithBytes(nullptr, 0, 4), String(""));
    EXPECT_EQ(stringWithBytes(nullptr, 0, 12), String(""));
}

TEST(StringWithBytes, EveryByteOfMacRomanHasACharacterAndFiveOfWindows1252HaveNone) {
    int undefined = 0;
    for (int value = 0; value < 256; ++value) {
        const char byte = static_cast<char>(value);
        EXPECT_EQ(stringWithBytes(&byte, 1, kMacRomanEncoding).length(), 1u) << value;
        undefined += stringWithBytes(&byte, 1, kWindows1252Encoding).isNull() ? 1 : 0;
        if (value < 0x80 || value >= 0xA0) {
            EXPECT_EQ(stringWithBytes(&byte, 1, kWindows1252Encoding).charAt(0), value);
        }
    }
    EXPECT_EQ(undefined, 5);
}

TEST(DataWithString, GivesUTF8) {
    EXPECT_EQ(dataWithString(u"\u00E4"), Data("\xC3\xA4"));
    EXPECT_TRUE(dataWithString(nullptr).isNull());
    EXPECT_EQ(dataWithString(""), Data(""));
}

TEST(StringWithCString, ReadsUTF8) {
    EXPECT_EQ(stringWithCString("\xC3\xA4"), String(u"\u00E4"));
    EXPECT_TRUE(stringWithCString("\xE4").isNull());
    EXPECT_TRUE(stringWithCString(nullptr).isNull());
}

}  // namespace
}  // namespace vornaset
