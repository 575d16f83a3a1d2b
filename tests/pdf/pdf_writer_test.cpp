// A document as the bytes of a file, and in a file.

#include "pdf/pdf_writer.h"

#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <new>

#include "pdf/stream_compression.h"
#include "pdf/toolkit.h"
#include "support/exception.h"
#include "support/scratch_folder.h"

namespace {

size_t refusedSize = 0;  ///< of the allocation without exceptions that fails; 0: none

}  // namespace

void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    if (size == refusedSize) return nullptr;
    try {
        return operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace vornaset {

namespace {

const std::string kNewHeader("%PDF-1.3\n%\xC3\xA2\xC3\xA3\xC3\x8F\xC3\x93\n");

std::string fileOf(const Handle<MyPDFDoc>& document) {
    return textOf(document->pdfData());
}

/// The object behind "N 0 obj\n", up to "endobj\n".
std::string objectIn(const std::string& file, int objectNumber) {
    const std::string head = "\n" + std::to_string(objectNumber) + " 0 obj\n";
    const size_t start = file.find(head);
    if (start == std::string::npos) return "(none)";
    const size_t from = start + head.size();
    return file.substr(from, file.find("endobj\n", from) - from);
}

std::string inflated(std::string_view bytes) {
    std::string result(1 << 20, '\0');
    uLongf length = result.size();
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(result.data()), &length, reinterpret_cast<const Bytef*>(bytes.data()),
                         bytes.size()),
              Z_OK);
    result.resize(length);
    return result;
}

/// Every entry of the table leads to its object, and the number behind startxref to the table.
void expectOffsetsToBeRight(const std::string& file) {
    const size_t startLine = file.rfind("startxref\n");
    ASSERT_NE(startLine, std::string::npos);
    const size_t table = std::stoul(file.substr(startLine + 10));
    ASSERT_EQ(file.substr(table, 7), "xref\n0 ");
    const int count = std::stoi(file.substr(table + 7));
    size_t at = file.find('\n', table + 7) + 1;
    EXPECT_EQ(file.substr(at, 20), "0000000000 65535 f \n");
    for (int objectNumber = 1; objectNumber < count; ++objectNumber) {
        at += 20;
        EXPECT_EQ(file.substr(at + 10, 10), " 00000 n \n");
        const std::string head = std::to_string(objectNumber) + " 0 obj\n";
        EXPECT_EQ(file.substr(std::stoul(file.substr(at, 10)), head.size()), head);
    }
    EXPECT_EQ(file.substr(at + 20, 8), "trailer\n");
}

}  // namespace

// ----- Layout

TEST(PdfWriter, WritesAnEmptyDocumentByteForByte) {
    const std::string body = kNewHeader +
                             "1 0 obj\n<<\n>>\nendobj\n"
                             "2 0 obj\n<<\n/Type /Catalog\n/Pages 3 0 R\n>>\nendobj\n"
                             "3 0 obj\n<<\n/Type /Pages\n/Kids 4 0 R\n/Count 0\n>>\nendobj\n"
                             "4 0 obj\n[]\nendobj\n";
    ASSERT_EQ(body.size(), 162U);
    EXPECT_EQ(fileOf(MyPDFDoc::pdfDoc()), body +
                                              "xref\n0 5\n0000000000 65535 f \n"
                                              "0000000019 00000 n \n0000000040 00000 n \n"
                                              "0000000089 00000 n \n0000000144 00000 n \n"
                                              "trailer\n<</Size 5 /Info 1 0 R /Root 2 0 R>>\n"
                                              "startxref\n162\n%%EOF\n");
}

TEST(PdfWriter, LeadsFromTheTableToEveryObject) {
    expectOffsetsToBeRight(fileOf(MyPDFDoc::pdfDoc()));
    expectOffsetsToBeRight(fileOf(documentOfPages(120)));
}

TEST(PdfWriter, WritesASharedObjectOnce) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    const Handle<MyPDFDictionary> resources = MyPDFDictionary::make();
    resources->setInteger(77, u"Marker");
    for (const Handle<MyPDFDictionary>& page : document->pages()) page->setResources(resources);
    const std::string file = fileOf(document);
    EXPECT_EQ(file.find("/Marker 77"), file.rfind("/Marker 77"));
    const std::string reference = "/Resources " + std::to_string(resources->objNum()) + " 0 R\n";
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        EXPECT_NE(objectIn(file, static_cast<int>(page->objNum())).find(reference), std::string::npos);
    }
}

