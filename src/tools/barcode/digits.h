#pragma once
// Codes of digits that end in a check digit: EAN-13, EAN-8, UPC-A, ITF-14.

#include <string>
#include <string_view>

#include "tools/barcode/kinds.h"

namespace barcode {

/// True for the kinds whose code is a fixed number of digits.
bool hasFixedDigits(Kind kind);

/// The check digit of the digits before it: modulo 10, weights 3 and 1 from the right (ISO/IEC 15420 annex A). Takes
/// the digits '0' to '9' alone.
char checkDigitOf(std::string_view digits);

/// The code with its check digit, which is added when it is missing. Throws Refusal for another number of digits, for
/// anything that is no digit, and for a wrong check digit. Only for kinds with fixed digits.
std::string withCheckDigit(Kind kind, std::string_view code);

/// The code between quotation marks as it stands in a refusal: cut when it is long, control characters as dots.
std::string quoted(std::string_view code);

}  // namespace barcode
