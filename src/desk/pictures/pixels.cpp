#include "desk/pictures/pixels.h"

#include <libdeflate.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "desk/pictures/limits.h"

namespace desk {
namespace {

constexpr int compressionLevel = 6;

/// Of the three neighbours the one that is nearest to left + up - corner.
constexpr auto paeth = [](int left, int up, int corner) {
    const int a = std::abs(up - corner), b = std::abs(left - corner), c = std::abs(left + up - 2 * corner);
    const int other = b <= c ? up : corner;
    return ((a <= b) & (a <= c)) ? left : other;
};

/// Small differences deflate well: the usual measure of a filter.
int weightOf(unsigned char difference) {
    return difference < 128 ? difference : 256 - difference;
}

/// A row with the row above it, a row of zeros for the first. Two samples that stand at the same place in neighbouring
/// pixels are `pixel` bytes apart.
struct Row {
    const unsigned char* bytes;
    const unsigned char* above;
    size_t size, pixel;
};

/// Writes how the row differs from what is expected of it, and gives the differences' weight. The inner loops have a
/// fixed length and an array of their own, so that compilers make vector instructions of them.
template <class Expected>
uint64_t filterRow(const Row& row, Expected expected, unsigned char* out) {
    constexpr size_t blockSize = 32;
    uint64_t weight = 0;
    size_t at = 0;
    const auto filterOne = [&](int left, int corner) {
        out[at] = static_cast<unsigned char>(row.bytes[at] - expected(left, int{row.above[at]}, corner));
        weight += static_cast<uint64_t>(weightOf(out[at]));
        ++at;
    };
    while (at < std::min(row.pixel, row.size)) filterOne(0, 0);
    for (; at + blockSize <= row.size; at += blockSize) {
        unsigned char block[blockSize];
        const unsigned char* here = row.bytes + at;
        const unsigned char* above = row.above + at;
        for (size_t i = 0; i < blockSize; ++i)
            block[i] = static_cast<unsigned char>(
                here[i] - expected(int{(here - row.pixel)[i]}, int{above[i]}, int{(above - row.pixel)[i]}));
        int blockWeight = 0;
        for (size_t i = 0; i < blockSize; ++i) blockWeight += weightOf(block[i]);
        weight += static_cast<uint64_t>(blockWeight);
        std::memcpy(out + at, block, blockSize);
    }
    while (at < row.size) filterOne(row.bytes[at - row.pixel], row.above[at - row.pixel]);
    return weight;
}

/// One of the five filters. ISO/IEC 15948, 9.2.
uint64_t filterRow(int filter, const Row& row, unsigned char* out) {
    switch (filter) {
        case 1:
            return filterRow(
                row, [](int left, int, int) { return left; }, out);
        case 2:
            return filterRow(
                row, [](int, int up, int) { return up; }, out);
        case 3:
            return filterRow(
                row, [](int left, int up, int) { return (left + up) / 2; }, out);
        case 4:
            return filterRow(row, paeth, out);
        default:
            return filterRow(
                row, [](int, int, int) { return 0; }, out);
    }
}

struct Deflater {
    Deflater() : handle(libdeflate_alloc_compressor(compressionLevel)) {
        if (!handle) throw std::bad_alloc();
    }
    ~Deflater() { libdeflate_free_compressor(handle); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;
    libdeflate_compressor* handle;
};

struct Inflater {
    Inflater() : handle(libdeflate_alloc_decompressor()) {
        if (!handle) throw std::bad_alloc();
    }
    ~Inflater() { libdeflate_free_decompressor(handle); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    libdeflate_decompressor* handle;
};

std::string deflated(std::string_view bytes) {
    const Deflater deflater;
    std::string out(libdeflate_zlib_compress_bound(deflater.handle, bytes.size()), '\0');
    out.resize(libdeflate_zlib_compress(deflater.handle, bytes.data(), bytes.size(), out.data(), out.size()));
    out.shrink_to_fit();
    return out;
}

/// Colours and alpha of rows in which every pixel ends with its alpha.
struct SplitRows {
    std::string colours, alpha;
    bool isOpaque = true;
};

/// `colours` describes the rows without the alpha.
SplitRows splitAlpha(std::string_view rows, const PixelLayout& colours) {
    const size_t alphaBytes = static_cast<size_t>(colours.bitsPerSample) / 8;
    const size_t colourBytes = alphaBytes * static_cast<size_t>(colours.samples);
    const size_t pixels = size_t{colours.width} * colours.height;
    SplitRows split;
    split.colours.resize(pixels * colourBytes);
    split.alpha.resize(pixels * alphaBytes);
    const char* from = rows.data();
    char* colour = split.colours.data();
    char* alpha = split.alpha.data();
    for (size_t i = 0; i < pixels; ++i) {
        for (size_t byte = 0; byte < colourBytes; ++byte) *colour++ = *from++;
        for (size_t byte = 0; byte < alphaBytes; ++byte) {
            split.isOpaque = split.isOpaque && *from == '\xFF';
            *alpha++ = *from++;
        }
    }
    return split;
}

const char* deviceSpace(int samples) {
    return samples == 1 ? "/DeviceGray" : samples == 3 ? "/DeviceRGB" : "/DeviceCMYK";
}

/// The unit square as it was stored to the upright picture, both with y upwards.
Matrix uprightOf(int orientation) {
    switch (orientation) {
        case 2:
            return {-1, 0, 0, 1, 1, 0};
        case 3:
            return {-1, 0, 0, -1, 1, 1};
        case 4:
            return {1, 0, 0, -1, 0, 1};
        case 5:
            return {0, -1, -1, 0, 1, 1};
        case 6:
            return {0, -1, 1, 0, 0, 1};
        case 7:
            return {0, 1, 1, 0, 0, 0};
        case 8:
            return {0, 1, -1, 0, 1, 0};
        default:
            return {};
    }
}

class PixelContent final : public PictureContent {
  public:
    explicit PixelContent(PixelPicture picture) : picture_(std::move(picture)) {}

