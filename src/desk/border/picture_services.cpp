// Pictures: imported, put into frames, fitted.
#include "desk/border/document_border.h"
#include "desk/border/services.h"
#include "desk/model/content_fit.h"
#include "desk/pictures/picture_library.h"

namespace desk {
namespace {

class ImportCommand final : public CommandBoss<IImportResourceCmdData> {
  public:
    using CommandBoss::CommandBoss;

    void Set(IDataBase* database, const URI& resource, int32_t, int32_t, int32_t, int32_t, int32_t) override {
        database_ = database;
        resource_ = resource;
    }

    ErrorCode process(Surroundings& surroundings) override {
        DocumentBorder* database = surroundings.find(database_);
        if (!database || resource_.GetComponent(URI::Component::Scheme) != "file") return kFailure;
        PictureRequest request;
        request.path = resource_.GetComponent(URI::Component::Path);
        if (request.path.find('\0') != std::string::npos) return kFailure;
        PictureImport imported = importPage(surroundings, request);
        if (!imported) return kFailure;
        const PageItem& item = addPicture(*database->document(), std::move(imported.picture));
        database->addLooseItem(item.uid);
        database->document()->modified = true;
        results_ = UIDList(database, UID(item.uid));
        return kSuccess;
    }

  private:
    /// The session's page counts for files of several pages only.
    static PictureImport importPage(Surroundings& surroundings, PictureRequest& request) {
        PictureLibrary& pictures = surroundings.pictures();
        const int32_t page = surroundings.placePage();
        if (page == 1) return pictures.import(request);
        PictureImport first = pictures.import(request);
        if (!first || first.picture->pageCount < 2) return first;
        request.page = page;
        return pictures.import(request);
    }

    IDataBase* database_ = nullptr;
    URI resource_;
};

class PictureServices final : public BossOf<IURIUtils, IFrameContentUtils, IContentFitUtils> {
  public:
    PictureServices(Ledger& ledger, Surroundings& surroundings) : BossOf(ledger), surroundings_(surroundings) {}

    // IURIUtils
    URI IDFileToURI(const IDFile& file) override { return URI("file", file.GetPath()); }

    // IFrameContentUtils
    ErrorCode PutItemInFrame(IDataBase* dataBase, UID item, UID frame, int32_t) override {
        DocumentBorder* database = surroundings_.find(dataBase);
        return database && database->putIntoFrame(item.Get(), frame.Get()) ? kSuccess : kFailure;
    }

    // IContentFitUtils
    ErrorCode FitFrameToContent(const UIDList& items) override { return fit(items, ContentFit::FrameToContent); }
    ErrorCode FitContentToFrame(const UIDList& items) override { return fit(items, ContentFit::ContentToFrame); }
    ErrorCode FitContentProportionally(const UIDList& items) override {
        return fit(items, ContentFit::ContentProportionally);
    }
    ErrorCode CenterContent(const UIDList& items) override { return fit(items, ContentFit::CenterContent); }
    ErrorCode FillFrameProportionally(const UIDList& items) override {
        return fit(items, ContentFit::FillProportionally);
    }

  private:
    ErrorCode fit(const UIDList& items, ContentFit mode) {
        DocumentBorder* database = surroundings_.find(items.GetDataBase());
        if (!database || items.Length() == 0) return kFailure;
        ErrorCode result = kSuccess;
        for (int32_t i = 0; i < items.Length(); ++i)
            if (!fitContent(*database->document(), items[i].Get(), mode)) result = kFailure;
        return result;
    }

    Surroundings& surroundings_;
};

}  // namespace

std::unique_ptr<Boss> makeImportCommand(Ledger& ledger) {
    return std::make_unique<ImportCommand>(ledger);
}
std::unique_ptr<Boss> makePictureServices(Ledger& ledger, Surroundings& surroundings) {
    return std::make_unique<PictureServices>(ledger, surroundings);
}

}  // namespace desk
