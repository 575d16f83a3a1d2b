// Pictures that packages place, and how frames take them.

#include <gtest/gtest.h>

#include "desk/idml/test_package.h"
#include "desk/model/content_fit.h"

namespace desk {
namespace {

std::unique_ptr<Document> withItems(const std::string& items, const std::string& styles = {}) {
    TestPackage package;
    package.items += items;
    package.styles += styles;
    return package.read();
}

const PlacedGraphic& graphicIn(const Document& document) {
    const PageItem* item = const_cast<Document&>(document).itemWithSelf("g");
    return *item->graphic;
}

TEST(PlacedGraphics, StandInTheirFrameWithLinkAndSize) {
    const auto document = withItems(
        "<Oval Self=\"f\" ContentType=\"GraphicType\"><SVG Self=\"g\" ItemTransform=\"0.5 0 0 0.5 1 2\"><Properties>"
        "<GraphicBounds Left=\"0\" Top=\"0\" Right=\"200\" Bottom=\"100\"/></Properties>"
        "<Link Self=\"l\" LinkResourceURI=\"file:/photos/01.svg\"/></SVG></Oval>");
    const PageItem& frame = *document->itemWithSelf("f");
    EXPECT_EQ(frame.contentType, ContentType::Graphic);
    const PageItem* picture = pictureIn(*document, frame.uid);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->transform, (Matrix{0.5, 0, 0, 0.5, 1, 2}));
    EXPECT_EQ(picture->graphic->kind, "SVG");
    EXPECT_EQ(picture->graphic->uri, "file:/photos/01.svg");
    EXPECT_EQ(picture->graphic->bounds, (Rect{0, 0, 200, 100}));
    EXPECT_EQ(picture->graphic->pageNumber, 1);
    EXPECT_FALSE(picture->graphic->embedded);
}

TEST(PlacedGraphics, OfAPdfNameTheirPageAndBox) {
    const std::pair<std::string, PageBox> boxes[] = {
        {"CropMedia", PageBox::Media},
        {"CropTrim", PageBox::Trim},
        {"CropBleed", PageBox::Bleed},
        {"CropArt", PageBox::Art},
        {"CropPDF", PageBox::Crop},
        {"CropContentVisibleLayers", PageBox::Content},
        {"CropContentAllLayers", PageBox::Content},
    };
    for (const auto& [word, box] : boxes) {
        const auto document =
            withItems("<Rectangle Self=\"f\"><PDF Self=\"g\"><PDFAttribute PageNumber=\"3\" PDFCrop=\"" + word +
                      "\"/></PDF></Rectangle>");
        EXPECT_EQ(graphicIn(*document).pageNumber, 3);
        EXPECT_EQ(graphicIn(*document).box, box) << word;
    }
    EXPECT_EQ(graphicIn(*withItems("<Rectangle Self=\"f\"><PDF Self=\"g\"><PDFAttribute PageNumber=\"-4\"/></PDF>"
                                   "</Rectangle>"))
                  .pageNumber,
              1);
}

TEST(PlacedGraphics, MayCarryTheirFile) {
    const auto document = withItems(
        "<Rectangle Self=\"f\"><Image Self=\"g\"><Properties><Contents><![CDATA[SGVsbG8s\n IHdvcmxkIQ==]]></Contents>"
        "</Properties><Link Self=\"l\" StoredState=\"Embedded\"/></Image></Rectangle>");
    ASSERT_TRUE(graphicIn(*document).embedded);
    EXPECT_EQ(*graphicIn(*document).embedded, "Hello, world!");
}

TEST(PlacedGraphics, WithoutBytesInTheirContentAreNoted) {
    const auto document = withItems(
        "<Rectangle Self=\"f\"><Image "
        "Self=\"g\"><Properties><Contents>***</Contents></Properties></Image></Rectangle>");
    EXPECT_FALSE(graphicIn(*document).embedded);
    ASSERT_EQ(document->notes.size(), 1u);
    EXPECT_EQ(document->notes[0].what, "the embedded picture \"g\" has no content");
}

TEST(PlacedGraphics, CutOutByAClippingPathAreNoted) {
    const auto document = withItems(
        "<Rectangle Self=\"f\"><Image Self=\"g\"><ClippingPathSettings "
        "ClippingType=\"PhotoshopPath\"/></Image></Rectangle>");
    ASSERT_EQ(document->notes.size(), 1u);
    EXPECT_EQ(document->notes[0].what, "the clipping path of the picture \"g\" isn't used");
    EXPECT_TRUE(
        withItems("<Rectangle Self=\"f\"><Image Self=\"g\"><ClippingPathSettings ClippingType=\"None\"/></Image>"
                  "</Rectangle>")
            ->notes.empty());
}

TEST(FrameFittings, AreReadWithAlignmentAndCrops) {
    const auto document = withItems(
        "<Rectangle Self=\"f\"><FrameFittingOption AutoFit=\"true\" LeftCrop=\"1\" TopCrop=\"-2\" RightCrop=\"3.5\" "
        "BottomCrop=\"4\" FittingOnEmptyFrame=\"FillProportionally\" FittingAlignment=\"BottomCenterAnchor\"/>"
        "</Rectangle>");
    const FrameFitting fitting = document->frameFitting(*document->itemWithSelf("f"));
    EXPECT_EQ(fitting.onEmptyFrame, EmptyFrameFitting::FillProportionally);
    EXPECT_EQ(fitting.alignment, (Point{0.5, 1}));
    EXPECT_EQ(fitting.autoFit, true);
    EXPECT_EQ(fitting.leftCrop, 1);
    EXPECT_EQ(fitting.topCrop, -2);
    EXPECT_EQ(fitting.rightCrop, 3.5);
    EXPECT_EQ(fitting.bottomCrop, 4);
}

TEST(FrameFittings, AlignAtNinePoints) {
    const std::pair<std::string, Point> anchors[] = {
        {"TopLeftAnchor", {0, 0}},      {"TopCenterAnchor", {0.5, 0}},    {"TopRightAnchor", {1, 0}},
        {"LeftCenterAnchor", {0, 0.5}}, {"CenterAnchor", {0.5, 0.5}},     {"RightCenterAnchor", {1, 0.5}},
        {"BottomLeftAnchor", {0, 1}},   {"BottomCenterAnchor", {0.5, 1}}, {"BottomRightAnchor", {1, 1}},
    };
    for (const auto& [word, point] : anchors) {
        const auto document =
            withItems("<Rectangle Self=\"f\"><FrameFittingOption FittingAlignment=\"" + word + "\"/></Rectangle>");
        EXPECT_EQ(document->frameFitting(*document->itemWithSelf("f")).alignment, point) << word;
    }
    const auto unknown = withItems("<Rectangle Self=\"f\"><FrameFittingOption FittingAlignment=\"Odd\"/></Rectangle>");
    EXPECT_FALSE(unknown->frameFitting(*unknown->itemWithSelf("f")).alignment);
}

TEST(FrameFittings, ComeFromTheObjectStyleWhereItHasThem) {
    const std::string style = "<ObjectStyle Self=\"ObjectStyle/Photo\" Name=\"Photo\" EnableFrameFittingOptions=\"";
    const std::string option = "<FrameFittingOption FittingOnEmptyFrame=\"Proportionally\"/></ObjectStyle>";
    const std::string item = "<Rectangle Self=\"f\" AppliedObjectStyle=\"ObjectStyle/Photo\"/>";
    const auto on = withItems(item, style + "true\">" + option), off = withItems(item, style + "false\">" + option);
    EXPECT_EQ(on->frameFitting(*on->itemWithSelf("f")).onEmptyFrame, EmptyFrameFitting::Proportionally);
    EXPECT_FALSE(off->frameFitting(*off->itemWithSelf("f")).onEmptyFrame);
}

TEST(ContentTypes, SayWhatAFrameIsFor) {
    const auto document = withItems(
        "<Rectangle Self=\"a\" ContentType=\"GraphicType\"/><Rectangle Self=\"b\" ContentType=\"TextType\"/>"
        "<Rectangle Self=\"c\" ContentType=\"Unassigned\"/><Rectangle Self=\"d\"/>");
    EXPECT_EQ(document->itemWithSelf("a")->contentType, ContentType::Graphic);
    EXPECT_EQ(document->itemWithSelf("b")->contentType, ContentType::Text);
    EXPECT_EQ(document->itemWithSelf("c")->contentType, ContentType::Unassigned);
    EXPECT_EQ(document->itemWithSelf("d")->contentType, ContentType::Unassigned);
}

}  // namespace
}  // namespace desk
