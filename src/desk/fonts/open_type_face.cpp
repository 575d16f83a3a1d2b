#include "desk/fonts/open_type_face.h"

#include <hb-ot.h>

#include <algorithm>
#include <stdexcept>

#include "desk/fonts/font_subset.h"
#include "desk/fonts/limits.h"

namespace desk {

namespace {

constexpr uint32_t kFirstCharacters = 0x300;

hb_buffer_t* sharedBuffer() {
    thread_local HarfBuzzPointer<hb_buffer_t> buffer(hb_buffer_create());
    return buffer.get();
}

bool isLeadSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool isTrailSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// The first character that belongs to one script alone decides, as in itemising; the library's own guess would also
// take the language of the process's locale.
hb_script_t guessScript(std::u16string_view text) {
    hb_unicode_funcs_t* unicode = hb_unicode_funcs_get_default();
    for (size_t i = 0; i < text.size(); ++i) {
        hb_codepoint_t character = text[i];
        if (isLeadSurrogate(text[i]) && i + 1 < text.size() && isTrailSurrogate(text[i + 1])) {
            character = 0x10000 + ((text[i] & 0x3FFu) << 10) + (text[i + 1] & 0x3FFu);
            ++i;
        }
        const hb_script_t script = hb_unicode_script(unicode, character);
        if (script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN) return script;
    }
    return HB_SCRIPT_COMMON;
}

const uint16_t* units(std::u16string_view text) {
    return reinterpret_cast<const uint16_t*>(text.data());
}

void fillBuffer(hb_buffer_t* buffer, const ShapingRequest& request) {
    const int length = static_cast<int>(request.text.size());
    const int before = static_cast<int>(request.before.size());
    // Context goes in as text of which nothing is taken; indices then count from the run's own start.
    if (before > 0) hb_buffer_add_utf16(buffer, units(request.before), before, static_cast<unsigned>(before), 0);
    hb_buffer_add_utf16(buffer, units(request.text), length, 0, length);
    if (!request.after.empty()) {
        hb_buffer_add_utf16(buffer, units(request.after), static_cast<int>(request.after.size()), 0, 0);
    }
    unsigned flags = HB_BUFFER_FLAG_DEFAULT;
    if (request.before.empty()) flags |= HB_BUFFER_FLAG_BOT;
    if (request.after.empty()) flags |= HB_BUFFER_FLAG_EOT;
    hb_buffer_set_flags(buffer, static_cast<hb_buffer_flags_t>(flags));
    hb_buffer_set_cluster_level(buffer, HB_BUFFER_CLUSTER_LEVEL_MONOTONE_GRAPHEMES);
    hb_buffer_set_direction(buffer, request.rightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer,
                         request.script == 0 ? guessScript(request.text) : hb_script_from_iso15924_tag(request.script));
    if (!request.language.empty()) {
        hb_buffer_set_language(
            buffer, hb_language_from_string(request.language.data(), static_cast<int>(request.language.size())));
    }
}

}  // namespace

std::unique_ptr<OpenTypeFace> OpenTypeFace::open(const FaceDescription& description) {
    HarfBuzzPointer<hb_face_t> face = openFontFile(description.file, description.faceOfFile);
    if (!face) return nullptr;
    return std::unique_ptr<OpenTypeFace>(new OpenTypeFace(description, std::move(face)));
}

OpenTypeFace::OpenTypeFace(const FaceDescription& description, HarfBuzzPointer<hb_face_t> face)
    : description_(description), face_(std::move(face)), font_(hb_font_create(face_.get())) {
    hb_ot_font_set_funcs(font_.get());
    const unsigned unitsPerEm = hb_face_get_upem(face_.get());
    hb_font_set_scale(font_.get(), static_cast<int>(unitsPerEm), static_cast<int>(unitsPerEm));
    unit_ = 1000.0f / static_cast<float>(unitsPerEm);
    if (FontTable(face_.get(), HB_TAG('C', 'F', 'F', ' ')).size() > 0) format_ = OutlineFormat::CFF;
    metrics_ = readFontMetrics(face_.get(), font_.get(), description.serifByName);
    readAdvances();
    readFirstCharacters();
    hb_face_make_immutable(face_.get());
    hb_font_make_immutable(font_.get());
}

void OpenTypeFace::readAdvances() {
    const unsigned count = hb_face_get_glyph_count(face_.get());
    const double unit = 1000.0 / hb_face_get_upem(face_.get());
    advances_.resize(count);
    for (unsigned glyph = 0; glyph < count; ++glyph) {
        advances_[glyph] = unit * hb_font_get_glyph_h_advance(font_.get(), glyph);
    }
}

void OpenTypeFace::readFirstCharacters() {
    firstCharacters_.resize(kFirstCharacters);
    for (uint32_t character = 0; character < kFirstCharacters; ++character) {
        hb_codepoint_t glyph = 0;
        if (hb_font_get_nominal_glyph(font_.get(), character, &glyph)) firstCharacters_[character] = glyph;
    }
}

uint32_t OpenTypeFace::glyphForCharacter(uint32_t codePoint) const {
    if (codePoint < kFirstCharacters) return firstCharacters_[codePoint];
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(font_.get(), codePoint, &glyph) ? glyph : 0;
}

void OpenTypeFace::shape(const ShapingRequest& request, std::vector<ShapedGlyph>& glyphs) const {
    glyphs.clear();
    if (request.text.empty()) return;
    if (request.text.size() > font_limits::kRunLength) throw std::length_error("A run of text is too long to shape.");
    hb_buffer_t* buffer = sharedBuffer();
    hb_buffer_clear_contents(buffer);
    fillBuffer(buffer, request);

    constexpr size_t kMostFeatures = 32;
    hb_feature_t features[kMostFeatures];
    unsigned featureCount = 0;
    if (request.features != nullptr) {
        for (const FontFeature& feature : *request.features) {
            if (featureCount == kMostFeatures) break;
            features[featureCount++] = {hb_tag_from_string(feature.tag, -1), feature.value, HB_FEATURE_GLOBAL_START,
                                        HB_FEATURE_GLOBAL_END};
        }
    }
    hb_shape(font_.get(), buffer, features, featureCount);

    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
    glyphs.resize(count);
    for (unsigned i = 0; i < count; ++i) {
        glyphs[i] = {infos[i].codepoint, infos[i].cluster, unit_ * static_cast<float>(positions[i].x_advance),
                     unit_ * static_cast<float>(positions[i].x_offset),
                     unit_ * static_cast<float>(positions[i].y_offset)};
    }
}

FontSubset OpenTypeFace::subset(const std::vector<uint32_t>& glyphs) const {
    try {
        return subsetFace(face_.get(), format_, glyphs);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("The font " + description_.postScriptName + " (" + description_.file +
                                 ") can't be subset: " + error.what());
    }
}

}  // namespace desk
