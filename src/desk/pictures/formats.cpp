#include "desk/pictures/content.h"

namespace desk {
namespace {

/// XML whose first element is a drawing; programs put declarations and remarks in front of it.
bool isSvg(std::string_view bytes) {
    constexpr size_t searched = 4096;
    std::string_view start = bytes.substr(0, searched);
    if (start.starts_with("\xEF\xBB\xBF")) start.remove_prefix(3);
    const size_t text = start.find_first_not_of(" \t\r\n");
    if (text == std::string_view::npos || start[text] != '<') return false;
    return start.find("<svg") != std::string_view::npos || start.find(":svg") != std::string_view::npos;
}

}  // namespace

const char* elementNameOf(PictureFormat format) {
    switch (format) {
        case PictureFormat::Pdf:
            return "PDF";
        case PictureFormat::Svg:
            return "SVG";
        case PictureFormat::Eps:
            return "EPS";
        default:
            return "Image";
    }
}

PictureFormat formatOf(std::string_view bytes) {
    constexpr size_t pdfSearched = 1024;  // the header may stand behind other bytes
    if (bytes.starts_with("\xFF\xD8\xFF")) return PictureFormat::Jpeg;
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return PictureFormat::Png;
    for (const std::string_view mark : {std::string_view("II*\0", 4), std::string_view("MM\0*", 4),
                                        std::string_view("II+\0", 4), std::string_view("MM\0+", 4)})
        if (bytes.starts_with(mark)) return PictureFormat::Tiff;
    if (bytes.starts_with("%!PS") || bytes.starts_with("\xC5\xD0\xD3\xC6")) return PictureFormat::Eps;
    if (bytes.substr(0, pdfSearched).find("%PDF-") != std::string_view::npos) return PictureFormat::Pdf;
    if (isSvg(bytes)) return PictureFormat::Svg;
    throw PictureError("isn't a picture that can be placed. Use JPEG, PNG, TIFF, PDF, SVG or EPS");
}

std::unique_ptr<PictureContent> readContent(PictureFormat format, const SharedBytes& bytes) {
    switch (format) {
        case PictureFormat::Jpeg:
            return readJpeg(bytes);
        case PictureFormat::Png:
            return readPng(bytes);
        case PictureFormat::Tiff:
            return readTiff(bytes);
        case PictureFormat::Svg:
            return readSvg(bytes);
        case PictureFormat::Eps:
            return readEps(bytes);
        case PictureFormat::Pdf:
            break;
    }
    std::unique_ptr<PictureContent> plain = readPlainPdf(bytes);
    return plain ? std::move(plain) : readPdf(bytes);
}

}  // namespace desk
