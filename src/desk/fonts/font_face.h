#pragma once
// One face of one font file: metrics, shaping, outlines' bytes, subsetting. Everything that touches the shaping, font
// and fontconfig libraries stands in this folder.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

/// A positioned glyph in font units per em of its face.
struct ShapedGlyph {
    uint32_t glyph = 0;
    uint32_t cluster = 0;  ///< UTF-16 index in the shaped text, from 0, of the first unit that it stands for
    float advance = 0;     ///< em/1000, kerning included
    float xOffset = 0;     ///< em/1000
    float yOffset = 0;     ///< em/1000, positive up
};

/// An OpenType feature switched on (1..) or off (0).
struct FontFeature {
    char tag[5] = "";
    uint32_t value = 1;
    bool operator==(const FontFeature&) const = default;
};

struct ShapingRequest {
    std::u16string_view text;           ///< the whole of one run of one direction and script
    std::u16string_view before, after;  ///< context, may be empty
    bool rightToLeft = false;
    uint32_t script = 0;        ///< ISO 15924 tag as four bytes, big-endian; 0 guesses from the text
    std::string_view language;  ///< BCP 47; may be empty
    const std::vector<FontFeature>* features = nullptr;
};

enum class OutlineFormat { TrueType, CFF };

/// A face cut down to some glyphs, as a PDF embeds it. A glyph's number in the subset is also its CID, for TrueType
/// with an identity CIDToGIDMap, for CFF by itself.
struct FontSubset {
    std::vector<uint8_t> file;  ///< for TrueType a font file, for CFF the bare CFF table
    OutlineFormat format = OutlineFormat::TrueType;
    bool cidKeyed = false;             ///< CFF only: the font is CID-keyed; its CIDs are the glyph numbers
    std::vector<uint32_t> newGlyphOf;  ///< glyph of the subset for each glyph asked for, in the same order
};

class FontFace {
  public:
    virtual ~FontFace() = default;

    virtual const std::string& family() const = 0;
    virtual const std::string& style() const = 0;
    virtual const std::string& postScriptName() const = 0;
    virtual OutlineFormat outlineFormat() const = 0;

    // Metrics in em/1000, positive up.
    virtual double ascent() const = 0;   ///< OS/2 sTypoAscender, else hhea
    virtual double descent() const = 0;  ///< OS/2 sTypoDescender (negative), else hhea
    virtual double capHeight() const = 0;
    virtual double xHeight() const = 0;
    virtual double italicAngle() const = 0;  ///< degrees, negative leans right
    virtual double underlinePosition() const = 0;
    virtual double underlineThickness() const = 0;
    virtual double boundingBox(int side) const = 0;  ///< 0 left, 1 bottom, 2 right, 3 top
    virtual double stemV() const = 0;
    virtual bool isFixedPitch() const = 0;
    virtual bool isSerif() const = 0;
    virtual int weight() const = 0;  ///< 100..900
    /// False when the maker forbids embedding (OS/2 fsType: restricted license, or bitmaps only).
    virtual bool embeddingAllowed() const { return true; }
    /// Nominal advance without kerning, em/1000.
    virtual double glyphAdvance(uint32_t glyph) const = 0;
    /// 0 when the face doesn't have the character.
    virtual uint32_t glyphForCharacter(uint32_t codePoint) const = 0;

    virtual void shape(const ShapingRequest& request, std::vector<ShapedGlyph>& glyphs) const = 0;

    /// A font file with these glyphs (and .notdef). Throws std::runtime_error when the face can't be subset.
    virtual FontSubset subset(const std::vector<uint32_t>& glyphs) const = 0;

    /// Small number that names this face inside its library, from 0.
    virtual uint32_t index() const = 0;
};

}  // namespace desk
