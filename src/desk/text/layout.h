#pragma once
// What composition ends in: glyphs at fixed places. The output knows nothing else of text.
//
// Lengths are points. Coordinates of a frame's layout are the inner coordinates of the frame's page item, y downwards.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "desk/fonts/font_face.h"
#include "desk/model/document.h"

namespace desk {

/// How text is painted.
struct TextPaint {
    std::string fillColor;    ///< id of a swatch, "Swatch/None" paints nothing
    double fillTint = -1;     ///< percent, -1 is 100
    std::string strokeColor;  ///< "Swatch/None" strokes nothing
    double strokeTint = -1;
    double strokeWeight = 0;
    bool overprintFill = false;
    bool operator==(const TextPaint&) const = default;
};

struct PlacedGlyph {
    uint32_t glyph = 0;
    float advance = 0;        ///< points to the next glyph's origin: kerning, tracking and justification are in it
    float xOffset = 0;        ///< points
    float yOffset = 0;        ///< points, positive up
    uint32_t textStart = 0;   ///< UTF-16 range in LayoutParagraph::text that the glyph stands for;
    uint32_t textLength = 0;  ///< 0 for the further glyphs of a cluster
};

/// Glyphs of one face, size and paint on one baseline, in visual order.
struct GlyphRun {
    const FontFace* face = nullptr;
    double size = 0;  ///< points, after super- and subscript and small capitals
    double horizontalScale = 1;
    double verticalScale = 1;
    double skew = 0;  ///< degrees
    double x = 0;     ///< of the first glyph's origin, from the line's left end of the measure
    double rise = 0;  ///< above the baseline, points
    std::shared_ptr<const TextPaint> paint;
    /// Added to every space character's advance beyond what every glyph gets, points; it is in the advances already.
    /// The output may use it as a word spacing operand.
    double wordSpacing = 0;
    /// Added behind every cluster by tracking and justification, points; it is in the advances already.
    double letterSpacing = 0;
    std::vector<PlacedGlyph> glyphs;
};

/// A straight stroke along the text: underline, strike-through, paragraph rule.
struct TextRule {
    double x = 0, width = 0;  ///< from the line's left end of the measure
    double y = 0;             ///< of the stroke's middle, below the baseline
    double weight = 0;
    std::string color;  ///< id of a swatch
    double tint = -1;
};

struct LayoutLine {
    int32_t textStart = 0;  ///< UTF-16 range in the story's paragraph (not in LayoutParagraph::text, which may differ)
    int32_t textLength = 0;
    double x = 0;  ///< left end of the measure, from the column's left edge
    double measure = 0;
    double ascent = 0;  ///< for the first baseline of a frame: by the frame's rule the caller picks
    double capHeight = 0, xHeight = 0;
    double emHeight = 0;   ///< the largest point size
    double leading = 0;    ///< baseline to baseline above this line
    bool tooWide = false;  ///< can't be divided any further and is still wider than the measure: found no room
    std::vector<GlyphRun> runs;
    std::vector<TextRule> rules;
    std::vector<std::pair<Uid, double>> inlineItems;  ///< owned items in the line and their x
};

/// One composed paragraph. Equal paragraphs (text, attributes, measure) share one object: who keeps what it made of a
/// paragraph keys it by this object's address while holding a reference, or by `serial`.
struct LayoutParagraph {
    uint64_t serial = 0;  ///< never used twice in a process
    /// What is shown: with what replaces markers and capitals. Behind it stand, where lines use them, a hyphen for
    /// hyphenated line ends and the leaders of tabs: their glyphs' text ranges lie there.
    std::u16string text;
    std::vector<LayoutLine> lines;
    double spaceBefore = 0, spaceAfter = 0;
};

/// Some lines of a paragraph in a column.
struct PlacedParagraph {
    std::shared_ptr<const LayoutParagraph> paragraph;
    uint32_t firstLine = 0, lineCount = 0;
    double x = 0;                   ///< column's left edge
    std::vector<double> baselines;  ///< one for each line
    bool operator==(const PlacedParagraph&) const = default;
};

/// All the text of one frame. Immutable; the same object as long as the frame shows the same.
struct FrameLayout {
    uint64_t serial = 0;
    Uid frame = 0;
    int32_t textStart = 0;  ///< UTF-16 range of the story
    int32_t textLength = 0;
    std::vector<PlacedParagraph> paragraphs;
};

struct StoryLayout {
    std::vector<std::shared_ptr<const FrameLayout>> frames;  ///< in thread order
    bool overset = false;
    int32_t composedLength = 0;  ///< UTF-16 units that found room
};

}  // namespace desk
