#include "desk/text/line_breaking.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace desk {
namespace {

/// Rounding of sums must not push a word out of a line that it fits exactly.
constexpr double roundingSlack = 1e-3;

// Costs in the units of the classic paragraph builder: a line's cost is the square of its badness and these.
constexpr double linePenalty = 10;
constexpr double justifiedHyphenPenalty = 50;
constexpr double raggedHyphenPenalty = 70;
constexpr double consecutiveHyphenDemerits = 3000;
constexpr double lastHyphenDemerits = 2500;
constexpr double unevenDemerits = 3000;
constexpr double emergencyDemerits = 1e7;
constexpr double overfullDemerits = 1e12;
constexpr double worstBadness = 10000;

/// How many units of slack a ragged line may have for each step of tolerance.
constexpr double raggedUnitsTolerated = 2;

double badnessOf(double ratio) {
    return std::min(worstBadness, 100 * ratio * ratio * ratio);
}

uint8_t fitnessOf(double ratio, bool shrunk) {
    if (shrunk) return ratio > 0.5 ? 0 : 1;
    return ratio > 1 ? 3 : ratio > 0.5 ? 2 : 1;
}

LineCost justifiedCost(const Extent& line, double slack, double measure, bool mayStayShort, double tolerance) {
    LineCost cost;
    if (slack < 0) {
        cost.tooFull = -slack > line.shrink + roundingSlack;
        if (cost.tooFull) return cost;
        const double ratio = line.shrink > 0 ? std::min(1.0, -slack / line.shrink) : 0;
        cost.badness = badnessOf(ratio);
        cost.fitness = fitnessOf(ratio, true);
        cost.fits = true;
        return cost;
    }
    if (mayStayShort) {
        cost.fits = true;
        return cost;
    }
    const double ratio = line.stretch > 1e-9 ? slack / line.stretch : slack < roundingSlack ? 0 : 1e6;
    cost.fits = ratio <= tolerance;
    cost.fitness = fitnessOf(ratio, false);
    // Beyond all measure the emptier line is still the worse one.
    cost.badness = badnessOf(ratio) + (ratio > 4 ? 1000 * slack / std::max(measure, 1.0) : 0);
    return cost;
}

/// Squared where justified lines are cubed: an unfilled end is seen as it grows, not only when it is gross.
LineCost raggedCost(double slack, double unit, bool isLast, double tolerance) {
    LineCost cost;
    cost.tooFull = slack < -roundingSlack;
    if (cost.tooFull) return cost;
    const double ratio = std::max(0.0, slack) / unit;
    cost.fits = isLast || ratio <= tolerance * raggedUnitsTolerated;
    if (!isLast) cost.badness = 100 * ratio * ratio;
    return cost;
}

}  // namespace

double LineMeasures::largest() const {
    return *std::max_element(widths, widths + count);
}
double LineMeasures::smallest() const {
    return *std::min_element(widths, widths + count);
}

LineCost costOfLine(const Extent& line, double measure, bool isLast, double tolerance, const BreakingRules& rules) {
    if (isLast) measure -= rules.lastLineIndent;
    const double slack = measure - line.natural;
    if (rules.filling == LineFilling::Ragged) return raggedCost(slack, rules.raggedUnit, isLast, tolerance);
    return justifiedCost(line, slack, measure, isLast && rules.lastLine == LastLine::AsItFalls, tolerance);
}

double demerits(const LineCost& line, BreakKind end, const BreakingRules& rules, bool isFirst, uint8_t fitnessBefore,
                uint32_t hyphensBefore) {
    const double base = linePenalty + line.badness;
    double sum = base * base;
    if (end == BreakKind::Hyphen) {
        const bool ragged = rules.filling == LineFilling::Ragged;
        const double penalty = (ragged ? raggedHyphenPenalty : justifiedHyphenPenalty) * rules.hyphenWeight / 5;
        sum += penalty * penalty;
        if (hyphensBefore > 0) sum += consecutiveHyphenDemerits;
    } else if (end == BreakKind::Emergency) {
        sum += emergencyDemerits;
    } else if (end == BreakKind::End && hyphensBefore > 0) {
        sum += lastHyphenDemerits;
    }
    const int step = static_cast<int>(line.fitness) - static_cast<int>(fitnessBefore);
    if (!isFirst && rules.filling == LineFilling::Justified && (step > 1 || step < -1)) sum += unevenDemerits;
    return sum;
}

