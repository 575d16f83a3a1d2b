#pragma once
// Where the lines of a paragraph may end, and how wide everything is up to there.

#include <vector>

#include "desk/text/line_breaking.h"
#include "desk/text/paragraph_pieces.h"

namespace desk {

/// Width of a piece at the desired spacing and what the limits allow around it.
Extent extentOf(const Piece& piece, const SpacingLimits& spacing);
/// The same for a part of a word: its advance in thousandths of the em and its clusters.
Extent extentOfWord(const TextStyle& style, double advance, uint32_t clusters, const SpacingLimits& spacing);

struct BreakCandidates {
    std::vector<BreakCandidate> places;  ///< the first is the paragraph's start, the last its end
    std::vector<Extent> pieceStarts;     ///< sums at the start of each piece, and at the end of the last
};

class CandidateFinder {
  public:
    explicit CandidateFinder(WordCache& words) : words_(words) {}

    /// `narrowest`: the smallest measure of any line. What is wider gets emergency places between its clusters.
    void find(const ParagraphPieces& paragraph, double narrowest, BreakCandidates& result);

    /// Start and end alone, for a paragraph that needs no more than one line of this measure at its desired spacing.
    /// False, and nothing in `result` that counts, when it may need more. No word is asked where it divides.
    bool findOneLine(const ParagraphPieces& paragraph, double measure, BreakCandidates& result);

  private:
    void start(const ParagraphPieces& paragraph, BreakCandidates& result);
    void finish();
    void chunk(uint32_t first, uint32_t end);
    void wordBreaks(uint32_t index, bool isLastWord);
    void chunkBreaks(uint32_t first, uint32_t end, bool isLastWord);
    void breakInside(uint32_t index, uint16_t offset, BreakKind kind);
    void breakBetween(uint32_t index, BreakKind kind);
    bool hyphenAllowed(const WordBreak& at, bool isLastWord) const;
    bool mayBreakBetween(uint32_t before, uint32_t after) const;
    void forced(uint32_t lineBreak);
    void spaces(uint32_t first, uint32_t end);
    void divideWideStretches(double narrowest);
    void divide(const BreakCandidate& from, const BreakCandidate& to, std::vector<BreakCandidate>& places);
    void divideWord(uint32_t index, uint16_t fromOffset, uint16_t toOffset, std::vector<BreakCandidate>& places);

    WordCache& words_;
    const ParagraphPieces* paragraph_ = nullptr;
    BreakCandidates* result_ = nullptr;
    uint32_t visibleEnd_ = 0;  ///< behind the last piece that isn't a space
    std::vector<WordBreak> breaks_;
    std::vector<BreakCandidate> divided_;
};

}  // namespace desk
