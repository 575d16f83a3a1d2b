#include "desk/text/composer.h"

#include <algorithm>
#include <atomic>
#include <unordered_map>

#include "desk/text/frame_filling.h"
#include "desk/text/story_paragraphs.h"

namespace desk {
namespace {

uint64_t nextSerial() {
    static std::atomic<uint64_t> serial{0};
    return ++serial;
}

/// A story as it was composed last.
struct ComposedStory {
    bool known = false;
    uint64_t revision = 0;
    std::vector<std::pair<Uid, uint64_t>> frames;  ///< with their revisions
    std::vector<TextColumn> columns;
    StoryLayout layout;
};

bool showSame(const FrameLayout& a, const FrameLayout& b) {
    return a.frame == b.frame && a.textStart == b.textStart && a.textLength == b.textLength &&
           a.paragraphs == b.paragraphs;
}

}  // namespace

struct Composer::State {
    State(const Document& from, FontLibrary& library, const ComposerOptions& options)
        : document(from),
          fonts(library),
          hyphenator(options.hyphenationFolder),
          styles(document, fonts, hyphenator),
          words(styles, fonts, hyphenator, options.rememberedWords),
          paragraphs(document, styles, words, options.rememberedParagraphs),
          sequence(document) {}

    void forgetRemovedStories();
    bool geometryChanged(const ComposedStory& story, Uid uid) const;
    void findColumns(ComposedStory& story, Uid uid, Uid page) const;
    bool showsPageOfDocument(const PageItem& frame) const;
    void layOut(ComposedStory& story, const StoryContent& content);
    std::shared_ptr<const FrameLayout> layoutOfFrame(const ComposedStory& story, uint32_t frameIndex,
                                                     const FilledColumns& filled, size_t& place);

