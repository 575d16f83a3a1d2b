#pragma once
// Where the lines of a paragraph end. Works on numbers alone: places where a line may end, with the widths up to them.
//
// The paragraph composer weighs all lines together: each line costs by how far it is from its ideal, by a hyphen at its
// end and by its neighbours, and the cheapest sequence wins. The single-line composer fills line by line.

#include <cstdint>
#include <vector>

#include "desk/text/word_cache.h"

namespace desk {

/// Sums from the paragraph's start, in points.
struct Extent {
    double natural = 0;  ///< at the desired spacing
    double stretch = 0;  ///< what the largest allowed spacing adds
    double shrink = 0;   ///< what the smallest allowed spacing takes away
};

struct BreakCandidate {
    Extent end;    ///< at the end of a line that ends here: without the spaces there, with the hyphen
    Extent start;  ///< at the start of the line that follows
    BreakKind kind = BreakKind::Space;
    // The line ends before this place and the next begins at that one: a piece, and an offset into its word or 0.
    uint32_t endPiece = 0, startPiece = 0;
    uint16_t endOffset = 0, startOffset = 0;
};

enum class LineFilling { Ragged, Justified };
enum class LastLine { AsItFalls, Justified };

struct BreakingRules {
    LineFilling filling = LineFilling::Ragged;
    LastLine lastLine = LastLine::AsItFalls;
    double lastLineIndent = 0;  ///< taken from the last line's measure, points
    int ladderLimit = 0;        ///< most hyphens below each other; 0 for no limit
    double hyphenWeight = 5;    ///< 0 better spacing .. 10 fewer hyphens
    /// Slack of a ragged line that weighs like a fully stretched justified one, points. Paragraphs set by the original
    /// host end their lines alike when this is two and a half ems.
    double raggedUnit = 30;
};

/// The measure of each line in points; the last holds for all lines behind it. Never empty.
struct LineMeasures {
    const double* widths = nullptr;
    uint32_t count = 0;
    double of(uint32_t line) const { return widths[line < count ? line : count - 1]; }
    double largest() const;
    double smallest() const;
};

/// Where tabs stand in a line, sums don't tell its width. From candidate to candidate, for a line of that number.
class TabbedLines {
  public:
    virtual ~TabbedLines() = default;
    virtual bool hasTab(uint32_t from, uint32_t to) const = 0;
    virtual Extent extent(uint32_t from, uint32_t to, uint32_t line) = 0;
};

/// What one line costs, without its neighbours.
struct LineCost {
    bool fits = false;  ///< false: too full, or emptier than tolerated
    bool tooFull = false;
    double badness = 0;
    uint8_t fitness = 1;  ///< 0 tight, 1 decent, 2 loose, 3 very loose
};

/// How empty a line may be to be looked at, in steps; the last looks at every line.
inline constexpr double tolerances[] = {1, 2.5, 1e9};

LineCost costOfLine(const Extent& line, double measure, bool isLast, double tolerance, const BreakingRules& rules);

/// What a line adds to a paragraph's cost. `hyphensBefore`: hyphenated lines directly above it.
double demerits(const LineCost& line, BreakKind end, const BreakingRules& rules, bool isFirst, uint8_t fitnessBefore,
                uint32_t hyphensBefore);

/// Too many hyphens below each other?
inline bool breaksLadderLimit(BreakKind end, uint32_t hyphensBefore, const BreakingRules& rules) {
    return end == BreakKind::Hyphen && rules.ladderLimit > 0 &&
           hyphensBefore + 1 > static_cast<uint32_t>(rules.ladderLimit);
}

class LineBreaker {
  public:
    /// Chooses the line ends: indexes of candidates, ascending, the last is the last candidate. The first candidate is
    /// the paragraph's start, the last its end. Always succeeds: what is too wide for any line stands in one by itself.
    void breakTotalFit(const std::vector<BreakCandidate>& candidates, const LineMeasures& measures,
                       const BreakingRules& rules, TabbedLines* tabs, std::vector<uint32_t>& ends);
    void breakLineByLine(const std::vector<BreakCandidate>& candidates, const LineMeasures& measures,
                         const BreakingRules& rules, TabbedLines* tabs, std::vector<uint32_t>& ends);

  private:
    struct Node {
        double demerits = 0;
        int32_t previous = -1;
        uint32_t candidate = 0;
        uint32_t line = 0;
        uint8_t fitness = 1;
        uint8_t hyphens = 0;
    };

    bool tryTolerance(double tolerance, bool isLastPass);
    void linesEndingAt(uint32_t to, double tolerance, bool isLastPass);
    double addLine(uint32_t from, uint32_t to, double tolerance, bool isLastPass);
    void addNode(const Node& node, uint32_t firstOfCandidate);
    void forgetFullLines(uint32_t to);
    Extent extentOf(uint32_t from, uint32_t to, uint32_t line) const;

    const std::vector<BreakCandidate>* candidates_ = nullptr;
    LineMeasures measures_;
    BreakingRules rules_;
    TabbedLines* tabs_ = nullptr;
    bool varying_ = false;
    double largestMeasure_ = 0, smallestMeasure_ = 0;
    double margin_ = 0;    ///< how far sums may run back: hyphens and kerning at breaks
    uint32_t oldest_ = 0;  ///< first candidate from which a line may still start
    std::vector<Node> nodes_;
    std::vector<uint32_t> firstNode_;  ///< of each candidate; one more than candidates
};

}  // namespace desk
