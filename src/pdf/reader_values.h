#pragma once
// Values out of single objects of the PDF reader. A null handle, and one of another type than the function's own, gives
// zero, empty or null.

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "pdf/pdf_objects.h"
#include "pdf/reader.h"

namespace vornaset {

Handle<MyPDFBoolean> boolWithObjRef(const ReaderObject* objRef);
uint8_t pdfObjectGetBoolean(const ReaderObject* objRef);
Handle<MyPDFNumber> integerWithObjRef(const ReaderObject* objRef);
int64_t pdfObjectGetInteger(const ReaderObject* objRef);
/// The real narrowed to a 32-bit float and cut to six decimals, so that a coordinate carries no digits that a reader
/// of its text wouldn't see.
Handle<MyPDFNumber> floatWithObjRef(const ReaderObject* objRef);
/// Narrowed to a 32-bit float.
float pdfObjectGetFloat(const ReaderObject* objRef);
/// The raw bytes.
Handle<MyPDFString> stringWithObjRef(const ReaderObject* objRef);
/// As text: UTF-16 and UTF-8 behind their marks, else PDFDocEncoding (ISO 32000-1, 7.9.2.2). The empty string when
/// there is no string.
String pdfObjectGetString(const ReaderObject* objRef);
/// With a slash put in front, up to a zero byte.
Handle<MyPDFName> nameWithObjRef(const ReaderObject* objRef);
/// With `streamRef` set and no data yet.
Handle<MyPDFStream> streamWithObjRef(const ReaderObject* objRef);

const ReaderObject* pdfObjectGetStream(const ReaderObject* objRef);
const ReaderObject* pdfObjectGetArray(const ReaderObject* objRef);
const ReaderObject* pdfObjectGetDict(const ReaderObject* objRef);
/// Null for an index outside.
const ReaderObject* pdfArrayGetObject(const ReaderObject* array, int64_t index);

/// True for the one key that is passed over in every dictionary: the logical structure of a tagged file.
bool isPassedOver(const ReaderKey& key);
/// Keys and values of a dictionary or of a stream's dictionary, without "StructTreeRoot".
std::vector<std::pair<String, const ReaderObject*>> dictWithPDFDict(const ReaderObject* dictionary);
std::vector<const ReaderObject*> arrayWithPDFArray(const ReaderObject* array);

/// A stream's bytes with the filters undone, and what they are, a StreamDataFormat: kStreamRaw; kStreamJPEG or
/// kStreamJPEG2000 when that was the last filter, which stays; kStreamCompressed for bytes as the file holds them,
/// because a filter can't be undone here or gives too much. Null when the file doesn't give the bytes. Several threads
/// may ask at once, as ReaderDocument::rawStream says.
Data dataForStream(const ReaderObject* stream, int32_t& dataFormat, size_t limit = pdf_limits::kMaximumStreamBytes);

}  // namespace vornaset
