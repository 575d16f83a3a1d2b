#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "companion/byte_buffer.h"

namespace companion {

enum class TextEncoding { utf8, utf16LittleEndian, utf16BigEndian, windows1252, macRoman };

/// The name as messages and reports write it, "UTF-8" or "Windows-1252" say.
std::string_view nameOfEncoding(TextEncoding encoding);

/// The encoding that a user names, in any case and with or without hyphens: utf-8, utf-16 (little-endian unless a byte
/// order mark says otherwise), utf-16le, utf-16be, windows-1252 (also cp1252, latin1, iso-8859-1), macroman (also
/// mac-roman, macintosh). Nothing for any other name.
std::optional<TextEncoding> encodingNamed(std::string_view name);

/// The encoding of a run of bytes. A byte order mark decides; else zero bytes at every second place tell UTF-16; else
/// text that is well-formed UTF-8 is UTF-8; else the first byte that is one of the letters ÄÖÜäöüß in Mac Roman or in
/// Windows-1252 decides between the two, and without any it is Mac Roman.
TextEncoding detectEncoding(std::string_view bytes);

/// The bytes as UTF-8 without byte order mark, in the same buffer. A mark of UTF-16 beats the given byte order. Throws
/// Error with the line when a byte means nothing in the encoding; `name` is the file's name for the message.
void decodeInPlace(ByteBuffer& bytes, TextEncoding encoding, const std::string& name);

/// The position of the first byte that isn't well-formed UTF-8 (Unicode 15, table 3-7), or the size when all is.
std::size_t firstIllFormedByte(std::string_view bytes);

}  // namespace companion
