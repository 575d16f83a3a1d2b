#include "companion/pdf_run.h"

#include <map>
#include <set>

#include "companion/output_places.h"
#include "companion/pdf_files.h"
#include "companion/whole_file.h"
#include "companion/workplace.h"
#include "pdf/page_inspection.h"
#include "pdf/page_renderer.h"
#include "pdf/pdf_keys.h"
#include "pdf/pdf_merging.h"

namespace companion {

using vornaset::Handle;
using vornaset::MyPDFArray;
using vornaset::MyPDFDictionary;
using vornaset::MyPDFDoc;
using vornaset::String;

namespace {

/// Whether one of the names that the toolkit gives to forms is free on the page.
bool hasFreeFormName(const Handle<MyPDFDictionary>& page) {
    const auto resources = vornaset::objectAs<MyPDFDictionary>(page->resources());
    const auto forms =
        vornaset::objectAs<MyPDFDictionary>(resources->objectForKeyedSubscript(vornaset::pdf_key::kXObject));
    for (int number = 1; number <= 100; ++number) {
        if (!forms->objectForKeyedSubscript(String(("Kd" + std::to_string(number)).c_str()))) return true;
    }
    return false;
}

/// One run of one command.
class PdfRun {
  public:
    PdfRun(const PdfOptions& options, RunWatcher& watcher) : options_(options), watcher_(watcher) {}

    PdfResult run() {
        const bool givesPdf = options_.operation != PdfOperation::Inks && options_.operation != PdfOperation::Boxes &&
                              options_.operation != PdfOperation::Jpeg;
        if (!givesPdf) refuseOverwriting(options_.outputPath, input(), "the PDF file");
        switch (options_.operation) {
            case PdfOperation::Underlay:
                return underlay();
            case PdfOperation::Backgrounds:
                return backgrounds();
            case PdfOperation::Append:
                return append();
            case PdfOperation::Inks:
                return inks();
            case PdfOperation::Boxes:
                return boxes();
            case PdfOperation::Jpeg:
                return jpeg();
            default:
                return change();
        }
    }

  private:
    Handle<MyPDFDoc> read(const std::string& path) { return readPdf(path, messages_); }
    const std::string& input() const { return options_.inputs.front(); }

    /// False when the run is to end.
    bool goesOn(std::uint64_t done, std::uint64_t total) { return watcher_.goesOn(done, total); }

    PdfResult stopped() const { return {RunOutcome::Stopped, 0, {}}; }

    PdfResult write(const Handle<MyPDFDoc>& document) {
        watcher_.writingBegins();
        writePdf(document, options_.outputPath, messages_);
        return {RunOutcome::Finished, static_cast<std::uint64_t>(document->numberOfPages()), {}};
    }

    PdfResult change() {
        const Handle<MyPDFDoc> document = read(input());
        switch (options_.operation) {
            case PdfOperation::CropToTrim:
                document->cropDocToTrimBox();
                break;
            case PdfOperation::Scale:
                document->scaleDoc(options_.factor);
                break;
            case PdfOperation::Fit:
                fit(document);
                break;
            case PdfOperation::DeleteLast:
                if (document->pages().count() < 2)
                    throw Error("\"" + input() + "\" has one page alone, and a document keeps at least one.");
                document->deleteLastPage();
                break;
            case PdfOperation::Reverse:
                document->revertPages();
                break;
            default:
                break;
        }
        return write(document);
    }

    void fit(const Handle<MyPDFDoc>& document) {
        std::uint64_t number = 0;
        for (const Handle<MyPDFDictionary>& page : document->pages()) {
            ++number;
            if (vornaset::isEmptyBox(page->trimBox()))
                throw Error("\"" + input() + "\", page " + std::to_string(number) + ": the page has no size to fit.");
        }
        document->scaleDocToSize(options_.width, options_.height);
    }

    /// Names for forms run out at a hundred; then a page would refer to one that isn't there.
    void refuseFullPages(const Handle<MyPDFDoc>& document, const std::string& path) const {
        std::uint64_t number = 0;
        for (const Handle<MyPDFDictionary>& page : document->pages()) {
            ++number;
            if (!hasFreeFormName(page))
                throw Error("\"" + path + "\", page " + std::to_string(number) +
                            ": a hundred pages lie under it already, and there is no name for one more.");
        }
    }

    PdfResult underlay() {
        const Handle<MyPDFDoc> back = read(options_.inputs[0]);
        const Handle<MyPDFDoc> front = read(options_.inputs[1]);
        refuseFullPages(front, options_.inputs[1]);
        vornaset::mergeDocs(back, front, String());
        return write(front);
    }

