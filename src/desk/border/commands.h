#pragma once
// The commands that the desk knows.

#include <memory>

#include "desk/border/boss.h"
#include "desk/border/document_files.h"
#include "host/api/commands.h"

namespace desk {

class DocumentBorder;
class PictureLibrary;

/// What commands and services need of the border.
class Surroundings {
  public:
    /// The open document behind a database; null for one that isn't open.
    virtual DocumentBorder* find(IDataBase* database) = 0;
    /// Null without an open document.
    virtual DocumentBorder* front() = 0;
    virtual void bringToFront(DocumentBorder& document) = 0;
    virtual PictureLibrary& pictures() = 0;
    /// The page of PDF files that is imported, from 1.
    virtual int32_t placePage() = 0;
    /// Null where documents can't be opened, saved and closed.
    virtual DocumentFiles* files() = 0;
    virtual void setGlobalErrorCode(ErrorCode code) = 0;
    /// With a reference for the caller; null for a class that the desk doesn't know.
    virtual IPMCommand* createCommand(ClassID commandClass) = 0;
    /// Keeps an object as long as a reference to it is out, and gives the first one under an interface.
    virtual IPMUnknown* lend(std::unique_ptr<Boss> boss, PMIID interfaceId) = 0;

  protected:
    ~Surroundings() = default;
};

/// What can be processed.
class Command {
  public:
    /// kFailure when an item of the list isn't of the command's kind or no document is open behind it.
    virtual ErrorCode process(Surroundings& surroundings) = 0;

  protected:
    ~Command() = default;
};

template <class... Data>
class CommandBoss : public BossOf<IPMCommand, Data...>, public Command {
  public:
    using BossOf<IPMCommand, Data...>::BossOf;

    void SetItemList(const UIDList& items) override { items_ = items; }
    const UIDList& GetItemList() override { return items_; }
    const UIDList& GetResultList() override { return results_; }

  protected:
    UIDList items_;
    UIDList results_;
};

/// Null for a class that the desk doesn't know. The copy command takes source and target as the items of its list.
std::unique_ptr<Boss> makeCommand(ClassID commandClass, Ledger& ledger);
/// The command that sets the non-printing flag, ready to be processed.
std::unique_ptr<Boss> makeNonPrintingCommand(bool nonPrinting, const UIDList& items, Ledger& ledger);

// By subject.
std::unique_ptr<Boss> makeImportCommand(Ledger& ledger);
std::unique_ptr<Boss> makeNewSpreadCommand(Ledger& ledger);
std::unique_ptr<Boss> makeDeleteSpreadCommand(Ledger& ledger);
std::unique_ptr<Boss> makeOpenDocumentCommand(Ledger& ledger);
std::unique_ptr<Boss> makeOpenWindowCommand(Ledger& ledger);

}  // namespace desk
