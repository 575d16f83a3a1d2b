// Swatches and stroke styles.
#include <algorithm>
#include <cmath>

#include "desk/idml/limits.h"
#include "desk/idml/resources.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

/// Hue in degrees, saturation and brightness in percent, to red, green and blue of 0 to 255.
ColorValue rgbOfHsb(double hue, double saturation, double brightness) {
    ColorValue value{ColorSpace::RGB, {0, 0, 0, 0}};
    const double full = brightness / 100;
    const double chroma = full * saturation / 100;
    for (int i = 0; i < 3; ++i) {
        const double turn = std::fmod(hue / 60 + (i == 0 ? 5 : i == 1 ? 3 : 1), 6.0);
        const double share = std::clamp(std::min(turn, 4 - turn), 0.0, 1.0);
        value.component[i] = 255 * (full - chroma * share);
    }
    return value;
}

/// Absent for a space that isn't known or numbers that don't fit it.
std::optional<ColorValue> colorValue(const std::string& space, const std::string& numbers) {
    const auto components = toNumbers(numbers);
    if (!components) return {};
    const std::vector<double>& n = *components;
    const auto within = [](double value, double least, double most) { return std::clamp(value, least, most); };
    if (space == "CMYK" && n.size() == 4) {
        ColorValue value{ColorSpace::CMYK, {}};
        for (size_t i = 0; i < 4; ++i) value.component[i] = within(n[i], 0, 100);
        return value;
    }
    if (n.size() != 3) return {};
    if (space == "RGB")
        return ColorValue{ColorSpace::RGB, {within(n[0], 0, 255), within(n[1], 0, 255), within(n[2], 0, 255), 0}};
    if (space == "LAB")
        return ColorValue{ColorSpace::LAB, {within(n[0], 0, 100), within(n[1], -128, 127), within(n[2], -128, 127), 0}};
    if (space == "HSB") return rgbOfHsb(within(n[0], 0, 360), within(n[1], 0, 100), within(n[2], 0, 100));
    return {};
}

void readColor(Reading& reading, const XmlElement& element, Swatch& swatch) {
    const std::string& model = attributeText(element, "Model");
    swatch.kind = model == "Spot"           ? SwatchKind::Spot
                  : model == "Registration" ? SwatchKind::Registration
                                            : SwatchKind::Process;
    const std::string& space = attributeText(element, "Space");
    const auto own = colorValue(space, attributeText(element, "ColorValue"));
    const auto alternate =
        colorValue(attributeText(element, "AlternateSpace"), attributeText(element, "AlternateColorValue"));
    // A spot colour prints its substitute in process colours if it has one; LAB is the more exact but not printable.
    const bool preferAlternate = swatch.kind == SwatchKind::Spot && space == "LAB" && alternate;
    const auto& chosen = preferAlternate ? alternate : own ? own : alternate;
    if (chosen)
        swatch.value = *chosen;
    else {
        swatch.value = {ColorSpace::CMYK, {0, 0, 0, 100}};
        reading.note("the colour " + quoted(swatch.self) + " can't be read and is black");
    }
}

void readGradient(const XmlElement& element, Swatch& swatch) {
    swatch.kind = SwatchKind::Gradient;
    swatch.radial = attributeText(element, "Type") == "Radial";
    element.eachChild([&](const XmlElement& child) {
        if (child.name != "GradientStop") return;
        GradientStop stop;
        stop.color = attributeText(child, "StopColor");
        stop.location = std::clamp(attributeAs(child, "Location", toNumber).value_or(0), 0.0, 100.0);
        stop.midpoint = std::clamp(attributeAs(child, "Midpoint", toNumber).value_or(50), 0.0, 100.0);
        swatch.stops.push_back(stop);
    });
}

