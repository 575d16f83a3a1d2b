#include "desk/idml/story_writer.h"

#include <algorithm>
#include <optional>

#include "desk/idml/story_elements.h"
#include "desk/idml/story_source.h"
#include "desk/idml/text_attributes_writer.h"
#include "desk/idml/text_difference.h"
#include "desk/idml/values.h"

namespace desk {
namespace {

constexpr std::string_view contentTag = "Content", characterTag = "CharacterStyleRange",
                           paragraphTag = "ParagraphStyleRange";

struct Formats {
    ParagraphFormatId paragraph = 0;
    CharacterFormatId character = 0;
    bool operator==(const Formats&) const = default;
};

Formats formatsAt(const StoryContent& content, int32_t position) {
    return {content.paragraphFormatAt(position), content.characterFormatAt(position)};
}

/// A place where text can go, and the ranges that are open there.
struct Spot {
    size_t at = 0;
    const SourceElement* into = nullptr;  ///< when not null: as its last content, in place of `at`
    const SourceElement* content = nullptr;
    const SourceElement* character = nullptr;
    const SourceElement* paragraph = nullptr;
    bool inCData = false;
    std::optional<Formats> formats;  ///< of the open ranges; absent outside of all ranges
};

/// The ranges around an element, where they stand directly inside each other, so that they can be closed and opened.
void takeRanges(Spot& spot, const SourceElement* element) {
    if (element && element->name == contentTag) element = element->parent;
    if (!element || element->name != characterTag) return;
    spot.character = element;
    if (element->parent && element->parent->name == paragraphTag) spot.paragraph = element->parent;
}

class Emitter {
  public:
    Emitter(const XmlSource& source, const Document& document, const Spot& spot,
            const std::function<std::string(Uid)>& itemXml)
        : source_(source),
          document_(document),
          spot_(spot),
          itemXml_(itemXml),
          formats_(spot.formats),
          inContent_(spot.content != nullptr) {
        if (spot.inCData) xml_ = "]]>";
    }

    /// Text of one pair of formats.
    void emit(std::u16string_view text, Formats formats) {
        openRanges(formats);
        for (size_t at = 0; at < text.size();) {
            const size_t end = std::min(nextSpecial(text, at), text.size());
            if (end > at) {
                openContent();
                xml_ += escapedText(toUtf8(text.substr(at, end - at)));
            }
            if (end < text.size()) emitSpecial(text[end]);
            at = end + 1;
        }
    }

    void emitItem(Uid item, Formats formats) {
        openRanges(formats);
        closeContent();
        xml_ += itemXml_(item);
    }

    std::string finish() {
        if (spot_.formats) {
            openRanges(*spot_.formats);
            if (spot_.content) openContent();
            if (!spot_.content) closeContent();
        } else {
            closeContent();
            closeRanges();
        }
        if (spot_.inCData) xml_ += "<![CDATA[";
        return std::move(xml_);
    }

  private:
    /// Something that can't stand twice is between the ranges, a link for one: all text takes the formats that are
    /// there.
    bool hasFixedRanges() const { return spot_.formats && !spot_.paragraph; }

    static size_t nextSpecial(std::u16string_view text, size_t from) {
        for (size_t at = from; at < text.size(); ++at)
            if (text[at] == u'\r' || text[at] == u'\n' || specialNumber(text[at]) != 0) return at;
        return text.size();
    }

    void emitSpecial(char16_t character) {
        if (character == u'\r') {
            closeContent();
            xml_ += "<Br/>";
            return;
        }
        openContent();
        if (character == u'\n')
            xml_ += toUtf8(u"\u2028");
        else
            xml_ += "<?ACE " + std::to_string(specialNumber(character)) + "?>";
    }

    void openContent() {
        if (inContent_) return;
        const bool original = spot_.content && formats_ == spot_.formats;
        xml_ += original ? startTag(*spot_.content) : "<Content>";
        inContent_ = true;
    }
    void closeContent() {
        if (inContent_) xml_ += "</Content>";
        inContent_ = false;
    }

    void openRanges(Formats wanted) {
        if (formats_ == wanted || hasFixedRanges()) return;
        closeContent();
        const bool paragraphStays = formats_ && formats_->paragraph == wanted.paragraph;
        if (formats_) xml_ += "</CharacterStyleRange>";
        if (formats_ && !paragraphStays) xml_ += "</ParagraphStyleRange>";
        if (!paragraphStays) openParagraphRange(wanted.paragraph);
        openCharacterRange(wanted.character);
        formats_ = wanted;
    }
    void closeRanges() {
        if (formats_) xml_ += "</CharacterStyleRange></ParagraphStyleRange>";
        formats_.reset();
    }

