#pragma once
// What foreign files may ask of the toolkit, each with its reason.

#include <cstddef>

namespace vornaset::pdf_limits {

/// Kids in a page tree, all nodes together. A file can name the same node many times over, and doubles its pages with
/// each level. No real document has so many; the list of them stays under 40 MB.
inline constexpr size_t kMaximumPages = size_t{1} << 22;

/// Objects told by a traversal that doesn't remember what it met: the same reason.
inline constexpr size_t kMaximumToldObjects = size_t{1} << 22;

/// Bytes of a file that is read. The toolkit writes offsets of 31 bits, so that nothing larger could be written again.
inline constexpr size_t kMaximumFileBytes = 0x7FFF'FFFF;

/// Bytes of one stream with its filters undone, in between too. A picture of 16,000 by 16,000 pixels in four inks is
/// as large; Deflate makes a thousand bytes of one, a chain of two a million.
inline constexpr size_t kMaximumStreamBytes = size_t{1} << 30;

/// Bytes of all streams of a document with their filters undone. They stay in memory side by side.
inline constexpr size_t kMaximumDocumentBytes = size_t{3} << 30;

/// Filters of one stream. Files have one, now and then two; each costs a pass over the data.
inline constexpr size_t kMaximumFilters = 8;

/// Bytes of one row behind a predictor: colours times bits times columns, which the file chooses.
inline constexpr size_t kMaximumPredictorRow = size_t{1} << 26;

/// Objects that are met while a file is read, direct ones counted each. A file can hold one for every two bytes, and
/// each takes a hundred and more in memory.
inline constexpr size_t kMaximumReaderObjects = size_t{1} << 23;

/// Bytes that a file's compressed objects and tables may have with their filters undone: this much, and for each byte
/// of the file kExpansion more. Real files stay below a tenth of that.
inline constexpr size_t kExpansionBase = size_t{1} << 23;
inline constexpr size_t kExpansion = 16;

/// Filters that the platform's reader undoes within one another, each by calls on the stack.
inline constexpr int kMaximumNestedFilters = 32;

}  // namespace vornaset::pdf_limits
