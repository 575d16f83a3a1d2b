#pragma once
// Puts a story's text together from pieces that each come with the formats in force.

#include <optional>
#include <string_view>

#include "desk/model/document.h"

namespace desk {

class StoryBuilder {
  public:
    explicit StoryBuilder(Document& document) : document_(document) {}

    /// Formats of the text that follows. A paragraph takes the paragraph format in force at its first character.
    void setParagraphFormat(ParagraphFormat format);
    void setCharacterFormat(CharacterFormat format);

    /// Carriage returns end paragraphs.
    void append(std::u16string_view text);
    void appendItem(Uid item);

    size_t length() const { return content_.text.size(); }

    /// Adds the terminal return, in the formats that were in force last.
    std::shared_ptr<const StoryContent> finish();

  private:
    void startPiece();
    bool atParagraphStart() const { return content_.text.empty() || content_.text.back() == u'\r'; }

    Document& document_;
    StoryContent content_ = empty();
    ParagraphFormat paragraph_;
    CharacterFormat character_;
    std::optional<ParagraphFormatId> paragraphId_;  ///< of paragraph_, once asked for
    std::optional<CharacterFormatId> characterId_;

    static StoryContent empty();
};

}  // namespace desk
