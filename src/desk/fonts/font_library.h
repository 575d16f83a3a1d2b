#pragma once
// The fonts of the machine and of private folders, found by family and style.

#include <memory>
#include <string>
#include <vector>

#include "desk/fonts/font_face.h"

namespace desk {

/// A family and style that isn't there, and what stands in for it.
struct FontReplacement {
    std::string family, style;  ///< as asked for
    std::string usedFamily, usedStyle;
    bool operator==(const FontReplacement&) const = default;
};

enum class MachineFonts { Use, Ignore };

/// Thread: one at a time; faces, once given out, may be used from any thread.
class FontLibrary {
  public:
    /// Lists the fonts of the machine without opening them. Ignore leaves only the folders added.
    explicit FontLibrary(MachineFonts machineFonts = MachineFonts::Use);
    ~FontLibrary();
    FontLibrary(const FontLibrary&) = delete;
    FontLibrary& operator=(const FontLibrary&) = delete;

    /// Adds every font file in a folder and its folders (TrueType, OpenType, collections, WOFF, WOFF 2); they come
    /// before the machine's own, and behind folders added before. Throws InputError for a folder that can't be read.
    void addFolder(const std::string& folder);

    /// The face of a family ("Liberation Serif") and style ("Bold Italic") as layout documents name them; names compare
    /// without case, and a style's usual synonyms are known (Roman = Regular, Oblique = Italic), as are files that
    /// divide family and style elsewhere ("Montserrat Black" + "Regular"). When the family is missing, the nearest
    /// installed one stands in: first those of the same widths or look by a fixed table, then by class (serif, sans,
    /// monospaced), guessed from the name. When the style is missing, the family's nearest: slant, then width, then
    /// weight. Both are told by replacements(). Throws InputError when there is no font at all. The reference stays
    /// good as long as the library.
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
