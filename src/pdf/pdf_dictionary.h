#pragma once
// A dictionary of PDF objects, with the entries that the toolkit reads and sets by name.

#include "pdf/object_collections.h"
#include "pdf/pdf_array.h"
#include "pdf/pdf_obj.h"
#include "support/geometry.h"

namespace vornaset {

class MyPDFDictionary : public MyPDFObj {
  public:
    static bool isKind(Kind kind) noexcept { return kind == Kind::dictionary || kind == Kind::stream; }

    // ----- Makers
    static Handle<MyPDFDictionary> make();
    /// From a map of text to text: a value that begins with "/" becomes a name, any other a string.
    static Handle<MyPDFDictionary> make(const Dictionary& texts);
    /// /Catalog with its "Pages".
    static Handle<MyPDFDictionary> catalog(const Handle<MyPDFObj>& pages);
    /// /Pages with empty "Kids" and a "Count" of 0.
    static Handle<MyPDFDictionary> pages();
    /// Only "ProcSet": an array of names from a list of texts.
    static Handle<MyPDFDictionary> resources(const Array& procSet);
    /// /TrueType under this name, in Mac OS Roman.
    static Handle<MyPDFDictionary> ttFont(const String& name);
    /// /Type1 /Courier, in Mac OS Roman.
    static Handle<MyPDFDictionary> courier();

    // ----- As an object
    /// "Image (w x h)" for an image, the base font's name for a font, the page count for a node of the page tree, else
    /// the subtype, null without one.
    String pdfString() const override;
    /// One line for each entry, then "/Parent" if there is one. Keys in Mac OS Roman, without escapes, up to a zero.
    void appendPDFData(std::string& buffer) override;
    uint8_t isDictionary() const override { return 1; }
    uint8_t isPage() const override;
    uint8_t isXObj() const override;
    uint8_t isFont() const override;
    int64_t numberOfChildren() const override { return static_cast<int64_t>(dictionary_.count()); }
    uint8_t enumChildren(EnumChildrenProc proc, void* userData) override;
    using MyPDFObj::enumChildren;
    /// Type /Pages; subtype /Image; subtype /Form.
    uint8_t isPages() const;
    uint8_t isImage() const;
    uint8_t isForm() const;
    /// The map's own description.
    String description() const { return dictionary_.description(); }

    // ----- Fields
    /// Open to callers, who may edit it. Keys carry no slash.
    const ObjectMap& dictionary() const noexcept { return dictionary_; }
    void setDictionary(const ObjectMap& map) {
        if (!isAbsent()) dictionary_ = map;
    }
    /// The /Parent link, which never stands in the map. It doesn't keep the parent: null once that has gone.
    Handle<MyPDFDictionary> parent() const { return parent_.lock(); }
    void setParent(const Handle<MyPDFDictionary>& parent) {
        if (!isAbsent()) parent_ = parent;
    }
    /// Carried along, never written to a file.
    const String& matrix() const noexcept { return matrix_; }
    void setMatrix(const String& matrix) {
        if (!isAbsent()) matrix_ = matrix;
    }

    // ----- Entries
    /// Null when the key isn't there.
    Handle<MyPDFObj> objectForKeyedSubscript(const String& key) const { return dictionary_.objectForKey(key); }
    /// A null object removes the key. The object's own `key` stays as it is.
    void setObject(const Handle<MyPDFObj>& object, const String& forKeyedSubscript) {
        dictionary_.setObject(object, forKeyedSubscript);
    }
    /// The value's label; null when the key isn't there.
    String stringForKey(const String& key) const { return objectForKeyedSubscript(key)->pdfString(); }
    String nameForKey(const String& key) const { return stringForKey(key); }
    /// A null text removes the key.
    void setString(const String& text, const String& forKey);
    void setName(const String& text, const String& forKey);
    /// 0 when the key isn't there. Throws UnrecognizedOperation when the value isn't a number.
    int64_t integerForKey(const String& key) const;
    void setInteger(int64_t number, const String& forKey);

