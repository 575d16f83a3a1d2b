#pragma once
// From a broken paragraph to glyphs at places: justification, alignment, visual order, tabs, lines along the text.

#include <cstdint>
#include <string>
#include <vector>

#include "desk/text/break_candidates.h"
#include "desk/text/layout.h"
#include "desk/text/tabs.h"

namespace desk {

/// Where a paragraph's text stands on its measure.
enum class Alignment { Left, Center, Right };

/// How the lines of a paragraph take their slack.
struct LineAlignment {
    bool justified = false;
    bool lastLineJustified = false;
    Alignment ragged = Alignment::Left;  ///< of lines that are not justified
};
LineAlignment alignmentOf(Justification justification, bool onRightPage);

/// Sets lines of one paragraph after the other. Keeps buffers.
class LineSetter {
  public:
    explicit LineSetter(WordCache& words) : words_(words) {}

    /// All must outlive the calls of setLine. `text` is the paragraph's: hyphens and leaders are put behind it.
    void start(const ParagraphSource& source, const ParagraphPieces& paragraph, const BreakCandidates& candidates,
               ParagraphTabs* tabs, std::u16string& text);

    void setLine(uint32_t from, uint32_t to, uint32_t number, const LineRoom& room, LayoutLine& line);

  private:
    /// What stands in the line: a piece or a part of one.
    struct Item {
        PieceKind kind = PieceKind::Word;
        uint8_t level = 0;
        bool hangs = false;    ///< a space behind the line's end
        bool isFixed = false;  ///< a space before the last tab: justification leaves it alone
        const TextStyle* style = nullptr;
        const Word* word = nullptr;
        uint32_t start = 0;  ///< in the display text
        uint32_t length = 0;
        uint32_t piece = 0;
        double width = 0;  ///< of tabs and inline items
        const std::u16string* leader = nullptr;
    };
    struct Justified {
        double wordFactor = 1, extraPerSpace = 0, extraPerFlushSpace = 0;
        double letterFactor = 0, extraPerCluster = 0;
        double glyphScale = 1;
        double shift = 0;  ///< of the first item from the line's left end
    };

    void collectItems(const BreakCandidate& from, const BreakCandidate& to, uint32_t fromIndex, uint32_t toIndex,
                      uint32_t number);
    void addPiece(uint32_t index, const BreakCandidate& from, const BreakCandidate& to);
    void addHyphen(const BreakCandidate& to);
    Extent measureItems();
    Justified justify(const Extent& extent, double measure, BreakKind end, LayoutLine& line);
    void stretchLine(Justified& result, const Extent& extent, double slack) const;
    void shrinkLine(Justified& result, const Extent& extent, double slack) const;
    void orderVisually();
    void emit(const Justified& justified, LayoutLine& line);
    void emitWord(const Item& item, const Justified& justified, LayoutLine& line, double& x);
    void emitSpaces(const Item& item, const Justified& justified, LayoutLine& line, double& x);
    void emitLeader(const Item& item, LayoutLine& line, double x);
    GlyphRun& runFor(const TextStyle& style, const FontFace& face, double glyphScale, double letterSpacing,
                     LayoutLine& line, double x);
    void decorate(const Item& item, double start, double end, LayoutLine& line);
    void addMetrics(const BreakCandidate& from, const BreakCandidate& to, LayoutLine& line) const;
    uint32_t textPlaceOf(std::u16string_view inserted);

    WordCache& words_;
    const ParagraphSource* source_ = nullptr;
    const ParagraphPieces* paragraph_ = nullptr;
    const BreakCandidates* candidates_ = nullptr;
    ParagraphTabs* tabs_ = nullptr;
    std::u16string* text_ = nullptr;
    LineAlignment alignment_;
    Alignment singleWord_ = Alignment::Left;
    bool singleWordFull_ = true;
    std::vector<Item> items_;
    uint32_t spaces_ = 0, flushSpaces_ = 0, clusters_ = 0, words_in_line_ = 0;
    size_t glyphs_ = 0;
    const TextStyle* runStyle_ = nullptr;  ///< of the run that may go on
};

/// Rules above and below a paragraph. Lines must not be empty.
void addParagraphRules(const ResolvedAttributes& paragraph, const TextStyle& style, const std::vector<LineSpan>& spans,
                       std::vector<LayoutLine>& lines);

}  // namespace desk
