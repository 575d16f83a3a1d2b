#pragma once
// How many pages a PDF file has, for callers that ask for the same few files again and again.

#include <cstdint>

#include "support/values.h"

namespace vornaset {

/// The number of pages of the file; 0 when it can't be read as PDF. A file that was asked for before and hasn't changed
/// since (device, inode, size, time of change) isn't opened again. Any thread.
int64_t pageCountOfPDFFile(const String& path);

}  // namespace vornaset
