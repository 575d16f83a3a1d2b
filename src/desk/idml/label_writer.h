#pragma once
// Labels out: what changed in an object's labels is changed in its element, everything else there stays.

#include "desk/idml/part_editor.h"
#include "desk/model/document.h"

namespace desk {

/// Labels that differ between the two are written; an empty or absent text takes its pair out of the element.
void writeLabels(PartEditor& part, const SourceElement& object, const Labels& before, const Labels& now);

/// A whole Label element; empty for no labels.
std::string labelXml(const Labels& labels);

}  // namespace desk
