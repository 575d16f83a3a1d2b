#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace companion {

/// Which records go into which page sets, as a user asks for it. Numbers from 1.
struct MergeRange {
    std::uint64_t start = 1;             ///< first record
    std::optional<std::uint64_t> count;  ///< that many records and no more; all behind the start when absent
    std::optional<std::uint64_t>
        offset;  ///< records from one page set to the next; the largest frame number when absent
    std::optional<std::uint64_t> shown = {};  ///< a record that must be there, as a preview of it needs
};

/// The arithmetic of a run. Page set s (from 0) shows in the frames numbered f the row s * offset + startNr + f - 2.
struct MergePlan {
    std::uint64_t startNr = 1;  ///< first record, from 1
    std::uint64_t records = 0;  ///< records of the run
    std::uint64_t offset = 1;
    std::uint64_t pageSets = 0;  ///< records / offset, rounded up
    std::uint64_t rows = 0;      ///< rows of the table that the run may see: up to its last record
    /// Rows of empty cells behind them: up to the largest frame number of the last page set and no further.
    std::uint64_t padding = 0;
    std::vector<std::string> warnings;  ///< sentences without full stop
};

/// `frameNumbers` are those of the template's frames, in any order, 0 and repetitions allowed; `pages` is the
/// template's page count; `lastPlace` is the last place of a page set, from 1, whose record a story reaches by walking
/// through records, 0 when none does. Throws Error when no record lies behind the start and when the export would have
/// more pages than the border can count (2^31 - 1).
MergePlan planMerge(std::uint64_t rowCount, const std::vector<std::int64_t>& frameNumbers, std::uint64_t pages,
                    const MergeRange& range, std::uint64_t lastPlace = 0);

}  // namespace companion
