#include "desk/text/paragraph_cache.h"

namespace desk {

ParagraphCache::ParagraphCache(const Document& document, TextStyles& styles, WordCache& words,
                               size_t rememberedParagraphs)
    : words_(words), setter_(document, styles, words), paragraphs_(rememberedParagraphs) {}

std::shared_ptr<const LayoutParagraph> ParagraphCache::find(const ParagraphSource& source) {
    const Lookup lookup{hashOf(source), &source};
    if (const auto* known = paragraphs_.find(lookup)) return *known;
    std::shared_ptr<const LayoutParagraph> made = setter_.set(source);
    paragraphs_.add(Key{lookup.hash, std::make_unique<const OwnedParagraphSource>(source)}, made);
    endGeneration();
    return made;
}

void ParagraphCache::endGeneration() {
    paragraphs_.endGeneration();
    words_.endGeneration();
}

}  // namespace desk
