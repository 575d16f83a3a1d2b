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

/// As much of a file as is decoded at once: few enough bytes to stay in the processor's cache.
constexpr size_t block = 1u << 16;

constexpr uint64_t nodeBits = 24;
constexpr uint64_t nodeMask = (1u << nodeBits) - 1;
constexpr size_t patternHead = 4;

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}
bool isBlank(char16_t c) {
    return c <= u' ';
}
bool isLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

/// How many letters a character counts for in the distance from the left: those of three letters in one count as two.
size_t lettersCounted(char16_t c) {
    return isLowSurrogate(c) ? 0 : c == u'\uFB03' || c == u'\uFB04' ? 2 : 1;
}

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

/// How many places at the beginning of a text have less than a distance before them.
size_t placesTooFarLeft(std::u16string_view text, size_t distance) {
    size_t places = 0;
    for (size_t letters = 0; places < text.size(); ++places)
        if ((letters += lettersCounted(text[places])) >= distance) break;
    return places;
}

/// How many places at the end, that after the last unit included, have less than a distance behind them.
size_t placesTooFarRight(std::u16string_view text, size_t distance) {
    size_t places = 0;
    for (size_t characters = 0; places < text.size() && characters < distance; ++places)
        characters += !isLowSurrogate(text[text.size() - 1 - places]);
    return places;
}

/// The text up to a character, or all; both are taken from `rest`.
std::u16string_view takeUntil(std::u16string_view& rest, char16_t stop) {
    const size_t end = rest.find(stop);
    const std::u16string_view taken = rest.substr(0, end);
    rest = end == std::u16string_view::npos ? std::u16string_view{} : rest.substr(end + 1);
    return taken;
}

uint64_t beginningWith(char16_t first, char16_t second, char16_t third) {
    return uint64_t{first} << 32 | uint64_t{second} << 16 | third;
}

/// The first three letters of a pattern; 0 for one that has less, or so many that it matches nothing.
uint64_t beginningOf(std::u16string_view pattern) {
    uint64_t beginning = 0;
    size_t letters = 0;
    for (const char16_t c : pattern) {
        if (isDigit(c)) continue;
        if (isBlank(c) || c == u'/') break;
        if (letters < 3) beginning = beginning << 16 | c;
        ++letters;
        if (letters == 3 && pattern.size() <= longestPattern) break;
    }
    return letters >= 3 && letters <= longestPattern ? beginning : 0;
}

}  // namespace

PatternTable::PatternTable() : firstValue_(1, 0), values_(1, 0) {
    grow(4);
}

/// Nodes made one after the other have their slots side by side, a row for each letter: reading stays in the cache.
size_t PatternTable::slotOf(uint64_t key) const {
    const uint64_t node = key >> 16, unit = key & 0xFFFF;
    return (node * 2 + unit * 0x9E3779B1u) & (slots_.size() - 1);
}

void PatternTable::grow(unsigned bits) {
    std::vector<uint64_t> old(size_t{1} << bits, 0);
    old.swap(slots_);
    for (const uint64_t entry : old) {
        if (!entry) continue;
        size_t at = slotOf(entry >> nodeBits);
        while (slots_[at]) at = (at + 1) & (slots_.size() - 1);
        slots_[at] = entry;
    }
}

uint32_t PatternTable::child(uint32_t node, char16_t unit) const {
    const uint64_t key = uint64_t{node} << 16 | unit;
    for (size_t at = slotOf(key);; at = (at + 1) & (slots_.size() - 1)) {
        const uint64_t entry = slots_[at];
        if (!entry) return 0;
        if (entry >> nodeBits == key) return static_cast<uint32_t>(entry & nodeMask);
    }
}

uint32_t PatternTable::childMade(uint32_t node, char16_t unit) {
    if (firstValue_.size() * 3 > slots_.size() * 2) grow(static_cast<unsigned>(std::bit_width(slots_.size())));
    const uint64_t key = uint64_t{node} << 16 | unit;
    size_t at = slotOf(key);
    for (; slots_[at]; at = (at + 1) & (slots_.size() - 1))
        if (slots_[at] >> nodeBits == key) return static_cast<uint32_t>(slots_[at] & nodeMask);
    const uint64_t made = firstValue_.size();
    slots_[at] = key << nodeBits | made;
    firstValue_.push_back(0);
    return static_cast<uint32_t>(made);
}