    PageFacts facts(int, PageBox) const override {
        PageFacts facts;
        facts.width = picture_.layout.width * 72.0 / picture_.pixelsPerInchX;
        facts.height = picture_.layout.height * 72.0 / picture_.pixelsPerInchY;
        if (picture_.orientation >= 5) std::swap(facts.width, facts.height);
        facts.toNatural = Matrix{facts.width, 0, 0, facts.height, 0, 0}.after(uprightOf(picture_.orientation));
        facts.isTransparent = !picture_.alpha.empty();
        return facts;
    }

    PictureSink::Number write(int, PageBox, const PictureIdentity&, PictureSink& sink) const override {
        std::string entries = imageEntries(picture_.layout.bitsPerSample);
        entries += "/ColorSpace" + colourSpaceOf(picture_.colours, sink);
        if (!picture_.decode.empty()) entries += "/Decode[" + picture_.decode + "]";
        if (!picture_.alpha.empty()) entries += "/SMask " + std::to_string(writeAlpha(sink)) + " 0 R";
        const PictureSink::Number number = sink.allocate();
        sink.writeEncodedStream(number, entries + picture_.entries, *picture_.bytes);
        return number;
    }

    size_t heldBytes() const override {
        return sizeof *this + picture_.bytes->size() + picture_.alpha.size() + picture_.colours.profile.size();
    }

  private:
    std::string imageEntries(int bits) const {
        return "/Type/XObject/Subtype/Image/Width " + std::to_string(picture_.layout.width) + "/Height " +
               std::to_string(picture_.layout.height) + "/BitsPerComponent " + std::to_string(bits);
    }

    PictureSink::Number writeAlpha(PictureSink& sink) const {
        std::string entries = imageEntries(picture_.alphaBits) + "/ColorSpace/DeviceGray";
        if (picture_.alphaIsMultiplied) {
            entries += "/Matte[";
            for (int i = 0; i < picture_.colours.samples; ++i) entries += i == 0 ? "0" : " 0";
            entries += ']';
        }
        const PictureSink::Number number = sink.allocate();
        sink.writeEncodedStream(number, entries + picture_.alphaEntries, picture_.alpha);
        return number;
    }

