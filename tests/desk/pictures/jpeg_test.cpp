#include <gtest/gtest.h>

#include "desk/pictures/picture_testing.h"

namespace desk::testing {
namespace {

std::string entriesOf(const std::string& jpeg) {
    RecordingSink sink;
    return written(*readJpeg(shared(jpeg)), sink).text;
}

PageFacts factsOf(const std::string& jpeg) {
    return readJpeg(shared(jpeg))->facts(1, PageBox::Crop);
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Jpeg, KeepsItsOwnBytes) {
    const std::string jpeg = jpegOf(30, 20, 3);
    RecordingSink sink;
    const RecordingSink::Object image = written(*readJpeg(shared(jpeg)), sink);
    EXPECT_EQ(image.bytes, jpeg);
    EXPECT_TRUE(image.isEncoded);
    EXPECT_TRUE(has(image.text, "/Width 30/Height 20/BitsPerComponent 8/ColorSpace/DeviceRGB")) << image.text;
    EXPECT_TRUE(has(image.text, "/Filter/DCTDecode"));
    EXPECT_FALSE(has(image.text, "/Decode["));
    EXPECT_EQ(sink.objects.size(), 1u);
}

TEST(Jpeg, WithoutResolutionHas72PixelsAnInch) {
    EXPECT_DOUBLE_EQ(factsOf(jpegOf(30, 20, 3)).width, 30);
    EXPECT_DOUBLE_EQ(factsOf(jpegOf(30, 20, 3)).height, 20);
}

TEST(Jpeg, TakesItsSizeFromItsResolution) {
    JpegOptions options;
    options.density = 300;
    EXPECT_DOUBLE_EQ(factsOf(jpegOf(300, 150, 3, options)).width, 72);
    EXPECT_DOUBLE_EQ(factsOf(jpegOf(300, 150, 3, options)).height, 36);
}

TEST(Jpeg, InGrayStaysGray) {
    EXPECT_TRUE(has(entriesOf(jpegOf(8, 8, 1)), "/ColorSpace/DeviceGray"));
}

TEST(Jpeg, InInksWithAdobesMarkIsInverted) {
    JpegOptions marked;
    marked.adobeMark = true;
    EXPECT_TRUE(has(entriesOf(jpegOf(8, 8, 4, marked)), "/ColorSpace/DeviceCMYK/Decode[1 0 1 0 1 0 1 0]"));
    EXPECT_FALSE(has(entriesOf(jpegOf(8, 8, 4)), "/Decode["));
}

TEST(Jpeg, OfPlainRgbComponentsTellsReadersNotToTransform) {
    JpegOptions options;
    options.asRgb = true;
    EXPECT_TRUE(has(entriesOf(jpegOf(8, 8, 3, options)), "/DecodeParms<</ColorTransform 0>>"));
    EXPECT_FALSE(has(entriesOf(jpegOf(8, 8, 3)), "/DecodeParms"));
}

TEST(Jpeg, KeepsItsColourProfile) {
    JpegOptions options;
    options.profile = profileFor(3);
    RecordingSink sink;
    const RecordingSink::Object image = written(*readJpeg(shared(jpegOf(8, 8, 3, options))), sink);
    const RecordingSink::Object& profile = sink.objectAt(image.text, "/ColorSpace[/ICCBased");
    EXPECT_EQ(profile.bytes, options.profile);
    EXPECT_EQ(profile.text, "/N 3/Alternate/DeviceRGB");
}

TEST(Jpeg, DropsAProfileForAnotherNumberOfChannels) {
    JpegOptions options;
    options.profile = profileFor(3);
    EXPECT_TRUE(has(entriesOf(jpegOf(8, 8, 1, options)), "/ColorSpace/DeviceGray"));
    options.profile = "no profile at all";
    EXPECT_TRUE(has(entriesOf(jpegOf(8, 8, 3, options)), "/ColorSpace/DeviceRGB"));
}

TEST(Jpeg, MayBeProgressive) {
    JpegOptions options;
    options.progressive = true;
    EXPECT_DOUBLE_EQ(factsOf(jpegOf(30, 20, 3, options)).width, 30);
}

TEST(Jpeg, OfAKindThatPdfDoesntKnowIsRefused) {
    std::string jpeg = jpegOf(8, 8, 3);
    jpeg[jpeg.find("\xFF\xC0") + 1] = '\xC9';  // arithmetic coding
    EXPECT_TRUE(has(refusal([&] { readJpeg(shared(jpeg)); }), "a kind that a PDF can't hold"));
    jpeg = jpegOf(8, 8, 3);
    jpeg[jpeg.find("\xFF\xC0") + 4] = 12;
    EXPECT_TRUE(has(refusal([&] { readJpeg(shared(jpeg)); }), "a kind that a PDF can't hold"));
}

TEST(Jpeg, CutOffAnywhereIsRefused) {
    const std::string jpeg = jpegOf(30, 20, 3);
    for (size_t size = 2; size < jpeg.size(); size += 7)
        EXPECT_NE(refusal([&] { readJpeg(shared(jpeg.substr(0, size))); }), "") << size;
    EXPECT_EQ(refusal([&] { readJpeg(shared(jpeg.substr(0, jpeg.size() - 2))); }),
              "is cut off in the middle. Copy or save it again");
}

TEST(Jpeg, MayBeFollowedByOtherBytes) {
    EXPECT_EQ(refusal([&] { readJpeg(shared(jpegOf(30, 20, 3) + "trailing")); }), "");
}

TEST(Jpeg, TurnedByTheCameraStandsUpright) {
    JpegOptions options;
    options.orientation = 6;
    const PageFacts facts = factsOf(jpegOf(30, 20, 3, options));
    EXPECT_DOUBLE_EQ(facts.width, 20);
    EXPECT_DOUBLE_EQ(facts.height, 30);
    // Stored left top, 0 1 of the unit square, is the right top of the upright picture.
    const Point corner = facts.toNatural.apply({0, 1});
    EXPECT_DOUBLE_EQ(corner.x, 20);
    EXPECT_DOUBLE_EQ(corner.y, 30);
}

TEST(Jpeg, EveryOrientationFillsTheNaturalSize) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
        JpegOptions options;
        options.orientation = orientation;
        const PageFacts facts = factsOf(jpegOf(30, 20, 3, options));
        const Rect box = facts.toNatural.boundsOf({0, 0, 1, 1});
        EXPECT_NEAR(box.left, 0, 1e-9) << orientation;
        EXPECT_NEAR(box.top, 0, 1e-9) << orientation;
        EXPECT_NEAR(box.right, facts.width, 1e-9) << orientation;
        EXPECT_NEAR(box.bottom, facts.height, 1e-9) << orientation;
        const bool mirrored = facts.toNatural.determinant() < 0;
        EXPECT_EQ(mirrored, orientation == 2 || orientation == 4 || orientation == 5 || orientation == 7);
    }
}

}  // namespace
}  // namespace desk::testing
