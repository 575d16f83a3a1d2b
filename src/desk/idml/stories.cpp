#include "desk/idml/stories.h"

#include <algorithm>

#include "desk/idml/limits.h"
#include "desk/idml/page_items.h"
#include "desk/idml/resources.h"
#include "desk/idml/story_builder.h"
#include "desk/idml/story_elements.h"
#include "desk/idml/text_attributes_reader.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

/// What is in force at a place of the story.
struct Surroundings {
    ParagraphFormat paragraph;
    CharacterFormat character;
    std::string pageNumberType;
};

class StoryReader {
  public:
    explicit StoryReader(Reading& reading) : reading_(reading), builder_(reading.document) {}

    std::shared_ptr<const StoryContent> read(const XmlElement& story) {
        storyAttributes_ = readTextAttributes(reading_, story);
        Surroundings around;
        around.paragraph.overrides = storyAttributes_;
        enter(around);
        walk(story, around);
        return builder_.finish();
    }

  private:
    void enter(const Surroundings& around) {
        builder_.setParagraphFormat(around.paragraph);
        builder_.setCharacterFormat(around.character);
    }

    void walk(const XmlElement& element, const Surroundings& around) {
        element.eachChild([&](const XmlElement& child) { readChild(child, around); });
    }

    /// Reads what stands inside in other surroundings. The formats are put back only when something follows, so that
    /// the story's terminal return has those of the last range.
    void walkIn(const XmlElement& element, const Surroundings& inner) {
        enter(inner);
        walk(element, inner);
    }

    void readChild(const XmlElement& child, const Surroundings& around);
    void readContent(const XmlElement& content, const Surroundings& around);
    void readInstruction(const XmlNode& node, const Surroundings& around);
    void append(std::u16string_view text, const Surroundings& around, const XmlElement& element);
    void appendForeign(const std::string& text, const Surroundings& around, const XmlElement& element);
    void noteUnread(const XmlElement& element);
    Surroundings paragraphRange(const XmlElement& element, const Surroundings& around);
    Surroundings characterRange(const XmlElement& element, const Surroundings& around);
    Surroundings link(const XmlElement& element, const Surroundings& around);
    void applyConditions(const XmlElement& element, TextAttributes& attributes) const;
    Uid style(const XmlElement& element, StyleKind kind, std::string_view attribute);

    Reading& reading_;
    StoryBuilder builder_;
    TextAttributes storyAttributes_;
};

void StoryReader::readChild(const XmlElement& child, const Surroundings& around) {
    switch (storyElement(child.name)) {
        case StoryElement::Text:
            return readContent(child, around);
        case StoryElement::Break:
            return append(u"\r", around, child);
        case StoryElement::Walk:
            return walkIn(child, around);
        case StoryElement::Link:
            return walkIn(child, link(child, around));
        case StoryElement::ParagraphRange:
            return walkIn(child, paragraphRange(child, around));
        case StoryElement::CharacterRange:
            return walkIn(child, characterRange(child, around));
        case StoryElement::Variable:
            return appendForeign(attributeText(child, "ResultText"), around, child);
        case StoryElement::Change:
            if (attributeText(child, "ChangeType") != "DeletedText") walkIn(child, around);
            return;
        case StoryElement::Silent:
            return;
        case StoryElement::Unread:
            return noteUnread(child);
        case StoryElement::Other:
            break;
    }
    if (isPageItem(child.name)) {
        enter(around);
        builder_.appendItem(readPageItem(reading_, child).uid);
        return;
    }
    reading_.note("the element " + std::string(child.name) + " in a story isn't understood");
}

void StoryReader::noteUnread(const XmlElement& element) {
    reading_.note(element.name == "Table"      ? "tables aren't set; their text is left out"
                  : element.name == "Footnote" ? "footnotes aren't set; their text is left out"
                                               : "endnote references aren't set");
}

/// Special characters that the processing instructions of the host stand for.
void StoryReader::readInstruction(const XmlNode& node, const Surroundings& around) {
    if (node.instruction != "ACE") return;
    const auto code = toInteger(node.text);
    if (!code) return;
    char16_t character = specialCharacter(*code);
    if (character == marker::pageNumber && around.pageNumberType == "NextPageNumber")
        character = marker::nextPageNumber;
    if (character == marker::pageNumber && around.pageNumberType == "PreviousPageNumber")
        character = marker::previousPageNumber;
    if (character != 0) builder_.append({&character, 1});
}

