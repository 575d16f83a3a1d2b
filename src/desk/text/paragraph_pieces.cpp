#include "desk/text/paragraph_pieces.h"

#include <algorithm>

namespace desk {
namespace {

/// A longer stretch without spaces is cut where a line may end: what stands before each such place is shaped by itself,
/// which costs time by the square of the piece.
constexpr uint32_t longestPiece = 100;

constexpr char16_t noBreakSpace = 0x00A0;
constexpr char16_t flushSpace = 0x2001;
constexpr char16_t lineSeparator = 0x2028;
constexpr char16_t byteOrderMark = 0xFEFF;

/// Ends a word piece. Most text is decided by the first comparison.
bool endsWord(char16_t c) {
    if (c > 0x20 && c < 0xA0) return false;
    if (c <= 0x20 || c == noBreakSpace) return true;
    if (c < flushSpace) return false;
    return c == flushSpace || c == lineSeparator || c == marker::inlineObject || c == marker::indentToHere ||
           c == marker::rightIndentTab;
}

bool isMarker(char16_t c) {
    return c >= marker::pageNumber && c <= marker::noteNumber;
}

/// Has no place in the display text, or another text takes its place.
bool isReplaced(char16_t c) {
    if (c >= 0x20 && c < marker::pageNumber) return false;
    if (c == u'\t' || c == marker::indentToHere || c == marker::rightIndentTab) return false;
    return c < 0x20 || isMarker(c) || c == byteOrderMark;
}

bool mayTurnRightToLeft(char16_t c) {
    return c >= 0x0590 && (c < 0x0900 || (c >= 0x200F && c <= 0x2067) || (c >= 0xD800 && c < 0xE000) || c >= 0xFB1D);
}

bool hasRightToLeft(std::u16string_view text) {
    for (size_t at = 0; at < text.size(); ++at) {
        if (!mayTurnRightToLeft(text[at])) continue;
        if (unicode::turnsRightToLeft(unicode::codePointAt(text, at).value)) return true;
    }
    return false;
}

SpacingLimits spacingOf(const ResolvedAttributes& a) {
    SpacingLimits limits;
    limits.minimumWord = a.minimumWordSpacing / 100;
    limits.desiredWord = a.desiredWordSpacing / 100;
    limits.maximumWord = std::max(a.maximumWordSpacing / 100, limits.desiredWord);
    limits.minimumWord = std::min(limits.minimumWord, limits.desiredWord);
    limits.desiredLetter = a.desiredLetterSpacing / 100;
    limits.minimumLetter = std::min(a.minimumLetterSpacing / 100, limits.desiredLetter);
    limits.maximumLetter = std::max(a.maximumLetterSpacing / 100, limits.desiredLetter);
    limits.desiredGlyph = a.desiredGlyphScaling / 100;
    limits.minimumGlyph = std::min(a.minimumGlyphScaling / 100, limits.desiredGlyph);
    limits.maximumGlyph = std::max(a.maximumGlyphScaling / 100, limits.desiredGlyph);
    return limits;
}

}  // namespace

PieceCutter::PieceCutter(const Document& document, TextStyles& styles, WordCache& words)
    : document_(document), styles_(styles), words_(words) {}

void PieceCutter::cut(const ParagraphSource& source, ParagraphPieces& result) {
    result.display.clear();
    result.sourceOf.clear();
    result.pieces.clear();
    result.hasTabs = result.hasRightToLeft = result.hasInlineItems = false;
    result.paragraph = &document_.resolved(source.format, 0);
    result.spacing = spacingOf(*result.paragraph);
    result.endStyle = &styles_.style(source.format, source.runs.back().format);
    runs_.clear();
    levels_.clear();
    collect(source, result);
    const bool rightToLeft = result.paragraph->rightToLeft;
    if ((rightToLeft || hasRightToLeft(result.display)) && unicode::bidiLevels(result.display, rightToLeft, levels_))
        result.hasRightToLeft = true;
    else
        levels_.clear();
    for (size_t i = 0; i < runs_.size(); ++i) {
        const uint32_t end = i + 1 < runs_.size() ? runs_[i + 1].start : static_cast<uint32_t>(result.display.size());
        cutRun(source, runs_[i].start, end, *runs_[i].style, result);
    }
}

void PieceCutter::collect(const ParagraphSource& source, ParagraphPieces& result) {
    const int32_t length = static_cast<int32_t>(source.text.size());
    if (!source.listLabel.empty())
        appendStandIn(source.listLabel, 0, styles_.style(source.format, source.runs.front().format), result);
    for (size_t i = 0; i < source.runs.size(); ++i) {
        const int32_t start = source.runs[i].start;
        const int32_t end = std::min(length, i + 1 < source.runs.size() ? source.runs[i + 1].start : length);
        if (start < end) appendRun(source, start, end, styles_.style(source.format, source.runs[i].format), result);
    }
    if (!result.sourceOf.empty()) result.sourceOf.push_back(length);
}

void PieceCutter::needSourceMap(ParagraphPieces& result) {
    if (!result.sourceOf.empty()) return;
    result.sourceOf.resize(result.display.size());
    for (size_t i = 0; i < result.display.size(); ++i) result.sourceOf[i] = static_cast<int32_t>(i);
}

void PieceCutter::startRun(const TextStyle& style, const ParagraphPieces& result) {
    if (!runs_.empty() && runs_.back().style == &style) return;
    const uint32_t start = static_cast<uint32_t>(result.display.size());
    if (!runs_.empty() && runs_.back().start == start)
        runs_.back().style = &style;
    else
        runs_.push_back({start, &style});
}

void PieceCutter::appendPlain(std::u16string_view text, int32_t sourceStart, const TextStyle& style,
                              ParagraphPieces& result) {
    startRun(style, result);
    const bool shifted = static_cast<size_t>(sourceStart) != result.display.size();
    if (shifted) needSourceMap(result);
    if (shifted || !result.sourceOf.empty())
        for (size_t i = 0; i < text.size(); ++i) result.sourceOf.push_back(sourceStart + static_cast<int32_t>(i));
    result.display += text;
}

void PieceCutter::appendStandIn(std::u16string_view text, int32_t sourcePosition, const TextStyle& style,
                                ParagraphPieces& result) {
    needSourceMap(result);
    startRun(style, result);
    result.sourceOf.insert(result.sourceOf.end(), text.size(), sourcePosition);
    result.display += text;
}

void PieceCutter::appendCased(std::u16string_view text, int32_t sourceStart, const TextStyle& style,
                              ParagraphPieces& result) {
    const Capitalization how = style.attributes->capitalization;
    const std::string& language = styles_.languageTag(style);
    if (how == Capitalization::Normal || how == Capitalization::CapToSmallCap)
        return appendPlain(text, sourceStart, style, result);
    const auto appendMapped = [&](std::u16string_view from, int32_t at, const TextStyle& used) {
        const std::u16string mapped =
            how == Capitalization::LowerCase ? unicode::lowerCase(from, language) : unicode::upperCase(from, language);
        if (mapped.size() == from.size()) return appendPlain(mapped, at, used, result);
        // The length changes: map character by character, so that each knows its source.
        for (size_t i = 0; i < from.size();) {
            const size_t units = unicode::codePointAt(from, i).units;
            const std::u16string one = how == Capitalization::LowerCase
                                           ? unicode::lowerCase(from.substr(i, units), language)
                                           : unicode::upperCase(from.substr(i, units), language);
            appendStandIn(one, at + static_cast<int32_t>(i), used, result);
            i += units;
        }
    };
    if (how != Capitalization::SmallCaps) return appendMapped(text, sourceStart, style);
    for (size_t at = 0; at < text.size();) {
        const bool small = unicode::isLowerCase(unicode::codePointAt(text, at).value);
        size_t end = at;
        while (end < text.size()) {
            const unicode::CodePoint c = unicode::codePointAt(text, end);
            if (unicode::isLowerCase(c.value) != small && !unicode::isMark(c.value)) break;
            end += c.units;
        }
        const std::u16string_view part = text.substr(at, end - at);
        if (small)
            appendMapped(part, sourceStart + static_cast<int32_t>(at), *style.smallCapitals);
        else
            appendPlain(part, sourceStart + static_cast<int32_t>(at), style, result);
        at = end;
    }
}

void PieceCutter::appendRun(const ParagraphSource& source, int32_t start, int32_t end, const TextStyle& style,
                            ParagraphPieces& result) {
    if (style.attributes->hiddenByCondition) return;
    const std::u16string_view text = source.text;
    int32_t plain = start;
    const auto flush = [&](int32_t to) {
        if (plain < to)
            appendCased(text.substr(static_cast<size_t>(plain), static_cast<size_t>(to - plain)), plain, style, result);
    };
    for (int32_t at = start; at < end; ++at) {
        const char16_t c = text[static_cast<size_t>(at)];
        if (!isReplaced(c)) continue;
        flush(at);
        plain = at + 1;
        switch (c) {
            case marker::pageNumber:
                appendStandIn(source.markers.pageNumber, at, style, result);
                break;
            case marker::nextPageNumber:
                appendStandIn(source.markers.nextPageNumber, at, style, result);
                break;
            case marker::previousPageNumber:
                appendStandIn(source.markers.previousPageNumber, at, style, result);
                break;
            case marker::sectionMarker:
                appendStandIn(source.markers.sectionMarker, at, style, result);
                break;
            default:
                break;
        }
    }
    flush(end);
}

void PieceCutter::addInlineItem(const ParagraphSource& source, uint32_t position, const TextStyle& style,
                                ParagraphPieces& result) {
    const auto& items = source.inlineItems;
    const int32_t wanted = result.sourcePosition(position);
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const InlineItemSize& item) { return item.position == wanted; });
    if (found == items.end()) return;
    Piece& piece = result.pieces.emplace_back();
    piece.kind = PieceKind::InlineItem;
    piece.level = levelAt(position);
    piece.style = &style;
    piece.start = position;
    piece.length = 1;
    piece.width = found->width;
    piece.item = static_cast<uint32_t>(found - items.begin());
    result.hasInlineItems = true;
}

