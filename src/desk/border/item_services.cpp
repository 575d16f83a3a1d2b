// Page items made, moved and resized, and where they belong.
#include <algorithm>

#include "desk/border/document_border.h"
#include "desk/border/plane_values.h"
#include "desk/border/services.h"
#include "host/api/host.h"

namespace desk {
namespace {

/// Applies a map of the pasteboard to an item with everything in it.
bool transformItem(const Document& document, PageItem& item, const Matrix& map) {
    const Matrix whole = toPasteboard(document, item);
    if (!item.transform.isInvertible() || !whole.isInvertible()) return false;
    const Matrix parent = whole.after(item.transform.inverted());
    item.transform = parent.inverted().after(map).after(parent).after(item.transform);
    ++item.revision;
    return true;
}

/// Applies a map of the pasteboard to an item's path alone, so that what the item holds stays where it is.
bool transformPath(const Document& document, PageItem& item, const Matrix& map) {
    const Matrix whole = toPasteboard(document, item);
    if (!whole.isInvertible()) return false;
    const Matrix inner = whole.inverted().after(map).after(whole);
    for (Contour& contour : item.path)
        for (PathPoint& point : contour.points)
            point = {inner.apply(point.anchor), inner.apply(point.incoming), inner.apply(point.outgoing)};
    ++item.revision;
    return true;
}

/// The map that brings one rectangle onto another; a side without length keeps its length.
Matrix rectToRect(const Rect& from, const Rect& to) {
    const double x = from.width() > 0 ? to.width() / from.width() : 1;
    const double y = from.height() > 0 ? to.height() / from.height() : 1;
    return {x, 0, 0, y, to.left - from.left * x, to.top - from.top * y};
}

class ItemServices final : public BossOf<IGeometryUtils, ITransformUtils, IHierarchyUtils, ILayerUtils,
                                         IPageItemFactoryUtils, IGraphicAttributeUtils> {
  public:
    ItemServices(Ledger& ledger, Surroundings& surroundings) : BossOf(ledger), surroundings_(surroundings) {}

    // IGeometryUtils
    ErrorCode Resize(const UIDList& items, const PMMatrix& matrix, bool pathBounds,
                     const K2Vector<PMRect>& rectangles) override {
        DocumentBorder* database = surroundings_.find(items.GetDataBase());
        const Matrix space = matrixOf(matrix);
        const bool fits = static_cast<size_t>(items.Length()) == rectangles.size();
        if (!database || items.Length() == 0 || !fits || !space.isInvertible()) return kFailure;
        ErrorCode result = kSuccess;
        for (int32_t i = 0; i < items.Length(); ++i)
            if (!resize(*database, items[i], space, pathBounds, rectOf(rectangles[static_cast<size_t>(i)])))
                result = kFailure;
        return result;
    }

    // ITransformUtils
    ErrorCode TransformItems(const UIDList& items, const PMMatrix& coordinateSpace,
                             const TransformReferencePoint& around, const PMMatrix& transformation, int32_t) override {
        DocumentBorder* database = surroundings_.find(items.GetDataBase());
        const Matrix space = matrixOf(coordinateSpace);
        if (!database || items.Length() == 0 || !space.isInvertible()) return kFailure;
        const Matrix map = Matrix::translation(around.point.x, around.point.y)
                               .after(matrixOf(transformation))
                               .after(Matrix::translation(-around.point.x, -around.point.y));
        const Matrix onPasteboard = space.inverted().after(map).after(space);
        ErrorCode result = kSuccess;
        for (int32_t i = 0; i < items.Length(); ++i) {
            PageItem* item = database->document()->item(items[i].Get());
            if (!item || !transformItem(*database->document(), *item, onPasteboard)) result = kFailure;
        }
        database->document()->modified = true;
        return result;
    }

    // IHierarchyUtils
    UID GetOwnerPageUID(IHierarchy* item, int32_t) override {
        const UIDRef reference = ::GetUIDRef(item);
        DocumentBorder* database = surroundings_.find(reference.GetDataBase());
        return database ? UID(ownerPage(*database->document(), reference.GetUID().Get())) : kInvalidUID;
    }

    // ILayerUtils
    IDocumentLayer* QueryActiveLayer(IDocument* document) override {
        DocumentBorder* database = surroundings_.find(::GetDataBase(document));
        if (!database) return nullptr;
        return static_cast<IDocumentLayer*>(
            database->Instantiate(UID(activeLayer(*database->document())), IID_IDOCUMENTLAYER));
    }

    // IPageItemFactoryUtils
    UIDRef CreateRectangle(const UIDRef& parent, const PMRect& rectangle, int32_t, int32_t,
                           const PMMatrix& matrix) override {
        DocumentBorder* database = surroundings_.find(parent.GetDataBase());
        Document* document = database ? database->document() : nullptr;
        const SpreadLayer* layer = document ? document->spreadLayer(parent.GetUID().Get()) : nullptr;
        if (!layer || !matrixOf(matrix).isInvertible()) return UIDRef::gNull;
        PageItem& item = document->addItem(ItemKind::Rectangle);
        item.path = rectanglePath(rectOf(rectangle));
        item.transform = matrixOf(matrix);
        item.attributes.fillColor = item.attributes.strokeColor = "Swatch/None";
        item.attributes.strokeWeight = 0;
        constexpr const char* plainStyle = "ObjectStyle/$ID/[None]";
        if (document->styleWithSelf(plainStyle)) item.objectStyle = plainStyle;
        document->placeOnSpread(item, *document->spread(layer->spread), *document->layer(layer->layer));
        document->modified = true;
        return UIDRef(database, UID(item.uid));
    }

    // IGraphicAttributeUtils
    IPMCommand* QueryNonPrintingCommand(bool nonPrinting, const UIDList& items, int32_t, int32_t) override {
        if (!surroundings_.find(items.GetDataBase()) || items.Length() == 0) return nullptr;
        return static_cast<IPMCommand*>(
            surroundings_.lend(makeNonPrintingCommand(nonPrinting, items, ledger()), IID_IPMCOMMAND));
    }

  private:
    static bool resize(DocumentBorder& database, UID uid, const Matrix& space, bool pathBounds, const Rect& wanted) {
        Document& document = *database.document();
        PageItem* item = document.item(uid.Get());
        InterfacePtr<IGeometry> geometry(&database, uid);
        if (!item || !geometry || wanted.width() < 0 || wanted.height() < 0) return false;
        const PMMatrix measure = pmMatrix(space.after(toPasteboard(document, *item)));
        const Rect path = rectOf(geometry->GetPathBoundingBox(measure));
        Rect target = wanted;
        if (!pathBounds) {
            // The stroke keeps its weight.
            const Rect stroke = rectOf(geometry->GetStrokeBoundingBox(measure));
            target = {wanted.left + path.left - stroke.left, wanted.top + path.top - stroke.top,
                      wanted.right + path.right - stroke.right, wanted.bottom + path.bottom - stroke.bottom};
            if (target.width() < 0 || target.height() < 0) return false;
        }
        const Matrix map = space.inverted().after(rectToRect(path, target)).after(space);
        const bool hasPath = !item->path.empty() && item->kind != ItemKind::Graphic;
        document.modified = true;
        return hasPath ? transformPath(document, *item, map) : transformItem(document, *item, map);
    }

    /// The page under the middle of an item; 0 for the bare pasteboard. An item in a text counts where the text begins.
    static Uid ownerPage(const Document& document, Uid uid) {
        if (document.page(uid)) return uid;
        const PageItem* item = document.item(uid);
        while (item && item->spread == 0) {
            const PageItem* parent = document.item(item->parent);
            if (!parent) {
                const std::vector<Uid>& frames = document.framesOfStory(document.storyHolding(item->uid));
                parent = frames.empty() ? nullptr : document.item(frames.front());
            }
            item = parent;
        }
        const Spread* spread = item ? document.spread(item->spread) : nullptr;
        if (!spread) return 0;
        const Rect box = document.toSpread(*item).boundsOf(extentOf(document, *item));
        const Point middle{(box.left + box.right) / 2, (box.top + box.bottom) / 2};
        for (Uid page : spread->pages)
            if (document.page(page)->rectInSpread().contains(middle)) return page;
        return 0;
    }

    static Rect extentOf(const Document& document, const PageItem& item) {
        if (item.path.empty() && item.graphic) return item.graphic->bounds;
        if (!item.path.empty() || item.children.empty()) return boundsOf(item.path);
        Rect all;
        bool first = true;
        for (Uid uid : item.children) {
            const PageItem& child = *document.item(uid);
            const Rect box = child.transform.boundsOf(extentOf(document, child));
            all = first ? box : all.unitedWith(box);
            first = false;
        }
        return all;
    }

    /// The chosen one, else the top one that isn't locked, else the top one.
    static Uid activeLayer(const Document& document) {
        if (document.layer(document.activeLayer)) return document.activeLayer;
        for (auto layer = document.layers.rbegin(); layer != document.layers.rend(); ++layer)
            if (!layer->locked) return layer->uid;
        return document.layers.empty() ? 0 : document.layers.back().uid;
    }

    Surroundings& surroundings_;
};

}  // namespace

std::unique_ptr<Boss> makeItemServices(Ledger& ledger, Surroundings& surroundings) {
    return std::make_unique<ItemServices>(ledger, surroundings);
}

}  // namespace desk
