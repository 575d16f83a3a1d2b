#pragma once
// Filling a story with a row: every placeholder gives way to its value, and what an empty value leaves behind (a space,
// a blank line, a comma after nothing) goes with it.

#include "host/api/types.h"
#include "placeholders/text_model.h"
#include "support/values.h"

namespace vornaset {

/// The mapping rules in force, by name: each a dictionary with "contentOf", the column that feeds the rule, and
/// "replacements", from the column's value to the text that stands for it. Null until `setupRules` has run. Runs
/// neither set nor clear it.
extern Dictionary gRules;

/// Replaces all rules. Each entry answers "name", "contentOf" and "replacementsDict" by key-value coding; of entries
/// with the same name the last counts. Throws InvalidArgumentException for an entry that has no answer to one of them
/// and UnrecognizedOperation for one that has no keys; the rules before it stand.
void setupRules(const Array& rules);

/// Fills a story with the row at an index from 0 of the rows (dictionaries from column name to string or number; "#"
/// and a column name gives the name of the value's character style). 1 when the text fits or nothing was done, 0 when
/// it is overset. A row past the end leaves the story as it is. Throws RangeException when a placeholder moves on to a
/// row that isn't there; the story is untouched then.
uint8_t processTextModel(const UIDRef& story, const Array& rows, int64_t row, uint8_t rmvEmptyLines);
uint8_t processTextModel(ITextModel* story, const Array& rows, int64_t row, uint8_t rmvEmptyLines);
uint8_t processMyTextModel(MyTextModel& text, const Array& rows, int64_t row);

}  // namespace vornaset
