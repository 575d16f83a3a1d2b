#pragma once
// The kinds of symbol and their measures at natural size.

#include <span>
#include <string_view>

namespace barcode {

enum class Kind { Ean13, Ean8, UpcA, Code128, Gs1Code128, Itf14, QrCode, DataMatrix, Pdf417 };

/// How a symbol of a kind is drawn. Lengths are in modules (X) unless they are named in millimetres.
struct Measures {
    Kind kind;
    std::string_view name;   ///< as the command line gives it: "ean13"
    std::string_view title;  ///< as a person says it: "EAN-13"
    double moduleMillimetres;
    int leftQuiet;
    int rightQuiet;
    double barMillimetres;  ///< height of an ordinary bar; 0 for symbols of several rows
    int rowHeight;          ///< of a row of a symbol of several rows; 0 for bars
};

/// All kinds, in the order in which help lists them.
std::span<const Measures> allKinds();

const Measures& measuresOf(Kind kind);

/// Null for a name that stands for no kind.
const Measures* measuresNamed(std::string_view name);

}  // namespace barcode
