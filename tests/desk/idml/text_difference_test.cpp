// The changes between two texts: applied to the one they give the other.
#include "desk/idml/text_difference.h"

#include <gtest/gtest.h>

#include <random>

namespace desk {
namespace {

StoryContent contentOf(const std::u16string& text) {
    Story story;
    story.insert(0, text);
    return story.content();
}

std::u16string applied(const StoryContent& before, const StoryContent& now) {
    std::u16string text;
    int32_t at = 0;
    for (const TextChange& change : textChanges(before, now)) {
        EXPECT_GE(change.beforeStart, at) << "changes overlap";
        text += before.text.substr(static_cast<size_t>(at), static_cast<size_t>(change.beforeStart - at));
        text +=
            now.text.substr(static_cast<size_t>(change.nowStart), static_cast<size_t>(change.nowEnd - change.nowStart));
        at = change.beforeEnd;
    }
    return text + before.text.substr(static_cast<size_t>(at));
}

using Changes = std::vector<TextChange>;

TEST(TextChanges, EqualTextsHaveNone) {
    EXPECT_EQ(textChanges(contentOf(u"one"), contentOf(u"one")), Changes{});
}

TEST(TextChanges, AnInsertionIsOneChangeThatRemovesNothing) {
    EXPECT_EQ(textChanges(contentOf(u"Dear ,"), contentOf(u"Dear <<X>>,")), (Changes{{5, 5, 5, 10}}));
}

TEST(TextChanges, TwoEditsFarApartAreTwoChanges) {
    EXPECT_EQ(textChanges(contentOf(u"abcdef"), contentOf(u"xabcdf")), (Changes{{0, 0, 0, 1}, {4, 5, 5, 5}}));
}

TEST(TextChanges, AFormatIsAChangeOfItsText) {
    Story story;
    story.insert(0, u"abc");
    const StoryContent before = story.content();
    story.setCharacterFormat(1, 1, 7);
    EXPECT_EQ(textChanges(before, story.content()), (Changes{{1, 2, 1, 2}}));
}

TEST(TextChanges, TextsWithNothingInCommonAreOneChange) {
    const StoryContent before = contentOf(std::u16string(4000, u'a')), now = contentOf(std::u16string(5000, u'b'));
    EXPECT_EQ(textChanges(before, now), (Changes{{0, 4000, 0, 5000}}));
}

TEST(TextChanges, RandomEditsGiveTheOtherText) {
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        Story story;
        std::u16string text;
        for (int i = 0; i < 60; ++i) text += static_cast<char16_t>(u'a' + random() % 4);
        story.insert(0, text);
        const StoryContent before = story.content();
        for (uint32_t edit = 0; edit <= random() % 6; ++edit) {
            const auto at = static_cast<int32_t>(random() % static_cast<uint32_t>(story.content().length()));
            if (random() % 2)
                story.insert(at, std::u16string(1 + random() % 5, static_cast<char16_t>(u'a' + random() % 4)));
            else
                story.erase(at, static_cast<int32_t>(1 + random() % 9));
        }
        ASSERT_EQ(applied(before, story.content()), story.content().text);
    }
}

}  // namespace
}  // namespace desk
