#pragma once
// Rectangles between the host's form (left, top, right, bottom, in points) and the library's (origin and size). `mm` at
// exactly 1 says that the library's side is in millimetres.

#include <cstdint>

#include "host/api/types.h"
#include "support/geometry.h"

namespace vornaset {

/// Each of x, y, width and height is narrowed to single precision first; in millimetres it is rounded to one decimal.
Rect nsRectWithPMRect(const PMRect& rectangle, uint8_t mm);
PMRect pmRectWithNSRect(const Rect& rectangle, uint8_t mm);
/// The value's rectangle; null and a value without one stand for the empty rectangle.
PMRect pmRectWithValue(const Value& value, uint8_t mm);
/// nsRectWithPMRect as a value.
Value valueWithPMRect(const PMRect& rectangle, uint8_t mm);
/// "[%.0f %.0f %.0f %.0f]": left, top, width, height.
String stringWithPMRect(const PMRect& rectangle);

}  // namespace vornaset
