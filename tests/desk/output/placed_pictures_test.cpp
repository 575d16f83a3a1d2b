// Pictures in frames, seen through the pages that come out.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "desk/model/content_fit.h"
#include "desk/output/output_testing.h"
#include "desk/pictures/picture_library.h"

namespace desk {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using namespace desk::testing;

constexpr Pixel white{255, 255, 255}, red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255}, black{0, 0, 0};

/// A PDF of these objects; the first is the catalog.
std::string pdfOf(const std::vector<std::string>& objects) {
    std::string pdf = "%PDF-1.5\n", table;
    for (size_t i = 0; i < objects.size(); ++i) {
        char entry[24];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", pdf.size());
        table += entry;
        pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string count = std::to_string(objects.size() + 1);
    return pdf + "xref\n0 " + count + "\n0000000000 65535 f \n" + table + "trailer\n<</Size " + count +
           "/Root 1 0 R>>\nstartxref\n" + std::to_string(pdf.size()) + "\n%%EOF\n";
}

std::string stream(const std::string& content) {
    return "<</Length " + std::to_string(content.size()) + ">>stream\n" + content + "\nendstream";
}

/// A PDF of one page; `fonts` are entries of the font resources.
std::string pdfPage(double width, double height, const std::string& content, const std::string& fonts = {}) {
    return pdfOf({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                  "<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + std::to_string(width) + " " + std::to_string(height) +
                      "]/Contents 4 0 R/Resources 5 0 R>>",
                  stream(content), "<</Font<<" + fonts + ">>>>"});
}

/// Four colours: red green over blue black.
const std::string quarters =
    "1 0 0 rg 0 10 20 10 re f 0 1 0 rg 20 10 20 10 re f 0 0 1 rg 0 0 20 10 re f 0 g 20 0 20 10 re f";
const std::string courier = "/Courier<</Type/Font/Subtype/Type1/BaseFont/Courier/Encoding/MacRomanEncoding>>";

class PlacedPictures : public ::testing::Test {
  protected:
    std::string file(const std::string& name, const std::string& bytes) {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    std::shared_ptr<const Picture> load(const std::string& pictureFile) {
        PictureImport import = library.import({pictureFile});
        EXPECT_TRUE(import) << import.failure;
        return import.picture;
    }
    std::shared_ptr<const Picture> fourColours() { return load(file("quarters.pdf", pdfPage(40, 20, quarters))); }

    PageItem& put(const std::shared_ptr<const Picture>& picture, PageItem& frame,
                  ContentFit fit = ContentFit::ContentToFrame) {
        PageItem& item = addPicture(test.document, picture);
        EXPECT_TRUE(putIntoFrame(test.document, item.uid, frame.uid));
        EXPECT_TRUE(fitContent(test.document, frame.uid, fit));
        return item;
    }
    PageItem& frameAt(const Rect& rect, const std::string& fill = "Swatch/None") {
        return test.addRectangle(rect, fill);
    }

    const std::string& write(std::vector<Uid> pages = {}) {
        PdfOptions options;
        options.fonts = &fonts();
        path = test.write(folder / "page.pdf", std::move(pages), options);
        EXPECT_EQ(complaintsOfReaders(path), "");
        return path;
    }

    ScratchFolder folder;
    TestDocument test;
    PictureLibrary library;
    std::string path;
};

TEST_F(PlacedPictures, APageLiesUprightInItsFrame) {
    put(fourColours(), frameAt({20, 10, 180, 90}));
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(60, 30).isLike(red));
    EXPECT_TRUE(page.at(140, 30).isLike(green));
    EXPECT_TRUE(page.at(60, 70).isLike(blue));
    EXPECT_TRUE(page.at(140, 70).isLike(black));
    EXPECT_TRUE(page.at(15, 50).isLike(white));
}

TEST_F(PlacedPictures, AnImageLiesUprightInItsFrame) {
    file("quarters.pdf", pdfPage(40, 20, quarters));
    run("mutool draw -r 72 -o " + (folder / "quarters.png") + " " + (folder / "quarters.pdf"));
    put(load(folder / "quarters.png"), frameAt({20, 10, 180, 90}));
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(40, 20).isLike(red));
    EXPECT_TRUE(page.at(160, 20).isLike(green));
    EXPECT_TRUE(page.at(40, 80).isLike(blue));
    EXPECT_TRUE(page.at(160, 80).isLike(black));
    EXPECT_THAT(run("pdfimages -list " + path).output, HasSubstr("40    20  rgb"));
}

