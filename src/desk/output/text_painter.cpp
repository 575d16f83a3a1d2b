#include "desk/output/text_painter.h"

#include <algorithm>

namespace desk {
namespace {

/// Bytes of paragraphs remembered in one of two generations.
constexpr size_t bytesInAGeneration = 1u << 20;

/// Text lies upright on the page: its coordinates need no matrix.
bool isUpright(const Matrix& toPdf) {
    return toPdf.a == 1 && toPdf.b == 0 && toPdf.c == 0 && toPdf.d == -1;
}

/// The start of a line from that of another, by what the paragraph alone says.
TextPosition offsetOf(const PlacedParagraph& placed, uint32_t from, uint32_t to) {
    const LayoutLine& first = placed.paragraph->lines[placed.firstLine + from];
    const LayoutLine& second = placed.paragraph->lines[placed.firstLine + to];
    return {ContentBuffer::toThousandths(second.x + second.runs.front().x - first.x - first.runs.front().x),
            ContentBuffer::toThousandths(placed.baselines[from] - placed.baselines[to])};
}

/// Number of the next line with glyphs at or after `line`; the line count when there is none.
uint32_t nextWithGlyphs(const PlacedParagraph& placed, uint32_t line) {
    while (line < placed.lineCount && placed.paragraph->lines[placed.firstLine + line].runs.empty()) ++line;
    return line;
}

bool isWhole(const PlacedParagraph& placed) {
    return placed.paragraph && placed.baselines.size() >= placed.lineCount &&
           size_t{placed.firstLine} + placed.lineCount <= placed.paragraph->lines.size();
}

}  // namespace

void TextPainter::paint(const FrameLayout& layout, const TextPlace& place, Fragment& out) {
    const bool any = std::any_of(layout.paragraphs.begin(), layout.paragraphs.end(), [](const PlacedParagraph& placed) {
        return isWhole(placed) && nextWithGlyphs(placed, 0) < placed.lineCount;
    });
    paintRules(layout, place, RulesThat::LieUnderText, out);
    if (any) {
        const Matrix& m = place.toPdf;
        const bool upright = isUpright(m);
        if (!upright) {
            out.bytes.append("q\n").factor(m.a).append(' ').factor(m.b).append(' ').factor(-m.c).append(' ');
            out.bytes.factor(-m.d).append(' ').number(m.e).append(' ').number(m.f).append(" cm\n");
        }
        out.bytes.append("BT\n");
        TextPosition current;
        const Point shift = upright ? Point{m.e, m.f} : Point{};
        for (const PlacedParagraph& placed : layout.paragraphs)
            if (isWhole(placed)) paintParagraph(placed, place, shift, current, out);
        out.bytes.append(upright ? "ET\n" : "ET\nQ\n");
    }
    paintRules(layout, place, RulesThat::LieOverText, out);
}

void TextPainter::paintParagraph(const PlacedParagraph& placed, const TextPlace& place, Point shift,
                                 TextPosition& current, Fragment& out) {
    const uint32_t first = nextWithGlyphs(placed, 0);
    if (first == placed.lineCount) return;
    const LayoutLine& line = placed.paragraph->lines[placed.firstLine + first];
    const TextPosition origin{ContentBuffer::toThousandths(placed.x + line.x + line.runs.front().x + shift.x),
                              ContentBuffer::toThousandths(shift.y - placed.baselines[first])};
    const TextPosition by = origin - current;
    out.bytes.thousandths(by.x).append(' ').thousandths(by.y).append(" Td\n");

    const Key key{placed.paragraph->serial, placed.firstLine, placed.lineCount};
    if (const Remembered* known = recall(key, placed)) {
        out.add(known->content);
        current = origin + known->end;
        return;
    }
    if (!isWorthRemembering(key)) {
        lines_.beginParagraph(out, place);
        current = writeLines(placed, origin);
        return;
    }
    fresh_.clear();
    lines_.beginParagraph(fresh_, place);
    current = writeLines(placed, origin);
    out.add(fresh_);
    if (lines_.isRelocatable()) remember(key, placed, fresh_, current - origin);
}

/// Writes every line from the first with glyphs on; gives the start of the last.
TextPosition TextPainter::writeLines(const PlacedParagraph& placed, TextPosition origin) {
    const uint32_t first = nextWithGlyphs(placed, 0);
    TextPosition current = origin;
    for (uint32_t i = first; i < placed.lineCount; i = nextWithGlyphs(placed, i + 1)) {
        const TextPosition start = origin + offsetOf(placed, first, i);
        if (i != first) lines_.moveTo(current, start);
        lines_.writeLine(*placed.paragraph, placed.paragraph->lines[placed.firstLine + i], start);
        current = start;
    }
    lines_.endParagraph();
    return current;
}

const TextPainter::Remembered* TextPainter::recall(const Key& key, const PlacedParagraph& placed) {
    auto found = young_.find(key);
    if (found == young_.end()) {
        const auto older = old_.find(key);
        if (older == old_.end()) return nullptr;
        youngBytes_ += older->second.content.bytes.size();
        found = young_.insert(old_.extract(older)).position;
    }
    const std::vector<int32_t>& baselines = found->second.baselines;
    for (uint32_t i = 1; i < placed.lineCount; ++i)
        if (ContentBuffer::toThousandths(placed.baselines[i] - placed.baselines[0]) != baselines[i - 1]) return nullptr;
    return &found->second;
}

/// Most paragraphs of a merge are met once; those are not worth a copy.
bool TextPainter::isWorthRemembering(const Key& key) {
    const uint64_t hash = KeyHash()(key);
    uint64_t& slot = seen_[(hash >> 32 ^ hash) % seenSlots];
    if (slot == hash) return true;
    slot = hash;
    return false;
}

void TextPainter::remember(const Key& key, const PlacedParagraph& placed, const Fragment& content, TextPosition end) {
    if (youngBytes_ > bytesInAGeneration) {
        old_ = std::move(young_);
        young_ = Generation();
        youngBytes_ = 0;
    }
    Remembered remembered;
    remembered.content = content;
    remembered.end = end;
    for (uint32_t i = 1; i < placed.lineCount; ++i)
        remembered.baselines.push_back(
            static_cast<int32_t>(ContentBuffer::toThousandths(placed.baselines[i] - placed.baselines[0])));
    youngBytes_ += content.bytes.size();
    young_.insert_or_assign(key, std::move(remembered));
}

void TextPainter::paintRules(const FrameLayout& layout, const TextPlace& place, RulesThat which, Fragment& out) {
    for (const PlacedParagraph& placed : layout.paragraphs) {
        if (!isWhole(placed)) continue;
        for (uint32_t i = 0; i < placed.lineCount; ++i) {
            const LayoutLine& line = placed.paragraph->lines[placed.firstLine + i];
            for (const TextRule& rule : line.rules) {
                // What lies below the baseline underlines, what lies above strikes through or stands over the text.
                if ((rule.y >= 0) != (which == RulesThat::LieUnderText)) continue;
                const Paint& paint = palette_.paint(rule.color, rule.tint);
                if (!paint.paints || !(rule.weight > 0) || !(rule.width > 0)) continue;
                const double left = placed.x + line.x + rule.x;
                const double top = placed.baselines[i] + rule.y - rule.weight / 2;
                GradientPlace gradient;
                gradient.bounds = place.bounds;
                gradient.toPdf = place.toPdf;
                shapes_.setColour(out, paint, ShapePainter::Use::Fill, gradient);
                appendPath(out.bytes, rectanglePath({left, top, left + rule.width, top + rule.weight}), place.toPdf);
                out.bytes.append("f\n");
            }
        }
    }
}

}  // namespace desk
