#pragma once
// Small operations on strings, arrays and numbers. Null arguments are accepted everywhere; what throws says so. A
// character is a UTF-16 unit.

#include <cstdint>
#include <span>

#include "support/format.h"
#include "support/index_set.h"
#include "support/values.h"

namespace vornaset {

/// True for the same object, both null included; false if one is null; else equality of the units, with case.
bool stringsAreEqual(const String& first, const String& second);
/// True when an element of the array is the same object or compares equal.
bool stringsAreEqual(const String& text, const Array& texts);

/// False if either is null or the text is the shorter. An empty prefix has no occurrence, so it gives false.
bool stringStartsWith(const String& text, const String& prefix);
bool stringStartsWith(const String& text, const Array& prefixes);
/// False if either is null or the text is the shorter. An empty suffix gives true.
bool stringEndsWith(const String& text, const String& suffix);
/// The first suffix that fits, as an object; null if none does.
String stringEndsWith(const String& text, const Array& suffixes);

/// Options of a search, to be added up. Case goes by Unicode's full folding, where the sharp s equals two s. An
/// anchored search looks at the start alone, or at the end when it goes backwards too. Other bits have no effect.
inline constexpr uint64_t kExactSearch = 0;
inline constexpr uint64_t kCaseInsensitiveSearch = 1;
inline constexpr uint64_t kBackwardsSearch = 4;
inline constexpr uint64_t kAnchoredSearch = 8;
inline constexpr uint64_t kDiacriticInsensitiveSearch = 128;
/// False if either is null. An empty text has no occurrence.
bool stringContainsString(const String& text, const String& part, uint64_t options);
/// True for the first element that occurs; false for a null text.
bool stringContainsStrings(const String& text, const Array& parts, uint64_t options);

/// 0 when the position isn't there.
char16_t firstCharacter(const String& text);
char16_t secondCharacter(const String& text);
char16_t lastCharacter(const String& text);

/// Null when the array is empty or null.
Value firstObject(const Array& array);
Value lastObject(const Array& array);
/// Swaps `count` pairs: the entry at the first index with the one at the second, then each index plus one. Nothing for
/// a count of 0 or below. Throws RangeException for an index outside the array.
void exchangeEntries(const Array& array, int64_t first, int64_t second, int64_t count);
/// New arrays of numbers, ascending. Empty for a range without indices and for an empty set.
Array arrayWithIndexRange(const Range& range);
Array arrayWithIndexSet(const IndexSet& indices);
/// A set of one.
IndexSet indexSetWithIndex(int64_t index);
/// A new array with each entry that occurs two or more times, once each, in the order in which they occurred for the
/// second time. Entries that are equal count as one. Never null.
Array arrayWithDuplicates(const Array& array);

/// Decimal text.
String stringWithInteger(int64_t number);
Value numberWithInteger(int64_t number);
/// The plain text of the number (see Number::text).
String stringWithFloat(double number);
/// The number that a text begins with, every "," taken for a ".", read in single precision and widened.
double floatWithDecimalComma(const String& text);
/// True when the lowest bit is clear.
bool isEven(int64_t number);
/// False for null.
bool isNumber(const Value& value);
bool isString(const Value& value);
bool isAttributedString(const Value& value);
/// The nibble at a position, 0 being the lowest, as a character: the nibble with 0x30 set, so that nibbles above 9 give
/// the characters behind "9". The shift counts modulo 32.
char getBCD(uint32_t value, int position);
/// formatText under the name of its sister with single arguments.
String stringWithFormat(const String& format, std::span<const FormatArgument> arguments);

}  // namespace vornaset
