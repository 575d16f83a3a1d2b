#include "desk/fonts/font_names.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

namespace desk {

namespace {

bool isSeparator(char unit) {
    return unit == ' ' || unit == '-' || unit == '_' || unit == '\t';
}

// Case folding by Unicode, the same that fontconfig uses for its own comparisons; a lower-casing that asks the
// process's locale would find different fonts on different machines.
std::string lowerCase(const std::string& text) {
    std::unique_ptr<FcChar8, decltype(&std::free)> lower(FcStrDowncase(reinterpret_cast<const FcChar8*>(text.c_str())),
                                                         &std::free);
    return lower ? reinterpret_cast<const char*>(lower.get()) : text;
}

enum class StyleWord { Weight, Width, Italic, Neutral };

struct StyleTerm {
    std::string_view word;
    StyleWord kind;
    int value;
};

// Longer words stand before those that they begin with.
constexpr std::array kStyleTerms = {
    StyleTerm{"hairline", StyleWord::Weight, 100},     StyleTerm{"extralight", StyleWord::Weight, 200},
    StyleTerm{"extrathin", StyleWord::Weight, 100},    StyleTerm{"ultralight", StyleWord::Weight, 200},
    StyleTerm{"ultrathin", StyleWord::Weight, 100},    StyleTerm{"thin", StyleWord::Weight, 100},
    StyleTerm{"semilight", StyleWord::Weight, 350},    StyleTerm{"demilight", StyleWord::Weight, 350},
    StyleTerm{"light", StyleWord::Weight, 300},        StyleTerm{"regular", StyleWord::Neutral, 400},
    StyleTerm{"roman", StyleWord::Neutral, 400},       StyleTerm{"normal", StyleWord::Neutral, 400},
    StyleTerm{"plain", StyleWord::Neutral, 400},       StyleTerm{"upright", StyleWord::Neutral, 400},
    StyleTerm{"standard", StyleWord::Neutral, 400},    StyleTerm{"book", StyleWord::Neutral, 400},
    StyleTerm{"medium", StyleWord::Weight, 500},       StyleTerm{"semibold", StyleWord::Weight, 600},
    StyleTerm{"demibold", StyleWord::Weight, 600},     StyleTerm{"halbfett", StyleWord::Weight, 600},
    StyleTerm{"demi", StyleWord::Weight, 600},         StyleTerm{"extrabold", StyleWord::Weight, 800},
    StyleTerm{"ultrabold", StyleWord::Weight, 800},    StyleTerm{"bold", StyleWord::Weight, 700},
    StyleTerm{"gras", StyleWord::Weight, 700},         StyleTerm{"fett", StyleWord::Weight, 700},
    StyleTerm{"heavy", StyleWord::Weight, 850},        StyleTerm{"extrablack", StyleWord::Weight, 950},
    StyleTerm{"ultrablack", StyleWord::Weight, 950},   StyleTerm{"black", StyleWord::Weight, 900},
    StyleTerm{"fat", StyleWord::Weight, 950},          StyleTerm{"ultra", StyleWord::Weight, 950},
    StyleTerm{"ultracondensed", StyleWord::Width, 50}, StyleTerm{"extracondensed", StyleWord::Width, 62},
    StyleTerm{"semicondensed", StyleWord::Width, 87},  StyleTerm{"condensed", StyleWord::Width, 75},
    StyleTerm{"compressed", StyleWord::Width, 62},     StyleTerm{"cond", StyleWord::Width, 75},
    StyleTerm{"narrow", StyleWord::Width, 75},         StyleTerm{"semiexpanded", StyleWord::Width, 112},
    StyleTerm{"semiextended", StyleWord::Width, 112},  StyleTerm{"extraexpanded", StyleWord::Width, 150},
    StyleTerm{"extraextended", StyleWord::Width, 150}, StyleTerm{"expanded", StyleWord::Width, 125},
    StyleTerm{"extended", StyleWord::Width, 125},      StyleTerm{"wide", StyleWord::Width, 125},
    StyleTerm{"italic", StyleWord::Italic, 1},         StyleTerm{"italique", StyleWord::Italic, 1},
    StyleTerm{"oblique", StyleWord::Italic, 1},        StyleTerm{"kursiv", StyleWord::Italic, 1},
    StyleTerm{"slanted", StyleWord::Italic, 1},        StyleTerm{"inclined", StyleWord::Italic, 1},
};

// Only as whole words: inside a word they would be found anywhere.
constexpr std::array kAbbreviations = {
    StyleTerm{"it", StyleWord::Italic, 1},    StyleTerm{"obl", StyleWord::Italic, 1},
    StyleTerm{"bd", StyleWord::Weight, 700},  StyleTerm{"lt", StyleWord::Weight, 300},
    StyleTerm{"md", StyleWord::Weight, 500},  StyleTerm{"sb", StyleWord::Weight, 600},
    StyleTerm{"bk", StyleWord::Neutral, 400}, StyleTerm{"blk", StyleWord::Weight, 900},
    StyleTerm{"rg", StyleWord::Neutral, 400},
};

class StyleReader {
  public:
    void read(const std::string& word) {
        for (const StyleTerm& term : kAbbreviations) {
            if (word == term.word) return apply(term);
        }
        if (word.size() == 2 && word[0] >= '2' && word[0] <= '9' && word[1] >= '3' && word[1] <= '8') {
            numbers_ = word;
            return;
        }
        std::vector<const StyleTerm*> terms;
        if (!divide(word, terms)) {
            traits_.rest += word;
            return;
        }
        for (const StyleTerm* term : terms) apply(*term);
    }

