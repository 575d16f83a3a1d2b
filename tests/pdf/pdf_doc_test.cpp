// Making documents, their fields and pages.

#include <pwd.h>
#include <unistd.h>

#include <limits>

#include "pdf/toolkit.h"

namespace vornaset {

namespace {

using Texts = std::vector<std::string>;

Handle<MyPDFDictionary> nodeWith(std::vector<Handle<MyPDFObj>> kids) {
    Handle<MyPDFDictionary> node = MyPDFDictionary::pages();
    node->setKids(arrayOf(std::move(kids)));
    return node;
}

Handle<MyPDFDictionary> pageWith(const std::string& content) {
    Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    page->setType(u"Page");
    page->setContents(streamOf(content));
    return page;
}

Handle<MyPDFDoc> documentWithTree(const Handle<MyPDFDictionary>& root) {
    Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->catalog()->setObject(root, u"Pages");
    return document;
}

std::vector<std::string> kidsCounts(const Handle<MyPDFDictionary>& node) {
    std::vector<std::string> counts;
    for (const Handle<MyPDFObj>& kid : objectAs<MyPDFArray>(node->kids())->children()) {
        counts.push_back(std::to_string(objectAs<MyPDFDictionary>(kid)->count()));
    }
    return counts;
}

}  // namespace

// ----- Makers and fields

TEST(PdfDocument, IsNewWithoutPathRootAndObjects) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    EXPECT_TRUE(document->path().isNull());
    EXPECT_EQ(document->root(), nullptr);
    EXPECT_TRUE(document->pdfObjs().isNull());
    EXPECT_EQ(document->info()->numberOfChildren(), 0);
    EXPECT_EQ(document->catalog()->type(), String(u"/Catalog"));
    EXPECT_EQ(subDictionary(document->catalog(), u"Pages"), document->pagesObj());
    EXPECT_FALSE(document->pages().isNull());
    EXPECT_EQ(document->pages().count(), 0U);
    EXPECT_EQ(document->numberOfPages(), 0);
    EXPECT_EQ(document->rebuildPDFObjs(), 0);
    EXPECT_EQ(document->description(), String(u"\n----------------------------\n"));
}

TEST(PdfDocument, TakesOverTheSourcesPrintIdentity) {
    const Handle<MyPDFDoc> source = MyPDFDoc::pdfDoc();
    const Handle<MyPDFArray> intents = MyPDFArray::array();
    source->setPdfHeader(dataOfText("%PDF-1.6\n"));
    source->catalog()->setObject(intents, u"OutputIntents");
    source->info()->setString(u"PDF/X-4", u"GTS_PDFXVersion");
    source->info()->setString(u"Somebody", u"Author");
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc(source);
    EXPECT_EQ(textOf(document->pdfHeader()), "%PDF-1.6\n");
    EXPECT_EQ(document->catalog()->objectForKeyedSubscript(u"OutputIntents"), intents);
    EXPECT_EQ(document->info()->stringForKey(u"GTS_PDFXVersion"), String(u"PDF/X-4"));
    EXPECT_EQ(document->info()->stringForKey(u"Producer"), String(u"Vornaset 7.20"));
    const passwd* user = getpwuid(geteuid());
    const auto creator = objectAs<MyPDFString>(document->info()->objectForKeyedSubscript(u"Creator"));
    EXPECT_EQ(textOf(creator->data()), user == nullptr ? "" : user->pw_name);
    EXPECT_TRUE(document->info()->stringForKey(u"Author").isNull());
    EXPECT_EQ(document->numberOfPages(), 0);
}

TEST(PdfDocument, LeavesAbsentIdentityAbsent) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc(MyPDFDoc::pdfDoc());
    EXPECT_EQ(document->catalog()->objectForKeyedSubscript(u"OutputIntents"), nullptr);
    EXPECT_EQ(document->info()->objectForKeyedSubscript(u"GTS_PDFXVersion"), nullptr);
    EXPECT_EQ(document->catalog()->numberOfChildren(), 2);
}

