#include "host/doc_pages.h"

#include <algorithm>

#include "host/api/host.h"
#include "host/frame_geometry.h"
#include "host/host_operations.h"
#include "host/my_doc.h"
#include "host/my_frame.h"

namespace vornaset {

namespace {

UIDRef pageRefOf(IDocument* document, int32_t index) {
    return UIDRef(document ? ::GetDataBase(document) : nullptr, pageUIDForDoc(document, index));
}

}  // namespace

// --- Pages

UID pageUIDForDoc(const UIDRef& document, int32_t index) {
    InterfacePtr<IPageList> pages(document);
    if (!pages) return kInvalidUID;
    const int32_t count = pages->GetPageCount();
    const int32_t place = index < 0 ? count - 1 : index;
    return place >= 0 && place < count ? pages->GetNthPageUID(place) : kInvalidUID;
}

UID pageUIDForDoc(IDocument* document, int32_t index) {
    return pageUIDForDoc(::GetUIDRef(document), index);
}

int32_t pageIndexForDoc(IDocument* document, UID page) {
    InterfacePtr<IPageList> pages(document);
    return pages ? pages->GetPageIndex(page) : -1;
}

int32_t pgNumForPageUID(IDocument* document, UID page) {
    return pageIndexForDoc(document, page);
}

PMRect pageRectForDoc(IDocument* document, int32_t index, uint8_t mm) {
    return MyFrame(pageRefOf(document, index)).bounds(mm);
}

PMRect marginsForPage(const UIDRef& page) {
    InterfacePtr<IMargins> margins(page);
    return margins ? margins->GetMargins() : PMRect();
}

PMRect marginsForDoc(IDocument* document, int32_t index) {
    return marginsForPage(pageRefOf(document, index));
}

PMRect pageRectForDocWithoutMargins(IDocument* document, int32_t index) {
    const PMRect page = pageRectForDoc(document, index, 0);
    const PMRect margins = marginsForDoc(document, index);
    return {page.left + margins.left, page.top + margins.top, page.right - margins.right, page.bottom - margins.bottom};
}

PMRect pageRectForDocWithoutMargins(const UIDRef& document, int32_t) {
    InterfacePtr<IDocument> found(document);
    return found ? pageRectForDocWithoutMargins(found.get(), 0) : PMRect();
}

int32_t pageCntForDoc(IDocument* document) {
    InterfacePtr<IPageList> pages(document ? document : frontDoc());
    return pages ? pages->GetPageCount() : 0;
}

int32_t pageCntForDoc(const UIDRef& document) {
    return pageCntForDoc(InterfacePtr<IDocument>(document).get());
}

void setupPageUIDs(IDocument* document, UIDList* pages) {
    InterfacePtr<IPageList> list(document);
    if (!list || !pages) return;
    const int32_t count = list->GetPageCount();
    for (int32_t index = 0; index < count; ++index) pages->Append(list->GetNthPageUID(index));
}

// --- Spreads

int32_t spreadCntForDoc(IDocument* document) {
    InterfacePtr<ISpreadList> spreads(document);
    return spreads ? spreads->GetSpreadCount() : 0;
}

int32_t spreadCntForDoc(const UIDRef& document) {
    return spreadCntForDoc(InterfacePtr<IDocument>(document).get());
}

int32_t pageCntForSpread(const UIDRef& document, int32_t index) {
    InterfacePtr<ISpreadList> spreads(document);
    if (!spreads) return 0;
    InterfacePtr<ISpread> spread(document.GetDataBase(), spreads->GetNthSpreadUID(index));
    return spread ? spread->GetNumPages() : 0;
}

int32_t spreadNumForSpread(const UIDRef& spread) {
    InterfacePtr<IDocument> document = documentOfDataBase(spread.GetDataBase());
    InterfacePtr<ISpreadList> spreads(document.get());
    return spreads ? spreads->GetSpreadIndex(spread.GetUID()) : -1;
}

UIDRef spreadRefForDoc(IDocument* document, int32_t index) {
    InterfacePtr<ISpreadList> spreads(document);
    return spreads ? UIDRef(::GetDataBase(document), spreads->GetNthSpreadUID(index)) : UIDRef();
}

PMRect getPagesBounds(ISpread* spread) {
    return spread->GetPagesBounds(PMMatrix());
}

// --- The handle

UIDRef MyDoc::getSpreadRef(int32_t index) const {
    return spreadRefForDoc(document_, index);
}

UIDList MyDoc::spreadList() const {
    UIDList spreads(database_);
    enumSpreads(
        [](ISpread* spread, void* list) -> unsigned char {
            static_cast<UIDList*>(list)->Append(::GetUID(spread));
            return 1;
        },
        &spreads);
    return spreads;
}

UIDRef MyDoc::getPageRef(int32_t index, UIDRef* spread, int32_t* indexInSpread) const {
    InterfacePtr<IPageList> pages(document_);
    if (!pages) return UIDRef::gNull;
    const UIDRef page(database_, pages->GetNthPageUID(index));
    if (!spread) return page;
    *spread = getParentRef(getParentRef(page));
    InterfacePtr<ISpread> found(*spread);
    if (indexInSpread && found) *indexInSpread = found->GetPageIndex(page.GetUID());
    return page;
}

int32_t MyDoc::getNumPages() const {
    InterfacePtr<IPageList> pages(document_);
    return pages ? pages->GetPageCount() : 0;
}

int32_t MyDoc::getNumSpreads() const {
    return spreadCntForDoc(document_);
}

UIDList MyDoc::pageRange(int32_t first, int32_t last) const {
    UIDList range(database_);
    InterfacePtr<IPageList> pages(document_);
    if (!pages) return range;
    const int32_t end = std::min(last, pages->GetPageCount());
    for (int32_t number = std::max(first, 1); number <= end; ++number) range.Append(pages->GetNthPageUID(number - 1));
    return range;
}

PMRect MyDoc::getSpreadBounds(int32_t index, int32_t* pageCount) const {
    InterfacePtr<ISpread> spread(getSpreadRef(index));
    if (!spread) return {};
    if (pageCount) *pageCount = spread->GetNumPages();
    return getPagesBounds(spread.get());
}

}  // namespace vornaset
