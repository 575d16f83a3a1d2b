#pragma once
// Sets one paragraph: cut into pieces, find the places where lines may end, choose them, set the lines.

#include <memory>

#include "desk/text/line_setting.h"
#include "desk/text/paragraph_source.h"

namespace desk {

class ParagraphSetter {
  public:
    ParagraphSetter(const Document& document, TextStyles& styles, WordCache& words);

    /// Never null; has at least one line. The caller remembers it: every call makes a new object with a new serial.
    std::shared_ptr<const LayoutParagraph> set(const ParagraphSource& source);

  private:
    void findRooms(const ParagraphSource& source, double hangingIndent);
    double indentToHere();
    bool staysOnOneLine(const ParagraphSource& source);
    void findEnds(const ParagraphSource& source);
    void chooseEnds(const ParagraphSource& source);

    const Document& document_;
    PieceCutter cutter_;
    CandidateFinder finder_;
    LineBreaker breaker_;
    LineSetter setter_;
    ParagraphTabs tabs_;
    ParagraphPieces pieces_;
    BreakCandidates candidates_;
    std::vector<LineRoom> rooms_;
    std::vector<double> measures_;
    std::vector<uint32_t> ends_;
};

}  // namespace desk
