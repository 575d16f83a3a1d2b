#pragma once
// Spreads and master spreads with their pages and items.

#include "desk/idml/reading.h"

namespace desk {

enum class SpreadRole { Document, Master };

/// Reads one Spread or MasterSpread element. Layers and styles must be there. Throws InputError for a page without
/// size.
Spread& readSpread(Reading& reading, const XmlElement& element, SpreadRole role);

/// Gives a spread without pages, as snippets have it, one page that just covers its items.
void coverItemsWithPage(Document& document, Spread& spread);

}  // namespace desk
