#include "companion/data_table.h"

#include <algorithm>
#include <stdexcept>

namespace companion {

std::optional<std::size_t> DataTable::columnNamed(std::string_view name) const {
    if (name.empty()) return std::nullopt;
    auto found = std::find(columns_.begin(), columns_.end(), name);
    if (found == columns_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - columns_.begin());
}

RawCell DataTable::rawCell(std::size_t row, std::size_t column, std::vector<ScannedCell>& found) const {
    if (row >= rowOffsets_.size() || column >= columns_.size()) throw std::out_of_range("no such cell");
    if (found.empty()) found.reserve(columns_.size());
    const char* textEnd = text_.data() + text_.size();
    while (found.size() <= column) {
        if (!found.empty() && found.back().end != CellEnd::delimiter) return {};
        const char* at = found.empty() ? text_.data() + rowOffsets_[row] : found.back().next;
        found.push_back(scanner_.scan(at, textEnd));
    }
    return {found[column].content, found[column].quoted};
}

std::string DataTable::cell(std::size_t row, std::size_t column) const {
    std::string text;
    std::vector<ScannedCell> found;
    resolveCell(rawCell(row, column, found), [&](std::string_view piece) { text += piece; });
    return text;
}

std::size_t DataTable::lineOfRow(std::size_t row) const {
    if (row >= rowOffsets_.size()) throw std::out_of_range("no such row");
    std::string_view before = text_.view().substr(0, rowOffsets_[row]);
    std::size_t line = 1;
    for (std::size_t i = 0; i < before.size(); ++i)
        line += before[i] == '\r' || (before[i] == '\n' && (i == 0 || before[i - 1] != '\r'));
    return line;
}

}  // namespace companion
