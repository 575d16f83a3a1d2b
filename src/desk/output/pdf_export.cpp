#include "desk/output/pdf_export.h"

#include "desk/output/document_writer.h"

namespace desk {
namespace {

/// Text of a composer.
class ComposedText : public TextSource {
  public:
    explicit ComposedText(Composer& composer) : composer_(composer) {}
    std::shared_ptr<const FrameLayout> frameLayout(Uid frame, Uid page) override {
        return composer_.frameLayout(frame, page);
    }

  private:
    Composer& composer_;
};

}  // namespace

struct PdfExport::State {
    State(const Document& document, Composer& composer, const std::string& outputPath, PdfOptions options)
        : texts(composer), writer(document, texts, outputPath, std::move(options)) {}

    ComposedText texts;
    DocumentWriter writer;
};

PdfExport::PdfExport(const Document& document, Composer& composer, const std::string& outputPath, PdfOptions options)
    : state_(std::make_unique<State>(document, composer, outputPath, std::move(options))) {}

PdfExport::~PdfExport() = default;

void PdfExport::writePage(Uid page) {
    state_->writer.writePage(page);
}

uint64_t PdfExport::pagesWritten() const {
    return state_->writer.pagesWritten();
}

const std::vector<std::string>& PdfExport::simplifications() const {
    return state_->writer.simplifications().told();
}

void PdfExport::finish() {
    state_->writer.finish();
}

}  // namespace desk
