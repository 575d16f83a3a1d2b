#pragma once
// Files as bytes and as text. A path is the platform's own, in UTF-8. Nothing here reports anything.

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "support/values.h"

namespace vornaset {

/// The bytes of a regular file; null when it can't be read and for anything else that stands at the path.
Data dataWithFile(const String& path);

/// The file's text: by its byte-order mark (UTF-8, UTF-16, UTF-32; the mark isn't part of the text), else as UTF-8,
/// else in the single-byte encoding that stringEncodingWithData names. Null when the file can't be read or its bytes
/// don't decode.
String stringWithContentsOfFile(const String& path);

struct FreeBuffer {
    void operator()(char* buffer) const noexcept { std::free(buffer); }
};
/// A buffer from the C library's allocation. Who wants it bare takes it by `release` and ends it by `free`.
using FileBuffer = std::unique_ptr<char, FreeBuffer>;

/// The file's bytes with one zero byte behind the last, so that a text file is a C string at once. Null when the file
/// can't be opened for reading (then `size` stays as it is), has no size or doesn't fit into memory.
FileBuffer getFileData(const String& path, int64_t& size);

}  // namespace vornaset
