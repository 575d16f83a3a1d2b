#pragma once
// Paths of page items: corner options, line ends, and how they are written.

#include <string>

#include "desk/model/document.h"
#include "desk/output/content_buffer.h"

namespace desk {

/// Appends the path construction operators; the matrix maps to PDF coordinates. A contour of fewer than two points is
/// left out. False when nothing was written.
bool appendPath(ContentBuffer& out, const Path& path, const Matrix& toPdf);

/// The path with the item's corner options worked in: at each corner of straight sides, with the radius cut to half of
/// the shorter side. An upright rectangle has an option for each corner, other paths take that of the left top.
Path withCorners(const Path& path, const ItemAttributes& attributes);

/// A line end to be painted beside the stroke.
struct LineEnd {
    Path path;
    bool filled = true;  ///< else stroked with the line's own weight
};

/// The line ends of an open path's first (left) and last (right) point, in the path's coordinates. Sizes follow the
/// weight.
std::vector<LineEnd> lineEnds(const Path& path, const ItemAttributes& attributes, double weight);

/// True when every contour is closed.
bool isClosed(const Path& path);

}  // namespace desk
