#pragma once
// MyPDFDoc: a whole PDF document, new or read from a file. A read file isn't patched but written anew from the graph of
// objects, with new numbers.

#include <cstdint>
#include <string_view>
#include <vector>

#include "pdf/object_sets.h"
#include "pdf/pdf_objects.h"
#include "support/geometry.h"

namespace vornaset {

class ReaderDocument;
class ReaderObject;
enum class ReaderType : int32_t;

class MyPDFDoc : public Shared {
  public:
    // ----- Makers
    /// An empty document without a path. It has no `root` and no `pdfObjs` until its first write.
    static Handle<MyPDFDoc> pdfDoc();
    /// An empty document with the source's header, output intents and PDF/X version, and a Creator and Producer of its
    /// own: the user's login name, and this program's name and version.
    static Handle<MyPDFDoc> pdfDoc(const Handle<MyPDFDoc>& source);
    /// Reads a file. Nothing at the path, or no path: a new document, whose `pages` is null. A file that can't be read
    /// as PDF: a document with neither `info` nor `catalog`.
    static Handle<MyPDFDoc> pdfDocWithPath(const String& path, uint8_t customObjs);
    static Handle<MyPDFDoc> pdfDocWithPath(const String& path) { return pdfDocWithPath(path, 0); }

    // ----- Reading. Everything that the reader's catalog leads to is copied into objects; then the reader is closed.
    // See reader_values.h for single values.
    void initWithPath(const String& path, uint8_t customObjs);
    /// Info, catalog, pages, list of objects, streams, in this order. What raises is shown, and the steps behind it
    /// don't run.
    void setupPDFObjects();
    /// The reader's Info without the contents of its containers, and with this program's version under "Vornaset".
    Handle<MyPDFDictionary> pdfInfo();
    /// These fill the current `container`, and what they put there down to the last leaf, however deep.
    void setupPDFObjectsWithDict(const ReaderObject* dictionary);
    void setupPDFObjectsWithArray(const ReaderObject* array);
    /// One entry: from the cache, or made, cached, put in, and filled.
    void setupPDFObject(const ReaderObject* handle, const String& key);
    /// By the type: as an array, or as a dictionary (a stream's too); nothing for other types.
    void enumContainer(const ReaderObject* handle, ReaderType type);
    /// A new object of this type, entered in the cache while a file is being read. Containers are empty. Null for other
    /// types than the nine.
    Handle<MyPDFObj> objWithObjRef(const ReaderObject* objRef, ReaderType type);
    Handle<MyPDFObj> objWithObjRef(const ReaderObject* objRef);
    /// What was made for this handle, whatever the type; null outside of reading.
    Handle<MyPDFObj> pdfObjFromCache(const ReaderObject* objRef, ReaderType type) const;
    /// Appends to the `container`'s children.
    void addObject(const Handle<MyPDFObj>& object);
    /// Puts the object under the key and gives it that key. Under "Parent" it becomes the `container`'s parent instead;
    /// what isn't a dictionary is no parent.
    void addObject(const Handle<MyPDFObj>& object, const String& key);
    /// As above without touching the object's own key, whatever the key.
    void addString(const Handle<MyPDFObj>& object, const String& key);
    /// Undoes the filters of every stream of `pdfObjs` on all cores. A stream with a filter that nobody here undoes,
    /// and one that would grow beyond limits, keeps the bytes that the file holds, in the state that is written as it
    /// stands. Nothing for streams that no open reader stands behind.
    void decodeStreams();
    /// Fills `xObjs`, `colorSpaces` and `fonts` from `pdfObjs`, if they were asked for.
    void setupCustomObjs();
    /// An array goes into the set as a whole; of a dictionary, each value.
    void addColorSpaces(const Handle<MyPDFObj>& object, ObjectSet& set) const;
    void addFonts(const Handle<MyPDFObj>& object, ObjectSet& set) const;

    // ----- Writing
    /// The complete file. Renumbers every object and compresses every raw stream for good. What raises on the way is
    /// shown, and the bytes so far are given. Null for an absent document.
    Data pdfData();
    /// Puts pdfData under the path, in the place of what stands there; the old file goes first. Without bytes nothing
    /// happens. A failure to write isn't reported.
    void writeToFile(const String& path);
    /// Into the folder "Vornaset" in the user's documents, under `name`; gives that path. The folder isn't made: where
    /// it is missing, the write fails silently. Throws InvalidArgumentException for a document without a path.
    String writeToTmpFolder();
    /// Lists `info`, `catalog` and each container that the catalog leads to, once, depth first. Throws
    /// InvalidArgumentException when there is no `info` or no `catalog`.
    void rebuildObjectsList();
    /// Does nothing: streams are compressed as they are written. The counterpart of decodeStreams.
    void encodeStreams() {}
    /// 0 for every document.
    int8_t vMinor() const noexcept { return 0; }

