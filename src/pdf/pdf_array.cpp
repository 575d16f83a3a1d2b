#include "pdf/pdf_array.h"

#include <charconv>

#include "pdf/pdf_keys.h"
#include "pdf/pdf_scalars.h"
#include "pdf/pdf_text.h"
#include "pdf/traversal.h"

namespace vornaset {

Handle<MyPDFArray> MyPDFArray::array() {
    return Handle<MyPDFArray>::adopt(new MyPDFArray());
}

String MyPDFArray::pdfString() const {
    std::string text = "[";
    for (const Handle<MyPDFObj>& child : children_) {
        if (child->isContainer()) return u"";
        if (text.size() > 1) text += ' ';
        text += child->pdfString().utf8();
    }
    return String::fromUTF8(text + "]");
}

void MyPDFArray::appendPDFData(std::string& buffer) {
    buffer += '[';
    for (const Handle<MyPDFObj>& child : children_) {
        if (child->isContainer()) {
            appendInteger(buffer, static_cast<int32_t>(child->objNum()));
            buffer += " 0 R ";
        } else {
            child->appendPDFData(buffer);
            buffer += ' ';
        }
    }
    buffer += "]\n";
}

uint8_t MyPDFArray::isBox() const {
    using namespace pdf_key;
    bool hasBoxKey = false;
    for (const String& name : {kBBox, kTrimBox, kBleedBox, kCropBox, kMediaBox, kArtBox}) hasBoxKey |= key() == name;
    if (!hasBoxKey || children_.count() != 4) return 0;
    for (const Handle<MyPDFObj>& child : children_) {
        if (!child->isNumber()) return 0;
    }
    return 1;
}

String MyPDFArray::boxString() const {
    if (isAbsent()) return {};
    std::string text = "[";
    for (const Handle<MyPDFObj>& child : children_) {
        if (text.size() > 1) text += ' ';
        const double millimetres = operandOf<MyPDFNumber>(child, "number")->floatValue() * 25.4 / 72;
        char digits[352];
        const auto [end, error] =
            std::to_chars(digits, digits + sizeof digits, millimetres, std::chars_format::fixed, 3);
        const std::string_view piece(digits, static_cast<size_t>(end - digits));
        text += piece.ends_with(".000") ? piece.substr(0, piece.size() - 4) : piece;
    }
    return String::fromUTF8(text + "]");
}

uint8_t MyPDFArray::enumChildren(EnumChildrenProc proc, void* userData) {
    return Traversal::walk(*this, proc, userData);
}

MyPDFObj* MyPDFArray::childAt(int64_t index) const {
    return index < numberOfChildren() ? children_.begin()[index].get() : nullptr;
}

}  // namespace vornaset
