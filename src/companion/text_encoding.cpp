#include "companion/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "companion/error.h"

namespace companion {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr char32_t noCharacter = 0xFFFF'FFFF;

// The upper halves of the two single-byte encodings, from 0x80. Source: the mapping tables that Unicode publishes
// (WindowsBestFit/CP1252 without its best fits, APPLE/ROMAN).
constexpr std::array<char32_t, 32> windowsControls = {
    0x20AC, noCharacter, 0x201A,      0x0192, 0x201E,      0x2026,      0x2020, 0x2021,      0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152,      noCharacter, 0x017D, noCharacter, noCharacter, 0x2018, 0x2019,      0x201C, 0x201D, 0x2022,
    0x2013, 0x2014,      0x02DC,      0x2122, 0x0161,      0x203A,      0x0153, noCharacter, 0x017E, 0x0178};

constexpr std::array<char32_t, 128> macRomanUpper = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7};

using Byte = std::uint8_t;

// Each source reads one character and moves on; noCharacter says that the bytes at `in` mean nothing.
struct Windows1252Source {
    static char32_t next(const Byte*& in, const Byte*) {
        Byte byte = *in;
        char32_t character = byte >= 0x80 && byte < 0xA0 ? windowsControls[byte - 0x80] : byte;
        if (character != noCharacter) ++in;
        return character;
    }
};

struct MacRomanSource {
    static char32_t next(const Byte*& in, const Byte*) {
        Byte byte = *in++;
        return byte >= 0x80 ? macRomanUpper[byte - 0x80] : byte;
    }
};

template <bool bigEndian>
struct Utf16Source {
    static char32_t unit(const Byte* in) {
        return bigEndian ? static_cast<char32_t>(in[0] << 8 | in[1]) : static_cast<char32_t>(in[1] << 8 | in[0]);
    }
    static char32_t next(const Byte*& in, const Byte* end) {
        if (end - in < 2) return noCharacter;
        char32_t first = unit(in);
        if (first < 0xD800 || first > 0xDFFF) {
            in += 2;
            return first;
        }
        if (first > 0xDBFF || end - in < 4) return noCharacter;
        char32_t second = unit(in + 2);
        if (second < 0xDC00 || second > 0xDFFF) return noCharacter;
        in += 4;
        return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
};

std::size_t utf8Length(char32_t character) {
    return character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
}

Byte* putUtf8(Byte* out, char32_t character) {
    auto tail = [&](int shift) { return static_cast<Byte>(0x80 | (character >> shift & 0x3F)); };
    switch (utf8Length(character)) {
        case 1:
            *out++ = static_cast<Byte>(character);
            break;
        case 2:
            *out++ = static_cast<Byte>(0xC0 | character >> 6);
            *out++ = tail(0);
            break;
        case 3:
            *out++ = static_cast<Byte>(0xE0 | character >> 12);
            *out++ = tail(6);
            *out++ = tail(0);
            break;
        default:
            *out++ = static_cast<Byte>(0xF0 | character >> 18);
            *out++ = tail(12);
            *out++ = tail(6);
            *out++ = tail(0);
    }
    return out;
}

[[noreturn]] void refuseByte(const Byte* at, const std::string& name, TextEncoding encoding, std::size_t line) {
    char hexadecimal[8];
    std::snprintf(hexadecimal, sizeof hexadecimal, "0x%02X", *at);
    throw Error("the data file \"" + name + "\", line " + std::to_string(line) + ": the byte " + hexadecimal +
                    " means nothing in " + std::string(nameOfEncoding(encoding)) +
                    "; save the file as UTF-8 or say its encoding with --encoding.",
                DataPlace{0, line, 0});
}

// Counts line ends as an editor does: CR, LF and CRLF each once.
class LineCounter {
  public:
    void see(char32_t character) {
        if (character == '\r' || (character == '\n' && last_ != '\r')) ++line_;
        last_ = character;
    }
    std::size_t line() const { return line_; }

