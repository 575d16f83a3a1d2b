// Shapes, colours, masters and boxes, seen through the pages that come out.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "desk/output/output_testing.h"

namespace desk {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace desk::testing;

constexpr Pixel white{255, 255, 255}, red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255}, black{0, 0, 0};

size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

PathPoint corner(double x, double y) {
    return {{x, y}, {x, y}, {x, y}};
}

class Page : public ::testing::Test {
  protected:
    const std::string& write(std::vector<Uid> pages = {}) {
        path = test.write(folder / "page.pdf", std::move(pages));
        EXPECT_EQ(complaintsOfReaders(path), "");
        return path;
    }
    std::string content(int page = 1) { return pageContent(path, page); }

    ScratchFolder folder;
    TestDocument test;
    std::string path;
};

TEST_F(Page, PaintsAFillWhereTheDocumentHasIt) {
    test.addRectangle({20, 10, 60, 30}, "Color/Red");
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.width(), 200);
    EXPECT_EQ(picture.height(), 100);
    EXPECT_EQ(picture.at(21, 11), red);
    EXPECT_EQ(picture.at(59, 29), red);
    EXPECT_EQ(picture.at(19, 20), white);
    EXPECT_EQ(picture.at(40, 31), white);
    EXPECT_EQ(content(), "1 0 0 rg\n20 70 40 20 re\nf\n");
}

TEST_F(Page, PaintsItemsInTheirOrderAndLayersFromTheBottom) {
    Layer& above = test.document.addLayer("Layer 2");
    PageItem& top = test.addRectangle({0, 0, 30, 30}, "Color/Blue");
    test.document.placeOnSpread(top, *test.spread, above);
    test.addRectangle({0, 0, 50, 50}, "Color/Red");
    test.addRectangle({20, 20, 80, 80}, "Color/Green");
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(10, 10), blue);
    EXPECT_EQ(picture.at(40, 10), red);
    EXPECT_EQ(picture.at(40, 40), green);
}

TEST_F(Page, LeavesOutWhatIsHiddenOrNotPrinted) {
    test.addRectangle({0, 0, 20, 20}, "Color/Red").visible = false;
    test.addRectangle({30, 0, 50, 20}, "Color/Red").attributes.nonprinting = true;
    Layer& hidden = test.document.addLayer("hidden");
    hidden.visible = false;
    test.document.placeOnSpread(test.addRectangle({60, 0, 80, 20}, "Color/Red"), *test.spread, hidden);
    Layer& unprinted = test.document.addLayer("unprinted");
    unprinted.printable = false;
    test.document.placeOnSpread(test.addRectangle({90, 0, 110, 20}, "Color/Red"), *test.spread, unprinted);
    test.addRectangle({300, 0, 320, 20}, "Color/Red");  // off the page
    test.addRectangle({120, 0, 140, 20}, "Swatch/None");
    write();
    EXPECT_EQ(content(), "");
}

TEST_F(Page, TransformsShapesWithTheirGroups) {
    PageItem& group = test.document.addItem(ItemKind::Group);
    group.transform = Matrix::translation(-100, -50).after(Matrix{0, 1, -1, 0, 100, 20});  // quarter turn clockwise
    test.document.placeOnSpread(group, *test.spread, *test.layer);
    PageItem& inner = test.addRectangle({0, 0, 40, 10}, "Color/Red");
    inner.transform = Matrix::translation(10, 0);
    test.document.placeInside(inner, group);
    // (x, y) of the inner rectangle goes to (100 - y, 20 + 10 + x).
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(95, 35), red);
    EXPECT_EQ(picture.at(95, 65), red);
    EXPECT_EQ(picture.at(95, 25), white);
    EXPECT_EQ(picture.at(85, 40), white);
}