TEST_F(PlacedPictures, AJpegKeepsItsBytes) {
    file("quarters.pdf", pdfPage(40, 20, quarters));
    run("gs -q -dSAFER -dBATCH -dNOPAUSE -r144 -sDEVICE=jpeg -sOutputFile=" + (folder / "photo.jpg") + " " +
        (folder / "quarters.pdf"));
    put(load(folder / "photo.jpg"), frameAt({20, 10, 180, 90}));
    write();
    run("cd " + folder.path() + " && pdfimages -all page.pdf out");
    EXPECT_EQ(readFile(folder / "out-000.jpg"), readFile(folder / "photo.jpg"));
    EXPECT_TRUE(RenderedPage(path, 1).at(40, 80).isLike(blue, 40));
}

TEST_F(PlacedPictures, APictureIsWrittenOnceHoweverOftenItIsPlaced) {
    file("quarters.pdf", pdfPage(40, 20, quarters));
    run("mutool draw -r 72 -o " + (folder / "quarters.png") + " " + (folder / "quarters.pdf"));
    PageItem& frame = frameAt({20, 10, 60, 30});
    put(load(folder / "quarters.png"), frame);
    put(load(folder / "quarters.png"), frameAt({100, 10, 140, 30}));
    const Uid first = test.page->uid;
    write({first, first, first});
    // Two uses on each of three pages, one object.
    const std::string list = run("pdfimages -list " + path + " | awk 'NR>2{print $11}' | sort -u | wc -l").output;
    EXPECT_EQ(list, "1\n");
}

TEST_F(PlacedPictures, WhatReachesBeyondTheFrameIsCutOff) {
    put(fourColours(), frameAt({20, 10, 60, 90}), ContentFit::FillProportionally);
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(40, 30).isLike(red));
    EXPECT_TRUE(page.at(70, 30).isLike(white));
}

TEST_F(PlacedPictures, RoundedCornersCutToo) {
    PageItem& frame = frameAt({20, 10, 180, 90});
    for (size_t i = 0; i < 4; ++i) {
        frame.attributes.cornerOption[i] = "RoundedCorner";
        frame.attributes.cornerRadius[i] = 30;
    }
    put(fourColours(), frame);
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(24, 14).isLike(white));
    EXPECT_TRUE(page.at(60, 30).isLike(red));
    EXPECT_TRUE(page.at(176, 86).isLike(white));
}

TEST_F(PlacedPictures, ATurnedFrameTurnsItsPicture) {
    PageItem& frame = frameAt({0, 0, 80, 40});
    // A quarter turn clockwise around the page's middle.
    const Matrix before = frame.transform;
    frame.transform = before.after(Matrix::translation(100, 10)).after(Matrix{0, 1, -1, 0, 20, 0});
    put(fourColours(), frame);
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(110, 30).isLike(red));
    EXPECT_TRUE(page.at(110, 70).isLike(green));
    EXPECT_TRUE(page.at(90, 30).isLike(blue));
    EXPECT_TRUE(page.at(90, 70).isLike(black));
}

TEST_F(PlacedPictures, AFillShowsBelowAndAStrokeAbove) {
    test.addColour("Color/Green", ColorSpace::RGB, {0, 255, 0});
    test.addColour("Color/Blue", ColorSpace::RGB, {0, 0, 255});
    PageItem& frame = frameAt({20, 10, 180, 90}, "Color/Green");
    frame.attributes.strokeColor = "Color/Blue";
    frame.attributes.strokeWeight = 10;
    put(load(file("red.pdf", pdfPage(10, 10, "1 0 0 rg 0 0 10 5 re f"))), frame);
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(100, 30).isLike(green));
    EXPECT_TRUE(page.at(100, 70).isLike(red));
    EXPECT_TRUE(page.at(23, 70).isLike(blue));
}

TEST_F(PlacedPictures, AStrokeOfAFrameThatWasEmptyStaysAboveThePicture) {
    test.addColour("Color/Green", ColorSpace::RGB, {0, 255, 0});
    test.addColour("Color/Blue", ColorSpace::RGB, {0, 0, 255});
    PageItem& frame = frameAt({20, 10, 180, 90}, "Color/Green");
    frame.attributes.strokeColor = "Color/Blue";
    frame.attributes.strokeWeight = 10;
    const std::string out = folder / "page.pdf";
    DocumentWriter writer(test.document, test.texts, out, {});
    writer.writePage(test.page->uid);
    const Uid placed = put(load(file("red.pdf", pdfPage(10, 10, "1 0 0 rg 0 0 10 10 re f"))), frame).uid;
    writer.writePage(test.page->uid);
    test.document.removeItem(placed);
    writer.writePage(test.page->uid);
    writer.finish();
    const RenderedPage empty(out, 1), full(out, 2), emptyAgain(out, 3);
    EXPECT_TRUE(empty.at(100, 50).isLike(green));
    EXPECT_TRUE(full.at(100, 50).isLike(red));
    EXPECT_TRUE(full.at(23, 50).isLike(blue));
    EXPECT_TRUE(emptyAgain.at(100, 50).isLike(green));
}

