// Story edits, one by one and against a slow and obvious model: a format for every character, a list of waiting formats
// for every gap, a format for every paragraph.
#include "desk/model/story.h"

#include <gtest/gtest.h>

#include <random>

namespace desk {
namespace {

std::shared_ptr<StoryContent> contentOf(std::u16string text, CharacterFormatId format = 0) {
    auto content = std::make_shared<StoryContent>();
    content->text = std::move(text) + u"\r";
    content->characterRuns = {{0, format}};
    return content;
}

Story storyOf(std::u16string text, CharacterFormatId format = 0) {
    Story story;
    story.setContent(contentOf(std::move(text), format));
    return story;
}

using CharacterRuns = std::vector<FormatRun<CharacterFormatId>>;
using ParagraphRuns = std::vector<FormatRun<ParagraphFormatId>>;

struct SlowStory {
    std::u16string text = u"\r";
    std::vector<CharacterFormatId> formats{0};
    std::vector<std::vector<CharacterFormatId>> waiting{{}};  ///< before each character
    std::vector<ParagraphFormatId> paragraphs{0};

    size_t paragraphOf(size_t position) const {
        return static_cast<size_t>(std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(position), u'\r'));
    }

    void insert(int32_t at, std::u16string_view added) {
        const size_t position = static_cast<size_t>(std::clamp(at, 0, static_cast<int32_t>(text.size()) - 1));
        CharacterFormatId format = formats[position > 0 ? position - 1 : 0];
        if (!added.empty() && !waiting[position].empty()) {
            format = waiting[position].back();
            waiting[position].pop_back();
        }
        const size_t paragraph = paragraphOf(position);
        for (size_t i = 0; i < added.size(); ++i) {
            text.insert(text.begin() + static_cast<ptrdiff_t>(position + i), added[i]);
            formats.insert(formats.begin() + static_cast<ptrdiff_t>(position + i), format);
            waiting.insert(waiting.begin() + static_cast<ptrdiff_t>(position + i + 1),
                           std::vector<CharacterFormatId>{});
            if (added[i] == u'\r')
                paragraphs.insert(paragraphs.begin() + static_cast<ptrdiff_t>(paragraph), paragraphs[paragraph]);
        }
    }

    void erase(int32_t at, int32_t length) {
        const int32_t last = static_cast<int32_t>(text.size()) - 1;
        const int32_t from = std::max(at, 0);
        const int32_t to = std::min(at + length, last);
        if (from >= to) return;
        std::vector<CharacterFormatId> left = waiting[static_cast<size_t>(from)];
        const std::vector<CharacterFormatId>& right = waiting[static_cast<size_t>(to)];
        left.insert(left.end(), right.begin(), right.end());
        waiting[static_cast<size_t>(to)] = left;
        // One paragraph after the other: the first paragraph's rest swallows the next, or is gone altogether.
        const bool firstGone = from == 0 || text[static_cast<size_t>(from - 1)] == u'\r';
        const size_t first = paragraphOf(static_cast<size_t>(from));
        const size_t second = paragraphOf(static_cast<size_t>(to));
        const auto offset = [](auto& list, size_t index) { return list.begin() + static_cast<ptrdiff_t>(index); };
        if (firstGone) {
            paragraphs.erase(offset(paragraphs, first), offset(paragraphs, second));
        } else {
            paragraphs.erase(offset(paragraphs, first + 1), offset(paragraphs, second + 1));
        }
        text.erase(static_cast<size_t>(from), static_cast<size_t>(to - from));
        formats.erase(formats.begin() + from, formats.begin() + to);
        waiting.erase(waiting.begin() + from, waiting.begin() + to);
    }

    void setCharacterFormat(int32_t at, int32_t length, CharacterFormatId format) {
        const int32_t total = static_cast<int32_t>(text.size());
        if (length <= 0) {
            std::vector<CharacterFormatId>& gap = waiting[static_cast<size_t>(std::clamp(at, 0, total - 1))];
            if (!gap.empty()) gap.pop_back();
            gap.push_back(format);
            return;
        }
        const int32_t from = std::max(at, 0);
        const int32_t to = std::min(at + length, total);
        for (int32_t i = from; i < to; ++i) {
            formats[static_cast<size_t>(i)] = format;
            if (i > from) waiting[static_cast<size_t>(i)].clear();
        }
    }

