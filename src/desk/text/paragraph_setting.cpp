#include "desk/text/paragraph_setting.h"

#include <algorithm>
#include <atomic>

namespace desk {
namespace {

constexpr double raggedUnitInEms = 2.5;

uint64_t nextSerial() {
    static std::atomic<uint64_t> serial{0};
    return ++serial;
}

}  // namespace

ParagraphSetter::ParagraphSetter(const Document& document, TextStyles& styles, WordCache& words)
    : document_(document), cutter_(document, styles, words), finder_(words), setter_(words) {}

/// Rooms of the first lines; the last holds for all that follow. `hangingIndent` is negative without an indent-to-here.
void ParagraphSetter::findRooms(const ParagraphSource& source, double hangingIndent) {
    const ResolvedAttributes& a = *pieces_.paragraph;
    const size_t count = std::max<size_t>(2, source.spans.size());
    rooms_.resize(count);
    measures_.resize(count);
    for (size_t line = 0; line < count; ++line) {
        const LineSpan& span = source.spans[std::min(line, source.spans.size() - 1)];
        double left = a.leftIndent, right = a.rightIndent;
        if (line == 0) (a.rightToLeft ? right : left) += a.firstLineIndent;
        if (line > 0 && hangingIndent >= 0) left = hangingIndent;
        rooms_[line] = {span.x + left, std::max(0.0, span.width - left - right)};
        measures_[line] = rooms_[line].measure;
    }
}

/// From the column's left edge to the marker, where it stands at the desired spacing; negative without a marker.
double ParagraphSetter::indentToHere() {
    for (uint32_t i = 0; i < pieces_.pieces.size(); ++i)
        if (pieces_.pieces[i].kind == PieceKind::IndentHere) return rooms_.front().x + tabs_.distanceTo(i);
    return -1;
}

void ParagraphSetter::chooseEnds(const ParagraphSource& source) {
    const ResolvedAttributes& a = *pieces_.paragraph;
    const LineAlignment alignment = alignmentOf(a.justification, source.onRightPage);
    BreakingRules rules;
    rules.filling = alignment.justified ? LineFilling::Justified : LineFilling::Ragged;
    rules.lastLine = alignment.lastLineJustified ? LastLine::Justified : LastLine::AsItFalls;
    rules.lastLineIndent = a.lastLineIndent;
    rules.ladderLimit = a.hyphenateLadderLimit;
    rules.hyphenWeight = a.hyphenWeight;
    const double size = pieces_.pieces.empty() ? a.pointSize : pieces_.pieces.front().style->nominalSize;
    rules.raggedUnit = std::max(0.1, raggedUnitInEms * size);
    const LineMeasures measures{measures_.data(), static_cast<uint32_t>(measures_.size())};
    ParagraphTabs* tabs = pieces_.hasTabs ? &tabs_ : nullptr;
    if (a.singleLineComposer)
        breaker_.breakLineByLine(candidates_.places, measures, rules, tabs, ends_);
    else
        breaker_.breakTotalFit(candidates_.places, measures, rules, tabs, ends_);
}

/// A last line costs nothing for being short, and every further line costs: what fits one line is never divided. So
/// nobody asks where, and a text of such lines needs no hyphenation dictionary.
bool ParagraphSetter::staysOnOneLine(const ParagraphSource& source) {
    const ResolvedAttributes& a = *pieces_.paragraph;
    const LineAlignment alignment = alignmentOf(a.justification, source.onRightPage);
    if (alignment.justified && alignment.lastLineJustified) return false;
    if (!finder_.findOneLine(pieces_, measures_.front() - a.lastLineIndent, candidates_)) return false;
    ends_.assign(1, 1);
    return true;
}

void ParagraphSetter::findEnds(const ParagraphSource& source) {
    finder_.find(pieces_, *std::min_element(measures_.begin(), measures_.end()), candidates_);
    tabs_.set(pieces_, candidates_, rooms_);
    if (const double indent = indentToHere(); indent >= 0) findRooms(source, indent);
    chooseEnds(source);
}

std::shared_ptr<const LayoutParagraph> ParagraphSetter::set(const ParagraphSource& source) {
    cutter_.cut(source, pieces_);
    findRooms(source, -1);
    if (!staysOnOneLine(source)) findEnds(source);

    auto result = std::make_shared<LayoutParagraph>();
    result->serial = nextSerial();
    result->text = pieces_.display;
    result->spaceBefore = pieces_.paragraph->spaceBefore;
    result->spaceAfter = pieces_.paragraph->spaceAfter;
    result->lines.resize(ends_.size());
    setter_.start(source, pieces_, candidates_, pieces_.hasTabs ? &tabs_ : nullptr, result->text);
    uint32_t from = 0;
    for (uint32_t line = 0; line < ends_.size(); ++line) {
        const LineRoom& room = rooms_[std::min<size_t>(line, rooms_.size() - 1)];
        setter_.setLine(from, ends_[line], line, room, result->lines[line]);
        from = ends_[line];
    }
    if (document_.preferences.useParagraphLeading) {
        double largest = 0;
        for (const LayoutLine& line : result->lines) largest = std::max(largest, line.leading);
        for (LayoutLine& line : result->lines) line.leading = largest;
    }
    if (pieces_.paragraph->ruleAbove || pieces_.paragraph->ruleBelow)
        addParagraphRules(*pieces_.paragraph,
                          pieces_.pieces.empty() ? *pieces_.endStyle : *pieces_.pieces.front().style, source.spans,
                          result->lines);
    return result;
}

}  // namespace desk
