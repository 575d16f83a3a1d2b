#include "desk/output/outline.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

/// Handle length of a quarter circle of radius 1.
constexpr double quarterHandle = 0.5522847498;

void appendPoint(ContentBuffer& out, Point p) {
    out.number(p.x).append(' ').number(p.y).append(' ');
}

PathPoint corner(Point p) {
    return {p, p, p};
}

bool isStraight(const PathPoint& from, const PathPoint& to) {
    return from.outgoing == from.anchor && to.incoming == to.anchor;
}

void appendSegment(ContentBuffer& out, const PathPoint& from, const PathPoint& to, const Matrix& toPdf) {
    if (isStraight(from, to)) {
        appendPoint(out, toPdf.apply(to.anchor));
        out.append("l\n");
        return;
    }
    appendPoint(out, toPdf.apply(from.outgoing));
    appendPoint(out, toPdf.apply(to.incoming));
    appendPoint(out, toPdf.apply(to.anchor));
    out.append("c\n");
}

void appendContour(ContentBuffer& out, const Contour& contour, const Matrix& toPdf) {
    appendPoint(out, toPdf.apply(contour.points.front().anchor));
    out.append("m\n");
    for (size_t i = 0; i + 1 < contour.points.size(); ++i)
        appendSegment(out, contour.points[i], contour.points[i + 1], toPdf);
    if (contour.open) return;
    // Closing draws the straight side itself.
    if (!isStraight(contour.points.back(), contour.points.front()))
        appendSegment(out, contour.points.back(), contour.points.front(), toPdf);
    out.append("h\n");
}

Point towards(Point from, Point to, double distance) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    if (length == 0) return from;
    return {from.x + (to.x - from.x) * distance / length, from.y + (to.y - from.y) * distance / length};
}

Point between(Point a, Point b, double share) {
    return {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
}

/// Replaces one corner by what the option draws between `in` and `out` on its two sides.
void appendCorner(std::vector<PathPoint>& points, const std::string& option, Point at, Point in, Point out) {
    PathPoint first = corner(in), last = corner(out);
    const Point inset{in.x + out.x - at.x, in.y + out.y - at.y};
    if (option == "InverseRoundedCorner") {
        first.outgoing = between(in, inset, quarterHandle);
        last.incoming = between(out, inset, quarterHandle);
    } else if (option != "BevelCorner" && option != "InsetCorner") {  // rounded, and fancy for which it stands in
        first.outgoing = between(in, at, quarterHandle);
        last.incoming = between(out, at, quarterHandle);
    }
    points.push_back(first);
    if (option == "InsetCorner") points.push_back(corner(inset));
    points.push_back(last);
}

struct CornerLook {
    std::string option;
    double radius = 0;
};

CornerLook lookOf(const ItemAttributes& attributes, size_t index) {
    constexpr double usualRadius = 12;
    return {attributes.cornerOption[index].value_or("None"), attributes.cornerRadius[index].value_or(usualRadius)};
}

/// Which of the four options an anchor of an upright rectangle takes.
size_t cornerIndex(Point p, const Rect& bounds) {
    const bool right = p.x > (bounds.left + bounds.right) / 2;
    const bool bottom = p.y > (bounds.top + bounds.bottom) / 2;
    return (bottom ? 2u : 0u) + (right ? 1u : 0u);
}

Contour withCorners(const Contour& contour, const ItemAttributes& attributes, const Rect* rectangle) {
    Contour result;
    result.open = contour.open;
    const size_t count = contour.points.size();
    for (size_t i = 0; i < count; ++i) {
        const PathPoint& point = contour.points[i];
        const bool atEnd = contour.open && (i == 0 || i + 1 == count);
        const PathPoint& before = contour.points[(i + count - 1) % count];
        const PathPoint& after = contour.points[(i + 1) % count];
        const CornerLook look = lookOf(attributes, rectangle ? cornerIndex(point.anchor, *rectangle) : 0);
        const double shorter = std::min(std::hypot(point.anchor.x - before.anchor.x, point.anchor.y - before.anchor.y),
                                        std::hypot(point.anchor.x - after.anchor.x, point.anchor.y - after.anchor.y));
        const double radius = std::min(look.radius, shorter / 2);
        if (atEnd || count < 3 || look.option == "None" || look.option == "n" || look.option.empty() || !(radius > 0) ||
            !isStraight(before, point) || !isStraight(point, after)) {
            result.points.push_back(point);
            continue;
        }
        appendCorner(result.points, look.option, point.anchor, towards(point.anchor, before.anchor, radius),
                     towards(point.anchor, after.anchor, radius));
    }
    return result;
}

/// Coordinates of a line end: `along` points outwards from the tip, `across` to its left. Unit: the line's weight.
struct LineEndFrame {
    Point tip, direction;
    double weight;
    Point at(double along, double across) const {
        return {tip.x + (direction.x * along + direction.y * across) * weight,
                tip.y + (direction.y * along - direction.x * across) * weight};
    }
};

Contour polygon(std::initializer_list<Point> points, bool open) {
    Contour contour;
    contour.open = open;
    for (Point p : points) contour.points.push_back(corner(p));
    return contour;
}

Contour circle(const LineEndFrame& frame, double middle, double radius) {
    const double handle = radius * quarterHandle;
    const double along[4] = {1, 0, -1, 0}, across[4] = {0, 1, 0, -1};
    Contour contour;
    for (int i = 0; i < 4; ++i) {
        const int next = (i + 1) % 4;
        const double x = middle + along[i] * radius, y = across[i] * radius;
        contour.points.push_back({frame.at(x, y), frame.at(x - along[next] * handle, y - across[next] * handle),
                                  frame.at(x + along[next] * handle, y + across[next] * handle)});
    }
    return contour;
}

/// Sizes in line weights; circles and squares are five across.
std::vector<LineEnd> lineEnd(const std::string& kind, const LineEndFrame& f) {
    const double wide = kind.find("Wide") != std::string::npos ? 1.6 : 1;
    if (kind == "SimpleArrowHead" || kind == "SimpleWideArrowHead")
        return {{{polygon({f.at(-5, 2.5 * wide), f.at(0, 0), f.at(-5, -2.5 * wide)}, true)}, false}};
    if (kind == "CircleArrowHead") return {{{circle(f, 0, 2.5)}, false}};
    if (kind == "CircleSolidArrowHead") return {{{circle(f, 0, 2.5)}, true}};
    if (kind == "SquareArrowHead" || kind == "SquareSolidArrowHead")
        return {{{polygon({f.at(-2.5, -2.5), f.at(2.5, -2.5), f.at(2.5, 2.5), f.at(-2.5, 2.5)}, false)},
                 kind == "SquareSolidArrowHead"}};
    if (kind == "BarArrowHead") return {{{polygon({f.at(0, -2.5), f.at(0, 2.5)}, true)}, false}};
    if (kind == "BarbedArrowHead" || kind == "CurvedArrowHead")
        return {{{polygon({f.at(0, 0), f.at(-5, 2.5), f.at(-3.5, 0), f.at(-5, -2.5)}, false)}, true}};
    if (kind == "TriangleArrowHead" || kind == "TriangleWideArrowHead")
        return {{{polygon({f.at(0, 0), f.at(-5, 2.5 * wide), f.at(-5, -2.5 * wide)}, false)}, true}};
    return {};
}

/// From `from` to `to` with length 1; where they fall together, `fallback` instead of `from`.
Point directionOf(Point from, Point to, Point fallback) {
    if (from == to) from = fallback;
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    if (length == 0) return {1, 0};
    return {(to.x - from.x) / length, (to.y - from.y) / length};
}

}  // namespace

