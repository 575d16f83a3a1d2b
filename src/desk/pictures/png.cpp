// PNG files. What a PDF can hold as it stands, opaque and not interlaced, goes in with its own compressed rows; the
// rest is decoded and compressed anew. ISO/IEC 15948.

#include <libdeflate.h>
#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstring>
#include <optional>

#include "desk/pictures/colour_profile.h"
#include "desk/pictures/limits.h"
#include "desk/pictures/pixels.h"

namespace desk {
namespace {

constexpr size_t signatureSize = 8;
enum ColourType { Gray = 0, Rgb = 2, Palette = 3, GrayAlpha = 4, RgbAlpha = 6 };

uint32_t bigEndian32(std::string_view bytes, size_t at) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

/// The chunks, checked, with what of them is wanted.
struct Chunks {
    uint32_t width = 0, height = 0;
    int bits = 0, colourType = 0, interlaced = 0;
    std::string_view palette, profile;
    std::string imageData;
    bool hasTransparency = false;
    bool isStandardRgb = false;  ///< says itself that its colours are sRGB
    double gamma = 0;            ///< the exponent by which samples were made of light; 0 for unknown
    std::optional<Chromaticities> chromaticities;
    double pixelsPerInchX = 72, pixelsPerInchY = 72;

    bool fitsAsItIs() const {
        return interlaced == 0 && !hasTransparency &&
               (colourType == Gray || colourType == Rgb || colourType == Palette);
    }
};

PictureError cutOff() {
    return PictureError("is cut off in the middle. Copy or save it again");
}
PictureError damaged() {
    return PictureError("is damaged. Save it again");
}

/// Gamma and chromaticities are stored in units of this part of 1.
constexpr double colourUnits = 100'000;

Chromaticities chromaticitiesIn(std::string_view data) {
    const auto place = [&](size_t at) {
        return Point{bigEndian32(data, at) / colourUnits, bigEndian32(data, at + 4) / colourUnits};
    };
    return {place(0), place(8), place(16), place(24)};
}

void readChunk(std::string_view type, std::string_view data, Chunks& chunks) {
    if (type == "IHDR") {
        if (data.size() < 13) throw damaged();
        chunks.width = bigEndian32(data, 0);
        chunks.height = bigEndian32(data, 4);
        chunks.bits = static_cast<unsigned char>(data[8]);
        chunks.colourType = static_cast<unsigned char>(data[9]);
        chunks.interlaced = static_cast<unsigned char>(data[12]);
    }
    if (type == "PLTE") chunks.palette = data;
    if (type == "tRNS") chunks.hasTransparency = true;
    if (type == "iCCP") chunks.profile = data;
    if (type == "sRGB") chunks.isStandardRgb = true;
    if (type == "gAMA" && data.size() == 4) chunks.gamma = bigEndian32(data, 0) / colourUnits;
    if (type == "cHRM" && data.size() == 32) chunks.chromaticities = chromaticitiesIn(data);
    if (type == "IDAT") chunks.imageData += data;
    if (type == "pHYs" && data.size() == 9 && data[8] == 1) {
        constexpr double metresPerInch = 0.0254;
        chunks.pixelsPerInchX = bigEndian32(data, 0) * metresPerInch;
        chunks.pixelsPerInchY = bigEndian32(data, 4) * metresPerInch;
    }
}

Chunks readChunks(std::string_view bytes) {
    constexpr size_t aroundData = 12;
    Chunks chunks;
    for (size_t at = signatureSize;;) {
        if (bytes.size() - at < aroundData) throw cutOff();
        const size_t length = bigEndian32(bytes, at);
        if (length > bytes.size() - at - aroundData) throw cutOff();
        const std::string_view type = bytes.substr(at + 4, 4);
        const std::string_view data = bytes.substr(at + 8, length);
        if (libdeflate_crc32(0, type.data(), length + 4) != bigEndian32(bytes, at + 8 + length)) throw damaged();
        if ((chunks.width == 0) != (type == "IHDR")) throw damaged();
        readChunk(type, data, chunks);
        if (type == "IHDR") checkPixelSize(chunks.width, chunks.height, 1, bytes.size());
        if (type == "IEND") break;
        at += aroundData + length;
    }
    if (chunks.imageData.empty()) throw damaged();
    return chunks;
}

/// Name, NUL, method 0, deflated profile.
std::string profileOf(std::string_view data, int samples) {
    const size_t end = data.find('\0');
    if (end == std::string_view::npos || end + 2 > data.size()) return {};
    return usableProfile(inflatedUpTo(data.substr(end + 2), limits::profileBytes), samples);
}

/// A profile made of gamma and chromaticities; empty for samples that are as readers take them without a profile.
std::string profileMadeOf(const Chunks& chunks, int samples) {
    constexpr double usual = 1 / 2.2, tolerance = 0.05, largest = 10;
    if (chunks.isStandardRgb || !(chunks.gamma > 1 / largest && chunks.gamma < largest)) return {};
    if (std::abs(chunks.gamma / usual - 1) <= tolerance) return {};
    return profileOfPower(samples, 1 / chunks.gamma, chunks.chromaticities);
}

int samplesOf(int colourType) {
    switch (colourType) {
        case Rgb:
            return 3;
        case GrayAlpha:
            return 2;
        case RgbAlpha:
            return 4;
        default:
            return 1;
    }
}

void takeAsItIs(const Chunks& chunks, PixelPicture& picture) {
    const size_t rowBytes = picture.layout.rowBytes() + 1;
    const std::unique_ptr<char[]> rows = inflated(chunks.imageData, rowBytes * chunks.height);
    if (!rows) throw damaged();
    for (uint32_t y = 0; y < chunks.height; ++y)
        if (static_cast<unsigned char>(rows[y * rowBytes]) > 4) throw damaged();
    if (chunks.colourType == Palette) {
        if (chunks.palette.empty() || chunks.palette.size() % 3 != 0 || chunks.palette.size() > 768) throw damaged();
        picture.colours.palette = chunks.palette;
        picture.colours.samples = 3;
    }
    picture.entries = filterEntriesOf(picture.layout);
    picture.bytes = std::make_shared<const std::string>(chunks.imageData);
}

struct DecodingSource {
    std::string_view bytes;
    size_t at = 0;
};

void giveBytes(png_structp png, png_bytep out, size_t count) {
    auto* source = static_cast<DecodingSource*>(png_get_io_ptr(png));
    if (count > source->bytes.size() - source->at) png_error(png, "end of file");
    std::memcpy(out, source->bytes.data() + source->at, count);
    source->at += count;
}

[[noreturn]] void failDecoding(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}
void ignoreWarning(png_structp, png_const_charp) {}

struct Decoded {
    uint32_t height = 0;
    int channels = 0, bits = 0;
    size_t rowBytes = 0;
    std::string rows;
    std::vector<png_bytep> rowStarts;
};

/// Everything that has a destructor stands outside: the library leaves by a long jump. False when it does.
bool decode(png_structp png, png_infop info, DecodingSource& source, Decoded& decoded) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_read_fn(png, &source, giveBytes);
    png_set_user_limits(png, limits::pictureSide, limits::pictureSide);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    decoded.height = png_get_image_height(png, info);
    decoded.channels = png_get_channels(png, info);
    decoded.bits = png_get_bit_depth(png, info);
    decoded.rowBytes = png_get_rowbytes(png, info);
    decoded.rows.resize(decoded.rowBytes * decoded.height);
    decoded.rowStarts.resize(decoded.height);
    for (uint32_t y = 0; y < decoded.height; ++y)
        decoded.rowStarts[y] = reinterpret_cast<png_bytep>(decoded.rows.data()) + y * decoded.rowBytes;
    png_read_image(png, decoded.rowStarts.data());
    png_read_end(png, nullptr);
    return true;
}

Decoded decode(std::string_view bytes) {
    DecodingSource source{bytes};
    Decoded decoded;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, failDecoding, ignoreWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool whole = info && decode(png, info, source, decoded);
    if (png) png_destroy_read_struct(&png, info ? &info : nullptr, nullptr);
    if (!whole) throw damaged();
    return decoded;
}

void takeDecoded(Decoded decoded, PixelPicture& picture) {
    const bool hasAlpha = decoded.channels % 2 == 0;
    picture.layout.samples = hasAlpha ? decoded.channels - 1 : decoded.channels;
    picture.layout.bitsPerSample = decoded.bits;
    picture.colours.samples = picture.layout.samples;
    encodeRows(std::move(decoded.rows), hasAlpha ? AlphaSample::Last : AlphaSample::None, picture);
}

}  // namespace

