#include <gtest/gtest.h>

#include <cstdlib>

#include "pdf/encoders.h"
#include "pdf/pdf_doc.h"
#include "pdf/reader.h"
#include "pdf/reader_values.h"
#include "pdf/source_file.h"
#include "pdf/toolkit.h"

namespace vornaset {
namespace {

Handle<MyPDFDictionary> pageAt(const Handle<MyPDFDoc>& document, size_t index) {
    return document->pages()[index];
}

std::string rewritten(const Handle<MyPDFDoc>& document) {
    return textOf(document->pdfData());
}

TEST(PdfReading, KeepsASharedResourceDictionaryShared) {
    const auto document =
        documentOf(SourceFile({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2>>",
                               "<</Type/Page/Parent 2 0 R/Resources 5 0 R>>",
                               "<</Type/Page/Parent 2 0 R/Resources 5 0 R>>", "<</UniqueMark(once)>>"}));
    ASSERT_EQ(document->pages().count(), 2u);
    EXPECT_TRUE(pageAt(document, 0)->resources());
    EXPECT_EQ(pageAt(document, 0)->resources(), pageAt(document, 1)->resources());
    const std::string file = rewritten(document);
    const size_t first = file.find("/UniqueMark");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(file.find("/UniqueMark", first + 1), std::string::npos) << "written once";
}

TEST(PdfReading, EndsAtARingOfPageAndAnnotation) {
    SourceFile file = onePage("/Annots[4 0 R]");
    file.add("<</Type/Annot/P 3 0 R/Self 4 0 R>>");
    const auto document = documentOf(file);
    const auto page = pageAt(document, 0);
    const auto annotations = objectAs<MyPDFArray>(page->objectForKeyedSubscript(u"Annots"));
    const auto annotation = objectAs<MyPDFDictionary>(annotations->objectAtIndexedSubscript(0));
    EXPECT_EQ(annotation->objectForKeyedSubscript(u"P"), Handle<MyPDFObj>(page));
    EXPECT_EQ(annotation->objectForKeyedSubscript(u"Self"), Handle<MyPDFObj>(annotation));
}

TEST(PdfReading, GivesASharedObjectTheKeyUnderWhichItWasAttachedLast) {
    SourceFile file = onePage("/A 4 0 R/B 4 0 R/MediaBox 5 0 R/TrimBox 5 0 R");
    file.add("<</V 1>>");
    file.add("[0 0 10 20]");
    const auto document = documentOf(file);
    const auto page = pageAt(document, 0);
    EXPECT_EQ(page->objectForKeyedSubscript(u"A"), page->objectForKeyedSubscript(u"B"));
    EXPECT_EQ(page->objectForKeyedSubscript(u"A")->key(), u"B");
    EXPECT_EQ(page->objectForKeyedSubscript(u"MediaBox")->key(), u"TrimBox");
    EXPECT_EQ(page->objectForKeyedSubscript(u"MediaBox")->isBox(), 1);
}

TEST(PdfReading, LeavesOutTheStructureTreeAndKeepsTheMarkInformation) {
    SourceFile file({"<</Type/Catalog/Pages 2 0 R/StructTreeRoot 4 0 R/MarkInfo<</Marked true>>/Lang(en)>>",
                     "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                     "<</Type/Page/Parent 2 0 R/StructParents 0/Deep<</StructTreeRoot 4 0 R/V 1>>>>",
                     "<</Type/StructTreeRoot/K 5 0 R>>", "<</S/Document/P 4 0 R/Pg 3 0 R>>"});
    const auto document = documentOf(file);
    EXPECT_FALSE(document->catalog()->objectForKeyedSubscript(u"StructTreeRoot"));
    EXPECT_TRUE(document->catalog()->objectForKeyedSubscript(u"MarkInfo"));
    EXPECT_EQ(document->catalog()->stringForKey(u"Lang"), u"en");
    const auto deep = subDictionary(pageAt(document, 0), u"Deep");
    EXPECT_FALSE(deep->objectForKeyedSubscript(u"StructTreeRoot"));
    EXPECT_EQ(deep->integerForKey(u"V"), 1);
    EXPECT_EQ(pageAt(document, 0)->integerForKey(u"StructParents"), 0);
    const std::string written = rewritten(document);
    EXPECT_EQ(written.find("StructTreeRoot"), std::string::npos);
    EXPECT_NE(written.find("/MarkInfo"), std::string::npos);
}

TEST(PdfReading, CutsARealToWhatAFloatOfSixDecimalsHolds) {
    SourceFile file({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                     "<</Type/Page/Parent 2 0 R/MediaBox[0 0 595.2756 841.8898]>>"});
    const auto document = documentOf(file);
    const auto box = objectAs<MyPDFArray>(pageAt(document, 0)->objectForKeyedSubscript(u"MediaBox"));
    EXPECT_EQ(box->objectAtIndexedSubscript(3)->pdfString(), u"841.889");
    EXPECT_NE(rewritten(document).find("[0 0 595.275 841.889 ]"), std::string::npos);
}

TEST(PdfReading, KeepsTheBytesOfATitleInUTF16) {
    SourceFile file = onePage();
    file.add("<</Title<FEFF00C4006E>/Author(A)>>");
    file.trailer("/Info 4 0 R");
    const auto document = documentOf(file);
    EXPECT_EQ(textOf(dataOf(document->info()->objectForKeyedSubscript(u"Title"))), std::string("\xFE\xFF\0\xC4\0n", 6));
    EXPECT_NE(rewritten(document).find(std::string("/Title (\xFE\xFF\0\xC4\0n)", 15)), std::string::npos);
    EXPECT_TRUE(document->info()->objectForKeyedSubscript(u"Title")->key().isNull());
}

TEST(PdfReading, MarksTheInformationDictionaryWithTheVersion) {
    SourceFile file = onePage();
    file.add("<</Vornaset(1.0)/Title(T)>>");
    file.trailer("/Info 4 0 R");
    EXPECT_EQ(documentOf(file)->info()->stringForKey(u"Vornaset"), u"7.20");
    EXPECT_EQ(documentOf(onePage())->info()->stringForKey(u"Vornaset"), u"7.20");
    EXPECT_EQ(documentOf(onePage())->info()->numberOfChildren(), 1);
}

TEST(PdfReading, LeavesContainersOfTheInformationDictionaryEmpty) {
    SourceFile file = onePage();
    file.add("<</List[1 2]/Map<</A 1>>/Number 5/StructTreeRoot(x)>>");
    file.trailer("/Info 4 0 R");
    const auto document = documentOf(file);
    EXPECT_EQ(document->info()->objectForKeyedSubscript(u"List")->isArray(), 1);
    EXPECT_EQ(document->info()->objectForKeyedSubscript(u"List")->numberOfChildren(), 0);
    EXPECT_EQ(document->info()->objectForKeyedSubscript(u"Map")->numberOfChildren(), 0);
    EXPECT_EQ(document->info()->integerForKey(u"Number"), 5);
    EXPECT_FALSE(document->info()->objectForKeyedSubscript(u"StructTreeRoot"));
}

TEST(PdfReading, KeepsTheFirstEightBytesOfTheFile) {
    const auto document = documentOf(onePage().version("1.6"));
    EXPECT_EQ(textOf(document->pdfHeader()), "%PDF-1.6\n%\xE2\xE3\xCF\xD3\n");
    EXPECT_TRUE(rewritten(document).starts_with("%PDF-1.6\n%\xE2\xE3\xCF\xD3\n"));
}

TEST(PdfReading, CountsPagesAsTheFileSays) {
    const auto document = documentOf(SourceFile(
        {"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 7>>", "<</Type/Page/Parent 2 0 R>>"}));
    EXPECT_EQ(document->numberOfPages(), 7);
    EXPECT_EQ(document->pages().count(), 1u);
}

TEST(PdfReading, PutsParentsIntoTheirField) {
    const auto document = documentOf(onePage());
    const auto page = pageAt(document, 0);
    EXPECT_FALSE(page->objectForKeyedSubscript(u"Parent"));
    EXPECT_EQ(page->parent(), document->pagesObj());
    EXPECT_TRUE(document->pagesObj()->key() == u"Pages") << "being a parent doesn't change the key";
}

TEST(PdfReading, LetsGoOfWhatAParentLinkAloneReaches) {
    SourceFile file = onePage("/Annots[4 0 R]");
    file.add("<</Type/Annot/Parent 5 0 R>>");
    file.add("<</FT/Tx/Kids[4 0 R]/Ring 6 0 R>>");
    file.add("<</Back 5 0 R>>");
    const auto document = documentOf(file);
    const auto annotations = objectAs<MyPDFArray>(pageAt(document, 0)->objectForKeyedSubscript(u"Annots"));
    EXPECT_FALSE(objectAs<MyPDFDictionary>(annotations->objectAtIndexedSubscript(0))->parent());
    EXPECT_EQ(rewritten(document).find("/FT"), std::string::npos);
}

TEST(PdfReading, TakesNoParentThatIsNoDictionary) {
    for (const char* parent : {"12", "[2 0 R]", "null", "(x)", "99 0 R"}) {
        SourceFile file({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                         std::string("<</Type/Page/MediaBox[0 0 1 2]/Parent ") + parent + ">>"});
        const auto document = documentOf(file);
        ASSERT_EQ(document->pages().count(), 1u) << parent;
        EXPECT_FALSE(pageAt(document, 0)->parent()) << parent;
        EXPECT_EQ(pageAt(document, 0)->mediaBox().height, 2) << parent;
    }
}

TEST(PdfReading, ReadsNullsAsNumbersWithoutANumber) {
    const auto document = documentOf(onePage("/List[null 99 0 R]/Nothing null"));
    const auto list = objectAs<MyPDFArray>(pageAt(document, 0)->objectForKeyedSubscript(u"List"));
    for (uint64_t at = 0; at < 2; ++at) {
        EXPECT_EQ(list->objectAtIndexedSubscript(at)->isNumber(), 1);
        EXPECT_EQ(list->objectAtIndexedSubscript(at)->pdfString(), u"null");
    }
    EXPECT_EQ(pageAt(document, 0)->objectForKeyedSubscript(u"Nothing")->pdfString(), u"null");
}

TEST(PdfReading, UndoesTheFiltersOfEveryReachableStream) {
    SourceFile file = onePage("/Contents[4 0 R 5 0 R]/Resources<</XObject<</J 6 0 R/F 7 0 R>>>>");
    file.addStream("/Filter/FlateDecode", encoders::deflated("first "));
    file.addStream("/Filter[/ASCII85Decode/LZWDecode]", encoders::base85(encoders::lzw("second", true)));
    file.addStream("/Subtype/Image/Filter/DCTDecode", "jpeg");
    file.addStream("/Subtype/Image/Filter/CCITTFaxDecode/DecodeParms<</K -1>>", "fax");
    file.addStream("/Mark/Unreachable", "lost");
    const auto document = documentOf(file);
    EXPECT_EQ(textOf(pageAt(document, 0)->contentsData()), "first second");
    const auto objects = subDictionary(objectAs<MyPDFDictionary>(pageAt(document, 0)->resources()), u"XObject");
    const auto jpeg = objectAs<MyPDFStream>(objects->objectForKeyedSubscript(u"J"));
    EXPECT_EQ(textOf(jpeg->data()), "jpeg");
    EXPECT_EQ(jpeg->dataFormat(), kStreamJPEG);
    EXPECT_EQ(jpeg->filter(), u"/DCTDecode");
    EXPECT_EQ(jpeg->streamRef(), nullptr) << "the reader is closed";
    const auto fax = objectAs<MyPDFStream>(objects->objectForKeyedSubscript(u"F"));
    EXPECT_EQ(textOf(fax->data()), "fax");
    EXPECT_EQ(fax->dataFormat(), kStreamCompressed);
    const std::string written = rewritten(document);
    EXPECT_NE(written.find("/CCITTFaxDecode"), std::string::npos) << "carried as it is";
    EXPECT_NE(written.find("stream\nfax\nendstream"), std::string::npos);
    EXPECT_EQ(written.find("Unreachable"), std::string::npos);
}

TEST(PdfReading, ReadsManyStreamsOnAllCores) {
    SourceFile file = onePage("/Contents 4 0 R");
    constexpr int count = 300;
    std::string list = "[";
    for (int at = 0; at < count; ++at) list += std::to_string(5 + at) + " 0 R ";
    file.add(list + "]");
    std::string whole;
    for (int at = 0; at < count; ++at) {
        const std::string part = std::string(static_cast<size_t>(at) * 7, 'a') + std::to_string(at);
        file.addStream("/Filter/FlateDecode", encoders::deflated(part));
        whole += part;
    }
    EXPECT_EQ(textOf(pageAt(documentOf(file), 0)->contentsData()), whole);
}

TEST(PdfReading, GivesAStreamWithoutBytesEmptyData) {
    SourceFile file = onePage("/Contents 4 0 R");
    file.addStream("", "");
    const auto document = documentOf(file);
    EXPECT_EQ(textOf(pageAt(document, 0)->contentsData()), "");
    EXPECT_NO_THROW(document->pdfData());
}

TEST(PdfReading, OfNothingGivesANewDocumentWithoutMessage) {
    const TemporaryFolder folder;
    const RecordedMessages messages;
    for (const String& path : {String::fromDamagedUTF8(folder.path("missing.pdf")), String()}) {
        const auto document = MyPDFDoc::pdfDocWithPath(path);
        EXPECT_EQ(textOf(document->pdfHeader()), "%PDF-1.3\n%\xE2\x80\x9A\xE2\x80\x9E\xC5\x93\xE2\x80\x9D\n");
        EXPECT_EQ(document->info()->numberOfChildren(), 0);
        EXPECT_EQ(document->numberOfPages(), 0);
        EXPECT_TRUE(document->pages().isNull());
        EXPECT_EQ(document->root()->objectForKeyedSubscript(u"Info"), Handle<MyPDFObj>(document->info()));
        EXPECT_EQ(document->root()->objectForKeyedSubscript(u"Catalog"), Handle<MyPDFObj>(document->catalog()));
        EXPECT_TRUE(document->path() == path || (document->path().isNull() && path.isNull()));
    }
    EXPECT_TRUE(messages.texts().empty());
}

TEST(PdfReading, OfNoPDFGivesAnEmptyDocumentWhoseWriteLeavesTheTargetAlone) {
    const TemporaryFolder folder;
    const String path = folder.write("letter.pdf", "Dear Sir or Madam");
    const RecordedMessages messages;
    const auto document = MyPDFDoc::pdfDocWithPath(path);
    EXPECT_FALSE(document->info());
    EXPECT_FALSE(document->catalog());
    EXPECT_EQ(document->numberOfPages(), 0);
    EXPECT_TRUE(messages.texts().empty());
    document->writeToFile(path);
    EXPECT_EQ(messages.texts().size(), 1u);
    EXPECT_EQ(folder.contents("letter.pdf"), "Dear Sir or Madam");
}

TEST(PdfReading, OfAFolderGivesAnEmptyDocument) {
    const TemporaryFolder folder;
    EXPECT_FALSE(MyPDFDoc::pdfDocWithPath(String::fromDamagedUTF8(folder.path("")))->catalog());
}

TEST(PdfReading, ShowsWhatRaisesAndKeepsWhatItHas) {
    const RecordedMessages messages;
    const auto document = documentOf(SourceFile({"<</Type/Catalog/Pages 12/Lang(en)>>"}));
    EXPECT_EQ(messages.texts().size(), 1u);
    EXPECT_EQ(document->catalog()->stringForKey(u"Lang"), u"en");
    EXPECT_TRUE(document->info());
    EXPECT_EQ(document->root()->objectForKeyedSubscript(u"Catalog"), Handle<MyPDFObj>(document->catalog()));
}

TEST(PdfReading, SkipsKidsThatAreNoPages) {
    const auto document = documentOf(SourceFile(
        {"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Count 5/Kids[3 0 R 4 0 R null 12 [1] 5 0 R 99 0 R 6 0 R]>>",
         "<</Type/Page/N 1>>", "<</N 2>>", "<</Type/Pages/Kids[7 0 R]>>", "<</Type/Pages>>", "<</Type/Page/N 3>>"}));
    ASSERT_EQ(document->pages().count(), 2u);
    EXPECT_EQ(pageAt(document, 0)->integerForKey(u"N"), 1);
    EXPECT_EQ(pageAt(document, 1)->integerForKey(u"N"), 3);
}

TEST(PdfReading, OfAnEncryptedFileGivesWhatTheReaderGivesOut) {
    const TemporaryFolder folder;
    SourceFile file = onePage("/Contents 4 0 R/Note(secret)");
    file.addStream("/Filter/FlateDecode", encoders::deflated("content"));
    folder.write("plain.pdf", file.bytes());
    const auto encrypted = [&](const std::string& name, const std::string& user) {
        return std::system(("qpdf --encrypt '" + user + "' owner 256 -- '" + folder.path("plain.pdf") + "' '" +
                            folder.path(name) + "'")
                               .c_str()) == 0;
    };
    if (!encrypted("open.pdf", "") || !encrypted("locked.pdf", "user")) GTEST_SKIP() << "qpdf isn't installed";
    const auto open = MyPDFDoc::pdfDocWithPath(String::fromDamagedUTF8(folder.path("open.pdf")));
    ASSERT_EQ(open->pages().count(), 1u);
    EXPECT_EQ(textOf(pageAt(open, 0)->contentsData()), "content");
    EXPECT_EQ(pageAt(open, 0)->stringForKey(u"Note"), u"secret");
    EXPECT_EQ(rewritten(open).find("/Encrypt"), std::string::npos);
    const auto locked = MyPDFDoc::pdfDocWithPath(String::fromDamagedUTF8(folder.path("locked.pdf")));
    EXPECT_FALSE(locked->catalog());
    EXPECT_FALSE(locked->info());
}

TEST(PdfReading, CanBeWrittenOverItsOwnFile) {
    const TemporaryFolder folder;
    SourceFile file = onePage("/Contents 4 0 R");
    file.addStream("/Filter/FlateDecode", encoders::deflated("content"));
    const String path = folder.write("own.pdf", file.bytes());
    MyPDFDoc::pdfDocWithPath(path)->writeToFile(path);
    const auto again = MyPDFDoc::pdfDocWithPath(path);
    ASSERT_EQ(again->pages().count(), 1u);
    EXPECT_EQ(textOf(pageAt(again, 0)->contentsData()), "content");
}

TEST(PdfReading, GivesTheSameBytesEachTime) {
    SourceFile file = onePage("/B 4 0 R/A[1 2<</C 3>>]/Contents 5 0 R");
    file.add("<</Z 1/Y 2/X 3>>");
    file.addStream("", "content");
    EXPECT_EQ(rewritten(documentOf(file)), rewritten(documentOf(file)));
}

TEST(PdfCustomObjects, AreListedOnlyWhenAskedFor) {
    SourceFile file = onePage(
        "/Resources<</XObject<</I 4 0 R/F 5 0 R>>/ColorSpace<</C1 6 0 R/C2[/ICCBased 7 0 R]/C3/DeviceRGB>>/Font<</T 8 "
        "0 "
        "R>>>>");
    file.addStream("/Subtype/Image/ColorSpace 6 0 R", "i");
    file.addStream("/Subtype/Form", "f");
    file.add("[/Separation/Gold/DeviceCMYK 9 0 R]");
    file.addStream("/N 4", "profile");
    file.add("<</Type/Font/Subtype/Type1/BaseFont/Courier>>");
    file.add("<</FunctionType 2>>");
    const auto without = documentOf(file);
    EXPECT_TRUE(without->xObjs().isNull());
    EXPECT_TRUE(without->colorSpaces().isNull());
    EXPECT_TRUE(without->fonts().isNull());

    auto document = documentOf(file, 1);
    ASSERT_EQ(document->xObjs().count(), 2u);
    EXPECT_EQ(document->xObjs().objectAt(0)->isXObj(), 1);
    ASSERT_EQ(document->fonts().count(), 1u);
    EXPECT_EQ(document->fonts().objectAt(0)->pdfString(), u"/Courier");
    EXPECT_EQ(document->colorSpaces().count(), 3u) << "the dictionary's three values; the picture's own is one of them";
    const WeakObjectList fonts = document->fonts();
    document = nullptr;
    EXPECT_FALSE(fonts.objectAt(0)) << "the list keeps nothing alive";
}

TEST(PdfCustomObjects, AreAddedToASetAsAWholeOrByTheirValues) {
    const auto document = MyPDFDoc::pdfDoc();
    ObjectSet set;
    const auto array = arrayOf({integer(1), integer(2)});
    document->addColorSpaces(array, set);
    document->addColorSpaces(array, set);
    EXPECT_EQ(set.count(), 1u);
    const auto dictionary = MyPDFDictionary::make();
    dictionary->setInteger(1, u"A");
    dictionary->setInteger(1, u"B");
    document->addFonts(dictionary, set);
    EXPECT_EQ(set.count(), 3u);
    document->addFonts(integer(3), set);
    document->addFonts(nullptr, set);
    EXPECT_EQ(set.count(), 3u);
}

TEST(PdfReadingSteps, MakeObjectsByTypeAndOnlyForTheNine) {
    const auto reader = ReaderDocument::openBytes(Data(SourceFile({"<</K 12>>"}).bytes()));
    const ReaderObject* number = reader->catalog().entry("K");
    const auto document = MyPDFDoc::pdfDoc();
    EXPECT_EQ(document->objWithObjRef(number)->pdfString(), u"12");
    EXPECT_EQ(document->objWithObjRef(number, ReaderType::null)->pdfString(), u"null");
    EXPECT_EQ(document->objWithObjRef(number, ReaderType::array)->isArray(), 1);
    EXPECT_EQ(document->objWithObjRef(&reader->catalog(), ReaderType::dictionary)->numberOfChildren(), 0);
    EXPECT_FALSE(document->objWithObjRef(number, static_cast<ReaderType>(0)));
    EXPECT_FALSE(document->objWithObjRef(number, static_cast<ReaderType>(10)));
    EXPECT_FALSE(document->objWithObjRef(nullptr));
    EXPECT_FALSE(document->pdfObjFromCache(number, ReaderType::integer)) << "nothing is being read";
    EXPECT_EQ(document->docRef(), nullptr);
    EXPECT_EQ(document->catalogRef(), nullptr);
    EXPECT_EQ(document->infoDict(), nullptr);
    EXPECT_EQ(document->objRefToObj(), nullptr);
}

TEST(PdfReadingSteps, PutObjectsIntoTheContainer) {
    const auto document = MyPDFDoc::pdfDoc();
    const auto holder = MyPDFDictionary::make();
    const auto parent = MyPDFDictionary::make();
    document->setContainer(holder);
    const auto value = integer(5);
    document->addObject(value, u"V");
    EXPECT_EQ(holder->integerForKey(u"V"), 5);
    EXPECT_EQ(value->key(), u"V");
    const auto text = MyPDFString::stringWithString(u"t");
    document->addString(text, u"S");
    EXPECT_EQ(holder->stringForKey(u"S"), u"t");
    EXPECT_TRUE(text->key().isNull());
    document->addObject(parent, u"Parent");
    EXPECT_EQ(holder->parent(), parent);
    EXPECT_TRUE(parent->key().isNull());
    EXPECT_EQ(holder->numberOfChildren(), 2);
    const auto list = MyPDFArray::array();
    document->setContainer(list);
    document->addObject(value);
    EXPECT_EQ(list->numberOfChildren(), 1);
    EXPECT_THROW(document->addObject(value, u"V"), UnrecognizedOperation);
    document->setContainer(nullptr);
}

TEST(PdfReadingSteps, FillTheContainerFromADictionaryOrAnArray) {
    const auto reader = ReaderDocument::openBytes(Data(SourceFile({"<</K[1(x)]/D<</A 1/Parent 5>>/N 7>>"}).bytes()));
    const auto document = MyPDFDoc::pdfDoc();
    const auto list = MyPDFArray::array();
    document->setContainer(list);
    document->enumContainer(reader->catalog().entry("K"), ReaderType::array);
    EXPECT_EQ(list->pdfString(), u"[1 x]");
    const auto map = MyPDFDictionary::make();
    document->setContainer(map);
    document->enumContainer(reader->catalog().entry("D"), ReaderType::dictionary);
    EXPECT_EQ(map->numberOfChildren(), 1);
    document->enumContainer(reader->catalog().entry("N"), ReaderType::integer);
    EXPECT_EQ(map->numberOfChildren(), 1);
    document->setupPDFObject(reader->catalog().entry("N"), u"N");
    EXPECT_EQ(map->integerForKey(u"N"), 7);
    document->setContainer(nullptr);
    document->setupPDFObject(reader->catalog().entry("N"), u"N");
}

}  // namespace
}  // namespace vornaset
