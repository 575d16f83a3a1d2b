#include "placeholders/authoring.h"

#include <string_view>

#include "host/api/host.h"
#include "host/doc_files.h"
#include "host/enumerators.h"
#include "host/my_frame.h"
#include "placeholders/text_model.h"
#include "records/merge_records.h"
#include "support/format.h"

namespace vornaset {

namespace {

constexpr std::u16string_view kOpening = u"<<";
constexpr std::u16string_view kClosing = u">>";

/// Characters that end a line and so a placeholder that isn't closed before them (Unicode UTS 18, RL1.6).
constexpr std::u16string_view kLineEnds = u"\n\v\f\r\u0085\u2028\u2029";

/// Where a key ends: at its closing mark or, unclosed, at its line's end.
struct KeyEnd {
    size_t length = 0;
    bool isClosed = false;
};

/// Of the key that begins a text: at least one character, and that may be a ">" itself.
KeyEnd endOfKey(std::u16string_view text) {
    for (size_t place = 0; place < text.size(); ++place) {
        if (kLineEnds.find(text[place]) != std::u16string_view::npos) return {place, false};
        if (place > 0 && text.substr(place).starts_with(kClosing)) return {place, true};
    }
    return {text.size(), false};
}

String withoutSpacesAround(std::u16string_view key) {
    const size_t first = key.find_first_not_of(u' ');
    if (first == std::u16string_view::npos) return u"";
    return String(key.substr(first, key.find_last_not_of(u' ') - first + 1));
}

bool isAmong(const Array& keys, const String& key) {
    for (const Value& known : keys) {
        if (known.isString() && known.string() == key) return true;
    }
    return false;
}

}  // namespace

void insertPlaceholder(const TextSelection& selection, const String& key, uint8_t withSpace) {
    MyTextModel text(selection.story);
    text.insertTextAt(selection.position, stringWithFormat("<<%@%@>>", key, String(withSpace != 0 ? u" " : u"")),
                      nullptr, 0);
    if (!isValidFrame(selection.frame) || frameNumberForFrame(selection.frame) != 0) return;
    setFrameNumberForFrame(selection.frame, 1);
    redrawDoc(static_cast<IDocument*>(nullptr));
}

Array missingPlaceHolders(const UIDRef& document, const Array& knownKeys) {
    MissingPlaceHolders context{knownKeys, Array::makeMutable()};
    EnumStories(document, collectMissingPlaceHolders, &context);
    return context.result;
}

unsigned char collectMissingPlaceHolders(ITextModel* story, void* context) {
    auto& search = *static_cast<MissingPlaceHolders*>(context);
    const String text = stringForStory(story);
    const std::u16string_view units = text.view();
    size_t place = units.find(kOpening);
    while (place != std::u16string_view::npos) {
        const size_t begin = place + kOpening.size();
        const KeyEnd end = endOfKey(units.substr(begin));
        if (end.isClosed) {
            const String key = withoutSpacesAround(units.substr(begin, end.length));
            if (!isAmong(search.knownKeys, key)) search.result.add(key);
        }
        // Where one mark stays unclosed, so do all behind it on its line: none is looked at twice.
        place = units.find(kOpening, begin + end.length + (end.isClosed ? kClosing.size() : 0));
    }
    return 1;
}

String stringForStory(ITextModel* story) {
    return story ? MyTextModel(story).string() : String();
}

String stringForStory(const UIDRef& story) {
    return stringForStory(InterfacePtr<ITextModel>(story).get());
}

}  // namespace vornaset
