#include "companion/delimiter.h"

#include "companion/csv_scanner.h"
#include "companion/limits.h"

namespace companion {
namespace {

struct SplitSample {
    std::size_t firstCells = 0;  // cells of the first record
    std::size_t records = 0;
    std::size_t even = 0;  // records with as many cells as the first

    // Shares are compared as products, so that no rounding decides.
    bool isBetterThan(const SplitSample& other) const {
        if (firstCells < 2) return false;
        std::size_t mine = even * other.records;
        std::size_t theirs = other.even * records;
        return mine != theirs ? mine > theirs : firstCells > other.firstCells;
    }
};

SplitSample splitWith(char delimiter, const char* text, const char* textEnd) {
    CsvScanner scanner(delimiter);
    SplitSample sample;
    const char* at = text;
    while (at < textEnd && sample.records < delimiterSampleRecords &&
           static_cast<std::size_t>(at - text) < delimiterSampleBytes) {
        if (*at == '\r' || *at == '\n') {
            ++at;
            continue;
        }
        std::size_t cells = 0;
        ScannedCell cell;
        do {
            cell = scanner.scan(at, textEnd);
            at = cell.next;
            ++cells;
        } while (cell.end == CellEnd::delimiter);
        ++sample.records;
        if (sample.records == 1) sample.firstCells = cells;
        bool isWhole = cell.end == CellEnd::lineEnd || cell.end == CellEnd::textEnd;
        sample.even += isWhole && cells == sample.firstCells;
        if (!isWhole) break;
    }
    return sample;
}

}  // namespace

std::optional<char> delimiterNamed(std::string_view name) {
    if (name == "comma") return ',';
    if (name == "semicolon") return ';';
    if (name == "tab" || name == "\\t") return '\t';
    if (name == "pipe") return '|';
    if (name.size() != 1) return std::nullopt;
    char only = name[0];
    bool isWordCharacter = (only >= '0' && only <= '9') || (only >= 'A' && only <= 'Z') || (only >= 'a' && only <= 'z');
    bool isAscii = static_cast<unsigned char>(only) < 0x7F && only != 0;
    if (!isAscii || isWordCharacter || only == '"' || only == '\r' || only == '\n') return std::nullopt;
    return only;
}

char detectDelimiter(const char* text, const char* textEnd) {
    char best = ',';
    SplitSample bestSample{1, 1, 0};
    for (char candidate : {',', ';', '\t'}) {
        SplitSample sample = splitWith(candidate, text, textEnd);
        if (!sample.isBetterThan(bestSample)) continue;
        best = candidate;
        bestSample = sample;
    }
    return best;
}

}  // namespace companion
