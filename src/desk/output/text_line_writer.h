#pragma once
// Lines of glyphs as text operators: the hot path of every export.

#include "desk/output/font_embedder.h"
#include "desk/output/shape_painter.h"
#include "desk/text/layout.h"

namespace desk {

/// Where the text of a frame lies.
struct TextPlace {
    Matrix toPdf;  ///< the frame's inner coordinates to those of the page, y upwards
    Rect bounds;   ///< of the frame, for gradients
};

/// A place in text space, in thousandths of a point, y upwards.
struct TextPosition {
    int64_t x = 0, y = 0;
    TextPosition operator+(TextPosition other) const { return {x + other.x, y + other.y}; }
    TextPosition operator-(TextPosition other) const { return {x - other.x, y - other.y}; }
    bool operator==(const TextPosition&) const = default;
};

/// Writes the lines of one paragraph after another, between BT and ET. A paragraph takes nothing of the text state for
/// granted but the defaults of spacing, scaling, rise and rendering mode, and leaves these as they were.
class TextLineWriter {
  public:
    TextLineWriter(FontEmbedder& fonts, Palette& palette, ShapePainter& shapes)
        : fonts_(fonts), palette_(palette), shapes_(shapes) {}

    void beginParagraph(Fragment& out, const TextPlace& place);
    /// Moves from the start of the line before to this line's.
    void moveTo(TextPosition from, TextPosition to);
    /// `origin` is where the line begins: that of its first glyph.
    void writeLine(const LayoutParagraph& paragraph, const LayoutLine& line, TextPosition origin);
    void endParagraph();

    /// What was written since beginParagraph holds for any place.
    bool isRelocatable() const { return relocatable_; }

  private:
    /// What the reader of the file has set. Numbers are thousandths.
    struct State {
        const EmbeddedFace* face = nullptr;
        int font = -1;
        int64_t size = 0;
        int64_t characterSpacing = 0, wordSpacing = 0, scale = 100000, rise = 0;
        int64_t leading = -1;
        int64_t strokeWeight = -1;
        int mode = 0;
        const Paint* fill = nullptr;
        const Paint* stroke = nullptr;
        bool overprint = false;
    };

    void writeRun(const LayoutParagraph& paragraph, const GlyphRun& run, double lineStart, double& shown);
    void writeSkewed(const LayoutParagraph& paragraph, const GlyphRun& run, double lineStart, TextPosition origin);
    void select(const GlyphRun& run, int64_t scale);
    void selectFont(uint16_t font);
    void selectPaint(const GlyphRun& run);
    void setNumber(int64_t& current, int64_t wanted, std::string_view operatorName);
    void setMode(int mode);
    void setColour(const Paint*& current, const Paint& wanted, ShapePainter::Use use);
    void setOverprint(bool overprint);
    void openString();
    void closeString();

    FontEmbedder& fonts_;
    Palette& palette_;
    ShapePainter& shapes_;
    Fragment* out_ = nullptr;
    TextPlace place_;
    State state_;
    bool relocatable_ = true;
    bool stringOpen_ = false;
    bool stringAdjusted_ = false;
    size_t stringStart_ = 0;
    // The last face and paint, because the next run mostly has the same.
    const FontFace* lastFace_ = nullptr;
    EmbeddedFace* face_ = nullptr;
    std::shared_ptr<const TextPaint> lastPaint_;
    const Paint* lastFill_ = nullptr;
    const Paint* lastStroke_ = nullptr;
};

}  // namespace desk