TEST(PdfDocument, AbsentAnswersEverythingWithNothing) {
    const Handle<MyPDFDoc> document;
    EXPECT_EQ(document->numberOfPages(), 0);
    EXPECT_TRUE(document->name().isNull());
    EXPECT_TRUE(document->description().isNull());
    EXPECT_EQ(document->addPageWithRect({0, 0, 1, 1}), nullptr);
    EXPECT_EQ(document->formForPageNum(0), nullptr);
    EXPECT_EQ(document->formForPageObj(MyPDFDictionary::make()), nullptr);
    EXPECT_EQ(document->addFont(u"F", u"N"), nullptr);
    EXPECT_TRUE(document->colorSpacesForPageRange({0, 1}).isNull());
    document->setupPages();
    document->rebuildObjectsList();
    document->rebuildPageList(2);
    document->deleteLastPage();
    document->revertPages();
    document->addEmptyPages(3);
    document->scaleDoc(2);
    document->cropDocToTrimBox();
    document->setPath(u"path");
    document->setInfo(MyPDFDictionary::make());
    EXPECT_TRUE(document->path().isNull());
    EXPECT_EQ(document->info(), nullptr);
    EXPECT_TRUE(document->pages().isNull());
}

// ----- Finding pages

TEST(PdfPages, AreFoundInReadingOrderWhateverTheTreesDepth) {
    const Handle<MyPDFDictionary> root =
        nodeWith({pageWith("a"), nodeWith({pageWith("b"), nodeWith({pageWith("c")})}), pageWith("d")});
    root->setCount(99);
    const Handle<MyPDFDoc> document = documentWithTree(root);
    document->setupPages();
    EXPECT_EQ(document->pagesObj(), root);
    EXPECT_EQ(contentsOfPages(document), (Texts{"a", "b", "c", "d"}));
    EXPECT_EQ(document->numberOfPages(), 99);
}

TEST(PdfPages, WithoutTheirTypeArePassedOver) {
    const Handle<MyPDFDictionary> untyped = pageWith("untyped");
    untyped->setType(nullptr);
    const Handle<MyPDFDictionary> other = pageWith("other");
    other->setType(u"Template");
    const Handle<MyPDFDoc> document =
        documentWithTree(nodeWith({untyped, integer(3), other, MyPDFArray::array(), pageWith("a")}));
    document->setupPages();
    EXPECT_EQ(contentsOfPages(document), Texts{"a"});
}

TEST(PdfPages, BelowANodeWithoutKidsArePassedOver) {
    const Handle<MyPDFDictionary> without = MyPDFDictionary::make();
    without->setType(u"Pages");
    const Handle<MyPDFDictionary> wrong = MyPDFDictionary::make();
    wrong->setType(u"Pages");
    wrong->setName(u"None", u"Kids");
    const Handle<MyPDFDoc> document = documentWithTree(nodeWith({without, wrong, pageWith("a")}));
    document->setupPages();
    EXPECT_EQ(contentsOfPages(document), Texts{"a"});
}

TEST(PdfPages, AreFoundOnceInATreeThatHoldsItself) {
    const Handle<MyPDFDictionary> root = nodeWith({pageWith("a")});
    const Handle<MyPDFArray> kids = objectAs<MyPDFArray>(root->kids());
    const Handle<MyPDFDictionary> inner = nodeWith({pageWith("b"), root});
    kids->addObject(inner);
    const Handle<MyPDFDoc> document = documentWithTree(root);
    document->setupPages();
    // The root's own kids are walked again once, since the walk begins with a list.
    EXPECT_EQ(contentsOfPages(document), (Texts{"a", "b", "a"}));
    inner->setKids(nullptr);
}

TEST(PdfPages, OfATreeThatDoublesWithEachLevelRaise) {
    Handle<MyPDFDictionary> node = nodeWith({});
    for (int level = 0; level < 40; ++level) node = nodeWith({node, node});
    const Handle<MyPDFDoc> document = documentWithTree(node);
    EXPECT_THROW(document->setupPages(), Exception);
}

