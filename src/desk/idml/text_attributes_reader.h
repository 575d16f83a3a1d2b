#pragma once
// Text attributes as styles, stories and ranges carry them: on the element itself or inside its Properties.

#include "desk/idml/reading.h"

namespace desk {

/// The attributes that characters have.
TextAttributes readCharacterAttributes(const Reading& reading, const XmlElement& element);

/// The attributes that characters and paragraphs have: paragraph styles and paragraph ranges carry both.
TextAttributes readTextAttributes(const Reading& reading, const XmlElement& element);

}  // namespace desk
