#pragma once
// The frames of a document as a person asks for them.

#include <vector>

#include "desk/desk.h"

namespace desk {

/// Every page item of the document's spreads that isn't a group or a placed graphic, by page, then in painting order;
/// groups are entered.
std::vector<FrameInfo> listFrames(const Document& document);

}  // namespace desk