TEST(PdfPages, OfATreeOfAHundredThousandLevelsAreFound) {
    Handle<MyPDFDictionary> node = nodeWith({pageWith("deep")});
    for (int level = 0; level < 100'000; ++level) node = nodeWith({node});
    const Handle<MyPDFDoc> document = documentWithTree(node);
    document->setupPages();
    EXPECT_EQ(contentsOfPages(document), Texts{"deep"});
}

TEST(PdfPages, OfATreeWhoseRootIsNoDictionaryRaise) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->catalog()->setObject(MyPDFArray::array(), u"Pages");
    EXPECT_THROW(document->setupPages(), UnrecognizedOperation);
    document->catalog()->setObject(nullptr, u"Pages");
    document->setupPages();
    EXPECT_EQ(document->pagesObj(), nullptr);
    EXPECT_EQ(document->pages().count(), 0U);
}

// ----- Rebuilding the tree

TEST(PdfPageTree, IsFlatForASizeOfZero) {
    const Handle<MyPDFDoc> document = documentOfPages(3);
    document->pagesObj()->setKids(MyPDFArray::array());
    document->rebuildPageList(0);
    EXPECT_EQ(contentsOfKids(document->pagesObj()), (Texts{"page 0", "page 1", "page 2"}));
    EXPECT_EQ(document->numberOfPages(), 3);
    for (const Handle<MyPDFDictionary>& page : document->pages()) EXPECT_EQ(page->parent(), document->pagesObj());
    EXPECT_EQ(document->pages().count(), 3U);
}

TEST(PdfPageTree, StaysFlatWhenOneNodeHoldsAllPages) {
    const Handle<MyPDFDoc> document = documentOfPages(5);
    document->rebuildPageList(5);
    EXPECT_EQ(contentsOfKids(document->pagesObj()).size(), 5U);
    EXPECT_EQ(document->pages().count(), 5U);
}

TEST(PdfPageTree, InGroupsHasANodeForEachAndEmptiesTheList) {
    const Handle<MyPDFDoc> document = documentOfPages(5);
    document->rebuildPageList(2);
    EXPECT_EQ(kidsCounts(document->pagesObj()), (Texts{"2", "2", "1"}));
    EXPECT_EQ(document->numberOfPages(), 5);
    EXPECT_EQ(document->pages().count(), 0U);
    Texts contents;
    for (const Handle<MyPDFObj>& kid : objectAs<MyPDFArray>(document->pagesObj()->kids())->children()) {
        const auto node = objectAs<MyPDFDictionary>(kid);
        EXPECT_EQ(node->parent(), document->pagesObj());
        EXPECT_EQ(node->isPages(), 1);
        for (const std::string& text : contentsOfKids(node)) contents.push_back(text);
        for (const Handle<MyPDFObj>& page : objectAs<MyPDFArray>(node->kids())->children()) {
            EXPECT_EQ(objectAs<MyPDFDictionary>(page)->parent(), node);
        }
    }
    EXPECT_EQ(contents, (Texts{"page 0", "page 1", "page 2", "page 3", "page 4"}));
    document->setupPages();
    EXPECT_EQ(document->pages().count(), 5U);
}

TEST(PdfPageTree, InGroupsThatDivideEvenlyHasAFullLastNode) {
    const Handle<MyPDFDoc> document = documentOfPages(6);
    document->rebuildPageList(2);
    EXPECT_EQ(kidsCounts(document->pagesObj()), (Texts{"2", "2", "2"}));
}

TEST(PdfPageTree, WithoutPagesIsEmpty) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->pagesObj()->setCount(7);
    document->rebuildPageList(0);
    EXPECT_EQ(document->numberOfPages(), 0);
    EXPECT_EQ(document->pagesObj()->kids()->numberOfChildren(), 0);
}

TEST(PdfPageTree, RefusesANegativeSize) {
    EXPECT_THROW(documentOfPages(3)->rebuildPageList(-1), RangeException);
}

TEST(PdfPageTree, NodeTakesPagesFromTheList) {
    const Handle<MyPDFDoc> document = documentOfPages(3);
    const Handle<MyPDFDictionary> parent = MyPDFDictionary::make();
    const ObjectList<MyPDFDictionary> list = document->pages();
    const Handle<MyPDFDictionary> last = list[2];
    const Handle<MyPDFDictionary> node = kidsObjectForPages(parent, list, 2);
    EXPECT_EQ(node->parent(), parent);
    EXPECT_EQ(node->count(), 2);
    EXPECT_EQ(node->type(), String(u"/Pages"));
    EXPECT_EQ(contentsOfKids(node), (Texts{"page 0", "page 1"}));
    EXPECT_EQ(list.count(), 1U);
    EXPECT_EQ(last->parent(), node) << "all pages of the list are told the node as their parent";
    EXPECT_THROW(kidsObjectForPages(parent, list, 2), RangeException);
}

