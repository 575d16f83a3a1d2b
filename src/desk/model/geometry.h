#pragma once
// Plane geometry of documents. Lengths are points (1/72 inch), y grows downwards.

#include <algorithm>
#include <cmath>
#include <vector>

namespace desk {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// Left, top, right, bottom in points. A default rectangle is empty at the origin.
struct Rect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    bool contains(Point p) const { return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom; }
    Rect unitedWith(const Rect& other) const {
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                std::max(bottom, other.bottom)};
    }
    Rect grownBy(double margin) const { return {left - margin, top - margin, right + margin, bottom + margin}; }
    bool intersects(const Rect& other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
    bool operator==(const Rect&) const = default;
};

/// x' = a*x + c*y + e, y' = b*x + d*y + f: inner coordinates to the parent's.
struct Matrix {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    static Matrix translation(double x, double y) { return {1, 0, 0, 1, x, y}; }

    Point apply(Point p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }

    /// The matrix that applies `inner` first and this one after it.
    Matrix after(const Matrix& inner) const {
        return {a * inner.a + c * inner.b, b * inner.a + d * inner.b,     a * inner.c + c * inner.d,
                b * inner.c + d * inner.d, a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
    }
    double determinant() const { return a * d - b * c; }
    bool isInvertible() const { return std::abs(determinant()) > 1e-12; }

    /// The identity for a matrix that can't be inverted.
    Matrix inverted() const {
        if (!isInvertible()) return {};
        const double n = 1 / determinant();
        return {d * n, -b * n, -c * n, a * n, (c * f - d * e) * n, (b * e - a * f) * n};
    }
    bool isTranslation() const { return a == 1 && b == 0 && c == 0 && d == 1; }

    /// The upright box around the transformed corners.
    Rect boundsOf(const Rect& r) const {
        const Point p[4] = {apply({r.left, r.top}), apply({r.right, r.top}), apply({r.right, r.bottom}),
                            apply({r.left, r.bottom})};
        Rect box{p[0].x, p[0].y, p[0].x, p[0].y};
        for (const Point& q : p) box = box.unitedWith({q.x, q.y, q.x, q.y});
        return box;
    }
    bool operator==(const Matrix&) const = default;
};

/// One corner of a path with its two handles, all three absolute. A corner without curve has both handles on the
/// anchor.
struct PathPoint {
    Point anchor;
    Point incoming;
    Point outgoing;
    bool operator==(const PathPoint&) const = default;
};

/// Segment i to i+1 is the cubic anchor, outgoing, next incoming, next anchor; a closed contour adds last to first.
struct Contour {
    std::vector<PathPoint> points;
    bool open = false;
    bool operator==(const Contour&) const = default;
};

/// Several contours make a compound path, filled by the nonzero winding rule.
using Path = std::vector<Contour>;

/// The tight box around all segments (curve extremes, not handles); the empty rectangle for a path without points.
Rect boundsOf(const Path& path);

/// A closed rectangle with corners: left top, left bottom, right bottom, right top.
Path rectanglePath(const Rect& rect);

/// True when the path is one closed contour of four straight sides, upright in its own coordinates.
bool isUprightRectangle(const Path& path);

}  // namespace desk
