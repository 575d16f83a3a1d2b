#include "tools/barcode/kinds.h"

#include <algorithm>
#include <array>

namespace barcode {
namespace {

// EAN and UPC: ISO/IEC 15420 at a magnification of 1. ITF-14 (ISO/IEC 16390) and GS1-128: the module and the bars that
// the GS1 standards aim at for goods in general distribution. Code 128 (ISO/IEC 15417), QR (18004), Data
// Matrix (16022) and PDF417 (15438) leave the module to the user: here it is one that an office printer keeps.
constexpr std::array<Measures, 9> table{{
    {Kind::Ean13, "ean13", "EAN-13", 0.33, 11, 7, 22.85, 0},
    {Kind::Ean8, "ean8", "EAN-8", 0.33, 7, 7, 18.23, 0},
    {Kind::UpcA, "upca", "UPC-A", 0.33, 9, 9, 22.85, 0},
    {Kind::Code128, "code128", "Code 128", 0.33, 10, 10, 15.0, 0},
    {Kind::Gs1Code128, "gs1-128", "GS1-128", 0.495, 10, 10, 31.75, 0},
    {Kind::Itf14, "itf14", "ITF-14", 0.495, 10, 10, 31.75, 0},
    {Kind::QrCode, "qr", "QR", 0.495, 4, 4, 0, 1},
    {Kind::DataMatrix, "datamatrix", "Data Matrix", 0.495, 1, 1, 0, 1},
    {Kind::Pdf417, "pdf417", "PDF417", 0.33, 2, 2, 0, 3},
}};

}  // namespace

std::span<const Measures> allKinds() {
    return table;
}

const Measures& measuresOf(Kind kind) {
    return table.at(static_cast<size_t>(kind));
}

const Measures* measuresNamed(std::string_view name) {
    const auto* const found =
        std::find_if(table.begin(), table.end(), [&](const Measures& m) { return m.name == name; });
    return found == table.end() ? nullptr : found;
}

}  // namespace barcode
