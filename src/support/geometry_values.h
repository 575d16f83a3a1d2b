#pragma once
// Points, ranges and rectangles as values and as text.

#include "support/geometry.h"

namespace vornaset {

/// In points unless its user says otherwise.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

Value valueWithPoint(const Point& point);
Value valueWithPoint(double x, double y);
Value valueWithRange(const Range& range);
/// The origin and the empty range for a value without one.
Point pointWithValue(const Value& value);
Range rangeWithValue(const Value& value);

/// The same rectangle.
Rect nsRect(const Rect& rectangle);
/// "[%.4f %.4f %.4f %.4f]": x, y, width, height.
String stringWithRect(const Rect& rectangle);

}  // namespace vornaset
