#include "desk/pictures/colour_profile.h"

#include <lcms2.h>

#include <memory>

#include "desk/pictures/limits.h"

namespace desk {
namespace {

using OpenProfile = std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)>;
using Curve = std::unique_ptr<cmsToneCurve, void (*)(cmsToneCurve*)>;

constexpr Chromaticities standardRgb{{0.3127, 0.3290}, {0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}};

cmsCIExyY colourOf(Point chromaticity) {
    return {chromaticity.x, chromaticity.y, 1};
}

std::string bytesOf(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    if (!cmsSaveProfileToMem(profile, nullptr, &size)) return {};
    std::string bytes(size, '\0');
    if (!cmsSaveProfileToMem(profile, bytes.data(), &size)) return {};
    // The library notes the moment in the header. ICC.1:2010, 7.2: a date in bytes 24 to 35, year first.
    constexpr size_t dateAt = 24;
    constexpr std::string_view date("\x07\xD0\0\1\0\1\0\0\0\0\0\0", 12);
    return bytes.size() < dateAt + date.size() ? std::string() : bytes.replace(dateAt, date.size(), date);
}

}  // namespace

std::string usableProfile(std::string_view profile, int samples) {
    if (profile.size() < 128 || profile.size() > limits::profileBytes) return {};
    const OpenProfile opened(cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())),
                             cmsCloseProfile);
    if (!opened) return {};
    const cmsColorSpaceSignature space = cmsGetColorSpace(opened.get());
    const bool fits = (samples == 1 && space == cmsSigGrayData) || (samples == 3 && space == cmsSigRgbData) ||
                      (samples == 4 && space == cmsSigCmykData);
    const cmsProfileClassSignature kind = cmsGetDeviceClass(opened.get());
    const bool describesDevice = kind == cmsSigInputClass || kind == cmsSigDisplayClass || kind == cmsSigOutputClass ||
                                 kind == cmsSigColorSpaceClass;
    return fits && describesDevice ? std::string(profile) : std::string();
}

std::string profileOfPower(int samples, double exponent, const std::optional<Chromaticities>& chromaticities) {
    constexpr double version = 2.1;  // every reader of PDF knows it
    const Chromaticities& places = chromaticities ? *chromaticities : standardRgb;
    const Curve curve(cmsBuildGamma(nullptr, exponent), cmsFreeToneCurve);
    if (!curve) return {};
    const cmsCIExyY white = colourOf(places.white);
    const cmsCIExyYTRIPLE lights{colourOf(places.red), colourOf(places.green), colourOf(places.blue)};
    cmsToneCurve* const curves[] = {curve.get(), curve.get(), curve.get()};
    const OpenProfile made(
        samples == 1 ? cmsCreateGrayProfile(&white, curve.get()) : cmsCreateRGBProfile(&white, &lights, curves),
        cmsCloseProfile);
    if (!made) return {};
    cmsSetProfileVersion(made.get(), version);
    return bytesOf(made.get());
}

}  // namespace desk
