#pragma once
// What changed between two texts with formats.

#include <cstdint>
#include <vector>

#include "desk/model/story.h"

namespace desk {

/// Units [beforeStart, beforeEnd) of the one became [nowStart, nowEnd) of the other. Positions are UTF-16 units.
struct TextChange {
    int32_t beforeStart = 0, beforeEnd = 0;
    int32_t nowStart = 0, nowEnd = 0;
    bool operator==(const TextChange&) const = default;
};

/// The changes in order, none touching the next. The terminal returns aren't compared. Two units are the same when
/// character, formats and owned item are. Texts that have little in common come out as one change.
std::vector<TextChange> textChanges(const StoryContent& before, const StoryContent& now);

}  // namespace desk