    void setParagraphFormat(int32_t at, int32_t length, ParagraphFormatId format) {
        const int32_t total = static_cast<int32_t>(text.size());
        const int32_t last = std::min(at + std::max(length, 1) - 1, total - 1);
        if (at >= total || last < 0) return;
        const size_t to = paragraphOf(static_cast<size_t>(last));
        for (size_t i = paragraphOf(static_cast<size_t>(std::max(at, 0))); i <= to; ++i) paragraphs[i] = format;
    }

    CharacterRuns characterRuns() const {
        CharacterRuns runs;
        for (size_t i = 0; i < text.size(); ++i) {
            const int32_t start = static_cast<int32_t>(i);
            for (CharacterFormatId format : waiting[i]) runs.push_back({start, format});
            if (runs.empty() || !waiting[i].empty() || runs.back().format != formats[i])
                runs.push_back({start, formats[i]});
        }
        return runs;
    }

    ParagraphRuns paragraphRuns() const {
        ParagraphRuns runs;
        for (size_t i = 0; i < text.size(); ++i) {
            if (i > 0 && text[i - 1] != u'\r') continue;
            const ParagraphFormatId format = paragraphs[paragraphOf(i)];
            if (runs.empty() || runs.back().format != format) runs.push_back({static_cast<int32_t>(i), format});
        }
        return runs;
    }
};

TEST(Story, NewStoryHoldsItsTerminalReturn) {
    Story story;
    EXPECT_EQ(story.content().text, u"\r");
    EXPECT_EQ(story.content().characterFormatAt(0), 0u);
}

TEST(Story, InsertedTextTakesTheFormatOfTheCharacterBefore) {
    Story story = storyOf(u"abcd", 1);
    story.setCharacterFormat(2, 2, 2);
    story.insert(2, u"XY");
    EXPECT_EQ(story.content().text, u"abXYcd\r");
    EXPECT_EQ(story.content().characterRuns, (CharacterRuns{{0, 1}, {4, 2}, {6, 1}}));
}

TEST(Story, TextInsertedAtTheStartTakesTheFirstCharactersFormat) {
    Story story = storyOf(u"abcd", 1);
    story.setCharacterFormat(0, 2, 2);
    story.insert(0, u"X");
    EXPECT_EQ(story.content().characterRuns, (CharacterRuns{{0, 2}, {3, 1}}));
}

TEST(Story, EmptyRunGivesItsFormatToTheNextInsertionThereAndNotToTextBehind) {
    Story story = storyOf(u"abcd", 1);
    story.setCharacterFormat(2, 0, 7);
    EXPECT_EQ(story.content().characterRuns, (CharacterRuns{{0, 1}, {2, 7}, {2, 1}}));
    EXPECT_EQ(story.content().characterFormatAt(2), 1u);
    EXPECT_EQ(story.content().characterFormatForInsertionAt(2), 7u);
    story.insert(2, u"XY");
    EXPECT_EQ(story.content().characterRuns, (CharacterRuns{{0, 1}, {2, 7}, {4, 1}}));
}

TEST(Story, EmptyRunsAtTheBordersOfAnErasedRangeStay) {
    Story story = storyOf(u"abcdef", 1);
    story.setCharacterFormat(2, 0, 7);
    story.setCharacterFormat(3, 0, 8);
    story.setCharacterFormat(4, 0, 9);
    story.erase(2, 2);
    EXPECT_EQ(story.content().text, u"abef\r");
    EXPECT_EQ(story.content().characterRuns, (CharacterRuns{{0, 1}, {2, 7}, {2, 9}, {2, 1}}));
    story.insert(2, u"X");
    EXPECT_EQ(story.content().characterFormatAt(2), 9u);
}

TEST(Story, RunsThatBecomeEmptyByAnEraseGo) {
    Story story = storyOf(u"abcdef", 1);
    story.setCharacterFormat(2, 2, 2);
    story.erase(2, 2);
    EXPECT_EQ(story.content().characterRuns, (CharacterRuns{{0, 1}}));
}

TEST(Story, TerminalReturnIsNeverErased) {
    Story story = storyOf(u"abc");
    story.erase(0, 100);
    EXPECT_EQ(story.content().text, u"\r");
    const uint64_t revision = story.revision();
    story.erase(0, 1);
    EXPECT_EQ(story.revision(), revision);
}

TEST(Story, EraseOutsideTheTextDoesNothing) {
    Story story = storyOf(u"abc");
    story.erase(-5, 3);
    story.erase(9, 2);
    story.erase(1, -1);
    EXPECT_EQ(story.content().text, u"abc\r");
}

TEST(Story, EraseBeforeTheStartTakesOnlyWhatLiesInside) {
    Story story = storyOf(u"abc");
    story.erase(-2, 3);
    EXPECT_EQ(story.content().text, u"bc\r");
}

TEST(Story, JoinedParagraphTakesTheFormatOfTheFirst) {
    Story story = storyOf(u"one\rtwo\rthree");
    story.setParagraphFormat(0, 1, 1);
    story.setParagraphFormat(4, 1, 2);
    story.setParagraphFormat(8, 1, 3);
    story.erase(2, 3);
    EXPECT_EQ(story.content().text, u"onwo\rthree\r");
    EXPECT_EQ(story.content().paragraphRuns, (ParagraphRuns{{0, 1}, {5, 3}}));
}

TEST(Story, ParagraphBehindAJoinKeepsItsFormatWhenItSharedARunWithTheSecond) {
    Story story = storyOf(u"one\rtwo\rthree");
    story.setParagraphFormat(0, 1, 1);
    story.setParagraphFormat(4, 6, 2);
    story.erase(3, 1);
    EXPECT_EQ(story.content().paragraphRuns, (ParagraphRuns{{0, 1}, {7, 2}}));
}

TEST(Story, EmptyParagraphThatLosesItsReturnLeavesTheNextAlone) {
    Story story = storyOf(u"one\r\rthree");
    story.setParagraphFormat(0, 1, 1);
    story.setParagraphFormat(4, 1, 2);
    story.setParagraphFormat(5, 1, 3);
    story.erase(4, 1);
    EXPECT_EQ(story.content().text, u"one\rthree\r");
    EXPECT_EQ(story.content().paragraphRuns, (ParagraphRuns{{0, 1}, {4, 3}}));
}

TEST(Story, InsertedReturnGivesBothHalvesTheFormat) {
    Story story = storyOf(u"one\rtwo");
    story.setParagraphFormat(0, 1, 1);
    story.setParagraphFormat(4, 1, 2);
    story.insert(4, u"x\ry");
    EXPECT_EQ(story.content().text, u"one\rx\rytwo\r");
    EXPECT_EQ(story.content().paragraphFormatAt(0), 1u);
    EXPECT_EQ(story.content().paragraphFormatAt(4), 2u);
    EXPECT_EQ(story.content().paragraphFormatAt(6), 2u);
}

TEST(Story, CopiesShareUntilOneSideIsEdited) {
    Story source = storyOf(u"abc", 1);
    Story target;
    target.setContent(source.sharedContent());
    EXPECT_EQ(&source.content(), &target.content());
    target.insert(0, u"X");
    EXPECT_EQ(source.content().text, u"abc\r");
    EXPECT_EQ(target.content().text, u"Xabc\r");
    source.insert(0, u"Y");
    EXPECT_EQ(source.content().text, u"Yabc\r");
    EXPECT_EQ(target.content().text, u"Xabc\r");
}

TEST(Story, CopiedStoryObjectsDontSeeEachOthersEdits) {
    Story first = storyOf(u"abc");
    first.insert(0, u"1");
    Story second = first;
    first.insert(0, u"2");
    second.insert(0, u"3");
    EXPECT_EQ(first.content().text, u"21abc\r");
    EXPECT_EQ(second.content().text, u"31abc\r");
}

TEST(Story, ContentHeldOutsideStaysAsItWas) {
    Story story = storyOf(u"abc");
    story.insert(0, u"1");
    const std::shared_ptr<const StoryContent> held = story.sharedContent();
    story.insert(0, u"2");
    EXPECT_EQ(held->text, u"1abc\r");
    story.setContent(contentOf(u"new"));
    story.insert(0, u"3");
    EXPECT_EQ(held->text, u"1abc\r");
    EXPECT_EQ(story.content().text, u"3new\r");
}

TEST(Story, NullContentGivesTheEmptyStory) {
    Story story = storyOf(u"abc");
    story.setContent(nullptr);
    EXPECT_EQ(story.content().text, u"\r");
}

TEST(Story, RevisionGrowsWithEveryChange) {
    Story story;
    uint64_t before = story.revision();
    const auto grew = [&] { return story.revision() > std::exchange(before, story.revision()); };
    story.insert(0, u"abc");
    EXPECT_TRUE(grew());
    story.erase(0, 1);
    EXPECT_TRUE(grew());
    story.setCharacterFormat(0, 1, 3);
    EXPECT_TRUE(grew());
    story.setParagraphFormat(0, 1, 3);
    EXPECT_TRUE(grew());
    story.setContent(contentOf(u"x"));
    EXPECT_TRUE(grew());
}

TEST(Story, OwnedItemsMoveWithTheirCharacter) {
    auto content = contentOf(u"ab\uFFFCcd\uFFFC");
    content->ownedItems = {{2, 100}, {5, 101}};
    Story story;
    story.setContent(content);
    story.insert(0, u"xx");
    EXPECT_EQ(story.content().ownedItems, (std::vector<OwnedItem>{{4, 100}, {7, 101}}));
    story.erase(3, 3);
    EXPECT_EQ(story.content().ownedItems, (std::vector<OwnedItem>{{4, 101}}));
    EXPECT_EQ(story.content().text[4], u'\uFFFC');
}

std::u16string randomText(std::mt19937& random) {
    std::u16string text;
    for (int i = static_cast<int>(random() % 6); i > 0; --i) text += "ab\rcd\rx"[random() % 7];
    return text;
}

TEST(Story, RandomEditsEqualTheSlowStory) {
    for (uint32_t seed = 0; seed < 400; ++seed) {
        std::mt19937 random(seed);
        Story story;
        SlowStory slow;
        for (int step = 0; step < 120; ++step) {
            const int32_t total = static_cast<int32_t>(slow.text.size());
            const int32_t at = static_cast<int32_t>(random() % static_cast<uint32_t>(total + 3)) - 1;
            const int32_t length = static_cast<int32_t>(random() % 7);
            const uint32_t format = random() % 4;
            switch (random() % 6) {
                case 0:
                case 1: {
                    const std::u16string text = randomText(random);
                    story.insert(at, text);
                    slow.insert(at, text);
                    break;
                }
                case 2:
                    story.erase(at, length);
                    slow.erase(at, length);
                    break;
                case 3:
                    story.setCharacterFormat(at, length, format);
                    slow.setCharacterFormat(at, length, format);
                    break;
                case 4:
                    story.setCharacterFormat(at, 0, format);
                    slow.setCharacterFormat(at, 0, format);
                    break;
                default:
                    story.setParagraphFormat(at, length, format);
                    slow.setParagraphFormat(at, length, format);
            }
            ASSERT_EQ(story.content().text, slow.text) << "seed " << seed << " step " << step;
            ASSERT_EQ(story.content().characterRuns, slow.characterRuns()) << "seed " << seed << " step " << step;
            ASSERT_EQ(story.content().paragraphRuns, slow.paragraphRuns()) << "seed " << seed << " step " << step;
        }
    }
}

}  // namespace
}  // namespace desk
