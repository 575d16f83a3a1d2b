#pragma once
// Image slots: numbered frames that are empty when a run starts. The start event lists them and each fill empties them.
//
// Pictures are not placed yet: `fillImageSlots` is the place where the row's picture will go into each slot. Until then
// a slot stays empty through the run, and no "missingImg" is reported for it.

#include "host/api/types.h"
#include "support/values.h"

namespace vornaset {

inline constexpr const char* kImageSlots = "links";

/// The walk over the page items of a document at the start of a run; `job` is the run's Dictionary. Adds the UID of an
/// empty picture frame with a number of 1 or more to the job's "links". Always 1.
unsigned char collectImageSlot(UIDRef& frame, void* job);

/// The last step of a fill. Does nothing yet.
void fillImageSlots(IDataBase* database, const Dictionary& job, int32_t pageNum);

}  // namespace vornaset
