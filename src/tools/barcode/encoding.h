#pragma once
// From a code to dark and light modules.

#include <string>
#include <string_view>
#include <vector>

#include "tools/barcode/kinds.h"

namespace barcode {

/// A run of dark modules of one row.
struct Run {
    int start;  ///< modules from the symbol's left edge, without the quiet zone
    int length;
};

struct Symbol {
    int width = 0;                       ///< modules, without quiet zones
    std::vector<std::vector<Run>> rows;  ///< from the top; bars have one row
    std::string readable;                ///< the text under the bars, ASCII; empty for symbols of several rows
};

/// Bytes of the longest code that is looked at: what the largest QR symbol holds (7,089 digits) and some room, so that
/// a longer one is refused with a sentence of ours.
inline constexpr size_t longestCode = 8'000;

/// Codes are UTF-8; those for bars ASCII. GS1-128 takes its application identifiers in parentheses. Throws Refusal.
Symbol encode(Kind kind, std::string_view code);

}  // namespace barcode
