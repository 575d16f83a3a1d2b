#pragma once
// Documents with text frames, made in memory, and composed lines as text.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "desk/text/composer.h"

namespace desk::testing {

/// The machine's fonts and the two beside the shared documents, opened once.
inline FontLibrary& fonts() {
    static const std::unique_ptr<FontLibrary> library = [] {
        auto made = std::make_unique<FontLibrary>();
        const std::string shared = std::string(VORNASET_SHARED_DIR) + "/samples/idml/fonts";
        if (std::filesystem::is_directory(shared)) made->addFolder(shared);
        return made;
    }();
    return *library;
}

inline bool hasSharedFonts() {
    return std::filesystem::is_directory(std::string(VORNASET_SHARED_DIR) + "/samples/idml/fonts");
}

/// A document of one page, 600 by 800 points, with Liberation Sans 10 as the usual text.
class TextDocument {
  public:
    TextDocument() : spread_(&document.addSpread(false)), layer_(&document.addLayer("Layer")) { addPage("1"); }

    Page& addPage(const std::string& name) {
        Page& page = document.addPage(*spread_);
        page.bounds = {0, 0, 600, 800};
        page.transform = Matrix::translation(620 * static_cast<double>(spread_->pages.size() - 1), 0);
        page.name = name;
        return page;
    }

    static TextAttributes usual() {
        TextAttributes a;
        a.fontFamily = "Liberation Sans";
        a.pointSize = 10;
        a.hyphenation = false;
        return a;
    }

    ParagraphFormatId paragraph(const TextAttributes& overrides = {}) {
        TextAttributes all = usual();
        all.overlay(overrides);
        return document.paragraphFormatId({0, all});
    }
    CharacterFormatId character(const TextAttributes& overrides) { return document.characterFormatId({0, overrides}); }

    Story& story(std::u16string text, const TextAttributes& overrides = {}) {
        Story& added = document.addStory();
        fill(added, std::move(text), paragraph(overrides));
        return added;
    }

    static void fill(Story& story, std::u16string text, ParagraphFormatId format) {
        auto content = std::make_shared<StoryContent>();
        content->text = std::move(text) + u"\r";
        content->paragraphRuns = {{0, format}};
        story.setContent(content);
    }

    /// The frames of a story thread in the order of adding.
    PageItem& frame(Story& story, const Rect& rect) {
        PageItem& added = document.addItem(ItemKind::TextFrame);
        added.path = rectanglePath(rect);
        added.story = story.uid;
        const std::vector<Uid> before = document.framesOfStory(story.uid);
        if (!before.empty()) {
            added.previousFrame = before.back();
            document.item(before.back())->nextFrame = added.uid;
        }
        document.placeOnSpread(added, *spread_, *layer_);
        document.threadsChanged();
        return added;
    }

    PageItem& box(const Rect& rect) {
        PageItem& added = document.addItem(ItemKind::Rectangle);
        added.path = rectanglePath(rect);
        document.placeOnSpread(added, *spread_, *layer_);
        return added;
    }

    Composer& composer() {
        if (!composer_) composer_ = std::make_unique<Composer>(document, fonts());
        return *composer_;
    }
    const StoryLayout& compose(const Story& story) { return composer().compose(story.uid); }

    Document document;

  private:
    Spread* spread_;
    Layer* layer_;
    std::unique_ptr<Composer> composer_;
};

/// One line as a reader sees it.
struct SeenLine {
    std::u16string text;
    double x = 0;      ///< of the first glyph, frame coordinates
    double right = 0;  ///< behind the last glyph that isn't a space
    double baseline = 0;
    double measure = 0;
    const LayoutLine* line = nullptr;
};

inline std::vector<SeenLine> linesOf(const FrameLayout& layout) {
    std::vector<SeenLine> result;
    for (const PlacedParagraph& placed : layout.paragraphs) {
        for (uint32_t i = 0; i < placed.lineCount; ++i) {
            const LayoutLine& line = placed.paragraph->lines[placed.firstLine + i];
            SeenLine seen;
            seen.baseline = placed.baselines[i];
            seen.measure = line.measure;
            seen.line = &line;
            seen.x = seen.right = placed.x + line.x;
            bool first = true;
            for (const GlyphRun& run : line.runs) {
                double x = placed.x + line.x + run.x;
                for (const PlacedGlyph& glyph : run.glyphs) {
                    if (first) seen.x = x;
                    first = false;
                    const auto text =
                        std::u16string_view(placed.paragraph->text).substr(glyph.textStart, glyph.textLength);
                    seen.text += text;
                    x += glyph.advance;
                    if (text != u" ") seen.right = x;
                }
            }
            result.push_back(std::move(seen));
        }
    }
    return result;
}

inline std::vector<SeenLine> linesOf(const StoryLayout& layout) {
    std::vector<SeenLine> result;
    for (const auto& frame : layout.frames)
        for (SeenLine& line : linesOf(*frame)) result.push_back(std::move(line));
    return result;
}

/// The lines' texts without spaces at their ends.
inline std::vector<std::u16string> textsOf(const StoryLayout& layout) {
    std::vector<std::u16string> result;
    for (SeenLine& line : linesOf(layout)) {
        while (!line.text.empty() && line.text.back() == u' ') line.text.pop_back();
        result.push_back(line.text);
    }
    return result;
}

inline double widthOf(const std::u16string& text, double size = 10, const std::string& family = "Liberation Sans") {
    ShapingRequest request;
    request.text = text;
    std::vector<ShapedGlyph> glyphs;
    fonts().face(family, "Regular").shape(request, glyphs);
    double width = 0;
    for (const ShapedGlyph& glyph : glyphs) width += glyph.advance;
    return width * size / 1000;
}

}  // namespace desk::testing
