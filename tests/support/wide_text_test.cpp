#include "support/wide_text.h"

#include <gtest/gtest.h>

namespace vornaset {
namespace {

TEST(WideText, LengthCountsTheUnitsBeforeTheTerminator) {
    const uint16_t text[] = {'a', 0xD83D, 0xDE00, 0, 'b', 0};
    const uint16_t empty[] = {0};
    EXPECT_EQ(wstrlen(text), 3u);
    EXPECT_EQ(wstrlen(empty), 0u);
    EXPECT_EQ(wstrlen(nullptr), 0u);
}

TEST(WideText, CopyTakesTheTerminatorAlong) {
    const uint16_t text[] = {'a', 0xFFFF, 0};
    uint16_t target[] = {9, 9, 9, 9};
    EXPECT_EQ(wstrcpy(target, text), 2u);
    EXPECT_EQ(target[1], 0xFFFF);
    EXPECT_EQ(target[2], 0);
    EXPECT_EQ(target[3], 9);
}

TEST(WideText, ANullSourceCopiesNothing) {
    uint16_t target[] = {9};
    EXPECT_EQ(wstrcpy(target, nullptr), 0u);
    EXPECT_EQ(target[0], 9);
}

}  // namespace
}  // namespace vornaset
