#include "pdf/page_inspection.h"

#include <filesystem>
#include <fstream>

#include "pdf/pdf_keys.h"
#include "pdf/toolkit.h"

namespace vornaset {
namespace {

namespace fs = std::filesystem;

/// Files in a folder that goes with the test.
class PageInspection : public testing::Test {
  protected:
    PageInspection() {
        std::string name = (fs::temp_directory_path() / "vornaset-pages-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~PageInspection() override { fs::remove_all(folder_); }

    String file(const char* name) const { return String((folder_ / name).c_str()); }

    /// One page of 100 by 200 points for each content.
    String fileOf(const char* name, const std::vector<std::string>& contents) const {
        const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
        for (const std::string& content : contents)
            document->addPageWithRect({0, 0, 100, 200})->setContents(streamOf(content));
        document->writeToFile(file(name));
        return file(name);
    }

    String fileOfPage(const char* name, const Rect& media, const Rect& crop, int rotation, const std::string& content) {
        const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
        const Handle<MyPDFDictionary> page = document->addPageWithRect(media);
        page->setCropBox(crop);
        page->setInteger(rotation, u"Rotate");
        page->setContents(streamOf(content));
        document->writeToFile(file(name));
        return file(name);
    }

    fs::path folder_;
};

const char* const kBlackBar = "0 0 0 1 k 10 10 50 20 re f";

TEST(CmykString, HasTheLettersOfTheBitsInOrder) {
    EXPECT_EQ(cmykString(5), u"CY");
    EXPECT_EQ(cmykString(15), u"CMYK");
    EXPECT_EQ(cmykString(0), u"");
    EXPECT_EQ(cmykString(8 + 64), u"K");
}

TEST(IsPDFFile, LooksAtTheEndingAlone) {
    EXPECT_TRUE(isPDFFile(u"/nowhere/a.PDF"));
    EXPECT_FALSE(isPDFFile(u"/nowhere/a.pdf.txt"));
    EXPECT_FALSE(isPDFFile(nullptr));
}

TEST_F(PageInspection, AWhitePageUsesNoInk) {
    const String path = fileOf("white.pdf", {"", "0 g"});
    EXPECT_EQ(cmykColorsForPDFPage(path, 1), 0U);
    EXPECT_EQ(cmykString(static_cast<int32_t>(cmykColorsForPDFPage(path, 1))), u"");
}

TEST_F(PageInspection, BlackTextInDeviceCMYKUsesBlackAlone) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    const Handle<MyPDFDictionary> page = document->addPageWithRect({0, 0, 100, 200});
    page->setContents(streamOf("BT 0 0 0 1 k /Courier 12 Tf 10 100 Td (Black) Tj ET"));
    const Handle<MyPDFDictionary> fonts = MyPDFDictionary::make();
    fonts->setObject(MyPDFDictionary::courier(), u"Courier");
    objectAs<MyPDFDictionary>(page->resources())->setObject(fonts, pdf_key::kFont);
    document->writeToFile(file("text.pdf"));
    EXPECT_EQ(cmykColorsForPDFPage(file("text.pdf"), 1), 8U);
}

TEST_F(PageInspection, EveryInkHasItsBitHoweverFaint) {
    const String path = fileOf("inks.pdf", {"0.01 0 0 0 k 10 10 5 5 re f", "0 0.01 0 0 k 10 10 5 5 re f",
                                            "0 0 0.01 0 k 10 10 5 5 re f", "0 0 0 0.01 k 10 10 5 5 re f"});
    for (int64_t page = 1; page <= 4; ++page) EXPECT_EQ(cmykColorsForPDFPage(path, page), 1U << (page - 1));
}

TEST_F(PageInspection, ASpotColourGivesTheInksOfItsAlternate) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    const Handle<MyPDFDictionary> page = document->addPageWithRect({0, 0, 100, 200});
    page->setContents(streamOf("/Spot cs 1 scn 10 10 50 50 re f"));
    const Handle<MyPDFDictionary> tint = MyPDFDictionary::make();
    tint->setInteger(2, u"FunctionType");
    tint->setInteger(1, u"N");
    tint->setObject(arrayOf({integer(0), integer(1)}), u"Domain");
    tint->setObject(arrayOf({integer(0), integer(0), integer(0), integer(0)}), u"C0");
    tint->setObject(arrayOf({integer(0), number(0.5), number(0.5), integer(0)}), u"C1");
    const Handle<MyPDFDictionary> spaces = MyPDFDictionary::make();
    spaces->setObject(arrayOf({MyPDFName::nameWithString(u"Separation"), MyPDFName::nameWithString(u"Brick"),
                               MyPDFName::nameWithString(u"DeviceCMYK"), tint}),
                      u"Spot");
    objectAs<MyPDFDictionary>(page->resources())->setObject(spaces, pdf_key::kColorSpace);
    document->writeToFile(file("spot.pdf"));
    EXPECT_EQ(cmykColorsForPDFPage(file("spot.pdf"), 1), uint32_t{kMagenta | kYellow});
}

TEST_F(PageInspection, TheLastPageIsLeftOutOfAFilesInks) {
    const String path = fileOf("three.pdf", {kBlackBar, "0 0 1 0 k 0 0 9 9 re f", "1 0 0 0 k 0 0 9 9 re f"});
    EXPECT_EQ(cmykColorsForPDFPath(path), uint32_t{kBlack | kYellow});
    EXPECT_EQ(cmykColorsForPDFPage(path, 3), uint32_t{kCyan});
}

TEST_F(PageInspection, AFileOfOnePageHasNoInksByPathButByPage) {
    const String path = fileOf("one.pdf", {kBlackBar});
    EXPECT_EQ(cmykColorsForPDFPath(path), 0U);
    EXPECT_EQ(cmykColorsForPDFPage(path, 1), uint32_t{kBlack});
}

TEST_F(PageInspection, MorePagesThanOneProcessDrawsAreAllSeen) {
    std::vector<std::string> contents(20, kBlackBar);
    contents[18] = "0 1 0 0 k 0 0 9 9 re f";
    EXPECT_EQ(cmykColorsForPDFPath(fileOf("twenty.pdf", contents)), uint32_t{kMagenta | kBlack});
}

TEST_F(PageInspection, WhatIsNoPDFHasNoInks) {
    std::ofstream(folder_ / "program.pdf") << "%!PS\n(" << (folder_ / "made").string() << ") (w) file closefile\n";
    EXPECT_EQ(cmykColorsForPDFPage(file("program.pdf"), 1), 0U);
    EXPECT_EQ(cmykColorsForPDFPath(file("program.pdf")), 0U);
    EXPECT_FALSE(beginsAsPDF(file("program.pdf")));
    EXPECT_FALSE(fs::exists(folder_ / "made"));
    EXPECT_EQ(cmykColorsForPDFPage(file("missing.pdf"), 1), 0U);
    EXPECT_EQ(cmykColorsForPDFPage(nullptr, 1), 0U);
    EXPECT_EQ(cmykColorsForPDFPage(static_cast<const ReaderPage*>(nullptr)), 0U);
}

TEST_F(PageInspection, ACropBoxIsCutToWholePixels) {
    const String path =
        fileOfPage("cut.pdf", {0, 0, 300, 400}, {50, 60, 100.9, 200.9}, 0, "0 0 0 1 k 40 50 400 400 re f");
    for (const PixelColours colours : {PixelColours::cmyk, PixelColours::rgba}) {
        const Bitmap bitmap = drawPage(ReaderPage::open(path, 1)->toDraw(), colours);
        EXPECT_EQ(bitmap.width, 100);
        EXPECT_EQ(bitmap.height, 200);
        EXPECT_EQ(bitmap.pixels.size(), 100U * 200 * 4);
    }
}

TEST_F(PageInspection, ATurnedPageFitsIntoItsUnturnedSize) {
    const String path = fileOfPage("turned.pdf", {0, 0, 100, 200}, {0, 0, 100, 200}, 90, "0 0 0 1 k 0 0 100 200 re f");
    for (const PixelColours colours : {PixelColours::cmyk, PixelColours::rgba}) {
        const Bitmap bitmap = drawPage(ReaderPage::open(path, 1)->toDraw(), colours);
        ASSERT_EQ(bitmap.width, 100);
        ASSERT_EQ(bitmap.height, 200);
        // 200 by 100 points at half the size stand in the middle: rows 75 to 124.
        const auto inkAt = [&](size_t x, size_t y) {
            return static_cast<uint8_t>(bitmap.pixels[(y * 100 + x) * 4 + 3]);
        };
        EXPECT_EQ(inkAt(50, 60), 0);
        EXPECT_EQ(inkAt(50, 100), 255);
        EXPECT_EQ(inkAt(50, 140), 0);
    }
}

TEST_F(PageInspection, APageWithoutInkIsTransparentInRGB) {
    const Bitmap bitmap =
        drawPage(ReaderPage::open(fileOf("red.pdf", {"1 0 0 rg 0 0 50 200 re f"}), 1)->toDraw(), PixelColours::rgba);
    ASSERT_FALSE(bitmap.isEmpty());
    const auto pixel = [&](size_t x, size_t y) { return bitmap.pixels.substr((y * 100 + x) * 4, 4); };
    EXPECT_EQ(pixel(20, 100), std::string("\xFF\0\0\xFF", 4));
    EXPECT_EQ(pixel(80, 100), std::string("\0\0\0\0", 4));
}

TEST_F(PageInspection, AJPEGOfAPageHasTheCropBoxesSize) {
    const String path = fileOf("page.pdf", {kBlackBar, ""});
    PageSize size;
    const Data jpeg = jpegDataWithPDFPage(path, 1, &size);
    EXPECT_EQ(size, (PageSize{100, 200}));
    const auto image = Image::withJPEG(jpeg);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width(), 100);
    EXPECT_EQ(image->height(), 200);
    EXPECT_EQ(jpegDataWithPDFPage(path, -3), jpeg) << "a number below 1 counts as 1";
    EXPECT_NE(jpegDataWithPDFPage(path, 2), jpeg);
    EXPECT_TRUE(jpegDataWithPDFPage(path, 3).isNull());
    EXPECT_TRUE(jpegDataWithPDFPage(file("missing.pdf"), 1).isNull());
}

TEST_F(PageInspection, TheSizeOfAJPEGIsToldEvenWhenNothingCanBeDrawn) {
    const String path = fileOfPage("flat.pdf", {0, 0, 100, 200}, {0, 0, 100, 0.5}, 0, "");
    PageSize size;
    EXPECT_TRUE(jpegDataWithPDFPage(path, 1, &size).isNull());
    EXPECT_EQ(size.width, 100);
    EXPECT_EQ(size.height, 0.5);
}

TEST_F(PageInspection, AnImageOfAPageHoldsThatPageAlone) {
    const String path = fileOf("pages.pdf", {"first", "second", "third"});
    PageSize size;
    const auto image = imageWithPDFPage(path, 1, &size);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->kind(), Image::Kind::pdfPage);
    EXPECT_EQ(size, (PageSize{100, 200}));
    std::ofstream(folder_ / "alone.pdf", std::ios::binary) << image->data().view();
    const Handle<MyPDFDoc> alone = MyPDFDoc::pdfDocWithPath(file("alone.pdf"));
    EXPECT_EQ(contentsOfPages(alone), std::vector<std::string>{"second"});
}

