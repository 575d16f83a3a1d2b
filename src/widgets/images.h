#pragma once
// Images for windows. An image is a value; a null one has no size and is drawn as nothing.

#include <QtCore/QSizeF>
#include <QtGui/QImage>
#include <cstdint>

#include "support/geometry.h"
#include "support/values.h"

class QPainter;

namespace vornaset {

/// From the file, in any format that the window system reads, told by its content; turned upright where the file says
/// how. Null when there is no such file or it holds no picture.
QImage imageWithPath(const String& path);
/// The same from the bytes. Null for null.
QImage imageWithData(const Data& data);
/// An image of its own with the bitmap's pixels and resolution. Null for null.
QImage imageWithBitmap(const QImage& bitmap);
/// A transparent image of that size in points, one pixel a point, parts of a point being whole pixels. Null for a size
/// that is not above 0 or that no memory holds.
QImage imageWithSize(const QSizeF& size);
/// The same, square.
QImage imageWithSize(int32_t side);

/// While it lives, drawInRect on this thread draws with the painter; the former one comes back behind it.
class DrawingContext {
  public:
    explicit DrawingContext(QPainter& painter);
    DrawingContext(const DrawingContext&) = delete;
    DrawingContext& operator=(const DrawingContext&) = delete;
    ~DrawingContext();

  private:
    QPainter* before_;
};

/// Draws the whole image into the rectangle of the current context, in the painter's coordinates. Nothing without one.
void drawInRect(const QImage& image, const Rect& rectangle);

}  // namespace vornaset
