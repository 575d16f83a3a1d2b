#pragma once
// The text of a frame as page content. Paragraphs that come again are not written again.

#include <unordered_map>

#include "desk/output/text_line_writer.h"

namespace desk {

class TextPainter {
  public:
    TextPainter(FontEmbedder& fonts, Palette& palette, ShapePainter& shapes)
        : palette_(palette), shapes_(shapes), lines_(fonts, palette, shapes), seen_(seenSlots) {}

    /// Appends text and rules of the layout; inline items are the caller's.
    void paint(const FrameLayout& layout, const TextPlace& place, Fragment& out);

  private:
    static constexpr size_t seenSlots = 1u << 13;

    /// Lines of a paragraph as they were written before.
    struct Remembered {
        Fragment content;
        std::vector<int32_t> baselines;  ///< of each line below the first, thousandths
        TextPosition end;                ///< start of the last line from that of the first
    };
    struct Key {
        uint64_t serial = 0;
        uint32_t firstLine = 0, lineCount = 0;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key& key) const {
            return static_cast<size_t>((key.serial * 0x9E3779B97F4A7C15u) ^ (uint64_t{key.firstLine} << 32) ^
                                       key.lineCount);
        }
    };
    using Generation = std::unordered_map<Key, Remembered, KeyHash>;

    void paintParagraph(const PlacedParagraph& placed, const TextPlace& place, Point shift, TextPosition& current,
                        Fragment& out);
    TextPosition writeLines(const PlacedParagraph& placed, TextPosition origin);
    const Remembered* recall(const Key& key, const PlacedParagraph& placed);
    bool isWorthRemembering(const Key& key);
    void remember(const Key& key, const PlacedParagraph& placed, const Fragment& content, TextPosition end);
    enum class RulesThat { LieUnderText, LieOverText };
    void paintRules(const FrameLayout& layout, const TextPlace& place, RulesThat which, Fragment& out);

    Palette& palette_;
    ShapePainter& shapes_;
    TextLineWriter lines_;
    std::vector<uint64_t> seen_;  ///< hashes of keys met lately: what comes a second time is remembered
    Generation young_, old_;
    size_t youngBytes_ = 0;
    Fragment fresh_;
};

}  // namespace desk
