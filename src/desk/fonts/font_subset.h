#pragma once
// Cutting a face down to the glyphs that a PDF shows. Inner header of this folder.

#include <hb.h>

#include <cstdint>
#include <vector>

#include "desk/fonts/font_face.h"

namespace desk {

/// The face with these glyphs and .notdef, glyphs numbered anew without gaps. The same glyphs give the same bytes.
/// Throws std::runtime_error when a glyph isn't in the face or the file is damaged.
FontSubset subsetFace(hb_face_t* face, OutlineFormat format, const std::vector<uint32_t>& glyphs);

/// Gives the charset of a CID-keyed CFF font the CIDs 0, 1, 2..., in place. True when the font is CID-keyed.
/// Throws std::runtime_error when the table is damaged.
bool numberCidsByGlyph(std::vector<uint8_t>& cff, uint32_t glyphCount);

}  // namespace desk
