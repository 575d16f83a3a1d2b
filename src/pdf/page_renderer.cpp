#include "pdf/page_renderer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <optional>
#include <sstream>
#include <string_view>
#include <vector>

#include "pdf/renderer_programs.h"

namespace vornaset {

namespace {

constexpr double kPointsAnInch = 72;
constexpr int64_t kPagesAProcess = 16;           // bounds what one process prints: 32 MB for A4
constexpr int64_t kLargestPixelCount = 1 << 28;  // 1 GiB of bitmap
constexpr size_t kWindowOfHeader = 1024;         // ISO 32000-1 Annex H.3: readers accept the header within these bytes

struct PixelSize {
    int64_t width = 0;
    int64_t height = 0;
};

/// The page as it shows, and the factor by which it fits into the bitmap. Never above 1: a page isn't made larger.
struct Fit {
    PixelSize drawn;
    double factor = 1;
};

Fit fitOf(const PageToDraw& page, PixelSize bitmap) {
    const bool lies = page.quarterTurns % 2 != 0;
    const double width = lies ? page.height : page.width;
    const double height = lies ? page.width : page.height;
    Fit fit;
    fit.factor =
        std::min({1.0, static_cast<double>(bitmap.width) / width, static_cast<double>(bitmap.height) / height});
    fit.drawn.width = std::max<int64_t>(1, std::llround(width * fit.factor));
    fit.drawn.height = std::max<int64_t>(1, std::llround(height * fit.factor));
    return fit;
}

std::optional<int64_t> headerNumber(std::string_view header, std::string_view name) {
    const size_t found = header.find(std::string("\n").append(name).append(" "));
    if (found == std::string_view::npos) return std::nullopt;
    return std::strtoll(header.data() + found + name.size() + 2, nullptr, 10);
}

/// One image in PAM form from the front of the bytes, which move on. Null when there is no whole one.
std::optional<Bitmap> takeImage(std::string_view& bytes, PixelColours colours) {
    constexpr std::string_view end = "\nENDHDR\n";
    if (!bytes.starts_with("P7\n")) return std::nullopt;
    const size_t headerEnd = bytes.find(end);
    if (headerEnd == std::string_view::npos) return std::nullopt;
    const std::string_view header = bytes.substr(0, headerEnd + 1);
    const auto width = headerNumber(header, "WIDTH"), height = headerNumber(header, "HEIGHT");
    if (!width || !height || *width < 1 || *height < 1 || *width > kLargestPixelCount / *height) return std::nullopt;
    const size_t size = static_cast<size_t>(*width) * static_cast<size_t>(*height) * 4;
    if (headerNumber(header, "DEPTH") != 4 || bytes.size() - headerEnd - end.size() < size) return std::nullopt;
    Bitmap image{colours, *width, *height, std::string(bytes.substr(headerEnd + end.size(), size))};
    bytes.remove_prefix(headerEnd + end.size() + size);
    return image;
}

/// In the middle of a clear bitmap; what stands out is cut off.
Bitmap centred(Bitmap drawn, PixelSize size) {
    if (drawn.width == size.width && drawn.height == size.height) return drawn;
    Bitmap result{drawn.colours, size.width, size.height, {}};
    result.pixels.resize(static_cast<size_t>(size.width) * static_cast<size_t>(size.height) * 4);
    const int64_t columns = std::min(drawn.width, size.width), rows = std::min(drawn.height, size.height);
    const int64_t fromX = (drawn.width - columns) / 2, fromY = (drawn.height - rows) / 2;
    const int64_t toX = (size.width - columns) / 2, toY = (size.height - rows) / 2;
    for (int64_t row = 0; row < rows; ++row) {
        std::memcpy(result.pixels.data() + ((toY + row) * size.width + toX) * 4,
                    drawn.pixels.data() + ((fromY + row) * drawn.width + fromX) * 4, static_cast<size_t>(columns) * 4);
    }
    return result;
}

std::string decimal(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6f", value);
    return text;
}

/// What Ghostscript prints for the pages: PAM images, one behind the other. Partial coverage counts as ink.
std::string ghostscriptPages(const String& path, int64_t first, int64_t last, double pixelsAnInch) {
    return outputOfProgram("gs", {"-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dNOPROMPT", "-sstdout=%stderr",
                                  "-sDEVICE=pamcmyk32", "-r" + decimal(pixelsAnInch), "-dUseCropBox",
                                  "-dTextAlphaBits=4", "-dGraphicsAlphaBits=4", "-dFirstPage=" + std::to_string(first),
                                  "-dLastPage=" + std::to_string(last), "-sOutputFile=-", "-f", absolutePath(path)});
}

std::string rasterisedPage(const PageToDraw& page, PixelSize size) {
    return outputOfProgram("vornaset-rasterise", {absolutePath(page.path), std::to_string(page.number),
                                                  std::to_string(size.width), std::to_string(size.height)});
}

}  // namespace

bool beginsAsPDF(const String& path) {
    if (path.isNull()) return false;
    std::ifstream file(path.utf8(), std::ios::binary);
    char head[kWindowOfHeader];
    file.read(head, sizeof head);
    return std::string_view(head, static_cast<size_t>(std::max<std::streamsize>(file.gcount(), 0))).find("%PDF-") !=
           std::string_view::npos;
}

Bitmap drawPage(const PageToDraw& page, PixelColours colours) {
    const PixelSize size{static_cast<int64_t>(page.width), static_cast<int64_t>(page.height)};
    if (size.width < 1 || size.height < 1 || size.width > kLargestPixelCount / size.height) return {};
    if (!beginsAsPDF(page.path)) return {};
    const Fit fit = fitOf(page, size);
    const std::string printed = colours == PixelColours::cmyk
                                    ? ghostscriptPages(page.path, page.number, page.number, kPointsAnInch * fit.factor)
                                    : rasterisedPage(page, fit.drawn);
    std::string_view bytes = printed;
    std::optional<Bitmap> drawn = takeImage(bytes, colours);
    return drawn ? centred(std::move(*drawn), size) : Bitmap{};
}

void drawCmykPages(const String& path, int64_t first, int64_t last, const CmykPageSink& sink) {
    if (!beginsAsPDF(path)) return;
    for (int64_t page = first; page <= last; page += kPagesAProcess) {
        const std::string printed =
            ghostscriptPages(path, page, std::min(last, page + kPagesAProcess - 1), kPointsAnInch);
        std::string_view bytes = printed;
        while (const auto drawn = takeImage(bytes, PixelColours::cmyk)) {
            if (!sink(*drawn)) return;
        }
    }
}

}  // namespace vornaset
