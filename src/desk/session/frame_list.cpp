#include "desk/session/frame_list.h"

#include <algorithm>
#include <unordered_map>

namespace desk {
namespace {

class Lister {
  public:
    explicit Lister(const Document& document) : document_(document) {
        int number = 0;
        for (const Uid page : document.pages()) pageNumbers_[page] = ++number;
    }

    void add(Uid uid) {
        const PageItem* item = document_.item(uid);
        if (!item) return;
        if (item->kind != ItemKind::Group && item->kind != ItemKind::Graphic) frames_.push_back(describe(*item));
        for (const Uid child : item->children) add(child);
    }

    std::vector<FrameInfo> take() {
        std::stable_sort(frames_.begin(), frames_.end(),
                         [](const FrameInfo& a, const FrameInfo& b) { return a.page < b.page; });
        return std::move(frames_);
    }

  private:
    FrameInfo describe(const PageItem& item) const {
        FrameInfo info;
        info.uid = item.uid;
        info.self = item.self;
        info.name = item.name;
        info.kind = item.kind;
        info.story = item.story;
        info.bounds = document_.toSpread(item).boundsOf(boundsOf(item.path));
        const Uid pageUid = document_.pageOfItem(item);
        if (const Page* page = document_.page(pageUid)) {
            const auto number = pageNumbers_.find(pageUid);
            info.page = number == pageNumbers_.end() ? 0 : number->second;
            const Rect rect = page->rectInSpread();
            info.bounds = Matrix::translation(-rect.left, -rect.top).boundsOf(info.bounds);
        }
        return info;
    }

    const Document& document_;
    std::unordered_map<Uid, int> pageNumbers_;
    std::vector<FrameInfo> frames_;
};

}  // namespace

std::vector<FrameInfo> listFrames(const Document& document) {
    Lister lister(document);
    for (const Uid spreadUid : document.spreads) {
        const Spread* spread = document.spread(spreadUid);
        if (!spread) continue;
        for (const Uid layerUid : spread->layers)
            if (const SpreadLayer* layer = document.spreadLayer(layerUid))
                for (const Uid item : layer->items) lister.add(item);
    }
    return lister.take();
}

}  // namespace desk
