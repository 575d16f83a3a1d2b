#include "pdf/filter_chain.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace vornaset {
namespace {

enum class Filter { hex, base85, lzw, deflate, runLength, jpeg, jpeg2000, none, foreign };

Filter filterNamed(std::string_view name) {
    // ISO 32000-1, tables 6 and 94. Crypt is undone where the bytes come from.
    static constexpr std::array<std::pair<std::string_view, Filter>, 14> names{{
        {"FlateDecode", Filter::deflate},
        {"Fl", Filter::deflate},
        {"DCTDecode", Filter::jpeg},
        {"DCT", Filter::jpeg},
        {"JPXDecode", Filter::jpeg2000},
        {"LZWDecode", Filter::lzw},
        {"LZW", Filter::lzw},
        {"ASCII85Decode", Filter::base85},
        {"A85", Filter::base85},
        {"ASCIIHexDecode", Filter::hex},
        {"AHx", Filter::hex},
        {"RunLengthDecode", Filter::runLength},
        {"RL", Filter::runLength},
        {"Crypt", Filter::none},
    }};
    const auto* const found =
        std::find_if(names.begin(), names.end(), [&](const auto& entry) { return entry.first == name; });
    return found == names.end() ? Filter::foreign : found->second;
}

bool isPicture(Filter filter) {
    return filter == Filter::jpeg || filter == Filter::jpeg2000;
}

/// True when every filter can be undone here, or is a picture's own at the end.
bool canBeUndone(std::span<const FilterStep> filters) {
    if (filters.size() > pdf_limits::kMaximumFilters) return false;
    for (size_t at = 0; at < filters.size(); ++at) {
        const Filter filter = filterNamed(filters[at].name);
        if (filter == Filter::foreign || (isPicture(filter) && at + 1 < filters.size())) return false;
    }
    return true;
}

/// Nothing when the result would be too large.
std::optional<std::string> undone(std::string_view bytes, const FilterStep& step, size_t limit) {
    UndoneBytes result;
    const Filter filter = filterNamed(step.name);
    switch (filter) {
        case Filter::hex:
            result = undoASCIIHex(bytes, limit);
            break;
        case Filter::base85:
            result = undoASCII85(bytes, limit);
            break;
        case Filter::runLength:
            result = undoRunLength(bytes, limit);
            break;
        case Filter::lzw:
            result = undoLZW(bytes, step.change, limit);
            break;
        case Filter::deflate:
            result = inflated(bytes, limit);
            break;
        default:
            return std::nullopt;
    }
    if (result.outcome == UndoOutcome::tooLarge) return std::nullopt;
    if (filter == Filter::lzw || filter == Filter::deflate)
        return undoPredictor(std::move(result.bytes), step.predictor).bytes;
    return std::move(result.bytes);
}

}  // namespace

UndoneChain undoFilters(std::string raw, std::span<const FilterStep> filters, size_t limit) {
    if (!canBeUndone(filters)) return {std::move(raw), ChainOutcome::carried};
    std::string bytes;
    bool isFirst = true;
    for (const FilterStep& step : filters) {
        const Filter filter = filterNamed(step.name);
        if (isPicture(filter))
            return {isFirst ? std::move(raw) : std::move(bytes),
                    filter == Filter::jpeg ? ChainOutcome::jpeg : ChainOutcome::jpeg2000};
        if (filter == Filter::none) continue;
        std::optional<std::string> result = undone(isFirst ? raw : bytes, step, limit);
        if (!result) return {std::move(raw), ChainOutcome::carried};
        bytes = std::move(*result);
        isFirst = false;
    }
    return {isFirst ? std::move(raw) : std::move(bytes), ChainOutcome::undone};
}

}  // namespace vornaset