TEST_F(Page, ClipsWhatStandsInsideAFrame) {
    PageItem& frame = test.addRectangle({20, 20, 60, 60}, "Color/Green");
    PageItem& inner = test.addRectangle({40, 40, 120, 90}, "Color/Red");
    inner.transform = {};
    test.document.placeInside(inner, frame);
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(30, 30), green);
    EXPECT_EQ(picture.at(50, 50), red);
    EXPECT_EQ(picture.at(70, 50), white);
    EXPECT_EQ(picture.at(50, 70), white);
}

TEST_F(Page, AFrameThatHoldsOnlyAPictureDrawsItself) {
    PageItem& frame = test.addRectangle({20, 20, 60, 60}, "Color/Green");
    PageItem& graphic = test.document.addItem(ItemKind::Graphic);
    graphic.graphic.emplace();
    graphic.graphic->uri = "file:/none.jpg";
    graphic.graphic->bounds = {0, 0, 100, 100};
    test.document.placeInside(graphic, frame);
    write();
    EXPECT_EQ(content(), "0 1 0 rg\n20 40 40 40 re\nf\n");
}

TEST_F(Page, FillsCompoundPathsByTheNonzeroRule) {
    PageItem& item = test.addRectangle({10, 10, 90, 90}, "Color/Red");
    Path hole = rectanglePath({30, 30, 70, 70});
    std::reverse(hole[0].points.begin(), hole[0].points.end());
    item.path.push_back(hole[0]);
    item.path.push_back(rectanglePath({40, 40, 60, 60})[0]);
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(20, 20), red);
    EXPECT_EQ(picture.at(35, 35), white) << "opposite direction is a hole";
    EXPECT_EQ(picture.at(50, 50), red) << "the same direction fills";
}

TEST_F(Page, DrawsCurves) {
    PageItem& item = test.addRectangle({0, 0, 1, 1}, "Color/Red");
    item.path = {Contour{{{{50, 10}, {72, 10}, {28, 10}},
                          {{10, 50}, {10, 28}, {10, 72}},
                          {{50, 90}, {28, 90}, {72, 90}},
                          {{90, 50}, {90, 72}, {90, 28}}},
                         false}};
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(50, 50), red);
    EXPECT_EQ(picture.at(50, 11), red);
    EXPECT_EQ(picture.at(14, 14), white);
    EXPECT_EQ(count(content(), " c\n"), 4u);
}

TEST_F(Page, StrokesCentredInsideAndOutside) {
    for (int alignment = 0; alignment < 3; ++alignment) {
        const double left = 20 + 60 * alignment;
        PageItem& item = test.addRectangle({left, 30, left + 30, 70}, "Swatch/None");
        item.attributes.strokeColor = "Color/Red";
        item.attributes.strokeWeight = 8;
        item.attributes.strokeAlignment = alignment;
    }
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(17, 50), red);
    EXPECT_EQ(picture.at(22, 50), red);
    EXPECT_EQ(picture.at(25, 50), white);
    EXPECT_EQ(picture.at(78, 50), white) << "inside";
    EXPECT_EQ(picture.at(82, 50), red);
    EXPECT_EQ(picture.at(86, 50), red);
    EXPECT_EQ(picture.at(138, 50), red) << "outside";
    EXPECT_EQ(picture.at(133, 50), red);
    EXPECT_EQ(picture.at(142, 50), white);
    EXPECT_EQ(picture.at(133, 23), red) << "mitred corner";
}

TEST_F(Page, FillAndStrokeShareThePathWhereNothingLiesBetween) {
    PageItem& item = test.addRectangle({20, 20, 60, 60}, "Color/Green");
    item.attributes.strokeColor = "Color/Red";
    item.attributes.strokeWeight = 4;
    write();
    EXPECT_EQ(content(), "0 1 0 rg\n4 w 4 M\n1 0 0 RG\n20 40 40 40 re\nB\n");
}

