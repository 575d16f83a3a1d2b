#include "pdf/byte_filters.h"

#include <algorithm>
#include <array>

namespace vornaset {
namespace {

bool isWhiteSpace(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

UndoneBytes undoASCIIHex(std::string_view data, size_t limit) {
    UndoneBytes result{{}, UndoOutcome::partial};
    if (data.size() / 2 > limit) return {{}, UndoOutcome::tooLarge};
    result.bytes.reserve(data.size() / 2 + 1);
    int high = -1;
    for (char c : data) {
        if (isWhiteSpace(c)) continue;
        const int digit = hexDigit(c);
        if (digit < 0) {
            if (c == '>') result.outcome = UndoOutcome::whole;
            break;
        }
        if (high < 0) {
            high = digit;
        } else {
            result.bytes.push_back(static_cast<char>(high * 16 + digit));
            high = -1;
        }
    }
    if (high >= 0) result.bytes.push_back(static_cast<char>(high * 16));
    return result;
}

UndoneBytes undoASCII85(std::string_view data, size_t limit) {
    UndoneBytes result{{}, UndoOutcome::partial};
    const size_t start = std::min(data.find_first_not_of(std::string_view(" \n\r\t\f\0", 6)), data.size());
    data.remove_prefix(start);
    if (data.starts_with("<~")) data.remove_prefix(2);
    uint32_t group = 0;
    int count = 0;
    const auto append = [&](int bytes) {
        for (int at = 0; at < bytes; ++at) result.bytes.push_back(static_cast<char>(group >> (24 - 8 * at)));
    };
    for (char c : data) {
        if (result.bytes.size() > limit) return {{}, UndoOutcome::tooLarge};
        if (isWhiteSpace(c)) continue;
        if (c == 'z' && count == 0) {
            result.bytes.append(4, '\0');
            continue;
        }
        if (c < '!' || c > 'u') {
            if (c == '~') result.outcome = UndoOutcome::whole;
            break;
        }
        // A group above 2^32 - 1 breaks the rule; it wraps, as every other reader's does.
        group = group * 85 + static_cast<uint32_t>(c - '!');
        if (++count == 5) {
            append(4);
            group = 0;
            count = 0;
        }
    }
    if (count > 1) {
        for (int missing = count; missing < 5; ++missing) group = group * 85 + 84;
        append(count - 1);
    }
    return result;
}

UndoneBytes undoRunLength(std::string_view data, size_t limit) {
    UndoneBytes result{{}, UndoOutcome::partial};
    for (size_t at = 0; at < data.size();) {
        if (result.bytes.size() > limit) return {{}, UndoOutcome::tooLarge};
        const auto length = static_cast<unsigned char>(data[at++]);
        if (length == 128) {
            result.outcome = UndoOutcome::whole;
            break;
        }
        if (length < 128) {
            const std::string_view literal = data.substr(at, length + size_t{1});
            result.bytes.append(literal);
            at += literal.size();
        } else if (at < data.size()) {
            result.bytes.append(size_t{257} - length, data[at++]);
        }
    }
    return result.bytes.size() > limit ? UndoneBytes{{}, UndoOutcome::tooLarge} : result;
}

namespace {

/// The strings of an LZW decoder. An entry is a stretch of the output: where the code before it began, one byte longer.
class LZWTable {
  public:
    static constexpr int clear = 256;
    static constexpr int end = 257;
    static constexpr int first = 258;
    static constexpr int size = 4096;

    void reset() { next_ = first; }
    int next() const { return next_; }
    bool holds(int code) const { return code < clear || (code >= first && code < next_); }

    void add(size_t start, size_t length) {
        if (next_ < size) entries_[static_cast<size_t>(next_++)] = {start, length};
    }

    /// Appends the code's string to the output that it is a stretch of.
    void append(std::string& output, int code) const {
        if (code < clear) {
            output.push_back(static_cast<char>(code));
            return;
        }
        const Entry entry = entries_[static_cast<size_t>(code)];
        // The last byte may be the first of the stretch that is just being written.
        output.reserve(output.size() + entry.length);
        for (size_t at = 0; at < entry.length; ++at) output.push_back(output[entry.start + at]);
    }

  private:
    struct Entry {
        size_t start, length;
    };
    std::array<Entry, size> entries_;
    int next_ = first;
};

/// Codes from bytes, the highest bit first.
class CodeReader {
  public:
    explicit CodeReader(std::string_view data) : data_(data) {}
    /// -1 when fewer bits are left.
    int next(int width) {
        while (count_ < width) {
            if (at_ == data_.size()) return -1;
            bits_ = (bits_ << 8) | static_cast<unsigned char>(data_[at_++]);
            count_ += 8;
        }
        count_ -= width;
        return static_cast<int>((bits_ >> count_) & ((1U << width) - 1));
    }

  private:
    std::string_view data_;
    size_t at_ = 0;
    uint32_t bits_ = 0;
    int count_ = 0;
};

}  // namespace

UndoneBytes undoLZW(std::string_view data, LZWChange change, size_t limit) {
    UndoneBytes result{{}, UndoOutcome::partial};
    LZWTable table;
    CodeReader codes(data);
    const int lead = change == LZWChange::early ? 1 : 0;
    int width = 9;
    bool hasPrevious = false;
    size_t previousStart = 0;
    size_t previousLength = 0;
    for (int code; (code = codes.next(width)) >= 0;) {
        if (result.bytes.size() > limit) return {{}, UndoOutcome::tooLarge};
        if (code == LZWTable::end) {
            result.outcome = UndoOutcome::whole;
            break;
        }
        if (code == LZWTable::clear) {
            table.reset();
            width = 9;
            hasPrevious = false;
            continue;
        }
        const size_t start = result.bytes.size();
        // The new entry is the string before and the first byte of this one: it stands in the output once this one
        // does.
        if (hasPrevious) table.add(previousStart, previousLength + 1);
        if (!table.holds(code)) break;
        table.append(result.bytes, code);
        previousStart = start;
        previousLength = result.bytes.size() - start;
        hasPrevious = true;
        const int reached = table.next() + lead;
        width = reached < 512 ? 9 : reached < 1024 ? 10 : reached < 2048 ? 11 : 12;
    }
    return result.bytes.size() > limit ? UndoneBytes{{}, UndoOutcome::tooLarge} : result;
}

}  // namespace vornaset
