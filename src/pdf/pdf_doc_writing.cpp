// MyPDFDoc to the bytes of a file, and to a file.

#include <memory>
#include <new>

#include "pdf/file_replacement.h"
#include "pdf/graph_release.h"
#include "pdf/pdf_doc.h"
#include "pdf/pdf_writer.h"
#include "pdf/traversal.h"
#include "support/messages.h"
#include "support/paths.h"

namespace vornaset {

namespace {

uint8_t appendToList(const Handle<MyPDFObj>& child, void* list) {
    static_cast<ObjectList<MyPDFObj>*>(list)->add(child);
    return 1;
}

void numberObjects(const ObjectList<MyPDFObj>& objects) {
    int64_t number = 0;
    for (const Handle<MyPDFObj>& object : objects) object->setObjNum(++number);
}

/// Room for the whole file, more rather than less: memory that is never touched costs nothing, while a buffer that
/// grows stands there twice for a moment.
void reserveFor(const ObjectList<MyPDFObj>& objects, std::string& buffer) {
    constexpr size_t perObject = 200;  // bytes of its dictionary, "obj" line and table entry
    constexpr size_t worthTheCount = 1000;
    if (objects.count() < worthTheCount) return;
    size_t room = objects.count() * perObject;
    for (const Handle<MyPDFObj>& object : objects) {
        if (const auto stream = objectAs<MyPDFStream>(object)) room += stream->data().length();
    }
    try {
        buffer.reserve(room);
    } catch (const std::bad_alloc&) {
        // Then it grows.
    }
}

}  // namespace

void MyPDFDoc::rebuildObjectsList() {
    if (absent_) return;
    if (!info_ || !catalog_) {
        throw InvalidArgumentException(
            "The document has no information dictionary or no catalog: its file couldn't be read as PDF.");
    }
    ObjectList<MyPDFObj> objects = ObjectList<MyPDFObj>::make();
    objects.reserve(pdfObjs_.count());
    objects.add(info_);
    objects.add(catalog_);
    MyPDFObj::enumChildren(catalog_, appendToList, &objects);

    // What only the former list held may hold itself in a ring.
    const uint64_t reached = objects.count() > 2 ? Traversal::markOf(*objects.last()) : 0;
    std::vector<Handle<MyPDFObj>> former;
    for (const Handle<MyPDFObj>& object : pdfObjs_) {
        if (Traversal::markOf(*object) != reached) former.push_back(object);
    }
    pdfObjs_ = std::move(objects);
    GraphRelease::release(std::move(former), reached);
}

Data MyPDFDoc::pdfData() {
    if (absent_) return {};
    std::string buffer;
    try {
        rebuildObjectsList();
        encodeStreams();
        numberObjects(pdfObjs_);
        reserveFor(pdfObjs_, buffer);
        buffer += pdfHeader_.view();
        const size_t count = pdfObjs_.count();
        const std::unique_ptr<int64_t[]> table(new (std::nothrow) int64_t[count]());
        if (!table) return Data(std::move(buffer));
        const std::span<int64_t> offsets(table.get(), count);
        writePDFObjs(pdfObjs_, buffer, offsets, 0);
        const size_t position = buffer.size();
        writeXRef(buffer, offsets, static_cast<int64_t>(count));
        writeTrailer(buffer, static_cast<int64_t>(count), static_cast<int64_t>(position));
    } catch (const std::exception& exception) {
        msgBox(exception);
    }
    return Data(std::move(buffer));
}

void MyPDFDoc::writeToFile(const String& path) {
    try {
        const Data bytes = pdfData();
        if (bytes.length() == 0) return;
        removeFile(path);
        replaceFile(path, bytes.view());
    } catch (const std::exception& exception) {
        msgBox(exception);
    }
}

String MyPDFDoc::writeToTmpFolder() {
    if (absent_) return {};
    if (name().isNull()) throw InvalidArgumentException("The document has no path, so its file would have no name.");
    const String folder = getDocumentsPath(u"Vornaset", nullptr);
    String path = stringByAppendingPathComponents(folder, name(), nullptr);
    writeToFile(path);
    return path;
}

}  // namespace vornaset
