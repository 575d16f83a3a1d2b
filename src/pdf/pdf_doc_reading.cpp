// Reading a file into a graph of objects.

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <string_view>
#include <thread>

#include "pdf/graph_release.h"
#include "pdf/limits.h"
#include "pdf/pdf_doc.h"
#include "pdf/pdf_keys.h"
#include "pdf/pdf_writer.h"
#include "pdf/reader.h"
#include "pdf/reader_values.h"
#include "pdf/traversal.h"
#include "support/messages.h"
#include "support/paths.h"
#include "support/text_decoding.h"

namespace vornaset {

using namespace pdf_key;

/// What lives during reading alone.
struct MyPDFDoc::Loading {
    std::unique_ptr<ReaderDocument> document;
    std::vector<Handle<MyPDFObj>> made;  ///< by the serial numbers of the reader's objects

    void remember(const ReaderObject& source, const Handle<MyPDFObj>& object) {
        if (&source.document() != document.get()) return;
        if (made.size() <= source.serial()) made.resize(std::max<size_t>(document->objectCount(), source.serial() + 1));
        made[source.serial()] = object;
    }

    /// What was made and isn't part of the document, a parent that nobody lists: it may hold itself in a ring.
    void release(const ObjectList<MyPDFObj>& kept) {
        const uint64_t mark = Traversal::newMark();
        for (const Handle<MyPDFObj>& object : kept) Traversal::setMark(*object, mark);
        std::vector<Handle<MyPDFObj>> leftOver;
        for (Handle<MyPDFObj>& object : made) {
            if (object->isStream()) static_cast<MyPDFStream*>(object.get())->setStreamRef(nullptr);
            if (object->isContainer() && Traversal::markOf(*object) != mark) leftOver.push_back(std::move(object));
        }
        made.clear();
        if (!leftOver.empty()) GraphRelease::release(std::move(leftOver), mark);
    }
};

ReaderDocument* MyPDFDoc::docRef() const noexcept {
    return loading_ ? loading_->document.get() : nullptr;
}

const ReaderObject* MyPDFDoc::catalogRef() const {
    return docRef() != nullptr ? &docRef()->catalog() : nullptr;
}

const ReaderObject* MyPDFDoc::infoDict() const {
    return docRef() != nullptr ? docRef()->info() : nullptr;
}

const std::vector<Handle<MyPDFObj>>* MyPDFDoc::objRefToObj() const noexcept {
    return loading_ ? &loading_->made : nullptr;
}

void MyPDFDoc::initWithPath(const String& path, uint8_t customObjs) {
    if (absent_) return;
    path_ = path;
    root_ = MyPDFDictionary::make();
    pdfObjs_ = ObjectList<MyPDFObj>::make();
    if (!pathIsFile(path)) {
        setupNew(dataWithString(u"%PDF-1.3\n%‚„œ”\n"));
    } else if (auto document = ReaderDocument::open(path)) {
        loading_ = std::make_shared<Loading>();
        loading_->document = std::move(document);
        if (customObjs != 0) {
            xObjs_ = WeakObjectList::make();
            colorSpaces_ = WeakObjectList::make();
            fonts_ = WeakObjectList::make();
        }
        pdfHeader_ = pdfHeaderWithPath(path);
        setupPDFObjects();
        container_ = nullptr;
        loading_->release(pdfObjs_);
        loading_.reset();
    }
    root_->setObject(info_, kInfo);
    root_->setObject(catalog_, kCatalog);
}

void MyPDFDoc::setupPDFObjects() {
    if (absent_) return;
    try {
        info_ = pdfInfo();
        catalog_ = MyPDFDictionary::make();
        container_ = catalog_;
        if (docRef() != nullptr) docRef()->readAll();
        setupPDFObjectsWithDict(catalogRef());
        setupPages();
        rebuildObjectsList();
        decodeStreams();
        setupCustomObjs();
    } catch (const std::exception& problem) {
        msgBox(problem);
    }
}

Handle<MyPDFDictionary> MyPDFDoc::pdfInfo() {
    static const String kMark(u"Vornaset");
    static const String kVersion(u"7.20");
    Handle<MyPDFDictionary> info = MyPDFDictionary::make();
    for (const auto& [key, value] : dictWithPDFDict(infoDict())) info->setObject(objWithObjRef(value), key);
    info->setString(kVersion, kMark);
    return info;
}

Handle<MyPDFObj> MyPDFDoc::objWithObjRef(const ReaderObject* objRef, ReaderType type) {
    Handle<MyPDFObj> object;
    switch (type) {
        case ReaderType::null:
            object = MyPDFNumber::make();
            break;
        case ReaderType::boolean:
            object = boolWithObjRef(objRef);
            break;
        case ReaderType::integer:
            object = integerWithObjRef(objRef);
            break;
        case ReaderType::real:
            object = floatWithObjRef(objRef);
            break;
        case ReaderType::name:
            object = nameWithObjRef(objRef);
            break;
        case ReaderType::string:
            object = stringWithObjRef(objRef);
            break;
        case ReaderType::array:
            object = MyPDFArray::array();
            break;
        case ReaderType::dictionary:
            object = MyPDFDictionary::make();
            break;
        case ReaderType::stream:
            object = streamWithObjRef(objRef);
            break;
        default:
            return nullptr;
    }
    if (loading_ && objRef != nullptr) loading_->remember(*objRef, object);
    return object;
}

Handle<MyPDFObj> MyPDFDoc::objWithObjRef(const ReaderObject* objRef) {
    return objRef != nullptr ? objWithObjRef(objRef, objRef->type()) : nullptr;
}

Handle<MyPDFObj> MyPDFDoc::pdfObjFromCache(const ReaderObject* objRef, ReaderType) const {
    if (!loading_ || objRef == nullptr || &objRef->document() != loading_->document.get()) return nullptr;
    const auto& made = loading_->made;
    return objRef->serial() < made.size() ? made[objRef->serial()] : nullptr;
}

void MyPDFDoc::addObject(const Handle<MyPDFObj>& object) {
    if (container_) operandOf<MyPDFArray>(container_, "addObject")->addObject(object);
}

void MyPDFDoc::addObject(const Handle<MyPDFObj>& object, const String& key) {
    const auto holder = operandOf<MyPDFDictionary>(container_, "setObject");
    if (key == kParent) {
        holder->setParent(objectAs<MyPDFDictionary>(object));
        return;
    }
    object->setKey(key);
    holder->setObject(object, key);
}

void MyPDFDoc::addString(const Handle<MyPDFObj>& object, const String& key) {
    operandOf<MyPDFDictionary>(container_, "setObject")->setObject(object, key);
}

void MyPDFDoc::setupPDFObjectsWithDict(const ReaderObject* dictionary) {
    if (container_ && dictionary != nullptr && !dictionary->entries().empty()) fillContainer(*dictionary);
}

void MyPDFDoc::setupPDFObjectsWithArray(const ReaderObject* array) {
    if (container_ && array != nullptr && !array->items().empty()) fillContainer(*array);
}

void MyPDFDoc::enumContainer(const ReaderObject* handle, ReaderType type) {
    if (type == ReaderType::array) setupPDFObjectsWithArray(handle);
    if (type == ReaderType::dictionary || type == ReaderType::stream) setupPDFObjectsWithDict(handle);
}

void MyPDFDoc::setupPDFObject(const ReaderObject* handle, const String& key) {
    if (!container_ || handle == nullptr) return;
    const ReaderType type = handle->type();
    if (const Handle<MyPDFObj> known = pdfObjFromCache(handle, type)) {
        addObject(known, key);
        return;
    }
    const Handle<MyPDFObj> object = objWithObjRef(handle, type);
    addObject(object, key);
    if (!object->isContainer()) return;
    const Handle<MyPDFObj> outer = container_;
    container_ = object;
    enumContainer(handle, type);
    container_ = outer;
}

// A child is entered in the cache before its own contents are looked at, so that a ring ends there, and is filled
// before its next sibling is met. The frames stand for the calls that would do this: a file may nest as deep as it
// likes.
void MyPDFDoc::fillContainer(const ReaderObject& source) {
    struct Frame {
        Handle<MyPDFObj> container;
        const ReaderObject* source;
        size_t next = 0;
    };
    const Handle<MyPDFObj> outer = container_;
    std::vector<Frame> frames;
    frames.push_back({container_, &source});
    while (!frames.empty()) {
        Frame& frame = frames.back();
        const bool isArray = frame.source->type() == ReaderType::array;
        const size_t count = isArray ? frame.source->items().size() : frame.source->entries().size();
        if (frame.next == count) {
            frames.pop_back();
            continue;
        }
        const size_t at = frame.next++;
        const ReaderKey* key = isArray ? nullptr : frame.source->entries()[at].key;
        if (key != nullptr && isPassedOver(*key)) continue;
        const ReaderObject* child = isArray ? frame.source->items()[at] : frame.source->entries()[at].value;
        const Handle<MyPDFObj> known = pdfObjFromCache(child, child->type());
        const Handle<MyPDFObj> object = known ? known : objWithObjRef(child, child->type());
        container_ = frame.container;
        if (key == nullptr) {
            addObject(object);
        } else {
            addObject(object, key->text);
        }
        // Outside of reading nothing is remembered, and a ring would never end.
        if (!known && loading_ && child->isContainer()) frames.push_back({object, child});
    }
    container_ = outer;
}

namespace {

/// Decodes streams on several threads. Each stream is touched by one of them.
class StreamDecoding {
  public:
    explicit StreamDecoding(std::vector<MyPDFStream*> streams) : streams_(std::move(streams)) {}

