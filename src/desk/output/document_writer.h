#pragma once
// A document's pages as one PDF file.

#include "desk/output/page_writer.h"
#include "desk/output/pdf_export.h"

namespace desk {

/// Puts the parts together: file, colours, fonts, painters, page tree.
class DocumentWriter {
  public:
    /// Document and texts must outlive this object. Throws InputError as PdfFile does.
    DocumentWriter(const Document& document, TextSource& texts, const std::string& outputPath, PdfOptions options);

    /// See PdfExport.
    void writePage(Uid page) { pages_.write(page); }
    uint64_t pagesWritten() const { return tree_.pageCount(); }
    const Simplifications& simplifications() const { return simplifications_; }
    void finish();

  private:
    ObjectNumber writeInformation();

    PdfOptions options_;
    PdfFile file_;
    SharedObjects shared_;
    Palette palette_;
    Simplifications simplifications_;
    ShapePainter shapes_;
    FontEmbedder fonts_;
    TextPainter textPainter_;
    PictureWriter pictures_;
    ItemPainter items_;
    PageTree tree_;
    PageWriter pages_;
};

}  // namespace desk
