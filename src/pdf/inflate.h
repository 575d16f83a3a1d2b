#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vornaset {

/// How much a filter gave.
enum class UndoOutcome {
    whole,     ///< everything up to the data's own end
    partial,   ///< what stood before damage or before an end that came too early
    tooLarge,  ///< more than the limit; the bytes are of no use
};

struct UndoneBytes {
    std::string bytes;
    UndoOutcome outcome = UndoOutcome::whole;
};

/// The bytes in a zlib stream (RFC 1950). Bytes behind its end aren't looked at. Damaged data, also data without a zlib
/// header, give what can be had. Safe on several threads.
UndoneBytes inflated(std::string_view data, size_t limit);

}  // namespace vornaset
