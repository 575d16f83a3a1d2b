#pragma once
// Pieces of PDF syntax as text. Inner header of this folder.

#include <string>
#include <string_view>

#include "desk/model/geometry.h"

namespace desk {

/// At most four decimals, no exponent, no trailing zeros.
void appendNumber(std::string& out, double value);

/// "12 0 R"
std::string referenceTo(uint32_t number);

/// "/BBox[left bottom right top]". Rectangles of pages have y upwards: `top` of the rectangle is the lower edge.
std::string boundingBoxEntry(const Rect& box);

/// A name with its slash; bytes outside the regular characters become #xx.
void appendName(std::string& out, std::string_view name);

}  // namespace desk
