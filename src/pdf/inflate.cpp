#include "pdf/inflate.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace vornaset {
namespace {

constexpr size_t smallestRoom = 4096;
constexpr size_t likelyRatio = 4;  // of decoded to encoded bytes; more costs a second attempt

struct DecompressorEnd {
    void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
};
using Decompressor = std::unique_ptr<libdeflate_decompressor, DecompressorEnd>;

/// The end of an inflation, whatever the way out.
class Inflation {
  public:
    explicit Inflation(int windowBits) : isReady_(inflateInit2(&stream_, windowBits) == Z_OK) {}
    Inflation(const Inflation&) = delete;
    Inflation& operator=(const Inflation&) = delete;
    ~Inflation() {
        if (isReady_) inflateEnd(&stream_);
    }
    bool isReady() const { return isReady_; }
    z_stream& stream() { return stream_; }

  private:
    z_stream stream_{};
    bool isReady_;
};

/// As much as zlib can make of the data. With a raw format there is no header to be damaged.
UndoneBytes inflatedAsFarAsPossible(std::string_view data, size_t limit, int windowBits) {
    UndoneBytes result{{}, UndoOutcome::partial};
    Inflation inflation(windowBits);
    if (!inflation.isReady()) return result;
    z_stream& stream = inflation.stream();
    size_t taken = 0;
    size_t given = 0;
    for (int outcome = Z_OK; outcome == Z_OK;) {
        if (given > limit) return {{}, UndoOutcome::tooLarge};
        if (given == result.bytes.size()) result.bytes.resize(std::min(std::max(smallestRoom, given * 2), limit + 1));
        constexpr size_t most = std::numeric_limits<uInt>::max();
        const size_t input = std::min(data.size() - taken, most);
        const size_t room = std::min(result.bytes.size() - given, most);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data() + taken));
        stream.avail_in = static_cast<uInt>(input);
        stream.next_out = reinterpret_cast<Bytef*>(result.bytes.data() + given);
        stream.avail_out = static_cast<uInt>(room);
        outcome = inflate(&stream, Z_NO_FLUSH);
        taken += input - stream.avail_in;
        given += room - stream.avail_out;
        if (outcome == Z_STREAM_END) result.outcome = UndoOutcome::whole;
    }
    if (given > limit) return {{}, UndoOutcome::tooLarge};
    result.bytes.resize(given);
    return result;
}

}  // namespace

UndoneBytes inflated(std::string_view data, size_t limit) {
    thread_local const Decompressor decompressor(libdeflate_alloc_decompressor());
    size_t room = std::min(std::max(data.size() * likelyRatio, smallestRoom), limit);
    while (decompressor != nullptr) {
        UndoneBytes result;
        result.bytes.resize(room);
        size_t taken = 0;
        size_t given = 0;
        const libdeflate_result outcome = libdeflate_zlib_decompress_ex(decompressor.get(), data.data(), data.size(),
                                                                        result.bytes.data(), room, &taken, &given);
        if (outcome == LIBDEFLATE_SUCCESS) {
            result.bytes.resize(given);
            // Decoded streams stay in memory as long as their document: no more than a quarter of that is waste.
            if (result.bytes.capacity() - given > result.bytes.capacity() / 4) result.bytes.shrink_to_fit();
            return result;
        }
        if (outcome != LIBDEFLATE_INSUFFICIENT_SPACE) break;
        if (room == limit) return {{}, UndoOutcome::tooLarge};
        room = room > limit / 4 ? limit : room * 4;
    }
    UndoneBytes damaged = inflatedAsFarAsPossible(data, limit, MAX_WBITS);
    if (!damaged.bytes.empty() || damaged.outcome != UndoOutcome::partial || data.size() <= 2) return damaged;
    // The two bytes of the header are damaged, or there is none.
    UndoneBytes behindHeader = inflatedAsFarAsPossible(data.substr(2), limit, -MAX_WBITS);
    if (behindHeader.bytes.empty()) behindHeader = inflatedAsFarAsPossible(data, limit, -MAX_WBITS);
    if (behindHeader.outcome == UndoOutcome::whole) behindHeader.outcome = UndoOutcome::partial;
    return behindHeader;
}

}  // namespace vornaset
