#include "desk/idml/story_elements.h"

#include <unordered_map>

namespace desk {

StoryElement storyElement(std::string_view name) {
    using enum StoryElement;
    static const std::unordered_map<std::string_view, StoryElement> elements = {{"Content", Text},
                                                                                {"Br", Break},
                                                                                {"ParagraphStyleRange", ParagraphRange},
                                                                                {"CharacterStyleRange", CharacterRange},
                                                                                {"XMLElement", Walk},
                                                                                {"EndnoteRange", Walk},
                                                                                {"HyperlinkTextSource", Link},
                                                                                {"CrossReferenceSource", Link},
                                                                                {"Change", Change},
                                                                                {"TextVariableInstance", Variable},
                                                                                {"Table", Unread},
                                                                                {"Footnote", Unread},
                                                                                {"Endnote", Unread},
                                                                                {"Properties", Silent},
                                                                                {"StoryPreference", Silent},
                                                                                {"InCopyExportOption", Silent},
                                                                                {"MetadataPacketPreference", Silent},
                                                                                {"HyperlinkTextDestination", Silent},
                                                                                {"ParagraphDestination", Silent},
                                                                                {"PageReference", Silent},
                                                                                {"Note", Silent},
                                                                                {"HiddenText", Silent},
                                                                                {"XMLAttribute", Silent},
                                                                                {"XMLInstruction", Silent},
                                                                                {"XMLComment", Silent}};
    const auto found = elements.find(name);
    return found == elements.end() ? Other : found->second;
}

namespace {

constexpr std::pair<int, char16_t> specials[] = {{3, marker::endNestedStyle}, {4, marker::noteNumber},
                                                 {7, marker::indentToHere},   {8, marker::rightIndentTab},
                                                 {18, marker::pageNumber},    {19, marker::sectionMarker}};

}  // namespace

char16_t specialCharacter(int number) {
    for (const auto& [known, character] : specials)
        if (known == number) return character;
    return 0;
}

int specialNumber(char16_t character) {
    if (character == marker::nextPageNumber || character == marker::previousPageNumber) character = marker::pageNumber;
    for (const auto& [number, known] : specials)
        if (known == character) return number;
    return 0;
}

}  // namespace desk
