#include "pdf/image.h"

#include <optional>
#include <string_view>
#include <utility>

namespace vornaset {

namespace {

struct PixelSize {
    int64_t width = 0;
    int64_t height = 0;
};

/// From the frame header of a JPEG file, ISO/IEC 10918-1 B.2.2.
std::optional<PixelSize> sizeOfJPEG(std::string_view file) {
    const auto byteAt = [&](size_t place) { return static_cast<uint8_t>(file[place]); };
    const auto wordAt = [&](size_t place) { return byteAt(place) * 256 + byteAt(place + 1); };
    if (!file.starts_with("\xFF\xD8")) return std::nullopt;
    for (size_t place = 2; place + 9 <= file.size();) {
        if (byteAt(place) != 0xFF) return std::nullopt;
        const uint8_t marker = byteAt(place + 1);
        if (marker == 0xFF) {  // a fill byte
            ++place;
            continue;
        }
        const bool isFrame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (isFrame) return PixelSize{wordAt(place + 7), wordAt(place + 5)};
        if (marker == 0xDA) return std::nullopt;  // samples before any frame
        place += 2 + static_cast<size_t>(wordAt(place + 2));
    }
    return std::nullopt;
}

}  // namespace

std::shared_ptr<const Image> Image::withPDFPage(Data file, double width, double height) {
    if (file.length() == 0) return nullptr;
    Image image;
    image.kind_ = Kind::pdfPage;
    image.width_ = width;
    image.height_ = height;
    image.data_ = std::move(file);
    return std::make_shared<const Image>(std::move(image));
}

std::shared_ptr<const Image> Image::withJPEG(Data file) {
    const std::optional<PixelSize> size = sizeOfJPEG(file.view());
    if (!size) return nullptr;
    Image image;
    image.kind_ = Kind::jpeg;
    image.width_ = static_cast<double>(size->width);
    image.height_ = static_cast<double>(size->height);
    image.data_ = std::move(file);
    return std::make_shared<const Image>(std::move(image));
}

std::shared_ptr<const Image> Image::withSamples(Data samples, int64_t width, int64_t height, int64_t bitsPerComponent,
                                                DeviceColourSpace colourSpace) {
    constexpr int64_t largestSide = 1 << 24;
    if (width < 1 || height < 1 || width > largestSide || height > largestSide) return nullptr;
    if (bitsPerComponent < 1 || bitsPerComponent > 16) return nullptr;
    const int64_t components = colourSpace == DeviceColourSpace::cmyk ? 4 : 3;
    const int64_t bytesPerRow = components * bitsPerComponent * width / 8;
    if (bytesPerRow * height > static_cast<int64_t>(samples.length())) return nullptr;
    Image image;
    image.width_ = static_cast<double>(width);
    image.height_ = static_cast<double>(height);
    image.data_ = std::move(samples);
    image.bitsPerComponent_ = bitsPerComponent;
    image.colourSpace_ = colourSpace;
    return std::make_shared<const Image>(std::move(image));
}

}  // namespace vornaset
