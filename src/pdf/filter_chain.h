#pragma once
// The filters of one stream, undone in order.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pdf/byte_filters.h"
#include "pdf/limits.h"
#include "pdf/predictor.h"

namespace vornaset {

/// One entry of /Filter with what its /DecodeParms say.
struct FilterStep {
    std::string name;  ///< without the slash; the short names of inline images are understood too
    PredictorParameters predictor;
    LZWChange change = LZWChange::early;
};

enum class ChainOutcome {
    undone,    ///< all filters are undone, or as far as damaged data allow
    jpeg,      ///< all but a last one, which is JPEG
    jpeg2000,  ///< all but a last one, which is JPEG 2000
    carried,   ///< a filter that nobody here undoes, or too much data: the bytes are those that went in
};

struct UndoneChain {
    std::string bytes;
    ChainOutcome outcome = ChainOutcome::undone;
};

/// Undoes the filters of a stream. Safe on several threads.
UndoneChain undoFilters(std::string raw, std::span<const FilterStep> filters,
                        size_t limit = pdf_limits::kMaximumStreamBytes);

}  // namespace vornaset
