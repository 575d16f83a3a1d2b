// TIFF files. Gray, RGB, CMYK and Lab keep their samples, and their profile; everything else that the library knows
// becomes RGB.

#include <tiffio.h>

#include <algorithm>
#include <cstring>

#include "desk/pictures/colour_profile.h"
#include "desk/pictures/limits.h"
#include "desk/pictures/pixels.h"

namespace desk {
namespace {

PictureError damaged() {
    return PictureError("is damaged or cut off. Save it again");
}

struct Source {
    std::string_view bytes;
    uint64_t at = 0;
};

Source& sourceOf(thandle_t handle) {
    return *static_cast<Source*>(handle);
}

tmsize_t readSource(thandle_t handle, void* out, tmsize_t count) {
    Source& source = sourceOf(handle);
    if (source.at >= source.bytes.size() || count <= 0) return 0;
    const size_t given = std::min<size_t>(static_cast<size_t>(count), source.bytes.size() - source.at);
    std::memcpy(out, source.bytes.data() + source.at, given);
    source.at += given;
    return static_cast<tmsize_t>(given);
}
tmsize_t refuseWriting(thandle_t, void*, tmsize_t) {
    return 0;
}
toff_t seekSource(thandle_t handle, toff_t offset, int whence) {
    Source& source = sourceOf(handle);
    source.at = whence == SEEK_CUR ? source.at + offset : whence == SEEK_END ? source.bytes.size() + offset : offset;
    return source.at;
}
int closeSource(thandle_t) {
    return 0;
}
toff_t sizeOfSource(thandle_t handle) {
    return sourceOf(handle).bytes.size();
}
int mapSource(thandle_t handle, void** base, toff_t* size) {
    *base = const_cast<char*>(sourceOf(handle).bytes.data());  // the library reads only: the file is opened with "r"
    *size = sourceOf(handle).bytes.size();
    return 1;
}
void unmapSource(thandle_t, void*, toff_t) {}

int keepQuiet(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

using OpenTiff = std::unique_ptr<TIFF, void (*)(TIFF*)>;

OpenTiff open(Source& source) {
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                               TIFFOpenOptionsFree);
    if (!options) throw std::bad_alloc();
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(limits::pixelBytes));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepQuiet, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), keepQuiet, nullptr);
    OpenTiff opened(TIFFClientOpenExt("picture", "r", &source, readSource, refuseWriting, seekSource, closeSource,
                                      sizeOfSource, mapSource, unmapSource, options.get()),
                    TIFFClose);
    if (!opened) throw damaged();
    return opened;
}

/// What the first directory says.
struct Description {
    uint32_t width = 0, height = 0;
    uint16_t bits = 1, samples = 1, photometric = PHOTOMETRIC_MINISBLACK, planar = PLANARCONFIG_CONTIG;
    uint16_t sampleFormat = SAMPLEFORMAT_UINT, inkSet = INKSET_CMYK, orientation = 1, compression = 1;
    uint16_t extraCount = 0;
    uint16_t firstExtra = EXTRASAMPLE_UNSPECIFIED;

    int colourSamples() const {
        switch (photometric) {
            case PHOTOMETRIC_MINISBLACK:
            case PHOTOMETRIC_MINISWHITE:
                return 1;
            case PHOTOMETRIC_RGB:
                return 3;
            case PHOTOMETRIC_SEPARATED:
                return inkSet == INKSET_CMYK ? 4 : 0;
            case PHOTOMETRIC_CIELAB:
            case PHOTOMETRIC_ICCLAB:
                return samples >= 3 ? 3 : 0;
            default:
                return 0;
        }
    }
    bool isLab() const { return photometric == PHOTOMETRIC_CIELAB || photometric == PHOTOMETRIC_ICCLAB; }
    bool hasAlpha() const {
        return extraCount > 0 && samples == colourSamples() + extraCount &&
               (firstExtra == EXTRASAMPLE_ASSOCALPHA || firstExtra == EXTRASAMPLE_UNASSALPHA);
    }
    /// Samples that can be taken over.
    bool keepsSamples() const {
        const bool isInteger = sampleFormat == SAMPLEFORMAT_UINT || sampleFormat == SAMPLEFORMAT_VOID;
        const bool bitsFit = bits == 8 || bits == 16 || (bits == 1 && samples == 1);
        return isInteger && bitsFit && colourSamples() > 0 && samples >= colourSamples();
    }
};

Description describe(TIFF* tiff) {
    Description d;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &d.width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &d.height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &d.bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &d.samples);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &d.sampleFormat);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &d.planar);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_INKSET, &d.inkSet);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &d.orientation);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &d.compression);
    if (!TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &d.photometric)) throw damaged();
    uint16_t* extras = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &d.extraCount, &extras) && d.extraCount > 0) d.firstExtra = extras[0];
    if (d.orientation < 1 || d.orientation > 8) d.orientation = 1;
    if (!TIFFIsCODECConfigured(d.compression))
        throw PictureError("is compressed in a way that isn't known. Save it with another compression");
    return d;
}

