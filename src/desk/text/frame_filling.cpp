#include "desk/text/frame_filling.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

/// A baseline may lie this far below the column's bottom: rounding of sums of leadings.
constexpr double fitSlack = 1e-3;
/// Rooms that differ by less are the same room.
constexpr double spanSlack = 1e-6;

double firstBaselineOffset(const TextColumn& column, const LayoutLine& line) {
    double offset = line.ascent;
    switch (column.firstBaseline) {
        case FirstBaseline::AscentOffset:
            break;
        case FirstBaseline::CapHeight:
            offset = line.capHeight;
            break;
        case FirstBaseline::LeadingOffset:
            offset = line.leading;
            break;
        case FirstBaseline::EmboxHeight:
            offset = line.emHeight;
            break;
        case FirstBaseline::XHeight:
            offset = line.xHeight;
            break;
        case FirstBaseline::FixedHeight:
            return column.minimumFirstBaseline;
    }
    return std::max(offset, column.minimumFirstBaseline);
}

bool differ(const LineSpan& a, const LineSpan& b) {
    return std::abs(a.x - b.x) > spanSlack || std::abs(a.width - b.width) > spanSlack;
}

const LineSpan& assumedSpan(const ParagraphSource& source, uint32_t line) {
    return source.spans[std::min<size_t>(line, source.spans.size() - 1)];
}

}  // namespace

void FrameFiller::nextColumn(Cursor& cursor) const {
    ++cursor.column;
    cursor.started = false;
    cursor.spaceAfter = 0;
}

void FrameFiller::obeyBreak(Cursor& cursor, ParagraphBreak where) const {
    if (where == ParagraphBreak::Anywhere || atEnd(cursor)) return;
    const TextColumn& from = columns_[cursor.column];
    const auto satisfies = [&](const TextColumn& column) {
        switch (where) {
            case ParagraphBreak::NextFrame:
                return column.frameIndex != from.frameIndex;
            case ParagraphBreak::NextPage:
                return column.page != from.page;
            case ParagraphBreak::NextOddPage:
                return column.page != from.page && column.pageNumber % 2 == 1;
            case ParagraphBreak::NextEvenPage:
                return column.page != from.page && column.pageNumber % 2 == 0;
            default:
                return true;
        }
    };
    do nextColumn(cursor);
    while (!atEnd(cursor) && !satisfies(columns_[cursor.column]));
}

double FrameFiller::baselineOf(const LayoutParagraph& paragraph, uint32_t line, const ResolvedAttributes& attributes,
                               const Cursor& cursor) const {
    const TextColumn& column = columns_[cursor.column];
    const LayoutLine& setLine = paragraph.lines[line];
    double baseline = cursor.baseline + setLine.leading;
    if (!cursor.started)
        baseline = column.area.top + firstBaselineOffset(column, setLine);
    else if (line == 0)
        baseline += cursor.spaceAfter + paragraph.spaceBefore;
    if (attributes.alignToBaselineGrid && column.gridStep > 0) {
        const double steps = std::ceil((baseline - column.gridStart) / column.gridStep - 1e-6);
        baseline = column.gridStart + std::max(0.0, steps) * column.gridStep;
    }
    return baseline;
}

/// Moves the cursor onto the line's place in this or a later column. False when no column has room.
bool FrameFiller::placeLine(const LayoutParagraph& paragraph, uint32_t line, const ResolvedAttributes& attributes,
                            Cursor& cursor, LineSpan& span) const {
    const LayoutLine& setLine = paragraph.lines[line];
    for (; !atEnd(cursor); nextColumn(cursor)) {
        const TextColumn& column = columns_[cursor.column];
        double baseline = baselineOf(paragraph, line, attributes, cursor);
        while (baseline <= column.area.bottom + fitSlack) {
            const SpanAnswer answer = spanIn(column, baseline - setLine.ascent, baseline);
            if (answer.hasRoom) {
                span = answer.span;
                cursor.baseline = baseline;
                cursor.started = true;
                return true;
            }
            baseline = std::max(baseline + 0.1, answer.tryAgainAt + setLine.ascent);
        }
    }
    return false;
}

