#include "records/merge_records.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/api/host.h"
#include "host/my_frame.h"
#include "host/stories.h"
#include "support/paths_host.h"

namespace vornaset {

namespace {

// Field names as they stand in the stored records.
constexpr const char* kPath = "path";
constexpr const char* kSheet = "sheet";
constexpr const char* kMode = "mode";
constexpr const char* kPDFStyle = "pdfStyle";
constexpr const char* kFrameNumber = "frameNum";
constexpr const char* kOmrNumber = "omr";
constexpr const char* kColumnName = "colName";

/// What a fill asks of a frame.
struct FillFields {
    int64_t number = 0;
    String column{u""};
};

/// Of a text that needn't be copied to be looked up.
struct TextHash {
    using is_transparent = void;
    size_t operator()(std::u16string_view text) const { return std::hash<std::u16string_view>()(text); }
};

// Asked for every story and every picture of every fill, where parsing the few fields anew costs more than all else
// that a fill does for a short story. The same text always says the same, so it is remembered by the record's text.
const FillFields& knownFieldsOf(const UIDRef& frame) {
    constexpr size_t mostRemembered = 1024;
    static const FillFields none;
    thread_local std::unordered_map<std::u16string, FillFields, TextHash, std::equal_to<>> remembered;
    InterfacePtr<ITagStore> tags(frame);
    const PMString record = tags ? tags->GetTag(kRecordKey) : PMString();
    if (record.IsEmpty()) return none;
    const auto known = remembered.find(record.View());
    if (known != remembered.end()) return known->second;
    if (remembered.size() >= mostRemembered) remembered.clear();
    const Element node = Element::withXMLString(stringWithPMString(record));
    const FillFields fields{integerForKey(node, kFrameNumber, 0), stringForKey(node, kColumnName, none.column)};
    return remembered.emplace(record.View(), fields).first->second;
}

String textOfFrame(const UIDRef& frame, const char* key) {
    return stringForKey(nodeForFrame(frame), key, String(u""));
}

void setTextOfFrame(const UIDRef& frame, const char* key, const String& value) {
    const Element node = nodeForFrame(frame);
    if (stringForKey(node, key, String()) == value) return;
    setStringForKey(node, key, value);
    setNodeForFrame(frame, node);
}

std::set<int64_t> frameNumbersOf(const UIDRef& document) {
    std::set<int64_t> numbers;
    EnumMyBoxes(
        document,
        [](UIDRef& frame, void* data) -> unsigned char {
            const int64_t number = frameNumberForFrame(frame);
            if (number >= 1) static_cast<std::set<int64_t>*>(data)->insert(number);
            return 1;
        },
        &numbers);
    return numbers;
}

template <class Question>
int64_t countOf(IDataBase* database, const Array& uids, Question question) {
    int64_t count = 0;
    for (const Value& uid : uids) count += question(frameWithNumber(uid.number(), UIDRef(database, kInvalidUID)));
    return count;
}

/// A callback and its data, on their way through a walk that also enters anchored frames.
struct Visitor {
    ItemCallback callback;
    void* data;
};

unsigned char visitAnchored(UIDRef& frame, UIDRef&, int, void* data) {
    const auto* visitor = static_cast<const Visitor*>(data);
    return visitor->callback(frame, visitor->data);
}

unsigned char visitWithAnchored(UIDRef& item, void* data) {
    const auto* visitor = static_cast<const Visitor*>(data);
    if (visitor->callback(item, visitor->data) != 1) return 0;
    return isTextFrame(item) ? EnumAnchoredBoxes(storyForFrame(item), visitAnchored, data) : uint8_t{1};
}

}  // namespace

// --- The document's record

String dataPathForDoc(const UIDRef& document) {
    return stringForDoc(document, kPath, String());
}
String sheetForDoc(const UIDRef& document) {
    return stringForDoc(document, kSheet, String());
}
int64_t modeForDoc(const UIDRef& document) {
    return integerForDoc(document, kMode, 0);
}
String pdfStyleForDoc(const UIDRef& document) {
    return stringForDoc(document, kPDFStyle, String());
}

void setDataPathForDoc(const UIDRef& document, const String& path) {
    setStringForDoc(document, String(kPath), path);
}
void setSheetForDoc(const UIDRef& document, const String& sheet) {
    setStringForDoc(document, String(kSheet), sheet);
}
void setModeForDoc(const UIDRef& document, int64_t mode) {
    setIntegerForDoc(document, kMode, mode);
}
void setPDFStyleForDoc(const UIDRef& document, const String& style) {
    setStringForDoc(document, String(kPDFStyle), style);
}

String stringForDoc(const UIDRef& document, const String& key, const String& defaultText) {
    return stringForKey(nodeForDoc(document), key, defaultText);
}

void setStringForDoc(const UIDRef& document, const String& key, const String& value) {
    const Element node = nodeForDoc(document);
    if (stringForKey(node, key, String()) == value) return;
    setStringForKey(node, key, value);
    setNodeForDoc(document, node);
}

void setStringForDoc(const UIDRef& document, const String& key, const char* value) {
    setStringForDoc(document, key, String(value));
}

int64_t integerForDoc(const UIDRef& document, const String& key, int64_t defaultNumber) {
    return integerForKey(nodeForDoc(document), key, defaultNumber);
}

void setIntegerForDoc(const UIDRef& document, const String& key, int64_t value) {
    setStringForDoc(document, key, Number(value).text());
}

bool docHasData(const UIDRef& document) {
    return nodeForDoc(document).childCount() > 0;
}

// --- A frame's record

int64_t frameNumberForFrame(const UIDRef& frame) {
    return knownFieldsOf(frame).number;
}
void setFrameNumberForFrame(const UIDRef& frame, int64_t number) {
    setIntegerForNode(frame, kFrameNumber, number);
}

void setFrameNumberForFrame2(const UIDRef& frame, int64_t number) {
    const Element node = nodeForFrame(frame);
    setIntegerForKey(node, kFrameNumber, number);
    if (integerForKey(node, kOmrNumber, 0) > 0) setIntegerForKey(node, kOmrNumber, number);
    setNodeForFrame(frame, node);
}

int64_t omrNumberForFrame(const UIDRef& frame) {
    return integerForNode(frame, kOmrNumber, 0);
}
bool isOMRFrame(const UIDRef& frame) {
    return omrNumberForFrame(frame) > 0;
}
void setOmrNumberForFrame(const UIDRef& frame, int64_t number) {
    setIntegerForNode(frame, kOmrNumber, number);
}

String colNameForFrame(const UIDRef& frame) {
    return knownFieldsOf(frame).column;
}
void setColNameForFrame(const UIDRef& frame, const String& column) {
    setTextOfFrame(frame, kColumnName, column);
}
String dataPathForFrame(const UIDRef& frame) {
    return textOfFrame(frame, kPath);
}
void setDataPathForFrame(const UIDRef& frame, const String& path) {
    setTextOfFrame(frame, kPath, path);
}
String sheetForFrame(const UIDRef& frame) {
    return textOfFrame(frame, kSheet);
}
void setSheetForFrame(const UIDRef& frame, const String& sheet) {
    setTextOfFrame(frame, kSheet, sheet);
}

int64_t integerForNode(const UIDRef& frame, const String& key, int64_t defaultNumber) {
    return integerForKey(nodeForFrame(frame), key, defaultNumber);
}

void setIntegerForNode(const UIDRef& frame, const String& key, int64_t value) {
    const Element node = nodeForFrame(frame);
    setIntegerForKey(node, key, value);
    setNodeForFrame(frame, node);
}

// --- Questions about frames

bool isEmptyPictureFrame(const UIDRef& frame) {
    if (!frame.GetDataBase()) return false;
    if (::GetClass(frame.GetDataBase(), frame.GetUID()) != kPathPageItemBoss) return false;
    return getChildRef(frame).GetUID() == kInvalidUID;
}

bool isMyFrame(const UIDRef& frame) {
    return isTextFrame(frame) || isEmptyPictureFrame(frame) || isOMRFrame(frame);
}

int64_t validFramesCnt(IDataBase* database, const Array& uids) {
    return countOf(database, uids, isMyFrame);
}

int64_t emptyFramesCnt(IDataBase* database, const Array& uids) {
    return countOf(database, uids, isEmptyPictureFrame);
}

UIDRef frameWithNumber(const Number& uid, const UIDRef& any) {
    return UIDRef(any.GetDataBase(), UID(static_cast<uint32_t>(uid.integerValue())));
}

// --- Questions about the whole document

int64_t uniqueFrameNumbersForDoc(const UIDRef& document) {
    return static_cast<int64_t>(frameNumbersOf(document).size());
}

int64_t maxFrameNumberForDoc(const UIDRef& document) {
    const std::set<int64_t> numbers = frameNumbersOf(document);
    int64_t length = 0;
    for (const int64_t number : numbers) {
        if (number != *numbers.begin() + length) break;
        ++length;
    }
    return length;
}

uint8_t EnumMyBoxes(const UIDRef& document, ItemCallback callback, void* data) {
    Visitor visitor{callback, data};
    return EnumBoxes(document, visitWithAnchored, &visitor);
}

uint8_t EnumMySpread(ISpread* spread, ItemCallback callback, void* data) {
    Visitor visitor{callback, data};
    return EnumSpread(spread, visitWithAnchored, &visitor);
}

}  // namespace vornaset
