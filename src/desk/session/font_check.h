#pragma once
// Which fonts a document's text asks for and the machine lacks.

#include <vector>

#include "desk/desk.h"
#include "desk/fonts/font_library.h"

namespace desk {

/// Looks at every run of every story of the document, each family and style once, in text order.
std::vector<MissingFont> missingFonts(const Document& document, FontLibrary& fonts);

}  // namespace desk