TEST_F(PageInspection, AnImageOfNoPageIsAbsentWithAZeroSize) {
    const String path = fileOf("pages.pdf", {"first"});
    for (const int64_t index : {-1, 1}) {
        PageSize size{7, 7};
        EXPECT_FALSE(imageWithPDFPage(path, index, &size));
        EXPECT_EQ(size, PageSize());
    }
    PageSize untouched{7, 7};
    EXPECT_FALSE(imageWithPDFPage(file("missing.pdf"), 0, &untouched));
    EXPECT_EQ(untouched, (PageSize{7, 7}));
}

TEST_F(PageInspection, AnImageOfAnOpenPageTellsTheTrimBox) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    document->addPageWithRect({0, 0, 100, 200})->setTrimBox({10, 20, 30, 40});
    document->writeToFile(file("trim.pdf"));
    Rect bounds;
    EXPECT_TRUE(imageWithPDFPage(ReaderPage::open(file("trim.pdf"), 1).get(), &bounds));
    EXPECT_EQ(bounds, (Rect{10, 20, 30, 40}));
    EXPECT_FALSE(imageWithPDFPage(nullptr, &bounds));
}

TEST_F(PageInspection, InheritedBoxesAndTurnsAreThePages) {
    const Handle<MyPDFDoc> document = MyPDFDoc::pdfDoc();
    const Handle<MyPDFDictionary> page = document->addPageWithRect({0, 0, 10, 10});
    page->setObject(nullptr, pdf_key::kMediaBox);
    page->setObject(nullptr, pdf_key::kCropBox);
    document->pagesObj()->setMediaBox({0, 0, 300, 500});
    document->pagesObj()->setInteger(-90, u"Rotate");
    document->writeToFile(file("inherits.pdf"));
    const auto read = ReaderPage::open(file("inherits.pdf"), 1);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->boundsForBox(PageBox::crop), (Rect{0, 0, 300, 500}));
    EXPECT_EQ(read->boundsForBox(PageBox::trim), (Rect{0, 0, 300, 500}));
    EXPECT_EQ(read->quarterTurns(), 3);
}

