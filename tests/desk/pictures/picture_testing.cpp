#include "desk/pictures/picture_testing.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <lcms2.h>
#include <libdeflate.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <thread>

extern "C" {
#include <jpeglib.h>
}

namespace desk::testing {
namespace {

std::string bigEndian32(uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift);
    return bytes;
}
std::string littleEndian(uint64_t value, int size) {
    std::string bytes;
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

}  // namespace

PictureFolder::PictureFolder() {
    static std::atomic<int> count = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("vornaset-pictures-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
    std::filesystem::create_directories(path_);
}

PictureFolder::~PictureFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string PictureFolder::write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream file(path_ / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return (path_ / name).string();
}

std::string PictureFolder::writeOld(const std::string& name, const std::string& bytes) const {
    const std::string path = write(name, bytes);
    // The time of the last change of a file's facts can't be set: it has to pass.
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
    return path;
}

SharedBytes shared(std::string bytes) {
    return std::make_shared<const std::string>(std::move(bytes));
}

void RecordingSink::writeObject(Number number, std::string_view object) {
    EXPECT_FALSE(objects.contains(number));
    objects[number] = {std::string(object), {}, false, false};
}
void RecordingSink::writeEncodedStream(Number number, std::string_view entries, std::string_view bytes) {
    EXPECT_FALSE(objects.contains(number));
    objects[number] = {std::string(entries), std::string(bytes), true, true};
}
void RecordingSink::writePlainStream(Number number, std::string_view entries, std::string_view bytes) {
    EXPECT_FALSE(objects.contains(number));
    objects[number] = {std::string(entries), std::string(bytes), true, false};
}
PictureSink::Number RecordingSink::shared(std::string_view object) {
    Number& number = shared_[std::string(object)];
    if (number == 0) writeObject(number = allocate(), object);
    return number;
}
PictureSink::Number RecordingSink::sharedStream(std::string_view entries, std::string_view bytes) {
    Number& number = shared_[std::string(entries) + "|" + std::string(bytes)];
    if (number == 0) writePlainStream(number = allocate(), entries, bytes);
    return number;
}
PictureSink::Number RecordingSink::standIn(const AbsentFont& font) {
    absentFonts.push_back(font);
    return hasStandIns ? shared("stand-in for " + font.baseFont) : 0;
}
PictureSink::Number RecordingSink::known(const PictureIdentity& file, uint64_t object) {
    const auto found = known_.find({file.words, object});
    return found == known_.end() ? 0 : found->second;
}
void RecordingSink::remember(const PictureIdentity& file, uint64_t object, Number number) {
    known_[{file.words, object}] = number;
}

const RecordingSink::Object& RecordingSink::objectAt(const std::string& entries, const std::string& key) const {
    const size_t at = entries.find(key + " ");
    EXPECT_NE(at, std::string::npos) << entries;
    return objects.at(static_cast<Number>(std::stoul(entries.substr(at + key.size() + 1))));
}

RecordingSink::Object written(const PictureContent& content, RecordingSink& sink, int page, PageBox box) {
    return sink.objects.at(content.write(page, box, {}, sink));
}

std::string refusal(const std::function<void()>& work) {
    try {
        work();
    } catch (const PictureError& failure) {
        return failure.what();
    }
    return {};
}

std::string jpegOf(int width, int height, int components, const JpegOptions& options) {
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &bytes, &size);
    jpeg.image_width = static_cast<JDIMENSION>(width);
    jpeg.image_height = static_cast<JDIMENSION>(height);
    jpeg.input_components = components;
    jpeg.in_color_space = components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&jpeg);
    if (options.asRgb) {
        jpeg_set_colorspace(&jpeg, JCS_RGB);
        jpeg.write_Adobe_marker = FALSE;
    }
    if (components == 4) jpeg.write_Adobe_marker = options.adobeMark ? TRUE : FALSE;
    if (options.progressive) jpeg_simple_progression(&jpeg);
    if (options.density > 0) {
        jpeg.write_JFIF_header = TRUE;
        jpeg.density_unit = 1;
        jpeg.X_density = jpeg.Y_density = static_cast<UINT16>(options.density);
    }
    jpeg_start_compress(&jpeg, TRUE);
    if (options.orientation > 0) {
        std::string exif("Exif\0\0II*\0", 10);
        exif += littleEndian(8, 4) + littleEndian(1, 2) + littleEndian(0x112, 2) + littleEndian(3, 2) +
                littleEndian(1, 4) + littleEndian(static_cast<uint64_t>(options.orientation), 4) + littleEndian(0, 4);
        jpeg_write_marker(&jpeg, JPEG_APP0 + 1, reinterpret_cast<const JOCTET*>(exif.data()),
                          static_cast<unsigned>(exif.size()));
    }
    if (!options.profile.empty())
        jpeg_write_icc_profile(&jpeg, reinterpret_cast<const JOCTET*>(options.profile.data()),
                               static_cast<unsigned>(options.profile.size()));
    std::vector<JSAMPLE> row(static_cast<size_t>(width * components));
    while (jpeg.next_scanline < jpeg.image_height) {
        for (size_t i = 0; i < row.size(); ++i) row[i] = static_cast<JSAMPLE>(i * 7 + jpeg.next_scanline * 13);
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&jpeg, &rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    std::string result(reinterpret_cast<char*>(bytes), size);
    jpeg_destroy_compress(&jpeg);
    std::free(bytes);
    return result;
}

std::string deflatedForTest(const std::string& bytes) {
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    std::string out(libdeflate_zlib_compress_bound(compressor, bytes.size()), '\0');
    out.resize(libdeflate_zlib_compress(compressor, bytes.data(), bytes.size(), out.data(), out.size()));
    libdeflate_free_compressor(compressor);
    return out;
}

std::string inflatedForTest(const std::string& bytes) {
    libdeflate_decompressor* decompressor = libdeflate_alloc_decompressor();
    std::string out(1u << 22, '\0');
    size_t size = 0;
    const auto result =
        libdeflate_zlib_decompress(decompressor, bytes.data(), bytes.size(), out.data(), out.size(), &size);
    libdeflate_free_decompressor(decompressor);
    EXPECT_EQ(result, LIBDEFLATE_SUCCESS);
    out.resize(size);
    return out;
}

std::string pngChunk(const std::string& type, const std::string& data) {
    const std::string body = type + data;
    return bigEndian32(static_cast<uint32_t>(data.size())) + body +
           bigEndian32(libdeflate_crc32(0, body.data(), body.size()));
}

std::string pngOf(uint32_t width, uint32_t height, int bits, int colourType, const std::string& rows,
                  const PngOptions& options) {
    std::string head = bigEndian32(width) + bigEndian32(height);
    for (const int value : {bits, colourType, 0, 0, options.interlaced ? 1 : 0}) head += static_cast<char>(value);
    std::string png = "\x89PNG\r\n\x1A\n" + pngChunk("IHDR", head);
    if (!options.profile.empty())
        png += pngChunk("iCCP", "name" + std::string(2, '\0') + deflatedForTest(options.profile));
    for (const auto& [type, data] : options.chunks) png += pngChunk(type, data);
    if (!options.palette.empty()) png += pngChunk("PLTE", options.palette);
    if (!options.transparency.empty()) png += pngChunk("tRNS", options.transparency);
    if (options.pixelsPerMetre > 0)
        png += pngChunk("pHYs", bigEndian32(options.pixelsPerMetre) + bigEndian32(options.pixelsPerMetre) + "\x01");
    return png + pngChunk("IDAT", deflatedForTest(rows)) + pngChunk("IEND", "");
}

std::string tiffOf(uint32_t width, uint32_t height, const std::string& pixels, const TiffOptions& options) {
    struct Field {
        uint16_t tag, type;
        uint32_t count;
        std::string value;
    };
    const size_t planes = options.separate ? options.samples : 1;
    std::string head("II*\0", 4);
    std::string body = pixels;
    const auto shorts = [](std::initializer_list<uint16_t> values) {
        std::string bytes;
        for (const uint16_t value : values) bytes += littleEndian(value, 2);
        return bytes;
    };
    std::string bits, offsets, counts;
    for (uint16_t i = 0; i < options.samples; ++i) bits += littleEndian(options.bits, 2);
    for (size_t i = 0; i < planes; ++i) {
        offsets += littleEndian(8 + i * pixels.size() / planes, 4);
        counts += littleEndian(pixels.size() / planes, 4);
    }
    std::vector<Field> fields = {{256, 4, 1, littleEndian(width, 4)},
                                 {257, 4, 1, littleEndian(height, 4)},
                                 {258, 3, options.samples, bits},
                                 {259, 3, 1, shorts({options.compression})},
                                 {262, 3, 1, shorts({options.photometric})},
                                 {273, 4, static_cast<uint32_t>(planes), offsets}};
    if (options.orientation > 0) fields.push_back({274, 3, 1, shorts({options.orientation})});
    fields.push_back({277, 3, 1, shorts({options.samples})});
    fields.push_back({278, 4, 1, littleEndian(height, 4)});
    fields.push_back({279, 4, static_cast<uint32_t>(planes), counts});
    if (options.resolution > 0) {
        fields.push_back({282, 5, 1, littleEndian(options.resolution, 4) + littleEndian(1, 4)});
        fields.push_back({283, 5, 1, littleEndian(options.resolution, 4) + littleEndian(1, 4)});
    }
    fields.push_back({284, 3, 1, shorts({static_cast<uint16_t>(options.separate ? 2 : 1)})});
    if (options.resolution > 0) fields.push_back({296, 3, 1, shorts({options.resolutionUnit})});
    if (!options.colourMap.empty()) {
        std::string map;
        for (const uint16_t value : options.colourMap) map += littleEndian(value, 2);
        fields.push_back({320, 3, static_cast<uint32_t>(options.colourMap.size()), map});
    }
    if (options.extraSample != 0xFFFF) fields.push_back({338, 3, 1, shorts({options.extraSample})});
    if (!options.profile.empty())
        fields.push_back({34675, 7, static_cast<uint32_t>(options.profile.size()), options.profile});
    std::string directory = littleEndian(fields.size(), 2);
    for (const Field& field : fields) {
        directory += littleEndian(field.tag, 2) + littleEndian(field.type, 2) + littleEndian(field.count, 4);
        if (field.value.size() <= 4) {
            directory += field.value + std::string(4 - field.value.size(), '\0');
        } else {
            if (body.size() % 2 != 0) body += '\0';
            directory += littleEndian(8 + body.size(), 4);
            body += field.value;
        }
    }
    if (body.size() % 2 != 0) body += '\0';
    return head + littleEndian(8 + body.size(), 4) + body + directory + littleEndian(0, 4);
}

std::string streamOf(const std::string& entries, const std::string& bytes) {
    return "<<" + entries + "/Length " + std::to_string(bytes.size()) + ">>\nstream\n" + bytes + "\nendstream";
}

std::string pdfOf(const std::vector<std::string>& objects, const std::string& trailerEntries) {
    std::string pdf = "%PDF-1.4\n", table;
    for (size_t i = 0; i < objects.size(); ++i) {
        char entry[24];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", pdf.size());
        table += entry;
        pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string count = std::to_string(objects.size() + 1);
    const size_t start = pdf.size();
    return pdf + "xref\n0 " + count + "\n0000000000 65535 f \n" + table + "trailer\n<</Size " + count + "/Root 1 0 R" +
           trailerEntries + ">>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
}

std::string barcodePdf(double width, double height, const std::string& content) {
    const std::string box = "[0 0 " + std::to_string(width) + " " + std::to_string(height) + "]";
    return pdfOf({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids 3 0 R/Count 1>>", "[4 0 R]",
                  "<</Type/Page/Parent 2 0 R/MediaBox 5 0 R/CropBox 5 0 R/Contents 6 0 R/Resources 7 0 R>>", box,
                  streamOf("/Filter/FlateDecode", deflatedForTest(content)), "<</Font 8 0 R>>", "<</Courier 9 0 R>>",
                  "<</Type/Font/Subtype/Type1/Name/Courier/BaseFont/Courier/Encoding/MacRomanEncoding>>"});
}

std::string profileFor(int channels) {
    cmsHPROFILE profile = nullptr;
    if (channels == 3) {
        profile = cmsCreate_sRGBProfile();
    } else if (channels == 1) {
        cmsToneCurve* curve = cmsBuildGamma(nullptr, 2.2);
        profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
        cmsFreeToneCurve(curve);
    } else {
        profile = cmsCreateInkLimitingDeviceLink(cmsSigCmykData, 300);
        cmsSetDeviceClass(profile, cmsSigOutputClass);
    }
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

std::string outputOf(const std::string& command) {
    std::string output;
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen((command + " 2>&1").c_str(), "r"), ::pclose);
    char room[4096];
    while (const size_t got = std::fread(room, 1, sizeof room, pipe.get())) output.append(room, got);
    return output;
}

}  // namespace desk::testing
