#include "pdf/page_inspection.h"

#include <exception>

#include "pdf/pdf_keys.h"
#include "support/paths.h"

namespace vornaset {

namespace {

constexpr uint32_t kAllInks = kCyan | kMagenta | kYellow | kBlack;
constexpr int kChannels = 4;

}  // namespace

bool isPDFFile(const String& path) {
    return pathEndsWith(path, u"pdf");
}

String cmykString(int32_t mask) {
    String text(u"");
    const char16_t* const letters[kChannels] = {u"C", u"M", u"Y", u"K"};
    for (int channel = 0; channel < kChannels; ++channel) {
        if (mask & (1 << channel)) text = text + String(letters[channel]);
    }
    return text;
}

uint32_t inksOfBitmap(const Bitmap& bitmap) {
    uint32_t mask = 0;
    for (size_t channel = 0; channel < kChannels; ++channel) {
        for (size_t place = channel; place < bitmap.pixels.size(); place += kChannels) {
            if (bitmap.pixels[place] == 0) continue;
            mask |= 1U << channel;
            break;
        }
    }
    return mask;
}

uint32_t cmykColorsForPDFPage(const ReaderPage* page) {
    return page == nullptr ? 0 : inksOfBitmap(drawPage(page->toDraw(), PixelColours::cmyk));
}

uint32_t cmykColorsForPDFPage(const String& path, int64_t number) {
    return cmykColorsForPDFPage(ReaderPage::open(path, number).get());
}

uint32_t cmykColorsForPDFPath(const String& path) {
    uint32_t mask = 0;
    drawCmykPages(path, 1, ReaderPage::numberOfPages(path) - 1, [&](const Bitmap& page) {
        mask |= inksOfBitmap(page);
        return mask != kAllInks;
    });
    return mask;
}

Data jpegDataWithPDFPage(const String& path, int64_t number, PageSize* size) {
    const auto page = ReaderPage::open(path, number < 1 ? 1 : number);
    if (!page) return {};
    const Rect crop = page->boundsForBox(PageBox::crop);
    if (size != nullptr) *size = {crop.width, crop.height};
    return jpegDataWithBitmap(drawPage(page->toDraw(), PixelColours::rgba));
}

std::shared_ptr<const Image> imageWithPDFPage(const String& path, int64_t index, PageSize* size) {
    try {
        if (ReaderPage::numberOfPages(path) == 0) return nullptr;
        const auto page = index < 0 ? nullptr : ReaderPage::open(path, index + 1);
        const Rect crop = page ? page->boundsForBox(PageBox::crop) : Rect{};
        if (size != nullptr) *size = {crop.width, crop.height};
        return imageWithPDFPage(page.get());
    } catch (const std::exception&) {  // the caller learns by the result alone
        return nullptr;
    }
}

std::shared_ptr<const Image> imageWithPDFPage(const ReaderPage* page, Rect* bounds) {
    if (page == nullptr) return nullptr;
    if (bounds != nullptr) *bounds = page->boundsForBox(PageBox::trim);
    const Rect crop = page->boundsForBox(PageBox::crop);
    return Image::withPDFPage(page->dataRepresentation(), crop.width, crop.height);
}

std::shared_ptr<const Image> imageWithPDFStream(const Handle<MyPDFStream>& stream) {
    if (stream->data().isNull()) return nullptr;
    if (stream->filter() == u"/DCTDecode") return Image::withJPEG(stream->data());
    int64_t components = 0;
    int32_t flags = 0;
    const auto colourSpace = colorSpaceForPDFDict(stream, components, flags);
    if (!colourSpace) return nullptr;
    return Image::withSamples(stream->data(), stream->width(), stream->height(), stream->bitsPerComponent(),
                              *colourSpace);
}

std::optional<DeviceColourSpace> colorSpaceForPDFDict(const Handle<MyPDFDictionary>& dictionary, int64_t& components,
                                                      int32_t& flags) {
    const String name = dictionary->stringForKey(pdf_key::kColorSpace);
    const bool isCMYK = name == u"/DeviceCMYK";
    if (!isCMYK && name != u"/DeviceRGB") return std::nullopt;
    components = isCMYK ? 4 : 3;
    flags = 0;
    return isCMYK ? DeviceColourSpace::cmyk : DeviceColourSpace::rgb;
}

}  // namespace vornaset
