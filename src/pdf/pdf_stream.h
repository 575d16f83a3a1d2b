#pragma once
// A stream: a dictionary with bytes.

#include "pdf/pdf_dictionary.h"

namespace vornaset {

class ReaderObject;  ///< an object of the PDF reader

/// What `data` of a stream holds.
enum StreamDataFormat : int32_t {
    kStreamCompressed = -1,  ///< zlib data, compressed here
    kStreamRaw = 0,          ///< decoded bytes; a write compresses them
    kStreamJPEG = 1,         ///< a JPEG file, written as it stands
    kStreamJPEG2000 = 2,     ///< likewise
};

class MyPDFStream : public MyPDFDictionary {
  public:
    static bool isKind(Kind kind) noexcept { return kind == Kind::stream; }
    /// No entries, no data, state 0.
    static Handle<MyPDFStream> stream();

    uint8_t isContainer() const override { return 1; }
    uint8_t isStream() const override { return 1; }
    /// Compresses a stream of state 0, sets "Length", and gives dictionary and data.
    void appendPDFData(std::string& buffer) override;

    const Data& data() const noexcept { return data_; }
    void setData(const Data& data) {
        if (!isAbsent()) data_ = data;
    }
    /// Good only while the reader's document is open.
    const ReaderObject* streamRef() const noexcept { return streamRef_; }
    void setStreamRef(const ReaderObject* streamRef) {
        if (!isAbsent()) streamRef_ = streamRef;
    }
    /// A StreamDataFormat.
    int32_t dataFormat() const noexcept { return dataFormat_; }
    void setDataFormat(int32_t format) {
        if (!isAbsent()) dataFormat_ = format;
    }

    /// Takes what compressedData gave for the data: with a result, "Filter" becomes /FlateDecode, the data is replaced
    /// and the state is -1; with null, "Filter" goes and the data stays.
    void takeCompressed(const Data& compressed);

  protected:
    MyPDFStream() : MyPDFDictionary(Kind::stream) {}
    explicit MyPDFStream(AbsentTag tag) noexcept : MyPDFDictionary(Kind::stream, tag) {}

  private:
    Data data_;
    const ReaderObject* streamRef_ = nullptr;
    int32_t dataFormat_ = kStreamRaw;
};

/// The data of a string, a name or a stream; null for null. Throws UnrecognizedOperation for objects of other classes.
Data dataOf(const Handle<MyPDFObj>& object);
void setDataOf(const Handle<MyPDFObj>& object, const Data& data);

}  // namespace vornaset
