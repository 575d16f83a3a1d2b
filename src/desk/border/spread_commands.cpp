// Spreads made and removed.
#include <algorithm>

#include "desk/border/commands.h"
#include "desk/border/document_border.h"

namespace desk {
namespace {

/// Room between two spreads on the pasteboard, points.
constexpr double betweenSpreads = 144;

class NewSpreadCommand final
    : public CommandBoss<INewSpreadCmdData, INewSpreadReferenceCmdData, INewSpreadOptionCmdData> {
  public:
    using CommandBoss::CommandBoss;

    void Set(const UIDRef& document, int32_t count, int32_t position, int32_t, int32_t pages, int32_t, int32_t, int32_t,
             const NewPageRecord& page) override {
        document_ = document;
        count_ = count;
        position_ = position;
        pages_ = pages;
        page_ = page;
    }
    void Set(const UIDRef&, int32_t) override {}
    void Set(int32_t) override {}

    ErrorCode process(Surroundings& surroundings) override {
        constexpr int32_t mostSpreads = 100'000, mostPages = 10;
        DocumentBorder* database = surroundings.find(document_.GetDataBase());
        Document* document = database ? database->document() : nullptr;
        const bool isDocument = document && document_.GetUID() == UID(document->rootUid());
        const bool hasSize = page_.width > 0 && page_.height > 0;
        if (!isDocument || count_ < 1 || count_ > mostSpreads || pages_ < 1 || pages_ > mostPages || !hasSize)
            return kFailure;
        if (!isBehindTheLast(*document)) return kFailure;
        results_ = UIDList(database);
        size_t pageNumber = document->pages().size();
        for (int32_t i = 0; i < count_; ++i) results_.Append(UID(addSpread(*document, pageNumber).uid));
        document->modified = true;
        return kSuccess;
    }

  private:
    /// The one place where the desk makes spreads.
    bool isBehindTheLast(const Document& document) const {
        return position_ == -1 || (position_ >= 0 && static_cast<size_t>(position_) == document.spreads.size());
    }

    /// Pages as on the first spread: masters, margins and spine are taken from there. `pageNumber` is that of the
    /// document's last page, before and after.
    Spread& addSpread(Document& document, size_t& pageNumber) const {
        const Spread* first = document.spreads.empty() ? nullptr : document.spread(document.spreads.front());
        const Spread* last = document.spreads.empty() ? nullptr : document.spread(document.spreads.back());
        const std::vector<Uid> models = first ? first->pages : std::vector<Uid>();
        const int32_t spine = first ? std::min(first->bindingLocation, pages_) : 0;
        const double below =
            last ? last->transform.f + heightOf(document, *last) / 2 + page_.height / 2 + betweenSpreads : 0;
        const bool hasMasterItems = !first || first->showMasterItems;
        Spread& spread = document.addSpread(false);
        spread.transform = Matrix::translation(0, below);
        spread.bindingLocation = spine;
        spread.showMasterItems = hasMasterItems;
        const double left = document.preferences.facingPages ? -spine * page_.width : -pages_ * page_.width / 2;
        for (int32_t i = 0; i < pages_; ++i) {
            Page& page = document.addPage(spread);
            page.name = std::to_string(++pageNumber);
            page.bounds = {0, 0, page_.width, page_.height};
            page.transform = Matrix::translation(left + i * page_.width, -page_.height / 2);
            if (models.empty()) continue;
            const Page& model = *document.page(models[std::min(static_cast<size_t>(i), models.size() - 1)]);
            page.appliedMaster = model.appliedMaster;
            page.margins = model.margins;
        }
        return spread;
    }

    static double heightOf(const Document& document, const Spread& spread) {
        double height = 0;
        for (Uid page : spread.pages) height = std::max(height, document.page(page)->rectInSpread().height());
        return height;
    }

    UIDRef document_;
    int32_t count_ = 0, position_ = -1, pages_ = 0;
    NewPageRecord page_;
};

/// A document keeps at least one spread.
class DeleteSpreadCommand final : public CommandBoss<> {
  public:
    using CommandBoss::CommandBoss;

    ErrorCode process(Surroundings& surroundings) override {
        DocumentBorder* database = surroundings.find(items_.GetDataBase());
        if (!database || items_.Length() == 0) return kFailure;
        ErrorCode result = kSuccess;
        for (int32_t i = 0; i < items_.Length(); ++i)
            if (database->document()->spreads.size() < 2 || !database->removeSpread(items_[i].Get())) result = kFailure;
        return result;
    }
};

}  // namespace

std::unique_ptr<Boss> makeNewSpreadCommand(Ledger& ledger) {
    return std::make_unique<NewSpreadCommand>(ledger);
}
std::unique_ptr<Boss> makeDeleteSpreadCommand(Ledger& ledger) {
    return std::make_unique<DeleteSpreadCommand>(ledger);
}

}  // namespace desk
