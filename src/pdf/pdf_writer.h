#pragma once
// The pieces of a PDF file, each appended to a growing buffer: objects, one classic cross-reference table, trailer.
// ISO 32000-1, 7.5. Object 1 is the information dictionary, object 2 the catalog, and all generations are 0.

#include <cstdint>
#include <span>
#include <string>

#include "pdf/object_collections.h"

namespace vornaset {

/// Appends the text up to its zero. A null pointer appends nothing.
void appendString(std::string& buffer, const char* text);
/// Appends what printf's format gives. For the short formats of integers that a file's frame is made of.
void appendFormat(std::string& buffer, const char* format, ...) __attribute__((format(printf, 2, 3)));

/// "N 0 obj", the object's bytes, "endobj" for each object, N being `start` plus 1 plus its place; offsets[start +
/// place] becomes the buffer's length in front of it. Streams are compressed on all cores ahead of their turn. What
/// raises is shown, and ends this: the objects behind it are left out.
void writePDFObjs(const ObjectList<MyPDFObj>& objects, std::string& buffer, std::span<int64_t> offsets, int64_t start);
/// The table: the free entry, and one of 20 bytes for each of `count` offsets, narrowed to 32 bits.
void writeXRef(std::string& buffer, std::span<const int64_t> offsets, int64_t count);
/// The trailer for `count` objects and a table at the position, and the file's end.
void writeTrailer(std::string& buffer, int64_t count, int64_t position);

/// The header of a file made from another: its first 8 bytes (fewer of a shorter file, none of one that can't be
/// opened), then a comment line of four high bytes.
Data pdfHeaderWithPath(const String& path);

/// Throw exceptions named "Vornaset" with the reasons "error" and "finished". For callers of the toolkit.
[[noreturn]] void raiseError();
[[noreturn]] void raiseFinished();

}  // namespace vornaset