void readSwatch(Reading& reading, const XmlElement& element) {
    const std::string& self = attributeText(element, "Self");
    if (self.empty()) return;
    Swatch swatch;
    swatch.self = self;
    swatch.name = withoutKeyMark(attributeText(element, "Name"));
    if (element.name == "Color") {
        readColor(reading, element, swatch);
    } else if (element.name == "Tint") {
        swatch.kind = SwatchKind::Tint;
        swatch.baseColor = attributeText(element, "BaseColor");
        swatch.tint = std::clamp(attributeAs(element, "TintValue", toNumber).value_or(100), 0.0, 100.0);
    } else if (element.name == "Gradient") {
        readGradient(element, swatch);
    } else if (element.name == "Swatch") {
        swatch.kind = SwatchKind::None;
    } else {
        swatch.value = {ColorSpace::CMYK, {0, 0, 0, 100}};
        reading.note("the mixed ink " + quoted(self) + " isn't understood and is black");
    }
    reading.document.swatches.emplace(self, std::move(swatch));
}

void readDashes(Reading& reading, const XmlElement& element) {
    const std::string& self = attributeText(element, "Self");
    std::string storage;
    const std::string* array = scalar(element, "DashArray", storage);
    auto dashes = array ? toNumbers(*array) : std::nullopt;
    const bool usable = dashes && !dashes->empty() && *std::min_element(dashes->begin(), dashes->end()) >= 0 &&
                        *std::max_element(dashes->begin(), dashes->end()) > 0;
    if (self.empty() || !usable) return;
    reading.document.strokeStyles[self] = std::move(*dashes);
}

void addStandardSwatches(Document& document) {
    const auto add = [&](const std::string& name, SwatchKind kind, ColorValue value) {
        Swatch swatch;
        swatch.self = (kind == SwatchKind::None ? "Swatch/" : "Color/") + name;
        swatch.name = name;
        swatch.kind = kind;
        swatch.value = value;
        document.swatches.emplace(swatch.self, swatch);
    };
    add("None", SwatchKind::None, {});
    add("Black", SwatchKind::Process, {ColorSpace::CMYK, {0, 0, 0, 100}});
    add("Paper", SwatchKind::Process, {ColorSpace::CMYK, {0, 0, 0, 0}});
    add("Registration", SwatchKind::Registration, {ColorSpace::CMYK, {100, 100, 100, 100}});
    add("Cyan", SwatchKind::Process, {ColorSpace::CMYK, {100, 0, 0, 0}});
    add("Magenta", SwatchKind::Process, {ColorSpace::CMYK, {0, 100, 0, 0}});
    add("Yellow", SwatchKind::Process, {ColorSpace::CMYK, {0, 0, 100, 0}});
}

/// A tint must end in a plain colour; one that leads nowhere or in a circle becomes a tint of black.
void groundTints(Reading& reading) {
    Document& document = reading.document;
    for (auto& [self, swatch] : document.swatches) {
        if (swatch.kind != SwatchKind::Tint) continue;
        const Swatch* base = &swatch;
        for (int depth = 0; base && base->kind == SwatchKind::Tint && depth <= limits::swatchDepth; ++depth)
            base = document.swatch(base->baseColor);
        if (base && base->kind != SwatchKind::Tint && base->kind != SwatchKind::Gradient) continue;
        reading.note("the tint " + quoted(self) + " has no colour under it and is one of black");
        swatch.baseColor = "Color/Black";
    }
}

/// The stops of a gradient are colours or tints, never gradients.
void groundGradients(Reading& reading) {
    for (auto& entry : reading.document.swatches) {
        std::erase_if(entry.second.stops, [&](const GradientStop& stop) {
            const Swatch* color = reading.document.swatch(stop.color);
            if (color && color->kind != SwatchKind::Gradient) return false;
            reading.note("a stop of the gradient " + quoted(entry.first) + " has no colour and is left out");
            return true;
        });
    }
}

}  // namespace

void readGraphic(Reading& reading, const XmlElement& around) {
    around.eachChild([&](const XmlElement& child) {
        if (child.name == "Color" || child.name == "Tint" || child.name == "Gradient" || child.name == "Swatch" ||
            child.name == "MixedInk")
            readSwatch(reading, child);
        else if (child.name == "DashedStrokeStyle")
            readDashes(reading, child);
        else if (child.name == "DottedStrokeStyle" || child.name == "StripedStrokeStyle")
            reading.note("the stroke style " + quoted(attributeText(child, "Self")) + " is drawn solid");
    });
    addStandardSwatches(reading.document);
    groundTints(reading);
    groundGradients(reading);
}

}  // namespace desk
