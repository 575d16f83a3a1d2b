#pragma once
// Stories: ranges, contents and what stands between them become text with runs of formats.

#include "desk/idml/reading.h"

namespace desk {

/// Reads one Story element into a new story of the document. Styles, fonts and conditions must be there; inline items
/// are made and owned by the story.
void readStory(Reading& reading, const XmlElement& element);

}  // namespace desk
