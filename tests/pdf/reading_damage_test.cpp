// Files that are damaged, cut, turned upside down or made to hurt. Each is read, written anew, and read again.
#include "../fuzz/pdf_rewrite.cpp"

#include <gtest/gtest.h>

#include "pdf/encoders.h"
#include "pdf/reader_values.h"
#include "pdf/source_file.h"
#include "pdf/toolkit.h"

namespace vornaset {
namespace {

void rewrite(const std::string& bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

std::string usualFile() {
    SourceFile file = onePage("/Contents[4 0 R 5 0 R]/Resources<</Font<</F 6 0 R>>>>/Annots[7 0 R]");
    file.addStream("/Filter/FlateDecode", encoders::deflated("BT /F 12 Tf (Hello) Tj ET"));
    file.addStream("/Filter[/ASCII85Decode/LZWDecode]", encoders::base85(encoders::lzw("0 0 9 9 re f", true)));
    file.add("<</Type/Font/Subtype/Type1/BaseFont/Courier>>");
    file.add("<</Type/Annot/P 3 0 R/Rect[0 0 9 9.5]/Contents(note)>>");
    file.add("<</Title(T)>>");
    file.trailer("/Info 8 0 R");
    return file.bytes();
}

TEST(PdfDamage, EveryLengthOfACutFileIsReadOrRefused) {
    const std::string whole = usualFile();
    for (size_t length = 0; length < whole.size(); length += 7) rewrite(whole.substr(0, length));
}

TEST(PdfDamage, AFileCutBehindItsPagesStillGivesThem) {
    const std::string whole = usualFile();
    const auto document = documentOfBytes(whole.substr(0, whole.find("7 0 obj")));
    ASSERT_EQ(document->pages().count(), 1u);
    EXPECT_EQ(textOf(document->pages()[0]->contentsData()), "BT /F 12 Tf (Hello) Tj ET0 0 9 9 re f");
}

TEST(PdfDamage, WrongBytesAnywhereAreReadOrRefused) {
    const std::string whole = usualFile();
    std::mt19937 random(4);
    for (int round = 0; round < 1500; ++round) {
        std::string bytes = whole;
        for (int change = 0; change <= round % 4; ++change)
            bytes[random() % bytes.size()] = static_cast<char>(random() % 256);
        rewrite(bytes);
    }
}

TEST(PdfDamage, ExchangedDigitsOfReferencesAreReadOrRefused) {
    const std::string whole = usualFile();
    std::mt19937 random(5);
    for (int round = 0; round < 1500; ++round) {
        std::string bytes = whole;
        for (int change = 0; change < 3; ++change) {
            const size_t place = bytes.find(" 0 R", random() % bytes.size());
            if (place != std::string::npos && place > 0) bytes[place - 1] = static_cast<char>('0' + random() % 10);
        }
        rewrite(bytes);
    }
}

TEST(PdfDamage, AChainOfAHundredThousandDictionariesIsReadAndWritten) {
    SourceFile file = onePage("/Chain 4 0 R");
    constexpr size_t links = 100'000;
    for (size_t link = 0; link < links; ++link) file.add("<</Next " + std::to_string(5 + link) + " 0 R>>");
    file.add("(end)");
    const auto document = documentOf(file);
    EXPECT_EQ(document->pages().count(), 1u);
    EXPECT_GT(document->pdfObjs().count(), links);
    EXPECT_GT(document->pdfData().length(), links);
}

TEST(PdfDamage, ADirectNestOfAnyDepthIsReadOrRefused) {
    for (const size_t depth : {100U, 499U, 500U, 501U, 5'000U, 200'000U}) {
        rewrite(onePage("/Nest" + std::string(depth, '[') + std::string(depth, ']')).bytes());
        std::string dictionaries;
        for (size_t level = 0; level < depth; ++level) dictionaries += "<</A ";
        rewrite(onePage("/Nest" + dictionaries).bytes());
    }
}

TEST(PdfDamage, AMillionNullsAreRead) {
    std::string nulls;
    for (int count = 0; count < 1'000'000; ++count) nulls += "null ";
    const auto document = documentOf(onePage("/Nulls[" + nulls + "]"));
    const auto list = document->pages()[0]->objectForKeyedSubscript(u"Nulls");
    EXPECT_EQ(list->numberOfChildren(), 1'000'000);
}

TEST(PdfDamage, AStreamThatGrowsBeyondItsLimitIsCarried) {
    SourceFile file = onePage("/Contents 4 0 R");
    const std::string raw = encoders::deflated(std::string(90'000, '\x81'));
    file.addStream("/Filter[/FlateDecode/RunLengthDecode/RunLengthDecode]", raw);
    const auto reader = ReaderDocument::openBytes(Data(file.bytes()));
    int32_t format = kStreamRaw;
    EXPECT_EQ(dataForStream(reader->page(1)->entry("Contents"), format, 1'000'000).view(), raw);
    EXPECT_EQ(format, kStreamCompressed);
}

TEST(PdfDamage, StreamsThatNameThemselvesEnd) {
    SourceFile file = onePage("/Contents 4 0 R");
    file.add("<</Length 4 0 R/Filter 4 0 R/DecodeParms 4 0 R>>stream\nabc\nendstream");
    rewrite(file.bytes());
    SourceFile list = onePage("/Contents 4 0 R");
    list.add("[4 0 R 4 0 R]");
    rewrite(list.bytes());
}

TEST(PdfDamage, ThousandsOfFiltersAreNotUndone) {
    std::string names;
    for (int count = 0; count < 50'000; ++count) names += "/ASCIIHexDecode";
    SourceFile file = onePage("/Contents 4 0 R");
    file.addStream("/Filter[" + names + "]", "00>");
    const auto document = documentOf(file);
    EXPECT_EQ(objectAs<MyPDFStream>(document->pages()[0]->contents())->dataFormat(), kStreamCompressed);
}

TEST(PdfDamage, CompressedObjectsUnderThousandsOfFiltersAreRefused) {
    std::string names;
    for (int count = 0; count < 50'000; ++count) names += "/ASCIIHexDecode";
    std::string file = "%PDF-1.5\n2 0 obj\n<</Type/ObjStm/N 1/First 4/Filter[" + names +
                       "]/Length 3>>stream\n00>\nendstream\nendobj\n";
    const size_t place = file.size();
    const std::string entries("\x00\x00\x00\x00\x00\x02\x00\x00\x02\x00\x01\x00\x00\x09\x00", 15);
    file += "3 0 obj\n<</Type/XRef/Size 3/W[1 3 1]/Root 1 0 R/Length 15>>stream\n" + entries +
            "\nendstream\nendobj\nstartxref\n" + std::to_string(place) + "\n%%EOF\n";
    EXPECT_FALSE(documentOfBytes(file)->catalog());
}

}  // namespace
}  // namespace vornaset
