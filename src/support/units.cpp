#include "support/units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>

#include "support/format.h"

namespace vornaset {

namespace {

/// Units per point for kUnitInches to kUnitPercent.
constexpr std::array<float, 5> kScales = {0.013888889F, 0.35277778F, 0.035277776F, 1.0F, 100.0F};
constexpr std::array<const char*, 7> kSuffixes = {"", " pts", " \"", " mm", " cm", "", " %"};
constexpr float kFixedFactor = 0.000015258789F;
constexpr int32_t kDecimalsOfLengths = 2;

int32_t cutToInteger(double value) {
    if (std::isnan(value)) return 0;
    return static_cast<int32_t>(std::clamp(value, -2147483648.0, 2147483647.0));
}

const char* suffixOf(MyUnits unit) {
    return unit < kUnitNone || unit > kUnitPercent ? "" : kSuffixes[static_cast<size_t>(unit)];
}

/// The two sides of the sign when it stands in the text exactly once.
bool splitOnce(const String& text, char16_t sign, String& left, String& right) {
    const size_t at = text.find(sign);
    if (at == String::npos || text.find(sign, at + 1) != String::npos) return false;
    left = text.substring(0, at);
    right = text.substring(at + 1);
    return true;
}

float valueOfExpression(const String& text) {
    String left;
    String right;
    if (splitOnce(text, u'+', left, right)) return left.floatValue() + right.floatValue();
    if (splitOnce(text, u'-', left, right)) return left.floatValue() - right.floatValue();
    return text.floatValue();
}

}  // namespace

float scaleForUnit(MyUnits unit) {
    return unit < kUnitInches || unit > kUnitPercent ? 1.0F : kScales[static_cast<size_t>(unit - kUnitInches)];
}

void ptsToUnit(float& value, MyUnits unit) {
    value *= scaleForUnit(unit);
}
void ptsToUnit(float& first, float& second, MyUnits unit) {
    ptsToUnit(first, unit);
    ptsToUnit(second, unit);
}
void ptsToUnit(float& first, float& second, float& third, float& fourth, MyUnits unit) {
    ptsToUnit(first, second, unit);
    ptsToUnit(third, fourth, unit);
}

void unitToPts(float& value, MyUnits unit) {
    value /= scaleForUnit(unit);
}
void unitToPts(float& first, float& second, MyUnits unit) {
    unitToPts(first, unit);
    unitToPts(second, unit);
}
void unitToPts(float& first, float& second, float& third, float& fourth, MyUnits unit) {
    unitToPts(first, second, unit);
    unitToPts(third, fourth, unit);
}

float fixedToUnit(int32_t fixed, MyUnits unit) {
    if (unit < kUnitPoints) return static_cast<float>(fixed);
    return static_cast<float>(fixed) * kFixedFactor * scaleForUnit(unit);
}

int32_t unitToFixed(float value, MyUnits unit) {
    if (unit < kUnitPoints) return cutToInteger(value);
    return cutToInteger(static_cast<double>(value / scaleForUnit(unit)) * 65536.0);
}

String stringWithFloat(float value, MyUnits unit) {
    return Number(value * scaleForUnit(unit)).text();
}

String stringWithFloatAndDigits(float value, int32_t digits) {
    const String text = stringWithFormat(stringWithFormat("%%.%df", digits), static_cast<double>(value));
    std::u16string_view units = text.view();
    while (units.ends_with(u'0')) units.remove_suffix(1);
    if (units.ends_with(u'.')) units.remove_suffix(1);
    return units;
}

String stringWithFixed(int32_t fixed, MyUnits unit, uint8_t withSuffix) {
    const String number = stringWithFloatAndDigits(fixedToUnit(fixed, unit), kDecimalsOfLengths);
    return withSuffix == 1 ? number + suffixOf(unit) : number;
}

char* stringWithFixed(int32_t fixed, MyUnits unit, char* buffer, uint8_t withSuffix) {
    const std::string text = stringWithFixed(fixed, unit, withSuffix).utf8();
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return buffer;
}

String stringWithPoint(const MyPoint& point) {
    return stringWithFormat("%f %f", point.x, point.y);
}

float floatWithString(const String& text, MyUnits unit) {
    std::u16string units(text.view());
    std::replace(units.begin(), units.end(), u',', u'.');
    const String typed(units);
    if (typed.find("mm") != String::npos) {
        unit = kUnitMillimeters;
    } else if (typed.find("pt") != String::npos) {
        unit = kUnitPoints;
    }
    return valueOfExpression(typed) / scaleForUnit(unit);
}

int32_t fixedWithString(const String& text, MyUnits unit) {
    return cutToInteger(floatWithString(text, unit) * 65536.0F);
}

double pts2mmRounded(double pts) {
    return stringWithFormat("%.1f", pts * 25.4 / 72).floatValue();
}

char16_t lastChar(const String& text) {
    return text.isEmpty() ? u'\0' : text.view().back();
}

}  // namespace vornaset