    void openParagraphRange(ParagraphFormatId format) {
        if (spot_.paragraph && spot_.formats->paragraph == format) {
            xml_ += startTag(*spot_.paragraph);
            return;
        }
        const ParagraphFormat& wanted = document_.paragraphFormat(format);
        openRange("ParagraphStyleRange", "AppliedParagraphStyle", wanted.style,
                  "ParagraphStyle/$ID/[No paragraph style]", wanted.overrides);
    }
    void openCharacterRange(CharacterFormatId format) {
        if (spot_.character && spot_.formats->character == format) {
            xml_ += startTag(*spot_.character);
            return;
        }
        const CharacterFormat& wanted = document_.characterFormat(format);
        openRange("CharacterStyleRange", "AppliedCharacterStyle", wanted.style,
                  "CharacterStyle/$ID/[No character style]", wanted.overrides);
    }

    void openRange(const char* name, const char* styleAttribute, Uid style, const char* noStyle,
                   const TextAttributes& overrides) {
        const Style* applied = document_.style(style);
        const WrittenAttributes written = writeTextAttributes(overrides);
        xml_ += std::string("<") + name + " " + styleAttribute + "=\"" +
                escapedAttribute(applied ? applied->self : noStyle) + "\"" + written.tag + ">";
        if (!written.properties.empty()) xml_ += "<Properties>" + written.properties + "</Properties>";
    }

    /// The element's own start tag, with the properties that belong to it.
    std::string startTag(const SourceElement& element) const {
        std::string tag(source_.text(element.begin, element.tagEnd - (element.isOneTag ? 2 : 0)));
        if (element.isOneTag) tag += ">";
        if (const SourceElement* properties = element.child("Properties"))
            tag += source_.text(properties->begin, properties->end);
        return tag;
    }

    const XmlSource& source_;
    const Document& document_;
    const Spot& spot_;
    const std::function<std::string(Uid)>& itemXml_;
    std::optional<Formats> formats_;
    bool inContent_;
    std::string xml_;
};

class StoryWriter {
  public:
    StoryWriter(PartEditor& part, const SourceElement& story, const Document& document, const StoryContent& before,
                const StoryContent& now, const std::function<std::string(Uid)>& itemXml)
        : part_(part),
          story_(story),
          document_(document),
          before_(before),
          now_(now),
          itemXml_(itemXml),
          source_(sourceOfStory(part.source(), story)) {}

    void run() {
        const std::u16string_view text(before_.text.data(), before_.text.size() - 1);
        if (source_.text != text)
            throw InputError("the text of the story " + part_.source().attributeText(story_, "Self") +
                             " can't be found in its part; save nothing and report this document.");
        for (const TextChange& change : wholeTokens(textChanges(before_, now_))) write(change);
        writeLastFormats();
    }

  private:
    std::vector<TextChange> wholeTokens(const std::vector<TextChange>& changes) const;
    void write(const TextChange& change);
    void writeLastFormats();
    std::vector<Spot> spotsFor(const TextChange& change) const;
    Spot chooseSpot(const TextChange& change, bool oneFormat) const;
    void put(const Spot& spot, const std::string& xml);
    bool isOneFormat(const TextChange& change) const;
    void emit(Emitter& emitter, int32_t start, int32_t end) const;

