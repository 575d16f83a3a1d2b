#pragma once
// The charset of a CID-keyed CFF font program. The Compact Font Format specification, sections 4, 5, 9, 13 and 18.

#include <cstdint>
#include <vector>

namespace desk {

/// The CID of each glyph, by glyph. Empty for a font program that isn't CID-keyed: there CIDs are glyph indices.
/// Throws std::runtime_error when the bytes aren't a CFF font program.
std::vector<uint32_t> cidsOfGlyphs(const std::vector<uint8_t>& program);

}  // namespace desk
