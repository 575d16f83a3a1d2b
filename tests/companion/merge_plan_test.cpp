#include "companion/merge_plan.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "companion/error.h"

namespace companion {
namespace {

MergeRange range(std::uint64_t start, std::optional<std::uint64_t> count = {},
                 std::optional<std::uint64_t> offset = {}) {
    return {start, count, offset};
}

TEST(MergePlan, OneFrameShowsOneRecordAPageSet) {
    MergePlan plan = planMerge(100, {0, 1, 1}, 2, {});
    EXPECT_EQ(plan.records, 100u);
    EXPECT_EQ(plan.offset, 1u);
    EXPECT_EQ(plan.pageSets, 100u);
    EXPECT_EQ(plan.rows, 100u);
    EXPECT_EQ(plan.padding, 0u);
    EXPECT_TRUE(plan.warnings.empty());
}

TEST(MergePlan, TheOffsetIsTheLargestFrameNumberAndTheLastSetIsPadded) {
    MergePlan plan = planMerge(7, {1, 2, 3}, 1, {});
    EXPECT_EQ(plan.offset, 3u);
    EXPECT_EQ(plan.pageSets, 3u);
    EXPECT_EQ(plan.padding, 2u) << "7 records in 3 sets of 3: two places stay empty";
}

TEST(MergePlan, FullSetsNeedNoPadding) {
    EXPECT_EQ(planMerge(6, {1, 2, 3}, 1, {}).padding, 0u);
}

TEST(MergePlan, StartAndCountCutTheRows) {
    MergePlan plan = planMerge(100, {1, 2}, 1, range(91, 5));
    EXPECT_EQ(plan.startNr, 91u);
    EXPECT_EQ(plan.records, 5u);
    EXPECT_EQ(plan.rows, 95u) << "record 96 isn't shown though it is there";
    EXPECT_EQ(plan.pageSets, 3u);
    EXPECT_EQ(plan.padding, 1u);
}

TEST(MergePlan, ACountBeyondTheEndTakesWhatIsThere) {
    EXPECT_EQ(planMerge(10, {1}, 1, range(8, 100)).records, 3u);
    EXPECT_EQ(planMerge(10, {1}, 1, range(10)).records, 1u);
}

TEST(MergePlan, AStartBehindTheLastRecordIsRefused) {
    try {
        planMerge(10, {1}, 1, range(11));
        FAIL();
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(),
                     "the data has 10 records, so record 11 can't be the first; choose a smaller --start.");
    }
}

TEST(MergePlan, RecordsBetweenPageSetsAreToldUnlessAStoryWalksThroughThem) {
    EXPECT_EQ(planMerge(10, {1}, 1, range(1, {}, 3)).warnings.size(), 1u);
    EXPECT_EQ(planMerge(10, {1}, 1, range(1, {}, 3), 2).warnings.size(), 1u);
    EXPECT_TRUE(planMerge(10, {1}, 1, range(1, {}, 3), 3).warnings.empty());
}

TEST(MergePlan, ARecordThatIsToBeShownMustBeThereAndNotOnlyItsPageSet) {
    MergeRange second = range(25, 24);
    second.shown = 25;
    EXPECT_EQ(planMerge(25, {24}, 1, second).records, 1u);
    second.shown = 30;
    try {
        planMerge(25, {24}, 1, second);
        FAIL();
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), "the data has 25 records, so there is no record 30; choose a smaller --record.");
    }
}

TEST(MergePlan, GapsInTheNumbersAreTold) {
    EXPECT_EQ(planMerge(10, {1, 2, 4, 8}, 1, {}).warnings,
              std::vector<std::string>{"the frame numbers have gaps, no frame has the number 3, 5 to 7"});
    EXPECT_EQ(planMerge(10, {2}, 1, {}).warnings,
              std::vector<std::string>{"the frame numbers have gaps, no frame has the number 1"});
    EXPECT_EQ(planMerge(10, {2, 4, 6, 8, 10, 12, 14}, 1, {}).warnings,
              std::vector<std::string>{"the frame numbers have gaps, no frame has the number 1, 3, 5, 7, 9, …"});
    EXPECT_TRUE(planMerge(10, {3, 1, 2, 2, 0}, 1, {}).warnings.empty());
}

TEST(MergePlan, ATemplateWithoutNumbersIsTold) {
    MergePlan plan = planMerge(10, {0, 0}, 1, {});
    EXPECT_EQ(plan.offset, 1u) << "at least 1";
    EXPECT_EQ(plan.warnings,
              std::vector<std::string>{"no frame of the template has a number, so no record is printed"});
}

TEST(MergePlan, AnOffsetThatLeavesRecordsOutIsTold) {
    MergePlan plan = planMerge(10, {1, 2}, 1, range(1, {}, 3));
    EXPECT_EQ(plan.pageSets, 4u);
    EXPECT_EQ(plan.padding, 1u) << "the last set begins at record 10, its second frame has none";
    ASSERT_EQ(plan.warnings.size(), 1u);
    EXPECT_NE(plan.warnings[0].find("printed nowhere"), std::string::npos);
}

TEST(MergePlan, WhatCannotBeCountedIn31BitsIsRefused) {
    EXPECT_THROW(planMerge(3'000'000'000, {1}, 1, {}), Error);
    EXPECT_THROW(planMerge(1'000'000'000, {1}, 3, {}), Error) << "three pages a record";
    EXPECT_THROW(planMerge(10, {1}, 1, range(1, {}, 3'000'000'000)), Error);
    EXPECT_THROW(planMerge(10, {3'000'000'000}, 1, {}), Error);
    EXPECT_NO_THROW(planMerge(2'000'000'000, {1}, 1, {}));
}

// The rows that a run asks for, counted one by one, against the plan.
TEST(MergePlan, EveryFrameOfEverySetHasARowAndNoRowIsTooMany) {
    for (std::uint64_t rows = 1; rows <= 12; ++rows)
        for (std::uint64_t start = 1; start <= rows; ++start)
            for (std::uint64_t count = 1; count <= 5; ++count)
                for (std::uint64_t offset = 1; offset <= 5; ++offset)
                    for (std::int64_t largest = 1; largest <= 4; ++largest) {
                        MergePlan plan = planMerge(rows, {largest, 1}, 2, range(start, count, offset));
                        std::uint64_t lastAsked = 0;
                        std::uint64_t begun = 0;
                        for (std::uint64_t set = 0; set < plan.pageSets; ++set) {
                            lastAsked =
                                std::max(lastAsked, set * offset + start + static_cast<std::uint64_t>(largest) - 2);
                            begun += set * offset < plan.records;
                        }
                        EXPECT_EQ(begun, plan.pageSets) << "each set begins with a record";
                        EXPECT_GE(plan.pageSets * offset, plan.records) << "no record is left behind the last set";
                        EXPECT_EQ(std::max(plan.rows, lastAsked + 1), plan.rows + plan.padding);
                    }
}

}  // namespace
}  // namespace companion
