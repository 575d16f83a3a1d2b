#pragma once
// A story's content as a sequence of paragraphs: where each begins, its runs, its list number.

#include <string>
#include <vector>

#include "desk/text/frame_filling.h"

namespace desk {

/// Keeps buffers from one story to the next.
class StoryParagraphs final : public ParagraphSequence {
  public:
    explicit StoryParagraphs(const Document& document) : document_(document) {}

    /// Content and columns must outlive the use of the sequence.
    void set(const StoryContent& content, const std::vector<TextColumn>& columns);

    uint32_t count() const override { return static_cast<uint32_t>(paragraphs_.size()); }
    ParagraphSource& source(uint32_t index, const TextColumn& column) override;
    int32_t start(uint32_t index) const override { return paragraphs_[index].start; }
    int32_t end(uint32_t index) const override { return paragraphs_[index].end; }
    const ResolvedAttributes& attributes(uint32_t index) const override { return *paragraphs_[index].attributes; }
    ParagraphBreak breakBehind(uint32_t index) const override;

  private:
    struct Paragraph {
        int32_t start = 0, end = 0;  ///< the carriage return is in
        ParagraphFormatId format = 0;
        uint32_t firstRun = 0;  ///< character run that holds the first character
        const ResolvedAttributes* attributes = nullptr;
        int64_t number = 0;  ///< in a numbered list
    };

    void numberLists();
    std::u16string listLabel(const Paragraph& paragraph) const;
    void fillMarkers(const TextColumn& column);
    void addInlineItems(const Paragraph& paragraph);

    const Document& document_;
    const StoryContent* content_ = nullptr;
    const std::vector<TextColumn>* columns_ = nullptr;
    std::vector<Paragraph> paragraphs_;
    ParagraphSource source_;
};

}  // namespace desk
