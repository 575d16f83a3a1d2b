#pragma once
// Hyphenation by patterns (F. M. Liang, "Word Hy-phen-a-tion by Com-put-er", 1983), read from the dictionary files that
// the machine's packages install ("hyph_de_DE.dic").

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace desk {

/// What the patterns say about the place after one UTF-16 unit of a word.
struct HyphenScore {
    uint8_t value = 0;            ///< a hyphen may stand here when odd
    uint8_t lettersOfChange = 0;  ///< how many letters before the place the change of spelling takes in
    uint32_t change = 0;          ///< 0 for none, else PatternTable::change()
};

/// The patterns of one level, as a trie in one hash table. A pattern goes into the trie when a word is met that it
/// could fit: a dictionary has a hundred thousand of them, and a short job asks for a few words.
class PatternTable {
  public:
    PatternTable();
    /// Room for the patterns of a text of so many UTF-16 units.
    void reserve(size_t units) { lines_.reserve(units); }

    /// A pattern: letters with digits between them, a dot for a border of the word, and perhaps
    /// "/change,start,length" for a hyphen that changes the spelling. One of the same letters replaces an earlier one.
    /// Call before the first score().
    void add(std::u16string_view pattern);

    /// Raises the scores of a word; scores[i] is the place after word[i]. The place after the last unit is never
    /// scored.
    void score(std::u16string_view word, HyphenScore* scores);

    /// What stands before the hyphen of a change of spelling: "ff" for "ff=f".
    const std::u16string& change(uint32_t number) const { return changes_[number - 1].beforeHyphen; }
    /// Bytes held.
    size_t size() const;

  private:
    struct Change {
        std::u16string beforeHyphen;
        size_t letters = 0;         ///< of the pattern, a dot before them not counted
        size_t start = 0, end = 0;  ///< a hyphen with so many of them before it, or between, changes the spelling
    };

    /// Lines that stand behind each other and begin with the same three letters: a range of lines_.
    struct Waiting {
        size_t start = 0, end = 0;
    };

    void parse(std::u16string_view pattern);
    void parseWaiting(uint64_t beginning);
    void makeSure(char16_t first, char16_t second, char16_t third);
    size_t slotOf(uint64_t key) const;
    uint32_t child(uint32_t node, char16_t unit) const;
    uint32_t childMade(uint32_t node, char16_t unit);
    uint32_t nodeMade();
    void grow(unsigned bits);
    uint32_t addChange(std::u16string_view text);
    void raise(size_t at, size_t end, size_t places, HyphenScore* scores) const;

    std::vector<uint64_t> slots_;       ///< open addressing: parent (24 bits), unit (16), child (24); 0 is free
    std::vector<uint32_t> firstValue_;  ///< by node: where its pattern stands in values_, 0 for none
    std::vector<uint8_t> values_;       ///< a pattern: count, number of change (3 bytes), values up to its last letter
    std::vector<Change> changes_;
    std::u16string lines_;  ///< patterns as they were added, each with a line feed
    std::unordered_map<uint64_t, std::vector<Waiting>> waiting_;  ///< by their first three letters
    uint64_t lastBeginning_ = 0;
    std::vector<Waiting>* lastWaiting_ = nullptr;  ///< where the last added pattern waits
    std::u16string letters_;                       ///< scratch of parse(), as what follows
    std::vector<uint8_t> digits_;
    std::u16string wayLetters_;
    std::vector<uint32_t> wayNodes_ = {0};
};

/// One dictionary file: two levels of patterns and the distances to keep. The first level cuts a word into the words it
/// is composed of, again and again until it finds nothing; the second hyphenates the parts. One thread at a time.
class HyphenationPatterns {
  public:
    /// Null for a file that is missing, too large, or written in a character set that isn't known. Lines that make no
    /// sense are left out.
    static std::unique_ptr<HyphenationPatterns> load(const std::string& path);
    static std::unique_ptr<HyphenationPatterns> read(std::string_view file);

    /// As the file names it.
    const std::string& characterSet() const { return characterSet_; }

    /// Where a word without digits, in small letters, may be hyphenated: follows[i] is 1 when a hyphen may stand after
    /// word[i]. Places where the hyphen would change the spelling are left out.
    void find(std::u16string_view word, std::vector<uint8_t>& follows);

    /// Bytes held.
    size_t size() const { return compounds_.size() + syllables_.size(); }

  private:
    enum class Border : uint8_t { Word, Compound };
    enum class Level : uint8_t { Compounds, Syllables, End };
    struct Distances {
        size_t left = 0, right = 0, compoundLeft = 0, compoundRight = 0;  ///< in characters
    };

    HyphenationPatterns() = default;
    void readLines(std::u16string_view text, Level& level, size_t left);
    void complete();
    static bool readOption(std::u16string_view line, Distances& distances, std::vector<std::u16string>& unhyphenated);
    void addDefaultCompounds();
    void findInPart(std::u16string_view part, Border left, Border right, size_t start, size_t places);
    void findInSyllables(std::u16string_view part, Border left, Border right, size_t start, size_t places);
    std::u16string leftPart(std::u16string_view part, size_t begin, size_t last, const HyphenScore& score) const;

    std::string characterSet_;
    PatternTable compounds_, syllables_;
    bool hasLevels_ = false;
    Distances distances_;
    std::vector<std::u16string> unhyphenated_;  ///< no hyphen before and after these
    std::vector<HyphenScore> scores_;           ///< a stack: each part's stand above those of the part it is cut from
    std::vector<uint8_t>* follows_ = nullptr;   ///< during find()
};

}  // namespace desk