    /// Rethrows what a thread met.
    void run() {
        const size_t cores = std::max<size_t>(std::thread::hardware_concurrency(), 1);
        {
            std::vector<std::jthread> threads;
            for (size_t count = 1; count < std::min(cores, streams_.size()); ++count)
                threads.emplace_back([this] { work(); });
            work();
        }
        if (failure_) std::rethrow_exception(failure_);
    }

  private:
    void work() noexcept {
        try {
            for (size_t at; (at = next_.fetch_add(1)) < streams_.size();) decode(*streams_[at]);
        } catch (...) {
            const std::lock_guard lock(failureAccess_);
            if (!failure_) failure_ = std::current_exception();
            next_ = streams_.size();
        }
    }

    void decode(MyPDFStream& stream) {
        int32_t format = kStreamRaw;
        const size_t used = used_.load();
        const size_t left = pdf_limits::kMaximumDocumentBytes - std::min(used, pdf_limits::kMaximumDocumentBytes);
        const Data data = dataForStream(stream.streamRef(), format, std::min(left, pdf_limits::kMaximumStreamBytes));
        used_ += data.length();
        stream.setData(data);
        stream.setDataFormat(format);
    }

    std::vector<MyPDFStream*> streams_;
    std::atomic<size_t> next_{0};
    std::atomic<size_t> used_{0};
    std::mutex failureAccess_;
    std::exception_ptr failure_;
};

}  // namespace

void MyPDFDoc::decodeStreams() {
    std::vector<MyPDFStream*> streams;
    for (const Handle<MyPDFObj>& object : pdfObjs_) {
        if (!object->isStream()) continue;
        auto* stream = static_cast<MyPDFStream*>(object.get());
        if (stream->streamRef() != nullptr) streams.push_back(stream);
    }
    StreamDecoding(std::move(streams)).run();
}

void MyPDFDoc::setupCustomObjs() {
    if (xObjs_.isNull()) return;
    ObjectSet set;
    for (const Handle<MyPDFObj>& object : pdfObjs_) {
        if (object->isXObj()) {
            xObjs_.add(object);
        } else if (object->isColorSpace()) {
            addColorSpaces(object, set);
        } else if (object->isFont()) {
            fonts_.add(object);
        }
    }
    for (const Handle<MyPDFObj>& object : set.members()) colorSpaces_.add(object);
}

void MyPDFDoc::addColorSpaces(const Handle<MyPDFObj>& object, ObjectSet& set) const {
    if (object->isArray()) {
        set.add(object);
    } else if (const auto dictionary = objectAs<MyPDFDictionary>(object)) {
        const ObjectMap& map = dictionary->dictionary();
        for (size_t at = 0; at < map.count(); ++at) set.add(map.objectAt(at));
    }
}

void MyPDFDoc::addFonts(const Handle<MyPDFObj>& object, ObjectSet& set) const {
    addColorSpaces(object, set);
}

}  // namespace vornaset
