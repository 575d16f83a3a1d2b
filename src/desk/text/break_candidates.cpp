#include "desk/text/break_candidates.h"

#include <algorithm>

namespace desk {
namespace {

Extent operator+(const Extent& a, const Extent& b) {
    return {a.natural + b.natural, a.stretch + b.stretch, a.shrink + b.shrink};
}
Extent operator-(const Extent& a, const Extent& b) {
    return {a.natural - b.natural, a.stretch - b.stretch, a.shrink - b.shrink};
}

bool endsChunk(PieceKind kind) {
    return kind == PieceKind::Space || kind == PieceKind::Tab || kind == PieceKind::RightIndentTab ||
           kind == PieceKind::LineBreak;
}

char32_t lastCharacterOf(const Piece& piece) {
    switch (piece.kind) {
        case PieceKind::Word:
            return piece.word->lastCharacter;
        case PieceKind::NoBreakSpace:
            return 0xA0;
        case PieceKind::InlineItem:
            return 0xFFFC;
        default:
            return U'a';
    }
}

char32_t firstCharacterOf(const Piece& piece) {
    return piece.kind == PieceKind::Word ? piece.word->firstCharacter : lastCharacterOf(piece);
}

/// Letters and figures: what most words begin and end with, and no rule about spaces speaks of.
bool isPlain(char32_t c) {
    return (c | 0x20) - U'a' < 26u || c - U'0' < 10u;
}

}  // namespace

Extent extentOfWord(const TextStyle& style, double advance, uint32_t clusters, const SpacingLimits& spacing) {
    const double width = advance * style.emUnit;
    Extent extent{width * spacing.desiredGlyph + clusters * style.tracking,
                  width * (spacing.maximumGlyph - spacing.desiredGlyph),
                  width * (spacing.desiredGlyph - spacing.minimumGlyph)};
    if (spacing.hasLetters()) {
        const double unit = clusters * style.spaceAdvance;
        extent.natural += unit * spacing.desiredLetter;
        extent.stretch += unit * (spacing.maximumLetter - spacing.desiredLetter);
        extent.shrink += unit * (spacing.desiredLetter - spacing.minimumLetter);
    }
    return extent;
}

Extent extentOf(const Piece& piece, const SpacingLimits& spacing) {
    const TextStyle& style = *piece.style;
    switch (piece.kind) {
        case PieceKind::Word:
            return extentOfWord(style, piece.word->advance, piece.word->clusters, spacing);
        case PieceKind::Space:
        case PieceKind::NoBreakSpace:
        case PieceKind::FlushSpace: {
            const double width = style.spaceAdvance * piece.length;
            return {width * spacing.desiredWord + style.tracking * piece.length,
                    width * (spacing.maximumWord - spacing.desiredWord),
                    width * (spacing.desiredWord - spacing.minimumWord)};
        }
        case PieceKind::InlineItem:
            return {piece.width, 0, 0};
        default:
            return {};
    }
}

void CandidateFinder::start(const ParagraphPieces& paragraph, BreakCandidates& result) {
    paragraph_ = &paragraph;
    result_ = &result;
    const uint32_t count = static_cast<uint32_t>(paragraph.pieces.size());
    result.pieceStarts.resize(count + 1);
    Extent sum;
    for (uint32_t i = 0; i < count; ++i) {
        result.pieceStarts[i] = sum;
        sum = sum + extentOf(paragraph.pieces[i], paragraph.spacing);
    }
    result.pieceStarts[count] = sum;
    result.places.clear();
    result.places.push_back({});
    result.places.back().kind = BreakKind::Start;
    visibleEnd_ = 0;
}

void CandidateFinder::finish() {
    const uint32_t count = static_cast<uint32_t>(paragraph_->pieces.size());
    BreakCandidate& last = result_->places.emplace_back();
    last.kind = BreakKind::End;
    last.end = result_->pieceStarts[visibleEnd_];
    last.start = result_->pieceStarts[count];
    last.endPiece = visibleEnd_;
    last.startPiece = count;
}

bool CandidateFinder::findOneLine(const ParagraphPieces& paragraph, double measure, BreakCandidates& result) {
    if (paragraph.hasTabs) return false;
    start(paragraph, result);
    for (uint32_t i = 0; i < paragraph.pieces.size(); ++i) {
        if (paragraph.pieces[i].kind == PieceKind::LineBreak) return false;
        if (paragraph.pieces[i].kind != PieceKind::Space) visibleEnd_ = i + 1;
    }
    if (result.pieceStarts[visibleEnd_].natural > measure) return false;
    finish();
    return true;
}

void CandidateFinder::find(const ParagraphPieces& paragraph, double narrowest, BreakCandidates& result) {
    start(paragraph, result);
    const std::vector<Piece>& pieces = paragraph.pieces;
    const uint32_t count = static_cast<uint32_t>(pieces.size());
    for (uint32_t i = 0; i < count;) {
        uint32_t end = i + 1;
        const PieceKind kind = pieces[i].kind;
        if (kind == PieceKind::LineBreak) {
            forced(i);
        } else if (kind == PieceKind::Space) {
            while (end < count && pieces[end].kind == PieceKind::Space) ++end;
            spaces(i, end);
        } else if (endsChunk(kind)) {
            visibleEnd_ = i;
            if (end < count && pieces[end].kind != PieceKind::LineBreak && i > result.places.back().startPiece)
                breakBetween(end, BreakKind::Space);
            visibleEnd_ = end;
        } else {
            while (end < count && !endsChunk(pieces[end].kind)) ++end;
            chunk(i, end);
            visibleEnd_ = end;
        }
        i = end;
    }
    finish();
    divideWideStretches(narrowest);
}

void CandidateFinder::forced(uint32_t lineBreak) {
    BreakCandidate place;
    place.kind = BreakKind::Forced;
    place.end = result_->pieceStarts[visibleEnd_];
    place.endPiece = visibleEnd_;
    place.start = result_->pieceStarts[lineBreak + 1];
    place.startPiece = lineBreak + 1;
    result_->places.push_back(place);
    visibleEnd_ = lineBreak + 1;
}

bool CandidateFinder::mayBreakBetween(uint32_t before, uint32_t after) const {
    const auto& pieces = paragraph_->pieces;
    return !pieces[before].style->attributes->noBreak || !pieces[after].style->attributes->noBreak;
}

void CandidateFinder::spaces(uint32_t first, uint32_t end) {
    const auto& pieces = paragraph_->pieces;
    // At the paragraph's or line's start spaces stand for themselves; at its end they hang.
    if (first == 0 || end >= pieces.size() || pieces[end].kind == PieceKind::LineBreak) return;
    if (visibleEnd_ <= result_->places.back().startPiece && result_->places.back().startOffset == 0) return;
    if (!mayBreakBetween(first, end) || !mayBreakBetween(first - 1, first)) return;
    if (!endsChunk(pieces[end].kind) && !endsChunk(pieces[first - 1].kind)) {
        const char32_t before = lastCharacterOf(pieces[first - 1]), after = firstCharacterOf(pieces[end]);
        if ((!isPlain(before) || !isPlain(after)) && !unicode::breaksAtSpaceBetween(before, after)) return;
    }
    breakBetween(end, BreakKind::Space);
}

/// The line ends behind what is visible so far, the next begins with a piece.
void CandidateFinder::breakBetween(uint32_t index, BreakKind kind) {
    BreakCandidate& place = result_->places.emplace_back();
    place.kind = kind;
    place.end = result_->pieceStarts[visibleEnd_];
    place.endPiece = visibleEnd_;
    place.start = result_->pieceStarts[index];
    place.startPiece = index;
}

bool CandidateFinder::hyphenAllowed(const WordBreak& at, bool isLastWord) const {
    if (at.discretionary) return true;
    const ResolvedAttributes& a = *paragraph_->paragraph;
    if (at.lettersBefore < a.hyphenateAfterFirst || at.lettersAfter < a.hyphenateBeforeLast) return false;
    if (at.lettersBefore + at.lettersAfter < a.hyphenateWordsLongerThan) return false;
    if (at.capitalized && !a.hyphenateCapitalizedWords) return false;
    return !isLastWord || a.hyphenateLastWord;
}

void CandidateFinder::chunk(uint32_t first, uint32_t end) {
    const auto& pieces = paragraph_->pieces;
    const bool isLastWord = std::all_of(pieces.begin() + end, pieces.end(),
                                        [](const Piece& piece) { return piece.kind == PieceKind::Space; });
    if (end - first == 1) {
        if (pieces[first].kind == PieceKind::Word && !pieces[first].style->attributes->noBreak)
            wordBreaks(first, isLastWord);
    } else {
        chunkBreaks(first, end, isLastWord);
    }
}

void CandidateFinder::wordBreaks(uint32_t index, bool isLastWord) {
    const Piece& piece = paragraph_->pieces[index];
    Word& word = *piece.word;
    const bool hyphens = paragraph_->paragraph->hyphenation;
    words_.findBreaks(word, piece.style->shaping, hyphens);
    const Extent& start = result_->pieceStarts[index];
    const Extent& end = result_->pieceStarts[index + 1];
    for (const WordBreak& at : word.breaks) {
        if (at.kind == BreakKind::Hyphen && !((hyphens || at.discretionary) && hyphenAllowed(at, isLastWord))) continue;
        BreakCandidate& place = result_->places.emplace_back();
        place.kind = at.kind;
        place.end = start + extentOfWord(*piece.style, at.advanceBefore, at.clustersBefore, paragraph_->spacing);
        place.start = end - extentOfWord(*piece.style, at.advanceAfter, at.clustersAfter, paragraph_->spacing);
        place.endPiece = place.startPiece = index;
        place.endOffset = place.startOffset = static_cast<uint16_t>(at.offset);
    }
}

/// Several pieces without a space between them: break opportunities look over the borders.
void CandidateFinder::chunkBreaks(uint32_t first, uint32_t end, bool isLastWord) {
    const auto& pieces = paragraph_->pieces;
    const uint32_t textStart = pieces[first].start;
    const uint32_t textEnd = pieces[end - 1].start + pieces[end - 1].length;
    const std::u16string_view text = std::u16string_view(paragraph_->display).substr(textStart, textEnd - textStart);
    const bool hyphens = paragraph_->paragraph->hyphenation;
    words_.findBreaksInText(text, pieces[first].style->language, hyphens, breaks_);
    uint32_t index = first;
    for (const WordBreak& at : breaks_) {
        if (at.kind == BreakKind::Hyphen && !((hyphens || at.discretionary) && hyphenAllowed(at, isLastWord))) continue;
        const uint32_t position = textStart + at.offset;
        while (index + 1 < end && pieces[index + 1].start <= position) ++index;
        if (pieces[index].start == position) {
            if (index == first || !mayBreakBetween(index - 1, index)) continue;
            // A no-break space keeps both sides, whatever stands around it.
            if (pieces[index].kind == PieceKind::NoBreakSpace || pieces[index - 1].kind == PieceKind::NoBreakSpace)
                continue;
            if (pieces[index].level % 2 == 1 && at.kind == BreakKind::Hyphen) continue;
            const uint32_t kept = visibleEnd_;
            visibleEnd_ = index;
            breakBetween(index, at.kind);
            visibleEnd_ = kept;
            if (at.kind == BreakKind::Hyphen) {
                const Piece& before = pieces[index - 1];
                const Word* hyphen = words_.find(u"-", before.style->shaping);
                Extent& lineEnd = result_->places.back().end;
                lineEnd = lineEnd + extentOfWord(*before.style, hyphen->advance, hyphen->clusters, paragraph_->spacing);
            }
        } else if (pieces[index].kind == PieceKind::Word && !pieces[index].style->attributes->noBreak) {
            if (pieces[index].level % 2 == 1 && at.kind == BreakKind::Hyphen) continue;
            breakInside(index, static_cast<uint16_t>(position - pieces[index].start), at.kind);
        }
    }
}

void CandidateFinder::breakInside(uint32_t index, uint16_t offset, BreakKind kind) {
    const Piece& piece = paragraph_->pieces[index];
    const WordCache::Width head = words_.headWidth(*piece.word, piece.style->shaping, offset, kind);
    const WordCache::Width tail = words_.tailWidth(*piece.word, piece.style->shaping, offset);
    BreakCandidate& place = result_->places.emplace_back();
    place.kind = kind;
    place.end =
        result_->pieceStarts[index] + extentOfWord(*piece.style, head.advance, head.clusters, paragraph_->spacing);
    place.start =
        result_->pieceStarts[index + 1] - extentOfWord(*piece.style, tail.advance, tail.clusters, paragraph_->spacing);
    place.endPiece = place.startPiece = index;
    place.endOffset = place.startOffset = offset;
}

void CandidateFinder::divideWideStretches(double narrowest) {
    std::vector<BreakCandidate>& places = result_->places;
    const auto tooWide = [&](const BreakCandidate& from, const BreakCandidate& to) {
        const Extent width = to.end - from.start;
        return width.natural - width.shrink > narrowest;
    };
    size_t first = 1;
    while (first < places.size() && !tooWide(places[first - 1], places[first])) ++first;
    if (first >= places.size()) return;
    divided_.assign(places.begin(), places.begin() + static_cast<ptrdiff_t>(first));
    for (size_t i = first; i < places.size(); ++i) {
        if (tooWide(places[i - 1], places[i])) divide(places[i - 1], places[i], divided_);
        divided_.push_back(places[i]);
    }
    places.swap(divided_);
}

void CandidateFinder::divide(const BreakCandidate& from, const BreakCandidate& to,
                             std::vector<BreakCandidate>& places) {
    const auto& pieces = paragraph_->pieces;
    for (uint32_t index = from.startPiece; index < pieces.size(); ++index) {
        const bool holdsEnd = to.endOffset > 0 && index == to.endPiece;
        if (index >= to.endPiece && !holdsEnd) break;
        if (index > from.startPiece && pieces[index].kind != PieceKind::Space &&
            pieces[index - 1].kind != PieceKind::Tab) {
            BreakCandidate& place = places.emplace_back();
            place.kind = BreakKind::Emergency;
            place.end = place.start = result_->pieceStarts[index];
            place.endPiece = place.startPiece = index;
        }
        if (pieces[index].kind != PieceKind::Word) continue;
        const uint16_t fromOffset = index == from.startPiece ? from.startOffset : uint16_t{0};
        const uint16_t toOffset = holdsEnd ? to.endOffset : static_cast<uint16_t>(pieces[index].length);
        divideWord(index, fromOffset, toOffset, places);
    }
}

void CandidateFinder::divideWord(uint32_t index, uint16_t fromOffset, uint16_t toOffset,
                                 std::vector<BreakCandidate>& places) {
    const Piece& piece = paragraph_->pieces[index];
    const std::vector<WordGlyph>& glyphs = piece.word->glyphs;
    double advance = 0;
    uint32_t clusters = 0;
    uint16_t current = 0;
    for (size_t i = 0; i < glyphs.size(); ++i) {
        const WordGlyph& glyph = glyphs[piece.word->rightToLeft ? glyphs.size() - 1 - i : i];
        if (glyph.cluster != current) {
            current = glyph.cluster;
            ++clusters;
            if (current > fromOffset && current < toOffset) {
                BreakCandidate& place = places.emplace_back();
                place.kind = BreakKind::Emergency;
                place.end = place.start =
                    result_->pieceStarts[index] + extentOfWord(*piece.style, advance, clusters, paragraph_->spacing);
                place.endPiece = place.startPiece = index;
                place.endOffset = place.startOffset = current;
            }
        }
        advance += glyph.advance;
    }
}

}  // namespace desk
