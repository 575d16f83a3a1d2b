#pragma once
// An open document: the handle, the front document and a document's path.

#include "host/api/host.h"
#include "host/enumerators.h"
#include "support/values.h"

namespace vornaset {

/// The document in front, without a reference for the caller: good while it is open. Null when none is open.
IDocument* frontDoc();
/// The same as a reference; null database and UID 0 when none is open.
UIDRef frontDocRef();

/// The file that a document was saved to, else the file it was read from. Null for a missing or closed document and for
/// one with neither.
String pathForDoc(IDataBase* database);
String pathForDoc(IDocument* document);
String pathForDoc(const UIDRef& document);

/// Handle on one open document. Counts no reference: good while the host keeps the document open. All three fields may
/// be empty; every member tests the field that it uses.
class MyDoc {
  public:
    MyDoc() = default;
    /// A null database or an object that is no document leaves the document null.
    explicit MyDoc(const UIDRef& document);
    /// Null means the front document. The path stays null.
    explicit MyDoc(IDocument* document);

    /// Empties all fields. 0.
    int32_t init();

    IDocument* document() const { return document_; }
    IDataBase* database() const { return database_; }
    const String& path() const { return path_; }

    // Walks, told in host/enumerators.h. 1 when the walk ran to the end or there was nothing to walk, 0 when a callback
    // stopped it.
    /// All content layers of one spread, with this document's layer list.
    uint8_t enumSpread(ISpread* spread, ItemCallback callback, void* data) const;
    uint8_t enumSpreads(SpreadCallback callback, void* data) const;
    /// Of every spread, the items on one document layer.
    uint8_t enumSpreads(IDocumentLayer* layer, ItemCallback callback, void* data) const;
    /// The same by reference; 0 for a reference that names no layer.
    uint8_t enumSpreads(const UIDRef& layer, ItemCallback callback, void* data) const;
    /// All content layers of all spreads.
    uint8_t enumBoxes(ItemCallback callback, void* data) const;
    /// Forwards to `enumBoxes`: items of hidden layers are visited.
    uint8_t enumVisibleBoxes(ItemCallback callback, void* data) const;
    uint8_t enumDocLayers(DocumentLayerCallback callback, void* data) const;
    uint8_t enumStories(StoryCallback callback, void* data) const;

  private:
    IDocument* document_ = nullptr;
    IDataBase* database_ = nullptr;
    String path_;
};

}  // namespace vornaset
