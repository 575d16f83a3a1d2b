#include <gtest/gtest.h>

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

/// Samples of a picture of one row: only the filters "none" and "left" differ from it.
std::string oneRow(const std::string& encoded, size_t pixel) {
    const std::string filtered = inflatedForTest(encoded);
    std::string row;
    for (size_t i = 1; i < filtered.size(); ++i) {
        const size_t x = i - 1;
        const int left = x >= pixel ? static_cast<unsigned char>(row[x - pixel]) : 0;
        const int filter = filtered[0];
        const int expected = filter == 1 || filter == 4 ? left : filter == 3 ? left / 2 : 0;
        row += static_cast<char>(filtered[i] + expected);
    }
    return row;
}

constexpr uint16_t whiteIsZero = 0, blackIsZero = 1, rgb = 2, palette = 3, separated = 5, cieLab = 8, iccLab = 9;

RecordingSink::Object imageOf(const std::string& tiff, RecordingSink& sink) {
    return written(*readTiff(shared(tiff)), sink);
}

TEST(Tiff, GrayStaysGray) {
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(3, 1, bytesOf({1, 2, 3}), {}), sink);
    EXPECT_TRUE(has(image.text, "/Width 3/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray")) << image.text;
    EXPECT_EQ(oneRow(image.bytes, 1), bytesOf({1, 2, 3}));
}

TEST(Tiff, InksStayInksWithTheirProfile) {
    TiffOptions options;
    options.samples = 4;
    options.photometric = separated;
    options.profile = profileFor(4);
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(2, 1, bytesOf({1, 2, 3, 4, 50, 60, 70, 80}), options), sink);
    const RecordingSink::Object& profile = sink.objectAt(image.text, "/ColorSpace[/ICCBased");
    EXPECT_EQ(profile.bytes, options.profile);
    EXPECT_EQ(profile.text, "/N 4/Alternate/DeviceCMYK");
    EXPECT_EQ(oneRow(image.bytes, 4), bytesOf({1, 2, 3, 4, 50, 60, 70, 80}));
}

TEST(Tiff, ColoursKeepTheirProfile) {
    TiffOptions options;
    options.samples = 3;
    options.photometric = rgb;
    options.profile = profileFor(3);
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(1, 1, bytesOf({9, 8, 7}), options), sink);
    EXPECT_EQ(sink.objectAt(image.text, "/ColorSpace[/ICCBased").bytes, options.profile);
}

TEST(Tiff, OneBitStaysOneBit) {
    TiffOptions options;
    options.bits = 1;
    options.photometric = whiteIsZero;
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(10, 1, bytesOf({0xAA, 0x80}), options), sink);
    EXPECT_TRUE(has(image.text, "/BitsPerComponent 1/ColorSpace/DeviceGray/Decode[1 0]")) << image.text;
    EXPECT_EQ(oneRow(image.bytes, 1), bytesOf({0xAA, 0x80}));
}

TEST(Tiff, SixteenBitsComeWithTheHighByteFirst) {
    TiffOptions options;
    options.bits = 16;
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(1, 1, bytesOf({0x34, 0x12}), options), sink);
    EXPECT_TRUE(has(image.text, "/BitsPerComponent 16"));
    EXPECT_EQ(oneRow(image.bytes, 2), bytesOf({0x12, 0x34}));
}

TEST(Tiff, PlanesAreJoined) {
    TiffOptions options;
    options.samples = 3;
    options.photometric = rgb;
    options.separate = true;
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(2, 1, bytesOf({1, 2, 10, 20, 100, 200}), options), sink);
    EXPECT_EQ(oneRow(image.bytes, 3), bytesOf({1, 10, 100, 2, 20, 200}));
}

TEST(Tiff, AlphaBecomesASoftMask) {
    TiffOptions options;
    options.samples = 4;
    options.photometric = rgb;
    options.extraSample = 2;
    RecordingSink sink;
    RecordingSink::Object image = imageOf(tiffOf(1, 1, bytesOf({1, 2, 3, 128}), options), sink);
    EXPECT_EQ(oneRow(sink.objectAt(image.text, "/SMask").bytes, 1), bytesOf({128}));
    EXPECT_FALSE(has(sink.objectAt(image.text, "/SMask").text, "/Matte"));
    options.extraSample = 1;
    image = imageOf(tiffOf(1, 1, bytesOf({1, 2, 3, 128}), options), sink);
    EXPECT_TRUE(has(sink.objectAt(image.text, "/SMask").text, "/Matte[0 0 0]"));
}

TEST(Tiff, FurtherChannelsAreLeftOut) {
    TiffOptions options;
    options.samples = 5;
    options.photometric = separated;
    options.extraSample = 0;
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(1, 1, bytesOf({1, 2, 3, 4, 99}), options), sink);
    EXPECT_TRUE(has(image.text, "/ColorSpace/DeviceCMYK"));
    EXPECT_FALSE(has(image.text, "/SMask"));
    EXPECT_EQ(oneRow(image.bytes, 4), bytesOf({1, 2, 3, 4}));
}

