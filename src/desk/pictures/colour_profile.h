#pragma once
// ICC profiles of pictures. Inner header of this folder.

#include <optional>
#include <string>
#include <string_view>

#include "desk/model/geometry.h"

namespace desk {

/// Keeps the profile only when it is a whole one for so many samples: 1 gray, 3 RGB, 4 CMYK.
std::string usableProfile(std::string_view profile, int samples);

/// Where the white and the three lights of a picture lie, as x and y of CIE 1931.
struct Chromaticities {
    Point white, red, green, blue;
};

/// A profile for gray (1) or RGB samples (3) whose light is the sample to the power `exponent`. Without chromaticities
/// they are those of sRGB. Empty where no profile can be made of such values. The same values give the same bytes.
std::string profileOfPower(int samples, double exponent, const std::optional<Chromaticities>& chromaticities);

}  // namespace desk
