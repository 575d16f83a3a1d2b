#pragma once
// Looks at pages without changing them: which inks a page uses, a JPEG or an image of it, pictures of image objects.

#include <cstdint>
#include <memory>
#include <optional>

#include "pdf/image.h"
#include "pdf/pdf_stream.h"
#include "pdf/reader_page.h"
#include "support/geometry.h"

namespace vornaset {

/// Bits of an ink mask.
enum ProcessInk : uint32_t { kCyan = 1, kMagenta = 2, kYellow = 4, kBlack = 8 };

/// Width and height in points.
struct PageSize {
    double width = 0;
    double height = 0;
    bool operator==(const PageSize&) const = default;
};

/// By the name's ending alone, in any case.
bool isPDFFile(const String& path);
/// The letters C, M, Y, K of the bits that are set.
String cmykString(int32_t mask);

/// The inks that the page's pixels have, however faint, drawn into CMYK at one pixel a point. What the page says in RGB
/// counts by the inks that the renderer makes of it, a spot colour by those of its alternate. 0 for a null page and for
/// one that can't be drawn.
uint32_t cmykColorsForPDFPage(const ReaderPage* page);
/// Number from 1. 0 when the file can't be read.
uint32_t cmykColorsForPDFPage(const String& path, int64_t number);
/// Of all pages but the last, which isn't looked at: 0 for a file of one page.
uint32_t cmykColorsForPDFPath(const String& path);
/// Of one bitmap.
uint32_t inksOfBitmap(const Bitmap& bitmap);

/// The page as a JPEG file at one pixel a point; where it has no ink there is white paper. A number below 1 counts
/// as 1. The crop box's size is stored even when nothing is drawn. Null when the file or the page can't be had.
Data jpegDataWithPDFPage(const String& path, int64_t number, PageSize* size = nullptr);

/// Index from 0. The size is that of the crop box, zero when the file has no such page. Null without the page.
std::shared_ptr<const Image> imageWithPDFPage(const String& path, int64_t index, PageSize* size = nullptr);
/// The rectangle is the trim box. Null for a null page.
std::shared_ptr<const Image> imageWithPDFPage(const ReaderPage* page, Rect* bounds = nullptr);

/// An image object as a picture: a JPEG as it is, else samples in device RGB or CMYK. Null for any other colour space
/// (gray, indexed, ICC-based) and without data.
std::shared_ptr<const Image> imageWithPDFStream(const Handle<MyPDFStream>& stream);
/// Null for a colour space other than device CMYK and RGB; then the outputs stay as they are. `flags` becomes 0.
std::optional<DeviceColourSpace> colorSpaceForPDFDict(const Handle<MyPDFDictionary>& dictionary, int64_t& components,
                                                      int32_t& flags);

}  // namespace vornaset
