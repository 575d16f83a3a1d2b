#include "pdf/stream_compression.h"

#include <zlib.h>

#include <limits>
#include <new>
#include <string>

namespace vornaset {

namespace {

/// zlib's state for compressing, kept for the next stream of the thread: making one costs more than a small stream.
class Deflater {
  public:
    Deflater() : isReady_(deflateInit(&stream_, Z_DEFAULT_COMPRESSION) == Z_OK) {}
    ~Deflater() {
        if (isReady_) deflateEnd(&stream_);
    }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    /// False when zlib fails.
    bool compress(std::string_view source, std::string& result) {
        if (!isReady_ || deflateReset(&stream_) != Z_OK) return false;
        constexpr size_t kLargestPiece = std::numeric_limits<uInt>::max();
        size_t taken = 0;
        size_t given = 0;
        int state = Z_OK;
        while (state == Z_OK) {
            const size_t piece = std::min(source.size() - taken, kLargestPiece);
            const size_t room = std::min(result.size() - given, kLargestPiece);
            // zlib only reads its input; its interface predates const.
            stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(source.data() + taken));
            stream_.avail_in = static_cast<uInt>(piece);
            stream_.next_out = reinterpret_cast<Bytef*>(result.data() + given);
            stream_.avail_out = static_cast<uInt>(room);
            state = deflate(&stream_, taken + piece == source.size() ? Z_FINISH : Z_NO_FLUSH);
            taken += piece - stream_.avail_in;
            given += room - stream_.avail_out;
        }
        result.resize(given);
        return state == Z_STREAM_END;
    }

  private:
    z_stream stream_{};
    bool isReady_;
};

}  // namespace

Data compressedData(const Data& bytes) {
    try {
        std::string result(compressBound(bytes.length()) + 4, '\0');
        thread_local Deflater deflater;
        if (!deflater.compress(bytes.view(), result)) return {};
        result.shrink_to_fit();
        return Data(std::move(result));
    } catch (const std::bad_alloc&) {
        return {};
    } catch (const std::length_error&) {
        return {};
    }
}

}  // namespace vornaset
