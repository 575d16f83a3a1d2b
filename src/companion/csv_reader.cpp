#include "companion/csv_reader.h"

#include <algorithm>
#include <cstdio>
#include <unordered_map>

#include "companion/data_file.h"
#include "companion/delimiter.h"

namespace companion {
namespace {

void refuseOtherKinds(std::string_view bytes, const std::string& name) {
    static constexpr std::pair<std::string_view, const char*> kinds[] = {
        {"PK\x03\x04", "a ZIP package (a spreadsheet, perhaps)"},
        {"\xD0\xCF\x11\xE0", "an old spreadsheet or document"},
        {"%PDF-", "a PDF file"},
        {"\x1F\x8B", "a compressed file"},
    };
    for (auto& [signature, kind] : kinds)
        if (bytes.starts_with(signature))
            throw Error("the data file \"" + name + "\" is " + kind + ", not CSV; save its table as CSV.");
}

/// Bytes that are neither Unicode nor free of zeros are no text in an old encoding either, whatever letters they seem
/// to have.
void refuseBinary(std::string_view bytes, TextEncoding found, const std::string& name) {
    bool isOldEncoding = found == TextEncoding::windows1252 || found == TextEncoding::macRoman;
    if (isOldEncoding && bytes.find('\0') != bytes.npos)
        throw Error("the data file \"" + name + "\" isn't text: it has zero bytes; save its table as CSV.");
}

std::string hexadecimal(char character) {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", static_cast<unsigned char>(character));
    return text;
}

// The start of a foreign text for a message: one line, short, cut between characters.
std::string excerpt(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::size_t end = std::min(text.find_first_of("\r\n\v"), text.size());
    bool isCut = end < text.size();
    if (end > longest) {
        end = longest;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
        isCut = true;
    }
    return "\"" + std::string(text.substr(0, end)) + (isCut ? "…\"" : "\"");
}

/// By its code point; null when a person sees all of the name. Such characters come from copying, and from files that
/// got a byte order mark twice.
const char* invisibleCharacterIn(std::string_view name) {
    static constexpr std::pair<std::string_view, const char*> characters[] = {
        {"\xEF\xBB\xBF", "U+FEFF"}, {"\xE2\x80\x8B", "U+200B"}, {"\xC2\xA0", "U+00A0"}, {"\xC2\xAD", "U+00AD"}};
    for (const auto& [character, codePoint] : characters)
        if (name.find(character) != name.npos) return codePoint;
    return nullptr;
}

std::string resolved(const ScannedCell& cell) {
    std::string text;
    resolveCell({cell.content, cell.quoted}, [&](std::string_view piece) { text += piece; });
    return text;
}

}  // namespace

// Reads one file. Steps: column names, then record by record the offset and the checks.
class CsvReader {
  public:
    CsvReader(const std::string& name, const DataLimits& limits, char delimiter)
        : name_(name), limits_(limits), table_(delimiter) {}

    DataTable read(ByteBuffer text, std::size_t start, std::size_t firstLine, TextEncoding encoding) {
        table_.encoding_ = encoding;
        table_.text_ = std::move(text);
        begin_ = table_.text_.data();
        end_ = begin_ + table_.text_.size();
        at_ = begin_ + start;
        line_ = firstLine;
        readNames();
        while (skipEmptyLines()) readRecord();
        if (table_.rowOffsets_.empty())
            throw Error("the data file \"" + name_ + "\" has a line of column names and no records; add rows to it.");
        table_.rowOffsets_.shrink_to_fit();
        return std::move(table_);
    }

  private:
    // Moves to the next record, past empty lines. False at the end of the text.
    bool skipEmptyLines() {
        while (at_ < end_ && (*at_ == '\r' || *at_ == '\n')) {
            warn({0, line_, 0}, "line " + std::to_string(line_) + " is empty and was skipped");
            at_ += at_[0] == '\r' && at_[1] == '\n' ? 2 : 1;
            ++line_;
        }
        return at_ < end_;
    }

    ScannedCell nextCell(std::size_t column) {
        ScannedCell cell = table_.scanner_.scan(at_, end_);
        if (cell.end >= CellEnd::strayAfterQuote) refuseCell(cell, column);
        if (cell.content.size() > limits_.cellBytes)
            fail({record_, line_, column}, "the cell has more than " + std::to_string(limits_.cellBytes) +
                                               " bytes, the most that is accepted; is a quote missing?");
        if (column > limits_.columns)
            fail({record_, line_, column}, "there are more than " + std::to_string(limits_.columns) +
                                               " columns, the most that is accepted; is it the right delimiter?");
        at_ = cell.next;
        line_ += cell.lineEnds;
        return cell;
    }

    void readNames() {
        if (!skipEmptyLines())
            throw Error("the data file \"" + name_ + "\" has only empty lines; it needs column names.");
        std::unordered_map<std::string, std::size_t> seen;
        ScannedCell cell;
        do {
            std::size_t column = table_.columns_.size() + 1;
            std::size_t line = line_;
            cell = nextCell(column);
            std::string name = resolved(cell);
            checkName(name, {0, line, column});
            auto [first, isNew] = seen.emplace(name, column);
            if (!name.empty() && !isNew)
                fail({0, line, column}, "the columns " + std::to_string(first->second) + " and " +
                                            std::to_string(column) + " are both named " + excerpt(name) +
                                            "; give each a name of its own.");
            table_.columns_.push_back(std::move(name));
        } while (cell.end == CellEnd::delimiter);
        ++line_;
    }

