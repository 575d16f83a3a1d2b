#pragma once
// The face of an OpenType file. Inner header of this folder.

#include <string>
#include <vector>

#include "desk/fonts/font_face.h"
#include "desk/fonts/font_file.h"

namespace desk {

/// What the library knows of a face before it is opened.
struct FaceDescription {
    std::string file;         ///< path
    unsigned faceOfFile = 0;  ///< in a collection, from 0
    std::string family, style, postScriptName;
    bool serifByName = false;  ///< used where the file doesn't tell
    uint32_t index = 0;        ///< in the library, from 0
};

class OpenTypeFace final : public FontFace {
  public:
    /// Null when the file can't be read or can't be embedded.
    static std::unique_ptr<OpenTypeFace> open(const FaceDescription& description);

    const std::string& family() const override { return description_.family; }
    const std::string& style() const override { return description_.style; }
    const std::string& postScriptName() const override { return description_.postScriptName; }
    OutlineFormat outlineFormat() const override { return format_; }

    double ascent() const override { return metrics_.ascent; }
    double descent() const override { return metrics_.descent; }
    double capHeight() const override { return metrics_.capHeight; }
    double xHeight() const override { return metrics_.xHeight; }
    double italicAngle() const override { return metrics_.italicAngle; }
    double underlinePosition() const override { return metrics_.underlinePosition; }
    double underlineThickness() const override { return metrics_.underlineThickness; }
    double boundingBox(int side) const override { return side >= 0 && side < 4 ? metrics_.boundingBox[side] : 0; }
    double stemV() const override { return metrics_.stemV; }
    bool isFixedPitch() const override { return metrics_.fixedPitch; }
    bool isSerif() const override { return metrics_.serif; }
    int weight() const override { return metrics_.weight; }
    bool embeddingAllowed() const override { return metrics_.embeddingAllowed; }

    double glyphAdvance(uint32_t glyph) const override { return glyph < advances_.size() ? advances_[glyph] : 0; }
    uint32_t glyphForCharacter(uint32_t codePoint) const override;
    void shape(const ShapingRequest& request, std::vector<ShapedGlyph>& glyphs) const override;
    FontSubset subset(const std::vector<uint32_t>& glyphs) const override;
    uint32_t index() const override { return description_.index; }

  private:
    OpenTypeFace(const FaceDescription& description, HarfBuzzPointer<hb_face_t> face);
    void readAdvances();
    void readFirstCharacters();

    FaceDescription description_;
    HarfBuzzPointer<hb_face_t> face_;
    HarfBuzzPointer<hb_font_t> font_;  ///< measures in font units
    float unit_ = 1;                   ///< font unit in em/1000
    OutlineFormat format_ = OutlineFormat::TrueType;
    FontMetrics metrics_;
    std::vector<double> advances_;           ///< em/1000, one for each glyph
    std::vector<uint32_t> firstCharacters_;  ///< glyphs of U+0000..U+02FF
};

}  // namespace desk
