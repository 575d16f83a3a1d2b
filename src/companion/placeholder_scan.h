#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace companion {

/// A placeholder in a template's text, for questions about the template; the merge finds its own.
struct FoundPlaceholder {
    std::string column;        ///< what is looked up: the key without a last "#" or blank; UTF-8
    std::size_t position = 0;  ///< of its "<<" in the story, UTF-16 units from 0
    bool advancesRow = false;  ///< its key ends in "#": the next placeholder takes the next row
    /// A single character as the last key of its line: punctuation, unless a column bears that name.
    bool mayBePunctuation = false;
};

/// The placeholders of a story, in text order. A placeholder is "<<", a key and the next ">>", all in one paragraph.
std::vector<FoundPlaceholder> findPlaceholders(std::u16string_view story);

}  // namespace companion