TEST_F(Page, AStrokeScalesWithItsItem) {
    PageItem& even = test.addRectangle({5, 10, 15, 15}, "Swatch/None");
    even.transform = even.transform.after(Matrix{2, 0, 0, 2, 0, 0});
    PageItem& uneven = test.addRectangle({60, 10, 70, 15}, "Swatch/None");
    uneven.transform = uneven.transform.after(Matrix{2, 0, 0, 4, 0, 0});
    for (PageItem* item : {&even, &uneven}) {
        item->attributes.strokeColor = "Color/Red";
        item->attributes.strokeWeight = 2;
    }
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(9, 25), red);
    EXPECT_EQ(picture.at(11, 25), red);
    EXPECT_EQ(picture.at(13, 25), white);
    EXPECT_EQ(picture.at(118, 50), red);
    EXPECT_EQ(picture.at(122, 50), white) << "two wide across";
    EXPECT_EQ(picture.at(130, 37), red) << "four high along";
    EXPECT_EQ(picture.at(130, 45), white);
    EXPECT_THAT(content(), HasSubstr("4 w"));
    EXPECT_THAT(content(), HasSubstr("2 0 0 -4 "));
}

TEST_F(Page, DashesAndGapsHaveTheirColours) {
    PageItem& item = test.addRectangle({0, 0, 1, 1}, "Swatch/None");
    item.path = {Contour{{corner(10, 50), corner(190, 50)}, true}};
    item.attributes.strokeColor = "Color/Red";
    item.attributes.gapColor = "Color/Green";
    item.attributes.strokeWeight = 10;
    item.attributes.strokeType = "StrokeStyle/$ID/Dashed";
    item.attributes.dashes = std::vector<double>{20, 10};
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(20, 50), red);
    EXPECT_EQ(picture.at(35, 50), green);
    EXPECT_EQ(picture.at(45, 50), red);
    EXPECT_EQ(picture.at(195, 50), white);
}

TEST_F(Page, CannedPatternsFollowTheWeightAndUnknownOnesAreSolidAndTold) {
    PageItem& item = test.addRectangle({0, 0, 1, 1}, "Swatch/None");
    item.path = {Contour{{corner(10, 50), corner(190, 50)}, true}};
    item.attributes.strokeColor = "Color/Red";
    item.attributes.strokeWeight = 5;
    item.attributes.strokeType = "StrokeStyle/$ID/Canned Dashed 3x2";
    write();
    EXPECT_THAT(content(), HasSubstr("[15 10 ]0 d"));
    item.attributes.strokeType = "StrokeStyle/$ID/Canned Dotted";
    write();
    EXPECT_THAT(content(), HasSubstr("1 J [0 10 ]0 d"));
    item.attributes.strokeType = "DashedStrokeStyle/House";
    test.document.strokeStyles["DashedStrokeStyle/House"] = {7, 3};
    write();
    EXPECT_THAT(content(), HasSubstr("[7 3 ]0 d"));
    item.attributes.strokeType = "StrokeStyle/$ID/Wavy";
    DocumentWriter writer(test.document, test.texts, folder / "told.pdf", {});
    writer.writePage(test.page->uid);
    writer.writePage(test.page->uid);
    EXPECT_THAT(writer.simplifications().told(),
                ::testing::ElementsAre("the stroke style \"Wavy\" is drawn as a solid line"));
    writer.finish();
    EXPECT_THAT(pageContent(folder / "told.pdf", 1), Not(HasSubstr("]0 d")));
}

TEST_F(Page, EndsJoinsAndMitresAreThoseOfTheItem) {
    PageItem& item = test.addRectangle({0, 0, 1, 1}, "Swatch/None");
    item.path = {Contour{{corner(50, 80), corner(100, 20), corner(150, 80)}, true}};
    item.attributes.strokeColor = "Color/Red";
    item.attributes.strokeWeight = 10;
    item.attributes.endCap = 2;
    item.attributes.endJoin = 1;
    item.attributes.miterLimit = 7;
    write();
    EXPECT_EQ(content(), "q\n10 w 7 M\n2 J 1 j 1 0 0 RG\n50 20 m\n100 80 l\n150 20 l\nS\nQ\n");
}

