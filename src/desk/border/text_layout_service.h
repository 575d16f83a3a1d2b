#pragma once
// What the border asks of composition. The desk implements it with the composer; tests with a few lines.

#include <cstdint>

#include "desk/model/document.h"

namespace desk {

/// UTF-16 units of a story.
struct TextRange {
    int32_t start = 0;
    int32_t length = 0;
};

class TextLayoutService {
  public:
    virtual ~TextLayoutService() = default;
    /// True when the story, as it stands now, doesn't fit its frames. Asked twice or more for each story of a fill:
    /// cheap while the story is unchanged.
    virtual bool isOverset(Uid story) = 0;
    /// The text that a frame shows; an empty range for a frame without a story.
    virtual TextRange textOfFrame(Uid frame) = 0;
};

}  // namespace desk
