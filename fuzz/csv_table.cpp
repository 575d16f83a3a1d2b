// Whatever the bytes are: a data file is read or refused by one sentence, and what was read can be asked for.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "companion/csv_reader.h"

using namespace companion;

namespace {

/// The first byte chooses the encoding and the delimiter that the reader is told; the rest is the file.
DataOptions optionsFrom(uint8_t choice) {
    DataOptions options;
    constexpr TextEncoding encodings[] = {TextEncoding::utf8, TextEncoding::utf16LittleEndian,
                                          TextEncoding::utf16BigEndian, TextEncoding::windows1252,
                                          TextEncoding::macRoman};
    if (unsigned encoding = choice % 8; encoding < 5) options.encoding = encodings[encoding];
    if (unsigned delimiter = choice / 8 % 8; delimiter < 4) options.delimiter = ",;\t|"[delimiter];
    options.limits.columns = 64;
    options.limits.cellBytes = 1024;
    options.limits.keptProblems = 8;
    return options;
}

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    ByteBuffer bytes(size - 1);
    if (size > 1) std::memcpy(bytes.data(), data + 1, size - 1);
    try {
        DataTable table = readData(std::move(bytes), "t.csv", optionsFrom(data[0]));
        require(table.rowCount() > 0 && !table.columns().empty());
        require(table.warnings().kept.size() <= 8 && table.warnings().kept.size() <= table.warnings().count);
        for (size_t row = 0; row < table.rowCount(); ++row)
            for (size_t column = 0; column < table.columns().size(); ++column) {
                std::string cell = table.cell(row, column);
                require(firstIllFormedByte(cell) == cell.size());
                require(cell.find_first_of("\r\n\v") == cell.npos && cell.find('\0') == cell.npos);
            }
        require(table.lineOfRow(table.rowCount() - 1) > 0);
    } catch (const Error& error) {
        require(*error.what() != 0);
    }
    return 0;
}