bool appendPath(ContentBuffer& out, const Path& path, const Matrix& toPdf) {
    if (isUprightRectangle(path) && toPdf.b == 0 && toPdf.c == 0) {
        const Rect box = toPdf.boundsOf(boundsOf(path));
        // The far corner is rounded, not the width: edges that meet in the document meet on paper.
        const int64_t left = ContentBuffer::toThousandths(box.left), bottom = ContentBuffer::toThousandths(box.top);
        out.thousandths(left).append(' ').thousandths(bottom).append(' ');
        out.thousandths(ContentBuffer::toThousandths(box.right) - left).append(' ');
        out.thousandths(ContentBuffer::toThousandths(box.bottom) - bottom).append(" re\n");
        return true;
    }
    bool any = false;
    for (const Contour& contour : path) {
        if (contour.points.size() < 2) continue;
        appendContour(out, contour, toPdf);
        any = true;
    }
    return any;
}

Path withCorners(const Path& path, const ItemAttributes& attributes) {
    bool any = false;
    for (const std::optional<std::string>& option : attributes.cornerOption)
        any = any || (option && *option != "None" && *option != "n");
    if (!any) return path;
    const bool rectangle = isUprightRectangle(path);
    const Rect bounds = boundsOf(path);
    Path result;
    for (const Contour& contour : path)
        result.push_back(withCorners(contour, attributes, rectangle ? &bounds : nullptr));
    return result;
}

std::vector<LineEnd> lineEnds(const Path& path, const ItemAttributes& attributes, double weight) {
    std::vector<LineEnd> ends;
    for (const Contour& contour : path) {
        const std::vector<PathPoint>& points = contour.points;
        if (!contour.open || points.size() < 2) continue;
        const auto add = [&](const std::optional<std::string>& kind, const LineEndFrame& frame) {
            if (!kind) return;
            for (LineEnd& end : lineEnd(*kind, frame)) ends.push_back(std::move(end));
        };
        const PathPoint& first = points.front();
        const PathPoint& last = points.back();
        add(attributes.leftLineEnd,
            {first.anchor, directionOf(first.outgoing, first.anchor, points[1].anchor), weight});
        add(attributes.rightLineEnd,
            {last.anchor, directionOf(last.incoming, last.anchor, points[points.size() - 2].anchor), weight});
    }
    return ends;
}

bool isClosed(const Path& path) {
    return std::none_of(path.begin(), path.end(), [](const Contour& contour) { return contour.open; });
}

}  // namespace desk
