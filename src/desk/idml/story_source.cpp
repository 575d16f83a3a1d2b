#include "desk/idml/story_source.h"

#include "desk/idml/page_items.h"
#include "desk/idml/story_elements.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

class StoryWalk {
  public:
    explicit StoryWalk(const XmlSource& part) : part_(part) {}

    StorySource run(const SourceElement& story) {
        walk(story, {});
        return std::move(source_);
    }

  private:
    void add(char16_t unit, const StoryPlace& place) {
        source_.text += unit;
        source_.places.push_back(place);
    }

    /// The first unit stands for the bytes, later ones go with it.
    void addAll(std::u16string_view units, StoryPlace place) {
        for (char16_t unit : units) {
            add(unit, place);
            place.begin = place.end;
            place.continues = true;
        }
    }

    void walk(const SourceElement& element, const std::string& pageNumberType) {
        element.eachChild([&](const SourceElement& child) { visit(child, pageNumberType); });
    }

    void visit(const SourceElement& child, const std::string& pageNumberType) {
        switch (storyElement(child.name)) {
            case StoryElement::Text:
                return content(child, pageNumberType);
            case StoryElement::Break:
                return add(u'\r', {child.begin, child.end, false, false, &child});
            case StoryElement::Variable: {
                std::u16string units;
                for (char16_t unit : toUtf16(part_.attributeText(child, "ResultText")))
                    if (const char16_t counted = storyCharacter(unit)) units += counted;
                return addAll(units, {child.begin, child.end, false, false, &child});
            }
            case StoryElement::Change:
                if (part_.attributeText(child, "ChangeType") != "DeletedText") walk(child, pageNumberType);
                return;
            case StoryElement::Walk:
            case StoryElement::Link:
                return walk(child, pageNumberType);
            case StoryElement::ParagraphRange:
            case StoryElement::CharacterRange: {
                const SourceAttribute* type = child.attribute("PageNumberType");
                return walk(child, type ? part_.attributeText(child, "PageNumberType") : pageNumberType);
            }
            case StoryElement::Silent:
            case StoryElement::Unread:
                return;
            case StoryElement::Other:
                if (isPageItem(child.name)) add(marker::inlineObject, {child.begin, child.end, false, false, &child});
                return;
        }
    }

    void content(const SourceElement& element, const std::string& pageNumberType) {
        constexpr size_t cdataOpening = 9, cdataClosing = 3;
        for (const SourcePiece& piece : element.content) {
            if (piece.kind == SourcePiece::Kind::Text) characters(element, piece.begin, piece.end, false);
            if (piece.kind == SourcePiece::Kind::CData)
                characters(element, piece.begin + cdataOpening, piece.end - cdataClosing, true);
            if (piece.kind == SourcePiece::Kind::Instruction) instruction(element, piece, pageNumberType);
        }
    }

    void characters(const SourceElement& element, size_t at, size_t end, bool inCData) {
        while (at < end) {
            const WrittenCharacter next = firstCharacter(part_.text(at, end), !inCData);
            StoryPlace place{at, at + next.length, false, inCData, &element};
            at += next.length;
            if (next.code >= 0x10000) {
                const char16_t units[] = {static_cast<char16_t>(0xD7C0 + (next.code >> 10)),
                                          static_cast<char16_t>(0xDC00 + (next.code & 0x3FF))};
                addAll({units, 2}, place);
            } else if (const char16_t counted = storyCharacter(static_cast<char16_t>(next.code))) {
                add(counted, place);
            }
        }
    }

    void instruction(const SourceElement& element, const SourcePiece& piece, const std::string& pageNumberType) {
        std::string_view text = part_.text(piece.begin + 2, piece.end - 2);
        if (!text.starts_with("ACE") || text.size() < 4) return;
        const auto number = toInteger(text.substr(3));
        char16_t character = number ? specialCharacter(*number) : u'\0';
        if (character == marker::pageNumber && pageNumberType == "NextPageNumber") character = marker::nextPageNumber;
        if (character == marker::pageNumber && pageNumberType == "PreviousPageNumber")
            character = marker::previousPageNumber;
        if (character != 0) add(character, {piece.begin, piece.end, false, false, &element});
    }

    const XmlSource& part_;
    StorySource source_;
};

}  // namespace

StorySource sourceOfStory(const XmlSource& part, const SourceElement& story) {
    return StoryWalk(part).run(story);
}

}  // namespace desk