TEST_F(Page, CornerOptionsShapeEachCornerOfARectangle) {
    PageItem& item = test.addRectangle({20, 20, 180, 80}, "Color/Red");
    const char* options[] = {"RoundedCorner", "InverseRoundedCorner", "BevelCorner", "InsetCorner"};
    for (int i = 0; i < 4; ++i) {
        item.attributes.cornerOption[i] = options[i];
        item.attributes.cornerRadius[i] = 20;
    }
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(22, 22), white) << "rounded, left top";
    EXPECT_EQ(picture.at(28, 28), red);
    EXPECT_EQ(picture.at(172, 28), white) << "inverse rounded, right top";
    EXPECT_EQ(picture.at(164, 36), red);
    EXPECT_EQ(picture.at(27, 73), white) << "bevel, left bottom";
    EXPECT_EQ(picture.at(32, 68), red);
    EXPECT_EQ(picture.at(162, 62), white) << "inset, right bottom";
    EXPECT_EQ(picture.at(158, 62), red);
    item.attributes.cornerRadius[0] = 500;
    EXPECT_EQ(RenderedPage(write(), 1).at(60, 50), red) << "the radius is cut to half of the shorter side";
}

TEST_F(Page, ArrowheadsPointOutwards) {
    PageItem& item = test.addRectangle({0, 0, 1, 1}, "Swatch/None");
    item.path = {Contour{{corner(50, 50), corner(150, 50)}, true}};
    item.attributes.strokeColor = "Color/Red";
    item.attributes.strokeWeight = 6;
    item.attributes.leftLineEnd = "CircleSolidArrowHead";
    item.attributes.rightLineEnd = "TriangleWideArrowHead";
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(38, 50), red);
    EXPECT_EQ(picture.at(50, 62), red);
    EXPECT_EQ(picture.at(33, 50), white);
    EXPECT_EQ(picture.at(122, 32), red);
    EXPECT_EQ(picture.at(140, 35), white);
}

TEST_F(Page, ColoursStayInTheirSpace) {
    test.addColour("Color/Ink", ColorSpace::CMYK, {100, 50, 0, 10});
    test.addColour("Color/Lab", ColorSpace::LAB, {50, 60, -40});
    test.addRectangle({0, 0, 10, 10}, "Color/Ink");
    test.addRectangle({10, 0, 20, 10}, "Color/Ink").attributes.fillTint = 50;
    test.addRectangle({20, 0, 30, 10}, "Color/Black");
    test.addRectangle({30, 0, 40, 10}, "Color/Paper");
    test.addRectangle({40, 0, 50, 10}, "Color/Red").attributes.fillTint = 20;
    test.addRectangle({50, 0, 60, 10}, "Color/Lab");
    test.addRectangle({60, 0, 70, 10}, "Color/No such swatch");
    write();
    const std::string page = content();
    EXPECT_THAT(page, HasSubstr("1 .5 0 .1 k\n0 90"));
    EXPECT_THAT(page, HasSubstr(".5 .25 0 .05 k\n10 90"));
    EXPECT_THAT(page, HasSubstr("0 0 0 1 k\n20 90"));
    EXPECT_THAT(page, HasSubstr("0 0 0 0 k\n30 90"));
    EXPECT_THAT(page, HasSubstr("1 .8 .8 rg\n40 90"));
    EXPECT_THAT(page, HasSubstr("/C1 cs 50 60 -40 scn\n50 90"));
    EXPECT_THAT(page, HasSubstr("0 0 0 1 k\n60 90")) << "an unknown swatch is black";
    EXPECT_THAT(decoded(path), HasSubstr("/Lab"));
}