  private:
    std::size_t line_ = 1;
    char32_t last_ = 0;
};

struct DecodedSize {
    std::size_t bytes = 0;
    std::size_t lead = 0;  // how far the output may ever be ahead of the input
};

template <class Source>
DecodedSize measure(std::string_view raw, TextEncoding encoding, const std::string& name) {
    const Byte* begin = reinterpret_cast<const Byte*>(raw.data());
    const Byte* end = begin + raw.size();
    DecodedSize size;
    for (const Byte* in = begin; in < end;) {
        char32_t character = Source::next(in, end);
        if (character == noCharacter) {
            LineCounter lines;
            const Byte* bad = in;
            for (in = begin; in < bad;) lines.see(Source::next(in, end));
            refuseByte(bad, name, encoding, lines.line());
        }
        size.bytes += utf8Length(character);
        std::size_t consumed = static_cast<std::size_t>(in - begin);
        if (size.bytes > consumed) size.lead = std::max(size.lead, size.bytes - consumed);
    }
    return size;
}

// The raw bytes move to the far end of the buffer, and the text is written from its start: with the measured lead as
// room between the two, the writer never reaches a byte that isn't read yet. So a file costs its size once, not twice.
template <class Source>
void decodeWith(ByteBuffer& bytes, std::size_t mark, TextEncoding encoding, const std::string& name) {
    std::size_t rawSize = bytes.size() - mark;
    DecodedSize size = measure<Source>(bytes.view().substr(mark), encoding, name);
    std::size_t whole = rawSize + size.lead;
    if (whole > bytes.size()) bytes.resize(whole);
    std::memmove(bytes.data() + size.lead, bytes.data() + mark, rawSize);
    const Byte* in = reinterpret_cast<const Byte*>(bytes.data()) + size.lead;
    const Byte* end = in + rawSize;
    Byte* out = reinterpret_cast<Byte*>(bytes.data());
    while (in < end) out = putUtf8(out, Source::next(in, end));
    bytes.resize(size.bytes);
}

bool looksLikeUtf16(std::string_view bytes, std::size_t zeroParity) {
    std::size_t looked = std::min<std::size_t>(bytes.size(), 4096) & ~std::size_t{1};
    std::size_t zeros[2] = {0, 0};
    for (std::size_t i = 0; i < looked; ++i) zeros[i & 1] += bytes[i] == 0;
    return looked >= 4 && zeros[1 - zeroParity] == 0 && zeros[zeroParity] * 10 >= looked / 2 * 4;
}

std::size_t markLength(std::string_view bytes, TextEncoding encoding) {
    if (encoding == TextEncoding::utf8) return bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0;
    if (encoding == TextEncoding::utf16LittleEndian) return bytes.starts_with("\xFF\xFE") ? 2 : 0;
    if (encoding == TextEncoding::utf16BigEndian) return bytes.starts_with("\xFE\xFF") ? 2 : 0;
    return 0;
}

void keepUtf8(ByteBuffer& bytes, std::size_t mark, const std::string& name) {
    std::string_view text = bytes.view().substr(mark);
    std::size_t bad = firstIllFormedByte(text);
    if (bad < text.size()) {
        LineCounter lines;
        for (char byte : text.substr(0, bad)) lines.see(static_cast<Byte>(byte));
        refuseByte(reinterpret_cast<const Byte*>(text.data()) + bad, name, TextEncoding::utf8, lines.line());
    }
    if (mark == 0) return;
    std::memmove(bytes.data(), bytes.data() + mark, text.size());
    bytes.resize(text.size());
}

}  // namespace

std::string_view nameOfEncoding(TextEncoding encoding) {
    switch (encoding) {
        case TextEncoding::utf8:
            return "UTF-8";
        case TextEncoding::utf16LittleEndian:
            return "UTF-16LE";
        case TextEncoding::utf16BigEndian:
            return "UTF-16BE";
        case TextEncoding::windows1252:
            return "Windows-1252";
        case TextEncoding::macRoman:
            return "Mac Roman";
    }
    return "";
}

