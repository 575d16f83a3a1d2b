// Arrays, dictionaries and streams: labels, file bytes, entries, makers.

#include <zlib.h>

#include "pdf/pdf_objects.h"
#include "pdf/toolkit.h"

namespace vornaset {

// ----- Arrays

TEST(PdfArray, PrintsABlankBehindEachChild) {
    EXPECT_EQ(bytesOf(arrayOf({integer(0), integer(0), integer(612), number(792)})), "[0 0 612 792 ]\n");
    EXPECT_EQ(bytesOf(MyPDFArray::array()), "[]\n");
}

TEST(PdfArray, PrintsContainersAsReferences) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setObjNum(12);
    const Handle<MyPDFArray> inner = MyPDFArray::array();
    inner->setObjNum((int64_t{1} << 32) + 5);
    const Handle<MyPDFArray> array = arrayOf({dictionary, MyPDFName::nameWithCString("Fit"), inner});
    EXPECT_EQ(bytesOf(array), "[12 0 R /Fit 5 0 R ]\n");
}

TEST(PdfArray, HasALabelOnlyWithoutContainers) {
    EXPECT_EQ(arrayOf({integer(1), MyPDFName::nameWithCString("A B"), MyPDFNumber::make()})->pdfString(),
              String(u"[1 /A B null]"));
    EXPECT_EQ(MyPDFArray::array()->pdfString(), String(u"[]"));
    const Handle<MyPDFArray> withDictionary = arrayOf({integer(1), MyPDFDictionary::make()});
    EXPECT_EQ(withDictionary->pdfString(), String(u""));
    EXPECT_EQ(bytesOf(withDictionary), "[1 0 0 R ]\n");
}

TEST(PdfArray, RaisesForAnIndexOutsideAndForAnAbsentObject) {
    const Handle<MyPDFArray> array = arrayOf({integer(1)});
    EXPECT_EQ(array->objectAtIndexedSubscript(0)->pdfString(), String(u"1"));
    EXPECT_THROW(array->objectAtIndexedSubscript(1), RangeException);
    EXPECT_THROW(array->setObject(integer(2), 1), RangeException);
    EXPECT_THROW(array->setObject(nullptr, 0), InvalidArgumentException);
    EXPECT_THROW(array->addObject(nullptr), InvalidArgumentException);
    array->setObject(integer(3), 0);
    EXPECT_EQ(array->pdfString(), String(u"[3]"));
}

TEST(PdfArray, IsOpenToCallersWhoAppendToItsChildren) {
    const Handle<MyPDFArray> array = MyPDFArray::array();
    array->children().add(integer(4));
    EXPECT_EQ(array->numberOfChildren(), 1);
    const ObjectList<MyPDFObj> others = ObjectList<MyPDFObj>::make({integer(5), integer(6)});
    array->setChildren(others);
    EXPECT_TRUE(array->children().isSameObject(others));
    EXPECT_EQ(array->pdfString(), String(u"[5 6]"));
}

TEST(PdfArray, IsABoxWithFourNumbersUnderABoxKey) {
    const Handle<MyPDFArray> box = arrayOf({integer(0), integer(0), integer(1), MyPDFNumber::make()});
    EXPECT_EQ(box->isBox(), 0);
    for (const char16_t* key : {u"BBox", u"TrimBox", u"BleedBox", u"CropBox", u"MediaBox", u"ArtBox"}) {
        box->setKey(key);
        EXPECT_EQ(box->isBox(), 1);
    }
    box->setKey(u"Rect");
    EXPECT_EQ(box->isBox(), 0);
    box->setKey(u"BBox");
    box->setObject(MyPDFName::name(), 3);
    EXPECT_EQ(box->isBox(), 0);
    box->setObject(integer(1), 3);
    box->addObject(integer(1));
    EXPECT_EQ(box->isBox(), 0);
}

TEST(PdfArray, ShowsABoxInMillimetres) {
    EXPECT_EQ(arrayOf({integer(0), number(612), number(595.276), number(-72)})->boxString(),
              String(u"[0 215.900 210 -25.400]"));
    EXPECT_EQ(MyPDFArray::array()->boxString(), String(u"[]"));
    EXPECT_THROW(arrayOf({MyPDFName::name()})->boxString(), UnrecognizedOperation);
}

// ----- Dictionaries as objects

TEST(PdfDictionary, PrintsALineForEachEntry) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    const Handle<MyPDFArray> array = MyPDFArray::array();
    array->setObjNum(9);
    dictionary->setName(u"A B", u"Name");
    dictionary->setObject(array, u"Kids");
    dictionary->setObject(MyPDFNumber::make(), u"Nothing");
    EXPECT_EQ(bytesOf(dictionary), "<<\n/Name /A#20B\n/Kids 9 0 R\n/Nothing null\n>>\n");
    EXPECT_EQ(bytesOf(MyPDFDictionary::make()), "<<\n>>\n");
}