    PartEditor& part_;
    const SourceElement& story_;
    const Document& document_;
    const StoryContent &before_, &now_;
    const std::function<std::string(Uid)>& itemXml_;
    StorySource source_;
};

/// A change that begins or ends inside a character of two units or inside a variable is widened to the whole of it, and
/// one in front of a bare ">" takes it in, because "]]>" can't stand in text. What lies between changes is the same on
/// both sides, so both widen alike; changes that meet become one.
std::vector<TextChange> StoryWriter::wholeTokens(const std::vector<TextChange>& changes) const {
    const auto continues = [&](int32_t position) {
        return static_cast<size_t>(position) < source_.places.size() &&
               source_.places[static_cast<size_t>(position)].continues;
    };
    const auto isBareBracket = [&](int32_t position) {
        return static_cast<size_t>(position) < source_.places.size() &&
               part_.source().bytes()[source_.places[static_cast<size_t>(position)].begin] == '>';
    };
    std::vector<TextChange> whole;
    for (size_t i = 0; i < changes.size(); ++i) {
        TextChange change = changes[i];
        while (continues(change.beforeStart)) {
            --change.beforeStart;
            --change.nowStart;
        }
        for (;;) {
            if (i + 1 < changes.size() && changes[i + 1].beforeStart <= change.beforeEnd) {
                ++i;
                change.beforeEnd = changes[i].beforeEnd;
                change.nowEnd = changes[i].nowEnd;
            } else if (continues(change.beforeEnd) || isBareBracket(change.beforeEnd)) {
                ++change.beforeEnd;
                ++change.nowEnd;
            } else {
                break;
            }
        }
        whole.push_back(change);
    }
    return whole;
}

/// The places beside the change, the better first: inside the text before, inside the text behind, where the text was
/// that goes, then by themselves.
std::vector<Spot> StoryWriter::spotsFor(const TextChange& change) const {
    std::vector<Spot> spots;
    const auto beside = [&](int32_t unit, bool behind) {
        const StoryPlace& place = source_.places[static_cast<size_t>(unit)];
        Spot spot;
        const bool isContent = place.element->name == contentTag;
        spot.at = behind ? place.end : place.begin;
        spot.content = isContent ? place.element : nullptr;
        spot.inCData = place.inCData;
        takeRanges(spot, isContent ? place.element : place.element->parent);
        spot.formats = formatsAt(before_, unit);
        spots.push_back(spot);
    };
    if (change.beforeStart > 0) beside(change.beforeStart - 1, true);
    if (change.beforeEnd < static_cast<int32_t>(source_.text.size())) beside(change.beforeEnd, false);
    if (change.beforeStart < change.beforeEnd) {
        beside(change.beforeStart, false);
        beside(change.beforeEnd - 1, true);
    }
    if (!source_.text.empty()) return spots;
    // An empty story may have an empty range that says how its text is to look.
    const SourceElement* range = nullptr;
    story_.eachChild([&](const SourceElement& paragraph) {
        if (paragraph.name != paragraphTag) return;
        paragraph.eachChild([&](const SourceElement& character) {
            if (character.name == characterTag) range = &character;
        });
    });
    if (range) {
        Spot spot;
        spot.into = range;
        takeRanges(spot, range);
        spot.formats = formatsAt(before_, 0);
        spots.push_back(spot);
    }
    Spot alone;
    alone.into = &story_;
    spots.push_back(alone);
    return spots;
}

bool StoryWriter::isOneFormat(const TextChange& change) const {
    const Formats first = formatsAt(now_, change.nowStart);
    for (int32_t at = change.nowStart + 1; at < change.nowEnd; ++at)
        if (formatsAt(now_, at) != first) return false;
    return true;
}

Spot StoryWriter::chooseSpot(const TextChange& change, bool oneFormat) const {
    const std::vector<Spot> spots = spotsFor(change);
    const Formats first = formatsAt(now_, change.nowStart);
    if (oneFormat)
        for (const Spot& spot : spots)
            if (spot.formats == first) return spot;
    for (const Spot& spot : spots)
        if (spot.paragraph || !spot.formats) return spot;
    // Ranges that can't be opened anew here: the text goes in as it can, and whoever checks the result sees it.
    return spots.front();
}

void StoryWriter::emit(Emitter& emitter, int32_t start, int32_t end) const {
    for (int32_t at = start; at < end;) {
        const Formats formats = formatsAt(now_, at);
        const auto owned = std::find_if(now_.ownedItems.begin(), now_.ownedItems.end(),
                                        [&](const OwnedItem& one) { return one.position == at; });
        if (owned != now_.ownedItems.end()) {
            emitter.emitItem(owned->item, formats);
            ++at;
            continue;
        }
        int32_t limit = at + 1;
        while (limit < end && formatsAt(now_, limit) == formats &&
               now_.text[static_cast<size_t>(limit)] != marker::inlineObject)
            ++limit;
        emitter.emit(std::u16string_view(now_.text).substr(static_cast<size_t>(at), static_cast<size_t>(limit - at)),
                     formats);
        at = limit;
    }
}

void StoryWriter::put(const Spot& spot, const std::string& xml) {
    if (spot.into)
        part_.addLast(*spot.into, xml);
    else
        part_.insert(spot.at, xml);
}

void StoryWriter::write(const TextChange& change) {
    for (int32_t at = change.beforeStart; at < change.beforeEnd; ++at) {
        const StoryPlace& place = source_.places[static_cast<size_t>(at)];
        part_.remove(place.begin, place.end);
    }
    if (change.nowStart == change.nowEnd) return;
    const Spot spot = chooseSpot(change, isOneFormat(change));
    Emitter emitter(part_.source(), document_, spot, itemXml_);
    emit(emitter, change.nowStart, change.nowEnd);
    put(spot, emitter.finish());
}

/// The terminal return has the formats of the last range; other ones need a range of their own.
void StoryWriter::writeLastFormats() {
    const Formats last = formatsAt(now_, now_.length() - 1);
    if (last == formatsAt(before_, before_.length() - 1)) return;
    Spot end;
    end.into = &story_;
    Emitter emitter(part_.source(), document_, end, itemXml_);
    emitter.emit({}, last);
    part_.addLast(story_, emitter.finish());
}

}  // namespace

void writeStory(PartEditor& part, const SourceElement& story, const Document& document, const StoryContent& before,
                const StoryContent& now, const std::function<std::string(Uid)>& itemXml) {
    StoryWriter(part, story, document, before, now, itemXml).run();
}

}  // namespace desk
