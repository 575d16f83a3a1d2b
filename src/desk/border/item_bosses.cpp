// Page items, and what stands between a text frame and its story: the multi-column frame and its columns.
#include <algorithm>

#include "desk/border/object_boss.h"
#include "desk/border/plane_values.h"
#include "desk/border/utf8.h"
#include "host/api/page_items.h"
#include "host/api/text.h"

namespace desk {
namespace {

constexpr int deepestNesting = 256;

Path pathOf(const PageItem& item) {
    if (!item.path.empty() || !item.graphic) return item.path;
    return rectanglePath(item.graphic->bounds);
}

Path transformed(Path path, const Matrix& matrix) {
    for (Contour& contour : path)
        for (PathPoint& point : contour.points)
            point = {matrix.apply(point.anchor), matrix.apply(point.incoming), matrix.apply(point.outgoing)};
    return path;
}

enum class Edge { Path, Stroke };

/// How far the stroke reaches beyond the path, in points of the item's own coordinates.
double strokeReach(const Document& document, const PageItem& item) {
    const ItemAttributes look = document.itemAttributes(item);
    const double weight = look.strokeWeight.value_or(0);
    if (weight <= 0 || look.strokeColor.value_or("Swatch/None") == "Swatch/None") return 0;
    constexpr double share[] = {0.5, 0, 1};  // centred, inside, outside
    return weight * share[std::clamp(look.strokeAlignment.value_or(0), 0, 2)];
}

/// The upright box of an item under a matrix; of a group, that of everything in it. False when there is nothing to
/// measure.
bool boundsUnder(const Document& document, const PageItem& item, const Matrix& matrix, Edge edge, Rect& box,
                 int depth) {
    const Path path = pathOf(item);
    if (!path.empty()) {
        const double reach = edge == Edge::Stroke ? strokeReach(document, item) : 0;
        box = reach > 0 ? matrix.boundsOf(boundsOf(path).grownBy(reach)) : boundsOf(transformed(path, matrix));
        return true;
    }
    bool found = false;
    for (Uid uid : item.children) {
        const PageItem* child = document.item(uid);
        Rect inside;
        if (depth >= deepestNesting || !child) continue;
        if (!boundsUnder(document, *child, matrix.after(child->transform), edge, inside, depth + 1)) continue;
        box = found ? box.unitedWith(inside) : inside;
        found = true;
    }
    return found;
}

/// What page items, columns and anchored objects share: children by index.
template <class... Interfaces>
class FamilyBoss : public ObjectBoss<IHierarchy, Interfaces...> {
  public:
    using ObjectBoss<IHierarchy, Interfaces...>::ObjectBoss;

    IHierarchy* QueryChild(int32_t index) override {
        return static_cast<IHierarchy*>(this->database().Instantiate(this->GetChildUID(index), IID_IHIERARCHY));
    }
    UID GetLayerUID() override {
        const PageItem* item = pageItem();
        const Spread* spread = item ? this->document()->spread(item->spread) : nullptr;
        if (!spread) return kInvalidUID;
        for (Uid uid : spread->layers)
            if (const SpreadLayer* layer = this->document()->spreadLayer(uid); layer && layer->layer == item->layer)
                return UID(uid);
        return kInvalidUID;
    }
    UID GetSpreadUID() override { return pageItem() ? UID(pageItem()->spread) : kInvalidUID; }

  protected:
    /// The page item that the object is or belongs to; null when it is gone.
    virtual PageItem* pageItem() const = 0;
};

class ItemBoss final : public FamilyBoss<IGeometry, IFrameData, ITagStore> {
  public:
    using FamilyBoss::FamilyBoss;

    // IHierarchy
    int32_t GetChildCount() override {
        const PageItem* item = pageItem();
        if (!item) return 0;
        return item->kind == ItemKind::TextFrame ? 1 : static_cast<int32_t>(item->children.size());
    }
    UID GetChildUID(int32_t index) override {
        const PageItem* item = pageItem();
        if (index < 0 || index >= GetChildCount()) return kInvalidUID;
        if (item->kind == ItemKind::TextFrame) return GetTextContentUID();
        return UID(item->children[static_cast<size_t>(index)]);
    }
    UID GetParentUID() override {
        const PageItem* item = pageItem();
        if (!item) return kInvalidUID;
        if (item->parent != 0 || item->spread != 0) return UID(item->parent);
        return document()->storyHolding(uid()) == 0 ? kInvalidUID : UID(document()->anchoredObject(uid()));
    }

    // IGeometry
    PMRect GetPathBoundingBox(const PMMatrix& matrix) override { return bounds(matrix, Edge::Path); }
    PMRect GetStrokeBoundingBox(const PMMatrix& matrix) override { return bounds(matrix, Edge::Stroke); }
    PMRect GetInnerBounds() override { return bounds(PMMatrix(), Edge::Path); }
    PMMatrix InnerToPasteboard() override {
        const PageItem* item = pageItem();
        return item ? pmMatrix(toPasteboard(*document(), *item)) : PMMatrix();
    }

    // IFrameData
    bool IsGraphic() override {
        const PageItem* item = pageItem();
        if (!item) return false;
        return std::any_of(item->children.begin(), item->children.end(), [this](Uid uid) {
            const PageItem* child = document()->item(uid);
            return child && child->kind == ItemKind::Graphic;
        });
    }
    bool IsTextFrame() override { return pageItem() && pageItem()->kind == ItemKind::TextFrame; }
    UID GetTextContentUID() override { return document() ? UID(document()->multiColumnFrame(uid())) : kInvalidUID; }

