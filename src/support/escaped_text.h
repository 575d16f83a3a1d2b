#pragma once
// Hexadecimal digits and the percent escapes of URLs.
//
// All decoders share one formula for a pair of characters. The high part is the character code, plus 9 if the code is
// at or above 58, shifted left by 4 and cut to 8 bits; the low part is the code minus 48 if it is below 58, else minus
// 55; the byte is their sum, cut to 8 bits. So digits and upper-case letters give their plain value, and a lower-case
// letter does in the high position, but in the low position it gives a byte 0x20 too high: "2f" is 0x4F. No character
// is tested to be a hexadecimal digit.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "support/values.h"

namespace vornaset {

/// Decodes `count` pairs into the target, without a terminator. Text and target may be one.
void hex2bin(const char* text, char* target, size_t count);
/// Decodes the pairs of a UTF-8 text, a last odd character left out. The decoded bytes as UTF-8; null when they are no
/// UTF-8, and the empty string for data without text.
String hex2bin(const Data& data);

/// Copies ASCII letters, ASCII digits, "-", "." and "_"; every other byte becomes "%" and two upper-case hexadecimal
/// digits. No terminator is written: the target must be zeroed before and have three bytes for each of the text.
void encodeURL(const char* text, char* target);
/// Copies the text with each "%" and the two characters behind it decoded. "+" stays as it is. No terminator is
/// written. Behind a "%" two characters must stand; one that is short of them is copied as it stands.
void decodeURL(const char* text, char* target);
/// The same in place, with a terminator. Nothing happens to a text without "%".
void decodeURL(char* text);

/// The text's UTF-8 with every byte escaped that may not stand in the query of a URL (RFC 3986, clause 3.4). "%" is
/// escaped too. Null for null and for text with a lone surrogate.
String stringByAddingPercentEscapes(const String& text);

/// A URL as a value.
class Url : public Object {
  public:
    explicit Url(String text) : text_(std::move(text)) {}
    const String& absoluteString() const { return text_; }
    String description() const override { return text_; }

  private:
    String text_;
};

/// The URL of the text with escapes added. Null for null and for what is no URL even so (":" at the start, say).
std::shared_ptr<Url> urlWithString(const String& text);

}  // namespace vornaset
