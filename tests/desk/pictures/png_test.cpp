#include <gtest/gtest.h>
#include <lcms2.h>

#include <chrono>
#include <thread>
#include <tuple>

#include "desk/pictures/picture_testing.h"

namespace desk::testing {
namespace {

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::string bytesOf(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) bytes += static_cast<char>(value);
    return bytes;
}

/// Rows of a stream filtered as PNG does, plain again.
std::string plainRows(const std::string& encoded, size_t rowBytes, size_t pixel) {
    const std::string filtered = inflatedForTest(encoded);
    std::string rows;
    for (size_t start = 0; start + rowBytes < filtered.size() + 1 && start < filtered.size(); start += rowBytes + 1) {
        const int filter = filtered[start];
        for (size_t i = 0; i < rowBytes; ++i) {
            const auto at = [&](size_t back, size_t up) -> int {
                if (i < back || rows.size() < up + (i >= back ? 0 : 0)) return 0;
                const size_t here = rows.size();
                if (here < back + up) return 0;
                return static_cast<unsigned char>(rows[here - back - up]);
            };
            const bool hasUp = rows.size() >= rowBytes;
            const int left = i >= pixel ? at(pixel, 0) : 0, up = hasUp ? at(0, rowBytes) : 0;
            const int corner = hasUp && i >= pixel ? at(pixel, rowBytes) : 0;
            int expected = 0;
            if (filter == 1) expected = left;
            if (filter == 2) expected = up;
            if (filter == 3) expected = (left + up) / 2;
            if (filter == 4) {
                const int p = left + up - corner;
                const int a = std::abs(p - left), b = std::abs(p - up), c = std::abs(p - corner);
                expected = a <= b && a <= c ? left : b <= c ? up : corner;
            }
            rows += static_cast<char>(filtered[start + 1 + i] + expected);
        }
    }
    return rows;
}

RecordingSink::Object imageOf(const std::string& png, RecordingSink& sink) {
    return written(*readPng(shared(png)), sink);
}

cmsColorSpaceSignature spaceOf(const std::string& profile) {
    const cmsHPROFILE opened = cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size()));
    const cmsColorSpaceSignature space = cmsGetColorSpace(opened);
    cmsCloseProfile(opened);
    return space;
}

/// L* of a gray of these samples.
double lightnessOf(const std::string& profile, unsigned char sample) {
    const cmsHPROFILE opened = cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size()));
    const cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
    const bool isGray = cmsGetColorSpace(opened) == cmsSigGrayData;
    const cmsHTRANSFORM transform = cmsCreateTransform(opened, isGray ? TYPE_GRAY_8 : TYPE_RGB_8, lab, TYPE_Lab_DBL,
                                                       INTENT_RELATIVE_COLORIMETRIC, 0);
    const unsigned char samples[] = {sample, sample, sample};
    cmsCIELab colour{};
    cmsDoTransform(transform, samples, &colour, 1);
    cmsDeleteTransform(transform);
    cmsCloseProfile(lab);
    cmsCloseProfile(opened);
    return colour.L;
}

TEST(Png, OpaqueRowsGoInAsTheyAre) {
    const std::string rows = bytesOf({0, 255, 0, 0, 0, 255, 0, 0, 0, 0, 255, 9, 8, 7});
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(2, 2, 8, 2, rows), sink);
    EXPECT_EQ(image.bytes, deflatedForTest(rows));
    EXPECT_TRUE(has(image.text, "/Width 2/Height 2/BitsPerComponent 8/ColorSpace/DeviceRGB")) << image.text;
    EXPECT_TRUE(has(image.text, "/Filter/FlateDecode/DecodeParms<</Predictor 15/Columns 2/Colors 3>>")) << image.text;
    EXPECT_FALSE(has(image.text, "/SMask"));
}

TEST(Png, GrayKeepsItsBits) {
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(9, 1, 1, 0, bytesOf({0, 0xAA, 0x80})), sink);
    EXPECT_TRUE(has(image.text, "/BitsPerComponent 1/ColorSpace/DeviceGray")) << image.text;
    EXPECT_TRUE(has(image.text, "/BitsPerComponent 1>>")) << image.text;
}

TEST(Png, SixteenBitsStay) {
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(1, 1, 16, 2, bytesOf({0, 1, 2, 3, 4, 5, 6})), sink);
    EXPECT_TRUE(has(image.text, "/BitsPerComponent 16")) << image.text;
    EXPECT_EQ(inflatedForTest(image.bytes), bytesOf({0, 1, 2, 3, 4, 5, 6}));
}

TEST(Png, APaletteStaysAPalette) {
    PngOptions options;
    options.palette = bytesOf({255, 0, 0, 0, 255, 0});
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(2, 1, 8, 3, bytesOf({0, 0, 1}), options), sink);
    EXPECT_TRUE(has(image.text, "/ColorSpace[/Indexed/DeviceRGB 1<FF000000FF00>]")) << image.text;
    EXPECT_TRUE(has(image.text, "/Columns 2>>")) << image.text;
}

