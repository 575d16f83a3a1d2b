#pragma once
// Walking over a document: spreads, layers, page items, stories, anchored frames, open documents.
//
// A walker takes a callback and a data pointer that it hands back unchanged. A callback returns 0 to stop, anything
// else to go on. A walker returns 1 when it ran to the end and 0 when a callback stopped it; a nested walk that was
// stopped stops all the walks around it. What a missing subject gives differs and is told at each walker.
//
// The UIDRef& that a callback gets is the walker's own temporary: it may be changed, its address may not be kept. An
// interface that a callback gets is good during the call.
//
// Page items are walked from the top of the stacking order down; everything else from first to last.

#include "host/api/documents.h"
#include "host/api/page_items.h"
#include "host/api/text.h"
#include "support/values.h"

namespace vornaset {

using ItemCallback = unsigned char (*)(UIDRef& item, void* data);
using SpreadCallback = unsigned char (*)(ISpread* spread, void* data);
using DocumentCallback = unsigned char (*)(IDocument* document, const String& path, void* data);
using DocumentLayerCallback = unsigned char (*)(IDocumentLayer* layer, const String& name, void* data);
using StoryCallback = unsigned char (*)(ITextModel* story, void* data);
using AnchoredFrameCallback = unsigned char (*)(UIDRef& frame, UIDRef& story, int position, void* data);

// Direct children, groups handed over whole. 0 for a missing object or one without a hierarchy; 1 without children.
uint8_t EnumHierarchy(IHierarchy* hierarchy, ItemCallback callback, void* data);
uint8_t EnumHierarchy(IPMUnknown* object, ItemCallback callback, void* data);
uint8_t EnumHierarchy(IDataBase* database, UID uid, ItemCallback callback, void* data);

// Leaves: a group is entered and never handed over itself. A group without a hierarchy ends the whole walk with 0.
uint8_t EnumHierarchy2(IHierarchy* hierarchy, ItemCallback callback, void* data);
uint8_t EnumHierarchy2(IPMUnknown* object, ItemCallback callback, void* data);
uint8_t EnumHierarchy2(IDataBase* database, UID uid, ItemCallback callback, void* data);

// Every content layer of a spread, from the document's layer 1 on (0 is the host's own). 1 for a null spread. A layer
// that the spread has no spread layer for ends the walk with 0.
uint8_t EnumSpread(ISpread* spread, ItemCallback callback, void* data);
/// 0 for a null database, UID 0 and an object that is no spread.
uint8_t EnumSpread(const UIDRef& spread, ItemCallback callback, void* data);
/// Groups are entered.
uint8_t EnumSpread2(ISpread* spread, ItemCallback callback, void* data);
/// Only layers whose printable flag equals 1.
uint8_t EnumSpreadPrintable(ISpread* spread, ItemCallback callback, void* data);

// Each spread of a document. 1 for a missing document.
uint8_t EnumSpreads(const UIDRef& document, SpreadCallback callback, void* data);
uint8_t EnumSpreads(IDocument* document, SpreadCallback callback, void* data);

// All items of all content layers of all spreads. 1 for a missing document.
/// Null means the front document.
uint8_t EnumBoxes(IDocument* document, ItemCallback callback, void* data);
/// A reference that names no document means the front document.
uint8_t EnumBoxes(const UIDRef& document, ItemCallback callback, void* data);
/// The database must not be null.
uint8_t EnumBoxes(IDataBase* database, ItemCallback callback, void* data);
/// One spread, counted from 1 and not checked. 1 for a missing document; 0 where the number names no spread.
uint8_t EnumBoxes(const UIDRef& document, int spreadNum, ItemCallback callback, void* data);

// Each entry of a list. 1 for an empty one.
uint8_t EnumBoxes(const UIDList& items, ItemCallback callback, void* data);
uint8_t EnumFrames(const UIDList& items, ItemCallback callback, void* data);

// Each story of a document that is there when the walk begins. 1 for a missing document.
uint8_t EnumStories(IDocument* document, StoryCallback callback, void* data);
uint8_t EnumStories(const UIDRef& document, StoryCallback callback, void* data);

// Frames anchored in a text range, UTF-16 units from 0. An end of -1 means the last character before the terminal one.
// 1 for a missing story and one that holds no anchored object.
uint8_t EnumAnchoredBoxes(ITextModel* story, AnchoredFrameCallback callback, int start, int end, void* data);
uint8_t EnumAnchoredBoxes(const UIDRef& story, AnchoredFrameCallback callback, int start, int end, void* data);
uint8_t EnumAnchoredBoxes(const UIDRef& story, AnchoredFrameCallback callback, void* data);  ///< the whole story

/// Open documents in the application's order, with their paths (null for one that never was a file). 1 without a
/// session. The count is read once: documents that the callback closes are passed over.
uint8_t EnumDocs(DocumentCallback callback, void* data);

// Layers of a document from layer 1 on, with their names. 1 for a missing document.
uint8_t EnumDocLayers(const UIDRef& document, DocumentLayerCallback callback, void* data);
uint8_t EnumDocLayers(IDocument* document, DocumentLayerCallback callback, void* data);

}  // namespace vornaset
