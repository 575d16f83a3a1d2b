#pragma once
// What tests of the output share: a folder, other people's programs, a document with fixed text.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "desk/fonts/font_library.h"
#include "desk/output/document_writer.h"

namespace desk::testing {

/// A folder of its own, removed with the object.
class ScratchFolder {
  public:
    ScratchFolder();
    ~ScratchFolder();
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }
    std::string path() const { return path_.string(); }
    /// Names of what is in it, in order.
    std::vector<std::string> names() const;

  private:
    std::filesystem::path path_;
};

struct Outcome {
    int status = -1;
    std::string output;  ///< standard output and standard error
};

/// Runs a shell command.
Outcome run(const std::string& command);

std::string readFile(const std::string& path);

/// What the four readers say: qpdf, poppler, mupdf and Ghostscript. Empty when none complains.
std::string complaintsOfReaders(const std::string& pdf);

/// Objects and decoded streams as text.
std::string decoded(const std::string& pdf);
/// The decoded content stream of a page, from 1.
std::string pageContent(const std::string& pdf, int page);
/// Text of a page range as pdftotext gives it.
std::string textOf(const std::string& pdf);

struct Pixel {
    int red = 0, green = 0, blue = 0;
    bool operator==(const Pixel&) const = default;
    /// Nearly the same colour.
    bool isLike(Pixel other, int tolerance = 12) const;
};

/// A page rendered at one pixel a point by mupdf.
class RenderedPage {
  public:
    RenderedPage(const std::string& pdf, int page);
    /// Points from the left top corner.
    Pixel at(double x, double y) const;
    int width() const { return width_; }
    int height() const { return height_; }

  private:
    int width_ = 0, height_ = 0;
    std::string pixels_;
};

/// Text that a test put there.
class FixedText : public TextSource {
  public:
    std::shared_ptr<const FrameLayout> frameLayout(Uid frame, Uid) override { return layouts[frame]; }
    std::map<Uid, std::shared_ptr<const FrameLayout>> layouts;
};

/// One page of 200 by 100 points, trim and bleed alike, with one layer; more on demand.
class TestDocument {
  public:
    TestDocument();
    Document document;
    FixedText texts;
    Layer* layer = nullptr;
    Spread* spread = nullptr;
    Page* page = nullptr;

    /// A further spread with one page of the same size, or a master.
    Page& addSpreadWithPage(bool master = false);
    /// A closed rectangle with the attributes, on the page's spread; coordinates from the page's left top corner.
    PageItem& addRectangle(const Rect& rect, const std::string& fill, Spread* on = nullptr);
    /// A frame that shows `layout`.
    PageItem& addTextFrame(const Rect& rect, std::shared_ptr<const FrameLayout> layout);
    Swatch& addColour(const std::string& self, ColorSpace space, std::vector<double> components);

    /// Writes the pages in the order given (one page by itself when empty), gives the path.
    std::string write(const std::string& path, std::vector<Uid> pages = {}, PdfOptions options = {});
};

/// One paragraph, a line for each text; glyphs without kerning, advances as the face says.
struct LineOfText {
    std::u16string text;
    double wordSpacing = 0;
};
std::shared_ptr<LayoutParagraph> paragraphOf(const FontFace& face, double size, const std::vector<LineOfText>& lines);
/// A frame's layout with these paragraphs from the top, baselines every `leading` points.
std::shared_ptr<FrameLayout> layoutOf(const std::vector<std::shared_ptr<LayoutParagraph>>& paragraphs, Point first,
                                      double leading);

/// The machine's fonts; one library for all tests.
FontLibrary& fonts();

}  // namespace desk::testing