    void checkName(const std::string& name, DataPlace place) {
        if (name.empty())
            warn(place, placeText(place) + " has no name, so no placeholder can use it");
        else if (name.front() == ' ' || name.back() == ' ')
            warn(place, placeText(place) + " is named " + excerpt(name) + " with a blank at its start or end");
        else if (const char* character = invisibleCharacterIn(name))
            warn(place, placeText(place) + " is named " + excerpt(name) + " with an invisible character, " + character);
    }

    void readRecord() {
        table_.rowOffsets_.push_back(static_cast<std::uint32_t>(at_ - begin_));
        ++record_;
        std::size_t column = 0;
        std::size_t firstLine = line_;
        std::size_t dropped = 0;
        bool isEmpty = true;
        ScannedCell cell;
        do {
            ++column;
            cell = nextCell(column);
            if (!cell.content.empty()) isEmpty = false;
            if (column <= table_.columns_.size()) continue;
            if (!cell.content.empty()) refuseExtraCell(cell, column);
            ++dropped;
        } while (cell.end == CellEnd::delimiter);
        ++line_;
        DataPlace place{record_, firstLine, column};
        if (isEmpty)
            warn({record_, firstLine, 0}, placeText({record_, firstLine, 0}) + " has only empty cells and was kept");
        if (dropped) warn(place, placeText(place) + " stands behind the last column and is empty; it was dropped");
        if (column < table_.columns_.size()) warnOfMissingCells({record_, firstLine, column + 1});
    }

    void warnOfMissingCells(DataPlace place) {
        std::size_t missing = table_.columns_.size() - place.column + 1;
        warn(place, placeText(place) + " (" + excerpt(table_.columns_[place.column - 1]) + ") is missing" +
                        (missing > 1 ? ", and " + std::to_string(missing - 1) + " behind it" : std::string()) +
                        "; taken as empty");
    }

    [[noreturn]] void refuseExtraCell(const ScannedCell& cell, std::size_t column) {
        fail({record_, line_ - cell.lineEnds, column},
             "the cell " + excerpt(cell.content) + " belongs to no column, there are " +
                 std::to_string(table_.columns_.size()) + "; put cells that hold a delimiter in quotes.");
    }

    [[noreturn]] void refuseCell(const ScannedCell& cell, std::size_t column) {
        DataPlace place{record_, line_, column};
        if (cell.end == CellEnd::unclosedQuote) fail(place, "the quote that opens this cell is never closed.");
        std::string_view fault(cell.next, static_cast<std::size_t>(end_ - cell.next));
        if (cell.end == CellEnd::strayAfterQuote)
            fail(place, excerpt(fault.substr(0, fault.find_first_of(",;\t\r\n"))) +
                            " stands behind the closing quote; a quote inside a quoted cell is written twice.");
        if (fault.front() == 0)
            fail(place,
                 "a zero byte: the file isn't text, or it is UTF-16 without a byte order mark (then say "
                 "--encoding utf-16le or utf-16be).");
        fail(place, "the control character " + hexadecimal(fault.front()) +
                        ": the file isn't text, or that character must go.");
    }

    // "record 3 (line 4), column 2", "line 1, column 2" for the line of column names.
    static std::string placeText(DataPlace place) {
        std::string text = "line " + std::to_string(place.line);
        if (place.record) text = "record " + std::to_string(place.record) + " (" + text + ")";
        if (place.column) text += ", column " + std::to_string(place.column);
        return text;
    }

    [[noreturn]] void fail(DataPlace place, const std::string& what) {
        throw Error("the data file \"" + name_ + "\", " + placeText(place) + ": " + what, place);
    }

    void warn(DataPlace place, const std::string& text) {
        ++table_.warnings_.count;
        if (table_.warnings_.kept.size() < limits_.keptProblems) table_.warnings_.kept.push_back({place, text});
    }

    const std::string& name_;
    const DataLimits& limits_;
    DataTable table_;
    const char* begin_ = nullptr;
    const char* end_ = nullptr;
    const char* at_ = nullptr;
    std::size_t line_ = 1;
    std::size_t record_ = 0;
};

namespace {

// The delimiter that a first line "sep=X" names, as spreadsheets write it for each other.
std::optional<char> hintedDelimiter(std::string_view text) {
    if (text.size() < 6 || !(text.starts_with("sep=") || text.starts_with("SEP="))) return std::nullopt;
    if (text[5] != '\r' && text[5] != '\n') return std::nullopt;
    return delimiterNamed(text.substr(4, 1));
}

}  // namespace

DataTable readData(ByteBuffer bytes, const std::string& name, const DataOptions& options) {
    refuseOtherKinds(bytes.view(), name);
    TextEncoding encoding = options.encoding ? *options.encoding : detectEncoding(bytes.view());
    if (!options.encoding) refuseBinary(bytes.view(), encoding, name);
    decodeInPlace(bytes, encoding, name);
    if (bytes.size() > options.limits.fileBytes)
        throw Error("the data file \"" + name + "\" is too long once it is UTF-8; split it.");
    bytes.terminate();
    std::size_t start = 0;
    std::optional<char> delimiter = options.delimiter;
    if (auto hinted = hintedDelimiter(bytes.view())) {
        if (!delimiter) delimiter = hinted;
        start = bytes.view().substr(5, 2) == "\r\n" ? 7 : 6;
    }
    if (!delimiter) delimiter = detectDelimiter(bytes.data() + start, bytes.data() + bytes.size());
    return CsvReader(name, options.limits, *delimiter).read(std::move(bytes), start, start ? 2 : 1, encoding);
}

DataTable readDataFile(const std::string& path, const DataOptions& options) {
    try {
        return readData(readWholeFile(path, "the data file", options.limits.fileBytes), path, options);
    } catch (const std::bad_alloc&) {
        throw Error("the data file \"" + path + "\" doesn't fit into memory; split it.");
    }
}

}  // namespace companion
