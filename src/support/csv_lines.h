#pragma once
// Lines of tabular text in the plainest sense. The reader takes commas and the writer puts tabs, and neither knows
// quoting: the two are no inverses of each other. Data files are read elsewhere, by the rules that they follow.

#include "support/values.h"

namespace vornaset {

/// The fields of one line: split at every comma, those inside quotation marks too, and trimmed of white space and line
/// breaks at both ends. Empty fields stay: n commas give n + 1 fields. Null for a null or empty line.
Array stringsWithCSVLine(const String& line);

/// The entries of each inner array joined by a tab, the lines joined by "\n", with no line end behind the last. Entries
/// that are no texts stand as their descriptions. Empty as soon as one element is no array; never null.
String csvStringWithLines(const Array& lines);

}  // namespace vornaset
