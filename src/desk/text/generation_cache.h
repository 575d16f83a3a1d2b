#pragma once
// A bounded memory: two generations of equal size. What is asked for stays, what nobody asked for during a whole
// generation goes.

#include <cstddef>
#include <unordered_map>
#include <utility>

namespace desk {

template <class Key, class Value, class Hash, class Equal>
class GenerationCache {
  public:
    explicit GenerationCache(size_t generationSize) : limit_(generationSize < 1 ? 1 : generationSize) {}

    /// Null when unknown. A pointer stays good until the next endGeneration() that changes something, or clear().
    template <class Lookup>
    Value* find(const Lookup& key) {
        if (const auto found = current_.find(key); found != current_.end()) return &found->second;
        const auto old = previous_.find(key);
        if (old == previous_.end()) return nullptr;
        return &current_.insert(previous_.extract(old)).position->second;
    }

    Value& add(Key key, Value value) {
        return current_.insert_or_assign(std::move(key), std::move(value)).first->second;
    }

    /// Forgets the older generation once the younger one is full. Call where no pointer into the memory is held.
    void endGeneration() {
        if (current_.size() < limit_) return;
        previous_.clear();
        previous_.swap(current_);
    }

    void clear() {
        current_.clear();
        previous_.clear();
    }
    size_t size() const { return current_.size() + previous_.size(); }

  private:
    using Map = std::unordered_map<Key, Value, Hash, Equal>;
    size_t limit_;
    Map current_, previous_;
};

}  // namespace desk
