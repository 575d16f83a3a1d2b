#include "widgets/images.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtGui/QImageReader>
#include <QtGui/QPainter>
#include <cmath>
#include <utility>

#include "widgets/qt_text.h"

namespace vornaset {

namespace {

constexpr double kLongestSide = 65536;  // pixels; no screen has more, and the count of an image's bytes stays in range

thread_local QPainter* currentPainter = nullptr;

QImage read(QIODevice& source) {
    QImageReader reader(&source);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    return reader.read();
}

}  // namespace

QImage imageWithPath(const String& path) {
    if (path.isEmpty()) return {};
    QFile file(qtText(path));
    return file.open(QIODevice::ReadOnly) ? read(file) : QImage();
}

QImage imageWithData(const Data& data) {
    if (data.isNull()) return {};
    QByteArray bytes = QByteArray::fromRawData(data.view().data(), static_cast<qsizetype>(data.length()));
    QBuffer buffer(&bytes);
    return buffer.open(QIODevice::ReadOnly) ? read(buffer) : QImage();
}

QImage imageWithBitmap(const QImage& bitmap) {
    return bitmap.copy();
}

QImage imageWithSize(const QSizeF& size) {
    const double width = std::ceil(size.width());
    const double height = std::ceil(size.height());
    if (!(width > 0 && width <= kLongestSide && height > 0 && height <= kLongestSide)) return {};
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage imageWithSize(int32_t side) {
    return imageWithSize(QSizeF(side, side));
}

DrawingContext::DrawingContext(QPainter& painter) : before_(std::exchange(currentPainter, &painter)) {}

DrawingContext::~DrawingContext() {
    currentPainter = before_;
}

void drawInRect(const QImage& image, const Rect& rectangle) {
    if (currentPainter == nullptr || image.isNull()) return;
    currentPainter->save();
    currentPainter->setRenderHint(QPainter::SmoothPixmapTransform);
    currentPainter->drawImage(QRectF(rectangle.x, rectangle.y, rectangle.width, rectangle.height), image);
    currentPainter->restore();
}

}  // namespace vornaset
