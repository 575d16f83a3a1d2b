#include <gtest/gtest.h>

#include <sys/stat.h>

#include "desk/pictures/linked_file.h"
#include "desk/pictures/picture_library.h"
#include "desk/pictures/picture_testing.h"

namespace desk::testing {
namespace {

std::string failureOf(PictureLibrary& library, const std::string& path) {
    const PictureImport import = library.import({path});
    EXPECT_EQ(static_cast<bool>(import), import.failure.empty());
    return import.failure;
}

std::string sentence(const std::string& path, const std::string& what) {
    return "The picture \"" + path + "\" " + what + ".";
}

TEST(PictureLibrary, RecognisesEveryFormat) {
    const PictureFolder folder;
    PictureLibrary library;
    const std::pair<std::string, PictureFormat> files[] = {
        {jpegOf(8, 8, 3), PictureFormat::Jpeg},
        {pngOf(1, 1, 8, 0, std::string(2, '\0')), PictureFormat::Png},
        {tiffOf(1, 1, "a", {}), PictureFormat::Tiff},
        {barcodePdf(9, 9, "q Q"), PictureFormat::Pdf},
        {"<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", PictureFormat::Svg},
        {"%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n0 0 9 9 rectfill showpage\n", PictureFormat::Eps}};
    for (const auto& [bytes, format] : files) {
        // The name says nothing about what is inside.
        const PictureImport import = library.import({folder.write("picture", bytes)});
        ASSERT_TRUE(import) << import.failure;
        EXPECT_EQ(import.picture->format, format);
        EXPECT_GT(import.picture->width, 0);
    }
    EXPECT_STREQ(elementNameOf(PictureFormat::Jpeg), "Image");
    EXPECT_STREQ(elementNameOf(PictureFormat::Pdf), "PDF");
    EXPECT_STREQ(elementNameOf(PictureFormat::Svg), "SVG");
    EXPECT_STREQ(elementNameOf(PictureFormat::Eps), "EPS");
}

TEST(PictureLibrary, ReadsAFileOnceHoweverOftenItIsUsed) {
    const PictureFolder folder;
    const std::string photo = folder.writeOld("photo.jpg", jpegOf(30, 20, 3));
    PictureLibrary library;
    for (int i = 0; i < 1000; ++i) EXPECT_TRUE(library.import({photo}));
    EXPECT_EQ(library.pageCount(photo), 1);
    EXPECT_EQ(library.filesRead(), 1u);
}

TEST(PictureLibrary, AnotherNameForTheSameFileIsTheSamePicture) {
    const PictureFolder folder;
    const std::string photo = folder.writeOld("photo.jpg", jpegOf(30, 20, 3));
    std::filesystem::create_symlink(photo, folder / "link.jpg");
    PictureLibrary library;
    const PictureImport first = library.import({photo}), second = library.import({folder / "link.jpg"});
    EXPECT_EQ(first.picture->identity, second.picture->identity);
    EXPECT_EQ(second.picture->path, folder / "link.jpg");
    EXPECT_EQ(library.filesRead(), 1u);
}

TEST(PictureLibrary, ACopyOfAFileHasTheSameIdentity) {
    const PictureFolder folder;
    PictureLibrary library;
    const std::string bytes = jpegOf(30, 20, 3);
    EXPECT_EQ(library.import({folder.write("a", bytes)}).picture->identity,
              library.import({folder.write("b", bytes)}).picture->identity);
    EXPECT_FALSE(library.import({folder.write("c", jpegOf(30, 21, 3))}).picture->identity ==
                 library.import({folder / "a"}).picture->identity);
}

TEST(PictureLibrary, SeesThatAFileWasWrittenAnew) {
    const PictureFolder folder;
    PictureLibrary library;
    const std::string path = folder.writeOld("photo.jpg", jpegOf(30, 20, 3));
    EXPECT_DOUBLE_EQ(library.import({path}).picture->width, 30);
    folder.write("photo.jpg", jpegOf(60, 20, 3));
    EXPECT_DOUBLE_EQ(library.import({path}).picture->width, 60);
}

TEST(PictureLibrary, SeesAFileThatIsRewrittenInTheSameInstantWithTheSameSize) {
    const PictureFolder folder;
    PictureLibrary library;
    for (int i = 0; i < 200; ++i) {
        const double width = 100 + i % 2 * 11;  // "100" and "111" take the same room in the file
        const std::string path = folder.write("code.pdf", barcodePdf(width, 30, "q Q"));
        EXPECT_EQ(library.pageCount(path), 1);
        EXPECT_DOUBLE_EQ(library.import({path}).picture->width, width);
    }
}

TEST(PictureLibrary, PagesOfOneFileAreReadOnce) {
    const PictureFolder folder;
    std::string kids;
    std::vector<std::string> objects = {"<</Type/Catalog/Pages 2 0 R>>", ""};
    for (int i = 0; i < 5; ++i) {
        kids += std::to_string(objects.size() + 1) + " 0 R ";
        objects.push_back("<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + std::to_string(10 + i) + " 9]>>");
    }
    objects[1] = "<</Type/Pages/Count 5/Kids[" + kids + "]>>";
    const std::string path = folder.writeOld("five.pdf", pdfOf(objects));
    PictureLibrary library;
    EXPECT_EQ(library.pageCount(path), 5);
    for (int page = 1; page <= 5; ++page) EXPECT_DOUBLE_EQ(library.import({path, page}).picture->width, 9 + page);
    EXPECT_EQ(library.import({path, 6}).failure,
              sentence(path, "has only 5 pages: there is no page 6. Give a page that exists"));
    EXPECT_EQ(library.filesRead(), 1u);
    EXPECT_FALSE(library.import({path, 1}).picture->identity == library.import({path, 2}).picture->identity);
    EXPECT_EQ(library.import({path, 1}).picture->pageCount, 5);
}

TEST(PictureLibrary, PagesMeanNothingToOtherFormats) {
    const PictureFolder folder;
    PictureLibrary library;
    const std::string path = folder.writeOld("photo.jpg", jpegOf(30, 20, 3));
    EXPECT_EQ(library.import({path, 7}).picture->identity, library.import({path, 1}).picture->identity);
    EXPECT_EQ(library.import({path, 7}).picture->page, 1);
}

TEST(PictureLibrary, HoldsNoMoreContentThanItMay) {
    const PictureFolder folder;
    PictureLibrary library(100'000);
    std::vector<std::shared_ptr<const Picture>> pictures;
    for (int i = 0; i < 20; ++i)
        folder.write("photo" + std::to_string(i), pngOf(200, 100 + static_cast<uint32_t>(i), 8, 0,
                                                        std::string(201 * (100 + static_cast<size_t>(i)), '\0')) +
                                                      std::string(50'000, 'x'));
    folder.writeOld("wait", "x");
    for (int i = 0; i < 20; ++i) pictures.push_back(library.import({folder / ("photo" + std::to_string(i))}).picture);
    EXPECT_EQ(library.filesRead(), 20u);
    // Facts stay when content goes, and what is written later is read again.
    EXPECT_DOUBLE_EQ(library.import({folder / "photo0"}).picture->height, 100);
    EXPECT_EQ(library.filesRead(), 20u);
    RecordingSink sink;
    for (const auto& picture : pictures) EXPECT_GT(picture->write(sink), 0u);
    EXPECT_EQ(sink.objects.size(), 20u);
}

TEST(PictureLibrary, AFileThatChangedBeforeItIsWrittenIsTold) {
    const PictureFolder folder;
    PictureLibrary library(1);
    const std::string path = folder.writeOld("a.jpg", jpegOf(30, 20, 3));
    folder.writeOld("b.jpg", jpegOf(40, 20, 3));
    const auto picture = library.import({path}).picture;
    library.import({folder / "b.jpg"});  // lets the first one go
    folder.write("a.jpg", jpegOf(50, 20, 3));
    RecordingSink sink;
    try {
        picture->write(sink);
        FAIL() << "written as if nothing had happened";
    } catch (const InputError& failure) {
        EXPECT_EQ(failure.what(), sentence(path, "was changed while it was in use. Run the export again"));
    }
}

TEST(PictureLibrary, SaysWhatIsWrongWithAPath) {
    const PictureFolder folder;
    PictureLibrary library;
    EXPECT_EQ(failureOf(library, folder.path().string()),
              sentence(folder.path().string(), "is a folder. Give the path of a picture"));
    EXPECT_EQ(failureOf(library, folder / "absent"), sentence(folder / "absent", "doesn't exist. Correct the path"));
    EXPECT_EQ(failureOf(library, folder.write("empty", "")), sentence(folder / "empty", "is empty. Save it again"));
    EXPECT_EQ(failureOf(library, folder.write("text", "hello")),
              sentence(folder / "text", "isn't a picture that can be placed. Use JPEG, PNG, TIFF, PDF, SVG or EPS"));
    EXPECT_EQ(failureOf(library, ""), sentence("", "has no path. Give one"));
    EXPECT_EQ(failureOf(library, std::string("a\0b", 3)), sentence("a?b", "has a NUL in its path. Correct the path"));
    EXPECT_EQ(library.pageCount(folder / "absent"), 0);
    EXPECT_EQ(library.pageCount(folder / "text"), 0);
}

TEST(PictureLibrary, RemembersTheLastSentenceOfAnImportThatFailed) {
    const PictureFolder folder;
    PictureLibrary library;
    EXPECT_EQ(library.lastFailure(), "");
    const PictureImport failed = library.import({folder / "absent"});
    EXPECT_EQ(library.lastFailure(), failed.failure);
    EXPECT_NE(library.lastFailure(), "");
}

TEST(PictureLibrary, CutsAVeryLongNameInItsMessage) {
    PictureLibrary library;
    const std::string failure = failureOf(library, std::string(100'000, 'x'));
    EXPECT_LT(failure.size(), 400u);
    EXPECT_NE(failure.find("can't be read: File name too long"), std::string::npos) << failure;
}

TEST(PictureLibrary, DoesntWaitForAPipe) {
    const PictureFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    PictureLibrary library;
    EXPECT_EQ(failureOf(library, folder / "pipe"),
              sentence(folder / "pipe", "isn't an ordinary file. Give the path of a picture"));
    EXPECT_EQ(failureOf(library, "/dev/zero"),
              sentence("/dev/zero", "isn't an ordinary file. Give the path of a picture"));
}

TEST(PictureLibrary, AHugeFileIsRefusedUnread) {
    const PictureFolder folder;
    folder.write("huge", "x");
    std::filesystem::resize_file(folder / "huge", uint64_t{3} << 30);
    PictureLibrary library;
    EXPECT_EQ(failureOf(library, folder / "huge"),
              sentence(folder / "huge", "is too large (3072 MB). Make it smaller"));
    EXPECT_EQ(library.filesRead(), 0u);
}

TEST(PictureLibrary, AFileThatCantBeUsedIsReadOnceToo) {
    const PictureFolder folder;
    const std::string path = folder.writeOld("text", "hello");
    PictureLibrary library;
    const std::string failure = failureOf(library, path);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(failureOf(library, path), failure);
    EXPECT_EQ(library.filesRead(), 1u);
}

TEST(PictureLibrary, TakesBytesThatAPackageCarries) {
    PictureLibrary library;
    const PictureImport import = library.importBytes(shared(jpegOf(30, 20, 3)), "inside");
    ASSERT_TRUE(import);
    EXPECT_DOUBLE_EQ(import.picture->width, 30);
    EXPECT_EQ(library.importBytes(shared("hello"), "inside").failure,
              sentence("inside", "isn't a picture that can be placed. Use JPEG, PNG, TIFF, PDF, SVG or EPS"));
    EXPECT_FALSE(library.importBytes(nullptr, "inside"));
}

TEST(AddPicture, MakesAnItemOfThePicturesOwnSize) {
    PictureLibrary library;
    Document document;
    const PageItem& item = addPicture(document, library.importBytes(shared(barcodePdf(40, 30, "q Q")), "x").picture);
    EXPECT_EQ(item.kind, ItemKind::Graphic);
    EXPECT_EQ(item.graphic->kind, "PDF");
    EXPECT_EQ(item.graphic->bounds, (Rect{0, 0, 40, 30}));
    EXPECT_EQ(item.parent, 0u);
}

TEST(LoadPlacedPictures, APageCutToItsContentsIsMeasuredWhereItsSizeSaysSo) {
    const PictureFolder folder;
    const std::string pdf = folder.write("page.pdf", barcodePdf(100, 60, "0 0 20 30 re f"));
    for (const auto& [bounds, width] : {std::pair(Rect{0, 0, 20, 30}, 20), std::pair(Rect{0, 0, 100, 60}, 100)}) {
        PictureLibrary library;
        Document document;
        PageItem& frame = document.addItem(ItemKind::Rectangle);
        document.placeOnSpread(frame, document.addSpread(false), document.addLayer("Layer"));
        PageItem& item = document.addItem(ItemKind::Graphic);
        item.graphic.emplace();
        item.graphic->uri = linkOfPath(pdf);
        item.graphic->box = PageBox::Content;
        item.graphic->bounds = bounds;
        document.placeInside(item, frame);
        loadPlacedPictures(document, library);
        ASSERT_TRUE(item.graphic->picture) << item.graphic->failure;
        EXPECT_NEAR(item.graphic->picture->width, width, 0.1);
        EXPECT_EQ(item.graphic->bounds, bounds);
    }
}

TEST(Links, NamePathsInEveryWayThatPackagesWriteThem) {
    EXPECT_EQ(pathOfLink("file:/Users/a%20b/c.jpg"), "/Users/a b/c.jpg");
    EXPECT_EQ(pathOfLink("file:///Users/a.jpg"), "/Users/a.jpg");
    EXPECT_EQ(pathOfLink("file:C:/a.jpg"), "C:/a.jpg");
    EXPECT_EQ(pathOfLink("file://server/share/a.jpg"), "//server/share/a.jpg");
    EXPECT_EQ(pathOfLink("file:/100%/a%zz.jpg"), "/100%/a%zz.jpg");
    EXPECT_EQ(pathOfLink("file:/a%00b"), "");
    EXPECT_EQ(pathOfLink("http://example.org/a.jpg"), "");
    EXPECT_EQ(pathOfLink(""), "");
}

TEST(Links, SayPathsAndReadThemBack) {
    for (const std::string path : {"/a/b c.jpg", "/ä/100%.pdf", "/a#b?c"})
        EXPECT_EQ(pathOfLink(linkOfPath(path)), path) << linkOfPath(path);
    EXPECT_EQ(linkOfPath("/a b"), "file:/a%20b");
}

TEST(Links, AreFoundBesideTheDocument) {
    const PictureFolder folder;
    const std::string document = folder / "job/letter.idml";
    folder.write("job/letter.idml", "x");
    EXPECT_EQ(fileOfLink("file:/Users/me/Links/a.jpg", document), "");
    const std::string near = folder.write("job/Links/a.jpg", "x");
    EXPECT_EQ(fileOfLink("file:/Users/me/a.jpg", document), near);
    const std::string nearer = folder.write("job/me/a.jpg", "x");
    EXPECT_EQ(fileOfLink("file:/Users/me/a.jpg", document), nearer);
    const std::string above = folder.write("photos/b.jpg", "x");
    EXPECT_EQ(fileOfLink("file:C:\\work\\photos\\b.jpg", document), above);
    const std::string there = folder.write("there.jpg", "x");
    EXPECT_EQ(fileOfLink("file:" + there, document), there);
    EXPECT_EQ(fileOfLink("file:/Users/../../there.jpg/..", document), "");
    EXPECT_EQ(fileOfLink("http://example.org/there.jpg", document), "");
}

}  // namespace
}  // namespace desk::testing