void PieceCutter::cutRun(const ParagraphSource& source, uint32_t start, uint32_t end, const TextStyle& style,
                         ParagraphPieces& result) {
    const std::u16string& text = result.display;
    uint32_t at = start;
    const auto add = [&](PieceKind kind, uint32_t length, double width) {
        Piece& piece = result.pieces.emplace_back();
        piece.kind = kind;
        piece.level = levelAt(at);
        piece.style = &style;
        piece.start = at;
        piece.length = length;
        piece.width = width;
        at += length;
    };
    const double space = style.spaceAdvance + style.tracking;
    while (at < end) {
        const char16_t c = text[at];
        if (!endsWord(c)) {
            uint32_t behind = at + 1;
            while (behind < end && !endsWord(text[behind])) ++behind;
            addWord(at, behind, style, result);
            at = behind;
            continue;
        }
        switch (c) {
            case u' ': {
                uint32_t count = 1;
                while (at + count < end && text[at + count] == u' ' && levelAt(at + count) == levelAt(at)) ++count;
                add(PieceKind::Space, count, space * count);
                break;
            }
            case u'\t':
                add(PieceKind::Tab, 1, 0);
                result.hasTabs = true;
                break;
            case marker::rightIndentTab:
                add(PieceKind::RightIndentTab, 1, 0);
                result.hasTabs = true;
                break;
            case noBreakSpace:
                add(PieceKind::NoBreakSpace, 1, space);
                break;
            case flushSpace:
                add(PieceKind::FlushSpace, 1, space);
                break;
            case lineSeparator:
                add(PieceKind::LineBreak, 1, 0);
                break;
            case marker::indentToHere:
                add(PieceKind::IndentHere, 1, 0);
                break;
            case marker::inlineObject:
                addInlineItem(source, at, style, result);
                ++at;
                break;
            default:
                ++at;
                break;  // a control character in a stand-in text
        }
    }
}

