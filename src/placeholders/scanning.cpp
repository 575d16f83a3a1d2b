// Finding the placeholders of a story. The whole text is scanned before anything is edited: editing then goes from the
// end backwards, so that the positions found here stay right.

#include "placeholders/text_model.h"
#include "support/format.h"

namespace vornaset {

namespace {

constexpr std::u16string_view kOpening = u"<<";
constexpr std::u16string_view kClosing = u">>";
constexpr char16_t kNextRowMark = u'#';
constexpr char16_t kCarriageReturn = u'\r';

/// Both marks stand in a piece, the closing one behind the opening one.
bool holdsPlaceHolder(std::u16string_view piece) {
    const size_t opening = piece.find(kOpening);
    return opening != piece.npos && piece.find(kClosing, opening + kOpening.size()) != piece.npos;
}

}  // namespace

String VornasetPlaceHolder::key(const MutableString& text) const {
    const int32_t start = pos1_ + static_cast<int32_t>(kOpening.size());
    return text.substring(static_cast<size_t>(start), static_cast<size_t>(pos2_ - start));
}

String VornasetPlaceHolder::description() const {
    return stringWithFormat("pos1: %d, pos2: %d, mapping: %@", pos1_, pos2_, mapping_);
}

std::vector<PlaceHolderLine> MyTextModel::lines() {
    std::vector<PlaceHolderLine> found;
    const std::u16string_view text = mirror_.view();
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find(kCarriageReturn, start), text.size());
        if (holdsPlaceHolder(text.substr(start, end - start))) {
            PlaceHolderLine& line = found.emplace_back();
            line.pos = static_cast<int64_t>(start);
            line.len = end - start + 1;
            addPlaceHolders(line);
        }
        start = end + 1;
    }
    return found;
}

void MyTextModel::addPlaceHolders(PlaceHolderLine& line) {
    line.phs = placeHoldersForLine(mirrorRange(line.pos, static_cast<int64_t>(line.len)), line.pos, 0);
}

std::vector<VornasetPlaceHolder> MyTextModel::placeHoldersForLine(std::u16string_view text, int64_t position, int64_t) {
    std::vector<VornasetPlaceHolder> found;
    size_t opening = text.find(kOpening);
    while (opening != text.npos) {
        const size_t closing = text.find(kClosing, opening + kOpening.size());
        if (closing == text.npos) break;
        VornasetPlaceHolder& placeHolder = found.emplace_back(
            VornasetPlaceHolder::placeHolderWithPos(static_cast<int32_t>(position + static_cast<int64_t>(opening)),
                                                    static_cast<int32_t>(position + static_cast<int64_t>(closing))));
        placeHolder.setMapping(rowDict_);
        // The placeholder itself keeps the old row. The step isn't guarded: a template that walks through rows needs
        // them all, and the range failure tells so.
        if (text[closing - 1] == kNextRowMark) offsetRow(1);
        opening = text.find(kOpening, closing + kClosing.size());
    }
    return found;
}

}  // namespace vornaset
