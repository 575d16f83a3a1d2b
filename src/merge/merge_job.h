#pragma once
// The merge job and the run that works through it.
//
// A companion puts the job, a mutable dictionary, on a named pasteboard and starts an ordinary PDF export of the
// template. The start event takes the job, each first page of a page set fills the template, the end event lets the job
// go. The run adds keys of its own to the job and leaves the companion's alone. Numbers may be numbers or decimal text.
//
//   key            set by     value                                                          when absent
//   rows           companion  mutable array of row dictionaries; anything else is absent     every row is past the end
//   startNr        companion  number of the first record, from 1                             1
//   offset         companion  rows that the run moves on from one page set to the next       1
//   rmvEmptyLines  companion  1: lines that come out empty go                                0
//   barcode        companion  path of the barcode tool                                       no barcodes
//   dataBase       the run    decimal text of the document's IDataBase*                      0
//   pageCnt        the run    decimal text of the template's page count                      see `processFrames`
//   links          the run    array of UIDs of the image slots                               none
//   srcStory       the run    array of UIDs of the numbered template stories                 none
//   dstStory       the run    array of UIDs of their shadows, entry for entry                none
//
// A page set is `pageCnt` consecutive pages of the export, one pass over the template. All of this runs on the host's
// main thread, inside its events.

#include "host/api/types.h"
#include "merge/merge_observer.h"
#include "support/values.h"

namespace vornaset {

inline constexpr const char* kMergePasteboard = "com.kelmoriandev.vornaset";
inline constexpr const char* kMergeJobType = "Vornaset";

/// 1 while a run is open. The start event alone writes it: the end event leaves it.
extern uint8_t gMergeArmed;
/// The job of the open run, from the start event to the end event; null otherwise.
extern Dictionary gMergeJob;

/// Takes the job from the pasteboard, which it clears in any case, and sets the run up. 1 when there was a job, else 0.
uint8_t setupFrameProcessing(const UIDRef& document);
/// Finds the image slots and stages the numbered stories of the untouched document. 0 for a null job, else 1, whether
/// or not anything numbered was found.
uint8_t setupFrameProcessing(const UIDRef& document, const Dictionary& job);

/// The page gate: fills the template when the page is the first of a page set. `pageNum` counts the export's pages from
/// 0. Throws RangeException as the fill does, and Exception when no run is open: its page count is 0 then.
void processFrames(IDataBase* database, int32_t pageNum);

/// Lets the job go. The document stays as the last fill left it.
void cleanupFrameProcessing();

/// What of a job decides which row a frame shows.
struct RowArithmetic {
    int32_t startNr = 1;
    int32_t offset = 1;
    int32_t pageCnt = 1;

    explicit RowArithmetic(const Dictionary& job);

    /// The row, from 0, of a frame number at a page of the export:
    /// (pageNum / pageCnt) * offset + startNr + frameNumber - 2, in 32-bit signed arithmetic that wraps. Negative
    /// results are for an unsigned comparison, which finds them past the end. Throws Exception for a page count of 0.
    int64_t rowOf(int32_t pageNum, int64_t frameNumber) const;
};

/// Tells the observer, and the companion by the pasteboard: the 1-based number of the page under the kind's type. One
/// type at most stands there: the first page of a kind stays until a report of the other kind wipes it.
void reportProblem(ProblemKind kind, const MergePlace& place);

}  // namespace vornaset
