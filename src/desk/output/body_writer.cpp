#include "desk/output/body_writer.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "desk/output/content_buffer.h"

namespace desk {
namespace {

constexpr int kindShift = 62;
constexpr uint64_t inFile = uint64_t{1} << kindShift;
constexpr uint64_t inStream = uint64_t{2} << kindShift;
constexpr uint64_t valueMask = inFile - 1;
constexpr int indexBits = 16;

// The second line tells programs that look at the first bytes that the file is binary.
constexpr std::string_view header = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";

}  // namespace

struct BodyWriter::Compressor {
    explicit Compressor(int level) : handle(libdeflate_alloc_compressor(level)) {
        if (!handle) throw std::bad_alloc();
    }
    ~Compressor() { libdeflate_free_compressor(handle); }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    /// Good until the next call; empty when the result would not be shorter.
    std::string_view deflated(std::string_view bytes) {
        // Pictures may need much room once: don't keep it.
        constexpr size_t keptRoom = 1u << 22;
        if (room.size() > keptRoom && bytes.size() < keptRoom) std::vector<char>().swap(room);
        if (room.size() < bytes.size()) room.resize(bytes.size() * 2);
        const size_t size = libdeflate_zlib_compress(handle, bytes.data(), bytes.size(), room.data(), bytes.size());
        return {room.data(), size};
    }

    libdeflate_compressor* handle;
    std::vector<char> room;
};

BodyWriter::BodyWriter(const std::string& path, int compressionLevel)
    : file_(path), level_(std::clamp(compressionLevel, 0, 12)) {
    if (level_ > 0) compressor_ = std::make_unique<Compressor>(level_);
    put(header);
}

BodyWriter::~BodyWriter() = default;

void BodyWriter::put(std::string_view text) {
    digest_.add(text.data(), text.size());
    file_.write(text.data(), text.size());
}

uint64_t& BodyWriter::entry(ObjectNumber number) {
    if (number >= entries_.size()) entries_.resize(number + 1);
    return entries_[number];
}

void BodyWriter::write(const Batch& batch) {
    for (const Batch::Piece& piece : batch.pieces) writePiece(batch, piece);
}

void BodyWriter::writePiece(const Batch& batch, const Batch::Piece& piece) {
    for (size_t index = 0; index < piece.packedCount; ++index)
        entry(batch.packed[piece.packed + index]) = inStream | uint64_t{piece.number} << indexBits | index;
    const std::string_view text = batch.text;
    writeStream(piece.number, text.substr(piece.entries, piece.bytes - piece.entries),
                text.substr(piece.bytes, piece.end - piece.bytes), piece.compressed);
}

void BodyWriter::writeStream(ObjectNumber number, std::string_view entries, std::string_view bytes, bool compressed) {
    entry(number) = inFile | file_.position();
    std::string_view filter;
    if (compressed && compressor_) {
        const std::string_view deflated = compressor_->deflated(bytes);
        if (!deflated.empty()) {
            bytes = deflated;
            filter = "/Filter/FlateDecode";
        }
    }
    char head[48];
    char* end = ContentBuffer::writeInteger(head, number);
    constexpr std::string_view opening = " 0 obj\n<<";
    std::memcpy(end, opening.data(), opening.size());
    put({head, static_cast<size_t>(end - head) + opening.size()});
    put(entries);
    put(filter);
    put("/Length ");
    put({head, static_cast<size_t>(ContentBuffer::writeInteger(head, static_cast<int64_t>(bytes.size())) - head)});
    put(">>stream\n");
    put(bytes);
    put("\nendstream\nendobj\n");
}

/// One row an object: kind, offset or stream, index. Rows that will be deflated hold the difference from the row above
/// (and a first byte that says so): neighbours are alike.
std::string BodyWriter::crossReferenceRows(ObjectNumber last, int offsetWidth) const {
    const size_t width = 1 + static_cast<size_t>(offsetWidth) + 2;
    std::string rows;
    rows.reserve((last + size_t{1}) * (width + 1));
    std::string row(width, '\0'), above(width, '\0');
    for (ObjectNumber number = 0; number <= last; ++number) {
        const uint64_t entry = number < entries_.size() ? entries_[number] : 0;
        const uint64_t kind = entry >> kindShift;
        uint64_t value = entry & valueMask;
        uint64_t index = 0;
        if (kind == 2) {
            index = value & ((1u << indexBits) - 1);
            value >>= indexBits;
        } else if (kind == 0) {
            index = 0xFFFF;  // a free object that is never used again
        }
        row[0] = static_cast<char>(kind);
        for (int byte = 0; byte < offsetWidth; ++byte)
            row[static_cast<size_t>(offsetWidth - byte)] = static_cast<char>(value >> (8 * byte));
        row[width - 2] = static_cast<char>(index >> 8);
        row[width - 1] = static_cast<char>(index);
        if (!compressor_) {
            rows += row;
            continue;
        }
        rows += '\2';
        for (size_t i = 0; i < width; ++i) rows += static_cast<char>(row[i] - above[i]);
        above = row;
    }
    return rows;
}

void BodyWriter::finish(ObjectNumber crossReferences, ObjectNumber catalog, ObjectNumber info) {
    const uint64_t start = file_.position();
    entry(crossReferences) = inFile | start;
    const uint64_t largest = std::max(start, uint64_t{crossReferences});
    int offsetWidth = 1;
    while (offsetWidth < 7 && largest >> (8 * offsetWidth) != 0) ++offsetWidth;
    const std::string identifier = digest_.value();
    ContentBuffer entries;
    entries.append("/Type/XRef/Size ").integer(int64_t{crossReferences} + 1);
    entries.append("/W[1 ").integer(offsetWidth).append(" 2]/Root ").integer(catalog).append(" 0 R");
    if (info != 0) entries.append("/Info ").integer(info).append(" 0 R");
    entries.append("/ID[<").hexadecimal(identifier).append("><").hexadecimal(identifier).append(">]");
    const std::string rows = crossReferenceRows(crossReferences, offsetWidth);
    if (compressor_) {
        // The entries name a predictor, so the rows must go out deflated even where that makes them longer.
        std::vector<char> room(libdeflate_zlib_compress_bound(compressor_->handle, rows.size()));
        const size_t size =
            libdeflate_zlib_compress(compressor_->handle, rows.data(), rows.size(), room.data(), room.size());
        entries.append("/DecodeParms<</Predictor 12/Columns ").integer(offsetWidth + 3).append(">>/Filter/FlateDecode");
        writeStream(crossReferences, entries.view(), {room.data(), size}, false);
    } else {
        writeStream(crossReferences, entries.view(), rows, false);
    }
    ContentBuffer end;
    end.append("startxref\n").integer(static_cast<int64_t>(start)).append("\n%%EOF\n");
    put(end.view());
    file_.commit();
}

}  // namespace desk
