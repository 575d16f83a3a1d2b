#pragma once
// One paragraph of a story as composition takes it in: what the story says, and what its place adds to it.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "desk/model/document.h"

namespace desk {

/// What stands in for the markers of a paragraph.
struct MarkerTexts {
    std::u16string pageNumber, nextPageNumber, previousPageNumber, sectionMarker;
    bool operator==(const MarkerTexts&) const = default;
};

struct InlineItemSize {
    int32_t position = 0;  ///< in the paragraph
    Uid item = 0;
    double width = 0, height = 0;
    bool operator==(const InlineItemSize&) const = default;
};

/// A line's room in a column: lengths in points from the column's left edge.
struct LineSpan {
    double x = 0;
    double width = 0;
    bool operator==(const LineSpan&) const = default;
};

/// Equal sources are set alike: this is the key under which set paragraphs are remembered. Positions are UTF-16 units
/// from the paragraph's first.
struct ParagraphSource {
    std::u16string_view text;  ///< without the carriage return that ends it
    ParagraphFormatId format = 0;
    /// Runs cover the text and its carriage return; the first starts at 0, no two share a start.
    std::vector<FormatRun<CharacterFormatId>> runs;
    std::vector<InlineItemSize> inlineItems;
    std::u16string listLabel;  ///< bullet or number with what follows it; empty for none
    MarkerTexts markers;
    bool onRightPage = true;  ///< for alignment to the spine
    /// Room of the lines; the last holds for all lines behind it. Never empty.
    std::vector<LineSpan> spans;
};

/// Composed paragraphs of any story that are equal to this.
uint64_t hashOf(const ParagraphSource& source);

/// A source that owns its text.
struct OwnedParagraphSource {
    std::u16string text;
    ParagraphSource source;  ///< its text is a view on `text`

    explicit OwnedParagraphSource(const ParagraphSource& from) : text(from.text), source(from) { source.text = text; }
    OwnedParagraphSource(const OwnedParagraphSource&) = delete;
    OwnedParagraphSource& operator=(const OwnedParagraphSource&) = delete;
};

bool equal(const ParagraphSource& a, const ParagraphSource& b);

}  // namespace desk
