#include "pdf/reader_values.h"

#include <array>
#include <charconv>
#include <cmath>

#include "support/text_decoding.h"

namespace vornaset {
namespace {

bool isOfType(const ReaderObject* object, ReaderType type) {
    return object != nullptr && object->type() == type;
}

/// The float's digits with six decimals, read back as a float.
float withSixDecimals(float value) {
    if (!std::isfinite(value)) return value;
    std::array<char, 64> digits;
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 6);
    float result = value;
    std::from_chars(digits.data(), written.ptr, result, std::chars_format::fixed);
    return result;
}

/// ISO 32000-1, annex D.3: what PDFDocEncoding has in the places where Latin-1 has controls.
char16_t fromPDFDocEncoding(unsigned char byte) {
    static constexpr std::array<char16_t, 8> accents{0x02D8, 0x02C7, 0x02C6, 0x02D9, 0x02DD, 0x02DB, 0x02DA, 0x02DC};
    static constexpr std::array<char16_t, 33> signs{
        0x2022, 0x2020, 0x2021, 0x2026, 0x2014, 0x2013, 0x0192, 0x2044, 0x2039, 0x203A, 0x2212,
        0x2030, 0x201E, 0x201C, 0x201D, 0x2018, 0x2019, 0x201A, 0x2122, 0xFB01, 0xFB02, 0x0141,
        0x0152, 0x0160, 0x0178, 0x017D, 0x0131, 0x0142, 0x0153, 0x0161, 0x017E, 0xFFFD, 0x20AC};
    if (byte >= 0x18 && byte <= 0x1F) return accents[byte - 0x18U];
    if (byte >= 0x80 && byte <= 0xA0) return signs[byte - 0x80U];
    return byte;
}

String fromUTF16(std::string_view bytes, bool isBigEndian) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        units.push_back(static_cast<char16_t>(isBigEndian ? first << 8U | second : second << 8U | first));
    }
    return String(std::u16string_view(units));
}

}  // namespace

Handle<MyPDFBoolean> boolWithObjRef(const ReaderObject* objRef) {
    return MyPDFBoolean::boolean(pdfObjectGetBoolean(objRef));
}

uint8_t pdfObjectGetBoolean(const ReaderObject* objRef) {
    return objRef != nullptr && objRef->boolean() ? 1 : 0;
}

Handle<MyPDFNumber> integerWithObjRef(const ReaderObject* objRef) {
    return MyPDFNumber::make(Number(pdfObjectGetInteger(objRef)));
}

int64_t pdfObjectGetInteger(const ReaderObject* objRef) {
    return objRef != nullptr ? objRef->integer() : 0;
}

Handle<MyPDFNumber> floatWithObjRef(const ReaderObject* objRef) {
    return MyPDFNumber::make(Number(withSixDecimals(pdfObjectGetFloat(objRef))));
}

float pdfObjectGetFloat(const ReaderObject* objRef) {
    return objRef != nullptr ? static_cast<float>(objRef->real()) : 0.0F;
}

Handle<MyPDFString> stringWithObjRef(const ReaderObject* objRef) {
    const std::string_view bytes = objRef != nullptr ? objRef->string() : std::string_view();
    return MyPDFString::stringWithBytes(bytes.data() != nullptr ? bytes.data() : "",
                                        static_cast<int64_t>(bytes.size()));
}

String pdfObjectGetString(const ReaderObject* objRef) {
    const std::string_view bytes = objRef != nullptr ? objRef->string() : std::string_view();
    if (bytes.starts_with("\xFE\xFF")) return fromUTF16(bytes.substr(2), true);
    if (bytes.starts_with("\xFF\xFE")) return fromUTF16(bytes.substr(2), false);
    if (bytes.starts_with("\xEF\xBB\xBF")) return String::fromDamagedUTF8(bytes.substr(3));
    std::u16string units;
    units.reserve(bytes.size());
    for (const char byte : bytes) units.push_back(fromPDFDocEncoding(static_cast<unsigned char>(byte)));
    return String(std::u16string_view(units));
}

Handle<MyPDFName> nameWithObjRef(const ReaderObject* objRef) {
    // The reader's name has no slash: one that it begins with is part of the name.
    std::string bytes = "/";
    if (objRef != nullptr) bytes += objRef->name();
    return MyPDFName::nameWithCString(bytes.c_str());
}

Handle<MyPDFStream> streamWithObjRef(const ReaderObject* objRef) {
    Handle<MyPDFStream> stream = MyPDFStream::stream();
    stream->setStreamRef(pdfObjectGetStream(objRef));
    return stream;
}

const ReaderObject* pdfObjectGetStream(const ReaderObject* objRef) {
    return isOfType(objRef, ReaderType::stream) ? objRef : nullptr;
}

const ReaderObject* pdfObjectGetArray(const ReaderObject* objRef) {
    return isOfType(objRef, ReaderType::array) ? objRef : nullptr;
}

const ReaderObject* pdfObjectGetDict(const ReaderObject* objRef) {
    return isOfType(objRef, ReaderType::dictionary) ? objRef : nullptr;
}

const ReaderObject* pdfArrayGetObject(const ReaderObject* array, int64_t index) {
    if (pdfObjectGetArray(array) == nullptr || index < 0) return nullptr;
    const auto& items = array->items();
    return static_cast<size_t>(index) < items.size() ? items[static_cast<size_t>(index)] : nullptr;
}

bool isPassedOver(const ReaderKey& key) {
    return key.bytes == "StructTreeRoot";
}

std::vector<std::pair<String, const ReaderObject*>> dictWithPDFDict(const ReaderObject* dictionary) {
    std::vector<std::pair<String, const ReaderObject*>> entries;
    if (dictionary == nullptr) return entries;
    entries.reserve(dictionary->entries().size());
    for (const ReaderEntry& entry : dictionary->entries())
        if (!isPassedOver(*entry.key)) entries.emplace_back(entry.key->text, entry.value);
    return entries;
}

std::vector<const ReaderObject*> arrayWithPDFArray(const ReaderObject* array) {
    return array != nullptr ? array->items() : std::vector<const ReaderObject*>();
}

Data dataForStream(const ReaderObject* stream, int32_t& dataFormat, size_t limit) {
    dataFormat = kStreamRaw;
    if (pdfObjectGetStream(stream) == nullptr) return nullptr;
    RawStream raw = stream->document().rawStream(*stream);
    if (!raw.isReadable) return nullptr;
    UndoneChain undone = undoFilters(std::move(raw.bytes), raw.filters, limit);
    switch (undone.outcome) {
        case ChainOutcome::undone:
            dataFormat = kStreamRaw;
            break;
        case ChainOutcome::jpeg:
            dataFormat = kStreamJPEG;
            break;
        case ChainOutcome::jpeg2000:
            dataFormat = kStreamJPEG2000;
            break;
        case ChainOutcome::carried:
            dataFormat = kStreamCompressed;
            break;
    }
    return Data(std::move(undone.bytes));
}

}  // namespace vornaset
