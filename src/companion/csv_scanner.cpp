#include "companion/csv_scanner.h"

namespace companion {

CsvScanner::CsvScanner(char delimiter) : delimiter_(delimiter) {
    for (unsigned control = 0; control < 0x20; ++control) stops_[control] = stopsPlain | stopsQuoted;
    stops_[0x7F] = stopsPlain | stopsQuoted;
    stops_[static_cast<std::uint8_t>('\t')] = 0;
    stops_[static_cast<std::uint8_t>('\v')] = 0;
    stops_[static_cast<std::uint8_t>('"')] = stopsQuoted;
    stops_[static_cast<std::uint8_t>(delimiter)] = stopsPlain;
}

ScannedCell CsvScanner::scan(const char* at, const char* textEnd) const {
    if (*at == '"') return scanQuoted(at, textEnd);
    const char* stop = run(at, stopsPlain);
    ScannedCell cell{{at, static_cast<std::size_t>(stop - at)}, stop, CellEnd::controlCharacter, false, 0};
    if (*stop == delimiter_) {
        cell.end = CellEnd::delimiter;
        cell.next = stop + 1;
    } else if (*stop == '\n' || *stop == '\r') {
        cell.end = CellEnd::lineEnd;
        cell.next = stop + (stop[0] == '\r' && stop[1] == '\n' ? 2 : 1);
    } else if (stop == textEnd) {
        cell.end = CellEnd::textEnd;
    }
    return cell;
}

ScannedCell CsvScanner::scanQuoted(const char* quote, const char* textEnd) const {
    const char* begin = quote + 1;
    const char* at = begin;
    std::uint32_t lineEnds = 0;
    for (;;) {
        at = run(at, stopsQuoted);
        if (*at == '"' && at[1] == '"') {
            at += 2;
        } else if (*at == '\n' || *at == '\r') {
            ++lineEnds;
            at += at[0] == '\r' && at[1] == '\n' ? 2 : 1;
        } else {
            break;
        }
    }
    ScannedCell cell{{begin, static_cast<std::size_t>(at - begin)}, at, CellEnd::controlCharacter, true, lineEnds};
    if (at == textEnd) {
        cell.end = CellEnd::unclosedQuote;
    } else if (*at == '"') {
        ScannedCell behind = scan(at + 1, textEnd);
        cell.next = behind.next;
        cell.end = behind.end;
        if (!behind.content.empty()) {
            cell.next = at + 1;
            cell.end = CellEnd::strayAfterQuote;
        }
    }
    return cell;
}

}  // namespace companion
