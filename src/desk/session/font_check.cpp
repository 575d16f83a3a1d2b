#include "desk/session/font_check.h"

#include <algorithm>
#include <set>
#include <utility>

namespace desk {
namespace {

using FontName = std::pair<std::string, std::string>;

/// The fonts of one story's text, in text order, those already in `seen` left out. The terminal return shows nothing,
/// so its format counts only in a story with nothing else.
void collectFonts(const Document& document, const StoryContent& content, std::set<FontName>& seen,
                  std::vector<FontName>& inOrder) {
    const int32_t end = std::max(content.length() - 1, 1);
    size_t character = 0, paragraph = 0;
    int32_t position = 0;
    while (position < end) {
        const auto advance = [position](const auto& runs, size_t& index) {
            while (index + 1 < runs.size() && runs[index + 1].start <= position) ++index;
            return index + 1 < runs.size() ? runs[index + 1].start : INT32_MAX;
        };
        const int32_t nextCharacter = advance(content.characterRuns, character);
        const int32_t nextParagraph = advance(content.paragraphRuns, paragraph);
        const ResolvedAttributes& attributes =
            document.resolved(content.paragraphRuns[paragraph].format, content.characterRuns[character].format);
        FontName name{attributes.fontFamily, attributes.fontStyle};
        if (seen.insert(name).second) inOrder.push_back(std::move(name));
        position = std::min(nextCharacter, nextParagraph);
    }
}

}  // namespace

std::vector<MissingFont> missingFonts(const Document& document, FontLibrary& fonts) {
    std::set<FontName> seen;
    std::vector<FontName> inOrder;
    for (const Uid uid : document.stories)
        if (const Story* story = document.story(uid)) collectFonts(document, story->content(), seen, inOrder);
    std::vector<MissingFont> missing;
    for (const auto& [family, style] : inOrder) {
        if (fonts.hasFace(family, style)) continue;
        const FontFace& used = fonts.face(family, style);
        missing.push_back({family, style, used.family(), used.style()});
    }
    return missing;
}

}  // namespace desk
