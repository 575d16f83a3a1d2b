#pragma once
// A story's text and the bytes that each character comes from.

#include <string>
#include <vector>

#include "desk/idml/xml_source.h"
#include "desk/model/story.h"

namespace desk {

/// Where one UTF-16 unit stands in the part.
struct StoryPlace {
    size_t begin = 0, end = 0;  ///< all bytes that go with it; empty for a unit that goes with the one before
    bool continues = false;     ///< goes with the unit before: the second half of a pair, a variable's later text
    bool inCData = false;
    const SourceElement* element = nullptr;  ///< the Content that holds it, or the element that it is
};

struct StorySource {
    std::u16string text;             ///< without the terminal return
    std::vector<StoryPlace> places;  ///< one for each unit
};

/// Walks a Story element as the reader does.
StorySource sourceOfStory(const XmlSource& part, const SourceElement& story);

}  // namespace desk