void StoryReader::readContent(const XmlElement& content, const Surroundings& around) {
    enter(around);
    for (const XmlNode& node : content.content) {
        if (!node.instruction.empty())
            readInstruction(node, around);
        else if (!node.element)
            appendForeign(node.text, around, content);
        else
            reading_.note("the element " + std::string(node.element->name) + " in a content isn't understood");
    }
}

void StoryReader::append(std::u16string_view text, const Surroundings& around, const XmlElement& element) {
    if (builder_.length() + text.size() > limits::storyLength)
        throw reading_.failure(element.line, "the story is too long; split it.");
    enter(around);
    builder_.append(text);
}

/// Text from outside: characters that have a meaning of their own in a story are not taken literally.
void StoryReader::appendForeign(const std::string& text, const Surroundings& around, const XmlElement& element) {
    std::u16string characters;
    for (char16_t c : toUtf16(text)) {
        const bool isLineEnd = c == u'\n' || c == u'\r';
        const bool isMarker = c >= marker::pageNumber && c <= marker::noteNumber;
        if (isLineEnd) reading_.note("a line end inside a content is read as a forced line break");
        if (isMarker) reading_.note("a private use character that stands for something else here is left out");
        if (const char16_t counted = storyCharacter(c)) characters += counted;
    }
    append(characters, around, element);
}

Uid StoryReader::style(const XmlElement& element, StyleKind kind, std::string_view attribute) {
    const std::string& reference = attributeText(element, attribute);
    const Uid uid = styleUid(reading_, kind, reference);
    if (uid == 0 && !toReference(reference).empty())
        reading_.note("the style " + quoted(reference) + " is applied but doesn't exist");
    return uid;
}

Surroundings StoryReader::paragraphRange(const XmlElement& element, const Surroundings& around) {
    Surroundings inner = around;
    inner.paragraph.style = style(element, StyleKind::Paragraph, "AppliedParagraphStyle");
    inner.paragraph.overrides = storyAttributes_;
    inner.paragraph.overrides.overlay(readTextAttributes(reading_, element));
    applyConditions(element, inner.paragraph.overrides);
    if (const std::string* type = element.attribute("PageNumberType")) inner.pageNumberType = *type;
    inner.character = {};
    return inner;
}

Surroundings StoryReader::characterRange(const XmlElement& element, const Surroundings& around) {
    Surroundings inner = around;
    inner.character.style = style(element, StyleKind::Character, "AppliedCharacterStyle");
    inner.character.overrides = readCharacterAttributes(reading_, element);
    applyConditions(element, inner.character.overrides);
    if (const std::string* type = element.attribute("PageNumberType")) inner.pageNumberType = *type;
    return inner;
}

/// A link may restyle its text where the text has no style of its own.
Surroundings StoryReader::link(const XmlElement& element, const Surroundings& around) {
    Surroundings inner = around;
    if (inner.character.style == 0)
        inner.character.style = style(element, StyleKind::Character, "AppliedCharacterStyle");
    return inner;
}

/// Text is hidden when all of its conditions are.
void StoryReader::applyConditions(const XmlElement& element, TextAttributes& attributes) const {
    const std::vector<std::string> applied = toReferences(attributeText(element, "AppliedConditions"));
    if (applied.empty()) return;
    attributes.hiddenByCondition = std::none_of(applied.begin(), applied.end(), [&](const std::string& id) {
        const auto condition = reading_.conditions.find(id);
        return condition == reading_.conditions.end() || condition->second;
    });
}

}  // namespace

void readStory(Reading& reading, const XmlElement& element) {
    const std::string& self = attributeText(element, "Self");
    if (reading.stories.contains(self))
        return reading.note("several stories have the id " + quoted(self) + "; the first one is taken");
    Story& story = reading.document.addStory();
    story.self = self;
    reading.stories.emplace(self, story.uid);
    story.setContent(StoryReader(reading).read(element));
}

}  // namespace desk
