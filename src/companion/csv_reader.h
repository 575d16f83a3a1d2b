#pragma once

#include <optional>
#include <string>

#include "companion/byte_buffer.h"
#include "companion/data_table.h"
#include "companion/limits.h"

namespace companion {

struct DataOptions {
    std::optional<char> delimiter;         ///< found by itself when absent
    std::optional<TextEncoding> encoding;  ///< found by itself when absent
    DataLimits limits;
};

/// Reads a data file: RFC 4180, the first record being the column names. A first line "sep=;" names the delimiter and
/// is no record. What becomes of a file that isn't quite right:
///
///   an error, thrown as Error:                          a warning, told by the table:
///   - no column names, or no record                     - an empty line: skipped
///   - two columns with one name                         - a column without name: no placeholder can use it
///   - a cell with content behind the last column        - a column name with a blank at its start or end
///   - a quote that is never closed                      - a record with too few cells: the missing ones are empty
///   - a character behind a closing quote                - empty cells behind the last column: dropped
///   - a zero byte or another control character          - a record whose cells are all empty: kept
///   - a spreadsheet, a PDF or another binary file
///   - more than the limits allow
///
/// Errors and warnings name the file, the record (from 1, without the line of column names), its line and the column.
DataTable readDataFile(const std::string& path, const DataOptions& options = {});

/// The same from bytes at hand; `name` is what messages call the file.
DataTable readData(ByteBuffer bytes, const std::string& name, const DataOptions& options = {});

}  // namespace companion