TEST_F(PlacedPictures, EveryPageSetShowsItsOwnPicture) {
    PageItem& frame = frameAt({20, 10, 180, 90});
    const std::string colours[] = {"1 0 0 rg", "0 1 0 rg", "1 0 0 rg", "0 0 1 rg"};
    const Pixel expected[] = {red, green, red, blue};
    const std::string out = folder / "page.pdf";
    DocumentWriter writer(test.document, test.texts, out, {});
    for (const std::string& colour : colours) {
        put(load(file("picture.pdf", pdfPage(10, 10, colour + " 0 0 10 10 re f"))), frame);
        writer.writePage(test.page->uid);
    }
    writer.finish();
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(RenderedPage(out, i + 1).at(100, 50).isLike(expected[i])) << i;
}

TEST_F(PlacedPictures, APictureThatIsMovedIsPaintedWhereItIs) {
    PageItem& frame = frameAt({0, 0, 200, 100});
    PageItem& item = put(fourColours(), frame);
    const std::string out = folder / "page.pdf";
    DocumentWriter writer(test.document, test.texts, out, {});
    writer.writePage(test.page->uid);
    item.transform = Matrix::translation(150, 0).after(item.transform);
    writer.writePage(test.page->uid);
    writer.finish();
    EXPECT_TRUE(RenderedPage(out, 1).at(50, 25).isLike(red));
    EXPECT_TRUE(RenderedPage(out, 2).at(50, 25).isLike(white));
    EXPECT_TRUE(RenderedPage(out, 2).at(175, 25).isLike(red));
}

TEST_F(PlacedPictures, ATransparentPictureLetsTheGroundThrough) {
    test.addColour("Color/Green", ColorSpace::RGB, {0, 255, 0});
    file("dot.pdf", pdfPage(40, 20, "1 0 0 rg 0 0 20 20 re f"));
    run("mutool draw -r 72 -c rgba -o " + (folder / "dot.png") + " " + (folder / "dot.pdf"));
    put(load(folder / "dot.png"), frameAt({20, 10, 180, 90}, "Color/Green"));
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(60, 50).isLike(red));
    EXPECT_TRUE(page.at(140, 50).isLike(green));
}

TEST_F(PlacedPictures, LayersOfAPageShowAsInItsOwnFile) {
    // The renderer takes layers that say the same for one layer, so their names differ from file to file.
    const auto pageWithHidden = [](const std::string& hidden) {
        return pdfOf({"<</Type/Catalog/Pages 2 0 R/OCProperties<</OCGs[6 0 R 7 0 R]/D<</OFF[" + hidden + "]>>>>>>",
                      "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                      "<</Type/Page/Parent 2 0 R/MediaBox[0 0 40 20]/Contents 4 0 R/Resources 5 0 R>>",
                      stream("/OC /Left BDC 1 0 0 rg 0 0 20 20 re f EMC /OC /Right BDC 0 0 1 rg 20 0 20 20 re f EMC"),
                      "<</Properties<</Left 6 0 R/Right 7 0 R>>>>", "<</Type/OCG/Name(left of " + hidden + ")>>",
                      "<</Type/OCG/Name(right of " + hidden + ")>>"});
    };
    put(load(file("left.pdf", pageWithHidden("6 0 R"))), frameAt({20, 10, 60, 30}));
    put(load(file("right.pdf", pageWithHidden("7 0 R"))), frameAt({20, 40, 60, 60}));
    put(load(file("both.pdf", pageWithHidden(""))), frameAt({20, 70, 60, 90}));
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(30, 20).isLike(white));
    EXPECT_TRUE(page.at(50, 20).isLike(blue));
    EXPECT_TRUE(page.at(30, 50).isLike(red));
    EXPECT_TRUE(page.at(50, 50).isLike(white));
    EXPECT_TRUE(page.at(30, 80).isLike(red));
    EXPECT_TRUE(page.at(50, 80).isLike(blue));
}

TEST_F(PlacedPictures, FilesWithoutLayersMakeNone) {
    put(fourColours(), frameAt({20, 10, 180, 90}));
    EXPECT_THAT(decoded(write()), Not(HasSubstr("/OCProperties")));
}

TEST_F(PlacedPictures, AnUnembeddedStandardFontIsEmbeddedOnceForAllPages) {
    for (int i = 0; i < 3; ++i)
        put(load(file("code.pdf",
                      pdfPage(100, 20, "BT /Courier 9 Tf 5 5 Td (40451028909" + std::to_string(40 + i) + ") Tj ET",
                              courier))),
            frameAt({20, 10.0 + 30 * i, 120, 30.0 + 30 * i}));
    write();
    const std::string list = run("pdffonts " + path + " | tail -n +3").output;
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 1) << list;
    EXPECT_THAT(list, HasSubstr("yes yes yes"));
    EXPECT_THAT(textOf(path), HasSubstr("4045102890940"));
    EXPECT_THAT(textOf(path), HasSubstr("4045102890942"));
    EXPECT_THAT(decoded(path), Not(HasSubstr("/BaseFont /Courier")));
}

