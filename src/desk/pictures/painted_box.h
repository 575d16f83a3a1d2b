#pragma once
// Where a page of a PDF paints. Inner header of this folder.

#include <optional>
#include <string_view>

#include "desk/model/geometry.h"

namespace desk {

/// The box around all that the page (from 1) paints inside its crop box, in points from the left lower corner of its
/// media box as the page is shown: turned, and by its unit. `top` is the lower edge. Nothing for a page that paints
/// nothing, and where the program that measures isn't installed. Throws ConversionStopped.
std::optional<Rect> paintedBoxOf(std::string_view pdf, int page);

}  // namespace desk
