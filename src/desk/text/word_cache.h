#pragma once
// Shaped words, each shaped once. Values are thousandths of the em, so that every size shares them.
//
// A word here is what stands between spaces and tabs in one shaping style and one direction; punctuation belongs to it.
// Spaces are not shaped with words: a pair kerning with a space is not seen.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "desk/fonts/font_face.h"
#include "desk/text/text_style.h"
#include "desk/text/unicode.h"
#include "desk/text/word_table.h"

namespace desk {

struct WordGlyph {
    uint32_t glyph = 0;
    float advance = 0, xOffset = 0, yOffset = 0;
    uint16_t cluster = 0;      ///< UTF-16 index in the word
    uint16_t length = 0;       ///< UTF-16 units that the cluster stands for, at its first glyph in visual order; else 0
    bool endsCluster = false;  ///< tracking comes behind it
};

/// Glyphs of one face.
struct WordSegment {
    const FontFace* face = nullptr;
    uint32_t firstGlyph = 0, glyphCount = 0;
};

enum class BreakKind : uint8_t {
    Start,        ///< of the paragraph
    Space,        ///< at spaces
    Opportunity,  ///< inside a word, without a mark
    Hyphen,       ///< a hyphen is set at the line's end
    Emergency,    ///< between any two clusters of what is wider than the line
    Forced,       ///< a line break in the text
    End           ///< of the paragraph
};

/// A place inside a word where a line may end.
struct WordBreak {
    uint32_t offset = 0;  ///< UTF-16 units before it
    BreakKind kind = BreakKind::Opportunity;
    bool capitalized = false, discretionary = false;  ///< discretionary: by a soft hyphen, no limit applies
    uint8_t lettersBefore = 0, lettersAfter = 0;
    uint16_t clustersBefore = 0;  ///< the hyphen included
    uint16_t clustersAfter = 0;
    double advanceBefore = 0;  ///< of what is left of it, the hyphen included, shaped by itself
    double advanceAfter = 0;
};

struct Word {
    std::u16string text;
    uint32_t shaping = 0;  ///< under what it is remembered, with its text
    uint8_t flags = 0;
    std::vector<WordGlyph> glyphs;  ///< in visual order
    std::vector<WordSegment> segments;
    double advance = 0;
    uint16_t clusters = 0;
    char32_t firstCharacter = 0, lastCharacter = 0;  ///< marks at the end are passed over
    bool rightToLeft = false;
    enum class Breaks : uint8_t { Unknown, WithoutHyphens, All } breaksKnown = Breaks::Unknown;
    std::vector<WordBreak> breaks;  ///< ascending
};

/// Whether the word goes on in another style before or behind it: cursive letters join over the border.
enum class WordContext : uint8_t { None = 0, JoinsBefore = 1, JoinsAfter = 2, JoinsBoth = 3 };

class WordCache {
  public:
    WordCache(const TextStyles& styles, FontLibrary& fonts, Hyphenator& hyphenator, size_t rememberedWords);

    /// Never null; good until endGeneration(). The text has no spaces, tabs or line breaks.
    Word* find(std::u16string_view text, uint32_t shaping, bool rightToLeft = false,
               WordContext context = WordContext::None);

    /// Finds the word's breaks, with hyphenation points or at least without.
    void findBreaks(Word& word, uint32_t shaping, bool withHyphens);

    /// What stays on the line when the word ends there, the hyphen included, and what the next line begins with.
    Word* headOf(const Word& word, uint32_t shaping, uint16_t offset, BreakKind kind);
    Word* tailOf(const Word& word, uint32_t shaping, uint16_t offset);

    /// The same as widths alone. Those of long words aren't remembered: a text without spaces has as many as letters.
    struct Width {
        double advance = 0;
        uint16_t clusters = 0;
    };
    Width headWidth(const Word& word, uint32_t shaping, uint16_t offset, BreakKind kind);
    Width tailWidth(const Word& word, uint32_t shaping, uint16_t offset);

    /// Break opportunities and hyphenation points of a piece of text without spaces; the widths are not filled in.
    void findBreaksInText(std::u16string_view text, uint16_t language, bool withHyphens,
                          std::vector<WordBreak>& breaks);

    /// Call where no word is held.
    void endGeneration();
    const std::u32string& missingCharacters() const { return missing_; }

  private:
    struct Stretch {
        uint32_t start = 0, end = 0;
        const FontFace* face = nullptr;
        uint32_t script = 0;
    };

    Width widthOf(std::u16string_view text, uint32_t shaping, bool rightToLeft);
    void shape(Word& word, const ShapingStyle& style, WordContext context);
    void splitByFaceAndScript(std::u16string_view text, const ShapingStyle& style);
    const FontFace* faceFor(char32_t character, const FontFace& wanted);
    void addSegment(Word& word, const Stretch& stretch, const ShapingStyle& style, std::u16string_view shapedText,
                    WordContext context);
    void finishClusters(Word& word);

    const TextStyles& styles_;
    FontLibrary& fonts_;
    Hyphenator& hyphenator_;
    unicode::LineBreaks lineBreaks_;
    // Two generations: what nobody asked for while a whole one filled goes.
    WordTable words_, olderWords_;
    size_t rememberedWords_;
    std::u32string missing_;

    std::vector<Stretch> stretches_;
    std::vector<ShapedGlyph> shaped_;
    std::vector<uint32_t> opportunities_;
    std::vector<HyphenPoint> hyphenPoints_;
    std::u16string fragment_, substituted_;
};

}  // namespace desk
