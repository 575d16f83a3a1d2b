// The symbols as readers that are not ours see them: on a PDF page, rendered, decoded.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tools/barcode/barcode.h"
#include "tools/barcode/drawing.h"

namespace {

/// A page of the size that holds the content, with the font resource that the content asks for.
std::string pdfPage(const std::string& content, double width, double height) {
    const std::vector<std::string> objects{
        "<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + std::to_string(width) + " " + std::to_string(height) +
            "]/Contents 4 0 R/Resources<</Font<</Courier<</Type/Font/Subtype/Type1/BaseFont/Courier/Encoding"
            "/MacRomanEncoding>>>>>>>>",
        "<</Length " + std::to_string(content.size()) + ">>stream\n" + content + "\nendstream"};
    std::string file = "%PDF-1.4\n";
    std::string table = "xref\n0 5\n0000000000 65535 f \n";
    for (size_t index = 0; index < objects.size(); ++index) {
        std::array<char, 32> entry;
        std::snprintf(entry.data(), entry.size(), "%010zu 00000 n \n", file.size());
        table += entry.data();
        file += std::to_string(index + 1) + " 0 obj\n" + objects[index] + "\nendobj\n";
    }
    const size_t tablePlace = file.size();
    return file + table + "trailer<</Size 5/Root 1 0 R>>\nstartxref\n" + std::to_string(tablePlace) + "\n%%EOF\n";
}

struct Seen {
    int status;
    std::string output;
};

Seen run(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    Seen seen{-1, {}};
    if (pipe == nullptr) return seen;
    std::array<char, 4096> buffer;
    for (size_t count; (count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        seen.output.append(buffer.data(), count);
    const int status = pclose(pipe);
    seen.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return seen;
}

bool isThere(const std::string& command) {
    return run(command + " >/dev/null 2>&1").status == 0;
}

/// A folder with page.pdf and page.pgm of one symbol.
class SeenSymbol : public testing::Test {
  protected:
    SeenSymbol() {
        std::string pattern = (std::filesystem::temp_directory_path() / "barcode-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }
    ~SeenSymbol() override { std::filesystem::remove_all(folder_); }

    void render(const std::string& kind, const std::string& code) {
        const barcode::Outcome outcome = barcode::draw(kind, code);
        ASSERT_EQ(outcome.problem, "");
        const auto& measures = *barcode::measuresNamed(kind);
        const barcode::Extent extent = barcode::extentOf(measures.kind, barcode::encode(measures.kind, code));
        std::ofstream(folder_ / "page.pdf", std::ios::binary)
            << pdfPage(outcome.description, extent.width, extent.height);
        ASSERT_EQ(run("pdftoppm -r 600 -gray -singlefile '" + path("page.pdf") + "' '" + path("page") + "'").status, 0);
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    std::filesystem::path folder_;
};

struct Symbol {
    std::string kind, code, seen;
};

TEST_F(SeenSymbol, IsReadByAnIndependentReaderOfBarsAndSquares) {
    if (!isThere("which zbarimg pdftoppm")) GTEST_SKIP() << "zbarimg or pdftoppm isn't installed";
    const std::vector<Symbol> symbols{{"ean13", "400638133393", "EAN-13:4006381333931"},
                                      {"ean13", "9780306406157", "EAN-13:9780306406157"},
                                      {"ean13", "0000000000000", "EAN-13:0000000000000"},
                                      {"ean8", "9638507", "EAN-8:96385074"},
                                      {"upca", "03600029145", "EAN-13:0036000291452"},
                                      {"code128", "Vornaset (1)", "CODE-128:Vornaset (1)"},
                                      {"code128", "0123456789", "CODE-128:0123456789"},
                                      {"gs1-128", "(01)09501101530003(10)AB1", "CODE-128:010950110153000310AB1"},
                                      {"itf14", "1540014128876", "I2/5:15400141288763"},
                                      {"qr", "https://example.org/\xC3\xA4", "QR-Code:https://example.org/\xC3\xA4"}};
    for (const Symbol& symbol : symbols) {
        render(symbol.kind, symbol.code);
        const Seen seen = run("zbarimg -q -Sean8.enable '" + path("page.pgm") + "' 2>/dev/null");
        EXPECT_EQ(seen.status, 0) << symbol.kind;
        EXPECT_EQ(seen.output, symbol.seen + "\n");
    }
}

TEST_F(SeenSymbol, IsReadByAnIndependentReaderOfMatrices) {
    const std::string python = "/usr/bin/python3";
    if (!isThere(python + " -c 'import zxingcpp, numpy' && which pdftoppm"))
        GTEST_SKIP() << "python3-zxing-cpp or pdftoppm isn't installed";
    std::ofstream(folder_ / "read.py")
        << "import sys, numpy, zxingcpp\n"
           "data = open(sys.argv[1], 'rb').read()\n"
           "width, height = map(int, data.split(b'\\n')[1].split())\n"
           "pixels = numpy.frombuffer(data[-width * height:], numpy.uint8)\n"
           "picture = numpy.pad(pixels.reshape(height, width), 60, constant_values=255)\n"
           "for r in zxingcpp.read_barcodes(picture): print(r.format, r.text)\n";
    const std::vector<Symbol> symbols{{"datamatrix", "Vornaset 4006381333931", "BarcodeFormat.DataMatrix "},
                                      {"datamatrix", "x", "BarcodeFormat.DataMatrix "},
                                      {"pdf417", "Vornaset 4006381333931", "BarcodeFormat.PDF417 "},
                                      {"qr", "Vornaset 4006381333931", "BarcodeFormat.QRCode "}};
    for (const Symbol& symbol : symbols) {
        render(symbol.kind, symbol.code);
        EXPECT_EQ(run(python + " '" + path("read.py") + "' '" + path("page.pgm") + "' 2>/dev/null").output,
                  symbol.seen + symbol.code + "\n");
    }
}

TEST_F(SeenSymbol, ShowsItsDigitsAsText) {
    if (!isThere("which pdftotext pdftoppm")) GTEST_SKIP() << "poppler's programs aren't installed";
    render("ean13", "400638133393");
    const std::string text = run("pdftotext '" + path("page.pdf") + "' -").output;
    for (const char* part : {"4", "006381", "333931"}) EXPECT_NE(text.find(part), std::string::npos) << text;
}

TEST_F(SeenSymbol, IsStillReadWithItsBarsCutFromTheTop) {
    if (!isThere("which zbarimg pdftoppm")) GTEST_SKIP() << "zbarimg or pdftoppm isn't installed";
    const std::string content = barcode::draw("ean13", "4006381333931").description;
    std::ofstream(folder_ / "page.pdf", std::ios::binary) << pdfPage(content, 105.7, 30);
    ASSERT_EQ(run("pdftoppm -r 600 -gray -singlefile '" + path("page.pdf") + "' '" + path("page") + "'").status, 0);
    EXPECT_EQ(run("zbarimg -q '" + path("page.pgm") + "' 2>/dev/null").output, "EAN-13:4006381333931\n");
}

TEST_F(SeenSymbol, ComesFromTheProgramWithTheSameBytes) {
    const std::string program = std::string("'") + VORNASET_BUILD_DIR + "/vornaset-barcode'";
    for (const Symbol& symbol : std::vector<Symbol>{
             {"ean13", "400638133393", ""}, {"qr", "a b", ""}, {"gs1-128", "(10)AB1", ""}, {"pdf417", "x", ""}}) {
        const Seen seen = run(program + " -e " + symbol.kind + " -b '" + symbol.code + "' -D");
        EXPECT_EQ(seen.status, 0);
        EXPECT_EQ(seen.output, barcode::draw(symbol.kind, symbol.code).description);
    }
}

TEST_F(SeenSymbol, IsNotPrintedForARefusedCodeWhoseReasonGoesToStandardError) {
    const std::string program = std::string("'") + VORNASET_BUILD_DIR + "/vornaset-barcode'";
    const std::string errors = path("errors");
    const auto expect = [&](const std::string& arguments, int status, const std::string& sentence) {
        const Seen seen = run(program + " " + arguments + " 2>'" + errors + "'");
        EXPECT_EQ(seen.status, status) << arguments;
        EXPECT_EQ(seen.output, "");
        std::ifstream file(errors);
        const std::string said((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        EXPECT_EQ(said, "vornaset-barcode: " + sentence + "\n");
    };
    expect("-e ean13 -b 4006381333932 -D", 1, "the check digit of the EAN-13 code \"4006381333932\" must be 1, not 2.");
    expect("-e ean13 -b 40063813339x -D", 1,
           "EAN-13 takes digits alone; \"40063813339x\" has something else at place 12.");
    expect("-e ean13 -D", 2, "the code is missing; give it with -b.");
    EXPECT_EQ(run(program + " 2>&1").status, 2);
    EXPECT_EQ(run(program + " 2>&1").output, barcode::helpText());
    EXPECT_EQ(run(program + " -e ean13 -b 4006381333931 -D >/dev/full 2>/dev/null").status, 1);
    EXPECT_TRUE(run(program + " --help").output.starts_with("usage: vornaset-barcode -e KIND -b CODE -D\n"));
}

}  // namespace