    // ----- Pages. A document holds its pages twice: the list `pages` and the tree under `pagesObj`, which is written.
    /// Takes `pagesObj` from the catalog, and `pages` from the tree. Throws UnrecognizedOperation for a tree whose root
    /// isn't a dictionary with an array of kids.
    void setupPages();
    /// Appends the leaves under these objects to `pages`. A node that is met again below itself is passed over. Throws
    /// Exception when the tree lists more than pdf_limits::kMaximumPages kids.
    void addPages(const ObjectList<MyPDFObj>& list);
    /// What the tree's "Count" says, not the length of `pages`.
    int64_t numberOfPages() const { return pagesObj_->count(); }
    /// Rebuilds the tree from `pages`, flat for a size of 0 or when one node can hold all, else in nodes of so many
    /// pages, and then `pages` is empty. Throws RangeException for a negative size.
    void rebuildPageList(int64_t size);
    /// Flat tree of all pages but the last. Nothing with fewer than two pages.
    void deleteLastPage();
    /// The tree's pages in reverse order, flat; `pages` keeps its order, so that the next rebuild undoes this. Nothing
    /// with fewer than two pages. Throws when there is no former `pdfObjs` with an object in it.
    void revertPages();
    /// Scales content and boxes. A box that pages share or inherit is scaled in place, once for each of them.
    void scalePage(const Handle<MyPDFDictionary>& page, double byX, double byY);
    void scaleDocByX(double x, double byY);
    void scaleDoc(double factor);
    /// Each page's trim box becomes so wide and high, in points; the aspect ratio isn't kept.
    void scaleDocToSize(double width, double height);
    /// Crop and media box become the trim box, unless the crop box is that already.
    void cropDocToTrimBox();
    /// Adds a page with an empty content at the tree's end, and in `pages` at the place, -1 for the end. Throws
    /// RangeException for a place beyond the end of `pages`. Gives the page.
    Handle<MyPDFDictionary> addPageWithRect(const Rect& rectangle, int64_t pos);
    Handle<MyPDFDictionary> addPageWithRect(const Rect& rectangle) { return addPageWithRect(rectangle, -1); }
    /// As many pages with the media box of the first page of `pages`, each put at the same place.
    void addEmptyPages(int64_t number, int64_t pos);
    void addEmptyPages(int64_t number) { addEmptyPages(number, -1); }
    /// A form that draws what the page draws. It shares the page's own resources; inherited ones aren't looked for.
    Handle<MyPDFStream> formForPageObj(const Handle<MyPDFDictionary>& page);
    /// As above for a place in `pages`, from 0, with the page's trim box; null outside.
    Handle<MyPDFStream> formForPageNum(int64_t index);
    /// A Type 1 font dictionary in Mac OS Roman. Attaching it is for the caller.
    Handle<MyPDFDictionary> addFont(const String& font, const String& pdfName);
    /// The containers that stand under "ColorSpace" below the pages of the range, each once. A length of 0 means up to
    /// the end. Null when the location is outside.
    ObjectList<MyPDFObj> colorSpacesForPageRange(const Range& range);