    /// Names are told with their slash, and set with or without it.
    String type() const;
    void setType(const String& type);
    String title() const;
    void setTitle(const String& title);
    Handle<MyPDFObj> kids() const;
    void setKids(const Handle<MyPDFObj>& kids);
    Handle<MyPDFObj> contents() const;
    void setContents(const Handle<MyPDFObj>& contents);
    /// The own entry; what a page inherits isn't looked for.
    Handle<MyPDFObj> resources() const;
    void setResources(const Handle<MyPDFObj>& resources);
    String filter() const;
    void setFilter(const String& filter);
    String subtype() const;
    void setSubtype(const String& subtype);
    int64_t length() const;
    void setLength(int64_t length);
    /// The entry "Count", not the number of entries.
    int64_t count() const;
    void setCount(int64_t count);
    int64_t width() const;
    void setWidth(int64_t width);
    int64_t height() const;
    void setHeight(int64_t height);
    int64_t bitsPerComponent() const;
    void setBitsPerComponent(int64_t bits);
    /// The entry "ColorSpace".
    Handle<MyPDFObj> colorSpaces() const;
    /// A page's content: the stream's data, or the data of the array's children joined with nothing between; else
    /// null. Throws UnrecognizedOperation when a child has no data.
    Data contentsData() const;

    // ----- Boxes, in points. An empty rectangle has a width or a height that isn't above 0.
    /// The entry up the chain of parents, read as a box.
    Rect mediaBox() const;
    /// The entry up the chain, and where that is empty, the box before it: media, crop, bleed, trim.
    Rect cropBox() const;
    Rect bleedBox() const;
    Rect trimBox() const;
    /// The own entry alone.
    Rect artBox() const;
    Rect bbox() const;
    void setMediaBox(const Rect& rectangle);
    void setCropBox(const Rect& rectangle);
    void setBleedBox(const Rect& rectangle);
    void setTrimBox(const Rect& rectangle);
    void setArtBox(const Rect& rectangle);
    void setBbox(const Rect& rectangle);

    /// The first entry of that key here or up the chain of parents, whatever it holds, through rectWithBoxArray.
    Rect getBoxRect(const String& key) const;
    /// The first entry up the chain that has exactly four children: unlike getBoxRect it climbs past others. Null when
    /// the chain ends. Throws UnrecognizedOperation when that entry isn't an array.
    Handle<MyPDFArray> getBoxRectObj(const String& key) const;
    uint8_t hasTrimBox() const;
    /// Without an own entry for the key, stores the array of the crop box, if there is one up the chain, as the own
    /// crop box: it is always the crop box, whichever key was asked for.
    void setBoxRectForPage(const String& key);
    /// Gives the page an own media box, then setBoxRectForPage for crop, bleed and trim box.
    void setBoxRectsForPage();

  protected:
    MyPDFDictionary() : MyPDFDictionary(Kind::dictionary) {}
    explicit MyPDFDictionary(Kind kind) : MyPDFObj(kind), dictionary_(ObjectMap::make()) {}
    explicit MyPDFDictionary(AbsentTag tag) noexcept : MyPDFDictionary(Kind::dictionary, tag) {}
    MyPDFDictionary(Kind kind, AbsentTag tag) noexcept : MyPDFObj(kind, tag) {}

    MyPDFObj* childAt(int64_t index) const override;
    bool holdsChildrenAlone() const override { return dictionary_.useCount() <= 1; }
    void dropChildren() override { dictionary_.removeAll(); }

  private:
    ObjectMap dictionary_;
    WeakHandle<MyPDFDictionary> parent_;
    String matrix_;
};

/// Origin and size from an array of exactly four numbers, each narrowed to a 32-bit float; corners aren't put in order.
/// The zero rectangle for any other number of children. Throws UnrecognizedOperation when one of the four is no number.
Rect rectWithBoxArray(const Handle<MyPDFObj>& array);
/// x, y, x + width, y + height as doubles.
Handle<MyPDFArray> boxArrayWithRect(const Rect& rectangle);
/// True when width or height isn't above 0.
bool isEmptyBox(const Rect& rectangle);

}  // namespace vornaset
