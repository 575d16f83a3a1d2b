#include "desk/border/commands.h"

#include "desk/border/document_border.h"

namespace desk {
namespace {

/// Removes every item of the list; what can't be removed makes the result a failure and stops nothing.
class DeleteCommand final : public CommandBoss {
  public:
    using Remove = bool (DocumentBorder::*)(Uid);
    DeleteCommand(Ledger& ledger, Remove remove) : CommandBoss(ledger), remove_(remove) {}

    ErrorCode process(OpenDocuments& documents) override {
        DocumentBorder* database = documents.find(items_.GetDataBase());
        if (!database) return kFailure;
        ErrorCode result = kSuccess;
        for (int32_t i = 0; i < items_.Length(); ++i)
            if (!(database->*remove_)(items_[i].Get())) result = kFailure;
        return result;
    }

  private:
    Remove remove_;
};

/// The target shares the source's content until one of the two is edited.
class CopyStoryCommand final : public CommandBoss {
  public:
    using CommandBoss::CommandBoss;

    ErrorCode process(OpenDocuments& documents) override {
        DocumentBorder* database = documents.find(items_.GetDataBase());
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

}  // namespace

std::unique_ptr<CommandBoss> makeCommand(ClassID commandClass, Ledger& ledger) {
    switch (commandClass.Get()) {
        case kDeletePageItemsCmdBoss.Get():
            return std::make_unique<DeleteCommand>(ledger, &DocumentBorder::removeItem);
        case kDeleteStoryCmdBoss.Get():
            return std::make_unique<DeleteCommand>(ledger, &DocumentBorder::removeStory);
        case kCopyStoryCmdBoss.Get():
            return std::make_unique<CopyStoryCommand>(ledger);
        default:
            return nullptr;
    }
}

}  // namespace desk
