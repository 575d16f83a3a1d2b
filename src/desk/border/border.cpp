#include "desk/border/border.h"

#include <algorithm>

#include "desk/border/commands.h"
#include "desk/border/document_border.h"
#include "desk/border/export_boss.h"
#include "desk/border/services.h"
#include "desk/border/session_boss.h"
#include "desk/pictures/picture_library.h"

namespace desk {

struct Border::State final : Surroundings, DocumentOrder, BossKeeper {
    Ledger ledger;
    Offers offers;
    std::vector<std::unique_ptr<DocumentBorder>> open;
    std::vector<std::unique_ptr<DocumentBorder>> closed;  ///< with a reference to one of their objects still out
    std::vector<std::unique_ptr<Boss>> lent;              ///< commands and the like, as long as a reference is out
    DocumentBorder* frontDocument = nullptr;
    PictureLibrary pictureLibrary;
    DocumentFiles* documentFiles = nullptr;
    ErrorCode globalErrorCode = kSuccess;
    SessionSettings settings{ledger};
    std::unique_ptr<Boss> services[4] = {makeServices(ledger, *this), makePictureServices(ledger, *this),
                                         makeItemServices(ledger, *this), makeFileServices(ledger, *this)};
    std::unique_ptr<Boss> application = makeApplication(ledger, *this);
    std::unique_ptr<Boss> session = makeSession(ledger, *application, settings, offers);

    // Surroundings
    DocumentBorder* find(IDataBase* database) override {
        for (const auto& border : open)
            if (border.get() == database) return border.get();
        return nullptr;
    }
    DocumentBorder* front() override { return frontDocument; }
    void bringToFront(DocumentBorder& document) override { frontDocument = &document; }
    PictureLibrary& pictures() override { return pictureLibrary; }
    int32_t placePage() override { return settings.GetPage(); }
    DocumentFiles* files() override { return documentFiles; }
    void setGlobalErrorCode(ErrorCode code) override { globalErrorCode = code; }
    IPMCommand* createCommand(ClassID commandClass) override {
        std::unique_ptr<Boss> command = makeCommand(commandClass, ledger);
        return command ? static_cast<IPMCommand*>(lend(std::move(command), IID_IPMCOMMAND)) : nullptr;
    }
    IPMUnknown* lend(std::unique_ptr<Boss> boss, PMIID interfaceId) override {
        boss->liveByReferences(*this);
        lent.push_back(std::move(boss));
        return lent.back()->query(interfaceId);
    }

    // DocumentOrder
    int32_t count() override { return static_cast<int32_t>(open.size()); }
    IDocument* documentAt(int32_t index) override {
        return index >= 0 && index < count() ? open[static_cast<size_t>(index)]->documentInterface() : nullptr;
    }

    // BossKeeper
    void lastReferenceGone(Boss& boss) override {
        std::erase_if(lent, [&](const std::unique_ptr<Boss>& one) { return one.get() == &boss; });
    }

    DocumentBorder* find(const Document& document) const {
        for (const auto& border : open)
            if (border->document() == &document) return border.get();
        return nullptr;
    }
};

Border::Border() : state_(std::make_unique<State>()) {}

Border::~Border() = default;

IDataBase* Border::open(Document& document, TextLayoutService& layout) {
    DocumentBorder* known = state_->find(document);
    if (!known)
        known = state_->open.emplace_back(std::make_unique<DocumentBorder>(document, layout, state_->ledger)).get();
    state_->frontDocument = known;
    return known;
}

void Border::close(const Document& document) {
    const auto found = std::find_if(state_->open.begin(), state_->open.end(),
                                    [&](const auto& border) { return border->document() == &document; });
    if (found == state_->open.end()) return;
    std::unique_ptr<DocumentBorder> closing = std::move(*found);
    state_->open.erase(found);
    if (state_->frontDocument == closing.get())
        state_->frontDocument = state_->open.empty() ? nullptr : state_->open.back().get();
    closing->close();
    std::erase_if(state_->closed, [](const auto& border) { return !border->isHeld(); });
    if (closing->isHeld()) state_->closed.push_back(std::move(closing));
}

void Border::bringToFront(const Document& document) {
    if (DocumentBorder* found = state_->find(document)) state_->frontDocument = found;
}

IDataBase* Border::dataBaseOf(const Document& document) const {
    return state_->find(document);
}

Document* Border::documentOf(IDataBase* database) const {
    DocumentBorder* found = state_->find(database);
    return found ? found->document() : nullptr;
}

int64_t Border::outstandingReferences() const {
    return state_->ledger.outstanding();
}

const std::vector<std::string>& Border::misuses() const {
    return state_->ledger.misuses();
}

void Border::forgetMisuses() {
    state_->ledger.forgetMisuses();
}

IExecutionContextSession* Border::Session() {
    InterfacePtr<IExecutionContextSession> session(
        Adopt::Reference, static_cast<IExecutionContextSession*>(state_->session->query(IID_IEXECUTIONCONTEXTSESSION)));
    return session.get();
}

IPMUnknown* Border::QueryUtils(PMIID service) {
    for (const std::unique_ptr<Boss>& services : state_->services)
        if (IPMUnknown* found = services->query(service)) return found;
    return nullptr;
}

IPMCommand* Border::CreateCommand(ClassID commandClass) {
    return state_->createCommand(commandClass);
}

ErrorCode Border::ProcessCommand(IPMCommand* command) {
    auto* known = dynamic_cast<Command*>(command);
    return known ? known->process(*state_) : kFailure;
}

ErrorCode Border::GlobalErrorCode() {
    return state_->globalErrorCode;
}

PictureLibrary& Border::pictures() {
    return state_->pictureLibrary;
}

void Border::useFiles(DocumentFiles* files) {
    state_->documentFiles = files;
}

bool Border::IsValidDataBase(IDataBase* database) {
    return state_->find(database) != nullptr;
}

struct ExportListeners::State {
    State(Ledger& ledger, const Offers& offers) : boss(ledger, offers) {}
    ExportBoss boss;
};

ExportListeners::ExportListeners(Border& border)
    : state_(std::make_unique<State>(border.state_->ledger, border.state_->offers)) {}

ExportListeners::~ExportListeners() = default;

bool ExportListeners::isEmpty() const {
    return state_->boss.providers().empty();
}

void ExportListeners::tell(int32_t messageCode, IDataBase* database, int32_t pageNum) {
    for (IPDFExportSetupProvider* provider : state_->boss.providers()) {
        _t_PDFExportEvent event{messageCode, database};
        provider->PDFProcessEvent(&event, pageNum);
    }
}

}  // namespace desk
