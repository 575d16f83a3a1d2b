#include "desk/text/line_setting.h"

#include <algorithm>

namespace desk {
namespace {

constexpr double roundingSlack = 1e-3;
/// A line is told as too wide only from here on: less than this can't be seen.
constexpr double visibleExcess = 0.5;
/// Times that a leader stands in one tab: more than the largest sheet has room for. A tab stop may be anywhere.
constexpr double mostLeaders = 20'000;

bool isStretchingSpace(PieceKind kind) {
    return kind == PieceKind::Space || kind == PieceKind::NoBreakSpace;
}

bool isSpace(PieceKind kind) {
    return isStretchingSpace(kind) || kind == PieceKind::FlushSpace;
}

bool isTab(PieceKind kind) {
    return kind == PieceKind::Tab || kind == PieceKind::RightIndentTab;
}

}  // namespace

LineAlignment alignmentOf(Justification justification, bool onRightPage) {
    switch (justification) {
        case Justification::Left:
            return {false, false, Alignment::Left};
        case Justification::Center:
            return {false, false, Alignment::Center};
        case Justification::Right:
            return {false, false, Alignment::Right};
        case Justification::LeftJustified:
            return {true, false, Alignment::Left};
        case Justification::CenterJustified:
            return {true, false, Alignment::Center};
        case Justification::RightJustified:
            return {true, false, Alignment::Right};
        case Justification::FullyJustified:
            return {true, true, Alignment::Left};
        case Justification::ToBindingSide:
            return {false, false, onRightPage ? Alignment::Left : Alignment::Right};
        case Justification::AwayFromBindingSide:
            return {false, false, onRightPage ? Alignment::Right : Alignment::Left};
    }
    return {};
}

void LineSetter::start(const ParagraphSource& source, const ParagraphPieces& paragraph,
                       const BreakCandidates& candidates, ParagraphTabs* tabs, std::u16string& text) {
    source_ = &source;
    paragraph_ = &paragraph;
    candidates_ = &candidates;
    tabs_ = tabs;
    text_ = &text;
    alignment_ = alignmentOf(paragraph.paragraph->justification, source.onRightPage);
    const LineAlignment single = alignmentOf(paragraph.paragraph->singleWordJustification, source.onRightPage);
    singleWordFull_ = single.lastLineJustified;
    singleWord_ = single.ragged;
}

void LineSetter::addPiece(uint32_t index, const BreakCandidate& from, const BreakCandidate& to) {
    const Piece& piece = paragraph_->pieces[index];
    Item item;
    item.kind = piece.kind;
    item.level = piece.level;
    item.style = piece.style;
    item.word = piece.word;
    item.start = piece.start;
    item.length = piece.length;
    item.piece = index;
    item.width = piece.width;
    if (piece.kind == PieceKind::Word) {
        const uint16_t begin = index == from.startPiece ? from.startOffset : uint16_t{0};
        const bool endsHere = index == to.endPiece && to.endOffset > 0;
        const Word* word = piece.word;
        if (begin > 0) {
            word = words_.tailOf(*word, piece.style->shaping, begin);
            item.start += begin;
            item.length -= begin;
        }
        if (endsHere) {
            item.length = to.endOffset - begin;
            word = words_.headOf(*word, piece.style->shaping, static_cast<uint16_t>(item.length), to.kind);
            // What lies behind stands for the hyphen, a soft one in the text included.
            if (to.kind == BreakKind::Hyphen) item.length = static_cast<uint32_t>(word->text.size()) - 1;
        }
        item.word = word;
    }
    items_.push_back(item);
}

void LineSetter::addHyphen(const BreakCandidate& to) {
    const Item& before = items_.back();
    Item item;
    item.level = before.level;
    item.style = before.style;
    item.word = words_.find(u"-", item.style->shaping);
    item.start = before.start + before.length;
    item.length = 0;
    item.piece = to.endPiece;
    items_.push_back(item);
}

void LineSetter::collectItems(const BreakCandidate& from, const BreakCandidate& to, uint32_t fromIndex,
                              uint32_t toIndex, uint32_t number) {
    items_.clear();
    const uint32_t end = to.endPiece + (to.endOffset > 0 ? 1 : 0);
    for (uint32_t index = from.startPiece; index < end; ++index) addPiece(index, from, to);
    if (to.kind == BreakKind::Hyphen && to.endOffset == 0 && !items_.empty()) addHyphen(to);
    if (tabs_ && tabs_->hasTab(fromIndex, toIndex)) {
        tabs_->extent(fromIndex, toIndex, number);
        uint32_t lastTab = 0;
        for (const ParagraphTabs::SetTab& tab : tabs_->setTabs()) {
            for (Item& item : items_) {
                if (item.piece != tab.piece) continue;
                item.width = tab.width;
                item.leader = tab.leader;
            }
            lastTab = tab.piece;
        }
        for (Item& item : items_) item.isFixed = item.piece <= lastTab;
    }
    if (paragraph_->hasRightToLeft) return;
    for (uint32_t index = end; index < to.startPiece; ++index) {
        if (!isSpace(paragraph_->pieces[index].kind)) continue;
        addPiece(index, from, to);
        items_.back().hangs = true;
    }
}

Extent LineSetter::measureItems() {
    spaces_ = flushSpaces_ = clusters_ = words_in_line_ = 0;
    glyphs_ = 0;
    Extent sum;
    const SpacingLimits& spacing = paragraph_->spacing;
    for (const Item& item : items_) {
        Extent extent;
        if (item.word) {
            extent = extentOfWord(*item.style, item.word->advance, item.word->clusters, spacing);
            glyphs_ += item.word->glyphs.size();
            if (!item.isFixed) clusters_ += item.word->clusters;
            ++words_in_line_;
        } else if (isTab(item.kind) || item.kind == PieceKind::InlineItem) {
            extent.natural = item.width;
            if (item.kind == PieceKind::InlineItem) ++words_in_line_;
        } else if (isSpace(item.kind)) {
            glyphs_ += item.length;
            if (item.hangs) continue;
            const Piece& piece = paragraph_->pieces[item.piece];
            extent = extentOf(piece, spacing);
            if (!item.isFixed) (item.kind == PieceKind::FlushSpace ? flushSpaces_ : spaces_) += item.length;
        }
        sum.natural += extent.natural;
        if (item.isFixed) continue;
        sum.stretch += extent.stretch;
        sum.shrink += extent.shrink;
    }
    return sum;
}

void LineSetter::stretchLine(Justified& result, const Extent& extent, double slack) const {
    const SpacingLimits& limits = paragraph_->spacing;
    if (spaces_ == 0) {
        if (clusters_ > 1) result.extraPerCluster = slack / (clusters_ - 1);
        return;
    }
    const double ratio = extent.stretch > 1e-9 ? std::min(1.0, slack / extent.stretch) : 0;
    result.wordFactor += ratio * (limits.maximumWord - limits.desiredWord);
    result.letterFactor += ratio * (limits.maximumLetter - limits.desiredLetter);
    result.glyphScale += ratio * (limits.maximumGlyph - limits.desiredGlyph);
    // What the limits don't reach, the spaces take alone.
    result.extraPerSpace = (slack - ratio * extent.stretch) / spaces_;
}

void LineSetter::shrinkLine(Justified& result, const Extent& extent, double slack) const {
    const SpacingLimits& limits = paragraph_->spacing;
    const double ratio = extent.shrink > 1e-9 ? std::min(1.0, -slack / extent.shrink) : 0;
    result.wordFactor -= ratio * (limits.desiredWord - limits.minimumWord);
    result.letterFactor -= ratio * (limits.desiredLetter - limits.minimumLetter);
    result.glyphScale -= ratio * (limits.desiredGlyph - limits.minimumGlyph);
}

LineSetter::Justified LineSetter::justify(const Extent& extent, double measure, BreakKind end, LayoutLine& line) {
    const SpacingLimits& limits = paragraph_->spacing;
    Justified result;
    result.wordFactor = limits.desiredWord;
    result.letterFactor = limits.desiredLetter;
    result.glyphScale = limits.desiredGlyph;
    const bool isLast = end == BreakKind::End;
    if (isLast) measure -= paragraph_->paragraph->lastLineIndent;
    const double slack = measure - extent.natural;
    const bool hasTab = tabs_ && std::any_of(items_.begin(), items_.end(), [](const Item& i) { return isTab(i.kind); });
    line.tooWide = -slack > (alignment_.justified ? extent.shrink : 0) + visibleExcess && !hasTab;
    Alignment ragged = alignment_.ragged;
    if (hasTab) ragged = Alignment::Left;
    if (alignment_.justified && slack < 0) {
        shrinkLine(result, extent, slack);
        return result;
    }
    if (alignment_.justified && (!isLast || alignment_.lastLineJustified)) {
        if (flushSpaces_ > 0 && isLast) {
            result.extraPerFlushSpace = slack / flushSpaces_;
            return result;
        }
        const bool single = spaces_ == 0 && words_in_line_ > 0;
        if (!single || singleWordFull_) {
            if (slack > roundingSlack) stretchLine(result, extent, slack);
            return result;
        }
        ragged = singleWord_;
    }
    if (slack <= 0) return result;
    if (ragged == Alignment::Center) result.shift = slack / 2;
    if (ragged == Alignment::Right) result.shift = slack;
    return result;
}

/// Unicode Annex 9, rule L2: from the highest level down to the lowest odd one, reverse what stands at it or above.
void LineSetter::orderVisually() {
    if (!paragraph_->hasRightToLeft || items_.empty()) return;
    uint8_t highest = 0, lowestOdd = 255;
    for (const Item& item : items_) {
        highest = std::max(highest, item.level);
        if (item.level % 2 == 1) lowestOdd = std::min(lowestOdd, item.level);
    }
    for (int level = highest; level >= lowestOdd; --level) {
        for (size_t i = 0; i < items_.size();) {
            size_t end = i;
            while (end < items_.size() && items_[end].level >= level) ++end;
            if (end > i)
                std::reverse(items_.begin() + static_cast<ptrdiff_t>(i), items_.begin() + static_cast<ptrdiff_t>(end));
            i = std::max(end, i + 1);
        }
    }
}

uint32_t LineSetter::textPlaceOf(std::u16string_view inserted) {
    const size_t shown = paragraph_->display.size();
    const size_t known = text_->find(inserted, shown);
    if (known != std::u16string::npos) return static_cast<uint32_t>(known);
    const uint32_t place = static_cast<uint32_t>(text_->size());
    *text_ += inserted;
    return place;
}

GlyphRun& LineSetter::runFor(const TextStyle& style, const FontFace& face, double glyphScale, double letterSpacing,
                             LayoutLine& line, double x) {
    if (!line.runs.empty() && runStyle_ == &style && line.runs.back().face == &face) return line.runs.back();
    GlyphRun& run = line.runs.emplace_back();
    run.face = &face;
    run.size = style.size;
    run.horizontalScale = style.horizontalScale * glyphScale;
    run.verticalScale = style.verticalScale;
    run.skew = style.skew;
    run.x = x;
    run.rise = style.rise;
    run.paint = style.paint;
    run.letterSpacing = letterSpacing;
    run.glyphs.reserve(glyphs_);
    runStyle_ = &style;
    return run;
}

void LineSetter::emitWord(const Item& item, const Justified& justified, LayoutLine& line, double& x) {
    const TextStyle& style = *item.style;
    const double unit = style.emUnit * justified.glyphScale;
    const double letters = style.tracking + justified.letterFactor * style.spaceAdvance + justified.extraPerCluster;
    const double verticalUnit = style.size * style.verticalScale / 1000;
    for (const WordSegment& segment : item.word->segments) {
        GlyphRun& run = runFor(style, *segment.face, justified.glyphScale, letters, line, x);
        const WordGlyph* glyph = item.word->glyphs.data() + segment.firstGlyph;
        for (uint32_t i = 0; i < segment.glyphCount; ++i, ++glyph) {
            const double advance = glyph->advance * unit + (glyph->endsCluster ? letters : 0);
            PlacedGlyph& placed = run.glyphs.emplace_back();
            placed.glyph = glyph->glyph;
            placed.advance = static_cast<float>(advance);
            placed.xOffset = static_cast<float>(glyph->xOffset * unit);
            placed.yOffset = static_cast<float>(glyph->yOffset * verticalUnit);
            placed.textStart = item.start + glyph->cluster;
            placed.textLength = glyph->length;
            if (glyph->cluster >= item.length) placed.textStart = textPlaceOf(u"-");
            x += advance;
        }
    }
}

void LineSetter::emitSpaces(const Item& item, const Justified& justified, LayoutLine& line, double& x) {
    const TextStyle& style = *item.style;
    const bool flush = item.kind == PieceKind::FlushSpace;
    const double natural = style.spaceAdvance * (item.isFixed ? paragraph_->spacing.desiredWord : justified.wordFactor);
    double advance = natural + style.tracking;
    if (!item.isFixed) advance += flush ? justified.extraPerFlushSpace : justified.extraPerSpace;
    if (style.spaceGlyph == 0) {
        x += advance * item.length;
        runStyle_ = nullptr;
        return;
    }
    const double letters = style.tracking + justified.letterFactor * style.spaceAdvance + justified.extraPerCluster;
    GlyphRun& run = runFor(style, *style.face, justified.glyphScale, letters, line, x);
    if (!flush) run.wordSpacing = advance - style.spaceAdvance * justified.glyphScale - letters;
    for (uint32_t i = 0; i < item.length; ++i) {
        PlacedGlyph& placed = run.glyphs.emplace_back();
        placed.glyph = style.spaceGlyph;
        placed.advance = static_cast<float>(advance);
        placed.textStart = item.start + i;
        placed.textLength = 1;
        x += advance;
    }
}

/// Repeats the leader as often as it fits, from the right end of the tab, so that leaders of lines below stand alike.
void LineSetter::emitLeader(const Item& item, LayoutLine& line, double x) {
    const TextStyle& style = *item.style;
    const Word* word = words_.find(*item.leader, style.shaping);
    const double width = word->advance * style.emUnit + word->clusters * style.tracking;
    if (width <= 0.01 || word->segments.empty()) return;
    const uint32_t count = static_cast<uint32_t>(std::min(item.width / width + 1e-6, mostLeaders));
    const uint32_t place = textPlaceOf(*item.leader);
    double start = x + item.width - count * width;
    Justified plain;
    plain.letterFactor = 0;
    for (uint32_t i = 0; i < count; ++i) {
        Item leader = item;
        leader.word = word;
        leader.start = place;
        leader.length = static_cast<uint32_t>(item.leader->size());
        emitWord(leader, plain, line, start);
    }
}

void LineSetter::emit(const Justified& justified, LayoutLine& line) {
    runStyle_ = nullptr;
    double x = justified.shift;
    for (const Item& item : items_) {
        const double start = x;
        if (item.word) {
            emitWord(item, justified, line, x);
        } else if (isSpace(item.kind)) {
            emitSpaces(item, justified, line, x);
        } else if (isTab(item.kind)) {
            runStyle_ = nullptr;
            if (item.leader) emitLeader(item, line, x);
            runStyle_ = nullptr;
            x += item.width;
        } else if (item.kind == PieceKind::InlineItem) {
            line.inlineItems.emplace_back(source_->inlineItems[paragraph_->pieces[item.piece].item].item, x);
            x += item.width;
            runStyle_ = nullptr;
        }
        if (item.style->isDecorated() && !item.hangs && x > start) decorate(item, start, x, line);
    }
}

void LineSetter::addMetrics(const BreakCandidate& from, const BreakCandidate& to, LayoutLine& line) const {
    const TextStyle* last = nullptr;
    const auto add = [&](const TextStyle& style) {
        if (last == &style) return;
        last = &style;
        line.leading = std::max(line.leading, style.leading);
        line.ascent = std::max(line.ascent, style.ascent);
        line.capHeight = std::max(line.capHeight, style.capHeight);
        line.xHeight = std::max(line.xHeight, style.xHeight);
        line.emHeight = std::max(line.emHeight, style.nominalSize);
    };
    const auto& pieces = paragraph_->pieces;
    const uint32_t end = std::min<uint32_t>(static_cast<uint32_t>(pieces.size()),
                                            std::max(to.startPiece, to.endPiece + (to.endOffset > 0 ? 1u : 0u)));
    for (uint32_t i = from.startPiece; i < end; ++i) {
        add(*pieces[i].style);
        if (pieces[i].kind != PieceKind::InlineItem) continue;
        const double height = source_->inlineItems[pieces[i].item].height;
        const ResolvedAttributes& a = *pieces[i].style->attributes;
        if (a.leading.automatic) line.leading = std::max(line.leading, height * a.autoLeading / 100);
        line.ascent = std::max(line.ascent, height);
    }
    const TextStyle& closing = *paragraph_->endStyle;
    if (!last) return add(closing);
    // The paragraph's end has a leading of its own, but nothing to show.
    if (to.kind == BreakKind::End) line.leading = std::max(line.leading, closing.leading);
}

void LineSetter::setLine(uint32_t fromIndex, uint32_t toIndex, uint32_t number, const LineRoom& room,
                         LayoutLine& line) {
    const BreakCandidate& from = candidates_->places[fromIndex];
    const BreakCandidate& to = candidates_->places[toIndex];
    line.x = room.x;
    line.measure = room.measure;
    const auto positionOf = [&](uint32_t piece, uint16_t offset) {
        const uint32_t end = static_cast<uint32_t>(paragraph_->display.size());
        const uint32_t at = piece < paragraph_->pieces.size() ? paragraph_->pieces[piece].start + offset : end;
        return paragraph_->sourcePosition(at);
    };
    line.textStart = fromIndex == 0 ? 0 : positionOf(from.startPiece, from.startOffset);
    const int32_t end = to.kind == BreakKind::End ? static_cast<int32_t>(source_->text.size())
                                                  : positionOf(to.startPiece, to.startOffset);
    line.textLength = end - line.textStart;
    addMetrics(from, to, line);
    collectItems(from, to, fromIndex, toIndex, number);
    const Extent extent = measureItems();
    const Justified justified = justify(extent, room.measure, to.kind, line);
    orderVisually();
    emit(justified, line);
}

}  // namespace desk
