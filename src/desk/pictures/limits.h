#pragma once
// All limits on foreign pictures, each with its reason. What goes beyond is refused with a sentence.

#include <cstddef>
#include <cstdint>

namespace desk::limits {

/// Bytes of a picture file: it is held in memory while it is read and written.
inline constexpr uint64_t pictureBytes = 512u << 20;

/// Pixels on one side: the most that a JPEG can have, and far more than a sheet of ten metres needs.
inline constexpr uint32_t pictureSide = 65'535;

/// Bytes of all pixels together, unpacked. A poster of A0 at 300 ppi in four inks has 560 million.
inline constexpr uint64_t pixelBytes = 640u << 20;

/// Unpacked bytes for each stored byte. Flate's best is 1,032 and fax codes reach more; this refuses only what is made
/// to exhaust memory, and only above `freeUnpackedBytes`.
inline constexpr uint64_t unpackingRatio = 4096;
inline constexpr uint64_t freeUnpackedBytes = 64u << 20;

/// Bytes of a colour profile: a large one for printing has three million.
inline constexpr size_t profileBytes = 16u << 20;

/// Points on one side of a placed page, as readers of PDF have it (200 inches), times the largest UserUnit in use.
inline constexpr double pageSide = 1'440'000;

/// Objects of a PDF inside each other before it counts as a circle or worse.
inline constexpr int pdfDepth = 200;

/// Objects that one placed page may bring along.
inline constexpr size_t pdfObjects = 2'000'000;

/// Seconds that a converting program may take, and its memory in bytes.
inline constexpr int conversionSeconds = 20;
inline constexpr uint64_t conversionMemory = uint64_t{2} << 30;

/// Bytes that a converting program may give.
inline constexpr uint64_t convertedBytes = 256u << 20;

}  // namespace desk::limits