    // ITagStore
    PMString GetTag(const char* key) override {
        const PageItem* item = pageItem();
        if (!item || !key) return {};
        const std::string& tag = item->labels.get(key);
        if (tag != lastTag_) {
            lastTag_ = tag;
            lastTagText_ = PMString(tag.c_str());
        }
        return lastTagText_;
    }
    void SetTag(const char* key, const PMString& value) override {
        PageItem* item = pageItem();
        if (!item || !key) return;
        item->labels.set(key, utf8Of(value.View()));
        document()->modified = true;
    }

  protected:
    PageItem* pageItem() const override { return document() ? document()->item(uid()) : nullptr; }

    /// Groups and placed graphics are no frames.
    IPMUnknown* find(PMIID interfaceId) override {
        if (interfaceId == IID_IFRAMEDATA && GetClassID() != kPathPageItemBoss) return nullptr;
        return FamilyBoss::find(interfaceId);
    }

  private:
    PMRect bounds(const PMMatrix& matrix, Edge edge) const {
        const PageItem* item = pageItem();
        Rect box;
        if (item) boundsUnder(*document(), *item, matrixOf(matrix), edge, box, 0);
        return pmRect(box);
    }

    // A merge asks every frame for the same tag with every record.
    std::string lastTag_;
    PMString lastTagText_;
};

class MultiColumnFrameBoss final : public FamilyBoss<IMultiColumnTextFrame> {
  public:
    using FamilyBoss::FamilyBoss;

    // IHierarchy
    int32_t GetChildCount() override { return GetColumnCount(); }
    UID GetChildUID(int32_t index) override {
        if (index < 0 || index >= GetColumnCount()) return kInvalidUID;
        return UID(document()->textColumn(pageItem()->uid, index));
    }
    UID GetParentUID() override { return pageItem() ? UID(pageItem()->uid) : kInvalidUID; }

    // IMultiColumnTextFrame
    int32_t TextStart() override { return text().start; }
    int32_t TextSpan() override { return text().length; }
    UID GetTextModelUID() override { return pageItem() ? UID(pageItem()->story) : kInvalidUID; }
    int32_t GetColumnCount() override { return pageItem() ? columnCountOf(*document(), *pageItem()) : 0; }

  protected:
    PageItem* pageItem() const override {
        return document() ? document()->item(document()->frameOfMultiColumn(uid())) : nullptr;
    }

  private:
    TextRange text() const { return pageItem() ? database().layout()->textOfFrame(pageItem()->uid) : TextRange(); }
};

class TextColumnBoss final : public FamilyBoss<> {
  public:
    using FamilyBoss::FamilyBoss;

    int32_t GetChildCount() override { return 0; }
    UID GetChildUID(int32_t) override { return kInvalidUID; }
    UID GetParentUID() override {
        return pageItem() ? UID(document()->multiColumnFrame(pageItem()->uid)) : kInvalidUID;
    }

  protected:
    PageItem* pageItem() const override {
        return document() ? document()->item(document()->frameOfTextColumn(uid())) : nullptr;
    }
};

class AnchoredObjectBoss final : public FamilyBoss<IAnchoredObject> {
  public:
    using FamilyBoss::FamilyBoss;

    int32_t GetChildCount() override { return pageItem() ? 1 : 0; }
    UID GetChildUID(int32_t index) override { return index == 0 && pageItem() ? UID(pageItem()->uid) : kInvalidUID; }
    UID GetParentUID() override { return kInvalidUID; }

  protected:
    PageItem* pageItem() const override {
        return document() ? document()->item(document()->itemOfAnchoredObject(uid())) : nullptr;
    }
};

ClassID classOf(ItemKind kind) {
    switch (kind) {
        case ItemKind::Group:
            return kGroupItemBoss;
        case ItemKind::Graphic:
            return kGraphicItemBoss;
        case ItemKind::Unknown:
            return ClassID();
        default:
            return kPathPageItemBoss;
    }
}

}  // namespace

int columnCountOf(const Document& document, const PageItem& frame) {
    constexpr int mostColumns = 40;
    if (frame.frameOptions.columnCount) return std::clamp(*frame.frameOptions.columnCount, 1, mostColumns);
    const Style* style = frame.objectStyle.empty() ? nullptr : document.styleWithSelf(frame.objectStyle);
    for (int depth = 0; style && depth < deepestNesting; ++depth) {
        if (style->frame.columnCount) return std::clamp(*style->frame.columnCount, 1, mostColumns);
        style = document.parentOf(*style);
    }
    return 1;
}

std::unique_ptr<Boss> makeItemBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<ItemBoss>(database, uid, classOf(database.document()->item(uid)->kind));
}
std::unique_ptr<Boss> makeMultiColumnFrameBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<MultiColumnFrameBoss>(database, uid, kMultiColumnFrameBoss);
}
std::unique_ptr<Boss> makeTextColumnBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<TextColumnBoss>(database, uid, kTextColumnBoss);
}
std::unique_ptr<Boss> makeAnchoredObjectBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<AnchoredObjectBoss>(database, uid, kAnchoredObjectBoss);
}

}  // namespace desk
