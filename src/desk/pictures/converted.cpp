// Drawings that other programs turn into a PDF page.

#include "desk/pictures/content.h"
#include "desk/pictures/converting_program.h"

namespace desk {
namespace {

/// What the program gave goes the way of any PDF; a message must not speak of it as the person's own file.
std::unique_ptr<PictureContent> pageOf(std::string pdf) {
    try {
        return readPdf(std::make_shared<const std::string>(std::move(pdf)));
    } catch (const PictureError&) {
        throw PictureError("can't be converted: it is damaged, or empty. Save it again");
    }
}

uint32_t littleEndian32(std::string_view bytes, size_t at) {
    uint32_t value = 0;
    for (size_t i = 4; i > 0; --i) value = value << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
    return value;
}

/// The PostScript of a file that has a preview in front of or behind it.
std::string_view withoutPreview(std::string_view bytes) {
    constexpr std::string_view mark = "\xC5\xD0\xD3\xC6";
    constexpr size_t headSize = 30;
    if (!bytes.starts_with(mark)) return bytes;
    if (bytes.size() < headSize) throw PictureError("is cut off in the middle. Save it again");
    const uint32_t start = littleEndian32(bytes, 4), length = littleEndian32(bytes, 8);
    if (start > bytes.size() || length > bytes.size() - start || !bytes.substr(start).starts_with("%!"))
        throw PictureError("is cut off in the middle. Save it again");
    return bytes.substr(start, length);
}

}  // namespace

std::unique_ptr<PictureContent> readSvg(const SharedBytes& bytes) {
    return pageOf(convert({"rsvg-convert", "-f", "pdf"}, *bytes, "librsvg2-bin"));
}

std::unique_ptr<PictureContent> readEps(const SharedBytes& bytes) {
    const std::string_view postScript = withoutPreview(*bytes);
    if (postScript.find("%%BoundingBox:") == std::string_view::npos)
        throw PictureError("is an EPS without a bounding box. Export it again");
    // By itself the program turns a page to how most of its text runs, makes pictures lossy and leaves the standard
    // fonts out.
    constexpr const char* asDrawn =
        "<</AutoFilterColorImages false/ColorImageFilter/FlateEncode/AutoFilterGrayImages false"
        "/GrayImageFilter/FlateEncode/EmbedAllFonts true/NeverEmbed[]>>setdistillerparams";
    return pageOf(convert({"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dEPSCrop", "-dAutoRotatePages=/None",
                           "-sDEVICE=pdfwrite", "-sstdout=%stderr", "-sOutputFile=-", "-c", asDrawn, "-f", inputName},
                          postScript, "ghostscript"));
}

}  // namespace desk
