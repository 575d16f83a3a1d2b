#pragma once
// Objects leave for the file here: compressed, numbered, and remembered by eight bytes each.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "desk/output/output_file.h"
#include "desk/pictures/digest.h"

namespace desk {

/// Names an object of the file; 0 is none.
using ObjectNumber = uint32_t;

/// Objects on their way to the file, in the order of writing. All text stands in one buffer, so that a batch that was
/// written can be filled again without new memory.
struct Batch {
    struct Piece {
        ObjectNumber number = 0;
        size_t entries = 0;  ///< start of the stream dictionary's own entries in `text`
        size_t bytes = 0;    ///< start of the stream's bytes
        size_t end = 0;
        bool compressed = true;  ///< to be deflated; else the entries say what the bytes are
        size_t packed = 0;       ///< objects inside an object stream: range of `packed`
        size_t packedCount = 0;
    };

    std::string text;
    std::vector<Piece> pieces;
    std::vector<ObjectNumber> packed;

    void clear() {
        text.clear();
        pieces.clear();
        packed.clear();
    }
};

class BodyWriter {
  public:
    /// Level 0 writes streams as they are, 1..12 as libdeflate counts. Throws InputError as OutputFile does.
    BodyWriter(const std::string& path, int compressionLevel);
    ~BodyWriter();

    /// Throws InputError when the file can't be written.
    void write(const Batch& batch);

    /// Writes the cross-reference stream as the object `crossReferences`, which is the last number, and puts the file
    /// under its name. `info` may be 0.
    void finish(ObjectNumber crossReferences, ObjectNumber catalog, ObjectNumber info);

  private:
    struct Compressor;
    void writePiece(const Batch& batch, const Batch::Piece& piece);
    void writeStream(ObjectNumber number, std::string_view entries, std::string_view bytes, bool compressed);
    void put(std::string_view text);
    uint64_t& entry(ObjectNumber number);
    std::string crossReferenceRows(ObjectNumber last, int offsetWidth) const;

    OutputFile file_;
    int level_;
    std::unique_ptr<Compressor> compressor_;
    Digest digest_;
    /// For each object: 0 free; kind in the two high bits, 1 a file offset, 2 an object stream's number and an index.
    std::vector<uint64_t> entries_;
};

}  // namespace desk
