#include "desk/session/export_run.h"

#include <limits>

#include "desk/output/pdf_export.h"
#include "desk/pictures/conversion_watch.h"

namespace desk {
namespace {

enum MessageCode : int32_t { kExportStarts = 0, kPageComes = 1, kExportHasEnded = 4 };

/// Tells the plug-ins, and the end even when the way there breaks off.
class Events {
  public:
    Events(Border& border, IDataBase* dataBase) : listeners_(border), dataBase_(dataBase) {}
    ~Events() {
        if (!started_ || ended_) return;
        try {
            listeners_.tell(kExportHasEnded, dataBase_, 0);
        } catch (...) {
            // The export has failed already, and its own reason is the one to tell.
        }
    }
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;

    void start() {
        started_ = true;
        tell(kExportStarts, 0, -1);
    }
    void page(int32_t pageNum) { tell(kPageComes, pageNum, pageNum); }
    void end(int32_t pages) {
        ended_ = true;
        tell(kExportHasEnded, pages, -1);
    }

  private:
    void tell(MessageCode code, int32_t pageNum, int64_t page) {
        try {
            listeners_.tell(code, dataBase_, pageNum);
        } catch (const std::exception& failure) {
            throw PlugInFailure(failure.what(), page);
        }
    }

    ExportListeners listeners_;
    IDataBase* dataBase_;
    bool started_ = false;
    bool ended_ = false;
};

/// False when it can't be written and the run is to end: a picture was to be converted once more.
bool writePage(PdfExport& file, Uid page, const ExportRequest& request) {
    try {
        file.writePage(page);
        return true;
    } catch (const InputError&) {
        if (!request.isToStop || !request.isToStop()) throw;
        return false;
    }
}

}  // namespace

ExportOutcome runExport(Border& border, IDataBase* dataBase, const Document& document, Composer& composer,
                        FontLibrary& fonts, const ExportRequest& request, std::vector<std::string>& simplifications) {
    const std::vector<Uid> pages = document.pages();
    if (pages.empty()) throw InputError(document.name + " has no pages: there is nothing to export");
    const uint64_t total = request.pageSets * pages.size();
    if (request.pageSets > std::numeric_limits<int32_t>::max() / pages.size())
        throw InputError("the export would have more than 2147483647 pages: export fewer records at a time");

    PdfOptions options;
    options.compressionLevel = request.compressionLevel;
    options.title = request.title;
    options.fonts = &fonts;
    PdfExport file(document, composer, request.outputPath, options);
    const ConversionWatch watch(request.isToStop);
    Events events(border, dataBase);
    events.start();
    uint64_t done = 0;
    for (uint64_t set = 0; set < request.pageSets; ++set) {
        for (const Uid page : pages) {
            events.page(static_cast<int32_t>(done));
            if (!writePage(file, page, request)) return ExportOutcome::Stopped;
            ++done;
            if (request.progress && request.progress({done, total}) == ExportAnswer::Stop)
                return ExportOutcome::Stopped;
        }
    }
    events.end(static_cast<int32_t>(done));
    file.finish();
    simplifications = file.simplifications();
    return ExportOutcome::Finished;
}

}  // namespace desk
