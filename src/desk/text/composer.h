#pragma once
// Sets stories into their frames.
//
// The composer remembers: words by shape, paragraphs by text, attributes and measure, frames by their paragraphs. What
// comes out equal is the same object as before. Memory of what it remembers is bounded.

#include <memory>
#include <string>

#include "desk/fonts/font_library.h"
#include "desk/model/document.h"
#include "desk/text/layout.h"

namespace desk {

/// Where the hyphenation dictionaries are, and how much is remembered.
struct ComposerOptions {
    std::string hyphenationFolder = "/usr/share/hyphen";
    size_t rememberedWords = 1u << 12;
    size_t rememberedParagraphs = 1u << 8;
};

class Composer {
  public:
    /// Document and fonts must outlive the composer.
    Composer(const Document& document, FontLibrary& fonts, const ComposerOptions& options = {});
    ~Composer();

    /// The story set into its frames as it is now; a story without frames is overset with no frame layouts unless it is
    /// empty. Cheap when nothing changed. Page numbers are those of the frame's page in the document.
    const StoryLayout& compose(Uid story);

    /// The layout of one frame: composes its story if need be. Null for a frame without a story. A frame of a master
    /// spread shows the numbers of the document page that it is asked for; 0 asks for those of the master itself.
    std::shared_ptr<const FrameLayout> frameLayout(Uid frame, Uid page = 0);

    /// Styles, page names or other items' places changed: forget the frames and paragraphs; words stay. A frame whose
    /// own revision grew and a thread that changed are seen without this.
    void forget();

    /// Characters that no font of the machine has, each once, in the order met.
    const std::u32string& missingCharacters() const;

  private:
    const StoryLayout& compose(Uid story, Uid page);

    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace desk