/// Takes samples apart from rows or tiles into rows of the samples that are wanted.
class SampleReader {
  public:
    SampleReader(TIFF* tiff, const Description& description, int wanted)
        : tiff_(tiff), d_(description), wanted_(static_cast<size_t>(wanted)), sampleBytes_(d_.bits / 8) {
        rowBytes_ = d_.bits == 1 ? (size_t{d_.width} + 7) / 8 : size_t{d_.width} * wanted_ * sampleBytes_;
        rows_.resize(rowBytes_ * d_.height);
    }

    std::string read() {
        const size_t planes = d_.planar == PLANARCONFIG_SEPARATE ? wanted_ : 1;
        for (size_t plane = 0; plane < planes; ++plane) {
            if (TIFFIsTiled(tiff_)) {
                readTiles(plane);
            } else {
                readRows(plane);
            }
        }
        return std::move(rows_);
    }

  private:
    void readRows(size_t plane) {
        const tmsize_t size = TIFFScanlineSize(tiff_);
        checkSize(size, d_.width);
        std::string row(static_cast<size_t>(size), '\0');
        for (uint32_t y = 0; y < d_.height; ++y) {
            if (TIFFReadScanline(tiff_, row.data(), y, static_cast<uint16_t>(plane)) < 0) throw damaged();
            take(row.data(), plane, 0, y, d_.width);
        }
    }

    void readTiles(size_t plane) {
        uint32_t width = 0, height = 0;
        TIFFGetField(tiff_, TIFFTAG_TILEWIDTH, &width);
        TIFFGetField(tiff_, TIFFTAG_TILELENGTH, &height);
        const tmsize_t size = TIFFTileSize(tiff_), rowSize = TIFFTileRowSize(tiff_);
        if (width == 0 || height == 0 || width % 8 != 0) throw damaged();
        checkSize(rowSize, width);
        if (size < rowSize * static_cast<tmsize_t>(height)) throw damaged();
        std::string tile(static_cast<size_t>(size), '\0');
        for (uint32_t top = 0; top < d_.height; top += height) {
            for (uint32_t left = 0; left < d_.width; left += width) {
                if (TIFFReadTile(tiff_, tile.data(), left, top, 0, static_cast<uint16_t>(plane)) < 0) throw damaged();
                for (uint32_t y = 0; y < std::min(height, d_.height - top); ++y)
                    take(tile.data() + size_t{y} * static_cast<size_t>(rowSize), plane, left, top + y,
                         std::min(width, d_.width - left));
            }
        }
    }

    /// A row must hold all the pixels that are taken from it.
    void checkSize(tmsize_t size, uint32_t width) const {
        const uint64_t inRow = d_.planar == PLANARCONFIG_SEPARATE ? 1 : d_.samples;
        if (size <= 0 || static_cast<uint64_t>(size) > limits::pixelBytes ||
            static_cast<uint64_t>(size) < (width * inRow * d_.bits + 7) / 8)
            throw damaged();
    }

    void take(const char* from, size_t plane, uint32_t left, uint32_t y, uint32_t count) {
        char* row = rows_.data() + y * rowBytes_;
        if (d_.bits == 1) {
            std::memcpy(row + left / 8, from, (size_t{count} + 7) / 8);
            return;
        }
        const bool separate = d_.planar == PLANARCONFIG_SEPARATE;
        const size_t step = (separate ? 1 : d_.samples) * sampleBytes_;
        const size_t taken = separate ? 1 : wanted_;
        char* out = row + (size_t{left} * wanted_ + plane) * sampleBytes_;
        for (uint32_t x = 0; x < count; ++x, from += step, out += wanted_ * sampleBytes_)
            for (size_t sample = 0; sample < taken; ++sample) takeSample(from + sample * sampleBytes_, out, sample);
    }

    /// The library gives words in the machine's order.
    void takeSample(const char* from, char* out, size_t sample) const {
        if (sampleBytes_ == 1) {
            out[sample] = *from;
            return;
        }
        uint16_t value = 0;
        std::memcpy(&value, from, sizeof value);
        out[sample * 2] = static_cast<char>(value >> 8);
        out[sample * 2 + 1] = static_cast<char>(value);
    }

    TIFF* tiff_;
    const Description& d_;
    size_t wanted_;
    size_t sampleBytes_;
    size_t rowBytes_ = 0;
    std::string rows_;
};

std::string profileIn(TIFF* tiff, int samples) {
    uint32_t size = 0;
    void* profile = nullptr;
    if (!TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &profile) || !profile) return {};
    return usableProfile({static_cast<const char*>(profile), size}, samples);
}

