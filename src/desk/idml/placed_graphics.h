#pragma once
// Placed files inside frames (the elements Image, PDF, EPS, SVG and their like) and how frames take them.

#include "desk/idml/reading.h"

namespace desk {

/// Kind, link, natural size, page, crop and embedded bytes. The item's path becomes the rectangle of the natural size.
void readPlacedGraphic(Reading& reading, const XmlElement& element, PageItem& item);

/// Of an element's FrameFittingOption child; empty without one.
FrameFitting readFrameFitting(const XmlElement& element);

ContentType readContentType(const XmlElement& element);

}  // namespace desk
