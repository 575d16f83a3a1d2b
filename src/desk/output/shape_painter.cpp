#include "desk/output/shape_painter.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

/// The factor by which a matrix scales lengths when it scales all of them alike; 0 when it doesn't.
double uniformScale(const Matrix& m) {
    const double first = std::hypot(m.a, m.b), second = std::hypot(m.c, m.d);
    const double skew = m.a * m.c + m.b * m.d;
    const double tolerance = 1e-6 * std::max(first, second);
    return std::abs(first - second) <= tolerance && std::abs(skew) <= tolerance * first ? first : 0;
}

/// Weight 1 on a matrix that paints nothing visible would be an error of the reader's: leave such items out.
bool isUsable(const Matrix& m) {
    for (double value : {m.a, m.b, m.c, m.d, m.e, m.f})
        if (!std::isfinite(value)) return false;
    return m.isInvertible();
}

constexpr std::string_view strokeStylePrefix = "StrokeStyle/";

std::string strokeStyleName(const std::string& self) {
    std::string name = self.starts_with(strokeStylePrefix) ? self.substr(strokeStylePrefix.size()) : self;
    if (name.starts_with("$ID/")) name.erase(0, 4);
    return name;
}

}  // namespace

/// A stroke as it will be painted, in the item's inner units.
struct ShapePainter::Stroke {
    const Paint* paint = nullptr;
    const Paint* gapPaint = nullptr;
    double weight = 0;
    int alignment = 0;  ///< 0 centred, 1 inside, 2 outside
    int cap = 0, join = 0;
    double miterLimit = 4;
    bool overprints = false;
    std::vector<double> dashes;
    GradientPlace place;

    bool paints() const { return paint->paints && weight > 0; }
    /// Needs no graphics state but colour, weight and mitre limit.
    bool isPlain() const { return alignment == 0 && cap == 0 && join == 0 && dashes.empty() && !overprints; }
};

void ShapePainter::setState(Fragment& out, std::string_view dictionary) {
    const Resource state = shared_.get(ResourceKind::GraphicsState, dictionary);
    appendName(out.bytes, state);
    out.bytes.append(" gs\n");
    out.resources.add(state);
}

void ShapePainter::setColour(Fragment& out, const Paint& paint, Use use, const GradientPlace& place) {
    if (!paint.gradient) {
        out.bytes.append(use == Use::Fill ? paint.fill : paint.stroke);
        if (paint.space) out.resources.add(*paint.space);
        return;
    }
    const Resource pattern = gradientPattern(palette_, shared_, paint, place);
    out.bytes.append(use == Use::Fill ? "/Pattern cs " : "/Pattern CS ");
    appendName(out.bytes, pattern);
    out.bytes.append(use == Use::Fill ? " scn\n" : " SCN\n");
    out.resources.add(pattern);
}

/// Dashes by the stroke's type, in points; none for a solid stroke.
std::vector<double> ShapePainter::dashesOf(const ItemAttributes& attributes, double weight, bool& round) {
    const std::string type = attributes.strokeType.value_or("");
    const std::string name = strokeStyleName(type);
    round = false;
    if (name.empty() || name == "n" || name == "Solid") return {};
    if (name == "Dashed") return attributes.dashes.value_or(std::vector<double>{12, 12});
    if (name == "Canned Dashed 3x2") return {3 * weight, 2 * weight};
    if (name == "Canned Dashed 4x4") return {4 * weight, 4 * weight};
    if (name == "Canned Dotted" || name == "Japanese Dots") {
        round = true;
        return {0, 2 * weight};
    }
    const auto custom = document_.strokeStyles.find(type);
    if (custom != document_.strokeStyles.end() && !custom->second.empty()) return custom->second;
    simplifications_.add("the stroke style \"" + name + "\" is drawn as a solid line");
    return {};
}

void ShapePainter::appendStrokeLook(const Stroke& stroke, double scale, Fragment& out) {
    out.bytes.number(stroke.weight * scale).append(" w ").number(std::max(stroke.miterLimit, 1.0)).append(" M\n");
    if (stroke.cap != 0) out.bytes.integer(stroke.cap).append(" J ");
    if (stroke.join != 0) out.bytes.integer(stroke.join).append(" j ");
}

/// Half of a doubled stroke lies on either side of the path: keeps the half that is wanted.
void ShapePainter::clipToSide(const Path& path, const Stroke& stroke, const Matrix& toPdf, Fragment& out) {
    const bool outside = stroke.alignment == 2;
    if (outside) {
        const double reach = stroke.weight * 4 * std::max(stroke.miterLimit, 1.0) + 1;
        appendPath(out.bytes, rectanglePath(toPdf.boundsOf(boundsOf(path).grownBy(reach))), Matrix{});
    }
    appendPath(out.bytes, path, toPdf);
    out.bytes.append(outside ? "W* n\n" : "W n\n");
}

