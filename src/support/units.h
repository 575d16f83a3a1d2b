#pragma once
// Lengths: between points, a unit of the user's, 16.16 fixed-point numbers, and the texts that the user reads and
// types. Nothing here depends on a locale. No state.

#include <cstdint>

#include "support/my_geometry.h"
#include "support/values.h"

namespace vornaset {

/// Names a unit of length. It travels as a number: one above 6 acts like kUnitPlain, one below 0 like kUnitNone.
enum MyUnits : int64_t {
    kUnitNone = 0,
    kUnitPoints = 1,       ///< " pts"
    kUnitInches = 2,       ///< " \""
    kUnitMillimeters = 3,  ///< " mm"
    kUnitCentimeters = 4,  ///< " cm"
    kUnitPlain = 5,        ///< a bare number
    kUnitPercent = 6,      ///< " %"
};

/// Units per point, in single precision; 100 for kUnitPercent, 1 for every number that has no scale of its own.
float scaleForUnit(MyUnits unit);

/// In place, from points to the unit.
void ptsToUnit(float& value, MyUnits unit);
void ptsToUnit(float& first, float& second, MyUnits unit);
void ptsToUnit(float& first, float& second, float& third, float& fourth, MyUnits unit);
/// In place, from the unit to points.
void unitToPts(float& value, MyUnits unit);
void unitToPts(float& first, float& second, MyUnits unit);
void unitToPts(float& first, float& second, float& third, float& fourth, MyUnits unit);

/// A fixed-point length in points (16 fractional bits), in the unit. For a unit below 1 the bare integer, not divided
/// by 65,536.
float fixedToUnit(int32_t fixed, MyUnits unit);
/// The way back, cut towards zero; for a unit below 1 the whole part of the value. What lies outside the integer's
/// range becomes its nearest end, what is no number 0.
int32_t unitToFixed(float value, MyUnits unit);

/// The length of so many points in the unit: the shortest digits that read back as the same single-precision number,
/// without suffix.
String stringWithFloat(float value, MyUnits unit);
/// With so many decimals (0 or more), from which zeros at the end, and then a point at the end, are cut. Zeros are cut
/// off whole numbers too: for 0 digits 100 gives "1" and 0 the empty text.
String stringWithFloatAndDigits(float value, int32_t digits);
/// A fixed-point length in the unit with at most 2 decimals; behind it the unit's suffix when `withSuffix` is 1.
String stringWithFixed(int32_t fixed, MyUnits unit, uint8_t withSuffix);
/// The same as NUL-terminated UTF-8 in the caller's buffer, which must hold it (63 bytes always do). Returns the
/// buffer.
char* stringWithFixed(int32_t fixed, MyUnits unit, char* buffer, uint8_t withSuffix);
/// "%f %f": x and y.
String stringWithPoint(const MyPoint& point);

/// The points that a typed length means. A decimal comma counts as a point. A text with exactly one "+" is the sum of
/// its two sides, else one with exactly one "-" their difference, else the number that it begins with counts and the
/// rest doesn't. "mm" anywhere in the text stands for millimetres, else "pt" for points, else `unit` holds; no other
/// suffix is known. 0 for null and for what begins with no number.
float floatWithString(const String& text, MyUnits unit);
/// The same as a 16.16 fixed-point number, cut towards zero; outside its range as unitToFixed.
int32_t fixedWithString(const String& text, MyUnits unit);

/// Points to millimetres, rounded to one decimal, as the nearest single-precision number.
double pts2mmRounded(double pts);
/// The last UTF-16 unit; 0 for an empty or null text.
char16_t lastChar(const String& text);

}  // namespace vornaset