    const Document& document;
    FontLibrary& fonts;
    Hyphenator hyphenator;
    TextStyles styles;
    WordCache words;
    ParagraphCache paragraphs;
    StoryParagraphs sequence;
    std::unordered_map<uint64_t, ComposedStory> stories;  ///< by page (0: the story's own) and story
    size_t storiesToLookThrough = 256;                    ///< when there are so many, removed ones are looked for
};

/// A merge may make and remove stories for each record.
void Composer::State::forgetRemovedStories() {
    if (stories.size() < storiesToLookThrough) return;
    std::erase_if(stories, [&](const auto& entry) { return document.story(static_cast<Uid>(entry.first)) == nullptr; });
    // Looking through costs by their number: not again before it has doubled.
    storiesToLookThrough = std::max(storiesToLookThrough, 2 * stories.size());
}

bool Composer::State::geometryChanged(const ComposedStory& story, Uid uid) const {
    const std::vector<Uid>& frames = document.framesOfStory(uid);
    if (frames.size() != story.frames.size()) return true;
    for (size_t i = 0; i < frames.size(); ++i) {
        const PageItem* frame = document.item(frames[i]);
        if (frames[i] != story.frames[i].first || !frame || frame->revision != story.frames[i].second) return true;
    }
    return false;
}

/// Columns of a story; a page other than 0 stands for the pages of its frames.
void Composer::State::findColumns(ComposedStory& story, Uid uid, Uid page) const {
    story.frames.clear();
    for (Uid frame : document.framesOfStory(uid)) {
        const PageItem* item = document.item(frame);
        story.frames.emplace_back(frame, item ? item->revision : 0);
    }
    story.columns = columnsOf(document, uid);
    if (page != 0)
        for (TextColumn& column : story.columns) column.page = page;
}

/// A master's frame whose text names the page.
bool Composer::State::showsPageOfDocument(const PageItem& frame) const {
    const Spread* spread = document.spread(frame.spread);
    const Story* story = document.story(frame.story);
    if (!spread || !spread->isMaster || !story) return false;
    const std::u16string& text = story->content().text;
    return std::any_of(text.begin(), text.end(), marker::dependsOnPage);
}

/// The frame as before when it shows the same. `place` goes on to the next frame's first place.
std::shared_ptr<const FrameLayout> Composer::State::layoutOfFrame(const ComposedStory& story, uint32_t frameIndex,
                                                                  const FilledColumns& filled, size_t& place) {
    FrameLayout made;
    made.frame = story.frames[frameIndex].first;
    int32_t end = -1;
    for (; place < filled.places.size(); ++place) {
        const PlacedLines& lines = filled.places[place];
        const TextColumn& column = story.columns[lines.column];
        if (column.frameIndex != frameIndex) break;
        const int32_t paragraphStart = sequence.start(lines.paragraphIndex);
        const LayoutLine& first = lines.paragraph->lines[lines.firstLine];
        const size_t lastLine = lines.firstLine + lines.baselines.size() - 1;
        const LayoutLine& last = lines.paragraph->lines[lastLine];
        if (end < 0) made.textStart = paragraphStart + first.textStart;
        end = lastLine + 1 == lines.paragraph->lines.size() ? sequence.end(lines.paragraphIndex)
                                                            : paragraphStart + last.textStart + last.textLength;
        PlacedParagraph placed;
        placed.paragraph = lines.paragraph;
        placed.firstLine = lines.firstLine;
        placed.lineCount = static_cast<uint32_t>(lines.baselines.size());
        placed.x = column.area.left;
        placed.baselines = lines.baselines;
        made.paragraphs.push_back(std::move(placed));
    }
    if (end < 0) made.textStart = end = filled.composedLength;
    made.textLength = end - made.textStart;
    const auto& known = story.layout.frames;
    if (frameIndex < known.size() && showSame(*known[frameIndex], made)) return known[frameIndex];
    made.serial = nextSerial();
    return std::make_shared<const FrameLayout>(std::move(made));
}

void Composer::State::layOut(ComposedStory& story, const StoryContent& content) {
    sequence.set(content, story.columns);
    FilledColumns filled = FrameFiller(paragraphs, story.columns, sequence).fill();
    std::vector<std::shared_ptr<const FrameLayout>> frames;
    frames.reserve(story.frames.size());
    size_t place = 0;
    for (uint32_t i = 0; i < story.frames.size(); ++i) frames.push_back(layoutOfFrame(story, i, filled, place));
    story.layout.frames = std::move(frames);
    story.layout.composedLength = filled.composedLength;
    // Nothing can't be too much: the terminal return alone needs no room.
    story.layout.overset = filled.overset && content.length() > 1;
}

Composer::Composer(const Document& document, FontLibrary& fonts, const ComposerOptions& options)
    : state_(std::make_unique<State>(document, fonts, options)) {}

Composer::~Composer() = default;

const StoryLayout& Composer::compose(Uid uid) {
    return compose(uid, 0);
}

const StoryLayout& Composer::compose(Uid uid, Uid page) {
    static const StoryLayout none;
    const Story* story = state_->document.story(uid);
    if (!story) return none;
    state_->forgetRemovedStories();
    ComposedStory& composed = state_->stories[uint64_t{page} << 32 | uid];
    const bool moved = !composed.known || state_->geometryChanged(composed, uid);
    if (!moved && composed.revision == story->revision()) return composed.layout;
    if (moved) state_->findColumns(composed, uid, page);
    composed.known = false;  // should this break off
    state_->layOut(composed, story->content());
    composed.revision = story->revision();
    composed.known = true;
    return composed.layout;
}

std::shared_ptr<const FrameLayout> Composer::frameLayout(Uid frame, Uid page) {
    const PageItem* item = state_->document.item(frame);
    if (!item || item->kind != ItemKind::TextFrame || item->story == 0) return nullptr;
    const Uid shown = page != 0 && state_->showsPageOfDocument(*item) ? page : 0;
    for (const auto& layout : compose(item->story, shown).frames)
        if (layout->frame == frame) return layout;
    return nullptr;
}

void Composer::forget() {
    state_->stories.clear();
    state_->paragraphs.clear();
    state_->styles.clear();
}

const std::u32string& Composer::missingCharacters() const {
    return state_->words.missingCharacters();
}

}  // namespace desk