// ----- Taking away

TEST(PdfLastPage, IsTakenFromListAndTree) {
    const Handle<MyPDFDoc> document = documentOfPages(3);
    document->deleteLastPage();
    EXPECT_EQ(contentsOfPages(document), (Texts{"page 0", "page 1"}));
    EXPECT_EQ(contentsOfKids(document->pagesObj()), (Texts{"page 0", "page 1"}));
    EXPECT_EQ(document->numberOfPages(), 2);
    EXPECT_EQ(document->rebuildPDFObjs(), 1);
}

TEST(PdfLastPage, FlattensATree) {
    const Handle<MyPDFDoc> document = documentWithTree(nodeWith({nodeWith({pageWith("a"), pageWith("b")})}));
    document->setupPages();
    document->deleteLastPage();
    EXPECT_EQ(contentsOfKids(document->pagesObj()), Texts{"a"});
    EXPECT_EQ(document->pages()[0]->parent(), document->pagesObj());
}

TEST(PdfLastPage, StaysInADocumentOfOnePage) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    const Handle<MyPDFObj> kids = document->pagesObj()->kids();
    document->deleteLastPage();
    EXPECT_EQ(contentsOfPages(document), Texts{"page 0"});
    EXPECT_EQ(document->pagesObj()->kids(), kids);
    EXPECT_EQ(document->rebuildPDFObjs(), 0);
}

TEST(PdfLastPage, GoesWhenNothingElseRefersToIt) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    const int64_t before = MyPDFObj::allocated();
    const Handle<MyPDFArray> formerKids = objectAs<MyPDFArray>(document->pagesObj()->kids());
    document->deleteLastPage();
    formerKids->children().removeAll();
    EXPECT_LT(MyPDFObj::allocated(), before - 10);
}

// ----- Reversing

TEST(PdfReversal, StandsInTheTreeAlone) {
    const Handle<MyPDFDoc> document = documentOfPages(3);
    document->rebuildObjectsList();
    document->revertPages();
    EXPECT_EQ(contentsOfKids(document->pagesObj()), (Texts{"page 2", "page 1", "page 0"}));
    EXPECT_EQ(contentsOfPages(document), (Texts{"page 0", "page 1", "page 2"}));
    EXPECT_EQ(document->numberOfPages(), 3);
    EXPECT_EQ(textOf(document->formForPageNum(0)->data()), "page 0");
    for (const Handle<MyPDFDictionary>& page : document->pages()) EXPECT_EQ(page->parent(), document->pagesObj());
}

TEST(PdfReversal, IsUndoneByTheNextRebuild) {
    const Handle<MyPDFDoc> document = documentOfPages(3);
    document->rebuildObjectsList();
    document->revertPages();
    document->rebuildPageList(0);
    EXPECT_EQ(contentsOfKids(document->pagesObj()), (Texts{"page 0", "page 1", "page 2"}));
}

TEST(PdfReversal, ListsSharedObjectsMoreThanOnce) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    const Handle<MyPDFDictionary> resources = MyPDFDictionary::make();
    for (const Handle<MyPDFDictionary>& page : document->pages()) page->setResources(resources);
    document->rebuildObjectsList();
    document->revertPages();
    size_t times = 0;
    for (const Handle<MyPDFObj>& object : document->pdfObjs()) times += object == Handle<MyPDFObj>(resources) ? 1 : 0;
    EXPECT_EQ(times, 2U);
    EXPECT_EQ(document->pdfObjs()[0], Handle<MyPDFObj>(document->info()));
    EXPECT_EQ(document->pdfObjs()[1], Handle<MyPDFObj>(document->catalog()));
}

