#include "desk/text/text_columns.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

/// No line is set into less room than this beside an obstacle, points.
constexpr double narrowestRoom = 12;
/// How far down the search goes on where a shape leaves no room, points.
constexpr double searchStep = 1;
/// Steps through a column at most, however high a frame claims to be.
constexpr double mostSearchSteps = 20'000;
constexpr int curveSteps = 16;

using Interval = std::pair<double, double>;

std::vector<Point> flatten(const Contour& contour) {
    std::vector<Point> result;
    const size_t count = contour.points.size();
    for (size_t i = 0; i < count; ++i) {
        const PathPoint& a = contour.points[i];
        const PathPoint& b = contour.points[(i + 1) % count];
        result.push_back(a.anchor);
        if (a.outgoing == a.anchor && b.incoming == b.anchor) continue;
        for (int step = 1; step < curveSteps; ++step) {
            const double t = static_cast<double>(step) / curveSteps, u = 1 - t;
            const double w[4] = {u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t};
            result.push_back({w[0] * a.anchor.x + w[1] * a.outgoing.x + w[2] * b.incoming.x + w[3] * b.anchor.x,
                              w[0] * a.anchor.y + w[1] * a.outgoing.y + w[2] * b.incoming.y + w[3] * b.anchor.y});
        }
    }
    return result;
}

/// Inside parts of a horizontal line, by the nonzero winding rule.
std::vector<Interval> insideAt(const std::vector<std::vector<Point>>& contours, double y) {
    std::vector<std::pair<double, int>> crossings;
    for (const auto& contour : contours) {
        for (size_t i = 0; i < contour.size(); ++i) {
            const Point& a = contour[i];
            const Point& b = contour[(i + 1) % contour.size()];
            if ((a.y <= y) == (b.y <= y)) continue;
            crossings.emplace_back(a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x), a.y <= y ? 1 : -1);
        }
    }
    std::sort(crossings.begin(), crossings.end());
    std::vector<Interval> result;
    int winding = 0;
    double start = 0;
    for (const auto& [x, direction] : crossings) {
        if (winding == 0) start = x;
        winding += direction;
        if (winding == 0) result.emplace_back(start, x);
    }
    return result;
}

std::vector<Interval> intersect(const std::vector<Interval>& a, const std::vector<Interval>& b) {
    std::vector<Interval> result;
    for (const Interval& x : a)
        for (const Interval& y : b)
            if (std::max(x.first, y.first) < std::min(x.second, y.second))
                result.emplace_back(std::max(x.first, y.first), std::min(x.second, y.second));
    return result;
}

bool stands(const Document& document, const PageItem& item, Uid ancestor) {
    for (const PageItem* at = &item; at; at = document.item(at->parent))
        if (at->uid == ancestor) return true;
    return false;
}

class ObstacleSearch {
  public:
    ObstacleSearch(const Document& document, const PageItem& frame)
        : document_(document), frame_(frame), toFrame_(document.toSpread(frame).inverted()) {}

    std::vector<Rect> find() {
        const Spread* spread = document_.spread(frame_.spread);
        if (!spread) return {};
        for (Uid layer : spread->layers)
            if (const SpreadLayer* items = document_.spreadLayer(layer))
                for (Uid item : items->items) look(item, 0);
        return std::move(found_);
    }

  private:
    void look(Uid uid, int depth) {
        const PageItem* item = document_.item(uid);
        if (!item || depth > 64 || !item->visible || item->uid == frame_.uid) return;
        const bool holdsFrame = stands(document_, frame_, item->uid);
        if (item->wrap.mode != TextWrapMode::None && !holdsFrame) add(*item);
        for (Uid child : item->children) look(child, depth + 1);
    }

    void add(const PageItem& item) {
        Rect box = document_.toSpread(item).boundsOf(boundsOf(item.path));
        const TextWrap& wrap = item.wrap;
        box = {box.left - wrap.left, box.top - wrap.top, box.right + wrap.right, box.bottom + wrap.bottom};
        Rect inner = toFrame_.boundsOf(box);
        const Rect own = boundsOf(frame_.path);
        if (!inner.intersects(own)) return;
        const bool wholeWidth = wrap.mode == TextWrapMode::JumpObject || wrap.mode == TextWrapMode::NextColumn;
        if (wholeWidth) {
            inner.left = std::min(inner.left, own.left);
            inner.right = std::max(inner.right, own.right);
        }
        if (wrap.mode == TextWrapMode::NextColumn) inner.bottom = std::max(inner.bottom, own.bottom);
        found_.push_back(inner);
    }

    const Document& document_;
    const PageItem& frame_;
    const Matrix toFrame_;
    std::vector<Rect> found_;
};

double strokeInset(const ItemAttributes& attributes) {
    const double weight = attributes.strokeWeight.value_or(0);
    switch (attributes.strokeAlignment.value_or(0)) {
        case 1:
            return weight;
        case 2:
            return 0;
        default:
            return weight / 2;
    }
}

