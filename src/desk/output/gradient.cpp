#include "desk/output/gradient.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace desk {
namespace {

/// A stop as the shading's function sees it.
struct Stop {
    double place = 0;     ///< 0..1
    double exponent = 1;  ///< of the ramp from the stop before
    std::string value;    ///< components
};

/// The exponent that puts the half-way colour at the midpoint.
double exponentFor(double midpointPercent) {
    const double midpoint = std::clamp(midpointPercent / 100, 0.05, 0.95);
    return std::log(0.5) / std::log(midpoint);
}

std::vector<GradientStop> inOrder(const Swatch& gradient) {
    std::vector<GradientStop> stops = gradient.stops;
    std::stable_sort(stops.begin(), stops.end(),
                     [](const GradientStop& a, const GradientStop& b) { return a.location < b.location; });
    return stops;
}

/// All stops are amounts of one spot colour: the gradient stays in that separation.
const Swatch* commonSeparation(const Palette& palette, const std::vector<GradientStop>& stops) {
    const Swatch* common = nullptr;
    for (const GradientStop& stop : stops) {
        double amount = 0;
        const Swatch* spot = palette.separation(stop.color, amount);
        if (!spot && stop.color == "Color/Paper") continue;
        if (!spot || (common && common != spot)) return nullptr;
        common = spot;
    }
    return common;
}

/// CMYK wins, then RGB.
ColorSpace commonSpace(const Palette& palette, const std::vector<GradientStop>& stops) {
    bool anyRgb = false, anyLab = false;
    for (const GradientStop& stop : stops) {
        const std::optional<ProcessColour> colour = palette.process(stop.color, -1);
        if (!colour || colour->space == ColorSpace::CMYK) return ColorSpace::CMYK;
        anyRgb = anyRgb || colour->space == ColorSpace::RGB;
        anyLab = anyLab || colour->space == ColorSpace::LAB;
    }
    if (anyRgb) return ColorSpace::RGB;
    return anyLab ? ColorSpace::LAB : ColorSpace::Gray;
}

void appendFunction(ContentBuffer& out, const std::vector<Stop>& stops) {
    const auto ramp = [&](size_t from) {
        out.append("<</FunctionType 2/Domain[0 1]/N ").number(stops[from + 1].exponent);
        out.append("/C0[").append(stops[from].value).append("]/C1[").append(stops[from + 1].value).append("]>>");
    };
    if (stops.size() == 2) return ramp(0);
    out.append("<</FunctionType 3/Domain[0 1]/Functions[");
    for (size_t i = 0; i + 1 < stops.size(); ++i) ramp(i);
    out.append("]/Bounds[");
    for (size_t i = 1; i + 1 < stops.size(); ++i) out.factor(stops[i].place).append(' ');
    out.append("]/Encode[");
    for (size_t i = 0; i + 1 < stops.size(); ++i) out.append("0 1 ");
    out.append("]>>");
}

/// Stops with places that rise strictly, the first at 0 and the last at 1, as stitching wants them.
void spread(std::vector<Stop>& stops) {
    constexpr double least = 1e-4;
    if (stops.front().place > 0) {
        stops.insert(stops.begin(), stops.front());
        stops.front().place = 0;
        stops[1].exponent = 1;
    }
    if (stops.back().place < 1) {
        stops.push_back(stops.back());
        stops.back().place = 1;
        stops.back().exponent = 1;
    }
    for (size_t i = 1; i < stops.size(); ++i) stops[i].place = std::max(stops[i].place, stops[i - 1].place + least);
    const double scale = 1 / stops.back().place;
    for (Stop& stop : stops) stop.place *= scale;
    if (stops.size() == 1) stops.push_back(stops.front());
}

void appendLine(ContentBuffer& out, const GradientPlace& place) {
    const double angle = place.angle * std::numbers::pi / 180;
    const Point direction{std::cos(angle), -std::sin(angle)};
    const Rect& bounds = place.bounds;
    const double wanted = place.length.value_or(0);
    // How far the bounds reach along the direction.
    const double reach = std::abs(bounds.width() * direction.x) + std::abs(bounds.height() * direction.y);
    const double length = wanted > 0 ? wanted : std::max(reach, 1e-3);
    Point start{(bounds.left + bounds.right) / 2 - direction.x * reach / 2,
                (bounds.top + bounds.bottom) / 2 - direction.y * reach / 2};
    if (place.start && wanted > 0) start = *place.start;
    out.append("/Coords[").number(start.x).append(' ').number(start.y).append(' ');
    out.number(start.x + direction.x * length).append(' ').number(start.y + direction.y * length).append(']');
}

void appendCircle(ContentBuffer& out, const GradientPlace& place) {
    const Rect& bounds = place.bounds;
    const double wanted = place.length.value_or(0);
    Point middle{(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
    if (place.start && wanted > 0) middle = *place.start;
    const double radius = wanted > 0 ? wanted : std::max(std::hypot(bounds.width(), bounds.height()) / 2, 1e-3);
    out.append("/Coords[").number(middle.x).append(' ').number(middle.y).append(" 0 ");
    out.number(middle.x).append(' ').number(middle.y).append(' ').number(radius).append(']');
}

}  // namespace

Resource gradientPattern(Palette& palette, SharedObjects& shared, const Paint& paint, const GradientPlace& place) {
    const std::vector<GradientStop> given = inOrder(*paint.gradient);
    const Swatch* spot = commonSeparation(palette, given);
    const ColorSpace space = commonSpace(palette, given);
    std::vector<Stop> stops;
    for (const GradientStop& from : given) {
        ContentBuffer value;
        if (spot) {
            double amount = 0;
            if (!palette.separation(from.color, amount)) amount = 0;
            value.number(amount * paint.tint);
        } else {
            ProcessColour white;
            const ProcessColour colour = toSpace(palette.process(from.color, paint.tint * 100).value_or(white), space);
            for (int i = 0; i < componentCount(space); ++i) value.number(colour.component[i]).append(' ');
        }
        stops.push_back(
            {std::clamp(from.location / 100, 0.0, 1.0), exponentFor(from.midpoint), std::string(value.view())});
    }
    spread(stops);

    ContentBuffer pattern;
    const Matrix& m = place.toPdf;
    pattern.append("<</PatternType 2/Matrix[").factor(m.a).append(' ').factor(m.b).append(' ').factor(m.c).append(' ');
    pattern.factor(m.d).append(' ').number(m.e).append(' ').number(m.f).append("]/Shading<</ShadingType ");
    pattern.append(paint.gradient->radial ? '3' : '2').append("/ColorSpace");
    if (spot) {
        pattern.append(' ').integer(palette.separationSpace(*spot).object).append(" 0 R");
    } else {
        pattern.append(spaceName(space));
    }
    if (paint.gradient->radial) {
        appendCircle(pattern, place);
    } else {
        appendLine(pattern, place);
    }
    pattern.append("/Extend[true true]/Function");
    appendFunction(pattern, stops);
    pattern.append(">>>>");
    return shared.get(ResourceKind::Pattern, pattern.view());
}

}  // namespace desk