TEST(PdfDictionary, PrintsKeysWithoutEscapes) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setInteger(1, u"A B");
    dictionary->setInteger(2, u"Gr\u00FCn");
    EXPECT_EQ(bytesOf(dictionary), "<<\n/A B 1\n/Gr\x9Fn 2\n>>\n");
}

TEST(PdfDictionary, PrintsItsParentLast) {
    const Handle<MyPDFDictionary> parent = MyPDFDictionary::make();
    parent->setObjNum(3);
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setParent(parent);
    dictionary->setInteger(1, u"A");
    dictionary->setMatrix(u"never written");
    EXPECT_EQ(bytesOf(dictionary), "<<\n/A 1\n/Parent 3 0 R\n>>\n");
    EXPECT_EQ(dictionary->objectForKeyedSubscript(u"Parent"), nullptr);
}

TEST(PdfDictionary, OutlivesItsParent) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setParent(MyPDFDictionary::make());
    EXPECT_EQ(dictionary->parent(), nullptr);
    EXPECT_EQ(bytesOf(dictionary), "<<\n>>\n");
}

TEST(PdfDictionary, IsLabelledAsAnImageByItsSize) {
    const Handle<MyPDFDictionary> image = MyPDFDictionary::make();
    image->setSubtype(u"Image");
    image->setWidth(30);
    image->setHeight(20);
    EXPECT_EQ(image->pdfString(), String(u"Image (30 x 20)"));
}

TEST(PdfDictionary, IsLabelledAsAFontByItsName) {
    EXPECT_EQ(MyPDFDictionary::courier()->pdfString(), String(u"/Courier"));
    const Handle<MyPDFDictionary> font = MyPDFDictionary::make();
    font->setType(u"Font");
    EXPECT_TRUE(font->pdfString().isNull());
}

TEST(PdfDictionary, IsLabelledAsANodeOfThePageTreeByItsCount) {
    const Handle<MyPDFDictionary> pages = MyPDFDictionary::pages();
    EXPECT_EQ(pages->pdfString(), String(u"0"));
    pages->setObject(nullptr, u"Count");
    EXPECT_EQ(pages->pdfString(), String(u""));
}

TEST(PdfDictionary, IsLabelledByItsSubtypeOtherwise) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    EXPECT_TRUE(dictionary->pdfString().isNull());
    dictionary->setSubtype(u"Link");
    EXPECT_EQ(dictionary->pdfString(), String(u"/Link"));
    dictionary->setSubtype(u"Form");
    EXPECT_EQ(dictionary->pdfString(), String(u"/Form"));
}

TEST(PdfDictionary, TellsWhatItIsByTypeAndSubtype) {
    const auto typed = [](const String& type, const String& subtype) {
        Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
        dictionary->setType(type);
        dictionary->setSubtype(subtype);
        return dictionary;
    };
    EXPECT_EQ(typed(u"Page", nullptr)->isPage(), 1);
    EXPECT_EQ(typed(u"Pages", nullptr)->isPage(), 0);
    EXPECT_EQ(typed(u"Pages", nullptr)->isPages(), 1);
    EXPECT_EQ(typed(nullptr, u"Image")->isImage(), 1);
    EXPECT_EQ(typed(nullptr, u"Image")->isXObj(), 1);
    EXPECT_EQ(typed(nullptr, u"Form")->isForm(), 1);
    EXPECT_EQ(typed(nullptr, u"Form")->isXObj(), 1);
    EXPECT_EQ(typed(u"XObject", nullptr)->isXObj(), 1);
    EXPECT_EQ(typed(u"XObject", u"PS")->isXObj(), 1);
    EXPECT_EQ(typed(u"Font", u"Type1")->isFont(), 1);
    EXPECT_EQ(typed(u"Font", u"Type1")->isXObj(), 0);
    EXPECT_EQ(typed(nullptr, nullptr)->isPage(), 0);
}

TEST(PdfDictionary, ComparesTypesByTheirLabelWhateverTheirClass) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setString(u"/Page", u"Type");
    EXPECT_EQ(dictionary->isPage(), 1);
    dictionary->setString(u"Page", u"Type");
    EXPECT_EQ(dictionary->isPage(), 0);
}

TEST(PdfDictionary, DescribesItsMap) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setTitle(u"Letter");
    EXPECT_EQ(dictionary->description(), String(u"{\n    Title = Letter;\n}"));
}

// ----- Entries

