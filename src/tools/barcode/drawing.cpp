#include "tools/barcode/drawing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace barcode {
namespace {

constexpr double pointsPerMillimetre = 72.0 / 25.4;
constexpr double courierAdvance = 0.6;       // of every glyph, in ems
constexpr double courierDigitTop = 0.622;    // the tallest digit above the baseline
constexpr double courierDigitDepth = 0.015;  // the deepest below it
constexpr double courierDescent = 0.157;     // letters and parentheses below the baseline, as Courier's Descent says

// EAN and UPC (ISO/IEC 15420): what stands below the ordinary bars, and how far the guards reach into it.
constexpr double digitRoomMillimetres = 3.08;
constexpr double guardDescent = 5;
constexpr double digitModules = 7;
constexpr double smallDigitModules = 4;  // UPC-A's first and last digit
constexpr double upcDigitDistance = 5;   // from the guards

// Other bars: text of ten modules, a gap, and for ITF-14 bearer bars of two modules above and below.
constexpr double textSize = 10;
constexpr double textGap = 1;
constexpr double bearer = 2;

/// Appends PDF operators. Numbers have up to six decimals, without trailing zeros, whatever the locale.
class Content {
  public:
    void word(std::string_view text) { text_.append(text); }

    void number(double value) {
        std::array<char, 64> buffer;
        char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 6).ptr;
        while (end[-1] == '0') --end;
        if (end[-1] == '.') --end;
        text_.append(buffer.data(), end).push_back(' ');
    }

    void number(int value) {
        std::array<char, 16> buffer;
        text_.append(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr);
        text_.push_back(' ');
    }

    void beginSymbol(double moduleMillimetres) {
        const double scale = moduleMillimetres * pointsPerMillimetre;
        text_.reserve(1024);
        word("q\n");
        number(scale);
        word("0 0 ");
        number(scale);
        word("0 0 cm\n0 0 0 1 k\n");
    }

    void rectangle(int x, double y, int width, double height) {
        number(x);
        number(y);
        number(width);
        number(height);
        word("re\n");
    }

    /// One line of text from a place on the baseline.
    void line(double size, double x, double baseline, std::string_view text) {
        word("BT\n/Courier ");
        number(size);
        word("Tf\n");
        number(x);
        number(baseline);
        word("Td\n(");
        for (char c : text) {
            if (c == '(' || c == ')' || c == '\\') text_.push_back('\\');
            text_.push_back(c);
        }
        word(") Tj\nET\n");
    }

    std::string take() {
        word("Q\n");
        return std::move(text_);
    }

  private:
    std::string text_;
};

bool hasGuards(Kind kind) {
    return kind == Kind::Ean13 || kind == Kind::Ean8 || kind == Kind::UpcA;
}

/// Guards at both ends and in the middle; with UPC-A also the bars of the first and the last digit.
bool isGuard(Kind kind, int width, const Run& bar) {
    const int edge = kind == Kind::UpcA ? 10 : 3;
    const int middle = width / 2;
    return bar.start < edge || bar.start >= width - edge || (bar.start >= middle - 2 && bar.start <= middle + 2);
}

/// Digits of which each fills a number of modules, set in the middle of the room below the bars.
void digits(Content& content, const Measures& measures, double modules, double x, std::string_view text) {
    const double room = digitRoomMillimetres / measures.moduleMillimetres;
    const double size = digitModules / courierAdvance;
    const double height = (courierDigitTop + courierDigitDepth) * size;
    const double baseline = (room - height) / 2 + courierDigitDepth * size;
    content.line(modules / courierAdvance, x, baseline, text);
}

void drawDigits(Content& content, Kind kind, const Measures& measures, const Symbol& symbol) {
    const std::string_view text = symbol.readable;
    const double left = measures.leftQuiet;
    switch (kind) {
        case Kind::Ean13:
            digits(content, measures, digitModules, left - 10, text.substr(0, 1));
            digits(content, measures, digitModules, left + 3, text.substr(1, 6));
            digits(content, measures, digitModules, left + 50, text.substr(7, 6));
            break;
        case Kind::Ean8:
            digits(content, measures, digitModules, left + 3, text.substr(0, 4));
            digits(content, measures, digitModules, left + 36, text.substr(4, 4));
            break;
        default:
            digits(content, measures, smallDigitModules, left - upcDigitDistance - smallDigitModules,
                   text.substr(0, 1));
            digits(content, measures, digitModules, left + 10, text.substr(1, 5));
            digits(content, measures, digitModules, left + 50, text.substr(6, 5));
            digits(content, measures, smallDigitModules, left + symbol.width + upcDigitDistance, text.substr(11, 1));
            break;
    }
}

