#pragma once
// Fonts that placed pages name but don't carry: each is embedded once, by a face of the machine with the same widths.

#include <deque>

#include "desk/fonts/font_library.h"
#include "desk/output/font_embedder.h"
#include "desk/pictures/picture.h"

namespace desk {

class StandInFonts {
  public:
    /// Without a library (null) no font stands in for another.
    StandInFonts(SharedObjects& shared, FontLibrary* fonts) : shared_(shared), fonts_(fonts) {}

    /// The number of the font that stands in; 0 when the machine has none of the same widths.
    ObjectNumber standIn(const AbsentFont& font);

    /// Writes the fonts that were asked for. Throws InputError.
    void finish();

  private:
    struct StandIn {
        AbsentFont absent;
        const FontFace* face = nullptr;
        Resource font;  ///< number 0 when there is none
    };
    const FontFace* faceFor(const AbsentFont& font) const;
    void write(const StandIn& standIn);

    SharedObjects& shared_;
    FontLibrary* fonts_;
    std::deque<StandIn> known_;
};

}  // namespace desk
