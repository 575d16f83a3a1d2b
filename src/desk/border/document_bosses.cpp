// The document and its workspace, layers, spreads and pages.
#include <algorithm>

#include "desk/border/object_boss.h"
#include "desk/border/plane_values.h"
#include "desk/border/utf8.h"
#include "host/api/host.h"
#include "host/api/page_items.h"

namespace desk {
namespace {

PMString pmString(const std::string& utf8) {
    return PMString(utf8.c_str());
}

UID nth(const std::vector<Uid>& uids, int32_t index) {
    return index >= 0 && index < static_cast<int32_t>(uids.size()) ? UID(uids[static_cast<size_t>(index)])
                                                                   : kInvalidUID;
}

int32_t indexOf(const std::vector<Uid>& uids, UID uid) {
    const auto found = std::find(uids.begin(), uids.end(), uid.Get());
    return found == uids.end() ? -1 : static_cast<int32_t>(found - uids.begin());
}

class DocumentBoss final : public ObjectBoss<IDocument, IPageList, ISpreadList, ILayerList, IStoryList, ITagStore> {
  public:
    using ObjectBoss::ObjectBoss;

    // IDocument
    UIDRef GetDocWorkSpace() override {
        return document() ? UIDRef(&database(), UID(document()->workspaceUid())) : UIDRef::gNull;
    }
    void GetName(PMString& name) override { name = document() ? pmString(document()->name) : PMString(); }

    // IPageList
    int32_t GetPageCount() override {
        size_t count = 0;
        forEachSpread([&](const Spread& spread) { count += spread.pages.size(); });
        return static_cast<int32_t>(count);
    }
    UID GetNthPageUID(int32_t index) override {
        UID found;
        forEachSpread([&](const Spread& spread) {
            if (index < 0) return;
            found = nth(spread.pages, index);
            index -= static_cast<int32_t>(spread.pages.size());
        });
        return found;
    }
    int32_t GetPageIndex(UID page) override {
        int32_t found = -1, before = 0;
        forEachSpread([&](const Spread& spread) {
            const int32_t index = indexOf(spread.pages, page);
            if (index >= 0) found = before + index;
            before += static_cast<int32_t>(spread.pages.size());
        });
        return found;
    }

    // ISpreadList
    int32_t GetSpreadCount() override { return document() ? static_cast<int32_t>(document()->spreads.size()) : 0; }
    UID GetNthSpreadUID(int32_t index) override { return document() ? nth(document()->spreads, index) : kInvalidUID; }
    int32_t GetSpreadIndex(UID spread) override { return document() ? indexOf(document()->spreads, spread) : -1; }

    // ILayerList
    int32_t GetCount() override { return document() ? static_cast<int32_t>(document()->layers.size()) + 1 : 0; }
    IDocumentLayer* QueryLayer(int32_t index) override {
        if (index < 0 || index >= GetCount()) return nullptr;
        if (index == 0) return database().queryHostLayer();
        const Uid layer = document()->layers[static_cast<size_t>(index - 1)].uid;
        return static_cast<IDocumentLayer*>(database().Instantiate(UID(layer), IID_IDOCUMENTLAYER));
    }
    UID FindByName(const PMString& name) override {
        if (!document()) return kInvalidUID;
        const std::string wanted = utf8Of(name.View());
        for (const Layer& layer : document()->layers)
            if (layer.name == wanted) return UID(layer.uid);
        return kInvalidUID;
    }

    // IStoryList
    int32_t GetStoryCount() override { return document() ? static_cast<int32_t>(document()->stories.size()) : 0; }
    UIDRef GetNthStory(int32_t index) override {
        const UID story = document() ? nth(document()->stories, index) : kInvalidUID;
        return story == kInvalidUID ? UIDRef::gNull : UIDRef(&database(), story);
    }

    // ITagStore
    PMString GetTag(const char* key) override {
        return document() && key ? pmString(document()->labels.get(key)) : PMString();
    }
    void SetTag(const char* key, const PMString& value) override {
        if (!document() || !key) return;
        document()->labels.set(key, utf8Of(value.View()));
        document()->modified = true;
    }

  private:
    template <class Visit>
    void forEachSpread(Visit visit) {
        if (!document()) return;
        for (Uid uid : document()->spreads)
            if (const Spread* spread = document()->spread(uid)) visit(*spread);
    }
};

/// A name table of one kind of style. The workspace carries five of them, which one class can't inherit: each is a part
/// of the workspace and counts its references there.
class StyleNameTable final : public IStyleNameTable {
  public:
    StyleNameTable(IPMUnknown& workspace, DocumentBorder& database, StyleKind kind)
        : workspace_(workspace), database_(database), kind_(kind) {}

