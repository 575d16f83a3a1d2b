#include "desk/model/story.h"

#include <algorithm>

namespace desk {
namespace {

constexpr char16_t paragraphEnd = u'\r';

template <class Runs>
size_t firstStartingFrom(const Runs& runs, int32_t position) {
    const auto found = std::lower_bound(runs.begin(), runs.end(), position,
                                        [](const auto& run, int32_t at) { return run.start < at; });
    return static_cast<size_t>(found - runs.begin());
}

template <class Runs>
size_t firstStartingAfter(const Runs& runs, int32_t position) {
    const auto found = std::upper_bound(runs.begin(), runs.end(), position,
                                        [](int32_t at, const auto& run) { return at < run.start; });
    return static_cast<size_t>(found - runs.begin());
}

template <class Runs>
void shiftFrom(Runs& runs, size_t index, int32_t by) {
    for (; index < runs.size(); ++index) runs[index].start += by;
}

/// The format that holds at a position: that of the last run which starts there or before, empty runs never being last.
template <class Runs>
auto formatAt(const Runs& runs, int32_t position) {
    return runs[firstStartingAfter(runs, std::max(position, 0)) - 1].format;
}

template <class Runs>
void removeRuns(Runs& runs, size_t from, size_t to) {
    if (from < to) runs.erase(runs.begin() + static_cast<ptrdiff_t>(from), runs.begin() + static_cast<ptrdiff_t>(to));
}

template <class Runs>
bool isEmptyRun(const Runs& runs, size_t index) {
    return index + 1 < runs.size() && runs[index + 1].start == runs[index].start;
}

/// Joins a run with the one before it when both have length and the same format.
template <class Runs>
void joinWithPrevious(Runs& runs, size_t index) {
    if (index == 0 || index >= runs.size() || runs[index - 1].format != runs[index].format) return;
    if (isEmptyRun(runs, index) || isEmptyRun(runs, index - 1)) return;
    removeRuns(runs, index, index + 1);
}

using CharacterRuns = std::vector<FormatRun<CharacterFormatId>>;
using ParagraphRuns = std::vector<FormatRun<ParagraphFormatId>>;

void makeRoom(CharacterRuns& runs, int32_t position, int32_t length) {
    const size_t first = firstStartingFrom(runs, position);
    const size_t after = firstStartingAfter(runs, position);
    if (after - first >= 2) {
        // The last empty run takes the text; what has length behind it moves on.
        shiftFrom(runs, after - 1, length);
        joinWithPrevious(runs, after - 1);
        joinWithPrevious(runs, after - 2);
    } else if (after - first == 1 && position > 0) {
        shiftFrom(runs, first, length);
    } else {
        shiftFrom(runs, after, length);
    }
}

void closeGap(CharacterRuns& runs, int32_t position, int32_t end) {
    size_t inside = firstStartingAfter(runs, position);  // runs that start strictly inside the range
    size_t behind = firstStartingFrom(runs, end);
    const bool runEndsHere = behind < runs.size() && runs[behind].start == end;
    // The run that reaches over the range's end keeps what lies behind it, the others inside are used up.
    if (behind > inside && !runEndsHere) runs[--behind].start = end;
    const bool startsAtGap = inside > 0 && runs[inside - 1].start == position;
    const bool usedUp = startsAtGap && behind < runs.size() && runs[behind].start == end;
    if (usedUp) --inside;
    removeRuns(runs, inside, behind);
    shiftFrom(runs, firstStartingAfter(runs, position), position - end);
    joinWithPrevious(runs, firstStartingAfter(runs, position) - 1);
}

/// Makes a run with length start at the position; gives its index.
size_t splitAt(CharacterRuns& runs, int32_t position) {
    const size_t after = firstStartingAfter(runs, position);
    if (runs[after - 1].start == position) return after - 1;
    runs.insert(runs.begin() + static_cast<ptrdiff_t>(after), {position, runs[after - 1].format});
    return after;
}

void formatRange(CharacterRuns& runs, int32_t position, int32_t end, int32_t length, CharacterFormatId format) {
    const bool splitsEnd = end < length;
    if (splitsEnd) splitAt(runs, end);
    const size_t index = splitAt(runs, position);
    const size_t behind = splitsEnd ? firstStartingFrom(runs, end) : runs.size();
    removeRuns(runs, index + 1, behind);
    runs[index].format = format;
    joinWithPrevious(runs, index + 1);
    joinWithPrevious(runs, index);
}

void formatEmptyRun(CharacterRuns& runs, int32_t position, CharacterFormatId format) {
    const size_t first = firstStartingFrom(runs, position);
    const size_t after = firstStartingAfter(runs, position);
    if (after - first >= 2) {
        runs[after - 2].format = format;
        return;
    }
    const size_t withLength = splitAt(runs, position);
    runs.insert(runs.begin() + static_cast<ptrdiff_t>(withLength), {position, format});
}

int32_t paragraphStart(const std::u16string& text, int32_t position) {
    while (position > 0 && text[static_cast<size_t>(position - 1)] != paragraphEnd) --position;
    return position;
}

/// The position behind the carriage return of the paragraph that holds the position.
int32_t paragraphLimit(const std::u16string& text, int32_t position) {
    const size_t found = text.find(paragraphEnd, static_cast<size_t>(position));
    return static_cast<int32_t>(found == std::u16string::npos ? text.size() : found + 1);
}

/// Sets the format of [start, limit), both at paragraph borders or the text's end.
void formatParagraphs(ParagraphRuns& runs, int32_t start, int32_t limit, int32_t length, ParagraphFormatId format) {
    if (limit < length) {
        const size_t after = firstStartingAfter(runs, limit);
        if (runs[after - 1].start != limit)
            runs.insert(runs.begin() + static_cast<ptrdiff_t>(after), {limit, runs[after - 1].format});
    }
    size_t index = firstStartingFrom(runs, start);
    const size_t behind = limit < length ? firstStartingFrom(runs, limit) : runs.size();
    if (index < behind) {
        runs[index] = {start, format};
        removeRuns(runs, index + 1, behind);
    } else {
        runs.insert(runs.begin() + static_cast<ptrdiff_t>(index), {start, format});
    }
    joinWithPrevious(runs, index + 1);
    joinWithPrevious(runs, index);
}

/// The text is already without [position, end). `first` and `last` were the formats of the paragraphs at both.
void joinParagraphs(StoryContent& content, int32_t position, int32_t end, ParagraphFormatId first,
                    ParagraphFormatId last) {
    ParagraphRuns& runs = content.paragraphRuns;
    const size_t inside = firstStartingAfter(runs, position);
    removeRuns(runs, inside, firstStartingAfter(runs, end));
    shiftFrom(runs, inside, position - end);
    const int32_t length = content.length();
    const int32_t limit = paragraphLimit(content.text, position);
    const bool firstIsGone = position == 0 || content.text[static_cast<size_t>(position - 1)] == paragraphEnd;
    // What follows the joined paragraph belonged to the last one's run, unless a run of its own starts there.
    if (limit < length) {
        const size_t after = firstStartingAfter(runs, limit);
        if (runs[after - 1].start != limit) runs.insert(runs.begin() + static_cast<ptrdiff_t>(after), {limit, last});
    }
    const int32_t start = paragraphStart(content.text, position);
    formatParagraphs(runs, start, limit, length, firstIsGone ? last : first);
}

}  // namespace

CharacterFormatId StoryContent::characterFormatAt(int32_t position) const {
    return formatAt(characterRuns, position);
}

ParagraphFormatId StoryContent::paragraphFormatAt(int32_t position) const {
    return formatAt(paragraphRuns, position);
}

CharacterFormatId StoryContent::characterFormatForInsertionAt(int32_t position) const {
    const size_t first = firstStartingFrom(characterRuns, position);
    const size_t after = firstStartingAfter(characterRuns, position);
    if (after - first >= 2) return characterRuns[after - 2].format;
    return formatAt(characterRuns, position > 0 ? position - 1 : 0);
}

void Story::setContent(std::shared_ptr<const StoryContent> content) {
    content_ = content ? std::move(content) : std::make_shared<const StoryContent>();
    ++revision_;
}

StoryContent& Story::edit() {
    ++revision_;
    if (own_ && own_ == content_ && own_.use_count() == 2) return *own_;
    if (own_ && own_ != content_ && own_.use_count() == 1) {
        *own_ = *content_;  // keeps the room of the last fill's vectors
    } else {
        own_ = std::make_shared<StoryContent>(*content_);
    }
    content_ = own_;
    return *own_;
}

void Story::insert(int32_t position, std::u16string_view text) {
    if (text.empty()) return;
    position = std::clamp(position, 0, content_->length() - 1);
    const int32_t length = static_cast<int32_t>(text.size());
    StoryContent& content = edit();
    content.text.insert(static_cast<size_t>(position), text);
    makeRoom(content.characterRuns, position, length);
    shiftFrom(content.paragraphRuns, firstStartingAfter(content.paragraphRuns, position), length);
    for (OwnedItem& owned : content.ownedItems)
        if (owned.position >= position) owned.position += length;
}

void Story::erase(int32_t position, int32_t length) {
    const int64_t last = content_->length() - 1;
    const int32_t end = static_cast<int32_t>(std::clamp<int64_t>(int64_t{position} + length, 0, last));
    position = std::max(position, 0);
    if (position >= end) return;
    StoryContent& content = edit();
    const auto from = content.text.begin() + position;
    const bool joins = std::find(from, content.text.begin() + end, paragraphEnd) != content.text.begin() + end;
    const ParagraphFormatId first = joins ? content.paragraphFormatAt(position) : 0;
    const ParagraphFormatId second = joins ? content.paragraphFormatAt(end) : 0;
    content.text.erase(from, content.text.begin() + end);
    closeGap(content.characterRuns, position, end);
    if (joins) {
        joinParagraphs(content, position, end, first, second);
    } else {
        shiftFrom(content.paragraphRuns, firstStartingAfter(content.paragraphRuns, position), position - end);
    }
    std::erase_if(content.ownedItems,
                  [&](const OwnedItem& owned) { return owned.position >= position && owned.position < end; });
    for (OwnedItem& owned : content.ownedItems)
        if (owned.position >= end) owned.position += position - end;
}

void Story::setCharacterFormat(int32_t position, int32_t length, CharacterFormatId format) {
    const int32_t total = content_->length();
    if (length <= 0) {
        formatEmptyRun(edit().characterRuns, std::clamp(position, 0, total - 1), format);
        return;
    }
    const int32_t end = static_cast<int32_t>(std::clamp<int64_t>(int64_t{position} + length, 0, total));
    position = std::max(position, 0);
    if (position < end) formatRange(edit().characterRuns, position, end, total, format);
}

void Story::setParagraphFormat(int32_t position, int32_t length, ParagraphFormatId format) {
    const int32_t total = content_->length();
    const int64_t lastTouched = int64_t{position} + std::max(length, 1) - 1;
    if (lastTouched < 0 || position >= total) return;
    StoryContent& content = edit();
    const int32_t start = paragraphStart(content.text, std::max(position, 0));
    const int32_t limit = paragraphLimit(content.text, static_cast<int32_t>(std::min<int64_t>(lastTouched, total - 1)));
    formatParagraphs(content.paragraphRuns, start, limit, total, format);
}

}  // namespace desk
