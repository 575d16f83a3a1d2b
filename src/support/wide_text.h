#pragma once
// Wide strings: zero-terminated arrays of unsigned 16-bit units.

#include <cstddef>
#include <cstdint>

namespace vornaset {

/// The count of units before the terminator; 0 for null.
size_t wstrlen(const uint16_t* text) noexcept;

/// Copies the units and the terminator; returns the count without the terminator. The target must have room for both,
/// and the source may not be null: a null one gives 0 and leaves the target alone.
size_t wstrcpy(uint16_t* target, const uint16_t* source) noexcept;

}  // namespace vornaset
