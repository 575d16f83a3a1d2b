#pragma once
// What the merge remembers inside a template: text values under keys, kept by the host on page items and documents; on
// top of them one record per object under one fixed key, in XML or in JSON.
//
// An object's record is in one form or the other: the reader of each form takes text of the other as unreadable and
// starts from an empty record, and the next write replaces it.
//
// Nothing here reports a failure or throws: an object without a tag store reads as the default and swallows writes, and
// unreadable text reads as an empty record. An empty text and an absent key are the same.

#include "host/api/types.h"
#include "support/values.h"
#include "support/xml_element.h"

namespace vornaset {

/// The key of all merge data of an object, and the name of the record's root element.
inline constexpr const char* kRecordKey = "Vornaset";

// Text under a key of an object; the default for a null database, an object without a tag store and an empty text.
String stringForKey(const UIDRef& object, const char* key, const String& defaultText);
String stringForKey(const UIDRef& object, const String& key, const String& defaultText);
String stringForKey(IPMUnknown* object, const char* key, const String& defaultText);

/// The text's number, 0 for a text that is none; the default when there is no text.
int32_t intForKey(const UIDRef& object, const char* key, int32_t defaultNumber);
float floatForKey(const UIDRef& object, const char* key, float defaultNumber);

// Store a text. Nothing happens for a null value, which doesn't remove the key. Keys and C strings are UTF-8.
void setStringForKey(const UIDRef& object, const char* key, const String& value);
void setStringForKey(const UIDRef& object, const String& key, const String& value);
void setStringForKey(IDataBase* database, int uid, const char* key, const String& value);
void setStringForKey(IPMUnknown* object, const char* key, const String& value);
/// The number's decimal text.
void setIntForKey(const UIDRef& object, const char* key, int32_t value);
/// The shortest text that reads back as the same single.
void setFloatForKey(const UIDRef& object, const char* key, float value);

// The record in XML: one element named "Vornaset" with a child for each field. Parsed anew at each call: changes to the
// element count only once they are set. Never null.
Element nodeForFrame(const UIDRef& object);
Element nodeForDoc(const UIDRef& document);

/// Stores the element's text, unless that very text is stored already. Null stores the empty text.
void setNodeForFrame(const UIDRef& object, const Element& node);
/// Stores the element's text, always. Null stores an empty element named "Vornaset".
void setNodeForDoc(const UIDRef& document, const Element& node);

/// The record in JSON as a mutable dictionary of the caller's own. Never null.
Dictionary dictForDoc(const UIDRef& document);
/// Stores compact JSON text; nothing for a dictionary that JSON can't hold.
void setDictForDoc(const UIDRef& document, const Dictionary& dictionary);

}  // namespace vornaset