/// PDF counts a* and b* from -128. TIFF 6.0, section 23; ISO 32000-1, 8.6.5.4.
void takeLab(const Description& d, std::string& rows, PixelPicture& picture) {
    picture.colours.isLab = true;
    const size_t step = d.bits / 8u, pixel = step * static_cast<size_t>(d.hasAlpha() ? 4 : 3);
    const bool isSigned = d.photometric == PHOTOMETRIC_CIELAB;
    for (size_t at = 0; isSigned && at + pixel <= rows.size(); at += pixel)
        for (const size_t sample : {size_t{1}, size_t{2}}) rows[at + sample * step] ^= '\x80';
    // Words have the fraction of a* and b* in their lower half, and the second kind ends its L* at FF00.
    if (d.bits == 16) picture.decode = isSigned ? "0 100" : "0 100.3906";
    if (d.bits == 16) picture.decode += " -128 127.9961 -128 127.9961";
}

void readSamples(TIFF* tiff, const Description& d, PixelPicture& picture) {
    const bool hasAlpha = d.hasAlpha();
    picture.layout.samples = d.colourSamples();
    picture.layout.bitsPerSample = d.bits;
    picture.colours.samples = d.colourSamples();
    picture.orientation = d.orientation;
    if (d.photometric == PHOTOMETRIC_MINISWHITE) picture.decode = "1 0";
    picture.alphaIsMultiplied = hasAlpha && d.firstExtra == EXTRASAMPLE_ASSOCALPHA;
    std::string rows = SampleReader(tiff, d, d.colourSamples() + (hasAlpha ? 1 : 0)).read();
    if (d.isLab()) takeLab(d, rows, picture);
    encodeRows(std::move(rows), hasAlpha ? AlphaSample::Last : AlphaSample::None, picture);
    if (!d.isLab()) picture.colours.profile = profileIn(tiff, picture.colours.samples);
}

/// Four bytes a pixel from the library's own conversion, upright.
void readConverted(TIFF* tiff, const Description& d, PixelPicture& picture) {
    char reason[1024] = "";
    if (!TIFFRGBAImageOK(tiff, reason))
        throw PictureError("has a kind of colour that isn't known. Save it as RGB or CMYK");
    std::vector<uint32_t> pixels(size_t{d.width} * d.height);
    if (!TIFFReadRGBAImageOriented(tiff, d.width, d.height, pixels.data(), ORIENTATION_TOPLEFT, 1)) throw damaged();
    std::string rows;
    rows.reserve(pixels.size() * 4);
    for (const uint32_t pixel : pixels) {
        rows += static_cast<char>(TIFFGetR(pixel));
        rows += static_cast<char>(TIFFGetG(pixel));
        rows += static_cast<char>(TIFFGetB(pixel));
        rows += static_cast<char>(TIFFGetA(pixel));
    }
    std::vector<uint32_t>().swap(pixels);
    picture.layout.samples = 3;
    picture.layout.bitsPerSample = 8;
    picture.colours.samples = 3;
    picture.alphaIsMultiplied = true;
    encodeRows(std::move(rows), AlphaSample::Last, picture);
    // The profile of a palette, or of colours stored as brightness and differences, is that of their RGB.
    if (d.photometric == PHOTOMETRIC_PALETTE || d.photometric == PHOTOMETRIC_YCBCR)
        picture.colours.profile = profileIn(tiff, picture.colours.samples);
}

void readResolution(TIFF* tiff, PixelPicture& picture) {
    float x = 0, y = 0;
    uint16_t unit = RESUNIT_INCH;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_RESOLUTIONUNIT, &unit);
    if (!TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &x) || !TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &y)) return;
    if (unit == RESUNIT_NONE) return;
    const double factor = unit == RESUNIT_CENTIMETER ? 2.54 : 1;
    picture.pixelsPerInchX = x * factor;
    picture.pixelsPerInchY = y * factor;
}

}  // namespace

std::unique_ptr<PictureContent> readTiff(const SharedBytes& bytes) {
    Source source{*bytes};
    const OpenTiff tiff = open(source);
    const Description description = describe(tiff.get());
    const uint64_t bitsPerPixel = description.keepsSamples() ? uint64_t{description.samples} * description.bits : 64;
    checkPixelSize(description.width, description.height, bitsPerPixel, bytes->size());
    PixelPicture picture;
    picture.layout.width = description.width;
    picture.layout.height = description.height;
    readResolution(tiff.get(), picture);
    if (description.keepsSamples()) {
        readSamples(tiff.get(), description, picture);
    } else {
        readConverted(tiff.get(), description, picture);
    }
    return contentOf(std::move(picture));
}

}  // namespace desk
