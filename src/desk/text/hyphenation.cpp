#include "desk/text/hyphenation.h"

#include <algorithm>
#include <limits>

#include "desk/text/hyphenation_patterns.h"
#include "desk/text/language.h"
#include "desk/text/unicode.h"

namespace desk {
namespace {

/// Longer "words" are tables of characters, not words.
constexpr size_t longestWord = 200;

bool isApostrophe(char32_t c) {
    return c == U'\'' || c == U'\u2019';
}

uint8_t counted(size_t count) {
    return static_cast<uint8_t>(std::min<size_t>(count, 255));
}

}  // namespace

struct Hyphenator::Dictionary {
    std::unique_ptr<HyphenationPatterns> patterns;
    /// Null for UTF-8. A word with a letter outside the dictionary's character set is foreign to its patterns.
    std::unique_ptr<unicode::Encoder> encoder;
};

struct Hyphenator::Language {
    std::string documentName;
    LanguageName name;
    bool searched = false;
    Dictionary* dictionary = nullptr;
};

Hyphenator::Hyphenator(std::string folder) : folder_(std::move(folder)) {}
Hyphenator::~Hyphenator() = default;

uint16_t Hyphenator::language(const std::string& documentName) {
    for (size_t i = 0; i < languages_.size(); ++i)
        if (languages_[i]->documentName == documentName) return static_cast<uint16_t>(i);
    auto added = std::make_unique<Language>();
    added->documentName = documentName;
    added->name = languageNamed(documentName);
    languages_.push_back(std::move(added));
    return static_cast<uint16_t>(languages_.size() - 1);
}

const std::string& Hyphenator::tag(uint16_t language) const {
    return languages_[language]->name.tag;
}

Hyphenator::Dictionary* Hyphenator::dictionaryOf(Language& language) {
    if (language.searched) return language.dictionary;
    language.searched = true;
    for (const std::string& stem : language.name.dictionaries) {
        const auto known = std::find_if(dictionaries_.begin(), dictionaries_.end(),
                                        [&](const auto& entry) { return entry.first == stem; });
        if (known != dictionaries_.end()) {
            language.dictionary = known->second.get();
        } else if (auto patterns = HyphenationPatterns::load(folder_ + "/" + stem + ".dic")) {
            auto dictionary = std::make_unique<Dictionary>();
            if (patterns->characterSet() != "UTF-8")
                dictionary->encoder = unicode::Encoder::make(patterns->characterSet());
            dictionary->patterns = std::move(patterns);
            language.dictionary = dictionary.get();
            dictionaries_.emplace_back(stem, std::move(dictionary));
        }
        if (language.dictionary) break;
    }
    return language.dictionary;
}

void Hyphenator::find(std::u16string_view text, uint16_t languageNumber, std::vector<HyphenPoint>& points) {
    points.clear();
    Language& language = *languages_[languageNumber];
    Dictionary* dictionary = dictionaryOf(language);
    if (!dictionary || text.size() > std::numeric_limits<uint16_t>::max()) return;
    size_t at = 0;
    while (at < text.size()) {
        unicode::CodePoint c = unicode::codePointAt(text, at);
        if (!unicode::isLetter(c.value)) {
            at += c.units;
            continue;
        }
        const size_t start = at;
        size_t end = at;
        while (at < text.size()) {
            c = unicode::codePointAt(text, at);
            const bool belongs = unicode::isLetter(c.value) || unicode::isMark(c.value);
            if (!belongs && !isApostrophe(c.value)) break;
            at += c.units;
            if (belongs) end = at;
        }
        const std::u16string_view word = text.substr(start, end - start);
        if (word.size() > 3 && word.size() <= longestWord)
            findInWord(word, static_cast<uint16_t>(start), *dictionary, language, points);
    }
}

void Hyphenator::findInWord(std::u16string_view word, uint16_t start, Dictionary& dictionary, Language& language,
                            std::vector<HyphenPoint>& points) {
    std::u16string lower = unicode::lowerCase(word, language.name.tag);
    if (lower.size() != word.size()) return;
    std::replace(lower.begin(), lower.end(), u'\u2019', u'\'');
    if (dictionary.encoder && !dictionary.encoder->encode(lower, bytes_)) return;
    dictionary.patterns->find(lower, follows_);
    size_t letters = 0;
    for (size_t at = 0; at < word.size();) {
        const unicode::CodePoint c = unicode::codePointAt(word, at);
        letters += unicode::isLetter(c.value);
        at += c.units;
    }
    const bool capitalized = unicode::isUpperCase(unicode::codePointAt(word, 0).value);
    size_t before = 0;
    for (size_t at = 0; at < word.size();) {
        const unicode::CodePoint c = unicode::codePointAt(word, at);
        before += unicode::isLetter(c.value);
        at += c.units;
        if (at < word.size() && follows_[at - 1])
            points.push_back(
                {static_cast<uint16_t>(start + at), counted(before), counted(letters - before), capitalized});
    }
}

}  // namespace desk
