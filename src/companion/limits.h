#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

/// How much of a foreign data file is accepted. One place, so that a reader of the code sees what an input can cost.
namespace companion {

struct DataLimits {
    /// Bytes of a data file, and bytes of its text once it is UTF-8. A row is found by a 32-bit offset into that text.
    std::uint64_t fileBytes = 0xF000'0000;

    /// Columns. A spreadsheet has at most 16,384; more means a file that was split at the wrong character.
    std::size_t columns = 16'384;

    /// Bytes of one cell. A story of a million characters is no value of a placeholder: a quote was left open and found
    /// its partner far down the file.
    std::size_t cellBytes = 1'000'000;

    /// Problems that are kept with their text. All are counted; a file with a fault in each of a million rows must not
    /// cost a million sentences.
    std::size_t keptProblems = 1'000;
};

/// Bytes of a rules file. A rule is a name, a column and a table of replacements: a thousand of them are well below
/// this, and the whole file is held as a tree of about ten times its size.
inline constexpr std::uint64_t rulesFileBytes = 64'000'000;

/// Records that are looked at to find the delimiter. Enough to tell a delimiter from a comma in running text, and few
/// enough to cost nothing.
inline constexpr std::size_t delimiterSampleRecords = 100;

/// Bytes that are looked at for the same purpose, so that one record of a gigabyte isn't walked three times.
inline constexpr std::size_t delimiterSampleBytes = std::size_t{256} * 1024;

/// What another program may take for one barcode.
struct BarcodeLimits {
    /// A symbol takes milliseconds; a program that takes this long waits for something that won't come, and would for
    /// every record.
    std::chrono::milliseconds time{20'000};

    /// Bytes that it may print. A symbol of bars has a few thousand.
    std::size_t bytes = 16'000'000;
};

}  // namespace companion