/// The node of letters_. Files are sorted more or less, so that the way to the last node is mostly the way to this one.
uint32_t PatternTable::nodeMade() {
    const auto [differs, ignored] =
        std::mismatch(letters_.begin(), letters_.end(), wayLetters_.begin(), wayLetters_.end());
    wayNodes_.resize(static_cast<size_t>(differs - letters_.begin()) + 1);
    for (auto letter = differs; letter != letters_.end(); ++letter)
        wayNodes_.push_back(childMade(wayNodes_.back(), *letter));
    wayLetters_ = letters_;
    return wayNodes_.back();
}

void PatternTable::add(std::u16string_view pattern) {
    const uint64_t beginning = beginningOf(pattern);
    // Few are so short, and they fit in too many words to wait. What is too long is left out.
    if (!beginning) return parse(pattern);
    if (beginning != lastBeginning_) {
        lastBeginning_ = beginning;
        lastWaiting_ = &waiting_[beginning];
        // score() asks even for beginnings of patterns.
        childMade(childMade(0, static_cast<char16_t>(beginning >> 32)), static_cast<char16_t>(beginning >> 16));
    }
    const size_t start = lines_.size();
    lines_ += pattern;
    lines_ += u'\n';
    if (!lastWaiting_->empty() && lastWaiting_->back().end == start) {
        lastWaiting_->back().end = lines_.size();
    } else {
        lastWaiting_->push_back({start, lines_.size()});
    }
}

void PatternTable::parseWaiting(uint64_t beginning) {
    const auto waiting = waiting_.find(beginning);
    if (waiting == waiting_.end()) return;
    for (const Waiting& range : waiting->second)
        for (std::u16string_view rest = std::u16string_view(lines_).substr(range.start, range.end - range.start);
             !rest.empty();)
            parse(takeUntil(rest, u'\n'));
    waiting_.erase(waiting);
    lastBeginning_ = 0;
}

/// A node of three letters says that the patterns that begin with them aren't waiting any more.
void PatternTable::makeSure(char16_t first, char16_t second, char16_t third) {
    const uint32_t one = child(0, first);
    const uint32_t two = one ? child(one, second) : 0;
    if (two && !child(two, third)) parseWaiting(beginningWith(first, second, third));
}