void ShapePainter::strokePath(const Path& path, const Stroke& stroke, const Matrix& toPdf, Fragment& out) {
    Stroke drawn = stroke;
    const bool aligned = stroke.alignment != 0 && isClosed(path);
    const double scale = uniformScale(toPdf);
    const Matrix pathMatrix = scale > 0 ? toPdf : Matrix{};
    const bool enclosed = aligned || scale == 0 || stroke.cap != 0 || stroke.join != 0 || !stroke.dashes.empty();
    if (enclosed) out.bytes.append("q\n");
    if (aligned) {
        drawn.weight *= 2;
        clipToSide(path, stroke, toPdf, out);
    }
    if (scale == 0) {
        const Matrix& m = toPdf;
        for (double value : {m.a, m.b, m.c, m.d}) out.bytes.factor(value).append(' ');
        out.bytes.number(m.e).append(' ').number(m.f).append(" cm\n");
    }
    const double unit = scale > 0 ? scale : 1;
    appendStrokeLook(drawn, unit, out);
    if (!stroke.dashes.empty()) {
        if (stroke.gapPaint && stroke.gapPaint->paints) {
            setColour(out, *stroke.gapPaint, Use::Stroke, stroke.place);
            if (appendPath(out.bytes, path, pathMatrix)) out.bytes.append("S\n");
        }
        out.bytes.append('[');
        for (double dash : stroke.dashes) out.bytes.number(dash * unit).append(' ');
        out.bytes.append("]0 d\n");
    }
    setColour(out, *stroke.paint, Use::Stroke, stroke.place);
    if (appendPath(out.bytes, path, pathMatrix)) out.bytes.append("S\n");
    if (enclosed) out.bytes.append("Q\n");
}

ShapePainter::Stroke ShapePainter::strokeOf(const ItemAttributes& attributes, const GradientPlace& place) {
    Stroke stroke;
    stroke.place = place;
    stroke.paint = &palette_.paint(attributes.strokeColor.value_or(""), attributes.strokeTint.value_or(-1));
    stroke.gapPaint = &palette_.paint(attributes.gapColor.value_or(""), attributes.gapTint.value_or(-1));
    stroke.weight = attributes.strokeWeight.value_or(1);
    stroke.alignment = attributes.strokeAlignment.value_or(0);
    stroke.cap = std::clamp(attributes.endCap.value_or(0), 0, 2);
    stroke.join = std::clamp(attributes.endJoin.value_or(0), 0, 2);
    stroke.miterLimit = attributes.miterLimit.value_or(4);
    stroke.overprints = attributes.overprintStroke.value_or(false);
    if (!stroke.paints()) return stroke;
    bool round = false;
    stroke.dashes = dashesOf(attributes, stroke.weight, round);
    if (round) stroke.cap = 1;
    double total = 0;
    for (double dash : stroke.dashes) total += dash < 0 ? -1e9 : dash;
    if (!(total > 0)) stroke.dashes.clear();
    return stroke;
}

void ShapePainter::paint(const Path& path, const ItemAttributes& attributes, const Matrix& toPdf, ShapeHolds holds,
                         ShapeContent& content) {
    if (path.empty() || !isUsable(toPdf)) return;
    const Path outline = withCorners(path, attributes);
    if (appendPath(content.clip, outline, toPdf)) content.clip.append("W n\n");
    GradientPlace place;
    place.bounds = boundsOf(path);
    place.toPdf = toPdf;
    const Stroke stroke = strokeOf(attributes, place);
    const Paint& fill = palette_.paint(attributes.fillColor.value_or(""), attributes.fillTint.value_or(-1));
    const bool fillOverprints = attributes.overprintFill.value_or(false);
    // One operator paints both where nothing lies between them and the stroke needs nothing of its own.
    const bool together = fill.paints && stroke.paints() && stroke.isPlain() && holds == ShapeHolds::Nothing &&
                          !fillOverprints && isClosed(path) && uniformScale(toPdf) > 0;
    if (fill.paints) {
        place.angle = attributes.gradientAngle.value_or(0);
        place.start = attributes.gradientStart;
        place.length = attributes.gradientLength;
        if (fillOverprints) {
            content.below.bytes.append("q\n");
            setState(content.below, "<</op true/OPM 1>>");
        }
        setColour(content.below, fill, Use::Fill, place);
        if (together) {
            appendStrokeLook(stroke, uniformScale(toPdf), content.below);
            setColour(content.below, *stroke.paint, Use::Stroke, stroke.place);
        }
        if (appendPath(content.below.bytes, outline, toPdf)) content.below.bytes.append(together ? "B\n" : "f\n");
        if (fillOverprints) content.below.bytes.append("Q\n");
    }
    if (stroke.paints() && !together) paintStroke(outline, attributes, stroke, toPdf, content.above);
}

/// The stroke with its line ends.
void ShapePainter::paintStroke(const Path& outline, const ItemAttributes& attributes, const Stroke& stroke,
                               const Matrix& toPdf, Fragment& out) {
    if (stroke.overprints) {
        out.bytes.append("q\n");
        setState(out, "<</OP true/op true/OPM 1>>");
    }
    strokePath(outline, stroke, toPdf, out);
    Stroke ofEnds = stroke;
    ofEnds.alignment = 0;
    ofEnds.dashes.clear();
    for (const LineEnd& end : lineEnds(outline, attributes, stroke.weight)) {
        if (!end.filled) {
            strokePath(end.path, ofEnds, toPdf, out);
            continue;
        }
        setColour(out, *stroke.paint, Use::Fill, stroke.place);
        if (appendPath(out.bytes, end.path, toPdf)) out.bytes.append("f\n");
    }
    if (stroke.overprints) out.bytes.append("Q\n");
}

}  // namespace desk
