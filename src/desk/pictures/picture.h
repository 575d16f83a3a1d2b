#pragma once
// A picture as it can be placed: what it is, how large it is, and how to write what draws it.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "desk/model/placed_graphic.h"

namespace desk {

enum class PictureFormat : uint8_t { Jpeg, Png, Tiff, Pdf, Svg, Eps };

/// The element by which a package names a picture of this format: Image, PDF, EPS or SVG.
const char* elementNameOf(PictureFormat format);

/// Equal for pictures that draw the same: made from the file's bytes, the page and the box.
struct PictureIdentity {
    std::array<uint64_t, 2> words{};
    bool operator==(const PictureIdentity&) const = default;
};

/// A font that a placed page names but doesn't carry, with what a stand-in must know.
struct AbsentFont {
    std::string baseFont;  ///< one of the 14 standard names: "Courier", "Helvetica-Bold", ...
    /// Unicode of each code; 0 for a code without a character.
    std::array<char16_t, 256> characters{};
    bool operator==(const AbsentFont&) const = default;
};

/// Takes the PDF objects of a picture. Numbers are those of the file that is written.
class PictureSink {
  public:
    using Number = uint32_t;
    virtual ~PictureSink() = default;

    virtual Number allocate() = 0;
    virtual void writeObject(Number number, std::string_view object) = 0;
    /// `entries` are those of the stream's dictionary without brackets and /Length, /Filter among them when the bytes
    /// are encoded.
    virtual void writeEncodedStream(Number number, std::string_view entries, std::string_view bytes) = 0;
    /// The sink encodes the bytes; `entries` name no filter.
    virtual void writePlainStream(Number number, std::string_view entries, std::string_view bytes) = 0;

    /// An object that says this text; the same text gives the same number.
    virtual Number shared(std::string_view object) = 0;
    /// The same for a stream of plain bytes, such as a colour profile.
    virtual Number sharedStream(std::string_view entries, std::string_view bytes) = 0;
    /// An embedded font that stands in. 0 when there is none: then the font stays as it is.
    virtual Number standIn(const AbsentFont& font) = 0;

    /// What the sink got for an object of a file that pictures share (a font of a PDF of several pages), 0 for an
    /// object that hasn't come yet; then `number` is remembered for it.
    virtual Number known(const PictureIdentity& file, uint64_t object) = 0;
    virtual void remember(const PictureIdentity& file, uint64_t object, Number number) = 0;

    /// Says of a written object that it is a layer of a placed page (an optional content group), and whether its own
    /// file shows it. Told once for each layer.
    virtual void addLayer(Number layer, bool isShown) = 0;
};

class Picture {
  public:
    virtual ~Picture() = default;

    PictureFormat format = PictureFormat::Jpeg;
    double width = 0, height = 0;  ///< natural size, points; both above 0
    int page = 1;                  ///< of a PDF, from 1
    int pageCount = 1;
    std::string path;  ///< the file it came from; empty for embedded bytes
    PictureIdentity identity;
    /// Maps what the XObject paints (an image the unit square, a form its own points) to 0..width, 0..height, y
    /// upwards.
    Matrix toNatural;
    bool isTransparent = false;  ///< what lies below may show through

    /// Writes the XObject and what it needs, gives the XObject's number. The file is read again when its bytes are no
    /// longer held. Throws InputError when it can't be, or isn't the same file any more.
    virtual PictureSink::Number write(PictureSink& sink) const = 0;
};

}  // namespace desk