TEST(PdfWriter, LeavesOutWhatOnlyAParentLinkReaches) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFDictionary> stranger = MyPDFDictionary::make();
    stranger->setInteger(77, u"Marker");
    document->pages()[0]->setParent(stranger);
    EXPECT_EQ(fileOf(document).find("/Marker"), std::string::npos);
}

TEST(PdfWriter, WritesAContainerInTheInformationAsObjectZero) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->info()->setObject(arrayOf({integer(77)}), u"Stray");
    const std::string file = fileOf(document);
    EXPECT_EQ(objectIn(file, 1), "<<\n/Stray 0 0 R\n>>\n");
    EXPECT_EQ(file.find("[77 ]"), std::string::npos);
    EXPECT_NE(file.find("/Size 5 "), std::string::npos);
}

TEST(PdfWriter, NumbersInformationCatalogAndThenDepthFirst) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->pdfData();
    EXPECT_EQ(document->info()->objNum(), 1);
    EXPECT_EQ(document->catalog()->objNum(), 2);
    EXPECT_EQ(document->pagesObj()->objNum(), 3);
    EXPECT_EQ(document->pagesObj()->kids()->objNum(), 4);
    EXPECT_EQ(document->pages()[0]->objNum(), 5);
    EXPECT_EQ(document->pdfObjs().count(), 9U);
    EXPECT_EQ(document->pages()[0]->contents()->objNum(), 8);
    EXPECT_EQ(document->pages()[0]->resources()->objNum(), 9);
}

TEST(PdfWriter, BeginsWithTheDocumentsHeader) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    EXPECT_EQ(textOf(document->pdfHeader()), kNewHeader);
    EXPECT_EQ(document->pdfHeader().length(), 19U);
    document->setPdfHeader(dataOfText("%PDF-1.7\n"));
    EXPECT_EQ(fileOf(document).substr(0, 17), "%PDF-1.7\n1 0 obj\n");
    EXPECT_EQ(document->vMinor(), 0);
}

TEST(PdfWriter, GivesADocumentWithoutAFileItsOwnHeader) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath(nullptr);
    EXPECT_EQ(textOf(document->pdfHeader()), "%PDF-1.3\n%\xE2\x80\x9A\xE2\x80\x9E\xC5\x93\xE2\x80\x9D\n");
    EXPECT_EQ(document->pdfHeader().length(), 22U);
    EXPECT_TRUE(document->pages().isNull());
    EXPECT_EQ(subDictionary(document->root(), u"Info"), document->info());
    EXPECT_EQ(subDictionary(document->root(), u"Catalog"), document->catalog());
}

TEST(PdfWriter, TakesTheFirstEightBytesOfAFileForItsHeader) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    const std::string comment = "\n%\xE2\xE3\xCF\xD3\n";
    writeFile(path, "%PDF-1.6\r%\xFF\xFE stuff");
    EXPECT_EQ(textOf(pdfHeaderWithPath(path.c_str())), "%PDF-1.6" + comment);
    EXPECT_EQ(pdfHeaderWithPath(path.c_str()).length(), 15U);
    writeFile(path, "%PDF");
    EXPECT_EQ(textOf(pdfHeaderWithPath(path.c_str())), "%PDF" + comment);
    EXPECT_EQ(textOf(pdfHeaderWithPath((path + ".none").c_str())), comment);
    EXPECT_EQ(textOf(pdfHeaderWithPath(nullptr)), comment);
}

// ----- Streams

TEST(PdfStreamWriting, CompressesAnEmptyStreamToo) {
    const Handle<MyPDFStream> stream = MyPDFStream::stream();
    EXPECT_EQ(bytesOf(stream), std::string("<<\n/Filter /FlateDecode\n/Length 8\n>>\nstream\n"
                                           "\x78\x9C\x03\x00\x00\x00\x00\x01\nendstream\n",
                                           63));
    EXPECT_EQ(stream->dataFormat(), -1);
    EXPECT_EQ(stream->data().length(), 8U);
}

