#pragma once
// All limits on foreign packages, each with its reason. Real templates stay far below every one of them; what goes
// beyond is refused with an InputError, or, where said, read as if it weren't there.

#include <cstddef>
#include <cstdint>

namespace desk::limits {

/// Bytes of a package file. It is held in memory as long as its document.
inline constexpr uint64_t packageBytes = 1u << 30;

/// Members of a package: a book of a thousand spreads with a dozen stories on each has not half as many.
inline constexpr uint64_t members = 65535;

/// Bytes of one inflated member, counted while inflating because declared sizes may lie. Pictures embedded in a spread
/// are the largest thing seen.
inline constexpr uint64_t memberBytes = 256u << 20;

/// Bytes of all members together as they are inflated, so that many small bombs don't add up to a large one.
inline constexpr uint64_t inflatedBytes = 512u << 20;

/// Inflated bytes for each stored byte. Repetitive XML reaches 60; deflate's best, which a bomb needs, is 1,032.
inline constexpr uint64_t inflationRatio = 250;

/// Below this size a member may inflate as it likes: a page of blanks does no harm.
inline constexpr uint64_t inflationRatioFrom = 1u << 20;

/// Elements inside each other. Readers go down by recursion; groups in groups in real documents reach 40.
inline constexpr int xmlDepth = 256;

/// Elements and attributes of one part: each costs some hundred bytes of memory.
inline constexpr size_t xmlNodes = 2'000'000;

/// Page items of a document.
inline constexpr size_t items = 500'000;

/// Path points of one item: a map traced by hand has some ten thousand.
inline constexpr size_t pathPoints = 1'000'000;

/// UTF-16 units of one story: positions are 32-bit numbers, and a novel has a million.
inline constexpr size_t storyLength = 50'000'000;

/// Labels of one object. Scripts keep a few dozen.
inline constexpr size_t labels = 10'000;

/// A number beyond this is read as absent. The host writes 1e+11 for "not set"; no length or percentage comes near.
inline constexpr double number = 1e8;

/// Columns of a text frame, as the format has it.
inline constexpr int textColumns = 40;

/// Notes kept on one document; the rest is only counted.
inline constexpr size_t notes = 1000;

/// Tints of tints that are followed before they count as a circle.
inline constexpr int swatchDepth = 8;

}  // namespace desk::limits
