#pragma once
// Between the library's texts and paths and the host's types.

#include "host/api/host.h"
#include "support/paths.h"
#include "support/values.h"

namespace vornaset {

/// In NFC; never null, since a host text is never without units.
String stringWithPMString(const PMString& text);
String stringWithWideString(const WideString& text);

/// A null string gives an empty text.
PMString pmString(const String& text);
/// Translates: the text that gStrings has for the key, else the key itself. A null pointer gives an empty text.
PMString pmString(const char* key);
/// Exactly this text. A null pointer, and bytes that are no UTF-8, give an empty text.
PMString pmStringWithUTF8String(const char* utf8);
WideString wideString(const String& text);

/// pathWithString of the text; null when it is empty.
String pathWithPMString(const PMString& text);
/// The text in NFC, turned by hfsPathWithString when it begins with "/"; null when it is empty.
String hfsPathWithPMString(const PMString& text);
/// Null for an empty file.
String pathWithIDFile(const IDFile& file);
/// The host's file for a path; a relative one counts from the working folder. An empty file for a null or empty path
/// and for one that no URL can hold.
IDFile IDFileWithPath(const String& path);
/// The same for UTF-8.
IDFile getSysFile(const char* path);

Value numberWithUID(UID uid);
/// The UID's number, the database left out.
Value numberWithUIDRef(const UIDRef& object);
/// The number of the object's UID; 0 for a null object.
Value numberWithObj(IPMUnknown* object);

}  // namespace vornaset
