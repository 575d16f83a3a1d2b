#include "desk/output/output_testing.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace desk::testing {

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vornaset-output-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no folder for the test");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> ScratchFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

Outcome run(const std::string& command) {
    Outcome outcome;
    FILE* pipe = popen(("(" + command + ") 2>&1").c_str(), "r");
    if (!pipe) return outcome;
    char buffer[4096];
    for (size_t count; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) outcome.output.append(buffer, count);
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::string complaintsOfReaders(const std::string& pdf) {
    std::string complaints;
    const Outcome qpdf = run("qpdf --check '" + pdf + "'");
    if (qpdf.status != 0 || qpdf.output.find("WARNING") != std::string::npos) complaints += "qpdf: " + qpdf.output;
    const Outcome poppler = run("pdftotext '" + pdf + "' /dev/null");
    if (poppler.status != 0 || !poppler.output.empty()) complaints += "poppler: " + poppler.output;
    // The distribution's mupdf is built without colour profiles and says so each time.
    const Outcome mupdf = run("mutool draw -q -F txt -o /dev/null '" + pdf + "' 1-2 2>&1 | grep -v -e '^page ' -e ICC");
    if (!mupdf.output.empty()) complaints += "mupdf: " + mupdf.output;
    const Outcome ghostscript =
        run("gs -q -dSAFER -dBATCH -dNOPAUSE -dLastPage=2 -dPDFSTOPONERROR -sDEVICE=nullpage '" + pdf + "'");
    if (ghostscript.status != 0 || !ghostscript.output.empty()) complaints += "Ghostscript: " + ghostscript.output;
    return complaints;
}

std::string decoded(const std::string& pdf) {
    return run("qpdf --qdf --object-streams=disable '" + pdf + "' -").output;
}

std::string pageContent(const std::string& pdf, int page) {
    return run("mutool show -b '" + pdf + "' pages/" + std::to_string(page) + "/Contents").output;
}

std::string textOf(const std::string& pdf) {
    return run("pdftotext -layout -enc UTF-8 '" + pdf + "' -").output;
}

bool Pixel::isLike(Pixel other, int tolerance) const {
    return std::abs(red - other.red) <= tolerance && std::abs(green - other.green) <= tolerance &&
           std::abs(blue - other.blue) <= tolerance;
}

RenderedPage::RenderedPage(const std::string& pdf, int page) {
    const std::string command =
        "mutool draw -q -A 0 -r 72 -F ppm -o - '" + pdf + "' " + std::to_string(page) + " 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    std::string bytes;
    char buffer[65536];
    for (size_t count; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) bytes.append(buffer, count);
    pclose(pipe);
    int length = 0;
    if (sscanf(bytes.c_str(), "P6 %d %d 255%n", &width_, &height_, &length) == 2)
        pixels_ = bytes.substr(static_cast<size_t>(length) + 1);
}

Pixel RenderedPage::at(double x, double y) const {
    const size_t index = (static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)) * 3;
    if (index + 2 >= pixels_.size()) return {-1, -1, -1};
    const auto byte = [&](size_t i) { return static_cast<int>(static_cast<unsigned char>(pixels_[index + i])); };
    return {byte(0), byte(1), byte(2)};
}

TestDocument::TestDocument() {
    document.name = "test.idml";
    document.preferences.pageWidth = 200;
    document.preferences.pageHeight = 100;
    layer = &document.addLayer("Layer 1");
    page = &addSpreadWithPage();
    spread = document.spread(page->spread);
    addColour("Color/Red", ColorSpace::RGB, {255, 0, 0});
    addColour("Color/Green", ColorSpace::RGB, {0, 255, 0});
    addColour("Color/Blue", ColorSpace::RGB, {0, 0, 255});
}

Page& TestDocument::addSpreadWithPage(bool master) {
    Spread& added = document.addSpread(master);
    Page& result = document.addPage(added);
    result.transform = Matrix::translation(-100, -50);
    return result;
}

