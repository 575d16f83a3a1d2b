#pragma once
// What the attributes of a character mean to composition: a face, a size, distances in points.

#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

#include "desk/fonts/font_library.h"
#include "desk/model/document.h"
#include "desk/text/hyphenation.h"
#include "desk/text/layout.h"

namespace desk {

/// What decides about glyphs and their advances in the em: words are remembered for each of these.
struct ShapingStyle {
    const FontFace* face = nullptr;
    uint16_t language = 0;  ///< of the hyphenator
    std::vector<FontFeature> features;
    bool operator==(const ShapingStyle&) const = default;
};

/// Lengths are points unless said otherwise.
struct TextStyle {
    std::shared_ptr<const ResolvedAttributes> attributes;  ///< a copy: the document may forget its own
    const FontFace* face = nullptr;
    uint32_t shaping = 0;     ///< TextStyles::shapingStyle
    uint16_t language = 0;    ///< of the hyphenator
    double nominalSize = 12;  ///< the point size as set: leading and first baselines count with it
    double size = 12;         ///< of the glyphs, after superior, inferior and small capitals
    double horizontalScale = 1, verticalScale = 1, skew = 0;
    double rise = 0;          ///< above the baseline
    double emUnit = 0.012;    ///< one thousandth of the em, horizontally scaled
    double tracking = 0;      ///< behind every cluster
    uint32_t spaceGlyph = 0;  ///< 0: the face has none
    double spaceAdvance = 3;  ///< of U+0020 without tracking
    double leading = 14.4;
    double ascent = 0, capHeight = 0, xHeight = 0;
    std::shared_ptr<const TextPaint> paint;
    std::shared_ptr<const TextStyle> smallCapitals;  ///< for lower-case letters in small capitals, else null

    bool isDecorated() const { return attributes->underline || attributes->strikeThrough; }
};

/// Makes text styles once for each pair of formats.
class TextStyles {
  public:
    TextStyles(const Document& document, FontLibrary& fonts, Hyphenator& hyphenator);

    /// The reference stays good until clear().
    const TextStyle& style(ParagraphFormatId paragraph, CharacterFormatId character);
    const ShapingStyle& shapingStyle(uint32_t number) const { return shapingStyles_[number]; }

    /// BCP 47; empty for none.
    const std::string& languageTag(const TextStyle& style) const { return hyphenator_.tag(style.language); }

    /// Styles changed. Shaping styles keep their numbers.
    void clear();

  private:
    void fill(TextStyle& style, double sizeScale);
    uint32_t shapingNumber(const TextStyle& style);
    std::shared_ptr<const TextPaint> paintOf(const ResolvedAttributes& attributes);

    const Document& document_;
    FontLibrary& fonts_;
    Hyphenator& hyphenator_;
    std::unordered_map<uint64_t, std::unique_ptr<TextStyle>> styles_;
    std::deque<ShapingStyle> shapingStyles_;
    std::vector<std::shared_ptr<const TextPaint>> paints_;
};

}  // namespace desk
