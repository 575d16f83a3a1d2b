#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/byte_buffer.h"
#include "companion/csv_scanner.h"
#include "companion/error.h"
#include "companion/text_encoding.h"

namespace companion {

/// Something in a data file that the run can live with and the user should know.
struct DataWarning {
    DataPlace place;
    std::string text;  ///< a sentence that names the place
};

struct DataWarnings {
    std::vector<DataWarning> kept;  ///< the first ones, DataLimits::keptProblems at most
    std::size_t count = 0;          ///< all
};

/// A cell as it stands in the text: still with its doubled quotes and its own line ends.
struct RawCell {
    std::string_view content;
    bool quoted = false;
};

/// The records of a data file. It holds the file's text once, as UTF-8, and one offset of four bytes for each record;
/// cells are found when they are asked for and become strings then. Copying is not offered, moving is cheap; a table
/// that nobody moves may be read from several threads.
class DataTable {
  public:
    /// Column names in file order, UTF-8. Two columns never bear the same name; a column without name is "".
    const std::vector<std::string>& columns() const { return columns_; }

    std::size_t rowCount() const { return rowOffsets_.size(); }

    /// The place of a column, from 0. Nothing for an empty name and for a name that no column bears.
    std::optional<std::size_t> columnNamed(std::string_view name) const;

    /// The text of a cell, row and column from 0, UTF-8: quotes resolved, and each line break in it (CRLF, CR, LF or a
    /// vertical tab) as one U+2028. A cell that its record lacks is empty. Throws std::out_of_range.
    std::string cell(std::size_t row, std::size_t column) const;

    /// The same cell unresolved; for readers that resolve it into a form of their own by resolveCell. `found` holds the
    /// row's cells that were met so far, from the first on, and is filled as far as this one: who asks for several of a
    /// row gives it again. Empty for another row.
    RawCell rawCell(std::size_t row, std::size_t column, std::vector<ScannedCell>& found) const;

    /// The line of the file on which a record begins, from 1. Walks the text: for messages, not for loops.
    std::size_t lineOfRow(std::size_t row) const;

    TextEncoding encoding() const { return encoding_; }
    char delimiter() const { return delimiter_; }
    const DataWarnings& warnings() const { return warnings_; }

    /// Bytes that the table holds: text and offsets.
    std::size_t heldBytes() const { return text_.size() + rowOffsets_.capacity() * sizeof(std::uint32_t); }

  private:
    friend class CsvReader;
    explicit DataTable(char delimiter) : scanner_(delimiter), delimiter_(delimiter) {}

    CsvScanner scanner_;
    char delimiter_;
    TextEncoding encoding_ = TextEncoding::utf8;
    ByteBuffer text_;
    std::vector<std::string> columns_;
    std::vector<std::uint32_t> rowOffsets_;
    DataWarnings warnings_;
};

/// Calls put(piece) for each run of the cell's own text and put("\u2028") for each line break in it, in order.
template <class Put>
void resolveCell(RawCell cell, Put put) {
    constexpr std::string_view forcedLineBreak = "\xE2\x80\xA8";
    constexpr std::string_view stops = "\"\r\n\v";
    std::string_view rest = cell.content;
    for (;;) {
        std::size_t stop = rest.find_first_of(stops);
        if (stop == std::string_view::npos) break;
        bool isQuote = rest[stop] == '"';
        std::size_t behind = stop + 1;
        if (isQuote) {
            put(rest.substr(0, behind));
            if (cell.quoted) ++behind;  // the second one of the pair
        } else {
            put(rest.substr(0, stop));
            put(forcedLineBreak);
            if (rest[stop] == '\r' && behind < rest.size() && rest[behind] == '\n') ++behind;
        }
        rest.remove_prefix(behind);
    }
    put(rest);
}

}  // namespace companion
