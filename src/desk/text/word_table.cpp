#include "desk/text/word_table.h"

#include <cstring>

#include "desk/text/word_cache.h"

namespace desk {
namespace {

constexpr size_t firstSize = 256;

bool isNamed(const Word& word, const WordKey& key) {
    return word.shaping == key.shaping && word.flags == key.flags && word.text == key.text;
}

}  // namespace

uint64_t hashOf(const WordKey& key) {
    uint64_t hash =
        (uint64_t{key.shaping} << 8 | key.flags) + 0x9E3779B97F4A7C15ull + (uint64_t{key.text.size()} << 40);
    const auto add = [&](uint64_t value) {
        hash = (hash ^ value) * 0x9FB21C651E98DF25ull;
        hash ^= hash >> 29;
    };
    size_t at = 0;
    for (; at + 4 <= key.text.size(); at += 4) {
        uint64_t units = 0;
        std::memcpy(&units, key.text.data() + at, sizeof units);
        add(units);
    }
    uint64_t rest = 0;
    for (; at < key.text.size(); ++at) rest = rest << 16 | key.text[at];
    add(rest);
    return hash ^ (hash >> 32);
}

WordTable::WordTable() : slots_(firstSize) {}
WordTable::~WordTable() = default;
WordTable::WordTable(WordTable&&) noexcept = default;
WordTable& WordTable::operator=(WordTable&&) noexcept = default;

WordTable::Slot* WordTable::slotOf(const WordKey& key, uint64_t hash) const {
    const size_t mask = slots_.size() - 1;
    for (size_t index = hash & mask;; index = (index + 1) & mask) {
        Slot& slot = slots_[index];
        if (!slot.word) {
            if (!slot.wasTaken) return nullptr;
            continue;
        }
        if (slot.hash == hash && isNamed(*slot.word, key)) return &slot;
    }
}

Word* WordTable::find(const WordKey& key, uint64_t hash) const {
    const Slot* slot = slotOf(key, hash);
    return slot ? slot->word.get() : nullptr;
}

void WordTable::add(uint64_t hash, std::unique_ptr<Word> word) {
    if ((used_ + 1) * 2 > slots_.size()) grow();
    const size_t mask = slots_.size() - 1;
    size_t index = hash & mask;
    while (slots_[index].word || slots_[index].wasTaken) index = (index + 1) & mask;
    slots_[index].hash = hash;
    slots_[index].word = std::move(word);
    ++count_;
    ++used_;
}

std::unique_ptr<Word> WordTable::take(const WordKey& key, uint64_t hash) {
    Slot* slot = slotOf(key, hash);
    if (!slot) return nullptr;
    slot->wasTaken = true;
    --count_;
    return std::move(slot->word);
}

void WordTable::grow() {
    std::vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    count_ = used_ = 0;
    for (Slot& slot : old)
        if (slot.word) add(slot.hash, std::move(slot.word));
}

}  // namespace desk
