#include "support/index_set.h"

#include <set>

#include "support/printing.h"

namespace vornaset {
namespace {

TEST(IndexSet, JoinsWhatTouches) {
    IndexSet set;
    set.add(Range{10, 5});
    set.add(Range{20, 5});
    set.add(Range{15, 5});
    EXPECT_EQ(set.ranges(), (std::vector<Range>{{10, 15}}));
    set.add(3);
    set.add(3);
    EXPECT_EQ(set.ranges(), (std::vector<Range>{{3, 1}, {10, 15}}));
    set.add(Range{0, 100});
    EXPECT_EQ(set, IndexSet(Range{0, 100}));
}

TEST(IndexSet, ARangeOfNothingAddsNothing) {
    IndexSet set(Range{5, 0});
    set.add(Range{5, -1});
    set.add(Range{-5, 5});
    set.add(INT64_MAX);
    EXPECT_TRUE(set.isEmpty());
    EXPECT_EQ(set.count(), 0);
    EXPECT_FALSE(set.contains(5));
}

TEST(IndexSet, StaysWithinItsIndices) {
    IndexSet set(Range{-2, 5});
    EXPECT_EQ(set.ranges(), (std::vector<Range>{{0, 3}}));
    set.add(Range{1, INT64_MAX});
    EXPECT_EQ(set.count(), INT64_MAX);
    EXPECT_TRUE(set.contains(INT64_MAX - 1));
    EXPECT_FALSE(set.contains(-1));
}

TEST(IndexSet, HoldsWhatAPlainSetHolds) {
    uint32_t state = 7;
    const auto random = [&state](uint32_t below) {
        state = state * 1664525 + 1013904223;
        return static_cast<int64_t>((state >> 8) % below);
    };
    for (int round = 0; round < 200; ++round) {
        IndexSet set;
        std::set<int64_t> plain;
        for (int step = 0; step < 12; ++step) {
            const Range range{random(60), random(6)};
            set.add(range);
            for (int64_t offset = 0; offset < range.length; ++offset) plain.insert(range.location + offset);
        }
        EXPECT_EQ(set.count(), static_cast<int64_t>(plain.size()));
        for (int64_t index = 0; index < 70; ++index) EXPECT_EQ(set.contains(index), plain.contains(index)) << index;
        for (size_t at = 1; at < set.ranges().size(); ++at) {
            EXPECT_LT(set.ranges()[at - 1].location + set.ranges()[at - 1].length, set.ranges()[at].location);
        }
    }
}

}  // namespace
}  // namespace vornaset
