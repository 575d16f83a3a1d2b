#pragma once
// Booleans, numbers (and null), strings and names.

#include <optional>
#include <string>

#include "pdf/pdf_obj.h"

namespace vornaset {

class MyPDFBoolean : public MyPDFObj {
  public:
    static bool isKind(Kind kind) noexcept { return kind == Kind::boolean; }
    static Handle<MyPDFBoolean> boolean() { return boolean(0); }
    static Handle<MyPDFBoolean> boolean(uint8_t flag);

    /// "true" for any value but 0.
    String pdfString() const override;
    void appendPDFData(std::string& buffer) override;

    uint8_t b() const noexcept { return b_; }
    void setB(uint8_t flag) {
        if (!isAbsent()) b_ = flag;
    }

  protected:
    explicit MyPDFBoolean(uint8_t flag) : MyPDFObj(Kind::boolean), b_(flag) {}
    explicit MyPDFBoolean(AbsentTag tag) noexcept : MyPDFObj(Kind::boolean, tag) {}

  private:
    uint8_t b_ = 0;
};

/// An integer, a real, or with no number held the null object.
class MyPDFNumber : public MyPDFObj {
  public:
    static bool isKind(Kind kind) noexcept { return kind == Kind::number; }
    /// The null object.
    static Handle<MyPDFNumber> make() { return make(std::nullopt); }
    static Handle<MyPDFNumber> make(std::optional<Number> number);

    uint8_t isNumber() const override { return 1; }
    /// The digits with at most three behind the point, cut and not rounded; "null" without a number.
    String pdfString() const override;
    void appendPDFData(std::string& buffer) override;

    /// Replaces the number by floatValue times the factor, as a double. What a 32-bit float can't hold is lost.
    void scale(double factor) { setFloatValue(floatValue() * factor); }
    /// The number narrowed to a 32-bit float; 0 without a number.
    double floatValue() const noexcept { return number_ ? static_cast<double>(number_->floatValue()) : 0; }
    void setFloatValue(double value) { setNumber(Number(value)); }
    const std::optional<Number>& number() const noexcept { return number_; }
    void setNumber(std::optional<Number> number) {
        if (!isAbsent()) number_ = number;
    }

  protected:
    explicit MyPDFNumber(std::optional<Number> number) : MyPDFObj(Kind::number), number_(number) {}
    explicit MyPDFNumber(AbsentTag tag) noexcept : MyPDFObj(Kind::number, tag) {}

  private:
    std::optional<Number> number_;
};

/// The text of a number in a file: shortest decimal digits, cut behind the third digit after the point. An exponent
/// form isn't rewritten, and is cut like any other text.
void appendNumberText(std::string& buffer, Number number);

/// A string's bytes, without delimiters and without escapes.
class MyPDFString : public MyPDFObj {
  public:
    static bool isKind(Kind kind) noexcept { return kind == Kind::string; }
    /// Without data.
    static Handle<MyPDFString> make();
    /// Copies the bytes. A length of -1: they end at their terminating zero. A null pointer or a length below -1 gives
    /// a string without data.
    static Handle<MyPDFString> stringWithBytes(const void* bytes, int64_t length);
    /// The text as UTF-8, without a byte-order mark, up to the first zero. No data for a null text.
    static Handle<MyPDFString> stringWithString(const String& text);

    /// UTF-16 behind the mark FE FF (the mark stays), else UTF-8, else Mac OS Roman.
    String pdfString() const override;
    /// The literal form, ISO 32000-1, 7.3.4.2.
    void appendPDFData(std::string& buffer) override;
    uint8_t isString() const override { return 1; }

    /// The text as the support library decodes bytes: UTF-8, else a detected single-byte encoding.
    String string() const;
    const Data& data() const noexcept { return data_; }
    void setData(const Data& data) {
        if (!isAbsent()) data_ = data;
    }

  protected:
    explicit MyPDFString(Data data) : MyPDFObj(Kind::string), data_(std::move(data)) {}
    explicit MyPDFString(AbsentTag tag) noexcept : MyPDFObj(Kind::string, tag) {}

  private:
    Data data_;
};

/// A name's bytes with the leading "/", without "#" escapes.
class MyPDFName : public MyPDFObj {
  public:
    static bool isKind(Kind kind) noexcept { return kind == Kind::name; }
    /// Without data.
    static Handle<MyPDFName> name();
    /// The bytes up to their zero, with "/" in front unless they begin with it. A null pointer counts as empty.
    static Handle<MyPDFName> nameWithCString(const char* bytes);
    /// As above with the text's UTF-8 bytes.
    static Handle<MyPDFName> nameWithString(const String& text);

    uint8_t isName() const override { return 1; }
    /// UTF-8, else Windows code page 1252; with the slash, without escapes.
    String pdfString() const override;
    /// Bytes outside 0x30 to 0x7E, but for "+", as "#" and two lower-case digits.
    void appendPDFData(std::string& buffer) override;

    const Data& data() const noexcept { return data_; }
    void setData(const Data& data) {
        if (!isAbsent()) data_ = data;
    }

  protected:
    explicit MyPDFName(Data data) : MyPDFObj(Kind::name), data_(std::move(data)) {}
    explicit MyPDFName(AbsentTag tag) noexcept : MyPDFObj(Kind::name, tag) {}

  private:
    Data data_;
};

}  // namespace vornaset