TEST(PdfReversal, EndsOnAGraphWithRings) {
    const Handle<MyPDFDoc> document = documentOfPages(30);
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        std::vector<Handle<MyPDFObj>> all(document->pages().begin(), document->pages().end());
        page->setObject(arrayOf(all), u"Links");
    }
    document->rebuildObjectsList();
    document->revertPages();
    EXPECT_LT(document->pdfObjs().count(), 500U);
}

TEST(PdfReversal, RaisesWithoutAFormerList) {
    EXPECT_THROW(documentOfPages(2)->revertPages(), InvalidArgumentException);
    const Handle<MyPDFDoc> document = documentOfPages(2);
    document->setPdfObjs(ObjectList<MyPDFObj>::make());
    EXPECT_THROW(document->revertPages(), RangeException);
}

TEST(PdfReversal, LeavesADocumentOfOnePage) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->revertPages();
    EXPECT_TRUE(document->pdfObjs().isNull());
}

// ----- Adding

TEST(PdfNewPage, HasBoxesContentResourcesAndParent) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    const Handle<MyPDFDictionary> page = document->addPageWithRect({0, 0, 85.5, 55});
    EXPECT_EQ(page->isPage(), 1);
    EXPECT_EQ(page->mediaBox(), (Rect{0, 0, 85.5, 55}));
    EXPECT_EQ(rectWithBoxArray(page->objectForKeyedSubscript(u"CropBox")), (Rect{0, 0, 85.5, 55}));
    EXPECT_EQ(page->contents()->isStream(), 1);
    EXPECT_TRUE(page->contentsData().isNull());
    EXPECT_EQ(page->resources()->isDictionary(), 1);
    EXPECT_EQ(page->resources()->numberOfChildren(), 0);
    EXPECT_EQ(page->parent(), document->pagesObj());
    EXPECT_EQ(document->numberOfPages(), 1);
    EXPECT_EQ(document->pages()[0], page);
}

TEST(PdfNewPage, HasItsPlaceInTheListAloneAndStandsLastInTheTree) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    document->addPageWithRect({0, 0, 1, 1}, 0)->setContents(streamOf("new"));
    EXPECT_EQ(contentsOfPages(document), (Texts{"new", "page 0", "page 1"}));
    EXPECT_EQ(contentsOfKids(document->pagesObj()), (Texts{"page 0", "page 1", "new"}));
    document->rebuildPageList(0);
    EXPECT_EQ(contentsOfKids(document->pagesObj()), (Texts{"new", "page 0", "page 1"}));
}

TEST(PdfNewPage, RaisesBehindTheEndOfTheList) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    EXPECT_THROW(document->addPageWithRect({0, 0, 1, 1}, 3), RangeException);
    EXPECT_THROW(document->addPageWithRect({0, 0, 1, 1}, -2), RangeException);
    document->addPageWithRect({0, 0, 1, 1}, 2);
    EXPECT_EQ(document->pages().count(), 3U);
}

TEST(PdfNewPage, CountsDirectKidsInADeepTree) {
    const Handle<MyPDFDoc> document = documentWithTree(nodeWith({nodeWith({pageWith("a"), pageWith("b")})}));
    document->setupPages();
    document->addPageWithRect({0, 0, 1, 1});
    EXPECT_EQ(document->numberOfPages(), 2);
    EXPECT_EQ(document->pages().count(), 3U);
}

TEST(PdfNewPage, ReachesTheTreeButNoListWhereThereIsNone) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDocWithPath(nullptr);
    document->addPageWithRect({0, 0, 1, 1});
    EXPECT_EQ(document->numberOfPages(), 1);
    EXPECT_TRUE(document->pages().isNull());
}

TEST(PdfEmptyPages, HaveTheFirstPagesBoxAndAllGoToTheSamePlace) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->addEmptyPages(2, 0);
    ASSERT_EQ(document->pages().count(), 3U);
    EXPECT_EQ(document->pages()[0]->mediaBox(), (Rect{0, 0, 100, 200}));
    EXPECT_EQ(textOf(document->pages()[2]->contentsData()), "page 0");
    const ObjectList<MyPDFObj> kids = objectAs<MyPDFArray>(document->pagesObj()->kids())->children();
    EXPECT_EQ(kids[1], Handle<MyPDFObj>(document->pages()[1])) << "each stands before the one added last";
    EXPECT_EQ(kids[2], Handle<MyPDFObj>(document->pages()[0]));
}

