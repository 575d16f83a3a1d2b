#pragma once
// Writes pages of a document, as they stand at the moment of asking, into one PDF file.
//
// One pass, page by page; finished pages leave for the file at once, and only offsets stay. What comes out equal on
// every page set is written once. The file appears under its name only when it is whole: until finish() it stands under
// a temporary name in the same folder, and goes when the export is given up.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "desk/fonts/font_library.h"
#include "desk/model/document.h"
#include "desk/text/composer.h"

namespace desk {

struct PdfOptions {
    int compressionLevel = 6;  ///< 0 none .. 12 slowest, as libdeflate counts
    bool inBackground = true;  ///< compress and write in a second thread; the bytes are the same either way
    std::string title;         ///< for the document information; empty writes none
    /// Where fonts that placed pages name but don't carry are embedded from. Null leaves such fonts as they are.
    FontLibrary* fonts = nullptr;
};

class PdfExport {
  public:
    /// Makes the temporary file beside `outputPath`. Document and composer must outlive this object.
    /// Throws InputError when the folder doesn't exist or can't be written.
    PdfExport(const Document& document, Composer& composer, const std::string& outputPath, PdfOptions options = {});

    /// Without finish(): removes the temporary file and leaves what stood under the name.
    ~PdfExport();
    PdfExport(const PdfExport&) = delete;
    PdfExport& operator=(const PdfExport&) = delete;

    /// Writes one page as the document shows it now. Throws InputError when the file can't be written (full disk).
    void writePage(Uid page);

    uint64_t pagesWritten() const;

    /// What was drawn simpler than the document asks (a stroke style that isn't known), each once, as sentences.
    const std::vector<std::string>& simplifications() const;

    /// Writes what pages share, waits for everything to reach the disk and puts the file under its name.
    /// Throws InputError when that fails; then nothing stands under the name but what was there before.
    void finish();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace desk
