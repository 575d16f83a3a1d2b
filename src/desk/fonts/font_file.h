#pragma once
// The bytes of one face of a font file, and the tables that metrics are read from. Inner header of this folder.

#include <hb.h>

#include <cstdint>
#include <memory>
#include <string>

namespace desk {

/// Gives back what the shaping library counts.
struct HarfBuzzRelease {
    void operator()(hb_blob_t* object) const { hb_blob_destroy(object); }
    void operator()(hb_face_t* object) const { hb_face_destroy(object); }
    void operator()(hb_font_t* object) const { hb_font_destroy(object); }
    void operator()(hb_buffer_t* object) const { hb_buffer_destroy(object); }
};

template <class T>
using HarfBuzzPointer = std::unique_ptr<T, HarfBuzzRelease>;

/// One table of a face; reading past its end gives 0, as a missing table does.
class FontTable {
  public:
    FontTable(hb_face_t* face, hb_tag_t tag);
    bool has(uint32_t offset, uint32_t length) const { return uint64_t{offset} + length <= size_; }
    uint32_t size() const { return size_; }
    const uint8_t* data() const { return data_; }
    uint16_t u16(uint32_t offset) const;
    int16_t i16(uint32_t offset) const { return static_cast<int16_t>(u16(offset)); }
    uint32_t u32(uint32_t offset) const { return uint32_t{u16(offset)} << 16 | u16(offset + 2); }
    int32_t i32(uint32_t offset) const { return static_cast<int32_t>(u32(offset)); }
    uint8_t u8(uint32_t offset) const { return has(offset, 1) ? data_[offset] : 0; }

  private:
    HarfBuzzPointer<hb_blob_t> blob_;
    const uint8_t* data_ = nullptr;
    uint32_t size_ = 0;
};

/// Opens one face of a file: TrueType, OpenType, collections by mapping the file, WOFF and WOFF 2 unpacked into memory.
/// `index` counts the faces of a collection from 0. Null when the file can't be read, or has no outlines that a PDF can
/// embed (TrueType "glyf" or "CFF ").
HarfBuzzPointer<hb_face_t> openFontFile(const std::string& path, unsigned index);

/// Metrics in em/1000, positive up.
struct FontMetrics {
    double ascent = 0, descent = 0;
    double capHeight = 0, xHeight = 0;
    double italicAngle = 0;
    double underlinePosition = 0, underlineThickness = 0;
    double boundingBox[4] = {0, 0, 0, 0};
    double stemV = 0;
    bool fixedPitch = false;
    bool serif = false;
    bool embeddingAllowed = true;
    int weight = 400;
};

/// `font` belongs to `face` and measures in font units. `serifByName` decides where the file doesn't say.
FontMetrics readFontMetrics(hb_face_t* face, hb_font_t* font, bool serifByName);

}  // namespace desk