TEST(Tiff, OtherColoursBecomeRgb) {
    TiffOptions options;
    options.photometric = palette;
    options.colourMap.assign(768, 0);
    options.colourMap[5] = 0xFFFF;        // red of colour 5
    options.colourMap[512 + 5] = 0x8000;  // its blue
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(1, 1, bytesOf({5}), options), sink);
    EXPECT_TRUE(has(image.text, "/ColorSpace/DeviceRGB"));
    EXPECT_EQ(oneRow(image.bytes, 3), bytesOf({255, 0, 128}));
    EXPECT_FALSE(has(image.text, "/SMask"));
}

TEST(Tiff, APaletteKeepsItsProfile) {
    TiffOptions options;
    options.photometric = palette;
    options.colourMap.assign(768, 0);
    options.profile = profileFor(3);
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(1, 1, bytesOf({5}), options), sink);
    EXPECT_EQ(sink.objectAt(image.text, "/ColorSpace[/ICCBased").bytes, options.profile);
}

TEST(Tiff, LabStaysLab) {
    TiffOptions options;
    options.samples = 3;
    options.photometric = cieLab;
    RecordingSink sink;
    // The first kind has signed a* and b*, the second kind counts them from -128, as PDF does.
    const RecordingSink::Object image = imageOf(tiffOf(2, 1, bytesOf({200, 0, 0, 10, -128, 127}), options), sink);
    EXPECT_TRUE(has(image.text, "/ColorSpace[/Lab<</WhitePoint[0.9642 1 0.8249]/Range[-128 127 -128 127]>>]"));
    EXPECT_FALSE(has(image.text, "/Decode["));
    EXPECT_EQ(oneRow(image.bytes, 3), bytesOf({200, 128, 128, 10, 0, 255}));
    options.photometric = iccLab;
    EXPECT_EQ(oneRow(imageOf(tiffOf(1, 1, bytesOf({200, 128, 3}), options), sink).bytes, 3), bytesOf({200, 128, 3}));
}

TEST(Tiff, LabOfSixteenBitsStaysSixteenBits) {
    TiffOptions options;
    options.samples = 3;
    options.bits = 16;
    options.photometric = cieLab;
    RecordingSink sink;
    const RecordingSink::Object image = imageOf(tiffOf(1, 1, bytesOf({2, 1, 0, 0, 0, 0x80}), options), sink);
    EXPECT_TRUE(has(image.text, "/BitsPerComponent 16"));
    EXPECT_TRUE(has(image.text, "/Decode[0 100 -128 127.9961 -128 127.9961]"));
    EXPECT_EQ(oneRow(image.bytes, 6), bytesOf({1, 2, 0x80, 0, 0, 0}));
    options.photometric = iccLab;
    EXPECT_TRUE(has(imageOf(tiffOf(1, 1, bytesOf({2, 1, 0, 0, 0, 0x80}), options), sink).text,
                    "/Decode[0 100.3906 -128 127.9961 -128 127.9961]"));
}

TEST(Tiff, TakesItsSizeFromItsResolution) {
    TiffOptions options;
    options.resolution = 144;
    EXPECT_DOUBLE_EQ(readTiff(shared(tiffOf(10, 1, std::string(10, 'x'), options)))->facts(1, PageBox::Crop).width, 5);
    options.resolution = 100;
    options.resolutionUnit = 3;
    EXPECT_NEAR(readTiff(shared(tiffOf(254, 1, std::string(254, 'x'), options)))->facts(1, PageBox::Crop).width, 72,
                1e-6);
    options.resolutionUnit = 1;
    EXPECT_DOUBLE_EQ(readTiff(shared(tiffOf(10, 1, std::string(10, 'x'), options)))->facts(1, PageBox::Crop).width, 10);
}

TEST(Tiff, TurnedStandsUpright) {
    TiffOptions options;
    options.orientation = 8;
    const PageFacts facts = readTiff(shared(tiffOf(3, 1, "abc", options)))->facts(1, PageBox::Crop);
    EXPECT_DOUBLE_EQ(facts.width, 1);
    EXPECT_DOUBLE_EQ(facts.height, 3);
}

TEST(Tiff, CutOffAnywhereIsRefused) {
    const std::string tiff = tiffOf(3, 2, "abcdef", {});
    // The last four bytes only say that no directory follows.
    for (size_t size = 4; size + 4 < tiff.size(); size += 3)
        EXPECT_NE(refusal([&] { readTiff(shared(tiff.substr(0, size))); }), "") << size;
    // The directory stands at the end; this one is whole, but its pixels aren't.
    EXPECT_NE(refusal([&] { readTiff(shared(tiffOf(30, 20, "abcdef", {}))); }), "");
}

TEST(Tiff, OfUnknownCompressionOrColourIsRefused) {
    TiffOptions options;
    options.compression = 9999;
    EXPECT_EQ(refusal([&] { readTiff(shared(tiffOf(1, 1, "a", options))); }),
              "is compressed in a way that isn't known. Save it with another compression");
    options = {};
    options.photometric = cieLab;
    options.samples = 1;
    options.bits = 7;
    EXPECT_NE(refusal([&] { readTiff(shared(tiffOf(1, 1, "a", options))); }), "");
}

TEST(Tiff, AHundredThousandPixelsWideIsRefusedBeforeAnythingIsUnpacked) {
    EXPECT_EQ(refusal([&] { readTiff(shared(tiffOf(100'000, 100'000, "a", {}))); }),
              "is too large (100000 by 100000 pixels; a side may have 65535). Make it smaller");
}

}  // namespace
}  // namespace desk::testing