TEST(PdfStreamWriting, CompressesRawDataForGood) {
    const Handle<MyPDFStream> stream = streamOf(std::string(5000, 'x'));
    stream->setFilter(u"LZWDecode");
    const std::string first = bytesOf(stream);
    EXPECT_EQ(stream->dataFormat(), -1);
    EXPECT_EQ(stream->filter(), String(u"/FlateDecode"));
    EXPECT_EQ(stream->length(), static_cast<int64_t>(stream->data().length()));
    EXPECT_EQ(inflated(stream->data().view()), std::string(5000, 'x'));
    const Data compressed = stream->data();
    EXPECT_EQ(bytesOf(stream), first);
    EXPECT_TRUE(stream->data().isSameObject(compressed));
}

TEST(PdfStreamWriting, LeavesJpegAndJpeg2000AsTheyStand) {
    for (const int32_t format : {1, 2}) {
        const Handle<MyPDFStream> stream = streamOf("\xFF\xD8 picture");
        stream->setFilter(format == 1 ? u"DCTDecode" : u"JPXDecode");
        stream->setDataFormat(format);
        EXPECT_EQ(bytesOf(stream), std::string("<<\n/Filter /") + (format == 1 ? "DCTDecode" : "JPXDecode") +
                                       "\n/Length 10\n>>\nstream\n\xFF\xD8 picture\nendstream\n");
        EXPECT_EQ(stream->dataFormat(), format);
    }
}

TEST(PdfStreamWriting, LeavesEveryOtherKeyOfTheDictionary) {
    const Handle<MyPDFStream> stream = streamOf("x");
    stream->setInteger(12, u"DecodeParms");
    const Handle<MyPDFArray> filters = arrayOf({MyPDFName::nameWithCString("ASCII85Decode")});
    stream->setObject(filters, u"Filter");
    EXPECT_NE(bytesOf(stream).find("/DecodeParms 12\n"), std::string::npos);
    EXPECT_EQ(stream->filter(), String(u"/FlateDecode"));
}

TEST(PdfStreamWriting, WritesAStreamThatCannotBeCompressedWithoutAFilter) {
    const Handle<MyPDFStream> stream = streamOf("plain");
    stream->setFilter(u"LZWDecode");
    stream->takeCompressed(nullptr);
    EXPECT_TRUE(stream->filter().isNull());
    EXPECT_EQ(textOf(stream->data()), "plain");
    EXPECT_EQ(stream->dataFormat(), 0);
    stream->setDataFormat(-1);
    EXPECT_EQ(bytesOf(stream), "<<\n/Length 5\n>>\nstream\nplain\nendstream\n");
}

TEST(PdfStreamWriting, CompressesAsZlibsOwnCallDoes) {
    std::string text;
    for (int line = 0; line < 20'000; ++line) text += std::to_string(line * 7919 % 10'007) + " 0 Td\n";
    for (const size_t length : {size_t{0}, size_t{1}, size_t{1000}, text.size()}) {
        const std::string source = text.substr(0, length);
        std::string expected(compressBound(source.size()), '\0');
        uLongf room = expected.size();
        ASSERT_EQ(compress(reinterpret_cast<Bytef*>(expected.data()), &room,
                           reinterpret_cast<const Bytef*>(source.data()), source.size()),
                  Z_OK);
        expected.resize(room);
        EXPECT_EQ(textOf(compressedData(dataOfText(source))), expected);
    }
    EXPECT_EQ(compressedData(nullptr).length(), 8U);
}

TEST(PdfWriter, WritesTheSameFileTwiceAndCompressesOnce) {
    const Handle<MyPDFDoc> document = documentOfPages(5);
    const std::string first = fileOf(document);
    const Data compressed = objectAs<MyPDFStream>(document->pages()[3]->contents())->data();
    EXPECT_EQ(fileOf(document), first);
    EXPECT_TRUE(objectAs<MyPDFStream>(document->pages()[3]->contents())->data().isSameObject(compressed));
}

