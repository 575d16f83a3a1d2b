// Scaling and cropping pages, and pages as forms.

#include "pdf/toolkit.h"

namespace vornaset {

namespace {

Rect ownBox(const Handle<MyPDFDictionary>& page, const String& key) {
    return rectWithBoxArray(page->objectForKeyedSubscript(key));
}

}  // namespace

TEST(PdfScaling, PutsAMatrixInFrontAndScalesOwnBoxes) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    const Handle<MyPDFDictionary> page = document->addPageWithRect({0, 0, 612, 792});
    page->setContents(streamOf("content"));
    page->setTrimBox({10, 20, 100, 200});
    page->setArtBox({0, 0, 8, 8});
    document->scalePage(page, 0.5, 0.25);
    EXPECT_EQ(textOf(page->contentsData()), "0.500000 0 0 0.250000 0 0 cm\ncontent");
    EXPECT_EQ(page->mediaBox(), (Rect{0, 0, 306, 198}));
    EXPECT_EQ(page->cropBox(), (Rect{0, 0, 306, 198}));
    EXPECT_EQ(page->trimBox(), (Rect{5, 5, 50, 50}));
    EXPECT_EQ(page->artBox(), (Rect{0, 0, 4, 2}));
    EXPECT_EQ(page->objectForKeyedSubscript(u"BleedBox"), nullptr);
}

TEST(PdfScaling, ByAHalfMakesAPageHalfAsLarge) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->addPageWithRect({0, 0, 612, 792})->setContents(streamOf("x"));
    document->scaleDoc(0.5);
    const Handle<MyPDFDictionary> page = document->pages()[0];
    EXPECT_EQ(textOf(page->contentsData()), "0.500000 0 0 0.500000 0 0 cm\nx");
    EXPECT_EQ(page->objectForKeyedSubscript(u"MediaBox")->pdfString(), String(u"[0 0 306 396]"));
}

TEST(PdfScaling, ChangesTheFirstStreamOfAnArrayAlone) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFStream> second = streamOf("second");
    document->pages()[0]->setContents(arrayOf({streamOf("first "), second}));
    document->scaleDoc(2);
    EXPECT_EQ(textOf(document->pages()[0]->contentsData()), "2.000000 0 0 2.000000 0 0 cm\nfirst second");
    EXPECT_EQ(textOf(second->data()), "second");
}

TEST(PdfScaling, OfAPageWithoutContentScalesItsBoxes) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    document->pages()[0]->setContents(nullptr);
    document->pages()[1]->setContents(MyPDFArray::array());
    document->scaleDocByX(2, 3);
    EXPECT_EQ(document->pages()[0]->mediaBox(), (Rect{0, 0, 200, 600}));
    EXPECT_EQ(document->pages()[0]->contents(), nullptr);
    EXPECT_EQ(document->pages()[1]->contents()->numberOfChildren(), 0);
}

TEST(PdfScaling, RaisesForContentsWithoutData) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->pages()[0]->setContents(MyPDFDictionary::make());
    EXPECT_THROW(document->scaleDoc(2), UnrecognizedOperation);
}

TEST(PdfScaling, CompoundsInABoxThatPagesInherit) {
    const Handle<MyPDFDoc> document = documentOfPages(3);
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        page->setObject(nullptr, u"MediaBox");
        page->setObject(nullptr, u"CropBox");
    }
    document->pagesObj()->setMediaBox({0, 0, 10, 20});
    document->scaleDoc(2);
    EXPECT_EQ(document->pagesObj()->mediaBox(), (Rect{0, 0, 80, 160}));
}

TEST(PdfScaling, ScalesAnArrayUnderTwoKeysTwice) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFDictionary> page = document->pages()[0];
    page->setObject(page->objectForKeyedSubscript(u"MediaBox"), u"CropBox");
    document->scaleDoc(2);
    EXPECT_EQ(page->mediaBox(), (Rect{0, 0, 400, 800}));
}

TEST(PdfScaling, LeavesElementsThatAreNoNumbers) {
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setObject(arrayOf({MyPDFName::nameWithCString("a"), integer(1), integer(2), integer(3)}), u"TrimBox");
    scaleBoxRect(page, u"TrimBox", 2, 10);
    EXPECT_EQ(page->objectForKeyedSubscript(u"TrimBox")->pdfString(), String(u"[/a 10 4 30]"));
    scaleBoxRect(page, u"ArtBox", 2, 10);
    EXPECT_EQ(page->numberOfChildren(), 1);
}

