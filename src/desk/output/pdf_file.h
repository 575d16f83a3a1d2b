#pragma once
// A PDF 1.7 file written in one pass. Objects leave for the file at once; only their offsets stay, eight bytes each.
//
// Objects without a stream are packed into object streams. ISO 32000-1, 7.5.7 and 7.5.8.

#include <memory>
#include <string>
#include <string_view>

#include "desk/output/body_writer.h"
#include "desk/output/content_buffer.h"

namespace desk {

/// Whether bytes given to writeStream are deflated on their way, or are encoded as the entries say.
enum class StreamBytes { Deflate, AsTheyAre };

/// Where compression and writing happen. The file's bytes are the same.
enum class Writing { InBackground, InPlace };

class PdfFile {
  public:
    /// Throws InputError when the file can't be made. Level 0 compresses nothing, 1..12 as libdeflate counts.
    PdfFile(const std::string& path, int compressionLevel, Writing writing);
    /// Without finish(): nothing stands under the name but what was there before.
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    /// A number for an object that is written later (or never, then it is free). From 1 upwards.
    ObjectNumber allocate() { return ++lastNumber_; }

    /// `entries` are those of the stream's dictionary without its brackets, /Length and (for bytes to be deflated)
    /// /Filter. Throws InputError when the file can't be written, perhaps for what was given earlier.
    void writeStream(ObjectNumber number, std::string_view entries, std::string_view bytes,
                     StreamBytes kind = StreamBytes::Deflate);

    /// Any object but a stream. Throws as writeStream does.
    void writeObject(ObjectNumber number, std::string_view object);

    /// Waits for everything to be written, and puts the file under its name. Nothing may be called after it.
    /// `info` may be 0. Throws InputError.
    void finish(ObjectNumber catalog, ObjectNumber info);

  private:
    class Background;
    void closeObjectStream();
    void passOn();

    BodyWriter body_;
    std::unique_ptr<Background> background_;  ///< null when writing in place
    ObjectNumber lastNumber_ = 0;
    Batch batch_;
    // The object stream that is being filled.
    ContentBuffer packedPlaces_;
    ContentBuffer packedObjects_;
    std::vector<ObjectNumber> packedNumbers_;
};

}  // namespace desk