/// Facing pages: those left of the spine come first.
bool isRightPage(const Document& document, Uid page) {
    const Page* found = document.page(page);
    const Spread* spread = found ? document.spread(found->spread) : nullptr;
    if (!spread || !document.preferences.facingPages) return true;
    const auto place = std::find(spread->pages.begin(), spread->pages.end(), page) - spread->pages.begin();
    return place >= spread->bindingLocation;
}

/// The baseline grid runs down the page; a turned frame has none.
void placeGrid(const Document& document, const PageItem& frame, TextColumn& column) {
    const Page* page = document.page(column.page);
    const Preferences& preferences = document.preferences;
    const Matrix toSpread = document.toSpread(frame);
    if (!page || preferences.baselineGridDivision <= 0 || !toSpread.isInvertible()) return;
    if (std::abs(toSpread.b) > 1e-6 || std::abs(toSpread.c) > 1e-6 || std::abs(toSpread.d - 1) > 1e-6) return;
    double start = page->rectInSpread().top + preferences.baselineGridStart;
    if (preferences.baselineGridFromMargin) start += page->margins.top;
    column.gridStart = start - toSpread.f;
    column.gridStep = preferences.baselineGridDivision;
}

void addColumns(const Document& document, const PageItem& frame, uint32_t frameIndex, std::vector<TextColumn>& result) {
    const TextFrameOptions options = document.frameOptions(frame);
    const double stroke = strokeInset(document.itemAttributes(frame));
    const Rect bounds = boundsOf(frame.path);
    TextColumn column;
    column.frame = frame.uid;
    column.frameIndex = frameIndex;
    column.firstBaseline = options.firstBaseline.value_or(FirstBaseline::AscentOffset);
    column.minimumFirstBaseline = options.minimumFirstBaseline.value_or(0);
    column.verticalJustification = options.verticalJustification.value_or(VerticalJustification::Top);
    column.verticalThreshold = options.verticalThreshold.value_or(0);
    column.page = document.pageOfItem(frame);
    const std::vector<Uid> pages = document.pages();
    const auto place = std::find(pages.begin(), pages.end(), column.page);
    column.pageNumber = place == pages.end() ? 0 : static_cast<int>(place - pages.begin()) + 1;
    column.onRightPage = isRightPage(document, column.page);
    placeGrid(document, frame, column);
    const Rect inner{bounds.left + options.insetLeft.value_or(0) + stroke,
                     bounds.top + options.insetTop.value_or(0) + stroke,
                     bounds.right - options.insetRight.value_or(0) - stroke,
                     bounds.bottom - options.insetBottom.value_or(0) - stroke};
    if (!isUprightRectangle(frame.path)) {
        for (const Contour& contour : frame.path)
            if (contour.points.size() > 2) column.contours.push_back(flatten(contour));
        column.contourInset = options.insetLeft.value_or(0) + stroke;
    }
    if (!options.ignoreWrap.value_or(false)) column.obstacles = ObstacleSearch(document, frame).find();
    const int count = std::max(1, options.columnCount.value_or(1));
    const double gutter = count > 1 ? options.columnGutter.value_or(12) : 0;
    const double width = std::max(0.0, (inner.width() - (count - 1) * gutter) / count);
    for (int i = 0; i < count; ++i) {
        const double left = inner.left + i * (width + gutter);
        column.area = {left, inner.top, left + width, inner.bottom};
        result.push_back(column);
    }
}

}  // namespace

std::vector<TextColumn> columnsOf(const Document& document, Uid story) {
    std::vector<TextColumn> result;
    uint32_t index = 0;
    for (Uid uid : document.framesOfStory(story))
        if (const PageItem* frame = document.item(uid)) addColumns(document, *frame, index++, result);
    return result;
}

SpanAnswer spanIn(const TextColumn& column, double top, double bottom) {
    const Rect& area = column.area;
    if (column.isRegular()) return {true, {0, area.width()}, 0};
    std::vector<Interval> room{{area.left, area.right}};
    if (!column.contours.empty()) {
        for (const double y : {top + 0.01, (top + bottom) / 2, bottom - 0.01}) {
            std::vector<Interval> inside = insideAt(column.contours, y);
            for (Interval& part : inside) part = {part.first + column.contourInset, part.second - column.contourInset};
            room = intersect(room, inside);
        }
    }
    double below = top + std::max(searchStep, area.height() / mostSearchSteps);
    for (const Rect& obstacle : column.obstacles) {
        if (obstacle.bottom <= top || obstacle.top >= bottom) continue;
        if (obstacle.right <= area.left || obstacle.left >= area.right) continue;
        room = intersect(room, {{-1e9, obstacle.left}, {obstacle.right, 1e9}});
        below = std::max(below, obstacle.bottom);
    }
    Interval widest{0, 0};
    for (const Interval& part : room)
        if (part.second - part.first > widest.second - widest.first) widest = part;
    if (widest.second - widest.first < std::min(narrowestRoom, area.width())) return {false, {}, below};
    return {true, {widest.first - area.left, widest.second - widest.first}, 0};
}

}  // namespace desk
