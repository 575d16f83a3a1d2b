#include "host/api/page_items.h"

#include <algorithm>

PMRect TransformInnerRectToPasteboard(IGeometry* item, const PMRect& inner) {
    const PMMatrix m = item->InnerToPasteboard();
    const auto [left, right] = std::minmax({m.a * inner.left, m.a * inner.right});
    const auto [leftOfY, rightOfY] = std::minmax({m.c * inner.top, m.c * inner.bottom});
    const auto [topOfX, bottomOfX] = std::minmax({m.b * inner.left, m.b * inner.right});
    const auto [top, bottom] = std::minmax({m.d * inner.top, m.d * inner.bottom});
    return {left + leftOfY + m.tx, topOfX + top + m.ty, right + rightOfY + m.tx, bottomOfX + bottom + m.ty};
}
