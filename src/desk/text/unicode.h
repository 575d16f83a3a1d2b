#pragma once
// Unicode's properties and algorithms as composition needs them. The only place that knows the Unicode library.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace desk::unicode {

/// The code point at a position and how many UTF-16 units it takes; a lone surrogate gives U+FFFD and one unit.
struct CodePoint {
    char32_t value = 0;
    uint32_t units = 1;
};
CodePoint codePointAt(std::u16string_view text, size_t position);
void append(std::u16string& text, char32_t codePoint);

bool isLetter(char32_t c);
bool isMark(char32_t c);
bool isUpperCase(char32_t c);
bool isLowerCase(char32_t c);
/// Takes no room and needs no glyph: joiners, variation selectors, the soft hyphen.
bool isDefaultIgnorable(char32_t c);
/// Strongly right-to-left, or a character that sets or embeds a right-to-left run.
bool turnsRightToLeft(char32_t c);
/// ISO 15924 as four big-endian bytes; 0 for characters of no script of their own (digits, punctuation, marks).
uint32_t scriptTag(char32_t c);

/// May a line end in spaces that stand between these two characters? (Unicode Annex 14, the rules that look over
/// spaces.)
bool breaksAtSpaceBetween(char32_t before, char32_t after);

/// Full case mapping by the rules of a language (BCP 47, may be empty); the length may change.
std::u16string upperCase(std::u16string_view text, const std::string& language);
std::u16string lowerCase(std::u16string_view text, const std::string& language);

/// Embedding level of every UTF-16 unit of a paragraph (Unicode Annex 9). False when all levels are 0.
bool bidiLevels(std::u16string_view paragraph, bool rightToLeft, std::vector<uint8_t>& levels);

/// Line break opportunities. Keeps one iterator for each language.
class LineBreaks {
  public:
    LineBreaks();
    ~LineBreaks();
    /// Positions strictly inside the text before which a line may end, ascending.
    void find(std::u16string_view text, const std::string& language, std::vector<uint32_t>& positions);

  private:
    struct Iterator;
    std::unordered_map<std::string, std::unique_ptr<Iterator>> iterators_;
};

/// From a named character set into UTF-16; what isn't of the set becomes U+FFFD. False when the set isn't known.
bool decode(std::string_view bytes, const std::string& characterSet, std::u16string& text);

/// From UTF-16 into a named character set, one byte a character or UTF-8.
class Encoder {
  public:
    /// Null when the set isn't known.
    static std::unique_ptr<Encoder> make(const std::string& characterSet);
    ~Encoder();
    /// False when a character has no place in the set.
    bool encode(std::u16string_view text, std::string& bytes);

  private:
    Encoder() = default;
    void* converter_ = nullptr;
};

}  // namespace desk::unicode
