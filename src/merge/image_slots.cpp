#include "merge/image_slots.h"

#include <fcntl.h>
#include <unistd.h>

#include <string_view>

#include "host/api/host.h"
#include "host/frame_geometry.h"
#include "host/picture_import.h"
#include "merge/merge_job.h"
#include "pdf/barcode_page.h"
#include "pdf/page_count.h"
#include "records/merge_records.h"
#include "support/dictionary_access.h"
#include "support/exception.h"
#include "support/file_handle.h"
#include "support/paths.h"

namespace vornaset {

namespace {

const String kRows(u"rows");
const String kBarcodeProgram(u"barcode");
const String kBarcodeKind(u"ean13");
const String kPDF(u"pdf");

enum class Pages { One, Unknown };
enum class Presence { Seen, Unknown };

/// A file to place.
struct PictureFile {
    String path;
    Presence presence = Presence::Unknown;  ///< Seen for a path at which something was found just now
    Pages pages = Pages::Unknown;  ///< One for a file that was written just now and so needn't be opened to be counted
};

String placeInWords(const MergePlace& place) {
    return stringWithFormat("row %ld, column \"%@\"", place.row + 1, place.column);
}

/// Writes to a name that nothing bears yet. False when something does or the file can't be written whole; then nothing
/// new is left behind.
bool writeNewFile(const String& path, std::string_view bytes) {
    const std::string name = path.utf8();
    if (name.find('\0') != std::string::npos) return false;
    const FileHandle file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.isOpen()) return false;
    if (::write(file.number(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())) return true;
    ::unlink(name.c_str());
    return false;
}

// A run makes a small file for each of its codes, nearly always of a new name. Such a file needs neither the removal of
// an older one nor the change of names by which a document puts itself in the place of one, and those cost as much
// again as the writing. A folder isn't removed for a file: the path of an empty code is the temporary folder itself.

/// Puts the document under the name, in the place of an older file. False when that fails; what stands there then is
/// not the document.
bool writeBarcode(const Handle<MyPDFDoc>& document, const String& path) {
    const Data bytes = document->pdfData();
    if (bytes.length() == 0) return false;
    if (writeNewFile(path, bytes.view())) return true;
    if (pathIsFolder(path)) return false;
    removeFile(path);
    return writeNewFile(path, bytes.view());
}

PictureFile barcodeFile(const String& script, const String& code, const UIDRef& frame) {
    if (script.isNull()) return {code};
    const PMRect bounds = boundsForFrame(frame, uint8_t{0});
    const PageSize size{static_cast<float>(bounds.right - bounds.left), static_cast<float>(bounds.bottom - bounds.top)};
    const Handle<MyPDFDoc> document = pdfDocWithEANCode(script, kBarcodeKind, code, size);
    PictureFile file{stringByAppendingPathComponents(temporaryPath(nullptr, nullptr), code, kPDF)};
    if (document && writeBarcode(document, file.path)) file.pages = Pages::One;
    return file;
}

int32_t place(UIDRef& frame, const PictureFile& file, int32_t pageIndex) {
    constexpr int32_t lastArgument = -1;
    const bool hasPageChoice = pageIndex >= 0 && file.pages == Pages::Unknown && pathEndsWith(file.path, kPDF);
    if (hasPageChoice && pageCountOfPDFFile(file.path) >= 2) {
        setPDFPlacePage(static_cast<int32_t>(static_cast<uint32_t>(pageIndex) + 1));
    }
    const UID item = importFile(frame.GetDataBase(), file.path);
    if (item == kInvalidUID) return kFailure;
    Utils<IFrameContentUtils> contents;
    if (!contents) return kFailure;
    const auto failure =
        static_cast<int16_t>(contents->PutItemInFrame(frame.GetDataBase(), item, frame.GetUID(), lastArgument));
    if (failure != 0) return failure;
    frame = UIDRef(frame.GetDataBase(), item);
    fitContentToFrame(frame);
    return kSuccess;
}

/// The text of the row's cell; null where the row has no such column.
String cellOf(const Value& row, const MergePlace& place) {
    const Value cell = row.valueForKey(place.column);
    if (!cell.isNull() && !cell.isString()) {
        throw UnrecognizedOperation(
            stringWithFormat("%@: a picture's path or code must be a text, and this cell isn't one.",
                             placeInWords(place))
                .utf8());
    }
    return cell.string();
}

/// What the cell leads to, whether or not it is there.
PictureFile fileOf(const String& cell, const String& barcodeProgram, const MergePlace& place) {
    const String path = pathWithHFS(cell);
    if (pathIsFile(path)) return {path, Presence::Seen};
    try {
        return barcodeFile(barcodeProgram, path, place.frame);
    } catch (const InvalidArgumentException& failure) {
        throw InvalidArgumentException(
            stringWithFormat("%@: %@", placeInWords(place), String(failure.reason().c_str())).utf8());
    }
}

void fillSlot(MergePlace& slot, const Value& row, const String& barcodeProgram) {
    const String cell = cellOf(row, slot);
    const PictureFile file = fileOf(cell, barcodeProgram, slot);
    slot.path = cell;
    if (file.presence == Presence::Unknown && !pathIsFile(file.path)) {
        reportProblem(ProblemKind::MissingImage, slot);
        return;
    }
    UIDRef content = slot.frame;
    if (place(content, file, static_cast<int32_t>(slot.row)) == kSuccess) return;
    slot.path = file.path;
    if (MergeObserver* observer = mergeObserver()) observer->problem(ProblemKind::ImportFailed, slot);
}

}  // namespace

unsigned char collectImageSlot(UIDRef& frame, void* job) {
    if (!isEmptyPictureFrame(frame) || frameNumberForFrame(frame) < 1) return 1;
    const Dictionary& run = *static_cast<const Dictionary*>(job);
    arrayForKey(run, kImageSlots, uint8_t{1}).add(Number(frame.GetUID().Get()));
    return 1;
}

void fillImageSlots(IDataBase* database, const Dictionary& job, int32_t pageNum) {
    const Array slots = arrayForKey(job, kImageSlots, Array());
    if (slots.isEmpty()) return;
    const RowArithmetic arithmetic(job);
    const Array rows = arrayForKey(job, kRows, Array());
    const String barcodeProgram = stringForKey(job, kBarcodeProgram);
    for (const Value& uid : slots) {
        MergePlace slot;
        slot.pageNum = pageNum;
        slot.frame = frameWithNumber(uid.number(), UIDRef(database, kInvalidUID));
        slot.column = colNameForFrame(slot.frame);
        if (slot.column.isEmpty()) continue;
        slot.row = arithmetic.rowOf(pageNum, frameNumberForFrame(slot.frame));
        if (rows.count() <= static_cast<uint64_t>(slot.row)) return;
        fillSlot(slot, rows[static_cast<size_t>(slot.row)], barcodeProgram);
    }
}

String pdfPathWithEANCode(const String& script, const String& code, const UIDRef& frame) {
    return barcodeFile(script, code, frame).path;
}

int32_t placeImageInFrame(UIDRef& frame, const String& path, int32_t pageIndex) {
    return place(frame, {path}, pageIndex);
}

}  // namespace vornaset