/// The end of the first piece of a stretch that is too long for one; the text ends with the stretch.
uint32_t PieceCutter::cutBehind(std::u16string_view text, uint32_t start, const TextStyle& style) {
    // What follows has a say in where a line may end.
    words_.findBreaksInText(text.substr(start, 2 * longestPiece), style.language, false, breaks_);
    uint32_t length = 0;
    for (const WordBreak& at : breaks_)
        if (at.offset <= longestPiece && !at.discretionary) length = at.offset;
    if (length > 0) return start + length;
    const uint32_t behind = start + longestPiece;
    return (text[behind] & 0xFC00) == 0xDC00 ? behind - 1 : behind;
}

void PieceCutter::addWord(uint32_t start, uint32_t end, const TextStyle& style, ParagraphPieces& result) {
    const std::u16string_view text = result.display;
    while (start < end) {
        uint32_t behind = end - start > longestPiece ? cutBehind(text.substr(0, end), start, style) : end;
        if (!levels_.empty()) {
            uint32_t same = start + 1;
            while (same < behind && levels_[same] == levels_[start]) ++same;
            behind = same;
        }
        Piece& piece = result.pieces.emplace_back();
        piece.level = levelAt(start);
        const bool rightToLeft = piece.level & 1;
        auto context = WordContext::None;
        if (rightToLeft) {
            const bool before = start > 0 && !endsWord(text[start - 1]) && levelAt(start - 1) == piece.level;
            const bool after = behind < text.size() && !endsWord(text[behind]) && levelAt(behind) == piece.level;
            context = static_cast<WordContext>((before ? 1 : 0) | (after ? 2 : 0));
        }
        piece.word = words_.find(text.substr(start, behind - start), style.shaping, rightToLeft, context);
        piece.style = &style;
        piece.start = start;
        piece.length = behind - start;
        piece.width = piece.word->advance * style.emUnit + piece.word->clusters * style.tracking;
        start = behind;
    }
}

}  // namespace desk
