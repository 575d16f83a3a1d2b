#include "companion/text_encoding.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <cstring>
#include <random>

#include "companion/csv_reader.h"
#include "companion/error.h"

namespace companion {
namespace {

ByteBuffer bytesOf(std::string_view text) {
    ByteBuffer bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

std::string decoded(std::string_view raw, TextEncoding encoding) {
    ByteBuffer bytes = bytesOf(raw);
    decodeInPlace(bytes, encoding, "t.csv");
    return std::string(bytes.view());
}

std::string asUtf16(std::u16string_view text, bool bigEndian) {
    std::string bytes;
    for (char16_t unit : text) {
        char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

struct DetectedCase {
    const char* what;
    std::string bytes;
    TextEncoding encoding;
};

void PrintTo(const DetectedCase& tested, std::ostream* out) {
    *out << tested.what;
}

class Detected : public testing::TestWithParam<DetectedCase> {};

TEST_P(Detected, IsTheEncoding) {
    EXPECT_EQ(detectEncoding(GetParam().bytes), GetParam().encoding) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Encoding, Detected,
    testing::Values(
        DetectedCase{"ASCII is UTF-8", "plain", TextEncoding::utf8},
        DetectedCase{"well-formed UTF-8", "M\xC3\xBCller", TextEncoding::utf8},
        DetectedCase{"mark of UTF-8 beats what follows", "\xEF\xBB\xBFM\xFCller", TextEncoding::utf8},
        DetectedCase{"mark of UTF-16LE", "\xFF\xFE", TextEncoding::utf16LittleEndian},
        DetectedCase{"mark of UTF-16BE", "\xFE\xFF", TextEncoding::utf16BigEndian},
        DetectedCase{"UTF-16LE without mark", asUtf16(u"id,name\n1,Jürgen\n", false), TextEncoding::utf16LittleEndian},
        DetectedCase{"UTF-16BE without mark", asUtf16(u"id,name\n1,Jürgen\n", true), TextEncoding::utf16BigEndian},
        DetectedCase{"a lone ä of Windows",
                     "\xE4"
                     "B",
                     TextEncoding::windows1252},
        DetectedCase{"the first letter decides: Mac", "A\x8A\xE4", TextEncoding::macRoman},
        DetectedCase{"the first letter decides: Windows", "A\xE4\x8A", TextEncoding::windows1252},
        DetectedCase{"a byte outside both sets is passed over", "\xE9\xFC", TextEncoding::windows1252},
        DetectedCase{"no letter at all is Mac Roman", "\xE9 ", TextEncoding::macRoman},
        DetectedCase{"ß of Mac",
                     "Stra\xA7"
                     "e",
                     TextEncoding::macRoman},
        DetectedCase{"ß of Windows",
                     "Stra\xDF"
                     "e",
                     TextEncoding::windows1252}));

TEST(Encoding, EveryGermanLetterDecidesAlone) {
    for (char letter : {'\x80', '\x85', '\x86', '\x8A', '\x9A', '\x9F', '\xA7'})
        EXPECT_EQ(detectEncoding(std::string{'x', letter}), TextEncoding::macRoman);
    for (char letter : {'\xC4', '\xD6', '\xDC', '\xE4', '\xF6', '\xFC', '\xDF'})
        EXPECT_EQ(detectEncoding(std::string{'x', letter}), TextEncoding::windows1252);
}

TEST(Encoding, SingleByteTablesAgreeWithIcu) {
    struct {
        TextEncoding encoding;
        const char* converter;
    } tables[] = {{TextEncoding::windows1252, "windows-1252"}, {TextEncoding::macRoman, "macintosh"}};
    for (auto& [encoding, converterName] : tables) {
        UErrorCode status = U_ZERO_ERROR;
        UConverter* converter = ucnv_open(converterName, &status);
        ASSERT_TRUE(U_SUCCESS(status)) << converterName;
        for (int byte = 1; byte < 256; ++byte) {
            char raw = static_cast<char>(byte);
            std::string expected;
            icu::UnicodeString(&raw, 1, converter, status).toUTF8String(expected);
            ASSERT_TRUE(U_SUCCESS(status));
            bool isUndefined =
                expected.size() == 2 && expected[0] == '\xC2' && static_cast<unsigned char>(expected[1]) < 0xA0;
            if (encoding == TextEncoding::windows1252 && isUndefined)
                EXPECT_THROW(decoded(std::string_view(&raw, 1), encoding), Error) << byte;
            else
                EXPECT_EQ(decoded(std::string_view(&raw, 1), encoding), expected) << converterName << " " << byte;
        }
        ucnv_close(converter);
    }
}

TEST(Encoding, Utf16DecodesAllPlanes) {
    std::u16string text = u"aü€\U0001F600\u2028漢字漢字";
    std::string expected = "aü€\U0001F600\u2028漢字漢字";
    EXPECT_EQ(decoded(asUtf16(text, false), TextEncoding::utf16LittleEndian), expected);
    EXPECT_EQ(decoded(asUtf16(text, true), TextEncoding::utf16BigEndian), expected);
    EXPECT_EQ(decoded("\xFF\xFE" + asUtf16(text, false), TextEncoding::utf16LittleEndian), expected) << "the mark goes";
    EXPECT_EQ(decoded("\xFE\xFF" + asUtf16(text, true), TextEncoding::utf16LittleEndian), expected)
        << "a mark beats the byte order that was named";
}

TEST(Encoding, BrokenBytesAreToldWithTheirLine) {
    auto sentence = [](std::string_view raw, TextEncoding encoding) -> std::string {
        try {
            decoded(raw, encoding);
        } catch (const Error& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(
        sentence("a\r\nb\n\xFC", TextEncoding::utf8),
        "the data file \"t.csv\", line 3: the byte 0xFC means nothing in UTF-8; save the file as UTF-8 or say its "
        "encoding with --encoding.");
    EXPECT_NE(
        sentence("a\n\x81", TextEncoding::windows1252).find("line 2: the byte 0x81 means nothing in Windows-1252"),
        std::string::npos);
    EXPECT_NE(sentence(asUtf16(u"a\nb", false) + "\x41", TextEncoding::utf16LittleEndian).find("line 2"),
              std::string::npos)
        << "an odd number of bytes";
    EXPECT_NE(sentence(std::string("\x00\xD8\x41\x00", 4), TextEncoding::utf16LittleEndian).find("line 1"),
              std::string::npos)
        << "half a pair";
    EXPECT_NE(sentence(std::string("\x00\xDC\x41\x00", 4), TextEncoding::utf16LittleEndian).find("line 1"),
              std::string::npos);
}

TEST(Encoding, Utf8IsCheckedAsUnicodeSays) {
    struct {
        const char* bytes;
        std::size_t bad;
    } cases[] = {{"abc", 3},
                 {"\xC3\xBC", 2},
                 {"\xC0\x80", 0},
                 {"a\xE0\x9F\xBF", 1},
                 {"\xED\xA0\x80", 0},
                 {"\xED\x9F\xBF", 3},
                 {"\xF4\x8F\xBF\xBF", 4},
                 {"\xF4\x90\x80\x80", 0},
                 {"\xF0\x8F\xBF\xBF", 0},
                 {"ab\xE2\x82", 2},
                 {"12345678\xFF", 8},
                 {"1234567\xC3\xBC\xBC", 9},
                 {"\xF5\x80\x80\x80", 0},
                 {"\xE2\x82\xAC"
                  "12345678901234567",
                  20}};
    for (auto& [bytes, bad] : cases) EXPECT_EQ(firstIllFormedByte(bytes), bad) << bytes;
}

TEST(Encoding, DecodingInPlaceNeverOvertakesItself) {
    std::mt19937 random(3);
    for (int round = 0; round < 2'000; ++round) {
        std::u16string text;
        std::string singleBytes;
        std::size_t length = random() % 60;
        unsigned wide = random() % 4;
        for (std::size_t i = 0; i < length; ++i) {
            text += random() % 4 < wide ? static_cast<char16_t>(0x4E00 + random() % 1000)
                                        : static_cast<char16_t>('a' + random() % 26);
            singleBytes += static_cast<char>(random() % 4 < wide ? 0xA0 + random() % 96 : 'a' + random() % 26);
        }
        std::string expected;
        icu::UnicodeString(text.data(), static_cast<int>(text.size())).toUTF8String(expected);
        ASSERT_EQ(decoded(asUtf16(text, false), TextEncoding::utf16LittleEndian), expected);
        std::string separately;
        for (char byte : singleBytes) separately += decoded(std::string_view(&byte, 1), TextEncoding::macRoman);
        ASSERT_EQ(decoded(singleBytes, TextEncoding::macRoman), separately);
    }
}

TEST(Encoding, NamesAreTakenInAnyDress) {
    EXPECT_EQ(encodingNamed("UTF-8"), TextEncoding::utf8);
    EXPECT_EQ(encodingNamed("utf16"), TextEncoding::utf16LittleEndian);
    EXPECT_EQ(encodingNamed("utf-16be"), TextEncoding::utf16BigEndian);
    EXPECT_EQ(encodingNamed("CP1252"), TextEncoding::windows1252);
    EXPECT_EQ(encodingNamed("ISO-8859-1"), TextEncoding::windows1252);
    EXPECT_EQ(encodingNamed("Mac Roman"), TextEncoding::macRoman);
    EXPECT_EQ(encodingNamed("ebcdic"), std::nullopt);
    for (TextEncoding encoding : {TextEncoding::utf8, TextEncoding::utf16LittleEndian, TextEncoding::utf16BigEndian,
                                  TextEncoding::windows1252, TextEncoding::macRoman})
        EXPECT_EQ(encodingNamed(nameOfEncoding(encoding)), encoding) << "what we print is what we take";
}

TEST(Encoding, OneTableInFiveEncodingsIsOneTable) {
    std::u16string text = u"id,name\r\n1,Jürgen Groß\r\n2,\"Zoë, Köln\"\r\n";
    std::string utf8;
    icu::UnicodeString(text.data(), static_cast<int>(text.size())).toUTF8String(utf8);
    std::string windows, mac;
    for (char16_t unit : text) {
        windows += static_cast<char>(unit);
        mac += unit == u'ü'   ? '\x9F'
               : unit == u'ß' ? '\xA7'
               : unit == u'ë' ? '\x91'
               : unit == u'ö' ? '\x9A'
                              : static_cast<char>(unit);
    }
    struct {
        std::string bytes;
        TextEncoding encoding;
    } files[] = {{utf8, TextEncoding::utf8},
                 {"\xEF\xBB\xBF" + utf8, TextEncoding::utf8},
                 {"\xFF\xFE" + asUtf16(text, false), TextEncoding::utf16LittleEndian},
                 {"\xFE\xFF" + asUtf16(text, true), TextEncoding::utf16BigEndian},
                 {windows, TextEncoding::windows1252},
                 {mac, TextEncoding::macRoman}};
    for (auto& [bytes, encoding] : files) {
        DataTable table = readData(bytesOf(bytes), "t.csv");
        EXPECT_EQ(table.encoding(), encoding);
        EXPECT_EQ(table.columns(), (std::vector<std::string>{"id", "name"}));
        EXPECT_EQ(table.cell(0, 1), "Jürgen Groß");
        EXPECT_EQ(table.cell(1, 1), "Zoë, Köln");
        DataOptions told;
        told.encoding = encoding;
        EXPECT_EQ(readData(bytesOf(bytes), "t.csv", told).cell(1, 1), "Zoë, Köln");
    }
}

}  // namespace
}  // namespace companion