TEST_F(PlacedPictures, AStandInHasTheWidthsOfTheFontItStandsInFor) {
    const std::string fontEntries =
        "/C<</Type/Font/Subtype/Type1/BaseFont/Courier>>/H<</Type/Font/Subtype/Type1/BaseFont/Helvetica-Bold>>"
        "/T<</Type/Font/Subtype/Type1/BaseFont/Times-Italic>>";
    const std::string original =
        file("text.pdf", pdfPage(200, 100,
                                 "BT /C 12 Tf 5 70 Td (Widths) Tj /H 12 Tf 0 -25 Td (Widths of text) Tj /T 12 "
                                 "Tf 0 -25 Td (Widths of text) Tj ET",
                                 fontEntries));
    put(load(original), frameAt({0, 0, 200, 100}));
    write();
    const auto boxes = [](const std::string& pdf) {
        return run("pdftotext -bbox " + pdf + " - | grep -o 'xM[a-z]*=\"[0-9]*\\.[0-9]\\|>[A-Za-z][a-z]*<'").output;
    };
    EXPECT_EQ(boxes(path), boxes(original));
}

TEST_F(PlacedPictures, AHiddenOrNonprintingPictureIsNotPainted) {
    PageItem& frame = frameAt({20, 10, 100, 90});
    put(fourColours(), frame).visible = false;
    put(fourColours(), frameAt({100, 10, 180, 90})).attributes.nonprinting = true;
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(40, 30).isLike(white));
    EXPECT_TRUE(page.at(120, 30).isLike(white));
}

TEST_F(PlacedPictures, APictureCanBeSeenThrough) {
    put(fourColours(), frameAt({20, 10, 180, 90})).attributes.opacity = 50;
    const RenderedPage page(write(), 1);
    EXPECT_TRUE(page.at(140, 70).isLike({128, 128, 128}, 24));
}

TEST_F(PlacedPictures, AMissingPictureLeavesItsFrameAndIsTold) {
    PageItem& item = test.document.addItem(ItemKind::Graphic);
    item.graphic.emplace();
    item.graphic->bounds = {0, 0, 10, 10};
    item.graphic->failure = "The picture \"a. b.jpg\" isn't there. Put it into the document's folder.";
    test.addColour("Color/Green", ColorSpace::RGB, {0, 255, 0});
    ASSERT_TRUE(putIntoFrame(test.document, item.uid, frameAt({20, 10, 180, 90}, "Color/Green").uid));
    const std::string out = folder / "page.pdf";
    DocumentWriter writer(test.document, test.texts, out, {});
    writer.writePage(test.page->uid);
    writer.writePage(test.page->uid);
    EXPECT_THAT(writer.simplifications().told(),
                ::testing::ElementsAre("the picture \"a. b.jpg\" isn't there, and is left out"));
    writer.finish();
    EXPECT_TRUE(RenderedPage(out, 1).at(100, 50).isLike(green));
}

TEST_F(PlacedPictures, AThousandBarcodePagesTakeFewBytesEach) {
    std::vector<PageItem*> frames;
    for (int i = 0; i < 24; ++i) {
        const double x = i % 3 * 66.0, y = i / 3 * 12.0;
        frames.push_back(&frameAt({x, y, x + 60, y + 10}));
    }
    const std::string out = folder / "page.pdf";
    PdfOptions options;
    options.fonts = &fonts();
    DocumentWriter writer(test.document, test.texts, out, options);
    constexpr int pages = 40;
    for (int page = 0; page < pages; ++page) {
        for (int i = 0; i < 24; ++i) {
            std::string bars = "0 g ";
            uint32_t state = static_cast<uint32_t>(page * 24 + i) * 2654435761u;
            for (int bar = 0; bar < 30; ++bar, state = state * 1664525 + 1013904223)
                bars += std::to_string(bar * 3 + state % 3) + " 8 " + std::to_string(1 + state / 7 % 2) + " 25 re ";
            bars += "f BT /Courier 9 Tf 5 0 Td (" + std::to_string(4045102890940 + page * 24 + i) + ") Tj ET";
            put(load(file("code.pdf", pdfPage(100, 35, bars, courier))), *frames[static_cast<size_t>(i)]);
        }
        writer.writePage(test.page->uid);
    }
    writer.finish();
    EXPECT_EQ(complaintsOfReaders(out), "");
    const auto size = std::filesystem::file_size(out);
    constexpr uint64_t font = 40'000;
    EXPECT_LT(size, font + uint64_t{pages} * 24 * 450);
}

}  // namespace
}  // namespace desk
