// The boxes of a page. ISO 32000-1, 14.11.2.

#include "pdf/pdf_dictionary.h"
#include "pdf/pdf_keys.h"
#include "pdf/pdf_scalars.h"

namespace vornaset {

using namespace pdf_key;

namespace {

/// A dictionary and its parents, one after the other. Ends where a damaged file's chain comes back to itself.
class ParentChain {
  public:
    explicit ParentChain(const MyPDFDictionary& start) : node_(&start), remembered_(&start) {}

    const MyPDFDictionary* node() const { return node_; }
    void climb() {
        parent_ = node_->parent();
        node_ = parent_.get();
        if (node_ == remembered_) {
            node_ = nullptr;
        } else if (++steps_ == nextMemory_) {
            remembered_ = node_;
            nextMemory_ *= 2;
        }
    }

  private:
    const MyPDFDictionary* node_;
    const MyPDFDictionary* remembered_;  ///< moves on at powers of two, so that any cycle meets it
    Handle<MyPDFDictionary> parent_;
    size_t steps_ = 0;
    size_t nextMemory_ = 1;
};

}  // namespace

bool isEmptyBox(const Rect& rectangle) {
    return !(rectangle.width > 0 && rectangle.height > 0);
}

Rect rectWithBoxArray(const Handle<MyPDFObj>& array) {
    Rect rectangle;
    if (array->numberOfChildren() != 4) return rectangle;
    const ObjectList<MyPDFObj> children = operandOf<MyPDFArray>(array, "children")->children();
    double* const parts[] = {&rectangle.x, &rectangle.y, &rectangle.width, &rectangle.height};
    for (size_t index = 0; index < 4; ++index) {
        *parts[index] = operandOf<MyPDFNumber>(children[index], "number")->floatValue();
    }
    rectangle.width -= rectangle.x;
    rectangle.height -= rectangle.y;
    return rectangle;
}

Handle<MyPDFArray> boxArrayWithRect(const Rect& rectangle) {
    Handle<MyPDFArray> array = MyPDFArray::array();
    for (const double number :
         {rectangle.x, rectangle.y, rectangle.x + rectangle.width, rectangle.y + rectangle.height}) {
        array->addObject(MyPDFNumber::make(Number(number)));
    }
    return array;
}

Rect MyPDFDictionary::getBoxRect(const String& key) const {
    for (ParentChain chain(*this); chain.node() != nullptr; chain.climb()) {
        if (const Handle<MyPDFObj> entry = chain.node()->objectForKeyedSubscript(key)) return rectWithBoxArray(entry);
    }
    return {};
}

Handle<MyPDFArray> MyPDFDictionary::getBoxRectObj(const String& key) const {
    for (ParentChain chain(*this); chain.node() != nullptr; chain.climb()) {
        const Handle<MyPDFObj> entry = chain.node()->objectForKeyedSubscript(key);
        if (entry->numberOfChildren() == 4) return operandOf<MyPDFArray>(entry, "children");
    }
    return nullptr;
}

Rect MyPDFDictionary::mediaBox() const {
    return getBoxRect(kMediaBox);
}
Rect MyPDFDictionary::cropBox() const {
    const Rect box = getBoxRect(kCropBox);
    return isEmptyBox(box) ? mediaBox() : box;
}
Rect MyPDFDictionary::bleedBox() const {
    const Rect box = getBoxRect(kBleedBox);
    return isEmptyBox(box) ? cropBox() : box;
}
Rect MyPDFDictionary::trimBox() const {
    const Rect box = getBoxRect(kTrimBox);
    return isEmptyBox(box) ? bleedBox() : box;
}
Rect MyPDFDictionary::artBox() const {
    return rectWithBoxArray(objectForKeyedSubscript(kArtBox));
}
Rect MyPDFDictionary::bbox() const {
    return rectWithBoxArray(objectForKeyedSubscript(kBBox));
}

void MyPDFDictionary::setMediaBox(const Rect& rectangle) {
    setObject(boxArrayWithRect(rectangle), kMediaBox);
}
void MyPDFDictionary::setCropBox(const Rect& rectangle) {
    setObject(boxArrayWithRect(rectangle), kCropBox);
}
void MyPDFDictionary::setBleedBox(const Rect& rectangle) {
    setObject(boxArrayWithRect(rectangle), kBleedBox);
}
void MyPDFDictionary::setTrimBox(const Rect& rectangle) {
    setObject(boxArrayWithRect(rectangle), kTrimBox);
}
void MyPDFDictionary::setArtBox(const Rect& rectangle) {
    setObject(boxArrayWithRect(rectangle), kArtBox);
}
void MyPDFDictionary::setBbox(const Rect& rectangle) {
    setObject(boxArrayWithRect(rectangle), kBBox);
}

uint8_t MyPDFDictionary::hasTrimBox() const {
    return getBoxRectObj(kTrimBox) ? 1 : 0;
}

void MyPDFDictionary::setBoxRectForPage(const String& key) {
    if (objectForKeyedSubscript(key)) return;
    if (const Handle<MyPDFArray> array = getBoxRectObj(kCropBox)) setObject(array, kCropBox);
}

void MyPDFDictionary::setBoxRectsForPage() {
    if (!objectForKeyedSubscript(kMediaBox)) setMediaBox(mediaBox());
    for (const String& key : {kCropBox, kBleedBox, kTrimBox}) setBoxRectForPage(key);
}

}  // namespace vornaset
