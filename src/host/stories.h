#pragma once
// Between frames and stories. In the host a text frame is a chain: the page item that a person sees, its multi-column
// frame, and one text column for each column, which the story's frame list names. From a column the page item is two
// parents up. Text indices are UTF-16 units from 0.

#include "host/api/types.h"

class ITextModel;

namespace vornaset {

/// The story that a frame shows; `UIDRef::gNull` for a missing item or one that is no text frame.
UIDRef storyForFrame(const UIDRef& frame);

/// The same, and the first text index that the frame shows in `start`, the index behind its last in `end`. Both stay as
/// they were when there is no story.
UIDRef storyForFrame(const UIDRef& frame, int32_t& start, int32_t& end);

/// The page items that show a story, from the first to the last, each once however many columns it has. Empty for a
/// missing story and for one that no frame shows.
UIDList frameListForStory(const UIDRef& story);

/// First and last of that list; `UIDRef::gNull` for an empty one.
UIDRef firstFrameForStory(const UIDRef& story);
UIDRef lastFrameForStory(const UIDRef& story);

/// The page item that shows a text index; null database and UID 0 for a story without a frame list.
UIDRef frameForTextModel(ITextModel* story, int32_t index);

}  // namespace vornaset
