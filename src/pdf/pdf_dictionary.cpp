#include "pdf/pdf_dictionary.h"

#include "pdf/pdf_keys.h"
#include "pdf/pdf_scalars.h"
#include "pdf/pdf_stream.h"
#include "pdf/pdf_text.h"
#include "pdf/traversal.h"
#include "support/format.h"

namespace vornaset {

using namespace pdf_key;

// ----- Makers

Handle<MyPDFDictionary> MyPDFDictionary::make() {
    return Handle<MyPDFDictionary>::adopt(new MyPDFDictionary());
}

Handle<MyPDFDictionary> MyPDFDictionary::make(const Dictionary& texts) {
    Handle<MyPDFDictionary> result = make();
    for (size_t index = 0; index < texts.count(); ++index) {
        const String value = texts.valueAt(index).string();
        if (value.length() > 0 && value.charAt(0) == u'/') {
            result->setName(value, texts.keyAt(index));
        } else {
            result->setString(value, texts.keyAt(index));
        }
    }
    return result;
}

Handle<MyPDFDictionary> MyPDFDictionary::catalog(const Handle<MyPDFObj>& pages) {
    Handle<MyPDFDictionary> result = make();
    result->setType(u"Catalog");
    result->setObject(pages, kPages);
    return result;
}

Handle<MyPDFDictionary> MyPDFDictionary::pages() {
    Handle<MyPDFDictionary> result = make();
    result->setType(u"Pages");
    result->setKids(MyPDFArray::array());
    result->setCount(0);
    return result;
}

Handle<MyPDFDictionary> MyPDFDictionary::resources(const Array& procSet) {
    const Handle<MyPDFArray> names = MyPDFArray::array();
    for (const Value& name : procSet) names->addObject(MyPDFName::nameWithString(name.string()));
    Handle<MyPDFDictionary> result = make();
    result->setObject(names, kProcSet);
    return result;
}

Handle<MyPDFDictionary> MyPDFDictionary::ttFont(const String& name) {
    Handle<MyPDFDictionary> result = make();
    result->setType(kFont);
    result->setSubtype(u"TrueType");
    result->setName(name, kName);
    result->setName(name, kBaseFont);
    result->setName(u"MacRomanEncoding", kEncoding);
    return result;
}

Handle<MyPDFDictionary> MyPDFDictionary::courier() {
    Handle<MyPDFDictionary> result = make();
    result->setType(kFont);
    result->setSubtype(u"Type1");
    result->setName(u"Courier", kName);
    result->setName(u"Courier", kBaseFont);
    result->setName(u"MacRomanEncoding", kEncoding);
    return result;
}

// ----- As an object

String MyPDFDictionary::pdfString() const {
    if (isXObj() && isImage()) return stringWithFormat(u"Image (%d x %d)", width(), height());
    if (isFont()) return stringForKey(kBaseFont);
    if (isPages()) {
        const String pageCount = stringForKey(kCount);
        return pageCount.isNull() ? String(u"") : pageCount;
    }
    return subtype();
}

void MyPDFDictionary::appendPDFData(std::string& buffer) {
    buffer += "<<\n";
    for (size_t index = 0; index < dictionary_.count(); ++index) {
        MyPDFObj& value = dictionary_.objectRefAt(index);
        buffer += '/';
        appendMacRoman(buffer, dictionary_.keyRefAt(index));
        buffer += ' ';
        if (value.isContainer()) {
            appendInteger(buffer, value.objNum());
            buffer += " 0 R\n";
        } else {
            value.appendPDFData(buffer);
            buffer += '\n';
        }
    }
    if (const MyPDFDictionary* holder = parent_.get()) {
        buffer += "/Parent ";
        appendInteger(buffer, holder->objNum());
        buffer += " 0 R\n";
    }
    buffer += ">>\n";
}

namespace {

/// True when the entry prints as this name.
bool prints(const MyPDFDictionary& dictionary, const String& key, std::u16string_view name) {
    const String text = dictionary.nameForKey(key);
    return !text.isNull() && text.view() == name;
}

}  // namespace

uint8_t MyPDFDictionary::isPage() const {
    return prints(*this, kType, u"/Page");
}
uint8_t MyPDFDictionary::isPages() const {
    return prints(*this, kType, u"/Pages");
}
uint8_t MyPDFDictionary::isImage() const {
    return prints(*this, kSubtype, u"/Image");
}
uint8_t MyPDFDictionary::isForm() const {
    return prints(*this, kSubtype, u"/Form");
}
uint8_t MyPDFDictionary::isXObj() const {
    return prints(*this, kType, u"/XObject") || isForm() || isImage();
}
uint8_t MyPDFDictionary::isFont() const {
    return prints(*this, kType, u"/Font");
}

uint8_t MyPDFDictionary::enumChildren(EnumChildrenProc proc, void* userData) {
    return Traversal::walk(*this, proc, userData);
}

MyPDFObj* MyPDFDictionary::childAt(int64_t index) const {
    return index < numberOfChildren() ? &dictionary_.objectRefAt(static_cast<size_t>(index)) : nullptr;
}

// ----- Entries

void MyPDFDictionary::setString(const String& text, const String& forKey) {
    setObject(text.isNull() ? nullptr : MyPDFString::stringWithString(text), forKey);
}

void MyPDFDictionary::setName(const String& text, const String& forKey) {
    setObject(text.isNull() ? nullptr : MyPDFName::nameWithString(text), forKey);
}

int64_t MyPDFDictionary::integerForKey(const String& key) const {
    const auto number = operandOf<MyPDFNumber>(objectForKeyedSubscript(key), "number")->number();
    return number ? number->integerValue() : 0;
}

void MyPDFDictionary::setInteger(int64_t number, const String& forKey) {
    setObject(MyPDFNumber::make(Number(number)), forKey);
}

String MyPDFDictionary::type() const {
    return nameForKey(kType);
}
void MyPDFDictionary::setType(const String& type) {
    setName(type, kType);
}
String MyPDFDictionary::title() const {
    return stringForKey(kTitle);
}
void MyPDFDictionary::setTitle(const String& title) {
    setString(title, kTitle);
}
Handle<MyPDFObj> MyPDFDictionary::kids() const {
    return objectForKeyedSubscript(kKids);
}
void MyPDFDictionary::setKids(const Handle<MyPDFObj>& kids) {
    setObject(kids, kKids);
}
Handle<MyPDFObj> MyPDFDictionary::contents() const {
    return objectForKeyedSubscript(kContents);
}
void MyPDFDictionary::setContents(const Handle<MyPDFObj>& contents) {
    setObject(contents, kContents);
}
Handle<MyPDFObj> MyPDFDictionary::resources() const {
    return objectForKeyedSubscript(kResources);
}
void MyPDFDictionary::setResources(const Handle<MyPDFObj>& resources) {
    setObject(resources, kResources);
}
String MyPDFDictionary::filter() const {
    return nameForKey(kFilter);
}
void MyPDFDictionary::setFilter(const String& filter) {
    setName(filter, kFilter);
}
String MyPDFDictionary::subtype() const {
    return nameForKey(kSubtype);
}
void MyPDFDictionary::setSubtype(const String& subtype) {
    setName(subtype, kSubtype);
}
int64_t MyPDFDictionary::length() const {
    return integerForKey(kLength);
}
void MyPDFDictionary::setLength(int64_t length) {
    setInteger(length, kLength);
}
int64_t MyPDFDictionary::count() const {
    return integerForKey(kCount);
}
void MyPDFDictionary::setCount(int64_t count) {
    setInteger(count, kCount);
}
int64_t MyPDFDictionary::width() const {
    return integerForKey(kWidth);
}
void MyPDFDictionary::setWidth(int64_t width) {
    setInteger(width, kWidth);
}
int64_t MyPDFDictionary::height() const {
    return integerForKey(kHeight);
}
void MyPDFDictionary::setHeight(int64_t height) {
    setInteger(height, kHeight);
}
int64_t MyPDFDictionary::bitsPerComponent() const {
    return integerForKey(kBitsPerComponent);
}
void MyPDFDictionary::setBitsPerComponent(int64_t bits) {
    setInteger(bits, kBitsPerComponent);
}
Handle<MyPDFObj> MyPDFDictionary::colorSpaces() const {
    return objectForKeyedSubscript(kColorSpace);
}

Data MyPDFDictionary::contentsData() const {
    const Handle<MyPDFObj> object = contents();
    if (object->isStream()) return dataOf(object);
    if (!object->isArray()) return {};
    std::string joined;
    for (const Handle<MyPDFObj>& child : objectAs<MyPDFArray>(object)->children()) joined += dataOf(child).view();
    return Data(std::move(joined));
}

}  // namespace vornaset
