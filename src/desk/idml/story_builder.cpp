#include "desk/idml/story_builder.h"

namespace desk {

StoryContent StoryBuilder::empty() {
    StoryContent content;
    content.text.clear();
    content.characterRuns.clear();
    content.paragraphRuns.clear();
    return content;
}

void StoryBuilder::setParagraphFormat(ParagraphFormat format) {
    paragraph_ = std::move(format);
    paragraphId_.reset();
}

void StoryBuilder::setCharacterFormat(CharacterFormat format) {
    character_ = std::move(format);
    characterId_.reset();
}

/// Starts the runs that the next character needs.
void StoryBuilder::startPiece() {
    const int32_t position = content_.length();
    if (!characterId_) characterId_ = document_.characterFormatId(character_);
    if (content_.characterRuns.empty() || content_.characterRuns.back().format != *characterId_)
        content_.characterRuns.push_back({position, *characterId_});
    if (!atParagraphStart()) return;
    if (!paragraphId_) paragraphId_ = document_.paragraphFormatId(paragraph_);
    if (content_.paragraphRuns.empty() || content_.paragraphRuns.back().format != *paragraphId_)
        content_.paragraphRuns.push_back({position, *paragraphId_});
}

void StoryBuilder::append(std::u16string_view text) {
    while (!text.empty()) {
        const size_t end = text.find(u'\r');
        const size_t length = end == std::u16string_view::npos ? text.size() : end + 1;
        startPiece();
        content_.text.append(text.substr(0, length));
        text.remove_prefix(length);
    }
}

void StoryBuilder::appendItem(Uid item) {
    startPiece();
    content_.ownedItems.push_back({content_.length(), item});
    content_.text += marker::inlineObject;
}

std::shared_ptr<const StoryContent> StoryBuilder::finish() {
    append(u"\r");
    return std::make_shared<const StoryContent>(std::move(content_));
}

}  // namespace desk
