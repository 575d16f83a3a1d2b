#include "desk/border/services.h"

#include "desk/border/document_border.h"
#include "host/api/host.h"

namespace desk {
namespace {

class Services final : public BossOf<IPageItemTypeUtils, ILayoutUtils, ITextUtils> {
  public:
    Services(Ledger& ledger, Surroundings& ground) : BossOf(ledger), ground_(ground) {}

    // IPageItemTypeUtils
    bool IsGroup(const UIDRef& item) override { return kindOf(item) == ItemKind::Group; }
    /// A frame for a picture, filled or empty.
    bool IsGraphicFrame(const UIDRef& item) override {
        const ItemKind kind = kindOf(item);
        return kind == ItemKind::Rectangle || kind == ItemKind::Oval || kind == ItemKind::Polygon;
    }
    bool IsGraphic(const UIDRef& item) override { return kindOf(item) == ItemKind::Graphic; }
    bool IsTextFrame(const UIDRef& item) override { return kindOf(item) == ItemKind::TextFrame; }
    bool IsInline(const UIDRef& item) override {
        const PageItem* found = itemOf(item);
        if (!found || found->parent != 0 || found->spread != 0) return false;
        return ground_.find(item.GetDataBase())->document()->storyHolding(found->uid) != 0;
    }

    // ILayoutUtils
    IDocument* GetFrontDocument() override {
        DocumentBorder* front = ground_.front();
        return front ? front->documentInterface() : nullptr;
    }
    /// The desk has no views; composition looks at content by itself.
    void InvalidateViews(IDocument*) override {}

    // ITextUtils
    UID CreateStory(IDataBase* database, int32_t, ClassID storyClass) override {
        DocumentBorder* open = ground_.find(database);
        if (!open || storyClass != kTextStoryBoss) return kInvalidUID;
        open->document()->modified = true;
        return UID(open->document()->addStory().uid);
    }
    IPMCommand* QueryCopyStoryCommand(const UIDRef& source, const UIDRef& target, int32_t) override {
        DocumentBorder* open = ground_.find(source.GetDataBase());
        if (!open || target.GetDataBase() != source.GetDataBase()) return nullptr;
        const Document& document = *open->document();
        if (!document.story(source.GetUID().Get()) || !document.story(target.GetUID().Get())) return nullptr;
        IPMCommand* command = ground_.createCommand(kCopyStoryCmdBoss);
        UIDList items(source);
        items.Append(target.GetUID());
        command->SetItemList(items);
        return command;
    }
    bool IsOverset(ITextFrameList* frames) override {
        const UIDRef story = ::GetUIDRef(frames);
        DocumentBorder* open = ground_.find(story.GetDataBase());
        if (!open || !open->document()->story(story.GetUID().Get())) return false;
        return open->layout()->isOverset(story.GetUID().Get());
    }

  private:
    const PageItem* itemOf(const UIDRef& item) {
        DocumentBorder* open = ground_.find(item.GetDataBase());
        return open ? open->document()->item(item.GetUID().Get()) : nullptr;
    }
    ItemKind kindOf(const UIDRef& item) {
        const PageItem* found = itemOf(item);
        return found ? found->kind : ItemKind::Unknown;
    }

    Surroundings& ground_;
};

}  // namespace

std::unique_ptr<Boss> makeServices(Ledger& ledger, Surroundings& ground) {
    return std::make_unique<Services>(ledger, ground);
}

}  // namespace desk
