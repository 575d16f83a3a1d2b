#pragma once

#include <cstddef>
#include <memory>

#include "companion/data_table.h"
#include "support/values.h"

namespace companion {

/// The first `rows` records of a table as the merge job's rows, and behind them `padding` rows of empty cells, which
/// stand nowhere in memory. A row is a dictionary that reads its cells when they are asked for; its keys are the column
/// names, in file order, without the columns that have no name. Every value is a text.
/// `rows` may be at most the table's rowCount().
vornaset::Array rowsView(std::shared_ptr<const DataTable> table, std::size_t rows, std::size_t padding);

}  // namespace companion
