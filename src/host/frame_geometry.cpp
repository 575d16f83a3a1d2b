#include "host/frame_geometry.h"

#include "host/api/host.h"
#include "host/my_frame.h"
#include "support/log.h"

namespace vornaset {

namespace {

constexpr double kMillimetresOfAnInch = 25.4;
constexpr double kPointsOfAnInch = 72;
constexpr int32_t kTranslationMode = 2;  ///< the mode that every caller of the host's transformation passes

PMRect inMillimetres(const PMRect& points) {
    const auto length = [](double value) { return value * kMillimetresOfAnInch / kPointsOfAnInch; };
    return {length(points.left), length(points.top), length(points.right), length(points.bottom)};
}

PMRect inPoints(const PMRect& millimetres) {
    const auto length = [](double value) { return value * kPointsOfAnInch / kMillimetresOfAnInch; };
    return {length(millimetres.left), length(millimetres.top), length(millimetres.right), length(millimetres.bottom)};
}

using Edge = PMRect (IGeometry::*)(const PMMatrix&);

PMRect boundsAt(const UIDRef& item, Edge edge, uint8_t mm) {
    InterfacePtr<IGeometry> geometry(item);
    if (!geometry) return {};
    const PMRect points = (geometry.get()->*edge)(geometry->InnerToPasteboard());
    return mm == 1 ? inMillimetres(points) : points;
}

ErrorCode resize(const UIDRef& item, const PMRect& bounds, bool pathBounds) {
    Utils<IGeometryUtils> geometry;
    return geometry ? geometry->Resize(UIDList(item), PMMatrix(), pathBounds, {bounds}) : kFailure;
}

using Fit = ErrorCode (IContentFitUtils::*)(const UIDList&);

ErrorCode fit(const UIDRef& item, Fit how) {
    Utils<IContentFitUtils> service;
    return service ? (service.get()->*how)(UIDList(item)) : kFailure;
}

}  // namespace

MyRect myRectWithRect(const PMRect& rectangle) {
    return {static_cast<float>(rectangle.left), static_cast<float>(rectangle.top),
            static_cast<float>(rectangle.right - rectangle.left), static_cast<float>(rectangle.bottom - rectangle.top)};
}

PMRect rectWithMyRect(const MyRect& rectangle) {
    const float right = rectangle.x + rectangle.width;
    const float bottom = rectangle.y + rectangle.height;
    return {rectangle.x, rectangle.y, right, bottom};
}

// --- Bounds

PMRect boundsForFrame(const UIDRef& item, uint8_t mm) {
    return boundsAt(item, &IGeometry::GetPathBoundingBox, mm);
}

PMRect boundsForFrame(IPMUnknown* item) {
    return boundsForFrame(::GetUIDRef(item), uint8_t{0});
}

PMRect strokeBoundsForFrame(const UIDRef& item, uint8_t mm) {
    return boundsAt(item, &IGeometry::GetStrokeBoundingBox, mm);
}

ErrorCode setBoundsForFrame(const UIDRef& item, PMRect& bounds, uint8_t mm) {
    if (mm == 1) bounds = inPoints(bounds);
    return resize(item, bounds, true);
}

ErrorCode setStrokeBoundsForFrame(const UIDRef& item, const PMRect& bounds) {
    return resize(item, bounds, false);
}

MyRect myRectForFrame(const UIDRef& item) {
    return myRectWithRect(boundsForFrame(item, uint8_t{0}));
}

ErrorCode setMyRectForFrame(const UIDRef& item, const MyRect& bounds) {
    PMRect rectangle = rectWithMyRect(bounds);
    return setBoundsForFrame(item, rectangle, 0);
}

PMRect boundsForFrames(const UIDList& items) {
    if (items.IsEmpty()) return {};
    PMRect all = boundsForFrame(items.GetRef(0), uint8_t{0});
    for (int32_t index = 1; index < items.Length(); ++index) {
        all.Union(boundsForFrame(items.GetRef(index), uint8_t{0}));
    }
    return all;
}

MyRect myRectForFrames(const UIDList& items) {
    return myRectWithRect(boundsForFrames(items));
}

MyRect scaleRect(const MyRect& box, const MyRect& content, double margin) {
    const auto lost = static_cast<float>(margin);
    const float x = box.x + lost;
    const float y = box.y + lost;
    const float roomX = box.width - 2 * lost;
    const float roomY = box.height - 2 * lost;
    const double scaleX = static_cast<double>(roomX) / static_cast<double>(content.width);
    const double scaleY = static_cast<double>(roomY) / static_cast<double>(content.height);
    double width = scaleY * static_cast<double>(content.width);
    double height = roomY;
    double dx = (roomX - width) * 0.5;
    double dy = 0;
    if (scaleY > scaleX) {
        width = roomX;
        height = static_cast<double>(content.height) * scaleX;
        dx = 0;
        dy = (roomY - height) * 0.5;
    }
    return {static_cast<float>(x + dx), static_cast<float>(y + dy), static_cast<float>(width),
            static_cast<float>(height)};
}

PMRect scaleRect(const PMRect& box, const PMRect& content, double margin) {
    return rectWithMyRect(scaleRect(myRectWithRect(box), myRectWithRect(content), margin));
}

// --- Moving

ErrorCode offsetFrame(const UIDRef& item, PMReal dx, PMReal dy) {
    PMRect bounds = boundsForFrame(item, uint8_t{0});
    bounds = {bounds.left + dx, bounds.top + dy, bounds.right + dx, bounds.bottom + dy};
    return setBoundsForFrame(item, bounds, 0);
}

void moveFrameBy(const UIDRef& item, float dx, float dy) {
    moveFrameBy(item, PMReal{dx}, PMReal{dy});
}

void moveFrameBy(const UIDRef& item, PMReal dx, PMReal dy) {
    if (item.GetDataBase() && item.GetUID() != kInvalidUID) moveFramesBy(UIDList(item), dx, dy);
}

void moveFramesBy(const UIDList& items, PMReal dx, PMReal dy) {
    Utils<ITransformUtils> service;
    const PMMatrix translation{1, 0, 0, 1, dx, dy};
    if (service) service->TransformItems(items, PMMatrix(), TransformReferencePoint(), translation, kTranslationMode);
}

void moveFrameTo(const UIDRef& item, PMReal x, PMReal y) {
    if (!item.GetDataBase() || item.GetUID() == kInvalidUID) return;
    const PMRect bounds = boundsForFrame(item, uint8_t{0});
    MyLog("moveFrame: [%.1f %.1f] --> [%.1f %.1f]", bounds.left, bounds.top, x, y);
    moveFramesBy(UIDList(item), x - bounds.left, y - bounds.top);
}

void moveFrameTo(const UIDRef& item, const PMPoint& point) {
    moveFrameTo(item, point.x, point.y);
}

// --- Content

ErrorCode fitFrameToContent(const UIDRef& item) {
    return fit(item, &IContentFitUtils::FitFrameToContent);
}

ErrorCode fitContentToFrame(const UIDRef& item) {
    return fit(item, &IContentFitUtils::FitContentToFrame);
}

ErrorCode fitContentProp(const UIDRef& item) {
    return fit(item, &IContentFitUtils::FitContentProportionally);
}

ErrorCode centerContent(const UIDRef& item) {
    return fit(item, &IContentFitUtils::CenterContent);
}

ErrorCode fillContentProp(const UIDRef& item) {
    return fit(item, &IContentFitUtils::FillFrameProportionally);
}

// --- The handle

PMRect MyFrame::bounds(uint8_t mm) const {
    return boundsForFrame(*this, mm);
}

ErrorCode MyFrame::setBounds(PMRect& bounds, uint8_t mm) const {
    return setBoundsForFrame(*this, bounds, mm);
}

PMRect MyFrame::getRect() const {
    InterfacePtr<IGeometry> geometry(*this);
    return geometry ? TransformInnerRectToPasteboard(geometry.get(), geometry->GetInnerBounds()) : PMRect();
}

void MyFrame::setRect(const PMRect& rectangle) const {
    PMRect bounds = rectangle;
    setBoundsForFrame(*this, bounds, 0);
}

int16_t MyFrame::fitFrameToContent() const {
    const ErrorCode result = vornaset::fitFrameToContent(*this);
    if (result != kSuccess) MyLog("\t####\tfitFrameToContent: %d", result);
    return static_cast<int16_t>(result);
}

int16_t MyFrame::fitContentToFrame() const {
    const ErrorCode result = fitContentProp(getChildRef(*this));
    if (result != kSuccess) MyLog("\t####\tfitContentToFrame: %d", result);
    return static_cast<int16_t>(result);
}

}  // namespace vornaset
