#include "desk/border/commands.h"

#include "desk/border/document_border.h"

namespace desk {
namespace {

/// Removes every item of the list; what can't be removed makes the result a failure and stops nothing.
class DeleteCommand final : public CommandBoss<> {
  public:
    using Remove = bool (DocumentBorder::*)(Uid);
    DeleteCommand(Ledger& ledger, Remove remove) : CommandBoss(ledger), remove_(remove) {}

    ErrorCode process(Surroundings& surroundings) override {
        DocumentBorder* database = surroundings.find(items_.GetDataBase());
        if (!database) return kFailure;
        ErrorCode result = kSuccess;
        for (int32_t i = 0; i < items_.Length(); ++i)
            if (!(database->*remove_)(items_[i].Get())) result = kFailure;
        database->dropLooseItems();
        return result;
    }

  private:
    Remove remove_;
};

/// The target shares the source's content until one of the two is edited.
class CopyStoryCommand final : public CommandBoss<> {
  public:
    using CommandBoss::CommandBoss;

    ErrorCode process(Surroundings& surroundings) override {
        DocumentBorder* database = surroundings.find(items_.GetDataBase());
        Document* document = database ? database->document() : nullptr;
        const Story* source = document ? document->story(items_[0].Get()) : nullptr;
        Story* target = document ? document->story(items_[1].Get()) : nullptr;
        if (!source || !target) return kFailure;
        if (source != target) target->setContent(source->sharedContent());
        document->modified = true;
        results_ = UIDList(items_.GetDataBase(), items_[1]);
        return kSuccess;
    }
};

class NonPrintingCommand final : public CommandBoss<> {
  public:
    NonPrintingCommand(bool nonPrinting, Ledger& ledger) : CommandBoss(ledger), nonPrinting_(nonPrinting) {}

    ErrorCode process(Surroundings& surroundings) override {
        DocumentBorder* database = surroundings.find(items_.GetDataBase());
        if (!database) return kFailure;
        ErrorCode result = items_.Length() > 0 ? kSuccess : kFailure;
        for (int32_t i = 0; i < items_.Length(); ++i) {
            PageItem* item = database->document()->item(items_[i].Get());
            if (!item) {
                result = kFailure;
                continue;
            }
            item->attributes.nonprinting = nonPrinting_;
            ++item->revision;
            database->document()->modified = true;
        }
        return result;
    }

  private:
    bool nonPrinting_;
};

}  // namespace

std::unique_ptr<Boss> makeNonPrintingCommand(bool nonPrinting, const UIDList& items, Ledger& ledger) {
    auto command = std::make_unique<NonPrintingCommand>(nonPrinting, ledger);
    command->SetItemList(items);
    return command;
}

std::unique_ptr<Boss> makeCommand(ClassID commandClass, Ledger& ledger) {
    switch (commandClass.Get()) {
        case kDeletePageItemsCmdBoss.Get():
            return std::make_unique<DeleteCommand>(ledger, &DocumentBorder::removeItem);
        case kDeleteStoryCmdBoss.Get():
            return std::make_unique<DeleteCommand>(ledger, &DocumentBorder::removeStory);
        case kCopyStoryCmdBoss.Get():
            return std::make_unique<CopyStoryCommand>(ledger);
        case kSetNonPrintingCmdBoss.Get():
            return std::make_unique<NonPrintingCommand>(true, ledger);
        case kImportResourceCmdBoss.Get():
            return makeImportCommand(ledger);
        case kNewSpreadCmdBoss.Get():
            return makeNewSpreadCommand(ledger);
        case kDeleteSpreadCmdBoss.Get():
            return makeDeleteSpreadCommand(ledger);
        case kOpenDocumentCmdBoss.Get():
            return makeOpenDocumentCommand(ledger);
        case kOpenLayoutWindowCmdBoss.Get():
            return makeOpenWindowCommand(ledger);
        default:
            return nullptr;
    }
}

}  // namespace desk
