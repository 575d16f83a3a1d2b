#include "desk/fonts/font_file.h"

#include <ft2build.h>
#include <hb-ot.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

#include "desk/fonts/limits.h"

namespace desk {

FontTable::FontTable(hb_face_t* face, hb_tag_t tag) : blob_(hb_face_reference_table(face, tag)) {
    data_ = reinterpret_cast<const uint8_t*>(hb_blob_get_data(blob_.get(), &size_));
}

uint16_t FontTable::u16(uint32_t offset) const {
    return has(offset, 2) ? static_cast<uint16_t>(data_[offset] << 8 | data_[offset + 1]) : 0;
}

namespace {

bool isWebFont(const std::string& path) {
    char magic[4] = {};
    std::ifstream(path, std::ios::binary).read(magic, 4);
    return std::memcmp(magic, "wOFF", 4) == 0 || std::memcmp(magic, "wOF2", 4) == 0;
}

// The rasteriser unpacks web fonts when it opens them, and hands out the unpacked file as the table without a tag.
HarfBuzzPointer<hb_blob_t> unpackWebFont(const std::string& path) {
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    if (FT_Init_FreeType(&library) != 0) return nullptr;
    HarfBuzzPointer<hb_blob_t> blob;
    if (FT_New_Face(library, path.c_str(), 0, &face) == 0) {
        FT_ULong size = 0;
        if (FT_Load_Sfnt_Table(face, 0, 0, nullptr, &size) == 0 && size > 0 && size <= font_limits::kFileBytes) {
            std::vector<char> bytes(size);
            if (FT_Load_Sfnt_Table(face, 0, 0, reinterpret_cast<FT_Byte*>(bytes.data()), &size) == 0) {
                blob.reset(hb_blob_create(bytes.data(), static_cast<unsigned>(size), HB_MEMORY_MODE_DUPLICATE, nullptr,
                                          nullptr));
            }
        }
        FT_Done_Face(face);
    }
    FT_Done_FreeType(library);
    return blob;
}

double heightOf(hb_font_t* font, hb_codepoint_t character) {
    hb_codepoint_t glyph = 0;
    hb_glyph_extents_t extents;
    if (!hb_font_get_nominal_glyph(font, character, &glyph)) return 0;
    return hb_font_get_glyph_extents(font, glyph, &extents) ? extents.y_bearing : 0;
}

// OS/2 sFamilyClass and PANOSE, in this order; both are often left 0.
bool isSerif(const FontTable& os2, bool serifByName) {
    const int familyClass = os2.u8(30);
    if (familyClass >= 1 && familyClass <= 7 && familyClass != 6) return true;
    if (familyClass == 8) return false;
    const int panoseKind = os2.u8(32), panoseSerif = os2.u8(33);
    if (panoseKind == 2 && panoseSerif >= 2) return panoseSerif <= 10;
    return serifByName;
}

}  // namespace

HarfBuzzPointer<hb_face_t> openFontFile(const std::string& path, unsigned index) {
    std::error_code error;
    const auto bytes = std::filesystem::file_size(path, error);
    if (error || bytes > font_limits::kFileBytes) return nullptr;
    HarfBuzzPointer<hb_blob_t> blob = isWebFont(path)
                                          ? unpackWebFont(path)
                                          : HarfBuzzPointer<hb_blob_t>(hb_blob_create_from_file_or_fail(path.c_str()));
    if (!blob || index >= hb_face_count(blob.get())) return nullptr;
    HarfBuzzPointer<hb_face_t> face(hb_face_create(blob.get(), index));
    const bool outlines = FontTable(face.get(), HB_TAG('g', 'l', 'y', 'f')).size() > 0 ||
                          FontTable(face.get(), HB_TAG('C', 'F', 'F', ' ')).size() > 0;
    if (!outlines || hb_face_get_glyph_count(face.get()) == 0) return nullptr;
    return face;
}

FontMetrics readFontMetrics(hb_face_t* face, hb_font_t* font, bool serifByName) {
    const FontTable os2(face, HB_TAG('O', 'S', '/', '2')), hhea(face, HB_TAG('h', 'h', 'e', 'a'));
    const FontTable post(face, HB_TAG('p', 'o', 's', 't')), head(face, HB_TAG('h', 'e', 'a', 'd'));
    const double unit = 1000.0 / hb_face_get_upem(face);
    FontMetrics metrics;

    const bool typographic = os2.has(68, 4) && (os2.i16(68) != 0 || os2.i16(70) != 0);
    metrics.ascent = unit * (typographic ? os2.i16(68) : hhea.i16(4));
    metrics.descent = unit * (typographic ? os2.i16(70) : hhea.i16(6));
    if (metrics.descent > 0) metrics.descent = -metrics.descent;  // some files give it without its sign

    const bool heights = os2.u16(0) >= 2;
    metrics.xHeight = unit * (heights && os2.i16(86) > 0 ? os2.i16(86) : heightOf(font, 'x'));
    metrics.capHeight = unit * (heights && os2.i16(88) > 0 ? os2.i16(88) : heightOf(font, 'H'));
    if (metrics.xHeight <= 0) metrics.xHeight = 0.5 * metrics.ascent;
    if (metrics.capHeight <= 0) metrics.capHeight = metrics.ascent;

    metrics.italicAngle = post.i32(4) / 65536.0;
    metrics.underlinePosition = post.size() > 0 ? unit * post.i16(8) : -100;
    metrics.underlineThickness = post.i16(10) > 0 ? unit * post.i16(10) : 50;
    metrics.fixedPitch = post.u32(12) != 0;
    for (int side = 0; side < 4; ++side) metrics.boundingBox[side] = unit * head.i16(36 + 2 * side);

    metrics.weight = os2.u16(4) == 0 ? 400 : os2.u16(4) < 10 ? os2.u16(4) * 100 : os2.u16(4);
    metrics.weight = std::clamp(metrics.weight, 100, 900);
    // No table says how thick stems are. Readers use the figure only where they must draw a stand-in for a font.
    metrics.stemV = 50 + (metrics.weight / 65.0) * (metrics.weight / 65.0);
    metrics.serif = isSerif(os2, serifByName);
    // fsType: 2 alone is "restricted license", 0x200 allows bitmaps only.
    const int rights = os2.u16(8);
    metrics.embeddingAllowed = (rights & 0x000F) != 2 && (rights & 0x0200) == 0;
    return metrics;
}

}  // namespace desk
