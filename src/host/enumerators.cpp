#include "host/enumerators.h"

#include "host/api/host.h"
#include "host/host_operations.h"
#include "host/my_doc.h"
#include "host/my_frame.h"

namespace vornaset {

namespace {

using HierarchyWalk = uint8_t (*)(IPMUnknown*, ItemCallback, void*);
enum class Layers { All, Printable };

uint8_t enumLayer(ISpread* spread, IDocumentLayer* layer, HierarchyWalk walk, ItemCallback callback, void* data) {
    InterfacePtr<ISpreadLayer> items(Adopt::Reference, layer ? spread->QueryLayer(layer, LayerPart::Content) : nullptr);
    return walk(items.get(), callback, data);
}

/// The layers of a spread by a document's layer list. A null layer entry is passed over where printability is asked
/// for; else it gives no spread layer, which ends the walk as a missing spread layer does.
uint8_t enumLayers(ISpread* spread, IDocument* document, Layers which, HierarchyWalk walk, ItemCallback callback,
                   void* data) {
    InterfacePtr<ILayerList> layers(document);
    if (!layers) return 1;
    const int32_t count = layers->GetCount();
    for (int32_t index = 1; index < count; ++index) {
        InterfacePtr<IDocumentLayer> layer(Adopt::Reference, layers->QueryLayer(index));
        if (which == Layers::Printable && (!layer || layer->IsPrintable() != 1)) continue;
        if (!enumLayer(spread, layer.get(), walk, callback, data)) return 0;
    }
    return 1;
}

uint8_t enumSpreadWith(ISpread* spread, Layers which, HierarchyWalk walk, ItemCallback callback, void* data) {
    if (!spread) return 1;
    InterfacePtr<IDocument> document = documentOfDataBase(::GetDataBase(spread));
    return document ? enumLayers(spread, document.get(), which, walk, callback, data) : 1;
}

/// Each spread's interface, null where the list names something else.
template <class Visit>
uint8_t forEachSpread(const UIDRef& document, Visit visit) {
    InterfacePtr<ISpreadList> spreads(document);
    if (!spreads) return 1;
    const int32_t count = spreads->GetSpreadCount();
    for (int32_t index = 0; index < count; ++index) {
        InterfacePtr<ISpread> spread(document.GetDataBase(), spreads->GetNthSpreadUID(index));
        if (!visit(spread.get())) return 0;
    }
    return 1;
}

}  // namespace

// --- Hierarchies

uint8_t EnumHierarchy(IHierarchy* hierarchy, ItemCallback callback, void* data) {
    if (!hierarchy) return 0;
    IDataBase* database = ::GetDataBase(hierarchy);
    for (int32_t index = hierarchy->GetChildCount() - 1; index >= 0; --index) {
        UIDRef child(database, hierarchy->GetChildUID(index));
        if (!callback(child, data)) return 0;
    }
    return 1;
}

uint8_t EnumHierarchy(IPMUnknown* object, ItemCallback callback, void* data) {
    return EnumHierarchy(InterfacePtr<IHierarchy>(object).get(), callback, data);
}

uint8_t EnumHierarchy(IDataBase* database, UID uid, ItemCallback callback, void* data) {
    return EnumHierarchy(InterfacePtr<IHierarchy>(database, uid).get(), callback, data);
}

uint8_t EnumHierarchy2(IHierarchy* hierarchy, ItemCallback callback, void* data) {
    if (!hierarchy) return 0;
    IDataBase* database = ::GetDataBase(hierarchy);
    for (int32_t index = hierarchy->GetChildCount() - 1; index >= 0; --index) {
        MyFrame child(database, hierarchy->GetChildUID(index));
        const uint8_t goOn =
            child.isGroup() == 1 ? EnumHierarchy2(database, child.GetUID(), callback, data) : callback(child, data);
        if (!goOn) return 0;
    }
    return 1;
}

uint8_t EnumHierarchy2(IPMUnknown* object, ItemCallback callback, void* data) {
    return EnumHierarchy2(InterfacePtr<IHierarchy>(object).get(), callback, data);
}

uint8_t EnumHierarchy2(IDataBase* database, UID uid, ItemCallback callback, void* data) {
    return EnumHierarchy2(InterfacePtr<IHierarchy>(database, uid).get(), callback, data);
}

// --- Spreads

uint8_t EnumSpread(ISpread* spread, ItemCallback callback, void* data) {
    return enumSpreadWith(spread, Layers::All, &EnumHierarchy, callback, data);
}

uint8_t EnumSpread(const UIDRef& spread, ItemCallback callback, void* data) {
    if (!spread.GetDataBase() || spread.GetUID() == kInvalidUID) return 0;
    InterfacePtr<ISpread> found(spread);
    return found ? EnumSpread(found.get(), callback, data) : 0;
}

uint8_t EnumSpread2(ISpread* spread, ItemCallback callback, void* data) {
    return enumSpreadWith(spread, Layers::All, &EnumHierarchy2, callback, data);
}

uint8_t EnumSpreadPrintable(ISpread* spread, ItemCallback callback, void* data) {
    return enumSpreadWith(spread, Layers::Printable, &EnumHierarchy, callback, data);
}

uint8_t MyDoc::enumSpread(ISpread* spread, ItemCallback callback, void* data) const {
    if (!spread || !document_) return 1;
    return enumLayers(spread, document_, Layers::All, &EnumHierarchy, callback, data);
}

uint8_t EnumSpreads(const UIDRef& document, SpreadCallback callback, void* data) {
    return forEachSpread(document, [=](ISpread* spread) { return spread ? callback(spread, data) : uint8_t{1}; });
}

uint8_t EnumSpreads(IDocument* document, SpreadCallback callback, void* data) {
    return EnumSpreads(::GetUIDRef(document), callback, data);
}

uint8_t MyDoc::enumSpreads(IDocumentLayer* layer, ItemCallback callback, void* data) const {
    if (!document_) return 1;
    return forEachSpread(::GetUIDRef(document_), [=](ISpread* spread) {
        return spread ? enumLayer(spread, layer, &EnumHierarchy, callback, data) : uint8_t{1};
    });
}

uint8_t MyDoc::enumSpreads(const UIDRef& layer, ItemCallback callback, void* data) const {
    InterfacePtr<IDocumentLayer> found(layer);
    return found ? enumSpreads(found.get(), callback, data) : 0;
}

// --- Page items of a document

uint8_t MyDoc::enumBoxes(ItemCallback callback, void* data) const {
    if (!document_) return 1;
    return forEachSpread(::GetUIDRef(document_),
                         [=, this](ISpread* spread) { return enumSpread(spread, callback, data); });
}

uint8_t EnumBoxes(IDocument* document, ItemCallback callback, void* data) {
    return MyDoc(document).enumBoxes(callback, data);
}

uint8_t EnumBoxes(const UIDRef& document, ItemCallback callback, void* data) {
    return EnumBoxes(InterfacePtr<IDocument>(document).get(), callback, data);
}

uint8_t EnumBoxes(IDataBase* database, ItemCallback callback, void* data) {
    return EnumBoxes(UIDRef(database, database->GetRootUID()), callback, data);
}

uint8_t EnumBoxes(const UIDRef& document, int spreadNum, ItemCallback callback, void* data) {
    InterfacePtr<ISpreadList> spreads(document);
    if (!spreads) return 1;
    return EnumSpread(UIDRef(document.GetDataBase(), spreads->GetNthSpreadUID(spreadNum - 1)), callback, data);
}

uint8_t EnumBoxes(const UIDList& items, ItemCallback callback, void* data) {
    for (int32_t index = 0; index < items.Length(); ++index) {
        UIDRef item = items.GetRef(index);
        if (!callback(item, data)) return 0;
    }
    return 1;
}

uint8_t EnumFrames(const UIDList& items, ItemCallback callback, void* data) {
    return EnumBoxes(items, callback, data);
}

// --- Stories and what is anchored in them

uint8_t EnumStories(IDocument* document, StoryCallback callback, void* data) {
    InterfacePtr<IStoryList> stories(document);
    if (!stories) return 1;
    const int32_t count = stories->GetStoryCount();
    for (int32_t index = 0; index < count; ++index) {
        InterfacePtr<ITextModel> story(stories->GetNthStory(index));
        if (story && !callback(story.get(), data)) return 0;
    }
    return 1;
}

uint8_t EnumStories(const UIDRef& document, StoryCallback callback, void* data) {
    return EnumStories(InterfacePtr<IDocument>(document).get(), callback, data);
}

uint8_t EnumAnchoredBoxes(ITextModel* story, AnchoredFrameCallback callback, int start, int end, void* data) {
    InterfacePtr<IOwnedItemStrand> strand(story);
    if (!strand) return 1;
    const UIDRef storyRef = ::GetUIDRef(story);
    K2Vector<OwnedItemRecord> anchored;
    strand->CollectOwnedItems(start, end == -1 ? story->TotalLength() - 1 : end, anchored);
    for (const OwnedItemRecord& record : anchored) {
        if (!InterfacePtr<IAnchoredObject>(storyRef.GetDataBase(), record.item)) continue;
        InterfacePtr<IHierarchy> anchor(storyRef.GetDataBase(), record.item);
        if (!anchor || anchor->GetChildCount() < 1) continue;
        UIDRef frame(storyRef.GetDataBase(), anchor->GetChildUID(0));
        UIDRef holder = storyRef;
        if (!callback(frame, holder, record.position, data)) return 0;
    }
    return 1;
}

uint8_t EnumAnchoredBoxes(const UIDRef& story, AnchoredFrameCallback callback, int start, int end, void* data) {
    return EnumAnchoredBoxes(InterfacePtr<ITextModel>(story).get(), callback, start, end, data);
}

uint8_t EnumAnchoredBoxes(const UIDRef& story, AnchoredFrameCallback callback, void* data) {
    return EnumAnchoredBoxes(story, callback, 0, -1, data);
}

// --- Open documents and their layers

uint8_t EnumDocs(DocumentCallback callback, void* data) {
    IExecutionContextSession* session = ::GetExecutionContextSession();
    if (!session) return 1;
    InterfacePtr<IApplication> application(Adopt::Reference, session->QueryApplication());
    if (!application) return 1;
    InterfacePtr<IDocumentList> documents(Adopt::Reference, application->QueryDocumentList());
    if (!documents) return 1;
    const int32_t count = documents->GetDocCount();
    for (int32_t index = 0; index < count; ++index) {
        IDocument* document = documents->GetNthDoc(index);
        if (document && !callback(document, pathForDoc(document), data)) return 0;
    }
    return 1;
}

uint8_t EnumDocLayers(const UIDRef& document, DocumentLayerCallback callback, void* data) {
    InterfacePtr<ILayerList> layers(document);
    if (!layers) return 1;
    const int32_t count = layers->GetCount();
    for (int32_t index = 1; index < count; ++index) {
        InterfacePtr<IDocumentLayer> layer(Adopt::Reference, layers->QueryLayer(index));
        const String name = layer ? stringWithPMString(layer->GetName()) : String();
        if (!callback(layer.get(), name, data)) return 0;
    }
    return 1;
}

uint8_t EnumDocLayers(IDocument* document, DocumentLayerCallback callback, void* data) {
    return EnumDocLayers(::GetUIDRef(document), callback, data);
}

}  // namespace vornaset
