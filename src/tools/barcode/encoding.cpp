#include "tools/barcode/encoding.h"

#include <zint.h>

#include <algorithm>
#include <memory>

#include "tools/barcode/digits.h"
#include "tools/barcode/refusal.h"

namespace barcode {
namespace {

struct SymbolEnd {
    void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
};
using ZintSymbol = std::unique_ptr<zint_symbol, SymbolEnd>;

int symbologyOf(Kind kind) {
    switch (kind) {
        case Kind::Ean13:
        case Kind::Ean8:
            return BARCODE_EANX;
        case Kind::UpcA:
            return BARCODE_UPCA;
        case Kind::Code128:
            return BARCODE_CODE128;
        case Kind::Gs1Code128:
            return BARCODE_GS1_128;
        case Kind::Itf14:
            return BARCODE_ITF14;
        case Kind::QrCode:
            return BARCODE_QRCODE;
        case Kind::DataMatrix:
            return BARCODE_DATAMATRIX;
        case Kind::Pdf417:
            return BARCODE_PDF417;
    }
    return 0;
}

int inputModeOf(Kind kind) {
    if (kind == Kind::Gs1Code128) return GS1_MODE | GS1PARENS_MODE;
    return measuresOf(kind).rowHeight > 0 ? UNICODE_MODE : DATA_MODE;
}

/// The library's sentence without the number in front: "Error 275: Invalid check digit" gives the part after the colon.
std::string reasonOf(const zint_symbol& symbol) {
    std::string text = symbol.errtxt;
    if (text.starts_with("Error ") || text.starts_with("Warning ")) {
        const size_t colon = text.find(": ");
        if (colon != std::string::npos) text.erase(0, colon + 2);
    }
    return text.empty() ? "the symbol can't be drawn" : text;
}

std::vector<Run> runsOfRow(const zint_symbol& symbol, int row) {
    std::vector<Run> runs;
    int start = -1;
    for (int column = 0; column <= symbol.width; ++column) {
        const bool isDark = column < symbol.width && ((symbol.encoded_data[row][column / 8] >> (column % 8)) & 1) != 0;
        if (isDark && start < 0) start = column;
        if (!isDark && start >= 0) {
            runs.push_back({start, column - start});
            start = -1;
        }
    }
    return runs;
}

void refuseUnprintable(Kind kind, std::string_view code) {
    const std::string title(measuresOf(kind).title);
    if (code.empty()) throw Refusal(title + " needs a code; it got an empty one.");
    if (code.size() > longestCode)
        throw Refusal("a code of " + std::to_string(code.size()) + " bytes is longer than any symbol holds.");
    const auto isForeign = [](char c) { return static_cast<unsigned char>(c) > 0x7E || c < 0x20; };
    if (kind == Kind::Code128 && std::any_of(code.begin(), code.end(), isForeign))
        throw Refusal(title + " is drawn for printable ASCII alone; " + quoted(code) + " holds something else.");
}

}  // namespace

Symbol encode(Kind kind, std::string_view code) {
    refuseUnprintable(kind, code);
    std::string digits;
    if (hasFixedDigits(kind)) {
        digits = withCheckDigit(kind, code);
        // The library adds the check digit anew, which keeps it from reading eight digits as a short EAN-13 and from
        // finding fourteen too many.
        code = std::string_view(digits).substr(0, digits.size() - 1);
    }
    const ZintSymbol made(ZBarcode_Create());
    if (made == nullptr) throw Refusal("there is no memory for a symbol.");
    made->symbology = symbologyOf(kind);
    made->input_mode = inputModeOf(kind);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(code.data());
    const int outcome = ZBarcode_Encode(made.get(), bytes, static_cast<int>(code.size()));
    // A warning tells of a symbol that breaks its standard, a wrong check digit within GS1-128 for one. The mark for
    // other scripts in a square symbol is none of these.
    if (outcome != 0 && outcome != ZINT_WARN_USES_ECI)
        throw Refusal(std::string(measuresOf(kind).title) + " can't hold " + quoted(code) + ": " + reasonOf(*made) +
                      ".");

    Symbol symbol;
    symbol.width = made->width;
    for (int row = 0; row < made->rows; ++row) symbol.rows.push_back(runsOfRow(*made, row));
    if (measuresOf(kind).rowHeight > 0) return symbol;
    if (hasFixedDigits(kind)) {
        symbol.readable = digits;
    } else if (kind == Kind::Gs1Code128) {
        symbol.readable = reinterpret_cast<const char*>(made->text);
    } else {
        symbol.readable = code;
    }
    return symbol;
}

}  // namespace barcode
