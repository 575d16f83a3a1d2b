#include "support/exception.h"
#include "support/values_collections.h"

namespace vornaset {

namespace {

/// Up to here comparing hashes one by one is as fast as a table of slots.
constexpr size_t kPlainSearchCount = 8;

}  // namespace

KeyTable::KeyTable(const std::vector<String>& keys) {
    keys_.reserve(keys.size());
    for (const String& key : keys) {
        if (indexOf(key) == npos) append(key);
    }
}

size_t KeyTable::indexOf(const String& key) const noexcept {
    if (key.isNull()) return npos;
    const size_t hash = key.hash();
    if (slots_.empty()) {
        for (size_t index = 0; index < keys_.size(); ++index) {
            if (keys_[index].hash() == hash && keys_[index] == key) return index;
        }
        return npos;
    }
    const size_t mask = slots_.size() - 1;
    for (size_t slot = hash & mask; slots_[slot] != 0; slot = (slot + 1) & mask) {
        const size_t index = slots_[slot] - 1;
        if (keys_[index].hash() == hash && keys_[index] == key) return index;
    }
    return npos;
}

void KeyTable::append(const String& key) {
    if (key.isNull()) throw InvalidArgumentException("a null key can't be added");
    keys_.push_back(key);
    if (keys_.size() * 2 > slots_.size()) {
        if (keys_.size() > kPlainSearchCount) rebuildSlots(slots_.empty() ? kPlainSearchCount * 4 : slots_.size() * 2);
    } else {
        enter(keys_.size() - 1);
    }
}

void KeyTable::removeAt(size_t index) {
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(index));
    if (!slots_.empty()) rebuildSlots(slots_.size());
}

void KeyTable::removeAll() noexcept {
    keys_.clear();
    slots_.clear();
}

void KeyTable::rebuildSlots(size_t slotCount) {
    slots_.assign(slotCount, 0);
    for (size_t index = 0; index < keys_.size(); ++index) enter(index);
}

void KeyTable::enter(size_t index) noexcept {
    const size_t mask = slots_.size() - 1;
    size_t slot = keys_[index].hash() & mask;
    while (slots_[slot] != 0) slot = (slot + 1) & mask;
    slots_[slot] = static_cast<uint32_t>(index + 1);
}

}  // namespace vornaset