TEST_F(Page, SpotColoursAreSeparationsWrittenOnce) {
    Swatch& spot = test.addColour("Color/HOUSE 286 C", ColorSpace::CMYK, {100, 75, 0, 0});
    spot.kind = SwatchKind::Spot;
    Swatch& tint = test.document.swatches["Tint/HOUSE 286 C 40"];
    tint.kind = SwatchKind::Tint;
    tint.baseColor = "Color/HOUSE 286 C";
    tint.tint = 40;
    test.addRectangle({0, 0, 10, 10}, "Color/HOUSE 286 C");
    test.addRectangle({10, 0, 20, 10}, "Tint/HOUSE 286 C 40");
    test.addRectangle({20, 0, 30, 10}, "Tint/HOUSE 286 C 40").attributes.fillTint = 50;
    test.addRectangle({30, 0, 40, 10}, "Color/Registration");
    write();
    EXPECT_THAT(content(), HasSubstr("/C1 cs 1 scn\n0 90"));
    EXPECT_THAT(content(), HasSubstr("/C1 cs .4 scn\n10 90"));
    EXPECT_THAT(content(), HasSubstr("/C1 cs .2 scn\n20 90"));
    EXPECT_THAT(content(), HasSubstr("/C2 cs 1 scn\n30 90"));
    const std::string objects = decoded(path);
    EXPECT_EQ(count(objects, "/HOUSE#20286#20C"), 1u);
    EXPECT_EQ(count(objects, "/Separation"), 2u);
    EXPECT_THAT(objects, HasSubstr("/All"));
    const Outcome plates = run("gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=tiffsep -r36 -sOutputFile='" +
                               (folder / "s.tif") + "' '" + path + "'");
    EXPECT_EQ(plates.status, 0) << plates.output;
    EXPECT_TRUE(std::filesystem::exists(folder / "s(HOUSE 286 C).tif")) << "Ghostscript finds the separation";
}

TEST_F(Page, TintsThatNameEachOtherEndInBlack) {
    for (const char* pair : {"ab", "ba"}) {
        Swatch& tint = test.document.swatches[std::string("Tint/") + pair[0]];
        tint.kind = SwatchKind::Tint;
        tint.baseColor = std::string("Tint/") + pair[1];
    }
    test.addRectangle({0, 0, 10, 10}, "Tint/a");
    write();
    EXPECT_THAT(content(), HasSubstr("0 0 0 1 k"));
}

TEST_F(Page, LinearGradientsRunAcrossTheItem) {
    Swatch& gradient = test.addColour("Gradient/Fade", ColorSpace::RGB, {});
    gradient.kind = SwatchKind::Gradient;
    gradient.stops = {{"Color/Red", 0, 50}, {"Color/Green", 50, 50}, {"Color/Blue", 100, 50}};
    test.addRectangle({50, 20, 150, 80}, "Gradient/Fade");
    const RenderedPage picture(write(), 1);
    EXPECT_TRUE(picture.at(51, 50).isLike(red));
    EXPECT_TRUE(picture.at(100, 50).isLike(green));
    EXPECT_TRUE(picture.at(148, 50).isLike(blue));
    EXPECT_TRUE(picture.at(75, 50).isLike({127, 127, 0}));
    EXPECT_EQ(picture.at(40, 50), white);
}

TEST_F(Page, GradientsTakeAngleStartLengthAndMidpoint) {
    Swatch& gradient = test.addColour("Gradient/Fade", ColorSpace::RGB, {});
    gradient.kind = SwatchKind::Gradient;
    gradient.stops = {{"Color/Red", 0, 50}, {"Color/Blue", 100, 25}};
    PageItem& item = test.addRectangle({50, 10, 150, 90}, "Gradient/Fade");
    item.attributes.gradientAngle = 90;  // upwards
    item.attributes.gradientStart = Point{100, 80};
    item.attributes.gradientLength = 40;
    const RenderedPage picture(write(), 1);
    EXPECT_TRUE(picture.at(60, 85).isLike(red)) << "before the start";
    EXPECT_TRUE(picture.at(60, 70).isLike({127, 0, 127}, 16)) << "half way a quarter of the ramp up";
    EXPECT_TRUE(picture.at(60, 38).isLike(blue)) << "after the end";
}

