#include "desk/text/hyphenation.h"

#include <hyphen.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "desk/text/language.h"
#include "desk/text/unicode.h"

namespace desk {
namespace {

/// Longer "words" are tables of characters, not words; the library's buffers grow with them.
constexpr size_t longestWord = 200;

bool isApostrophe(char32_t c) { return c == U'\'' || c == U'\u2019'; }

uint8_t counted(size_t count) { return static_cast<uint8_t>(std::min<size_t>(count, 255)); }

}  // namespace

struct Hyphenator::Dictionary {
    HyphenDict* rules = nullptr;
    std::unique_ptr<unicode::Encoder> encoder;
    bool isUtf8 = false;
    ~Dictionary() {
        if (rules) hnj_hyphen_free(rules);
    }
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

const std::string& Hyphenator::tag(uint16_t language) const { return languages_[language]->name.tag; }

Hyphenator::Dictionary* Hyphenator::dictionaryOf(Language& language) {
    if (language.searched) return language.dictionary;
    language.searched = true;
    for (const std::string& stem : language.name.dictionaries) {
        const auto known = std::find_if(dictionaries_.begin(), dictionaries_.end(),
                                        [&](const auto& entry) { return entry.first == stem; });
        if (known != dictionaries_.end()) {
            language.dictionary = known->second.get();
        } else if (HyphenDict* rules = hnj_hyphen_load((folder_ + "/" + stem + ".dic").c_str())) {
            auto dictionary = std::make_unique<Dictionary>();
            dictionary->rules = rules;
            dictionary->isUtf8 = rules->utf8 != 0;
            dictionary->encoder = unicode::Encoder::make(dictionary->isUtf8 ? "UTF-8" : rules->cset);
            if (dictionary->encoder) language.dictionary = dictionary.get();
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
    if (!dictionary.encoder->encode(lower, bytes_)) return;
    marks_.assign(bytes_.size() + 5, '\0');
    char** replacements = nullptr;
    int* positions = nullptr;
    int* cuts = nullptr;
    const int failed = hnj_hyphen_hyphenate3(dictionary.rules, bytes_.data(), static_cast<int>(bytes_.size()),
                                             marks_.data(), nullptr, &replacements, &positions, &cuts, 0, 0, 0, 0);
    size_t letters = 0;
    for (size_t at = 0; at < word.size();) {
        const unicode::CodePoint c = unicode::codePointAt(word, at);
        letters += unicode::isLetter(c.value);
        at += c.units;
    }
    const bool capitalized = unicode::isUpperCase(unicode::codePointAt(word, 0).value);
    // The library marks characters, whatever the bytes of each.
    size_t before = 0, character = 0;
    for (size_t at = 0; !failed && at < word.size(); ++character) {
        const unicode::CodePoint c = unicode::codePointAt(word, at);
        before += unicode::isLetter(c.value);
        at += c.units;
        if (at >= word.size() || !(marks_[character] & 1)) continue;
        if (replacements && replacements[character]) continue;
        points.push_back({static_cast<uint16_t>(start + at), counted(before), counted(letters - before), capitalized});
    }
    if (replacements) {
        for (size_t i = 0; i < bytes_.size(); ++i) std::free(replacements[i]);
        std::free(replacements);
    }
    std::free(positions);
    std::free(cuts);
}

}  // namespace desk