TEST(PdfDictionary, GivesLabelsOfValuesAndNothingForAbsentKeys) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setString(u"text", u"S");
    dictionary->setName(u"name", u"N");
    dictionary->setObject(MyPDFBoolean::boolean(1), u"B");
    EXPECT_EQ(dictionary->stringForKey(u"S"), String(u"text"));
    EXPECT_EQ(dictionary->nameForKey(u"N"), String(u"/name"));
    EXPECT_EQ(dictionary->stringForKey(u"N"), String(u"/name"));
    EXPECT_EQ(dictionary->nameForKey(u"B"), String(u"true"));
    EXPECT_TRUE(dictionary->stringForKey(u"none").isNull());
    EXPECT_TRUE(dictionary->nameForKey(u"none").isNull());
}

TEST(PdfDictionary, RemovesAnEntryThatIsSetToNothing) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setString(u"text", u"S");
    dictionary->setName(u"name", u"N");
    dictionary->setInteger(1, u"I");
    dictionary->setString(nullptr, u"S");
    dictionary->setName(nullptr, u"N");
    dictionary->setObject(nullptr, u"I");
    EXPECT_EQ(dictionary->numberOfChildren(), 0);
}

TEST(PdfDictionary, DoesNotTouchTheKeyOfWhatItStores) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    const Handle<MyPDFArray> array = MyPDFArray::array();
    dictionary->setObject(array, u"Kids");
    EXPECT_TRUE(array->key().isNull());
}

TEST(PdfDictionary, GivesIntegersAndZeroForAbsentOnes) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setInteger(-3, u"I");
    dictionary->setObject(number(7.9), u"R");
    dictionary->setObject(MyPDFNumber::make(), u"Null");
    EXPECT_EQ(dictionary->integerForKey(u"I"), -3);
    EXPECT_EQ(dictionary->integerForKey(u"R"), 7);
    EXPECT_EQ(dictionary->integerForKey(u"Null"), 0);
    EXPECT_EQ(dictionary->integerForKey(u"none"), 0);
}

TEST(PdfDictionary, RaisesForANumberWhereANameStands) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    dictionary->setName(u"Many", u"Count");
    EXPECT_THROW(dictionary->count(), UnrecognizedOperation);
}

TEST(PdfDictionary, KeepsItsTypedEntriesUnderTheirKeys) {
    const Handle<MyPDFDictionary> dictionary = MyPDFDictionary::make();
    const Handle<MyPDFObj> object = MyPDFArray::array();
    dictionary->setType(u"/T");
    dictionary->setTitle(u"Title text");
    dictionary->setKids(object);
    dictionary->setContents(object);
    dictionary->setResources(object);
    dictionary->setFilter(u"F");
    dictionary->setSubtype(u"S");
    dictionary->setLength(1);
    dictionary->setCount(2);
    dictionary->setWidth(3);
    dictionary->setHeight(4);
    dictionary->setBitsPerComponent(5);
    dictionary->setObject(object, u"ColorSpace");
    EXPECT_EQ(dictionary->type(), String(u"/T"));
    EXPECT_EQ(dictionary->title(), String(u"Title text"));
    EXPECT_EQ(dictionary->filter(), String(u"/F"));
    EXPECT_EQ(dictionary->subtype(), String(u"/S"));
    EXPECT_EQ(dictionary->length(), 1);
    EXPECT_EQ(dictionary->count(), 2);
    EXPECT_EQ(dictionary->width(), 3);
    EXPECT_EQ(dictionary->height(), 4);
    EXPECT_EQ(dictionary->bitsPerComponent(), 5);
    EXPECT_EQ(dictionary->kids(), object);
    EXPECT_EQ(dictionary->contents(), object);
    EXPECT_EQ(dictionary->resources(), object);
    EXPECT_EQ(dictionary->colorSpaces(), object);
    for (const char16_t* key : {u"Type", u"Title", u"Kids", u"Contents", u"Resources", u"Filter", u"Subtype", u"Length",
                                u"Count", u"Width", u"Height", u"BitsPerComponent"}) {
        EXPECT_TRUE(dictionary->objectForKeyedSubscript(key)) << String(key).utf8();
    }
    EXPECT_EQ(dictionary->objectForKeyedSubscript(u"Title")->isString(), 1);
    EXPECT_EQ(dictionary->objectForKeyedSubscript(u"Filter")->isName(), 1);
}

TEST(PdfDictionary, DoesNotInheritResources) {
    const Handle<MyPDFDictionary> parent = MyPDFDictionary::make();
    parent->setResources(MyPDFDictionary::make());
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setParent(parent);
    EXPECT_EQ(page->resources(), nullptr);
}

