#pragma once
// An open document: the handle, the front document and a document's path.

#include <memory>

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

    // Files, told in host/doc_files.h.
    /// Of the front document; when none is open and the flag equals 1, of a new one. Null when there is none.
    static std::unique_ptr<MyDoc> frontDoc(uint8_t create);
    /// Opens the file; null when that fails. The second argument isn't used.
    static std::unique_ptr<MyDoc> docWithPath(const String& path, uint32_t);
    /// Opens the file, and the handle is on the document that is in front then. 0, else the host's error or -1 for a
    /// host that can't open files; the handle stays as it was then.
    int16_t open(const String& path);
    /// The path that it was opened with, else the document's; for a flag of 1 the folder of it.
    String getPath(uint8_t folderOnly) const;
    /// The file's name, for a flag of 0 without its extension.
    String getName(uint8_t keepExtension) const;
    int16_t save() const;
    int16_t saveAs(const String& path) const;
    /// Removes an existing file before the host is asked: it goes even when the copy is refused.
    int16_t saveACopy(const String& path) const;
    void close() const;  ///< the handle stays as it is and is of no use any more
    void redraw() const;
    /// Nothing for a closed document.
    void setModified(uint8_t modified) const;

    // Pages and spreads, told in host/doc_pages.h. Indices from 0, not checked.
    UIDRef getSpreadRef(int32_t index) const;
    UIDList spreadList() const;
    /// The page; `UIDRef::gNull` without a document. Its spread goes to `spread`, and then its index there to
    /// `indexInSpread`, where these aren't null; without a document they stay as they are.
    UIDRef getPageRef(int32_t index, UIDRef* spread, int32_t* indexInSpread) const;
    int32_t getNumPages() const;
    int32_t getNumSpreads() const;
    /// Pages by number from 1, first and last included; what lies outside of the document is left out.
    UIDList pageRange(int32_t first, int32_t last) const;
    /// The bounds of the spread's pages in its own coordinates; their number in `pageCount`.
    PMRect getSpreadBounds(int32_t index, int32_t* pageCount) const;

  private:
    IDocument* document_ = nullptr;
    IDataBase* database_ = nullptr;
    String path_;
};

}  // namespace vornaset
