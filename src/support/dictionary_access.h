#pragma once
// Typed access to dictionaries that others wrote: a getter takes a default and never fails, and what the library
// stores itself is text. Getters take the key whole; writers take it as a path, whose dots descend into nested
// dictionaries. Nothing here throws or logs. The first argument is a Value where it may be something else than a
// dictionary; the forms with a Dictionary say the same for one that is.

#include <cstdint>

#include "support/values.h"

namespace vornaset {

/// Null unless the first argument is a mutable dictionary. A present value gives itself when it is a dictionary, else
/// null. With no value and `create` at exactly 1, a new mutable dictionary is stored under the key and returned.
Dictionary dictForKey(const Value& dictionary, const String& key, uint8_t create);
/// Likewise; the present value must be a mutable array.
Array arrayForKey(const Value& dictionary, const String& key, uint8_t create);
/// Null, not the default, when the first argument is no dictionary. A value that is a mutable array is given; any other
/// or none gives the default.
Array arrayForKey(const Value& dictionary, const String& key, const Array& defaultArray);

/// A text as it stands, a number as its text, the default for everything else and when the first argument is no
/// dictionary.
String stringForKey(const Dictionary& dictionary, const String& key, const String& defaultText = nullptr);
String stringForKey(const Value& dictionary, const String& key, const String& defaultText = nullptr);
String stringForKey(const Dictionary& dictionary, const char* key, const String& defaultText = nullptr);
String stringForKey(const Value& dictionary, const char* key, const String& defaultText = nullptr);

/// The value's integer reading (a text that is no number reads as 0), or the default when there is no value or one
/// that has no integer reading. The first argument isn't tested to be a dictionary: an object is asked for the key too.
int64_t integerForKey(const Dictionary& dictionary, const String& key, int64_t defaultNumber);
int64_t integerForKey(const Value& dictionary, const String& key, int64_t defaultNumber);
int64_t integerForKey(const Dictionary& dictionary, const char* key, int64_t defaultNumber);
int64_t integerForKey(const Value& dictionary, const char* key, int64_t defaultNumber);
/// The same in 32 bits.
int32_t intForKey(const Dictionary& dictionary, const String& key, int32_t defaultNumber);
int32_t intForKey(const Value& dictionary, const String& key, int32_t defaultNumber);

/// The value's text (see stringForKey) with every "," replaced by ".", read in single precision and widened. The
/// default when there is no text.
double floatForKey(const Dictionary& dictionary, const String& key, double defaultNumber);
double floatForKey(const Value& dictionary, const String& key, double defaultNumber);

/// The value of the key for each object, in order, by key-value coding. The first object that has none ends the loop
/// quietly: the array as far as it has come is the result. Never null.
Array stringsForKey(const Array& objects, const String& key);

/// A null text removes the key, taken whole. Otherwise the text is stored by key path; where a dictionary on the path
/// is missing or immutable, nothing is stored.
void setStringForKey(const Dictionary& dictionary, const String& key, const String& text);
void setStringForKey(const Dictionary& dictionary, const char* key, const String& text);
/// The number's decimal text, by key path.
void setIntegerForKey(const Dictionary& dictionary, const String& key, int64_t number);
void setIntegerForKey(const Dictionary& dictionary, const char* key, int64_t number);
/// The text that stringForFloat3 gives, by key path. Both do the same.
void setFloatForKey(const Dictionary& dictionary, const String& key, double number);
void setFloatForKey3(const Dictionary& dictionary, const String& key, double number);

/// The plain text of the number, unrounded (see Number::text). The 3 sets no digit count.
String stringForFloat3(double number);

}  // namespace vornaset
