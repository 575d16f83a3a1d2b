#pragma once
// Shadow stories. Filling a story destroys its placeholders, and the next record needs them back: each numbered story
// gets a shadow at the start of a run, a copy of its text and formatting that no frame shows and nothing edits, and
// before each fill the shadow is copied back over it. Shadows stay in the document after the run. Host failures are
// passed over.

#include "host/api/types.h"
#include "support/values.h"

class ITextModel;

namespace vornaset {

/// A new empty story in the database of any object. UID 0 when the host makes none.
UIDRef createStory(const UIDRef& anyObject);

/// Replaces text and formatting of one story by those of another; its frames stay. Nothing when the host can't.
void copyStory(const UIDRef& from, const UIDRef& to);

/// Removes a story from the document.
void deleteStory(const UIDRef& story);

/// The walk over the stories of a document at the start of a run; `job` is the run's Dictionary. A story whose first
/// frame has a number of 1 or more is shadowed and the pair of UIDs is added to the job's "srcStory" and "dstStory".
/// Always 1.
unsigned char stageStory(ITextModel* story, void* job);

/// Copies every shadow back over its story.
void restoreStories(IDataBase* database, const Dictionary& job);

/// The stories of a database that one of the job's arrays names, in order; empty when the array is absent.
UIDList storiesOfJob(IDataBase* database, const Dictionary& job, const char* key);

inline constexpr const char* kSourceStories = "srcStory";
inline constexpr const char* kShadowStories = "dstStory";

}  // namespace vornaset