Swatch& TestDocument::addColour(const std::string& self, ColorSpace space, std::vector<double> components) {
    Swatch& swatch = document.swatches[self];
    swatch.self = self;
    swatch.name = self.substr(self.find('/') + 1);
    swatch.value.space = space;
    for (size_t i = 0; i < components.size() && i < 4; ++i) swatch.value.component[i] = components[i];
    return swatch;
}

PageItem& TestDocument::addRectangle(const Rect& rect, const std::string& fill, Spread* on) {
    PageItem& item = document.addItem(ItemKind::Rectangle);
    item.path = rectanglePath(rect);
    item.transform = Matrix::translation(-100, -50);
    item.attributes.fillColor = fill;
    item.attributes.strokeColor = "Swatch/None";
    document.placeOnSpread(item, on ? *on : *spread, *layer);
    return item;
}

PageItem& TestDocument::addTextFrame(const Rect& rect, std::shared_ptr<const FrameLayout> layout) {
    PageItem& item = document.addItem(ItemKind::TextFrame);
    item.path = rectanglePath(rect);
    item.transform = Matrix::translation(-100, -50);
    item.attributes.strokeColor = "Swatch/None";
    item.story = document.addStory().uid;
    document.placeOnSpread(item, *spread, *layer);
    texts.layouts[item.uid] = std::move(layout);
    return item;
}

std::string TestDocument::write(const std::string& path, std::vector<Uid> pages, PdfOptions options) {
    if (pages.empty()) pages = {page->uid};
    DocumentWriter writer(document, texts, path, std::move(options));
    for (Uid uid : pages) writer.writePage(uid);
    writer.finish();
    return path;
}

namespace {

uint64_t nextSerial() {
    static std::atomic<uint64_t> last = 1000000;
    return ++last;
}

}  // namespace

std::shared_ptr<LayoutParagraph> paragraphOf(const FontFace& face, double size, const std::vector<LineOfText>& lines) {
    static const auto black = std::make_shared<TextPaint>(TextPaint{"Color/Black", -1, "Swatch/None", -1, 0, false});
    auto paragraph = std::make_shared<LayoutParagraph>();
    paragraph->serial = nextSerial();
    for (const LineOfText& from : lines) {
        LayoutLine& line = paragraph->lines.emplace_back();
        line.textStart = static_cast<int32_t>(paragraph->text.size());
        line.textLength = static_cast<int32_t>(from.text.size());
        GlyphRun& glyphRun = line.runs.emplace_back();
        glyphRun.face = &face;
        glyphRun.size = size;
        glyphRun.paint = black;
        glyphRun.wordSpacing = from.wordSpacing;
        for (char16_t c : from.text) {
            PlacedGlyph glyph;
            glyph.glyph = face.glyphForCharacter(c);
            glyph.advance =
                static_cast<float>(face.glyphAdvance(glyph.glyph) * size / 1000 + (c == u' ' ? from.wordSpacing : 0));
            glyph.textStart = static_cast<uint32_t>(paragraph->text.size());
            glyph.textLength = 1;
            glyphRun.glyphs.push_back(glyph);
            paragraph->text += c;
        }
    }
    return paragraph;
}

std::shared_ptr<FrameLayout> layoutOf(const std::vector<std::shared_ptr<LayoutParagraph>>& paragraphs, Point first,
                                      double leading) {
    auto layout = std::make_shared<FrameLayout>();
    layout->serial = nextSerial();
    double baseline = first.y;
    for (const auto& paragraph : paragraphs) {
        PlacedParagraph& placed = layout->paragraphs.emplace_back();
        placed.paragraph = paragraph;
        placed.lineCount = static_cast<uint32_t>(paragraph->lines.size());
        placed.x = first.x;
        for (uint32_t i = 0; i < placed.lineCount; ++i, baseline += leading) placed.baselines.push_back(baseline);
    }
    return layout;
}

FontLibrary& fonts() {
    static FontLibrary library;
    return library;
}

}  // namespace desk::testing
