#pragma once
// Limits on fonts that come from outside, each with its reason.

#include <cstddef>
#include <cstdint>

namespace desk::font_limits {

/// Folders below a private font folder. Font collections nest by foundry, family and format; a link that leads back up
/// would nest for ever.
inline constexpr int kFolderDepth = 8;

/// Font files taken from one private folder. A whole foundry's library has a few thousand.
inline constexpr size_t kFilesInFolder = 4096;

/// Bytes of one font file. The largest pan-CJK collections have about 150 MB.
inline constexpr uint64_t kFileBytes = uint64_t{512} << 20;

/// UTF-16 units of one shaped run. Positions are kept in 32 bits with room to spare, and no line is that long.
inline constexpr size_t kRunLength = size_t{1} << 20;

}  // namespace desk::font_limits
