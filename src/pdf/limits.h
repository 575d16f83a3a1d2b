#pragma once
// What foreign files may ask of the toolkit, each with its reason.

#include <cstddef>

namespace vornaset::pdf_limits {

/// Kids in a page tree, all nodes together. A file can name the same node many times over, and doubles its pages with
/// each level. No real document has so many; the list of them stays under 40 MB.
inline constexpr size_t kMaximumPages = size_t{1} << 22;

/// Objects told by a traversal that doesn't remember what it met: the same reason.
inline constexpr size_t kMaximumToldObjects = size_t{1} << 22;

}  // namespace vornaset::pdf_limits