    PdfResult backgrounds() {
        const Handle<MyPDFDoc> document = read(input());
        const std::vector<std::string> paths(options_.inputs.begin() + 1, options_.inputs.end());
        const std::uint64_t pages = document->pages().count();
        if (paths.size() < pages)
            throw Error("\"" + input() + "\" has " + std::to_string(pages) + " pages, and " +
                        std::to_string(paths.size()) + " backgrounds were named; name one for each page, in order.");
        if (paths.size() > pages)
            watcher_.warn(std::to_string(paths.size() - pages) + " backgrounds more than pages were named");
        refuseFullPages(document, input());
        std::vector<vornaset::Value> names;
        names.reserve(paths.size());
        for (const std::string& path : paths) names.emplace_back(String(path.c_str()));
        std::uint64_t opened = 0;
        vornaset::mergeDocWithPaths(document, vornaset::Array::make(std::move(names)), [&](const String& path) {
            goesOn(++opened, paths.size());
            return read(path.utf8());
        });
        return write(document);
    }

    PdfResult append() {
        const std::vector<std::string>& paths = options_.inputs;
        const Handle<MyPDFDoc> target = read(paths.front());
        for (std::size_t index = 1; index < paths.size(); ++index) {
            if (!goesOn(index, paths.size())) return stopped();
            vornaset::appendPages(target, read(paths[index]));
        }
        target->rebuildPageList(0);
        return write(target);
    }

    PdfResult inks() {
        const String path(input().c_str());
        read(input());
        const auto pages = static_cast<std::uint64_t>(vornaset::ReaderPage::numberOfPages(path));
        std::string text;
        std::uint32_t all = 0;
        for (std::uint64_t number = 1; number <= pages; ++number) {
            const std::uint32_t mask = inksOfPage(path, number);
            all |= mask;
            text += "page " + std::to_string(number) + ": " + lettersOf(mask) + "\n";
            if (!goesOn(number, pages)) return stopped();
        }
        if (pages > 1) text += "all pages: " + lettersOf(all) + "\n";
        return told(std::move(text), pages);
    }

    /// A page that can't be drawn has inks, too: nobody may take it for a white one.
    std::uint32_t inksOfPage(const String& path, std::uint64_t number) const {
        const auto page = vornaset::ReaderPage::open(path, static_cast<std::int64_t>(number));
        const vornaset::Bitmap drawn =
            page ? vornaset::drawPage(page->toDraw(), vornaset::PixelColours::cmyk) : vornaset::Bitmap();
        if (drawn.isEmpty())
            throw Error("\"" + input() + "\", page " + std::to_string(number) +
                        ": the page can't be drawn; is Ghostscript there (Debian package ghostscript), and is the page "
                        "sound?");
        return vornaset::inksOfBitmap(drawn);
    }

    static std::string lettersOf(std::uint32_t mask) {
        return mask == 0 ? "none" : vornaset::cmykString(static_cast<std::int32_t>(mask)).utf8();
    }

    PdfResult boxes() {
        using namespace vornaset::pdf_key;
        const Handle<MyPDFDoc> document = read(input());
        std::string text;
        std::uint64_t number = 0;
        for (const Handle<MyPDFDictionary>& page : document->pages()) {
            text += "page " + std::to_string(++number) + ":";
            for (const String& key : {kMediaBox, kCropBox, kBleedBox, kTrimBox, kArtBox}) {
                const auto box = vornaset::objectAs<MyPDFArray>(page->objectForKeyedSubscript(key));
                if (box && box->isBox()) text += " " + key.utf8() + " " + box->boxString().utf8();
            }
            text += " mm\n";
        }
        return told(std::move(text), number);
    }

    /// Into the output file, or back to who asked.
    PdfResult told(std::string text, std::uint64_t pages) {
        if (options_.outputPath.empty()) return {RunOutcome::Finished, pages, std::move(text)};
        watcher_.writingBegins();
        WholeFile("the output", options_.outputPath).finish(text);
        return {RunOutcome::Finished, pages, {}};
    }

    PdfResult jpeg() {
        const String path(input().c_str());
        read(input());
        const auto pages = static_cast<std::uint64_t>(vornaset::ReaderPage::numberOfPages(path));
        if (options_.page > pages)
            throw Error("\"" + input() + "\" has no page " + std::to_string(options_.page) + "; its last is page " +
                        std::to_string(pages) + ".");
        watcher_.writingBegins();
        WholeFile file("the output", options_.outputPath);
        const vornaset::Data picture = vornaset::jpegDataWithPDFPage(path, static_cast<std::int64_t>(options_.page));
        if (picture.isNull())
            throw Error("\"" + input() + "\", page " + std::to_string(options_.page) +
                        ": the page can't be drawn: the renderer gave nothing for it.");
        file.finish(picture.view());
        return {RunOutcome::Finished, 1, {}};
    }

    const PdfOptions& options_;
    RunWatcher& watcher_;
    KeptMessages messages_;
};

}  // namespace

PdfResult runPdf(const PdfOptions& options, RunWatcher& watcher) {
    return withOneKindOfError([&] { return PdfRun(options, watcher).run(); });
}

}  // namespace companion
