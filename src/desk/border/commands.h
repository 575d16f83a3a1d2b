#pragma once
// The commands that the desk knows.

#include <memory>

#include "desk/border/boss.h"
#include "host/api/commands.h"

namespace desk {

class DocumentBorder;

/// Finds the open document behind a database; null for one that isn't open.
class OpenDocuments {
  public:
    virtual DocumentBorder* find(IDataBase* database) = 0;

  protected:
    ~OpenDocuments() = default;
};

class CommandBoss : public BossOf<IPMCommand> {
  public:
    using BossOf::BossOf;

    void SetItemList(const UIDList& items) override { items_ = items; }
    const UIDList& GetItemList() override { return items_; }
    const UIDList& GetResultList() override { return results_; }

    /// kFailure when an item of the list isn't of the command's kind or no document is open behind it.
    virtual ErrorCode process(OpenDocuments& documents) = 0;

  protected:
    UIDList items_;
    UIDList results_;
};

/// Null for a class that the desk doesn't know. The copy command takes source and target as the items of its list.
std::unique_ptr<CommandBoss> makeCommand(ClassID commandClass, Ledger& ledger);

}  // namespace desk
