#include "pdf/pdf_scalars.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "pdf/pdf_text.h"
#include "support/text_decoding.h"

namespace vornaset {

// ----- Booleans

Handle<MyPDFBoolean> MyPDFBoolean::boolean(uint8_t flag) {
    return Handle<MyPDFBoolean>::adopt(new MyPDFBoolean(flag));
}

String MyPDFBoolean::pdfString() const {
    return b_ != 0 ? u"true" : u"false";
}

void MyPDFBoolean::appendPDFData(std::string& buffer) {
    buffer += b_ != 0 ? "true" : "false";
}

// ----- Numbers

namespace {

/// The plain decimal text of a number, as Number::text gives it. From where on a real's neighbours lie further apart
/// than 1, its shortest digits end before the point: those few are left to Number::text.
std::string_view decimalText(Number number, char* digits, size_t room, std::string& spare) {
    const double value = number.doubleValue();
    const double size = std::abs(value);
    std::to_chars_result result{nullptr, std::errc::invalid_argument};
    if (!number.isFloatingPoint()) {
        result = std::to_chars(digits, digits + room, number.integerValue());
    } else if (size >= 1e-4 && size < 1e7 && number.kind() == Number::Kind::single) {
        result = std::to_chars(digits, digits + room, static_cast<float>(value), std::chars_format::fixed);
    } else if (size >= 1e-4 && size < 1e15 && number.kind() == Number::Kind::real) {
        result = std::to_chars(digits, digits + room, value, std::chars_format::fixed);
    }
    if (result.ec == std::errc()) return {digits, static_cast<size_t>(result.ptr - digits)};
    spare = number.text().utf8();
    return spare;
}

}  // namespace

void appendNumberText(std::string& buffer, Number number) {
    char digits[64];
    std::string spare;
    std::string_view text = decimalText(number, digits, sizeof digits, spare);
    const size_t point = text.find('.');
    if (point != std::string_view::npos && text.size() - point >= 5) text = text.substr(0, point + 4);
    buffer += text;
}

Handle<MyPDFNumber> MyPDFNumber::make(std::optional<Number> number) {
    return Handle<MyPDFNumber>::adopt(new MyPDFNumber(number));
}

void MyPDFNumber::appendPDFData(std::string& buffer) {
    if (number_) {
        appendNumberText(buffer, *number_);
    } else {
        buffer += "null";
    }
}

String MyPDFNumber::pdfString() const {
    if (!number_) return u"null";
    std::string text;
    appendNumberText(text, *number_);
    return String::fromUTF8(text);
}

// ----- Strings

Handle<MyPDFString> MyPDFString::make() {
    return Handle<MyPDFString>::adopt(new MyPDFString(Data()));
}

Handle<MyPDFString> MyPDFString::stringWithBytes(const void* bytes, int64_t length) {
    if (bytes == nullptr || length < -1) return make();
    const size_t count = length == -1 ? std::strlen(static_cast<const char*>(bytes)) : static_cast<size_t>(length);
    return Handle<MyPDFString>::adopt(new MyPDFString(Data::withBytes(bytes, count)));
}

Handle<MyPDFString> MyPDFString::stringWithString(const String& text) {
    return text.isNull() ? make() : stringWithBytes(text.utf8().c_str(), -1);
}

String MyPDFString::pdfString() const {
    const std::string_view bytes = data_.view();
    if (bytes.size() >= 3 && bytes.starts_with("\xFE\xFF")) return stringWithUTF16BigEndian(bytes);
    String text = String::fromUTF8(bytes);
    if (!text.isNull()) return text;
    const String macRoman = vornaset::stringWithBytes(bytes.data(), bytes.size(), kMacRomanEncoding);
    return macRoman.isNull() ? String(u"") : macRoman;
}

void MyPDFString::appendPDFData(std::string& buffer) {
    buffer += '(';
    for (const char byte : data_.view()) {
        switch (byte) {
            case '(':
            case ')':
            case '\\':
                buffer += '\\';
                buffer += byte;
                break;
            case '\n':
                buffer += "\\n";
                break;
            case '\r':
                buffer += "\\r";
                break;
            default:
                buffer += byte;
        }
    }
    buffer += ')';
}

String MyPDFString::string() const {
    return isAbsent() ? String() : stringWithData(data_);
}

// ----- Names

Handle<MyPDFName> MyPDFName::name() {
    return Handle<MyPDFName>::adopt(new MyPDFName(Data()));
}

Handle<MyPDFName> MyPDFName::nameWithCString(const char* bytes) {
    std::string text = bytes == nullptr ? "" : bytes;
    if (!text.starts_with('/')) text.insert(text.begin(), '/');
    return Handle<MyPDFName>::adopt(new MyPDFName(Data(std::move(text))));
}

Handle<MyPDFName> MyPDFName::nameWithString(const String& text) {
    return nameWithCString(text.utf8().c_str());
}

String MyPDFName::pdfString() const {
    const std::string_view bytes = data_.view();
    const String text = String::fromUTF8(bytes);
    return text.isNull() ? stringWithBytes(bytes.data(), bytes.size(), kWindows1252Encoding) : text;
}

void MyPDFName::appendPDFData(std::string& buffer) {
    static constexpr char kDigits[] = "0123456789abcdef";
    const std::string_view bytes = data_.view();
    if (bytes.empty()) return;
    buffer += bytes[0];
    for (const char byte : bytes.substr(1)) {
        const auto code = static_cast<unsigned char>(byte);
        if ((code >= 0x30 && code <= 0x7E) || code == '+') {
            buffer += byte;
        } else {
            buffer += '#';
            buffer += kDigits[code >> 4];
            buffer += kDigits[code & 0x0F];
        }
    }
}

}  // namespace vornaset