Handle<MyPDFStream> imageStream(const char* colourSpace, size_t bytes) {
    const Handle<MyPDFStream> stream = streamOf(std::string(bytes, '\x7F'));
    stream->setName(colourSpace, pdf_key::kColorSpace);
    stream->setWidth(4);
    stream->setHeight(2);
    stream->setBitsPerComponent(8);
    return stream;
}

TEST(ImageWithPDFStream, TakesDeviceRGBAndCMYK) {
    const auto rgb = imageWithPDFStream(imageStream("DeviceRGB", 24));
    ASSERT_TRUE(rgb);
    EXPECT_EQ(rgb->colourSpace(), DeviceColourSpace::rgb);
    EXPECT_EQ(rgb->width(), 4);
    EXPECT_EQ(rgb->height(), 2);
    const auto cmyk = imageWithPDFStream(imageStream("DeviceCMYK", 32));
    ASSERT_TRUE(cmyk);
    EXPECT_EQ(cmyk->colourSpace(), DeviceColourSpace::cmyk);
}

TEST(ImageWithPDFStream, GrayAndOtherSpacesGiveNothing) {
    EXPECT_FALSE(imageWithPDFStream(imageStream("DeviceGray", 8)));
    const Handle<MyPDFStream> indexed = imageStream("DeviceRGB", 24);
    indexed->setObject(arrayOf({integer(1)}), pdf_key::kColorSpace);
    EXPECT_FALSE(imageWithPDFStream(indexed));
}