TEST(PdfEmptyPages, GoToTheEndWithoutAPlace) {
    const Handle<MyPDFDoc> document = documentOfPages(1);
    document->addEmptyPages(2);
    EXPECT_EQ(contentsOfPages(document), (Texts{"page 0", "", ""}));
    document->addEmptyPages(0);
    document->addEmptyPages(-4);
    EXPECT_EQ(document->numberOfPages(), 3);
}

TEST(PdfEmptyPages, HaveAZeroBoxInADocumentWithoutPages) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->addEmptyPages(1);
    EXPECT_EQ(document->pages()[0]->objectForKeyedSubscript(u"MediaBox")->pdfString(), String(u"[0 0 0 0]"));
}

TEST(PdfFont, IsMadeAndNotAttached) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    const Handle<MyPDFDictionary> font = document->addFont(u"Times-Roman", u"F1");
    EXPECT_EQ(
        bytesOf(font),
        "<<\n/Type /Font\n/Subtype /Type1\n/Name /F1\n/BaseFont /Times#2dRoman\n/Encoding /MacRomanEncoding\n>>\n");
    document->rebuildObjectsList();
    EXPECT_EQ(document->pdfObjs().count(), 4U);
}

// ----- Colour spaces

namespace {

/// Three pages; the first two share one colour space, the third has one of its own.
struct ColouredDocument {
    Handle<MyPDFDoc> document = documentOfPages(3);
    Handle<MyPDFArray> shared = MyPDFArray::array();
    Handle<MyPDFArray> own = MyPDFArray::array();

    ColouredDocument() {
        shared->setKey(u"ColorSpace");
        own->setKey(u"ColorSpace");
        for (size_t index = 0; index < 3; ++index) {
            const auto resources = objectAs<MyPDFDictionary>(document->pages()[index]->resources());
            resources->setObject(index < 2 ? shared : own, u"ColorSpace");
        }
    }
    std::vector<Handle<MyPDFObj>> in(int64_t location, int64_t length) const {
        const ObjectList<MyPDFObj> list = document->colorSpacesForPageRange({location, length});
        return {list.begin(), list.end()};
    }
};

using Objects = std::vector<Handle<MyPDFObj>>;

}  // namespace

TEST(PdfColorSpaces, OfARangeAreToldOnceEach) {
    const ColouredDocument coloured;
    EXPECT_EQ(coloured.in(0, 2), Objects{coloured.shared});
    EXPECT_EQ(coloured.in(1, 2), (Objects{coloured.shared, coloured.own}));
    EXPECT_EQ(coloured.in(2, 1), Objects{coloured.own});
}

TEST(PdfColorSpaces, ReachToTheEndForALengthOfZeroAndNeverBeyond) {
    const ColouredDocument coloured;
    EXPECT_EQ(coloured.in(0, 0), (Objects{coloured.shared, coloured.own}));
    EXPECT_EQ(coloured.in(2, 50), Objects{coloured.own});
    EXPECT_EQ(coloured.in(2, std::numeric_limits<int64_t>::max()), Objects{coloured.own});
    EXPECT_EQ(coloured.in(2, -1), Objects{});
}

TEST(PdfColorSpaces, AreAbsentForALocationOutside) {
    const ColouredDocument coloured;
    EXPECT_TRUE(coloured.document->colorSpacesForPageRange({-1, 1}).isNull());
    EXPECT_TRUE(coloured.document->colorSpacesForPageRange({3, 1}).isNull());
    EXPECT_FALSE(coloured.document->colorSpacesForPageRange({0, 1}).isNull());
}

TEST(PdfColorSpaces, AreFoundInAGraphWithRings) {
    const ColouredDocument coloured;
    for (const Handle<MyPDFDictionary>& page : coloured.document->pages()) {
        page->setObject(arrayOf({coloured.document->pages()[0], coloured.document->pages()[2]}), u"Links");
    }
    EXPECT_EQ(coloured.in(1, 1).size(), 2U);
}

}  // namespace vornaset
