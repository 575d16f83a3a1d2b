#include "support/attributed_string.h"

#include <string>

namespace vornaset {

AttributedString::AttributedString(const String& text, const Dictionary& attributes) {
    append(text, attributes);
}

void AttributedString::append(const String& text, const Dictionary& attributes) {
    if (text.isEmpty()) return;
    const Dictionary held = attributes.isNull() ? Dictionary::make() : attributes;
    if (!runs_.empty() && runs_.back().attributes == held) {
        runs_.back().text = runs_.back().text + text;
    } else {
        runs_.push_back({text, held});
    }
}

String AttributedString::string() const {
    std::u16string text;
    for (const Run& run : runs_) text += run.text.view();
    return String(text);
}

size_t AttributedString::length() const {
    size_t length = 0;
    for (const Run& run : runs_) length += run.text.length();
    return length;
}

uint8_t EnumAttributedString(const Value& text, AttributedRunCallback callback, void* context) {
    const auto attributed = std::dynamic_pointer_cast<const AttributedString>(text.object());
    if (!attributed || callback == nullptr) return 1;
    // A copy, so that the callback may change the text.
    const std::vector<AttributedString::Run> runs = attributed->runs();
    for (const AttributedString::Run& run : runs) {
        if (callback(run.text, run.attributes.valueForKey("style"), context) == 0) return 0;
    }
    return 1;
}

}  // namespace vornaset
