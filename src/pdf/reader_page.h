#pragma once
// A page of a file as the platform's reader knows it: its boxes, its turn, and the page alone as a file.

#include <memory>
#include <optional>

#include "pdf/page_renderer.h"
#include "support/geometry.h"

namespace vornaset {

/// The boxes of a page, ISO 32000-1, 14.11.2, by the platform's numbers.
enum class PageBox { media = 0, crop = 1, bleed = 2, trim = 3, art = 4 };

class ReaderPage {
  public:
    /// The pages of a file; 0 when there is no file, or none that can be read as PDF.
    static int64_t numberOfPages(const String& path);
    /// Number from 1. Null when there is no such page.
    static std::shared_ptr<const ReaderPage> open(const String& path, int64_t number);

    /// In points, corners in order, inherited boxes included. The crop box is that within the media box; a box that the
    /// page lacks is the crop box, for the media box a letter page.
    Rect boundsForBox(PageBox box) const { return boxes_[static_cast<size_t>(box)]; }
    int quarterTurns() const noexcept { return quarterTurns_; }
    PageToDraw toDraw() const;
    /// The page alone as a PDF file; null when it can't be read.
    Data dataRepresentation() const;

  private:
    ReaderPage() = default;

    String path_;
    int64_t number_ = 0;
    Rect boxes_[5];
    int quarterTurns_ = 0;
};

}  // namespace vornaset
