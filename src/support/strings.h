#pragma once
// Small operations on strings, arrays and numbers. Null arguments are accepted everywhere; what throws says so. A
// character is a UTF-16 unit.

#include <cstdint>

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

/// Options of a search: 0 is exact, bit 0 ignores case.
inline constexpr uint64_t kExactSearch = 0;
inline constexpr uint64_t kCaseInsensitiveSearch = 1;
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

/// Decimal text.
String stringWithInteger(int64_t number);
Value numberWithInteger(int64_t number);
/// The plain text of the number (see Number::text).
String stringWithFloat(double number);
/// The number that a text begins with, every "," taken for a ".", read in single precision and widened.
double floatWithDecimalComma(const String& text);
/// True when the lowest bit is clear.
bool isEven(int64_t number);
bool isNumber(const Value& value);
bool isString(const Value& value);

}  // namespace vornaset
