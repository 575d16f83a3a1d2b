#include "support/rectangles_host.h"

namespace vornaset {

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kPointsPerInch = 72;

double librarySide(double points, uint8_t mm) {
    const double narrowed = static_cast<float>(points);
    if (mm != 1) return narrowed;
    return stringWithFormat("%.1f", narrowed * kMillimetresPerInch / kPointsPerInch).doubleValue();
}

double hostSide(double length, uint8_t mm) {
    return mm == 1 ? length * kPointsPerInch / kMillimetresPerInch : length;
}

}  // namespace

Rect nsRectWithPMRect(const PMRect& rectangle, uint8_t mm) {
    return {librarySide(rectangle.left, mm), librarySide(rectangle.top, mm),
            librarySide(rectangle.right - rectangle.left, mm), librarySide(rectangle.bottom - rectangle.top, mm)};
}

PMRect pmRectWithNSRect(const Rect& rectangle, uint8_t mm) {
    PMRect result;
    result.left = hostSide(rectangle.x, mm);
    result.top = hostSide(rectangle.y, mm);
    result.SetWidth(hostSide(rectangle.width, mm));
    result.SetHeight(hostSide(rectangle.height, mm));
    return result;
}

PMRect pmRectWithValue(const Value& value, uint8_t mm) {
    return pmRectWithNSRect(rectWithValue(value), mm);
}

Value valueWithPMRect(const PMRect& rectangle, uint8_t mm) {
    return valueWithRect(nsRectWithPMRect(rectangle, mm));
}

String stringWithPMRect(const PMRect& rectangle) {
    return stringWithFormat("[%.0f %.0f %.0f %.0f]", rectangle.left, rectangle.top, rectangle.Width(),
                            rectangle.Height());
}

}  // namespace vornaset
