#pragma once

#include <optional>
#include <string_view>

namespace companion {

/// The delimiter that a user names: "comma", "semicolon", "tab", "pipe", "\t", or the character itself, which must be
/// ASCII and neither a letter, a digit, a quote nor a line end. Nothing for any other text.
std::optional<char> delimiterNamed(std::string_view name);

/// The delimiter of a text of records, found by itself among comma, semicolon and tab.
///
/// The rule: the first records (at most 100, at most 256 KiB) are split with each of the three in turn, quotes
/// respected. A candidate must give the first record at least two cells. Among the candidates the one wins with the
/// larger share of records that have as many cells as the first record; among equals, the one with more cells; among
/// equals again, comma before semicolon before tab. Where no candidate splits the first record the file has one column,
/// and it's the comma.
///
/// `textEnd` must point at a zero byte.
char detectDelimiter(const char* text, const char* textEnd);

}  // namespace companion
