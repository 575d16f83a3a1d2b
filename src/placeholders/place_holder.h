#pragma once
// One occurrence of a placeholder in a story: "<<", a key, ">>", all within one paragraph.

#include <vector>

#include "support/values.h"

namespace vornaset {

/// Where the placeholder stands and which row it takes its value from. Positions are UTF-16 units of the story from 0.
/// The row is held, not copied: rows don't change while a story is filled.
class VornasetPlaceHolder {
  public:
    static VornasetPlaceHolder placeHolderWithPos(int32_t pos1, int32_t pos2) {
        VornasetPlaceHolder made;
        made.pos1_ = pos1;
        made.pos2_ = pos2;
        return made;
    }

    int32_t pos1() const { return pos1_; }  ///< of the "<<"
    void setPos1(int32_t position) { pos1_ = position; }
    int32_t pos2() const { return pos2_; }  ///< of the ">>"
    void setPos2(int32_t position) { pos2_ = position; }
    const Value& mapping() const { return mapping_; }
    void setMapping(Value row) { mapping_ = std::move(row); }

    /// What stands between the marks in the story's text. Throws RangeException when the text is too short.
    String key(const MutableString& text) const;
    /// "pos1: %d, pos2: %d, mapping: %@", for debugging.
    String description() const;

  private:
    Value mapping_;
    int32_t pos1_ = 0;
    int32_t pos2_ = 0;
};

/// A paragraph that holds placeholders. UTF-16 units of the story from 0.
struct PlaceHolderLine {
    int64_t pos = 0;                       ///< of the paragraph's first character
    uint64_t len = 0;                      ///< with its carriage return
    std::vector<VornasetPlaceHolder> phs;  ///< in text order
};

}  // namespace vornaset
