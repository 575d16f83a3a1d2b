#pragma once
// Tab stops: how wide the tabs of a line are.

#include <vector>

#include "desk/text/break_candidates.h"
#include "desk/text/line_breaking.h"

namespace desk {

/// Stops every so many points from the column's left edge behind the last stop of the paragraph.
inline constexpr double defaultTabDistance = 36;

/// A line's room: x from the column's left edge.
struct LineRoom {
    double x = 0;
    double measure = 0;
};

class ParagraphTabs final : public TabbedLines {
  public:
    /// All must outlive the use of this object. The last room holds for all lines behind it.
    void set(const ParagraphPieces& paragraph, const BreakCandidates& candidates, const std::vector<LineRoom>& rooms);

    bool hasTab(uint32_t from, uint32_t to) const override;
    Extent extent(uint32_t from, uint32_t to, uint32_t line) override;

    /// The tabs of the line measured last, by piece, with their widths and the text that fills them.
    struct SetTab {
        uint32_t piece = 0;
        double width = 0;
        const std::u16string* leader = nullptr;  ///< null for none
    };
    const std::vector<SetTab>& setTabs() const { return setTabs_; }

    /// From the line's start to a piece, for a line that starts with the paragraph.
    double distanceTo(uint32_t piece);

  private:
    struct Stop {
        double position = 0;
        TabAlignment alignment = TabAlignment::Left;
        const TabStop* named = nullptr;
    };
    Stop stopBehind(double position, const LineRoom& room, const Piece& tab) const;
    double widthToAlignment(uint32_t firstPiece, uint32_t endPiece, double wholeWidth, const TabStop& stop) const;
    Extent measure(double start, uint32_t firstPiece, uint32_t endPiece, const Extent& lineStart, const Extent& lineEnd,
                   const LineRoom& room);

    const ParagraphPieces* paragraph_ = nullptr;
    const BreakCandidates* candidates_ = nullptr;
    const std::vector<LineRoom>* rooms_ = nullptr;
    std::vector<uint32_t> tabPieces_;
    std::vector<TabStop> stops_;  ///< by position
    std::vector<SetTab> setTabs_;
};

}  // namespace desk