/// Rooms of the lines below in a column of changing width, as if all had the leading of this one: right guesses save
/// setting the paragraph again for each line.
void FrameFiller::lookAhead(const LayoutLine& line, const Cursor& cursor, std::vector<LineSpan>& spans) const {
    constexpr size_t farEnough = 500;
    const TextColumn& column = columns_[cursor.column];
    if (column.isRegular() || line.leading <= 0) return;
    double baseline = cursor.baseline + line.leading;
    while (baseline <= column.area.bottom + fitSlack && spans.size() < farEnough) {
        const SpanAnswer answer = spanIn(column, baseline - line.ascent, baseline);
        if (answer.hasRoom) spans.push_back(answer.span);
        baseline = answer.hasRoom ? baseline + line.leading : std::max(baseline + 0.1, answer.tryAgainAt + line.ascent);
    }
}

/// How many of the lines that fit at a column's end stay there.
uint32_t FrameFiller::keptLines(const LayoutParagraph& paragraph, const ResolvedAttributes& a, uint32_t firstInColumn,
                                uint32_t placed, bool columnHadText) const {
    const uint32_t count = static_cast<uint32_t>(paragraph.lines.size());
    const uint32_t behind = count - firstInColumn - placed;
    if (behind == 0 || placed == 0) return placed;
    const bool startsHere = firstInColumn == 0;
    const uint32_t moveAll = startsHere && columnHadText ? 0 : placed;
    if (a.keepAllLinesTogether) return moveAll;
    if (!a.keepLinesTogether) return placed;
    uint32_t kept = placed;
    const uint32_t last = static_cast<uint32_t>(std::max(a.keepLastLines, 0));
    if (behind < last) kept = placed > last - behind ? placed - (last - behind) : 0;
    if (startsHere && kept < static_cast<uint32_t>(std::max(a.keepFirstLines, 0))) return moveAll;
    return kept == 0 && !columnHadText ? placed : kept;
}

FrameFiller::Attempt FrameFiller::tryLines(const ParagraphSource& source, const LayoutParagraph& paragraph,
                                           const ResolvedAttributes& attributes, Cursor cursor, SpanCheck check) const {
    Attempt attempt;
    const uint32_t count = static_cast<uint32_t>(paragraph.lines.size());
    attempt.lines.reserve(count);
    Cursor columnStart = cursor;
    uint32_t firstInColumn = 0;
    uint32_t keptColumn = UINT32_MAX;  // keep rules were applied here once: the second time lines fall as they fit
    for (uint32_t line = 0; line < count;) {
        Cursor next = cursor;
        LineSpan span;
        const bool found = !paragraph.lines[line].tooWide && placeLine(paragraph, line, attributes, next, span);
        const bool leavesColumn = found ? next.column != cursor.column : true;
        if (leavesColumn && line > firstInColumn && keptColumn != cursor.column) {
            keptColumn = cursor.column;
            const uint32_t placed = line - firstInColumn;
            const uint32_t kept = keptLines(paragraph, attributes, firstInColumn, placed, columnStart.started);
            if (kept < placed) {
                line = firstInColumn + kept;
                attempt.lines.resize(line);
                nextColumn(cursor);
                columnStart = cursor;
                firstInColumn = line;
                continue;
            }
        }
        if (!found) {
            attempt.overset = true;
            cursor.column = static_cast<uint32_t>(columns_.size());
            break;
        }
        if (leavesColumn) {
            columnStart = cursor;
            columnStart.started = false;
            firstInColumn = line;
        }
        if (check == SpanCheck::Strict && differ(span, assumedSpan(source, line))) {
            attempt.mismatch = static_cast<int>(line);
            attempt.wanted.assign(1, span);
            lookAhead(paragraph.lines[line], next, attempt.wanted);
            return attempt;
        }
        attempt.lines.push_back({next.column, next.baseline});
        cursor = next;
        ++line;
    }
    attempt.after = cursor;
    attempt.after.spaceAfter = paragraph.spaceAfter;
    return attempt;
}

/// Sets the paragraph for the column it starts in; where lines come to stand in other rooms, sets it again for these.
FrameFiller::Attempt FrameFiller::placeParagraph(uint32_t index, std::shared_ptr<const LayoutParagraph>& paragraph) {
    constexpr int mostAttempts = 400;
    uint32_t home = cursor_.column;
    ParagraphSource& source = sequence_.source(index, columns_[home]);
    const ResolvedAttributes& attributes = sequence_.attributes(index);
    source.spans.assign(1, {0, columns_[cursor_.column].area.width()});
    for (int number = 1;; ++number) {
        paragraph = paragraphs_.find(source);
        const SpanCheck check = number < mostAttempts ? SpanCheck::Strict : SpanCheck::Ignored;
        Attempt attempt = tryLines(source, *paragraph, attributes, cursor_, check);
        if (attempt.mismatch < 0) {
            // It starts in a later frame: page numbers and the side of the spine are that one's.
            const bool elsewhere = !attempt.lines.empty() &&
                                   columns_[attempt.lines.front().column].frameIndex != columns_[home].frameIndex;
            if (!elsewhere || number >= mostAttempts) return attempt;
            home = attempt.lines.front().column;
            sequence_.source(index, columns_[home]);
            continue;
        }
        const size_t line = static_cast<size_t>(attempt.mismatch);
        while (source.spans.size() < line) source.spans.push_back(source.spans.back());
        source.spans.resize(line);
        source.spans.insert(source.spans.end(), attempt.wanted.begin(), attempt.wanted.end());
    }
}