TEST_F(Page, RadialGradientsRunFromTheMiddle) {
    Swatch& gradient = test.addColour("Gradient/Sun", ColorSpace::RGB, {});
    gradient.kind = SwatchKind::Gradient;
    gradient.radial = true;
    gradient.stops = {{"Color/Red", 0, 50}, {"Color/Blue", 100, 50}};
    PageItem& item = test.addRectangle({50, 0, 150, 100}, "Gradient/Sun");
    item.attributes.gradientStart = Point{100, 50};
    item.attributes.gradientLength = 40;
    const RenderedPage picture(write(), 1);
    EXPECT_TRUE(picture.at(100, 50).isLike(red));
    EXPECT_TRUE(picture.at(120, 50).isLike({127, 0, 127}, 16));
    EXPECT_TRUE(picture.at(55, 50).isLike(blue));
}

TEST_F(Page, AGradientOfOneSpotColourStaysOnItsPlate) {
    Swatch& spot = test.addColour("Color/Spot", ColorSpace::CMYK, {0, 100, 0, 0});
    spot.kind = SwatchKind::Spot;
    Swatch& gradient = test.addColour("Gradient/Plate", ColorSpace::CMYK, {});
    gradient.kind = SwatchKind::Gradient;
    gradient.stops = {{"Color/Paper", 0, 50}, {"Color/Spot", 100, 50}};
    test.addRectangle({0, 0, 200, 100}, "Gradient/Plate");
    const std::string objects = decoded(write());
    EXPECT_EQ(count(objects, "/Separation"), 1u);
    EXPECT_THAT(objects, Not(HasSubstr("/ColorSpace /DeviceCMYK")));
    EXPECT_TRUE(RenderedPage(path, 1).at(1, 50).isLike(white));
}

TEST_F(Page, GradientsWithoutUsableStopsPaintNothingWorse) {
    Swatch& none = test.addColour("Gradient/None", ColorSpace::RGB, {});
    none.kind = SwatchKind::Gradient;
    Swatch& one = test.addColour("Gradient/One", ColorSpace::RGB, {});
    one.kind = SwatchKind::Gradient;
    one.stops = {{"Color/Red", 100, 50}};
    Swatch& same = test.addColour("Gradient/Same", ColorSpace::RGB, {});
    same.kind = SwatchKind::Gradient;
    same.stops = {{"Color/Red", 50, 0}, {"Color/Blue", 50, 100}, {"Color/Green", 50, 50}};
    test.addRectangle({0, 0, 10, 10}, "Gradient/None");
    test.addRectangle({20, 0, 40, 20}, "Gradient/One");
    test.addRectangle({50, 0, 90, 20}, "Gradient/Same");
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(5, 5), white);
    EXPECT_TRUE(picture.at(30, 10).isLike(red));
    EXPECT_TRUE(picture.at(55, 10).isLike(red));
    EXPECT_TRUE(picture.at(85, 10).isLike(green));
}

TEST_F(Page, OpacityAndBlendingActOnTheItemAsAWhole) {
    test.addRectangle({0, 0, 200, 50}, "Color/Green");
    PageItem& item = test.addRectangle({50, 10, 150, 90}, "Color/Red");
    item.attributes.strokeColor = "Color/Red";
    item.attributes.strokeWeight = 20;
    item.attributes.strokeAlignment = 1;
    item.attributes.opacity = 50;
    const RenderedPage picture(write(), 1);
    EXPECT_TRUE(picture.at(55, 70).isLike({255, 127, 127})) << "fill and stroke do not show through each other";
    EXPECT_TRUE(picture.at(100, 70).isLike({255, 127, 127}));
    EXPECT_TRUE(picture.at(100, 30).isLike({127, 127, 0}));
    const std::string objects = decoded(path);
    EXPECT_THAT(objects, HasSubstr("/S /Transparency"));
    EXPECT_THAT(objects, HasSubstr("/ca .5"));
    item.attributes.opacity = 100;
    item.attributes.blendMode = "Multiply";
    ++item.revision;
    EXPECT_TRUE(RenderedPage(write(), 1).at(100, 30).isLike(black)) << "red over green multiplied";
}