/// How much a later candidate's line may be narrower than an earlier one's: by hyphens and by kerning at breaks.
static double runningBack(const std::vector<BreakCandidate>& candidates) {
    double widest = 0;
    for (const BreakCandidate& candidate : candidates)
        widest = std::max(widest, candidate.end.natural - candidate.start.natural);
    return widest + 2;
}

static Extent between(const Extent& start, const Extent& end) {
    return {end.natural - start.natural, end.stretch - start.stretch, end.shrink - start.shrink};
}

static double narrowestWidth(const Extent& line, LineFilling filling) {
    return filling == LineFilling::Ragged ? line.natural : line.natural - line.shrink;
}

Extent LineBreaker::extentOf(uint32_t from, uint32_t to, uint32_t line) const {
    if (tabs_ && tabs_->hasTab(from, to)) return tabs_->extent(from, to, line);
    return between((*candidates_)[from].start, (*candidates_)[to].end);
}

void LineBreaker::addNode(const Node& node, uint32_t firstOfCandidate) {
    for (uint32_t i = firstOfCandidate; i < nodes_.size(); ++i) {
        Node& known = nodes_[i];
        if (known.fitness != node.fitness || known.hyphens != node.hyphens || known.line != node.line) continue;
        if (node.demerits < known.demerits) known = node;
        return;
    }
    nodes_.push_back(node);
}

/// Gives the least width that the line needs wherever it stands; the start must have nodes.
double LineBreaker::addLine(uint32_t from, uint32_t to, double tolerance, bool isLastPass) {
    const uint32_t firstNew = firstNode_[to];
    const BreakCandidate& end = (*candidates_)[to];
    const bool isLast = end.kind == BreakKind::End;
    double narrowest = std::numeric_limits<double>::infinity();
    uint32_t costedLine = UINT32_MAX;
    LineCost cost;
    for (uint32_t n = firstNode_[from]; n < firstNode_[from + 1]; ++n) {
        const Node& before = nodes_[n];
        if (costedLine != before.line) {
            costedLine = before.line;
            const Extent extent = extentOf(from, to, before.line);
            cost = costOfLine(extent, measures_.of(before.line), isLast, tolerance, rules_);
            narrowest = std::min(narrowest, narrowestWidth(extent, rules_.filling));
        }
        // Nothing fits: what can't be divided any further stands in a line of its own.
        const bool overfull = cost.tooFull && isLastPass && from + 1 == to;
        if (!cost.fits && !overfull) continue;
        if (breaksLadderLimit(end.kind, before.hyphens, rules_)) continue;
        Node node;
        node.demerits = before.demerits + demerits(cost, end.kind, rules_, from == 0, before.fitness, before.hyphens);
        if (overfull) node.demerits += overfullDemerits;
        node.previous = static_cast<int32_t>(n);
        node.candidate = to;
        node.line = varying_ ? std::min(before.line + 1, measures_.count - 1) : 1;
        node.fitness = rules_.filling == LineFilling::Justified ? cost.fitness : 1;
        node.hyphens =
            end.kind == BreakKind::Hyphen
                ? static_cast<uint8_t>(std::min<uint32_t>(before.hyphens + 1u, rules_.ladderLimit > 0 ? 255 : 1))
                : 0;
        addNode(node, firstNew);
    }
    return narrowest;
}

/// By the sums, in which tabs have no width: with them the line is wider yet.
void LineBreaker::forgetFullLines(uint32_t to) {
    const Extent& end = (*candidates_)[to].end;
    for (; oldest_ + 1 < to; ++oldest_)
        if (narrowestWidth(between((*candidates_)[oldest_].start, end), rules_.filling) <= largestMeasure_ + margin_)
            return;
}

void LineBreaker::linesEndingAt(uint32_t to, double tolerance, bool isLastPass) {
    forgetFullLines(to);
    const BreakCandidate& end = (*candidates_)[to];
    const bool mayBeShort =
        end.kind == BreakKind::End || (rules_.filling == LineFilling::Ragged && isLastPass) || tabs_;
    const double tooWide = largestMeasure_ * (varying_ ? 2 : 1) + margin_;
    // From the latest start backwards: lines get fuller. Those much too empty are passed over without weighing.
    for (uint32_t from = to; from-- > oldest_;) {
        if (firstNode_[from] == firstNode_[from + 1]) continue;
        if (!mayBeShort && !isLastPass) {
            const Extent& start = (*candidates_)[from].start;
            const double room = rules_.filling == LineFilling::Justified
                                    ? tolerance * (end.end.stretch - start.stretch)
                                    : tolerance * raggedUnitsTolerated * rules_.raggedUnit;
            if (end.end.natural - start.natural + room + margin_ < smallestMeasure_) continue;
        }
        const double width = addLine(from, to, tolerance, isLastPass);
        // Where tabs stand, an earlier start makes the line no narrower either, but for that of the paragraph, which
        // has an indent of its own.
        if (tabs_ && width > tooWide && from > oldest_) from = oldest_ + 1;
    }
}

