// Scaling and cropping pages, and pages as forms.

#include "pdf/pdf_doc.h"
#include "pdf/pdf_keys.h"
#include "pdf/pdf_scalars.h"
#include "pdf/pdf_text.h"

namespace vornaset {

using namespace pdf_key;

void prependToContents(const Handle<MyPDFDictionary>& page, std::string_view text) {
    Handle<MyPDFObj> stream = page->contents();
    if (stream->isArray()) stream = objectAs<MyPDFArray>(stream)->children().first();
    if (!stream) return;
    const Data content = dataOf(stream);
    std::string joined;
    joined.reserve(text.size() + content.length());
    joined.append(text).append(content.view());
    setDataOf(stream, Data(std::move(joined)));
}

void scaleBoxRect(const Handle<MyPDFDictionary>& page, const String& key, double x, double y) {
    const Handle<MyPDFArray> box = page->getBoxRectObj(key);
    const ObjectList<MyPDFObj>& children = box->children();
    for (size_t index = 0; index < children.count(); ++index) {
        if (const auto number = objectAs<MyPDFNumber>(children[index])) number->scale(index % 2 == 0 ? x : y);
    }
}

void MyPDFDoc::scalePage(const Handle<MyPDFDictionary>& page, double byX, double byY) {
    std::string matrix;
    appendSixDigits(matrix, byX);
    matrix += " 0 0 ";
    appendSixDigits(matrix, byY);
    matrix += " 0 0 cm\n";
    prependToContents(page, matrix);
    for (const String& key : {kArtBox, kBleedBox, kTrimBox, kCropBox, kMediaBox}) scaleBoxRect(page, key, byX, byY);
}

void MyPDFDoc::scaleDocByX(double x, double byY) {
    for (const Handle<MyPDFDictionary>& page : pages_) scalePage(page, x, byY);
}

void MyPDFDoc::scaleDoc(double factor) {
    scaleDocByX(factor, factor);
}

void MyPDFDoc::scaleDocToSize(double width, double height) {
    for (const Handle<MyPDFDictionary>& page : pages_) {
        const Rect trim = page->trimBox();
        scalePage(page, width / trim.width, height / trim.height);
    }
}

void MyPDFDoc::cropDocToTrimBox() {
    for (const Handle<MyPDFDictionary>& page : pages_) {
        const Rect trim = page->trimBox();
        if (page->cropBox() == trim) continue;
        page->setCropBox(trim);
        page->setMediaBox(trim);
    }
}

Handle<MyPDFStream> MyPDFDoc::formForPageObj(const Handle<MyPDFDictionary>& page) {
    if (absent_) return nullptr;
    Handle<MyPDFStream> form = MyPDFStream::stream();
    form->setSubtype(u"Form");
    form->setBbox(page->cropBox());
    form->setData(page->contentsData());
    form->setLength(static_cast<int64_t>(form->data().length()));
    form->setResources(page->resources());
    return form;
}

Handle<MyPDFStream> MyPDFDoc::formForPageNum(int64_t index) {
    if (static_cast<uint64_t>(index) >= pages_.count()) return nullptr;
    const Handle<MyPDFDictionary> page = pages_[static_cast<size_t>(index)];
    Handle<MyPDFStream> form = formForPageObj(page);
    form->setTrimBox(page->trimBox());
    return form;
}

}  // namespace vornaset
