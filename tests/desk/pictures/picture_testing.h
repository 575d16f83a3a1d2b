#pragma once
// What tests of pictures share: pictures made in memory, a folder, a sink that shows what was written.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "desk/pictures/content.h"

namespace desk::testing {

/// A folder of its own, removed with the object.
class PictureFolder {
  public:
    PictureFolder();
    ~PictureFolder();
    PictureFolder(const PictureFolder&) = delete;
    PictureFolder& operator=(const PictureFolder&) = delete;

    std::string operator/(const std::string& name) const { return (path_ / name).string(); }
    const std::filesystem::path& path() const { return path_; }
    /// Writes a file, gives its path.
    std::string write(const std::string& name, const std::string& bytes) const;
    /// Writes a file that bears a time long past, so that its stamp is firm.
    std::string writeOld(const std::string& name, const std::string& bytes) const;

  private:
    std::filesystem::path path_;
};

SharedBytes shared(std::string bytes);

/// Remembers every object by its number.
class RecordingSink final : public PictureSink {
  public:
    struct Object {
        std::string text;   ///< of a stream its entries
        std::string bytes;  ///< of a stream
        bool isStream = false, isEncoded = false;
    };
    std::map<Number, Object> objects;
    std::vector<AbsentFont> absentFonts;
    std::map<Number, bool> layers;  ///< with whether they show
    bool hasStandIns = true;

    Number allocate() override { return ++last_; }
    void writeObject(Number number, std::string_view object) override;
    void writeEncodedStream(Number number, std::string_view entries, std::string_view bytes) override;
    void writePlainStream(Number number, std::string_view entries, std::string_view bytes) override;
    Number shared(std::string_view object) override;
    Number sharedStream(std::string_view entries, std::string_view bytes) override;
    Number standIn(const AbsentFont& font) override;
    Number known(const PictureIdentity& file, uint64_t object) override;
    void remember(const PictureIdentity& file, uint64_t object, Number number) override;
    void addLayer(Number layer, bool isShown) override { layers[layer] = isShown; }

    /// The object that a value such as "/SMask 3 0 R" names.
    const Object& objectAt(const std::string& entries, const std::string& key) const;

  private:
    Number last_ = 0;
    std::map<std::string, Number> shared_;
    std::map<std::pair<std::array<uint64_t, 2>, uint64_t>, Number> known_;
};

/// The XObject of a content's page.
RecordingSink::Object written(const PictureContent& content, RecordingSink& sink, int page = 1,
                              PageBox box = PageBox::Crop);

/// The sentence part with which reading refuses; empty when it doesn't.
std::string refusal(const std::function<void()>& work);

struct JpegOptions {
    bool progressive = false;
    int density = 0;         ///< pixels an inch; 0 leaves the aspect ratio alone
    bool asRgb = false;      ///< RGB components without the usual transform and without Adobe's mark
    bool adobeMark = false;  ///< CMYK with Adobe's mark
    std::string profile;
    int orientation = 0;  ///< 1 to 8 adds an Exif segment
};
std::string jpegOf(int width, int height, int components, const JpegOptions& options = {});

struct PngOptions {
    bool interlaced = false;  ///< only sets the mark: the rows must be in order of the passes
    std::string palette, transparency, profile;
    std::vector<std::pair<std::string, std::string>> chunks;  ///< further ones in front of the pixels: type, data
    uint32_t pixelsPerMetre = 0;
};
/// `rows` with the filter byte in front of every row.
std::string pngOf(uint32_t width, uint32_t height, int bits, int colourType, const std::string& rows,
                  const PngOptions& options = {});
/// A chunk with its length and check value.
std::string pngChunk(const std::string& type, const std::string& data);
std::string deflatedForTest(const std::string& bytes);
std::string inflatedForTest(const std::string& bytes);

struct TiffOptions {
    uint16_t samples = 1, bits = 8, photometric = 1;
    uint16_t extraSample = 0xFFFF;  ///< 1 multiplied, 2 plain alpha
    bool separate = false;
    uint32_t resolution = 0;
    uint16_t resolutionUnit = 2;
    uint16_t orientation = 0;
    uint16_t compression = 1;
    std::string profile;
    std::vector<uint16_t> colourMap;
};
/// One strip (a strip a plane when separate), little-endian.
std::string tiffOf(uint32_t width, uint32_t height, const std::string& pixels, const TiffOptions& options);

/// Objects 1, 2, 3... with a classic table; object 1 is the catalog. A stream is given whole.
std::string pdfOf(const std::vector<std::string>& objects, const std::string& trailerEntries = {});
std::string streamOf(const std::string& entries, const std::string& bytes);
/// One page of the kind that barcode tools make: deflated content, Courier that isn't embedded.
std::string barcodePdf(double width, double height, const std::string& content);

/// A small ICC profile for 1, 3 or 4 channels.
std::string profileFor(int channels);

/// The output of a shell command.
std::string outputOf(const std::string& command);

}  // namespace desk::testing