std::string guardedBars(Kind kind, const Measures& measures, const Symbol& symbol) {
    const double bottom = digitRoomMillimetres / measures.moduleMillimetres;
    const double height = measures.barMillimetres / measures.moduleMillimetres;
    Content content;
    content.beginSymbol(measures.moduleMillimetres);
    for (const Run& bar : symbol.rows.front()) {
        const double descent = isGuard(kind, symbol.width, bar) ? guardDescent : 0;
        content.rectangle(measures.leftQuiet + bar.start, bottom - descent, bar.length, height + descent);
    }
    content.word("f\n");
    drawDigits(content, kind, measures, symbol);
    return content.take();
}

/// Places of a symbol of bars with one line of text below, in modules.
struct PlainBars {
    double textSize;
    double baseline;
    double bottom;  ///< of the bars
    double height;
    double bearer;  ///< thickness above and below, 0 for none
};

PlainBars placesOf(Kind kind, const Measures& measures, const Symbol& symbol) {
    PlainBars places;
    const double widest = symbol.width + measures.leftQuiet + measures.rightQuiet;
    const double fitting = widest / (courierAdvance * static_cast<double>(std::max<size_t>(symbol.readable.size(), 1)));
    places.textSize = std::min(textSize, fitting);
    places.bearer = kind == Kind::Itf14 ? bearer : 0;
    places.baseline = courierDescent * places.textSize;
    places.bottom = places.baseline + courierDigitTop * places.textSize + textGap + places.bearer;
    places.height = measures.barMillimetres / measures.moduleMillimetres;
    // ISO/IEC 15417: bars of at least 15 per cent of the symbol's width.
    if (kind == Kind::Code128) places.height = std::max(places.height, 0.15 * symbol.width);
    return places;
}

std::string plainBars(Kind kind, const Measures& measures, const Symbol& symbol) {
    const PlainBars places = placesOf(kind, measures, symbol);
    const int whole = symbol.width + measures.leftQuiet + measures.rightQuiet;
    Content content;
    content.beginSymbol(measures.moduleMillimetres);
    if (places.bearer > 0) {
        content.rectangle(0, places.bottom - places.bearer, whole, places.bearer);
        content.rectangle(0, places.bottom + places.height, whole, places.bearer);
    }
    for (const Run& bar : symbol.rows.front())
        content.rectangle(measures.leftQuiet + bar.start, places.bottom, bar.length, places.height);
    content.word("f\n");
    const double advance = courierAdvance * places.textSize * static_cast<double>(symbol.readable.size());
    content.line(places.textSize, (whole - advance) / 2, places.baseline, symbol.readable);
    return content.take();
}

std::string matrix(const Measures& measures, const Symbol& symbol) {
    Content content;
    content.beginSymbol(measures.moduleMillimetres);
    int y = measures.leftQuiet + static_cast<int>(symbol.rows.size()) * measures.rowHeight;
    for (const auto& row : symbol.rows) {
        y -= measures.rowHeight;
        for (const Run& run : row) content.rectangle(measures.leftQuiet + run.start, y, run.length, measures.rowHeight);
    }
    content.word("f\n");
    return content.take();
}

}  // namespace

std::string pageDescription(Kind kind, const Symbol& symbol) {
    const Measures& measures = measuresOf(kind);
    if (measures.rowHeight > 0) return matrix(measures, symbol);
    return hasGuards(kind) ? guardedBars(kind, measures, symbol) : plainBars(kind, measures, symbol);
}

Extent extentOf(Kind kind, const Symbol& symbol) {
    const Measures& measures = measuresOf(kind);
    const double module = measures.moduleMillimetres;
    double height = measures.barMillimetres + digitRoomMillimetres;
    if (measures.rowHeight > 0) {
        height = module * (2 * measures.leftQuiet + static_cast<int>(symbol.rows.size()) * measures.rowHeight);
    } else if (!hasGuards(kind)) {
        const PlainBars places = placesOf(kind, measures, symbol);
        height = module * (places.bottom + places.height + places.bearer);
    }
    const double width = module * (symbol.width + measures.leftQuiet + measures.rightQuiet);
    return {width * pointsPerMillimetre, height * pointsPerMillimetre};
}

}  // namespace barcode