TEST(Png, AlphaBecomesASoftMask) {
    RecordingSink sink;
    const std::string rows = bytesOf({0, 255, 0, 0, 255, 10, 20, 30, 128});
    const auto content = readPng(shared(pngOf(2, 1, 8, 6, rows)));
    EXPECT_TRUE(content->facts(1, PageBox::Crop).isTransparent);
    const RecordingSink::Object image = written(*content, sink);
    const RecordingSink::Object& mask = sink.objectAt(image.text, "/SMask");
    EXPECT_EQ(plainRows(image.bytes, 6, 3), bytesOf({255, 0, 0, 10, 20, 30}));
    EXPECT_EQ(plainRows(mask.bytes, 2, 1), bytesOf({255, 128}));
    EXPECT_TRUE(has(mask.text, "/ColorSpace/DeviceGray")) << mask.text;
    EXPECT_FALSE(has(mask.text, "/Matte"));
}

TEST(Png, AlphaThatHidesNothingIsLeftOut) {
    RecordingSink sink;
    const auto content = readPng(shared(pngOf(1, 1, 8, 4, bytesOf({0, 77, 255}))));
    EXPECT_FALSE(content->facts(1, PageBox::Crop).isTransparent);
    const RecordingSink::Object image = written(*content, sink);
    EXPECT_FALSE(has(image.text, "/SMask"));
    EXPECT_TRUE(has(image.text, "/ColorSpace/DeviceGray"));
}

TEST(Png, SixteenBitAlphaStaysSixteenBit) {
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(1, 1, 16, 4, bytesOf({0, 1, 2, 3, 4})), sink);
    const RecordingSink::Object& mask = sink.objectAt(image.text, "/SMask");
    EXPECT_TRUE(has(mask.text, "/BitsPerComponent 16"));
    EXPECT_EQ(plainRows(mask.bytes, 2, 2), bytesOf({3, 4}));
}

TEST(Png, ATransparentPaletteColourBecomesASoftMask) {
    PngOptions options;
    options.palette = bytesOf({255, 0, 0, 0, 255, 0});
    options.transparency = bytesOf({0, 255});
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(2, 1, 8, 3, bytesOf({0, 0, 1}), options), sink);
    EXPECT_EQ(plainRows(sink.objectAt(image.text, "/SMask").bytes, 2, 1), bytesOf({0, 255}));
    EXPECT_EQ(plainRows(image.bytes, 6, 3), bytesOf({255, 0, 0, 0, 255, 0}));
}

TEST(Png, InterlacedRowsComeIntoOrder) {
    // Passes of 2 by 2 pixels: the left top one, the one beside it, the lower row.
    PngOptions options;
    options.interlaced = true;
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(2, 2, 8, 0, bytesOf({0, 1, 0, 2, 0, 3, 4}), options), sink);
    EXPECT_EQ(plainRows(image.bytes, 2, 1), bytesOf({1, 2, 3, 4}));
}

TEST(Png, LargerPicturesComeThroughTheFiltersUnchanged) {
    std::string rows, colours, alpha;
    uint32_t state = 1;
    for (int y = 0; y < 40; ++y) {
        rows += '\0';
        for (int x = 0; x < 30; ++x) {
            state = state * 1664525 + 1013904223;
            const std::string pixel = bytesOf({x * 3 + y, x + y * 2, static_cast<int>(state >> 28)});
            rows += pixel;
            colours += pixel;
            rows += static_cast<char>(x * 8);
            alpha += static_cast<char>(x * 8);
        }
    }
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(30, 40, 8, 6, rows), sink);
    EXPECT_EQ(plainRows(image.bytes, 90, 3), colours);
    EXPECT_EQ(plainRows(sink.objectAt(image.text, "/SMask").bytes, 30, 1), alpha);
}

TEST(Png, TakesItsSizeFromItsResolution) {
    PngOptions options;
    options.pixelsPerMetre = 11811;  // 300 pixels an inch
    const auto content = readPng(shared(pngOf(300, 1, 8, 0, std::string(301, '\0'), options)));
    EXPECT_NEAR(content->facts(1, PageBox::Crop).width, 72, 0.01);
}

TEST(Png, KeepsItsColourProfile) {
    PngOptions options;
    options.profile = profileFor(3);
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(pngOf(1, 1, 8, 2, bytesOf({0, 1, 2, 3}), options), sink);
    EXPECT_EQ(sink.objectAt(image.text, "/ColorSpace[/ICCBased").bytes, options.profile);
}

/// One gray or RGB pixel with these chunks.
RecordingSink::Object pixelWith(std::vector<std::pair<std::string, std::string>> chunks, int colourType,
                                RecordingSink& sink) {
    PngOptions options;
    options.chunks = std::move(chunks);
    return imageOf(pngOf(1, 1, 8, colourType, bytesOf({0, 1, 2, 3}).substr(0, colourType == 2 ? 4 : 2), options), sink);
}

const std::string linear("\0\1\x86\xA0", 4);  // gamma 1
const std::string usual("\0\0\xB1\x8F", 4);   // gamma 0.45455

