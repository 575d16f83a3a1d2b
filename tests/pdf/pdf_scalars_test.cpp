// Booleans, numbers, strings and names: labels and file bytes.

#include "pdf/pdf_scalars.h"

#include <cmath>
#include <limits>
#include <random>

#include "pdf/pdf_text.h"
#include "pdf/toolkit.h"

namespace vornaset {

namespace {

std::string numberText(Number value) {
    return MyPDFNumber::make(value)->pdfString().utf8();
}

std::string nameBytes(const std::string& bytes) {
    const Handle<MyPDFName> name = MyPDFName::name();
    name->setData(Data(bytes));
    return bytesOf(name);
}

Handle<MyPDFString> stringOf(const std::string& bytes) {
    return MyPDFString::stringWithBytes(bytes.data(), static_cast<int64_t>(bytes.size()));
}

}  // namespace

// ----- Booleans

TEST(PdfBoolean, PrintsItsValue) {
    const Handle<MyPDFBoolean> boolean = MyPDFBoolean::boolean();
    EXPECT_EQ(boolean->b(), 0);
    EXPECT_EQ(bytesOf(boolean), "false");
    boolean->setB(1);
    EXPECT_EQ(bytesOf(boolean), "true");
    EXPECT_EQ(boolean->pdfString(), String(u"true"));
    EXPECT_EQ(MyPDFBoolean::boolean(2)->pdfString(), String(u"true"));
    EXPECT_EQ(MyPDFBoolean::boolean(0)->pdfString(), String(u"false"));
}

// ----- Numbers

TEST(PdfNumber, PrintsNullWithoutANumberAndIsANumber) {
    const Handle<MyPDFNumber> null = MyPDFNumber::make();
    EXPECT_EQ(null->isNumber(), 1);
    EXPECT_EQ(null->pdfString(), String(u"null"));
    EXPECT_EQ(bytesOf(null), "null");
    EXPECT_EQ(null->floatValue(), 0);
}

TEST(PdfNumber, CutsDigitsBehindTheThirdAndDoesNotRound) {
    EXPECT_EQ(numberText(1.2399), "1.239");
    EXPECT_EQ(numberText(1.23456), "1.234");
    EXPECT_EQ(numberText(0.99999), "0.999");
    EXPECT_EQ(numberText(2.5), "2.5");
    EXPECT_EQ(numberText(2.125), "2.125");
    EXPECT_EQ(numberText(2.1255), "2.125");
    EXPECT_EQ(numberText(-0.0005), "-0.000");
    EXPECT_EQ(numberText(841.8898F), "841.889");
}

TEST(PdfNumber, PrintsIntegersWithoutAPoint) {
    EXPECT_EQ(numberText(0), "0");
    EXPECT_EQ(numberText(-612), "-612");
    EXPECT_EQ(numberText(std::numeric_limits<int64_t>::max()), "9223372036854775807");
    EXPECT_EQ(numberText(std::numeric_limits<int64_t>::min()), "-9223372036854775808");
}

TEST(PdfNumber, PrintsARealWithoutAFractionWithoutAPoint) {
    EXPECT_EQ(numberText(2.0), "2");
    EXPECT_EQ(numberText(2.0F), "2");
    EXPECT_EQ(numberText(100000.0), "100000");
}

TEST(PdfNumber, PrintsASingleInItsOwnShortestForm) {
    EXPECT_EQ(numberText(0.1F), "0.1");
    EXPECT_EQ(numberText(static_cast<double>(0.1F)), "0.100");
}

TEST(PdfNumber, LeavesExponentFormsAsTheyAreButForTheCut) {
    EXPECT_EQ(numberText(1e-5), "1e-05");
    EXPECT_EQ(numberText(1.5e-5), "1.5e-");
    EXPECT_EQ(numberText(1e20), "1e+20");
    EXPECT_EQ(numberText(0.0001), "0.000");
}

TEST(PdfNumber, PrintsWhatIsNoNumberWithoutFailing) {
    EXPECT_EQ(numberText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(numberText(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(numberText(std::nan("")), "nan");
}

TEST(PdfNumber, PrintsAsTheLibrarysNumberTextCutByHand) {
    std::mt19937_64 random(7);
    const auto expected = [](Number value) {
        std::string text = value.text().utf8();
        const size_t point = text.find('.');
        return point != std::string::npos && text.size() - point >= 5 ? text.substr(0, point + 4) : text;
    };
    for (int round = 0; round < 20'000; ++round) {
        const double mantissa = std::ldexp(static_cast<double>(random() >> 11), -53) * 2 - 1;
        const double value = mantissa * std::pow(10.0, static_cast<int>(random() % 40) - 12);
        EXPECT_EQ(numberText(value), expected(value)) << value;
        const auto single = static_cast<float>(value);
        EXPECT_EQ(numberText(single), expected(single)) << single;
    }
}

TEST(PdfNumber, NarrowsToASingleWhenItIsScaled) {
    const Handle<MyPDFNumber> value = number(0.1);
    EXPECT_EQ(value->floatValue(), static_cast<double>(0.1F));
    value->scale(2);
    EXPECT_EQ(value->number()->kind(), Number::Kind::real);
    EXPECT_EQ(value->number()->doubleValue(), static_cast<double>(0.1F) * 2);
    const Handle<MyPDFNumber> large = integer(16'777'217);
    EXPECT_EQ(large->floatValue(), 16'777'216);
    EXPECT_EQ(large->number()->integerValue(), 16'777'217);
}

TEST(PdfNumber, StoresADoubleAsItIs) {
    const Handle<MyPDFNumber> value = MyPDFNumber::make();
    value->setFloatValue(0.1);
    EXPECT_EQ(value->number()->doubleValue(), 0.1);
    value->setNumber(std::nullopt);
    EXPECT_EQ(bytesOf(value), "null");
}

// ----- Strings

TEST(PdfString, EscapesParenthesesBackslashAndLineEnds) {
    EXPECT_EQ(bytesOf(stringOf("a(b)\\c\n")), "(a\\(b\\)\\\\c\\n)");
    EXPECT_EQ(bytesOf(stringOf("a\rb")), "(a\\rb)");
}

TEST(PdfString, LetsEveryOtherByteThrough) {
    const std::string bytes("\x00\x01\t\x80\xFF", 5);
    EXPECT_EQ(bytesOf(stringOf(bytes)), "(" + bytes + ")");
}

TEST(PdfString, PrintsEmptyParenthesesWithoutBytes) {
    EXPECT_EQ(bytesOf(stringOf("")), "()");
    EXPECT_EQ(bytesOf(MyPDFString::make()), "()");
}

TEST(PdfString, KeepsUtf16BytesBetweenTheParentheses) {
    const std::string bytes("\xFE\xFF\x00(\x20\xAC", 6);
    EXPECT_EQ(bytesOf(stringOf(bytes)), std::string("(\xFE\xFF\x00\\(\x20\xAC)", 9));
}

TEST(PdfString, ReadsUtf16WithItsMarkForTheLabel) {
    EXPECT_EQ(stringOf(std::string("\xFE\xFF\x00"
                                   "A\x20\xAC",
                                   6))
                  ->pdfString(),
              String(u"\uFEFFA\u20AC"));
    EXPECT_EQ(stringOf(std::string("\xFE\xFF\x00", 3))->pdfString(), String(u"\uFEFF"));
}

TEST(PdfString, TakesAMarkAloneForMacRoman) {
    EXPECT_EQ(stringOf("\xFE\xFF")->pdfString(), String(u"\u02DB\u02C7"));
}

TEST(PdfString, ReadsUtf8AndElseMacRomanForTheLabel) {
    EXPECT_EQ(stringOf("Gr\xC3\xBC\xC3\x9F"
                       "e")
                  ->pdfString(),
              String(u"Gr\u00FC\u00DFe"));
    EXPECT_EQ(stringOf("Gr\x9F\xA7"
                       "e")
                  ->pdfString(),
              String(u"Gr\u00FC\u00DFe"));
    EXPECT_EQ(stringOf("\xE4")->pdfString(), String(u"\u2030"));
    EXPECT_EQ(MyPDFString::make()->pdfString(), String(u""));
}

TEST(PdfString, DetectsTheEncodingForItsText) {
    EXPECT_EQ(stringOf("\xE4"
                       "B")
                  ->string(),
              String(u"\u00E4B"));
    EXPECT_EQ(stringOf("\xC3\xA4")->string(), String(u"\u00E4"));
    EXPECT_EQ(MyPDFString::make()->string(), String(u""));
    EXPECT_FALSE(MyPDFString::make()->string().isNull());
}

TEST(PdfString, CopiesBytesByLengthOrUpToTheirZero) {
    const char bytes[] = "ab\0cd";
    EXPECT_EQ(textOf(MyPDFString::stringWithBytes(bytes, -1)->data()), "ab");
    EXPECT_EQ(textOf(MyPDFString::stringWithBytes(bytes, 5)->data()), std::string("ab\0cd", 5));
    EXPECT_EQ(MyPDFString::stringWithBytes(bytes, 0)->data().length(), 0U);
    EXPECT_TRUE(MyPDFString::stringWithBytes(nullptr, 3)->data().isNull());
    EXPECT_TRUE(MyPDFString::stringWithBytes(bytes, -2)->data().isNull());
}

TEST(PdfString, StoresTextAsUtf8UpToItsFirstZero) {
    EXPECT_EQ(textOf(MyPDFString::stringWithString(u"J\u00FCrgen")->data()), "J\xC3\xBCrgen");
    EXPECT_EQ(textOf(MyPDFString::stringWithString(String(std::u16string_view(u"a\0b", 3)))->data()), "a");
    EXPECT_TRUE(MyPDFString::stringWithString(nullptr)->data().isNull());
}

// ----- Names

TEST(PdfName, IsNeverStoredWithoutItsSlash) {
    EXPECT_EQ(textOf(MyPDFName::nameWithCString("Page")->data()), "/Page");
    EXPECT_EQ(textOf(MyPDFName::nameWithCString("/Page")->data()), "/Page");
    EXPECT_EQ(textOf(MyPDFName::nameWithCString("")->data()), "/");
    EXPECT_EQ(textOf(MyPDFName::nameWithCString(nullptr)->data()), "/");
    EXPECT_EQ(textOf(MyPDFName::nameWithString(u"Gr\u00FCn")->data()), "/Gr\xC3\xBCn");
    EXPECT_EQ(textOf(MyPDFName::nameWithString(u"/x")->data()), "/x");
}

TEST(PdfName, EscapesWhatLiesOutsideThePlainRange) {
    EXPECT_EQ(nameBytes("/A B"), "/A#20B");
    EXPECT_EQ(nameBytes("/A-B"), "/A#2dB");
    EXPECT_EQ(nameBytes("/A.B"), "/A#2eB");
    EXPECT_EQ(nameBytes("/A#B"), "/A#23B");
    EXPECT_EQ(nameBytes("/A/B"), "/A#2fB");
    EXPECT_EQ(nameBytes("/(x)"), "/#28x#29");
    EXPECT_EQ(nameBytes("/\x7F\xFC"), "/#7f#fc");
}

TEST(PdfName, LeavesTheDelimitersOfThePlainRangeAlone) {
    EXPECT_EQ(nameBytes("/<>[]{}\\~"), "/<>[]{}\\~");
}

TEST(PdfName, KeepsAPlusSign) {
    EXPECT_EQ(nameBytes("/A+B"), "/A+B");
    EXPECT_EQ(nameBytes("/ABCDEF+Times-Roman"), "/ABCDEF+Times#2dRoman");
}

TEST(PdfName, LeavesFewerThanTwoBytesAsTheyStand) {
    EXPECT_EQ(nameBytes("/"), "/");
    EXPECT_EQ(nameBytes(""), "");
    EXPECT_EQ(bytesOf(MyPDFName::name()), "");
}

TEST(PdfName, LeavesItsFirstByteUnchangedWhateverItIs) {
    EXPECT_EQ(nameBytes("-a b"), "-a#20b");
}

TEST(PdfName, ShowsNoEscapesInItsLabel) {
    const Handle<MyPDFName> name = MyPDFName::nameWithCString("A B");
    EXPECT_EQ(name->pdfString(), String(u"/A B"));
    name->setData(Data(std::string("/\xFC\x80")));
    EXPECT_EQ(name->pdfString(), String(u"/\u00FC\u20AC"));
}

// ----- Text

TEST(PdfText, WritesSixDigitsWhateverTheLocale) {
    std::string text;
    appendSixDigits(text, 0.5);
    text += ' ';
    appendSixDigits(text, -1234.5678914);
    text += ' ';
    appendSixDigits(text, std::numeric_limits<double>::infinity());
    EXPECT_EQ(text, "0.500000 -1234.567891 inf");
    text.clear();
    appendSixDigits(text, -std::numeric_limits<double>::max());
    EXPECT_EQ(text.size(), 317U);
}

TEST(PdfText, TurnsKeysIntoMacRomanOrElseUtf8) {
    const auto macRoman = [](const String& text) {
        std::string bytes;
        appendMacRoman(bytes, text);
        return bytes;
    };
    EXPECT_EQ(macRoman(u"Gr\u00FCn \u20AC"), "Gr\x9Fn \xDB");
    EXPECT_EQ(macRoman(u"\u0416\u00FC"), "\xD0\x96\xC3\xBC");
    EXPECT_EQ(macRoman(String(std::u16string_view(u"a\0b", 3))), "a");
    EXPECT_EQ(macRoman(String(std::u16string(600, u'k'))), std::string(600, 'k'));
    EXPECT_EQ(macRoman(u""), "");
}

}  // namespace vornaset