TEST_F(Page, OverprintIsSwitchedOnForTheItemAlone) {
    test.addRectangle({0, 0, 10, 10}, "Color/Black").attributes.overprintFill = true;
    PageItem& stroked = test.addRectangle({20, 0, 30, 10}, "Swatch/None");
    stroked.attributes.strokeColor = "Color/Black";
    stroked.attributes.overprintStroke = true;
    write();
    EXPECT_EQ(content(),
              "q\n/G1 gs\n0 0 0 1 k\n0 90 10 10 re\nf\nQ\nq\n/G2 gs\n1 w 4 M\n0 0 0 1 K\n20 90 10 10 re\nS\nQ\n");
    EXPECT_THAT(decoded(path), HasSubstr("/OPM 1"));
}

TEST_F(Page, HasTrimBleedAndMediaBoxes) {
    Preferences& preferences = test.document.preferences;
    preferences.bleedTop = 9;
    preferences.bleedBottom = 5;
    preferences.bleedInside = 3;
    preferences.bleedOutside = 7;
    test.addRectangle({-20, -20, 220, 120}, "Color/Red");
    write();
    const std::string objects = decoded(path);
    EXPECT_THAT(objects, HasSubstr("/MediaBox [\n    0\n    0\n    210\n    114\n  ]"));
    EXPECT_THAT(objects, HasSubstr("/BleedBox [\n    0\n    0\n    210\n    114\n  ]"));
    EXPECT_THAT(objects, HasSubstr("/TrimBox [\n    3\n    5\n    203\n    105\n  ]"));
    const RenderedPage picture(path, 1);
    EXPECT_EQ(picture.width(), 210);
    EXPECT_EQ(picture.at(0, 0), red);
    EXPECT_EQ(picture.at(209, 113), red);
    preferences.facingPages = true;
    test.page->transform = Matrix::translation(-200, -50);  // left of the spine: outside is left
    EXPECT_THAT(decoded(write()), HasSubstr("/TrimBox [\n    7\n    5\n    207\n    105\n  ]"));
}

TEST_F(Page, ShowsTheMasterOfItsSideUnderItsOwnItems) {
    test.document.preferences.facingPages = true;
    desk::Page& left = test.addSpreadWithPage(true);
    Spread& master = *test.document.spread(left.spread);
    master.self = "MasterSpread/A";
    left.transform = Matrix::translation(-200, -50);
    desk::Page& right = test.document.addPage(master);
    right.transform = Matrix::translation(0, -50);
    PageItem& onLeft = test.addRectangle({0, 0, 50, 100}, "Color/Red", &master);
    onLeft.transform = Matrix::translation(-200, -50);
    PageItem& onRight = test.addRectangle({0, 0, 50, 100}, "Color/Green", &master);
    onRight.transform = Matrix::translation(0, -50);
    onRight.self = "u1f";
    test.page->transform = Matrix::translation(0, -50);
    test.page->appliedMaster = "MasterSpread/A";
    PageItem& own = test.addRectangle({0, 0, 50, 50}, "Color/Blue");
    own.transform = Matrix::translation(0, -50);
    desk::Page& second = test.addSpreadWithPage();
    second.transform = Matrix::translation(-200, -50);
    second.appliedMaster = "MasterSpread/A";
    write({test.page->uid, second.uid});
    const RenderedPage first(path, 1), verso(path, 2);
    EXPECT_EQ(first.at(25, 25), blue);
    EXPECT_EQ(first.at(25, 75), green);
    EXPECT_EQ(verso.at(25, 75), red);
    test.page->overriddenMasterItems = {"u1f"};
    EXPECT_EQ(RenderedPage(write({test.page->uid}), 1).at(25, 75), white) << "an overridden master item is left out";
    test.page->overriddenMasterItems.clear();
    test.spread->showMasterItems = false;
    EXPECT_EQ(RenderedPage(write({test.page->uid}), 1).at(25, 75), white) << "and all where the spread hides them";
}