TEST(PdfWriter, CompressesManyStreamsOnAllCoresToTheSameBytes) {
    const auto make = [] {
        Handle<MyPDFDoc> document = documentOfPages(700);
        for (const Handle<MyPDFDictionary>& page : document->pages()) {
            std::string text = textOf(page->contentsData());
            for (int line = 0; line < 60; ++line) text += " " + std::to_string(line * line) + " Tj\n";
            page->setContents(streamOf(text));
        }
        return document;
    };
    const Handle<MyPDFDoc> parallel = make();
    const Handle<MyPDFDoc> serial = make();
    for (const Handle<MyPDFDictionary>& page : serial->pages()) {
        const auto stream = objectAs<MyPDFStream>(page->contents());
        stream->takeCompressed(compressedData(stream->data()));
    }
    EXPECT_EQ(fileOf(parallel), fileOf(serial));
}

TEST(PdfWriter, GivesAStreamThatAppearsTwiceInAListItsBytesTwice) {
    const Handle<MyPDFStream> stream = streamOf(std::string(200'000, 'a'));
    const ObjectList<MyPDFObj> objects = ObjectList<MyPDFObj>::make({stream, stream});
    std::string buffer;
    std::vector<int64_t> offsets(2);
    writePDFObjs(objects, buffer, offsets, 0);
    const std::string once = bytesOf(stream);
    EXPECT_EQ(buffer, "1 0 obj\n" + once + "endobj\n2 0 obj\n" + once + "endobj\n");
}

// ----- Pieces

TEST(PdfWriterPieces, AppendTextAndFormattedNumbers) {
    std::string buffer = "a";
    appendString(buffer, "bc");
    appendString(buffer, nullptr);
    appendFormat(buffer, " %d %010d", 5, -3);
    EXPECT_EQ(buffer, "abc 5 -000000003");
    buffer.clear();
    appendFormat(buffer, "%0300d", 7);
    EXPECT_EQ(buffer, std::string(299, '0') + "7");
    buffer.clear();
    appendFormat(buffer, "%0255d|", 7);
    EXPECT_EQ(buffer.size(), 256U);
    EXPECT_EQ(buffer.back(), '|');
}

TEST(PdfWriterPieces, NumberObjectsFromAStartAndRememberTheirPlaces) {
    const ObjectList<MyPDFObj> objects = ObjectList<MyPDFObj>::make({integer(7), MyPDFArray::array()});
    std::string buffer = "head\n";
    std::vector<int64_t> offsets(5);
    writePDFObjs(objects, buffer, offsets, 2);
    EXPECT_EQ(buffer, "head\n3 0 obj\n7endobj\n4 0 obj\n[]\nendobj\n");
    EXPECT_EQ(offsets, (std::vector<int64_t>{0, 0, 5, 21, 0}));
}

TEST(PdfWriterPieces, WriteNothingForAnEmptyList) {
    std::string buffer;
    writePDFObjs(ObjectList<MyPDFObj>::make(), buffer, {}, 0);
    writePDFObjs(nullptr, buffer, {}, 0);
    EXPECT_EQ(buffer, "");
}

TEST(PdfWriterPieces, WriteATableOfTwentyByteEntries) {
    std::string buffer;
    const std::vector<int64_t> offsets{15, 0, 2147483647, int64_t{1} << 32};
    writeXRef(buffer, offsets, 4);
    EXPECT_EQ(buffer,
              "xref\n0 5\n0000000000 65535 f \n0000000015 00000 n \n0000000000 00000 n \n2147483647 00000 n \n"
              "0000000000 00000 n \n");
}

TEST(PdfWriterPieces, WriteATrailer) {
    std::string buffer;
    writeTrailer(buffer, 4, 171);
    EXPECT_EQ(buffer, "trailer\n<</Size 5 /Info 1 0 R /Root 2 0 R>>\nstartxref\n171\n%%EOF\n");
}

TEST(PdfWriterPieces, RaiseForTheirCallers) {
    try {
        raiseError();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.name(), "Vornaset");
        EXPECT_EQ(exception.reason(), "error");
    }
    try {
        raiseFinished();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.name(), "Vornaset");
        EXPECT_EQ(exception.reason(), "finished");
    }
}

// ----- What goes wrong

TEST(PdfWriterFailure, GivesTheHeaderAloneWithoutRoomForTheTable) {
    const RecordedMessages messages;
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    refusedSize = 4 * sizeof(int64_t);
    const std::string file = fileOf(document);
    refusedSize = 0;
    EXPECT_EQ(file, kNewHeader);
    EXPECT_TRUE(messages.texts().empty());
}

