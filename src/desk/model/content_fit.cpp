#include "desk/model/content_fit.h"

#include <cmath>

namespace desk {
namespace {

/// Sizes below this have no proportions.
constexpr double smallestSide = 1e-9;

bool hasArea(const Rect& rect) {
    return rect.width() > smallestSide && rect.height() > smallestSide && std::isfinite(rect.width()) &&
           std::isfinite(rect.height());
}

/// A frame and the picture in it.
struct Holding {
    PageItem* frame = nullptr;
    PageItem* picture = nullptr;
    explicit operator bool() const { return frame && picture; }
};

Holding holdingOf(Document& document, Uid frameOrPicture) {
    PageItem* item = document.item(frameOrPicture);
    if (!item) return {};
    PageItem* frame = item->kind == ItemKind::Graphic ? document.item(item->parent) : item;
    if (!frame || !canHoldPicture(*frame)) return {};
    return {frame, frame == item ? pictureIn(document, item->uid) : item};
}

Rect naturalBounds(const PageItem& picture) {
    return picture.graphic ? picture.graphic->bounds : boundsOf(picture.path);
}

/// The picture's own turning and mirroring without its scale: the same proportions in both directions.
Matrix withoutScale(const Matrix& m) {
    const double x = std::hypot(m.a, m.b), y = std::hypot(m.c, m.d);
    if (!(x > smallestSide) || !(y > smallestSide)) return {};
    return {m.a / x, m.b / x, m.c / y, m.d / y, 0, 0};
}

/// Scales what lies in `from` so that its left top corner comes to 0, 0.
Matrix scaling(const Rect& from, double x, double y) {
    return {x, 0, 0, y, -from.left * x, -from.top * y};
}

void setTransform(PageItem& picture, const Matrix& transform) {
    picture.transform = transform;
    ++picture.revision;
}

void align(PageItem& picture, const Matrix& shaped, const Rect& frame, Point alignment) {
    const Rect box = shaped.boundsOf(naturalBounds(picture));
    const double x = frame.left + (frame.width() - box.width()) * alignment.x - box.left;
    const double y = frame.top + (frame.height() - box.height()) * alignment.y - box.top;
    setTransform(picture, Matrix::translation(x, y).after(shaped));
}

bool stretch(PageItem& picture, const Rect& frame) {
    const Rect box = picture.transform.boundsOf(naturalBounds(picture));
    if (!hasArea(frame) || !hasArea(box)) return false;
    const Matrix scale = scaling(box, frame.width() / box.width(), frame.height() / box.height());
    setTransform(picture, Matrix::translation(frame.left, frame.top).after(scale).after(picture.transform));
    return true;
}

bool keepProportions(PageItem& picture, const Rect& frame, ContentFit fit, Point alignment) {
    const Matrix turned = withoutScale(picture.transform);
    const Rect box = turned.boundsOf(naturalBounds(picture));
    if (!hasArea(frame) || !hasArea(box)) return false;
    const double x = frame.width() / box.width(), y = frame.height() / box.height();
    const double scale = fit == ContentFit::ContentProportionally ? std::min(x, y) : std::max(x, y);
    align(picture, scaling(box, scale, scale).after(turned), frame, alignment);
    return true;
}

bool centre(PageItem& picture, const Rect& frame) {
    const Rect box = picture.transform.boundsOf(naturalBounds(picture));
    if (!std::isfinite(box.width()) || !std::isfinite(box.height())) return false;
    align(picture, picture.transform, frame, {0.5, 0.5});
    return true;
}

bool takeSizeOf(PageItem& frame, const PageItem& picture) {
    const Rect box = picture.transform.boundsOf(naturalBounds(picture));
    if (!hasArea(box)) return false;
    const Rect bounds = boundsOf(frame.path);
    if (hasArea(bounds)) {
        const Matrix map = Matrix::translation(box.left, box.top)
                               .after(scaling(bounds, box.width() / bounds.width(), box.height() / bounds.height()));
        for (Contour& contour : frame.path)
            for (PathPoint& point : contour.points)
                point = {map.apply(point.anchor), map.apply(point.incoming), map.apply(point.outgoing)};
    } else {
        frame.path = rectanglePath(box);
    }
    ++frame.revision;
    return true;
}

Point alignmentOf(const Document& document, const PageItem& frame) {
    return document.frameFitting(frame).alignment.value_or(Point{0, 0});
}

}  // namespace

PageItem* pictureIn(Document& document, Uid frame) {
    const PageItem* holder = document.item(frame);
    if (!holder) return nullptr;
    for (Uid child : holder->children) {
        PageItem* item = document.item(child);
        if (item && item->kind == ItemKind::Graphic) return item;
    }
    return nullptr;
}

const PageItem* pictureIn(const Document& document, Uid frame) {
    return pictureIn(const_cast<Document&>(document), frame);
}

bool canHoldPicture(const PageItem& item) {
    return item.kind == ItemKind::Rectangle || item.kind == ItemKind::Oval || item.kind == ItemKind::Polygon ||
           item.kind == ItemKind::GraphicLine;
}

bool fitContent(Document& document, Uid frameOrPicture, ContentFit fit) {
    const Holding holding = holdingOf(document, frameOrPicture);
    if (!holding) return false;
    const Rect frame = boundsOf(holding.frame->path);
    bool fitted = false;
    switch (fit) {
        case ContentFit::ContentToFrame:
            fitted = stretch(*holding.picture, frame);
            break;
        case ContentFit::ContentProportionally:
        case ContentFit::FillProportionally:
            fitted = keepProportions(*holding.picture, frame, fit, alignmentOf(document, *holding.frame));
            break;
        case ContentFit::FrameToContent:
            fitted = takeSizeOf(*holding.frame, *holding.picture);
            break;
        case ContentFit::CenterContent:
            fitted = centre(*holding.picture, frame);
            break;
    }
    document.modified = document.modified || fitted;
    return fitted;
}

bool putIntoFrame(Document& document, Uid pictureUid, Uid frameUid) {
    PageItem* picture = document.item(pictureUid);
    PageItem* frame = document.item(frameUid);
    if (!picture || picture->kind != ItemKind::Graphic || !frame || !canHoldPicture(*frame)) return false;
    while (PageItem* held = pictureIn(document, frameUid)) {
        if (held == picture) break;
        document.removeItem(held->uid);
    }
    if (picture->parent != frameUid) document.placeInside(*picture, *frame);
    const FrameFitting fitting = document.frameFitting(*frame);
    align(*picture, Matrix{}, boundsOf(frame->path), fitting.alignment.value_or(Point{0, 0}));
    switch (fitting.onEmptyFrame.value_or(EmptyFrameFitting::None)) {
        case EmptyFrameFitting::None:
            break;
        case EmptyFrameFitting::ContentToFrame:
            fitContent(document, pictureUid, ContentFit::ContentToFrame);
            break;
        case EmptyFrameFitting::Proportionally:
            fitContent(document, pictureUid, ContentFit::ContentProportionally);
            break;
        case EmptyFrameFitting::FillProportionally:
            fitContent(document, pictureUid, ContentFit::FillProportionally);
            break;
    }
    document.modified = true;
    return true;
}

}  // namespace desk
