#include "companion/merge_plan.h"

#include <algorithm>
#include <limits>
#include <set>

#include "companion/error.h"

namespace companion {
namespace {

std::uint64_t dividedUp(std::uint64_t dividend, std::uint64_t divisor) {
    return (dividend - 1) / divisor + 1;
}

/// "3", "3 to 5", "3, 7 to 9, ..." for the numbers from 1 to the largest that are not there.
std::string gapsIn(const std::set<std::uint64_t>& numbers) {
    constexpr int shownGaps = 5;
    std::string text;
    int gaps = 0;
    std::uint64_t expected = 1;
    for (std::uint64_t number : numbers) {
        if (number > expected) {
            if (++gaps > shownGaps) return text + ", …";
            text += (text.empty() ? "" : ", ") + std::to_string(expected);
            if (number - 1 > expected) text += " to " + std::to_string(number - 1);
        }
        expected = number + 1;
    }
    return text;
}

void warnOfNumbers(const std::set<std::uint64_t>& numbers, std::uint64_t lastPlace, MergePlan& plan) {
    if (numbers.empty()) {
        plan.warnings.push_back("no frame of the template has a number, so no record is printed");
        return;
    }
    std::string gaps = gapsIn(numbers);
    if (!gaps.empty()) plan.warnings.push_back("the frame numbers have gaps, no frame has the number " + gaps);
    if (plan.offset > std::max(*numbers.rbegin(), lastPlace))
        plan.warnings.push_back("an offset of " + std::to_string(plan.offset) +
                                " is more than the largest frame number, " + std::to_string(*numbers.rbegin()) +
                                ": the records between are printed nowhere");
}

}  // namespace

MergePlan planMerge(std::uint64_t rowCount, const std::vector<std::int64_t>& frameNumbers, std::uint64_t pages,
                    const MergeRange& range, std::uint64_t lastPlace) {
    std::set<std::uint64_t> numbers;
    for (std::int64_t number : frameNumbers)
        if (number > 0) numbers.insert(static_cast<std::uint64_t>(number));
    std::uint64_t largest = numbers.empty() ? 1 : *numbers.rbegin();

    MergePlan plan;
    plan.startNr = range.start;
    plan.offset = range.offset.value_or(largest);
    if (range.start == 0 || plan.offset == 0 || range.count == 0u)
        throw Error("the first record, the offset and the number of records count from 1.");
    if (range.shown && *range.shown > rowCount)
        throw Error("the data has " + std::to_string(rowCount) + (rowCount == 1 ? " record" : " records") +
                    ", so there is no record " + std::to_string(*range.shown) + "; choose a smaller --record.");
    if (range.start > rowCount)
        throw Error("the data has " + std::to_string(rowCount) + " records, so record " + std::to_string(range.start) +
                    " can't be the first; choose a smaller --start.");
    plan.records = std::min(range.count.value_or(rowCount), rowCount - range.start + 1);
    plan.rows = range.start - 1 + plan.records;
    plan.pageSets = dividedUp(plan.records, plan.offset);

    // The plug-in counts pages and rows in 32 bits.
    constexpr std::uint64_t most = std::numeric_limits<std::int32_t>::max();
    bool tooFar = plan.offset > most || largest > most || plan.pageSets > most / pages ||
                  (plan.pageSets - 1) * plan.offset + plan.startNr + largest > most;
    if (tooFar) throw Error("the run has more pages or records than can be counted in 31 bits; split it with --count.");

    std::uint64_t behindLastFrame = (plan.pageSets - 1) * plan.offset + plan.startNr + largest - 1;
    if (behindLastFrame > plan.rows) plan.padding = behindLastFrame - plan.rows;
    warnOfNumbers(numbers, lastPlace, plan);
    return plan;
}

}  // namespace companion
