#include "support/index_set.h"

#include <algorithm>

namespace vornaset {

namespace {

int64_t endOf(const Range& range) {
    return range.location + range.length;
}

}  // namespace

void IndexSet::add(const Range& range) {
    if (range.length <= 0) return;
    Range joined = range;
    if (range.location < 0) joined = {0, range.location + range.length};
    joined.length = std::min(joined.length, INT64_MAX - joined.location);
    if (joined.length <= 0) return;
    const auto touches = [&joined](const Range& held) {
        return held.location <= endOf(joined) && joined.location <= endOf(held);
    };
    for (const Range& held : ranges_) {
        if (!touches(held)) continue;
        const int64_t end = std::max(endOf(held), endOf(joined));
        joined.location = std::min(held.location, joined.location);
        joined.length = end - joined.location;
    }
    std::erase_if(ranges_, touches);
    const auto place = std::find_if(ranges_.begin(), ranges_.end(),
                                    [&joined](const Range& held) { return held.location > joined.location; });
    ranges_.insert(place, joined);
}

int64_t IndexSet::count() const noexcept {
    int64_t count = 0;
    for (const Range& range : ranges_) count += range.length;
    return count;
}

bool IndexSet::contains(int64_t index) const noexcept {
    return std::any_of(ranges_.begin(), ranges_.end(),
                       [index](const Range& range) { return index >= range.location && index < endOf(range); });
}

}  // namespace vornaset
