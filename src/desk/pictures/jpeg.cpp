// JPEG files go into a PDF as they are: only their markers are read. ITU-T T.81, annex B.

#include <algorithm>
#include <map>

#include "desk/pictures/colour_profile.h"
#include "desk/pictures/pixels.h"

namespace desk {
namespace {

constexpr int endOfImage = 0xD9, startOfScan = 0xDA;

uint32_t bigEndian16(std::string_view bytes, size_t at) {
    return static_cast<uint32_t>(static_cast<unsigned char>(bytes[at])) << 8 |
           static_cast<unsigned char>(bytes[at + 1]);
}

/// Integers of a TIFF structure in either order of bytes; 0 beyond its end.
class TiffNumbers {
  public:
    explicit TiffNumbers(std::string_view bytes) : bytes_(bytes), little_(bytes.starts_with("II")) {}
    uint32_t read(size_t at, size_t size) const {
        if (at > bytes_.size() || bytes_.size() - at < size) return 0;
        uint32_t value = 0;
        for (size_t i = 0; i < size; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes_[little_ ? at + size - 1 - i : at + i]);
        return value;
    }

  private:
    std::string_view bytes_;
    bool little_;
};

struct Exif {
    int orientation = 1;
    double x = 0, y = 0;  ///< pixels an inch; 0 for none
};

/// The first directory of the Exif structure. CIPA DC-008, 4.6.
Exif readExif(std::string_view bytes) {
    constexpr uint32_t orientationTag = 0x112, xTag = 0x11A, yTag = 0x11B, unitTag = 0x128;
    constexpr size_t entrySize = 12;
    Exif exif;
    const TiffNumbers numbers(bytes);
    const size_t directory = numbers.read(4, 4);
    const uint32_t count = numbers.read(directory, 2);
    double unit = 1;
    for (uint32_t i = 0; i < count && i < 1000; ++i) {
        const size_t entry = directory + 2 + i * entrySize;
        const uint32_t tag = numbers.read(entry, 2);
        const size_t place = numbers.read(entry + 8, 4);
        const auto rational = [&] {
            const uint32_t below = numbers.read(place + 4, 4);
            return below == 0 ? 0 : static_cast<double>(numbers.read(place, 4)) / below;
        };
        if (tag == orientationTag) exif.orientation = static_cast<int>(numbers.read(entry + 8, 2));
        if (tag == xTag) exif.x = rational();
        if (tag == yTag) exif.y = rational();
        if (tag == unitTag && numbers.read(entry + 8, 2) == 3) unit = 2.54;
    }
    exif.x *= unit;
    exif.y *= unit;
    if (exif.orientation < 1 || exif.orientation > 8) exif.orientation = 1;
    return exif;
}

class JpegReader {
  public:
    explicit JpegReader(const SharedBytes& bytes) : shared_(bytes), bytes_(*bytes) {}

    std::unique_ptr<PictureContent> read() {
        readMarkers();
        if (picture_.layout.width == 0) throw cutOff();
        picture_.bytes = shared_;
        picture_.entries = "/Filter/DCTDecode";
        const int samples = picture_.layout.samples;
        picture_.colours.samples = samples;
        // Programs that leave the Adobe mark store inks inverted.
        if (samples == 4 && adobe_) picture_.decode = "1 0 1 0 1 0 1 0";
        if (samples == 3 && !adobe_ && componentNames_ == "RGB")
            picture_.entries += "/DecodeParms<</ColorTransform 0>>";
        std::string profile;
        for (const auto& [number, part] : profileParts_) profile += part;
        picture_.colours.profile = usableProfile(profile, samples);
        setResolution();
        return contentOf(std::move(picture_));
    }

  private:
    static PictureError cutOff() { return PictureError("is cut off in the middle. Copy or save it again"); }

