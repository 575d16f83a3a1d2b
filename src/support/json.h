#pragma once
// JSON text (RFC 8259) of arrays and dictionaries. Errors go to the log, except those of the two operations that give
// them.

#include <cstdint>

#include "support/error.h"
#include "support/values.h"

namespace vornaset {

/// Options for writing.
inline constexpr uint64_t kCompactJson = 0;
inline constexpr uint64_t kPrettyPrintedJson = 1;
inline constexpr uint64_t kSortedKeysJson = 2;

/// `jsonData` and `jsonObjWithData`, which give the error and log nothing. It is null when there was none.
Data writeJson(const Value& value, uint64_t options, Error& error);
Value readJson(const Data& data, Error& error);

/// UTF-8 JSON of an array or a dictionary of texts, numbers, `Value::nothing()`, arrays and dictionaries. Keys stand in
/// the dictionary's order unless sorting is asked for. Null for everything else, and for numbers that JSON doesn't have
/// (infinities, not-a-number).
Data jsonData(const Value& value, uint64_t options);
/// The same as text; null when there are no bytes.
String jsonString(const Value& value, uint64_t options);

/// The array or dictionary of a JSON text, with mutable containers all through; null becomes `Value::nothing()`. Null
/// for null data and for anything that is no JSON or whose root is neither.
Value jsonObjWithData(const Data& data);
Value jsonObjWithString(const String& text);
/// Reads the file of the same path but with the extension "json", whatever extension the path has. Null, and no error,
/// when that file can't be read.
Value jsonObjWithPath(const String& path);

/// The same if it is a dictionary, else null.
Dictionary dictWithJsonData(const Data& data);
Dictionary dictWithJsonData(const String& text);

}  // namespace vornaset
