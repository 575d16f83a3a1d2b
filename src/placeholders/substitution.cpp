#include "placeholders/substitution.h"

#include "support/dictionary_access.h"
#include "support/exception.h"

namespace vornaset {

Dictionary gRules;

namespace {

const String kContentOf(u"contentOf");
const String kReplacements(u"replacements");
const String kStyleMark(u"#");
const String kEmpty(u"");

constexpr char16_t kNextRowMark = u'#';
constexpr char16_t kSpace = u' ';
constexpr char16_t kCarriageReturn = u'\r';

}  // namespace

void setupRules(const Array& rules) {
    gRules = Dictionary::makeMutable();
    for (const Value& rule : rules) {
        const String name = rule.valueForKey("name").string();
        gRules.setValue(name, Dictionary::make({{kContentOf, rule.valueForKey(kContentOf)},
                                                {kReplacements, rule.valueForKey("replacementsDict")}}));
    }
}

// --- Values

String MyTextModel::stringForMapping(const String& key, const Value& row) const {
    String value = stringForKey(row, key);
    if (!value.isNull()) return value;
    const Value rule = gRules.valueForKey(key);
    if (rule.isNull()) return kEmpty;
    const String source = stringForKey(row, stringForKey(rule, kContentOf));
    if (source.isNull()) return kEmpty;
    return stringForKey(rule.valueForKey(kReplacements), source, source);
}

String MyTextModel::styleForKey(const String& key, const Value& row) const {
    const String style = stringForKey(row, kStyleMark + key);
    return style.isEmpty() ? String() : style;
}

String MyTextModel::stringAndStyleForKey(const String& key, String* style, const Value& row) const {
    if (key.isEmpty()) return kEmpty;
    const char16_t last = key.view().back();
    const bool isMarked = last == kNextRowMark || last == kSpace;
    const String column = isMarked ? key.substring(0, key.length() - 1) : key;
    if (style) *style = styleForKey(column, row);
    const String value = stringForMapping(column, row);
    return last == kSpace && !value.isEmpty() ? value + String(u" ") : value;
}

// --- Lines and placeholders

void MyTextModel::doPlaceHolder(const VornasetPlaceHolder& placeHolder) {
    const int32_t opening = placeHolder.pos1();
    const int32_t closing = placeHolder.pos2();
    String style;
    const String value = stringAndStyleForKey(placeHolder.key(mirror_), &style, placeHolder.mapping());
    // The value goes in behind the key's last character, so that it takes the attributes of the placeholder's own text;
    // only then do the marks and the key go.
    insertTextAt(closing, value, style, 0);
    deleteTextAt(closing + static_cast<int32_t>(value.length()), 2);
    deleteTextAt(opening, closing - opening);
}

void MyTextModel::doLastPlaceHolder(const std::vector<VornasetPlaceHolder>& placeHolders, int64_t index) {
    if (static_cast<uint64_t>(index) >= placeHolders.size()) throw RangeException("the line has no such placeholder");
    const String key = placeHolders[static_cast<size_t>(index)].key(mirror_);
    punctChar_ = 0;
    if (key.length() != 1) return;
    // The row asked is the last one that the scan reached, whatever row the placeholder itself takes its value from.
    if (stringForKey(rowDict_, key).isNull()) punctChar_ = key.view().front();
}

void MyTextModel::doLine(const PlaceHolderLine& line) {
    const auto position = static_cast<int32_t>(line.pos);
    lineLen_ = static_cast<int32_t>(mirrorRange(position, static_cast<int32_t>(line.len)).size());
    doLastPlaceHolder(line.phs, static_cast<int64_t>(line.phs.size()) - 1);
    // From the last to the first, so that the positions still to be used stay right.
    for (auto placeHolder = line.phs.rbegin(); placeHolder != line.phs.rend(); ++placeHolder) {
        doPlaceHolder(*placeHolder);
    }
    if (lineLen_ == 1 && rmvEmptyLines_ == 1) {
        deleteTextAt(position, 1);
        return;
    }
    if (punctChar_ == 0) return;
    const int32_t carriageReturn = position + lineLen_ - 1;
    insertTextAt(carriageReturn, String(std::u16string_view(&punctChar_, 1)), String(), 0);
    if (carriageReturn >= 2) rmvSpacesBackwards(carriageReturn - 1);
}

void MyTextModel::rmvSpacesBackwards(int32_t position) {
    int32_t stop = position;
    while (stop > 0 && charAt(stop) == kSpace) --stop;
    if (stop < position) deleteTextAt(stop + 1, position - stop);
}

uint8_t processMyTextModel(MyTextModel& text, const Array& rows, int64_t row) {
    if (static_cast<uint64_t>(row) >= rows.count()) return 1;
    text.setRows(rows);
    text.setRow(row);
    const std::vector<PlaceHolderLine> lines = text.lines();
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) text.doLine(*line);
    while (text.lastChar() == kCarriageReturn) text.deleteLastChar();
    return text.isOverset() ? 0 : 1;
}

namespace {

uint8_t fill(MyTextModel& text, const Array& rows, int64_t row, uint8_t rmvEmptyLines) {
    text.setRmvEmptyLines(rmvEmptyLines);
    return processMyTextModel(text, rows, row);
}

}  // namespace

uint8_t processTextModel(const UIDRef& story, const Array& rows, int64_t row, uint8_t rmvEmptyLines) {
    MyTextModel text(story);
    return fill(text, rows, row, rmvEmptyLines);
}

uint8_t processTextModel(ITextModel* story, const Array& rows, int64_t row, uint8_t rmvEmptyLines) {
    MyTextModel text(story);
    return fill(text, rows, row, rmvEmptyLines);
}

}  // namespace vornaset
