#include "desk/text/paragraph_source.h"

#include <cstring>

namespace desk {
namespace {

class Hash {
  public:
    void add(uint64_t value) {
        state_ = (state_ ^ value) * 0x9FB21C651E98DF25ull;
        state_ ^= state_ >> 32;
    }
    void add(double value) {
        uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        add(bits);
    }
    void add(std::u16string_view text) {
        size_t at = 0;
        for (; at + 4 <= text.size(); at += 4) {
            uint64_t units = 0;
            std::memcpy(&units, text.data() + at, sizeof units);
            add(units);
        }
        uint64_t rest = text.size();
        for (; at < text.size(); ++at) rest = rest << 16 | text[at];
        add(rest);
    }
    uint64_t value() const { return state_; }

  private:
    uint64_t state_ = 0x2545F4914F6CDD1Dull;
};

}  // namespace

uint64_t hashOf(const ParagraphSource& source) {
    Hash hash;
    hash.add(source.text);
    hash.add(uint64_t{source.format});
    for (const auto& run : source.runs) hash.add(uint64_t{static_cast<uint32_t>(run.start)} << 32 | run.format);
    for (const LineSpan& span : source.spans) {
        hash.add(span.x);
        hash.add(span.width);
    }
    if (!source.listLabel.empty()) hash.add(std::u16string_view(source.listLabel));
    if (!source.markers.pageNumber.empty()) hash.add(std::u16string_view(source.markers.pageNumber));
    for (const InlineItemSize& item : source.inlineItems) hash.add(uint64_t{item.item});
    return hash.value();
}

bool equal(const ParagraphSource& a, const ParagraphSource& b) {
    return a.format == b.format && a.onRightPage == b.onRightPage && a.text == b.text && a.runs == b.runs &&
           a.spans == b.spans && a.listLabel == b.listLabel && a.markers == b.markers && a.inlineItems == b.inlineItems;
}

}  // namespace desk
