#pragma once
// The columns of a story's frames: where text may stand.

#include <vector>

#include "desk/model/document.h"
#include "desk/text/paragraph_source.h"

namespace desk {

/// One column of a text frame, in the inner coordinates of the frame.
struct TextColumn {
    Uid frame = 0;
    uint32_t frameIndex = 0;  ///< in the thread
    Rect area;                ///< insets and stroke are off
    FirstBaseline firstBaseline = FirstBaseline::AscentOffset;
    double minimumFirstBaseline = 0;
    VerticalJustification verticalJustification = VerticalJustification::Top;
    double verticalThreshold = 0;
    Uid page = 0;
    int pageNumber = 0;  ///< place of the page in the document, from 1; 0 for a frame on no page
    bool onRightPage = true;
    double gridStart = 0, gridStep = 0;  ///< baseline grid: y of its first line; no step, no grid

    /// Closed polygons that hold the text; empty for an upright rectangle.
    std::vector<std::vector<Point>> contours;
    double contourInset = 0;
    std::vector<Rect> obstacles;  ///< what text wraps around
    bool isRegular() const { return contours.empty() && obstacles.empty(); }
};

/// All columns of the story's frames, in the order in which they fill.
std::vector<TextColumn> columnsOf(const Document& document, Uid story);

/// Room for a line in a column.
struct SpanAnswer {
    bool hasRoom = false;
    LineSpan span;          ///< from the column's left edge
    double tryAgainAt = 0;  ///< without room: a top further down where there may be some
};

/// The widest room between two heights. A line that text wrap would divide in two takes the wider side alone.
SpanAnswer spanIn(const TextColumn& column, double top, double bottom);

}  // namespace desk
