#include "host/doc_pages.h"

#include <gmock/gmock.h>

#include "host/my_doc.h"
#include "host_fixture.h"

using namespace vornaset;
using ::testing::ElementsAre;

namespace {

class DocPagesTest : public desk::testing::HostFixture {
  protected:
    DocPagesTest() { second = &addPage(); }
    static std::vector<desk::Uid> uidsOf(const UIDList& list) {
        std::vector<desk::Uid> uids;
        for (int32_t index = 0; index < list.Length(); ++index) uids.push_back(list[index].Get());
        return uids;
    }
    IDocument* front() const { return frontDoc(); }
    desk::Page* second = nullptr;
};

TEST_F(DocPagesTest, NegativeIndexMeansTheLastPageAndOneBehindItNone) {
    EXPECT_EQ(pageUIDForDoc(documentRef(), 0), UID(page->uid));
    EXPECT_EQ(pageUIDForDoc(documentRef(), -1), UID(second->uid));
    EXPECT_EQ(pageUIDForDoc(front(), -5), UID(second->uid));
    EXPECT_EQ(pageUIDForDoc(documentRef(), 2), kInvalidUID);
    EXPECT_EQ(pageUIDForDoc(UIDRef(), 0), kInvalidUID);
    EXPECT_EQ(pageUIDForDoc(static_cast<IDocument*>(nullptr), 0), kInvalidUID);
}

TEST_F(DocPagesTest, PageHasItsIndex) {
    EXPECT_EQ(pageIndexForDoc(front(), UID(second->uid)), 1);
    EXPECT_EQ(pgNumForPageUID(front(), UID(page->uid)), 0);
    EXPECT_EQ(pageIndexForDoc(front(), UID(9999)), -1);
    EXPECT_EQ(pageIndexForDoc(nullptr, UID(page->uid)), -1);
}

TEST_F(DocPagesTest, PageRectangleIsItsEdge) {
    page->bounds = {0, 0, 144, 72};
    EXPECT_EQ(pageRectForDoc(front(), 0, 0), PMRect(0, 0, 144, 72));
    EXPECT_EQ(pageRectForDoc(front(), 0, 1), PMRect(0, 0, 50.8, 25.4));
    EXPECT_EQ(pageRectForDoc(nullptr, 0, 0), PMRect());
}

TEST_F(DocPagesTest, MarginsAreTakenOffEveryEdge) {
    page->bounds = {0, 0, 100, 200};
    page->margins = {1, 2, 3, 4};
    EXPECT_EQ(marginsForPage(ref(page->uid)), PMRect(1, 2, 3, 4));
    EXPECT_EQ(marginsForDoc(front(), 0), PMRect(1, 2, 3, 4));
    EXPECT_EQ(pageRectForDocWithoutMargins(front(), 0), PMRect(1, 2, 97, 196));
}

TEST_F(DocPagesTest, MissingMarginsAreZeros) {
    EXPECT_EQ(marginsForPage(UIDRef()), PMRect());
    EXPECT_EQ(marginsForDoc(nullptr, 0), PMRect());
}

TEST_F(DocPagesTest, RectangleWithoutMarginsByReferenceIsThatOfPageZero) {
    page->bounds = {0, 0, 100, 200};
    second->bounds = {0, 0, 50, 60};
    EXPECT_EQ(pageRectForDocWithoutMargins(documentRef(), 1), pageRectForDocWithoutMargins(front(), 0));
    EXPECT_EQ(pageRectForDocWithoutMargins(UIDRef(), 0), PMRect());
}

TEST_F(DocPagesTest, NullDocumentCountsTheFrontDocumentsPagesButNoSpreads) {
    EXPECT_EQ(pageCntForDoc(static_cast<IDocument*>(nullptr)), 2);
    EXPECT_EQ(pageCntForDoc(UIDRef()), 2);
    EXPECT_EQ(pageCntForDoc(documentRef()), 2);
    EXPECT_EQ(spreadCntForDoc(static_cast<IDocument*>(nullptr)), 0);
    EXPECT_EQ(spreadCntForDoc(UIDRef()), 0);
    EXPECT_EQ(spreadCntForDoc(documentRef()), 2);
    border.close(document);
    EXPECT_EQ(pageCntForDoc(static_cast<IDocument*>(nullptr)), 0);
}

TEST_F(DocPagesTest, SpreadHasItsPagesAndItsIndex) {
    document.addPage(*spread);
    EXPECT_EQ(pageCntForSpread(documentRef(), 0), 2);
    EXPECT_EQ(pageCntForSpread(documentRef(), 1), 1);
    EXPECT_EQ(pageCntForSpread(documentRef(), 2), 0);
    EXPECT_EQ(pageCntForSpread(UIDRef(), 0), 0);
    EXPECT_EQ(spreadNumForSpread(ref(second->spread)), 1);
    EXPECT_EQ(spreadNumForSpread(UIDRef()), -1);
    EXPECT_EQ(spreadRefForDoc(front(), 1), ref(second->spread));
    EXPECT_EQ(spreadRefForDoc(nullptr, 0), UIDRef());
}

TEST_F(DocPagesTest, HandleListsSpreadsAndPages) {
    const MyDoc handle(documentRef());
    EXPECT_THAT(uidsOf(handle.spreadList()), ElementsAre(spread->uid, second->spread));
    EXPECT_EQ(handle.getSpreadRef(1), ref(second->spread));
    EXPECT_EQ(handle.getNumPages(), 2);
    EXPECT_EQ(handle.getNumSpreads(), 2);
    UIDList pages(database);
    setupPageUIDs(front(), &pages);
    EXPECT_THAT(uidsOf(pages), ElementsAre(page->uid, second->uid));
    EXPECT_EQ(MyDoc().getNumPages(), 0);
    EXPECT_EQ(MyDoc().getNumSpreads(), 0);
}

TEST_F(DocPagesTest, PageRangeCountsFromOneAndKeepsInsideTheDocument) {
    const MyDoc handle(documentRef());
    EXPECT_THAT(uidsOf(handle.pageRange(0, 3)), ElementsAre(page->uid, second->uid));
    EXPECT_THAT(uidsOf(handle.pageRange(2, 2)), ElementsAre(second->uid));
    EXPECT_TRUE(handle.pageRange(3, 2).IsEmpty());
    EXPECT_TRUE(MyDoc().pageRange(1, 2).IsEmpty());
}

TEST_F(DocPagesTest, SpreadBoundsComeWithThePageCount) {
    page->bounds = {0, 0, 100, 200};
    int32_t count = 0;
    EXPECT_EQ(MyDoc(documentRef()).getSpreadBounds(0, &count), PMRect(0, 0, 100, 200));
    EXPECT_EQ(count, 1);
}

TEST_F(DocPagesTest, PageReferenceComesWithTheSpreadAndTheIndexThere) {
    const MyDoc handle(documentRef());
    desk::Page& right = document.addPage(*document.spread(second->spread));
    UIDRef of;
    int32_t index = -1;
    EXPECT_EQ(handle.getPageRef(2, &of, &index), ref(right.uid));
    EXPECT_EQ(of, ref(second->spread));
    EXPECT_EQ(index, 1);
    EXPECT_EQ(handle.getPageRef(0, &of, nullptr), ref(page->uid));
    EXPECT_EQ(of, ref(spread->uid));
}

TEST_F(DocPagesTest, PageReferenceWithoutADocumentLeavesTheOutputsAlone) {
    UIDRef of = ref(7);
    int32_t index = 5;
    EXPECT_EQ(MyDoc().getPageRef(0, &of, &index), UIDRef::gNull);
    EXPECT_EQ(of, ref(7));
    EXPECT_EQ(index, 5);
    EXPECT_EQ(MyDoc(documentRef()).getPageRef(1, nullptr, nullptr), ref(second->uid));
}

}  // namespace
