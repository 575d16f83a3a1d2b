#include "desk/model/geometry.h"

namespace desk {
namespace {

double cubicAt(double p0, double p1, double p2, double p3, double t) {
    const double u = 1 - t;
    return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
}

/// Widens low..high by the extremes of one coordinate of a cubic: the roots of its derivative inside (0, 1).
void includeCubic(double p0, double p1, double p2, double p3, double& low, double& high) {
    const auto include = [&](double t) {
        if (t <= 0 || t >= 1) return;
        const double value = cubicAt(p0, p1, p2, p3, t);
        low = std::min(low, value);
        high = std::max(high, value);
    };
    const double a = -p0 + 3 * p1 - 3 * p2 + p3;
    const double b = 2 * (p0 - 2 * p1 + p2);
    const double c = p1 - p0;
    if (std::abs(a) < 1e-12) {
        if (std::abs(b) > 1e-12) include(-c / b);
        return;
    }
    const double discriminant = b * b - 4 * a * c;
    if (discriminant < 0) return;
    const double root = std::sqrt(discriminant);
    include((-b + root) / (2 * a));
    include((-b - root) / (2 * a));
}

/// A straight segment lies between its ends, which the box has already.
void includeSegment(const PathPoint& from, const PathPoint& to, Rect& box) {
    if (from.outgoing == from.anchor && to.incoming == to.anchor) return;
    includeCubic(from.anchor.x, from.outgoing.x, to.incoming.x, to.anchor.x, box.left, box.right);
    includeCubic(from.anchor.y, from.outgoing.y, to.incoming.y, to.anchor.y, box.top, box.bottom);
}

}  // namespace

Rect boundsOf(const Path& path) {
    Rect box;
    bool first = true;
    for (const Contour& contour : path) {
        for (const PathPoint& point : contour.points) {
            const Rect dot{point.anchor.x, point.anchor.y, point.anchor.x, point.anchor.y};
            box = first ? dot : box.unitedWith(dot);
            first = false;
        }
        for (size_t i = 0; i + 1 < contour.points.size(); ++i)
            includeSegment(contour.points[i], contour.points[i + 1], box);
        if (!contour.open && contour.points.size() > 1)
            includeSegment(contour.points.back(), contour.points.front(), box);
    }
    return box;
}

Path rectanglePath(const Rect& rect) {
    Path path(1);
    path.front().points.reserve(4);
    for (const Point& p : {Point{rect.left, rect.top}, Point{rect.left, rect.bottom}, Point{rect.right, rect.bottom},
                           Point{rect.right, rect.top}})
        path.front().points.push_back({p, p, p});
    return path;
}

bool isUprightRectangle(const Path& path) {
    if (path.size() != 1 || path[0].open || path[0].points.size() != 4) return false;
    const std::vector<PathPoint>& points = path[0].points;
    for (size_t i = 0; i < 4; ++i) {
        const PathPoint& p = points[i];
        const PathPoint& next = points[(i + 1) % 4];
        if (!(p.anchor == p.incoming) || !(p.anchor == p.outgoing)) return false;
        const bool vertical = std::abs(p.anchor.x - next.anchor.x) < 1e-6;
        const bool horizontal = std::abs(p.anchor.y - next.anchor.y) < 1e-6;
        if (vertical == horizontal) return false;
    }
    return true;
}

}  // namespace desk