std::optional<TextEncoding> encodingNamed(std::string_view name) {
    std::string plain;
    for (char character : name) {
        if (character == '-' || character == '_' || character == ' ') continue;
        plain += character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
    }
    static constexpr std::pair<std::string_view, TextEncoding> names[] = {
        {"utf8", TextEncoding::utf8},
        {"utf16", TextEncoding::utf16LittleEndian},
        {"utf16le", TextEncoding::utf16LittleEndian},
        {"utf16be", TextEncoding::utf16BigEndian},
        {"windows1252", TextEncoding::windows1252},
        {"cp1252", TextEncoding::windows1252},
        {"latin1", TextEncoding::windows1252},
        {"iso88591", TextEncoding::windows1252},
        {"macroman", TextEncoding::macRoman},
        {"macintosh", TextEncoding::macRoman},
    };
    for (auto& [known, encoding] : names)
        if (plain == known) return encoding;
    return std::nullopt;
}

std::size_t firstIllFormedByte(std::string_view bytes) {
    const Byte* begin = reinterpret_cast<const Byte*>(bytes.data());
    std::size_t size = bytes.size();
    std::size_t at = 0;
    while (at < size) {
        std::uint64_t eight;
        while (at + sizeof eight <= size) {
            std::memcpy(&eight, begin + at, sizeof eight);
            if (eight & 0x8080'8080'8080'8080) break;
            at += sizeof eight;
        }
        if (at >= size) break;
        Byte lead = begin[at];
        if (lead < 0x80) {
            ++at;
            continue;
        }
        std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : (lead & 0xF0) == 0xE0        ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
        if (length == 0 || at + length > size) return at;
        // The second byte has a narrower range where overlong forms, surrogates and values past U+10FFFF would begin.
        Byte low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        Byte high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        if (begin[at + 1] < low || begin[at + 1] > high) return at;
        for (std::size_t i = 2; i < length; ++i)
            if ((begin[at + i] & 0xC0) != 0x80) return at;
        at += length;
    }
    return size;
}

TextEncoding detectEncoding(std::string_view bytes) {
    if (bytes.starts_with(utf8Mark)) return TextEncoding::utf8;
    if (bytes.starts_with("\xFF\xFE")) return TextEncoding::utf16LittleEndian;
    if (bytes.starts_with("\xFE\xFF")) return TextEncoding::utf16BigEndian;
    if (looksLikeUtf16(bytes, 1)) return TextEncoding::utf16LittleEndian;
    if (looksLikeUtf16(bytes, 0)) return TextEncoding::utf16BigEndian;
    if (firstIllFormedByte(bytes) == bytes.size()) return TextEncoding::utf8;
    static constexpr std::string_view macLetters = "\x80\x85\x86\x8A\x9A\x9F\xA7";
    static constexpr std::string_view windowsLetters = "\xC4\xD6\xDC\xE4\xF6\xFC\xDF";
    for (char byte : bytes) {
        if (static_cast<Byte>(byte) < 0x80) continue;
        if (macLetters.find(byte) != std::string_view::npos) return TextEncoding::macRoman;
        if (windowsLetters.find(byte) != std::string_view::npos) return TextEncoding::windows1252;
    }
    return TextEncoding::macRoman;
}

void decodeInPlace(ByteBuffer& bytes, TextEncoding encoding, const std::string& name) {
    if (encoding == TextEncoding::utf16LittleEndian && bytes.view().starts_with("\xFE\xFF"))
        encoding = TextEncoding::utf16BigEndian;
    else if (encoding == TextEncoding::utf16BigEndian && bytes.view().starts_with("\xFF\xFE"))
        encoding = TextEncoding::utf16LittleEndian;
    std::size_t mark = markLength(bytes.view(), encoding);
    switch (encoding) {
        case TextEncoding::utf8:
            return keepUtf8(bytes, mark, name);
        case TextEncoding::utf16LittleEndian:
            return decodeWith<Utf16Source<false>>(bytes, mark, encoding, name);
        case TextEncoding::utf16BigEndian:
            return decodeWith<Utf16Source<true>>(bytes, mark, encoding, name);
        case TextEncoding::windows1252:
            return decodeWith<Windows1252Source>(bytes, mark, encoding, name);
        case TextEncoding::macRoman:
            return decodeWith<MacRomanSource>(bytes, mark, encoding, name);
    }
}

}  // namespace companion
