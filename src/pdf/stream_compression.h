#pragma once
// Deflating stream data.

#include "support/values.h"

namespace vornaset {

/// A zlib stream (RFC 1950) of the bytes at zlib's default level. Null data counts as empty. Null when zlib fails or
/// memory runs out. May be called on several threads at once.
Data compressedData(const Data& bytes);

}  // namespace vornaset
