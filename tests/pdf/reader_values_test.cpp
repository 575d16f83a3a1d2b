#include "pdf/reader_values.h"

#include <gtest/gtest.h>

#include "pdf/encoders.h"
#include "pdf/source_file.h"
#include "pdf/toolkit.h"

namespace vornaset {
namespace {

/// The values of an array in a file, which stays open.
class ReaderValues : public testing::Test {
  protected:
    const ReaderObject* value(const std::string& text) {
        document_ = ReaderDocument::openBytes(
            Data(SourceFile({"<</K " + text + ">>", "<</Length 3>>stream\nabc\nendstream"}).bytes()));
        return document_->catalog().entry("K");
    }
    std::unique_ptr<ReaderDocument> document_;
};

TEST_F(ReaderValues, GiveBooleans) {
    EXPECT_EQ(boolWithObjRef(value("true"))->b(), 1);
    EXPECT_EQ(pdfObjectGetBoolean(value("true")), 1);
    EXPECT_EQ(boolWithObjRef(value("false"))->b(), 0);
    EXPECT_EQ(boolWithObjRef(value("1"))->b(), 0);
    EXPECT_EQ(boolWithObjRef(nullptr)->b(), 0);
}

TEST_F(ReaderValues, GiveIntegersOfSixtyFourBits) {
    EXPECT_EQ(integerWithObjRef(value("9007199254740993"))->number()->integerValue(), 9007199254740993);
    EXPECT_EQ(pdfObjectGetInteger(value("-5")), -5);
    EXPECT_EQ(pdfObjectGetInteger(value("1.5")), 0) << "a real is another type";
    EXPECT_EQ(pdfObjectGetInteger(nullptr), 0);
    EXPECT_EQ(integerWithObjRef(value("/Name"))->number()->integerValue(), 0);
}

TEST_F(ReaderValues, GiveRealsWithSixDecimalsOfAFloat) {
    EXPECT_EQ(floatWithObjRef(value("841.8898"))->number()->text(), "841.8898");
    EXPECT_EQ(floatWithObjRef(value("841.8898"))->pdfString(), u"841.889");
    EXPECT_EQ(floatWithObjRef(value("0.12345678"))->number()->text(), "0.123457");
    EXPECT_EQ(floatWithObjRef(value("0.0000004"))->number()->text(), "0");
    EXPECT_EQ(floatWithObjRef(value("16777217.0"))->number()->integerValue(), 16777216);
    EXPECT_EQ(floatWithObjRef(value("12"))->number()->text(), "0") << "an integer is another type";
    EXPECT_EQ(floatWithObjRef(nullptr)->number()->text(), "0");
    EXPECT_FLOAT_EQ(pdfObjectGetFloat(value("0.1")), 0.1F);
}

TEST_F(ReaderValues, GiveReallyLargeRealsWithoutHarm) {
    const auto large = floatWithObjRef(value(std::string(60, '9') + ".5"));
    EXPECT_TRUE(large->number().has_value());
    EXPECT_NO_THROW(large->pdfString());
    EXPECT_NO_THROW(floatWithObjRef(value("-0." + std::string(400, '0') + "1"))->pdfString());
}

TEST_F(ReaderValues, GiveTheBytesOfStrings) {
    EXPECT_EQ(textOf(stringWithObjRef(value("(a\\000b)"))->data()), std::string("a\0b", 3));
    EXPECT_EQ(textOf(stringWithObjRef(value("()"))->data()), "");
    EXPECT_EQ(textOf(stringWithObjRef(value("<FEFF0041>"))->data()), std::string("\xFE\xFF\0A", 4));
    EXPECT_EQ(textOf(stringWithObjRef(value("/Name"))->data()), "");
    EXPECT_EQ(textOf(stringWithObjRef(nullptr)->data()), "");
}

TEST_F(ReaderValues, GiveTheTextOfStrings) {
    EXPECT_EQ(pdfObjectGetString(value("<FEFF00C4D83DDE00>")), u"Ä😀");
    EXPECT_EQ(pdfObjectGetString(value("<FFFEC400>")), u"Ä");
    EXPECT_EQ(pdfObjectGetString(value("<EFBBBFC384>")), u"Ä");
    EXPECT_EQ(pdfObjectGetString(value("(A\\304\\200\\240\\031)")), u"AÄ•€ˇ");
    EXPECT_EQ(pdfObjectGetString(value("12")), u"");
    EXPECT_EQ(pdfObjectGetString(nullptr), u"");
}

TEST_F(ReaderValues, GiveNamesWithASlashInFront) {
    EXPECT_EQ(textOf(nameWithObjRef(value("/Name"))->data()), "/Name");
    EXPECT_EQ(textOf(nameWithObjRef(value("/A#20B"))->data()), "/A B");
    EXPECT_EQ(textOf(nameWithObjRef(value("/#2FA"))->data()), "//A");
    EXPECT_EQ(textOf(nameWithObjRef(value("/"))->data()), "/");
    EXPECT_EQ(textOf(nameWithObjRef(value("12"))->data()), "/");
}

TEST_F(ReaderValues, GiveHandlesOfTheirOwnTypeAlone) {
    const ReaderObject* array = value("[1 2 0 R<<>>]");
    const ReaderObject* stream = array->items()[1];
    const ReaderObject* dictionary = array->items()[2];
    EXPECT_EQ(pdfObjectGetArray(array), array);
    EXPECT_EQ(pdfObjectGetArray(dictionary), nullptr);
    EXPECT_EQ(pdfObjectGetStream(stream), stream);
    EXPECT_EQ(pdfObjectGetStream(dictionary), nullptr);
    EXPECT_EQ(pdfObjectGetDict(dictionary), dictionary);
    EXPECT_EQ(pdfObjectGetDict(stream), nullptr);
    EXPECT_EQ(pdfObjectGetDict(nullptr), nullptr);
    EXPECT_EQ(streamWithObjRef(stream)->streamRef(), stream);
    EXPECT_TRUE(streamWithObjRef(stream)->data().isNull());
    EXPECT_EQ(streamWithObjRef(array)->streamRef(), nullptr);
}

TEST_F(ReaderValues, GiveElementsOfArrays) {
    const ReaderObject* array = value("[5 6]");
    EXPECT_EQ(pdfArrayGetObject(array, 1)->integer(), 6);
    EXPECT_EQ(pdfArrayGetObject(array, 2), nullptr);
    EXPECT_EQ(pdfArrayGetObject(array, -1), nullptr);
    EXPECT_EQ(pdfArrayGetObject(nullptr, 0), nullptr);
    EXPECT_EQ(arrayWithPDFArray(array).size(), 2u);
    EXPECT_TRUE(arrayWithPDFArray(nullptr).empty());
}

TEST_F(ReaderValues, PassOverTheStructureTreeInEveryDictionary) {
    const auto entries =
        dictWithPDFDict(value("<</StructTreeRoot<</A 1>>/MarkInfo<</Marked true>>/StructTreeRoots 1>>"));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].first, u"MarkInfo");
    EXPECT_EQ(entries[1].first, u"StructTreeRoots");
    EXPECT_TRUE(dictWithPDFDict(nullptr).empty());
}

