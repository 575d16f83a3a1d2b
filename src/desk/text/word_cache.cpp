#include "desk/text/word_cache.h"

#include <algorithm>

#include "desk/text/spaces.h"

namespace desk {
namespace {

constexpr char16_t softHyphen = 0x00AD;
constexpr char16_t hyphen = u'-';
constexpr std::u16string_view joiner = u"\u200d";

bool isPlainLatin(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           (c >= 0xC0 && c <= 0xFF && c != 0xD7 && c != 0xF7);
}

/// Letters and figures with a stop or comma behind them have no break inside: most words end here.
bool hasNoOpportunity(std::u16string_view text) {
    size_t end = text.size();
    while (end > 0 && (text[end - 1] == u'.' || text[end - 1] == u',')) --end;
    return std::all_of(text.begin(), text.begin() + static_cast<ptrdiff_t>(end), isPlainLatin);
}

/// Says where a line may end and shows nothing: no glyph stands for it, so that it isn't copied out of a PDF.
bool marksABreak(char16_t c) {
    return c == softHyphen || c == 0x200B;
}

bool isControl(char16_t c) {
    return c < 0x20;
}

std::u16string headText(const Word& word, uint16_t offset, BreakKind kind) {
    std::u16string head = word.text.substr(0, offset);
    if (kind == BreakKind::Hyphen) {
        if (!head.empty() && head.back() == softHyphen) head.pop_back();
        head += hyphen;
    }
    return head;
}

std::u16string_view tailText(const Word& word, uint16_t offset) {
    return std::u16string_view(word.text).substr(offset);
}

}  // namespace

WordCache::WordCache(const TextStyles& styles, FontLibrary& fonts, Hyphenator& hyphenator, size_t rememberedWords)
    : styles_(styles), fonts_(fonts), hyphenator_(hyphenator), rememberedWords_(rememberedWords) {}

Word* WordCache::find(std::u16string_view text, uint32_t shaping, bool rightToLeft, WordContext context) {
    const WordKey key{text, shaping, static_cast<uint8_t>(static_cast<uint8_t>(context) << 1 | (rightToLeft ? 1 : 0))};
    const uint64_t hash = hashOf(key);
    if (Word* known = words_.find(key, hash)) return known;
    std::unique_ptr<Word> word = olderWords_.take(key, hash);
    if (!word) {
        word = std::make_unique<Word>();
        word->text = text;
        word->shaping = shaping;
        word->flags = key.flags;
        word->rightToLeft = rightToLeft;
        shape(*word, styles_.shapingStyle(shaping), context);
    }
    Word* const result = word.get();
    words_.add(hash, std::move(word));
    return result;
}

void WordCache::endGeneration() {
    if (words_.size() < rememberedWords_) return;
    olderWords_ = std::move(words_);
    words_ = WordTable();
}

void WordCache::shape(Word& word, const ShapingStyle& style, WordContext context) {
    splitByFaceAndScript(word.text, style);
    substituted_ = word.text;
    for (const Stretch& stretch : stretches_)
        for (uint32_t at = stretch.start; at < stretch.end; ++at)
            if (spaceWidth(substituted_[at]) && stretch.face->glyphForCharacter(substituted_[at]) == 0)
                substituted_[at] = u' ';
    // Runs of one word all go the same way: visual order begins with the last.
    if (word.rightToLeft) std::reverse(stretches_.begin(), stretches_.end());
    for (const Stretch& stretch : stretches_) addSegment(word, stretch, style, substituted_, context);
    finishClusters(word);
    for (const WordGlyph& glyph : word.glyphs) word.advance += glyph.advance;
    if (word.text.empty()) return;
    word.firstCharacter = unicode::codePointAt(word.text, 0).value;
    for (size_t at = 0; at < word.text.size();) {
        const unicode::CodePoint c = unicode::codePointAt(word.text, at);
        if (!unicode::isMark(c.value) || at == 0) word.lastCharacter = c.value;
        at += c.units;
    }
}

const FontFace* WordCache::faceFor(char32_t character, const FontFace& wanted) {
    if (wanted.glyphForCharacter(character) != 0 || unicode::isDefaultIgnorable(character) || spaceWidth(character) ||
        character < 0x20)
        return &wanted;
    if (const FontFace* other = fonts_.fallback(character, wanted)) return other;
    if (missing_.find(character) == std::u32string::npos) missing_ += character;
    return &wanted;
}

void WordCache::splitByFaceAndScript(std::u16string_view text, const ShapingStyle& style) {
    stretches_.clear();
    for (uint32_t at = 0; at < text.size();) {
        const unicode::CodePoint c = unicode::codePointAt(text, at);
        const bool follows = !stretches_.empty() && (unicode::isMark(c.value) || unicode::isDefaultIgnorable(c.value));
        const FontFace* face = follows ? stretches_.back().face : faceFor(c.value, *style.face);
        const uint32_t script = unicode::scriptTag(c.value);
        if (!stretches_.empty()) {
            Stretch& last = stretches_.back();
            const bool sameScript = script == 0 || last.script == 0 || script == last.script;
            if (face == last.face && sameScript) {
                last.end = at + c.units;
                if (script != 0) last.script = script;
                at += c.units;
                continue;
            }
        }
        stretches_.push_back({at, at + c.units, face, script});
        at += c.units;
    }
}

void WordCache::addSegment(Word& word, const Stretch& stretch, const ShapingStyle& style,
                           std::u16string_view shapedText, WordContext context) {
    ShapingRequest request;
    request.text = shapedText.substr(stretch.start, stretch.end - stretch.start);
    request.before = shapedText.substr(0, stretch.start);
    request.after = shapedText.substr(stretch.end);
    const auto joins = [&](WordContext side) { return (static_cast<int>(context) & static_cast<int>(side)) != 0; };
    if (request.before.empty() && joins(WordContext::JoinsBefore)) request.before = joiner;
    if (request.after.empty() && joins(WordContext::JoinsAfter)) request.after = joiner;
    request.rightToLeft = word.rightToLeft;
    request.script = stretch.script;
    request.language = hyphenator_.tag(style.language);
    request.features = &style.features;
    shaped_.clear();
    stretch.face->shape(request, shaped_);
    WordSegment segment{stretch.face, static_cast<uint32_t>(word.glyphs.size()), 0};
    for (const ShapedGlyph& glyph : shaped_) {
        const size_t at = std::min<size_t>(stretch.start + glyph.cluster, word.text.size() - 1);
        const char32_t character = unicode::codePointAt(word.text, at).value;
        if (unicode::isDefaultIgnorable(character) && glyph.advance == 0) continue;
        if (isControl(word.text[at])) continue;
        WordGlyph added;
        added.glyph = glyph.glyph;
        added.advance = glyph.advance;
        added.xOffset = glyph.xOffset;
        added.yOffset = glyph.yOffset;
        added.cluster = static_cast<uint16_t>(at);
        if (shapedText[at] != word.text[at])
            added.advance = static_cast<float>(widthOfSpace(word.text[at], *stretch.face));
        word.glyphs.push_back(added);
    }
    segment.glyphCount = static_cast<uint32_t>(word.glyphs.size()) - segment.firstGlyph;
    if (segment.glyphCount > 0) word.segments.push_back(segment);
}

/// A cluster reaches to the next one in the text. Clusters of a right-to-left word come in falling order.
void WordCache::finishClusters(Word& word) {
    const size_t count = word.glyphs.size();
    uint16_t behind = static_cast<uint16_t>(word.text.size());
    const auto glyphAt = [&](size_t index) -> WordGlyph& {
        return word.glyphs[word.rightToLeft ? index : count - 1 - index];
    };
    // From the end of the text to its start: a group of equal clusters at a time.
    for (size_t index = 0; index < count;) {
        size_t end = index + 1;
        while (end < count && glyphAt(end).cluster == glyphAt(index).cluster) ++end;
        WordGlyph& leftmost = word.rightToLeft ? glyphAt(index) : glyphAt(end - 1);
        WordGlyph& rightmost = word.rightToLeft ? glyphAt(end - 1) : glyphAt(index);
        uint16_t textEnd = behind;
        while (textEnd > leftmost.cluster + 1 && marksABreak(word.text[textEnd - 1u])) --textEnd;
        leftmost.length = textEnd > leftmost.cluster ? static_cast<uint16_t>(textEnd - leftmost.cluster) : 0;
        rightmost.endsCluster = true;
        behind = std::min(behind, leftmost.cluster);
        ++word.clusters;
        index = end;
    }
}

void WordCache::findBreaksInText(std::u16string_view text, uint16_t language, bool withHyphens,
                                 std::vector<WordBreak>& breaks) {
    breaks.clear();
    opportunities_.clear();
    hyphenPoints_.clear();
    if (!hasNoOpportunity(text)) lineBreaks_.find(text, hyphenator_.tag(language), opportunities_);
    if (withHyphens) hyphenator_.find(text, language, hyphenPoints_);
    size_t point = 0;
    const auto addPoint = [&](const HyphenPoint& from) {
        WordBreak added;
        added.offset = from.offset;
        added.kind = BreakKind::Hyphen;
        added.capitalized = from.capitalized;
        added.lettersBefore = from.lettersBefore;
        added.lettersAfter = from.lettersAfter;
        breaks.push_back(added);
    };
    for (const uint32_t at : opportunities_) {
        for (; point < hyphenPoints_.size() && hyphenPoints_[point].offset < at; ++point)
            addPoint(hyphenPoints_[point]);
        while (point < hyphenPoints_.size() && hyphenPoints_[point].offset == at) ++point;
        WordBreak added;
        added.offset = at;
        added.discretionary = text[at - 1] == softHyphen;
        added.kind = added.discretionary ? BreakKind::Hyphen : BreakKind::Opportunity;
        breaks.push_back(added);
    }
    for (; point < hyphenPoints_.size(); ++point) addPoint(hyphenPoints_[point]);
}

void WordCache::findBreaks(Word& word, uint32_t shaping, bool withHyphens) {
    if (word.breaksKnown == Word::Breaks::All) return;
    if (word.breaksKnown == Word::Breaks::WithoutHyphens && !withHyphens) return;
    word.breaksKnown = withHyphens ? Word::Breaks::All : Word::Breaks::WithoutHyphens;
    const uint16_t language = styles_.shapingStyle(shaping).language;
    std::vector<WordBreak> breaks;
    findBreaksInText(word.text, language, withHyphens && !word.rightToLeft, breaks);
    for (WordBreak& at : breaks) {
        const uint16_t offset = static_cast<uint16_t>(at.offset);
        const Width head = headWidth(word, shaping, offset, at.kind), tail = tailWidth(word, shaping, offset);
        at.advanceBefore = head.advance;
        at.clustersBefore = head.clusters;
        at.advanceAfter = tail.advance;
        at.clustersAfter = tail.clusters;
    }
    word.breaks = std::move(breaks);
}

Word* WordCache::headOf(const Word& word, uint32_t shaping, uint16_t offset, BreakKind kind) {
    return find(headText(word, offset, kind), shaping, word.rightToLeft);
}

Word* WordCache::tailOf(const Word& word, uint32_t shaping, uint16_t offset) {
    return find(tailText(word, offset), shaping, word.rightToLeft);
}

WordCache::Width WordCache::headWidth(const Word& word, uint32_t shaping, uint16_t offset, BreakKind kind) {
    return widthOf(headText(word, offset, kind), shaping, word.rightToLeft);
}

WordCache::Width WordCache::tailWidth(const Word& word, uint32_t shaping, uint16_t offset) {
    return widthOf(tailText(word, offset), shaping, word.rightToLeft);
}

WordCache::Width WordCache::widthOf(std::u16string_view text, uint32_t shaping, bool rightToLeft) {
    constexpr size_t longestRemembered = 64;
    if (text.size() <= longestRemembered) {
        const Word* word = find(text, shaping, rightToLeft);
        return {word->advance, word->clusters};
    }
    Word passing;
    passing.text = text;
    passing.rightToLeft = rightToLeft;
    shape(passing, styles_.shapingStyle(shaping), WordContext::None);
    return {passing.advance, passing.clusters};
}

}  // namespace desk