bool LineBreaker::tryTolerance(double tolerance, bool isLastPass) {
    const uint32_t count = static_cast<uint32_t>(candidates_->size());
    nodes_.clear();
    firstNode_.assign(count + 1, 0);
    nodes_.push_back({});
    firstNode_[1] = 1;
    oldest_ = 0;
    for (uint32_t to = 1; to < count; ++to) {
        firstNode_[to] = static_cast<uint32_t>(nodes_.size());
        linesEndingAt(to, tolerance, isLastPass);
        firstNode_[to + 1] = static_cast<uint32_t>(nodes_.size());
        const BreakKind kind = (*candidates_)[to].kind;
        if (kind != BreakKind::Forced && kind != BreakKind::End) continue;
        if (firstNode_[to] == firstNode_[to + 1]) return false;
        oldest_ = to;
    }
    return true;
}

void LineBreaker::breakTotalFit(const std::vector<BreakCandidate>& candidates, const LineMeasures& measures,
                                const BreakingRules& rules, TabbedLines* tabs, std::vector<uint32_t>& ends) {
    ends.clear();
    if (candidates.size() < 2) return;
    candidates_ = &candidates;
    measures_ = measures;
    rules_ = rules;
    tabs_ = tabs;
    varying_ = false;
    for (uint32_t line = 2; line < measures.count; ++line)
        varying_ = varying_ || measures.widths[line] != measures.widths[1];
    largestMeasure_ = measures.largest();
    smallestMeasure_ = measures.smallest();
    margin_ = runningBack(candidates);
    const uint32_t passes = static_cast<uint32_t>(std::size(tolerances));
    for (uint32_t pass = 0; pass < passes; ++pass)
        if (tryTolerance(tolerances[pass], pass + 1 == passes)) break;
    const uint32_t last = static_cast<uint32_t>(candidates.size() - 1);
    uint32_t best = firstNode_[last];
    if (best >= nodes_.size()) return breakLineByLine(candidates, measures, rules, tabs, ends);
    for (uint32_t n = best + 1; n < nodes_.size(); ++n)
        if (nodes_[n].demerits < nodes_[best].demerits) best = n;
    for (int32_t n = static_cast<int32_t>(best); nodes_[static_cast<size_t>(n)].previous >= 0;
         n = nodes_[static_cast<size_t>(n)].previous)
        ends.push_back(nodes_[static_cast<size_t>(n)].candidate);
    std::reverse(ends.begin(), ends.end());
}

void LineBreaker::breakLineByLine(const std::vector<BreakCandidate>& candidates, const LineMeasures& measures,
                                  const BreakingRules& rules, TabbedLines* tabs, std::vector<uint32_t>& ends) {
    ends.clear();
    candidates_ = &candidates;
    tabs_ = tabs;
    const uint32_t count = static_cast<uint32_t>(candidates.size());
    const double margin = runningBack(candidates);
    uint32_t from = 0, line = 0, hyphens = 0;
    while (from + 1 < count) {
        uint32_t chosen = from + 1;
        bool chosenIsEmergency = candidates[chosen].kind == BreakKind::Emergency;
        for (uint32_t to = from + 1; to < count; ++to) {
            const BreakKind kind = candidates[to].kind;
            const Extent extent = extentOf(from, to, line);
            const LineCost cost = costOfLine(extent, measures.of(line), kind == BreakKind::End,
                                             tolerances[std::size(tolerances) - 1], rules);
            if (cost.tooFull && extent.natural - extent.shrink > measures.of(line) + margin) break;
            const bool better = kind != BreakKind::Emergency || chosenIsEmergency;
            if (!cost.tooFull && better && !breaksLadderLimit(kind, hyphens, rules)) {
                chosen = to;
                chosenIsEmergency = kind == BreakKind::Emergency;
            }
            if (kind == BreakKind::Forced || kind == BreakKind::End) break;
        }
        hyphens = candidates[chosen].kind == BreakKind::Hyphen ? hyphens + 1 : 0;
        ends.push_back(chosen);
        from = chosen;
        ++line;
    }
}

}  // namespace desk