    StyleTraits traits() {
        if (!numbers_.empty()) applyNumbers();
        return traits_;
    }

  private:
    static bool divide(std::string_view word, std::vector<const StyleTerm*>& terms) {
        while (!word.empty()) {
            const StyleTerm* longest = nullptr;
            for (const StyleTerm& term : kStyleTerms) {
                if (word.starts_with(term.word) && (longest == nullptr || term.word.size() > longest->word.size())) {
                    longest = &term;
                }
            }
            if (longest == nullptr) return false;
            terms.push_back(longest);
            word.remove_prefix(longest->word.size());
        }
        return true;
    }

    void apply(const StyleTerm& term) {
        switch (term.kind) {
            case StyleWord::Weight:
                traits_.weight = term.value;
                saidWeight_ = true;
                break;
            case StyleWord::Width:
                traits_.width = term.value;
                break;
            case StyleWord::Italic:
                traits_.italic = true;
                break;
            case StyleWord::Neutral:
                saidWeight_ = true;
                break;
        }
    }

    void applyNumbers() {
        constexpr int kWeights[] = {200, 100, 300, 400, 500, 700, 850, 900};  // for the digits 2..9
        if (!saidWeight_) traits_.weight = kWeights[numbers_[0] - '2'];
        const char second = numbers_[1];
        if (second == '6' || second == '8') traits_.italic = true;
        if (traits_.width == 100 && (second == '7' || second == '8')) traits_.width = 75;
        if (traits_.width == 100 && (second == '3' || second == '4')) traits_.width = 125;
    }

    StyleTraits traits_;
    std::string numbers_;
    bool saidWeight_ = false;
};

bool isModifier(const std::string& word) {
    return word == "semi" || word == "demi" || word == "extra" || word == "ultra";
}

}  // namespace

std::string nameKey(std::string_view name) {
    if (name.starts_with("$ID/")) name.remove_prefix(4);
    std::string key;
    key.reserve(name.size());
    for (char unit : name) {
        if (!isSeparator(unit)) key += unit;
    }
    return lowerCase(key);
}

std::vector<std::string> nameWords(std::string_view name) {
    if (name.starts_with("$ID/")) name.remove_prefix(4);
    std::vector<std::string> words;
    bool inside = false;
    for (char unit : name) {
        if (isSeparator(unit)) {
            inside = false;
            continue;
        }
        if (!inside) words.emplace_back();
        inside = true;
        words.back() += unit;
    }
    return words;
}

std::string joinWords(const std::vector<std::string>& words, size_t first, size_t last) {
    std::string joined;
    for (size_t i = first; i < last; ++i) {
        if (!joined.empty()) joined += ' ';
        joined += words[i];
    }
    return joined;
}

StyleTraits parseStyle(std::string_view style) {
    std::vector<std::string> words = nameWords(style);
    for (std::string& word : words) word = lowerCase(word);
    StyleReader reader;
    for (size_t i = 0; i < words.size(); ++i) {
        // "Demi Bold" is one thing and "Demi Italic" two.
        if (isModifier(words[i]) && i + 1 < words.size()) {
            const std::string together = words[i] + words[i + 1];
            const bool known = std::any_of(kStyleTerms.begin(), kStyleTerms.end(),
                                           [&](const StyleTerm& term) { return term.word == together; });
            if (known) {
                reader.read(together);
                ++i;
                continue;
            }
        }
        reader.read(words[i]);
    }
    return reader.traits();
}

int styleDistance(const StyleTraits& wanted, const StyleTraits& offered) {
    int distance = 0;
    if (wanted.italic != offered.italic) distance += 4000;
    if (wanted.rest != offered.rest) distance += 150;
    distance += 20 * std::abs(wanted.width - offered.width);
    const int difference = offered.weight - wanted.weight;
    distance += std::abs(difference);
    // Between two equally far away, bold text stays bold and light text light.
    const bool wantsBold = wanted.weight > 500;
    if (difference != 0 && (difference > 0) != wantsBold) distance += 1;
    return distance;
}

}  // namespace desk
