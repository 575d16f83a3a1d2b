#pragma once
// Who wants to hear of every problem of a run, and not only of the first page as the pasteboard tells it, observes it.

#include "host/api/types.h"
#include "support/exception.h"
#include "support/values.h"

namespace vornaset {

enum class ProblemKind {
    Overset,
    MissingImage,
    ImportFailed,  ///< a file that is there can't be imported; the observer alone is told
};

/// The kind by name: "overset" and "missingImg", as they stand on the pasteboard, and "importFailed".
const char* nameOf(ProblemKind kind);

/// Where in a run something happened.
struct MergePlace {
    int32_t pageNum = 0;  ///< the page set's first page in the export, from 0
    int64_t row = 0;      ///< that the frame shows, an index from 0 into the job's rows; may lie past the end
    UIDRef frame;         ///< of a story: its first frame
    UIDRef story;         ///< null for a picture
    String column;        ///< of a picture: the column that feeds it; null for a story
    String path;          ///< of a picture: the cell's file or code, or the file that can't be imported
};

/// Is told during the page events, on the thread that runs them. Must not throw and must not touch the document.
class MergeObserver {
  public:
    virtual ~MergeObserver() = default;

    /// Once for every problem of every page set, whatever the pasteboard says.
    virtual void problem(ProblemKind kind, const MergePlace& place) = 0;

    /// A placeholder moved on to a row that isn't there. `place.row` is the row that the story was begun with. The
    /// failure then leaves the page event.
    virtual void rangeFailure(const MergePlace& place, const RangeException& failure) = 0;
};

/// Sets the one observer and returns the former; null for none. The observer must outlive its time here.
MergeObserver* setMergeObserver(MergeObserver* observer);

/// The observer in force; null for none.
MergeObserver* mergeObserver();

}  // namespace vornaset
