#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "companion/placeholder_scan.h"

namespace desk {
class Template;
}

namespace companion {

// What a merge needs to know of a template, and what `info` tells of it: plain data, taken once from the open template.
// Texts are UTF-8. `name` is how messages and reports call an object: the id that it has in the package, which is
// unique.

struct PageFacts {
    std::string number;  ///< as the page shows it: "1", "iv"
    double width = 0;    ///< points
    double height = 0;
};

struct FrameFacts {
    std::uint32_t uid = 0;
    std::string name;
    std::string givenName;                            ///< by a person; may be empty
    std::string kind;                                 ///< "text frame", "rectangle", ...
    int page = 0;                                     ///< from 1; 0 for a frame on no page
    double left = 0, top = 0, width = 0, height = 0;  ///< points, from the page's left top corner
    std::int64_t number = 0;                          ///< frame number, 0 for a static frame
    std::string column;                               ///< that feeds an image frame; may be empty
    std::string story;                                ///< name of its story; empty for a frame without text
};

struct StoryFacts {
    std::uint32_t uid = 0;
    std::string name;
    std::uint32_t firstFrame = 0;  ///< uid; 0 for a story without a frame
    std::int64_t number = 0;       ///< of its first frame
    std::size_t characters = 0;    ///< UTF-16 units without the last carriage return
    std::vector<FoundPlaceholder> placeholders;

    /// How many records the story walks through by placeholders that move on to the next one; 1 without such.
    std::uint64_t recordsShown() const;
    /// The place within a page set, from 1, of the last of these records; 0 for a story that takes no part in the
    /// merge.
    std::uint64_t lastPlace() const;
};

struct ReplacedFont {
    std::string asked;  ///< family and style that the template names
    std::string used;   ///< what stands in
};

struct TemplateFacts {
    std::string path;
    std::vector<PageFacts> pages;
    std::vector<FrameFacts> frames;  ///< in page order, frames that stand in text behind them
    std::vector<StoryFacts> stories;
    std::vector<std::string> paragraphStyles, characterStyles, objectStyles;
    std::vector<std::string> fonts;           ///< family and style, as the template lists them
    std::vector<ReplacedFont> replacedFonts;  ///< those that the machine lacks
    std::vector<std::string> notes;           ///< what reading met and passed over

    /// Null when the template has no such frame or story.
    const FrameFacts* frame(std::uint32_t uid) const;
    const StoryFacts* story(std::uint32_t uid) const;
    /// Of all frames, with repetitions and zeros.
    std::vector<std::int64_t> frameNumbers() const;
};

/// Asks an open template. Call it before a run, since a run rewrites the stories.
TemplateFacts factsOf(desk::Template& openTemplate, const std::string& path);

}  // namespace companion
