#pragma once
// Swatches as PDF paints them: each in its own colour space.

#include <map>
#include <optional>
#include <string>

#include "desk/model/document.h"
#include "desk/output/resources.h"

namespace desk {

/// How to set a colour.
struct Paint {
    bool paints = false;               ///< false for "Swatch/None"
    std::string fill, stroke;          ///< operators with their operands and a line feed
    std::optional<Resource> space;     ///< colour space that the operators name
    const Swatch* gradient = nullptr;  ///< set for a gradient; then there are no operators (see GradientPainter)
    double tint = 1;                   ///< of a gradient's colours, 0..1
};

/// A colour as numbers in a process space: gray 0..1, RGB 0..1, CMYK 0..1, or L*a*b* as the swatch says.
struct ProcessColour {
    ColorSpace space = ColorSpace::CMYK;
    double component[4] = {0, 0, 0, 0};
};

/// Colours of one document.
class Palette {
  public:
    Palette(const Document& document, SharedObjects& shared) : document_(document), shared_(shared) {}

    /// `tint` in percent, negative is 100. An unknown swatch paints as black, an empty id or "n" paints nothing. The
    /// reference stays good as long as the palette.
    const Paint& paint(const std::string& swatch, double tint);

    /// The colour with tints applied, a spot colour by its alternate. Nothing for None and gradients.
    std::optional<ProcessColour> process(const std::string& swatch, double tint) const;
    /// The separation of a spot swatch (or of a tint of it) and how much of it, 0..1; null for others.
    const Swatch* separation(const std::string& swatch, double& amount) const;
    /// A /Separation colour space with its alternate and tint function.
    Resource separationSpace(const Swatch& spot);

  private:
    Paint make(const std::string& swatch, double tint);
    const Swatch* resolve(const std::string& swatch, double& tint) const;
    void setSeparation(Paint& paint, const Swatch& spot, double amount);
    void setProcess(Paint& paint, const ProcessColour& colour);

    const Document& document_;
    SharedObjects& shared_;
    std::map<std::string, std::map<double, Paint>, std::less<>> paints_;
};

/// Naive conversion without profiles, for gradients whose stops differ in space. L*a*b* goes by way of sRGB.
ProcessColour toSpace(const ProcessColour& colour, ColorSpace space);

/// The device space's name, or the array of a L*a*b* space (D50).
std::string_view spaceName(ColorSpace space);

/// Number of components.
int componentCount(ColorSpace space);

}  // namespace desk