TEST(PdfWriterFailure, WritesTheFragmentWithoutRoomForTheTable) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    refusedSize = 4 * sizeof(int64_t);
    document->writeToFile(path.c_str());
    refusedSize = 0;
    EXPECT_EQ(contentOf(path), kNewHeader);
}

TEST(PdfWriterFailure, IsShownWithoutACatalogAndLeavesTheFileAlone) {
    const RecordedMessages messages;
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    writeFile(path, "before");
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->setCatalog(nullptr);
    EXPECT_EQ(fileOf(document), "");
    EXPECT_FALSE(document->pdfData().isNull());
    document->writeToFile(path.c_str());
    EXPECT_EQ(contentOf(path), "before");
    ASSERT_EQ(messages.texts().size(), 3U);
    EXPECT_EQ(messages.texts()[0],
              "The document has no information dictionary or no catalog: its file couldn't be read as PDF.");
}

TEST(PdfWriterFailure, IsShownWithoutAnInformationDictionary) {
    const RecordedMessages messages;
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->setInfo(nullptr);
    EXPECT_EQ(fileOf(document), "");
    EXPECT_EQ(messages.texts().size(), 1U);
    EXPECT_THROW(document->rebuildObjectsList(), InvalidArgumentException);
}

TEST(PdfWriterFailure, WhileAnObjectIsWrittenLeavesOutTheOnesBehindIt) {
    const RecordedMessages messages;
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->catalog()->setObject(arrayOf({RaisingObject::make()}), u"Raising");
    document->catalog()->setObject(MyPDFArray::array(), u"Behind");
    const std::string file = fileOf(document);
    EXPECT_EQ(messages.texts(), std::vector<std::string>{"no bytes to be had"});
    EXPECT_EQ(objectIn(file, 4), "[]\n");
    EXPECT_EQ(file.find("6 0 obj\n"), std::string::npos);
    EXPECT_NE(file.find("\n5 0 obj\n[xref\n0 7\n"), std::string::npos);
    EXPECT_NE(file.find("0000000000 00000 n \ntrailer\n<</Size 7 "), std::string::npos);
    EXPECT_EQ(file.substr(file.size() - 6), "%%EOF\n");
}

TEST(PdfWriterFailure, WithATableTooShortIsShown) {
    const RecordedMessages messages;
    std::string buffer;
    std::vector<int64_t> offsets(1);
    writePDFObjs(ObjectList<MyPDFObj>::make({integer(1), integer(2)}), buffer, offsets, 0);
    EXPECT_EQ(buffer, "1 0 obj\n1endobj\n");
    EXPECT_EQ(messages.texts().size(), 1U);
    EXPECT_THROW(writeXRef(buffer, offsets, 2), RangeException);
}

// ----- Files

TEST(PdfFile, ReplacesWhatStandsAtThePath) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    writeFile(path, std::string(100'000, 'o'));
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->writeToFile(path.c_str());
    EXPECT_EQ(contentOf(path), fileOf(document));
    size_t entries = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path())) ++entries;
    EXPECT_EQ(entries, 1U);
}

TEST(PdfFile, IsANewFileAndNotTheOldOneOverwritten) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    const std::string other = folder.path() + "/link.pdf";
    writeFile(path, "before");
    std::filesystem::create_hard_link(path, other);
    MyPDFDoc::pdfDoc()->writeToFile(path.c_str());
    EXPECT_EQ(contentOf(other), "before");
}

TEST(PdfFile, FailsSilentlyWhereItCannotBeWritten) {
    const RecordedMessages messages;
    const ScratchFolder folder;
    MyPDFDoc::pdfDoc()->writeToFile((folder.path() + "/none/a.pdf").c_str());
    MyPDFDoc::pdfDoc()->writeToFile(nullptr);
    MyPDFDoc::pdfDoc()->writeToFile(u"");
    EXPECT_TRUE(messages.texts().empty());
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(PdfFile, MayHaveTheLongestNameThatTheFileSystemTakes) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/" + std::string(251, 'n') + ".pdf";
    MyPDFDoc::pdfDoc()->writeToFile(path.c_str());
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(PdfFile, OfAnAbsentDocumentIsNeitherWrittenNorRemoved) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    writeFile(path, "before");
    const Handle<MyPDFDoc> absent;
    absent->writeToFile(path.c_str());
    EXPECT_EQ(contentOf(path), "before");
    EXPECT_TRUE(absent->pdfData().isNull());
    EXPECT_TRUE(absent->writeToTmpFolder().isNull());
}

