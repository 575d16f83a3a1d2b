#include "support/csv_lines.h"

#include <algorithm>
#include <string>

#include "support/text_trimming.h"

namespace vornaset {

Array stringsWithCSVLine(const String& line) {
    if (line.isEmpty()) return {};
    Array fields = Array::makeMutable();
    for (size_t from = 0; from <= line.length();) {
        const size_t comma = std::min(line.find(u',', from), line.length());
        fields.add(stringByTrimmingWhitespace(line.substring(from, comma - from)));
        from = comma + 1;
    }
    return fields;
}

String csvStringWithLines(const Array& lines) {
    std::u16string result;
    for (size_t row = 0; row < lines.count(); ++row) {
        const Value line = lines.objectAt(row);
        if (!line.isArray()) return u"";
        if (row > 0) result += u'\n';
        for (size_t column = 0; column < line.array().count(); ++column) {
            if (column > 0) result += u'\t';
            result += line.array().objectAt(column).description().view();
        }
    }
    return String(result);
}

}  // namespace vornaset
