#pragma once
// What a picture file holds, understood: the inner face that every format's reader answers with.

#include <memory>
#include <string>
#include <string_view>

#include "desk/model/placed_graphic.h"
#include "desk/pictures/picture.h"
#include "desk/pictures/picture_file.h"

namespace desk {

struct PageFacts {
    double width = 0, height = 0;  ///< points
    Matrix toNatural;
    bool isTransparent = false;
};

class PictureContent {
  public:
    virtual ~PictureContent() = default;
    virtual int pageCount() const { return 1; }
    /// Throws PictureError for a page that doesn't exist or can't be used.
    virtual PageFacts facts(int page, PageBox box) const = 0;
    /// Gives the number of the XObject. `file` names the whole file. Throws PictureError.
    virtual PictureSink::Number write(int page, PageBox box, const PictureIdentity& file, PictureSink& sink) const = 0;
    /// Memory that the content holds.
    virtual size_t heldBytes() const = 0;
};

using SharedBytes = std::shared_ptr<const std::string>;

/// Recognises the format by the first bytes. Throws PictureError for what is no picture.
PictureFormat formatOf(std::string_view bytes);

// The readers. They throw PictureError for what they can't use.
std::unique_ptr<PictureContent> readJpeg(const SharedBytes& bytes);
std::unique_ptr<PictureContent> readPng(const SharedBytes& bytes);
std::unique_ptr<PictureContent> readTiff(const SharedBytes& bytes);
/// Any PDF.
std::unique_ptr<PictureContent> readPdf(const SharedBytes& bytes);
/// A PDF of one page that is nothing but drawing and text in standard fonts, as barcode tools make them by the
/// thousand. Null for any other.
std::unique_ptr<PictureContent> readPlainPdf(const SharedBytes& bytes);
/// Formats that other programs turn into PDF.
std::unique_ptr<PictureContent> readSvg(const SharedBytes& bytes);
std::unique_ptr<PictureContent> readEps(const SharedBytes& bytes);

/// The reader of the format.
std::unique_ptr<PictureContent> readContent(PictureFormat format, const SharedBytes& bytes);

}  // namespace desk
