#pragma once
// The parts that spreads and stories refer to. Each reader is given the element around its objects: the root of the
// part, or of a snippet, which holds all of them side by side.

#include "desk/idml/reading.h"

namespace desk {

/// Page size, bleed, text and grid preferences. What is absent keeps its default.
void readPreferences(Reading& reading, const XmlElement& around);

/// Colours, tints, gradients and dashed stroke styles. The swatches that every document has are added where they are
/// missing.
void readGraphic(Reading& reading, const XmlElement& around);

/// Font families and faces.
void readFonts(Reading& reading, const XmlElement& around);

/// Paragraph, character, object, table and cell styles, whatever groups they stand in.
void readStyles(Reading& reading, const XmlElement& around);

/// Follows the references between styles. Throws InputError for styles that are based on each other.
void linkStyles(Reading& reading);

/// The id of the style that a reference means, in either spelling: an id, or a bare name. Empty for none.
std::string styleId(const Reading& reading, StyleKind kind, const std::string& reference);

/// The same as a Uid; 0 for none.
Uid styleUid(const Reading& reading, StyleKind kind, const std::string& reference);

}  // namespace desk
