#pragma once
// The words of one generation, found by text, shaping style and direction. Open addressing: one look into a small array
// and one into the word decide most questions.

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace desk {

struct Word;

/// Under what a word is remembered.
struct WordKey {
    std::u16string_view text;
    uint32_t shaping = 0;
    uint8_t flags = 0;  ///< direction and joining
};
uint64_t hashOf(const WordKey& key);

class WordTable {
  public:
    WordTable();
    ~WordTable();
    WordTable(WordTable&&) noexcept;
    WordTable& operator=(WordTable&&) noexcept;

    /// Null when unknown.
    Word* find(const WordKey& key, uint64_t hash) const;
    /// The word must not be in the table.
    void add(uint64_t hash, std::unique_ptr<Word> word);
    /// Gives the word away; null when unknown.
    std::unique_ptr<Word> take(const WordKey& key, uint64_t hash);
    size_t size() const { return count_; }

  private:
    struct Slot {
        uint64_t hash = 0;
        std::unique_ptr<Word> word;  ///< null in a free slot and in one whose word was taken
        bool wasTaken = false;       ///< the search goes on behind it
    };
    Slot* slotOf(const WordKey& key, uint64_t hash) const;
    void grow();

    mutable std::vector<Slot> slots_;  ///< a power of two
    size_t count_ = 0, used_ = 0;
};

}  // namespace desk
