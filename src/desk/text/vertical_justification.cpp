// Where the lines of a column stand when they don't fill it.
#include <algorithm>

#include "desk/text/frame_filling.h"

namespace desk {
namespace {

void move(PlacedLines* first, PlacedLines* end, double distance) {
    for (PlacedLines* place = first; place != end; ++place)
        for (double& baseline : place->baselines) baseline += distance;
}

/// The room below goes between paragraphs, up to the frame's threshold each, and what is left between all lines alike.
void spread(const TextColumn& column, PlacedLines* first, PlacedLines* end, double room) {
    size_t lines = 0;
    for (const PlacedLines* place = first; place != end; ++place) lines += place->baselines.size();
    const size_t gaps = static_cast<size_t>(end - first) - 1;
    if (lines < 2) return;
    const double perParagraph = gaps == 0 ? 0 : std::min(column.verticalThreshold, room / static_cast<double>(gaps));
    const double perLine = (room - perParagraph * static_cast<double>(gaps)) / static_cast<double>(lines - 1);
    double distance = -perLine;
    for (PlacedLines* place = first; place != end; ++place) {
        if (place != first) distance += perParagraph;
        for (double& baseline : place->baselines) {
            distance += perLine;
            baseline += distance;
        }
    }
}

}  // namespace

void justifyVertically(const TextColumn& column, PlacedLines* first, PlacedLines* end) {
    if (first == end || column.verticalJustification == VerticalJustification::Top) return;
    const double room = column.area.bottom - std::prev(end)->baselines.back();
    if (room <= 0) return;
    switch (column.verticalJustification) {
        case VerticalJustification::Top:
            break;
        case VerticalJustification::Center:
            move(first, end, room / 2);
            break;
        case VerticalJustification::Bottom:
            move(first, end, room);
            break;
        case VerticalJustification::Justify:
            spread(column, first, end, room);
            break;
    }
}

}  // namespace desk
