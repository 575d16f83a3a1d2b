#include "companion/pdf_preparation.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "pdf/pdf_keys.h"
#include "pdf/pdf_objects.h"

namespace companion {

using vornaset::Handle;
using vornaset::MyPDFArray;
using vornaset::MyPDFDictionary;
using vornaset::MyPDFDoc;
using vornaset::MyPDFNumber;
using vornaset::MyPDFObj;
using vornaset::MyPDFStream;
using vornaset::Number;
using vornaset::objectAs;
using vornaset::String;

namespace {

const String kRotate(u"Rotate");
const String kDecodeParms(u"DecodeParms");

/// Objects that a page has taken for its own.
using Taken = std::unordered_set<const MyPDFObj*>;

/// The entry of the page or of the nearest node above that has one. Pages of a damaged file may stand in a circle.
Handle<MyPDFObj> inherited(const Handle<MyPDFDictionary>& page, const String& key) {
    constexpr int deepestTree = 1000;
    Handle<MyPDFDictionary> node = page;
    for (int level = 0; node && level < deepestTree; ++level, node = node->parent()) {
        if (Handle<MyPDFObj> found = node->objectForKeyedSubscript(key)) return found;
    }
    return nullptr;
}

/// The same entries in a new dictionary.
Handle<MyPDFDictionary> copyOf(const Handle<MyPDFDictionary>& dictionary) {
    Handle<MyPDFDictionary> copy = MyPDFDictionary::make();
    const vornaset::ObjectMap entries = dictionary->dictionary();
    for (size_t index = 0; index < entries.count(); ++index)
        copy->setObject(entries.objectAt(index), entries.keyAt(index));
    return copy;
}

Handle<MyPDFStream> copyOf(const Handle<MyPDFStream>& stream) {
    Handle<MyPDFStream> copy = MyPDFStream::stream();
    const vornaset::ObjectMap entries = stream->dictionary();
    for (size_t index = 0; index < entries.count(); ++index)
        copy->setObject(entries.objectAt(index), entries.keyAt(index));
    copy->setData(stream->data());
    copy->setDataFormat(stream->dataFormat());
    return copy;
}

Handle<MyPDFArray> copyOf(const Handle<MyPDFArray>& array) {
    Handle<MyPDFArray> copy = MyPDFArray::array();
    for (const Handle<MyPDFObj>& child : array->children()) {
        // Numbers of a box are scaled in place, so each box needs its own.
        const auto number = objectAs<MyPDFNumber>(child);
        copy->addObject(number ? Handle<MyPDFObj>(MyPDFNumber::make(number->number())) : child);
    }
    copy->setKey(array->key());
    return copy;
}

void giveOwnBoxes(const Handle<MyPDFDictionary>& page, Taken& taken) {
    using namespace vornaset::pdf_key;
    for (const String& key : {kMediaBox, kCropBox}) {
        if (page->objectForKeyedSubscript(key)) continue;
        if (const Handle<MyPDFObj> box = inherited(page, key)) page->setObject(box, key);
    }
    for (const String& key : {kMediaBox, kCropBox, kBleedBox, kTrimBox, kArtBox}) {
        const auto box = objectAs<MyPDFArray>(page->objectForKeyedSubscript(key));
        if (box && !taken.insert(box.get()).second) page->setObject(copyOf(box), key);
    }
}

void giveOwnResources(const Handle<MyPDFDictionary>& page, Taken& taken) {
    using vornaset::pdf_key::kResources, vornaset::pdf_key::kXObject;
    auto resources = objectAs<MyPDFDictionary>(inherited(page, kResources));
    if (!resources) {
        resources = MyPDFDictionary::make();
    } else if (!taken.insert(resources.get()).second) {
        resources = copyOf(resources);
    }
    page->setObject(resources, kResources);
    const auto forms = objectAs<MyPDFDictionary>(resources->objectForKeyedSubscript(kXObject));
    if (forms && !taken.insert(forms.get()).second) resources->setObject(copyOf(forms), kXObject);
}

void giveOwnFirstContent(const Handle<MyPDFDictionary>& page, Taken& taken) {
    if (auto stream = objectAs<MyPDFStream>(page->contents())) {
        if (!taken.insert(stream.get()).second) page->setContents(copyOf(stream));
        return;
    }
    auto parts = objectAs<MyPDFArray>(page->contents());
    if (!parts || parts->numberOfChildren() == 0) {
        page->setContents(MyPDFStream::stream());
        return;
    }
    if (!taken.insert(parts.get()).second) {
        parts = copyOf(parts);
        page->setContents(parts);
    }
    const auto first = objectAs<MyPDFStream>(parts->children().first());
    if (first && !taken.insert(first.get()).second) parts->setObject(copyOf(first), 0);
}

void preparePages(const Handle<MyPDFDoc>& document) {
    Taken taken;
    for (const Handle<MyPDFDictionary>& page : document->pages()) {
        if (!page->objectForKeyedSubscript(kRotate)) {
            if (const Handle<MyPDFObj> rotation = inherited(page, kRotate)) page->setObject(rotation, kRotate);
        }
        giveOwnBoxes(page, taken);
        giveOwnResources(page, taken);
        giveOwnFirstContent(page, taken);
    }
}

/// Plain digits for a number whose shortest text has an exponent.
void writeOutExponent(const Handle<MyPDFObj>& object) {
    const auto number = objectAs<MyPDFNumber>(object);
    if (!number || !number->number()) return;
    if (!number->number()->isFloatingPoint()) return;
    // The shortest text of a single has an exponent below 0.0001 and from 1e9 on; three digits show nothing below
    // 0.001.
    const double value = number->number()->doubleValue();
    if (std::abs(value) < 0.001) {
        number->setNumber(Number(static_cast<int64_t>(0)));
    } else if (std::abs(value) >= 1e9) {
        constexpr double most = 9e18;
        number->setNumber(Number(static_cast<int64_t>(std::clamp(value, -most, most))));
    }
}

void prepareNumbers(const Handle<MyPDFObj>& object) {
    if (const auto array = objectAs<MyPDFArray>(object)) {
        for (const Handle<MyPDFObj>& child : array->children()) writeOutExponent(child);
    } else if (const auto dictionary = objectAs<MyPDFDictionary>(object)) {
        const vornaset::ObjectMap entries = dictionary->dictionary();
        for (size_t index = 0; index < entries.count(); ++index) writeOutExponent(entries.objectAt(index));
    }
}

/// The last of the names or values when the entry is an array, else the entry.
Handle<MyPDFObj> lastOf(const Handle<MyPDFObj>& entry) {
    const auto array = objectAs<MyPDFArray>(entry);
    return array ? array->children().last() : entry;
}

void prepareStream(const Handle<MyPDFStream>& stream) {
    switch (stream->dataFormat()) {
        case vornaset::kStreamRaw:
            stream->setObject(nullptr, kDecodeParms);
            break;
        case vornaset::kStreamJPEG:
        case vornaset::kStreamJPEG2000: {
            const auto filters = objectAs<MyPDFArray>(stream->objectForKeyedSubscript(vornaset::pdf_key::kFilter));
            if (!filters) break;
            const auto parameters = objectAs<MyPDFDictionary>(lastOf(stream->objectForKeyedSubscript(kDecodeParms)));
            stream->setObject(filters->children().last(), vornaset::pdf_key::kFilter);
            stream->setObject(parameters, kDecodeParms);
            break;
        }
        default:
            break;  // carried as it is, with all that says how to read it
    }
}

}  // namespace

void prepareForCommands(const Handle<MyPDFDoc>& document) {
    for (const Handle<MyPDFObj>& object : document->pdfObjs()) {
        prepareNumbers(object);
        if (const auto stream = objectAs<MyPDFStream>(object)) prepareStream(stream);
    }
    prepareNumbers(document->info());
    preparePages(document);
    // The nodes above have nothing to give any more: one node holds all pages, and its count is right.
    document->rebuildPageList(0);
}

}  // namespace companion
