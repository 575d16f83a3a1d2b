#pragma once
// The work that a run does on the document: finding what is numbered at the start, and filling the template for each
// page set.

#include "host/api/types.h"
#include "support/values.h"

namespace vornaset {

/// Lists the image slots of the untouched document, then stages its numbered stories, in the job.
void runSetupPasses(const UIDRef& document, const Dictionary& job);

/// Fills the template for the page set that begins at `pageNum` (from 0): gives every numbered story its placeholders
/// back, puts the row into it and asks whether it is overset, empties the image slots and fills them. A story whose row
/// is past the end stays as restored. A null database means that of the open run's job. Throws RangeException when a
/// placeholder moves on to a row that isn't there, after the observer was told where.
void processFrames(IDataBase* database, const Dictionary& job, int32_t pageNum);

/// The full tidying, for other code; no export event calls it: restores the stories, then deletes those of "srcStory",
/// then empties the image slots. The shadows stay.
void cleanupFrameProcessing(IDataBase* database, const Dictionary& job);

}  // namespace vornaset
