#include "desk/text/story_paragraphs.h"

#include <algorithm>

namespace desk {
namespace {

std::u16string utf16(const std::string& text) {
    std::u16string result;
    for (size_t at = 0; at < text.size();) {
        const unsigned char first = static_cast<unsigned char>(text[at]);
        const size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        char32_t c = first < 0x80 ? first : first & (0x7F >> length);
        for (size_t i = 1; i < length && at + i < text.size(); ++i)
            c = c << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
        unicode::append(result, c);
        at += length;
    }
    return result;
}

std::u16string decimal(int64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

}  // namespace

void StoryParagraphs::set(const StoryContent& content, const std::vector<TextColumn>& columns) {
    content_ = &content;
    columns_ = &columns;
    paragraphs_.clear();
    const int32_t length = content.length();
    uint32_t run = 0;
    size_t formatRun = 0;
    bool hasLists = false;
    for (int32_t start = 0; start < length;) {
        Paragraph& paragraph = paragraphs_.emplace_back();
        const size_t found = content.text.find(u'\r', static_cast<size_t>(start));
        paragraph.start = start;
        paragraph.end = found == std::u16string::npos ? length : static_cast<int32_t>(found) + 1;
        while (run + 1 < content.characterRuns.size() && content.characterRuns[run + 1].start <= start) ++run;
        paragraph.firstRun = run;
        while (formatRun + 1 < content.paragraphRuns.size() && content.paragraphRuns[formatRun + 1].start <= start)
            ++formatRun;
        paragraph.format = content.paragraphRuns[formatRun].format;
        paragraph.attributes = &document_.resolved(paragraph.format, 0);
        hasLists = hasLists || paragraph.attributes->listType == ListType::Numbered;
        start = paragraph.end;
    }
    if (hasLists) numberLists();
}

/// A paragraph without a number in between doesn't end a list; one that doesn't continue starts it anew.
void StoryParagraphs::numberLists() {
    int64_t number = 0;
    bool inList = false;
    for (Paragraph& paragraph : paragraphs_) {
        const ResolvedAttributes& a = *paragraph.attributes;
        if (a.listType != ListType::Numbered) continue;
        number = inList && a.numberingContinue ? number + 1 : a.numberingStartAt;
        inList = true;
        paragraph.number = number;
    }
}

std::u16string StoryParagraphs::listLabel(const Paragraph& paragraph) const {
    const ResolvedAttributes& a = *paragraph.attributes;
    // An empty paragraph shows no bullet.
    if (a.listType == ListType::None || paragraph.end - paragraph.start <= 1) return {};
    const std::u16string& pattern = a.listType == ListType::Bullet ? a.bulletTextAfter : a.numberingExpression;
    std::u16string label = a.listType == ListType::Bullet ? a.bulletCharacter : std::u16string();
    for (size_t i = 0; i < pattern.size(); ++i) {
        const char16_t code = pattern[i] == u'^' && i + 1 < pattern.size() ? pattern[i + 1] : u'\0';
        if (code == u'\0') {
            label += pattern[i];
            continue;
        }
        ++i;
        if (code == u't')
            label += u'\t';
        else if (code == u'#' || (code >= u'1' && code <= u'9'))
            label += decimal(paragraph.number);
        else if (code == u'>')
            label += u'\u2002';
        else if (code == u'm')
            label += u'\u2003';
        else if (code == u'^')
            label += u'^';
    }
    return label;
}

ParagraphBreak StoryParagraphs::breakBehind(uint32_t index) const {
    const Paragraph& paragraph = paragraphs_[index];
    const CharacterFormatId format = content_->characterFormatAt(paragraph.end - 1);
    return document_.resolved(paragraph.format, format).paragraphBreak;
}

void StoryParagraphs::fillMarkers(const TextColumn& column) {
    const auto nameOf = [&](Uid page) {
        const Page* found = document_.page(page);
        return found ? utf16(found->name) : std::u16string();
    };
    source_.markers.pageNumber = nameOf(column.page);
    const Page* page = document_.page(column.page);
    source_.markers.sectionMarker = page ? utf16(page->sectionMarker) : std::u16string();
    for (const TextColumn& other : *columns_) {
        if (other.frameIndex == column.frameIndex + 1) source_.markers.nextPageNumber = nameOf(other.page);
        if (other.frameIndex + 1 == column.frameIndex) source_.markers.previousPageNumber = nameOf(other.page);
    }
}

void StoryParagraphs::addInlineItems(const Paragraph& paragraph) {
    for (const OwnedItem& owned : content_->ownedItems) {
        if (owned.position < paragraph.start || owned.position >= paragraph.end) continue;
        const PageItem* item = document_.item(owned.item);
        if (!item) continue;
        const Rect box = item->transform.boundsOf(boundsOf(item->path));
        source_.inlineItems.push_back({owned.position - paragraph.start, owned.item, box.width(), box.height()});
    }
}

ParagraphSource& StoryParagraphs::source(uint32_t index, const TextColumn& column) {
    const Paragraph& paragraph = paragraphs_[index];
    const std::u16string_view text = content_->text;
    source_.text =
        text.substr(static_cast<size_t>(paragraph.start), static_cast<size_t>(paragraph.end - paragraph.start - 1));
    source_.format = paragraph.format;
    source_.runs.clear();
    for (size_t run = paragraph.firstRun; run < content_->characterRuns.size(); ++run) {
        const auto& from = content_->characterRuns[run];
        if (from.start >= paragraph.end) break;
        const int32_t start = std::max(0, from.start - paragraph.start);
        // Runs without length share their start with the next one.
        if (!source_.runs.empty() && source_.runs.back().start == start) source_.runs.pop_back();
        if (!source_.runs.empty() && source_.runs.back().format == from.format) continue;
        source_.runs.push_back({start, from.format});
    }
    source_.inlineItems.clear();
    if (!content_->ownedItems.empty()) addInlineItems(paragraph);
    source_.listLabel = listLabel(paragraph);
    source_.onRightPage = column.onRightPage;
    const bool hasMarkers = std::any_of(source_.text.begin(), source_.text.end(), marker::dependsOnPage);
    source_.markers = {};
    if (hasMarkers) fillMarkers(column);
    return source_;
}

}  // namespace desk
