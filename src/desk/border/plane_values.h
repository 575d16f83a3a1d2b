#pragma once
// The border's rectangles and matrices as the model keeps them, and back.

#include "desk/model/document.h"
#include "host/api/types.h"

namespace desk {

inline Matrix matrixOf(const PMMatrix& m) {
    return {m.a, m.b, m.c, m.d, m.tx, m.ty};
}
inline PMMatrix pmMatrix(const Matrix& m) {
    return {m.a, m.b, m.c, m.d, m.e, m.f};
}
inline Rect rectOf(const PMRect& r) {
    return {r.left, r.top, r.right, r.bottom};
}
inline PMRect pmRect(const Rect& r) {
    return {r.left, r.top, r.right, r.bottom};
}

/// An item's inner coordinates to the pasteboard; inside a story, to what its outermost item stands in.
inline Matrix toPasteboard(const Document& document, const PageItem& item) {
    const Spread* spread = document.spread(item.spread);
    return (spread ? spread->transform : Matrix()).after(document.toSpread(item));
}

}  // namespace desk
