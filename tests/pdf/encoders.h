#pragma once
// Slow, plain encoders, the counterparts of the filters, written from the same clauses by another road.

#include <cstdint>
#include <map>
#include <random>
#include <string>

#include "pdf/predictor.h"
#include "pdf/stream_compression.h"

namespace vornaset::encoders {

inline std::string deflated(const std::string& bytes) {
    return std::string(compressedData(Data(bytes)).view());
}

inline std::string hex(const std::string& bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (unsigned char byte : bytes) {
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text + ">";
}

inline std::string base85(const std::string& bytes) {
    std::string text;
    for (size_t at = 0; at < bytes.size(); at += 4) {
        const size_t count = std::min<size_t>(4, bytes.size() - at);
        uint64_t group = 0;
        for (size_t byte = 0; byte < 4; ++byte)
            group = group * 256 + (byte < count ? static_cast<unsigned char>(bytes[at + byte]) : 0);
        std::string letters(5, '!');
        for (size_t letter = 5; letter-- > 0; group /= 85) letters[letter] = static_cast<char>('!' + group % 85);
        if (count == 4 && letters == "!!!!!") {
            text += 'z';
        } else {
            text += letters.substr(0, count + 1);
        }
    }
    return text + "~>";
}

inline std::string runLength(const std::string& bytes) {
    std::string text;
    for (size_t at = 0; at < bytes.size();) {
        size_t run = 1;
        while (run < 128 && at + run < bytes.size() && bytes[at + run] == bytes[at]) ++run;
        if (run > 1) {
            text += static_cast<char>(257 - run);
            text += bytes[at];
            at += run;
        } else {
            text += '\0';
            text += bytes[at++];
        }
    }
    return text + static_cast<char>(128);
}

/// Codes grow when the code to come would not fit (late), or one code before that (early). Clears a full table.
inline std::string lzw(const std::string& bytes, bool early) {
    std::string text;
    uint64_t bits = 0;
    int count = 0;
    const auto put = [&](int code, int width) {
        bits = bits << width | static_cast<uint64_t>(code);
        for (count += width; count >= 8; count -= 8) text += static_cast<char>(bits >> (count - 8));
    };
    std::map<std::string, int> table;
    int next = 0;
    int width = 9;
    const auto clear = [&] {
        table.clear();
        for (int byte = 0; byte < 256; ++byte) table[std::string(1, static_cast<char>(byte))] = byte;
        next = 258;
        width = 9;
    };
    clear();
    put(256, width);
    std::string known;
    for (char byte : bytes) {
        if (table.contains(known + byte)) {
            known += byte;
            continue;
        }
        put(table.at(known), width);
        table[known + byte] = next++;
        // The decoder is one entry behind, so that its table is full when `next` is one above what it knows.
        if (next + (early ? 1 : 0) > (1 << width) && width < 12) ++width;
        if (next == 4095) {
            put(256, width);
            clear();
        }
        known = byte;
    }
    if (!known.empty()) {
        put(table.at(known), width);
        ++next;
        if (next + (early ? 1 : 0) > (1 << width) && width < 12) ++width;
    }
    put(257, width);
    if (count > 0) text += static_cast<char>(bits << (8 - count));
    return text;
}

inline std::string randomBytes(std::mt19937& random, size_t count, unsigned values = 256) {
    std::string bytes;
    while (bytes.size() < count) bytes += static_cast<char>(random() % values);
    return bytes;
}

inline size_t rowLength(const PredictorParameters& p) {
    return static_cast<size_t>((p.colors * p.bitsPerComponent * p.columns + 7) / 8);
}

/// Each row with the type of its turn, 0 to 4.
inline std::string png(const std::string& bytes, const PredictorParameters& p, int fixedType = -1) {
    const size_t length = rowLength(p);
    const size_t pixel = static_cast<size_t>((p.colors * p.bitsPerComponent + 7) / 8);
    std::string text;
    for (size_t row = 0; row * length < bytes.size(); ++row) {
        const int type = fixedType >= 0 ? fixedType : static_cast<int>(row % 5);
        text += static_cast<char>(type);
        for (size_t at = 0; at < length && row * length + at < bytes.size(); ++at) {
            const auto byte = [&](size_t r, size_t place) {
                return static_cast<int>(static_cast<unsigned char>(bytes[r * length + place]));
            };
            const int left = at >= pixel ? byte(row, at - pixel) : 0;
            const int above = row > 0 ? byte(row - 1, at) : 0;
            const int corner = row > 0 && at >= pixel ? byte(row - 1, at - pixel) : 0;
            int guess = 0;
            if (type == 1) guess = left;
            if (type == 2) guess = above;
            if (type == 3) guess = (left + above) / 2;
            if (type == 4) {
                const int base = left + above - corner;
                guess = left;
                if (std::abs(base - above) < std::abs(base - guess)) guess = above;
                if (std::abs(base - corner) < std::abs(base - guess)) guess = corner;
            }
            text += static_cast<char>(byte(row, at) - guess);
        }
    }
    return text;
}

/// Sample by sample from a row of bits.
inline std::string tiff(const std::string& bytes, const PredictorParameters& p) {
    std::string text = bytes;
    const size_t length = rowLength(p);
    const auto bits = static_cast<size_t>(p.bitsPerComponent);
    const auto sample = [&](const std::string& data, size_t row, size_t index) {
        unsigned value = 0;
        for (size_t bit = index * bits; bit < (index + 1) * bits; ++bit)
            value = value * 2 + ((static_cast<unsigned char>(data[row * length + bit / 8]) >> (7 - bit % 8)) & 1U);
        return value;
    };
    for (size_t row = 0; (row + 1) * length <= bytes.size(); ++row)
        for (size_t index = static_cast<size_t>(p.colors); index < static_cast<size_t>(p.colors * p.columns); ++index) {
            const unsigned value =
                sample(bytes, row, index) - sample(bytes, row, index - static_cast<size_t>(p.colors));
            for (size_t bit = 0; bit < bits; ++bit) {
                const size_t place = index * bits + bit;
                auto& byte = text[row * length + place / 8];
                const unsigned mask = 1U << (7 - place % 8);
                const bool isSet = ((value >> (bits - 1 - bit)) & 1U) != 0;
                byte = static_cast<char>(isSet ? static_cast<unsigned char>(byte) | mask
                                               : static_cast<unsigned char>(byte) & ~mask);
            }
        }
    return text;
}

}  // namespace vornaset::encoders