    // ----- Fields
    /// The path's last component; null without a path.
    String name() const;
    /// "\n----------------------------\n"
    String description() const;
    uint8_t rebuildPDFObjs() const noexcept { return rebuildPDFObjs_; }
    void setRebuildPDFObjs(uint8_t flag) { set(rebuildPDFObjs_, flag); }
    const String& path() const noexcept { return path_; }
    void setPath(const String& path) { set(path_, path); }
    /// Holds "Info" and "Catalog" of a read document; never written.
    const Handle<MyPDFDictionary>& root() const noexcept { return root_; }
    void setRoot(const Handle<MyPDFDictionary>& root) { set(root_, root); }
    const Handle<MyPDFDictionary>& info() const noexcept { return info_; }
    void setInfo(const Handle<MyPDFDictionary>& info) { set(info_, info); }
    const Handle<MyPDFDictionary>& catalog() const noexcept { return catalog_; }
    void setCatalog(const Handle<MyPDFDictionary>& catalog) { set(catalog_, catalog); }
    const Handle<MyPDFDictionary>& pagesObj() const noexcept { return pagesObj_; }
    void setPagesObj(const Handle<MyPDFDictionary>& pagesObj) { set(pagesObj_, pagesObj); }
    /// The first bytes of the file.
    const Data& pdfHeader() const noexcept { return pdfHeader_; }
    void setPdfHeader(const Data& header) { set(pdfHeader_, header); }
    /// The objects in writing order, good just behind a write: the place plus 1 is the object's number.
    const ObjectList<MyPDFObj>& pdfObjs() const noexcept { return pdfObjs_; }
    void setPdfObjs(const ObjectList<MyPDFObj>& objects) { set(pdfObjs_, objects); }
    /// The leaf pages in reading order.
    const ObjectList<MyPDFDictionary>& pages() const noexcept { return pages_; }
    void setPages(const ObjectList<MyPDFDictionary>& pages) { set(pages_, pages); }

    /// Only with `customObjs`: what the read file has, for inspection. Null otherwise.
    const WeakObjectList& xObjs() const noexcept { return xObjs_; }
    void setXObjs(const WeakObjectList& objects) { set(xObjs_, objects); }
    const WeakObjectList& colorSpaces() const noexcept { return colorSpaces_; }
    void setColorSpaces(const WeakObjectList& objects) { set(colorSpaces_, objects); }
    const WeakObjectList& fonts() const noexcept { return fonts_; }
    void setFonts(const WeakObjectList& objects) { set(fonts_, objects); }
    /// These three are null outside of reading: the open reader, its catalog and its Info.
    ReaderDocument* docRef() const noexcept;
    const ReaderObject* catalogRef() const;
    const ReaderObject* infoDict() const;
    /// What has been made for the reader's objects, by their serial numbers; null outside of reading.
    const std::vector<Handle<MyPDFObj>>* objRefToObj() const noexcept;
    /// The container that is being filled; it counts during reading alone.
    const Handle<MyPDFObj>& container() const noexcept { return container_; }
    void setContainer(const Handle<MyPDFObj>& container) { set(container_, container); }

    bool isAbsent() const noexcept { return absent_; }
    static void destroy(const MyPDFDoc* document) noexcept { delete document; }

  private:
    friend MyPDFDoc& absentObject<MyPDFDoc>();
    enum class Presence { present, absent };

    explicit MyPDFDoc(Presence presence) noexcept : absent_(presence == Presence::absent) {}
    ~MyPDFDoc();

    template <class T>
    void set(T& field, const T& value) {
        if (!absent_) field = value;
    }
    void setupNew(const Data& header);
    void setFlatKids(const std::vector<Handle<MyPDFObj>>& kids);
    struct Loading;  ///< the open reader and the cache
    void fillContainer(const ReaderObject& source);

    bool absent_;
    uint8_t rebuildPDFObjs_ = 0;
    String path_;
    Handle<MyPDFDictionary> root_;
    Handle<MyPDFDictionary> info_;
    Handle<MyPDFDictionary> catalog_;
    Handle<MyPDFDictionary> pagesObj_;
    Data pdfHeader_;
    ObjectList<MyPDFObj> pdfObjs_;
    ObjectList<MyPDFDictionary> pages_;
    WeakObjectList xObjs_;
    WeakObjectList colorSpaces_;
    WeakObjectList fonts_;
    Handle<MyPDFObj> container_;
    std::shared_ptr<Loading> loading_;
};

/// A node of the page tree with the first `number` pages of the list, which lose their place there. All pages that are
/// in the list become children of the node, as far as their `parent` goes. Throws RangeException when the list is
/// shorter.
Handle<MyPDFDictionary> kidsObjectForPages(const Handle<MyPDFDictionary>& parent,
                                           const ObjectList<MyPDFDictionary>& list, int64_t number);

/// Scales the box that the page has or inherits under the key, in place: elements 0 and 2 by x, 1 and 3 by y.
void scaleBoxRect(const Handle<MyPDFDictionary>& page, const String& key, double x, double y);

/// Puts bytes in front of a page's content, in its first stream. Nothing without content.
void prependToContents(const Handle<MyPDFDictionary>& page, std::string_view text);

}  // namespace vornaset
