#include "companion/pdf_preparation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pdf/pdf_keys.h"
#include "pdf/pdf_merging.h"
#include "pdf/pdf_objects.h"

namespace companion {
namespace {

using namespace vornaset;

Handle<MyPDFStream> streamOf(const std::string& text) {
    Handle<MyPDFStream> stream = MyPDFStream::stream();
    stream->setData(Data(text));
    return stream;
}

Handle<MyPDFArray> arrayOf(std::vector<Handle<MyPDFObj>> children) {
    Handle<MyPDFArray> array = MyPDFArray::array();
    for (const Handle<MyPDFObj>& child : children) array->addObject(child);
    return array;
}

/// As a file with so many pages gives it: listed, nothing written yet.
Handle<MyPDFDoc> documentOfPages(int count) {
    Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    for (int page = 0; page < count; ++page) document->addPageWithRect({0, 0, 100, 200});
    return document;
}

void prepare(const Handle<MyPDFDoc>& document) {
    document->rebuildObjectsList();
    prepareForCommands(document);
}

std::string bytesOf(const Handle<MyPDFObj>& object) {
    return std::string(object->pdfData().view());
}

TEST(PdfPreparation, GivesPagesWithOneResourceDictionaryTheirOwn) {
    const Handle<MyPDFDoc> document = documentOfPages(150);
    const Handle<MyPDFDictionary> resources = MyPDFDictionary::make(), forms = MyPDFDictionary::make();
    forms->setObject(streamOf("a logo"), u"Logo");
    resources->setObject(forms, pdf_key::kXObject);
    for (const Handle<MyPDFDictionary>& page : document->pages()) page->setResources(resources);
    prepare(document);
    // A hundred names is all that one dictionary gives out: 150 pages with a shared one would run out of them.
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        EXPECT_EQ(addFormToPageResource(page, streamOf("form")), u"Kd1");
        const auto own = objectAs<MyPDFDictionary>(page->resources());
        EXPECT_TRUE(objectAs<MyPDFDictionary>(own->objectForKeyedSubscript(pdf_key::kXObject))
                        ->objectForKeyedSubscript(u"Logo"));
    }
}

TEST(PdfPreparation, GivesPagesThatShareOnlyTheirFormsTheirOwn) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    const Handle<MyPDFDictionary> forms = MyPDFDictionary::make();
    for (const Handle<MyPDFDictionary>& page : document->pages())
        objectAs<MyPDFDictionary>(page->resources())->setObject(forms, pdf_key::kXObject);
    prepare(document);
    EXPECT_EQ(addFormToPageResource(document->pages()[0], streamOf("form")), u"Kd1");
    EXPECT_EQ(addFormToPageResource(document->pages()[1], streamOf("form")), u"Kd1");
}

TEST(PdfPreparation, GivesPagesWithOneContentTheirOwn) {
    const Handle<MyPDFDoc> document = documentOfPages(4);
    const Handle<MyPDFStream> shared = streamOf("the same"), tail = streamOf(" tail");
    const Handle<MyPDFArray> parts = arrayOf({streamOf("first"), tail});
    document->pages()[0]->setContents(shared);
    document->pages()[1]->setContents(shared);
    document->pages()[2]->setContents(parts);
    document->pages()[3]->setContents(parts);
    prepare(document);
    for (const Handle<MyPDFDictionary>& page : document->pages()) document->scalePage(page, 2, 2);
    const std::string matrix = "2.000000 0 0 2.000000 0 0 cm\n";
    EXPECT_EQ(document->pages()[0]->contentsData().view(), matrix + "the same");
    EXPECT_EQ(document->pages()[1]->contentsData().view(), matrix + "the same");
    EXPECT_EQ(document->pages()[2]->contentsData().view(), matrix + "first tail");
    EXPECT_EQ(document->pages()[3]->contentsData().view(), matrix + "first tail");
}

TEST(PdfPreparation, GivesAPageWithoutContentAnEmptyOne) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    document->pages()[0]->setContents(nullptr);
    document->pages()[1]->setContents(MyPDFArray::array());
    prepare(document);
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        addFormToPageContent(page, streamOf("form"), u"Kd1", u"1 0 0 1 0 0");
        EXPECT_EQ(page->contentsData().view(), "q 1 0 0 1 0 0 cm /Kd1 Do Q\n");
    }
}