namespace {

/// The home folder of this process, as long as it lives.
class HomeFolder {
  public:
    explicit HomeFolder(const std::string& path) {
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DOCUMENTS_DIR"}) {
            const char* value = std::getenv(name);
            former_.emplace_back(name, value == nullptr ? "" : value);
            unsetenv(name);
        }
        setenv("HOME", path.c_str(), 1);
    }
    ~HomeFolder() {
        for (const auto& [name, value] : former_) {
            value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
        }
    }
    HomeFolder(const HomeFolder&) = delete;
    HomeFolder& operator=(const HomeFolder&) = delete;

  private:
    std::vector<std::pair<std::string, std::string>> former_;
};

}  // namespace

TEST(PdfFile, GoesToTheUsersDocumentsUnderItsName) {
    const ScratchFolder home;
    const HomeFolder asHome(home.path());
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath((home.path() + "/none/letter.pdf").c_str());
    EXPECT_EQ(document->name(), String(u"letter.pdf"));
    const std::string expected = home.path() + "/Documents/Vornaset/letter.pdf";
    EXPECT_EQ(document->writeToTmpFolder().utf8(), expected);
    EXPECT_FALSE(std::filesystem::exists(home.path() + "/Documents")) << "the folder isn't made";
    std::filesystem::create_directories(home.path() + "/Documents/Vornaset");
    EXPECT_EQ(document->writeToTmpFolder().utf8(), expected);
    EXPECT_EQ(contentOf(expected), fileOf(document));
}

TEST(PdfFile, NeedsANameForTheUsersDocuments) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    EXPECT_TRUE(document->name().isNull());
    EXPECT_THROW(document->writeToTmpFolder(), InvalidArgumentException);
}

// ----- Other people's eyes

TEST(PdfFile, PassesTheCheckOfAnotherReader) {
    if (std::system("command -v qpdf > /dev/null") != 0) GTEST_SKIP() << "qpdf isn't installed";
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    const Handle<MyPDFDoc> document = documentOfPages(12);
    for (const Handle<MyPDFDictionary>& page : document->pages()) page->setContents(streamOf("0 0 50 50 re f"));
    document->info()->setString(u"A (test) \\ of\nlines", u"Title");
    document->writeToFile(path.c_str());
    EXPECT_EQ(std::system(("qpdf --check '" + path + "' > /dev/null").c_str()), 0);
}

TEST(PdfFile, GivesItsTextToOtherReaders) {
    if (std::system("command -v pdftotext > /dev/null && command -v mutool > /dev/null") != 0) {
        GTEST_SKIP() << "pdftotext or mutool isn't installed";
    }
    const ScratchFolder folder;
    const std::string path = folder.path() + "/a.pdf";
    const Handle<MyPDFDoc> document = documentOfPages(3);
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        const Handle<MyPDFDictionary> fonts = MyPDFDictionary::make();
        fonts->setObject(MyPDFDictionary::courier(), u"Courier");
        subDictionary(page, u"Resources")->setObject(fonts, u"Font");
        page->setContents(streamOf("BT /Courier 9 Tf 10 100 Td (" + textOf(page->contentsData()) + ") Tj ET"));
    }
    document->rebuildPageList(2);
    document->writeToFile(path.c_str());
    const std::string text = folder.path() + "/text";
    ASSERT_EQ(std::system(("pdftotext '" + path + "' '" + text + "'").c_str()), 0);
    EXPECT_EQ(contentOf(text), "page 0\n\n\x0Cpage 1\n\n\x0Cpage 2\n\n\x0C");
    ASSERT_EQ(std::system(("mutool draw -q -F txt -o '" + text + "' '" + path + "' 2> '" + text + ".errors'").c_str()),
              0);
    EXPECT_EQ(contentOf(text + ".errors").find("error"), std::string::npos) << contentOf(text + ".errors");
    EXPECT_EQ(contentOf(text + ".errors").find("repair"), std::string::npos) << contentOf(text + ".errors");
    EXPECT_NE(contentOf(text).find("page 2"), std::string::npos);
}

}  // namespace vornaset