    PixelPicture picture_;
};

}  // namespace

void checkPixelSize(uint64_t width, uint64_t height, uint64_t bitsPerPixel, uint64_t storedBytes) {
    if (width == 0 || height == 0) throw PictureError("has no pixels. Save it again");
    const std::string size = std::to_string(width) + " by " + std::to_string(height) + " pixels";
    if (width > limits::pictureSide || height > limits::pictureSide)
        throw PictureError("is too large (" + size + "; a side may have " + std::to_string(limits::pictureSide) +
                           "). Make it smaller");
    const uint64_t bytes = (width * bitsPerPixel + 7) / 8 * height;
    if (bytes > limits::pixelBytes ||
        (bytes > limits::freeUnpackedBytes && bytes / limits::unpackingRatio > storedBytes))
        throw PictureError("is too large (" + size + "). Make it smaller");
}

std::string filterEntriesOf(const PixelLayout& layout) {
    std::string entries = "/Filter/FlateDecode/DecodeParms<</Predictor 15/Columns " + std::to_string(layout.width);
    if (layout.samples != 1) entries += "/Colors " + std::to_string(layout.samples);
    if (layout.bitsPerSample != 8) entries += "/BitsPerComponent " + std::to_string(layout.bitsPerSample);
    return entries + ">>";
}

EncodedBytes deflatedRows(std::string_view rows, const PixelLayout& layout) {
    const size_t size = layout.rowBytes();
    const size_t pixel = std::max<size_t>(1, static_cast<size_t>(layout.samples * layout.bitsPerSample) / 8);
    std::string filtered;
    filtered.reserve((size + 1) * layout.height);
    const std::vector<unsigned char> zeros(size);
    std::vector<unsigned char> tried(size), best(size);
    Row row{reinterpret_cast<const unsigned char*>(rows.data()), zeros.data(), size, pixel};
    for (uint32_t y = 0; y < layout.height; ++y, row.above = row.bytes, row.bytes += size) {
        int bestFilter = 0;
        uint64_t bestWeight = UINT64_MAX;
        // Filters do no good to packed samples.
        for (int filter = 0; filter < (layout.bitsPerSample < 8 ? 1 : 5); ++filter) {
            const uint64_t weight = filterRow(filter, row, tried.data());
            if (weight >= bestWeight) continue;
            bestWeight = weight;
            bestFilter = filter;
            best.swap(tried);
        }
        filtered += static_cast<char>(bestFilter);
        filtered.append(reinterpret_cast<const char*>(best.data()), size);
    }
    return {filterEntriesOf(layout), deflated(filtered)};
}

std::unique_ptr<char[]> inflated(std::string_view bytes, size_t size) {
    const Inflater inflater;
    // Not filled beforehand: pages of memory that the data don't reach are never touched.
    std::unique_ptr<char[]> out(new char[size + 1]);
    size_t got = 0;
    const libdeflate_result result =
        libdeflate_zlib_decompress(inflater.handle, bytes.data(), bytes.size(), out.get(), size + 1, &got);
    return result == LIBDEFLATE_SUCCESS && got == size ? std::move(out) : nullptr;
}

std::string inflatedUpTo(std::string_view bytes, size_t limit) {
    const Inflater inflater;
    std::string out(std::min(limit, bytes.size() * 4 + 64), '\0');
    for (;;) {
        size_t got = 0;
        const libdeflate_result result =
            libdeflate_zlib_decompress(inflater.handle, bytes.data(), bytes.size(), out.data(), out.size(), &got);
        if (result == LIBDEFLATE_SUCCESS) {
            out.resize(got);
            return out;
        }
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE || out.size() >= limit) return {};
        out.resize(std::min(limit, out.size() * 2));
    }
}

std::string colourSpaceOf(const ColourModel& model, PictureSink& sink) {
    if (model.isLab) return "[/Lab<</WhitePoint[0.9642 1 0.8249]/Range[-128 127 -128 127]>>]";
    std::string base = deviceSpace(model.samples);
    if (!model.profile.empty()) {
        const std::string entries = "/N " + std::to_string(model.samples) + "/Alternate" + deviceSpace(model.samples);
        base = "[/ICCBased " + std::to_string(sink.sharedStream(entries, model.profile)) + " 0 R]";
    }
    if (model.palette.empty()) return base;
    constexpr char digits[] = "0123456789ABCDEF";
    const size_t colours = model.palette.size() / static_cast<size_t>(model.samples);
    std::string space = "[/Indexed" + base + " " + std::to_string(colours - 1) + "<";
    for (const char c : model.palette) {
        space += digits[static_cast<unsigned char>(c) >> 4];
        space += digits[static_cast<unsigned char>(c) & 15];
    }
    return space + ">]";
}

void encodeRows(std::string rows, AlphaSample alphaSample, PixelPicture& picture) {
    if (alphaSample == AlphaSample::Last) {
        SplitRows split = splitAlpha(rows, picture.layout);
        rows = std::move(split.colours);
        if (!split.isOpaque) {
            PixelLayout alpha = picture.layout;
            alpha.samples = 1;
            EncodedBytes encoded = deflatedRows(split.alpha, alpha);
            picture.alphaBits = alpha.bitsPerSample;
            picture.alphaEntries = std::move(encoded.entries);
            picture.alpha = std::move(encoded.bytes);
        }
    }
    EncodedBytes colours = deflatedRows(rows, picture.layout);
    picture.entries = std::move(colours.entries);
    picture.bytes = std::make_shared<const std::string>(std::move(colours.bytes));
}

std::unique_ptr<PictureContent> contentOf(PixelPicture picture) {
    picture.pixelsPerInchX = usableResolution(picture.pixelsPerInchX);
    picture.pixelsPerInchY = usableResolution(picture.pixelsPerInchY);
    return std::make_unique<PixelContent>(std::move(picture));
}

double usableResolution(double pixelsPerInch) {
    constexpr double lowest = 1, highest = 30'000, usual = 72;
    return pixelsPerInch >= lowest && pixelsPerInch <= highest ? pixelsPerInch : usual;
}

}  // namespace desk
