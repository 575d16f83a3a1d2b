#pragma once
// Page items: shapes, lines, groups, text frames and placed graphics, on a spread or inside a story.

#include "desk/idml/reading.h"

namespace desk {

/// True for the elements that readPageItem reads.
bool isPageItem(std::string_view element);

/// Makes the item with everything in it. The caller gives it its place; the threads of text frames are remembered for
/// linkFrames.
PageItem& readPageItem(Reading& reading, const XmlElement& element);

}  // namespace desk