void PatternTable::parse(std::u16string_view pattern) {
    const size_t slash = pattern.find(u'/');
    letters_.clear();
    digits_.assign(1, 0);
    for (const char16_t c : pattern.substr(0, slash)) {
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
    const uint32_t node = nodeMade();
    firstValue_[node] = 0;
    // The values before the first that says something aren't kept; a pattern of none only hides shorter ones.
    const auto first = std::find_if(digits_.begin(), digits_.end(), [](uint8_t digit) { return digit != 0; });
    if (first == digits_.end()) return;
    const uint32_t change = slash == std::u16string_view::npos ? 0 : addChange(pattern.substr(slash + 1));
    firstValue_[node] = static_cast<uint32_t>(values_.size());
    const size_t count = static_cast<size_t>(digits_.end() - first);
    for (const size_t byte : {count, size_t{change} >> 16, size_t{change} >> 8, size_t{change}})
        values_.push_back(static_cast<uint8_t>(byte));
    values_.insert(values_.end(), first, digits_.end());
}

/// "ff=f,5,2": what is written, the first letter that changes (from 1), how many. Without both numbers all may change.
uint32_t PatternTable::addChange(std::u16string_view text) {
    text = trimmed(text);
    std::u16string_view written = takeUntil(text, u',');
    const size_t start = numberOf(takeUntil(text, u','));
    const size_t length = numberOf(text);
    Change change;
    change.beforeHyphen = takeUntil(written, u'=');
    change.letters = letters_.size() - (letters_.front() == u'.');
    change.start = start && length ? start - 1 : 0;
    change.end = change.start + (length ? length : letters_.size());
    changes_.push_back(std::move(change));
    return static_cast<uint32_t>(changes_.size());
}

void PatternTable::score(std::u16string_view word, HyphenScore* scores) {
    if (word.empty()) return;
    // The dots that stand for the borders are letters like others: position 0 and the one behind the word.
    const size_t last = word.size() + 1;
    // Dictionaries are made so that a pattern already holds the values of the patterns at its end. So where several
    // end, the longest alone counts; and where the beginning of a longer pattern ends, none of the shorter ones counts.
    size_t taken = 0;
    const auto letterAt = [&](size_t at) { return at == 0 || at == last ? u'.' : word[at - 1]; };
    for (size_t start = 0; start <= last; ++start) {
        if (start + 2 <= last && !waiting_.empty()) makeSure(letterAt(start), letterAt(start + 1), letterAt(start + 2));
        uint32_t node = 0;
        for (size_t at = start; at <= last; ++at) {
            node = child(node, letterAt(at));
            if (!node) break;
            if (at < taken) continue;
            taken = at + 1;
            if (firstValue_[node]) raise(firstValue_[node], at, word.size() - 1, scores);
        }
    }
}

/// Takes in the values at values_[at] of a pattern that ends at a position, counted from the dot before the word.
void PatternTable::raise(size_t at, size_t end, size_t places, HyphenScore* scores) const {
    const size_t count = values_[at];
    const uint32_t number = uint32_t{values_[at + 1]} << 16 | uint32_t{values_[at + 2]} << 8 | values_[at + 3];
    for (size_t i = 0; i < count; ++i) {
        // The value after the letter at this position; 1 is the word's first letter. A value before both wraps around.
        const size_t position = end + 1 + i - count;
        const uint8_t value = values_[at + patternHead + i];
        if (position < 1 || position > places || value <= scores[position - 1].value) continue;
        HyphenScore& score = scores[position - 1];
        score = {value, 0, 0};
        if (!number) continue;
        const Change& change = changes_[number - 1];
        const size_t before = change.letters - (count - 1 - i);
        if (before < change.start || before > change.end) continue;
        score.change = number;
        score.lettersOfChange = static_cast<uint8_t>(before - change.start);
    }
}

size_t PatternTable::size() const {
    return slots_.capacity() * sizeof(slots_[0]) + firstValue_.capacity() * sizeof(firstValue_[0]) +
           values_.capacity() + changes_.capacity() * sizeof(Change) + lines_.capacity() * sizeof(char16_t);
}

std::unique_ptr<HyphenationPatterns> HyphenationPatterns::load(const std::string& path) {
    // A pipe or a device under this name would never end.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return nullptr;
    const uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > largestFile) return nullptr;
    std::string file(static_cast<size_t>(size), '\0');
    std::ifstream stream(path, std::ios::binary);
    stream.read(file.data(), static_cast<std::streamsize>(file.size()));
    file.resize(static_cast<size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    return read(file);
}

std::unique_ptr<HyphenationPatterns> HyphenationPatterns::read(std::string_view file) {
    if (file.size() > largestFile) return nullptr;
    const std::string_view firstLine = file.substr(0, file.find_first_of("\r\n"));
    std::unique_ptr<HyphenationPatterns> patterns(new HyphenationPatterns);
    patterns->characterSet_ = firstLine.substr(0, firstLine.find_last_not_of(" \t") + 1);
    file.remove_prefix(firstLine.size());
    patterns->compounds_.reserve(file.size());
    std::u16string text;
    for (Level level = Level::Compounds; level != Level::End;) {
        const size_t lines = std::min(file.find('\n', std::min(file.size(), block)), file.size());
        if (!unicode::decode(file.substr(0, lines), patterns->characterSet_, text)) return nullptr;
        file.remove_prefix(lines);
        patterns->readLines(text, level, file.size());
        if (file.empty()) break;
    }
    patterns->complete();
    return patterns;
}

/// Takes in lines of the level, which they may end. `left` are the bytes of the file behind them.
void HyphenationPatterns::readLines(std::u16string_view text, Level& level, size_t left) {
    while (!text.empty() && level != Level::End) {
        const std::u16string_view line = takeUntil(text, u'\n');
        if (line.starts_with(u"NEXTLEVEL")) {
            hasLevels_ = true;
            level = level == Level::Compounds ? Level::Syllables : Level::End;
            syllables_.reserve(text.size() + left);
        } else if (!line.empty() && line.front() != u'%' && line.front() != u'#') {
            // The first level's options hold for the whole file.
            Distances ignored;
            std::vector<std::u16string> ignoredList;
            const bool first = level == Level::Compounds;
            if (!readOption(line, first ? distances_ : ignored, first ? unhyphenated_ : ignoredList))
                (first ? compounds_ : syllables_).add(line);
        }
    }
}

void HyphenationPatterns::complete() {
    if (!hasLevels_) {
        std::swap(compounds_, syllables_);
        addDefaultCompounds();
    }
    if (!distances_.left) distances_.left = 2;
    if (!distances_.right) distances_.right = 2;
}

bool HyphenationPatterns::readOption(std::u16string_view line, Distances& distances,
                                     std::vector<std::u16string>& unhyphenated) {
    if (line.front() < u'A' || line.front() > u'Z') return false;
    const std::pair<std::u16string_view, size_t*> options[] = {{u"LEFTHYPHENMIN", &distances.left},
                                                               {u"RIGHTHYPHENMIN", &distances.right},
                                                               {u"COMPOUNDLEFTHYPHENMIN", &distances.compoundLeft},
                                                               {u"COMPOUNDRIGHTHYPHENMIN", &distances.compoundRight}};
    for (const auto& [name, distance] : options) {
        if (!line.starts_with(name)) continue;
        *distance = numberOf(line.substr(name.size()));
        return true;
    }
    constexpr std::u16string_view list = u"NOHYPHEN";
    if (!line.starts_with(list)) return false;
    unhyphenated.clear();
    for (std::u16string_view rest = trimmed(line.substr(list.size())); !rest.empty();) {
        const std::u16string_view entry = takeUntil(rest, u',');
        if (!entry.empty()) unhyphenated.emplace_back(entry);
    }
    return true;
}

/// A file of one level has a first one all the same, which cuts words at hyphens and apostrophes.
void HyphenationPatterns::addDefaultCompounds() {
    unhyphenated_.clear();
    for (const std::u16string sign : {u"-", u"'", u"\u2013", u"\u2019"}) {
        compounds_.add(u"1" + sign + u"1");
        unhyphenated_.push_back(sign);
    }
    Distances& d = distances_;
    if (!d.compoundLeft) d.compoundLeft = d.left ? d.left : 3;
    if (!d.compoundRight) d.compoundRight = d.right ? d.right : 3;
}

void HyphenationPatterns::find(std::u16string_view word, std::vector<uint8_t>& follows) {
    follows.assign(word.size(), 0);
    if (word.empty() || word.size() > longestPattern) return;
    follows_ = &follows;
    scores_.clear();
    findInPart(word, Border::Word, Border::Word, 0, word.size() - 1);
    std::fill_n(follows.begin(), placesTooFarLeft(word, distances_.left), 0);
    std::fill_n(follows.rbegin(), placesTooFarRight(word, distances_.right), 0);
    for (const std::u16string& text : unhyphenated_) {
        for (size_t at = word.find(text); at != std::u16string_view::npos; at = word.find(text, at + 1)) {
            follows[at + text.size() - 1] = 0;
            if (at > 0) follows[at - 1] = 0;
        }
    }
}

/// Writes places of a part that begins at word[start]; as many as `places` from there.
void HyphenationPatterns::findInPart(std::u16string_view part, Border left, Border right, size_t start, size_t places) {
    if (part.empty()) return;  // a change of spelling left nothing before its hyphen
    const size_t base = scores_.size();
    scores_.resize(base + part.size());
    compounds_.score(part, &scores_[base]);
    size_t begin = 0;
    for (size_t i = 0; i < part.size(); ++i) {
        const HyphenScore score = scores_[base + i];
        const bool cuts = score.value & 1;
        if (!cuts && !(begin > 0 && i + 1 == part.size())) continue;
        if (i > begin && begin < places) {
            std::u16string respelled;
            std::u16string_view inner = part.substr(begin, i + 1 - begin);
            if (score.change) inner = respelled = leftPart(part, begin, i, score);
            // The last letter of a part is never cut off alone, not even by a cut of the part itself.
            findInPart(inner, begin > 0 ? Border::Compound : left, cuts ? Border::Compound : right, start + begin,
                       std::min(i - 1, places) - begin);
        }
        if (cuts && i < places) (*follows_)[start + i] = score.change == 0;
        begin = i + 1;
    }
    scores_.resize(base);
    if (begin == 0) findInSyllables(part, left, right, start, places);
}

/// What stands before a hyphen that changes the spelling, as it is written then.
std::u16string HyphenationPatterns::leftPart(std::u16string_view part, size_t begin, size_t last,
                                             const HyphenScore& score) const {
    std::u16string written(part.substr(begin, last + 1 - begin));
    if (score.lettersOfChange > written.size()) return written;
    std::u16string respelled = written.substr(0, written.size() - score.lettersOfChange);
    respelled += compounds_.change(score.change);
    // Only what is shorter than the whole is sure to come to an end.
    return respelled.size() < part.size() ? respelled : written;
}

void HyphenationPatterns::findInSyllables(std::u16string_view part, Border left, Border right, size_t start,
                                          size_t places) {
    const size_t base = scores_.size();
    scores_.resize(base + part.size());
    syllables_.score(part, &scores_[base]);
    const size_t first = left == Border::Compound ? placesTooFarLeft(part, distances_.compoundLeft) : 0;
    const size_t closed = right == Border::Compound ? placesTooFarRight(part, distances_.compoundRight) : 0;
    const size_t end = std::min(places, part.size() - closed);
    for (size_t i = first; i < end; ++i) {
        const HyphenScore& score = scores_[base + i];
        if ((score.value & 1) && !score.change) (*follows_)[start + i] = 1;
    }
    scores_.resize(base);
}

}  // namespace desk
