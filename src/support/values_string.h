#pragma once
// Text: String, immutable and shared, and MutableString, shared by reference.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/ref.h"

namespace vornaset {

class StringBody;

/// Immutable UTF-16 text. A copy shares the units and costs one pointer. Positions and lengths are in UTF-16 units,
/// from 0. Null differs from empty; a null string answers 0, empty or null to everything. Text need not be well-formed
/// UTF-16. Handles may be copied on several threads.
class String {
  public:
    static constexpr size_t npos = static_cast<size_t>(-1);

    constexpr String() noexcept = default;
    constexpr String(std::nullptr_t) noexcept {}
    /// From NUL-terminated UTF-8. A null pointer gives null, and so do bytes that are no UTF-8.
    String(const char* utf8);
    /// From NUL-terminated UTF-16. A null pointer gives null.
    String(const char16_t* units);
    String(std::u16string_view units);
    String(const std::u16string& units) : String(std::u16string_view(units)) {}

    /// Null when the bytes are no UTF-8 (RFC 3629: no surrogates, no overlong forms). A byte-order mark stays.
    static String fromUTF8(std::string_view bytes);
    /// Each damaged sequence becomes one U+FFFD. Never null.
    static String fromDamagedUTF8(std::string_view bytes);

    bool isNull() const noexcept { return !body_; }
    /// True for null too.
    bool isEmpty() const noexcept { return length() == 0; }
    size_t length() const noexcept;
    /// Empty for null. Good as long as a handle on this text lives.
    std::u16string_view view() const noexcept;
    /// Throws RangeException at or beyond the end; 0 for a null string.
    char16_t charAt(size_t index) const;
    /// Throws RangeException when the range leaves the text; null for a null string.
    String substring(size_t from) const;
    String substring(size_t from, size_t count) const;
    /// The position of the first occurrence at or behind `from`, or npos. An empty or null text has no occurrence.
    size_t find(const String& text, size_t from = 0) const noexcept;
    size_t find(char16_t unit, size_t from = 0) const noexcept { return view().find(unit, from); }

    /// UTF-8, with U+FFFD for each lone surrogate. Empty for null.
    std::string utf8() const;
    /// UTF-8, or nothing for a null string and for text with a lone surrogate, which has no UTF-8 form.
    std::optional<std::string> exactUTF8() const;

    /// The decimal number that the text begins with, behind any white space, or 0. Cut to the range of the type.
    int64_t integerValue() const noexcept;
    int32_t intValue() const noexcept;
    /// The floating-point number that the text begins with (point, optional exponent), or 0. No locale.
    double doubleValue() const noexcept;
    float floatValue() const noexcept;

    /// Equal units. Null equals null alone.
    bool operator==(const String& other) const noexcept;
    /// By UTF-16 units; null before all others.
    bool operator<(const String& other) const noexcept;
    /// Null counts as empty.
    String operator+(const String& tail) const;
    /// The same shared text, null and null included.
    bool isSameObject(const String& other) const noexcept { return body_ == other.body_; }
    /// Equal for equal units: `hashOf(view())`.
    size_t hash() const noexcept;
    static size_t hashOf(std::u16string_view units) noexcept;

  private:
    explicit String(Ref<const StringBody> body) noexcept : body_(std::move(body)) {}
    static String make(std::u16string_view units);

    Ref<const StringBody> body_;
};

inline String operator+(const char* head, const String& tail) {
    return String(head) + tail;
}

/// The units and their count, in one block of memory.
class StringBody : public Counted {
  public:
    static Ref<const StringBody> make(std::u16string_view units);
    /// A body of that length whose units the caller writes before anybody else sees it.
    static Ref<const StringBody> makeUninitialised(size_t length, char16_t** units);
    static void destroy(const StringBody* body) noexcept;

    size_t length() const noexcept { return length_; }
    const char16_t* units() const noexcept { return reinterpret_cast<const char16_t*>(this + 1); }
    size_t hash() const noexcept;

  private:
    explicit StringBody(size_t length) : length_(length) {}

    size_t length_;
    mutable std::atomic<size_t> hash_{0};  ///< 0 until somebody asks
};

inline size_t String::length() const noexcept {
    return body_ ? body_->length() : 0;
}

inline std::u16string_view String::view() const noexcept {
    return body_ ? std::u16string_view(body_->units(), body_->length()) : std::u16string_view();
}

inline bool String::operator==(const String& other) const noexcept {
    if (body_ == other.body_) return true;
    return body_ && other.body_ && view() == other.view();
}

/// UTF-16 text that is edited in place. Copying the handle shares the text. A null handle answers 0 and empty, and
/// edits of it do nothing. Not for several threads.
class MutableString {
  public:
    MutableString() noexcept = default;  ///< null
    MutableString(std::nullptr_t) noexcept {}
    /// A text of its own that starts as a copy. A null string gives a null handle.
    explicit MutableString(const String& text);
    static MutableString makeEmpty() { return MutableString(String(u"")); }

    bool isNull() const noexcept { return text_ == nullptr; }
    size_t length() const noexcept { return text_ ? text_->size() : 0; }
    /// Good until the next edit.
    std::u16string_view view() const noexcept { return text_ ? std::u16string_view(*text_) : std::u16string_view(); }
    /// A copy as it is now; null for a null handle.
    String string() const { return text_ ? String(view()) : String(); }

    /// These throw RangeException when the position or the range leaves the text.
    char16_t charAt(size_t index) const;
    String substring(size_t from, size_t count) const;
    void insert(size_t at, std::u16string_view text);
    void erase(size_t from, size_t count);
    void replace(size_t from, size_t count, std::u16string_view text);

    void append(std::u16string_view text);
    void append(char16_t unit);
    void setString(std::u16string_view text);

    bool isSameObject(const MutableString& other) const noexcept { return text_ == other.text_; }

  private:
    std::shared_ptr<std::u16string> text_;
};

}  // namespace vornaset

template <>
struct std::hash<vornaset::String> {
    size_t operator()(const vornaset::String& text) const noexcept { return text.hash(); }
};
