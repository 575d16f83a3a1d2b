#include "desk/output/cff_charset.h"

#include <stdexcept>

namespace desk {
namespace {

/// Reads big-endian numbers; refuses to leave the bytes.
class Bytes {
  public:
    explicit Bytes(const std::vector<uint8_t>& bytes) : bytes_(bytes) {}

    uint32_t number(size_t at, int width) const {
        if (at + static_cast<size_t>(width) > bytes_.size()) throw std::runtime_error("the CFF font program is cut off");
        uint32_t value = 0;
        for (int i = 0; i < width; ++i) value = value << 8 | bytes_[at + static_cast<size_t>(i)];
        return value;
    }

  private:
    const std::vector<uint8_t>& bytes_;
};

/// An INDEX: an array of objects of different sizes.
struct Index {
    uint32_t count = 0;
    size_t firstObject = 0, firstObjectEnd = 0;
    size_t end = 0;
};

Index readIndex(const Bytes& bytes, size_t at) {
    Index index;
    index.count = bytes.number(at, 2);
    index.end = at + 2;
    if (index.count == 0) return index;
    const int width = static_cast<int>(bytes.number(at + 2, 1));
    if (width < 1 || width > 4) throw std::runtime_error("the CFF font program has an index of an unknown kind");
    const size_t offsets = at + 3;
    const size_t data = offsets + (size_t{index.count} + 1) * static_cast<size_t>(width) - 1;
    index.firstObject = data + bytes.number(offsets, width);
    index.firstObjectEnd = data + bytes.number(offsets + static_cast<size_t>(width), width);
    index.end = data + bytes.number(offsets + size_t{index.count} * static_cast<size_t>(width), width);
    return index;
}

struct TopDictionary {
    uint32_t charset = 0, charStrings = 0;
    bool cidKeyed = false;
};

TopDictionary readTopDictionary(const Bytes& bytes, size_t at, size_t end) {
    constexpr uint32_t charsetOperator = 15, charStringsOperator = 17, escape = 12, rosOperator = 30;
    TopDictionary dictionary;
    uint32_t operand = 0;
    while (at < end) {
        const uint32_t first = bytes.number(at++, 1);
        if (first >= 32 && first <= 246) {
            operand = first - 139;
        } else if (first >= 247 && first <= 254) {
            const uint32_t low = bytes.number(at++, 1);
            operand = first <= 250 ? (first - 247) * 256 + low + 108 : 0;
        } else if (first == 28) {
            operand = bytes.number(at, 2);
            at += 2;
        } else if (first == 29) {
            operand = bytes.number(at, 4);
            at += 4;
        } else if (first == 30) {  // a real number: half-bytes up to one of 15
            for (uint32_t pair = 0; (pair & 15) != 15 && pair >> 4 != 15;) pair = bytes.number(at++, 1);
        } else if (first == escape) {
            dictionary.cidKeyed = dictionary.cidKeyed || bytes.number(at, 1) == rosOperator;
            ++at;
        } else if (first == charsetOperator) {
            dictionary.charset = operand;
        } else if (first == charStringsOperator) {
            dictionary.charStrings = operand;
        }
    }
    return dictionary;
}

}  // namespace

std::vector<uint32_t> cidsOfGlyphs(const std::vector<uint8_t>& program) {
    const Bytes bytes(program);
    const Index names = readIndex(bytes, bytes.number(2, 1));
    const Index dictionaries = readIndex(bytes, names.end);
    if (dictionaries.count == 0) throw std::runtime_error("the CFF font program has no font");
    const TopDictionary top = readTopDictionary(bytes, dictionaries.firstObject, dictionaries.firstObjectEnd);
    if (!top.cidKeyed) return {};
    const uint32_t glyphs = bytes.number(top.charStrings, 2);
    std::vector<uint32_t> cids{0};
    constexpr uint32_t predefinedCharsets = 3;  // they are for fonts that aren't CID-keyed: glyph indices stand in
    if (top.charset < predefinedCharsets) {
        while (cids.size() < glyphs) cids.push_back(static_cast<uint32_t>(cids.size()));
        return cids;
    }
    const uint32_t format = bytes.number(top.charset, 1);
    if (format > 2) throw std::runtime_error("the CFF font program has a charset of an unknown kind");
    const int leftWidth = format == 2 ? 2 : format == 1 ? 1 : 0;
    for (size_t at = top.charset + size_t{1}; cids.size() < glyphs; at += 2 + static_cast<size_t>(leftWidth)) {
        const uint32_t first = bytes.number(at, 2);
        const uint32_t left = leftWidth > 0 ? bytes.number(at + 2, leftWidth) : 0;
        for (uint32_t i = 0; i <= left && cids.size() < glyphs; ++i) cids.push_back(first + i);
    }
    return cids;
}

}  // namespace desk
