#pragma once
// Where words may be hyphenated, by the dictionaries of the machine.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

/// A place in a word where a hyphen may be put. The limits of a paragraph are the caller's to apply: the counts are
/// here.
struct HyphenPoint {
    uint16_t offset = 0;        ///< UTF-16 units of the text before it
    uint8_t lettersBefore = 0;  ///< of the word that holds the point; counts end at 255
    uint8_t lettersAfter = 0;
    bool capitalized = false;  ///< the word begins with a capital
};

class Hyphenator {
  public:
    /// A folder with dictionary files ("hyph_de_DE.dic"). One that isn't there hyphenates nothing.
    explicit Hyphenator(std::string folder);
    ~Hyphenator();

    /// A small number for a language as documents name it ("$ID/English: USA"), from 0. Equal names share one.
    uint16_t language(const std::string& documentName);
    /// BCP 47; empty for none.
    const std::string& tag(uint16_t language) const;

    /// The points of all words in a piece of text without spaces, ascending. Points where the spelling would change are
    /// left out.
    void find(std::u16string_view text, uint16_t language, std::vector<HyphenPoint>& points);

  private:
    struct Dictionary;
    struct Language;
    Dictionary* dictionaryOf(Language& language);
    void findInWord(std::u16string_view word, uint16_t start, Dictionary& dictionary, Language& language,
                    std::vector<HyphenPoint>& points);

    std::string folder_;
    std::vector<std::unique_ptr<Language>> languages_;
    std::vector<std::pair<std::string, std::unique_ptr<Dictionary>>> dictionaries_;  ///< by file stem
    std::string bytes_;
    std::vector<uint8_t> follows_;
};

}  // namespace desk
