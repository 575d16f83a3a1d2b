#include "desk/output/palette.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

/// A tint names another swatch, which may be a tint: more steps than this are a circle.
constexpr int deepestTint = 16;

Swatch builtIn(const char* name, SwatchKind kind, double c, double m, double y, double k) {
    Swatch swatch;
    swatch.self = std::string("Color/") + name;
    swatch.name = name;
    swatch.kind = kind;
    swatch.value = {ColorSpace::CMYK, {c, m, y, k}};
    return swatch;
}

/// The swatches that every document has, whether its file lists them or not.
const Swatch* builtInSwatch(const std::string& self) {
    static const Swatch swatches[] = {
        builtIn("Black", SwatchKind::Process, 0, 0, 0, 100),
        builtIn("Paper", SwatchKind::Process, 0, 0, 0, 0),
        builtIn("Registration", SwatchKind::Registration, 100, 100, 100, 100),
        builtIn("Cyan", SwatchKind::Process, 100, 0, 0, 0),
        builtIn("Magenta", SwatchKind::Process, 0, 100, 0, 0),
        builtIn("Yellow", SwatchKind::Process, 0, 0, 100, 0),
    };
    for (const Swatch& swatch : swatches)
        if (swatch.self == self) return &swatch;
    return nullptr;
}

double unitRange(double value) {
    return std::clamp(value, 0.0, 1.0);
}

/// With the tint applied: ink scales, light moves towards white.
ProcessColour tinted(const ColorValue& value, double tint) {
    ProcessColour colour;
    colour.space = value.space;
    const double* from = value.component;
    switch (value.space) {
        case ColorSpace::CMYK:
            for (int i = 0; i < 4; ++i) colour.component[i] = unitRange(from[i] / 100 * tint);
            break;
        case ColorSpace::RGB:
            for (int i = 0; i < 3; ++i) colour.component[i] = unitRange(1 - tint * (1 - from[i] / 255));
            break;
        case ColorSpace::Gray:
            colour.component[0] = unitRange(1 - tint * (1 - from[0] / 100));
            break;
        case ColorSpace::LAB:
            colour.component[0] = std::clamp(100 - tint * (100 - from[0]), 0.0, 100.0);
            for (int i = 1; i < 3; ++i) colour.component[i] = std::clamp(from[i] * tint, -128.0, 127.0);
            break;
    }
    return colour;
}

void appendComponents(ContentBuffer& out, const ProcessColour& colour) {
    for (int i = 0; i < componentCount(colour.space); ++i) out.number(colour.component[i]).append(' ');
}

std::string operation(const ProcessColour& colour, std::string_view operatorName) {
    ContentBuffer out;
    appendComponents(out, colour);
    out.append(operatorName).append('\n');
    return std::string(out.view());
}

/// Colour of the L*a*b* space under D50 as linear light, then as sRGB.
ProcessColour labToRgb(const ProcessColour& lab) {
    const double fy = (lab.component[0] + 16) / 116;
    const double fx = fy + lab.component[1] / 500;
    const double fz = fy - lab.component[2] / 200;
    const auto cube = [](double f) { return f > 6.0 / 29 ? f * f * f : 3 * (6.0 / 29) * (6.0 / 29) * (f - 4.0 / 29); };
    const double x = 0.9642 * cube(fx), y = cube(fy), z = 0.8249 * cube(fz);
    // XYZ under D50 to linear sRGB, Bradford adaptation included.
    const double linear[3] = {3.1339 * x - 1.6169 * y - 0.4906 * z, -0.9788 * x + 1.9161 * y + 0.0335 * z,
                              0.0719 * x - 0.2290 * y + 1.4052 * z};
    ProcessColour rgb;
    rgb.space = ColorSpace::RGB;
    for (int i = 0; i < 3; ++i) {
        const double v = unitRange(linear[i]);
        rgb.component[i] = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
    }
    return rgb;
}

ProcessColour toRgb(const ProcessColour& colour) {
    if (colour.space == ColorSpace::LAB) return labToRgb(colour);
    ProcessColour rgb;
    rgb.space = ColorSpace::RGB;
    for (int i = 0; i < 3; ++i) {
        if (colour.space == ColorSpace::CMYK) {
            rgb.component[i] = (1 - colour.component[i]) * (1 - colour.component[3]);
        } else {
            rgb.component[i] = colour.component[colour.space == ColorSpace::Gray ? 0 : i];
        }
    }
    return rgb;
}

}  // namespace

int componentCount(ColorSpace space) {
    if (space == ColorSpace::CMYK) return 4;
    return space == ColorSpace::Gray ? 1 : 3;
}

std::string_view spaceName(ColorSpace space) {
    switch (space) {
        case ColorSpace::Gray:
            return "/DeviceGray";
        case ColorSpace::RGB:
            return "/DeviceRGB";
        case ColorSpace::LAB:
            return "[/Lab<</WhitePoint[.9642 1 .8249]/Range[-128 127 -128 127]>>]";
        case ColorSpace::CMYK:
            break;
    }
    return "/DeviceCMYK";
}