TEST(Png, SamplesOfAnotherGammaGetAProfileThatSaysSo) {
    for (const auto& [colourType, space, place] : {std::tuple(2, cmsSigRgbData, "/N 3/Alternate/DeviceRGB"),
                                                   std::tuple(0, cmsSigGrayData, "/N 1/Alternate/DeviceGray")}) {
        RecordingSink sink;
        const RecordingSink::Object image = pixelWith({{"gAMA", linear}}, colourType, sink);
        const RecordingSink::Object& stored = sink.objectAt(image.text, "/ColorSpace[/ICCBased");
        EXPECT_EQ(stored.text, place);
        EXPECT_EQ(spaceOf(stored.bytes), space);
        // Half of the light is far brighter than a sample of half the usual kind.
        EXPECT_NEAR(lightnessOf(stored.bytes, 128), 76, 1);
    }
}

TEST(Png, ChromaticitiesGoIntoThatProfile) {
    std::string wide;  // white, red, green, blue: as in ITU-R BT.2020
    for (const int place : {31270, 32900, 70800, 29200, 17000, 79700, 13100, 4600})
        for (int shift = 24; shift >= 0; shift -= 8) wide += static_cast<char>(place >> shift);
    RecordingSink plain, coloured;
    const std::string first =
        plain.objectAt(pixelWith({{"gAMA", linear}}, 2, plain).text, "/ColorSpace[/ICCBased").bytes;
    const std::string second =
        coloured.objectAt(pixelWith({{"gAMA", linear}, {"cHRM", wide}}, 2, coloured).text, "/ColorSpace[/ICCBased")
            .bytes;
    EXPECT_NE(first, second);
}

TEST(Png, TheSameGammaGivesTheSameProfile) {
    RecordingSink first, second;
    const auto profile = [](RecordingSink& sink) {
        return sink.objectAt(pixelWith({{"gAMA", linear}}, 2, sink).text, "/ColorSpace[/ICCBased").bytes;
    };
    const std::string before = profile(first);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));  // the library would note the second
    EXPECT_EQ(profile(second), before);
}

TEST(Png, UsualGammaAndStandardColoursNeedNoProfile) {
    for (const auto& chunks : {std::vector<std::pair<std::string, std::string>>{{"gAMA", usual}},
                               {{"gAMA", linear}, {"sRGB", std::string(1, '\0')}},
                               {{"gAMA", std::string(4, '\0')}},
                               {{"gAMA", std::string(4, '\xFF')}}}) {
        RecordingSink sink;
        EXPECT_TRUE(has(pixelWith(chunks, 2, sink).text, "/ColorSpace/DeviceRGB"));
    }
}

TEST(Png, CutOffAnywhereIsRefused) {
    const std::string png = pngOf(2, 2, 8, 2, std::string(14, '\0'));
    for (size_t size = 8; size < png.size(); ++size)
        EXPECT_NE(refusal([&] { readPng(shared(png.substr(0, size))); }), "") << size;
}

TEST(Png, WithAWrongCheckValueIsRefused) {
    std::string png = pngOf(2, 2, 8, 2, std::string(14, '\0'));
    png[png.find("IDAT") + 6] ^= 1;
    EXPECT_EQ(refusal([&] { readPng(shared(png)); }), "is damaged. Save it again");
}

TEST(Png, WithTooFewOrTooManyRowsIsRefused) {
    EXPECT_EQ(refusal([&] { readPng(shared(pngOf(2, 2, 8, 2, std::string(13, '\0')))); }), "is damaged. Save it again");
    EXPECT_EQ(refusal([&] { readPng(shared(pngOf(2, 2, 8, 2, std::string(15, '\0')))); }), "is damaged. Save it again");
    EXPECT_EQ(refusal([&] { readPng(shared(pngOf(2, 2, 8, 6, std::string(3, '\0')))); }), "is damaged. Save it again");
}

TEST(Png, WithAnUnknownFilterOrKindIsRefused) {
    EXPECT_NE(refusal([&] { readPng(shared(pngOf(1, 1, 8, 0, bytesOf({5, 0})))); }), "");
    EXPECT_NE(refusal([&] { readPng(shared(pngOf(1, 1, 8, 5, bytesOf({0, 0})))); }), "");
    EXPECT_NE(refusal([&] { readPng(shared(pngOf(1, 1, 3, 0, bytesOf({0, 0})))); }), "");
    EXPECT_NE(refusal([&] { readPng(shared(pngOf(1, 1, 8, 3, bytesOf({0, 0})))); }), "");
}

TEST(Png, AHundredThousandPixelsWideIsRefusedBeforeAnythingIsUnpacked) {
    EXPECT_EQ(refusal([&] { readPng(shared(pngOf(100'000, 1, 8, 2, "x"))); }),
              "is too large (100000 by 1 pixels; a side may have 65535). Make it smaller");
    EXPECT_EQ(refusal([&] { readPng(shared(pngOf(60'000, 60'000, 8, 6, "x"))); }),
              "is too large (60000 by 60000 pixels). Make it smaller");
    EXPECT_EQ(refusal([&] { readPng(shared(pngOf(0, 5, 8, 2, "x"))); }), "has no pixels. Save it again");
}

}  // namespace
}  // namespace desk::testing