/// The paragraph starts in another column than the one before ended, and that one keeps with it: both go on together.
/// True when filling has to go on from an earlier paragraph.
bool FrameFiller::pullBack(uint32_t index, const Attempt& attempt) {
    if (index == 0 || index <= pulledBack_ || attempt.lines.empty() || !cursor_.started) return false;
    const int wanted = sequence_.attributes(index - 1).keepWithNext;
    if (wanted <= 0) return false;
    uint32_t here = 0;
    for (const LinePlace& line : attempt.lines) here += line.column == cursor_.column;
    const size_t together = std::min<size_t>(static_cast<size_t>(wanted), attempt.lines.size());
    if (here >= together && !(attempt.overset && here == 0)) return false;
    uint32_t first = index - 1;
    const auto isWhole = [&](uint32_t paragraph) {
        return before_[paragraph].column == cursor_.column && before_[paragraph].started;
    };
    if (!isWhole(first)) return false;
    while (first > 0 && sequence_.attributes(first - 1).keepWithNext > 0 && isWhole(first - 1)) --first;
    pulledBack_ = index;
    result_.places.resize(placesBefore_[first]);
    cursor_ = before_[first];
    nextColumn(cursor_);
    before_.resize(first);
    placesBefore_.resize(first);
    return true;
}

void FrameFiller::record(uint32_t index, const std::shared_ptr<const LayoutParagraph>& paragraph,
                         const Attempt& attempt) {
    for (uint32_t line = 0; line < attempt.lines.size(); ++line) {
        const LinePlace& place = attempt.lines[line];
        const bool continues = line > 0 && attempt.lines[line - 1].column == place.column;
        if (!continues) {
            result_.places.push_back({paragraph, index, place.column, line, {}});
            result_.places.back().baselines.reserve(attempt.lines.size() - line);
        }
        result_.places.back().baselines.push_back(place.baseline);
    }
    const bool whole = attempt.lines.size() == paragraph->lines.size();
    if (whole) {
        result_.composedLength = sequence_.end(index);
    } else if (!attempt.lines.empty()) {
        const LayoutLine& last = paragraph->lines[attempt.lines.size() - 1];
        result_.composedLength = sequence_.start(index) + last.textStart + last.textLength;
    }
}

FilledColumns FrameFiller::fill() {
    const uint32_t count = sequence_.count();
    for (uint32_t index = 0; index < count;) {
        const ParagraphBreak start = sequence_.attributes(index).startParagraph;
        if (start != ParagraphBreak::Anywhere && (cursor_.started || cursor_.column > 0) &&
            !(start == ParagraphBreak::NextColumn && !cursor_.started))
            obeyBreak(cursor_, start);
        if (atEnd(cursor_)) {
            result_.overset = true;
            break;
        }
        std::shared_ptr<const LayoutParagraph> paragraph;
        const Attempt attempt = placeParagraph(index, paragraph);
        if (pullBack(index, attempt)) {
            index = static_cast<uint32_t>(before_.size());
            continue;
        }
        before_.push_back(cursor_);
        placesBefore_.push_back(result_.places.size());
        record(index, paragraph, attempt);
        cursor_ = attempt.after;
        if (attempt.overset) {
            result_.overset = true;
            break;
        }
        if (index + 1 < count) obeyBreak(cursor_, sequence_.breakBehind(index));
        ++index;
    }
    for (size_t first = 0; first < result_.places.size();) {
        size_t end = first + 1;
        while (end < result_.places.size() && result_.places[end].column == result_.places[first].column) ++end;
        justifyVertically(columns_[result_.places[first].column], result_.places.data() + first,
                          result_.places.data() + end);
        first = end;
    }
    return std::move(result_);
}

}  // namespace desk
