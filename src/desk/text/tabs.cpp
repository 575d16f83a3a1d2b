#include "desk/text/tabs.h"

#include <algorithm>
#include <cmath>

namespace desk {
namespace {

/// Text that ends right at a stop has reached it.
constexpr double reached = 1e-6;

bool isTab(PieceKind kind) {
    return kind == PieceKind::Tab || kind == PieceKind::RightIndentTab;
}

}  // namespace

void ParagraphTabs::set(const ParagraphPieces& paragraph, const BreakCandidates& candidates,
                        const std::vector<LineRoom>& rooms) {
    paragraph_ = &paragraph;
    candidates_ = &candidates;
    rooms_ = &rooms;
    tabPieces_.clear();
    for (uint32_t i = 0; i < paragraph.pieces.size(); ++i)
        if (isTab(paragraph.pieces[i].kind)) tabPieces_.push_back(i);
    stops_ = paragraph.paragraph->tabStops;
    std::stable_sort(stops_.begin(), stops_.end(),
                     [](const TabStop& a, const TabStop& b) { return a.position < b.position; });
}

bool ParagraphTabs::hasTab(uint32_t from, uint32_t to) const {
    const uint32_t first = candidates_->places[from].startPiece, end = candidates_->places[to].endPiece;
    const auto found = std::lower_bound(tabPieces_.begin(), tabPieces_.end(), first);
    return found != tabPieces_.end() && *found < end;
}

ParagraphTabs::Stop ParagraphTabs::stopBehind(double position, const LineRoom& room, const Piece& tab) const {
    if (tab.kind == PieceKind::RightIndentTab) return {room.x + room.measure, TabAlignment::Right, nullptr};
    const ResolvedAttributes& a = *paragraph_->paragraph;
    Stop found;
    bool known = false;
    for (const TabStop& stop : stops_) {
        if (stop.position <= position + reached) continue;
        found = {stop.position, stop.alignment, &stop};
        known = true;
        break;
    }
    // A hanging first line has a stop where the other lines begin.
    const bool hangs = a.firstLineIndent < 0 && a.leftIndent > position + reached;
    if (hangs && (!known || a.leftIndent < found.position)) return {a.leftIndent, TabAlignment::Left, nullptr};
    if (known) return found;
    return {(std::floor((position + reached) / defaultTabDistance) + 1) * defaultTabDistance, TabAlignment::Left,
            nullptr};
}

double ParagraphTabs::widthToAlignment(uint32_t firstPiece, uint32_t endPiece, double wholeWidth,
                                       const TabStop& stop) const {
    const char16_t wanted = stop.alignmentCharacter.empty() ? u'.' : stop.alignmentCharacter.front();
    for (uint32_t i = firstPiece; i < endPiece; ++i) {
        const Piece& piece = paragraph_->pieces[i];
        if (piece.kind != PieceKind::Word) continue;
        const size_t at = piece.word->text.find(wanted);
        if (at == std::u16string::npos) continue;
        double advance = 0;
        uint32_t clusters = 0;
        for (const WordGlyph& glyph : piece.word->glyphs) {
            if (glyph.cluster >= at) continue;
            advance += glyph.advance;
            clusters += glyph.endsCluster;
        }
        return candidates_->pieceStarts[i].natural - candidates_->pieceStarts[firstPiece].natural +
               extentOfWord(*piece.style, advance, clusters, paragraph_->spacing).natural;
    }
    return wholeWidth;
}

Extent ParagraphTabs::measure(double start, uint32_t firstPiece, uint32_t endPiece, const Extent& lineStart,
                              const Extent& lineEnd, const LineRoom& room) {
    setTabs_.clear();
    double x = start;
    Extent stretchStart = lineStart;
    auto tab = std::lower_bound(tabPieces_.begin(), tabPieces_.end(), firstPiece);
    for (; tab != tabPieces_.end() && *tab < endPiece; ++tab) {
        const Extent& tabStart = candidates_->pieceStarts[*tab];
        x += tabStart.natural - stretchStart.natural;
        const auto next = std::next(tab);
        const bool isLast = next == tabPieces_.end() || *next >= endPiece;
        const Piece& piece = paragraph_->pieces[*tab];
        const bool toLineEnd = isLast || piece.kind == PieceKind::RightIndentTab;
        const uint32_t textEnd = toLineEnd ? endPiece : *next;
        const double text = (toLineEnd ? lineEnd.natural : candidates_->pieceStarts[textEnd].natural) -
                            candidates_->pieceStarts[*tab + 1].natural;
        const Stop stop = stopBehind(x, room, piece);
        double target = stop.position;
        switch (stop.alignment) {
            case TabAlignment::Left:
                break;
            case TabAlignment::Right:
                target -= text;
                break;
            case TabAlignment::Center:
                target -= text / 2;
                break;
            case TabAlignment::Character:
                target -= widthToAlignment(*tab + 1, textEnd, text, *stop.named);
                break;
        }
        const double width = std::max(0.0, target - x);
        const bool hasLeader = stop.named && !stop.named->leader.empty();
        setTabs_.push_back({*tab, width, hasLeader ? &stop.named->leader : nullptr});
        x += width;
        stretchStart = candidates_->pieceStarts[*tab + 1];
    }
    x += lineEnd.natural - stretchStart.natural;
    return {x - start, lineEnd.stretch - stretchStart.stretch, lineEnd.shrink - stretchStart.shrink};
}

Extent ParagraphTabs::extent(uint32_t from, uint32_t to, uint32_t line) {
    const BreakCandidate& start = candidates_->places[from];
    const BreakCandidate& end = candidates_->places[to];
    const LineRoom& room = (*rooms_)[std::min<size_t>(line, rooms_->size() - 1)];
    return measure(room.x, start.startPiece, end.endPiece, start.start, end.end, room);
}

double ParagraphTabs::distanceTo(uint32_t piece) {
    const LineRoom& room = rooms_->front();
    return measure(room.x, 0, piece, {}, candidates_->pieceStarts[piece], room).natural;
}

}  // namespace desk
