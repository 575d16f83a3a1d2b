#pragma once
// Paragraphs as they were set, by what they were set from.

#include <memory>

#include "desk/text/generation_cache.h"
#include "desk/text/layout.h"
#include "desk/text/paragraph_setting.h"

namespace desk {

class ParagraphCache {
  public:
    ParagraphCache(const Document& document, TextStyles& styles, WordCache& words, size_t rememberedParagraphs);

    /// The same object for equal sources, as long as it is remembered.
    std::shared_ptr<const LayoutParagraph> find(const ParagraphSource& source);

    void clear() { paragraphs_.clear(); }
    /// Call where no word is held.
    void endGeneration();

  private:
    struct Key {
        uint64_t hash = 0;
        std::unique_ptr<const OwnedParagraphSource> source;
    };
    struct Lookup {
        uint64_t hash = 0;
        const ParagraphSource* source = nullptr;
    };
    struct Hash {
        using is_transparent = void;
        template <class K>
        size_t operator()(const K& key) const {
            return static_cast<size_t>(key.hash);
        }
    };
    struct Equal {
        using is_transparent = void;
        static const ParagraphSource& of(const Key& key) { return key.source->source; }
        static const ParagraphSource& of(const Lookup& key) { return *key.source; }
        template <class A, class B>
        bool operator()(const A& a, const B& b) const {
            return a.hash == b.hash && equal(of(a), of(b));
        }
    };

    WordCache& words_;
    ParagraphSetter setter_;
    GenerationCache<Key, std::shared_ptr<const LayoutParagraph>, Hash, Equal> paragraphs_;
};

}  // namespace desk
