#include "pdf/pdf_stream.h"

#include "pdf/pdf_keys.h"
#include "pdf/pdf_scalars.h"
#include "pdf/stream_compression.h"

namespace vornaset {

Handle<MyPDFStream> MyPDFStream::stream() {
    return Handle<MyPDFStream>::adopt(new MyPDFStream());
}

void MyPDFStream::takeCompressed(const Data& compressed) {
    if (compressed.isNull()) {
        setFilter(nullptr);
        return;
    }
    setFilter(u"FlateDecode");
    setData(compressed);
    setDataFormat(kStreamCompressed);
}

void MyPDFStream::appendPDFData(std::string& buffer) {
    if (dataFormat_ == kStreamRaw) takeCompressed(compressedData(data_));
    setLength(static_cast<int64_t>(data_.length()));
    MyPDFDictionary::appendPDFData(buffer);
    buffer += "stream\n";
    buffer += data_.view();
    buffer += "\nendstream\n";
}

namespace {

template <class Visitor>
void visitHolderOfData(const Handle<MyPDFObj>& object, const char* operation, Visitor visitor) {
    switch (object->kind()) {
        case MyPDFObj::Kind::string:
            visitor(*objectAs<MyPDFString>(object));
            break;
        case MyPDFObj::Kind::name:
            visitor(*objectAs<MyPDFName>(object));
            break;
        case MyPDFObj::Kind::stream:
            visitor(*objectAs<MyPDFStream>(object));
            break;
        default:
            raiseUnrecognized(object->kind(), operation);
    }
}

}  // namespace

Data dataOf(const Handle<MyPDFObj>& object) {
    Data data;
    if (object) visitHolderOfData(object, "data", [&](auto& holder) { data = holder.data(); });
    return data;
}

void setDataOf(const Handle<MyPDFObj>& object, const Data& data) {
    if (object) visitHolderOfData(object, "setData:", [&](auto& holder) { holder.setData(data); });
}

}  // namespace vornaset
