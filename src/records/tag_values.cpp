#include "records/tag_values.h"

#include <memory>
#include <string>
#include <utility>

#include "host/api/host.h"
#include "host/host_operations.h"
#include "host/my_frame.h"
#include "support/json.h"
#include "support/text_decoding.h"

namespace vornaset {
namespace {

/// The text in a buffer of the calling thread, until the next call.
const char* keptText(std::string text) {
    thread_local std::unique_ptr<std::string> kept;
    kept = std::make_unique<std::string>(std::move(text));
    return kept->c_str();
}

}  // namespace

String stringForKey(const UIDRef& object, const char* key, const String& defaultText) {
    InterfacePtr<ITagStore> tags(object);
    if (!tags) return defaultText;
    const PMString text = tags->GetTag(key);
    return text.IsEmpty() ? defaultText : stringWithPMString(text);
}

String stringForKey(const UIDRef& object, const String& key, const String& defaultText) {
    return stringForKey(object, key.utf8().c_str(), defaultText);
}

String stringForKey(IPMUnknown* object, const char* key, const String& defaultText) {
    return stringForKey(::GetUIDRef(object), key, defaultText);
}

int32_t intForKey(const UIDRef& object, const char* key, int32_t defaultNumber) {
    const String text = stringForKey(object, key, String());
    return text.isNull() ? defaultNumber : text.intValue();
}

float floatForKey(const UIDRef& object, const char* key, float defaultNumber) {
    const String text = stringForKey(object, key, String());
    return text.isNull() ? defaultNumber : text.floatValue();
}

void setStringForKey(const UIDRef& object, const char* key, const String& value) {
    if (value.isNull()) return;
    InterfacePtr<ITagStore> tags(object);
    if (tags) tags->SetTag(key, pmString(value));
}

void setStringForKey(const UIDRef& object, const String& key, const String& value) {
    setStringForKey(object, key.utf8().c_str(), value);
}

void setStringForKey(IDataBase* database, int uid, const char* key, const String& value) {
    setStringForKey(UIDRef(database, UID(static_cast<uint32_t>(uid))), key, value);
}

void setStringForKey(IPMUnknown* object, const char* key, const String& value) {
    setStringForKey(::GetUIDRef(object), key, value);
}

void setIntForKey(const UIDRef& object, const char* key, int32_t value) {
    setStringForKey(object, key, Number(value).text());
}

void setFloatForKey(const UIDRef& object, const char* key, float value) {
    setStringForKey(object, key, Number(value).text());
}

Element nodeForFrame(const UIDRef& object) {
    const Element record = Element::withXMLString(stringForKey(object, kRecordKey, String()));
    return record ? record : Element::make(kRecordKey);
}

Element nodeForDoc(const UIDRef& document) {
    return nodeForFrame(document);
}

void setNodeForFrame(const UIDRef& object, const Element& node) {
    const String empty(u"");
    const String text = node ? node.xmlText() : empty;
    if (stringForKey(object, kRecordKey, empty) != text) setStringForKey(object, kRecordKey, text);
}

void setNodeForDoc(const UIDRef& document, const Element& node) {
    setStringForKey(document, kRecordKey, (node ? node : Element::make(kRecordKey)).xmlText());
}

Dictionary dictForDoc(const UIDRef& document) {
    const String text = stringForKey(document, kRecordKey, String());
    Error unread;  // the record may well be one in XML
    const Dictionary record = text.isNull() ? Dictionary() : readJson(dataWithString(text), unread).dictionary();
    return record.isMutable() ? record : Dictionary::makeMutable();
}

void setDictForDoc(const UIDRef& document, const Dictionary& dictionary) {
    Error unwritten;
    const Data json = writeJson(dictionary, kCompactJson, unwritten);
    if (!json.isNull()) setStringForKey(document, kRecordKey, stringWithData(json));
}

// --- A frame's own view of its values

String MyFrame::getTag(const char* key) const {
    return vornaset::stringForKey(*this, key, String());
}

int32_t MyFrame::getInt(const char* key) const {
    return getTag(key).intValue();
}

void MyFrame::setTag(const char* key, const String& value) const {
    vornaset::setStringForKey(*this, key, value);
}

void MyFrame::setTag(const String& key, const String& value) const {
    vornaset::setStringForKey(*this, key, value);
}

void MyFrame::setInt(const char* key, int32_t value) const {
    vornaset::setStringForKey(*this, key, Number(value).text());
}

const char* MyFrame::stringForKey(const char* key) const {
    const String value = getTag(key);
    if (value.isNull()) return nullptr;
    return keptText(value.utf8());
}

void MyFrame::setStringForKey(const char* key, const char* value) const {
    vornaset::setStringForKey(*this, key, String(value));
}

}  // namespace vornaset
