#pragma once
// A paragraph cut into pieces: shaped words, spaces, tabs, inline items. The first half of setting a paragraph.

#include <cstdint>
#include <string>
#include <vector>

#include "desk/text/paragraph_source.h"
#include "desk/text/text_style.h"
#include "desk/text/word_cache.h"

namespace desk {

enum class PieceKind : uint8_t {
    Word,
    Space,         ///< U+0020, one or more: stretches, a line may end at it
    NoBreakSpace,  ///< U+00A0: stretches, no line ends at it
    FlushSpace,    ///< U+2001: takes the slack of a fully justified last line
    Tab,
    RightIndentTab,
    LineBreak,  ///< U+2028
    InlineItem,
    IndentHere  ///< no width; the following lines start here
};

/// Lengths in points, positions in the display text.
struct Piece {
    PieceKind kind = PieceKind::Word;
    uint8_t level = 0;  ///< bidi embedding level
    const TextStyle* style = nullptr;
    Word* word = nullptr;  ///< of a word
    uint32_t start = 0, length = 0;
    double width = 0;   ///< natural: spaces without justification, words with tracking
    uint32_t item = 0;  ///< index into the source's inline items
};

/// Word and letter spacing of a paragraph as shares of what they multiply (1 = 100 %).
struct SpacingLimits {
    double minimumWord = 1, desiredWord = 1, maximumWord = 1;
    double minimumLetter = 0, desiredLetter = 0, maximumLetter = 0;  ///< of the space's advance, behind every cluster
    double minimumGlyph = 1, desiredGlyph = 1, maximumGlyph = 1;
    bool hasLetters() const { return minimumLetter != 0 || desiredLetter != 0 || maximumLetter != 0; }
};

struct ParagraphPieces {
    std::u16string display;         ///< markers and capitals replaced, hidden text gone
    std::vector<int32_t> sourceOf;  ///< display position to source position, one more than display; empty for identity
    std::vector<Piece> pieces;
    const ResolvedAttributes* paragraph = nullptr;
    const TextStyle* endStyle = nullptr;  ///< of the carriage return
    bool hasTabs = false, hasRightToLeft = false, hasInlineItems = false;
    SpacingLimits spacing;

    int32_t sourcePosition(uint32_t displayPosition) const {
        return sourceOf.empty() ? static_cast<int32_t>(displayPosition) : sourceOf[displayPosition];
    }
};

/// Cuts paragraphs. Keeps buffers from one to the next.
class PieceCutter {
  public:
    PieceCutter(const Document& document, TextStyles& styles, WordCache& words);

    /// Fills `result` anew.
    void cut(const ParagraphSource& source, ParagraphPieces& result);

  private:
    struct StyledRun {
        uint32_t start = 0;  ///< in the display text; reaches to the next run's start
        const TextStyle* style = nullptr;
    };

    void collect(const ParagraphSource& source, ParagraphPieces& result);
    void appendRun(const ParagraphSource& source, int32_t start, int32_t end, const TextStyle& style,
                   ParagraphPieces& result);
    void appendPlain(std::u16string_view text, int32_t sourceStart, const TextStyle& style, ParagraphPieces& result);
    void appendStandIn(std::u16string_view text, int32_t sourcePosition, const TextStyle& style,
                       ParagraphPieces& result);
    void appendCased(std::u16string_view text, int32_t sourceStart, const TextStyle& style, ParagraphPieces& result);
    void startRun(const TextStyle& style, const ParagraphPieces& result);
    void needSourceMap(ParagraphPieces& result);
    void addInlineItem(const ParagraphSource& source, uint32_t position, const TextStyle& style,
                       ParagraphPieces& result);
    void cutRun(const ParagraphSource& source, uint32_t start, uint32_t end, const TextStyle& style,
                ParagraphPieces& result);
    void addWord(uint32_t start, uint32_t end, const TextStyle& style, ParagraphPieces& result);
    uint32_t cutBehind(std::u16string_view text, uint32_t start, const TextStyle& style);
    uint8_t levelAt(uint32_t position) const { return levels_.empty() ? 0 : levels_[position]; }

    const Document& document_;
    TextStyles& styles_;
    WordCache& words_;
    std::vector<StyledRun> runs_;
    std::vector<uint8_t> levels_;  ///< empty when all are 0
    std::vector<WordBreak> breaks_;
};

}  // namespace desk
