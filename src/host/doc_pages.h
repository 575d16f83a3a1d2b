#pragma once
// Pages and spreads of a document by number. Indices count from 0 where nothing else is said. Lengths are points; a
// flag named `mm` asks for millimetres when it equals 1.

#include "host/api/documents.h"
#include "host/api/types.h"

namespace vornaset {

/// A negative index means the last page; 0 for an index behind it and for a missing document.
UID pageUIDForDoc(const UIDRef& document, int32_t index);
UID pageUIDForDoc(IDocument* document, int32_t index);
/// -1 for a page that isn't in the document, and for a null document.
int32_t pageIndexForDoc(IDocument* document, UID page);
int32_t pgNumForPageUID(IDocument* document, UID page);

/// The page's edge; zeros for a missing page. The index as in `pageUIDForDoc`.
PMRect pageRectForDoc(IDocument* document, int32_t index, uint8_t mm);
/// Distances from the page's left, top, right and bottom edge; zeros when missing.
PMRect marginsForPage(const UIDRef& page);
PMRect marginsForDoc(IDocument* document, int32_t index);
/// What lies inside of the margins.
PMRect pageRectForDocWithoutMargins(IDocument* document, int32_t index);
/// Of page 0, whatever the index. Zeros for a reference that names no document.
PMRect pageRectForDocWithoutMargins(const UIDRef& document, int32_t index);

/// A null document, and a reference that names none, mean the front document; 0 when none is open.
int32_t pageCntForDoc(IDocument* document);
int32_t pageCntForDoc(const UIDRef& document);
/// 0 for a null document.
int32_t spreadCntForDoc(IDocument* document);
int32_t spreadCntForDoc(const UIDRef& document);
/// The pages of a spread; 0 when something is missing.
int32_t pageCntForSpread(const UIDRef& document, int32_t index);
/// The spread's index in its document; -1 when missing.
int32_t spreadNumForSpread(const UIDRef& spread);
/// The index isn't checked. A null reference for a null document.
UIDRef spreadRefForDoc(IDocument* document, int32_t index);

/// Appends all pages in order.
void setupPageUIDs(IDocument* document, UIDList* pages);
/// The bounds of the spread's pages in its own coordinates.
PMRect getPagesBounds(ISpread* spread);

}  // namespace vornaset
