#pragma once
// Gradients as shading patterns.

#include "desk/output/palette.h"

namespace desk {

/// Where a gradient lies, in the inner coordinates of its item.
struct GradientPlace {
    Rect bounds;                   ///< of the item's path
    double angle = 0;              ///< degrees, counter-clockwise as seen
    std::optional<Point> start;    ///< of the ramp, or the middle of a radial one
    std::optional<double> length;  ///< of the ramp, or the radius; not above 0 spans the bounds
    Matrix toPdf;                  ///< inner coordinates to those of the page (y upwards)
};

/// The pattern that paints the gradient there. `paint` is one of a gradient.
Resource gradientPattern(Palette& palette, SharedObjects& shared, const Paint& paint, const GradientPlace& place);

}  // namespace desk