    void readMarkers() {
        size_t at = 2;
        for (;;) {
            const int marker = nextMarker(at);
            if (marker == endOfImage) return;
            if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) continue;  // stand alone
            if (at + 2 > bytes_.size()) throw cutOff();
            const size_t length = bigEndian16(bytes_, at);
            if (length < 2 || bytes_.size() - at < length) throw cutOff();
            readSegment(marker, bytes_.substr(at + 2, length - 2));
            at += length;
            if (marker == startOfScan && picture_.layout.width == 0) throw PictureError("is damaged. Save it again");
        }
    }

    /// The next marker, past entropy-coded data and fill bytes; `at` comes behind it.
    int nextMarker(size_t& at) const {
        for (;;) {
            const size_t found = bytes_.find('\xFF', at);
            if (found == std::string_view::npos || found + 1 >= bytes_.size()) throw cutOff();
            at = found + 1;
            const int marker = static_cast<unsigned char>(bytes_[at]);
            if (marker == 0xFF) continue;
            ++at;
            if (marker != 0) return marker;
        }
    }

    void readSegment(int marker, std::string_view data) {
        const bool isFrame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (isFrame) readFrame(marker, data);
        if (marker == 0xE0 && data.starts_with(std::string_view("JFIF\0", 5)) && data.size() >= 12) {
            unit_ = static_cast<unsigned char>(data[7]);
            densityX_ = bigEndian16(data, 8);
            densityY_ = bigEndian16(data, 10);
        }
        if (marker == 0xE1 && data.starts_with(std::string_view("Exif\0\0", 6))) exif_ = readExif(data.substr(6));
        constexpr std::string_view profileMark("ICC_PROFILE\0", 12);
        if (marker == 0xE2 && data.starts_with(profileMark) && data.size() > 14)
            profileParts_.emplace(static_cast<unsigned char>(data[12]), std::string(data.substr(14)));
        if (marker == 0xEE && data.starts_with("Adobe") && data.size() >= 12) adobe_ = true;
    }

    void readFrame(int marker, std::string_view data) {
        if (picture_.layout.width != 0) return;
        if (data.size() < 6) throw PictureError("is damaged. Save it again");
        const int precision = static_cast<unsigned char>(data[0]);
        // PDF knows baseline, extended and progressive frames of eight bits. ISO 32000-1, 7.4.8.
        if (marker > 0xC2 || precision != 8)
            throw PictureError("is a JPEG of a kind that a PDF can't hold. Save it as a baseline JPEG");
        picture_.layout.height = bigEndian16(data, 1);
        picture_.layout.width = bigEndian16(data, 3);
        const int samples = static_cast<unsigned char>(data[5]);
        if (samples != 1 && samples != 3 && samples != 4)
            throw PictureError("has " + std::to_string(samples) + " colour channels. Save it as gray, RGB or CMYK");
        if (data.size() < 6 + 3 * static_cast<size_t>(samples)) throw PictureError("is damaged. Save it again");
        for (int i = 0; i < samples; ++i) componentNames_ += data[6 + 3 * static_cast<size_t>(i)];
        picture_.layout.samples = samples;
        checkPixelSize(picture_.layout.width, picture_.layout.height, 8 * static_cast<uint64_t>(samples),
                       bytes_.size());
    }

    void setResolution() {
        picture_.orientation = exif_.orientation;
        const double unit = unit_ == 1 ? 1 : unit_ == 2 ? 2.54 : 0;
        picture_.pixelsPerInchX = unit != 0 ? densityX_ * unit : exif_.x;
        picture_.pixelsPerInchY = unit != 0 ? densityY_ * unit : exif_.y;
    }

    SharedBytes shared_;
    std::string_view bytes_;
    PixelPicture picture_;
    bool adobe_ = false;
    int unit_ = 0;
    double densityX_ = 0, densityY_ = 0;
    Exif exif_;
    std::string componentNames_;
    std::map<int, std::string> profileParts_;
};

}  // namespace

std::unique_ptr<PictureContent> readJpeg(const SharedBytes& bytes) {
    return JpegReader(bytes).read();
}

}  // namespace desk
