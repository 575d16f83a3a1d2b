#include "pdf/pdf_obj.h"

#include <vector>

#include "pdf/pdf_keys.h"
#include "pdf/pdf_objects.h"

namespace vornaset {

namespace {

std::atomic<int64_t> allocatedCount{0};

}  // namespace

template <>
MyPDFObj& absentObject<MyPDFObj>() {
    static Absent<MyPDFObj> object;
    return object;
}
template <>
MyPDFBoolean& absentObject<MyPDFBoolean>() {
    static Absent<MyPDFBoolean> object;
    return object;
}
template <>
MyPDFNumber& absentObject<MyPDFNumber>() {
    static Absent<MyPDFNumber> object;
    return object;
}
template <>
MyPDFString& absentObject<MyPDFString>() {
    static Absent<MyPDFString> object;
    return object;
}
template <>
MyPDFName& absentObject<MyPDFName>() {
    static Absent<MyPDFName> object;
    return object;
}
template <>
MyPDFArray& absentObject<MyPDFArray>() {
    static Absent<MyPDFArray> object;
    return object;
}
template <>
MyPDFDictionary& absentObject<MyPDFDictionary>() {
    static Absent<MyPDFDictionary> object;
    return object;
}
template <>
MyPDFStream& absentObject<MyPDFStream>() {
    static Absent<MyPDFStream> object;
    return object;
}

MyPDFObj::MyPDFObj(Kind kind) : kind_(kind), absent_(false) {
    allocatedCount.fetch_add(1, std::memory_order_relaxed);
}

MyPDFObj::MyPDFObj(Kind kind, AbsentTag) noexcept : kind_(kind), absent_(true) {}

MyPDFObj::~MyPDFObj() {
    if (anchor_) anchor_->object = nullptr;
    if (!absent_) allocatedCount.fetch_sub(1, std::memory_order_relaxed);
}

Handle<MyPDFObj> MyPDFObj::make() {
    return Handle<MyPDFObj>::adopt(new MyPDFObj(Kind::plain));
}

int64_t MyPDFObj::allocated() noexcept {
    return allocatedCount.load(std::memory_order_relaxed);
}

uint8_t MyPDFObj::isColorSpace() const {
    return key_ == pdf_key::kColorSpace && isContainer() ? 1 : 0;
}

uint8_t MyPDFObj::enumChildren(EnumChildrenProc, void*) {
    return 1;
}

Data MyPDFObj::pdfData() {
    if (isAbsent()) return {};
    std::string bytes;
    appendPDFData(bytes);
    return Data(std::move(bytes));
}

void MyPDFObj::appendPDFData(std::string& buffer) {
    buffer += pdfString().utf8();
}

MyPDFObj* MyPDFObj::childAt(int64_t) const {
    return nullptr;
}

Ref<WeakAnchor> MyPDFObj::weakAnchor() {
    if (!anchor_) anchor_ = Ref<WeakAnchor>::adopt(new WeakAnchor(this));
    return anchor_;
}

const char* MyPDFObj::nameOfKind(Kind kind) noexcept {
    switch (kind) {
        case Kind::plain:
            return "MyPDFObj";
        case Kind::boolean:
            return "MyPDFBoolean";
        case Kind::number:
            return "MyPDFNumber";
        case Kind::string:
            return "MyPDFString";
        case Kind::name:
            return "MyPDFName";
        case Kind::array:
            return "MyPDFArray";
        case Kind::dictionary:
            return "MyPDFDictionary";
        case Kind::stream:
            return "MyPDFStream";
    }
    return "MyPDFObj";
}

// A chain of a hundred thousand outline items ends with one call of this function: what goes while an object is being
// destroyed waits in a list.
void MyPDFObj::destroy(const MyPDFObj* object) noexcept {
    thread_local std::vector<const MyPDFObj*>* waiting = nullptr;
    if (waiting != nullptr) {
        waiting->push_back(object);
        return;
    }
    std::vector<const MyPDFObj*> list;
    waiting = &list;
    delete object;
    while (!list.empty()) {
        const MyPDFObj* next = list.back();
        list.pop_back();
        delete next;
    }
    waiting = nullptr;
}

void raiseUnrecognized(MyPDFObj::Kind kind, const char* operation) {
    throw UnrecognizedOperation(std::string("A ") + MyPDFObj::nameOfKind(kind) + " has no operation \"" + operation +
                                "\".");
}

}  // namespace vornaset
