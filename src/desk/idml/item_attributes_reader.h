#pragma once
// The look of page items as items and object styles carry it: paint, strokes, corners, transparency, text frame
// options, text wrap, labels.

#include "desk/idml/reading.h"

namespace desk {

ItemAttributes readItemAttributes(const XmlElement& element);

/// Of an element's TextFramePreference child; empty without one.
TextFrameOptions readTextFrameOptions(const XmlElement& element);

/// Takes what the element's TextWrapPreference says over what stands in `wrap`. True when there is one.
bool readTextWrap(const XmlElement& element, TextWrap& wrap);

/// Labels in the element's Properties.
void readLabels(const XmlElement& element, Labels& labels);

}  // namespace desk
