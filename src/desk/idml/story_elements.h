#pragma once
// What the elements inside a story stand for.

#include <string_view>

#include "desk/model/story.h"

namespace desk {

enum class StoryElement {
    Text,      ///< Content
    Break,     ///< paragraph end
    Walk,      ///< holds more of the text
    Silent,    ///< no text
    Unread,    ///< text that isn't read
    Variable,  ///< its result stands in an attribute
    Link,      ///< holds text and may restyle it
    Change,    ///< tracked; deleted text doesn't count
    ParagraphRange,
    CharacterRange,
    Other  ///< a page item, or what nobody knows
};

StoryElement storyElement(std::string_view name);

/// The special character that a processing instruction ACE of this number stands for; 0 for none. Page numbers are
/// those of the page itself.
char16_t specialCharacter(int number);
/// The number for one of these characters; 0 for another. All page numbers share one.
int specialNumber(char16_t character);

/// What a character of foreign text counts as in a story; 0 when it is left out.
inline char16_t storyCharacter(char16_t c) {
    if (c == u'\n' || c == u'\r') return u'\u2028';
    const bool isMarker = c >= marker::pageNumber && c <= marker::noteNumber;
    return c == 0xFEFF || c == marker::inlineObject || isMarker ? u'\0' : c;
}

}  // namespace desk
