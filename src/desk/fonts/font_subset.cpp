#include "desk/fonts/font_subset.h"

#include <hb-subset.h>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

#include "desk/fonts/font_file.h"

namespace desk {

namespace {

struct SubsetRelease {
    void operator()(hb_subset_input_t* object) const { hb_subset_input_destroy(object); }
    void operator()(hb_subset_plan_t* object) const { hb_subset_plan_destroy(object); }
};

// What a PDF reader needs of a font whose text is glyph numbers (ISO 32000-2, 9.9): outlines and metrics. Character
// maps, names and layout have done their work. Hinting goes too: it serves screens of low resolution, doubles the size
// of small subsets, and a print-resolution rasteriser ignores it.
constexpr std::array kKeptTables = {HB_TAG('g', 'l', 'y', 'f'), HB_TAG('l', 'o', 'c', 'a'), HB_TAG('h', 'e', 'a', 'd'),
                                    HB_TAG('h', 'h', 'e', 'a'), HB_TAG('h', 'm', 't', 'x'), HB_TAG('m', 'a', 'x', 'p'),
                                    HB_TAG('C', 'F', 'F', ' ')};

void dropOtherTables(hb_face_t* face, hb_set_t* dropped) {
    hb_tag_t tags[64];
    unsigned start = 0, count = 0;
    do {
        count = 64;
        hb_face_get_table_tags(face, start, &count, tags);
        for (unsigned i = 0; i < count; ++i) {
            if (std::find(kKeptTables.begin(), kKeptTables.end(), tags[i]) == kKeptTables.end()) {
                hb_set_add(dropped, tags[i]);
            }
        }
        start += count;
    } while (count == 64);
}

std::vector<uint8_t> bytesOf(hb_blob_t* blob) {
    unsigned size = 0;
    const auto* data = reinterpret_cast<const uint8_t*>(hb_blob_get_data(blob, &size));
    return {data, data + size};
}

/// Reads a CFF table (Technical Note 5176, the Compact Font Format); reading past the end throws.
class CffReader {
  public:
    explicit CffReader(const std::vector<uint8_t>& bytes) : bytes_(bytes) {}

    uint32_t number(size_t offset, unsigned size) const {
        if (offset + size > bytes_.size()) throw std::runtime_error("its CFF table ends too soon");
        uint32_t value = 0;
        for (unsigned i = 0; i < size; ++i) value = value << 8 | bytes_[offset + i];
        return value;
    }

    /// Offset of the first byte behind an INDEX; `first` takes where its first object begins and ends.
    size_t skipIndex(size_t offset, std::pair<size_t, size_t>* first = nullptr) const {
        const uint32_t count = number(offset, 2);
        if (count == 0) return offset + 2;
        const unsigned offsetSize = number(offset + 2, 1);
        const size_t base = offset + 2 + size_t{count + 1} * offsetSize;  // offsets count from 1
        if (first != nullptr) {
            *first = {base + number(offset + 3, offsetSize), base + number(offset + 3 + offsetSize, offsetSize)};
        }
        return base + number(offset + 3 + size_t{count} * offsetSize, offsetSize);
    }

