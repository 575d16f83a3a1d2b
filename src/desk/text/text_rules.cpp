// Strokes along the text: underline, strike-through, rules above and below paragraphs.
#include <algorithm>
#include <cmath>

#include "desk/text/line_setting.h"

namespace desk {

void LineSetter::decorate(const Item& item, double start, double end, LayoutLine& line) {
    const TextStyle& style = *item.style;
    const ResolvedAttributes& a = *style.attributes;
    constexpr double automatic = -9999;
    const double unit = style.nominalSize / 1000;
    const auto add = [&](double y, double weight, const std::string& color, double tint) {
        const bool textColor = color.empty() || color == "Text Color";
        const std::string& used = textColor ? style.paint->fillColor : color;
        const double usedTint = textColor && tint < 0 ? style.paint->fillTint : tint;
        for (TextRule& rule : line.rules) {
            const bool continues = rule.y == y && rule.weight == weight && rule.color == used && rule.tint == usedTint;
            if (!continues || std::abs(rule.x + rule.width - start) > 1e-6) continue;
            rule.width = end - rule.x;
            return;
        }
        line.rules.push_back({start, end - start, y, weight, used, usedTint});
    };
    double thickness = style.face->underlineThickness() * unit;
    if (thickness <= 0) thickness = style.nominalSize / 20;
    if (a.underline) {
        const double weight = a.underlineWeight == automatic ? thickness : a.underlineWeight;
        const double y = a.underlineOffset == automatic ? -style.face->underlinePosition() * unit : a.underlineOffset;
        add(y - a.baselineShift, weight, a.underlineColor, a.underlineTint);
    }
    if (a.strikeThrough) {
        const double weight = a.strikeThroughWeight == automatic ? thickness : a.strikeThroughWeight;
        const double offset = a.strikeThroughOffset == automatic ? style.xHeight / 2 : a.strikeThroughOffset;
        add(-offset - a.baselineShift, weight, a.strikeThroughColor, a.strikeThroughTint);
    }
}

void addParagraphRules(const ResolvedAttributes& a, const TextStyle& style, const std::vector<LineSpan>& spans,
                       std::vector<LayoutLine>& lines) {
    const auto add = [&](LayoutLine& line, const LineSpan& span, double y, double weight, double leftIndent,
                         double rightIndent, bool textWidth, const std::string& color, double tint) {
        double left = span.x - line.x, right = span.x + span.width - line.x;
        if (textWidth) {
            left = line.runs.empty() ? 0 : line.runs.front().x;
            right = left;
            for (const GlyphRun& run : line.runs) {
                double x = run.x;
                for (const PlacedGlyph& glyph : run.glyphs) x += glyph.advance;
                right = std::max(right, std::min(x, line.measure));
            }
        }
        const bool textColor = color.empty() || color == "Text Color";
        line.rules.push_back({left + leftIndent, right - rightIndent - left - leftIndent, y, weight,
                              textColor ? style.paint->fillColor : color,
                              textColor && tint < 0 ? style.paint->fillTint : tint});
    };
    if (a.ruleAbove)
        add(lines.front(), spans.front(), -a.ruleAboveOffset - a.ruleAboveWeight / 2, a.ruleAboveWeight,
            a.ruleAboveLeftIndent, a.ruleAboveRightIndent, a.ruleAboveTextWidth, a.ruleAboveColor, a.ruleAboveTint);
    if (a.ruleBelow)
        add(lines.back(), spans[std::min(lines.size(), spans.size()) - 1], a.ruleBelowOffset + a.ruleBelowWeight / 2,
            a.ruleBelowWeight, a.ruleBelowLeftIndent, a.ruleBelowRightIndent, a.ruleBelowTextWidth, a.ruleBelowColor,
            a.ruleBelowTint);
}

}  // namespace desk
