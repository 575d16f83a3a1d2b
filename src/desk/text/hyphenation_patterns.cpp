#include "desk/text/hyphenation_patterns.h"

#include <algorithm>
#include <bit>
#include <filesystem>
#include <fstream>

#include "desk/text/unicode.h"

namespace desk {
namespace {

/// The largest of the distributions' dictionaries has 1.1 MB. Every letter may become a node, and nodes have 24 bits.
constexpr size_t largestFile = 4u << 20;
/// No longer word is hyphenated, so no longer pattern can match. Counts of a pattern's values have 8 bits.
constexpr size_t longestPattern = 200;
/// Distances beyond the longest word are as good as this one.
constexpr size_t largestDistance = 200;

constexpr uint64_t nodeBits = 24;
constexpr uint64_t nodeMask = (1u << nodeBits) - 1;
constexpr size_t patternHead = 4;

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isBlank(char16_t c) { return c <= u' '; }
bool isLowSurrogate(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

/// How many letters a character counts for in the distance from the left: those of three letters in one count as two.
size_t lettersCounted(char16_t c) { return isLowSurrogate(c) ? 0 : c == u'\uFB03' || c == u'\uFB04' ? 2 : 1; }

std::u16string_view trimmed(std::u16string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// The number at the beginning, 0 for none.
size_t numberOf(std::u16string_view text) {
    text = trimmed(text);
    size_t number = 0;
    for (size_t i = 0; i < text.size() && isDigit(text[i]) && number <= largestDistance; ++i)
        number = number * 10 + (text[i] - u'0');
    return std::min(number, largestDistance);
}

/// The text up to a character, or all; both are taken from `rest`.
std::u16string_view takeUntil(std::u16string_view& rest, char16_t stop) {
    const size_t end = rest.find(stop);
    const std::u16string_view taken = rest.substr(0, end);
    rest = end == std::u16string_view::npos ? std::u16string_view{} : rest.substr(end + 1);
    return taken;
}

}  // namespace

PatternTable::PatternTable() : firstValue_(1, 0), values_(1, 0) { grow(4); }

void PatternTable::reserve(size_t units) {
    // Patterns share about three quarters of their units with others.
    const unsigned bits = static_cast<unsigned>(std::bit_width(units / 4));
    if (bits > 64 - shift_) grow(bits);
}

void PatternTable::grow(unsigned bits) {
    std::vector<uint64_t> old(size_t{1} << bits, 0);
    old.swap(slots_);
    shift_ = 64 - bits;
    for (const uint64_t entry : old) {
        if (!entry) continue;
        size_t at = (entry >> nodeBits) * 0x9E3779B97F4A7C15u >> shift_;
        while (slots_[at]) at = (at + 1) & (slots_.size() - 1);
        slots_[at] = entry;
    }
}

uint32_t PatternTable::child(uint32_t node, char16_t unit) const {
    const uint64_t key = uint64_t{node} << 16 | unit;
    for (size_t at = key * 0x9E3779B97F4A7C15u >> shift_;; at = (at + 1) & (slots_.size() - 1)) {
        const uint64_t entry = slots_[at];
        if (!entry) return 0;
        if (entry >> nodeBits == key) return static_cast<uint32_t>(entry & nodeMask);
    }
}

uint32_t PatternTable::childMade(uint32_t node, char16_t unit) {
    if (firstValue_.size() * 3 > slots_.size() * 2) grow(64 - shift_ + 1);
    const uint64_t key = uint64_t{node} << 16 | unit;
    size_t at = key * 0x9E3779B97F4A7C15u >> shift_;
    for (; slots_[at]; at = (at + 1) & (slots_.size() - 1))
        if (slots_[at] >> nodeBits == key) return static_cast<uint32_t>(slots_[at] & nodeMask);
    const uint64_t made = firstValue_.size();
    slots_[at] = key << nodeBits | made;
    firstValue_.push_back(0);
    return static_cast<uint32_t>(made);
}

void PatternTable::add(std::u16string_view pattern) {
    const std::u16string_view spelled = takeUntil(pattern, u'/');
    const bool changes = pattern.data() && (pattern.data() > spelled.data() + spelled.size());
    letters_.clear();
    digits_.assign(1, 0);
    for (const char16_t c : spelled) {
        if (isBlank(c)) break;
        if (isDigit(c)) {
            digits_.back() = static_cast<uint8_t>(c - u'0');
        } else {
            letters_ += c;
            digits_.push_back(0);
        }
    }
    if (letters_.empty() || letters_.size() > longestPattern) return;
    if (firstValue_.size() + letters_.size() > nodeMask) return;
    uint32_t node = 0;
    for (const char16_t c : letters_) node = childMade(node, c);
    // Only the values from the first that says something are kept; a pattern without any only ends shorter ones.
    const auto first = std::find_if(digits_.begin(), digits_.end(), [](uint8_t digit) { return digit != 0; });
    firstValue_[node] = 0;
    if (first == digits_.end()) return;
    const uint32_t change = changes ? changeRead(pattern, letters_.size()) : 0;
    firstValue_[node] = static_cast<uint32_t>(values_.size());
    for (const size_t byte : {size_t(digits_.end() - first), size_t{change} >> 16, size_t{change} >> 8, size_t{change}})
        values_.push_back(static_cast<uint8_t>(byte));
    values_.insert(values_.end(), first, digits_.end());
}

/// "ff=f,5,2": what is written, the first letter that changes (from 1), how many. Without the two numbers all change.
uint32_t PatternTable::changeRead(std::u16string_view text, size_t letters) {
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    Change change;
    std::u16string_view written = takeUntil(text, u',');
    const size_t start = numberOf(takeUntil(text, u','));
    const size_t length = numberOf(text);
    change.beforeHyphen = takeUntil(written, u'=');
    change.start = length && start ? start - 1 : 0;
    change.length = length ? length : letters;
    if (changes_.size() >= nodeMask) return 0;
    changes_.push_back(std::move(change));
    return static_cast<uint32_t>(changes_.size());
}

void PatternTable::score(std::u16string_view word, HyphenScore* scores) const {
    if (word.empty()) return;
    // The dots that stand for the borders are letters like others: position 0 and the one behind the word.
    const size_t last = word.size() + 1;
    // Dictionaries are made so that a pattern already holds the values of the patterns at its end. So where several end,
    // the longest alone counts; and where the beginning of a longer pattern ends, none of the shorter ones counts.
    size_t taken = 0;
    for (size_t start = 0; start <= last; ++start) {
        uint32_t node = 0;
        for (size_t at = start; at <= last; ++at) {
            node = child(node, at == 0 || at == last ? u'.' : word[at - 1]);
            if (!node) break;
            if (at < taken) continue;
            taken = at + 1;
            if (firstValue_[node]) raise(firstValue_[node], at, word.size() - 1, scores);
        }
    }
}

/// A pattern that ends at a position, counted from the dot before the word. `places` are inside the word.
void PatternTable::raise(uint32_t at, size_t end, size_t places, HyphenScore* scores) const {
    const size_t count = values_[at];
    const uint32_t number = uint32_t{values_[at + 1]} << 16 | uint32_t{values_[at + 2]} << 8 | values_[at + 3];
    for (size_t i = 0; i < count; ++i) {
        // After the letter at this position, where position 1 is the word's first letter.
        const size_t position = end + 1 + i - count;
        if (position < 1 || position > places) continue;
        const uint8_t value = values_[at + patternHead + i];
        HyphenScore& score = scores[position - 1];
        if (value <= score.value) continue;
        score = {value, 0, 0};
        if (!number) continue;
    }
}

}  // namespace desk
