#pragma once
// A picture as the toolkit hands it out: the bytes of a file, or plain samples. Null stands for no picture.

#include <cstdint>
#include <memory>

#include "support/values.h"

namespace vornaset {

enum class DeviceColourSpace { rgb, cmyk };

class Image {
  public:
    enum class Kind { pdfPage, jpeg, samples };

    /// One page as a PDF file; the size is that of its crop box.
    static std::shared_ptr<const Image> withPDFPage(Data file, double width, double height);
    /// The bytes of a JPEG file. Null when they don't begin as one does.
    static std::shared_ptr<const Image> withJPEG(Data file);
    /// Rows from the top, each beginning at a whole byte. Null for a width, a height or a sample size that no picture
    /// has, and for fewer bytes than the rows take.
    static std::shared_ptr<const Image> withSamples(Data samples, int64_t width, int64_t height,
                                                    int64_t bitsPerComponent, DeviceColourSpace colourSpace);

    Kind kind() const noexcept { return kind_; }
    /// In points; for samples and JPEG files one for each pixel.
    double width() const noexcept { return width_; }
    double height() const noexcept { return height_; }
    const Data& data() const noexcept { return data_; }
    /// Of samples; else 0 and RGB.
    int64_t bitsPerComponent() const noexcept { return bitsPerComponent_; }
    DeviceColourSpace colourSpace() const noexcept { return colourSpace_; }

  private:
    Image() = default;

    Kind kind_ = Kind::samples;
    double width_ = 0;
    double height_ = 0;
    Data data_;
    int64_t bitsPerComponent_ = 0;
    DeviceColourSpace colourSpace_ = DeviceColourSpace::rgb;
};

}  // namespace vornaset