ProcessColour toSpace(const ProcessColour& colour, ColorSpace space) {
    if (colour.space == space) return colour;
    const ProcessColour rgb = toRgb(colour);
    if (space == ColorSpace::RGB) return rgb;
    ProcessColour result;
    result.space = space;
    const double lightest = std::max({rgb.component[0], rgb.component[1], rgb.component[2]});
    if (space == ColorSpace::CMYK) {
        result.component[3] = 1 - lightest;
        for (int i = 0; i < 3; ++i) result.component[i] = lightest > 0 ? (lightest - rgb.component[i]) / lightest : 0;
    } else {
        const double gray = 0.3 * rgb.component[0] + 0.59 * rgb.component[1] + 0.11 * rgb.component[2];
        result.component[0] = space == ColorSpace::LAB ? gray * 100 : gray;
    }
    return result;
}

const Paint& Palette::paint(const std::string& swatch, double tint) {
    auto& byTint = paints_[swatch];
    const auto found = byTint.find(tint);
    if (found != byTint.end()) return found->second;
    return byTint.emplace(tint, make(swatch, tint)).first->second;
}

/// Follows tints to the colour under them; `tint` takes in theirs, 0..1. Null paints nothing.
const Swatch* Palette::resolve(const std::string& swatch, double& tint) const {
    tint = tint < 0 ? 1 : std::min(tint, 100.0) / 100;
    if (swatch.empty() || swatch == "n" || swatch == "Swatch/None") return nullptr;
    std::string self = swatch;
    for (int depth = 0; depth < deepestTint; ++depth) {
        const Swatch* found = document_.swatch(self);
        if (!found) found = builtInSwatch(self);
        if (!found) return builtInSwatch("Color/Black");
        if (found->kind == SwatchKind::None) return nullptr;
        if (found->kind != SwatchKind::Tint) return found;
        if (found->tint >= 0) tint *= std::min(found->tint, 100.0) / 100;
        self = found->baseColor;
    }
    return builtInSwatch("Color/Black");
}

Paint Palette::make(const std::string& swatch, double tint) {
    Paint paint;
    const Swatch* colour = resolve(swatch, tint);
    if (!colour) return paint;
    paint.paints = true;
    if (colour->kind == SwatchKind::Gradient) {
        paint.gradient = colour;
        paint.tint = tint;
        if (colour->stops.empty()) paint.paints = false;
    } else if (colour->kind == SwatchKind::Spot || colour->kind == SwatchKind::Registration) {
        setSeparation(paint, *colour, tint);
    } else {
        setProcess(paint, tinted(colour->value, tint));
    }
    return paint;
}

std::optional<ProcessColour> Palette::process(const std::string& swatch, double tint) const {
    const Swatch* colour = resolve(swatch, tint);
    if (!colour || colour->kind == SwatchKind::Gradient) return std::nullopt;
    return tinted(colour->value, tint);
}

const Swatch* Palette::separation(const std::string& swatch, double& amount) const {
    amount = -1;
    const Swatch* colour = resolve(swatch, amount);
    return colour && colour->kind == SwatchKind::Spot ? colour : nullptr;
}

Resource Palette::separationSpace(const Swatch& spot) {
    const bool registration = spot.kind == SwatchKind::Registration;
    const ProcessColour full = tinted(spot.value, 1);
    const ProcessColour paper = tinted(spot.value, 0);
    ContentBuffer space;
    space.append("[/Separation").name(registration ? "All" : spot.name.empty() ? spot.self : spot.name);
    space.append(spaceName(full.space)).append("<</FunctionType 2/Domain[0 1]/N 1/C0[");
    appendComponents(space, paper);
    space.append("]/C1[");
    appendComponents(space, full);
    space.append("]>>]");
    return shared_.get(ResourceKind::ColourSpace, space.view());
}

void Palette::setSeparation(Paint& paint, const Swatch& spot, double amount) {
    const Resource space = separationSpace(spot);
    ContentBuffer fill, stroke;
    appendName(fill, space);
    appendName(stroke, space);
    fill.append(" cs ").number(amount).append(" scn\n");
    stroke.append(" CS ").number(amount).append(" SCN\n");
    paint.fill = fill.view();
    paint.stroke = stroke.view();
    paint.space = space;
}

void Palette::setProcess(Paint& paint, const ProcessColour& colour) {
    if (colour.space == ColorSpace::LAB) {
        const Resource space = shared_.get(ResourceKind::ColourSpace, spaceName(colour.space));
        ContentBuffer name;
        appendName(name, space);
        paint.fill = std::string(name.view()) + " cs " + operation(colour, "scn");
        paint.stroke = std::string(name.view()) + " CS " + operation(colour, "SCN");
        paint.space = space;
        return;
    }
    constexpr std::string_view fillOperators[] = {"g", "k", "rg"};
    constexpr std::string_view strokeOperators[] = {"G", "K", "RG"};
    const size_t index = colour.space == ColorSpace::Gray ? 0 : colour.space == ColorSpace::CMYK ? 1 : 2;
    paint.fill = operation(colour, fillOperators[index]);
    paint.stroke = operation(colour, strokeOperators[index]);
}

}  // namespace desk
