// Walks through a graph, and letting go of one.

#include <string>
#include <vector>

#include "pdf/graph_release.h"
#include "pdf/toolkit.h"

namespace vornaset {

namespace {

using Told = std::vector<MyPDFObj*>;

uint8_t tell(const Handle<MyPDFObj>& child, void* told) {
    static_cast<Told*>(told)->push_back(child.get());
    return 1;
}

/// a holds b, c and d; b and c hold the same d.
struct Diamond {
    Handle<MyPDFDictionary> a = MyPDFDictionary::make();
    Handle<MyPDFDictionary> b = MyPDFDictionary::make();
    Handle<MyPDFArray> c = MyPDFArray::array();
    Handle<MyPDFDictionary> d = MyPDFDictionary::make();

    Diamond() {
        a->setInteger(1, u"Scalar");
        a->setObject(b, u"B");
        a->setObject(c, u"C");
        b->setObject(d, u"D");
        c->addObject(integer(1));
        c->addObject(d);
    }
};

}  // namespace

TEST(PdfTraversal, TellsContainersOnceDepthFirstBeforeWhatTheyHold) {
    const Diamond graph;
    Told told;
    EXPECT_EQ(MyPDFObj::enumChildren(graph.a, tell, &told), 1);
    EXPECT_EQ(told, (Told{graph.b.get(), graph.d.get(), graph.c.get()}));
    told.clear();
    EXPECT_EQ(MyPDFObj::enumChildren(graph.a, tell, &told), 1);
    EXPECT_EQ(told.size(), 3U);
}

TEST(PdfTraversal, BegunDirectlyTellsASharedObjectEachTime) {
    const Diamond graph;
    Told told;
    EXPECT_EQ(graph.a->enumChildren(tell, &told), 1);
    EXPECT_EQ(told, (Told{graph.b.get(), graph.d.get(), graph.c.get(), graph.d.get()}));
}

TEST(PdfTraversal, GivesZeroForWhatIsNoContainer) {
    Told told;
    EXPECT_EQ(MyPDFObj::enumChildren(MyPDFName::name(), tell, &told), 0);
    EXPECT_EQ(MyPDFObj::enumChildren(MyPDFArray::array(), tell, &told), 1);
    EXPECT_TRUE(told.empty());
}

TEST(PdfTraversal, DoesNotFollowParents) {
    const Diamond graph;
    const Handle<MyPDFDictionary> parent = MyPDFDictionary::make();
    graph.b->setParent(parent);
    Told told;
    MyPDFObj::enumChildren(graph.a, tell, &told);
    EXPECT_EQ(told.size(), 3U);
}

TEST(PdfTraversal, EndsWithZeroWhenAnAnswerForADirectChildIsNo) {
    const Diamond graph;
    Told told;
    const auto refuseFirst = [](const Handle<MyPDFObj>& child, void* list) -> uint8_t {
        tell(child, list);
        return 0;
    };
    EXPECT_EQ(MyPDFObj::enumChildren(graph.a, refuseFirst, &told), 0);
    EXPECT_EQ(told, (Told{graph.b.get()}));
}

TEST(PdfTraversal, GoesOnBesideABranchInWhichAnAnswerWasNo) {
    const Handle<MyPDFArray> first = MyPDFArray::array();
    const Handle<MyPDFArray> second = MyPDFArray::array();
    const Handle<MyPDFArray> branch = arrayOf({first, second});
    const Handle<MyPDFArray> beside = MyPDFArray::array();
    const Handle<MyPDFArray> top = arrayOf({branch, beside});
    struct Walk {
        MyPDFObj* refused;
        Told told;
    } walk{first.get(), {}};
    const auto refuseOne = [](const Handle<MyPDFObj>& child, void* data) -> uint8_t {
        auto* state = static_cast<Walk*>(data);
        state->told.push_back(child.get());
        return child.get() == state->refused ? 0 : 1;
    };
    EXPECT_EQ(MyPDFObj::enumChildren(top, refuseOne, &walk), 1);
    EXPECT_EQ(walk.told, (Told{branch.get(), first.get(), beside.get()}));
}

TEST(PdfTraversal, TellsTheStartingObjectWhenARingLeadsBackToIt) {
    const Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    const Handle<MyPDFDictionary> annotation = MyPDFDictionary::make();
    page->setObject(annotation, u"Annot");
    annotation->setObject(page, u"P");
    Told told;
    EXPECT_EQ(MyPDFObj::enumChildren(page, tell, &told), 1);
    EXPECT_EQ(told, (Told{annotation.get(), page.get()}));
    told.clear();
    EXPECT_EQ(page->enumChildren(tell, &told), 1);
    EXPECT_EQ(told, (Told{annotation.get(), page.get()}));
    annotation->setObject(nullptr, u"P");
}

TEST(PdfTraversal, ForgetsWhatItMetWhenAProcedureRaises) {
    const Diamond graph;
    const auto raise = [](const Handle<MyPDFObj>&, void*) -> uint8_t { throw RangeException("stop"); };
    EXPECT_THROW(MyPDFObj::enumChildren(graph.a, raise, nullptr), RangeException);
    Told told;
    graph.a->enumChildren(tell, &told);
    EXPECT_EQ(told.size(), 4U);
}

TEST(PdfTraversal, SurvivesAProcedureThatTakesTheGraphApart) {
    const Handle<MyPDFArray> top = MyPDFArray::array();
    for (int index = 0; index < 10; ++index) top->addObject(arrayOf({MyPDFArray::array()}));
    const auto empty = [](const Handle<MyPDFObj>& child, void* holder) -> uint8_t {
        static_cast<MyPDFArray*>(holder)->children().removeAll();
        return child->isArray();
    };
    EXPECT_EQ(MyPDFObj::enumChildren(top, empty, top.get()), 1);
    EXPECT_EQ(top->numberOfChildren(), 0);
}

TEST(PdfTraversal, WalksAHundredThousandLevelsWithoutGrowingTheStack) {
    Handle<MyPDFArray> top = MyPDFArray::array();
    for (int level = 0; level < 100'000; ++level) top = arrayOf({top});
    Told told;
    EXPECT_EQ(MyPDFObj::enumChildren(top, tell, &told), 1);
    EXPECT_EQ(told.size(), 100'000U);
    told.clear();
    EXPECT_EQ(top->enumChildren(tell, &told), 1);
    EXPECT_EQ(told.size(), 100'000U);
}

TEST(PdfTraversal, BegunDirectlyEndsInAGraphThatDoublesWithEachLevel) {
    Handle<MyPDFArray> top = MyPDFArray::array();
    for (int level = 0; level < 60; ++level) top = arrayOf({top, top});
    size_t count = 0;
    const auto countOne = [](const Handle<MyPDFObj>&, void* counter) -> uint8_t {
        ++*static_cast<size_t*>(counter);
        return 1;
    };
    top->enumChildren(countOne, &count);
    EXPECT_LE(count, size_t{1} << 22);
}

TEST(PdfTraversal, RemembersNothingOutsideAWalk) {
    const Handle<MyPDFArray> array = MyPDFArray::array();
    EXPECT_TRUE(isUnvisitedContainer(*array));
    EXPECT_TRUE(isUnvisitedContainer(*array));
    EXPECT_FALSE(isUnvisitedContainer(*MyPDFName::name()));
    const auto askTwice = [](const Handle<MyPDFObj>& child, void*) -> uint8_t {
        EXPECT_FALSE(isUnvisitedContainer(*child));
        return 1;
    };
    MyPDFObj::enumChildren(arrayOf({array}), askTwice, nullptr);
    EXPECT_TRUE(isUnvisitedContainer(*array));
}

// ----- Letting go

namespace {

/// Gives the handle up, and with it what it alone leads to.
void giveUp(Handle<MyPDFObj> object) {
    std::vector<Handle<MyPDFObj>> objects;
    objects.push_back(std::move(object));
    GraphRelease::release(std::move(objects));
}

Handle<MyPDFDictionary> ringOfTwo() {
    Handle<MyPDFDictionary> page = MyPDFDictionary::make();
    const Handle<MyPDFDictionary> annotation = MyPDFDictionary::make();
    page->setObject(annotation, u"Annot");
    annotation->setObject(page, u"P");
    annotation->setInteger(1, u"F");
    return page;
}

}  // namespace

TEST(PdfGraphRelease, EndsARingThatNobodyElseHolds) {
    const int64_t before = MyPDFObj::allocated();
    giveUp(ringOfTwo());
    EXPECT_EQ(MyPDFObj::allocated(), before);
}

TEST(PdfGraphRelease, LeavesARingWholeThatAHandleLeadsTo) {
    Handle<MyPDFDictionary> page = ringOfTwo();
    const Handle<MyPDFDictionary> annotation = subDictionary(page, u"Annot");
    giveUp(std::move(page));
    EXPECT_EQ(annotation->integerForKey(u"F"), 1);
    EXPECT_EQ(subDictionary(annotation, u"P")->objectForKeyedSubscript(u"Annot"), annotation);
    annotation->setObject(nullptr, u"P");
}

TEST(PdfGraphRelease, LeavesWhatIsSharedWithAGraphInUse) {
    const Handle<MyPDFDictionary> shared = MyPDFDictionary::make();
    shared->setObject(MyPDFArray::array(), u"Kept");
    const Handle<MyPDFDictionary> user = MyPDFDictionary::make();
    user->setObject(shared, u"Resources");
    Handle<MyPDFDictionary> page = ringOfTwo();
    page->setObject(shared, u"Resources");
    const int64_t before = MyPDFObj::allocated();
    giveUp(std::move(page));
    EXPECT_EQ(MyPDFObj::allocated(), before - 3);
    EXPECT_EQ(shared->numberOfChildren(), 1);
}

TEST(PdfGraphRelease, LeavesAContainerWholeWhoseListSomebodyHolds) {
    Handle<MyPDFDictionary> page = ringOfTwo();
    const ObjectMap map = page->dictionary();
    giveUp(std::move(page));
    EXPECT_EQ(map.count(), 1U);
    map.removeAll();
}

TEST(PdfGraphRelease, IsDoneByADocumentThatGoes) {
    const int64_t before = MyPDFObj::allocated();
    {
        const Handle<MyPDFDoc> document = documentOfPages(2);
        const Handle<MyPDFDictionary> first = document->pages()[0];
        first->setObject(ringOfTwo(), u"Annots");
        subDictionary(first, u"Annots")->setObject(first, u"P");
        subDictionary(first, u"Annots")->setObject(document->pages()[1], u"Dest");
    }
    EXPECT_EQ(MyPDFObj::allocated(), before);
}

TEST(PdfGraphRelease, IsDoneForARingThatLeftTheDocumentWhenItIsWritten) {
    const Handle<MyPDFDoc> document = documentOfPages(2);
    document->pages()[1]->setObject(arrayOf({document->pages()[1]}), u"Ring");
    EXPECT_GT(document->pdfData().length(), 0U);
    const int64_t before = MyPDFObj::allocated();
    document->deleteLastPage();
    EXPECT_GT(document->pdfData().length(), 0U);
    EXPECT_LT(MyPDFObj::allocated(), before - 5);
}

TEST(PdfGraphRelease, KeepsPagesThatAnotherDocumentHasTaken) {
    const Handle<MyPDFDoc> target = MyPDFDoc::pdfDoc();
    {
        const Handle<MyPDFDoc> source = documentOfPages(1);
        source->pages()[0]->setObject(ringOfTwo(), u"Annots");
        subDictionary(source->pages()[0], u"Annots")->setObject(source->pages()[0], u"P");
        target->pages().add(source->pages()[0]);
        target->rebuildPageList(0);
    }
    EXPECT_EQ(contentsOfKids(target->pagesObj()), std::vector<std::string>{"page 0"});
    EXPECT_EQ(target->pages()[0]->mediaBox(), (Rect{0, 0, 100, 200}));
}

}  // namespace vornaset
