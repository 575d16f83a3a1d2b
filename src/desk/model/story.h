#pragma once
// A story: UTF-16 text with runs of formats. Positions and lengths are UTF-16 units, from 0.
//
// The text always ends in a terminal carriage return (U+000D), which no edit removes. A paragraph reaches up to and
// including its carriage return. Copying a story shares the content until one side is edited.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace desk {

using Uid = uint32_t;  ///< names an object of one document; 0 is none

/// Index into the document's table of character formats (Document::characterFormat).
using CharacterFormatId = uint32_t;
/// Index into the document's table of paragraph formats (Document::paragraphFormat).
using ParagraphFormatId = uint32_t;

/// Text positions that stand for something computed at composition, in the private use area.
namespace marker {
inline constexpr char16_t pageNumber = 0xE000;          ///< number of the page that shows it
inline constexpr char16_t nextPageNumber = 0xE001;      ///< number of the page of the thread's next frame
inline constexpr char16_t previousPageNumber = 0xE002;  ///< number of the page of the thread's previous frame
inline constexpr char16_t sectionMarker = 0xE003;       ///< marker text of the page's section
inline constexpr char16_t indentToHere = 0xE004;        ///< following lines of the paragraph start here
inline constexpr char16_t rightIndentTab = 0xE005;      ///< tab to the right indent
inline constexpr char16_t endNestedStyle = 0xE006;      ///< no width
inline constexpr char16_t noteNumber = 0xE007;          ///< number of the footnote that holds it
inline constexpr char16_t inlineObject = 0xFFFC;        ///< an owned item stands here

/// Shows what depends on the page.
inline bool dependsOnPage(char16_t c) {
    return c >= pageNumber && c <= sectionMarker;
}
}  // namespace marker

template <class Format>
struct FormatRun {
    int32_t start = 0;  ///< reaches to the next run's start; several runs may share a start, all but the last are empty
    Format format = 0;
    bool operator==(const FormatRun&) const = default;
};

struct OwnedItem {
    int32_t position = 0;  ///< of its U+FFFC
    Uid item = 0;
    bool operator==(const OwnedItem&) const = default;
};

struct StoryContent {
    std::u16string text = u"\r";
    std::vector<FormatRun<CharacterFormatId>> characterRuns{{0, 0}};  ///< the first starts at 0
    std::vector<FormatRun<ParagraphFormatId>> paragraphRuns{{0, 0}};  ///< each starts at a paragraph's first character
    std::vector<OwnedItem> ownedItems;                                ///< by position

    int32_t length() const { return static_cast<int32_t>(text.size()); }
    /// Of the character there; empty runs don't count. A position outside takes the nearest character.
    CharacterFormatId characterFormatAt(int32_t position) const;
    /// Of the paragraph that holds the character there.
    ParagraphFormatId paragraphFormatAt(int32_t position) const;
    /// What text inserted at the position would take (see Story::insert).
    CharacterFormatId characterFormatForInsertionAt(int32_t position) const;
    bool operator==(const StoryContent&) const = default;
};

/// The story as an object of a document.
struct Story {
    Uid uid = 0;
    std::string self;  ///< id in the package; empty for a story made in memory

    const StoryContent& content() const { return *content_; }
    std::shared_ptr<const StoryContent> sharedContent() const { return content_; }

    /// Grows with every change of the content.
    uint64_t revision() const { return revision_; }

    /// Shares the content until one side is edited. Null gives the empty story.
    void setContent(std::shared_ptr<const StoryContent> content);

    /// Inserts at a position between 0 and length-1 (before the terminal return at the latest; a position outside is
    /// moved to the nearest). The text takes the format of the last empty run there (which then has length), else that
    /// of the character before it, at 0 that of the first character. A carriage return in the text splits the
    /// paragraph, both halves keep its format.
    void insert(int32_t position, std::u16string_view text);

    /// Deletes what of the range lies before the terminal return. Where a paragraph's end goes, the joined paragraph
    /// takes the format of the first unless nothing of the first is left. Empty runs at the borders of the range stay,
    /// those inside it go.
    void erase(int32_t position, int32_t length);

    /// Sets the format of a range, the terminal return included if the range reaches it. A length of 0 leaves an empty
    /// run there (in place of the last empty run, where there are some), which the next insertion at that place takes.
    /// Empty runs strictly inside a range go.
    void setCharacterFormat(int32_t position, int32_t length, CharacterFormatId format);

    /// Sets the format of every paragraph that the range touches.
    void setParagraphFormat(int32_t position, int32_t length, ParagraphFormatId format);

  private:
    StoryContent& edit();

    std::shared_ptr<const StoryContent> content_ = std::make_shared<StoryContent>();
    std::shared_ptr<StoryContent> own_;  ///< the same object as content_ while this story alone holds it
    uint64_t revision_ = 0;
};

}  // namespace desk
