// Documents opened, saved, closed and brought to the front.
#include "desk/border/document_border.h"
#include "desk/border/services.h"
#include "host/api/host.h"

namespace desk {
namespace {

UIDRef rootOf(DocumentBorder& database) {
    return UIDRef(&database, database.GetRootUID());
}

/// The border of a document that was just opened or made, which is the front one.
UIDRef opened(Surroundings& surroundings, const Document* document) {
    DocumentBorder* front = surroundings.front();
    return document && front && front->document() == document ? rootOf(*front) : UIDRef::gNull;
}

class OpenDocumentCommand final : public CommandBoss<IOpenFileCmdData> {
  public:
    using CommandBoss::CommandBoss;

    void Set(const IDFile& file, int32_t, int32_t, int32_t, int32_t) override { file_ = file; }

    ErrorCode process(Surroundings& surroundings) override {
        DocumentFiles* files = surroundings.files();
        const UIDRef document = opened(surroundings, files ? files->open(file_.GetPath()) : nullptr);
        if (document == UIDRef::gNull) return kFailure;
        results_ = UIDList(document);
        return kSuccess;
    }

  private:
    IDFile file_;
};

/// The desk draws no windows: a document whose window is opened is the front one.
class OpenWindowCommand final : public CommandBoss<> {
  public:
    using CommandBoss::CommandBoss;

    ErrorCode process(Surroundings& surroundings) override {
        DocumentBorder* database = surroundings.find(items_.GetDataBase());
        if (!database || items_.Length() == 0) return kFailure;
        surroundings.bringToFront(*database);
        results_ = items_;
        return kSuccess;
    }
};

class LayoutWindow final : public BossOf<ILayoutWindow> {
  public:
    LayoutWindow(Ledger& ledger, Surroundings& surroundings, IDataBase* database)
        : BossOf(ledger), surroundings_(surroundings), database_(database) {}

    void BringToFront() override {
        if (DocumentBorder* database = surroundings_.find(database_)) surroundings_.bringToFront(*database);
    }

  private:
    Surroundings& surroundings_;
    IDataBase* database_;
};

class FileServices final : public BossOf<IDocumentUtils, IWindowUtils, IDocumentFileHandler> {
  public:
    FileServices(Ledger& ledger, Surroundings& surroundings) : BossOf(ledger), surroundings_(surroundings) {}

    // IDocumentUtils
    ErrorCode CreateDocument(UIDRef& created, const IDFile*, int32_t, int32_t) override {
        DocumentFiles* files = surroundings_.files();
        return take(created, files ? files->create() : nullptr);
    }
    ErrorCode OpenDocument(UIDRef& document, const IDFile& file, int32_t, int32_t, int32_t, int32_t, int32_t) override {
        DocumentFiles* files = surroundings_.files();
        return take(document, files ? files->open(file.GetPath()) : nullptr);
    }
    void CloseDocument(const UIDRef& document, int32_t) override { close(document); }
    IDocumentFileHandler* QueryFileHandler(const UIDRef& document) override {
        if (!surroundings_.files() || !named(document)) return nullptr;
        AddRef();
        return this;
    }

    // IWindowUtils
    ILayoutWindow* QueryLayoutWindow(IDataBase* database) override {
        if (!surroundings_.find(database)) return nullptr;
        return static_cast<ILayoutWindow*>(
            surroundings_.lend(std::make_unique<LayoutWindow>(ledger(), surroundings_, database), IID_ILAYOUTWINDOW));
    }

    // IDocumentFileHandler
    bool CanSave(const UIDRef& document) override { return canWrite(document) && !named(document)->path.empty(); }
    void Save(const UIDRef& document, K2::UIFlags) override {
        const Document* found = named(document);
        save(document, found ? found->path : std::string());
    }
    bool CanSaveAs(const UIDRef& document) override { return canWrite(document); }
    void SaveAs(const UIDRef& document, const IDFile& file, K2::UIFlags, int32_t, int32_t) override {
        if (!save(document, file.GetPath())) return;
        Document& saved = *named(document);
        saved.path = file.GetPath();
        saved.name = saved.path.substr(saved.path.rfind('/') + 1);
    }
    bool CanSaveACopy(const UIDRef& document) override { return canWrite(document); }
    void SaveACopy(const UIDRef& document, const IDFile& file, K2::UIFlags, int32_t, int32_t) override {
        const Document* found = named(document);
        const bool written = found && surroundings_.files()->write(*found, file.GetPath());
        surroundings_.setGlobalErrorCode(written ? kSuccess : kFailure);
    }
    void Close(const UIDRef& document, K2::UIFlags, int32_t, int32_t) override { close(document); }

  private:
    Document* named(const UIDRef& document) {
        DocumentBorder* database = surroundings_.find(document.GetDataBase());
        return database && document.GetUID() == database->GetRootUID() ? database->document() : nullptr;
    }
    /// Only what was read from a package can become one.
    bool canWrite(const UIDRef& document) {
        const Document* found = named(document);
        return found && surroundings_.files() && found->package;
    }
    bool save(const UIDRef& document, const std::string& path) {
        Document* found = named(document);
        const bool written = found && surroundings_.files()->write(*found, path);
        if (written) {
            found->modified = false;
            surroundings_.find(document.GetDataBase())->saved();
        }
        surroundings_.setGlobalErrorCode(written ? kSuccess : kFailure);
        return written;
    }
    void close(const UIDRef& document) {
        Document* found = named(document);
        if (found && surroundings_.files()) surroundings_.files()->close(*found);
    }
    ErrorCode take(UIDRef& reference, const Document* document) {
        const UIDRef made = opened(surroundings_, document);
        if (made == UIDRef::gNull) return kFailure;
        reference = made;
        return kSuccess;
    }

    Surroundings& surroundings_;
};

}  // namespace

std::unique_ptr<Boss> makeOpenDocumentCommand(Ledger& ledger) {
    return std::make_unique<OpenDocumentCommand>(ledger);
}
std::unique_ptr<Boss> makeOpenWindowCommand(Ledger& ledger) {
    return std::make_unique<OpenWindowCommand>(ledger);
}
std::unique_ptr<Boss> makeFileServices(Ledger& ledger, Surroundings& surroundings) {
    return std::make_unique<FileServices>(ledger, surroundings);
}

}  // namespace desk
