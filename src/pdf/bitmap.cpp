#include "pdf/bitmap.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <vector>

// Needs size_t and FILE before it.
#include <jpeglib.h>

namespace vornaset {

namespace {

constexpr int kBestQuality = 100;
constexpr int kPixelsAnInch = 72;

struct JpegErrors {
    jpeg_error_mgr base;
    std::jmp_buf way;
};

/// The library leaves by a jump: nothing with a destructor may stand between here and encode().
[[noreturn]] void leave(j_common_ptr compressor) {
    std::longjmp(reinterpret_cast<JpegErrors*>(compressor->err)->way, 1);
}

/// Colour over white paper.
void flattenRow(const uint8_t* pixels, int64_t width, uint8_t* row) {
    for (int64_t x = 0; x < width; ++x, pixels += 4) {
        const int paper = 255 - pixels[3];
        for (int component = 0; component < 3; ++component) {
            const int value = pixels[component] + paper;
            *row++ = static_cast<uint8_t>(value > 255 ? 255 : value);
        }
    }
}

/// False when the library gives up. `bytes` is the library's memory, to be freed by the caller in any case.
bool encode(const Bitmap& bitmap, uint8_t* row, unsigned char** bytes, unsigned long* size) {
    jpeg_compress_struct compressor;
    JpegErrors errors;
    compressor.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = leave;
    errors.base.output_message = [](j_common_ptr) {};
    if (setjmp(errors.way) != 0) {
        jpeg_destroy_compress(&compressor);
        return false;
    }
    jpeg_create_compress(&compressor);
    jpeg_mem_dest(&compressor, bytes, size);
    compressor.image_width = static_cast<JDIMENSION>(bitmap.width);
    compressor.image_height = static_cast<JDIMENSION>(bitmap.height);
    compressor.input_components = 3;
    compressor.in_color_space = JCS_RGB;
    jpeg_set_defaults(&compressor);
    jpeg_set_quality(&compressor, kBestQuality, TRUE);
    compressor.comp_info[0].h_samp_factor = compressor.comp_info[0].v_samp_factor = 1;
    compressor.density_unit = 1;
    compressor.X_density = compressor.Y_density = kPixelsAnInch;
    jpeg_start_compress(&compressor, TRUE);
    const auto* pixels = reinterpret_cast<const uint8_t*>(bitmap.pixels.data());
    while (compressor.next_scanline < compressor.image_height) {
        flattenRow(pixels + static_cast<size_t>(compressor.next_scanline) * static_cast<size_t>(bitmap.width) * 4,
                   bitmap.width, row);
        JSAMPROW line = row;
        jpeg_write_scanlines(&compressor, &line, 1);
    }
    jpeg_finish_compress(&compressor);
    jpeg_destroy_compress(&compressor);
    return true;
}

}  // namespace

Data jpegDataWithBitmap(const Bitmap& bitmap) {
    if (bitmap.isEmpty() || bitmap.colours != PixelColours::rgba) return {};
    std::vector<uint8_t> row(static_cast<size_t>(bitmap.width) * 3);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const bool encoded = encode(bitmap, row.data(), &bytes, &size);
    Data result = encoded ? Data(std::string(reinterpret_cast<const char*>(bytes), size)) : Data();
    std::free(bytes);
    return result;
}

}  // namespace vornaset
