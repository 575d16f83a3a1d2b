#include "support/geometry_values.h"

#include <memory>

namespace vornaset {

namespace {

class PointObject : public Object {
  public:
    explicit PointObject(const Point& point) : point_(point) {}
    const Point& point() const { return point_; }
    String description() const override { return stringWithFormat("{%g, %g}", point_.x, point_.y); }

  private:
    Point point_;
};

class RangeObject : public Object {
  public:
    explicit RangeObject(const Range& range) : range_(range) {}
    const Range& range() const { return range_; }
    String description() const override { return stringWithFormat("{%zd, %zd}", range_.location, range_.length); }

  private:
    Range range_;
};

}  // namespace

Value valueWithPoint(const Point& point) {
    return std::make_shared<PointObject>(point);
}

Value valueWithPoint(double x, double y) {
    return valueWithPoint(Point{x, y});
}

Value valueWithRange(const Range& range) {
    return std::make_shared<RangeObject>(range);
}

Point pointWithValue(const Value& value) {
    const auto* held = dynamic_cast<const PointObject*>(value.object().get());
    return held != nullptr ? held->point() : Point{};
}

Range rangeWithValue(const Value& value) {
    const auto* held = dynamic_cast<const RangeObject*>(value.object().get());
    return held != nullptr ? held->range() : Range{};
}

Rect nsRect(const Rect& rectangle) {
    return rectangle;
}

String stringWithRect(const Rect& rectangle) {
    return stringWithFormat("[%.4f %.4f %.4f %.4f]", rectangle);
}

}  // namespace vornaset
