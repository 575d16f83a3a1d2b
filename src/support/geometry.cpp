#include "support/geometry.h"

namespace vornaset {

namespace {

class RectObject : public Object {
  public:
    explicit RectObject(const Rect& rectangle) : rectangle_(rectangle) {}
    const Rect& rectangle() const { return rectangle_; }
    String description() const override {
        return stringWithFormat("{{%g, %g}, {%g, %g}}", rectangle_.x, rectangle_.y, rectangle_.width,
                                rectangle_.height);
    }

  private:
    Rect rectangle_;
};

}  // namespace

Value valueWithRect(const Rect& rectangle) {
    return std::make_shared<RectObject>(rectangle);
}

Rect rectWithValue(const Value& value) {
    const auto* held = dynamic_cast<const RectObject*>(value.object().get());
    return held != nullptr ? held->rectangle() : Rect{};
}

String stringWithFormat(const String& format, const Rect& rectangle) {
    return stringWithFormat(format, rectangle.x, rectangle.y, rectangle.width, rectangle.height);
}

}  // namespace vornaset