    IPMUnknown* QueryInterface(PMIID interfaceId) override { return workspace_.QueryInterface(interfaceId); }
    void AddRef() override { workspace_.AddRef(); }
    void Release() override { workspace_.Release(); }

    UID FindByName(const PMString& name) override {
        const Document* document = database_.document();
        if (!document) return kInvalidUID;
        if (asked_ == name && askedAt_ == document->styleRevision() && !name.IsEmpty()) return found_;
        const Style* style = document->styleNamed(kind_, utf8Of(name.View()));
        found_ = style ? UID(style->uid) : kInvalidUID;
        asked_ = name;
        askedAt_ = document->styleRevision();
        return found_;
    }

  private:
    // A merge asks for the same name with every value that it inserts.
    PMString asked_;
    UID found_;
    uint64_t askedAt_ = 0;
    IPMUnknown& workspace_;
    DocumentBorder& database_;
    StyleKind kind_;
};

class WorkspaceBoss final : public ObjectBoss<> {
  public:
    using ObjectBoss::ObjectBoss;

  protected:
    IPMUnknown* find(PMIID interfaceId) override {
        switch (interfaceId.Get()) {
            case IID_IPARAGRAPHSTYLENAMETABLE.Get():
                return &paragraphs_;
            case IID_ICHARACTERSTYLENAMETABLE.Get():
                return &characters_;
            case IID_ITABLESTYLENAMETABLE.Get():
                return &tables_;
            case IID_ICELLSTYLENAMETABLE.Get():
                return &cells_;
            case IID_IOBJECTSTYLENAMETABLE.Get():
                return &objects_;
            default:
                return ObjectBoss::find(interfaceId);
        }
    }

  private:
    StyleNameTable paragraphs_{*this, database(), StyleKind::Paragraph};
    StyleNameTable characters_{*this, database(), StyleKind::Character};
    StyleNameTable tables_{*this, database(), StyleKind::Table};
    StyleNameTable cells_{*this, database(), StyleKind::Cell};
    StyleNameTable objects_{*this, database(), StyleKind::Object};
};

class StyleBoss final : public ObjectBoss<> {
  public:
    using ObjectBoss::ObjectBoss;
};

class LayerBoss final : public ObjectBoss<IDocumentLayer> {
  public:
    using ObjectBoss::ObjectBoss;

    PMString GetName() override { return layer() ? pmString(layer()->name) : PMString(); }
    bool IsVisible() override { return layer() && layer()->visible; }
    int16_t IsPrintable() override { return layer() && layer()->printable ? 1 : 0; }
    void SetLocked(bool locked) override {
        if (!layer()) return;
        layer()->locked = locked;
        document()->modified = true;
    }

  private:
    Layer* layer() { return document() ? document()->layer(uid()) : nullptr; }
};

/// Entry 0 of every layer list: it is no object of the document, holds nothing and is never printed.
class HostLayerBoss final : public BossOf<IDocumentLayer> {
  public:
    using BossOf::BossOf;

    PMString GetName() override { return {}; }
    bool IsVisible() override { return false; }
    int16_t IsPrintable() override { return 0; }
    void SetLocked(bool) override {}
};

class SpreadLayerBoss final : public ObjectBoss<ISpreadLayer, IHierarchy> {
  public:
    using ObjectBoss::ObjectBoss;

    UID GetDocLayerUID() override { return here() ? UID(here()->layer) : kInvalidUID; }

    int32_t GetChildCount() override { return here() ? static_cast<int32_t>(here()->items.size()) : 0; }
    UID GetChildUID(int32_t index) override { return here() ? nth(here()->items, index) : kInvalidUID; }
    IHierarchy* QueryChild(int32_t index) override {
        return static_cast<IHierarchy*>(database().Instantiate(GetChildUID(index), IID_IHIERARCHY));
    }
    UID GetParentUID() override { return GetSpreadUID(); }
    UID GetLayerUID() override { return here() ? UID(uid()) : kInvalidUID; }
    UID GetSpreadUID() override { return here() ? UID(here()->spread) : kInvalidUID; }

  private:
    const SpreadLayer* here() const { return document() ? document()->spreadLayer(uid()) : nullptr; }
};

class SpreadBoss final : public ObjectBoss<ISpread, IHierarchy> {
  public:
    using ObjectBoss::ObjectBoss;

