#include "companion/placeholder_scan.h"

#include "support/values_string.h"

namespace companion {
namespace {

void findInLine(std::u16string_view line, std::size_t lineStart, std::vector<FoundPlaceholder>& found) {
    std::size_t before = found.size();
    std::size_t lastKeyLength = 0;
    for (std::size_t at = 0; (at = line.find(u"<<", at)) != line.npos;) {
        std::size_t keyStart = at + 2;
        std::size_t keyEnd = line.find(u">>", keyStart);
        if (keyEnd == line.npos) break;
        std::u16string_view key = line.substr(keyStart, keyEnd - keyStart);
        lastKeyLength = key.size();
        FoundPlaceholder placeholder;
        placeholder.position = lineStart + at;
        placeholder.advancesRow = key.ends_with(u'#');
        if (key.ends_with(u'#') || key.ends_with(u' ')) key.remove_suffix(1);
        placeholder.column = vornaset::String(key).utf8();
        found.push_back(std::move(placeholder));
        at = keyEnd + 2;
    }
    if (found.size() > before && lastKeyLength == 1) found.back().mayBePunctuation = true;
}

}  // namespace

std::vector<FoundPlaceholder> findPlaceholders(std::u16string_view story) {
    std::vector<FoundPlaceholder> found;
    std::size_t start = 0;
    while (start < story.size()) {
        std::size_t end = std::min(story.find(u'\r', start), story.size());
        findInLine(story.substr(start, end - start), start, found);
        start = end + 1;
    }
    return found;
}

}  // namespace companion
