#include "host/api/text.h"

namespace {

char16_t unitAt(ITextModel* model, int32_t position) {
    const TextChunk chunk = model ? model->GetChunk(position) : TextChunk{};
    return chunk.length > 0 ? chunk.text[0] : u'\0';
}

bool isHighSurrogate(uint32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(uint32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

uint32_t TextIterator::operator*() const {
    const uint32_t first = unitAt(model_, position_);
    if (!isHighSurrogate(first)) return first;
    const uint32_t second = unitAt(model_, position_ + 1);
    return isLowSurrogate(second) ? 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00) : first;
}

TextIterator& TextIterator::operator++() {
    position_ += **this >= 0x10000 ? 2 : 1;
    return *this;
}
