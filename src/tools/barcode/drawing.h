#pragma once

#include <string>

#include "tools/barcode/encoding.h"

namespace barcode {

/// Content of a PDF page that paints the symbol at natural size, its left bottom corner (quiet zone and digits
/// included) at the origin: dark modules as rectangles in black of DeviceCMYK, text in the font resource Courier. One
/// unit within is one module. The graphics state is as before at the end.
std::string pageDescription(Kind kind, const Symbol& symbol);

/// Width and height of what pageDescription paints, in points, quiet zones included.
struct Extent {
    double width;
    double height;
};
Extent extentOf(Kind kind, const Symbol& symbol);

}  // namespace barcode
