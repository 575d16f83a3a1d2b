#include "pdf/reader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "pdf/encoders.h"
#include "pdf/reader_values.h"
#include "pdf/source_file.h"

namespace vornaset {
namespace {

std::unique_ptr<ReaderDocument> read(const SourceFile& file) {
    return ReaderDocument::openBytes(Data(file.bytes()));
}

TEST(PdfReader, GivesOneObjectForEachIndirectObject) {
    const auto document = read(SourceFile({"<</A 2 0 R/B 2 0 R/C[2 0 R]/D(x)/E(x)>>", "<</Self 2 0 R>>"}));
    ASSERT_NE(document, nullptr);
    const ReaderObject& catalog = document->catalog();
    const ReaderObject* shared = catalog.entry("A");
    EXPECT_EQ(shared, catalog.entry("B"));
    EXPECT_EQ(shared, catalog.entry("C")->items().at(0));
    EXPECT_EQ(shared, shared->entry("Self"));
    EXPECT_NE(catalog.entry("D"), catalog.entry("E"));
    EXPECT_EQ(&document->catalog(), &catalog);
}

TEST(PdfReader, NumbersTheKindsAsTheToolkitTakesThem) {
    const auto document =
        read(SourceFile({"<</K[null true 12 1.5/Name(text)[1]<</A 1>> 2 0 R]>>", "<</Length 0>>stream\n\nendstream"}));
    ASSERT_NE(document, nullptr);
    const auto& items = document->catalog().entry("K")->items();
    ASSERT_EQ(items.size(), 9u);
    for (size_t at = 0; at < 9; ++at) EXPECT_EQ(static_cast<size_t>(items[at]->type()), at + 1);
    EXPECT_TRUE(items[1]->boolean());
    EXPECT_EQ(items[2]->integer(), 12);
    EXPECT_EQ(items[3]->real(), 1.5);
    EXPECT_EQ(items[4]->name(), "Name");
    EXPECT_EQ(items[5]->string(), "text");
    EXPECT_EQ(items[6]->items().size(), 1u);
    EXPECT_EQ(items[7]->entries().size(), 1u);
    EXPECT_EQ(items[8]->entry("Length")->integer(), 0);
}

TEST(PdfReader, AnswersEmptyForAnotherKind) {
    const auto document = read(SourceFile({"<</K[(text)]>>"}));
    const ReaderObject& text = *document->catalog().entry("K")->items().at(0);
    EXPECT_FALSE(text.boolean());
    EXPECT_EQ(text.integer(), 0);
    EXPECT_EQ(text.real(), 0);
    EXPECT_EQ(text.name(), "");
    EXPECT_TRUE(text.items().empty());
    EXPECT_TRUE(text.entries().empty());
    EXPECT_EQ(text.entry("K"), nullptr);
    EXPECT_FALSE(document->rawStream(text).isReadable);
    EXPECT_EQ(document->catalog().string(), "");
    EXPECT_EQ(document->catalog().entry("Nothing"), nullptr);
}

TEST(PdfReader, GivesNullForAReferenceToNothing) {
    const auto document = read(SourceFile({"<</A 99 0 R/B null>>"}));
    ASSERT_NE(document->catalog().entry("A"), nullptr);
    EXPECT_EQ(document->catalog().entry("A")->type(), ReaderType::null);
    ASSERT_NE(document->catalog().entry("B"), nullptr);
    EXPECT_EQ(document->catalog().entry("B")->type(), ReaderType::null);
}

TEST(PdfReader, UndoesEscapesOfNamesKeysAndStrings) {
    const auto document = read(SourceFile({"<</A#20B/C#2FD/S(a\\(b\\)\\\\\\n\\101)/H<48 69 5>>>"}));
    const ReaderObject* name = document->catalog().entry("A B");
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(name->name(), "C/D");
    EXPECT_EQ(document->catalog().entry("S")->string(), "a(b)\\\nA");
    EXPECT_EQ(document->catalog().entry("H")->string(), "HiP");
}

TEST(PdfReader, ReadsRealsAsTheFileHasThemWhateverTheLocale) {
    const char* former = std::setlocale(LC_NUMERIC, nullptr);
    const std::string kept = former != nullptr ? former : "C";
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    const auto document = read(SourceFile({"<</K[841.8898 +.5 -.25 4. -0.0 00012.50]>>"}));
    std::vector<double> reals;
    for (const ReaderObject* item : document->catalog().entry("K")->items()) reals.push_back(item->real());
    std::setlocale(LC_NUMERIC, kept.c_str());
    EXPECT_EQ(reals, (std::vector<double>{841.8898, .5, -.25, 4, -0.0, 12.5}));
}

TEST(PdfReader, TellsPagesInReadingOrder) {
    const auto document =
        read(SourceFile({"<</Pages 2 0 R>>", "<</Kids[3 0 R 4 0 R 7 0 R]/Count 4>>", "<</Type/Page/N 1>>",
                         "<</Kids[5 0 R 6 0 R]>>", "<</Type/Page/N 2>>", "<</Type/Page/N 3>>", "<</Type/Page/N 4>>"}));
    ASSERT_EQ(document->numberOfPages(), 4);
    for (int64_t number = 1; number <= 4; ++number) EXPECT_EQ(document->page(number)->entry("N")->integer(), number);
    EXPECT_EQ(document->page(0), nullptr);
    EXPECT_EQ(document->page(5), nullptr);
    EXPECT_EQ(document->page(-1), nullptr);
}

TEST(PdfReader, EndsAtAPageTreeThatBitesItsTail) {
    const auto document = read(SourceFile(
        {"<</Pages 2 0 R>>", "<</Kids[3 0 R 2 0 R 3 0 R]/Count 9>>", "<</Kids[2 0 R 4 0 R]>>", "<</Type/Page>>"}));
    EXPECT_EQ(document->numberOfPages(), 1);
    EXPECT_EQ(read(SourceFile({"<</Type/Catalog>>"}))->numberOfPages(), 0);
    EXPECT_EQ(read(SourceFile({"<</Pages 12>>"}))->numberOfPages(), 0);
}

TEST(PdfReader, FindsTheInformationDictionary) {
    EXPECT_EQ(read(onePage())->info(), nullptr);
    EXPECT_EQ(read(onePage().trailer("/Info 77 0 R"))->info(), nullptr);
    SourceFile file = onePage();
    file.add("<</Title(T)>>");
    file.trailer("/Info 4 0 R");
    EXPECT_EQ(read(file)->info()->entry("Title")->string(), "T");
}

TEST(PdfReader, GivesAStreamsBytesAndItsFilters) {
    SourceFile file = onePage();
    file.addStream("/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 5/Colors 3/BitsPerComponent 4>>", "raw 1");
    file.addStream("/Filter[/ASCIIHexDecode/LZWDecode]/DecodeParms[null<</EarlyChange 0>>]", "raw 2");
    file.addStream("/Filter[/FlateDecode]/DecodeParms<</Predictor 2>>", "raw 3");
    file.addStream("/Filter/FlateDecode/DecodeParms[<</Predictor 15>>]", "raw 4");
    file.addStream("", "raw 5");
    file.addStream("/Filter[7]", "raw 6");
    file.addStream("/Filter null", "raw 7");
    std::string bytes = file.bytes();
    const auto document = ReaderDocument::openBytes(Data(
        bytes.replace(bytes.find("/MediaBox"), 9, "/Streams[4 0 R 5 0 R 6 0 R 7 0 R 8 0 R 9 0 R 10 0 R]/MediaBox")));
    ASSERT_NE(document, nullptr);
    const auto& streams = document->page(1)->entry("Streams")->items();
    std::vector<RawStream> raw;
    for (const ReaderObject* stream : streams) raw.push_back(document->rawStream(*stream));
    for (size_t at = 0; at < raw.size(); ++at) {
        EXPECT_TRUE(raw[at].isReadable);
        EXPECT_EQ(raw[at].bytes, "raw " + std::to_string(at + 1));
    }
    ASSERT_EQ(raw[0].filters.size(), 1u);
    EXPECT_EQ(raw[0].filters[0].name, "FlateDecode");
    EXPECT_EQ(raw[0].filters[0].predictor.predictor, 12);
    EXPECT_EQ(raw[0].filters[0].predictor.columns, 5);
    EXPECT_EQ(raw[0].filters[0].predictor.colors, 3);
    EXPECT_EQ(raw[0].filters[0].predictor.bitsPerComponent, 4);
    ASSERT_EQ(raw[1].filters.size(), 2u);
    EXPECT_EQ(raw[1].filters[1].change, LZWChange::late);
    EXPECT_EQ(raw[2].filters.at(0).predictor.predictor, 2);
    EXPECT_EQ(raw[3].filters.at(0).predictor.predictor, 15);
    EXPECT_TRUE(raw[4].filters.empty());
    ASSERT_EQ(raw[5].filters.size(), 1u);
    EXPECT_EQ(raw[5].filters[0].name, "");
    EXPECT_TRUE(raw[6].filters.empty());
}

TEST(PdfReader, GivesTheSameStreamsOnceAllIsRead) {
    SourceFile file = onePage("/Contents 4 0 R");
    file.addStream("/Filter/FlateDecode", encoders::deflated("content"));
    const auto document = read(file);
    const ReaderObject& stream = *document->page(1)->entry("Contents");
    const RawStream before = document->rawStream(stream);
    document->readAll();
    document->readAll();
    const RawStream after = document->rawStream(stream);
    EXPECT_TRUE(after.isReadable);
    EXPECT_EQ(after.bytes, before.bytes);
    EXPECT_EQ(after.filters.size(), 1u);
    int32_t format = -7;
    EXPECT_EQ(dataForStream(&stream, format).view(), "content");
    EXPECT_EQ(format, kStreamRaw);
}

TEST(PdfReader, FindsAStreamWhoseLengthIsWrong) {
    for (const char* length : {"3", "4000", "-1", "99 0 R", "(x)"}) {
        SourceFile file = onePage("/Contents 4 0 R");
        file.add(std::string("<</Length ") + length + ">>stream\nwhole content\nendstream");
        const auto document = read(file);
        ASSERT_NE(document, nullptr) << length;
        document->readAll();
        const RawStream raw = document->rawStream(*document->page(1)->entry("Contents"));
        EXPECT_TRUE(raw.isReadable) << length;
        EXPECT_EQ(raw.bytes.substr(0, 13), "whole content") << length;
    }
}

TEST(PdfReader, DecodesStreamsOnSeveralThreadsAtOnce) {
    SourceFile file = onePage("/Streams 4 0 R");
    std::string list = "[";
    constexpr int count = 60;
    for (int at = 0; at < count; ++at) list += std::to_string(5 + at) + " 0 R ";
    file.add(list + "]");
    for (int at = 0; at < count; ++at)
        file.addStream("/Filter/FlateDecode", encoders::deflated("stream " + std::to_string(at)));
    for (bool readAll : {false, true}) {
        const auto document = read(file);
        if (readAll) document->readAll();
        const auto& streams = document->page(1)->entry("Streams")->items();
        std::vector<std::string> seen(count);
        {
            std::vector<std::jthread> threads;
            for (int thread = 0; thread < 4; ++thread)
                threads.emplace_back([&, thread] {
                    for (int at = thread; at < count; at += 4) {
                        int32_t format = 0;
                        seen[at] = dataForStream(streams[at], format).view();
                    }
                });
        }
        for (int at = 0; at < count; ++at) EXPECT_EQ(seen[at], "stream " + std::to_string(at));
    }
}

TEST(PdfReader, ReadsCompressedObjects) {
    const TemporaryFolder folder;
    SourceFile file = onePage("/Contents 4 0 R");
    file.addStream("", "content");
    folder.write("plain.pdf", file.bytes());
    if (std::system(("qpdf --object-streams=generate '" + folder.path("plain.pdf") + "' '" +
                     folder.path("compressed.pdf") + "'")
                        .c_str()) != 0)
        GTEST_SKIP() << "qpdf isn't installed";
    ASSERT_NE(folder.contents("compressed.pdf").find("/ObjStm"), std::string::npos);
    const auto document = ReaderDocument::open(String::fromDamagedUTF8(folder.path("compressed.pdf")));
    ASSERT_NE(document, nullptr);
    ASSERT_EQ(document->numberOfPages(), 1);
    document->readAll();
    int32_t format = -7;
    EXPECT_EQ(dataForStream(document->page(1)->entry("Contents"), format).view(), "content");
    EXPECT_EQ(document->page(1)->entry("MediaBox")->items().at(3)->integer(), 200);
}

TEST(PdfReader, OpensOnlyWhatIsPDF) {
    const TemporaryFolder folder;
    EXPECT_EQ(ReaderDocument::open(String::fromDamagedUTF8(folder.path("missing.pdf"))), nullptr);
    EXPECT_EQ(ReaderDocument::open(String::fromDamagedUTF8(folder.path(""))), nullptr) << "a folder";
    EXPECT_EQ(ReaderDocument::open(folder.write("empty.pdf", "")), nullptr);
    EXPECT_EQ(ReaderDocument::open(folder.write("text.pdf", "Dear Sir or Madam")), nullptr);
    EXPECT_EQ(ReaderDocument::open(folder.write("head.pdf", "%PDF-1.4\n")), nullptr);
    EXPECT_EQ(ReaderDocument::open(String()), nullptr);
    EXPECT_EQ(ReaderDocument::openBytes(nullptr), nullptr);
    EXPECT_EQ(read(SourceFile({"12"})), nullptr) << "the catalog is no dictionary";
}

TEST(PdfReader, FindsTheCatalogOfAFileThatLostItsTrailer) {
    const std::string whole = onePage("/Contents 4 0 R").bytes();
    const std::string cut = whole.substr(0, whole.find("xref\n"));
    const auto document = ReaderDocument::openBytes(Data(cut));
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->numberOfPages(), 1);
    EXPECT_EQ(document->page(1)->entry("MediaBox")->items().size(), 4u);
}

TEST(PdfReader, TakesTheLastCatalogOfAFileThatLostItsTrailer) {
    const std::string body =
        "%PDF-1.4\n1 0 obj\n<</Type/Catalog/V 1>>\nendobj\n2 0 obj\n<</V 2/Type /Catalog>>\nendobj\n";
    EXPECT_EQ(ReaderDocument::openBytes(Data(body))->catalog().entry("V")->integer(), 2);
    EXPECT_EQ(ReaderDocument::openBytes(Data(std::string("%PDF-1.4\n<</Type/Catalog>>\n"))), nullptr);
    EXPECT_EQ(ReaderDocument::openBytes(Data(std::string("%PDF-1.4\n1 0 obj\n<</Not/Catalog>>\nendobj\n"))), nullptr);
}

/// A file whose catalog stands in a compressed object, with so many blanks behind it.
std::string fileWithPackedCatalog(size_t blanks) {
    const std::string packed = encoders::deflated("1 0 <</Type/Catalog/Found true>>" + std::string(blanks, ' '));
    std::string file = "%PDF-1.5\n2 0 obj\n<</Type/ObjStm/N 1/First 4/Filter/FlateDecode/Length " +
                       std::to_string(packed.size()) + ">>stream\n" + packed + "\nendstream\nendobj\n";
    const size_t place = file.size();
    const std::string entries("\x00\x00\x00\x00\x00\x02\x00\x00\x02\x00\x01\x00\x00\x09\x00", 15);
    file += "3 0 obj\n<</Type/XRef/Size 3/W[1 3 1]/Root 1 0 R/Length 15>>stream\n" + entries +
            "\nendstream\nendobj\nstartxref\n" + std::to_string(place) + "\n%%EOF\n";
    return file;
}

TEST(PdfReader, RefusesCompressedObjectsThatGrowBeyondTheAllowance) {
    const std::string bomb = fileWithPackedCatalog(64'000'000);
    ASSERT_LT(bomb.size(), 100'000u);
    EXPECT_EQ(ReaderDocument::openBytes(Data(bomb)), nullptr);
    const auto document = ReaderDocument::openBytes(Data(fileWithPackedCatalog(1'000'000)));
    ASSERT_NE(document, nullptr);
    EXPECT_TRUE(document->catalog().entry("Found")->boolean());
}

}  // namespace
}  // namespace vornaset