TEST_F(Page, MastersOfMastersLieBelowAndCirclesEnd) {
    const auto addMaster = [&](const std::string& self, const std::string& base) -> Spread& {
        Spread& master = *test.document.spread(test.addSpreadWithPage(true).spread);
        master.self = self;
        test.document.page(master.pages[0])->appliedMaster = base;
        return master;
    };
    Spread& base = addMaster("MasterSpread/Base", "MasterSpread/Top");
    Spread& top = addMaster("MasterSpread/Top", "MasterSpread/Base");
    test.addRectangle({0, 0, 100, 100}, "Color/Red", &base);
    test.addRectangle({0, 0, 50, 100}, "Color/Green", &top);
    test.page->appliedMaster = "MasterSpread/Top";
    test.page->masterTransform = Matrix::translation(20, 0);
    const RenderedPage picture(write(), 1);
    EXPECT_EQ(picture.at(60, 50), green);
    EXPECT_EQ(picture.at(100, 50), red);
    EXPECT_EQ(picture.at(10, 50), white) << "the master's items move by the page's own translation";
}

TEST_F(Page, NestingThatRunsInACircleEnds) {
    PageItem& first = test.addRectangle({0, 0, 50, 50}, "Color/Red");
    PageItem& second = test.addRectangle({0, 0, 50, 50}, "Color/Green");
    second.transform = {};
    test.document.placeInside(second, first);
    second.children.push_back(first.uid);
    EXPECT_EQ(run("qpdf --check " + test.write(folder / "circle.pdf")).status, 0);
}

TEST_F(Page, RefusesAPageWithoutAreaOrThatIsNone) {
    const auto message = [&](Uid page) -> std::string {
        try {
            test.write(folder / "none.pdf", {page});
        } catch (const InputError& error) {
            return error.what();
        }
        return "written";
    };
    test.page->name = "iv";
    test.page->bounds = {0, 0, 0, 100};
    EXPECT_EQ(message(test.page->uid),
              "Page \"iv\" of the document \"test.idml\" has no usable size. Give it a width and "
              "a height of at most 200 inches.");
    test.page->bounds = {0, 0, std::nan(""), 100};
    EXPECT_THAT(message(test.page->uid), HasSubstr("no usable size"));
    EXPECT_EQ(message(99999), "The document \"test.idml\" has no such page.");
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(Page, NumbersThatAreNoneDoNotSpoilThePage) {
    PageItem& item = test.addRectangle({0, 0, 50, 50}, "Color/Red");
    item.transform.a = std::nan("");
    PageItem& flat = test.addRectangle({0, 0, 50, 50}, "Color/Red");
    flat.transform = {0, 0, 0, 0, 0, 0};
    PageItem& empty = test.addRectangle({0, 0, 50, 50}, "Color/Red");
    empty.path = {Contour{}, Contour{{corner(1, 1)}, false}};
    write();
    EXPECT_THAT(content(), Not(HasSubstr("nan")));
}

TEST_F(Page, TheTitleStandsInTheInformation) {
    PdfOptions options;
    options.title = "Grüße an (alle) \xF0\x9F\x98\x80";
    test.write(folder / "title.pdf", {}, options);
    EXPECT_THAT(run("pdfinfo '" + (folder / "title.pdf") + "'").output, HasSubstr("Title:           " + options.title));
    EXPECT_THAT(run("pdfinfo '" + (folder / "title.pdf") + "'").output, Not(HasSubstr("CreationDate")));
    EXPECT_THAT(run("pdfinfo '" + write() + "'").output, Not(HasSubstr("Title:")));
}

}  // namespace
}  // namespace desk