TEST(PdfDictionary, JoinsTheDataOfAPagesContentsWithNothingBetween) {
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    EXPECT_TRUE(page->contentsData().isNull());
    page->setContents(streamOf("one"));
    EXPECT_EQ(textOf(page->contentsData()), "one");
    page->setContents(arrayOf({streamOf("one"), streamOf("two"), MyPDFStream::stream()}));
    EXPECT_EQ(textOf(page->contentsData()), "onetwo");
    page->setContents(MyPDFDictionary::make());
    EXPECT_TRUE(page->contentsData().isNull());
    page->setContents(arrayOf({MyPDFDictionary::make()}));
    EXPECT_THROW(page->contentsData(), UnrecognizedOperation);
}

// ----- Makers

TEST(PdfDictionaryMakers, MakeNamesOfValuesWithASlashAndStringsOfOthers) {
    const auto texts = Dictionary::make({{"Type", "/Font"}, {"Title", "Letter"}, {"Empty", ""}});
    EXPECT_EQ(bytesOf(MyPDFDictionary::make(texts)), "<<\n/Type /Font\n/Title (Letter)\n/Empty ()\n>>\n");
}

TEST(PdfDictionaryMakers, MakeACatalogAndAnEmptyPageTree) {
    const Handle<MyPDFDictionary> pages = MyPDFDictionary::pages();
    const Handle<MyPDFDictionary> catalog = MyPDFDictionary::catalog(pages);
    pages->setObjNum(3);
    EXPECT_EQ(bytesOf(catalog), "<<\n/Type /Catalog\n/Pages 3 0 R\n>>\n");
    EXPECT_EQ(pages->type(), String(u"/Pages"));
    EXPECT_EQ(pages->count(), 0);
    EXPECT_EQ(pages->kids()->isArray(), 1);
    EXPECT_EQ(pages->kids()->numberOfChildren(), 0);
    EXPECT_EQ(pages->numberOfChildren(), 3);
}

TEST(PdfDictionaryMakers, MakeResourcesWithAListOfNames) {
    const Handle<MyPDFDictionary> resources = MyPDFDictionary::resources(Array::make({"PDF", "Text"}));
    EXPECT_EQ(resources->numberOfChildren(), 1);
    EXPECT_EQ(resources->objectForKeyedSubscript(u"ProcSet")->pdfString(), String(u"[/PDF /Text]"));
    const Handle<MyPDFDictionary> empty = MyPDFDictionary::resources(Array::make());
    EXPECT_EQ(empty->objectForKeyedSubscript(u"ProcSet")->isArray(), 1);
    EXPECT_EQ(empty->objectForKeyedSubscript(u"ProcSet")->numberOfChildren(), 0);
}

TEST(PdfDictionaryMakers, MakeFonts) {
    EXPECT_EQ(bytesOf(MyPDFDictionary::ttFont(u"Arial")),
              "<<\n/Type /Font\n/Subtype /TrueType\n/Name /Arial\n/BaseFont /Arial\n/Encoding /MacRomanEncoding\n>>\n");
    EXPECT_EQ(
        bytesOf(MyPDFDictionary::courier()),
        "<<\n/Type /Font\n/Subtype /Type1\n/Name /Courier\n/BaseFont /Courier\n/Encoding /MacRomanEncoding\n>>\n");
}

// ----- Streams

TEST(PdfStream, IsNewWithoutEntriesAndData) {
    const Handle<MyPDFStream> stream = MyPDFStream::stream();
    EXPECT_EQ(stream->numberOfChildren(), 0);
    EXPECT_TRUE(stream->data().isNull());
    EXPECT_EQ(stream->dataFormat(), 0);
    EXPECT_EQ(stream->streamRef(), nullptr);
}

TEST(PdfStream, HoldsDataAsStringsAndNamesDo) {
    const Handle<MyPDFObj> stream = streamOf("s");
    const Handle<MyPDFObj> name = MyPDFName::nameWithCString("n");
    const Handle<MyPDFObj> string = MyPDFString::stringWithString(u"t");
    EXPECT_EQ(textOf(dataOf(stream)) + textOf(dataOf(name)) + textOf(dataOf(string)), "s/nt");
    setDataOf(string, dataOfText("new"));
    EXPECT_EQ(textOf(dataOf(string)), "new");
    EXPECT_TRUE(dataOf(nullptr).isNull());
    setDataOf(nullptr, dataOfText("x"));
    EXPECT_THROW(dataOf(MyPDFArray::array()), UnrecognizedOperation);
    EXPECT_THROW(setDataOf(MyPDFDictionary::make(), Data()), UnrecognizedOperation);
}

}  // namespace vornaset
