#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "desk/pictures/picture_testing.h"
#include "desk/pictures/standard_fonts.h"

namespace desk::testing {
namespace {

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

const std::string catalog = "<</Type/Catalog/Pages 2 0 R>>";

/// A document of one page with these entries; objects from 5 on follow, and the content is object 4.
std::string onePage(const std::string& pageEntries, const std::string& content = "0 0 9 9 re f",
                    const std::vector<std::string>& more = {}) {
    std::vector<std::string> objects = {catalog, "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                        "<</Type/Page/Parent 2 0 R/Contents 4 0 R" + pageEntries + ">>",
                                        streamOf("", content)};
    objects.insert(objects.end(), more.begin(), more.end());
    return pdfOf(objects);
}

const std::string barcode = barcodePdf(107.7, 35.4, "0 g 10 10 1 20 re f BT /Courier 9 Tf (4045102890940) Tj ET");

TEST(PlainPdf, ABarcodePageGoesTheShortWay) {
    const auto content = readPlainPdf(shared(barcode));
    ASSERT_TRUE(content);
    EXPECT_EQ(content->pageCount(), 1);
    const PageFacts facts = content->facts(1, PageBox::Crop);
    EXPECT_DOUBLE_EQ(facts.width, 107.7);
    EXPECT_DOUBLE_EQ(facts.height, 35.4);
    EXPECT_EQ(facts.toNatural, Matrix());
    RecordingSink sink;
    const RecordingSink::Object form = written(*content, sink);
    EXPECT_TRUE(has(form.text, "/Subtype/Form/BBox[0 0 107.7 35.4]")) << form.text;
    EXPECT_TRUE(has(form.text, "/Filter/FlateDecode"));
    EXPECT_TRUE(form.isEncoded);
    EXPECT_EQ(inflatedForTest(form.bytes), "0 g 10 10 1 20 re f BT /Courier 9 Tf (4045102890940) Tj ET");
    const RecordingSink::Object& resources = sink.objectAt(form.text, "/Resources");
    EXPECT_EQ(sink.objectAt(resources.text, "/Courier").text, "stand-in for Courier");
}

TEST(PlainPdf, AThousandPagesShareResourcesAndFont) {
    RecordingSink sink;
    for (int i = 0; i < 1000; ++i)
        readPlainPdf(shared(barcodePdf(100, 30, "BT (" + std::to_string(i) + ") Tj ET")))
            ->write(1, PageBox::Crop, {}, sink);
    EXPECT_EQ(sink.objects.size(), 1002u);
}

TEST(PlainPdf, WithoutAStandInTheFontIsNamedAsItWas) {
    RecordingSink sink;
    sink.hasStandIns = false;
    const RecordingSink::Object form = written(*readPlainPdf(shared(barcode)), sink);
    const RecordingSink::Object& resources = sink.objectAt(form.text, "/Resources");
    EXPECT_EQ(sink.objectAt(resources.text, "/Courier").text,
              "<</Type/Font/Subtype/Type1/BaseFont/Courier/Encoding/MacRomanEncoding>>");
}

TEST(PlainPdf, BothWaysGiveTheSame) {
    RecordingSink plainSink, generalSink;
    const auto plain = readPlainPdf(shared(barcode)), general = readPdf(shared(barcode));
    const RecordingSink::Object a = written(*plain, plainSink), b = written(*general, generalSink);
    EXPECT_EQ(a.bytes, b.bytes);
    EXPECT_EQ(plain->facts(1, PageBox::Crop).width, general->facts(1, PageBox::Crop).width);
    EXPECT_EQ(plain->facts(1, PageBox::Crop).toNatural, general->facts(1, PageBox::Crop).toNatural);
    ASSERT_EQ(generalSink.absentFonts.size(), 1u);
    EXPECT_EQ(plainSink.absentFonts, generalSink.absentFonts);
}

TEST(PlainPdf, AnythingElseIsLeftToTheGeneralReader) {
    EXPECT_FALSE(readPlainPdf(shared(onePage("/MediaBox[0 0 9 9]/Rotate 90"))));
    EXPECT_FALSE(readPlainPdf(shared(onePage("/MediaBox[0 0 9 9]/CropBox[0 0 5 5]/Resources<<>>"))));
    EXPECT_FALSE(readPlainPdf(shared(onePage("/MediaBox[0 0 9 9]/Resources<</XObject<</X 5 0 R>>>>"))));
    EXPECT_FALSE(readPlainPdf(shared(onePage("/MediaBox[0 0 0 9]/Resources<<>>"))));
    EXPECT_TRUE(readPlainPdf(shared(onePage("/MediaBox[0 0 9 9]/Resources<<>>"))));
    for (size_t size = 0; size < barcode.size() - 2; ++size)
        EXPECT_FALSE(readPlainPdf(shared(barcode.substr(0, size)))) << size;
}

TEST(PlainPdf, ADamagedContentIsLeftToTheGeneralReader) {
    std::string damaged = barcode;
    damaged[damaged.find("stream\n") + 9] ^= 0x55;
    EXPECT_FALSE(readPlainPdf(shared(damaged)));
}

TEST(PlainPdf, HasNoSecondPage) {
    EXPECT_EQ(refusal([] { readPlainPdf(shared(barcode))->facts(2, PageBox::Crop); }),
              "has only 1 page: there is no page 2. Give a page that exists");
}

/// Pages of width 100, 200, ... with a font that all share.
std::string pagesOf(int count) {
    std::string kids;
    std::vector<std::string> objects = {catalog, "", "<</Type/Font/Subtype/Type1/BaseFont/Some/FontDescriptor 4 0 R>>",
                                        "<</Type/FontDescriptor/FontFile 5 0 R>>", streamOf("", "font bytes")};
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(objects.size() + 1) + " 0 R ";
        objects.push_back("<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + std::to_string(100 * (i + 1)) +
                          " 50]/Resources<</Font<</F1 3 0 R>>>>/Contents " + std::to_string(objects.size() + 2) +
                          " 0 R>>");
        objects.push_back(streamOf("", "page " + std::to_string(i + 1)));
    }
    objects[1] = "<</Type/Pages/Count " + std::to_string(count) + "/Kids[" + kids + "]>>";
    return pdfOf(objects);
}

/// The /BBox among a form's entries, its sides rounded.
std::string roundedBox(const std::string& entries) {
    double sides[4] = {};
    const size_t at = entries.find("/BBox[");
    if (at == std::string::npos) return {};
    std::sscanf(entries.c_str() + at, "/BBox[%lf %lf %lf %lf]", &sides[0], &sides[1], &sides[2], &sides[3]);
    std::string box = "/BBox[";
    for (const double& side : sides) box += std::to_string(std::lround(side)) + (&side == &sides[3] ? "]" : " ");
    return box;
}

TEST(Pdf, EachPageIsAFormOfItsOwn) {
    const auto content = readPdf(shared(pagesOf(3)));
    EXPECT_EQ(content->pageCount(), 3);
    EXPECT_DOUBLE_EQ(content->facts(2, PageBox::Crop).width, 200);
    RecordingSink sink;
    EXPECT_EQ(written(*content, sink, 3).bytes, "page 3");
}

TEST(Pdf, PagesShareWhatTheirFileShares) {
    const auto content = readPdf(shared(pagesOf(3)));
    RecordingSink sink;
    for (int page = 1; page <= 3; ++page) content->write(page, PageBox::Crop, {{7, 8}}, sink);
    int fontFiles = 0;
    for (const auto& [number, object] : sink.objects) fontFiles += object.bytes == "font bytes";
    EXPECT_EQ(fontFiles, 1);
}

TEST(Pdf, APageThatNeedsADamagedObjectIsRefusedEveryTime) {
    // Both pages need object 5 and what that refers to, of which one is nested too deep to be meant.
    const std::string deep = std::string(300, '[') + std::string(300, ']');
    const std::string page = "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Resources<</Properties 5 0 R>>>>";
    const auto content =
        readPdf(shared(pdfOf({catalog, "<</Type/Pages/Kids[3 0 R 4 0 R 7 0 R]/Count 3>>", page, page, "<</A 6 0 R>>",
                              deep, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>"})));
    for (const int number : {1, 2, 1}) EXPECT_NE(refusal([&] { content->facts(number, PageBox::Crop); }), "") << number;
    EXPECT_EQ(refusal([&] { content->facts(3, PageBox::Crop); }), "");
}

TEST(Pdf, APageThatDoesntExistIsRefused) {
    EXPECT_EQ(refusal([] { readPdf(shared(pagesOf(3)))->facts(4, PageBox::Crop); }),
              "has only 3 pages: there is no page 4. Give a page that exists");
    EXPECT_NE(refusal([] { readPdf(shared(pagesOf(3)))->facts(0, PageBox::Crop); }), "");
}

TEST(Pdf, ATurnedPageStandsUpright) {
    const std::pair<int, Point> places[] = {
        {0, {0, 0}}, {90, {0, 30}}, {180, {20, 30}}, {270, {20, 0}}, {-90, {20, 0}}};
    for (const auto& [turn, corner] : places) {
        const int side = turn % 180 == 0 ? 0 : 1;
        const std::string box = side == 0 ? "[5 7 25 37]" : "[5 7 35 27]";
        const PageFacts facts =
            readPdf(shared(onePage("/MediaBox" + box + "/Rotate " + std::to_string(turn))))->facts(1, PageBox::Crop);
        EXPECT_DOUBLE_EQ(facts.width, 20) << turn;
        EXPECT_DOUBLE_EQ(facts.height, 30) << turn;
        // Where the page's own left bottom corner comes to.
        EXPECT_EQ(facts.toNatural.apply({5, 7}), corner) << turn;
    }
}

TEST(Pdf, TheBoxThatIsAskedForIsCutOut) {
    const auto content = readPdf(shared(onePage("/MediaBox[0 0 100 100]/CropBox[10 10 90 120]/TrimBox[20 20 80 80]")));
    EXPECT_DOUBLE_EQ(content->facts(1, PageBox::Media).width, 100);
    EXPECT_DOUBLE_EQ(content->facts(1, PageBox::Crop).width, 80);
    EXPECT_DOUBLE_EQ(content->facts(1, PageBox::Crop).height, 90);
    EXPECT_DOUBLE_EQ(content->facts(1, PageBox::Trim).width, 60);
    EXPECT_DOUBLE_EQ(content->facts(1, PageBox::Art).width, 80);
    RecordingSink sink;
    EXPECT_TRUE(has(written(*content, sink, 1, PageBox::Trim).text, "/BBox[20 20 80 80]"));
}

TEST(Pdf, TheContentsBoxIsMeasured) {
    const struct {
        std::string page;
        double width, height;
        std::string box;
    } cases[] = {
        {"/MediaBox[20 30 220 230]", 120, 40, "/BBox[60 70 180 110]"},
        {"/MediaBox[20 30 220 230]/Rotate 90", 40, 120, "/BBox[60 70 180 110]"},
        {"/MediaBox[20 30 220 230]/CropBox[80 80 400 100]", 100, 20, "/BBox[80 80 180 100]"},
        {"/MediaBox[20 30 220 230]/UserUnit 2", 240, 80, "/BBox[60 70 180 110]"},
    };
    for (const auto& [page, width, height, box] : cases) {
        const auto content = readPdf(shared(onePage(page, "0 0 1 rg 60 70 120 40 re f")));
        const PageFacts facts = content->facts(1, PageBox::Content);
        EXPECT_NEAR(facts.width, width, 0.1) << page;
        EXPECT_NEAR(facts.height, height, 0.1) << page;
        RecordingSink sink;
        EXPECT_EQ(roundedBox(written(*content, sink, 1, PageBox::Content).text), box) << page;
    }
}

TEST(Pdf, APageThatPaintsNothingHasItsCropBoxForItsContents) {
    const auto content = readPdf(shared(onePage("/MediaBox[20 30 220 230]", "q Q")));
    EXPECT_DOUBLE_EQ(content->facts(1, PageBox::Content).width, 200);
}

TEST(PlainPdf, TheContentsBoxIsMeasuredToo) {
    const auto content = readPlainPdf(shared(barcodePdf(100, 60, "0 0 20 30 re f")));
    ASSERT_TRUE(content);
    EXPECT_NEAR(content->facts(1, PageBox::Content).width, 20, 0.1);
    RecordingSink sink;
    EXPECT_EQ(roundedBox(written(*content, sink, 1, PageBox::Content).text), "/BBox[0 0 20 30]");
}

TEST(Pdf, AUserUnitScales) {
    const PageFacts facts = readPdf(shared(onePage("/MediaBox[0 0 10 10]/UserUnit 2")))->facts(1, PageBox::Crop);
    EXPECT_DOUBLE_EQ(facts.width, 20);
    EXPECT_EQ(facts.toNatural.apply({10, 10}), (Point{20, 20}));
}

TEST(Pdf, BoxAndResourcesMayComeFromTheTreeAbove) {
    const std::string pdf = pdfOf({catalog, "<</Type/Pages/Kids[3 0 R]/Count 1/MediaBox[0 0 70 70]/Resources<</A/B>>>>",
                                   "<</Type/Page/Parent 2 0 R/Contents 4 0 R>>", streamOf("", "q Q")});
    RecordingSink sink;
    const RecordingSink::Object form = written(*readPdf(shared(pdf)), sink);
    EXPECT_TRUE(has(form.text, "/BBox[0 0 70 70]/Resources <</A /B>>")) << form.text;
}

TEST(Pdf, SeveralContentStreamsAreJoined) {
    const std::string pdf = pdfOf({catalog, "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                   "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents[4 0 R 5 0 R]>>",
                                   streamOf("", "q 1 0 0"), streamOf("/Filter/FlateDecode", deflatedForTest("rg Q"))});
    RecordingSink sink;
    const RecordingSink::Object form = written(*readPdf(shared(pdf)), sink);
    EXPECT_FALSE(form.isEncoded);
    EXPECT_EQ(form.bytes, "q 1 0 0\nrg Q");
}

TEST(Pdf, ContentKeepsItsOwnEncoding) {
    const std::string pdf = pdfOf({catalog, "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                                   "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R>>",
                                   streamOf("/Filter[/ASCIIHexDecode]", "7120510A>")});
    RecordingSink sink;
    const RecordingSink::Object form = written(*readPdf(shared(pdf)), sink);
    EXPECT_EQ(form.bytes, "7120510A>");
    EXPECT_TRUE(has(form.text, "/Filter [/ASCIIHexDecode]")) << form.text;
}

TEST(Pdf, AGroupStaysAGroup) {
    RecordingSink sink;
    const auto content = readPdf(shared(onePage("/MediaBox[0 0 9 9]/Group<</S/Transparency/CS/DeviceRGB>>")));
    EXPECT_TRUE(content->facts(1, PageBox::Crop).isTransparent);
    EXPECT_TRUE(has(written(*content, sink).text, "/Group <</CS /DeviceRGB/S /Transparency>>"));
}

TEST(Pdf, APageWithoutContentIsEmpty) {
    const std::string pdf =
        pdfOf({catalog, "<</Type/Pages/Kids[3 0 R]/Count 1>>", "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>"});
    RecordingSink sink;
    EXPECT_EQ(written(*readPdf(shared(pdf)), sink).bytes, "");
}

TEST(Pdf, ReferencesToPagesAreCut) {
    RecordingSink sink;
    written(*readPdf(shared(onePage("/MediaBox[0 0 9 9]/Resources<</Properties<</P 3 0 R/Q 2 0 R>>>>"))), sink);
    EXPECT_EQ(sink.objects.size(), 1u);
}

TEST(Pdf, ResourcesInACircleEnd) {
    RecordingSink sink;
    written(*readPdf(shared(onePage("/MediaBox[0 0 9 9]/Resources 5 0 R", "q Q",
                                    {"<</Loop 5 0 R/Other 6 0 R>>", "[5 0 R 6 0 R]"}))),
            sink);
    EXPECT_EQ(sink.objects.size(), 3u);
}

/// A page with three layers, the catalog's entry for them as given. Layers are objects 5, 6 and 7.
std::string pageWithLayers(const std::string& usual) {
    return pdfOf({"<</Type/Catalog/Pages 2 0 R/OCProperties<</OCGs[5 0 R 6 0 R 7 0 R]/D<<" + usual + ">>>>>>",
                  "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                  "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R/Resources<</Properties<</A 5 0 R/B 6 0 R"
                  "/C<</Type/OCMD/OCGs[7 0 R]>>>>>>>>",
                  streamOf("", "/OC /A BDC EMC"), "<</Type/OCG/Name(a)>>", "<</Type/OCG/Name(b)>>",
                  "<</Type/OCG/Name(c)>>"});
}

/// The names of the layers that the sink was told of, with what it was told.
std::string layersIn(const RecordingSink& sink) {
    std::string text;
    for (const auto& [number, isShown] : sink.layers) {
        const std::string& object = sink.objects.at(number).text;
        text += object.substr(object.find('(') + 1, 1) + (isShown ? " shown, " : " hidden, ");
    }
    return text;
}

TEST(Pdf, LayersAreToldWithWhetherTheyShow) {
    for (const auto& [usual, told] :
         {std::pair("", "a shown, b shown, c shown, "), std::pair("/OFF[6 0 R]", "a shown, b hidden, c shown, "),
          std::pair("/BaseState/OFF/ON[7 0 R]", "a hidden, b hidden, c shown, "),
          std::pair("/BaseState/OFF/ON[5 0 R 7 0 R]/OFF[7 0 R]", "a shown, b hidden, c hidden, ")}) {
        RecordingSink sink;
        const auto content = readPdf(shared(pageWithLayers(usual)));
        written(*content, sink);
        EXPECT_EQ(layersIn(sink), told) << usual;
    }
}

TEST(Pdf, AStandardFontThatIsntThereGetsAStandIn) {
    const std::string fonts =
        "/MediaBox[0 0 9 9]/Resources<</Font<</A<</Type/Font/Subtype/TrueType/BaseFont/Arial,Bold/Encoding"
        "<</BaseEncoding/WinAnsiEncoding/Differences[65/Euro/uni20AC 90/nonsense]>>>>"
        "/B<</Type/Font/Subtype/Type1/BaseFont/Symbol>>>>>>";
    RecordingSink sink;
    written(*readPdf(shared(onePage(fonts))), sink);
    ASSERT_EQ(sink.absentFonts.size(), 1u);
    EXPECT_EQ(sink.absentFonts[0].baseFont, "Helvetica-Bold");
    EXPECT_EQ(sink.absentFonts[0].characters[65], 0x20AC);
    EXPECT_EQ(sink.absentFonts[0].characters[66], 0x20AC);
    EXPECT_EQ(sink.absentFonts[0].characters[67], u'C');
    EXPECT_EQ(sink.absentFonts[0].characters[90], 0);
}

TEST(Pdf, AnEmbeddedFontStaysAsItIs) {
    RecordingSink sink;
    written(*readPdf(shared(onePage("/MediaBox[0 0 9 9]/Resources<</Font<</A 5 0 R>>>>", "q Q",
                                    {"<</Type/Font/Subtype/Type1/BaseFont/Courier/FontDescriptor<</FontFile3 6 0 R>>>>",
                                     streamOf("", "outlines")}))),
            sink);
    EXPECT_TRUE(sink.absentFonts.empty());
}

TEST(Pdf, WithoutPagesIsRefused) {
    EXPECT_EQ(refusal([] {
                  readPdf(shared(pdfOf({catalog, "<</Type/Pages/Kids[]/Count 0>>"})));
              }),
              "is a PDF without pages. Export it again");
}

TEST(Pdf, ProtectedByAPasswordIsRefused) {
    const PictureFolder folder;
    folder.write("plain.pdf", pagesOf(1));
    outputOf("qpdf --encrypt secret owner 256 -- " + (folder / "plain.pdf") + " " + (folder / "locked.pdf"));
    const std::string bytes = readWholeFile(folder / "locked.pdf").bytes;
    EXPECT_EQ(refusal([&] { readPdf(shared(bytes)); }), "is protected by a password. Save it without one");
}

TEST(Pdf, EncryptedForEverybodyToReadIsRead) {
    const PictureFolder folder;
    folder.write("plain.pdf", pagesOf(1));
    outputOf("qpdf --encrypt '' owner 256 -- " + (folder / "plain.pdf") + " " + (folder / "open.pdf"));
    RecordingSink sink;
    const RecordingSink::Object form = written(*readPdf(shared(readWholeFile(folder / "open.pdf").bytes)), sink);
    EXPECT_EQ(inflatedForTest(form.bytes), "page 1");
}

TEST(Pdf, CutOffAnywhereIsRefused) {
    const std::string pdf = pagesOf(2);
    for (size_t size = 9; size < pdf.find("startxref"); size += 11)
        EXPECT_EQ(refusal([&] { readPdf(shared(pdf.substr(0, size))); }),
                  "is cut off in the middle. Copy or export it again")
            << size;
}

TEST(Pdf, WithoutAUsableSizeIsRefused) {
    EXPECT_EQ(refusal([] { readPdf(shared(onePage("/MediaBox[0 0 0 9]")))->facts(1, PageBox::Crop); }),
              "has a page without a usable size. Export it again");
    EXPECT_NE(refusal([] { readPdf(shared(onePage("/MediaBox[0 0 1000000000 9]")))->facts(1, PageBox::Crop); }), "");
}

TEST(StandardFonts, AreKnownByTheirOtherNames) {
    EXPECT_EQ(standardTextFont("Courier"), "Courier");
    EXPECT_EQ(standardTextFont("CourierNew,BoldItalic"), "Courier-BoldOblique");
    EXPECT_EQ(standardTextFont("ArialMT"), "Helvetica");
    EXPECT_EQ(standardTextFont("TimesNewRomanPS-BoldMT"), "Times-Bold");
    EXPECT_EQ(standardTextFont("Times-Roman"), "Times-Roman");
    EXPECT_EQ(standardTextFont("Symbol"), "");
    EXPECT_EQ(standardTextFont("CourierPrime"), "");
}

TEST(StandardFonts, HaveTheEncodingsOfTheStandard) {
    EXPECT_EQ(encodingNamed("StandardEncoding")[0x27], 0x2019);
    EXPECT_EQ(encodingNamed("WinAnsiEncoding")[0x80], 0x20AC);
    EXPECT_EQ(encodingNamed("WinAnsiEncoding")[0xE4], 0xE4);
    EXPECT_EQ(encodingNamed("MacRomanEncoding")[0x8A], 0xE4);
    EXPECT_EQ(encodingNamed("MacRomanEncoding")[u'7'], u'7');
    EXPECT_EQ(characterNamed("seven"), u'7');
    EXPECT_EQ(characterNamed("ydieresis"), 0xFF);
    EXPECT_EQ(characterNamed("asciitilde"), u'~');
    EXPECT_EQ(characterNamed("nosuchname"), 0);
}

TEST(Svg, BecomesAPage) {
    const auto content = readSvg(
        shared("<svg xmlns='http://www.w3.org/2000/svg' width='200' height='100'><rect width='9' height='9'/></svg>"));
    // 96 pixels of a drawing are an inch.
    EXPECT_NEAR(content->facts(1, PageBox::Crop).width, 150, 0.01);
    EXPECT_NEAR(content->facts(1, PageBox::Crop).height, 75, 0.01);
}

TEST(Svg, DamagedIsRefused) {
    EXPECT_EQ(refusal([] { readSvg(shared("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect")); }),
              "can't be converted: it is damaged, or too large. Save it again");
}

const std::string eps =
    "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 10 20 110 70\n1 0 0 setrgbcolor 10 20 100 50 rectfill showpage\n%%EOF\n";

TEST(Eps, BecomesAPageOfItsBoundingBox) {
    const PageFacts facts = readEps(shared(eps))->facts(1, PageBox::Crop);
    EXPECT_NEAR(facts.width, 100, 0.01);
    EXPECT_NEAR(facts.height, 50, 0.01);
}

const std::string epsHead = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 50\n";

TEST(Eps, TextThatRunsUpwardsTurnsNothing) {
    const std::string upwards =
        epsHead + "/Helvetica findfont 9 scalefont setfont 50 5 moveto 90 rotate (Upwards) show showpage\n";
    const PageFacts facts = readEps(shared(upwards))->facts(1, PageBox::Crop);
    EXPECT_NEAR(facts.width, 100, 0.01);
    EXPECT_NEAR(facts.height, 50, 0.01);
}

TEST(Eps, BringsItsStandardFontsAlong) {
    const auto content =
        readEps(shared(epsHead + "/Helvetica findfont 9 scalefont setfont 5 5 moveto (Text) show showpage\n"));
    RecordingSink sink;
    written(*content, sink);
    EXPECT_TRUE(sink.absentFonts.empty());
    bool hasFontFile = false;
    for (const auto& [number, object] : sink.objects)
        hasFontFile = hasFontFile || object.text.find("/FontFile") != std::string::npos;
    EXPECT_TRUE(hasFontFile);
}

TEST(Eps, KeepsItsPicturesWithoutLoss) {
    // Soft colours with much noise, as a photo has them: by itself the program would make it a JPEG.
    constexpr uint32_t side = 200;
    std::string digits;
    uint32_t noise = 1;
    for (uint32_t i = 0; i < side * side * 3; ++i) {
        noise = noise * 1664525 + 1013904223;
        const uint32_t x = i / 3 % side, y = i / 3 / side;
        const uint32_t soft[] = {x, y, (x + y) / 2};
        const uint32_t sample = soft[i % 3] + (noise >> 16) % 30;
        constexpr char hexadecimal[] = "0123456789abcdef";
        digits += {hexadecimal[sample >> 4 & 15], hexadecimal[sample & 15]};
    }
    const auto content =
        readEps(shared(epsHead +
                       "/DeviceRGB setcolorspace <</ImageType 1/Width 200/Height 200/BitsPerComponent 8/Decode[0 1 0 "
                       "1 0 1]/ImageMatrix[2 0 0 -4 0 200]/DataSource currentfile/ASCIIHexDecode filter>> image\n" +
                       digits + ">\nshowpage\n"));
    RecordingSink sink;
    written(*content, sink);
    std::string filters;
    for (const auto& [number, object] : sink.objects)
        if (object.text.find("/Subtype /Image") != std::string::npos)
            filters += object.text.find("DCTDecode") == std::string::npos ? "plain" : "lossy";
    EXPECT_EQ(filters, "plain");
}

TEST(Eps, WithAPreviewIsTakenOutOfIt) {
    std::string head = "\xC5\xD0\xD3\xC6";
    for (const uint32_t value : {30u, static_cast<uint32_t>(eps.size()), 0u, 0u, 0u, 0u})
        for (int shift = 0; shift < 32; shift += 8) head += static_cast<char>(value >> shift);
    const std::string file = head + "\xFF\xFF" + eps + "preview";
    EXPECT_NEAR(readEps(shared(file))->facts(1, PageBox::Crop).width, 100, 0.01);
    EXPECT_NE(refusal([&] { readEps(shared(file.substr(0, 100))); }), "");
}

TEST(Eps, DamagedOrWithoutBoundingBoxIsRefused) {
    EXPECT_NE(refusal([] { readEps(shared("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\nnosuchoperator\n")); }),
              "");
    EXPECT_EQ(refusal([] { readEps(shared("%!PS-Adobe-3.0 EPSF-3.0\nshowpage\n")); }),
              "is an EPS without a bounding box. Export it again");
}

TEST(Eps, CantReadFilesOfTheMachine) {
    const std::string begin = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n", end = "0 0 9 9 rectfill showpage\n";
    EXPECT_EQ(refusal([&] { readEps(shared(begin + end)); }), "");
    EXPECT_NE(refusal([&] { readEps(shared(begin + "(/etc/passwd) (r) file closefile\n" + end)); }), "");
    EXPECT_NE(refusal([&] { readEps(shared(begin + "(%pipe%id) (r) file closefile\n" + end)); }), "");
}

}  // namespace
}  // namespace desk::testing
