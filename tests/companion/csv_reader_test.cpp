#include "companion/csv_reader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace companion {
namespace {

ByteBuffer bytesOf(std::string_view text) {
    ByteBuffer bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

DataTable read(std::string_view text, const DataOptions& options = {}) {
    return readData(bytesOf(text), "t.csv", options);
}

// The whole table on one line: names, then records, cells parted by "|", records by " / ", a forced line break as "¶".
std::string shown(const DataTable& table) {
    std::string text;
    auto add = [&](std::string cell, std::size_t column) {
        for (std::size_t at; (at = cell.find("\xE2\x80\xA8")) != std::string::npos;) cell.replace(at, 3, "¶");
        text += (column ? "|" : "") + cell;
    };
    for (std::size_t column = 0; column < table.columns().size(); ++column) add(table.columns()[column], column);
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
        text += " / ";
        for (std::size_t column = 0; column < table.columns().size(); ++column) add(table.cell(row, column), column);
    }
    return text;
}

struct AcceptedCase {
    const char* what;
    std::string text;
    std::string table;
    std::string warnings;  // joined by "; "
};

class Accepted : public testing::TestWithParam<AcceptedCase> {};

TEST_P(Accepted, GivesTheTableAndTheWarnings) {
    DataTable table = read(GetParam().text);
    EXPECT_EQ(shown(table), GetParam().table) << GetParam().what;
    std::string warnings;
    for (const DataWarning& warning : table.warnings().kept) warnings += (warnings.empty() ? "" : "; ") + warning.text;
    EXPECT_EQ(warnings, GetParam().warnings) << GetParam().what;
    EXPECT_EQ(table.warnings().count, table.warnings().kept.size());
}

INSTANTIATE_TEST_SUITE_P(
    Csv, Accepted,
    testing::Values(
        AcceptedCase{"plain", "a,b\n1,2\n3,4\n", "a|b / 1|2 / 3|4", ""},
        AcceptedCase{"no line end at the end", "a,b\n1,2", "a|b / 1|2", ""},
        AcceptedCase{"an empty last cell at the end", "a,b\n1,", "a|b / 1|", ""},
        AcceptedCase{"CRLF", "a,b\r\n1,2\r\n", "a|b / 1|2", ""},
        AcceptedCase{"CR", "a,b\r1,2\r3,4\r", "a|b / 1|2 / 3|4", ""},
        AcceptedCase{"mixed line ends", "a,b\n1,2\r\n3,4\r5,6\n", "a|b / 1|2 / 3|4 / 5|6", ""},
        AcceptedCase{"one column", "a\n1\n2\n", "a / 1 / 2", ""},
        AcceptedCase{"quotes", "a,b\n\"x,y\",\"\"\n", "a|b / x,y|", ""},
        AcceptedCase{"doubled quotes", "a,b\n\"say \"\"hi\"\"\",\"\"\"\"\n", "a|b / say \"hi\"|\"", ""},
        AcceptedCase{"a quote inside a plain cell is a character", "a,b\n5\" disk,x\"\"y\n", "a|b / 5\" disk|x\"\"y",
                     ""},
        AcceptedCase{"blanks belong to the cell", "a,b\n 1 , 2\n", "a|b /  1 | 2", ""},
        AcceptedCase{"LF in a cell", "a,b\n\"x\ny\",2\n", "a|b / x¶y|2", ""},
        AcceptedCase{"CRLF in a cell is one break", "a,b\r\n\"x\r\ny\",2\r\n", "a|b / x¶y|2", ""},
        AcceptedCase{"CR in a cell", "a,b\n\"x\ry\",2\n", "a|b / x¶y|2", ""},
        AcceptedCase{"two breaks in a cell", "a,b\n\"x\n\ny\",2\n", "a|b / x¶¶y|2", ""},
        AcceptedCase{"LF before CR is two breaks", "a,b\n\"x\n\ry\",2\n", "a|b / x¶¶y|2", ""},
        AcceptedCase{"vertical tab", "a,b\nx\vy,2\n", "a|b / x¶y|2", ""},
        AcceptedCase{"quoted names", "\"a,1\",\"b\"\"\"\n1,2\n", "a,1|b\" / 1|2", ""},
        AcceptedCase{"a byte order mark",
                     "\xEF\xBB\xBF"
                     "a,b\n1,2\n",
                     "a|b / 1|2", ""},
        AcceptedCase{"a byte order mark before a quote",
                     "\xEF\xBB\xBF"
                     "\"a\",b\n1,2\n",
                     "a|b / 1|2", ""},
        AcceptedCase{"semicolon", "a;b\n1,5;2\n", "a|b / 1,5|2", ""},
        AcceptedCase{"tab", "a\tb\n1,5\t2;3\n", "a|b / 1,5|2;3", ""},
        AcceptedCase{"comma beside semicolons in text", "a,b,c\nx;y,2,3\nx;y;z,2,3\n", "a|b|c / x;y|2|3 / x;y;z|2|3",
                     ""},
        AcceptedCase{"semicolons beside a comma in a name", "name, first;b;c\nx;2;3\ny;2;3\n",
                     "name, first|b|c / x|2|3 / y|2|3", ""},
        AcceptedCase{"a delimiter in quotes doesn't count", "\"a;b;c\",d\n\"1;2;3\",4\n", "a;b;c|d / 1;2;3|4", ""},
        AcceptedCase{"a hint", "sep=;\r\na;b,c\r\n1;2\r\n", "a|b,c / 1|2", ""},
        AcceptedCase{"an empty line", "a,b\n1,2\n\n3,4\n", "a|b / 1|2 / 3|4", "line 3 is empty and was skipped"},
        AcceptedCase{"empty lines with CRLF before the names and at the end", "\r\na,b\r\n1,2\r\n\r\n", "a|b / 1|2",
                     "line 1 is empty and was skipped; line 4 is empty and was skipped"},
        AcceptedCase{"a record with too few cells", "a,b,c\n1,2,3\n4\n", "a|b|c / 1|2|3 / 4||",
                     "record 2 (line 3), column 2 (\"b\") is missing, and 1 behind it; taken as empty"},
        AcceptedCase{"one cell too few behind a break in a cell", "a,b\n\"1\n2\",3\n4\n", "a|b / 1¶2|3 / 4|",
                     "record 2 (line 4), column 2 (\"b\") is missing; taken as empty"},
        AcceptedCase{"an empty cell too many", "a,b\n1,2,\n", "a|b / 1|2",
                     "record 1 (line 2), column 3 stands behind the last column and is empty; it was dropped"},
        AcceptedCase{"only empty cells", "a,b\n,\n1,2\n", "a|b / | / 1|2",
                     "record 1 (line 2) has only empty cells and was kept"},
        AcceptedCase{"a column without name", "a,,c\n1,2,3\n", "a||c / 1|2|3",
                     "line 1, column 2 has no name, so no placeholder can use it"},
        AcceptedCase{"two columns without name", "a,,\n1,2,3\n", "a|| / 1|2|3",
                     "line 1, column 2 has no name, so no placeholder can use it; line 1, column 3 has no name, so no "
                     "placeholder can use it"},
        AcceptedCase{"a blank at a name's start", "a, b\n1,2\n", "a| b / 1|2",
                     "line 1, column 2 is named \" b\" with a blank at its start or end"},
        AcceptedCase{"a second byte order mark",
                     "\xEF\xBB\xBF\xEF\xBB\xBF"
                     "a,b\n1,2\n",
                     "\xEF\xBB\xBF"
                     "a|b / 1|2",
                     "line 1, column 1 is named \"\xEF\xBB\xBF"
                     "a\" with an invisible character, U+FEFF"},
        AcceptedCase{"a protected blank", "a\xC2\xA0,b\n1,2\n", "a\xC2\xA0|b / 1|2",
                     "line 1, column 1 is named \"a\xC2\xA0\" with an invisible character, U+00A0"}));

struct RefusedCase {
    const char* what;
    std::string text;
    std::string sentence;  // behind "the data file "t.csv""
    std::size_t record, line, column;
};

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, SaysWhereAndWhat) {
    try {
        read(GetParam().text);
        FAIL() << GetParam().what;
    } catch (const Error& error) {
        EXPECT_EQ(std::string(error.what()), "the data file \"t.csv\"" + GetParam().sentence) << GetParam().what;
        EXPECT_EQ(error.place().record, GetParam().record) << GetParam().what;
        EXPECT_EQ(error.place().line, GetParam().line) << GetParam().what;
        EXPECT_EQ(error.place().column, GetParam().column) << GetParam().what;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Csv, Refused,
    testing::Values(
        RefusedCase{"names alone", "a,b\n", " has a line of column names and no records; add rows to it.", 0, 0, 0},
        RefusedCase{"names and empty lines", "a,b\n\n\n", " has a line of column names and no records; add rows to it.",
                    0, 0, 0},
        RefusedCase{"empty lines alone", "\n\r\n", " has only empty lines; it needs column names.", 0, 0, 0},
        RefusedCase{"a byte order mark alone", "\xEF\xBB\xBF", " has only empty lines; it needs column names.", 0, 0,
                    0},
        RefusedCase{"two columns of one name", "id,city,x,city\n1,2,3,4\n",
                    ", line 1, column 4: the columns 2 and 4 are both named \"city\"; give each a name of its own.", 0,
                    1, 4},
        RefusedCase{"a cell too many", "a,b\n1,2\n1,2,three\n",
                    ", record 2 (line 3), column 3: the cell \"three\" belongs to no column, there are 2; put cells "
                    "that hold a "
                    "delimiter in quotes.",
                    2, 3, 3},
        RefusedCase{"an open quote", "a,b\n1,2\n\n3,\"x\n4,5\n",
                    ", record 2 (line 4), column 2: the quote that opens this cell is never closed.", 2, 4, 2},
        RefusedCase{"an open quote in the names", "a,\"b\n1,2\n",
                    ", line 1, column 2: the quote that opens this cell is never closed.", 0, 1, 2},
        RefusedCase{
            "a character behind a closing quote", "a,b\n\"x\"yz,2\n",
            ", record 1 (line 2), column 1: \"yz\" stands behind the closing quote; a quote inside a quoted cell is "
            "written twice.",
            1, 2, 1},
        RefusedCase{
            "a blank behind a closing quote", "a,b\n\"x\" ,2\n",
            ", record 1 (line 2), column 1: \" \" stands behind the closing quote; a quote inside a quoted cell is "
            "written twice.",
            1, 2, 1},
        RefusedCase{"a zero byte", std::string("a,b\n1,x\0y\n", 10),
                    ", record 1 (line 2), column 2: a zero byte: the file isn't text, or it is UTF-16 without a byte "
                    "order mark "
                    "(then say --encoding utf-16le or utf-16be).",
                    1, 2, 2},
        RefusedCase{"a zero byte at the very end", std::string("a,b\n1,x\0", 8),
                    ", record 1 (line 2), column 2: a zero byte: the file isn't text, or it is UTF-16 without a byte "
                    "order mark "
                    "(then say --encoding utf-16le or utf-16be).",
                    1, 2, 2},
        RefusedCase{
            "a control character in quotes", "a,b\n1,\"x\x01\"\n",
            ", record 1 (line 2), column 2: the control character 0x01: the file isn't text, or that character must "
            "go.",
            1, 2, 2},
        RefusedCase{"a spreadsheet", "PK\x03\x04 and so on",
                    " is a ZIP package (a spreadsheet, perhaps), not CSV; save its table as CSV.", 0, 0, 0}));

TEST(CsvReader, TellsLimitsByName) {
    DataOptions options;
    options.limits.columns = 3;
    EXPECT_THROW(read("a,b,c,d\n1,2,3,4\n", options), Error);
    EXPECT_NO_THROW(read("a,b,c\n1,2,3\n", options));
    options = {};
    options.limits.cellBytes = 4;
    EXPECT_THROW(read("a,b\n12345,2\n", options), Error);
    EXPECT_NO_THROW(read("a,b\n1234,2\n", options));
    options = {};
    options.limits.fileBytes = 5;
    options.encoding = TextEncoding::macRoman;
    EXPECT_THROW(read("a\n\x8A\x8A\n", options), Error) << "the limit holds for the decoded text too";
}

TEST(CsvReader, KeepsTheFirstWarningsAndCountsAll) {
    DataOptions options;
    options.limits.keptProblems = 2;
    DataTable table = read("a,b\n1\n2\n3\n4\n", options);
    EXPECT_EQ(table.warnings().kept.size(), 2u);
    EXPECT_EQ(table.warnings().count, 4u);
}

TEST(CsvReader, TakesTheDelimiterThatItIsTold) {
    DataOptions options;
    options.delimiter = '|';
    EXPECT_EQ(shown(read("a|b\n1,2;3|\"x|y\"\n", options)), "a|b / 1,2;3|x|y");
    options.delimiter = ',';
    EXPECT_EQ(shown(read("a;b\n1;2\n", options)), "a;b / 1;2");
}

TEST(CsvReader, FindsColumnsByName) {
    DataTable table = read("a,,#a\n1,2,Bold\n");
    EXPECT_EQ(table.columnNamed("a"), 0u);
    EXPECT_EQ(table.columnNamed("#a"), 2u);
    EXPECT_EQ(table.columnNamed("b"), std::nullopt);
    EXPECT_EQ(table.columnNamed(""), std::nullopt) << "a column without name can't be asked for";
}

TEST(CsvReader, TellsTheLineOfARecord) {
    DataTable table = read("a,b\r\n\"1\r\n2\",x\r\n\r\n3,4\r\n");
    EXPECT_EQ(table.lineOfRow(0), 2u);
    EXPECT_EQ(table.lineOfRow(1), 5u);
    EXPECT_THROW(table.lineOfRow(2), std::out_of_range);
    EXPECT_THROW(table.cell(2, 0), std::out_of_range);
    EXPECT_THROW(table.cell(0, 2), std::out_of_range);
}

TEST(CsvReader, HoldsTheTextOnceAndFourBytesARecord) {
    std::string text = "id,name,street\n";
    for (int i = 0; i < 20'000; ++i) text += std::to_string(i) + ",\"Müller, Jürgen\",Hauptstraße 46\n";
    DataTable table = read(text);
    EXPECT_EQ(table.rowCount(), 20'000u);
    EXPECT_LE(table.heldBytes(), text.size() + 20'000 * 4);
}

// ---- random tables against a slow, obvious reader -------------------------------------------------------------------

using Records = std::vector<std::vector<std::string>>;

// One state, one character at a time, everything copied. Nothing for what isn't CSV.
std::optional<Records> slowRecords(const std::string& text, char delimiter) {
    Records records;
    std::vector<std::string> record;
    std::string cell;
    enum { cellStart, plain, quoted, quoteSeen } state = cellStart;
    bool isLineEmpty = true;
    auto endCell = [&] {
        record.push_back(cell);
        cell.clear();
        state = cellStart;
    };
    auto endRecord = [&] {
        if (!isLineEmpty) {
            endCell();
            records.push_back(record);
        }
        record.clear();
        isLineEmpty = true;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        bool isLineEnd = c == '\r' || c == '\n';
        if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        if (state == quoted) {
            if (c == '"')
                state = quoteSeen;
            else if (isLineEnd)
                cell += "\xE2\x80\xA8";
            else
                cell += c;
        } else if (state == quoteSeen && c == '"') {
            cell += '"';
            state = quoted;
        } else if (isLineEnd) {
            endRecord();
        } else if (c == delimiter) {
            isLineEmpty = false;
            endCell();
        } else if (state == quoteSeen) {
            return std::nullopt;
        } else {
            isLineEmpty = false;
            if (state == cellStart && c == '"') {
                state = quoted;
            } else {
                state = plain;
                cell += c;
            }
        }
    }
    if (state == quoted) return std::nullopt;
    endRecord();
    return records;
}

TEST(CsvReaderOnRandomText, ReadsWhatTheSlowReaderReads) {
    std::mt19937 random(1);
    const std::string alphabet = "ab\",\"\n\r,x\n";
    DataOptions options;
    options.delimiter = ',';
    int accepted = 0, refused = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string text = "N1,N2,N3,N4\n";
        std::size_t length = random() % 14 + 1;
        for (std::size_t i = 0; i < length; ++i) text += alphabet[random() % alphabet.size()];
        std::optional<Records> expected = slowRecords(text, ',');
        bool isGood = expected && expected->size() > 1;
        if (expected)
            for (auto& record : *expected)
                for (std::size_t column = 4; column < record.size(); ++column)
                    isGood = isGood && record[column].empty();
        if (!isGood) {
            EXPECT_THROW(read(text, options), Error) << testing::PrintToString(text);
            ++refused;
            continue;
        }
        ++accepted;
        DataTable table = read(text, options);
        ASSERT_EQ(table.rowCount(), expected->size() - 1) << testing::PrintToString(text);
        for (std::size_t row = 0; row < table.rowCount(); ++row)
            for (std::size_t column = 0; column < 4; ++column) {
                const auto& record = (*expected)[row + 1];
                ASSERT_EQ(table.cell(row, column), column < record.size() ? record[column] : "")
                    << testing::PrintToString(text);
            }
    }
    EXPECT_GT(accepted, 4'000);
    EXPECT_GT(refused, 4'000);
}

TEST(CsvReaderOnRandomText, ReadsBackWhatWasWrittenInAnyDress) {
    std::mt19937 random(2);
    const std::vector<std::string> pieces = {"a", "Müller", ",", ";", "\t", "\"", "\xE2\x80\xA8", " ", "", "€", "x"};
    for (int round = 0; round < 3'000; ++round) {
        std::size_t columns = random() % 5 + 2, rows = random() % 6 + 1;
        char delimiter = ",;\t"[random() % 3];
        std::string lineEnd = std::vector<std::string>{"\n", "\r\n", "\r"}[random() % 3];
        Records records;
        std::string text;
        for (std::size_t row = 0; row <= rows; ++row) {
            records.emplace_back();
            for (std::size_t column = 0; column < columns; ++column) {
                std::string cell = row ? "" : "name" + std::to_string(column);
                for (std::size_t i = random() % 4; row && i > 0; --i) cell += pieces[random() % pieces.size()];
                records.back().push_back(cell);
                std::string written;
                for (std::size_t i = 0; i < cell.size(); ++i) {
                    if (cell.compare(i, 3, "\xE2\x80\xA8") == 0) {
                        written += lineEnd;
                        i += 2;
                    } else {
                        written += cell[i];
                        if (cell[i] == '"') written += '"';
                    }
                }
                bool mustQuote = written.find_first_of(",;\t\"\r\n") != std::string::npos || random() % 3 == 0;
                text += (column ? std::string(1, delimiter) : "") + (mustQuote ? '"' + written + '"' : written);
            }
            text += lineEnd;
        }
        DataOptions options;
        options.delimiter = delimiter;
        DataTable table = read(text, options);
        ASSERT_EQ(table.rowCount(), rows) << testing::PrintToString(text);
        for (std::size_t row = 0; row < rows; ++row)
            for (std::size_t column = 0; column < columns; ++column)
                ASSERT_EQ(table.cell(row, column), records[row + 1][column]) << testing::PrintToString(text);
    }
}

}  // namespace
}  // namespace companion
