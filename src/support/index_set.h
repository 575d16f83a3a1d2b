#pragma once
// A set of indices, kept as ranges.

#include <cstdint>
#include <vector>

#include "support/geometry.h"

namespace vornaset {

/// Distinct indices from 0 to below the largest signed number, ascending. A long range costs no more than a short one.
class IndexSet {
  public:
    IndexSet() = default;
    /// Every index of the range; none for a length of 0 or below. What lies below 0 or beyond the largest index is left
    /// out.
    explicit IndexSet(const Range& range) { add(range); }

    void add(int64_t index) { add(Range{index, 1}); }
    void add(const Range& range);

    bool isEmpty() const noexcept { return ranges_.empty(); }
    int64_t count() const noexcept;
    bool contains(int64_t index) const noexcept;
    /// Ascending, none touching the next.
    const std::vector<Range>& ranges() const noexcept { return ranges_; }

    bool operator==(const IndexSet&) const = default;

  private:
    std::vector<Range> ranges_;
};

}  // namespace vornaset
