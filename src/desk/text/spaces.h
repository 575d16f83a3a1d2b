#pragma once
// The spaces of fixed width: their widths where a face has no glyph for them.

#include "desk/fonts/font_face.h"

namespace desk {

/// How wide a fixed space is.
struct SpaceWidth {
    double em = 0;      ///< thousandths of the em, where `like` is 0
    char32_t like = 0;  ///< as wide as this character of the face
};

/// Null for characters that are no fixed-width space.
inline const SpaceWidth* spaceWidth(char32_t c) {
    static constexpr SpaceWidth en{500, 0}, em{1000, 0}, third{1000.0 / 3, 0}, quarter{250, 0}, sixth{1000.0 / 6, 0},
        figure{500, U'0'}, punctuation{250, U'.'}, thin{125, 0}, hair{1000.0 / 24, 0}, narrow{250, U' '},
        ideographic{1000, 0}, math{222, 0};
    switch (c) {
        case 0x2000:
        case 0x2002:
            return &en;
        case 0x2001:
        case 0x2003:
            return &em;
        case 0x2004:
            return &third;
        case 0x2005:
            return &quarter;
        case 0x2006:
            return &sixth;
        case 0x2007:
            return &figure;
        case 0x2008:
            return &punctuation;
        case 0x2009:
            return &thin;
        case 0x200A:
            return &hair;
        case 0x202F:
            return &narrow;
        case 0x205F:
            return &math;
        case 0x3000:
            return &ideographic;
        default:
            return nullptr;
    }
}

/// Thousandths of the em; 0 for other characters.
inline double widthOfSpace(char32_t c, const FontFace& face) {
    const SpaceWidth* width = spaceWidth(c);
    if (!width) return 0;
    const uint32_t like = width->like ? face.glyphForCharacter(width->like) : 0;
    return like ? face.glyphAdvance(like) : width->em;
}

}  // namespace desk
