#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace companion {

/// What stands behind a cell.
enum class CellEnd : std::uint8_t {
    delimiter,         ///< another cell of the same record
    lineEnd,           ///< CR, LF or CRLF: the record's last cell
    textEnd,           ///< the record's last cell, and the last record
    strayAfterQuote,   ///< a character between the closing quote and the delimiter: not CSV
    unclosedQuote,     ///< the text ended inside quotes: not CSV
    controlCharacter,  ///< a character below U+0020 that is no tab, line break or vertical tab, or U+007F: not text
};

struct ScannedCell {
    std::string_view content;  ///< raw: doubled quotes and line breaks as they stand in the file
    const char* next;          ///< behind the delimiter or line end; at the fault where `end` is one
    CellEnd end;
    bool quoted;             ///< `content` stood in quotes, which aren't part of it
    std::uint32_t lineEnds;  ///< inside the content; CRLF counts once
};

/// The grammar of RFC 4180, one cell at a time. A quote opens a quoted cell only where it is the cell's first
/// character; anywhere else in a cell without quotes it is a character like others. The reader of a whole file and the
/// look-up of a single cell both go through here, so that they never differ.
class CsvScanner {
  public:
    /// `delimiter` is one ASCII character, neither a quote nor a line end.
    explicit CsvScanner(char delimiter);

    /// Scans the cell that begins at `at`. `textEnd` must point at a zero byte, which ends every loop.
    ScannedCell scan(const char* at, const char* textEnd) const;

  private:
    enum StopBits : std::uint8_t { stopsPlain = 1, stopsQuoted = 2 };
    const char* run(const char* at, StopBits bit) const {
        while (!(stops_[static_cast<std::uint8_t>(*at)] & bit)) ++at;
        return at;
    }
    ScannedCell scanQuoted(const char* quote, const char* textEnd) const;

    char delimiter_;
    std::array<std::uint8_t, 256> stops_{};
};

}  // namespace companion