  private:
    const std::vector<uint8_t>& bytes_;
};

struct TopDict {
    bool cidKeyed = false;  ///< has ROS
    uint32_t charset = 0;   ///< offset in the table; up to 2 names a predefined one
};

TopDict readTopDict(const CffReader& cff) {
    std::pair<size_t, size_t> dict{0, 0};
    cff.skipIndex(cff.skipIndex(cff.number(2, 1)), &dict);
    TopDict result;
    uint32_t operand = 0;
    for (size_t at = dict.first; at < dict.second;) {
        const uint32_t byte = cff.number(at, 1);
        if (byte == 12) {
            if (cff.number(at + 1, 1) == 30) result.cidKeyed = true;
            at += 2;
        } else if (byte <= 21) {
            if (byte == 15) result.charset = operand;
            at += 1;
        } else if (byte == 28) {
            operand = cff.number(at + 1, 2);
            at += 3;
        } else if (byte == 29) {
            operand = cff.number(at + 1, 4);
            at += 5;
        } else if (byte == 30) {  // real number: half-bytes up to 0xF
            do {
                ++at;
            } while ((cff.number(at, 1) & 0x0F) != 0x0F && (cff.number(at, 1) >> 4) != 0x0F);
            ++at;
        } else if (byte >= 247 && byte <= 254) {
            operand = byte < 251 ? (byte - 247) * 256 + cff.number(at + 1, 1) + 108 : 0;
            at += 2;
        } else {
            operand = byte >= 139 ? byte - 139 : 0;
            at += 1;
        }
    }
    return result;
}

}  // namespace

// The new charset is one range, and one range is never longer than what stood there: formats 0, 1 and 2 need 1 + 2n, 4
// and 5 bytes for n + 1 glyphs, and the short forms serve the small numbers.
bool numberCidsByGlyph(std::vector<uint8_t>& cff, uint32_t glyphCount) {
    const TopDict dict = readTopDict(CffReader(cff));
    if (!dict.cidKeyed) return false;
    if (dict.charset <= 2 || glyphCount < 2) return true;
    const uint32_t left = glyphCount - 2;
    std::vector<uint8_t> charset;
    if (left == 0) {
        charset = {0, 0, 1};
    } else if (left <= 0xFF) {
        charset = {1, 0, 1, static_cast<uint8_t>(left)};
    } else {
        charset = {2, 0, 1, static_cast<uint8_t>(left >> 8), static_cast<uint8_t>(left)};
    }
    if (dict.charset + charset.size() > cff.size()) throw std::runtime_error("its CFF table ends too soon");
    std::copy(charset.begin(), charset.end(), cff.begin() + dict.charset);
    return true;
}

FontSubset subsetFace(hb_face_t* face, OutlineFormat format, const std::vector<uint32_t>& glyphs) {
    const unsigned glyphCount = hb_face_get_glyph_count(face);
    std::unique_ptr<hb_subset_input_t, SubsetRelease> input(hb_subset_input_create_or_fail());
    if (!input) throw std::runtime_error("there isn't enough memory");
    hb_set_t* wanted = hb_subset_input_glyph_set(input.get());
    hb_set_add(wanted, 0);
    for (uint32_t glyph : glyphs) {
        if (glyph >= glyphCount) throw std::runtime_error("it has no glyph " + std::to_string(glyph));
        hb_set_add(wanted, glyph);
    }
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_NO_HINTING | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
    dropOtherTables(face, hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG));

    std::unique_ptr<hb_subset_plan_t, SubsetRelease> plan(hb_subset_plan_create_or_fail(face, input.get()));
    if (!plan) throw std::runtime_error("the file is damaged");
    HarfBuzzPointer<hb_face_t> cut(hb_subset_plan_execute_or_fail(plan.get()));
    if (!cut) throw std::runtime_error("the file is damaged");

    FontSubset subset;
    subset.format = format;
    const hb_map_t* mapping = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
    subset.newGlyphOf.reserve(glyphs.size());
    for (uint32_t glyph : glyphs) subset.newGlyphOf.push_back(hb_map_get(mapping, glyph));
    if (format == OutlineFormat::CFF) {
        HarfBuzzPointer<hb_blob_t> table(hb_face_reference_table(cut.get(), HB_TAG('C', 'F', 'F', ' ')));
        subset.file = bytesOf(table.get());
        if (subset.file.empty()) throw std::runtime_error("its CFF table is damaged");
        subset.cidKeyed = numberCidsByGlyph(subset.file, hb_face_get_glyph_count(cut.get()));
    } else {
        HarfBuzzPointer<hb_blob_t> file(hb_face_reference_blob(cut.get()));
        subset.file = bytesOf(file.get());
    }
    return subset;
}

}  // namespace desk
