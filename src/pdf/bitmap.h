#pragma once
// Pixels in memory.

#include <cstdint>
#include <string>

#include "support/values.h"

namespace vornaset {

/// What the four bytes of a pixel are. RGB is multiplied by alpha already.
enum class PixelColours { cmyk, rgba };

/// 8 bits a component, 4 bytes a pixel, rows from the top without padding.
struct Bitmap {
    PixelColours colours = PixelColours::cmyk;
    int64_t width = 0;   ///< pixels
    int64_t height = 0;  ///< pixels
    std::string pixels;

    bool isEmpty() const { return pixels.empty(); }
};

/// The bitmap as a JPEG file of the best quality, without subsampling, at 72 pixels an inch. Transparent pixels of an
/// RGB bitmap come out as white paper. Null for an empty bitmap and for CMYK.
Data jpegDataWithBitmap(const Bitmap& bitmap);

}  // namespace vornaset