    int32_t GetNumPages() override { return here() ? static_cast<int32_t>(here()->pages.size()) : 0; }
    int32_t GetPageIndex(UID page) override { return here() ? indexOf(here()->pages, page) : -1; }
    PMRect GetPagesBounds(const PMMatrix& matrix) override {
        PMRect all;
        bool first = true;
        for (Uid pageUid : here() ? here()->pages : std::vector<Uid>()) {
            const Page* page = document()->page(pageUid);
            if (!page) continue;
            const PMRect bounds = pmRect(matrixOf(matrix).boundsOf(page->rectInSpread()));
            if (first) all = bounds;
            all.Union(bounds);
            first = false;
        }
        return all;
    }
    ISpreadLayer* QueryLayer(IDocumentLayer* layer, LayerPart part) override {
        if (!here() || !layer || part != LayerPart::Content) return nullptr;
        const UIDRef wanted = ::GetUIDRef(layer);
        for (Uid candidate : here()->layers) {
            const SpreadLayer* spreadLayer = document()->spreadLayer(candidate);
            if (spreadLayer && UIDRef(&database(), UID(spreadLayer->layer)) == wanted)
                return static_cast<ISpreadLayer*>(database().Instantiate(UID(candidate), IID_ISPREADLAYER));
        }
        return nullptr;
    }

    int32_t GetChildCount() override { return here() ? static_cast<int32_t>(here()->layers.size()) : 0; }
    UID GetChildUID(int32_t index) override { return here() ? nth(here()->layers, index) : kInvalidUID; }
    IHierarchy* QueryChild(int32_t index) override {
        return static_cast<IHierarchy*>(database().Instantiate(GetChildUID(index), IID_IHIERARCHY));
    }
    UID GetParentUID() override { return kInvalidUID; }
    UID GetLayerUID() override { return kInvalidUID; }
    UID GetSpreadUID() override { return here() ? UID(uid()) : kInvalidUID; }

  private:
    const Spread* here() const { return document() ? document()->spread(uid()) : nullptr; }
};

/// A page's path is its edge.
class PageBoss final : public ObjectBoss<IGeometry, IHierarchy, IMargins> {
  public:
    using ObjectBoss::ObjectBoss;

    PMRect GetMargins() override { return here() ? pmRect(here()->margins) : PMRect(); }

    PMRect GetPathBoundingBox(const PMMatrix& matrix) override {
        return here() ? pmRect(matrixOf(matrix).boundsOf(here()->bounds)) : PMRect();
    }
    PMRect GetStrokeBoundingBox(const PMMatrix& matrix) override { return GetPathBoundingBox(matrix); }
    PMRect GetInnerBounds() override { return here() ? pmRect(here()->bounds) : PMRect(); }
    PMMatrix InnerToPasteboard() override {
        const Spread* spread = here() ? document()->spread(here()->spread) : nullptr;
        return spread ? pmMatrix(spread->transform.after(here()->transform)) : PMMatrix();
    }

    int32_t GetChildCount() override { return 0; }
    UID GetChildUID(int32_t) override { return kInvalidUID; }
    IHierarchy* QueryChild(int32_t) override { return nullptr; }
    /// A spread is two steps up from its pages, as from its items: between them stands its lowest layer.
    UID GetParentUID() override {
        const Spread* spread = here() ? document()->spread(here()->spread) : nullptr;
        return spread ? nth(spread->layers, 0) : kInvalidUID;
    }
    UID GetLayerUID() override { return kInvalidUID; }
    UID GetSpreadUID() override { return here() ? UID(here()->spread) : kInvalidUID; }

  private:
    const Page* here() const { return document() ? document()->page(uid()) : nullptr; }
};

}  // namespace

std::unique_ptr<Boss> makeDocumentBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<DocumentBoss>(database, uid, kDocumentBoss);
}
std::unique_ptr<Boss> makeWorkspaceBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<WorkspaceBoss>(database, uid, kWorkspaceBoss);
}
std::unique_ptr<Boss> makeStyleBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<StyleBoss>(database, uid, kStyleBoss);
}
std::unique_ptr<Boss> makeHostLayerBoss(Ledger& ledger) {
    return std::make_unique<HostLayerBoss>(ledger);
}
std::unique_ptr<Boss> makeLayerBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<LayerBoss>(database, uid, kDocumentLayerBoss);
}
std::unique_ptr<Boss> makeSpreadLayerBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<SpreadLayerBoss>(database, uid, kSpreadLayerBoss);
}
std::unique_ptr<Boss> makeSpreadBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<SpreadBoss>(database, uid, kSpreadBoss);
}
std::unique_ptr<Boss> makePageBoss(DocumentBorder& database, Uid uid) {
    return std::make_unique<PageBoss>(database, uid, kPageBoss);
}

}  // namespace desk