std::unique_ptr<PictureContent> readPng(const SharedBytes& bytes) {
    const Chunks chunks = readChunks(*bytes);
    PixelPicture picture;
    picture.layout.width = chunks.width;
    picture.layout.height = chunks.height;
    picture.layout.samples = samplesOf(chunks.colourType);
    picture.layout.bitsPerSample = chunks.bits;
    picture.pixelsPerInchX = chunks.pixelsPerInchX;
    picture.pixelsPerInchY = chunks.pixelsPerInchY;
    const bool bitsAreKnown =
        chunks.bits == 8 || (chunks.bits == 16 && chunks.colourType != Palette) ||
        ((chunks.bits == 1 || chunks.bits == 2 || chunks.bits == 4) && samplesOf(chunks.colourType) == 1);
    if (!bitsAreKnown || chunks.colourType > RgbAlpha || chunks.colourType == 1 || chunks.colourType == 5)
        throw damaged();
    const uint64_t bitsPerPixel = chunks.fitsAsItIs() ? static_cast<uint64_t>(picture.layout.samples * chunks.bits)
                                                      : 4 * static_cast<uint64_t>(std::max(chunks.bits, 8));
    checkPixelSize(chunks.width, chunks.height, bitsPerPixel, bytes->size());
    if (chunks.fitsAsItIs()) {
        picture.colours.samples = chunks.colourType == Gray ? 1 : 3;
        takeAsItIs(chunks, picture);
    } else {
        takeDecoded(decode(*bytes), picture);
    }
    picture.colours.profile = profileOf(chunks.profile, picture.colours.samples);
    if (picture.colours.profile.empty()) picture.colours.profile = profileMadeOf(chunks, picture.colours.samples);
    return contentOf(std::move(picture));
}

}  // namespace desk
