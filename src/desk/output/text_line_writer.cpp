#include "desk/output/text_line_writer.h"

#include <cmath>
#include <numbers>

namespace desk {
namespace {

/// A glyph is moved when it would stand this far from its place, in thousandths of the em. Errors of rounding stay
/// below it and never add up, because places are compared, not distances.
constexpr double tolerance = 0.75;

/// Room that one glyph needs: an adjustment, an escaped code, string brackets.
constexpr size_t roomForGlyph = 64;

constexpr double degree = std::numbers::pi / 180;

const TextPaint& blackPaint() {
    static const TextPaint black{"Color/Black", -1, "Swatch/None", -1, 0, false};
    return black;
}

char* writeCode(char* out, uint8_t code) {
    switch (code) {
        case '\r':
            *out++ = '\\';
            *out++ = 'r';
            return out;
        case '(':
        case ')':
        case '\\':
            *out++ = '\\';
            break;
        default:
            break;
    }
    *out++ = static_cast<char>(code);
    return out;
}

/// The glyph's text; empty where the layout's range leaves the paragraph.
std::u16string_view textOf(const std::u16string& text, const PlacedGlyph& glyph) {
    if (glyph.textStart >= text.size() || glyph.textLength > text.size() - glyph.textStart) return {};
    return {text.data() + glyph.textStart, glyph.textLength};
}

}  // namespace

void TextLineWriter::beginParagraph(Fragment& out, const TextPlace& place) {
    out_ = &out;
    place_ = place;
    state_ = State();
    relocatable_ = true;
}

void TextLineWriter::endParagraph() {
    setNumber(state_.characterSpacing, 0, " Tc\n");
    setNumber(state_.wordSpacing, 0, " Tw\n");
    setNumber(state_.scale, 100000, " Tz\n");
    setNumber(state_.rise, 0, " Ts\n");
    setMode(0);
    setOverprint(false);
}

void TextLineWriter::moveTo(TextPosition from, TextPosition to) {
    const TextPosition by = to - from;
    if (by.x == 0 && by.y < 0) {
        setNumber(state_.leading, -by.y, " TL\n");
        out_->bytes.append("T*\n");
    } else {
        out_->bytes.thousandths(by.x).append(' ').thousandths(by.y).append(" Td\n");
    }
}

void TextLineWriter::setNumber(int64_t& current, int64_t wanted, std::string_view operatorName) {
    if (current == wanted) return;
    closeString();
    current = wanted;
    out_->bytes.thousandths(wanted).append(operatorName);
}

void TextLineWriter::setMode(int mode) {
    if (state_.mode == mode) return;
    closeString();
    state_.mode = mode;
    out_->bytes.integer(mode).append(" Tr\n");
}

void TextLineWriter::setOverprint(bool overprint) {
    if (state_.overprint == overprint) return;
    closeString();
    state_.overprint = overprint;
    shapes_.setState(*out_, overprint ? "<</op true/OPM 1>>" : "<</op false/OPM 0>>");
}

void TextLineWriter::setColour(const Paint*& current, const Paint& wanted, ShapePainter::Use use) {
    if (current == &wanted) return;
    closeString();
    current = &wanted;
    if (wanted.gradient) relocatable_ = false;
    GradientPlace place;
    place.bounds = place_.bounds;
    place.toPdf = place_.toPdf;
    shapes_.setColour(*out_, wanted, use, place);
}

void TextLineWriter::selectFont(uint16_t font) {
    closeString();
    const Resource& resource = state_.face->font(font);
    state_.font = font;
    appendName(out_->bytes, resource);
    out_->bytes.append(' ').thousandths(state_.size).append(" Tf\n");
    out_->resources.add(resource);
}

void TextLineWriter::selectPaint(const GlyphRun& run) {
    if (!lastFill_ || run.paint != lastPaint_) {
        const TextPaint& paint = run.paint ? *run.paint : blackPaint();
        lastPaint_ = run.paint;
        lastFill_ = &palette_.paint(paint.fillColor, paint.fillTint);
        lastStroke_ = &palette_.paint(paint.strokeColor, paint.strokeTint);
    }
    const TextPaint& paint = lastPaint_ ? *lastPaint_ : blackPaint();
    const bool strokes = lastStroke_->paints && paint.strokeWeight > 0;
    constexpr int fillMode = 0, strokeMode = 1, fillAndStrokeMode = 2, invisibleMode = 3;
    const int filled = strokes ? fillAndStrokeMode : fillMode;
    const int unfilled = strokes ? strokeMode : invisibleMode;
    setMode(lastFill_->paints ? filled : unfilled);
    if (lastFill_->paints) setColour(state_.fill, *lastFill_, ShapePainter::Use::Fill);
    if (strokes) {
        setColour(state_.stroke, *lastStroke_, ShapePainter::Use::Stroke);
        setNumber(state_.strokeWeight, ContentBuffer::toThousandths(paint.strokeWeight), " w\n");
    }
    setOverprint(paint.overprintFill);
}

void TextLineWriter::select(const GlyphRun& run, int64_t scale) {
    if (run.face != lastFace_) {
        lastFace_ = run.face;
        face_ = &fonts_.use(*run.face);
    }
    const int64_t size = ContentBuffer::toThousandths(run.size * run.verticalScale);
    if (state_.face != face_ || state_.size != size) {
        state_.face = face_;
        state_.size = size;
        state_.font = -1;  // set when the first glyph tells which
    }
    selectPaint(run);
    // Spacing operands are scaled with the text.
    const double factor = static_cast<double>(scale) / 100000;
    setNumber(state_.scale, scale, " Tz\n");
    setNumber(state_.characterSpacing, ContentBuffer::toThousandths(run.letterSpacing / factor), " Tc\n");
    setNumber(state_.wordSpacing, ContentBuffer::toThousandths(run.wordSpacing / factor), " Tw\n");
}

/// "[(": the bracket becomes a space if no adjustment comes.
void TextLineWriter::openString() {
    stringStart_ = out_->bytes.size();
    stringOpen_ = true;
    stringAdjusted_ = false;
}

void TextLineWriter::closeString() {
    if (!stringOpen_) return;
    stringOpen_ = false;
    if (stringAdjusted_) {
        out_->bytes.append(")]TJ\n");
    } else {
        out_->bytes.at(stringStart_) = ' ';
        out_->bytes.append(")Tj\n");
    }
}

void TextLineWriter::writeRun(const LayoutParagraph& paragraph, const GlyphRun& run, double lineStart, double& shown) {
    if (!run.face || run.glyphs.empty() || !(run.size > 0) || !(run.horizontalScale > 0) || !(run.verticalScale > 0))
        return;
    const int64_t scale = ContentBuffer::toThousandths(100 * run.horizontalScale / run.verticalScale);
    const int64_t size = ContentBuffer::toThousandths(run.size * run.verticalScale);
    if (scale <= 0 || size <= 0) return;
    select(run, scale);
    const double factor = static_cast<double>(scale) / 100000;
    const double unit = static_cast<double>(size) / 1e6 * factor;  // points in a thousandth of the em
    const double characterSpacing = static_cast<double>(state_.characterSpacing) / 1000 * factor;
    const double wordSpacing = static_cast<double>(state_.wordSpacing) / 1000 * factor;
    const double largestError = tolerance * unit;
    EmbeddedFace& face = *face_;
    ContentBuffer& bytes = out_->bytes;
    double pen = run.x - lineStart;
    float lift = 0;
    setNumber(state_.rise, ContentBuffer::toThousandths(run.rise), " Ts\n");
    for (const PlacedGlyph& glyph : run.glyphs) {
        const CodedGlyph& coded = face.coded(glyph.glyph, textOf(paragraph.text, glyph));
        if (coded.font != state_.font) selectFont(coded.font);
        if (glyph.yOffset != lift) {
            lift = glyph.yOffset;
            setNumber(state_.rise, ContentBuffer::toThousandths(run.rise + lift), " Ts\n");
        }
        const double error = pen + glyph.xOffset - shown;
        int64_t adjustment = 0;
        if (std::abs(error) >= largestError) adjustment = std::llround(-error / unit);
        char* out = bytes.room(roomForGlyph);
        if (!stringOpen_) {
            openString();
            *out++ = '[';
            if (adjustment != 0) out = ContentBuffer::writeInteger(out, adjustment);
            *out++ = '(';
        } else if (adjustment != 0) {
            *out++ = ')';
            out = ContentBuffer::writeInteger(out, adjustment);
            *out++ = '(';
        }
        if (adjustment != 0) {
            stringAdjusted_ = true;
            shown -= static_cast<double>(adjustment) * unit;
        }
        bytes.advance(writeCode(out, coded.code));
        shown += coded.width * unit + characterSpacing;
        if (coded.code == ' ') shown += wordSpacing;
        pen += glyph.advance;
    }
}

/// The text matrix leans; after it the line goes on where it was.
void TextLineWriter::writeSkewed(const LayoutParagraph& paragraph, const GlyphRun& run, double lineStart,
                                 TextPosition origin) {
    closeString();
    relocatable_ = false;
    ContentBuffer& bytes = out_->bytes;
    const int64_t offset = ContentBuffer::toThousandths(run.x - lineStart);
    bytes.append("1 0 ").factor(std::tan(run.skew * degree)).append(" 1 ").thousandths(origin.x + offset);
    bytes.append(' ').thousandths(origin.y).append(" Tm\n");
    double shown = 0;
    writeRun(paragraph, run, run.x, shown);
    closeString();
    bytes.append("1 0 0 1 ").thousandths(origin.x).append(' ').thousandths(origin.y).append(" Tm\n");
}

void TextLineWriter::writeLine(const LayoutParagraph& paragraph, const LayoutLine& line, TextPosition origin) {
    const double lineStart = line.runs.empty() ? 0 : line.runs.front().x;
    double shown = 0;
    for (const GlyphRun& run : line.runs) {
        if (run.skew != 0 && std::abs(run.skew) < 89) {
            writeSkewed(paragraph, run, lineStart, origin);
            shown = 0;
        } else {
            writeRun(paragraph, run, lineStart, shown);
        }
    }
    closeString();
}

}  // namespace desk