TEST(PdfPreparation, GivesPagesWhatTheyInherit) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFDictionary> page = document->pages()[0];
    const Handle<MyPDFDictionary> node = MyPDFDictionary::pages(), resources = MyPDFDictionary::make();
    for (const String& key : {pdf_key::kMediaBox, pdf_key::kCropBox, pdf_key::kResources})
        page->setObject(nullptr, key);
    node->setMediaBox({0, 0, 300, 400});
    node->setResources(resources);
    node->setInteger(90, u"Rotate");
    node->setParent(document->pagesObj());
    page->setParent(node);
    node->setKids(arrayOf({page}));
    node->setCount(1);
    document->pagesObj()->setKids(arrayOf({node}));
    prepare(document);
    EXPECT_EQ(page->resources(), Handle<MyPDFObj>(resources));
    EXPECT_EQ(page->integerForKey(u"Rotate"), 90);
    EXPECT_EQ(page->mediaBox(), (Rect{0, 0, 300, 400}));
    EXPECT_EQ(page->parent(), document->pagesObj());
    EXPECT_EQ(document->numberOfPages(), 1);
}

TEST(PdfPreparation, GivesEachPageBoxesOfItsOwn) {
    const Handle<MyPDFDoc> document = documentOfPages(3);
    document->pagesObj()->setMediaBox({0, 0, 50, 60});
    const Handle<MyPDFArray> trim = boxArrayWithRect({0, 0, 10, 20});
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        page->setObject(nullptr, pdf_key::kMediaBox);
        page->setObject(nullptr, pdf_key::kCropBox);
        page->setObject(trim, pdf_key::kTrimBox);
        page->setObject(trim, pdf_key::kBleedBox);
    }
    prepare(document);
    document->scaleDoc(2);
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        EXPECT_EQ(page->mediaBox(), (Rect{0, 0, 100, 120})) << "a box that pages share would be scaled three times";
        EXPECT_EQ(page->trimBox(), (Rect{0, 0, 20, 40}));
    }
}

TEST(PdfPreparation, DropsParametersOfFiltersThatWereUndone) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFStream> content = streamOf("plain bytes");
    const Handle<MyPDFDictionary> predictor = MyPDFDictionary::make();
    predictor->setInteger(12, u"Predictor");
    content->setObject(predictor, u"DecodeParms");
    document->pages()[0]->setContents(content);
    prepare(document);
    EXPECT_FALSE(content->objectForKeyedSubscript(u"DecodeParms"));
}

TEST(PdfPreparation, KeepsTheLastFilterOfAChainThatEndedInJPEG) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFStream> photo = streamOf("\xFF\xD8 a photo"), lone = streamOf("\xFF\xD8 a photo");
    const Handle<MyPDFDictionary> transform = MyPDFDictionary::make();
    transform->setInteger(0, u"ColorTransform");
    const auto name = [](const char* text) { return MyPDFName::nameWithCString(text); };
    photo->setDataFormat(kStreamJPEG);
    photo->setObject(arrayOf({name("FlateDecode"), name("DCTDecode")}), pdf_key::kFilter);
    photo->setObject(arrayOf({MyPDFNumber::make(), transform}), u"DecodeParms");
    lone->setDataFormat(kStreamJPEG);
    lone->setObject(name("DCTDecode"), pdf_key::kFilter);
    lone->setObject(transform, u"DecodeParms");
    document->pages()[0]->setContents(arrayOf({photo, lone}));
    prepare(document);
    for (const Handle<MyPDFStream>& stream : {photo, lone}) {
        EXPECT_EQ(stream->filter(), u"/DCTDecode");
        EXPECT_EQ(stream->objectForKeyedSubscript(u"DecodeParms"), Handle<MyPDFObj>(transform));
    }
}

TEST(PdfPreparation, KeepsAllThatSaysHowToReadAStreamThatIsCarriedAsItIs) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFStream> fax = streamOf("fax bytes");
    const Handle<MyPDFDictionary> parameters = MyPDFDictionary::make();
    parameters->setInteger(-1, u"K");
    fax->setDataFormat(kStreamCompressed);
    fax->setFilter(u"CCITTFaxDecode");
    fax->setObject(parameters, u"DecodeParms");
    document->pages()[0]->setContents(fax);
    prepare(document);
    EXPECT_EQ(fax->objectForKeyedSubscript(u"DecodeParms"), Handle<MyPDFObj>(parameters));
    EXPECT_THAT(bytesOf(fax), testing::HasSubstr("stream\nfax bytes\nendstream"));
}

TEST(PdfPreparation, WritesNoExponents) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const auto number = [](float value) { return MyPDFNumber::make(Number(value)); };
    const Handle<MyPDFArray> numbers =
        arrayOf({number(1e-5F), number(-0.0005F), number(0.25F), number(3e9F), number(0)});
    document->pages()[0]->setObject(numbers, u"Numbers");
    document->pages()[0]->setObject(number(1e-20F), u"Tiny");
    prepare(document);
    EXPECT_EQ(bytesOf(numbers), "[0 0 0.25 3000000000 0 ]\n");
    EXPECT_EQ(document->pages()[0]->stringForKey(u"Tiny"), u"0");
}

}  // namespace
}  // namespace companion