TEST_F(ReaderValues, ReadKeysAsUTF8ElseInADetectedEncoding) {
    const auto entries = dictWithPDFDict(value("<</#C3#84 1/#E4#20 2>>"));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].first, u"Ä");
    EXPECT_EQ(entries[0].second->integer(), 1);
    EXPECT_EQ(entries[1].first, u"ä ");
}

TEST_F(ReaderValues, GiveAStreamsDataAndItsFormat) {
    const auto formatOf = [this](const std::string& entries, const std::string& bytes, const std::string& expected) {
        SourceFile file({"<</K 2 0 R>>"});
        file.addStream(entries, bytes);
        document_ = ReaderDocument::openBytes(Data(file.bytes()));
        int32_t format = -9;
        const Data data = dataForStream(document_->catalog().entry("K"), format);
        EXPECT_EQ(data.view(), expected);
        return format;
    };
    EXPECT_EQ(formatOf("", "abc", "abc"), kStreamRaw);
    EXPECT_EQ(formatOf("/Filter/FlateDecode", encoders::deflated("abc"), "abc"), kStreamRaw);
    EXPECT_EQ(formatOf("/Filter/DCTDecode", "jpeg", "jpeg"), kStreamJPEG);
    EXPECT_EQ(formatOf("/Filter[/AHx/DCTDecode]", encoders::hex("jpeg"), "jpeg"), kStreamJPEG);
    EXPECT_EQ(formatOf("/Filter/JPXDecode", "jpx", "jpx"), kStreamJPEG2000);
    EXPECT_EQ(formatOf("/Filter/JBIG2Decode", "fax", "fax"), kStreamCompressed);
    int32_t format = -9;
    EXPECT_TRUE(dataForStream(nullptr, format).isNull());
    EXPECT_EQ(format, kStreamRaw);
}

}  // namespace
}  // namespace vornaset
