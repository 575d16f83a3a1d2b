// Boxes of pages and how they are inherited.

#include "pdf/toolkit.h"

namespace vornaset {

namespace {

struct PageUnderNodes {
    Handle<MyPDFDictionary> root = MyPDFDictionary::make();
    Handle<MyPDFDictionary> node = MyPDFDictionary::make();
    Handle<MyPDFDictionary> page = MyPDFDictionary::make();

    PageUnderNodes() {
        node->setParent(root);
        page->setParent(node);
    }
};

Handle<MyPDFArray> numbers(std::initializer_list<double> values) {
    Handle<MyPDFArray> array = MyPDFArray::array();
    for (const double value : values) array->addObject(number(value));
    return array;
}

}  // namespace

TEST(PdfBoxes, AreReadAsOriginAndSize) {
    EXPECT_EQ(rectWithBoxArray(numbers({10, 20, 110, 220})), (Rect{10, 20, 100, 200}));
    EXPECT_EQ(rectWithBoxArray(nullptr), Rect());
    EXPECT_EQ(rectWithBoxArray(numbers({1, 2, 3})), Rect());
    EXPECT_EQ(rectWithBoxArray(numbers({1, 2, 3, 4, 5})), Rect());
    EXPECT_EQ(rectWithBoxArray(MyPDFName::name()), Rect());
    EXPECT_THROW(rectWithBoxArray(arrayOf({integer(0), integer(0), MyPDFName::name(), integer(1)})),
                 UnrecognizedOperation);
}

TEST(PdfBoxes, AreNarrowedToSingles) {
    const Rect box = rectWithBoxArray(numbers({0.1, 0, 0.3, 1}));
    EXPECT_EQ(box.x, static_cast<double>(0.1F));
    EXPECT_EQ(box.width, static_cast<double>(0.3F) - static_cast<double>(0.1F));
}

TEST(PdfBoxes, AreWrittenAsFourDoublesWithoutAKey) {
    const Handle<MyPDFArray> array = boxArrayWithRect({1.5, 2, 100, 200});
    EXPECT_EQ(array->pdfString(), String(u"[1.5 2 101.5 202]"));
    EXPECT_EQ(objectAs<MyPDFNumber>(array->children()[1])->number()->kind(), Number::Kind::real);
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setMediaBox({0, 0, 1, 1});
    EXPECT_EQ(page->objectForKeyedSubscript(u"MediaBox")->isBox(), 0);
}

TEST(PdfBoxes, StandUnderTheirKeys) {
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setMediaBox({0, 0, 1, 1});
    page->setCropBox({0, 0, 2, 2});
    page->setBleedBox({0, 0, 3, 3});
    page->setTrimBox({0, 0, 4, 4});
    page->setArtBox({0, 0, 5, 5});
    page->setBbox({0, 0, 6, 6});
    double side = 1;
    for (const char16_t* key : {u"MediaBox", u"CropBox", u"BleedBox", u"TrimBox", u"ArtBox", u"BBox"}) {
        EXPECT_EQ(rectWithBoxArray(page->objectForKeyedSubscript(key)).width, side++);
    }
    EXPECT_EQ(page->mediaBox().width, 1);
    EXPECT_EQ(page->cropBox().width, 2);
    EXPECT_EQ(page->bleedBox().width, 3);
    EXPECT_EQ(page->trimBox().width, 4);
    EXPECT_EQ(page->artBox().width, 5);
    EXPECT_EQ(page->bbox().width, 6);
}

TEST(PdfBoxes, OfAPageWithoutAnyAreItsParentsMediaBox) {
    const PageUnderNodes tree;
    tree.root->setMediaBox({0, 0, 612, 792});
    EXPECT_EQ(tree.page->mediaBox(), (Rect{0, 0, 612, 792}));
    EXPECT_EQ(tree.page->cropBox(), (Rect{0, 0, 612, 792}));
    EXPECT_EQ(tree.page->bleedBox(), (Rect{0, 0, 612, 792}));
    EXPECT_EQ(tree.page->trimBox(), (Rect{0, 0, 612, 792}));
}

TEST(PdfBoxes, FallBackFromTrimToBleedToCropToMedia) {
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setMediaBox({0, 0, 4, 4});
    EXPECT_EQ(page->trimBox().width, 4);
    page->setCropBox({0, 0, 3, 3});
    EXPECT_EQ(page->trimBox().width, 3);
    page->setBleedBox({0, 0, 2, 2});
    EXPECT_EQ(page->trimBox().width, 2);
    EXPECT_EQ(page->cropBox().width, 3);
}

TEST(PdfBoxes, WithSwappedCornersCountAsMissing) {
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setMediaBox({0, 0, 100, 100});
    page->setObject(numbers({90, 90, 10, 10}), u"CropBox");
    EXPECT_EQ(page->cropBox(), (Rect{0, 0, 100, 100}));
    page->setObject(numbers({90, 90, 10, 10}), u"MediaBox");
    EXPECT_EQ(page->mediaBox(), (Rect{90, 90, -80, -80}));
}

TEST(PdfBoxes, OfArtAndFormsAreNotInherited) {
    const PageUnderNodes tree;
    tree.node->setArtBox({0, 0, 1, 1});
    tree.node->setBbox({0, 0, 1, 1});
    EXPECT_EQ(tree.page->artBox(), Rect());
    EXPECT_EQ(tree.page->bbox(), Rect());
}

TEST(PdfBoxes, OfFiveNumbersEndOneSearchAndArePassedByTheOther) {
    const PageUnderNodes tree;
    tree.root->setMediaBox({0, 0, 50, 60});
    tree.page->setObject(numbers({1, 2, 3, 4, 5}), u"MediaBox");
    EXPECT_EQ(tree.page->getBoxRect(u"MediaBox"), Rect());
    EXPECT_EQ(tree.page->getBoxRectObj(u"MediaBox"), tree.root->getBoxRectObj(u"MediaBox"));
    EXPECT_EQ(tree.page->getBoxRectObj(u"MediaBox")->pdfString(), String(u"[0 0 50 60]"));
    EXPECT_EQ(tree.page->getBoxRectObj(u"TrimBox"), nullptr);
}

TEST(PdfBoxes, ReadFromAnEntryThatIsNoArrayAreZero) {
    const PageUnderNodes tree;
    tree.root->setCropBox({0, 0, 50, 60});
    tree.page->setObject(MyPDFNumber::make(), u"CropBox");
    EXPECT_EQ(tree.page->getBoxRect(u"CropBox"), Rect());
    EXPECT_EQ(tree.page->getBoxRectObj(u"CropBox"), tree.root->getBoxRectObj(u"CropBox"));
}

TEST(PdfBoxes, EndTheSearchInARingOfParents) {
    const PageUnderNodes tree;
    tree.root->setParent(tree.node);
    EXPECT_EQ(tree.page->getBoxRect(u"MediaBox"), Rect());
    EXPECT_EQ(tree.page->getBoxRectObj(u"MediaBox"), nullptr);
    tree.page->setParent(tree.page);
    EXPECT_EQ(tree.page->trimBox(), Rect());
    std::vector<Handle<MyPDFDictionary>> ring;
    for (int index = 0; index < 37; ++index) {
        ring.push_back(MyPDFDictionary::make());
        if (index > 0) ring[static_cast<size_t>(index)]->setParent(ring[static_cast<size_t>(index) - 1]);
    }
    ring[5]->setParent(ring[20]);
    EXPECT_EQ(ring[36]->getBoxRectObj(u"MediaBox"), nullptr);
    ring[6]->setMediaBox({0, 0, 1, 1});
    EXPECT_TRUE(ring[36]->getBoxRectObj(u"MediaBox"));
}

TEST(PdfBoxes, TellWhetherThereIsATrimBoxUpTheChain) {
    const PageUnderNodes tree;
    EXPECT_EQ(tree.page->hasTrimBox(), 0);
    tree.root->setTrimBox({0, 0, 1, 1});
    EXPECT_EQ(tree.page->hasTrimBox(), 1);
}

TEST(PdfBoxes, GiveAPageTheCropBoxWhicheverKeyWasAskedFor) {
    const PageUnderNodes tree;
    tree.root->setCropBox({0, 0, 7, 7});
    tree.root->setTrimBox({0, 0, 5, 5});
    tree.page->setBoxRectForPage(u"TrimBox");
    EXPECT_EQ(tree.page->objectForKeyedSubscript(u"TrimBox"), nullptr);
    EXPECT_EQ(tree.page->objectForKeyedSubscript(u"CropBox"), tree.root->objectForKeyedSubscript(u"CropBox"));
}

TEST(PdfBoxes, LeaveAPageAsItIsWhereNoCropBoxIs) {
    const PageUnderNodes tree;
    tree.root->setTrimBox({0, 0, 5, 5});
    tree.page->setBoxRectForPage(u"TrimBox");
    EXPECT_EQ(tree.page->numberOfChildren(), 0);
}

TEST(PdfBoxes, LeaveAPageAsItIsWithAnOwnEntryOfTheKey) {
    const PageUnderNodes tree;
    tree.root->setCropBox({0, 0, 7, 7});
    tree.page->setTrimBox({0, 0, 5, 5});
    tree.page->setBoxRectForPage(u"TrimBox");
    EXPECT_EQ(tree.page->objectForKeyedSubscript(u"CropBox"), nullptr);
}

TEST(PdfBoxes, GiveAPageOwnMediaAndCropBoxes) {
    const PageUnderNodes tree;
    tree.root->setMediaBox({0, 0, 9, 9});
    tree.root->setCropBox({0, 0, 7, 7});
    tree.page->setBoxRectsForPage();
    EXPECT_EQ(rectWithBoxArray(tree.page->objectForKeyedSubscript(u"MediaBox")), (Rect{0, 0, 9, 9}));
    EXPECT_NE(tree.page->objectForKeyedSubscript(u"MediaBox"), tree.root->objectForKeyedSubscript(u"MediaBox"));
    EXPECT_EQ(rectWithBoxArray(tree.page->objectForKeyedSubscript(u"CropBox")), (Rect{0, 0, 7, 7}));
    EXPECT_EQ(tree.page->numberOfChildren(), 2);
}

TEST(PdfBoxes, StoreAZeroMediaBoxWhereNoneIs) {
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setBoxRectsForPage();
    EXPECT_EQ(page->objectForKeyedSubscript(u"MediaBox")->pdfString(), String(u"[0 0 0 0]"));
    EXPECT_EQ(page->numberOfChildren(), 1);
}

}  // namespace vornaset
