#pragma once
// Text out: what changed in a story is changed at its place in the part.

#include <functional>

#include "desk/idml/part_editor.h"
#include "desk/model/document.h"

namespace desk {

/// Writes the difference between two contents of one story. New text goes into the ranges beside it when they have its
/// formats, else into ranges of its own; removed text takes its own characters along and nothing else: notes, tables,
/// marks and whatever isn't understood stay where they were. `itemXml` gives the element of an owned item.
void writeStory(PartEditor& part, const SourceElement& story, const Document& document, const StoryContent& before,
                const StoryContent& now, const std::function<std::string(Uid)>& itemXml);

}  // namespace desk