TEST(PdfScaling, ToASizeGivesEachPageFactorsOfItsOwn) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    document->pages()[1]->setTrimBox({0, 0, 50, 100});
    document->scaleDocToSize(50, 50);
    EXPECT_EQ(textOf(document->pages()[0]->contentsData()), "0.500000 0 0 0.250000 0 0 cm\npage 0");
    EXPECT_EQ(textOf(document->pages()[1]->contentsData()), "1.000000 0 0 0.500000 0 0 cm\npage 1");
    EXPECT_EQ(document->pages()[0]->mediaBox(), (Rect{0, 0, 50, 50}));
    EXPECT_EQ(document->pages()[1]->trimBox(), (Rect{0, 0, 50, 50}));
}

TEST(PdfScaling, ToASizeFallsBackFromTheTrimBoxToTheOthers) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->pages()[0]->setBleedBox({0, 0, 10, 10});
    document->scaleDocToSize(20, 30);
    EXPECT_EQ(textOf(document->pages()[0]->contentsData()), "2.000000 0 0 3.000000 0 0 cm\npage 0");
}

TEST(PdfScaling, ToASizeOfAPageWithoutBoxesIsInfinite) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->pages()[0]->setObject(nullptr, u"MediaBox");
    document->pages()[0]->setObject(nullptr, u"CropBox");
    document->scaleDocToSize(20, 30);
    EXPECT_EQ(textOf(document->pages()[0]->contentsData()), "inf 0 0 inf 0 0 cm\npage 0");
}

TEST(PdfCropping, SetsCropAndMediaBoxToTheTrimBox) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFDictionary> page = document->pages()[0];
    page->setTrimBox({10, 10, 80, 180});
    document->cropDocToTrimBox();
    EXPECT_EQ(ownBox(page, u"CropBox"), (Rect{10, 10, 80, 180}));
    EXPECT_EQ(ownBox(page, u"MediaBox"), (Rect{10, 10, 80, 180}));
    EXPECT_EQ(textOf(page->contentsData()), "page 0");
}

TEST(PdfCropping, LeavesAPageWhoseCropBoxIsItsTrimBox) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFDictionary> page = document->pages()[0];
    page->setTrimBox({10, 10, 80, 180});
    page->setCropBox({10, 10, 80, 180});
    document->cropDocToTrimBox();
    EXPECT_EQ(ownBox(page, u"MediaBox"), (Rect{0, 0, 100, 200}));
}

TEST(PdfForm, DrawsWhatThePageDrawsWithItsResources) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFDictionary> page = document->pages()[0];
    page->setContents(arrayOf({streamOf("one "), streamOf("two")}));
    page->setCropBox({5, 6, 50, 60});
    const int64_t entries = page->numberOfChildren();
    const Handle<MyPDFStream> form = document->formForPageObj(page);
    EXPECT_EQ(form->isForm(), 1);
    EXPECT_EQ(form->bbox(), (Rect{5, 6, 50, 60}));
    EXPECT_EQ(textOf(form->data()), "one two");
    EXPECT_EQ(form->length(), 7);
    EXPECT_EQ(form->resources(), page->resources());
    EXPECT_EQ(form->dataFormat(), 0);
    EXPECT_TRUE(form->type().isNull());
    EXPECT_EQ(form->numberOfChildren(), 4);
    EXPECT_EQ(page->numberOfChildren(), entries);
}

TEST(PdfForm, DoesNotLookForInheritedResources) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->pagesObj()->setResources(MyPDFDictionary::make());
    document->pages()[0]->setResources(nullptr);
    EXPECT_EQ(document->formForPageObj(document->pages()[0])->resources(), nullptr);
}

TEST(PdfForm, OfAPageNumberHasThePagesTrimBox) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    document->pages()[1]->setTrimBox({1, 2, 30, 40});
    const Handle<MyPDFStream> form = document->formForPageNum(1);
    EXPECT_EQ(textOf(form->data()), "page 1");
    EXPECT_EQ(ownBox(form, u"TrimBox"), (Rect{1, 2, 30, 40}));
    EXPECT_EQ(ownBox(document->formForPageNum(0), u"TrimBox"), (Rect{0, 0, 100, 200}));
}

TEST(PdfForm, IsAbsentForAPageNumberOutside) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    EXPECT_EQ(document->formForPageNum(-1), nullptr);
    EXPECT_EQ(document->formForPageNum(2), nullptr);
    EXPECT_EQ(MyPDFDoc::pdfDocWithPath(nullptr)->formForPageNum(0), nullptr);
}

TEST(PdfForm, OfAPageWithoutContentHasNoData) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->pages()[0]->setContents(nullptr);
    const Handle<MyPDFStream> form = document->formForPageNum(0);
    EXPECT_TRUE(form->data().isNull());
    EXPECT_EQ(form->length(), 0);
}

}  // namespace vornaset
