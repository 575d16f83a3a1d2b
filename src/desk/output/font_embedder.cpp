#include "desk/output/font_embedder.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "desk/model/document.h"

namespace desk {
namespace {

/// Codes for characters that don't have one of their own: first those that no ASCII character wants and no string has
/// to escape, last those that strings escape.
constexpr std::array<uint8_t, 256> codeOrder() {
    std::array<uint8_t, 256> order{};
    size_t next = 0;
    const auto isAwkward = [](int code) { return code == 10 || code == 13 || code == 40 || code == 41 || code == 92; };
    for (int code = 128; code < 256; ++code) order[next++] = static_cast<uint8_t>(code);
    for (int code = 1; code < 32; ++code)
        if (!isAwkward(code)) order[next++] = static_cast<uint8_t>(code);
    for (int code = 127; code > 32; --code)
        if (!isAwkward(code)) order[next++] = static_cast<uint8_t>(code);
    order[next++] = 0;
    order[next++] = 32;
    for (int code : {40, 41, 92, 10, 13}) order[next++] = static_cast<uint8_t>(code);
    return order;
}
constexpr std::array<uint8_t, 256> codesInOrder = codeOrder();

/// With .notdef a CFF subset has the glyph numbers 0 to 255.
constexpr int glyphsInAFont = 255;

bool isEscaped(char16_t c) {
    return c == u'(' || c == u')' || c == u'\\';
}

}  // namespace

EmbeddedFace::EmbeddedFace(const FontFace& face, SharedObjects& shared)
    : face_(face), shared_(shared), hyphenGlyph_(face.glyphForCharacter(u'-')) {}

/// What a reader shall get: hyphens as U+002D, however they came about; spaces of text that isn't there any more as a
/// space.
std::u16string EmbeddedFace::copyText(uint32_t glyph, std::u16string_view text) const {
    if (glyph != 0 && glyph == hyphenGlyph_ && text.size() <= 1) return u"-";
    std::u16string copied;
    for (char16_t c : text) {
        if (c == 0x00AD || c == 0x2010 || c == 0x2011) {
            copied += u'-';
        } else if (c < 0x20 || c == 0x00A0 || c == 0x2028 || c == 0x2029) {
            copied += u' ';
        } else {
            copied += c;
        }
    }
    return copied;
}

const CodedGlyph& EmbeddedFace::codedSlowly(uint32_t glyph, std::u16string_view text) {
    const std::u16string copiesAs = copyText(glyph, text);
    std::u16string key = copiesAs;
    key += static_cast<char16_t>(glyph >> 16);
    key += static_cast<char16_t>(glyph);
    const auto found = byText_.find(key);
    if (found != byText_.end()) return glyphs_[found->second];
    const uint32_t index = add(glyph, text, copiesAs);
    byText_.emplace(std::move(key), index);
    return glyphs_[index];
}

uint32_t EmbeddedFace::add(uint32_t glyph, std::u16string_view text, const std::u16string& copiesAs) {
    if (fonts_.empty() || fonts_.back().takenCount == glyphsInAFont) {
        Type0Font& opened = fonts_.emplace_back();
        opened.resource = {ResourceKind::Font, shared_.nextName(ResourceKind::Font), shared_.file().allocate()};
    }
    CodedGlyph coded;
    coded.glyph = glyph;
    coded.unit = text.size() == 1 && copiesAs == text ? text[0] : u'\0';
    coded.font = static_cast<uint16_t>(fonts_.size() - 1);
    coded.code = takeCode(fonts_.back(), copiesAs);
    // A thousandth of a thousandth of the em: what the file says is what the text was measured with.
    coded.width = std::round(face_.glyphAdvance(glyph) * 1000) / 1000;
    coded.copiesAs = copiesAs;
    const uint32_t index = static_cast<uint32_t>(glyphs_.size());
    fonts_.back().glyphs.push_back(index);
    glyphs_.push_back(std::move(coded));
    if (glyph >= firstUse_.size()) firstUse_.resize(glyph + 1, unused);
    if (firstUse_[glyph] == unused) firstUse_[glyph] = index;
    return index;
}

/// A character keeps its ASCII code where that is free, so that a space is code 32, which word spacing acts on.
uint8_t EmbeddedFace::takeCode(Type0Font& font, const std::u16string& copiesAs) {
    ++font.takenCount;
    if (copiesAs.size() == 1 && copiesAs[0] >= 32 && copiesAs[0] < 127 && !isEscaped(copiesAs[0]) &&
        !font.taken[copiesAs[0]]) {
        font.taken[copiesAs[0]] = true;
        return static_cast<uint8_t>(copiesAs[0]);
    }
    while (font.taken[codesInOrder[font.nextFree]]) ++font.nextFree;
    const uint8_t code = codesInOrder[font.nextFree++];
    font.taken[code] = true;
    return code;
}

EmbeddedFace& FontEmbedder::use(const FontFace& face) {
    EmbeddedFace*& found = byFace_[&face];
    if (!found) {
        if (!face.embeddingAllowed())
            throw InputError("The maker of the font \"" + face.family() + " " + face.style() +
                             "\" forbids embedding it. Use another font in the document.");
        found = &faces_.emplace_back(face, shared_);
    }
    return *found;
}

void FontEmbedder::finish() {
    for (EmbeddedFace& face : faces_) face.write(shared_.file());
}

}  // namespace desk
