#include "desk/output/stand_in_fonts.h"

#include <algorithm>
#include <array>

namespace desk {
namespace {

/// Families with the widths of a standard one, the most alike first.
struct Alike {
    std::string_view standard;  ///< how the standard names begin
    std::array<const char*, 4> families;
};
constexpr Alike alikes[] = {{"Courier", {"Nimbus Mono PS", "Liberation Mono", "Cousine", "Courier New"}},
                            {"Helvetica", {"Nimbus Sans", "Liberation Sans", "Arimo", "Arial"}},
                            {"Times", {"Nimbus Roman", "Liberation Serif", "Tinos", "Times New Roman"}}};

std::string styleOf(std::string_view standardName) {
    const bool bold = standardName.find("Bold") != std::string_view::npos;
    const bool slanted =
        standardName.find("Oblique") != std::string_view::npos || standardName.find("Italic") != std::string_view::npos;
    if (bold) return slanted ? "Bold Italic" : "Bold";
    return slanted ? "Italic" : "Regular";
}

}  // namespace

const FontFace* StandInFonts::faceFor(const AbsentFont& font) const {
    if (!fonts_) return nullptr;
    const std::string style = styleOf(font.baseFont);
    for (const Alike& alike : alikes) {
        if (!font.baseFont.starts_with(alike.standard)) continue;
        for (const char* family : alike.families) {
            if (!fonts_->hasFace(family, style)) continue;
            const FontFace& face = fonts_->face(family, style);
            if (face.embeddingAllowed()) return &face;
        }
    }
    return nullptr;
}

ObjectNumber StandInFonts::standIn(const AbsentFont& font) {
    const auto known =
        std::find_if(known_.begin(), known_.end(), [&](const StandIn& one) { return one.absent == font; });
    if (known != known_.end()) return known->font.object;
    StandIn& made = known_.emplace_back();
    made.absent = font;
    made.face = faceFor(font);
    if (made.face) made.font = {ResourceKind::Font, shared_.nextName(ResourceKind::Font), shared_.file().allocate()};
    return made.font.object;
}

void StandInFonts::write(const StandIn& standIn) {
    std::vector<CodedGlyph> glyphs;
    for (size_t code = 0; code < standIn.absent.characters.size(); ++code) {
        const char16_t character = standIn.absent.characters[code];
        const uint32_t glyph = character == 0 ? 0 : standIn.face->glyphForCharacter(character);
        if (glyph == 0) continue;
        CodedGlyph coded;
        coded.glyph = glyph;
        coded.code = static_cast<uint8_t>(code);
        coded.width = standIn.face->glyphAdvance(glyph);
        coded.copiesAs = std::u16string(1, character);
        glyphs.push_back(std::move(coded));
    }
    writeCodedFont(*standIn.face, standIn.font, glyphs, shared_.file());
}

void StandInFonts::finish() {
    for (const StandIn& standIn : known_)
        if (standIn.face) write(standIn);
}

}  // namespace desk
