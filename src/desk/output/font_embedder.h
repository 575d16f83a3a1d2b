#pragma once
// Fonts of a PDF file: each face is subset and embedded once, whatever the number of pages.
//
// Text is shown by one-byte codes: a code is given to a glyph at its first use. A Type0 font takes up to 255 of them;
// what comes after goes into a further font with a subset of its own. (Two fonts over one subset would need CIDs beyond
// one byte, and there are readers that then lose the text on copying.) ISO 32000-1, 9.7.

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "desk/fonts/font_face.h"
#include "desk/output/resources.h"

namespace desk {

/// A glyph of a face together with the text that it stands for.
struct CodedGlyph {
    uint32_t glyph = 0;
    char16_t unit = 0;  ///< the text, where it is one UTF-16 unit that copies as itself; else 0
    uint16_t font = 0;  ///< which of the face's Type0 fonts, from 0
    uint8_t code = 0;
    double width = 0;         ///< em/1000 as the file says it
    std::u16string copiesAs;  ///< what a reader gets when the glyph is copied
};

/// Writes one Type0 font, subset and embedded, whose codes are those of the glyphs: each code once. `font` has its
/// number. Throws InputError when the face can't be subset.
void writeCodedFont(const FontFace& face, const Resource& font, const std::vector<CodedGlyph>& glyphs, PdfFile& file);

/// One face in use. Stays where it is as long as the embedder.
class EmbeddedFace {
  public:
    EmbeddedFace(const FontFace& face, SharedObjects& shared);

    /// `text` is what the glyph stands for; empty for the further glyphs of a cluster. The reference stays good until
    /// the next call.
    const CodedGlyph& coded(uint32_t glyph, std::u16string_view text) {
        if (glyph < firstUse_.size() && text.size() == 1) {
            const uint32_t index = firstUse_[glyph];
            if (index != unused && glyphs_[index].unit == text[0]) return glyphs_[index];
        }
        return codedSlowly(glyph, text);
    }

    const FontFace& face() const { return face_; }
    /// The Type0 font to select; index as CodedGlyph::font gives it.
    const Resource& font(uint16_t index) const { return fonts_[index].resource; }

    /// Writes the fonts with their files. Throws InputError when the face can't be subset.
    void write(PdfFile& file);

  private:
    static constexpr uint32_t unused = 0xFFFFFFFF;
    struct Type0Font {
        Resource resource;
        bool taken[256] = {};
        int takenCount = 0;
        size_t nextFree = 0;           ///< in the order in which codes are given
        std::vector<uint32_t> glyphs;  ///< indices of glyphs_
    };
    const CodedGlyph& codedSlowly(uint32_t glyph, std::u16string_view text);
    uint32_t add(uint32_t glyph, std::u16string_view text, const std::u16string& copiesAs);
    uint8_t takeCode(Type0Font& font, const std::u16string& copiesAs);
    std::u16string copyText(uint32_t glyph, std::u16string_view text) const;

    const FontFace& face_;
    SharedObjects& shared_;
    uint32_t hyphenGlyph_ = 0;
    std::vector<CodedGlyph> glyphs_;
    std::vector<uint32_t> firstUse_;  ///< by glyph: index of the first use in glyphs_, or unused
    /// By glyph and copied text, for glyphs that stand for different texts.
    std::unordered_map<std::u16string, uint32_t> byText_;
    std::deque<Type0Font> fonts_;
};

class FontEmbedder {
  public:
    explicit FontEmbedder(SharedObjects& shared) : shared_(shared) {}

    /// The reference stays good as long as the embedder. Throws InputError for a face that may not be embedded.
    EmbeddedFace& use(const FontFace& face);

    /// Writes every face that was used. Throws InputError.
    void finish();

  private:
    SharedObjects& shared_;
    std::unordered_map<const FontFace*, EmbeddedFace*> byFace_;
    std::deque<EmbeddedFace> faces_;
};

}  // namespace desk
