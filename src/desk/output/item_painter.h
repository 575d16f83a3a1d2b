#pragma once
// Page items with everything in them, as content of one page.

#include <unordered_map>

#include "desk/output/picture_writer.h"
#include "desk/output/text_painter.h"

namespace desk {

/// Where painters get composed text from.
class TextSource {
  public:
    virtual ~TextSource() = default;
    /// Null for a frame without text. `page` is the one that is being written: a master's frame shows its number.
    virtual std::shared_ptr<const FrameLayout> frameLayout(Uid frame, Uid page) = 0;
};

/// The paper that is painted on. Its coordinates are points from the left top corner of the media box, y downwards.
struct Sheet {
    Uid page = 0;
    double width = 0, height = 0;
    std::string boundingBox;  ///< "[0 0 width height]"

    /// From the sheet's coordinates to those of PDF.
    Matrix toPdf() const { return {1, 0, 0, -1, 0, height}; }
    Rect rect() const { return {0, 0, width, height}; }
};

/// What an item paints itself, kept as long as its look and place stay.
struct ItemLook {
    uint64_t revision = 0;
    Matrix toSheet;
    bool visible = false;  ///< false also for what lies off the sheet
    ShapeHolds holds = ShapeHolds::Nothing;
    ShapeContent shape;
    bool blends = false;     ///< opacity or blend mode: painted as a group
    std::string blendState;  ///< graphics state dictionary
    uint64_t lastUsed = 0;
};

/// Looks of the items on one sheet.
class LookCache {
  public:
    ItemLook& at(Uid item) {
        ItemLook& look = looks_[item];
        look.lastUsed = round_;
        return look;
    }
    /// A new pass over the sheet: forgets what the pass before didn't use, when that is much.
    void nextRound();
    void clear() { looks_.clear(); }

  private:
    std::unordered_map<Uid, ItemLook> looks_;
    uint64_t round_ = 1;
    size_t kept_ = 0;
};

class ItemPainter {
  public:
    ItemPainter(const Document& document, TextSource& texts, SharedObjects& shared, ShapePainter& shapes,
                TextPainter& textPainter, PictureWriter& pictures)
        : document_(document),
          texts_(texts),
          shared_(shared),
          shapes_(shapes),
          textPainter_(textPainter),
          pictures_(pictures) {}

    /// Appends the item; `toSheet` maps its inner coordinates to the sheet's.
    void paint(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks, Fragment& out);

    /// Appends numbers that are the same as before only if paint() would write the same.
    void appendSignature(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks,
                         std::vector<uint64_t>& signature);

  private:
    const ItemLook& lookOf(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks);
    void paintContent(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks, Fragment& out);
    void paintChildren(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks,
                       const ItemLook& look, Fragment& out);
    void paintText(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, LookCache& looks, Fragment& out);
    void paintPicture(const PageItem& item, const Matrix& toSheet, const Sheet& sheet, Fragment& out);
    ShapeHolds holds(const PageItem& item) const;
    bool showsText(const PageItem& item) const { return item.kind == ItemKind::TextFrame && item.story != 0; }
    bool hasInlineItems(const PageItem& frame) const;
    template <class Visit>
    void forEachInlineItem(const FrameLayout& layout, const Matrix& frameToSheet, Visit visit) const;

    const Document& document_;
    TextSource& texts_;
    SharedObjects& shared_;
    ShapePainter& shapes_;
    TextPainter& textPainter_;
    PictureWriter& pictures_;
    int depth_ = 0;
};

}  // namespace desk
