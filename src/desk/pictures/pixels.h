#pragma once
// Pixels on their way into a PDF: sizes checked, rows filtered and deflated, colours named.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "desk/pictures/content.h"

namespace desk {

/// Throws PictureError for a picture without area, or larger than a picture may be, before any memory is taken.
/// `storedBytes` is the size of the file.
void checkPixelSize(uint64_t width, uint64_t height, uint64_t bitsPerPixel, uint64_t storedBytes);

struct PixelLayout {
    uint32_t width = 0, height = 0;
    int samples = 1;        ///< in a pixel
    int bitsPerSample = 8;  ///< 1, 2, 4, 8 or 16, packed; 16 with the high byte first
    size_t rowBytes() const { return (size_t{width} * static_cast<size_t>(samples * bitsPerSample) + 7) / 8; }
};

/// Bytes of a stream with the entries of its dictionary that say how they are encoded.
struct EncodedBytes {
    std::string entries;
    std::string bytes;
};

/// Rows filtered as PNG does, by which picture rows deflate far better, then deflated. ISO 32000-1, 7.4.4.4.
EncodedBytes deflatedRows(std::string_view rows, const PixelLayout& layout);

/// "/Filter/FlateDecode/DecodeParms<<...>>" for rows filtered as PNG does.
std::string filterEntriesOf(const PixelLayout& layout);

/// The content of a zlib stream that has exactly `size` bytes; null for a damaged stream and for another size.
std::unique_ptr<char[]> inflated(std::string_view bytes, size_t size);

/// The content of a zlib stream of unknown size; empty for a damaged stream and for more than `limit` bytes.
std::string inflatedUpTo(std::string_view bytes, size_t limit);

/// How samples mean colour.
struct ColourModel {
    int samples = 3;      ///< 1 gray, 3 RGB, 4 CMYK
    std::string profile;  ///< ICC; empty for none
    std::string palette;  ///< of an indexed picture: `samples` bytes a colour; empty for none
    bool isLab = false;   ///< the 3 samples are L*, a* and b* of CIE 1976 under D50, the latter two from -128 to 127
};

/// The value of /ColorSpace.
std::string colourSpaceOf(const ColourModel& model, PictureSink& sink);

/// A picture of pixels, ready for the PDF.
struct PixelPicture {
    PixelLayout layout;  ///< of the colours; of an indexed picture one sample a pixel
    ColourModel colours;
    std::string decode;        ///< the numbers of /Decode; empty for none
    std::string entries;       ///< filter entries
    SharedBytes bytes;         ///< encoded
    std::string alphaEntries;  ///< filter entries of the soft mask
    std::string alpha;         ///< encoded; empty for an opaque picture
    int alphaBits = 8;
    bool alphaIsMultiplied = false;  ///< colours are multiplied with the alpha
    double pixelsPerInchX = 72, pixelsPerInchY = 72;
    int orientation = 1;  ///< as Exif counts: 1 upright, 3 half a turn, 6 a quarter turn clockwise to be upright, ...
};

/// Whether every pixel of the rows ends with its alpha.
enum class AlphaSample { None, Last };

/// Sets bytes and entries of colours and alpha from plain rows. Layout and colour model say what the colours are; an
/// alpha that hides nothing is left out.
void encodeRows(std::string rows, AlphaSample alphaSample, PixelPicture& picture);

std::unique_ptr<PictureContent> contentOf(PixelPicture picture);

/// A resolution as files state it: 72 for one that makes no sense.
double usableResolution(double pixelsPerInch);

}  // namespace desk
