#pragma once
// Pages of PDF files drawn into bitmaps, one pixel a point. Foreign software draws them, in processes of its own with
// limits on time and memory: Ghostscript into CMYK, vornaset-rasterise into RGB with transparent paper.

#include <functional>

#include "pdf/bitmap.h"

namespace vornaset {

/// A page as the renderers find it.
struct PageToDraw {
    String path;
    int64_t number = 0;  ///< in the file, from 1
    double width = 0;    ///< of the crop box, in points, before turning
    double height = 0;
    int quarterTurns = 0;  ///< that the page asks for, clockwise; 0 to 3
};

/// The page's crop box, turned as the page asks and made no larger, centred in a bitmap that has the crop box's width
/// and height cut to whole pixels. Empty when the page can't be drawn.
Bitmap drawPage(const PageToDraw& page, PixelColours colours);

/// Gets each page's CMYK pixels at their natural size; false ends the drawing.
using CmykPageSink = std::function<bool(const Bitmap& page)>;

/// Draws the pages from first to last (from 1) of a file by few processes. Pages that can't be drawn are left out.
void drawCmykPages(const String& path, int64_t first, int64_t last, const CmykPageSink& sink);

/// False for what isn't a file that begins as a PDF file does: Ghostscript would run it as a program.
bool beginsAsPDF(const String& path);

}  // namespace vornaset