TEST(ImageWithPDFStream, WithoutDataOrWithTooLittleThereIsNoPicture) {
    EXPECT_FALSE(imageWithPDFStream(MyPDFStream::stream()));
    EXPECT_FALSE(imageWithPDFStream(nullptr));
    EXPECT_FALSE(imageWithPDFStream(imageStream("DeviceRGB", 23)));
    const Handle<MyPDFStream> huge = imageStream("DeviceRGB", 24);
    huge->setWidth(INT64_MAX);
    EXPECT_FALSE(imageWithPDFStream(huge));
}

TEST_F(PageInspection, AJPEGStreamIsThePictureItself) {
    const Data jpeg = jpegDataWithPDFPage(fileOf("page.pdf", {kBlackBar}), 1);
    const Handle<MyPDFStream> stream = MyPDFStream::stream();
    stream->setData(jpeg);
    stream->setDataFormat(kStreamJPEG);
    stream->setFilter(u"DCTDecode");
    const auto image = imageWithPDFStream(stream);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->kind(), Image::Kind::jpeg);
    EXPECT_EQ(image->data(), jpeg);
    stream->setData(Data(std::string("no JPEG")));
    EXPECT_FALSE(imageWithPDFStream(stream));
}

TEST(ColorSpaceForPDFDict, LeavesTheOutputsAloneWhenThereIsNone) {
    int64_t components = 9;
    int32_t flags = 9;
    EXPECT_FALSE(colorSpaceForPDFDict(imageStream("DeviceGray", 8), components, flags));
    EXPECT_EQ(components, 9);
    EXPECT_EQ(flags, 9);
    EXPECT_EQ(colorSpaceForPDFDict(imageStream("DeviceCMYK", 8), components, flags), DeviceColourSpace::cmyk);
    EXPECT_EQ(components, 4);
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(colorSpaceForPDFDict(imageStream("DeviceRGB", 8), components, flags), DeviceColourSpace::rgb);
    EXPECT_EQ(components, 3);
}

TEST(JpegDataWithBitmap, PutsWhitePaperUnderTransparentPixels) {
    Bitmap bitmap{PixelColours::rgba, 16, 16, std::string(16 * 16 * 4, '\0')};
    const Data jpeg = jpegDataWithBitmap(bitmap);
    ASSERT_FALSE(jpeg.isNull());
    bitmap.pixels.assign(16 * 16 * 4, '\xFF');
    EXPECT_EQ(jpegDataWithBitmap(bitmap), jpeg);
    EXPECT_TRUE(jpegDataWithBitmap(Bitmap()).isNull());
    bitmap.colours = PixelColours::cmyk;
    EXPECT_TRUE(jpegDataWithBitmap(bitmap).isNull());
}

}  // namespace
}  // namespace vornaset
