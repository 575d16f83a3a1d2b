#pragma once
// The fonts of the machine and of private folders, found by family and style.

#include <memory>
#include <string>
#include <vector>

#include "desk/fonts/font_face.h"

namespace desk {

/// A family and style that isn't there, and what stands in for it.
struct FontReplacement {
    std::string family, style;              ///< as asked for
    std::string usedFamily, usedStyle;
    bool operator==(const FontReplacement&) const = default;
};

class FontLibrary {
  public:
    FontLibrary();
    ~FontLibrary();

    /// Adds every font file in a folder and its folders; they come before the machine's own.
    /// Throws InputError for a folder that can't be read.
    void addFolder(const std::string& folder);

    /// The face of a family ("Liberation Serif") and style ("Bold Italic") as layout documents name them; names compare
    /// without case, and a style's usual synonyms are known (Roman = Regular, Oblique = Italic). When the family is
    /// missing, the nearest installed one stands in and is told by replacements(). Never null on a machine with any font;
    /// throws InputError when there is none at all. The reference stays good as long as the library.
    const FontFace& face(const std::string& family, const std::string& style);

    /// True when the family is there itself (in whatever style).
    bool hasFamily(const std::string& family) const;
    /// True when family and style are both there.
    bool hasFace(const std::string& family, const std::string& style) const;

    /// A face that has the character, near to the given one; null when no font of the machine has it.
    const FontFace* fallback(uint32_t codePoint, const FontFace& like);

    /// What was replaced so far, each once, in the order of asking.
    const std::vector<FontReplacement>& replacements() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace desk
